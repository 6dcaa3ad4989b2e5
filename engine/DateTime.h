#pragma once

#include "platform/export.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace engine {

// Dates are days since 1970-01-01 00:00, local time, as doubles: good to a microsecond. NaN where there is none.

// A date alone or with a time of day (ISO 8601): "2024-03-05", "2024-03-05 14:30", "2024-03-05T14:30:07.5". Nothing for
// any other text.
std::optional<double> ReadDateTime(std::string_view text);

enum class DatePrecision { Day, Minute, Second, Millisecond, Microsecond };

// The coarsest that tells all of them fully, to a microsecond.
DATASERIES_API DatePrecision PrecisionOf(std::span<double const> days);

// "2024-03-05", "2024-03-05T14:30", "2024-03-05T14:30:07.500".
DATASERIES_API std::string DateTimeText(double days, DatePrecision precision);

} // namespace engine
