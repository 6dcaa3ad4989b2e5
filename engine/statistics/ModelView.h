#pragma once

#include "engine/batches/Alignment.h"
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

// All rows for -1, otherwise those of the batch with that number among them; nothing when there is no such batch.
std::optional<RowRange> RowsOfBatch(NCDataContainerBase const &data, int batch);

// Those of all batches, in the order of their rows.
std::vector<RowRange> RangesOfBatches(NCDataContainerBase const &data);

// Observations as the columns of a table.
ColumnIDs ObservationColumns(std::span<ObservationInfo const> observations, ProjectPtr const &project, int owner);

// The batches of a workset or of a prediction set on the grid of their model; made when first asked for.
class AlignedBatches {
public:
    // `maturities` gives the maturity of all rows.
    template <typename Maturities>
    Alignment const &Of(NCDataContainerBase const &rows, AlignmentGrid const &grid, Maturities maturities,
                        std::span<std::size_t const> running) const {
        if (!m_alignment)
            m_alignment.emplace(grid, RangesOfBatches(rows), maturities(), running);
        return *m_alignment;
    }
    // The average of all of them in X: points by terms, as `compute` gives it.
    template <typename Compute>
    RowMatrix const &AverageX(Compute compute) const {
        if (!m_averageX)
            m_averageX = compute();
        return *m_averageX;
    }

private:
    mutable std::optional<Alignment> m_alignment;
    mutable std::optional<RowMatrix> m_averageX;
};

// New rows on a model: those of a prediction set that the model is about, their values as the model scales them, and
// their scores.
class PredictedRows final : public NCDataContainerBase {
public:
    PredictedRows(boost::shared_ptr<DataSet const> dataSet, std::vector<int> rows);

    boost::shared_ptr<DataSet const> dataSet;
    std::vector<int> rows; // of the data set, from 0
    ObservationInfos observations;
    Block x, y;
    Scores scores;
    Eigen::VectorXi xObserved, yObserved;
    ColumnIDs columns;
    std::shared_ptr<SourceColumns const> source;
    AlignedBatches batches;
    std::vector<std::size_t> running; // batches, from 0, that have not finished the phase of the model

    ProjectPtr GetProject() const override { return dataSet->GetProject(); }
    ObservationInfos const &GetObservations() const override { return observations; }
    std::vector<std::uint32_t> const &GetVariables() const override { return dataSet->GetVariables(); }
    AliasAccess GetObservationAliases() const override { return dataSet->GetObservationAliases(); }
    AliasAccess GetVariableAliases() const override { return dataSet->GetVariableAliases(); }
};

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
    // Terms with the constant of a regression equation before them.
    ColumnIDs CoefficientTerms(ColumnTerms const &terms) const;
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
    // Means of the X terms over the workset, in its scale: 0 where they are centred.
    Vector const &XMeans() const;
    // Standard deviations of t and of t_o over the workset.
    Vector const &DeviationsOfT() const;
    Vector const &DeviationsOfTo() const;

    // The rows of a prediction set on this model; of a model of one phase only those of the phase.
    std::unique_ptr<PredictedRows> Predict(boost::shared_ptr<DataSet const> dataSet, ProjectPtr const &project) const;

    // Of models of the evolution of batches only.
    AlignmentGrid const &Grid() const;
    AlignedBatches const &Batches() const { return m_batches; }

    int GetModelNumber() const override { return m_number; }
    ColumnTerms const &GetXColumnTerms() const override { return m_xTerms; }
    ColumnTerms const &GetYColumnTerms() const override { return m_yTerms; }
    ObservationInfos const &GetObservations() const override { return m_observations; }
    ProjectPtr GetProject() const override { return m_xColumns.GetProject(); }
    std::vector<std::uint32_t> const &GetVariables() const override { return m_variables; }
    AliasAccess GetObservationAliases() const override;
    AliasAccess GetVariableAliases() const override;
    // Of wavelet coefficients those of unscaled variables, which go back to the variables as they are.
    int GetCoefficientKind() const override {
        auto const *const compression = m_dataSet->MadeAs<CompressionRecipe>();
        return compression && !compression->denoised ? PredictiveModel::Unscaled : PredictiveModel::CenteredScaled;
    }
    DefaultCenterValues GetCenterValues() const override;
    PLSTreeProperties GetTreeProperties() const override {
        return m_fit.definition.tree ? m_fit.definition.tree->properties : PLSTreeProperties();
    }
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
    mutable std::optional<Vector> m_xMeans, m_tDeviations, m_toDeviations;
    mutable std::optional<AlignmentGrid> m_grid;
    AlignedBatches m_batches;
};

} // namespace engine
