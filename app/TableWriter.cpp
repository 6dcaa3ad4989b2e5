#include "app/TableWriter.h"

#include <algorithm>
#include <span>

namespace {

constexpr int fullDigits = 9; // enough to tell every float from the next
constexpr int shownDigits = 6;

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

} // namespace

void WriteTable(ProjectData const &table, Format format, Output &output) {
    switch (format) {
    case Format::Text:
        WriteText(table, output);
        break;
    case Format::Csv:
        WriteCsv(table, output);
        break;
    case Format::Json:
        WriteJson(table, output);
        break;
    }
}
