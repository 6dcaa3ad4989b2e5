#include "app/Commands.h"
#include "app/Listing.h"
#include "app/Series.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

constexpr int fullDigits = 9; // enough to tell every float from the next
constexpr int shownDigits = 6;

struct TableRequest {
    SeriesRequest series;
    Format format = Format::Text;
    std::filesystem::path file;
};

std::vector<std::span<float const>> RowsOf(ProjectData const &table) {
    std::vector<std::span<float const>> rows;
    for (int row = 1; row <= table.Rows(); ++row)
        rows.push_back(table.GetMatrix().Row(row));
    return rows;
}

void WriteText(ProjectData const &table, Output &output) {
    std::string const title = table.GetColumnIDs().GetRowTitle(1);
    std::size_t labelWidth = TextWidth(title);
    for (int column = 1; column <= table.Columns(); ++column)
        labelWidth = std::max(labelWidth, TextWidth(table.GetColumnName(column)));
    constexpr std::size_t numberWidth = 12; // of six digits with sign, point and exponent
    std::vector<std::size_t> widths;
    output.WriteLeft(title, labelWidth);
    for (int row = 1; row <= table.Rows(); ++row) {
        std::string const name = table.GetRowName(row);
        widths.push_back(std::max(numberWidth, TextWidth(name)) + 2);
        output.WriteRight(name, widths.back());
    }
    output << "\n";
    std::vector<std::span<float const>> const rows = RowsOf(table);
    char buffer[32];
    for (std::size_t item = 0; item < static_cast<std::size_t>(table.Columns()); ++item) {
        output.WriteLeft(table.GetColumnName(static_cast<int>(item) + 1), labelWidth);
        for (std::size_t i = 0; i < rows.size(); ++i)
            output.WriteRight(NumberText(rows[i][item], shownDigits, buffer), widths[i]);
        output << "\n";
    }
}

void WriteCsv(ProjectData const &table, Output &output) {
    output << CsvField(table.GetColumnIDs().GetRowTitle(1));
    for (int row = 1; row <= table.Rows(); ++row)
        output << "," << CsvField(table.GetRowName(row));
    output << "\n";
    std::vector<std::span<float const>> const rows = RowsOf(table);
    for (std::size_t item = 0; item < static_cast<std::size_t>(table.Columns()); ++item) {
        output << CsvField(table.GetColumnName(static_cast<int>(item) + 1));
        for (std::span<float const> const row : rows) {
            output << ",";
            output.WriteNumber(row[item], fullDigits);
        }
        output << "\n";
    }
}

void WriteJson(ProjectData const &table, Output &output) {
    output << "{\"items\": [";
    for (int column = 1; column <= table.Columns(); ++column)
        output << (column > 1 ? ", " : "") << JsonText(table.GetColumnName(column));
    output << "],\n \"series\": [";
    char buffer[32];
    for (int row = 1; row <= table.Rows(); ++row) {
        output << (row > 1 ? ",\n  " : "\n  ") << "{\"name\": " << JsonText(table.GetRowName(row)) << ", \"values\": [";
        bool isFirst = true;
        for (float const value : table.GetMatrix().Row(row)) {
            std::string_view const text = NumberText(value, fullDigits, buffer);
            output << (isFirst ? "" : ", ") << (text.empty() ? "null" : text);
            isFirst = false;
        }
        output << "]}";
    }
    output << "]}\n";
}

void Table(TableRequest const &request) {
    auto const project = engine::Project::OpenToRead(request.series.project);
    TablePtr const table = ReadSeries(*project, request.series).table;
    Output output(request.file);
    switch (request.format) {
    case Format::Text:
        WriteText(*table, output);
        break;
    case Format::Csv:
        WriteCsv(*table, output);
        break;
    case Format::Json:
        WriteJson(*table, output);
        break;
    }
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
