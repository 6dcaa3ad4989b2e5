#pragma once

#include <span>
#include <vector>

namespace engine {

// The dates of a variable, which are kept beside its values.
struct DateColumn {
    int variable = 0;         // of the table, from 1
    std::vector<double> days; // for each observation, since 1970-01-01 00:00; NaN where missing

    bool operator==(DateColumn const &) const = default;
};

// The midnight before the first of all the dates, from which the values of these variables count; 0 without dates.
double FirstDay(std::span<DateColumn const> columns);

// The same dates as values: days since the first day, -99 where missing.
std::vector<float> DaysSince(double firstDay, std::span<double const> days);

} // namespace engine
