#pragma once

#include "engine/DataSet_internal.h"
#include "engine/models/FittedModel.h"
#include "platform/ColumnIDs.h"
#include "platform/NCModel.h"

#include <memory>
#include <optional>
#include <string>

namespace engine {

// New rows on a model: their values as the model scales them, and their scores.
struct PredictedRows {
    boost::shared_ptr<DataSet const> dataSet;
    Block x, y;
    Scores scores;
    Eigen::VectorXi xObserved;
    ColumnIDs columns;
};

// A fitted model, with its workset and all that statistics ask of it. What takes time is computed when it is first
// needed, and kept.
class ModelView final : public PredictiveModel, public NCDataContainerBase {
public:
    ModelView(int number, FittedModel model, boost::shared_ptr<DataSet const> dataSet, ProjectPtr const &project);

    FittedModel const &Fit() const { return m_fit; }
    DataSet const &Source() const { return *m_dataSet; }
    Workset const &Data() const;

    // Identity of the workset's observations, and of the terms; X terms before Y terms, and the other way round.
    ColumnIDs const &Observations() const { return m_observationColumns; }
    ColumnIDs const &XTerms() const { return m_xColumns; }
    ColumnIDs const &YTerms() const { return m_yColumns; }
    ColumnIDs const &XYTerms() const { return m_xyColumns; }
    ColumnIDs const &YXTerms() const { return m_yxColumns; }
    ColumnIDs None() const { return ColumnIDs(m_xColumns.GetProject()); }

    // "M1.t": what the label of a row begins with.
    std::string Label(char const *name) const { return "M" + std::to_string(m_number) + "." + name; }

    // The rows of a prediction set on this model.
    PredictedRows Predict(boost::shared_ptr<DataSet const> dataSet, ProjectPtr const &project) const;

    int GetModelNumber() const override { return m_number; }
    ColumnTerms const &GetXColumnTerms() const override { return m_xTerms; }
    ColumnTerms const &GetYColumnTerms() const override { return m_yTerms; }
    ObservationInfos const &GetObservations() const override { return m_observations; }
    ProjectPtr GetProject() const override { return m_xColumns.GetProject(); }
    std::vector<std::uint32_t> const &GetVariables() const override { return m_variables; }
    AliasAccess GetObservationAliases() const override { return m_dataSet->GetObservationAliases(); }
    AliasAccess GetVariableAliases() const override { return m_dataSet->GetVariableAliases(); }
    float GetDModXCrit(int component, float level, TriState::State normalised) const override;
    double GetCVStdDevDF(int component) const override;

private:
    // Degrees of freedom of rows and of columns after so many predictive components (Wold 1976).
    double RowFreedom(Index predictive) const;
    double ColumnFreedom(Index predictive) const;
    // The root mean square of the workset's distances to the model.
    double PooledDistance(Index predictive) const;

    int m_number;
    FittedModel m_fit;
    boost::shared_ptr<DataSet const> m_dataSet;
    ColumnTerms m_xTerms, m_yTerms;
    ObservationInfos m_observations;
    std::vector<std::uint32_t> m_variables; // of X, then of Y
    ColumnIDs m_observationColumns, m_xColumns, m_yColumns, m_xyColumns, m_yxColumns;
    mutable std::optional<Workset> m_workset;
};

} // namespace engine
