#pragma once

#include "app/Explanation.h"

// The parts of the argument text of a contribution behind the common arguments, as they stand there, counts included.
struct ContributionText {
    std::string weights, response, group1, group2, components;
};
// Throws NCError for a text that ends too early, or has a count of weights or members that it does not hold: the
// library takes each count at its word.
ContributionText SplitContribution(ProjectVector const &vector, std::string const &arguments);

// What the project makes of these parts.
std::vector<ExplainedPart> ExplainContribution(engine::Project const &project, NamedSeries const &series);
