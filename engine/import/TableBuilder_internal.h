#pragma once

#include "engine/import/Cell_internal.h"
#include "engine/import/CsvParser_internal.h"
#include "engine/import/Layout_internal.h"

#include <string>
#include <string_view>
#include <vector>

namespace engine {

// One column while it is read. Until its first number comes, a column may turn out to be text.
class ColumnBuilder {
public:
    explicit ColumnBuilder(bool identifier) : m_identifier(identifier) {}

    // True when the cell is kept, or was found wrong, as text.
    bool Append(std::string_view text, std::size_t line, CellReader const &reader);

    bool IsText() const { return m_identifier || (!m_numeric && m_wrongCells > 0); }
    // Cells that are wrong if the column is no text, and the first of them.
    std::size_t WrongCells() const { return IsText() ? 0 : m_wrongCells; }
    std::size_t WrongLine() const { return m_wrongLine; }
    std::string const &WrongText() const { return m_wrongText; }
    std::size_t LiteralMissingValues() const { return m_literalMissing; }

    PackedTexts TakeTexts() { return std::move(m_texts); }
    std::vector<float> TakeNumbers();
    // The days of a column of dates and missing values, other than an identifier; empty for any other column.
    std::vector<double> TakeDates(CellReader const &reader);

private:
    void BecomeNumeric();

    bool m_identifier;
    bool m_numeric = false;
    PackedTexts m_texts;
    std::vector<float> m_numbers;
    std::size_t m_wrongCells = 0;
    std::size_t m_wrongLine = 0;
    std::string m_wrongText;
    std::size_t m_literalMissing = 0;
};

// Makes a table of the fields of a file.
class TableBuilder final : public CsvSink {
public:
    // `file` is what errors call it.
    TableBuilder(std::string const &file, Layout const &layout, TableOptions const &options)
        : m_file(file), m_layout(layout), m_options(options), m_reader(layout.decimalMark, options.missingMarks) {}

    void Field(std::string_view text, std::size_t line) override;
    void EndOfRow(std::size_t line) override;

    // The table, after the last row. The builder is empty then.
    ImportedTable Take(std::string const &name);

private:
    void MarkBatchColumns();
    void CheckRowLength() const;
    void CheckHeadings() const;
    void CheckCells() const;
    void NameColumns();
    std::string Place(std::size_t line, std::size_t column) const;

    std::string const &m_file;
    Layout m_layout;
    TableOptions const &m_options;
    CellReader const m_reader;
    std::vector<std::string> m_headings;
    std::vector<ColumnBuilder> m_columns;
    std::size_t m_rows = 0;
    bool m_firstRow = true;
    std::size_t m_field = 0;
    std::size_t m_rowLine = 0;
    std::size_t m_headingLine = 1;
};

} // namespace engine
