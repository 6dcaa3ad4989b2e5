#include "engine/import/Cell_internal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <system_error>

namespace engine {

namespace {

Cell NumberOrWrong(long double value) {
    if (std::isnan(value))
        return {CellKind::Missing};
    if (std::fabs(value) > std::numeric_limits<float>::max())
        return {CellKind::WrongNumber};
    return {CellKind::Number, static_cast<float>(value)};
}

template <typename Number>
std::from_chars_result Parse(std::string_view text, Number &value) {
    return std::from_chars(text.data(), text.data() + text.size(), value);
}

Cell ReadNumber(std::string_view text) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    float value = 0.0f;
    auto const [end, error] = Parse(text, value);
    if (end != text.data() + text.size() || error == std::errc::invalid_argument)
        return {CellKind::Text};
    if (error == std::errc())
        return NumberOrWrong(value);
    // Too big and too small look the same so far; what is too small is zero, or nearly so.
    long double wide = 0.0L;
    return Parse(text, wide).ec == std::errc() ? NumberOrWrong(wide) : Cell{CellKind::WrongNumber};
}

// The number of bytes of the UTF-8 sequence at the start of the text, 0 when it is none.
std::size_t SequenceLength(std::string_view text) {
    auto const byte = [&](std::size_t index) { return static_cast<std::uint8_t>(text[index]); };
    std::uint8_t const first = byte(0);
    if (first < 0x80)
        return first == 0 ? 0 : 1;
    std::size_t const length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length)
        return 0;
    for (std::size_t index = 1; index < length; ++index)
        if ((byte(index) & 0xC0) != 0x80)
            return 0;
    bool const overlong = (first == 0xE0 && byte(1) < 0xA0) || (first == 0xF0 && byte(1) < 0x90);
    bool const surrogate = first == 0xED && byte(1) >= 0xA0;
    bool const pastTheEnd = first == 0xF4 && byte(1) >= 0x90;
    return overlong || surrogate || pastTheEnd ? 0 : length;
}

} // namespace

Cell CellReader::Read(std::string_view text) const {
    text = Trimmed(text);
    if (IsMissing(text))
        return {CellKind::Missing};
    if (m_decimalMark == '.')
        return ReadNumber(text);
    if (text.find('.') != std::string_view::npos)
        return {CellKind::Text};
    std::string pointed(text);
    std::ranges::replace(pointed, ',', '.');
    return ReadNumber(pointed);
}

bool CellReader::IsMissing(std::string_view text) const {
    if (text.empty() || std::ranges::find(m_missingMarks, text) != m_missingMarks.end())
        return true;
    return text.size() == 2 && (text[0] == 'N' || text[0] == 'n') && (text[1] == 'A' || text[1] == 'a');
}

std::string_view Trimmed(std::string_view text) {
    constexpr char blanks[] = " \t";
    std::size_t const begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

bool IsUtf8Text(std::string_view text) {
    while (!text.empty()) {
        std::size_t const length = SequenceLength(text);
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string Excerpt(std::string_view text) {
    constexpr std::size_t limit = 40;
    if (text.size() <= limit)
        return std::string(text);
    std::size_t end = limit;
    while (end > 0 && (static_cast<std::uint8_t>(text[end]) & 0xC0) == 0x80)
        --end;
    return std::string(text.substr(0, end)) + "...";
}

} // namespace engine
