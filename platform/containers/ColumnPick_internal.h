#pragma once

#include "platform/containers/NCIntegralVector.h"

#include <cstddef>
#include <span>
#include <vector>

// Chosen columns of rows, by their 1-based positions, in any order and any number of times. Neighbours are copied
// together where they come in long runs.
class ColumnPick {
public:
    explicit ColumnPick(NCIntegralVector<int, -99> positions);

    std::size_t Size() const { return m_positions.size(); }
    // The positions rise, so that a row can be picked within itself.
    bool IsRising() const { return m_isRising; }
    // `to` has room for Size() numbers. It may be `from` itself, or lie before it, where the positions rise.
    void Copy(float const *from, float *to) const;

private:
    struct Run {
        std::size_t first; // from 0
        std::size_t count;
    };

    NCIntegralVector<int, -99> m_positions;
    std::vector<Run> m_runs; // empty where they are too short to be worth it
    bool m_isRising = true;
};
