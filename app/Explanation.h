#pragma once

#include "app/Series.h"

#include <string>
#include <vector>

// A part of what an argument string asks for or gets, and its meaning.
struct ExplainedPart {
    std::string part;
    std::string text; // as it stands in the string; empty for what is not in it
    std::string meaning;
};

// What the project makes of each argument.
std::vector<ExplainedPart> ExplainArguments(engine::Project const &project, NamedSeries const &series);

// Shape, range, missing values with their causes, degrees of freedom and units of what it gets; the reason when that is
// nothing.
std::vector<ExplainedPart> ExplainResult(engine::Project const &project, NamedSeries const &series);
