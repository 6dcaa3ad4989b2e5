#include "app/Commands.h"
#include "app/Listing.h"
#include "app/Series.h"
#include "app/TableWriter.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

struct TableRequest {
    SeriesRequest series;
    Format format = Format::Text;
    std::filesystem::path file;
};

void Table(TableRequest const &request) {
    auto const project = engine::Project::OpenToRead(request.series.project);
    Series const series = ReadSeries(*project, request.series);
    Output output(request.file, request.series.project);
    WriteTable(*series.table, TableDates(*project, series.series, *series.table), request.format, output);
    output.Finish();
}

} // namespace

void AddTableCommand(CLI::App &program) {
    auto const request = std::make_shared<TableRequest>();
    CLI::App *const command = program.add_subcommand("table", "Join series to one table");
    AddSeriesOptions(*command, request->series);
    AddFormatOption(*command, request->format);
    command->add_option("-o,--output", request->file, "The file to write, instead of standard output");
    command->footer(
        "An item (observation, variable, ...) is a line, a series a column; items that not all series have are left\n"
        "out. csv and json have nine significant digits. A missing value is an empty field in csv, null in json:\n"
        "  {\"items\": [LABEL, ...], \"series\": [{\"name\": LABEL, \"values\": [NUMBER or null, ...]}, ...]}\n"
        "The arguments of most vectors are source, component, number (of a variable or observation) and\n"
        "cross-validation round; \"dataseries vectors\" shows an example of each.\n"
        "Example: dataseries table wine.project \"t M1,1,0,0\" \"t M1,2,0,0\" --format csv -o scores.csv\n"
        "         dataseries table wine.project \"p M1,1,0,0\" \"Num M1,0,0,0\"");
    command->callback([request] { Table(*request); });
}
