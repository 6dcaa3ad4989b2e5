#include "app/Series.h"

#include "app/Failure.h"
#include "app/Reason.h"
#include "app/VectorSearch.h"
#include "building/CreateProjectData.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

using ProjectDataUtilities::CreateProjectData;
using Axis = ProjectVector::VectorTypeEnum;

// A vector's name, and the source that its arguments begin with.
struct SeriesText {
    std::string name;
    std::string source;
};

SeriesText Split(std::string const &text) {
    std::size_t const blank = text.find(' ');
    if (blank == std::string::npos || blank == 0)
        throw UsageError("\"" + text + "\" is no vector with its arguments, such as \"t M1,1,0,0\"");
    std::size_t const comma = std::min(text.find(',', blank), text.size());
    return {text.substr(0, blank), text.substr(blank + 1, comma - blank - 1)};
}

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
    SeriesText const split = Split(text);
    Source const source = ReadSource(project, split.source, text);
    ProjectVector const *const vector = Find(split.name, axis, source);
    if (!vector)
        throw Unknown(split.name, axis, source);
    drawn = {vector, text.substr(split.name.size() + 1)};
    TablePtr table = creator.GetProjectData(text, axis);
    if (!table || table->Rows() == 0 || table->Columns() == 0)
        throw GivesNothing(project, *vector, source, drawn.arguments, text);
    return table;
}

Axis ChooseAxis(engine::Project const &project, SeriesRequest const &request) {
    if (request.axis)
        return *request.axis;
    for (std::string const &text : request.texts) {
        if (CreateProjectData::IsNum(text) || CreateProjectData::IsMissing(text))
            continue;
        SeriesText const split = Split(text);
        Source const source = ReadSource(project, split.source, text);
        std::vector<Axis> const axes = AxesOf(split.name, source);
        if (axes.empty())
            throw Unknown(split.name, {}, source);
        // Where a name stands for several statistics, the arguments tell which one is meant.
        auto const gives = [&](Axis axis) { return CreateProjectData(project).GetProjectData(text, axis) != nullptr; };
        auto const found = axes.size() > 1 ? std::ranges::find_if(axes, gives) : axes.begin();
        return found == axes.end() ? axes.front() : *found;
    }
    return ProjectVector::VectorTypeVariablesScores;
}

} // namespace

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
