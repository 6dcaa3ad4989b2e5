#pragma once

#include "engine/ModelRequest.h"
#include "platform/export.h"

namespace engine {

struct ImportedTable;

// Centre values for groups of observations (platform/project/LocalCentering.h), by names.
struct LocalCentring {
    struct Variable {
        std::string name;
        std::vector<double> centres;                // one for each group, of transformed values; -99 for none
        VariableTransformation transformation = {}; // that of the values
    };

    std::string identifier; // heading of the identifier column that tells an observation's group
    std::vector<std::string> groups;
    std::vector<Variable> variables;
};

// What means of groups are to be taken of.
struct GroupMeansRequest {
    int dataSet = 1;
    std::string identifier;
    std::vector<std::string> variables = {};                            // none: all but dates
    std::map<std::string, VariableTransformation> transformations = {}; // by variable, before the mean is taken
};

// The rows of a table as the centre values of groups that its first identifiers name.
DATASERIES_API LocalCentring CentresInTable(ImportedTable const &table, std::string const &identifier);

} // namespace engine
