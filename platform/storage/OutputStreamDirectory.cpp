#include "platform/storage/OutputStreamDirectory.h"

#include "platform/containers/SharedStorage.h"
#include "platform/containers/StreamBytes.h"

#include <cstdint>

OutputStreamDirectory::OutputStreamDirectory(std::ostream &stream, int entries)
    : m_stream(stream), m_entries(CheckedSize("OutputStreamDirectory", entries)) {}

std::ostream &OutputStreamDirectory::GetOutput(int entry) {
    if (entry < 0 || static_cast<std::size_t>(entry) >= m_entries.size())
        ThrowOutOfRange("OutputStreamDirectory", entry, 0, static_cast<long long>(m_entries.size()) - 1);
    return m_entries[static_cast<std::size_t>(entry)];
}

// The form: the number of entries, then the length of each as low and high four bytes, then their bytes one after the
// other.
bool OutputStreamDirectory::Close() {
    std::uint32_t const count = static_cast<std::uint32_t>(m_entries.size());
    WriteFourBytes(m_stream, &count);
    for (std::ostringstream const &entry : m_entries) {
        std::uint64_t const length = entry.view().size();
        std::uint32_t const halves[] = {static_cast<std::uint32_t>(length), static_cast<std::uint32_t>(length >> 32)};
        WriteFourBytes(m_stream, halves, 2);
    }
    for (std::ostringstream const &entry : m_entries)
        WriteBytes(m_stream, entry.view().data(), entry.view().size());
    m_entries.clear();
    return m_stream.good();
}
