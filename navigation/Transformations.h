#pragma once

#include "platform/export.h"

class SelectDataSeriesData;
class TransformationData;

// What transformations a selection can carry.
namespace DataSeriesUtilities {

// Sets the transformation to none where no table of the selection could be built with it, or only a part of it, which
// happens when the selection has changed since. That is:
// - any transformation, where all vectors are counting rows or identifiers;
// - a cross correlation, or a difference, without a vector that runs along the axis of the selection to correlate with,
//   to subtract or to divide by; for a difference of observations both may run along aligned points instead;
// - a histogram or dot plot, unless there is one such vector beside them;
// - a spectrum without room for a segment of 16 items; an EWMA of subgroups of more than half of the items;
// - a wavelet structure without scales.
// All others stay as they are. Items that are common to the vectors count, selected or not.
DATASERIES_API void ValidateTransformationType(SelectDataSeriesData const *selection,
                                               TransformationData &transformation);

// A histogram may be chosen: there already is a transformation, or at most one series, and counting rows alone as axes.
DATASERIES_API bool CanHistogramTransform(SelectDataSeriesData const *selection);

} // namespace DataSeriesUtilities
