#include "app/Commands.h"
#include "app/Failure.h"
#include "app/Listing.h"
#include "app/Series.h"
#include "app/VectorSearch.h"
#include "catalogue/ProjectVectorHandler.h"

#include <CLI/CLI.hpp>

#include <cxxabi.h>
#include <functional>
#include <typeinfo>

namespace {

struct VectorsRequest {
    std::filesystem::path project;
    std::optional<int> model;
    std::optional<int> dataSet;
    bool predictions = false;
    bool all = false;
};

std::string ClassName(ProjectVector const &vector) {
    int status = 0;
    std::unique_ptr<char, void (*)(void *)> const name(
        abi::__cxa_demangle(typeid(vector).name(), nullptr, nullptr, &status), std::free);
    std::string const text = name ? name.get() : typeid(vector).name();
    std::size_t const scope = text.rfind("::", text.find('<'));
    return scope == std::string::npos ? text : text.substr(scope + 2);
}

std::string Flags(ProjectVector const &vector) {
    std::string flags;
    for (auto const &[letter, isSet] :
         {std::pair('U', vector.UseUnscalingTransform()), std::pair('R', vector.NeedsValidationRounds()),
          std::pair('C', vector.OnlyCrossValidated()), std::pair('L', vector.PredictiveComponentDefaultsToLast()),
          std::pair('H', !vector.IsDisplayable())})
        if (isSet)
            flags += letter;
    return flags.empty() ? "-" : flags;
}

void Catalogue(Format format) {
    Listing listing({"name", "class", "type", "data", "model", "component", "number", "score_loading", "obs_pred",
                     "first", "contribution_source", "contribution_kind", "flags", "long_name"});
    for (ProjectVector const *const vector : *ProjectVectorHandler::Instance())
        listing.Add({vector->GetName(), ClassName(*vector), int(vector->GetType()), int(vector->GetDataType()),
                     int(vector->GetModelType()), vector->GetComponentType(), int(vector->GetNumberType()),
                     int(vector->GetScoreLoadingType()), int(vector->GetObsPredType()), vector->GetFirstComponent(),
                     vector->GetContributionSource(), vector->GetContributionKind(), Flags(*vector),
                     vector->GetLongName()});
    Output output;
    listing.Write(output, format);
    output.Finish();
}

// Whether a vector has anything to show, and the source that its arguments begin with.
struct Choice {
    std::function<bool(ProjectVector const &)> isValid;
    std::string source;
    std::string title;
};

Choice OfModel(engine::Project const &project, int number) {
    boost::shared_ptr<ModelInfo const> const info = project.GetModelInfo(number);
    if (!info)
        throw Problem(ExceptionMessage::translate("There is no model {1}.") % number);
    auto const predictions = project.GetPredSet(-1);
    bool const isPredicted = predictions && project.MatchVariables(number, predictions->GetNumber()).found > 0;
    auto const isValid = [&project, info, isPredicted](ProjectVector const &vector) {
        bool const validated = vector.OnlyCrossValidated() || vector.NeedsValidationRounds();
        return (vector.GetModelType() & info->type) != 0 && vector.IsValidModel(project, *info) &&
               (info->crossValidated || !validated) &&
               (isPredicted || vector.GetObsPredType() != ProjectVector::Predicted);
    };
    std::string const digits = std::to_string(number);
    return {isValid, "M" + digits, "model " + digits + " (" + ModelTypeE::GetModelTypeName(info->type) + ")"};
}

Choice OfDataSet(engine::Project const &project, int number) {
    if (!project.GetDataSetInfo(number))
        throw Problem(ExceptionMessage::translate("There is no data set {1}.") % number);
    auto const isValid = [&project, number](ProjectVector const &vector) {
        return vector.IsValidDataset(project, number);
    };
    return {isValid, "DS" + std::to_string(number), "data set " + std::to_string(number)};
}

Choice OfPredictions(engine::Project const &project) {
    if (!project.GetPredSet(-1))
        throw Problem(ExceptionMessage::translate("There is no prediction set; \"dataseries predict\" makes one."));
    auto const isValid = [](ProjectVector const &vector) {
        return (vector.GetDataType() & ProjectVector::DataTypePredictionSet) != 0;
    };
    return {isValid, "PS", "the prediction set"};
}

Choice Choose(engine::Project const &project, VectorsRequest const &request) {
    if (request.dataSet)
        return OfDataSet(project, *request.dataSet);
    if (request.predictions)
        return OfPredictions(project);
    if (request.model)
        return OfModel(project, *request.model);
    for (int i = 1; i <= project.GetNumberOfModels(); ++i)
        if (project.IsModelFitted(project.GetModelNumberAt(i)))
            return OfModel(project, project.GetModelNumberAt(i));
    throw Problem(ExceptionMessage::translate("There is no fitted model; \"dataseries fit\" makes one, and --data N "
                                              "lists the vectors of a data set."));
}

// An argument text of the vector, in the order in which its fields are read. "..." stands for what depends on the
// question: groups of observations, multipliers.
std::string Example(ProjectVector const &vector, std::string const &source) {
    constexpr int allKinds = ProjectVector::ComponentPredictive | ProjectVector::ComponentXSideOrthogonal |
                             ProjectVector::ComponentYSideOrthogonal;
    bool const hasNumber =
        vector.GetNumberType() != ProjectVector::NumberNone && vector.GetNumberType() != ProjectVector::NumberBatch;
    std::string text = vector.GetName() + (" " + source);
    text += vector.GetComponentType() == allKinds                       ? ",1,0,0"
            : vector.GetComponentType() == ProjectVector::ComponentNone ? ",0"
                                                                        : ",1";
    text += hasNumber ? ",1" : ",0";
    text += vector.NeedsValidationRounds() ? ",1" : ",0";
    text += vector.UseUnscalingTransform() ? ",0,0" : "";
    text += vector.IsContribution() ? ",..." : "";
    text += vector.UseNumberID2() ? ",1" : "";
    text += vector.UseBatchIx() ? ",1" : "";
    bool const hasMore =
        vector.IsImpulseResponseVector() || vector.HasMultiplier() || vector.HasResolvableCoefficients();
    return text + (hasMore ? ",..." : "");
}

void Vectors(VectorsRequest const &request) {
    auto const project = engine::Project::OpenToRead(request.project);
    Choice const choice = Choose(*project, request);
    Output output;
    for (int number = 1; number <= ProjectVector::VectorTypeBatch; ++number) {
        auto const axis = static_cast<ProjectVector::VectorTypeEnum>(number);
        bool isFirst = true;
        for (ProjectVector const *const vector : *ProjectVectorHandler::Instance()) {
            if (vector->GetType() != axis || (!request.all && !vector->IsDisplayable()) || !choice.isValid(*vector) ||
                !vector->IsValidProject(project))
                continue;
            if (std::exchange(isFirst, false))
                output << "Of " << choice.title << ", one value for each " << ItemOf(axis) << ":\n\n";
            output << "  \"" << Example(*vector, choice.source) << "\"\n";
            std::istringstream help(vector->GetHelpString());
            for (std::string line; std::getline(help, line);)
                output << "      " << line << "\n";
            output << "\n";
        }
    }
    output.Finish();
}

} // namespace

void AddCatalogueCommands(CLI::App &program) {
    auto const format = std::make_shared<Format>(Format::Text);
    CLI::App *command =
        program.add_subcommand("catalogue", "List every vector there is, with what tells it from others");
    AddFormatOption(*command, *format, 2);
    command->footer(
        "Enumerations are shown as their numbers. Flags: U unscaling and back-transformation can be chosen,\n"
        "R of one cross-validation round, C only of cross-validated models, L the component is the last\n"
        "one unless chosen, H not offered in lists.\n"
        "Example: dataseries catalogue --format csv");
    command->callback([format] { Catalogue(*format); });

    auto const request = std::make_shared<VectorsRequest>();
    command = program.add_subcommand("vectors", "List what can be asked of a project, with help");
    command->add_option("PROJECT", request->project, "The project file")->required();
    auto *const model =
        command->add_option("--model", request->model, "Of a model (the first fitted one)")->type_name("N");
    auto *const data =
        command->add_option("--data", request->dataSet, "Of a data set")->type_name("N")->excludes(model);
    command->add_flag("--predictions", request->predictions, "Of the prediction set")->excludes(model)->excludes(data);
    command->add_flag("--all", request->all, "Also those that lists leave out");
    command->footer("Example: dataseries vectors wine.project --model 1");
    command->callback([request] { Vectors(*request); });
}
