#pragma once

#include "engine/models/FittedModel.h"

#include <memory>

namespace engine {

// Extracts the components of a PCA or PLS model one after the other, in steps that the caller chooses. The blocks must
// outlive it.
class Extraction {
public:
    // The fast way for complete blocks, the component-wise iteration where a cell is missing. y has no column for PCA.
    // With a reference, each component gets the sign of the reference's component of that number, otherwise the
    // element of its p (PLS: c) that leads is positive.
    static std::unique_ptr<Extraction> Start(BlockView const &x, BlockView const &y, Components const *reference);
    virtual ~Extraction() = default;

    // Extracts up to `count` more components; fewer when the data have no more.
    void Extract(Index count);

    Components const &Found() const { return m_components; }
    Scores const &FoundScores() const { return m_scores; }
    std::vector<int> const &Iterations() const { return m_iterations; }
    // On the first `count` components.
    FitNotes NotesOn(Index count) const;

protected:
    struct Component {
        Vector t, p;
        Vector u, w, c, q; // empty for PCA
        int iterations = 1;
        std::optional<double> lastChange; // of t, where the iteration was stopped
        std::vector<Index> scarceRows;
        // Residual sums of squares that it leaves.
        Vector ssX, ssY;
    };

    Extraction(BlockView const &x, BlockView const &y, Components const *reference);
    // Works on what orthogonal components have left of the blocks. `orthogonal` and `scores` hold these alone, and the
    // sums of squares go on where they ended.
    Extraction(BlockView const &x, BlockView const &y, Components const *reference, Components orthogonal,
               Scores scores);

    // Each calls Add for each component that it finds, `count` times at most.
    virtual void Find(Index count) = 0;
    // Gives the component its sign. To be called before anything is deflated by it.
    void Orient(Component &component) const;
    void Add(Component const &component);

    Index Size() const { return m_components.p.cols(); }
    // Nothing is left of X.
    bool Exhausted() const;
    double TotalX() const { return m_components.ssX.col(0).sum(); }
    // Residual sum of squares of X by the ledger when t and p of complete data are taken away.
    Vector LeftX(Vector const &t, Vector const &p) const;

    BlockView const m_x;
    BlockView const m_y;
    Components m_components;
    Scores m_scores;

private:
    void RefineLedger(Index from);

    Components const *m_reference;
    std::vector<int> m_iterations;
    std::vector<Unconverged> m_unconverged;
    std::vector<std::vector<Index>> m_scarceRows; // of each component
};

// No component yet: the sizes of blocks and their sums of squares.
Components NoComponents(BlockView const &x, BlockView const &y);
Scores NoScores(Index rows);

// The weights that give t of a complete row at once, from the weights and loadings of all components: Z W (P'W)^-1, Z
// being the product of I - w_o p_o' over the X-side orthogonal components.
Matrix DirectWeights(Components const &model);

// Sums of squares of the columns over the cells that are observed, after t p' of 0, 1, 2, ... components was taken from
// `values`, which has a value in all of them.
Matrix ResidualSquares(BlockView const &values, BlockView const &observed, Matrix const &t, Matrix const &p);

// The first index whose element is as large as the largest, but for rounding.
Index Lead(Vector const &v);

void AppendColumn(Matrix &matrix, Vector const &column);

} // namespace engine
