#pragma once

#include "platform/export.h"

#include <span>
#include <vector>

// The rules by which a chart of means tells that its process is out of control (Western Electric 1956): 1 a point
// beyond three standard deviations; 2 two of three successive points beyond two, on one side; 3 four of five beyond
// one, on one side; 4 eight successive points on one side of the centre.
//
// For each point the first rule that it completes, 0 where it completes none: the point itself has to lie where the
// rule looks. A missing point (-99) lies nowhere. Nothing is out of control where `deviation`, the standard deviation
// of a point, is not above 0.
DATASERIES_API std::vector<int> RunRules(std::span<float const> points, double centre, double deviation);
