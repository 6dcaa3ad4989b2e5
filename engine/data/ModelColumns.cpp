#include "engine/data/ModelColumns_internal.h"

namespace engine {

std::vector<int> GroupsOf(DataSet const &rows, std::string const &identifier, std::vector<std::string> const &groups) {
    AliasAccess const aliases = rows.GetObservationAliases();
    std::vector<int> result(rows.GetObservations().size(), -1);
    for (int const alias : aliases.GetUsedAliases()) {
        if (aliases.GetRawAliasName(alias) != identifier)
            continue;
        std::unordered_map<std::string, int> numbers;
        for (std::string const &group : groups)
            numbers.emplace(group, static_cast<int>(numbers.size()));
        for (std::size_t row = 0; row < result.size(); ++row)
            if (auto const found = numbers.find(aliases.GetAlias(alias, rows.GetObservations()[row]));
                found != numbers.end())
                result[row] = found->second;
    }
    return result;
}

ModelColumns::ModelColumns(ModelDefinition const &definition, boost::shared_ptr<DataSet const> fitted,
                           boost::shared_ptr<DataSet const> rows)
    : m_fitted(std::move(fitted)), m_rows(std::move(rows)) {
    if (!definition.centringGroups.empty())
        m_groups = GroupsOf(*m_rows, definition.centringIdentifier, definition.centringGroups);
    if (m_rows != m_fitted)
        for (DateColumn const &dates : m_fitted->Dates()) {
            int const column = dates.variable - 1;
            auto const days = m_rows->GetDates(m_fitted->GetVariables()[static_cast<std::size_t>(column)]);
            if (!days.empty())
                m_dates.emplace(column, DaysSince(m_fitted->GetFirstDay(), days));
        }
}

std::span<float const> ModelColumns::Values(int column) const {
    if (m_rows == m_fitted)
        return m_rows->Values(column);
    if (auto const dates = m_dates.find(column); dates != m_dates.end())
        return dates->second;
    std::optional<int> const found = m_rows->ColumnOf(m_fitted->GetVariables()[static_cast<std::size_t>(column)]);
    return found ? m_rows->Values(*found) : std::span<float const>();
}

} // namespace engine
