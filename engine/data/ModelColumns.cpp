#include "engine/data/ModelColumns_internal.h"

#include "platform/containers/Missing.h"
#include "platform/project/BatchYVarTreatment.h"
#include "platform/project/NCProject.h"

#include <limits>

namespace engine {

std::vector<int> GroupsOf(DataSet const &rows, std::string const &identifier, std::vector<std::string> const &groups) {
    std::vector<int> result(rows.GetObservations().size(), -1);
    std::optional<TextColumn> const column = rows.Identifier(identifier);
    std::unordered_map<std::string_view, int> numbers;
    for (std::string const &group : groups)
        numbers.emplace(group, static_cast<int>(numbers.size()));
    for (std::size_t row = 0; column && row < result.size(); ++row)
        if (auto const found = numbers.find(column->texts[row]); found != numbers.end())
            result[row] = found->second;
    return result;
}

ModelColumns::ModelColumns(ModelDefinition const &definition, boost::shared_ptr<DataSet const> fitted,
                           boost::shared_ptr<DataSet const> rows, std::span<int const> chosen)
    : m_fitted(std::move(fitted)), m_rows(std::move(rows)) {
    if (!definition.centringGroups.empty())
        m_groups = GroupsOf(*m_rows, definition.centringIdentifier, definition.centringGroups);
    if (definition.HasLags())
        FindBatches();
    MakeLevels(definition.levels);
    if (m_rows != m_fitted)
        for (DateColumn const &dates : m_fitted->Dates()) {
            int const column = dates.variable - 1;
            auto const days = m_rows->GetDates(m_fitted->GetVariables()[static_cast<std::size_t>(column)]);
            if (!days.empty())
                m_dates.emplace(column, DaysSince(m_fitted->GetFirstDay(), days));
        }
    if (definition.evolution && definition.evolution->treatment != BatchYVarTreatment::None)
        for (Term const &response : definition.yTerms)
            Treat(definition.evolution->treatment, response.column, chosen);
}

void ModelColumns::MakeLevels(std::vector<Level> const &levels) {
    std::map<std::string, std::vector<std::size_t>> variables; // the places of the levels of each
    for (std::size_t place = 0; place < levels.size(); ++place) {
        variables[levels[place].variable].push_back(place);
        m_levelNames.push_back(levels[place].Name());
    }
    m_levels.resize(levels.size());
    for (auto const &[variable, places] : variables) {
        std::vector<std::string> texts;
        for (std::size_t const place : places)
            texts.push_back(levels[place].text);
        std::vector<int> const groups = GroupsOf(*m_rows, variable, texts);
        for (int own = 0; own < static_cast<int>(places.size()); ++own)
            for (int const group : groups)
                m_levels[places[static_cast<std::size_t>(own)]].push_back(group < 0      ? missingValue
                                                                          : group == own ? 1.0f
                                                                                         : 0.0f);
    }
}

// The rows of a data set of whole batches are no batches of their own: they follow each other.
void ModelColumns::FindBatches() {
    if (m_rows->MadeAs<BatchLevelRecipe>())
        return;
    auto const size = static_cast<int>(m_rows->GetObservations().size());
    auto const &beginnings = m_rows->GetBatchRuns().beginnings;
    m_beginnings.reserve(static_cast<std::size_t>(size));
    for (int batch = 1; batch <= beginnings.Size(); ++batch)
        m_beginnings.insert(m_beginnings.end(),
                            static_cast<std::size_t>(BatchUtilities::GetBatchLength(beginnings, batch, size)),
                            beginnings[batch] - 1);
}

// Dates are treated as such: what is left of them may be minutes.
void ModelColumns::Treat(int treatment, int column, std::span<int const> chosen) {
    std::uint32_t const variable = m_fitted->GetVariables()[static_cast<std::size_t>(column)];
    std::span<double const> const dates = m_rows->GetDates(variable);
    std::span<float const> const values = Untreated(column);
    if (values.empty())
        return;
    std::vector<float> &treated = m_treated.emplace(column, std::vector(values.size(), missingValue)).first->second;
    NCObservations const &list = m_rows->GetProject()->GetObservations();
    ObservationInfos observations;
    for (int const row : chosen)
        observations.push_back(m_rows->GetObservations()[static_cast<std::size_t>(row)]);
    auto const beginnings = BatchUtilities::GetBatchBeginnings(list, observations);
    for (int batch = 1; batch <= beginnings.Size(); ++batch) {
        int const length = BatchUtilities::GetBatchLength(beginnings, batch, static_cast<int>(chosen.size()));
        auto const rows =
            chosen.subspan(static_cast<std::size_t>(beginnings[batch] - 1), static_cast<std::size_t>(length));
        std::vector<double> ofBatch;
        for (auto const row : rows) {
            auto const at = static_cast<std::size_t>(row);
            ofBatch.push_back(!dates.empty()          ? dates[at]
                              : IsMissing(values[at]) ? std::numeric_limits<double>::quiet_NaN()
                                                      : static_cast<double>(values[at]));
        }
        BatchYVarTreatment::Apply(treatment, ofBatch);
        for (std::size_t i = 0; i < rows.size(); ++i)
            treated[static_cast<std::size_t>(rows[i])] = ToStored(ofBatch[i]);
    }
}

std::span<float const> ModelColumns::Values(int column) const {
    auto const treated = m_treated.find(column);
    return treated == m_treated.end() ? Untreated(column) : treated->second;
}

std::string ModelColumns::Name(int column) const {
    return column < 0 ? m_levelNames[static_cast<std::size_t>(-1 - column)] : m_fitted->Name(column);
}

std::span<float const> ModelColumns::Untreated(int column) const {
    if (column < 0)
        return m_levels[static_cast<std::size_t>(-1 - column)];
    if (m_rows == m_fitted)
        return m_rows->Values(column);
    if (auto const dates = m_dates.find(column); dates != m_dates.end())
        return dates->second;
    std::optional<int> const found = m_rows->ColumnOf(m_fitted->GetVariables()[static_cast<std::size_t>(column)]);
    return found ? m_rows->Values(*found) : std::span<float const>();
}

} // namespace engine
