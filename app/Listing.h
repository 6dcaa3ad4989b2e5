#pragma once

#include "app/Output.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

enum class Format { Text, Csv, Json };

// Adds the option --format to a command, which offers the first so many of text, csv and json.
void AddFormatOption(CLI::App &command, Format &format, std::size_t count = 3);

// A small table of a command's own: one row for each thing listed.
class Listing {
public:
    // A text, a number, or nothing.
    struct Cell {
        Cell(std::string value) : text(std::move(value)) {}
        Cell(char const *value) : text(value) {}
        template <std::integral Value>
        Cell(Value value) : text(std::to_string(value)), isNumber(true) {}
        // With four decimals; nothing when it is not finite.
        Cell(double value);

        std::string text;
        bool isNumber = false;
    };

    explicit Listing(std::vector<std::string> headings) : m_headings(std::move(headings)) {}

    // A number with six significant digits as text, else nine; nothing for a missing value.
    static Cell Figure(double value, Format format);

    void Add(std::vector<Cell> row) { m_rows.push_back(std::move(row)); }
    std::vector<std::string> const &Headings() const { return m_headings; }
    std::vector<std::vector<Cell>> const &Rows() const { return m_rows; }
    void Write(Output &output, Format format) const;

private:
    void WriteText(Output &output) const;
    void WriteCsv(Output &output) const;
    void WriteJson(Output &output) const;

    std::vector<std::string> m_headings;
    std::vector<std::vector<Cell>> m_rows;
};
