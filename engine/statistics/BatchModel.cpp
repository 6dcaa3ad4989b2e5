#include "engine/statistics/BatchModel.h"

#include "engine/statistics/RowStatistics.h"
#include "platform/project/NCProject.h"

namespace engine {

NCDataVector<float> MaturityOf(RowSource const &source) {
    std::optional<RowSet> const rows = source.Rows();
    bool const isOfBatches = source.model.Fit().definition.evolution.has_value();
    return rows && isOfBatches ? StoredValues(YValues(*rows, 0, Units::Source)) : NCDataVector<float>();
}

std::vector<int> BatchModel::GetBatchIndexes() const {
    auto const indexes = BatchUtilities::GetBatchIndexes(
        m_view->GetObservations(), m_view->GetProject()->GetObservations(), m_view->FittedData().GetBatchInfo());
    return {indexes.begin(), indexes.end()};
}

NCDataVector<float> BatchModel::GetMaturity() const {
    return MaturityOf({*m_view});
}

NCDataVector<float> BatchModel::GetTimeMaturityVector() const {
    return StoredValues(m_view->Grid().maturity);
}

NCDataMatrix<float> BatchModel::GetAlignedScores(int component) const {
    auto const chosen = ChosenComponent(component, m_view->Fit().components.Predictive());
    RowSource const workset{*m_view};
    return chosen ? StoredValues(workset.Aligned().ReadAll(ScoresT(*workset.Rows(), *chosen))) : NCDataMatrix<float>();
}

NCDataMatrix<float> BatchModel::GetAlignedDModX(int component) const {
    auto const size = ChosenSize(m_view->Fit(), component);
    RowSource const workset{*m_view};
    return size ? StoredValues(workset.Aligned().ReadAll(
                      DModX(*workset.Rows(), *size, TriState::Undefined, TriState::Undefined)))
                : NCDataMatrix<float>();
}

} // namespace engine
