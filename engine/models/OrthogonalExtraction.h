#pragma once

#include "engine/models/Extraction.h"
#include "engine/models/OrthogonalFilter.h"

#include <optional>

namespace engine {

// Numbers of components of each kind.
struct ComponentCounts {
    Index predictive = 0;
    Index xOrthogonal = 0;
    Index yOrthogonal = 0;
};

struct OrthogonalFit {
    Components components;
    Scores scores;
    FitNotes notes; // on the companion
};

// Fits OPLS and O2PLS models of several sizes to the same rows: the blocks are freed of what is orthogonal to the
// leading directions of X'Y, then PLS follows (Trygg & Wold 2002, 2003). Missing cells get the values that a PLS model
// of A + Ax components, the companion, gives them.
class OrthogonalExtraction {
public:
    // The blocks must outlive it.
    OrthogonalExtraction(BlockView const &x, BlockView const &y);

    // Fewer components when the data have no more. Each has the sign of the component of its kind and number in
    // `reference`, as far as that is given and has it. With complete blocks, fits with the same number of predictive
    // components share the orthogonal ones, with the signs of the first of them.
    OrthogonalFit Fit(ComponentCounts counts, Components const *reference);

private:
    // Blocks without missing cell, their orthogonal components and X'Y.
    struct Filters {
        FilledRows x, y;
        Components start;
        Matrix product;
        OrthogonalFilter xFilter, yFilter;
    };

    void Prepare(ComponentCounts const &counts);

    BlockView const m_x;
    BlockView const m_y;
    Components m_start;
    std::unique_ptr<Extraction> m_companion;
    std::optional<Filters> m_filters;
    Index m_filteredFor = -1;
    Matrix m_product; // of complete blocks
};

} // namespace engine
