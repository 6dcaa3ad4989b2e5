#include "app/VectorSearch.h"

#include "app/Failure.h"
#include "catalogue/ProjectVectorHandler.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>

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

std::string KindsOf(ModelTypeE::Model mask) {
    std::string kinds;
    for (int const bit : {1, 2, 4, 8, 16})
        if ((mask & bit) != 0)
            kinds += (kinds.empty() ? "" : ", ") + ModelTypeE::GetModelTypeName(static_cast<ModelTypeE::Model>(bit));
    return kinds;
}

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

ProjectVector const *Find(std::string const &name, Axis axis, Source const &source) {
    ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
    auto const found = handler.Find(name.c_str(), axis, source.data, source.model.get());
    return found == handler.end() ? nullptr : *found;
}

std::optional<Axis> AxisOf(std::string const &name, Source const &source) {
    for (std::size_t i = 1; i <= axes.size(); ++i)
        if (Find(name, static_cast<Axis>(i), source))
            return static_cast<Axis>(i);
    return {};
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
