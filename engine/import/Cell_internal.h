#pragma once

#include "platform/containers/Missing.h"

#include <span>
#include <string>
#include <string_view>

namespace engine {

enum class CellKind {
    Missing,
    Number,
    WrongNumber, // infinite, or past what a float can hold
    Text
};

struct Cell {
    CellKind kind;
    float value = missingValue;
};

// What the text of one cell says.
class CellReader {
public:
    // `decimalMark` is '.' or ','; `missingMarks` are further texts that stand for a missing value.
    CellReader(char decimalMark, std::span<std::string const> missingMarks)
        : m_decimalMark(decimalMark), m_missingMarks(missingMarks) {}

    Cell Read(std::string_view text) const;

private:
    bool IsMissing(std::string_view text) const;

    char m_decimalMark;
    std::span<std::string const> m_missingMarks;
};

// The text without the blanks around it.
std::string_view Trimmed(std::string_view text);

// Valid UTF-8 without a zero byte.
bool IsUtf8Text(std::string_view text);

// Shortened, at the end of a character, to what a message can show.
std::string Excerpt(std::string_view text);

} // namespace engine
