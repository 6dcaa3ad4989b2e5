#pragma once

#include "engine/models/Extraction.h"

namespace engine {

// PCA and PLS where cells are missing: every inner product is a regression through the origin over the observed cells
// (Wold 1976; Geladi & Kowalski 1986; Nelson et al. 1996).
class NipalsExtraction final : public Extraction {
public:
    NipalsExtraction(BlockView const &x, BlockView const &y, Components const *reference)
        : Extraction(x, y, reference) {}

private:
    class Residual;

    void Find(Index count) override;
    // Whether the iteration is over: it has converged, or is stopped.
    static bool Ends(Component &found, Vector const &before);
    bool FindPca(Residual &e);
    bool FindPls(Residual &e, Residual &f);
};

} // namespace engine
