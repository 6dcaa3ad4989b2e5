#pragma once

#include "engine/statistics/ModelView.h"

namespace engine {

// Statistics of X terms, a number for each, which are asked for by term and by lag. `size` is that of a model, at least
// one component; all that rests on Y is of models with Y.

// VIP, of a model or of one of its cross-validation rounds.
Vector WholeImportance(Components const &model, Index size, bool orthogonalKind, std::optional<Index> response = {});
// VIP of the predictive components, and of the X-side orthogonal ones, of which there is one at least.
Vector PredictiveImportance(Components const &model, Index size);
Vector OrthogonalImportance(Components const &model);

// Regression coefficients in workset scale, X terms by Y terms.
Matrix ScaledCoefficients(Components const &model, Index size);
// Their jack-knife standard errors for one Y term; NaN with fewer than two rounds. Of cross-validated models.
Vector ErrorsOfCoefficients(FittedModel const &fit, Index size, Index yTerm);
// Those for variables before they are centred and scaled, for one Y term.
Vector UnscaledCoefficients(FittedModel const &fit, Index size, Index yTerm);

} // namespace engine
