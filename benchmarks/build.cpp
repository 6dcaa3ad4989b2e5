#include "benchmarks/Timing.h"
#include "building/ProjectDataBuilder.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/support/ProbeVector.h"
#include "tests/support/RecordingProject.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <new>
#include <numeric>

#include <malloc.h>

// Joining the series of a selection into one table. The counters of each measurement:
//   x_memcpy  time as a multiple of copying the bytes of the result into fresh memory, in the same run
//   x_memory  peak of what a build allocates, the result included, as a multiple of those bytes
//   x_time    time as a multiple of that for the first size, where the sizes are x_size apart

namespace {

std::atomic<std::int64_t> used{0}, peak{0};

void *Allocate(std::size_t size) {
    void *const block = std::malloc(size);
    if (!block)
        throw std::bad_alloc();
    std::int64_t const now = used += static_cast<std::int64_t>(malloc_usable_size(block));
    for (std::int64_t before = peak; before < now && !peak.compare_exchange_weak(before, now);) {
    }
    return block;
}

void Release(void *block) {
    used -= static_cast<std::int64_t>(malloc_usable_size(block));
    std::free(block);
}

} // namespace

void *operator new(std::size_t size) {
    return Allocate(size);
}
void operator delete(void *block) noexcept {
    Release(block);
}
void operator delete(void *block, std::size_t) noexcept {
    Release(block);
}

namespace {

using ProjectDataUtilities::ProjectDataBuilder;
using namespace probes;

constexpr int million = 1'000'000;
constexpr int rowsOfATable = 20;

// A table of `rows` by `columns` numbers; the items are `first`, `first` + `step`, ...
ProjectData CannedTable(int rows, int columns, std::uint32_t first, std::uint32_t step, ProjectPtr const &project) {
    ColumnIDs::Numbers numbers(columns);
    for (std::uint32_t &number : numbers.MutableValues()) {
        number = first;
        first += step;
    }
    NCStringVector names(std::vector<std::string>(static_cast<std::size_t>(rows), "row"));
    return {RowIDs(names, project), ColumnIDs(ColumnIDs::Observations, numbers, project, 1),
            NCDataMatrix<float>(rows, columns, 1.5f)};
}

// A vector that answers with a table that is there already, which copies share.
class CannedVector {
public:
    CannedVector(char const *name, V::NumberType number, ProjectData const &table)
        : m_vector({.name = name, .number = number, .flags = "R"}) {
        m_vector.table = [table](ProjectPtr const &, std::string const &) {
            return std::make_unique<ProjectData>(table);
        };
        m_vector.columns = [columns = table.GetColumnIDs()](ProjectPtr const &, std::string const &) {
            return columns;
        };
    }

    ProjectVectorData Series(RecordingProject const &project, int number) const {
        ProjectVectorData data;
        data.SetProjectVector(&m_vector);
        data.SetModelInfoPtr(project.GetModelInfo(1));
        data.SetNumber(static_cast<std::uint32_t>(number));
        return data;
    }

private:
    VectorProbe m_vector;
};

boost::shared_ptr<RecordingProject> OneModel() {
    auto const project = MakeRecordingProject();
    project->AddModel(ModelTypeE::PCA, 2);
    return project;
}

SelectDataSeriesData Empty(boost::shared_ptr<RecordingProject> const &project) {
    return {project, SelectDataSeriesData::Normal, Scores, -1, V::ObsAndPred};
}

void Measure(benchmark::State &state, SelectDataSeriesData const &selection) {
    ProjectDataBuilder const builder(&selection);
    double seconds = 0;
    std::int64_t most = 0;
    std::size_t bytes = 0;
    for (auto _ : state) {
        std::int64_t const before = used;
        peak = before;
        std::unique_ptr<ProjectData> table;
        seconds += SecondsOf([&] { table.reset(builder.Build()); });
        most = std::max(most, peak - before);
        bytes = table->GetMatrix().Values().size_bytes();
    }
    double const copy = SecondsOfCopy(bytes);
    state.counters["x_memcpy"] = seconds / static_cast<double>(state.iterations()) / copy;
    state.counters["x_memory"] = static_cast<double>(most) / static_cast<double>(bytes);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}

// Twenty series that one text asks for.
void BuildOfOneTable(benchmark::State &state) {
    auto const project = OneModel();
    CannedVector const vector("one", X, CannedTable(rowsOfATable, million, 1, 1, project));
    SelectDataSeriesData selection = Empty(project);
    for (int series = 1; series <= rowsOfATable; ++series)
        selection.AddSeries(vector.Series(*project, series), false);
    Measure(state, selection);
}

// The same with an item that is not selected: every row must be copied.
void BuildOfSelectedItems(benchmark::State &state) {
    auto const project = OneModel();
    CannedVector const vector("one", X, CannedTable(rowsOfATable, million, 1, 1, project));
    SelectDataSeriesData selection = Empty(project);
    for (int series = 1; series <= rowsOfATable; ++series)
        selection.AddSeries(vector.Series(*project, series), false);
    BoolVector objects = selection.GetSelectObjects();
    objects(1) = false;
    selection.SetSelectObjects(objects);
    Measure(state, selection);
}

// Two tables of twenty rows, which have half of their items, or all of them, in common.
void BuildOfTwoTables(benchmark::State &state) {
    auto const project = OneModel();
    std::uint32_t const step = static_cast<std::uint32_t>(state.range(0));
    CannedVector const one("one", X, CannedTable(rowsOfATable, million, 1, 1, project));
    CannedVector const other("other", X, CannedTable(rowsOfATable, million, step, step, project));
    SelectDataSeriesData selection = Empty(project);
    for (int series = 1; series <= rowsOfATable; ++series)
        selection.AddSeries(one.Series(*project, series), false);
    for (int series = 1; series <= rowsOfATable; ++series)
        selection.AddSeries(other.Series(*project, series), false);
    Measure(state, selection);
}

// Many series, each with a text of its own or all with one.
void BuildOfManySeries(benchmark::State &state) {
    static double first = 0;
    int const size = static_cast<int>(state.range(0));
    bool const joined = state.range(1) != 0;
    auto const project = OneModel();
    CannedVector const vector("many", joined ? X : Y, CannedTable(joined ? size : 1, 1000, 1, 1, project));
    SelectDataSeriesData selection = Empty(project);
    for (int series = 1; series <= size; ++series)
        selection.AddSeries(vector.Series(*project, series), false);
    ProjectDataBuilder const builder(&selection);
    double seconds = 0;
    for (auto _ : state)
        seconds += SecondsOf([&] { delete builder.Build(); });
    seconds /= static_cast<double>(state.iterations());
    if (size == 1000)
        first = seconds;
    state.counters["x_size"] = size / 1000.0;
    state.counters["x_time"] = seconds / first;
}

BENCHMARK(BuildOfOneTable)->Unit(benchmark::kMillisecond);
BENCHMARK(BuildOfSelectedItems)->Unit(benchmark::kMillisecond);
BENCHMARK(BuildOfTwoTables)->ArgName("step")->Arg(2)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BuildOfManySeries)
    ->ArgNames({"series", "joined"})
    ->Args({1000, 0})
    ->Args({8000, 0})
    ->Args({1000, 1})
    ->Args({8000, 1})
    ->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
