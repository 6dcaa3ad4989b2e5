#include "app/Commands.h"
#include "app/Decorations.h"
#include "app/Failure.h"
#include "app/Gnuplot.h"
#include "app/Marks.h"
#include "app/Output.h"
#include "app/PlotScript.h"
#include "app/Series.h"

#include <CLI/CLI.hpp>

namespace {

constexpr float significanceOfModel = -1;

struct PlotRequest {
    SeriesRequest series;
    std::filesystem::path file;
    std::string color;
    PlotStyle style;
};

void Plot(PlotRequest request) {
    request.style.isPng = IsPng(request.file);
    auto const project = engine::Project::OpenToRead(request.series.project);
    Series series = ReadSeries(*project, request.series);
    if (request.style.isScatter && series.table->Rows() != 2)
        throw Problem(
            ExceptionMessage::translate("--xy draws the second of two series against the first; here are {1}.") %
            series.table->Rows());
    if (TablePtr ordered = InDrawnOrder(*project, series.series, series.axis, *series.table);
        ordered && !request.style.isScatter)
        series.table = std::move(ordered);
    request.style.dates = TableDates(*project, series.series, *series.table);
    request.style.colouring =
        ReadColouring(project, request.color, series.series, series.axis, series.table->GetColumnIDs());
    ReadMarks(project);
    request.style.marked = MarkedAmong(series.table->GetColumnIDs());
    Decorate(*project, series.series, series.axis, significanceOfModel, *series.table, request.style);
    WritePicture(PlotScript(*series.table, series.axis, request.style), request.file, request.series.project);
}

} // namespace

void AddPlotCommand(CLI::App &program) {
    auto const request = std::make_shared<PlotRequest>();
    CLI::App *const command = program.add_subcommand("plot", "Draw series");
    AddSeriesOptions(*command, request->series);
    command->add_option("-o,--output", request->file, "The picture: a file named .svg or .png")->required();
    command->add_flag("--xy", request->style.isScatter, "Points: the second series against the first");
    AddColourOption(*command, request->color);
    AddPictureOptions(*command, request->style);
    command->footer(
        "Series of variables, components, lags and batches are bars (a curve when there are more than 100), responses\n"
        "to a change are steps, others are lines. Of points that lie close together not all are labelled. Scores, "
        "distances, loadings and\n"
        "coefficients come with their limits and intervals of 95 %. --color names an identifier column, whose texts\n"
        "get a colour and a shape each, or a variable or a statistic such as \"DModX M1,2,0,0\", shown by a bar.\n"
        "Example: dataseries plot wine.project \"t M1,1,0,0\" \"t M1,2,0,0\" --xy -o scores.png\n"
        "         dataseries plot wine.project \"p M1,1,0,0\" -o loadings.svg --title \"First component\"");
    command->callback([request] { Plot(*request); });
}
