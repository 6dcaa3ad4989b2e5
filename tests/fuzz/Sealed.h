#pragma once

#include "engine/models/Archive.h"

#include <string_view>

// The saved form with the checksum that belongs to these members.
inline std::string Sealed(std::string_view name, unsigned version, std::string const &members) {
    engine::WritingArchive archive(name, version);
    for (char const byte : members)
        archive(byte);
    return archive.Finish();
}
