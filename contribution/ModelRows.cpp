#include "contribution/ModelRows_internal.h"

#include "platform/project/NCProject.h"
#include "platform/text/Exception.h"

namespace {

NCError ModelMissing(int model) {
    return NCError(ExceptionMessage::translate("There is no model {1}.") % model, NCError::Error);
}

} // namespace

ModelRows::ModelRows(NCProject const &project, int model, bool predicted)
    : m_project(project), m_model(project.GetModel(model)) {
    if (!m_model)
        throw ModelMissing(model);
    if (!predicted)
        return;
    m_predictions = project.GetPredictions(model, false);
    if (!m_predictions)
        throw Exception(ExceptionMessage::translate("Aborted."));
}

NCDataVector<float> ModelRows::Maturity() const {
    if (m_predictions)
        return m_predictions->GetMaturity();
    auto const *const ofBatches = dynamic_cast<NCBatchModel const *>(m_model.get());
    return ofBatches ? ofBatches->GetMaturity() : NCDataVector<float>();
}

BatchRuns ModelRows::Batches() const {
    return BatchUtilities::GetBatchRuns(m_project.GetObservations(), Observations());
}

boost::shared_ptr<ModelInfo const> InfoOfModel(NCProject const &project, int model) {
    boost::shared_ptr<ModelInfo const> info = project.GetModelInfo(model);
    if (!info)
        throw ModelMissing(model);
    return info;
}
