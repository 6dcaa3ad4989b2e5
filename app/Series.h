#pragma once

#include "app/Decorations.h"
#include "catalogue/ProjectVector.h"
#include "engine/Project.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

// Series of a project, by the argument strings of their vectors ("t M1,1,0,0").
struct SeriesRequest {
    std::filesystem::path project;
    std::vector<std::string> texts;
    // Without one: that on which the vector of the first text exists.
    std::optional<ProjectVector::VectorTypeEnum> axis;
};

// PROJECT, STRING... and --type.
void AddSeriesOptions(CLI::App &command, SeriesRequest &request);

// All series joined on the items that they have in common, and the axis along which these lie. Throws NCError that
// tells which text gives nothing, and why.
struct Series {
    TablePtr table;
    ProjectVector::VectorTypeEnum axis;
    std::vector<DrawnSeries> series;
};
Series ReadSeries(engine::Project const &project, SeriesRequest const &request);
