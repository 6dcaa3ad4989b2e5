#pragma once

#include "app/Chart.h"
#include "app/PlotScript.h"

#include <string>
#include <vector>

// The script that makes gnuplot draw a batch control chart: average and limits, the batches as thin grey curves and
// those that are chosen in colour, with a ring about each point that is outside; those that are marked as
// broad bands with their names. Phases stand side by side, with the names
// and the maturity of each. The scale is that of the limits and of the chosen batches; of all batches when none is
// chosen. Marked batches are chosen, too, where any is.
std::string ChartScript(std::vector<ChartPhase> const &phases, ChartQuestion const &question,
                        std::vector<std::string> const &chosen, PlotStyle const &style);

// Bars, the largest first, that are stacked of what each phase has.
std::string SumsScript(ChartSums const &sums, ChartQuestion const &question, PlotStyle const &style);
