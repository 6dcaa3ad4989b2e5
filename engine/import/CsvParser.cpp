#include "engine/import/CsvParser_internal.h"

#include <algorithm>
#include <new>
#include <utility>

namespace engine {

CsvParser::CsvParser(char separator, CsvSink &sink) : m_sink(sink) {
    if (csv_init(&m_parser, CSV_STRICT | CSV_STRICT_FINI | CSV_REPALL_NL) != 0)
        throw std::bad_alloc();
    csv_set_delim(&m_parser, static_cast<unsigned char>(separator));
    csv_set_blk_size(&m_parser, 4096);
}

bool CsvParser::Feed(std::string_view bytes) {
    std::size_t const read = csv_parse(&m_parser, bytes.data(), bytes.size(), OnField, OnEndOfRow, this);
    Rethrow();
    if (read != bytes.size() && csv_error(&m_parser) == CSV_ENOMEM)
        throw std::bad_alloc();
    return read == bytes.size();
}

bool CsvParser::Finish() {
    bool const whole = csv_fini(&m_parser, OnField, OnEndOfRow, this) == 0;
    Rethrow();
    return whole;
}

std::size_t CsvParser::Line() const {
    unsigned char const *open = m_parser.entry_buf;
    return m_line + static_cast<std::size_t>(std::count(open, open + (open ? m_parser.entry_pos : 0), '\n'));
}

void CsvParser::OnField(void *text, std::size_t size, void *self) {
    auto &parser = *static_cast<CsvParser *>(self);
    parser.m_afterReturn = false;
    parser.Guarded([&] {
        std::string_view const field(static_cast<char const *>(text), size);
        parser.m_sink.Field(field, parser.m_line);
        if (field.find('\n') != std::string_view::npos)
            parser.m_line += static_cast<std::size_t>(std::ranges::count(field, '\n'));
    });
}

void CsvParser::OnEndOfRow(int lineBreak, void *self) {
    auto &parser = *static_cast<CsvParser *>(self);
    parser.Guarded([&] { parser.m_sink.EndOfRow(parser.m_line); });
    parser.CountLineBreak(lineBreak);
}

// The grammar is a C library, which no exception may cross.
template <typename Action>
void CsvParser::Guarded(Action action) {
    if (m_failure)
        return;
    try {
        action();
    } catch (...) {
        m_failure = std::current_exception();
    }
}

void CsvParser::CountLineBreak(int lineBreak) {
    bool const secondHalf = lineBreak == CSV_LF && m_afterReturn;
    if (!secondHalf)
        ++m_line;
    m_afterReturn = lineBreak == CSV_CR;
}

void CsvParser::Rethrow() {
    if (m_failure)
        std::rethrow_exception(std::exchange(m_failure, nullptr));
}

} // namespace engine
