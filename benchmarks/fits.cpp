#include "benchmarks/FitData.h"
#include "engine/models/Fit.h"

#include <benchmark/benchmark.h>

#include <limits>
#include <random>

namespace {

using namespace engine;

constexpr Index rows = 2000;
constexpr Index columns = 1000;
constexpr int components = 5;

// A part of the cells missing. The same numbers always.
Matrix MakeData(int responses, int latent, double missing) {
    std::mt19937_64 generator(7);
    std::bernoulli_distribution lost(missing);
    Matrix cells = SimulateCells(rows, columns + responses, latent, generator);
    if (missing > 0)
        for (auto &cell : cells.leftCols(columns).reshaped())
            if (lost(generator))
                cell = std::numeric_limits<double>::quiet_NaN();
    return cells;
}

void MeasureFit(benchmark::State &state, int responses, int latent, double missing, int groups) {
    Matrix const cells = MakeData(responses, latent, missing);
    FloatColumns const source(cells);
    auto definition = DefineFit(cells, responses, components, ScalingKind::UnitVariance);
    definition.groups = groups;
    auto const workset = Workset::Build(definition, source);
    for (auto _ : state)
        benchmark::DoNotOptimize(Fit(definition, workset));
}

void MeasureWorkset(benchmark::State &state) {
    Matrix const cells = MakeData(1, 6, 0);
    FloatColumns const source(cells);
    auto const definition = DefineFit(cells, 1, components, ScalingKind::UnitVariance);
    for (auto _ : state)
        benchmark::DoNotOptimize(Workset::Build(definition, source));
}

// One predictive component and two X-side orthogonal ones, or with `kind` PLS as many in all.
void MeasureOrthogonalFit(benchmark::State &state, ModelKind kind, double missing, int groups) {
    Matrix const cells = MakeData(1, 6, missing);
    FloatColumns const source(cells);
    auto const orthogonal = kind == ModelKind::Opls;
    auto definition = DefineFit(cells, 1, orthogonal ? 1 : 3, ScalingKind::UnitVariance);
    definition.kind = kind;
    definition.xOrthogonal = orthogonal ? 2 : 0;
    definition.groups = groups;
    auto const workset = Workset::Build(definition, source);
    for (auto _ : state)
        benchmark::DoNotOptimize(Fit(definition, workset));
}

BENCHMARK(MeasureWorkset)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureFit, pls_1_response, 1, 6, 0, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureFit, pls_3_responses, 3, 6, 0, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureFit, pca, 0, 6, 0, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureFit, pca_of_noise, 0, 0, 0, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureOrthogonalFit, pls_3, ModelKind::Pls, 0, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureOrthogonalFit, opls_1_2, ModelKind::Opls, 0, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureOrthogonalFit, pls_3_cross_validated, ModelKind::Pls, 0, 7)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureOrthogonalFit, opls_1_2_cross_validated, ModelKind::Opls, 0, 7)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureOrthogonalFit, pls_3_missing, ModelKind::Pls, 0.05, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureOrthogonalFit, opls_1_2_missing, ModelKind::Opls, 0.05, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureOrthogonalFit, opls_1_2_missing_cross_validated, ModelKind::Opls, 0.05, 7)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureFit, pca_5_percent_missing_cross_validated, 0, 6, 0.05, 7)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureFit, pls_5_percent_missing_cross_validated, 1, 6, 0.05, 7)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureFit, pls_5_percent_missing, 1, 6, 0.05, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureFit, pca_5_percent_missing, 0, 6, 0.05, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureFit, pls_cross_validated, 1, 6, 0, 7)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(MeasureFit, pca_cross_validated, 0, 6, 0, 7)->Unit(benchmark::kMillisecond);

} // namespace
