#pragma once

#include "app/Contribution.h"
#include "app/ContributionValues.h"
#include "app/PlotScript.h"

#include <string>

// How many bars of a picture of that height can be told apart.
std::size_t RoomForBars(PlotStyle const &style);

// The script that makes gnuplot draw the first bars, the largest on top, and beside them the first variable itself.
std::string ContributionScript(Contribution const &contribution, std::size_t bars, VariableView const &view,
                               PlotStyle const &style);
