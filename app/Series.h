#pragma once

#include "app/Decorations.h"
#include "app/VectorSearch.h"
#include "catalogue/ProjectVector.h"
#include "engine/Project.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

// What an argument string names: "t M1,1,0,0".
struct NamedSeries {
    ProjectVector const *vector;
    Source source;
    std::string arguments; // "M1,1,0,0"; the units of values are always said

    std::string Text() const;
};
// On the axis, or on the first one that has the vector and on which the text gives data. UsageError for what is no
// argument string, NCError for a vector or a source that is not there.
NamedSeries FindSeries(engine::Project const &project, std::string const &text,
                       std::optional<ProjectVector::VectorTypeEnum> axis);

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
