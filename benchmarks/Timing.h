#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <sys/mman.h>

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

// Of copying so many bytes into fresh memory: the least that a table can cost. Large memory comes from the system, so
// that it is not what an earlier owner left behind.
inline double SecondsOfCopy(std::size_t bytes) {
    std::vector<char> const from(bytes, 'x');
    return TypicalSecondsOf([&] {
        bool const isLarge = bytes >= std::size_t(1) << 20;
        void *const to = isLarge ? mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)
                                 : std::malloc(bytes);
        std::memcpy(to, from.data(), bytes);
        benchmark::DoNotOptimize(to);
        benchmark::ClobberMemory();
        isLarge ? static_cast<void>(munmap(to, bytes)) : std::free(to);
    });
}

// Of copying them where memory is already.
inline double SecondsOfWarmCopy(std::size_t bytes) {
    std::vector<char> const from(bytes, 'x');
    std::vector<char> to(bytes, 'y');
    return TypicalSecondsOf([&] {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    });
}
