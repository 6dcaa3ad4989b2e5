#pragma once

#include "platform/export.h"

#include <cstdint>
#include <iosfwd>
#include <string>

// The header of a streamable class: its name and the version of its stream form. A class holds one for all its objects.
class DATASERIES_API VStreamableData {
public:
    VStreamableData(std::uint32_t version, std::string name) : m_name(std::move(name)), m_version(version) {}

    // Puts name and version on the stream; whether it is good afterwards.
    bool Write(std::ostream &stream) const;
    // Reads a header and keeps its version. True, or a VqStreamError when the stream ends, holds another class, or
    // comes from a newer version than this build knows.
    bool Check(std::istream &stream);

    // The version that was last read, 0 before the first.
    std::uint32_t GetVStreamVersionNumber() const { return m_versionRead; }
    // The version of this build.
    std::uint32_t GetMyVStreamVersionNumber() const { return m_version; }

private:
    std::string m_name;
    std::uint32_t m_version;
    std::uint32_t m_versionRead = 0;
};

// The header of a class that derives from a streamable one.
using DerivedStreamableData = VStreamableData;
