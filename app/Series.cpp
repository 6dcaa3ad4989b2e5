#include "app/Series.h"

#include "app/ContributionText.h"
#include "app/Failure.h"
#include "app/Reason.h"
#include "building/CreateProjectData.h"

#include <CLI/CLI.hpp>

namespace {

using ProjectDataUtilities::CreateProjectData;
using Axis = ProjectVector::VectorTypeEnum;

// One series. The placeholders ("Num", "Missing") run over what the other series have in common.
TablePtr ReadOne(engine::Project const &project, CreateProjectData const &creator, SeriesRequest const &request,
                 std::string const &text, Axis axis, DrawnSeries &drawn) {
    if (CreateProjectData::IsNum(text) || CreateProjectData::IsMissing(text)) {
        std::list<std::string> const all(request.texts.begin(), request.texts.end());
        TablePtr table = CreateProjectData::IsNum(text) ? creator.CreateNumProjectData(all, axis)
                                                        : creator.CreateMissingProjectData(all, axis);
        if (!table)
            throw Problem(
                ExceptionMessage::translate("\"{1}\" has no items to run over: the other series have none in common.") %
                text);
        return table;
    }
    NamedSeries const named = FindSeries(project, text, axis);
    drawn = {named.vector, named.arguments};
    TablePtr table = creator.GetProjectData(named.Text(), axis);
    if (!table || table->Rows() == 0 || table->Columns() == 0)
        throw GivesNothing(project, *named.vector, named.source, named.arguments, text);
    return table;
}

// Of a vector of values the two flags that tell their units come last. Where they are left out, whatever stands last is
// read as one: so they are said here, for the units of the data.
std::string WithUnits(ProjectVector const &vector, std::string arguments) {
    if (!vector.UseUnscalingTransform())
        return arguments;
    auto const fields = std::ranges::count(arguments, ',') + 1;
    int const before = vector.HasOneComponent() || vector.GetComponentType() == ProjectVector::ComponentNone ? 4 : 6;
    for (auto field = fields; field < before + 2; ++field)
        arguments += field < before ? ",0" : ",1";
    return arguments;
}

// The vector makes something of all arguments: of a batch behind the others, or of a list of batches.
bool ReadsAll(ProjectVector const &vector, std::string const &arguments) {
    constexpr int listOfBatches = -2;
    ProjectVector::Arguments read;
    return vector.ReadArguments(arguments.c_str(), read) && (!read.rest || read.batch == listOfBatches);
}

// Where a name stands for several statistics, the arguments tell which one is meant: the first that they give data of,
// or else one behind it that makes more of them.
std::optional<Axis> AxisMeant(engine::Project const &project, std::string const &name, std::string const &text,
                              Source const &source) {
    std::vector<Axis> const axes = AxesOf(name, source);
    if (axes.size() < 2)
        return axes.empty() ? std::nullopt : std::optional(axes.front());
    std::string const arguments = text.substr(text.find(' ') + 1);
    auto const gives = [&](Axis axis) { return CreateProjectData(project).GetProjectData(text, axis) != nullptr; };
    auto const readsAll = [&](Axis axis) { return ReadsAll(*Find(name, axis, source), arguments); };
    auto const first = std::ranges::find_if(axes, gives);
    if (first == axes.end())
        return axes.front();
    auto const better = std::find_if(first, axes.end(), [&](Axis axis) { return readsAll(axis) && gives(axis); });
    return better == axes.end() ? *first : *better;
}

Axis ChooseAxis(engine::Project const &project, SeriesRequest const &request) {
    if (request.axis)
        return *request.axis;
    for (std::string const &text : request.texts)
        if (!CreateProjectData::IsNum(text) && !CreateProjectData::IsMissing(text))
            return FindSeries(project, text, {}).vector->GetType();
    return ProjectVector::VectorTypeVariablesScores;
}

} // namespace

NamedSeries FindSeries(engine::Project const &project, std::string const &text, std::optional<Axis> axis) {
    std::size_t const blank = text.find(' ');
    if (blank == std::string::npos || blank == 0)
        throw UsageError("\"" + text + "\" is no vector with its arguments, such as \"t M1,1,0,0\"");
    std::string const name = text.substr(0, blank);
    std::string const arguments = text.substr(blank + 1);
    Source const source = ReadSource(project, arguments.substr(0, arguments.find(',')), text);
    std::optional<Axis> const found = axis ? axis : AxisMeant(project, name, text, source);
    ProjectVector const *const vector = found ? Find(name, *found, source) : nullptr;
    if (!vector)
        throw Unknown(name, axis, source);
    if (vector->IsContribution())
        SplitContribution(*vector, arguments);
    return {vector, source, WithUnits(*vector, arguments)};
}

std::string NamedSeries::Text() const {
    return vector->GetName() + (' ' + arguments);
}

void AddSeriesOptions(CLI::App &command, SeriesRequest &request) {
    command.add_option("PROJECT", request.project, "The project file")->required();
    command.add_option("STRING", request.texts, "A vector, a blank and its arguments: \"t M1,1,0,0\"")->required();
    AddAxisOption(command, request.axis);
}

// As CreateProjectData joins a list, but for what it leaves out silently: here that is an error.
Series ReadSeries(engine::Project const &project, SeriesRequest const &request) {
    CreateProjectData const creator(project);
    Axis const axis = ChooseAxis(project, request);
    TablePtr joined;
    std::vector<DrawnSeries> drawn;
    for (std::string const &text : request.texts) {
        TablePtr table = ReadOne(project, creator, request, text, axis, drawn.emplace_back());
        if (!joined) {
            joined = std::move(table);
            joined->Reserve(static_cast<int>(request.texts.size()));
        } else if (!joined->InterSection(*table)) {
            throw Problem(ExceptionMessage::translate("\"{1}\" has no {2} in common with the series before it.") %
                          text % ItemOf(axis));
        }
    }
    return {std::move(joined), axis, std::move(drawn)};
}
