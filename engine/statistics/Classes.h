#pragma once

#include "engine/Classification.h"
#include "engine/statistics/ModelView.h"

namespace engine {

// How well a model tells classes apart; `predicted` is null without prediction set. NCError for a model that is no
// discriminant model, or has no components.
Classification ClassificationOf(ModelView const &model, PredictedRows const *predicted);

} // namespace engine
