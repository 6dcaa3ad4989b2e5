#include "app/Colouring.h"

#include "app/Failure.h"
#include "app/Series.h"
#include "app/SeriesSpecification.h"
#include "app/Summary.h"
#include "catalogue/ProjectVectorHandler.h"
#include "platform/containers/Missing.h"
#include "utilities/DefaultSelection.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <unordered_map>

namespace {

constexpr auto overObservations = ProjectVector::VectorTypeVariablesScores;

using ValueOf = std::unordered_map<std::uint32_t, float>; // of observations by number

std::string IdentifiersOf(NCProject const &project) {
    VarObs const &list = project.GetObservations();
    std::vector<std::string> names;
    for (int alias = 1; alias <= list.SizeAliases(); ++alias)
        names.push_back(list.GetAlias(alias)->name);
    return Listed(names);
}

NCError UnknownColour(NCProject const &project, std::string const &asked) {
    VarObs const &variables = project.GetVariables();
    std::vector<std::string> names;
    for (std::uint32_t variable = 1; variable <= variables.Size(); ++variable)
        names.push_back(variables.GetText(variable, 1));
    return Problem(ExceptionMessage::translate("There is no identifier column, variable or statistic \"{1}\" to colour "
                                               "observations by. Identifier columns: {2}; variables: {3}.") %
                   asked % IdentifiersOf(project) % Listed(names));
}

// The model that a series comes from; null for a series of data.
boost::shared_ptr<ModelInfo const> ModelOf(NCProject const &project, DrawnSeries const &series) {
    if (!series.vector || !series.vector->UseModel())
        return nullptr;
    std::string const source = series.arguments.substr(0, series.arguments.find(','));
    return project.GetModelInfo(ProjectVector::GetModelNumber(project.shared_from_this(), source.c_str()));
}

// The heading of the identifier column whose texts are the classes of a discriminant model; empty for other models.
std::string ClassColumn(NCProject const &project, std::vector<DrawnSeries> const &series) {
    for (DrawnSeries const &each : series) {
        auto const info = ModelOf(project, each);
        auto const model =
            info && !info->isBatchModel && !info->classOrPhaseNames.empty() ? project.GetModel(info->number) : nullptr;
        if (!model)
            continue;
        std::string const heading = project.GetVariables().GetText(model->GetYColumnTerms()[1].GetMotherVariable(1), 1);
        if (IdentifierNamed(project.GetObservations(), heading))
            return heading;
    }
    return {};
}

// Adds what a data set has of observations that have no value yet.
void AddValues(boost::shared_ptr<NCDataSet const> const &set, std::uint32_t variable, ValueOf &valueOf) {
    if (!set || std::ranges::count(set->GetVariables(), variable) == 0)
        return;
    auto const values = set->GetVariable(variable);
    ObservationInfos const &rows = set->GetObservations();
    for (std::size_t row = 0; row < rows.size(); ++row)
        if (float const value = values[static_cast<int>(row) + 1]; !IsMissing(value))
            valueOf.emplace(rows[row].GetUniqueID(), value);
}

ValueOf ValuesOfVariable(engine::Project const &project, std::vector<DrawnSeries> const &series,
                         std::uint32_t variable) {
    ValueOf valueOf;
    for (DrawnSeries const &each : series) {
        auto const info = ModelOf(project, each);
        if (each.vector && each.vector->GetObsPredType() == ProjectVector::Predicted)
            AddValues(project.GetPredSet(-1), variable, valueOf);
        for (int const set : info ? info->dataSets : std::vector<int>())
            AddValues(project.GetDataSet(set), variable, valueOf);
        if (each.vector && each.vector->GetDataType() == ProjectVector::DataTypeDataSet)
            AddValues(
                project.GetDataSet(ProjectVector::GetDataSetNumber(project.shared_from_this(), each.arguments.c_str())),
                variable, valueOf);
    }
    AddValues(project.GetPredSet(-1), variable, valueOf);
    for (engine::DataSetRecord const &record : project.DataSets())
        AddValues(project.GetDataSet(record.number), variable, valueOf);
    return valueOf;
}

Colouring ByValue(std::string title, ValueOf const &valueOf, std::vector<std::uint32_t> const &observations) {
    Colouring colouring{std::move(title), {}, {}, {}};
    for (std::uint32_t const observation : observations) {
        auto const found = valueOf.find(observation);
        colouring.values.push_back(found == valueOf.end() ? missingValue : found->second);
    }
    if (std::ranges::all_of(colouring.values, IsMissing))
        throw Problem(
            ExceptionMessage::translate("No observation of the picture has a value of \"{1}\" to be coloured by.") %
            colouring.title);
    return colouring;
}

// The argument string of a statistic; a name by itself takes its arguments from the defaults.
std::string ArgumentString(boost::shared_ptr<engine::Project> const &project, std::string const &asked) {
    std::size_t const blank = asked.find(' ');
    VectorText const text = ReadVectorText(asked.substr(0, blank));
    if (!ProjectVectorHandler::Instance()->FindVector(text.name.c_str(), ProjectVector::VectorTypeNone,
                                                      ProjectVector::DataTypeNone, nullptr))
        throw UnknownColour(*project, asked);
    if (blank != std::string::npos)
        return asked;
    ProjectUtilities::DefaultSelection const defaults(project);
    return Specify(project, text, overObservations, defaults).ToStdString(&defaults);
}

Colouring ByStatistic(boost::shared_ptr<engine::Project> const &project, std::string const &asked,
                      std::vector<std::uint32_t> const &observations) {
    std::string const text = ArgumentString(project, asked);
    TablePtr const table = ReadSeries(*project, {.project = {}, .texts = {text}, .axis = overObservations}).table;
    ValueOf valueOf;
    for (int column = 1; column <= table->Columns(); ++column)
        if (float const value = table->GetMatrix()(1, column); !IsMissing(value))
            valueOf.emplace(table->GetColumnIDs().GetColumnID(column), value);
    return ByValue(table->GetRowName(1), valueOf, observations);
}

} // namespace

std::optional<std::size_t> Colouring::GroupOf(std::size_t item) const {
    if (!classes.empty())
        return classOf[item] < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(classOf[item]));
    return IsMissing(values[item]) ? std::nullopt : std::optional(std::size_t(0));
}

CLI::Option *AddColourOption(CLI::App &command, std::string &asked) {
    return command
        .add_option("--color", asked,
                    "Colour observations by an identifier column, a variable or a\nstatistic (the classes of a "
                    "discriminant model, or none)")
        ->type_name("COLUMN");
}

Colouring ColouringByIdentifier(NCProject const &project, std::string const &heading,
                                std::vector<std::uint32_t> const &observations) {
    auto const alias = IdentifierNamed(project.GetObservations(), heading);
    if (!alias)
        throw Problem(
            ExceptionMessage::translate("There is no identifier column \"{1}\" to colour by. There are: {2}.") %
            heading % IdentifiersOf(project));
    Colouring colouring{heading, {}, {}, {}};
    std::unordered_map<std::string, int> places;
    for (std::uint32_t const observation : observations) {
        std::string const &text = project.GetObservations().GetText(observation, static_cast<int>(*alias));
        int const next = static_cast<int>(places.size());
        colouring.classOf.push_back(text.empty() ? -1 : places.emplace(text, next).first->second);
        if (colouring.classOf.back() == next)
            colouring.classes.push_back(text);
    }
    if (colouring.classes.empty())
        throw Problem(
            ExceptionMessage::translate("No observation of the picture has a text in \"{1}\" to be coloured by.") %
            heading);
    if (std::size_t const all = colouring.classes.size(); all > mostColouredClasses) {
        int const other = static_cast<int>(mostColouredClasses) - 1;
        for (int &each : colouring.classOf)
            each = std::min(each, other);
        colouring.classes.resize(mostColouredClasses);
        colouring.classes.back() = "other (" + std::to_string(all - mostColouredClasses + 1) + ")";
    }
    return colouring;
}

std::optional<Colouring> ReadColouring(boost::shared_ptr<engine::Project> const &project, std::string const &asked,
                                       std::vector<DrawnSeries> const &series, ProjectVector::VectorTypeEnum axis,
                                       ColumnIDs const &items) {
    if (asked == "none" || (asked.empty() && axis != overObservations))
        return {};
    if (axis != overObservations)
        throw Problem(ExceptionMessage::translate("--color is for observations; this picture has one value for each "
                                                  "{1}.") %
                      ItemOf(axis));
    std::string const name = asked.empty() ? ClassColumn(*project, series) : asked;
    if (name.empty())
        return {};
    std::vector<std::uint32_t> observations;
    for (int column = 1; column <= items.Size(); ++column)
        observations.push_back(items.GetColumnID(column));
    if (IdentifierNamed(project->GetObservations(), name))
        return ColouringByIdentifier(*project, name, observations);
    if (auto const variable = ItemOfName(project->GetVariables(), name))
        return ByValue(name, ValuesOfVariable(*project, series, *variable), observations);
    return ByStatistic(project, name, observations);
}
