#include "platform/storage/VStreamableData.h"

#include "platform/containers/StreamBytes.h"
#include "platform/text/Exception.h"

bool VStreamableData::Write(std::ostream &stream) const {
    std::uint32_t const length = static_cast<std::uint32_t>(m_name.size());
    return WriteFourBytes(stream, &length) && WriteBytes(stream, m_name.data(), length) &&
           WriteFourBytes(stream, &m_version);
}

bool VStreamableData::Check(std::istream &stream) {
    // A name of another length is refused by its length: it is not read.
    std::uint32_t length = 0, version = 0;
    std::string name(m_name.size(), '\0');
    bool const sameClass = ReadFourBytes(stream, &length) && length == name.size() &&
                           ReadBytes(stream, name.data(), length) && name == m_name;
    if (!sameClass || !ReadFourBytes(stream, &version))
        throw VqStreamError(ExceptionMessage::translate("The stream holds no {1} here.") % m_name);
    if (version > m_version)
        throw VqStreamError(
            ExceptionMessage::translate(
                "{1} was written by a newer version: the stream has form {2}, this program reads {3}.") %
            m_name % version % m_version);
    m_versionRead = version;
    return true;
}
