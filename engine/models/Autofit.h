#pragma once

#include "engine/models/Workset.h"

namespace engine {

// Rules by which a fit finds its number of components (Wold 1978; Wold et al. 2001).

// Whether a sum of squared errors of prediction is well below that of the model before; never where that is 0.
inline bool Improves(double press, double before) {
    return before > 0 && 1 - press / before > 0.05;
}

// X-side components at most.
inline Index AutofitLimit(Workset const &workset) {
    return std::min<Index>({workset.x.Rows() - 1, workset.x.Size(), 15});
}

// X-side components where nothing is cross-validated.
inline Index ComponentsWithoutRounds(Workset const &workset) {
    return std::min<Index>(2, AutofitLimit(workset));
}

} // namespace engine
