#pragma once

#include "platform/containers/BoolVector.h"
#include "platform/containers/NCIntegralVector.h"

#include <cstddef>
#include <cstring>
#include <vector>

// Chosen columns of rows, by their 1-based positions, in any order and any number of times. Kept as runs of neighbours
// where these are long: they are copied together, and take no memory for each.
class ColumnPick {
public:
    using Positions = NCIntegralVector<int, -99>;

    struct Run {
        std::size_t first; // from 0
        std::size_t count;
    };
    using Runs = std::vector<Run>;

    explicit ColumnPick(Positions positions);
    explicit ColumnPick(Runs runs);
    // The columns whose flags are set.
    explicit ColumnPick(BoolVector const &flags);

    // A run that goes on where the last one ends makes that longer.
    static void Append(Runs &runs, Run run);

    std::size_t Size() const { return m_size; }
    // They are so many columns as they stand.
    bool IsAll(std::size_t columns) const;
    // The positions rise, so that a row can be picked within itself.
    bool IsRising() const { return m_isRising; }
    Positions ToPositions() const;
    // Of the columns that these are, those at the positions of `outer`.
    ColumnPick At(ColumnPick const &outer) const;
    // `to` has room for Size() numbers. It may be `from` itself, or lie before it, where the positions rise.
    template <typename T>
    void Copy(T const *from, T *to) const {
        for (Run const &run : m_runs) {
            std::memmove(to, from + run.first, run.count * sizeof(T));
            to += run.count;
        }
        for (int const position : m_positions)
            *to++ = from[position - 1];
    }

private:
    // Too many are worth less than positions.
    static std::size_t MostRuns(std::size_t columns);

    Positions m_positions;
    Runs m_runs; // in place of the positions
    std::size_t m_size = 0;
    bool m_isRising = true;
};
