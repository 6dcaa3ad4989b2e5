#pragma once

#include "engine/TableReader.h"

#include <string_view>

namespace engine {

// How a file of separated text is laid out.
struct Layout {
    char separator = ',';
    char decimalMark = '.';
    bool header = false;
    std::size_t identifierColumns = 0;
};

// The layout that the options tell and, where they don't, that the first 100 rows show. `head` is the start of the
// file; `whole` says that it is all of it.
Layout FindLayout(std::string_view head, bool whole, TableOptions const &options);

} // namespace engine
