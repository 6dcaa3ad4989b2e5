#pragma once

#include "platform/export.h"

#include <locale>
#include <string>

// Text operations on UTF-8 strings that know characters, case and numbers.
namespace VqStdString {

// A piece of `text`, counted in grapheme clusters (what a reader takes for one character) from `start`, which counts
// from 0. `length` -1 is to the end; a piece beyond the text is cut to it. A locale without rules of its own for
// clusters, as the classic one, gets those of Unicode.
DATASERIES_API std::string GraphemeClusterSubString(std::string const &text, int start, int length,
                                                    std::locale const &locale);

// Below 0, 0 or above 0 as `a` comes before, with or after `b`, without regard to case. Runs of digits compare by their
// number, of any length, and come before other text: "Batch 9" before "batch 10". Other text compares by the collation
// of `locale`, or by code points in a locale without one, as the classic.
DATASERIES_API int CompareNumberNoCase(std::string const &a, std::string const &b, std::locale const &locale);

// The text with all difference of case removed, in all scripts; for comparison, not for display.
DATASERIES_API std::string FoldCase(std::string const &text);

} // namespace VqStdString
