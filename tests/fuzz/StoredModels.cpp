#include "engine/models/Archive.h"
#include "engine/models/FittedModel.h"
#include "platform/text/Exception.h"
#include "tests/fuzz/Fuzz.h"

namespace {

// With the checksum that belongs to it.
std::string Sealed(char const *name, unsigned version, std::string const &members) {
    engine::WritingArchive archive(name, version);
    for (char const byte : members)
        archive(byte);
    return archive.Finish();
}

// What can be loaded is saved in a form that loads and is saved the same.
template <typename Stored>
void LoadAndSave(std::string const &saved) {
    std::string const again = Stored::Load(saved).Save();
    Require(Stored::Load(again).Save() == again);
}

} // namespace

// The members of a stored definition or model, of the version that the first byte tells.
int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
    FuzzInput const input(data, size);
    bool const isModel = input.choice % 2 == 0;
    std::string const saved = Sealed(isModel ? "DSFM" : "DSMD", input.choice / 2 % 8, input.bytes);
    try {
        isModel ? LoadAndSave<engine::FittedModel>(saved) : LoadAndSave<engine::ModelDefinition>(saved);
    } catch (NCError const &) {
    }
    return 0;
}
