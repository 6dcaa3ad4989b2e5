#pragma once

#include <filesystem>

namespace engine {

// The right to write a project. Held through a lock on a file beside it that the operating system lets go when the
// process ends, however it ends.
class WriterLock {
public:
    // Throws NCError when another owner holds it, in this process or in another.
    explicit WriterLock(std::filesystem::path const &project);
    ~WriterLock();
    // The file of the lock.
    static std::filesystem::path PathOf(std::filesystem::path const &project) { return project.string() + ".lock"; }
    WriterLock(WriterLock const &) = delete;
    WriterLock &operator=(WriterLock const &) = delete;

private:
    std::filesystem::path m_path;
    int m_descriptor = -1;
};

} // namespace engine
