#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <vector>

inline double SecondsOf(auto const &work) {
    using Clock = std::chrono::steady_clock;
    auto const start = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The median of some runs.
inline double TypicalSecondsOf(auto const &work) {
    std::vector<double> seconds(5);
    for (double &each : seconds)
        each = SecondsOf(work);
    std::nth_element(seconds.begin(), seconds.begin() + 2, seconds.end());
    return seconds[2];
}

// Of copying so many bytes into fresh memory: the least that a table can cost.
inline double SecondsOfCopy(std::size_t bytes) {
    std::vector<char> const from(bytes, 'x');
    return TypicalSecondsOf([&] {
        auto const to = std::make_unique_for_overwrite<char[]>(bytes);
        std::memcpy(to.get(), from.data(), bytes);
        benchmark::DoNotOptimize(to.get());
        benchmark::ClobberMemory();
    });
}
