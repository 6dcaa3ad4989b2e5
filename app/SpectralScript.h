#pragma once

#include "app/PlotScript.h"
#include "platform/containers/NCDataVector.h"

#include <string>

// Scripts that make gnuplot draw series over lags, frequencies and wavelet coefficients, which are the columns of these
// tables. NCError when there is nothing to draw.

// Bars, or points for several series, with the band that holds 95 % of the correlations of noise over so many items
// (Box & Jenkins 1976).
std::string CorrelationScript(ProjectData const &table, int items, PlotStyle const &style);
// Powers, which are in decibels or else positive, on a logarithmic axis where they spread.
std::string SpectrumScript(ProjectData const &table, bool inDecibel, PlotStyle const &style);
// Coefficients in their order.
std::string CoefficientScript(ProjectData const &table, PlotStyle const &style);
// What each scale tells of the series, curves above each other in one unit, with their share of the energy in percent.
std::string StructureScript(ProjectData const &table, NCDataVector<float> const &energy,
                            ProjectVector::VectorTypeEnum axis, PlotStyle const &style);
