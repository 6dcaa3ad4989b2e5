#include "app/Commands.h"
#include "app/Failure.h"
#include "app/Gnuplot.h"
#include "app/PlotScript.h"
#include "app/Summary.h"
#include "engine/Project.h"
#include "platform/project/GetProjectData.h"
#include "platform/project/ModelUtilities.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace {

struct SummaryRequest {
    std::filesystem::path project;
    int model = 0;
    bool phases = false;
    Format format = Format::Text;
    std::filesystem::path picture;
};

void Draw(SummaryRequest const &request, engine::Project const &project) {
    PlotStyle style;
    style.isPng = IsPng(request.picture);
    GetProjectData const statistics(project);
    TablePtr table = statistics.GetR2XCum(request.model);
    for (TablePtr const &further : {statistics.GetR2YCum(request.model), statistics.GetQ2Cum(request.model)})
        if (table && further)
            table->InterSection(*further);
    if (!table)
        throw Problem(ExceptionMessage::translate("Model {1} has no components to draw.") % request.model);
    WritePicture(PlotScript(*table, ProjectVector::VectorTypeComponent, style), request.picture, request.project);
}

void WritePhases(SummaryRequest const &request, engine::Project const &project, ModelInfo const &info) {
    if (ModelUtilities::GetPhaseName(project, info.number).empty())
        throw Problem(ExceptionMessage::translate("Model {1} is of no phase; \"dataseries fit --phase-models\" makes a "
                                                  "model for each phase.") %
                      info.number);
    Output output;
    SummaryOfPhases(project, info.number).Write(output, request.format);
    output.Finish();
}

std::string NoteOnPhase(engine::Project const &project, int model) {
    std::string const phase = ModelUtilities::GetPhaseName(project, model);
    return phase.empty() ? "" : "The model is of phase " + phase + "; --phases compares those of all phases.\n";
}

void Summary(SummaryRequest const &request) {
    auto const project = engine::Project::OpenToRead(request.project);
    int const model = request.model;
    auto const info = project->GetModelInfo(model);
    if (!info)
        throw Problem(ExceptionMessage::translate("There is no model {1}.") % model);
    if (request.phases)
        return WritePhases(request, *project, *info);
    if (info->SizeComponents() == 0)
        throw Problem(ExceptionMessage::translate("Model {1} has no components.") % model);
    if (!request.picture.empty())
        Draw(request, *project);
    Output output;
    SummaryOf(*project, model, true).Write(output, request.format);
    std::string const notes = NotesOn(*project, model);
    if (request.format == Format::Text)
        output << NoteOnPhase(*project, model) << notes;
    output.Finish();
    if (request.format != Format::Text)
        std::cerr << notes;
}

} // namespace

void AddSummaryCommand(CLI::App &program) {
    auto const request = std::make_shared<SummaryRequest>();
    CLI::App *const command = program.add_subcommand("summary", "Tell what the components of a model explain");
    command->add_option("PROJECT", request->project, "The project file")->required();
    command->add_option("--model", request->model, "The number of the model")->required()->type_name("N");
    CLI::Option *const picture =
        command->add_option("--plot", request->picture, "Draw the cumulative forms into a file named .svg or .png");
    command->add_flag("--phases", request->phases, "Of batches: compare the models of all phases")->excludes(picture);
    AddFormatOption(*command, request->format);
    command->footer(
        "R2 is what a component explains, Q2 what of it is predicted when observations are left out, (cum)\n"
        "what all up to it do. RMSEE and RMSEcv are errors of the responses in their own units, fitted\n"
        "and cross-validated.\n"
        "Example: dataseries summary oil.project --model 1 --plot summary.png");
    command->callback([request] { Summary(*request); });
}
