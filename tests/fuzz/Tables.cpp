#include "engine/TableReader.h"
#include "platform/text/Exception.h"
#include "tests/fuzz/Fuzz.h"

#include <algorithm>
#include <sstream>

namespace {

engine::TableOptions OptionsOf(unsigned choice) {
    engine::TableOptions options;
    if (choice % 4 != 0)
        options.separator = ",;\t"[choice % 4 - 1];
    if ((choice & 4) != 0)
        options.header = (choice & 8) != 0;
    if ((choice & 16) != 0)
        options.identifierColumns = (choice & 32) != 0;
    if ((choice & 64) != 0)
        options.batchColumn = "batch";
    if ((choice & 128) != 0)
        options.missingMarks = {"?"};
    return options;
}

void Check(engine::ImportedTable const &table) {
    auto const isWhole = [count = table.ObservationCount()](auto const &column) { return column.size() == count; };
    Require(table.ObservationCount() > 0 && !table.columns.empty());
    Require(std::ranges::all_of(table.columns, isWhole));
    for (engine::TextColumn const &column : table.observations)
        Require(column.texts.size() == table.ObservationCount());
    for (engine::TextColumn const &column : table.variables)
        Require(column.texts.size() == table.columns.size());
}

} // namespace

// A text that comes in small blocks, read with the options that the first byte chooses.
int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
    constexpr std::size_t blockSize = 128;
    FuzzInput const input(data, size);
    std::istringstream stream(input.bytes);
    try {
        Check(engine::ReadTable(stream, "table", OptionsOf(input.choice), {}, 0, blockSize));
    } catch (NCError const &) {
    }
    return 0;
}
