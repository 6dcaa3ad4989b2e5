#include "app/VectorSearch.h"

#include "app/Failure.h"
#include "catalogue/ProjectVectorHandler.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <charconv>

namespace {

using Axis = ProjectVector::VectorTypeEnum;

struct AxisName {
    char const *option;
    char const *item;
};

// By the number of the axis, from 1.
constexpr std::array<AxisName, 6> axes = {{{"observations", "observation"},
                                           {"variables", "variable"},
                                           {"components", "component"},
                                           {"lags", "lag"},
                                           {"aligned", "aligned point"},
                                           {"batches", "batch"}}};

// Why there is no such vector, or where to look.
std::string HintForUnknown(std::string const &name, Source const &source) {
    if (std::optional<Axis> const other = AxisOf(name, source))
        return "It has one value for each " + ItemOf(*other) + ".";
    ProjectVector const *const any = ProjectVectorHandler::Instance()->FindVector(
        name.c_str(), ProjectVector::VectorTypeNone, ProjectVector::DataTypeNone, nullptr);
    if (any && source.model && any->GetModelType() != ModelTypeE::None)
        return "It is there for " + KindsOf(any->GetModelType()) + ".";
    return "\"dataseries vectors PROJECT " + source.option + "\" lists those that there are.";
}

} // namespace

std::optional<int> NumberIn(std::string_view text) {
    int number = 0;
    auto const [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && rest == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

Source ReadSource(engine::Project const &project, std::string const &text, std::string const &asking) {
    std::string const suffix = asking.empty() ? "." : ", which \"" + asking + "\" asks for.";
    if (text == "PS") {
        if (!project.GetPredSet(-1))
            throw Problem(
                ExceptionMessage::translate("There is no prediction set{1} \"dataseries predict\" makes one.") %
                suffix);
        return {ProjectVector::DataTypePredictionSet, {}, 0, "the prediction set", "--predictions"};
    }
    bool const ofData = text.starts_with("DS");
    std::optional<int> const number =
        NumberIn(std::string_view(text).substr(std::min<std::size_t>(ofData ? 2 : 1, text.size())));
    if (!number || (!ofData && text[0] != 'M'))
        throw UsageError("\"" + text + "\"" + (asking.empty() ? "" : " in \"" + asking + "\"") +
                         " is no source: give a model (M1), a data set (DS1) or the prediction set (PS)");
    std::string const digits = std::to_string(*number);
    if (ofData) {
        if (!project.GetDataSetInfo(*number))
            throw Problem(ExceptionMessage::translate("There is no data set {1}{2}") % digits % suffix);
        return {ProjectVector::DataTypeDataSet, {}, *number, "data set " + digits, "--data " + digits};
    }
    auto const model = project.GetModelInfo(*number);
    if (!model)
        throw Problem(ExceptionMessage::translate("There is no model {1}{2}") % digits % suffix);
    return {ProjectVector::DataTypeModel, model, 0, "model " + digits, "--model " + digits};
}

std::string KindsOf(ModelTypeE::Model mask) {
    std::string kinds;
    for (int const bit : {1, 2, 4, 8, 16})
        if ((mask & bit) != 0)
            kinds += (kinds.empty() ? "" : ", ") + ModelTypeE::GetModelTypeName(static_cast<ModelTypeE::Model>(bit));
    return kinds;
}

ProjectVector const *Find(std::string const &name, Axis axis, Source const &source) {
    ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
    auto const found = handler.Find(name.c_str(), axis, source.data, source.model.get());
    return found == handler.end() ? nullptr : *found;
}

std::vector<Axis> AxesOf(std::string const &name, Source const &source) {
    std::vector<Axis> found;
    for (std::size_t i = 1; i <= axes.size(); ++i)
        if (Find(name, static_cast<Axis>(i), source))
            found.push_back(static_cast<Axis>(i));
    return found;
}

std::optional<Axis> AxisOf(std::string const &name, Source const &source) {
    std::vector<Axis> const found = AxesOf(name, source);
    return found.empty() ? std::nullopt : std::optional(found.front());
}

NCError Unknown(std::string const &name, std::optional<Axis> axis, Source const &source) {
    std::string const sought = axis ? " with one value for each " + ItemOf(*axis) : "";
    return Problem(ExceptionMessage::translate("There is no vector \"{1}\"{2} in {3}. {4}") % name % sought %
                   source.name % HintForUnknown(name, source));
}

std::string ItemOf(Axis axis) {
    return axes.at(static_cast<std::size_t>(axis) - 1).item;
}

void AddAxisOption(CLI::App &command, std::optional<Axis> &axis) {
    std::vector<std::string> names;
    for (AxisName const &known : axes)
        names.push_back(known.option);
    command
        .add_option_function<std::string>(
            "--type",
            [&axis, names](std::string const &name) {
                axis = static_cast<Axis>(std::find(names.begin(), names.end(), name) - names.begin() + 1);
            },
            "What there is one value for (found by the first vector)")
        ->check(CLI::IsMember(names));
}
