// Transforms and charts of one series of a million values. "passes" is the time in passes over the series that add up
// its values and their squares in double.

#include "benchmarks/Timing.h"
#include "platform/numerics/ControlChart.h"
#include "platform/numerics/FFT.h"
#include "platform/numerics/FrequencyHistogram.h"
#include "platform/numerics/Wavelet.h"

#include <random>

namespace {

NCDataVector<float> const &Series() {
    static NCDataVector<float> const series = [] {
        std::mt19937 random(11);
        std::normal_distribution<float> normal;
        NCDataVector<float> values(1'000'000);
        std::ranges::generate(values.MutableValues(), [&] { return 20 + normal(random); });
        return values;
    }();
    return series;
}

double SecondsOfPass() {
    return TypicalSecondsOf([] {
        double sum = 0, squares = 0;
        for (float const value : Series().Values()) {
            sum += value;
            squares += static_cast<double>(value) * value;
        }
        benchmark::DoNotOptimize(sum);
        benchmark::DoNotOptimize(squares);
    });
}

template <typename Work>
void Time(benchmark::State &state, Work work) {
    for (auto _ : state)
        work();
    state.counters["passes"] = TypicalSecondsOf(work) / SecondsOfPass();
}

void PowerSpectrum(benchmark::State &state) {
    Time(state, [&] {
        NCDataVector<float> result;
        FFT::PowerSpectrum(Series().Values(), static_cast<int>(state.range(0)), true, FFT::Mean, FFT::Unbiased,
                           FFT::Hanning, result);
    });
}
void AutoCorrelation(benchmark::State &state) {
    Time(state, [&] {
        NCDataVector<float> result;
        FFT::AutoCorrelation(Series().Values(), FFT::Mean, static_cast<int>(state.range(0)), result);
    });
}
void WaveletTransform(benchmark::State &state) {
    Time(state, [] {
        NCDataVector<float> result;
        long double lo = 0, hi = 0;
        Wavelet::ForwardTransform(Series().Values(), Wavelet::GetDecompositionFilter(Wavelet::Daubechies, 4),
                                  Wavelet::Mean, lo, hi, result, true);
    });
}
void Histogram(benchmark::State &state) {
    Time(state, [] {
        FrequencyHistogram::HistogramInfo info;
        FrequencyHistogram::CreateHistogram(Series(), info);
    });
}
void Chart(benchmark::State &state) {
    Time(state, [&] {
        ControlChart const chart(ControlChart::MeanAndStdDev, Series(), static_cast<int>(state.range(0)),
                                 ControlChart::Filtered);
        benchmark::DoNotOptimize(chart.Points());
    });
}

BENCHMARK(PowerSpectrum)->Arg(1024)->Arg(65536)->Unit(benchmark::kMillisecond);
BENCHMARK(AutoCorrelation)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(WaveletTransform)->Unit(benchmark::kMillisecond);
BENCHMARK(Histogram)->Unit(benchmark::kMillisecond);
BENCHMARK(Chart)->Arg(1)->Arg(5)->Unit(benchmark::kMillisecond);

} // namespace
