#include "platform/identity/ProjectData.h"
#include "platform/project/ModelInfo.h"
#include "platform/storage/InputStreamDirectory.h"
#include "platform/text/Exception.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/support/RecordingProject.h"
#include "utilities/MarkedColumnIDsManager.h"

#include <algorithm>
#include <sstream>

namespace {

template <typename Value>
std::string Written(Value &value) {
    std::ostringstream stream;
    stream << value;
    return stream.str();
}

// What can be read writes bytes that read back the same.
template <typename Value>
Value ReadAndWrite(std::istream &stream, Value value) {
    stream >> value;
    std::string const bytes = Written(value);
    std::istringstream again(bytes);
    again >> value;
    Require(Written(value) == bytes);
    return value;
}

// What was read answers, inside of its columns and out.
void AskAll(ColumnIDs const &columns) {
    for (int column = 0; column <= std::min(columns.Size(), 8) + 1; ++column) {
        columns.GetName(column);
        columns.GetColumnID(column);
        columns.GetColumnTerm(column);
        columns.GetFloatValue(column);
    }
}

struct Marks final : MarkedColumnIDsManager {
    explicit Marks(NCProject const &project) { OnBCActiveProjectChange(&project); }
};

// The same of marks, which can then be told and changed.
void ReadMarks(std::istream &stream) {
    static auto const project = MakeRecordingProject();
    Marks marks(*project), copy(*project);
    if (!(stream >> marks))
        return;
    std::string const bytes = Written(marks);
    std::istringstream again(bytes);
    Require(static_cast<bool>(again >> copy) && Written(copy) == bytes);
    for (int index = 0; index <= marks.NumberOfOldMarkedIDs(); ++index) {
        auto const ids = marks.GetMarkedIDs(index);
        if (ids)
            AskAll(*ids);
        copy.UpdateSelected(project, ids.get(), nullptr, static_cast<MarkedColumnIDsManager::MarkMode>(index % 3), {});
    }
    NCSignals::FireObservationsPurged(*project, {1, 2, 3});
}

void Read(unsigned choice, std::istream &stream) {
    ProjectData const table(RowIDs{}, ColumnIDs{}, NCDataMatrix<float>());
    switch (choice % 6) {
    case 0:
        return AskAll(ReadAndWrite(stream, ColumnIDs()));
    case 1:
        ReadAndWrite(stream, RowIDs()).GetName(1);
        return;
    case 2:
        return AskAll(ReadAndWrite(stream, table).GetColumnIDs());
    case 3:
        ReadAndWrite(stream, ModelInfo());
        return;
    case 4:
        InputStreamDirectory(stream).GetInput(0);
        return;
    default:
        ReadMarks(stream);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
    FuzzInput const input(data, size);
    std::istringstream stream(input.bytes);
    try {
        Read(input.choice, stream);
    } catch (VqStreamError const &) {
    }
    return 0;
}
