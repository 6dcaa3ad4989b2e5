#pragma once

#include "catalogue/ProjectVector.h"
#include "engine/DateTime.h"
#include "platform/identity/ProjectData.h"

#include <limits>
#include <string>
#include <vector>

// What a row of a table was asked by.
struct DrawnSeries {
    ProjectVector const *vector = nullptr; // null for a placeholder
    std::string arguments;                 // "M1,1,0,0"
};

// Which cells of a table are dates: a table holds floats, which tell a date within ten years to half a minute, while
// its data set knows it to a microsecond.
class TableDates {
public:
    TableDates() = default;
    // `series` has one entry for each row of the table.
    TableDates(NCProject const &project, std::vector<DrawnSeries> const &series, ProjectData const &table);

    // Days since 1970-01-01 00:00 of a cell, NaN for one that is no date; row and item count from 0.
    double Days(std::size_t row, std::size_t item) const { return Has(row) ? m_rows[row].days[item] : missing; }
    // The same as ISO 8601, as fine as the row needs; empty for one that is no date.
    std::string Text(std::size_t row, std::size_t item) const;
    // The label of a row, without the day from which the numbers of dates count.
    std::string Name(ProjectData const &table, std::size_t row) const;
    // The row is one of dates, over observations.
    bool AreDates(std::size_t row) const { return Has(row) && m_rows[row].overObservations; }

private:
    struct Row {
        std::vector<double> days; // empty for a row without dates
        engine::DatePrecision precision = engine::DatePrecision::Day;
        bool overObservations = false;
    };

    static constexpr double missing = std::numeric_limits<double>::quiet_NaN();

    bool Has(std::size_t row) const { return row < m_rows.size() && !m_rows[row].days.empty(); }

    std::vector<Row> m_rows;
};
