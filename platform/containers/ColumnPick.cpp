#include "platform/containers/ColumnPick_internal.h"

#include "platform/containers/runs_internal.h"

#include <algorithm>
#include <cstring>
#include <numeric>

void ColumnPick::Append(Run run) {
    m_size += run.count;
    if (!m_runs.empty()) {
        Run &last = m_runs.back();
        m_isRising = m_isRising && run.first >= last.first + last.count;
        if (run.first == last.first + last.count) {
            last.count += run.count;
            return;
        }
    }
    m_runs.push_back(run);
}

ColumnPick::ColumnPick(Positions positions) {
    constexpr std::size_t shortest = 8; // columns of a run, on average
    std::size_t const mostRuns = positions.size() / shortest + 1;
    for (std::span<int const> rest = positions.Values(); !rest.empty() && m_runs.size() <= mostRuns;) {
        std::size_t const length = RunLength(rest);
        Append({static_cast<std::size_t>(rest.front() - 1), length});
        rest = rest.subspan(length);
    }
    if (m_runs.size() <= mostRuns)
        return;
    m_runs.clear();
    m_size = positions.size();
    m_isRising = std::ranges::is_sorted(positions, std::ranges::less_equal());
    m_positions = std::move(positions);
}

ColumnPick::Positions ColumnPick::ToPositions() const {
    if (m_runs.empty())
        return m_positions;
    Positions positions(static_cast<int>(m_size));
    auto to = positions.MutableValues().begin();
    for (Run const &run : m_runs) {
        auto const end = to + static_cast<std::ptrdiff_t>(run.count);
        std::iota(to, end, static_cast<int>(run.first) + 1);
        to = end;
    }
    return positions;
}

ColumnPick ColumnPick::At(ColumnPick const &outer) const {
    if (m_runs.empty() || outer.m_runs.empty()) {
        Positions const inner = ToPositions();
        Positions picked = outer.ToPositions();
        for (int &position : picked.MutableValues())
            position = inner.GetPtr()[position - 1];
        return ColumnPick(std::move(picked));
    }
    std::vector<std::size_t> ends; // of each run, among the columns that are picked
    for (Run const &run : m_runs)
        ends.push_back((ends.empty() ? 0 : ends.back()) + run.count);
    ColumnPick picked;
    for (Run rest : outer.m_runs)
        while (rest.count > 0) {
            auto const at = static_cast<std::size_t>(std::ranges::upper_bound(ends, rest.first) - ends.begin());
            std::size_t const within = rest.first - (ends[at] - m_runs[at].count);
            std::size_t const count = std::min(rest.count, m_runs[at].count - within);
            picked.Append({m_runs[at].first + within, count});
            rest = {rest.first + count, rest.count - count};
        }
    return picked;
}

void ColumnPick::Copy(float const *from, float *to) const {
    for (Run const &run : m_runs) {
        std::memmove(to, from + run.first, run.count * sizeof(float));
        to += run.count;
    }
    for (int const position : m_positions)
        *to++ = from[position - 1];
}
