#include "platform/text/VqStdString.h"

#include <boost/locale/boundary.hpp>
#include <boost/locale/collator.hpp>
#include <boost/locale/conversion.hpp>
#include <boost/locale/generator.hpp>
#include <boost/locale/localization_backend.hpp>

#include <algorithm>
#include <string_view>

namespace {

bool IsAscii(std::string const &text) {
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

int Sign(int difference) {
    return (difference > 0) - (difference < 0);
}

// A locale with the rules of Unicode, for the places where the caller's has none.
std::locale const &UnicodeLocale() {
    static std::locale const locale = [] {
        boost::locale::localization_backend_manager backends = boost::locale::localization_backend_manager::global();
        backends.select("icu");
        boost::locale::generator generator(backends);
        generator.categories(boost::locale::convert_facet | boost::locale::boundary_facet);
        generator.characters(boost::locale::char_facet);
        return generator("en_US.UTF-8");
    }();
    return locale;
}

// The leading run of digits, or of what is no digit; taken off `text`.
std::string_view TakeRun(std::string_view &text) {
    bool const digits = IsDigit(text.front());
    auto const end = std::ranges::find_if(text, [digits](char c) { return IsDigit(c) != digits; });
    std::string_view const run = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(run.size());
    return run;
}

int CompareNumbers(std::string_view a, std::string_view b) {
    a.remove_prefix(std::min(a.find_first_not_of('0'), a.size()));
    b.remove_prefix(std::min(b.find_first_not_of('0'), b.size()));
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    return Sign(a.compare(b));
}

int CompareTexts(std::string_view a, std::string_view b, std::locale const &locale) {
    using Collator = boost::locale::collator<char>;
    if (!std::has_facet<Collator>(locale))
        return Sign(a.compare(b));
    return std::use_facet<Collator>(locale).compare(boost::locale::collator_base::secondary, a.data(),
                                                    a.data() + a.size(), b.data(), b.data() + b.size());
}

} // namespace

namespace VqStdString {

std::string GraphemeClusterSubString(std::string const &text, int start, int length, std::locale const &locale) {
    namespace boundary = boost::locale::boundary;
    auto const first = static_cast<std::size_t>(std::max(start, 0));
    std::size_t const count = length < 0 ? std::string::npos : static_cast<std::size_t>(length);
    // Of ASCII only a line end of two characters is one cluster.
    if (IsAscii(text) && text.find('\r') == std::string::npos)
        return first < text.size() ? text.substr(first, count) : std::string();
    bool const hasRules = std::has_facet<boundary::boundary_indexing<char>>(locale);
    boundary::ssegment_index const clusters(boundary::character, text.begin(), text.end(),
                                            hasRules ? locale : UnicodeLocale());
    std::string piece;
    std::size_t position = 0;
    for (boundary::ssegment const &cluster : clusters) {
        if (position >= first && position - first >= count)
            break;
        if (position++ >= first)
            piece.append(cluster.begin(), cluster.end());
    }
    return piece;
}

int CompareNumberNoCase(std::string const &a, std::string const &b, std::locale const &locale) {
    std::string const foldedA = FoldCase(a), foldedB = FoldCase(b);
    std::string_view restA = foldedA, restB = foldedB;
    while (!restA.empty() && !restB.empty()) {
        bool const numberA = IsDigit(restA.front()), numberB = IsDigit(restB.front());
        if (numberA != numberB)
            return numberA ? -1 : 1;
        std::string_view const runA = TakeRun(restA), runB = TakeRun(restB);
        int const order = numberA ? CompareNumbers(runA, runB) : CompareTexts(runA, runB, locale);
        if (order != 0)
            return order;
    }
    return static_cast<int>(restB.empty()) - static_cast<int>(restA.empty());
}

std::string FoldCase(std::string const &text) {
    if (!IsAscii(text))
        return boost::locale::fold_case(text, UnicodeLocale());
    std::string folded(text);
    std::ranges::transform(text, folded.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; });
    return folded;
}

} // namespace VqStdString
