#include "platform/containers/ColumnPick_internal.h"

#include <cstring>

ColumnPick::ColumnPick(NCIntegralVector<int, -99> positions) : m_positions(std::move(positions)) {
    constexpr std::size_t shortest = 8; // columns, on average
    std::size_t runs = 0;
    int previous = -1;
    for (int const position : m_positions) {
        runs += position != previous + 1;
        m_isRising = m_isRising && position > previous;
        previous = position;
    }
    if (runs * shortest > m_positions.size())
        return;
    m_runs.reserve(runs);
    for (int const position : m_positions) {
        std::size_t const at = static_cast<std::size_t>(position - 1);
        if (m_runs.empty() || at != m_runs.back().first + m_runs.back().count)
            m_runs.push_back({at, 0});
        ++m_runs.back().count;
    }
}

void ColumnPick::Copy(float const *from, float *to) const {
    for (Run const &run : m_runs) {
        std::memmove(to, from + run.first, run.count * sizeof(float));
        to += run.count;
    }
    if (!m_runs.empty())
        return;
    for (int const position : m_positions)
        *to++ = from[position - 1];
}
