#include "engine/models/Parallel.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <vector>

namespace engine {
namespace {

TEST(InParallel, CallsEachOnceAlsoWhenNested) {
    std::vector<std::atomic<int>> calls(30);
    InParallel(6, [&](std::size_t outer) { InParallel(5, [&](std::size_t inner) { ++calls[5 * outer + inner]; }); });
    for (auto const &count : calls)
        EXPECT_EQ(count, 1);
}

TEST(InParallel, ThrowsOnWhatACallThrewAndDropsTheRest) {
    int begun = 0;
    auto const work = [&](std::size_t call) {
        ++begun;
        if (call == 2)
            throw std::runtime_error("third");
    };
    // Nested, so that the order is known.
    EXPECT_THROW(InParallel(2, [&](std::size_t outer) { InParallel(outer * 100, work); }), std::runtime_error);
    EXPECT_EQ(begun, 3);
}

// Every second thread cannot be made, from the first on.
TEST(InParallel, GoesOnWithTheThreadsThatThereAre) {
    static std::atomic<int> asked = 0;
    auto const start = [](std::function<void()> run) {
        if (asked++ % 2 == 0)
            throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
        StartThread(std::move(run));
    };
    for (int repeat = 0; repeat < 4; ++repeat) {
        std::vector<int> calls(50);
        InParallel(
            calls.size(), [&](std::size_t call) { ++calls[call]; }, {}, start);
        EXPECT_EQ(calls, std::vector<int>(50, 1));
    }
    EXPECT_TRUE(asked >= 4 || std::thread::hardware_concurrency() < 2);
}

} // namespace
} // namespace engine
