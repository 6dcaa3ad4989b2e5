#include "navigation/ObsMaturityConverter.h"

#include "contribution/ModelRows_internal.h"
#include "platform/project/NCProject.h"

namespace DataSeriesUtilities {

struct ObsMaturityConverter::Rows {
    int model;
    ModelRows rows;
    RowPositions positions;
    NCDataVector<float> maturity;

    Rows(NCProject const &project, int number, bool predicted)
        : model(number), rows(project, number, predicted), positions(rows.Observations()), maturity(rows.Maturity()) {}
};

ObsMaturityConverter::ObsMaturityConverter(NCProject &project, bool predicted)
    : m_project(project), m_predicted(predicted) {}

ObsMaturityConverter::~ObsMaturityConverter() = default;

std::pair<std::string, float> ObsMaturityConverter::GetMaturityValue(int model, unsigned long observation) const {
    if (!m_rows || m_rows->model != model)
        m_rows = std::make_unique<Rows>(m_project, model, m_predicted);
    auto const number = static_cast<std::uint32_t>(observation);
    std::string const batch =
        observation == 0 ? std::string() : ObservationInfo(number).GetBatchName(m_project.GetObservations());
    return {batch, m_rows->maturity(m_rows->positions.Of(number), 0.0f)};
}

} // namespace DataSeriesUtilities
