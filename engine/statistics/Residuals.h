#pragma once

#include "engine/models/FittedModel.h"
#include "platform/forward.h"

namespace engine {

// What a model leaves of X and Y: residual sums of squares, their degrees of freedom, and the variances that follow
// (Wold 1976). The size of a model is the number of its predictive components; it counts with all orthogonal ones. What
// has no degree of freedom is NaN.

// The size that an argument names: 0 to A, -1 for A. OPLS and O2PLS take all components for any other value than 1 to
// A.
std::optional<Index> ChosenSize(FittedModel const &model, int component);
// Those of a list, without what is no size; 1 to A for null.
std::vector<Index> ChosenSizes(FittedModel const &model, IntList const *components);

// Counts of X-side components, and of those that a prediction of Y rests on, among the first `first` components in the
// overall order.
Index XSideAmong(Components const &components, Index first);
Index UsedAmong(Components const &components, Index first);

// Of rows, after so many components; of columns of X.
double XRowFreedom(FittedModel const &model, Index xSide);
double YRowFreedom(FittedModel const &model, Index used);
double ColumnFreedom(FittedModel const &model, Index xSide);

// Residual sum of squares of each X term when the first components of each kind are taken away.
Vector XSquares(Components const &components, Index predictive, Index xOrthogonal);
// Of each Y term after a prediction with a model of that size.
Vector YSquares(FittedModel const &model, Workset const &workset, Index size);

// Of the scores of one component, over the rows that have one.
struct ScoreSpread {
    double mean = 0;
    double deviation = 0; // NaN below two rows
    double smallest = 0;
    double largest = 0;
};
ScoreSpread SpreadOf(Eigen::Ref<Vector const> const &scores, Eigen::VectorXi const &observed);

// Residual variances of terms with these sums of squares.
Vector XVariances(FittedModel const &model, Vector const &squares, Index xSide);
Vector YVariances(FittedModel const &model, Vector const &squares, Index used);
// After the first components in the overall order, a prediction of Y being that of the predictive ones among them.
Vector XVariancesAfter(FittedModel const &model, Index first);
Vector YVariancesAfter(FittedModel const &model, Workset const &workset, Index first);
// Of a model of that size.
Vector XVariancesOfSize(FittedModel const &model, Index size);
Vector YVariancesOfSize(FittedModel const &model, Workset const &workset, Index size);

// Residual sum of squares of each row over its observed cells. With weights, one for each term, residuals are
// multiplied by them first; without any they count as they are.
Vector XRowSquares(Components const &components, Block const &x, Scores const &scores, Index size,
                   Vector const &weights);
Vector YRowSquares(Components const &components, Block const &y, Scores const &scores, Index size);

// 1 - sqrt(variance/variance without model): how well the model describes each X term.
Vector ModellingPower(FittedModel const &model, Vector const &variances);
// Weights of X residuals by the modelling power of a model of that size. Their squares add up to the number of terms.
Vector PowerWeights(FittedModel const &model, Index size);

// s_i^2, the squared distances of rows to the model, from their residual sums of squares (Wold 1976). `inflation` is 1
// for new rows, and makes up for what the workset spent on the model: N/d_r. NaN for a row without observed cell.
Vector SquaredDistances(Vector const &rowSquares, Eigen::VectorXi const &observed, double terms, double freedom,
                        double inflation);
// Mean over the rows that have one.
double Pooled(Vector const &squaredDistances);

} // namespace engine
