#include "benchmarks/FitData.h"
#include "benchmarks/Timing.h"
#include "building/CreateProjectData.h"
#include "engine/Project.h"
#include "engine/TableReader.h"
#include "tests/engine/RegistryWalk.h"
#include "tests/support/TemporaryFolder.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <map>
#include <numeric>

// Statistics of fitted models, asked through the catalogue. The counters of each measurement:
//   x_memcpy  time as a multiple of copying the bytes of the answer into fresh memory
//   x_pass    time as a multiple of one pass over the cells of X

namespace {

using engine::Index;
using engine::ModelRequest;
using engine::Project;
using Axis = ProjectVector::VectorTypeEnum;

engine::TextColumn Names(std::string const &prefix, Index count, Index first = 1) {
    engine::TextColumn names{"id", {}};
    for (Index i = first; i < first + count; ++i)
        names.texts.Append(prefix + std::to_string(i));
    return names;
}

engine::ImportedTable AsTable(engine::Matrix const &cells, Index firstObservation = 1) {
    engine::ImportedTable table;
    table.observations = {Names("o", cells.rows(), firstObservation)};
    table.variables = {Names("v", cells.cols())};
    for (auto const &column : cells.colwise())
        table.columns.emplace_back(column.begin(), column.end());
    return table;
}

// A project with one data set, in a folder of its own.
struct Setting {
    TemporaryFolder folder;
    std::filesystem::path const file = folder / "statistics.project";
    boost::shared_ptr<Project> project = Project::Create(file);
};

constexpr Index manyRows = 100'000;
constexpr Index fewColumns = 50;

// Model 1 is a PLS of the last variable on the others.
struct ManyRows : Setting {
    ManyRows() {
        std::mt19937_64 generator(7);
        engine::Matrix const cells = engine::SimulateCells(manyRows, fewColumns + 1, 4, generator);
        project->AddDataSet(AsTable(cells));
        project->AddModel(
            {.type = ModelTypeE::PLS, .responses = {"v" + std::to_string(fewColumns + 1)}, .components = 4});
    }

    static ManyRows &Instance() {
        static ManyRows setting;
        return setting;
    }
};

double SecondsOfPass() {
    std::vector<float> const cells(static_cast<std::size_t>(manyRows * fewColumns), 1.5f);
    return TypicalSecondsOf([&] { benchmark::DoNotOptimize(std::accumulate(cells.begin(), cells.end(), 0.0)); });
}

// Of the variables from 1 to `count`.
std::list<std::string> ResidualsOf(int count) {
    std::list<std::string> texts;
    for (int variable = 1; variable <= count; ++variable)
        texts.push_back("XVarRes M1,4," + std::to_string(variable) + ",0,1,1");
    return texts;
}

// With `kept` false, nothing is there yet but the model: the first question after a project was opened.
void Ask(benchmark::State &state, std::list<std::string> const &texts, Axis axis, bool kept) {
    auto &setting = ManyRows::Instance();
    double seconds = 0;
    std::size_t bytes = 0;
    for (auto _ : state) {
        state.PauseTiming();
        if (!kept) {
            setting.project.reset();
            setting.project = Project::OpenToRead(setting.file);
            setting.project->GetModel(1);
        }
        state.ResumeTiming();
        TablePtr table;
        seconds += SecondsOf(
            [&] { table = ProjectDataUtilities::CreateProjectData(*setting.project).GetProjectData(texts, axis); });
        bytes = table->GetMatrix().Values().size_bytes();
    }
    seconds /= static_cast<double>(state.iterations());
    state.counters["x_memcpy"] = seconds / SecondsOfCopy(bytes);
    state.counters["x_pass"] = seconds / SecondsOfPass();
}

constexpr auto byObservation = ProjectVector::VectorTypeVariablesScores;
constexpr auto byVariable = ProjectVector::VectorTypeObservationsLoadings;
std::list<std::string> const distance = {"DModX M1,4,0,0"};
std::list<std::string> const predicted = {"YPred M1,4,1,0,1,1"};
std::list<std::string> const importance = {"VIP M1,4,0,0"};
// T2 of one observation, and the residuals of another one.
std::list<std::string> const contribution = {"ContSc M1,0,0,0,4,2,2,2,2,0,0,1,77777,0,1,2,3,4"};
std::list<std::string> const residual = {"ContDModX M1,0,0,0,1,8,0,1,77777,0,0,4"};

BENCHMARK_CAPTURE(Ask, DModX_first, distance, byObservation, false)->Iterations(30)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Ask, DModX, distance, byObservation, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Ask, XVarRes, ResidualsOf(1), byObservation, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Ask, XVarRes_of_10, ResidualsOf(10), byObservation, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Ask, XVarRes_of_all, ResidualsOf(fewColumns), byObservation, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Ask, YPred, predicted, byObservation, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Ask, VIP_first, importance, byVariable, false)->Iterations(30)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Ask, VIP, importance, byVariable, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Ask, ContSc_first, contribution, byVariable, false)->Iterations(30)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Ask, ContSc, contribution, byVariable, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Ask, ContDModX, residual, byVariable, true)->Unit(benchmark::kMicrosecond);

// Models of all kinds, each with the same prediction set.
struct AllKinds : Setting {
    static constexpr Index rows = 2000;

    AllKinds() {
        std::mt19937_64 generator(7);
        project->AddDataSet(AsTable(engine::SimulateCells(rows, 500, 4, generator)));
        auto const predictions = AsTable(engine::SimulateCells(rows, 500, 4, generator), rows + 1);
        for (auto const type : {ModelTypeE::PCA, ModelTypeE::PLS, ModelTypeE::OPLS, ModelTypeE::O2PLS}) {
            ModelRequest request{.type = type, .components = 2, .xOrthogonal = 1, .yOrthogonal = 1};
            if (type != ModelTypeE::PCA)
                for (Index y = type == ModelTypeE::O2PLS ? 251 : 498; y <= 500; ++y)
                    request.responses.push_back("v" + std::to_string(y));
            project->AddModel(request);
            project->AddPredictions(predictions, true);
        }
    }
};

// The first of them by their seconds, in milliseconds of each iteration.
std::string SlowestOf(std::map<std::string, double> const &seconds, std::int64_t iterations) {
    std::vector<std::pair<double, std::string>> sorted;
    for (auto const &[text, spent] : seconds)
        sorted.emplace_back(1000 * spent / static_cast<double>(iterations), text);
    std::ranges::sort(sorted, std::greater());
    sorted.resize(std::min<std::size_t>(sorted.size(), 8));
    std::string label = "slowest:";
    for (auto const &[spent, text] : sorted)
        label += ' ' + text + ' ' + std::to_string(spent) + " ms;";
    return label;
}

// Asks every statistic with the first of each thing that it takes.
void WalkRegistry(benchmark::State &state) {
    AllKinds const setting;
    std::map<std::string, double> seconds;
    for (auto _ : state)
        for (ProjectVector const *vector : *ProjectVectorHandler::Instance())
            walk::ForModels(*vector, setting.project, [&](ModelInfo const *info) {
                std::string const args = walk::ArgumentsOf(*vector, info, AllKinds::rows + 1);
                seconds[std::string(vector->GetName()) + ' ' + args] += SecondsOf(
                    [&] { benchmark::DoNotOptimize(vector->CreateVectorRaw(setting.project, args.c_str())); });
            });
    state.SetLabel(SlowestOf(seconds, state.iterations()));
    state.counters["statistics"] = static_cast<double>(seconds.size());
}

BENCHMARK(WalkRegistry)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
