#pragma once

#include "engine/DateColumn.h"
#include "engine/PackedTexts.h"
#include "engine/Progress.h"

#include <cstddef>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace engine {

// What the caller knows about a file of separated text. What is left open is found in its first 100 rows.
struct TableOptions {
    // Comma, semicolon or tab. Else the one that gives rows of equal length and the most numbers; a tab, which means
    // one column, when none splits the first row.
    std::optional<char> separator = std::nullopt;
    // '.' or ','. Else the one by which more cells are numbers.
    std::optional<char> decimalMark = std::nullopt;
    // Whether the first row holds headings. Else it does when
    // - one of its cells is text above a column that is otherwise numbers, or
    // - its first cell is a usual heading of identifiers ("ID", "No", "Sample", ...), or
    // - its first cell is empty above texts or row numbers.
    std::optional<bool> header = std::nullopt;
    // How many columns at the start identify the observations. Else one when the first of several columns
    // - is text for the most part, or
    // - has an empty heading or a usual heading of identifiers, or
    // - has no heading and counts the rows from 0 or 1;
    // and none in all other cases.
    std::optional<std::size_t> identifierColumns = std::nullopt;
    // Headings of the columns that tell the batch and the phase of an observation, empty for none. Such a column is an
    // identifier whatever it holds, and is not found to be the first one: then the observations are numbered.
    std::string batchColumn = {};
    std::string phaseColumn = {};
    // Texts that stand for a missing value, besides the empty cell, NA and NaN.
    std::vector<std::string> missingMarks = {};
};

// A table as it was read: observations are its rows.
struct ImportedTable {
    std::string name;
    // At least one, each with a text for every observation: the first columns as told or found, or else the numbers
    // "1", "2", ...; then all columns that hold text throughout.
    std::vector<TextColumn> observations;
    // One column: the headings, or "Var1", "Var2", ...; all different, none empty.
    std::vector<TextColumn> variables;
    // For each variable a value for every observation; -99 where it is missing.
    std::vector<std::vector<float>> columns;
    // The dates of those of the variables that hold dates; their values in `columns` count from the midnight before the
    // first of all of these. A column whose cells all read as dates (ISO 8601: "2024-03-05", "2024-03-05 14:30:07") is
    // such a variable, unless it identifies the observations.
    std::vector<DateColumn> dates;
    // As in the options.
    std::string batchColumn;
    std::string phaseColumn;
    // Names of batches that are still running: of their last phase they have come as far as their maturity tells.
    std::vector<std::string> running = {};
    // What the user may want to know about the reading.
    std::vector<std::string> notes;
    // The cells that hold -99 as a number, and thereby read as missing.
    std::size_t literalMissingValues = 0;

    std::size_t ObservationCount() const { return observations.front().texts.size(); }
};

// Reads a file of comma, semicolon or tab separated values: UTF-8 with or without byte order mark, lines that end in LF
// or CRLF, fields in quotes where they hold separators, quotes or line breaks. Blank lines are skipped.
//
// Throws NCError, with nothing read, that tells file, line, column and what was found: for a file that is no such
// text, rows of unequal length, headings that are empty or stand twice, a cell that is no number in a column that has
// numbers, a number past what a float holds, and a table without observations or without variables. Throws Cancelled.
DATASERIES_API ImportedTable ReadTable(std::filesystem::path const &file, TableOptions const &options = {},
                                       Progress const &progress = {});

// Enough for the headings of a hundred thousand columns.
constexpr std::size_t usualBlockSize = std::size_t(4) << 20;

// The same from a stream. `name` is what errors call it; `bytes` is its size for the progress, 0 when unknown. It is
// read in blocks of `blockSize`, and the layout is found from the first of them.
DATASERIES_API ImportedTable ReadTable(std::istream &stream, std::string const &name, TableOptions const &options = {},
                                       Progress const &progress = {}, std::size_t bytes = 0,
                                       std::size_t blockSize = usualBlockSize);

} // namespace engine
