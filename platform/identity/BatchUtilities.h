#pragma once

#include "platform/containers/NCIntegralVector.h"
#include "platform/containers/NCStringVector.h"
#include "platform/identity/VarObs.h"

#include <string>
#include <vector>

struct BatchInfo {
    std::string name;
    int length = 0; // observations

    bool operator==(BatchInfo const &) const = default;
};

// The batches of a project or a table, in order, each name once.
class DATASERIES_API BatchInfoVector {
public:
    BatchInfoVector() = default;
    explicit BatchInfoVector(std::vector<BatchInfo> batches) : m_batches(std::move(batches)) {}

    bool operator==(BatchInfoVector const &) const = default;

    auto begin() const { return m_batches.begin(); }
    auto end() const { return m_batches.end(); }
    bool Empty() const { return m_batches.empty(); }
    // In their order: a name's position is the number of its batch.
    NCStringVector GetBatchNames() const;

    // Appends the batches of the other that are not here.
    void Merge(BatchInfoVector const &other);

private:
    std::vector<BatchInfo> m_batches;
};

// The batches of a list of rows as they follow each other, counted from 1. One that goes on later in the list comes
// again.
struct BatchRuns {
    NCIntegralVector<int, -99> beginnings; // 1-based positions of first rows, rising
    NCStringVector names;
};

// Batches among the rows of an observation list. A batch is a run of rows with one batch name; without a batch
// identifier all rows are one batch.
class DATASERIES_API BatchUtilities {
public:
    // 1-based positions of each batch's first row, rising.
    static NCIntegralVector<int, -99> GetBatchBeginnings(NCObservations const &list, ObservationInfos const &rows);
    // The same for runs of one phase within one batch.
    static NCIntegralVector<int, -99> GetPhaseBeginnings(NCObservations const &list, ObservationInfos const &rows);
    // For each batch among the rows its 1-based position in `batches`; -99 for one that is not there.
    static NCIntegralVector<int, -99> GetBatchIndexes(ObservationInfos const &rows, NCObservations const &list,
                                                      BatchInfoVector const &batches);
    // Rows of the batch at a 1-based position, given the beginnings and the number of rows; 0 outside.
    static int GetBatchLength(NCIntegralVector<int, -99> const &beginnings, int batch, int rows);
    static BatchRuns GetBatchRuns(NCObservations const &list, ObservationInfos const &rows);
};
