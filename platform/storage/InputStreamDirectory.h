#pragma once

#include "platform/export.h"

#include <istream>
#include <memory>
#include <vector>

// Reads back what OutputStreamDirectory wrote, and leaves the stream behind it.
class DATASERIES_API InputStreamDirectory {
public:
    // Reads all entries; VqStreamError when the stream holds no whole directory. Memory is asked for as the bytes come,
    // whatever lengths the stream claims.
    explicit InputStreamDirectory(std::istream &stream);

    // The sub-stream of an entry, owned by the directory; null when it is absent.
    std::istream *GetInput(int entry);

private:
    std::vector<std::unique_ptr<std::istream>> m_entries;
};
