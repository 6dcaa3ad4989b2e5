#include "engine/ProjectFile.h"
#include "engine/TableReader.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <random>
#include <sstream>

#include <unistd.h>

namespace {

constexpr std::size_t rows = 100'000;
constexpr int columns = 20;

// Five digits per cell, as instruments write them.
std::string const &Csv() {
    static std::string const text = [] {
        std::mt19937 random(1);
        std::ostringstream stream;
        stream << "id";
        for (int column = 1; column <= columns; ++column)
            stream << ",v" << column;
        for (std::size_t row = 1; row <= rows; ++row) {
            stream << "\nobs" << row;
            for (int column = 0; column < columns; ++column)
                stream << "," << static_cast<int>(random() % 1'000'000) / 1000.0;
        }
        return stream.str();
    }();
    return text;
}

engine::ImportedTable const &Table() {
    static engine::ImportedTable const table = [] {
        std::istringstream stream(Csv());
        return engine::ReadTable(stream, "table");
    }();
    return table;
}

engine::NewDataSet DataSet() {
    return {Table().name, Table().observations, Table().variables, Table().columns};
}

// A project that is gone with its folder when the benchmark ends.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "benchmark-XXXXXX").string();
        path = mkdtemp(pattern.data());
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path); }

    std::filesystem::path path;
};

void CopyText(benchmark::State &state) {
    std::string copy = Csv();
    for (auto _ : state) {
        std::memcpy(copy.data(), Csv().data(), copy.size());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * copy.size()));
}
BENCHMARK(CopyText)->Unit(benchmark::kMillisecond);

void ImportCsv(benchmark::State &state) {
    std::istringstream stream(Csv());
    for (auto _ : state) {
        stream.clear();
        stream.seekg(0);
        benchmark::DoNotOptimize(engine::ReadTable(stream, "table"));
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * Csv().size()));
}
BENCHMARK(ImportCsv)->Unit(benchmark::kMillisecond);

void SaveDataSet(benchmark::State &state) {
    TemporaryFolder const folder;
    int number = 0;
    for (auto _ : state) {
        state.PauseTiming();
        engine::ProjectFile file = engine::ProjectFile::Create(folder.path / std::to_string(++number));
        state.ResumeTiming();
        file.AddDataSet(DataSet());
    }
}
BENCHMARK(SaveDataSet)->Unit(benchmark::kMillisecond)->UseRealTime();

void LoadDataSet(benchmark::State &state) {
    TemporaryFolder const folder;
    std::filesystem::path const path = folder.path / "project";
    engine::ProjectFile::Create(path).AddDataSet(DataSet());
    for (auto _ : state) {
        engine::ProjectFile const file = engine::ProjectFile::OpenToRead(path);
        benchmark::DoNotOptimize(file.ObservationIdentifiers(1));
        for (int column = 1; column <= columns; ++column)
            benchmark::DoNotOptimize(file.Column(1, column));
    }
}
BENCHMARK(LoadDataSet)->Unit(benchmark::kMillisecond)->UseRealTime();

void OpenProject(benchmark::State &state) {
    TemporaryFolder const folder;
    std::filesystem::path const path = folder.path / "project";
    engine::ProjectFile::Create(path).AddDataSet(DataSet());
    for (auto _ : state)
        benchmark::DoNotOptimize(engine::ProjectFile::OpenToRead(path));
}
BENCHMARK(OpenProject)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
