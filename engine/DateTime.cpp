#include "engine/DateTime.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace engine {

namespace {

// Takes numbers and marks off the front of a text.
class Scanner {
public:
    explicit Scanner(std::string_view text) : m_text(text) {}

    bool AtEnd() const { return m_text.empty(); }

    bool Mark(std::string_view marks) {
        if (m_text.empty() || marks.find(m_text.front()) == std::string_view::npos)
            return false;
        m_text.remove_prefix(1);
        return true;
    }

    // Exactly so many digits.
    bool Digits(std::size_t count, int &value) {
        if (m_text.size() < count || m_text.substr(0, count).find_first_not_of("0123456789") != std::string_view::npos)
            return false;
        std::from_chars(m_text.data(), m_text.data() + count, value);
        m_text.remove_prefix(count);
        return true;
    }

    bool Seconds(double &value) {
        auto const [end, error] = std::from_chars(m_text.data(), m_text.data() + m_text.size(), value);
        if (error != std::errc() || m_text.front() == '-')
            return false;
        m_text.remove_prefix(static_cast<std::size_t>(end - m_text.data()));
        return true;
    }

private:
    std::string_view m_text;
};

constexpr std::int64_t microsecondsPerDay = 86'400'000'000;

// Of each DatePrecision, in microseconds.
constexpr std::int64_t units[] = {microsecondsPerDay, 60'000'000, 1'000'000, 1'000, 1};

std::int64_t Microseconds(double days) {
    double const day = std::floor(days);
    return static_cast<std::int64_t>(day) * microsecondsPerDay +
           std::llround((days - day) * static_cast<double>(microsecondsPerDay));
}

} // namespace

DatePrecision PrecisionOf(std::span<double const> days) {
    std::size_t level = 0;
    for (double const day : days)
        while (!std::isnan(day) && Microseconds(day) % units[level] != 0)
            ++level;
    return static_cast<DatePrecision>(level);
}

std::string DateTimeText(double days, DatePrecision precision) {
    using namespace std::chrono;
    microseconds const time(Microseconds(days));
    sys_days const midnight = floor<std::chrono::days>(sys_time<microseconds>(time));
    year_month_day const date(midnight);
    hh_mm_ss const clock(time - duration_cast<microseconds>(midnight.time_since_epoch()));
    char text[40];
    int const length =
        std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%06d", static_cast<int>(date.year()),
                      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                      static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                      static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
    constexpr int cut[] = {16, 10, 7, 3, 0};
    return std::string(text, static_cast<std::size_t>(length - cut[static_cast<std::size_t>(precision)]));
}

std::optional<double> ReadDateTime(std::string_view text) {
    Scanner scanner(text);
    int year = 0, month = 0, day = 0;
    if (!scanner.Digits(4, year) || !scanner.Mark("-") || !scanner.Digits(2, month) || !scanner.Mark("-") ||
        !scanner.Digits(2, day))
        return {};
    std::chrono::year_month_day const date{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day))};
    if (!date.ok())
        return {};
    double const days = std::chrono::sys_days(date).time_since_epoch().count();
    if (scanner.AtEnd())
        return days;
    int hour = 0, minute = 0;
    double second = 0;
    if (!scanner.Mark(" T") || !scanner.Digits(2, hour) || !scanner.Mark(":") || !scanner.Digits(2, minute))
        return {};
    if (!scanner.AtEnd() && !(scanner.Mark(":") && scanner.Seconds(second)))
        return {};
    if (!scanner.AtEnd() || hour > 23 || minute > 59 || second >= 60)
        return {};
    return days + (hour * 3600 + minute * 60 + second) / 86400;
}

} // namespace engine
