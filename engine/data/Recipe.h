#pragma once

#include "engine/batches/BatchLevelRecipe.h"

#include <string>
#include <variant>
#include <vector>

namespace engine {

// How a data set is made of results of models, for a model above them (Wold et al. 1996): a column for each, then
// variables as they are. Its rows are the observations that all these models have.
struct HierarchyRecipe {
    struct Result {
        int model = 0;
        int kind = 0;  // one of VariableInfo::Result
        int place = 0; // of the component or of the term among those of its side, from 1; 0 for a result of all
        bool operator==(Result const &) const = default;
    };
    struct Variable {
        int dataSet = 0;
        int column = 0; // from 0
        bool operator==(Variable const &) const = default;
    };

    std::vector<Result> results;
    std::vector<Variable> variables;

    // The models, each once, in order of appearance.
    std::vector<int> Models() const;

    bool operator==(HierarchyRecipe const &) const = default;
};

// How a derived data set was made.
struct Recipe {
    std::variant<BatchLevelRecipe, HierarchyRecipe> how;
    // Of rows of a prediction set: the data set that has the same columns for the rows of the models, and the
    // prediction set.
    int trained = 0;
    int predictions = 0;

    template <typename How>
    How const *As() const {
        return std::get_if<How>(&how);
    }

    // The models that it takes results of, each once.
    std::vector<int> Models() const;

    // A binary text with version and checksum. Load throws NCError for a text that Save did not write.
    std::string Save() const;
    static Recipe Load(std::string const &saved);

    bool operator==(Recipe const &) const = default;
};

} // namespace engine
