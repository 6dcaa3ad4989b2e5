#include "engine/TableReader.h"

#include "engine/import/TableBuilder_internal.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>

namespace engine {

namespace {

// After how many bytes progress is told.
constexpr std::size_t pieceSize = std::size_t(1) << 16;

class BlockReader {
public:
    BlockReader(std::istream &stream, std::string const &name, std::size_t blockSize)
        : m_stream(stream), m_name(name), m_block(blockSize) {}

    // Empty at the end. The bytes live until the next call.
    std::string_view Next() {
        m_stream.read(m_block.data(), static_cast<std::streamsize>(m_block.size()));
        if (m_stream.bad())
            throw NCError(ExceptionMessage::translate("{1} can't be read.") % m_name, NCError::Error);
        return {m_block.data(), static_cast<std::size_t>(m_stream.gcount())};
    }

private:
    std::istream &m_stream;
    std::string const &m_name;
    std::vector<char> m_block;
};

void CheckText(std::string_view head, std::string const &name) {
    if (head.empty())
        throw NCError(ExceptionMessage::translate("{1} is empty.") % name, NCError::Error);
    if (head.starts_with("\xFF\xFE") || head.starts_with("\xFE\xFF"))
        throw NCError(ExceptionMessage::translate("{1} is UTF-16 text, expected UTF-8.") % name, NCError::Error);
    std::size_t const zero = head.find('\0');
    if (zero != std::string_view::npos)
        throw NCError(ExceptionMessage::translate("{1}, line {2}: found a zero byte, expected a file of text.") % name %
                          (std::ranges::count(head.substr(0, zero), '\n') + 1),
                      NCError::Error);
}

[[noreturn]] void ThrowMisplacedQuote(std::string const &name, std::size_t line, bool open) {
    ExceptionMessage const message =
        open ? ExceptionMessage::translate("{1}, line {2}: the file ends inside a field in quotation marks.")
             : ExceptionMessage::translate("{1}, line {2}: found a quotation mark in the middle of a cell, expected "
                                           "marks around the whole cell and doubled inside of it.");
    throw NCError(message % name % line, NCError::Error);
}

} // namespace

ImportedTable ReadTable(std::istream &stream, std::string const &name, TableOptions const &options,
                        Progress const &progress, std::size_t bytes, std::size_t blockSize) {
    BlockReader blocks(stream, name, blockSize);
    std::string_view block = blocks.Next();
    std::size_t done = 0;
    if (block.starts_with("\xEF\xBB\xBF")) {
        block.remove_prefix(3);
        done = 3;
    }
    CheckText(block, name);

    Layout const layout = FindLayout(block, block.size() < blockSize - done, options);
    TableBuilder builder(name, layout, options);
    CsvParser parser(layout.separator, builder);
    for (; !block.empty(); block = blocks.Next())
        for (std::size_t at = 0; at < block.size(); at += pieceSize) {
            std::string_view const piece = block.substr(at, pieceSize);
            if (!parser.Feed(piece))
                ThrowMisplacedQuote(name, parser.Line(), false);
            done += piece.size();
            progress.Report(bytes == 0 ? 0.0 : std::min(1.0, static_cast<double>(done) / static_cast<double>(bytes)));
        }
    if (!parser.Finish())
        ThrowMisplacedQuote(name, parser.Line(), true);
    return builder.Take(name);
}

ImportedTable ReadTable(std::filesystem::path const &file, TableOptions const &options, Progress const &progress) {
    if (file.empty())
        throw NCError(ExceptionMessage::translate("A table needs the name of a file."), NCError::Error);
    if (std::filesystem::is_directory(file))
        throw NCError(ExceptionMessage::translate("{1} is a folder, expected a table.") % file.string(),
                      NCError::Error);
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw NCError(ExceptionMessage::translate("{1} can't be opened: {2}.") % file.string() % std::strerror(errno),
                      NCError::Error);
    std::error_code unknownSize;
    std::uintmax_t const bytes = std::filesystem::file_size(file, unknownSize);
    ImportedTable table = ReadTable(stream, file.string(), options, progress, unknownSize ? 0 : bytes);
    table.name = file.stem().string();
    return table;
}

} // namespace engine
