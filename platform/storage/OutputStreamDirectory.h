#pragma once

#include "platform/export.h"

#include <ostream>
#include <sstream>
#include <vector>

// Numbered sub-streams within a stream. Entries count from 0. What is put into an entry is kept until Close, which puts
// all of them on the stream; without Close nothing is written. An entry into which nothing is put is absent for the
// reader.
class DATASERIES_API OutputStreamDirectory {
public:
    OutputStreamDirectory(std::ostream &stream, int entries);

    // The sub-stream of an entry; NCInternalError for an entry that there is not, or after Close.
    std::ostream &GetOutput(int entry);
    // Whether the stream is good afterwards.
    bool Close();

private:
    std::ostream &m_stream;
    std::vector<std::ostringstream> m_entries;
};
