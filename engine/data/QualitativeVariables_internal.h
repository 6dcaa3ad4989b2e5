#pragma once

#include "engine/ProjectFile.h"
#include "engine/models/ModelDefinition.h"

namespace engine {

// A column of texts of the observations that models of the project have as a variable. It is a variable of the project
// like those of data sets.
struct QualitativeVariable {
    std::string heading;
    int dataSet = 0; // the newest one when the variable was first asked for, behind whose variables it stands
    std::vector<std::string> levels; // of all models, in the order in which they were first asked for
};

// In the order in which they were first asked for.
std::vector<QualitativeVariable> ReadQualitativeVariables(ProjectFile const &file);
// Makes the levels of a model known to the project. What it knows keeps its place.
void AddQualitativeVariables(ProjectFile &file, std::vector<Level> const &levels);

} // namespace engine
