#include "engine/import/TableBuilder_internal.h"

#include "engine/DateTime.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

namespace engine {

namespace {

PackedTexts RowNumbers(std::size_t rows) {
    PackedTexts numbers;
    for (std::size_t row = 1; row <= rows; ++row)
        numbers.Append(std::to_string(row));
    return numbers;
}

} // namespace

bool ColumnBuilder::Append(std::string_view text, std::size_t line, CellReader const &reader) {
    if (m_identifier) {
        m_texts.Append(text);
        return true;
    }
    Cell const cell = reader.Read(text);
    bool const isNumber = cell.kind == CellKind::Number;
    if (!m_numeric && (isNumber || cell.kind == CellKind::WrongNumber))
        BecomeNumeric();
    if (!isNumber && cell.kind != CellKind::Missing && m_wrongCells++ == 0) {
        m_wrongLine = line;
        m_wrongText = Excerpt(text);
    }
    m_literalMissing += isNumber && cell.value == missingValue;
    if (m_numeric)
        m_numbers.push_back(cell.value);
    else
        m_texts.Append(text);
    return cell.kind == CellKind::Text;
}

void ColumnBuilder::BecomeNumeric() {
    m_numeric = true;
    m_numbers.assign(m_texts.size(), missingValue);
    m_texts = {};
}

std::vector<float> ColumnBuilder::TakeNumbers() {
    if (!m_numeric)
        BecomeNumeric();
    return std::move(m_numbers);
}

std::vector<double> ColumnBuilder::TakeDates(CellReader const &reader) {
    std::vector<double> days;
    if (m_identifier || m_numeric || m_wrongCells == 0)
        return days;
    days.reserve(m_texts.size());
    for (std::size_t row = 0; row < m_texts.size(); ++row) {
        std::string_view const text = Trimmed(m_texts[row]);
        std::optional<double> const day = ReadDateTime(text);
        if (!day && reader.Read(text).kind != CellKind::Missing)
            return {};
        days.push_back(day.value_or(std::numeric_limits<double>::quiet_NaN()));
    }
    return days;
}

void TableBuilder::Field(std::string_view text, std::size_t line) {
    if (m_field == 0)
        m_rowLine = line;
    std::size_t const column = m_field++;
    if (m_firstRow)
        m_columns.emplace_back(column < m_layout.identifierColumns);
    if (column >= m_columns.size())
        return;
    bool const isHeading = m_firstRow && m_layout.header;
    bool const isText = isHeading || m_columns[column].Append(text, line, m_reader);
    if (isText && !IsUtf8Text(text))
        throw NCError(ExceptionMessage::translate("{1}: the text is not valid UTF-8.") % Place(line, column),
                      NCError::Error);
    if (isHeading)
        m_headings.emplace_back(Trimmed(text));
}

void TableBuilder::EndOfRow(std::size_t) {
    if (m_field == 0)
        return;
    CheckRowLength();
    if (m_firstRow)
        MarkBatchColumns();
    if (m_firstRow && m_layout.header)
        m_headingLine = m_rowLine;
    else
        ++m_rows;
    m_firstRow = false;
    m_field = 0;
}

// The columns of batch and phase hold identifiers, also where these are numbers.
void TableBuilder::MarkBatchColumns() {
    for (std::string const &heading : {m_options.batchColumn, m_options.phaseColumn}) {
        if (heading.empty())
            continue;
        auto const found = std::ranges::find(m_headings, heading);
        if (found == m_headings.end())
            throw NCError(ExceptionMessage::translate("{1} has no column \"{2}\".") % m_file % heading, NCError::Error);
        std::size_t const column = static_cast<std::size_t>(found - m_headings.begin());
        m_columns[column] = ColumnBuilder(true);
        if (column == 0 && !m_options.identifierColumns)
            m_layout.identifierColumns = 0;
    }
}

void TableBuilder::CheckRowLength() const {
    if (m_field != m_columns.size())
        throw NCError(ExceptionMessage::translate("{1}, line {2}: found {3} cells, expected {4} as in the first row.") %
                          m_file % m_rowLine % m_field % m_columns.size(),
                      NCError::Error);
    if (m_field < m_layout.identifierColumns)
        throw NCError(ExceptionMessage::translate("{1}, line {2}: found {3} cells, expected at least the {4} columns "
                                                  "that identify the observations.") %
                          m_file % m_rowLine % m_field % m_layout.identifierColumns,
                      NCError::Error);
}

ImportedTable TableBuilder::Take(std::string const &name) {
    if (m_rows == 0)
        throw NCError(ExceptionMessage::translate("{1} holds no observations{2}.") % m_file %
                          (m_headings.empty() ? "" : ", only a row of headings"),
                      NCError::Error);
    CheckCells();
    NameColumns();
    CheckHeadings();

    ImportedTable table;
    table.name = name;
    table.batchColumn = m_options.batchColumn;
    table.phaseColumn = m_options.phaseColumn;
    table.variables.push_back({"VarID", {}});
    if (m_layout.identifierColumns == 0)
        table.observations.push_back({"ObsID", RowNumbers(m_rows)});
    std::string texts;
    for (std::size_t column = 0; column < m_columns.size(); ++column) {
        ColumnBuilder &builder = m_columns[column];
        table.literalMissingValues += builder.LiteralMissingValues();
        if (std::vector<double> days = builder.TakeDates(m_reader); !days.empty()) {
            table.variables.front().texts.Append(m_headings[column]);
            table.columns.emplace_back();
            table.dates.push_back({static_cast<int>(table.columns.size()), std::move(days)});
        } else if (builder.IsText()) {
            table.observations.push_back({m_headings[column], builder.TakeTexts()});
            bool const isNamed =
                m_headings[column] == m_options.batchColumn || m_headings[column] == m_options.phaseColumn;
            if (column >= m_layout.identifierColumns && !isNamed)
                texts += (texts.empty() ? "" : ", ") + m_headings[column];
        } else {
            table.variables.front().texts.Append(m_headings[column]);
            table.columns.push_back(builder.TakeNumbers());
        }
    }
    if (table.columns.empty())
        throw NCError(ExceptionMessage::translate("{1} holds no column of numbers.") % m_file, NCError::Error);
    double const firstDay = FirstDay(table.dates);
    for (DateColumn const &dates : table.dates) {
        auto const column = static_cast<std::size_t>(dates.variable - 1);
        table.columns[column] = DaysSince(firstDay, dates.days);
        std::string const name(table.variables.front().texts[column]);
        table.notes.push_back((ExceptionMessage::translate("Dates: {1}.") % name).Text());
    }
    if (!texts.empty())
        table.notes.push_back(
            (ExceptionMessage::translate("Columns of text are kept as identifiers: {1}.") % texts).Text());
    if (table.literalMissingValues > 0)
        table.notes.push_back((ExceptionMessage::translate("Cells that hold -99, which stands for missing: {1}.") %
                               table.literalMissingValues)
                                  .Text());
    return table;
}

// The first wrong cell of the file, and how many there are.
void TableBuilder::CheckCells() const {
    ColumnBuilder const *first = nullptr;
    std::size_t wrongCells = 0;
    for (ColumnBuilder const &column : m_columns) {
        wrongCells += column.WrongCells();
        if (column.WrongCells() > 0 && (!first || column.WrongLine() < first->WrongLine()))
            first = &column;
    }
    if (!first)
        return;
    std::size_t const column = static_cast<std::size_t>(first - m_columns.data());
    std::string const more =
        wrongCells == 1 ? std::string()
                        : (ExceptionMessage::translate(" Further wrong cells: {1}.") % (wrongCells - 1)).Text();
    throw NCError(ExceptionMessage::translate("{1}: expected a number with decimal {2} or a missing value in a column "
                                              "that has numbers, found \"{3}\".{4}") %
                      Place(first->WrongLine(), column) % (m_layout.decimalMark == '.' ? "point" : "comma") %
                      first->WrongText() % more,
                  NCError::Error);
}

// Columns without a heading that need none get a name.
void TableBuilder::NameColumns() {
    bool const header = m_layout.header;
    m_headings.resize(m_columns.size());
    std::size_t identifiers = m_layout.identifierColumns == 0;
    std::size_t variables = 0;
    for (std::size_t column = 0; column < m_columns.size(); ++column) {
        bool const isText = m_columns[column].IsText();
        std::size_t const number = isText ? ++identifiers : ++variables;
        bool const isIdentifier = column < m_layout.identifierColumns;
        if (m_headings[column].empty() && (!header || isIdentifier))
            m_headings[column] = !isText       ? "Var" + std::to_string(number)
                                 : number == 1 ? "ObsID"
                                               : "ObsID" + std::to_string(number);
    }
}

void TableBuilder::CheckHeadings() const {
    std::unordered_map<std::string_view, std::size_t> columns;
    for (std::size_t column = 0; column < m_headings.size(); ++column) {
        if (m_headings[column].empty())
            throw NCError(ExceptionMessage::translate("{1}, line {2}: column {3} has no heading.") % m_file %
                              m_headingLine % (column + 1),
                          NCError::Error);
        auto const [known, isNew] = columns.emplace(m_headings[column], column);
        if (!isNew)
            throw NCError(
                ExceptionMessage::translate("{1}, line {2}: columns {3} and {4} have the same heading \"{5}\".") %
                    m_file % m_headingLine % (known->second + 1) % (column + 1) % Excerpt(m_headings[column]),
                NCError::Error);
    }
}

std::string TableBuilder::Place(std::size_t line, std::size_t column) const {
    ExceptionMessage const place = ExceptionMessage::translate("{1}, line {2}, column {3}") % m_file % line;
    std::string const number = std::to_string(column + 1);
    bool const named = column < m_headings.size() && !m_headings[column].empty();
    return (place % (named ? number + " (" + Excerpt(m_headings[column]) + ")" : number)).Text();
}

} // namespace engine
