#include "app/TableDates.h"

#include "platform/project/NCProject.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <unordered_map>

namespace {

// The data set whose values a row shows, and the number of the variable or observation. No set for any other row.
struct ShownItem {
    boost::shared_ptr<NCDataSet const> set;
    std::uint32_t number = 0;
};

ShownItem ItemOf(NCProject const &project, DrawnSeries const &series) {
    ProjectVector::Arguments arguments;
    if (!series.vector || !series.vector->ReadArguments(series.arguments.c_str(), arguments))
        return {};
    ProjectVector const &vector = *series.vector;
    char const *const source = arguments.source.c_str();
    auto const number = static_cast<std::uint32_t>(arguments.number);
    if (!vector.UseModel() && vector.GetNumberType() == ProjectVector::NumberObsOrVar)
        return {vector.GetDataType() == ProjectVector::DataTypePredictionSet
                    ? project.GetPredSet(-1)
                    : project.GetDataSet(ProjectVector::GetDataSetNumber(project.shared_from_this(), source)),
                number};
    std::string_view const name = vector.GetName();
    VariableInfo const *const time = project.GetVariables().GetDefaultTimeVariable();
    if (!time || !name.starts_with("Date/Time"))
        return {};
    auto const model = project.GetModelInfo(ProjectVector::GetModelNumber(project.shared_from_this(), source));
    bool const ofPredictions = vector.GetObsPredType() == ProjectVector::Predicted;
    return {ofPredictions || !model ? project.GetPredSet(-1) : project.GetDataSet(model->dataSets.front()),
            time->GetUniqueID()};
}

// The dates of a variable, for each column of the table the one of its observation.
std::vector<double> DatesOfVariable(ShownItem const &item, ColumnIDs const &columns) {
    std::span<double const> const dates = item.set->GetDates(item.number);
    if (dates.empty())
        return {};
    std::unordered_map<std::uint32_t, double> dateOf;
    for (std::size_t row = 0; row < dates.size(); ++row)
        dateOf.emplace(item.set->GetObservations()[row].GetUniqueID(), dates[row]);
    std::vector<double> days;
    for (int column = 1; column <= columns.Size(); ++column) {
        auto const found = dateOf.find(columns.GetColumnID(column));
        days.push_back(found == dateOf.end() ? std::nan("") : found->second);
    }
    return days;
}

// The dates of an observation, for each column of the table the one of its variable.
std::vector<double> DatesOfObservation(ShownItem const &item, ColumnIDs const &columns) {
    ObservationInfos const &rows = item.set->GetObservations();
    auto const row = static_cast<std::size_t>(std::ranges::find(rows, ObservationInfo(item.number)) - rows.begin());
    std::vector<double> days;
    for (int column = 1; column <= columns.Size() && row < rows.size(); ++column) {
        std::span<double const> const dates = item.set->GetDates(columns.GetColumnID(column));
        days.push_back(dates.empty() ? std::nan("") : dates[row]);
    }
    return days;
}

} // namespace

TableDates::TableDates(NCProject const &project, std::vector<DrawnSeries> const &series, ProjectData const &table) {
    for (DrawnSeries const &each : series) {
        Row &row = m_rows.emplace_back();
        ShownItem const item = ItemOf(project, each);
        if (!item.set)
            continue;
        row.overObservations = each.vector->GetType() == ProjectVector::VectorTypeVariablesScores;
        row.days = row.overObservations ? DatesOfVariable(item, table.GetColumnIDs())
                                        : DatesOfObservation(item, table.GetColumnIDs());
        row.precision = engine::PrecisionOf(row.days);
    }
}

std::string TableDates::Text(std::size_t row, std::size_t item) const {
    double const days = Days(row, item);
    return std::isnan(days) ? std::string() : engine::DateTimeText(days, m_rows[row].precision);
}

std::string TableDates::Name(ProjectData const &table, std::size_t row) const {
    std::string const name = table.GetRowName(static_cast<int>(row) + 1);
    return Has(row) ? name.substr(0, name.rfind(" (days since ")) : name;
}
