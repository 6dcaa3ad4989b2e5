#pragma once

#include "platform/project/NCProject.h"
#include "specification/ProjectVectorData.h"
#include "tests/support/ProbeVector.h"
#include "tests/support/RecordingProject.h"
#include "utilities/DefaultSelection.h"

#include <functional>
#include <string>

using namespace probes;
using Change = std::function<void(ProjectVectorData &)>;

constexpr int open = -1;

// Observations o1 to o6 (second alias s1 to s6) in batches A A B B C C, variables v1 to v5 (w1 to w5, and a numeral
// alias), model 1 PLS with 3 components, X v1 v2 v3 and Y v4 v5, model 2 OPLS with 1 + 2 components, model 3 O2PLS with
// 2 + 2 + 1, model 4 of batches A B C with 2 components and phases. Data set 1 has all, data set 2 o2 and v2, the
// prediction set o5, o6 and v5; predicted on model 1 are o5 and o6, on model 4 o3, o4 and o5.
struct World {
    boost::shared_ptr<RecordingProject> project = MakeRecordingProject();
    ProjectUtilities::DefaultSelection defaults{project};

    World() {
        RecordingProject &made = *project;
        made.observations.AddAlias({"id", "", VarObs::Role::Plain, {"o1", "o2", "o3", "o4", "o5", "o6"}});
        made.observations.AddAlias({"second", "other", VarObs::Role::Plain, {"s1", "s2", "s3", "s4", "s5", "s6"}});
        made.observations.AddAlias({"batch", "", VarObs::Role::Batch, {"A", "A", "B", "B", "C", "C"}});
        made.variables.AddAlias({"name", "", VarObs::Role::Plain, {"v1", "v2", "v3", "v4", "v5"}});
        made.variables.AddAlias({"second", "other", VarObs::Role::Plain, {"w1", "w2", "w3", "w4", "w5"}});
        made.variables.AddAlias({"number", "", VarObs::Role::Plain, {"1", "2", "3", "4", "5"}});
        made.AddModel(ModelTypeE::PLS, 3, 0, 0, 3, 2);
        made.AddModel(ModelTypeE::OPLS, 1, 2, 0, 3, 1);
        made.AddModel(ModelTypeE::O2PLS, 2, 2, 1, 3, 1);
        made.AddBatchModel(2, {"A", "B", "C"});
        made.Info(4).classOrPhaseNames = {"start", "end"};
        made.AddWorkset(1, {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5});
        made.AddWorkset(4, {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4});
        made.AddPredictions(1, {5, 6});
        made.AddPredictions(4, {3, 4, 5});
        made.AddData(1, {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5}).variableAliases = {1, 2, 3};
        made.AddData(2, {2}, {2});
        made.AddData(0, {5, 6}, {5});
    }

    // A record of "M1", "DS1", "PS" or nothing.
    ProjectVectorData Data(ProjectVector const &vector, std::string const &source, Change const &change = {}) const {
        ProjectVectorData data;
        data.SetProjectVector(&vector);
        if (source.starts_with("M"))
            data.SetModelInfoPtr(project->GetModelInfo(std::stoi(source.substr(1))));
        if (source.starts_with("DS"))
            data.SetDataSet(std::stoi(source.substr(2)));
        if (change)
            change(data);
        return data;
    }
};

inline Change Number(int number, int number2 = open, int batch = open) {
    return [=](ProjectVectorData &data) {
        data.SetNumber(static_cast<std::uint32_t>(number));
        data.SetNumberID2(static_cast<std::uint32_t>(number2));
        data.batchIx = batch;
    };
}
