#pragma once

#include "catalogue/ProjectVector.h"
#include "engine/Project.h"
#include "platform/text/Exception.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

// Where the vectors of a series come from.
struct Source {
    ProjectVector::DataTypeEnum data = ProjectVector::DataTypeNone;
    boost::shared_ptr<ModelInfo const> model;
    int dataSet = 0;
    std::string name;   // "model 1"
    std::string option; // what lists the vectors of this source
};

// The number that a text is, when it is just that.
std::optional<int> NumberIn(std::string_view text);

// "M2", "DS1" or "PS" as a source. UsageError for another text, NCError for what the project does not have; both name
// the text that asks for it, where one is given.
Source ReadSource(engine::Project const &project, std::string const &text, std::string const &asking = {});

// The kinds of models in a mask: "PLS, OPLS".
std::string KindsOf(ModelTypeE::Model mask);

// The vector of that name on an axis; null when the source has none.
ProjectVector const *Find(std::string const &name, ProjectVector::VectorTypeEnum axis, Source const &source);

// The axes on which the source has a vector of the name, and the first of them.
std::vector<ProjectVector::VectorTypeEnum> AxesOf(std::string const &name, Source const &source);
std::optional<ProjectVector::VectorTypeEnum> AxisOf(std::string const &name, Source const &source);

// The error that there is no such vector (on that axis), and where to look instead.
NCError Unknown(std::string const &name, std::optional<ProjectVector::VectorTypeEnum> axis, Source const &source);

// What the values of vectors on an axis belong to: "observation", "variable", ...
std::string ItemOf(ProjectVector::VectorTypeEnum axis);

// Adds the option --type.
void AddAxisOption(CLI::App &command, std::optional<ProjectVector::VectorTypeEnum> &axis);
