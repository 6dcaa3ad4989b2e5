#pragma once

#include <locale>
#include <string>

// While it lives, the global locale writes 1234.5 as "1.2.3.4,5".
class GroupingLocale {
public:
    GroupingLocale() : m_before(std::locale::global(std::locale(std::locale(), new Punctuation))) {}
    ~GroupingLocale() { std::locale::global(m_before); }
    GroupingLocale(GroupingLocale const &) = delete;

private:
    class Punctuation final : public std::numpunct<char> {
        std::string do_grouping() const override { return "\1"; }
        char do_thousands_sep() const override { return '.'; }
        char do_decimal_point() const override { return ','; }
    };

    std::locale m_before;
};
