#include "engine/import/Layout_internal.h"

#include "engine/import/Cell_internal.h"
#include "engine/import/CsvParser_internal.h"

#include <algorithm>
#include <array>
#include <optional>

namespace engine {

namespace {

constexpr std::size_t headRows = 100;

using Row = std::vector<std::string>;

class RowCollector final : public CsvSink {
public:
    void Field(std::string_view text, std::size_t) override { m_row.emplace_back(text); }
    void EndOfRow(std::size_t) override {
        if (!m_row.empty() && rows.size() < headRows)
            rows.push_back(std::move(m_row));
        m_row.clear();
    }

    std::vector<Row> rows;

private:
    Row m_row;
};

// The rows up to a misplaced quotation mark, which is for the reader of the whole file to tell.
std::vector<Row> ReadRows(std::string_view head, bool whole, char separator) {
    constexpr std::size_t piece = 16384;
    RowCollector collector;
    CsvParser parser(separator, collector);
    bool good = true;
    for (std::size_t at = 0; good && at < head.size() && collector.rows.size() < headRows; at += piece)
        good = parser.Feed(head.substr(at, piece));
    if (good && whole)
        parser.Finish();
    return std::move(collector.rows);
}

std::size_t CountNumbers(std::vector<Row> const &rows, CellReader const &reader) {
    std::size_t numbers = 0;
    for (Row const &row : rows)
        numbers += static_cast<std::size_t>(std::ranges::count_if(
            row, [&](std::string const &cell) { return reader.Read(cell).kind == CellKind::Number; }));
    return numbers;
}

// A comma when more cells are numbers by it than by a point.
char FindDecimalMark(std::vector<Row> const &rows, TableOptions const &options) {
    if (options.decimalMark)
        return *options.decimalMark;
    std::size_t const byComma = CountNumbers(rows, CellReader(',', options.missingMarks));
    std::size_t const byPoint = CountNumbers(rows, CellReader('.', options.missingMarks));
    return byComma > byPoint ? ',' : '.';
}

// How well a separator fits: the share of rows as long as the first one plus the share of cells that are numbers;
// nothing when the first row has a single field.
double Fit(std::vector<Row> const &rows, TableOptions const &options) {
    if (rows.empty() || rows.front().size() < 2)
        return 0.0;
    std::size_t cells = 0;
    std::size_t even = 0;
    for (Row const &row : rows) {
        cells += row.size();
        even += row.size() == rows.front().size();
    }
    CellReader const reader(FindDecimalMark(rows, options), options.missingMarks);
    double const numbers = static_cast<double>(CountNumbers(rows, reader));
    return static_cast<double>(even) / static_cast<double>(rows.size()) + numbers / static_cast<double>(cells);
}

// A file of one column is read with tabs, so that neither mark of decimals splits it.
char FindSeparator(std::string_view head, bool whole, TableOptions const &options) {
    char best = '\t';
    double bestFit = 0.0;
    for (char const separator : {'\t', ';', ','}) {
        double const fit = Fit(ReadRows(head, whole, separator), options);
        if (fit > bestFit) {
            best = separator;
            bestFit = fit;
        }
    }
    return best;
}

// One of the usual headings of a column that names the rows, in whatever case and spacing.
bool NamesIdentifiers(std::string_view heading) {
    constexpr std::array words = {"#",      "id",       "ids",       "no",        "nr",          "num",
                                  "number", "row",      "index",     "obs",       "obsid",       "obsname",
                                  "name",   "label",    "case",      "primaryid", "observation", "observationid",
                                  "sample", "sampleid", "samplename"};
    std::string word;
    for (char const c : heading)
        if (c >= 'A' && c <= 'Z')
            word += static_cast<char>(c - 'A' + 'a');
        else if (c != ' ' && c != '_' && c != '.')
            word += c;
    return std::ranges::find(words, word) != words.end();
}

struct Counts {
    std::size_t numbers = 0;
    std::size_t texts = 0;
};

Counts CountColumn(std::span<Row const> rows, std::size_t column, CellReader const &reader) {
    Counts counts;
    for (Row const &row : rows) {
        CellKind const kind = column < row.size() ? reader.Read(row[column]).kind : CellKind::Missing;
        counts.numbers += kind == CellKind::Number;
        counts.texts += kind == CellKind::Text;
    }
    return counts;
}

// The first column counts the rows: 1, 2, 3, ... or 0, 1, 2, ...
bool CountsRows(std::span<Row const> rows, CellReader const &reader) {
    float const first = reader.Read(rows.front().front()).value;
    for (std::size_t row = 0; row < rows.size(); ++row)
        if (reader.Read(rows[row].front()).value != first + static_cast<float>(row))
            return false;
    return rows.size() > 1 && (first == 0.0f || first == 1.0f);
}

// The cells of the first column name the rows: text, or their numbers.
bool LooksLikeIdentifiers(std::span<Row const> rows, CellReader const &reader) {
    Counts const counts = CountColumn(rows, 0, reader);
    return counts.texts > counts.numbers || CountsRows(rows, reader);
}

// See TableOptions::header for the rule.
bool FindHeader(std::span<Row const> rows, CellReader const &reader) {
    if (rows.empty())
        return false;
    Row const &first = rows.front();
    auto const isText = [&](std::size_t column) { return reader.Read(first[column]).kind == CellKind::Text; };
    std::span<Row const> const below = rows.subspan(1);
    if (below.empty())
        return isText(0) && CountNumbers({first}, reader) == 0;
    if (first.size() > 1 && NamesIdentifiers(first.front()))
        return true;
    if (first.size() > 1 && Trimmed(first.front()).empty() && LooksLikeIdentifiers(below, reader))
        return true;
    for (std::size_t column = 0; column < first.size(); ++column) {
        Counts const counts = CountColumn(below, column, reader);
        if (isText(column) && counts.numbers > counts.texts)
            return true;
    }
    return false;
}

// See TableOptions::identifierColumns for the rule.
bool StartsWithIdentifiers(std::span<Row const> rows, bool header, CellReader const &reader) {
    std::span<Row const> const data = rows.subspan(header ? 1 : 0);
    if (data.empty() || rows.front().size() < 2)
        return false;
    Counts const first = CountColumn(data, 0, reader);
    if (first.texts > first.numbers)
        return true;
    std::string_view const heading = rows.front().front();
    return header ? Trimmed(heading).empty() || NamesIdentifiers(heading) : CountsRows(data, reader);
}

} // namespace

Layout FindLayout(std::string_view head, bool whole, TableOptions const &options) {
    Layout layout;
    layout.separator = options.separator ? *options.separator : FindSeparator(head, whole, options);
    std::vector<Row> const rows = ReadRows(head, whole, layout.separator);
    layout.decimalMark = FindDecimalMark(rows, options);
    CellReader const reader(layout.decimalMark, options.missingMarks);
    layout.header = options.header ? *options.header : FindHeader(rows, reader);
    if (options.identifierColumns)
        layout.identifierColumns = *options.identifierColumns;
    else
        layout.identifierColumns = !rows.empty() && StartsWithIdentifiers(rows, layout.header, reader);
    return layout;
}

} // namespace engine
