#include "app/Series.h"

#include "app/Failure.h"
#include "app/VectorSearch.h"
#include "building/CreateProjectData.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <charconv>

namespace {

using ProjectDataUtilities::CreateProjectData;
using Axis = ProjectVector::VectorTypeEnum;

// A text in its fields, as CreateProjectData reads it.
struct SeriesText {
    std::string name;
    std::vector<std::string> fields;
};

SeriesText Split(std::string const &text) {
    std::size_t const blank = text.find(' ');
    if (blank == std::string::npos || blank == 0)
        throw UsageError("\"" + text + "\" is no vector with its arguments, such as \"t M1,1,0,0\"");
    SeriesText split{text.substr(0, blank), {}};
    for (std::size_t start = blank + 1; start <= text.size();) {
        std::size_t const comma = std::min(text.find(',', start), text.size());
        split.fields.push_back(text.substr(start, comma - start));
        start = comma + 1;
    }
    return split;
}

// The number behind a prefix, when the text is just these.
std::optional<int> NumberBehind(std::string const &text, std::string_view prefix) {
    int number = 0;
    char const *const end = text.data() + text.size();
    if (!text.starts_with(prefix))
        return {};
    auto const [rest, error] = std::from_chars(text.data() + prefix.size(), end, number);
    return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

Source FindSource(engine::Project const &project, std::string const &text, std::string const &series) {
    Source source;
    if (std::optional<int> const number = NumberBehind(text, "M")) {
        source = {ProjectVector::DataTypeModel, project.GetModelInfo(*number), "model " + std::to_string(*number),
                  "--model " + std::to_string(*number)};
        if (!source.model)
            throw Problem(ExceptionMessage::translate("There is no model {1}, which \"{2}\" asks for.") % *number %
                          series);
    } else if (std::optional<int> const number = NumberBehind(text, "DS")) {
        source = {ProjectVector::DataTypeDataSet,
                  {},
                  "data set " + std::to_string(*number),
                  "--data " + std::to_string(*number)};
        if (!project.GetDataSetInfo(*number))
            throw Problem(ExceptionMessage::translate("There is no data set {1}, which \"{2}\" asks for.") % *number %
                          series);
    } else if (text == "PS") {
        source = {ProjectVector::DataTypePredictionSet, {}, "the prediction set", "--predictions"};
        if (!project.GetPredSet(-1))
            throw Problem(ExceptionMessage::translate("There is no prediction set, which \"{1}\" asks for; "
                                                      "\"dataseries predict\" makes one.") %
                          series);
    } else {
        throw UsageError("\"" + text + "\" in \"" + series +
                         "\" is no source: give a model (M1), a data set (DS1) or the prediction set (PS)");
    }
    return source;
}

// Why a vector gives nothing for its arguments.
std::string HintForNothing(engine::Project const &project, ProjectVector const &vector, Source const &source,
                           SeriesText const &text) {
    if (vector.GetObsPredType() == ProjectVector::Predicted && source.model &&
        !project.GetModelPredSet(source.model->number))
        return "There is no prediction set; \"dataseries predict\" makes one.";
    if (!source.model)
        return "The arguments may name what is not there.";
    if (!source.model->fitted)
        return "The model is not fitted.";
    if ((vector.OnlyCrossValidated() || vector.NeedsValidationRounds()) && !source.model->crossValidated)
        return "The model is not cross-validated.";
    if (vector.HasOneComponent() && text.fields.size() > 1) {
        auto const kind = static_cast<ProjectVector::ComponentType>(vector.GetComponentType());
        int const count = ProjectVector::SelectMaxComponents(kind, *source.model);
        std::optional<int> const component = NumberBehind(text.fields[1], "");
        if (!component || *component > count || (*component >= 0 && *component < vector.GetFirstComponent()))
            return "There is no component \"" + text.fields[1] + "\": " + source.name + " has " +
                   std::to_string(count) + " of that kind.";
    }
    if (vector.NeedsValidationRounds())
        return "The fourth argument is a cross-validation round, from 1.";
    return "The arguments may be too few, or name what is not there.";
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
    Source const source = FindSource(project, split.fields.front(), text);
    ProjectVector const *const vector = Find(split.name, axis, source);
    if (!vector)
        throw Unknown(split.name, axis, source);
    TablePtr table = creator.GetProjectData(text, axis);
    if (!table || table->Rows() == 0 || table->Columns() == 0)
        throw Problem(ExceptionMessage::translate("\"{1}\" gives no data. {2}") % text %
                      HintForNothing(project, *vector, source, split));
    drawn = {vector, text.substr(split.name.size() + 1)};
    return table;
}

Axis ChooseAxis(engine::Project const &project, SeriesRequest const &request) {
    if (request.axis)
        return *request.axis;
    for (std::string const &text : request.texts) {
        if (CreateProjectData::IsNum(text) || CreateProjectData::IsMissing(text))
            continue;
        SeriesText const split = Split(text);
        Source const source = FindSource(project, split.fields.front(), text);
        std::optional<Axis> const axis = AxisOf(split.name, source);
        if (!axis)
            throw Unknown(split.name, {}, source);
        return *axis;
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
