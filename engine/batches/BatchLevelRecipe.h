#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace engine {

// The headings of identifiers of batch-level variables beside their name: what they are values of, at which maturity,
// and in which phase.
constexpr char const *sourceHeading = "Source";
constexpr char const *maturityHeading = "Maturity";
constexpr char const *variablePhaseHeading = "Phase";

// How a data set with one row for each batch is made of models of the evolution of batches: a column for each statistic
// of a model at each of its aligned points, model after model, then initial conditions (Wold et al. 1998b).
struct BatchLevelRecipe {
    // What a model gives: so many statistics of each kind, in this order, each at so many points.
    struct Source {
        int model = 0;
        int scores = 0;     // t
        int orthogonal = 0; // to
        int variables = 0;  // X terms
        int points = 0;

        int Statistics() const { return scores + orthogonal + variables; }
        bool operator==(Source const &) const = default;
    };
    // What a column holds, counted from 0.
    struct Place {
        std::size_t source = 0;
        int statistic = 0;
        int point = 0;
    };

    int dataSet = 0;             // of the models
    std::vector<Source> sources; // one for each phase
    int conditions = 0;          // the data set of initial conditions, 0 for none

    // Nothing for a column of initial conditions.
    std::optional<Place> PlaceOf(int column) const;
    std::int64_t ColumnsOfModels() const;

    bool operator==(BatchLevelRecipe const &) const = default;
};

} // namespace engine
