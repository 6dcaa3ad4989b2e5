#pragma once

#include "platform/export.h"

#include <string>

// Numbers from text, independently of the locale: the decimal separator is a point.
namespace VqString {

// The number that is the whole of `text`, blanks around it aside. Answers false and leaves `value` when the text is
// something else, not finite, or beyond the range of float; a number too small for float is 0.
DATASERIES_API bool ToFloat(std::string const &text, float &value);

// The number at the start of `text`, by the rules of strtod in the classic locale: leading blanks are skipped, `end`,
// if given, points behind the number or to `text` when there is none, and the result is then 0.
DATASERIES_API double vqstrtod(char const *text, char **end = nullptr);

} // namespace VqString
