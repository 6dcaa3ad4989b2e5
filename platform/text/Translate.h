#pragma once

#include "platform/export.h"

#include <string>

// The text in the user's language, as the loaded message catalogue has it; as it stands where none is loaded. A context
// tells texts apart that are written alike.
DATASERIES_API std::string translate(char const *text);
DATASERIES_API std::string translate(char const *context, char const *text);
