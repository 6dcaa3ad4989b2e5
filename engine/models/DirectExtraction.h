#pragma once

#include "engine/models/Extraction.h"

namespace engine {

// PCA of complete data (Wold, Esbensen & Geladi 1987) from the leading eigenvectors of X'X.
class DirectPcaExtraction final : public Extraction {
public:
    DirectPcaExtraction(BlockView const &x, BlockView const &y, Components const *reference);

private:
    void Find(Index count) override;
    void Ask(Index count);

    // Found, but not yet asked for.
    Matrix m_waiting;
    Components const *m_guess;
};

// PLS of complete data (Wold et al. 2001; Hoskuldsson 1988): w is the leading left singular vector of E'F. E is never
// formed: E w = X w - T (P'w), E't = X't - P (T't), orthogonal components likewise, and E'F is deflated itself.
class DirectPlsExtraction final : public Extraction {
public:
    DirectPlsExtraction(BlockView const &x, BlockView const &y, Components const *reference);
    // Of what orthogonal components have left of the blocks. `product` is X'Y of the blocks themselves.
    DirectPlsExtraction(BlockView const &x, BlockView const &y, Components const *reference, Components orthogonal,
                        Scores scores, Matrix const &product);

private:
    void Find(Index count) override;
    bool FindOne();
    void FormProduct();
    // What the components so far take from X w and from X't.
    Vector TakenScores(Vector const &w) const;
    Matrix TakenProducts(Matrix const &t) const;
    Vector LeadingWeights() const;

    // F, and F'E with rows for Y terms.
    RowMatrix m_f;
    RowMatrix m_product;
    // Norm of the product when it was last formed from the blocks.
    double m_formedNorm = 0;
};

} // namespace engine
