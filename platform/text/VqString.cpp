#include "platform/text/VqString.h"

#include <cmath>

#include <locale.h>
#include <stdlib.h>

namespace {

locale_t ClassicLocale() {
    static locale_t const locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

} // namespace

namespace VqString {

bool ToFloat(std::string const &text, float &value) {
    char *end = nullptr;
    float const read = strtof_l(text.c_str(), &end, ClassicLocale());
    bool const found = end != text.c_str();
    std::size_t const last = text.find_last_not_of(" \t\r\n");
    if (!found || end != text.c_str() + last + 1 || !std::isfinite(read))
        return false;
    value = read;
    return true;
}

double vqstrtod(char const *text, char **end) {
    return strtod_l(text, end, ClassicLocale());
}

} // namespace VqString
