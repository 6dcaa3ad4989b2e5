#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace engine {

// Finds accidental damage of stored values: every change within a single word of eight bytes changes the sum. Four
// lanes of xor, rotation and multiplication, which the processor runs side by side. Kept in files, so never to be
// changed.
class Checksum {
public:
    Checksum &Add(std::span<std::byte const> bytes) {
        std::array<std::uint64_t, 4> lanes = {m_sum, ~m_sum, m_sum + factor, bytes.size()};
        for (; bytes.size() >= sizeof lanes; bytes = bytes.subspan(sizeof lanes))
            Mix(lanes, bytes.data(), sizeof lanes);
        Mix(lanes, bytes.data(), bytes.size());
        for (std::uint64_t const lane : lanes)
            m_sum = std::rotl(m_sum ^ lane, 27) * factor;
        return *this;
    }
    Checksum &Add(std::string_view text) { return Add(std::as_bytes(std::span(text))); }
    Checksum &Add(std::int64_t number) { return Add(std::as_bytes(std::span(&number, 1))); }

    // As SQLite stores integers.
    std::int64_t Value() const { return std::bit_cast<std::int64_t>(m_sum ^ (m_sum >> 32)); }

private:
    static constexpr std::uint64_t factor = 0x9E3779B97F4A7C15u; // 2^64 over the golden ratio, odd

    static void Mix(std::array<std::uint64_t, 4> &lanes, std::byte const *bytes, std::size_t size) {
        std::array<std::uint64_t, 4> words = {};
        if (size > 0)
            std::memcpy(words.data(), bytes, size);
        for (std::size_t lane = 0; lane < lanes.size(); ++lane)
            lanes[lane] = std::rotl(lanes[lane] ^ words[lane], 29) * factor;
    }

    std::uint64_t m_sum = 0;
};

} // namespace engine
