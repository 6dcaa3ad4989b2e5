#pragma once

#include "app/PlotScript.h"
#include "engine/Classification.h"

#include <string>
#include <vector>

// The scripts that make gnuplot draw how well classes are told apart. `by` says by what: "by cross-validation".

// The confusion table as a matrix: a row for each true class, a column for each predicted one, darker the more of the
// true class are there; with the counts, and their shares of the true class.
std::string ConfusionScript(std::vector<std::string> const &classes, engine::ConfusionTable const &table,
                            std::string const &by, PlotStyle const &style);

// A curve for each class against the rest, with the area below it. NCError when no class has one.
std::string RocScript(std::vector<std::string> const &classes, std::vector<engine::RocCurve> const &curves,
                      std::string const &by, PlotStyle const &style);
