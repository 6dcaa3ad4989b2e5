#include "platform/containers/StreamBytes.h"

#include "platform/text/Exception.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <istream>
#include <ostream>

namespace {

// Items that are moved at a time where their number is only claimed by the stream.
constexpr std::size_t chunkItems = 1 << 16;

std::uint32_t LittleEndian(std::uint32_t item) {
    if constexpr (std::endian::native == std::endian::little)
        return item;
    return item >> 24 | (item >> 8 & 0xff00u) | (item << 8 & 0xff0000u) | item << 24;
}

void SwapItems(void *items, std::size_t count) {
    char *at = static_cast<char *>(items);
    for (std::size_t i = 0; i < count; ++i, at += 4) {
        std::uint32_t item;
        std::memcpy(&item, at, 4);
        item = LittleEndian(item);
        std::memcpy(at, &item, 4);
    }
}

} // namespace

bool WriteBytes(std::ostream &stream, void const *bytes, std::size_t count) {
    stream.write(static_cast<char const *>(bytes), static_cast<std::streamsize>(count));
    return stream.good();
}

bool ReadBytes(std::istream &stream, void *bytes, std::size_t count) {
    stream.read(static_cast<char *>(bytes), static_cast<std::streamsize>(count));
    return stream.good();
}

bool WriteFourBytes(std::ostream &stream, void const *items, std::size_t count) {
    if constexpr (std::endian::native == std::endian::little)
        return WriteBytes(stream, items, 4 * count);
    std::vector<std::uint32_t> swapped(count);
    std::memcpy(swapped.data(), items, 4 * count);
    SwapItems(swapped.data(), count);
    return WriteBytes(stream, swapped.data(), 4 * count);
}

bool ReadFourBytes(std::istream &stream, void *items, std::size_t count) {
    if (!ReadBytes(stream, items, 4 * count))
        return false;
    if constexpr (std::endian::native != std::endian::little)
        SwapItems(items, count);
    return true;
}

template <typename Item>
bool WriteFourByteList(std::ostream &stream, std::span<Item const> items) {
    std::uint32_t const count = static_cast<std::uint32_t>(items.size());
    return WriteFourBytes(stream, &count) && WriteFourBytes(stream, items.data(), items.size());
}

template <typename Item>
std::vector<Item> ReadFourByteList(std::istream &stream) {
    std::uint32_t count = 0;
    bool whole = ReadFourBytes(stream, &count);
    std::vector<Item> items;
    while (whole && items.size() < count) {
        std::size_t const read = items.size();
        items.resize(std::min<std::size_t>(count, read + chunkItems));
        whole = ReadFourBytes(stream, items.data() + read, items.size() - read);
    }
    if (!whole)
        throw VqStreamError(ExceptionMessage::translate("Error when reading from stream."));
    return items;
}

template bool WriteFourByteList<std::uint32_t>(std::ostream &, std::span<std::uint32_t const>);
template std::vector<std::uint32_t> ReadFourByteList<std::uint32_t>(std::istream &);
template bool WriteFourByteList<float>(std::ostream &, std::span<float const>);
template std::vector<float> ReadFourByteList<float>(std::istream &);
