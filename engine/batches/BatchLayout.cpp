#include "engine/batches/BatchLayout.h"

#include "platform/text/Exception.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_map>

namespace engine {

namespace {

// The rows where a text begins that is not that of the row before, within [begin, end).
std::vector<std::size_t> RunsIn(PackedTexts const &texts, std::size_t begin, std::size_t end) {
    std::vector<std::size_t> runs;
    for (std::size_t row = begin; row < end; ++row)
        if (row == begin || texts[row] != texts[row - 1])
            runs.push_back(row);
    return runs;
}

// Runs of one text in two places: its first row and that where it begins again; empty ones may.
std::optional<std::pair<std::size_t, std::size_t>> Repeated(PackedTexts const &texts,
                                                            std::vector<std::size_t> const &runs) {
    std::unordered_map<std::string_view, std::size_t> first;
    for (std::size_t const run : runs)
        if (auto const [at, isNew] = first.emplace(texts[run], run); !isNew && !texts[run].empty())
            return std::pair(at->second, run);
    return {};
}

} // namespace

BatchLayout::BatchLayout(std::string dataSet, TextColumn batches, std::optional<TextColumn> phases)
    : m_dataSet(std::move(dataSet)), m_batches(std::move(batches)), m_phases(std::move(phases)) {}

bool BatchLayout::HasBatch(std::string const &name) const {
    for (std::size_t row = 0; row < m_batches.texts.size(); ++row)
        if (m_batches.texts[row] == name)
            return true;
    return false;
}

bool BatchLayout::IsIn(int row, std::string const &phase) const {
    bool const isInPhase = phase.empty() || (m_phases && m_phases->texts[static_cast<std::size_t>(row)] == phase);
    return isInPhase && !BatchOf(row).empty();
}

std::vector<std::string> BatchLayout::Phases() const {
    std::vector<std::size_t> const beginnings = BatchBeginnings();
    if (!m_phases)
        return {};
    CheckPhases(beginnings);
    return OrderedPhases(beginnings);
}

// And where the last batch ends.
std::vector<std::size_t> BatchLayout::BatchBeginnings() const {
    std::vector<std::size_t> beginnings = RunsIn(m_batches.texts, 0, m_batches.texts.size());
    if (auto const twice = Repeated(m_batches.texts, beginnings))
        throw NCError(
            ExceptionMessage::translate("Batch \"{1}\" stands in two places of {2}: it begins in row {3}, and "
                                        "again in row {4} (column \"{5}\"). The rows of a batch follow each "
                                        "other.") %
                m_batches.texts[twice->first] % m_dataSet % (twice->first + 1) % (twice->second + 1) % m_batches.name,
            NCError::Error);
    beginnings.push_back(m_batches.texts.size());
    return beginnings;
}

void BatchLayout::CheckPhases(std::vector<std::size_t> const &beginnings) const {
    PackedTexts const &phases = m_phases->texts;
    for (std::size_t batch = 0; batch + 1 < beginnings.size(); ++batch)
        if (auto const twice = Repeated(phases, RunsIn(phases, beginnings[batch], beginnings[batch + 1])))
            throw NCError(ExceptionMessage::translate("Phase \"{1}\" comes back within batch \"{2}\" of {3}: it begins "
                                                      "in row {4}, and again in row {5} (column \"{6}\").") %
                              phases[twice->first] % m_batches.texts[beginnings[batch]] % m_dataSet %
                              (twice->first + 1) % (twice->second + 1) % m_phases->name,
                          NCError::Error);
}

// A phase is due when none of those that stand before it in any batch is left; of several, the one seen first.
std::vector<std::string> BatchLayout::OrderedPhases(std::vector<std::size_t> const &beginnings) const {
    PackedTexts const &texts = m_phases->texts;
    std::vector<std::string> left;
    std::map<std::string, std::set<std::string>> before;
    for (std::size_t batch = 0; batch + 1 < beginnings.size(); ++batch) {
        std::string previous;
        for (std::size_t const run : RunsIn(texts, beginnings[batch], beginnings[batch + 1])) {
            std::string const phase(texts[run]);
            if (phase.empty())
                continue;
            if (before.try_emplace(phase).second)
                left.push_back(phase);
            if (!previous.empty())
                before[phase].insert(previous);
            previous = phase;
        }
    }
    std::vector<std::string> ordered;
    while (!left.empty()) {
        auto const isLeft = [&](std::string const &phase) { return std::ranges::find(left, phase) != left.end(); };
        auto const due = std::ranges::find_if(
            left, [&](std::string const &phase) { return std::ranges::none_of(before[phase], isLeft); });
        if (due == left.end())
            throw NCError(
                ExceptionMessage::translate("Phase \"{1}\" comes before phase \"{2}\" in one batch of {3} and "
                                            "behind it in another (column \"{4}\").") %
                    *std::ranges::find_if(before[left.front()], isLeft) % left.front() % m_dataSet % m_phases->name,
                NCError::Error);
        ordered.push_back(*due);
        left.erase(due);
    }
    return ordered;
}

} // namespace engine
