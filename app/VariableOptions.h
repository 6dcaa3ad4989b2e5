#pragma once

#include "engine/ModelRequest.h"

#include <map>
#include <string>
#include <vector>

// Options that name variables. A UsageError tells a text that can't be read.

// The names in lists that are separated by commas. A name that holds a comma stands in double quotes.
std::vector<std::string> NamesIn(std::vector<std::string> const &lists);

// "ash=log", "ash=power:1:0:0.5": the name of a variable, a kind and its constants.
std::map<std::string, engine::VariableTransformation> TransformationsIn(std::vector<std::string> const &texts);

// "uv", "X:uv", "Y:ctr", "ash=par": the scaling of all variables, of one side, or of the variable of that name.
void SetScaling(engine::ModelRequest &request, std::vector<std::string> const &texts);

// "ash=0.5": a variable and its weight.
std::map<std::string, double> WeightsIn(std::vector<std::string> const &texts);

// "process=flow,temperature": the name of a block and of its variables.
std::pair<std::string, std::vector<std::string>> BlockIn(std::string const &text);

// "feed:3", "feed:1-5": the name of a variable, "all" for each X variable, and how many rows earlier.
engine::VariableLags LagsIn(std::string const &text);

// "M1.t", "M2.to[1]", "M1.YPred": a model, what it gives (t, to, YPred, XVarRes, DModX, T2), and perhaps which one of
// them; the name of a variable is one of the variables.
void AddHierarchyItem(engine::HierarchyRequest &request, std::string const &text);

// "width*length", "width*width": the names of factors.
std::vector<std::string> FactorsIn(std::string const &text);
