#pragma once

#include "app/PlotScript.h"
#include "platform/numerics/ControlChartData.h"

#include <string>

// The script that makes gnuplot draw a control chart of what is called `name`: its points over the items or subgroups
// that they belong to, the centre and the limits at two and three standard deviations. What is outside is ringed, on a
// chart of means also what completes a run, with the number of its rule. Sums stand on both sides of 0, between their
// decision intervals. Throws NCError when there is nothing to draw.
std::string ControlChartScript(ControlChart const &chart, ControlChartData const &settings, ColumnIDs const &items,
                               ProjectVector::VectorTypeEnum axis, std::string const &name, PlotStyle const &style);
