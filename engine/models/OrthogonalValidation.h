#pragma once

#include "engine/models/CrossValidation.h"
#include "engine/models/OrthogonalExtraction.h"

namespace engine {

// Cross-validates OPLS and O2PLS models of several sizes over the same rounds (Wold 1978; Martens & Naes 1989).
class OrthogonalValidator {
public:
    // The workset must outlive it. `roundOfRow` is not empty.
    OrthogonalValidator(Workset const &workset, std::vector<int> roundOfRow);

    // Fits the rounds with the sizes of the model, and with its signs.
    CrossValidation Validate(Components const &model, Progress const &progress);

private:
    struct Round {
        BlockView outX, outY;
        std::vector<Index> out;
        OrthogonalExtraction extraction;
    };

    Block const &m_y;
    std::vector<int> m_roundOfRow;
    std::vector<Round> m_rounds;
};

} // namespace engine
