#pragma once

#include "engine/Progress.h"
#include "engine/models/FittedModel.h"

namespace engine {

// The components, scores, cross-validation and progression of an OPLS or O2PLS model. `roundOfRow` is empty for no
// cross-validation.
FittedModel FitOrthogonal(ModelDefinition const &definition, Workset const &workset, std::vector<int> const &roundOfRow,
                          Progress const &progress);

} // namespace engine
