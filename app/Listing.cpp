#include "app/Listing.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace {

constexpr std::array<char const *, 3> formatNames = {"text", "csv", "json"};

} // namespace

void AddFormatOption(CLI::App &command, Format &format, std::size_t count) {
    std::vector<std::string> const names(formatNames.begin(), formatNames.begin() + static_cast<std::ptrdiff_t>(count));
    command
        .add_option_function<std::string>(
            "--format",
            [&format, names](std::string const &name) {
                format = static_cast<Format>(std::find(names.begin(), names.end(), name) - names.begin());
            },
            "How it is written (text)")
        ->check(CLI::IsMember(names));
}

Listing::Cell::Cell(double value) : isNumber(true) {
    if (!std::isfinite(value))
        return;
    char buffer[64];
    // What rounds to 0 has no sign.
    constexpr double half = 0.00005;
    std::snprintf(buffer, sizeof buffer, "%.4f", std::abs(value) < half ? 0.0 : value);
    text = buffer;
}

Listing::Cell Listing::Figure(double value, Format format) {
    char buffer[32];
    Cell cell(std::string(NumberText(static_cast<float>(value), format == Format::Text ? 6 : 9, buffer)));
    cell.isNumber = true;
    return cell;
}

void Listing::Write(Output &output, Format format) const {
    switch (format) {
    case Format::Text:
        return WriteText(output);
    case Format::Csv:
        return WriteCsv(output);
    case Format::Json:
        return WriteJson(output);
    }
}

void Listing::WriteText(Output &output) const {
    std::vector<std::size_t> widths;
    for (std::size_t column = 0; column < m_headings.size(); ++column) {
        widths.push_back(TextWidth(m_headings[column]));
        for (std::vector<Cell> const &row : m_rows)
            widths.back() = std::max(widths.back(), TextWidth(row[column].text));
    }
    auto const write = [&](std::size_t column, std::string const &text, bool right) {
        bool const last = column + 1 == m_headings.size();
        if (right)
            output.WriteRight(text, widths[column]);
        else
            output.WriteLeft(text, last ? 0 : widths[column]);
        output << (last ? "\n" : "  ");
    };
    for (std::size_t column = 0; column < m_headings.size(); ++column)
        write(column, m_headings[column], !m_rows.empty() && m_rows.front()[column].isNumber);
    for (std::vector<Cell> const &row : m_rows)
        for (std::size_t column = 0; column < row.size(); ++column)
            write(column, row[column].text, row[column].isNumber);
}

void Listing::WriteCsv(Output &output) const {
    for (std::size_t column = 0; column < m_headings.size(); ++column)
        output << (column > 0 ? "," : "") << CsvField(m_headings[column]);
    output << "\n";
    for (std::vector<Cell> const &row : m_rows) {
        for (std::size_t column = 0; column < row.size(); ++column)
            output << (column > 0 ? "," : "") << CsvField(row[column].text);
        output << "\n";
    }
}

void Listing::WriteJson(Output &output) const {
    output << "[";
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        output << (i > 0 ? ",\n " : "\n ");
        for (std::size_t column = 0; column < m_headings.size(); ++column) {
            Cell const &cell = m_rows[i][column];
            output << (column > 0 ? ", " : "{") << JsonText(m_headings[column]) << ": "
                   << (!cell.isNumber      ? JsonText(cell.text)
                       : cell.text.empty() ? "null"
                                           : cell.text);
        }
        output << "}";
    }
    output << "\n]\n";
}
