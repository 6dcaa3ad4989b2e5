#pragma once

#include "catalogue/ProjectVector.h"
#include "platform/text/Exception.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

// Where the vectors of a series come from.
struct Source {
    ProjectVector::DataTypeEnum data = ProjectVector::DataTypeNone;
    boost::shared_ptr<ModelInfo const> model;
    std::string name;   // "model 1"
    std::string option; // what lists the vectors of this source
};

// The vector of that name on an axis; null when the source has none.
ProjectVector const *Find(std::string const &name, ProjectVector::VectorTypeEnum axis, Source const &source);

// The first axis on which the source has a vector of the name.
std::optional<ProjectVector::VectorTypeEnum> AxisOf(std::string const &name, Source const &source);

// The error that there is no such vector (on that axis), and where to look instead.
NCError Unknown(std::string const &name, std::optional<ProjectVector::VectorTypeEnum> axis, Source const &source);

// What the values of vectors on an axis belong to: "observation", "variable", ...
std::string ItemOf(ProjectVector::VectorTypeEnum axis);

// Adds the option --type.
void AddAxisOption(CLI::App &command, std::optional<ProjectVector::VectorTypeEnum> &axis);
