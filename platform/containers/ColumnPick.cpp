#include "platform/containers/ColumnPick_internal.h"

#include "platform/containers/runs_internal.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace {

std::size_t CountRuns(std::span<bool const> flags) {
    std::size_t runs = flags.empty() || !flags.front() ? 0 : 1;
    for (std::size_t at = 1; at < flags.size(); ++at)
        runs += flags[at] > flags[at - 1];
    return runs;
}

// By the search for a byte, which the library does in blocks: flags are bytes of 0 and 1.
ColumnPick::Runs RunsOf(std::span<bool const> flags) {
    auto const find = [flags](std::size_t from, int flag) {
        void const *const found = std::memchr(flags.data() + from, flag, flags.size() - from);
        return found ? static_cast<std::size_t>(static_cast<bool const *>(found) - flags.data()) : flags.size();
    };
    ColumnPick::Runs runs;
    for (std::size_t end = 0; end < flags.size();) {
        std::size_t const first = find(end, 1);
        end = first < flags.size() ? find(first, 0) : first;
        if (end > first)
            runs.push_back({first, end - first});
    }
    return runs;
}

std::size_t CountRuns(std::span<int const> positions) {
    std::size_t runs = positions.empty() ? 0 : 1;
    for (std::size_t at = 1; at < positions.size(); ++at)
        runs += positions[at] != positions[at - 1] + 1;
    return runs;
}

ColumnPick::Runs RunsOf(std::span<int const> positions) {
    ColumnPick::Runs runs;
    for (std::span<int const> rest = positions; !rest.empty();) {
        std::size_t const length = RunLength(rest);
        runs.push_back({static_cast<std::size_t>(rest.front() - 1), length});
        rest = rest.subspan(length);
    }
    return runs;
}

ColumnPick::Positions PositionsOf(std::span<bool const> flags) {
    ColumnPick::Positions positions(static_cast<int>(flags.size()));
    int *const first = positions.MutableValues().data();
    int *end = first;
    int position = 0;
    for (bool const flag : flags) {
        *end = ++position;
        end += flag ? 1 : 0;
    }
    positions.resize(static_cast<int>(end - first));
    return positions;
}

ColumnPick::Positions PositionsOf(ColumnPick::Runs const &runs, std::size_t size) {
    ColumnPick::Positions positions(static_cast<int>(size));
    auto to = positions.MutableValues().begin();
    for (ColumnPick::Run const &run : runs) {
        auto const end = to + static_cast<std::ptrdiff_t>(run.count);
        std::iota(to, end, static_cast<int>(run.first) + 1);
        to = end;
    }
    return positions;
}

} // namespace

std::size_t ColumnPick::MostRuns(std::size_t columns) {
    constexpr std::size_t shortest = 8; // columns of a run, on average
    return columns / shortest + 1;
}

void ColumnPick::Append(Runs &runs, Run run) {
    if (!runs.empty() && run.first == runs.back().first + runs.back().count)
        runs.back().count += run.count;
    else
        runs.push_back(run);
}

ColumnPick::ColumnPick(Runs runs) : m_runs(std::move(runs)) {
    std::size_t end = 0; // of the run before
    for (Run const &run : m_runs) {
        m_size += run.count;
        m_isRising = m_isRising && run.first >= end;
        end = run.first + run.count;
    }
    if (m_runs.size() <= MostRuns(m_size))
        return;
    m_positions = PositionsOf(m_runs, m_size);
    m_runs = Runs();
}

ColumnPick::ColumnPick(Positions positions) {
    if (CountRuns(positions.Values()) <= MostRuns(positions.size())) {
        *this = ColumnPick(RunsOf(positions.Values()));
        return;
    }
    m_size = positions.size();
    m_isRising = std::ranges::is_sorted(positions, std::ranges::less_equal());
    m_positions = std::move(positions);
}

ColumnPick::ColumnPick(BoolVector const &flags)
    : m_size(static_cast<std::size_t>(std::count(flags.begin(), flags.end(), true))) {
    if (CountRuns(flags.Values()) <= MostRuns(m_size))
        m_runs = RunsOf(flags.Values());
    else
        m_positions = PositionsOf(flags.Values());
}

bool ColumnPick::IsAll(std::size_t columns) const {
    return m_size == columns && m_runs.size() == 1 && m_runs.front().first == 0;
}

ColumnPick::Positions ColumnPick::ToPositions() const {
    return m_runs.empty() ? m_positions : PositionsOf(m_runs, m_size);
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
    Runs picked;
    for (Run rest : outer.m_runs)
        while (rest.count > 0) {
            auto const at = static_cast<std::size_t>(std::ranges::upper_bound(ends, rest.first) - ends.begin());
            std::size_t const within = rest.first - (ends[at] - m_runs[at].count);
            std::size_t const count = std::min(rest.count, m_runs[at].count - within);
            Append(picked, {m_runs[at].first + within, count});
            rest = {rest.first + count, rest.count - count};
        }
    return ColumnPick(std::move(picked));
}
