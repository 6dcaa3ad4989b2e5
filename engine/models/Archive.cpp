#include "engine/models/Archive.h"

#include "platform/text/Exception.h"

#include <bit>

namespace engine {

static_assert(std::endian::native == std::endian::little, "saved forms are little-endian");

namespace {

// FNV-1a (Fowler, Noll & Vo 1991), eight bytes at a step.
std::uint64_t Checksum(std::string_view bytes) {
    constexpr std::uint64_t prime = 0x100000001b3;
    std::uint64_t sum = 0xcbf29ce484222325;
    for (; !bytes.empty(); bytes.remove_prefix(std::min<std::size_t>(8, bytes.size()))) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data(), std::min<std::size_t>(8, bytes.size()));
        sum = (sum ^ word) * prime;
        sum ^= sum >> 32;
    }
    return sum;
}

} // namespace

WritingArchive::WritingArchive(std::string_view name, std::uint32_t version) : m_bytes(name), m_version(version) {
    Put(m_version);
}

std::string WritingArchive::Finish() {
    auto sum = Checksum(m_bytes);
    Put(sum);
    return std::move(m_bytes);
}

ReadingArchive::ReadingArchive(std::string_view bytes, std::string_view name, std::uint32_t version)
    : m_name(name), m_rest(bytes) {
    std::uint64_t sum = 0;
    if (bytes.size() < name.size() + sizeof(m_version) + sizeof(sum) || !bytes.starts_with(name))
        ThrowDamaged();
    std::memcpy(&sum, bytes.data() + bytes.size() - sizeof(sum), sizeof(sum));
    m_rest.remove_suffix(sizeof(sum));
    if (Checksum(m_rest) != sum)
        ThrowDamaged();
    m_rest.remove_prefix(name.size());
    Get(m_version);
    if (m_version == 0 || m_version > version)
        throw NCError(ExceptionMessage::translate("The saved form {1} has version {2}, this program reads up to {3}.") %
                          m_name % m_version % version,
                      NCError::Error);
}

void ReadingArchive::Finish() const {
    if (!m_rest.empty())
        ThrowDamaged();
}

std::uint64_t ReadingArchive::GetSize(std::uint64_t rows, std::uint64_t bytes) {
    std::uint64_t count = 0;
    Get(count);
    if (rows > 0 && count > m_rest.size() / bytes / rows)
        ThrowDamaged();
    return count;
}

void ReadingArchive::Copy(void *to, std::size_t size) {
    if (size > m_rest.size())
        ThrowDamaged();
    if (size > 0)
        std::memcpy(to, m_rest.data(), size);
    m_rest.remove_prefix(size);
}

bool ReadingArchive::GetBool() {
    std::uint8_t value = 0;
    Get(value);
    if (value > 1)
        ThrowDamaged();
    return value == 1;
}

void ReadingArchive::ThrowDamaged() const {
    throw NCError(ExceptionMessage::translate(
                      "The saved form {1} is damaged: its contents do not agree with its length or checksum.") %
                      m_name,
                  NCError::Error);
}

} // namespace engine
