#pragma once

#include "engine/models/Block.h"

namespace engine {

// Orthogonal signal correction: components of X that have nothing to do with Y, which are taken off X before anything
// is made of it (Wold et al. 1998a, solved directly as by Fearn 2000). A matrix has a column for each component.
struct OrthogonalCorrection {
    Matrix w, p;  // X terms: weights on what earlier components left of X, and loadings
    Matrix wStar; // the weights that give t of a complete row at once
    Matrix t;     // scores of the rows that it was made of

    Index Size() const { return p.cols(); }

    // What is left of other rows, in the scale of X. A row's score is the one that its observed cells tell; what is
    // missing is NaN.
    RowMatrix Corrected(Block const &rows) const;

    bool operator==(OrthogonalCorrection const &) const = default;
};

struct CorrectedBlock {
    OrthogonalCorrection correction;
    RowMatrix x; // what it leaves
};

// Makes a correction of so many components, or of fewer when no more of X has nothing to do with Y. Missing cells of X
// are filled from its PCA of five components, and so are not missing in what is left; those of Y count as 0.
CorrectedBlock CorrectOrthogonally(Block const &x, Block const &y, Index components);

} // namespace engine
