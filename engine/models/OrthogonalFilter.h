#pragma once

#include "engine/models/Block.h"

namespace engine {

// Components of one block that have nothing to do with some directions of it (Trygg & Wold 2002, 2003): t_o = E w_o and
// p_o = E't_o/(t_o't_o), w_o being the leading left singular vector of D'T, where T = E V for the directions V and
// D = E - T V'. E is what the components before have left of the block, and never formed.
class OrthogonalFilter {
public:
    // The block must be complete and outlive it, as must all its views. `directions` are orthonormal, terms by any
    // number; `squares` are the sums of squares of the block's columns.
    OrthogonalFilter(BlockView const &block, Matrix directions, Vector const &squares);

    // Extracts more components, until there are `count` in all or the block has no more. Each gets the sign of the
    // column of `reference` with its number, otherwise the element of p_o that leads is positive.
    void Extract(Index count, Matrix const &reference);

    // A column for each component: t_o, w_o, p_o, and the weights that give t_o of a complete row at once.
    Matrix const &Scores() const { return m_scores; }
    Matrix const &Weights() const { return m_weights; }
    Matrix const &Loadings() const { return m_loadings; }
    Matrix const &DirectWeights() const { return m_directWeights; }
    // Residual sums of squares of the terms after 0, 1, 2, ... components.
    Matrix const &Squares() const { return m_squares; }

private:
    bool FindOne(Matrix const &reference);
    Vector NextWeights() const;

    BlockView m_block;
    Matrix m_directions;
    // T and E'T.
    Matrix m_kept, m_products;
    Matrix m_scores, m_weights, m_loadings, m_directWeights, m_squares;
};

} // namespace engine
