#include "engine/storage/WriterLock_internal.h"

#include "platform/text/Exception.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace engine {

namespace {

// False when the owner before us removed the file between our opening and our locking it.
bool IsStillThere(std::filesystem::path const &path, int descriptor) {
    struct stat ours = {};
    struct stat there = {};
    return fstat(descriptor, &ours) == 0 && stat(path.c_str(), &there) == 0 && ours.st_ino == there.st_ino &&
           ours.st_dev == there.st_dev;
}

} // namespace

WriterLock::WriterLock(std::filesystem::path const &project) : m_path(PathOf(project)) {
    for (;;) {
        m_descriptor = open(m_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
        if (m_descriptor < 0)
            throw NCError(ExceptionMessage::translate("The project {1} can't be opened for writing: {2}.") %
                              project.string() % std::strerror(errno),
                          NCError::Error);
        bool const locked = flock(m_descriptor, LOCK_EX | LOCK_NB) == 0;
        if (locked && IsStillThere(m_path, m_descriptor))
            return;
        close(m_descriptor);
        if (!locked)
            throw NCError(ExceptionMessage::translate("The project {1} is open for writing in another program.") %
                              project.string(),
                          NCError::Error);
    }
}

// Removed while still locked, so that no other owner's file is hit.
WriterLock::~WriterLock() {
    unlink(m_path.c_str());
    close(m_descriptor);
}

} // namespace engine
