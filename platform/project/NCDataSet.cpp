#include "platform/project/NCDataSet.h"

#include "platform/project/NCProject.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

BatchInfoVector NCDataContainerBase::GetBatchInfo() const {
    NCObservations const &list = GetProject()->GetObservations();
    if (list.GetBatchID(AliasAccess(list)) == 0)
        return {};
    BatchRuns const &runs = GetBatchRuns();
    int const rows = static_cast<int>(GetObservations().size());
    std::vector<BatchInfo> all;
    for (int batch = 1; batch <= runs.names.Size(); ++batch)
        all.push_back({runs.names[batch], BatchUtilities::GetBatchLength(runs.beginnings, batch, rows)});
    // A batch that goes on later in the rows is one batch.
    BatchInfoVector batches;
    batches.Merge(BatchInfoVector(std::move(all)));
    return batches;
}

BatchRuns const &NCDataContainerBase::GetBatchRuns() const {
    std::call_once(m_batchesFound, [this] {
        m_batches = BatchUtilities::GetBatchRuns(GetProject()->GetObservations(), GetObservations());
    });
    return m_batches;
}

std::string NCDataSet::GetDaysLabel(std::span<std::uint32_t const> variables) const {
    if (std::ranges::all_of(variables, [this](std::uint32_t variable) { return GetDates(variable).empty(); }))
        return {};
    std::chrono::sys_days const midnight(std::chrono::days(static_cast<int>(GetFirstDay())));
    std::chrono::year_month_day const date(midnight);
    char text[40];
    std::snprintf(text, sizeof text, " (days since %04d-%02u-%02u)", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return text;
}
