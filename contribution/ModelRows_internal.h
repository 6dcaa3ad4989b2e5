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

// NCError for a number that no model has.
boost::shared_ptr<ModelInfo const> InfoOfModel(NCProject const &project, int model);
