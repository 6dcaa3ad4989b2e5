#pragma once

#include "platform/export.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace engine {

// A list of UTF-8 texts in two blocks of memory, whatever their number. Counted from 0. Together at most 4 GiB.
class DATASERIES_API PackedTexts {
public:
    PackedTexts() = default;
    explicit PackedTexts(std::span<std::string const> texts);

    std::size_t size() const { return m_ends.size(); }
    std::string_view operator[](std::size_t index) const {
        std::size_t const begin = index == 0 ? 0 : m_ends[index - 1];
        return std::string_view(m_bytes).substr(begin, m_ends[index] - begin);
    }

    // Throws NCError past 4 GiB.
    void Append(std::string_view text);

    // The list as one block of bytes: the number of texts (8 bytes), where each text ends (4 bytes), the texts.
    std::vector<std::byte> Pack() const;
    // Nothing when the bytes are not such a block.
    static std::optional<PackedTexts> Unpack(std::span<std::byte const> bytes);

    bool operator==(PackedTexts const &other) const = default;

private:
    std::string m_bytes;
    std::vector<std::uint32_t> m_ends;
};

// One column of identifiers of observations or of variables.
struct TextColumn {
    std::string name;
    PackedTexts texts;

    bool operator==(TextColumn const &other) const = default;
};

} // namespace engine
