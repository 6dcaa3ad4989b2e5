#include "app/Commands.h"
#include "app/Failure.h"
#include "app/Listing.h"
#include "app/Reason.h"
#include "app/SeriesSpecification.h"
#include "building/CreateProjectData.h"
#include "catalogue/ProjectVectorHandler.h"
#include "platform/containers/Missing.h"
#include "utilities/DefaultSelection.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cxxabi.h>
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

Source SourceOf(engine::Project const &project, VectorsRequest const &request) {
    if (request.dataSet)
        return ReadSource(project, "DS" + std::to_string(*request.dataSet));
    if (request.predictions)
        return ReadSource(project, "PS");
    if (request.model)
        return ReadSource(project, "M" + std::to_string(*request.model));
    for (int i = 1; i <= project.GetNumberOfModels(); ++i)
        if (project.IsModelFitted(project.GetModelNumberAt(i)))
            return ReadSource(project, "M" + std::to_string(project.GetModelNumberAt(i)));
    throw Problem(ExceptionMessage::translate("There is no fitted model; \"dataseries fit\" makes one, and --data N "
                                              "lists the vectors of a data set."));
}

// What a list shows of a vector: an argument text that gives data, or why there is none.
struct Entry {
    std::string example;
    std::string reason;
};

bool IsValid(engine::Project const &project, ProjectVector const &vector, Source const &source) {
    return vector.IsValidProject(project.shared_from_this()) &&
           (source.model                                    ? vector.IsValidModel(project, *source.model)
            : source.data == ProjectVector::DataTypeDataSet ? vector.IsValidDataset(project, source.dataSet)
                                                            : true);
}

// A contribution of the first observation; of batches that of the first point, which no group stands for.
void AskForOne(ProjectVectorData &data) {
    ProjectVector const &vector = *data.GetProjectVector();
    data.SetWeightComp({1});
    if (!vector.IsAlignedContribution())
        (vector.GetContributionKind() == 1 ? data.obs2 : data.obs1) = {1};
}

// Nothing for a vector that another one of its name stands for here.
std::optional<Entry> EntryOf(engine::Project const &project, ProjectVector const &vector, Source const &source,
                             ProjectUtilities::DefaultSelection const &defaults) {
    ProjectVector const *const found = Find(vector.GetName(), vector.GetType(), source);
    if ((vector.GetDataType() & source.data) == 0 || (found && found != &vector))
        return {};
    if (!found)
        return Entry{vector.GetName(), "It is there for " + KindsOf(vector.GetModelType()) + "."};
    Entry entry{vector.GetName(), {}};
    try {
        ProjectVectorData data = DefaultSpecification(vector, source, defaults);
        if (vector.IsContribution())
            AskForOne(data);
        std::string const text = data.ToStdString(&defaults);
        TablePtr const table =
            IsValid(project, vector, source)
                ? ProjectDataUtilities::CreateProjectData(project).GetProjectData(text, vector.GetType())
                : nullptr;
        if (!table || table->Rows() == 0 || table->Columns() == 0)
            entry.reason = ReasonForNothing(project, vector, source, text.substr(text.find(' ') + 1));
        else if (std::ranges::all_of(table->GetMatrix().Values(), IsMissing))
            entry.reason = "All its values are missing.";
        else
            entry.example = text;
    } catch (NCError const &error) {
        entry.reason = error.what();
    }
    return entry;
}

void Write(Output &output, ProjectVector const &vector, Entry const &entry) {
    if (entry.reason.empty())
        output << "  \"" << entry.example << "\"\n";
    else
        output << "  " << entry.example << ": not here. " << entry.reason << "\n";
    std::istringstream help(vector.GetHelpString());
    for (std::string line; std::getline(help, line);)
        output << "      " << line << "\n";
    output << "\n";
}

void Vectors(VectorsRequest const &request) {
    auto const project = engine::Project::OpenToRead(request.project);
    Source const source = SourceOf(*project, request);
    ProjectUtilities::DefaultSelection const defaults(project);
    std::string const kind = source.model ? " (" + ModelTypeE::GetModelTypeName(source.model->type) + ")" : "";
    Output output;
    for (int number = 1; number <= ProjectVector::VectorTypeBatch; ++number) {
        auto const axis = static_cast<ProjectVector::VectorTypeEnum>(number);
        bool isFirst = true;
        for (ProjectVector const *const vector : *ProjectVectorHandler::Instance()) {
            if (vector->GetType() != axis || (!request.all && !vector->IsDisplayable()))
                continue;
            std::optional<Entry> const entry = EntryOf(*project, *vector, source, defaults);
            if (!entry || (!request.all && !entry->reason.empty()))
                continue;
            if (std::exchange(isFirst, false))
                output << "Of " << source.name << kind << ", one value for each " << ItemOf(axis) << ":\n\n";
            Write(output, *vector, *entry);
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
    command->add_flag("--all", request->all,
                      "Also those that are left out of lists or give nothing here, with the reason");
    command->footer("Example: dataseries vectors wine.project --model 1");
    command->callback([request] { Vectors(*request); });
}
