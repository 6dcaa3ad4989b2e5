#include "app/Commands.h"
#include "app/Gnuplot.h"
#include "app/Tree.h"

#include <CLI/CLI.hpp>

namespace {

struct TreeQuestion {
    std::filesystem::path project;
    int model = 0;
    Format format = Format::Text;
    std::filesystem::path picture;
    PlotStyle style;
};

void ShowTree(TreeQuestion request) {
    if (!request.picture.empty())
        request.style.isPng = IsPng(request.picture);
    auto const project = engine::Project::OpenToRead(request.project);
    std::vector<TreeRow> const tree = ReadTree(*project, request.model);
    if (!request.picture.empty())
        return WritePicture(TreeScript(tree, request.style), request.picture, request.project);
    Output output;
    TreeListing(tree, request.format).Write(output, request.format);
    output.Finish();
}

} // namespace

void AddTreeCommand(CLI::App &program) {
    auto const request = std::make_shared<TreeQuestion>();
    CLI::App *const command = program.add_subcommand("tree", "Show a tree of PLS models");
    command->add_option("PROJECT", request->project, "The project file")->required();
    command->add_option("--model", request->model, "The number of a model of the tree")->required()->type_name("N");
    CLI::Option *const picture =
        command->add_option("--plot", request->picture, "Draw it: a file named .svg or .png")->type_name("FILE");
    AddFormatOption(*command, request->format);
    command->get_option("--format")->excludes(picture);
    AddPictureOptions(*command, request->style);
    command->footer(
        "Each model is cut where the PLSTreeCutFunction of its observations, in order of t[1], is least. below_cut is\n"
        "how many of them are below the cut, t1 the score there, R2Y(cum) and Q2(cum) what the model explains and\n"
        "predicts of Y: a cut is worth while when those of both parts predict better.\n"
        "Example: dataseries fit mill.project --type plstree --y kappa --depth 2 --smallest 20\n"
        "         dataseries tree mill.project --model 1\n"
        "         dataseries tree mill.project --model 1 --plot tree.svg");
    command->callback([request] { ShowTree(*request); });
}
