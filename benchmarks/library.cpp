#include "catalogue/ProjectVectorHandler.h"
#include "tests/support/RecordingProject.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <random>

namespace {

constexpr int million = 1'000'000;

struct Lookup {
    char const *name;
    ProjectVector::VectorTypeEnum type;
    ProjectVector::DataTypeEnum data;
    ModelInfo model;
};

// One lookup for each vector, in an order that is random and always the same.
std::vector<Lookup> AllLookups() {
    std::vector<Lookup> lookups;
    for (ProjectVector const *const vector : *ProjectVectorHandler::Instance()) {
        Lookup lookup{vector->GetName(), vector->GetType(), vector->GetDataType(), {}};
        lookup.model.type = vector->GetModelType();
        lookups.push_back(lookup);
    }
    std::shuffle(lookups.begin(), lookups.end(), std::mt19937(1));
    return lookups;
}

template <typename Search>
void MeasureLookup(benchmark::State &state, Search const &search) {
    std::vector<Lookup> const lookups = AllLookups();
    for (auto _ : state)
        for (Lookup const &lookup : lookups)
            benchmark::DoNotOptimize(search(*ProjectVectorHandler::Instance(), lookup));
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lookups.size()));
}

void Find(benchmark::State &state) {
    MeasureLookup(state, [](ProjectVectorHandler const &handler, Lookup const &lookup) {
        return handler.Find(lookup.name, lookup.type, lookup.data, &lookup.model);
    });
}
BENCHMARK(Find);

void FindVector(benchmark::State &state) {
    MeasureLookup(state, [](ProjectVectorHandler const &handler, Lookup const &lookup) {
        return handler.FindVector(lookup.name, lookup.type, lookup.data, &lookup.model);
    });
}
BENCHMARK(FindVector);

// Reaches the parsers.
class Parser final : public ProjectVector {
public:
    using ProjectVector::Parse;
    using ProjectVector::ParseScaleTransform;
};

void ParseArguments(benchmark::State &state) {
    Parser const parser;
    char const *const text = "M12,3,1048576,4,1,0,7,-2";
    for (auto _ : state) {
        std::string source;
        int component, round;
        unsigned long number;
        bool unscaled, backTransformed;
        int const next = parser.Parse(text, source, component, number, round);
        benchmark::DoNotOptimize(parser.ParseScaleTransform(text + next, backTransformed, unscaled));
        benchmark::DoNotOptimize(number);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(ParseArguments);

// `count` numbers from `first` on, `step` apart.
ColumnIDs Observations(int count, std::uint32_t first = 1, std::uint32_t step = 1) {
    ColumnIDs::Numbers numbers(count);
    for (std::uint32_t &number : numbers.MutableValues()) {
        number = first;
        first += step;
    }
    return ColumnIDs(ColumnIDs::Observations, numbers, {}, 1);
}

ColumnIDs Shuffled(ColumnIDs const &columns) {
    ColumnIDs::Positions order(columns.Size());
    std::span<int> const positions = order.MutableValues();
    std::iota(positions.begin(), positions.end(), 1);
    std::shuffle(positions.begin(), positions.end(), std::mt19937(2));
    ColumnIDs shuffled(columns);
    shuffled.Reduce(order);
    return shuffled;
}

void MeasureInterSection(benchmark::State &state, ColumnIDs const &one, ColumnIDs const &other) {
    for (auto _ : state) {
        ColumnIDs::Positions here, there;
        benchmark::DoNotOptimize(one.InterSection(other, here, there));
    }
    state.SetItemsProcessed(state.iterations() * one.Size());
}

void InterSectionOfCopies(benchmark::State &state) {
    ColumnIDs const columns = Observations(million);
    MeasureInterSection(state, columns, ColumnIDs(columns));
}
void InterSectionOfEquals(benchmark::State &state) {
    MeasureInterSection(state, Observations(million), Observations(million));
}
void InterSectionHalfCommon(benchmark::State &state) {
    MeasureInterSection(state, Observations(million), Observations(million, 2, 2));
}
void InterSectionHalfCommonShuffled(benchmark::State &state) {
    MeasureInterSection(state, Shuffled(Observations(million)), Shuffled(Observations(million, 2, 2)));
}
void InterSectionHalfCommonSparse(benchmark::State &state) {
    MeasureInterSection(state, Observations(million, 1, 2000), Observations(million, 1 + million / 2 * 2000u, 2000));
}
BENCHMARK(InterSectionOfCopies)->Unit(benchmark::kMicrosecond);
BENCHMARK(InterSectionOfEquals)->Unit(benchmark::kMicrosecond);
BENCHMARK(InterSectionHalfCommon)->Unit(benchmark::kMicrosecond);
BENCHMARK(InterSectionHalfCommonShuffled)->Unit(benchmark::kMicrosecond);
BENCHMARK(InterSectionHalfCommonSparse)->Unit(benchmark::kMicrosecond);

std::vector<float> RandomRow(int size) {
    std::mt19937 generator(3);
    std::normal_distribution<float> normal;
    std::vector<float> row(static_cast<std::size_t>(size));
    std::generate(row.begin(), row.end(), [&] { return normal(generator); });
    return row;
}

// Answers each statistic with a copy of one row.
class RowSource final : public StatisticSource {
public:
    explicit RowSource(int size) : m_row(RandomRow(size)), m_columns(Observations(size)) {}

    TablePtr Table(Call const &) const override {
        NCDataMatrix<float> matrix;
        matrix.AppendRow(m_row);
        return std::make_unique<ProjectData>(RowIDs("row", {}), m_columns, std::move(matrix));
    }
    ColumnIDs Columns(Call const &) const override { return m_columns; }

private:
    std::vector<float> m_row;
    ColumnIDs m_columns;
};

void CreateVector(benchmark::State &state, char const *name, ProjectVector::VectorTypeEnum type) {
    RowSource const source(static_cast<int>(state.range(0)));
    auto const project = MakeRecordingProject();
    project->AddModel(ModelTypeE::PCA, 2);
    project->otherSource = &source;
    ProjectVector const *const vector = *ProjectVectorHandler::Instance()->Find(
        name, type, ProjectVector::DataTypeModel, project->GetModelInfo(1).get());
    for (auto _ : state)
        benchmark::DoNotOptimize(vector->CreateVectorRaw(project, "M1,1"));
    state.SetBytesProcessed(state.iterations() * state.range(0) * static_cast<std::int64_t>(sizeof(float)));
}

// The same bytes into fresh memory each time: the least that a table can cost.
void CopyOfBytes(benchmark::State &state) {
    std::vector<float> const row = RandomRow(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto const copy = std::make_unique_for_overwrite<float[]>(row.size());
        std::memcpy(copy.get(), row.data(), row.size() * sizeof(float));
        benchmark::DoNotOptimize(copy.get());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * state.range(0) * static_cast<std::int64_t>(sizeof(float)));
}

BENCHMARK(CopyOfBytes)->Arg(1000)->Arg(million);
BENCHMARK_CAPTURE(CreateVector, t, "t", ProjectVector::VectorTypeVariablesScores)->Arg(1000)->Arg(million);
BENCHMARK_CAPTURE(CreateVector, p, "p", ProjectVector::VectorTypeObservationsLoadings)->Arg(1000)->Arg(million);

// Joining the row of a second table with the same columns to a table with room.
void JoinRow(benchmark::State &state) {
    RowSource const source(static_cast<int>(state.range(0)));
    auto const project = MakeRecordingProject();
    Call const call{Operation::GetT, {}, *project, {}};
    TablePtr const other = source.Table(call);
    for (auto _ : state) {
        state.PauseTiming();
        TablePtr joined = source.Table(call);
        joined->Reserve(2);
        state.ResumeTiming();
        benchmark::DoNotOptimize(joined->InterSection(*other));
        state.PauseTiming();
        joined.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * state.range(0) * static_cast<std::int64_t>(sizeof(float)));
}
BENCHMARK(JoinRow)->Arg(million);

} // namespace

BENCHMARK_MAIN();
