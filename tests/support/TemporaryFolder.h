#pragma once

#include <filesystem>
#include <string>

#include <unistd.h>

// A folder of its own that goes with the object.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "dataseries-XXXXXX").string();
        m_path = ::mkdtemp(name.data());
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(TemporaryFolder const &) = delete;
    TemporaryFolder &operator=(TemporaryFolder const &) = delete;

    std::filesystem::path operator/(char const *name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};
