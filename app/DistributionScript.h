#pragma once

#include "app/PlotScript.h"
#include "platform/containers/NCDataVector.h"

#include <string>

// Scripts that make gnuplot draw how the values of what is called `name` are distributed: the counts of their bins with
// the normal curve of the same mean, deviation and area; and a dot for each value, as a table of places and heights
// has them, between two ends. There is a value to be counted; without a dot NCError.
std::string HistogramScript(NCDataVector<float> const &values, std::string const &name, PlotStyle const &style);
std::string DotPlotScript(ProjectData const &dots, float lo, float hi, std::string const &name, PlotStyle const &style);
// The first row of a table against the normal probabilities of its values in their order, (i - 1/2)/n, on which normal
// ones lie along a line (Wilk & Gnanadesikan 1968). The outermost are named.
std::string ProbabilityScript(ProjectData const &table, std::string const &name, PlotStyle const &style);
