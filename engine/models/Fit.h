#pragma once

#include "engine/Progress.h"
#include "engine/models/FittedModel.h"

namespace engine {

// Fits a model, cross-validates it, and finds the numbers of components that the definition leaves open; without
// rounds these are two X-side components, predictive ones first. The same input gives the same result. A model has
// fewer components than asked for when the data have no more. Throws NCError when given groups do not match the rows
// and for a form of Q2 that the kind of model does not have, and Cancelled.
FittedModel Fit(ModelDefinition const &definition, Workset const &workset, Progress const &progress = Progress());

// The model of the first `predictive` components and all orthogonal ones.
Components FirstComponents(Components const &components, Index predictive);

} // namespace engine
