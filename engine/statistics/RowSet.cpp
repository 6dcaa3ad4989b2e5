#include "engine/statistics/RowSet.h"

#include "engine/statistics/RowStatistics.h"

namespace engine {

RowSet::RowSet(ModelView const &model, PredictedRows const *predicted, RowRange range)
    : m_model(model), m_predicted(predicted), m_range(range) {}

ObservationInfos const &RowSet::AllObservations() const {
    return m_predicted ? m_predicted->GetObservations() : m_model.GetObservations();
}

ColumnIDs RowSet::Columns() const {
    ColumnIDs const &all = m_predicted ? m_predicted->columns : m_model.Observations();
    if (m_range.count == all.Size())
        return all;
    return ObservationColumns(
        std::span(AllObservations())
            .subspan(static_cast<std::size_t>(m_range.first), static_cast<std::size_t>(m_range.count)),
        all.GetProject(), m_model.GetModelNumber());
}

SourceColumns const &RowSet::Source() const {
    return m_predicted ? *m_predicted->source : m_model.Source();
}

std::optional<RowSet> RowSource::Rows(int batch) const {
    if (ofPredictions && !predicted)
        return {};
    std::optional<RowRange> const range = ofPredictions ? RowsOfBatch(*predicted, batch) : RowsOfBatch(model, batch);
    return range ? std::optional(RowSet(model, predicted, *range)) : std::nullopt;
}

BatchRuns const &RowSource::Batches() const {
    return ofPredictions ? predicted->GetBatchRuns() : model.GetBatchRuns();
}

Alignment const &RowSource::Aligned() const {
    auto const maturities = [this] { return YValues(*Rows(), 0, Units::Source); };
    return ofPredictions ? predicted->batches.Of(*predicted, model.Grid(), maturities, predicted->running)
                         : model.Batches().Of(model, model.Grid(), maturities, {});
}

bool HasBatches(RowSource const &source) {
    return source.model.Fit().definition.evolution && source.Rows(1);
}

ColumnIDs RowSource::Columns(int batch) const {
    std::optional<RowSet> const rows = Rows(batch);
    return rows ? rows->Columns() : model.None();
}

} // namespace engine
