#pragma once

#include "platform/identity/BatchUtilities.h"
#include "platform/project/NCModel.h"

// The rows that the groups of a contribution are about: those of the workset of a model, or the rows predicted on it.
class ModelRows {
public:
    // NCError for a number that no model has. Without predictions an Exception "Aborted.".
    ModelRows(NCProject const &project, int model, bool predicted);

    ObservationInfos const &Observations() const {
        return m_predictions ? m_predictions->GetObservations() : m_model->GetObservations();
    }
    // Of each row; empty for a model that is not one of batches.
    NCDataVector<float> Maturity() const;
    BatchRuns Batches() const;

private:
    NCProject const &m_project;
    boost::shared_ptr<NCModel const> m_model;
    boost::shared_ptr<NCPredictions const> m_predictions; // empty for the workset
};

// The 1-based positions of observations among rows, which must live longer. Rows rise by their numbers as a rule:
// nothing is built then, and a question costs a binary search.
class RowPositions {
public:
    explicit RowPositions(ObservationInfos const &rows);
    // The first one of the observation; 0 when it is not there.
    int Of(std::uint32_t observation) const;

private:
    ObservationInfos const &m_rows;
    std::vector<int> m_rising; // positions by their observations; empty when the rows rise
};

// NCError for a number that no model has.
boost::shared_ptr<ModelInfo const> InfoOfModel(NCProject const &project, int model);
