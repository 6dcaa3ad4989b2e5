#include "app/TableWriter.h"

#include <algorithm>
#include <cmath>
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

// A date, or else a number.
std::string CellText(TableDates const &dates, std::size_t row, std::size_t item, float value, int digits) {
    std::string text = dates.Text(row, item);
    char buffer[32];
    return text.empty() ? std::string(NumberText(value, digits, buffer)) : text;
}

void WriteText(ProjectData const &table, TableDates const &dates, Output &output) {
    std::string const title = table.GetColumnIDs().GetRowTitle(1);
    std::size_t labelWidth = TextWidth(title);
    for (int column = 1; column <= table.Columns(); ++column)
        labelWidth = std::max(labelWidth, TextWidth(table.GetColumnName(column)));
    constexpr std::size_t numberWidth = 12; // of six digits with sign, point and exponent
    std::vector<std::size_t> widths;
    output.WriteLeft(title, labelWidth);
    for (int row = 1; row <= table.Rows(); ++row) {
        auto const index = static_cast<std::size_t>(row - 1);
        std::string const name = dates.Name(table, index);
        std::size_t const cellWidth = table.Columns() > 0 ? TextWidth(dates.Text(index, 0)) : 0;
        widths.push_back(std::max({numberWidth, cellWidth, TextWidth(name)}) + 2);
        output.WriteRight(name, widths.back());
    }
    output << "\n";
    std::vector<std::span<float const>> const rows = RowsOf(table);
    for (std::size_t item = 0; item < static_cast<std::size_t>(table.Columns()); ++item) {
        output.WriteLeft(table.GetColumnName(static_cast<int>(item) + 1), labelWidth);
        for (std::size_t i = 0; i < rows.size(); ++i)
            output.WriteRight(CellText(dates, i, item, rows[i][item], shownDigits), widths[i]);
        output << "\n";
    }
}

void WriteCsv(ProjectData const &table, TableDates const &dates, Output &output) {
    output << CsvField(table.GetColumnIDs().GetRowTitle(1));
    for (std::size_t row = 0; row < static_cast<std::size_t>(table.Rows()); ++row)
        output << "," << CsvField(dates.Name(table, row));
    output << "\n";
    std::vector<std::span<float const>> const rows = RowsOf(table);
    for (std::size_t item = 0; item < static_cast<std::size_t>(table.Columns()); ++item) {
        output << CsvField(table.GetColumnName(static_cast<int>(item) + 1));
        for (std::size_t row = 0; row < rows.size(); ++row)
            output << "," << CellText(dates, row, item, rows[row][item], fullDigits);
        output << "\n";
    }
}

void WriteJson(ProjectData const &table, TableDates const &dates, Output &output) {
    output << "{\"items\": [";
    for (int column = 1; column <= table.Columns(); ++column)
        output << (column > 1 ? ", " : "") << JsonText(table.GetColumnName(column));
    output << "],\n \"series\": [";
    std::vector<std::span<float const>> const rows = RowsOf(table);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        output << (row > 0 ? ",\n  " : "\n  ") << "{\"name\": " << JsonText(dates.Name(table, row))
               << ", \"values\": [";
        for (std::size_t item = 0; item < rows[row].size(); ++item) {
            std::string const text = CellText(dates, row, item, rows[row][item], fullDigits);
            bool const isDate = !std::isnan(dates.Days(row, item));
            output << (item == 0 ? "" : ", ") << (text.empty() ? "null" : isDate ? JsonText(text) : text);
        }
        output << "]}";
    }
    output << "]}\n";
}

} // namespace

void WriteTable(ProjectData const &table, TableDates const &dates, Format format, Output &output) {
    switch (format) {
    case Format::Text:
        WriteText(table, dates, output);
        break;
    case Format::Csv:
        WriteCsv(table, dates, output);
        break;
    case Format::Json:
        WriteJson(table, dates, output);
        break;
    }
}
