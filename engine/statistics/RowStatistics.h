#pragma once

#include "engine/statistics/RowSet.h"
#include "engine/statistics/Units.h"

#include <utility>

namespace engine {

// Statistics with one value for each row, in double, NaN where missing. Components and terms count from 0.

Vector ScoresT(RowSet const &rows, Index component);
Vector ScoresTo(RowSet const &rows, Index component);

// Distance to a model of that size.
Vector DModX(RowSet const &rows, Index size, TriState::State normalised, TriState::State weighted);

// The components, from 1 in the overall order without those of the Y side, that a range names: 0 and what is too large
// stand for the ends, a first one of -1 for the last. Nothing when there are none.
std::optional<std::pair<int, int>> ComponentRange(ModelView const &model, int first, int last);
std::string RangeLabel(std::pair<int, int> const &range); // "[1-3]"
// Hotelling's T2 over such a range.
Vector T2Range(RowSet const &rows, std::pair<int, int> const &range);

Vector XValues(RowSet const &rows, Index term, Units units);
Vector YValues(RowSet const &rows, Index term, Units units);
// By a model of that size.
Vector YPredictions(RowSet const &rows, Index term, Index size, Units units);
// What the whole model leaves of X.
Vector XResiduals(RowSet const &rows, Index term, Units units);
// The same of a cross-validated workset by the rounds that left the rows out, in the units of the data set.
Vector ValidatedYPredictions(RowSet const &rows, Index term, Index size);

} // namespace engine
