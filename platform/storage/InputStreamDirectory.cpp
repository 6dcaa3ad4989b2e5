#include "platform/storage/InputStreamDirectory.h"

#include "platform/containers/StreamBytes.h"
#include "platform/text/Exception.h"

#include <algorithm>
#include <cstdint>
#include <sstream>

namespace {

constexpr std::uint64_t chunkBytes = 1 << 18;

void CheckRead(bool good) {
    if (!good)
        throw VqStreamError(ExceptionMessage::translate("Error when reading from stream."));
}

std::vector<std::uint64_t> ReadLengths(std::istream &stream) {
    std::uint32_t count = 0;
    CheckRead(ReadFourBytes(stream, &count));
    std::vector<std::uint64_t> lengths;
    while (lengths.size() < count) {
        std::uint32_t halves[2] = {};
        CheckRead(ReadFourBytes(stream, halves, 2));
        lengths.push_back(halves[0] | static_cast<std::uint64_t>(halves[1]) << 32);
    }
    return lengths;
}

std::string ReadText(std::istream &stream, std::uint64_t length) {
    std::string text;
    while (text.size() < length) {
        std::size_t const read = text.size();
        text.resize(static_cast<std::size_t>(std::min(length, read + std::max<std::uint64_t>(read, chunkBytes))));
        CheckRead(ReadBytes(stream, text.data() + read, text.size() - read));
    }
    return text;
}

} // namespace

InputStreamDirectory::InputStreamDirectory(std::istream &stream) {
    for (std::uint64_t const length : ReadLengths(stream))
        m_entries.push_back(length > 0 ? std::make_unique<std::istringstream>(ReadText(stream, length)) : nullptr);
}

std::istream *InputStreamDirectory::GetInput(int entry) {
    bool const within = entry >= 0 && static_cast<std::size_t>(entry) < m_entries.size();
    return within ? m_entries[static_cast<std::size_t>(entry)].get() : nullptr;
}
