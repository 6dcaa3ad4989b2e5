#pragma once

#include "engine/statistics/RowSet.h"

namespace engine {

// The maturity of all rows; empty without rows, and for a model that is not of the evolution of batches.
NCDataVector<float> MaturityOf(RowSource const &source);

// A model of the evolution of batches as the project shows it.
class BatchModel final : public NCBatchModel {
public:
    explicit BatchModel(boost::shared_ptr<ModelView const> view) : m_view(std::move(view)) {}

    int GetModelNumber() const override { return m_view->GetModelNumber(); }
    ColumnTerms const &GetXColumnTerms() const override { return m_view->GetXColumnTerms(); }
    ColumnTerms const &GetYColumnTerms() const override { return m_view->GetYColumnTerms(); }
    ObservationInfos const &GetObservations() const override { return m_view->GetObservations(); }
    int GetCoefficientKind() const override { return m_view->GetCoefficientKind(); }
    DefaultCenterValues GetCenterValues() const override { return m_view->GetCenterValues(); }
    float GetDModXCrit(int component, float level, TriState::State normalised) const override {
        return m_view->GetDModXCrit(component, level, normalised);
    }
    double GetCVStdDevDF(int component) const override { return m_view->GetCVStdDevDF(component); }
    double GetRowDF(int xSideComponents, bool ofY) const override { return m_view->GetRowDF(xSideComponents, ofY); }

    std::vector<int> GetBatchIndexes() const override;
    BatchInfoVector GetBatchInfo() const override { return m_view->GetBatchInfo(); }
    // Of the batch at that position among those of the model, from 1; empty outside.
    std::string GetBatchName(int index) const override { return m_view->GetBatchRuns().names(index, {}); }
    int GetYVarTreatment() const override { return m_view->Fit().definition.evolution->treatment; }
    NCDataVector<float> GetMaturity() const override;
    NCDataVector<float> GetTimeMaturityVector() const override;
    NCDataMatrix<float> GetAlignedScores(int component) const override;
    NCDataMatrix<float> GetAlignedDModX(int component) const override;

private:
    boost::shared_ptr<ModelView const> m_view;
};

} // namespace engine
