#include "app/BuiltPlot.h"
#include "app/Commands.h"
#include "app/Gnuplot.h"
#include "app/Marks.h"
#include "app/SelectionOptions.h"

#include <CLI/CLI.hpp>

namespace {

struct BuildRequest {
    std::filesystem::path project;
    SelectionRequest selection;
    PictureSettings settings;
    PlotOutput output;
};

void Build(BuildRequest request) {
    CheckPlotOutput(request.output, request.project);
    auto const project = engine::Project::OpenToRead(request.project);
    ShownItems items;
    SelectDataSeriesData const selection = Select(project, request.selection, items);
    CheckPicture(request.settings, selection, request.output.IsDrawn());
    BuiltPlot const plot(project, selection, request.output.IsDrawn());
    if (request.output.IsDrawn()) {
        request.settings.style.isPng = IsPng(request.output.picture);
        ReadMarks(project);
        WritePicture(plot.Script(request.settings), request.output.picture, request.project);
    }
    if (request.output.HasTable())
        WriteTable(plot, request.output, request.project);
}

} // namespace

void AddBuildCommand(CLI::App &program) {
    auto const request = std::make_shared<BuildRequest>();
    CLI::App *const command = program.add_subcommand("build", "Build the table or the picture of a selection");
    command->add_option("PROJECT", request->project, "The project file")->required();
    AddSelectionOptions(*command, request->selection);
    AddPlotOutput(*command, request->output);
    AddPictureSettings(*command, request->settings);
    command->get_option("--color")->needs("--plot");
    command->footer(
        std::string(selectionFooter) +
        "Example: dataseries build wine.project --x t:1 --y t:2 --plot scores.png\n"
        "         dataseries build wine.project --series t:1 --chart shewhart --subgroup 4 --plot chart.png\n"
        "         dataseries build oil.project --x YVar:octane --series YPred:octane --format csv -o fit.csv");
    command->callback([request] { Build(*request); });
}
