#include "engine/PackedTexts.h"

#include "platform/text/Exception.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

namespace engine {

static_assert(std::endian::native == std::endian::little, "stored numbers are little-endian");

PackedTexts::PackedTexts(std::span<std::string const> texts) {
    m_ends.reserve(texts.size());
    for (std::string const &text : texts)
        Append(text);
}

void PackedTexts::Append(std::string_view text) {
    if (text.size() > std::numeric_limits<std::uint32_t>::max() - m_bytes.size())
        throw NCError(ExceptionMessage::translate("The identifiers of one column take more than 4 GiB."),
                      NCError::Error);
    m_bytes.append(text);
    m_ends.push_back(static_cast<std::uint32_t>(m_bytes.size()));
}

std::vector<std::byte> PackedTexts::Pack() const {
    std::uint64_t const count = m_ends.size();
    std::size_t const endBytes = m_ends.size() * sizeof(std::uint32_t);
    std::vector<std::byte> packed(sizeof count + endBytes + m_bytes.size());
    std::memcpy(packed.data(), &count, sizeof count);
    std::ranges::copy(std::as_bytes(std::span(m_ends)), packed.begin() + sizeof count);
    std::ranges::copy(std::as_bytes(std::span(m_bytes)), packed.begin() + sizeof count + endBytes);
    return packed;
}

std::optional<PackedTexts> PackedTexts::Unpack(std::span<std::byte const> bytes) {
    std::uint64_t count = 0;
    if (bytes.size() < sizeof count)
        return std::nullopt;
    std::memcpy(&count, bytes.data(), sizeof count);
    bytes = bytes.subspan(sizeof count);
    if (count > bytes.size() / sizeof(std::uint32_t))
        return std::nullopt;
    PackedTexts texts;
    texts.m_ends.resize(count);
    auto const ends = bytes.first(count * sizeof(std::uint32_t));
    std::ranges::copy(ends, std::as_writable_bytes(std::span(texts.m_ends)).begin());
    auto const text = bytes.subspan(ends.size());
    texts.m_bytes.assign(reinterpret_cast<char const *>(text.data()), text.size());
    bool const whole = std::ranges::is_sorted(texts.m_ends) && (count == 0 ? 0 : texts.m_ends.back()) == text.size();
    return whole ? std::optional(std::move(texts)) : std::nullopt;
}

} // namespace engine
