#include "benchmarks/Timing.h"
#include "building/ProjectDataBuilder.h"
#include "catalogue/ProjectVectorHandler.h"
#include "engine/ModelRequest.h"
#include "engine/Project.h"
#include "engine/TableReader.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/support/TemporaryFolder.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <new>
#include <random>

#include <malloc.h>

// From a selection to its table, by the data sets and models of a project. The counters of each measurement:
//   x_fresh   time as a multiple of copying the bytes of the result into fresh memory, in the same run
//   x_warm    the same, into memory that is there already
//   x_memory  peak of what a build allocates, the result included, as a multiple of those bytes
//   cells     of the result, in millions

namespace {

std::atomic<std::int64_t> used{0}, peak{0};

void *Allocate(std::size_t size, std::size_t alignment = alignof(std::max_align_t)) {
    void *const block = alignment > alignof(std::max_align_t)
                            ? std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment)
                            : std::malloc(size);
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
void *operator new(std::size_t size, std::align_val_t alignment) {
    return Allocate(size, static_cast<std::size_t>(alignment));
}
void operator delete(void *block) noexcept {
    Release(block);
}
void operator delete(void *block, std::align_val_t) noexcept {
    Release(block);
}
void operator delete(void *block, std::size_t) noexcept {
    Release(block);
}

namespace {

using ProjectDataUtilities::ProjectDataBuilder;

constexpr int million = 1'000'000;

engine::TextColumn Names(std::string const &prefix, int first, int count) {
    engine::TextColumn names{"id", {}};
    for (int i = first; i < first + count; ++i)
        names.texts.Append(prefix + std::to_string(i));
    return names;
}

// Observations from `firstRow` on. Each cell has a value of its own; a variable has the name that its number gives.
engine::ImportedTable Table(int firstRow, int rows, int firstColumn, int columns) {
    engine::ImportedTable table;
    table.observations = {Names("o", firstRow, rows)};
    table.variables = {Names("v", firstColumn, columns)};
    std::mt19937 generator(static_cast<unsigned>(firstColumn));
    for (int column = 0; column < columns; ++column) {
        table.columns.emplace_back(static_cast<std::size_t>(rows));
        for (float &value : table.columns.back())
            value = static_cast<float>(generator()) * 1e-9f + 1;
    }
    return table;
}

struct Setting {
    TemporaryFolder folder;
    boost::shared_ptr<engine::Project> project = engine::Project::Create(folder / "build.project");
    std::vector<ProjectVectorData> series;

    void Add(char const *name, int model, int dataSet, std::uint32_t number, int component = 1) {
        auto const info = project->GetModelInfo(model);
        auto const data = info ? ProjectVector::DataTypeModel : ProjectVector::DataTypeDataSet;
        ProjectVectorData specification;
        specification.SetProjectVector(
            *ProjectVectorHandler::Instance()->Find(name, ProjectVector::VectorTypeVariablesScores, data, info.get()));
        if (info)
            specification.SetModelInfoPtr(info);
        else
            specification.SetDataSet(dataSet);
        specification.SetNumber(number);
        specification.SetComponent(component);
        series.push_back(specification);
    }

    // Series of all variables of a data set.
    void AddData(engine::ImportedTable const &table) {
        int const number = project->AddDataSet(table);
        for (std::uint32_t const variable : project->GetDataSet(number)->GetVariables())
            Add("VarDS", 0, number, variable);
    }
};

// Twenty series of a million observations each: raw values, values and scores of a model.
struct Twenty : Setting {
    Twenty() {
        int const data = project->AddDataSet(Table(1, million, 1, 20));
        int const model = project->AddModel({.type = ModelTypeE::PCA, .components = 6, .crossValidationGroups = 0});
        for (std::uint32_t number = 1; number <= 7; ++number) {
            Add("VarDS", 0, data, project->GetDataSet(data)->GetVariables()[number - 1]);
            Add("XVar", model, 0, number);
            if (number < 7)
                Add("t", model, 0, number, static_cast<int>(number));
        }
    }
};
// The same from the data set alone.
struct TwentyOfData : Setting {
    TwentyOfData() { AddData(Table(1, million, 1, 20)); }
};

// Two data sets, of which each has half of its observations in common with the other.
template <int rows, int columns>
struct HalfCommon : Setting {
    HalfCommon() {
        AddData(Table(1, rows, 1, columns / 2));
        AddData(Table(1 + rows / 2, rows, 1 + columns / 2, columns / 2));
    }
};
// Twenty data sets of one variable each, which have ever fewer observations.
struct EverFewer : Setting {
    EverFewer() {
        for (int set = 0; set < 20; ++set)
            AddData(Table(1, million - set * 25'000, 1 + set, 1));
    }
};

enum Variation { Whole, Masked, Scattered, Scaled };

// `Masked` leaves one item in the middle out, `Scattered` every third one.
template <typename TheSetting>
void Build(benchmark::State &state, Variation variation) {
    static TheSetting const setting;
    SelectDataSeriesData selection(setting.project, SelectDataSeriesData::Normal,
                                   ProjectVector::VectorTypeVariablesScores, -1, ProjectVector::ObsAndPred);
    for (ProjectVectorData const &series : setting.series)
        selection.AddSeries(series, false);
    if (variation == Scaled)
        selection.SetScaleType(SelectDataSeriesData::ScaleZeroToOne);
    ProjectDataBuilder const builder(&selection);
    delete builder.Build();
    if (variation == Masked || variation == Scattered) {
        BoolVector objects = selection.GetSelectObjects();
        for (int item = variation == Masked ? objects.Size() / 2 : 1; item <= objects.Size(); item += 3) {
            objects(item) = false;
            if (variation == Masked)
                break;
        }
        selection.SetSelectObjects(objects);
    }
    double seconds = 0;
    std::int64_t most = 0;
    std::size_t bytes = 0;
    for (auto _ : state) {
        std::int64_t const before = used;
        peak = before;
        std::unique_ptr<ProjectData> table;
        double const spent = SecondsOf([&] { table.reset(builder.Build()); });
        seconds += spent;
        state.SetIterationTime(spent);
        most = std::max(most, peak - before);
        bytes = table->GetMatrix().Values().size_bytes();
    }
    seconds /= static_cast<double>(state.iterations());
    state.counters["x_fresh"] = seconds / SecondsOfCopy(bytes);
    state.counters["x_warm"] = seconds / SecondsOfWarmCopy(bytes);
    state.counters["x_memory"] = static_cast<double>(most) / static_cast<double>(bytes);
    state.counters["cells"] = static_cast<double>(bytes) / 4e6;
}

void Register(char const *name, void (*build)(benchmark::State &, Variation), Variation variation) {
    benchmark::RegisterBenchmark(name, build, variation)->UseManualTime()->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int count, char **arguments) {
    Register("Equal", Build<Twenty>, Whole);
    Register("Equal/masked", Build<Twenty>, Masked);
    Register("Equal/scattered", Build<Twenty>, Scattered);
    Register("Equal/scaled", Build<Twenty>, Scaled);
    Register("EqualOfData", Build<TwentyOfData>, Whole);
    Register("EqualOfData/masked", Build<TwentyOfData>, Masked);
    Register("EqualOfData/scaled", Build<TwentyOfData>, Scaled);
    Register("HalfCommon/20x1000000", Build<HalfCommon<million, 20>>, Whole);
    Register("HalfCommon/20x1000000/scaled", Build<HalfCommon<million, 20>>, Scaled);
    Register("HalfCommon/20x10000", Build<HalfCommon<10'000, 20>>, Whole);
    Register("HalfCommon/8000x1000", Build<HalfCommon<1000, 8000>>, Whole);
    Register("EverFewer/20x1000000", Build<EverFewer>, Whole);
    benchmark::Initialize(&count, arguments);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
