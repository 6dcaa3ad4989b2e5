#pragma once

#include "engine/Progress.h"
#include "engine/models/FittedModel.h"

namespace engine {

// Fits PCA and PLS models, cross-validates them, and finds their number of components when the definition leaves it
// open. The same input gives the same result. A model has fewer components than asked for when the data have no more.
// Throws NCError when given groups do not match the rows, and Cancelled.
FittedModel Fit(ModelDefinition const &definition, Workset const &workset, Progress const &progress = Progress());

// The model of the first `predictive` components of a PCA or PLS model.
Components FirstComponents(Components const &components, Index predictive);

} // namespace engine
