#include "platform/identity/BatchUtilities.h"

#include <unordered_map>
#include <unordered_set>

namespace {

// Positions where the texts of any of the aliases change. An alias of 0 never changes.
NCIntegralVector<int, -99> RunBeginnings(NCObservations const &list, ObservationInfos const &rows, int alias,
                                         int otherAlias) {
    NCIntegralVector<int, -99> beginnings;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        auto const differs = [&](int column) {
            return list.GetText(rows[i].GetUniqueID(), column) != list.GetText(rows[i - 1].GetUniqueID(), column);
        };
        if (i == 0 || differs(alias) || differs(otherAlias))
            beginnings.push_back(static_cast<int>(i) + 1);
    }
    return beginnings;
}

} // namespace

NCStringVector BatchInfoVector::GetBatchNames() const {
    NCStringVector names;
    for (BatchInfo const &batch : m_batches)
        names.push_back(batch.name);
    return names;
}

void BatchInfoVector::Merge(BatchInfoVector const &other) {
    std::unordered_set<std::string> known;
    for (BatchInfo const &batch : m_batches)
        known.insert(batch.name);
    for (BatchInfo const &batch : other)
        if (known.insert(batch.name).second)
            m_batches.push_back(batch);
}

NCIntegralVector<int, -99> BatchUtilities::GetBatchBeginnings(NCObservations const &list,
                                                              ObservationInfos const &rows) {
    return RunBeginnings(list, rows, list.GetBatchID(), 0);
}

NCIntegralVector<int, -99> BatchUtilities::GetPhaseBeginnings(NCObservations const &list,
                                                              ObservationInfos const &rows) {
    return RunBeginnings(list, rows, list.GetBatchID(), list.GetPhaseID());
}

NCIntegralVector<int, -99> BatchUtilities::GetBatchIndexes(ObservationInfos const &rows, NCObservations const &list,
                                                           BatchInfoVector const &batches) {
    std::unordered_map<std::string, int> positions;
    int position = 0;
    for (BatchInfo const &batch : batches)
        positions.emplace(batch.name, ++position);
    NCIntegralVector<int, -99> indexes;
    for (int const first : GetBatchBeginnings(list, rows)) {
        auto const found = positions.find(rows[static_cast<std::size_t>(first - 1)].GetBatchName(list));
        indexes.push_back(found == positions.end() ? -99 : found->second);
    }
    return indexes;
}

int BatchUtilities::GetBatchLength(NCIntegralVector<int, -99> const &beginnings, int batch, int rows) {
    int const batches = static_cast<int>(beginnings.size());
    if (batch < 1 || batch > batches)
        return 0;
    return (batch == batches ? rows + 1 : beginnings[batch + 1]) - beginnings[batch];
}

BatchRuns BatchUtilities::GetBatchRuns(NCObservations const &list, ObservationInfos const &rows) {
    BatchRuns runs{GetBatchBeginnings(list, rows), {}};
    for (int const first : runs.beginnings)
        runs.names.push_back(rows[static_cast<std::size_t>(first - 1)].GetBatchName(list));
    return runs;
}
