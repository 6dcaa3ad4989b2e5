#include "engine/DateColumn.h"

#include "platform/containers/Missing.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace engine {

double FirstDay(std::span<DateColumn const> columns) {
    double first = std::numeric_limits<double>::infinity();
    for (DateColumn const &column : columns)
        for (double const day : column.days)
            first = std::fmin(first, day); // a missing one never is the lesser
    return std::isfinite(first) ? std::floor(first) : 0;
}

std::vector<float> DaysSince(double firstDay, std::span<double const> days) {
    std::vector<float> values(days.size());
    std::ranges::transform(days, values.begin(), [firstDay](double day) {
        return std::isnan(day) ? missingValue : static_cast<float>(day - firstDay);
    });
    return values;
}

} // namespace engine
