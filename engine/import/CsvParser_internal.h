#pragma once

#include <csv.h>

#include <cstddef>
#include <exception>
#include <string_view>

namespace engine {

// Gets what a CsvParser reads.
class CsvSink {
public:
    virtual ~CsvSink() = default;
    // A field, without its quotes, that starts on this line. The text lives as long as the call.
    virtual void Field(std::string_view text, std::size_t line) = 0;
    // A line break outside of quotes, or the end of the text: the end of a row, or of a blank line.
    virtual void EndOfRow(std::size_t line) = 0;
};

// The grammar of separated text, fed piece by piece: quotes only around whole fields, doubled inside of them.
class CsvParser {
public:
    CsvParser(char separator, CsvSink &sink);
    ~CsvParser() { csv_free(&m_parser); }
    CsvParser(CsvParser const &) = delete;
    CsvParser &operator=(CsvParser const &) = delete;

    // False at a misplaced quotation mark, which stands in Line(). What the sink throws passes through.
    bool Feed(std::string_view bytes);
    // To be called after the last piece. False when a quoted field is still open.
    bool Finish();

    // The line that was reached, counted from 1.
    std::size_t Line() const;

private:
    static void OnField(void *text, std::size_t size, void *self);
    static void OnEndOfRow(int lineBreak, void *self);
    template <typename Action>
    void Guarded(Action action);
    void CountLineBreak(int lineBreak);
    void Rethrow();

    csv_parser m_parser;
    CsvSink &m_sink;
    std::exception_ptr m_failure;
    std::size_t m_line = 1;
    bool m_afterReturn = false;
};

} // namespace engine
