#include "engine/models/Parallel.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
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

} // namespace
} // namespace engine
