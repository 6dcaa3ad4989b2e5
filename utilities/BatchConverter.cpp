#include "utilities/BatchConverter.h"

#include "platform/project/NCProject.h"
#include "platform/text/Exception.h"

#include <algorithm>
#include <unordered_map>

namespace ProjectUtilities {

BatchConverter::BatchConverter(NCProject const &project, int model, bool predicted) : m_project(&project) {
    if (predicted) {
        m_predictions = project.GetPredictions(model, false);
        if (!m_predictions)
            throw NCError(ExceptionMessage::translate("Predictions could not be calculated."), NCError::Error);
        m_observations = &m_predictions->GetObservations();
    } else {
        m_model = project.GetModel(model);
        if (!m_model)
            throw NCError(ExceptionMessage::translate("There is no model {1}.") % model, NCError::Error);
        m_observations = &m_model->GetObservations();
    }
    m_beginnings = BatchUtilities::GetBatchBeginnings(project.GetObservations(), *m_observations);
}

std::string BatchConverter::NameOf(int index) const {
    ObservationInfo const &first = (*m_observations)[static_cast<std::size_t>(m_beginnings[index] - 1)];
    return first.GetBatchName(m_project->GetObservations());
}

void BatchConverter::FromBatchToIndex(std::vector<std::string> const &names, std::vector<int> &indexes) const {
    std::unordered_map<std::string, int> positions;
    for (int index = 1; index <= m_beginnings.Size(); ++index)
        positions[NameOf(index)] = index;
    indexes.clear();
    for (std::string const &name : names)
        if (auto const found = positions.find(name); found != positions.end())
            indexes.push_back(found->second);
}

void BatchConverter::FromIndexToBatch(std::vector<int> const &indexes, std::vector<std::string> &names) const {
    names.clear();
    names.reserve(indexes.size());
    for (int const index : indexes)
        names.push_back(NameOf(index));
}

bool BatchConverter::HasBatch(std::string const &name) const {
    for (int index = 1; index <= m_beginnings.Size(); ++index)
        if (NameOf(index) == name)
            return true;
    return false;
}

BatchInfoConverter::BatchInfoConverter(NCProject const &project,
                                       boost::shared_ptr<NCDataContainerBase const> const &source,
                                       ObservationInfos const &rows) {
    NCStringVector const names = source ? source->GetBatchInfo().GetBatchNames() : NCStringVector();
    for (int const first : BatchUtilities::GetBatchBeginnings(project.GetObservations(), rows)) {
        ObservationInfo const &row = rows[static_cast<std::size_t>(first - 1)];
        m_batchInfos.push_back(names.FindString(row.GetBatchName(project.GetObservations()), true, 1));
    }
}

int BatchInfoConverter::FromBatchInfoToLocalIndex(int batchInfo) const {
    auto const found = std::find(m_batchInfos.begin(), m_batchInfos.end(), batchInfo);
    return found == m_batchInfos.end() ? -1 : static_cast<int>(found - m_batchInfos.begin()) + 1;
}

int BatchInfoConverter::FromLocalIndexToBatchInfo(int local) const {
    bool const known = local >= 0 && local < static_cast<int>(m_batchInfos.size());
    return known ? m_batchInfos[static_cast<std::size_t>(local)] : -1;
}

} // namespace ProjectUtilities
