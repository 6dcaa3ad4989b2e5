#pragma once

#include <optional>
#include <string_view>

namespace engine {

// Days since 1970-01-01 00:00 of a date, alone or with a time of day (ISO 8601, local time): "2024-03-05",
// "2024-03-05 14:30", "2024-03-05T14:30:07.5". Nothing for any other text.
std::optional<double> ReadDateTime(std::string_view text);

} // namespace engine
