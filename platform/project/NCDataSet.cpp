#include "platform/project/NCDataSet.h"

#include "platform/project/NCProject.h"

BatchInfoVector NCDataContainerBase::GetBatchInfo() const {
    NCObservations const &list = GetProject()->GetObservations();
    ObservationInfos const &rows = GetObservations();
    if (list.GetBatchID(AliasAccess(list)) == 0)
        return {};
    NCIntegralVector<int, -99> const beginnings = BatchUtilities::GetBatchBeginnings(list, rows);
    std::vector<BatchInfo> all;
    for (int batch = 1; batch <= beginnings.Size(); ++batch) {
        ObservationInfo const &first = rows[static_cast<std::size_t>(beginnings[batch] - 1)];
        int const length = BatchUtilities::GetBatchLength(beginnings, batch, static_cast<int>(rows.size()));
        all.push_back({first.GetBatchName(list), length});
    }
    // A batch that goes on later in the rows is one batch.
    BatchInfoVector batches;
    batches.Merge(BatchInfoVector(std::move(all)));
    return batches;
}
