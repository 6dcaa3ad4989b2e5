#include "engine/data/Recipe.h"
#include "engine/models/FittedModel.h"
#include "platform/text/Exception.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/fuzz/Sealed.h"

namespace {

// What can be loaded is saved in a form that loads and is saved the same.
template <typename Stored>
void LoadAndSave(std::string const &saved) {
    std::string const again = Stored::Load(saved).Save();
    Require(Stored::Load(again).Save() == again);
}

} // namespace

// The members of a stored definition, model or recipe, of the version that the first byte tells.
int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
    FuzzInput const input(data, size);
    bool const isModel = input.choice % 2 == 0;
    unsigned const version = input.choice / 2 % 8;
    try {
        if (input.choice / 16 % 2 == 1)
            LoadAndSave<engine::Recipe>(Sealed("DSRE", version, input.bytes));
        else if (isModel)
            LoadAndSave<engine::FittedModel>(Sealed("DSFM", version, input.bytes));
        else
            LoadAndSave<engine::ModelDefinition>(Sealed("DSMD", version, input.bytes));
    } catch (NCError const &) {
    }
    return 0;
}
