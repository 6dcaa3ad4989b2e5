#pragma once

#include "engine/Progress.h"
#include "engine/Project.h"

class Output;

// A page of HTML that needs no other file: what a project holds, what its models explain, and its saved plots with
// pictures and tables. A plot that can't be shown any more is there with the reason. `name` is what the page is called.
void WriteReport(Output &output, boost::shared_ptr<engine::Project> const &project, std::string const &name,
                 engine::Progress const &progress);
