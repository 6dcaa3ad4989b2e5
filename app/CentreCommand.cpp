#include "app/Commands.h"
#include "app/Failure.h"
#include "app/Output.h"
#include "app/ProgressBar.h"
#include "app/TableWriter.h"
#include "app/VariableOptions.h"
#include "engine/Project.h"
#include "engine/TableReader.h"
#include "platform/project/GetProjectData.h"

#include <CLI/CLI.hpp>

namespace {

struct CentreRequest {
    std::filesystem::path project;
    engine::GroupMeansRequest means;
    std::vector<std::string> variables; // as given: lists of names
    std::vector<std::string> transformations;
    std::filesystem::path values; // a table of groups
    bool none = false;
};

engine::LocalCentring CentresOf(CentreRequest &request, engine::Project const &project) {
    request.means.variables = NamesIn(request.variables);
    request.means.transformations = TransformationsIn(NamesIn(request.transformations));
    if (request.values.empty())
        return project.MeansOfGroups(request.means);
    ProgressBar bar("Reading");
    // The first column names the groups, whatever it holds.
    engine::TableOptions options;
    options.identifierColumns = 1;
    return engine::CentresInTable(engine::ReadTable(request.values, options, bar.Listener()), request.means.identifier);
}

void List(CentreRequest const &request) {
    auto const project = engine::Project::OpenToRead(request.project);
    Output output;
    if (TablePtr const table = GetProjectData(*project).GetLocalCentering())
        WriteTable(*table, {}, Format::Text, output);
    else
        output << request.project.string() << ": no centre values\n";
    output.Finish();
}

void Set(CentreRequest request) {
    auto const project = engine::Project::OpenToWrite(request.project);
    engine::LocalCentring const centring = request.none ? engine::LocalCentring() : CentresOf(request, *project);
    project->SetLocalCentring(centring);
    Output output;
    output << request.project.string() << ": ";
    if (request.none)
        output << "no centre values\n";
    else
        output << "centre values of " << std::to_string(centring.variables.size()) << " variables in "
               << std::to_string(centring.groups.size()) << " groups of \"" << centring.identifier << "\"\n";
    output.Finish();
}

void Centre(CentreRequest const &request) {
    bool const isSet = !request.means.identifier.empty();
    bool const saysHow = !request.variables.empty() || !request.transformations.empty() || !request.values.empty();
    if (saysHow && !isSet)
        throw UsageError("The identifier of the groups is missing: --by COLUMN");
    if (isSet || request.none)
        Set(request);
    else
        List(request);
}

} // namespace

void AddCentreCommand(CLI::App &program) {
    auto const request = std::make_shared<CentreRequest>();
    engine::GroupMeansRequest &means = request->means;
    CLI::App *const command = program.add_subcommand("centre", "Set or list centre values for groups of observations");
    command->add_option("PROJECT", request->project, "The project file")->required();
    CLI::Option *const by =
        command->add_option("--by", means.identifier, "The identifier column whose texts are the groups");
    by->type_name("COLUMN");
    CLI::Option *const data =
        command->add_option("--data", means.dataSet, "The data set whose means are taken (1)")->type_name("N");
    CLI::Option *const variables = command->add_option("--variables", request->variables, "Which variables (all)")
                                       ->type_name("NAMES")
                                       ->allow_extra_args(false);
    CLI::Option *const transform =
        command
            ->add_option("--transform", request->transformations, "The transformation that \"fit\" gives to a variable")
            ->type_name("NAME=KIND[:C1[:C2[:C3]]]")
            ->allow_extra_args(false);
    command
        ->add_option("--values", request->values,
                     "A table of centre values instead of means: a row for each group, a column for each variable")
        ->type_name("FILE")
        ->excludes(data)
        ->excludes(variables)
        ->excludes(transform);
    command->add_flag("--none", request->none, "Take all centre values away")->excludes(by);
    command->footer(
        "Models that are fitted later subtract from each value the centre value of its group, such as a site or a\n"
        "campaign, so that they see differences within groups only. A value of a group without centre value is "
        "missing.\n"
        "Example: dataseries centre plant.project --by site --variables flow,pressure\n"
        "         dataseries fit plant.project --type pca");
    command->callback([request] { Centre(*request); });
}
