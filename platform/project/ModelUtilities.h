#pragma once

#include "platform/export.h"

#include <string>
#include <vector>

class NCProject;

// Which models FindMatchingModels takes for matching.
struct MatchingModelE {
    enum Matching : int {
        SamePhaseGroup = 0, // made together with the model, one for each phase
        SameType = 1        // of those, the ones of the same type
    };
};

// Questions about the models of a project, put together from what the project tells. A model or data set that the
// project does not have is answered as one that has nothing.
struct DATASERIES_API ModelUtilities {
    static bool ModelHasComponents(NCProject const &project, int model);

    // Components of the orthogonal signal correction that the data set was made by; 0 for any other.
    static int NumberOfOSCComponents(NCProject const &project, int dataSet);

    // The given model if it has lagged variables and components, else the first such model of the project; 0 when none.
    static int GetFirstLaggedModel(NCProject const &project, int model);

    // The data set of observations whose batches are the rows of a batch-level model; 0 when there is none.
    static int GetBatchLevelSourceDS(NCProject const &project, int model);

    // The model of observations whose results are the variables of a batch-level model, of that phase (empty: the
    // first); 0 when there is none.
    static int GetBatchLevelSourceModel(NCProject const &project, int model, std::string const &phase = {});

    // The phase of a model of one phase; empty for any other model.
    static std::string GetPhaseName(NCProject const &project, int model);

    // The numbers of the models that match, the given one included, in the order of the project's list; the model alone
    // where it was not made for phases, and none where it is unknown. `fitted` leaves out those without components.
    static std::vector<int> FindMatchingModels(NCProject const &project, int model, bool fitted,
                                               MatchingModelE::Matching matching);
};
