#pragma once

#include "app/Interrupt.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

// UsageError when a file that a command reads or writes is the project or one of those that the engine keeps beside it,
// by whatever spelling or link.
void CheckApart(std::filesystem::path const &file, std::filesystem::path const &project);

// A file that is written beside its place and takes it once it is whole: Commit. Without that the place stays as it
// was. What is no regular file (a device, a pipe) is written in place. It is never a file of the project of the
// command.
class DraftFile {
public:
    DraftFile(std::filesystem::path const &file, std::filesystem::path const &project);
    ~DraftFile();
    DraftFile(DraftFile const &) = delete;
    DraftFile &operator=(DraftFile const &) = delete;

    int Descriptor() const { return m_descriptor; }
    void Commit();

private:
    Interrupt m_interrupt;
    std::filesystem::path m_file;
    std::filesystem::path m_draft; // empty when written in place
    int m_descriptor = -1;
};

// What a command writes, buffered: to standard output, or to a draft file when one is named. Nothing is complete before
// Finish.
class Output {
public:
    Output() : Output({}, {}) {}
    Output(std::filesystem::path const &file, std::filesystem::path const &project);

    Output &operator<<(std::string_view text);
    // At most so many significant digits; nothing for a missing value.
    void WriteNumber(float value, int digits);
    // On one line, padded with blanks to a width in characters.
    void WriteLeft(std::string_view text, std::size_t width);
    void WriteRight(std::string_view text, std::size_t width);
    void Finish();

private:
    void WriteLine(std::string_view text);
    void Flush();

    std::optional<DraftFile> m_file;
    std::string m_buffer;
};

// The number as a table shows it, in a buffer of the caller.
std::string_view NumberText(float value, int digits, char (&buffer)[32]);

// How many characters a UTF-8 text has.
std::size_t TextWidth(std::string_view text);

// A field of a line of comma separated values (RFC 4180).
std::string CsvField(std::string const &text);
// A text in quotes, as JSON has it.
std::string JsonText(std::string const &text);
// One line on standard error, whatever the text holds.
void Tell(std::string text);
