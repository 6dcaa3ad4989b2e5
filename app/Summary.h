#pragma once

#include "app/Listing.h"
#include "platform/forward.h"

namespace engine {
class Project;
}

// The models of a project, and its data sets and prediction sets.
Listing ModelsOf(engine::Project const &project);
Listing DataSetsOf(engine::Project const &project);

// What each component of a model explains and predicts; with the errors of the responses in their own units, fitted and
// cross-validated.
Listing SummaryOf(engine::Project const &project, int model, bool withErrors);

// The models that were fitted together, one for each phase, and what each explains and predicts as a whole.
Listing SummaryOfPhases(engine::Project const &project, int model);

// What all components of a model explain or predict, by a statistic that adds up over them; NaN where there is nothing.
double OfAllComponents(TablePtr const &table);

// "a, b, c and 4 more".
std::string Listed(std::vector<std::string> const &names);

// What is to be known of the fit by whoever relies on it, a line for each: nothing when all is well.
std::string NotesOn(engine::Project const &project, int model);
