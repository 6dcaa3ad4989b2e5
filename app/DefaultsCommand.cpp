#include "app/Commands.h"
#include "app/Failure.h"
#include "app/Listing.h"
#include "app/SeriesSpecification.h"
#include "utilities/DefaultSelection.h"

#include <CLI/CLI.hpp>

namespace {

struct DefaultsRequest {
    std::filesystem::path project;
    std::string xTerm;
    std::string yTerm;
    std::string observation;

    bool Changes() const { return !xTerm.empty() || !yTerm.empty() || !observation.empty(); }
};

// What is new; all names are looked up before the first is kept.
void Change(engine::Project const &project, ProjectUtilities::DefaultSelection &defaults,
            DefaultsRequest const &request) {
    auto const variable = [&](std::string const &name) { return name.empty() ? 0 : VariableNumber(project, name); };
    std::uint32_t const xTerm = variable(request.xTerm);
    std::uint32_t const yTerm = variable(request.yTerm);
    std::uint32_t const observation = request.observation.empty() ? 0 : ObservationNumber(project, request.observation);
    ColumnTerm const x(xTerm);
    ColumnTerm const y(yTerm);
    if (xTerm != 0)
        defaults.SetDefaultXTerm(&x);
    if (yTerm != 0)
        defaults.SetDefaultYTerm(&y);
    if (observation != 0)
        defaults.SetDefaultSelectedObservation(observation, false);
}

std::string TermName(engine::Project const &project, ColumnTerms const &terms, int position) {
    return position <= terms.Size() ? terms[position].GetPrimaryName(project.GetVariables()) : std::string();
}

void Show(engine::Project const &project, ProjectUtilities::DefaultSelection const &defaults) {
    Listing listing({"default", "value"});
    int const number = project.GetActiveModelNumber();
    if (auto const model = project.GetModel(number)) {
        listing.Add({"model", number});
        listing.Add({"x-term", TermName(project, model->GetXColumnTerms(), defaults.GetDefaultXVarIndex(number))});
        if (model->GetYColumnTerms().Size() > 0)
            listing.Add({"y-term", TermName(project, model->GetYColumnTerms(), defaults.GetDefaultYVarIndex(number))});
    }
    int const model = std::max(number, 0);
    int const dataSet = project.GetFirstDataSet(0);
    if (model > 0 || dataSet > 0)
        listing.Add({"observation", project.GetObservations().GetText(
                                        defaults.GetDefaultSelectedObservation(model, dataSet, false), 1)});
    Output output;
    listing.Write(output, Format::Text);
    output.Finish();
}

void Defaults(DefaultsRequest const &request) {
    auto const project = request.Changes() ? engine::Project::OpenToWrite(request.project)
                                           : engine::Project::OpenToRead(request.project);
    ProjectUtilities::DefaultSelection defaults(project);
    if (request.Changes())
        Change(*project, defaults, request);
    Show(*project, defaults);
}

} // namespace

void AddDefaultsCommand(CLI::App &program) {
    auto const request = std::make_shared<DefaultsRequest>();
    CLI::App *const command = program.add_subcommand("defaults", "Show and set what series are about by default");
    command->add_option("PROJECT", request->project, "The project file")->required();
    command->add_option("--x-term", request->xTerm, "The current X variable")->type_name("NAME");
    command->add_option("--y-term", request->yTerm, "The current Y variable")->type_name("NAME");
    command->add_option("--observation", request->observation, "The current observation")->type_name("NAME");
    command->footer("Example: dataseries defaults oil.project --y-term octane");
    command->callback([request] { Defaults(*request); });
}
