#pragma once

#include "engine/models/FittedModel.h"

namespace engine {

// Rows given here are scaled like those of the workset (ScaleRows). A model is that of all rows or of one
// cross-validation round. Missing cells are skipped by projection on one component after the other (Nelson et al.
// 1996); a workset row gets its own scores back.

// Scores t and, where the model has them, t_o of any rows; u and u_o stay without columns.
Scores PredictScores(Components const &model, BlockView const &x);

// Adds to `t` (rows by any first components) the columns of the other components.
void ExtendScores(Components const &model, BlockView const &x, Matrix &t);

// Adds scores u and, where the model has them, u_o of rows whose Y is known to `scores`, which hold t. For u, a missing
// response of a row that has others counts as t c, as in the fit.
void PredictYScores(Components const &model, BlockView const &y, Scores &scores);

// B = W* C' of the first `predictive` components, X terms by Y terms: the prediction of complete rows is X B.
Matrix Coefficients(Components const &model, Index predictive);

// Predicted Y (rows by Y terms) by the first `predictive` components of t.
Matrix PredictedY(Components const &model, Matrix const &t, Index predictive);

// Predicted X (rows by X terms) by the first `predictive` components and all X-side orthogonal ones.
RowMatrix PredictedX(Components const &model, Scores const &scores, Index predictive);

// X less its prediction; 0 where x is missing.
RowMatrix XResiduals(Components const &model, BlockView const &x, Scores const &scores, Index predictive);

} // namespace engine
