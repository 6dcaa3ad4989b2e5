// Models of batches on the road of the real engine: 500 batches and 5,000, of 150 to 250 rows of 20 variables each.

#include "engine/Project.h"
#include "engine/TableReader.h"
#include "platform/project/GetProjectData.h"
#include "tests/support/TemporaryFolder.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <map>
#include <random>

namespace {

constexpr int variables = 20;

engine::ImportedTable Process(int batches) {
    std::mt19937 random(3);
    std::normal_distribution<double> noise;
    engine::ImportedTable table;
    table.name = "process";
    table.batchColumn = "batch";
    table.columns.resize(variables + 1);
    std::vector<std::string> ids, names, headings;
    for (int batch = 1; batch <= batches; ++batch) {
        int const rows = 150 + static_cast<int>(random() % 101);
        double const level = noise(random);
        for (int i = 0; i < rows; ++i) {
            ids.push_back(std::to_string(ids.size() + 1));
            names.push_back("B" + std::to_string(batch));
            double const way = static_cast<double>(i) / (rows - 1);
            for (int k = 0; k < variables; ++k)
                table.columns[static_cast<std::size_t>(k)].push_back(
                    static_cast<float>(level + way * k + std::sin(6 * way + k) + 0.3 * noise(random)));
            table.columns.back().push_back(static_cast<float>(40 * way + 0.1 * noise(random)));
        }
    }
    for (int k = 1; k <= variables; ++k)
        headings.push_back("x" + std::to_string(k));
    headings.push_back("time");
    table.observations = {{"id", engine::PackedTexts(ids)}, {"batch", engine::PackedTexts(names)}};
    table.variables = {{"name", engine::PackedTexts(headings)}};
    return table;
}

engine::ModelRequest Request(bool byMaturity) {
    engine::ModelRequest request;
    request.type = ModelTypeE::PLS;
    request.responses = {"time"};
    request.components = 3;
    request.evolution = engine::EvolutionRequest{.alignByMaturity = byMaturity};
    return request;
}

// Model 1 is aligned by length, model 2 by maturity.
engine::Project const &ProjectOf(int batches) {
    static TemporaryFolder const folder;
    static std::map<int, boost::shared_ptr<engine::Project>> projects;
    auto &project = projects[batches];
    if (!project) {
        project = engine::Project::Create(folder / (std::to_string(batches) + ".project").c_str(), Process(batches));
        project->AddModel(Request(false));
        project->AddModel(Request(true));
    }
    return *project;
}

// Each variable of the workset, copied to fresh memory: what the others are measured by.
void CopyOfAllVariables(benchmark::State &state) {
    engine::Project const &project = ProjectOf(static_cast<int>(state.range(0)));
    auto const data = project.GetDataSet(1);
    for (auto _ : state)
        for (int k = 0; k < variables; ++k) {
            auto const values = data->GetVariable(data->GetVariables()[static_cast<std::size_t>(k)]);
            std::vector<float> copy(values.begin(), values.end());
            benchmark::DoNotOptimize(copy.data());
        }
}

template <typename Ask>
void ForAllVariables(benchmark::State &state, int model, Ask ask) {
    engine::Project const &project = ProjectOf(static_cast<int>(state.range(0)));
    GetProjectData const statistics(project);
    auto const view = project.GetModel(model);
    benchmark::DoNotOptimize(statistics.GetAlignedTimeMaturity(model)); // the grid is made once
    for (auto _ : state)
        for (ColumnTerm const &term : view->GetXColumnTerms())
            benchmark::DoNotOptimize(ask(statistics, term));
}

void AlignmentOfAllVariables(benchmark::State &state, int model) {
    ForAllVariables(state, model, [model](GetProjectData const &statistics, ColumnTerm const &term) {
        return statistics.GetAlignedXVar(model, true, true, term, nullptr);
    });
}

void SumsOfAllVariables(benchmark::State &state, int model) {
    ForAllVariables(state, model, [model](GetProjectData const &statistics, ColumnTerm const &term) {
        return statistics.GetXVarAlignedOOCBatchSums(model, true, true, term, 3, -3);
    });
}

void FitOfEvolution(benchmark::State &state) {
    auto const table = Process(static_cast<int>(state.range(0)));
    TemporaryFolder const folder;
    auto const project = engine::Project::Create(folder / "fit.project", table);
    project->AddModel(Request(false)); // makes the lists of the project's items
    for (auto _ : state)
        benchmark::DoNotOptimize(project->AddModel(Request(false)));
}

BENCHMARK(CopyOfAllVariables)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(AlignmentOfAllVariables, by_length, 1)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(AlignmentOfAllVariables, by_maturity, 2)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SumsOfAllVariables, by_length, 1)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(SumsOfAllVariables, by_maturity, 2)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);
BENCHMARK(FitOfEvolution)->Arg(500)->Arg(1250)->Arg(2500)->Arg(5000)->Unit(benchmark::kMillisecond);

} // namespace
