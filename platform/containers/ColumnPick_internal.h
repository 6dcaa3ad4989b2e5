#pragma once

#include "platform/containers/NCIntegralVector.h"

#include <cstddef>
#include <vector>

// Chosen columns of rows, by their 1-based positions, in any order and any number of times. Kept as runs of neighbours
// where these are long: they are copied together, and take no memory for each.
class ColumnPick {
public:
    using Positions = NCIntegralVector<int, -99>;

    explicit ColumnPick(Positions positions);

    std::size_t Size() const { return m_size; }
    // The positions rise, so that a row can be picked within itself.
    bool IsRising() const { return m_isRising; }
    Positions ToPositions() const;
    // Of the columns that these are, those at the positions of `outer`.
    ColumnPick At(ColumnPick const &outer) const;
    // `to` has room for Size() numbers. It may be `from` itself, or lie before it, where the positions rise.
    void Copy(float const *from, float *to) const;

private:
    struct Run {
        std::size_t first; // from 0
        std::size_t count;
    };

    ColumnPick() = default;
    void Append(Run run);

    Positions m_positions;
    std::vector<Run> m_runs; // in place of the positions
    std::size_t m_size = 0;
    bool m_isRising = true;
};
