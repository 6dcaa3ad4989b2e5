#pragma once

#include "platform/export.h"
#include "platform/forward.h"

#include <optional>
#include <string>
#include <vector>

class SelectDataSeriesData;

// A selection as it is kept for another day, or for another project: its section, and beside each number of it the name
// of the item behind. By that name the item is found again when models count their terms in another way, when data came
// in, and where another project numbers its items as it likes. The selected items are not part of it.
namespace SavedSelection {

// Replaces what the section holds. With `activeModel` a reader takes its project's active model.
DATASERIES_API void Write(SelectDataSeriesData const &selection, ConfigurationSection &section, bool activeModel);

// Reads into a selection that has its project; all vectors of a model move to `model` where one is given. What could
// not be kept is told in words, each with the label it had when it was saved: a series that the project cannot show or
// whose item it does not have, a component that the model does not have, observations of a group, a batch, a
// transformation. False when nothing is left to show, or when the section is none; the selection is then empty, as it
// is after an NCError, which tells why an axis cannot be shown.
DATASERIES_API bool Read(ConfigurationSection const &section, std::optional<int> model, SelectDataSeriesData &selection,
                         std::vector<std::string> &losses);

} // namespace SavedSelection
