// Contributions of groups among 1,000,000 observations of 50 variables, from the builder's question to its table. They
// cost the rows of the groups, whatever the size of the model; the first one of a model also what is kept after it.

#include "benchmarks/FitData.h"
#include "building/ProjectDataBuilder.h"
#include "contribution/ContributionDataBuilder.h"
#include "engine/Project.h"
#include "engine/TableReader.h"
#include "tests/support/TemporaryFolder.h"

#include <benchmark/benchmark.h>

#include <map>

namespace {

using Builder = ContributionDataBuilder;

constexpr int variables = 50;

engine::ImportedTable Simulated(int rows) {
    std::mt19937_64 generator(7);
    engine::Matrix const cells = engine::SimulateCells(rows, variables + 1, 4, generator);
    engine::ImportedTable table;
    table.observations = {{"id", engine::PackedTexts()}};
    table.variables = {{"name", engine::PackedTexts()}};
    for (int row = 1; row <= rows; ++row)
        table.observations.front().texts.Append("o" + std::to_string(row));
    for (int k = 1; k <= variables + 1; ++k)
        table.variables.front().texts.Append("v" + std::to_string(k));
    for (auto const &column : cells.colwise())
        table.columns.emplace_back(column.begin(), column.end());
    return table;
}

// Model 1 is a PLS of the last variable on the others.
engine::Project &ProjectOf(int rows) {
    static TemporaryFolder const folder;
    static std::map<int, boost::shared_ptr<engine::Project>> projects;
    auto &project = projects[rows];
    if (!project) {
        project = engine::Project::Create(folder / (std::to_string(rows) + ".project").c_str(), Simulated(rows));
        engine::ModelRequest request;
        request.type = ModelTypeE::PLS;
        request.responses = {"v" + std::to_string(variables + 1)};
        request.components = 3;
        request.crossValidationGroups = 0;
        project->AddModel(request);
    }
    return *project;
}

// Observations from all over the table.
Builder::Group GroupOf(std::int64_t count, std::int64_t rows) {
    Builder::Group group;
    for (std::int64_t member = 0; member < count; ++member)
        group.push_back(static_cast<std::uint32_t>(1 + member * (rows / count)));
    return group;
}

Builder::SelectionPtr ScoresOf(Builder &builder, Builder::Group const &group) {
    return builder.CreateScoreContributionDataSeries(1, {}, group);
}
Builder::SelectionPtr DistanceOf(Builder &builder, Builder::Group const &group) {
    return builder.CreateDModXContributionDataSeries(1, -1, group);
}
Builder::SelectionPtr ResponseOf(Builder &builder, Builder::Group const &group) {
    return builder.CreateYPredContributionDataSeries(1, 1, -1, {}, group);
}

// Rows of the model, rows of the group.
void Contribution(benchmark::State &state, Builder::SelectionPtr (*ask)(Builder &, Builder::Group const &)) {
    engine::Project &project = ProjectOf(static_cast<int>(state.range(0)));
    Builder::Group const group = GroupOf(state.range(1), state.range(0));
    Builder builder(project, false, true);
    builder.SetComponents({1, 2});
    auto const explain = [&] {
        Builder::SelectionPtr const selection = ask(builder, group);
        return std::unique_ptr<ProjectData>(ProjectDataUtilities::ProjectDataBuilder(selection.get()).Build());
    };
    explain();
    for (auto _ : state)
        benchmark::DoNotOptimize(explain());
}

void Sizes(benchmark::internal::Benchmark *benchmark) {
    benchmark->ArgsProduct({{10'000, 1'000'000}, {1, 100, 10'000}})->Unit(benchmark::kMillisecond);
}
BENCHMARK_CAPTURE(Contribution, scores, ScoresOf)->Apply(Sizes);
BENCHMARK_CAPTURE(Contribution, distance, DistanceOf)->Apply(Sizes);
BENCHMARK_CAPTURE(Contribution, response, ResponseOf)->Apply(Sizes);

} // namespace
