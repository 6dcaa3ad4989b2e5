#include "app/BuiltPlot.h"
#include "app/Commands.h"
#include "app/Gnuplot.h"
#include "app/SelectionOptions.h"
#include "app/TableWriter.h"

#include <CLI/CLI.hpp>

namespace {

struct BuildRequest {
    std::filesystem::path project;
    SelectionRequest selection;
    PictureSettings settings;
    Format format = Format::Text;
    std::filesystem::path file;
    std::filesystem::path picture;
};

void Build(BuildRequest request) {
    if (!request.picture.empty())
        request.settings.style.isPng = IsPng(request.picture);
    if (!request.file.empty())
        CheckApart(request.file, request.project);
    auto const project = engine::Project::OpenToRead(request.project);
    ShownItems items;
    SelectDataSeriesData const selection = Select(project, request.selection, items);
    bool const isDrawn = !request.picture.empty();
    CheckPicture(request.settings, selection, isDrawn);
    BuiltPlot const plot(project, selection, isDrawn);
    if (isDrawn)
        WritePicture(plot.Script(request.settings), request.picture, request.project);
    if (!isDrawn || !request.file.empty()) {
        Output output(request.file, request.project);
        WriteTable(plot.Table(), plot.Dates(), request.format, output);
        output.Finish();
    }
}

} // namespace

void AddBuildCommand(CLI::App &program) {
    auto const request = std::make_shared<BuildRequest>();
    CLI::App *const command = program.add_subcommand("build", "Build the table or the picture of a selection");
    command->add_option("PROJECT", request->project, "The project file")->required();
    AddSelectionOptions(*command, request->selection);
    AddFormatOption(*command, request->format);
    command->add_option("-o,--output", request->file, "The file for the table, instead of standard output");
    CLI::Option *const picture = command->add_option("--plot", request->picture, "Draw into a file named .svg or .png");
    AddPictureSettings(*command, request->settings);
    command->get_option("--color")->needs(picture);
    command->footer(
        std::string(selectionFooter) +
        "Example: dataseries build wine.project --x t:1 --y t:2 --plot scores.png\n"
        "         dataseries build wine.project --series t:1 --chart shewhart --subgroup 4 --plot chart.png\n"
        "         dataseries build oil.project --x YVar:octane --series YPred:octane --format csv -o fit.csv");
    command->callback([request] { Build(*request); });
}
