#include "platform/storage/ConfigurationSection.h"

#include <charconv>
#include <string_view>

namespace {

constexpr char intSeparator = ';';

template <typename Number>
std::string ToText(Number value) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

template <typename Number>
bool FromText(std::string_view text, Number &value) {
    Number read{};
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), read);
    bool const whole = error == std::errc() && end == text.data() + text.size();
    if (whole)
        value = read;
    return whole;
}

// Calls `take` with each piece until it answers false; an empty text has no pieces. Whether all were taken.
template <typename Take>
bool Split(std::string_view text, char separator, Take take) {
    while (!text.empty()) {
        std::size_t const end = text.find(separator);
        if (!take(text.substr(0, end)))
            return false;
        if (end == std::string_view::npos)
            return true;
        text.remove_prefix(end + 1);
        if (text.empty())
            return take(text);
    }
    return true;
}

template <typename Container, typename Write>
std::string Join(Container const &values, char separator, Write write) {
    std::string text;
    bool first = true;
    for (auto const &value : values) {
        if (!first)
            text += separator;
        first = false;
        text += write(value);
    }
    return text;
}

} // namespace

ConfigurationSection::~ConfigurationSection() = default;

bool ConfigurationSection::ReadKey(std::string const &key, int &value) const {
    std::string text;
    return ReadKey(key, text) && FromText(text, value);
}

bool ConfigurationSection::ReadKey(std::string const &key, double &value) const {
    std::string text;
    return ReadKey(key, text) && FromText(text, value);
}

bool ConfigurationSection::ReadKey(std::string const &key, float &value) const {
    std::string text;
    return ReadKey(key, text) && FromText(text, value);
}

bool ConfigurationSection::ReadKey(std::string const &key, bool &value) const {
    std::string text;
    if (!ReadKey(key, text) || (text != "0" && text != "1"))
        return false;
    value = text == "1";
    return true;
}

bool ConfigurationSection::ReadKey(std::string const &key, std::list<int> &values) const {
    std::string text;
    std::list<int> read;
    auto const take = [&read](std::string_view piece) { return FromText(piece, read.emplace_back()); };
    if (!ReadKey(key, text) || !Split(text, intSeparator, take))
        return false;
    values = std::move(read);
    return true;
}

bool ConfigurationSection::ReadKey(std::string const &key, std::vector<std::string> &values, char separator) const {
    std::string text;
    if (!ReadKey(key, text))
        return false;
    values.clear();
    return Split(text, separator, [&values](std::string_view piece) {
        values.emplace_back(piece);
        return true;
    });
}

void ConfigurationSection::WriteKey(std::string const &key, int value) {
    WriteKey(key, ToText(value));
}

void ConfigurationSection::WriteKey(std::string const &key, double value) {
    WriteKey(key, ToText(value));
}

void ConfigurationSection::WriteKey(std::string const &key, float value) {
    WriteKey(key, ToText(value));
}

void ConfigurationSection::WriteKey(std::string const &key, bool value) {
    WriteKey(key, value ? "1" : "0");
}

void ConfigurationSection::WriteKey(std::string const &key, std::list<int> const &values) {
    WriteKey(key, Join(values, intSeparator, &ToText<int>));
}

void ConfigurationSection::WriteKey(std::string const &key, std::vector<std::string> const &values, char separator) {
    WriteKey(key, Join(values, separator, [](std::string const &value) { return value; }));
}
