#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>

// Long runs are told in blocks, which the compiler makes vector instructions of.
inline constexpr std::size_t blockOfRun = 256;

// How many of the positions, from the first on, follow each other without a gap. There is at least one.
inline std::size_t RunLength(std::span<int const> positions) {
    constexpr std::size_t shortRun = 16;
    std::size_t length = 1;
    auto const goesOn = [&] { return length < positions.size() && positions[length] == positions[length - 1] + 1; };
    auto const blockGoesOn = [&] {
        int gaps = 0;
        for (std::size_t at = length; at < length + blockOfRun; ++at)
            gaps += positions[at] != positions[at - 1] + 1;
        return gaps == 0;
    };
    while (length < shortRun && goesOn())
        ++length;
    if (length < shortRun)
        return length;
    while (length + blockOfRun <= positions.size() && blockGoesOn())
        length += blockOfRun;
    while (goesOn())
        ++length;
    return length;
}

// How many items, from the first on, two lists have in common.
template <typename Item>
std::size_t CommonLength(std::span<Item const> one, std::span<Item const> other) {
    std::size_t const most = std::min(one.size(), other.size());
    std::size_t length = 0;
    while (length + blockOfRun <= most &&
           std::memcmp(one.data() + length, other.data() + length, blockOfRun * sizeof(Item)) == 0)
        length += blockOfRun;
    while (length < most && one[length] == other[length])
        ++length;
    return length;
}
