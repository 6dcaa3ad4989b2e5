// Whether a selection can go to each of the other models of a project of 1,000 models, every fourth one of 1,000
// batches, with 100,000 observations and 200 variables each: as a user's window asks it. Told are the typical time of
// one answer and the longest of all, in microseconds.

#include "catalogue/ProjectVectorHandler.h"
#include "navigation/ModelSwitcher.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/support/RecordingProject.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <numeric>

namespace {

constexpr int models = 1'000;
constexpr int rows = 100'000;
constexpr int variables = 200;
constexpr int batches = 1'000;

using Selection = SelectDataSeriesData;

boost::shared_ptr<RecordingProject> MakeProject() {
    auto const project = MakeRecordingProject();
    std::vector<std::string> names;
    for (int batch = 1; batch <= batches; ++batch)
        names.push_back("batch " + std::to_string(batch));
    std::vector<std::uint32_t> numbers(rows);
    std::iota(numbers.begin(), numbers.end(), 1u);
    ObservationInfos const all(numbers.begin(), numbers.end());
    for (int model = 1; model <= models; ++model) {
        if (model % 4 == 0)
            project->AddBatchModel(3, names);
        else
            project->AddModel(model % 4 == 1 ? ModelTypeE::PLS : ModelTypeE::OPLS, 3, 1, 0, variables, 1);
        // Every third lacks some observations, which no selection shows.
        project->Model(model).rows = all;
        if (model % 3 == 0)
            std::erase_if(project->Model(model).rows,
                          [](ObservationInfo const &row) { return row.GetUniqueID() % (rows / 10) == rows / 20; });
        // Terms stand at other places in the next model.
        ColumnTerms terms;
        for (int k = 0; k < variables; ++k)
            terms.AppendTerm(ColumnTerm(static_cast<std::uint32_t>((k + model) % variables + 1)));
        project->Model(model).x = terms;
    }
    return project;
}

Selection Make(boost::shared_ptr<NCProject> const &project, char const *name, ProjectVector::VectorTypeEnum type,
               int model, int series) {
    auto const info = project->GetModelInfo(model);
    Selection selection(project, Selection::AxisX, type, -1, ProjectVector::ObsAndPred);
    ProjectVectorData data;
    data.SetModelInfoPtr(info);
    data.SetProjectVector(ProjectVectorHandler::Instance()->GetNumVector(type));
    selection.SetXAxis(data);
    data.SetProjectVector(
        ProjectVectorHandler::Instance()->FindVector(name, type, ProjectVector::DataTypeModel, info.get()));
    data.SetComponent(1);
    if (data.GetProjectVector()->IsContribution()) {
        data.obs1.resize(rows / 2);
        std::iota(data.obs1.begin(), data.obs1.end(), 1);
        std::erase_if(data.obs1, [](int row) { return row % (rows / 10) == rows / 20; });
        data.obs2.assign(data.obs1.rbegin(), data.obs1.rend());
    }
    for (int number = 1; number <= series; ++number) {
        data.SetNumber(static_cast<std::uint32_t>(number));
        data.batchIx = number;
        selection.AddSeries(data, false);
    }
    return selection;
}

void Tell(char const *what, Selection selection) {
    using Clock = std::chrono::steady_clock;
    DataSeriesUtilities::ModelSwitcher const switcher(&selection);
    std::vector<double> microseconds;
    int possible = 0;
    for (int model = 1; model <= models; ++model) {
        auto const start = Clock::now();
        possible += switcher.CanSwitchModel(model);
        microseconds.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    std::ranges::sort(microseconds);
    std::printf("%-44s %8.1f %8.1f  to %d models\n", what, microseconds[models / 2], microseconds.back(), possible);
}

} // namespace

int main() {
    auto const project = MakeProject();
    constexpr auto scores = ProjectVector::VectorTypeVariablesScores;
    constexpr auto loadings = ProjectVector::VectorTypeObservationsLoadings;
    constexpr auto aligned = ProjectVector::VectorTypeAligned;
    Tell("two scores", Make(project, "t", scores, 1, 2));
    Tell("distance, of another form elsewhere", Make(project, "DModX", scores, 1, 1));
    Tell("200 variables", Make(project, "XVar", scores, 1, variables));
    Tell("20 observations", Make(project, "XObs", loadings, 1, 20));
    Tell("contribution of all observations", Make(project, "ContSc", loadings, 1, 1));
    Tell("20 batches", Make(project, "t", aligned, 4, 20));
}
