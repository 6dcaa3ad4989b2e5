#pragma once

#include "engine/data/ModelColumns_internal.h"
#include "engine/statistics/Residuals.h"
#include "platform/identity/ColumnIDs.h"
#include "platform/project/NCModel.h"

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace engine {

// New rows on a model: their values as the model scales them, and their scores.
struct PredictedRows {
    boost::shared_ptr<DataSet const> dataSet;
    Block x, y;
    Scores scores;
    Eigen::VectorXi xObserved, yObserved;
    ColumnIDs columns;
    std::shared_ptr<SourceColumns const> source;
};

// Neighbouring rows, from 0.
struct RowRange {
    Index first = 0;
    Index count = 0;
};

// All rows for -1, otherwise those of the batch with that number among them; nothing when there is no such batch.
std::optional<RowRange> RowsOfBatch(NCDataContainerBase const &data, int batch);

// Observations as the columns of a table.
ColumnIDs ObservationColumns(std::span<ObservationInfo const> observations, ProjectPtr const &project, int owner);

// A fitted model, with its workset and all that statistics ask of it. What takes time is computed when it is first
// needed, and kept.
class ModelView final : public PredictiveModel, public NCDataContainerBase {
public:
    ModelView(int number, FittedModel model, boost::shared_ptr<DataSet const> dataSet, ProjectPtr const &project);

    FittedModel const &Fit() const { return m_fit; }
    DataSet const &FittedData() const { return *m_dataSet; }
    ModelColumns const &Source() const { return m_source; }
    Workset const &Data() const;

    // Identity of the workset's observations, and of the terms; X terms before Y terms, and the other way round.
    ColumnIDs const &Observations() const { return m_observationColumns; }
    ColumnIDs const &XTerms() const { return m_xColumns; }
    ColumnIDs const &YTerms() const { return m_yColumns; }
    ColumnIDs const &XYTerms() const { return m_xyColumns; }
    ColumnIDs const &YXTerms() const { return m_yxColumns; }
    // X terms with the constant of a regression equation before them.
    ColumnIDs CoefficientTerms() const;
    // Components in the overall order, those of the predictive kind, and the last one.
    ColumnIDs ComponentColumns() const;
    ColumnIDs PredictiveComponents() const;
    ColumnIDs LastComponent() const;
    // "2+0", "2+1", ...: all predictive components with more and more X-side orthogonal ones. Nothing for a kind of
    // model without orthogonal components.
    ColumnIDs ProgressionColumns() const;
    ColumnIDs None() const { return ColumnIDs(m_xColumns.GetProject()); }

    // "M1.t": what the label of a row begins with.
    std::string Label(std::string const &name) const { return "M" + std::to_string(m_number) + "." + name; }

    // Squared distances of the workset's rows to a model of that size, weighted by modelling power or not, and their
    // mean.
    struct RowDistances {
        Vector squares;
        double pooled = 0;
    };
    RowDistances const &XDistances(Index size, bool weighted) const;

    // The rows of a prediction set on this model.
    PredictedRows Predict(boost::shared_ptr<DataSet const> dataSet, ProjectPtr const &project) const;

    int GetModelNumber() const override { return m_number; }
    ColumnTerms const &GetXColumnTerms() const override { return m_xTerms; }
    ColumnTerms const &GetYColumnTerms() const override { return m_yTerms; }
    ObservationInfos const &GetObservations() const override { return m_observations; }
    ProjectPtr GetProject() const override { return m_xColumns.GetProject(); }
    std::vector<std::uint32_t> const &GetVariables() const override { return m_variables; }
    AliasAccess GetObservationAliases() const override;
    AliasAccess GetVariableAliases() const override;
    DefaultCenterValues GetCenterValues() const override;
    float GetDModXCrit(int component, float level, TriState::State normalised) const override;
    double GetCVStdDevDF(int component) const override;
    double GetRowDF(int xSideComponents, bool ofY) const override;

private:
    ColumnIDs NamedColumns(NCStringVector names) const;

    int m_number;
    FittedModel m_fit;
    boost::shared_ptr<DataSet const> m_dataSet;
    ModelColumns m_source;
    ColumnTerms m_xTerms, m_yTerms;
    ObservationInfos m_observations;
    std::vector<std::uint32_t> m_variables; // of X, then of Y
    ItemAliases m_observationAliases, m_variableAliases;
    ColumnIDs m_observationColumns, m_xColumns, m_yColumns, m_xyColumns, m_yxColumns;
    mutable std::optional<Workset> m_workset;
    mutable std::map<std::pair<Index, bool>, RowDistances> m_xDistances;
};

} // namespace engine
