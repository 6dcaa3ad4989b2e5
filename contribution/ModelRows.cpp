#include "contribution/ModelRows_internal.h"

#include "platform/project/NCProject.h"
#include "platform/text/Exception.h"

#include <algorithm>
#include <numeric>

namespace {

// Without a way out of the loop, so that it is made of vector instructions.
bool AreRising(ObservationInfos const &rows) {
    int falls = 0;
    for (std::size_t row = 1; row < rows.size(); ++row)
        falls += rows[row - 1].GetUniqueID() >= rows[row].GetUniqueID();
    return falls == 0;
}

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

RowPositions::RowPositions(ObservationInfos const &rows) : m_rows(rows) {
    if (AreRising(rows))
        return;
    m_rising.resize(rows.size());
    std::iota(m_rising.begin(), m_rising.end(), 1);
    auto const observation = [&rows](int position) {
        return rows[static_cast<std::size_t>(position - 1)].GetUniqueID();
    };
    std::ranges::stable_sort(m_rising, {}, observation);
}

int RowPositions::Of(std::uint32_t observation) const {
    auto const at = [this](int position) { return m_rows[static_cast<std::size_t>(position - 1)].GetUniqueID(); };
    if (!m_rising.empty()) {
        auto const found = std::ranges::lower_bound(m_rising, observation, {}, at);
        return found != m_rising.end() && at(*found) == observation ? *found : 0;
    }
    auto const found = std::ranges::lower_bound(m_rows, observation, {}, &ObservationInfo::GetUniqueID);
    bool const isThere = found != m_rows.end() && found->GetUniqueID() == observation;
    return isThere ? static_cast<int>(found - m_rows.begin()) + 1 : 0;
}

boost::shared_ptr<ModelInfo const> InfoOfModel(NCProject const &project, int model) {
    boost::shared_ptr<ModelInfo const> info = project.GetModelInfo(model);
    if (!info)
        throw ModelMissing(model);
    return info;
}
