#include "app/Output.h"

#include "app/Failure.h"
#include "engine/ProjectFile.h"
#include "platform/containers/Missing.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t bufferSize = 1 << 16;

NCError WriteProblem(std::string const &what) {
    return Problem(ExceptionMessage::translate("{1} can't be written: {2}.") % what % std::strerror(errno));
}

bool IsSameFile(std::filesystem::path const &one, std::filesystem::path const &other) {
    std::error_code notThere;
    return std::filesystem::weakly_canonical(one, notThere) == other ||
           std::filesystem::equivalent(one, other, notThere);
}

} // namespace

void CheckApart(std::filesystem::path const &file, std::filesystem::path const &project) {
    for (std::filesystem::path const &kept : engine::ProjectFile::FilesOf(project))
        if (IsSameFile(file, kept))
            throw UsageError(file.string() + " is " + kept.string() + ", a file of the project, expected another file");
}

DraftFile::DraftFile(std::filesystem::path const &file, std::filesystem::path const &project) : m_file(file) {
    CheckApart(file, project);
    std::error_code ignored;
    if (std::filesystem::exists(file, ignored))
        m_file = std::filesystem::canonical(file);
    if (std::filesystem::is_directory(m_file, ignored)) {
        errno = EISDIR;
        throw WriteProblem(file.string());
    }
    bool const inPlace = std::filesystem::exists(m_file, ignored) && !std::filesystem::is_regular_file(m_file, ignored);
    if (inPlace) {
        m_descriptor = open(m_file.c_str(), O_WRONLY | O_CLOEXEC);
    } else {
        m_draft = m_file.string() + "." + std::to_string(getpid()) + ".part";
        m_descriptor = open(m_draft.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    }
    if (m_descriptor < 0)
        throw WriteProblem(file.string());
}

DraftFile::~DraftFile() {
    if (m_descriptor >= 0)
        close(m_descriptor);
    if (!m_draft.empty())
        unlink(m_draft.c_str());
}

void DraftFile::Commit() {
    int const closed = close(m_descriptor);
    m_descriptor = -1;
    if (closed != 0 || (!m_draft.empty() && rename(m_draft.c_str(), m_file.c_str()) != 0))
        throw WriteProblem(m_file.string());
    m_draft.clear();
}

Output::Output(std::filesystem::path const &file, std::filesystem::path const &project) {
    if (!file.empty())
        m_file.emplace(file, project);
    m_buffer.reserve(bufferSize);
}

Output &Output::operator<<(std::string_view text) {
    if (m_buffer.size() + text.size() > bufferSize)
        Flush();
    m_buffer += text;
    return *this;
}

void Output::WriteNumber(float value, int digits) {
    char buffer[32];
    *this << NumberText(value, digits, buffer);
}

void Output::WriteLeft(std::string_view text, std::size_t width) {
    WriteLine(text);
    m_buffer.append(width - std::min(width, TextWidth(text)), ' ');
}

void Output::WriteRight(std::string_view text, std::size_t width) {
    m_buffer.append(width - std::min(width, TextWidth(text)), ' ');
    WriteLine(text);
}

void Output::WriteLine(std::string_view text) {
    *this << text;
    std::replace_if(
        m_buffer.end() - static_cast<std::ptrdiff_t>(text.size()), m_buffer.end(),
        [](char letter) { return letter == '\n' || letter == '\r' || letter == '\t'; }, ' ');
}

void Output::Finish() {
    Flush();
    if (m_file)
        m_file->Commit();
}

void Output::Flush() {
    if (m_file)
        Interrupt::Check();
    int const descriptor = m_file ? m_file->Descriptor() : STDOUT_FILENO;
    for (std::string_view rest = m_buffer; !rest.empty();) {
        ssize_t const written = write(descriptor, rest.data(), rest.size());
        if (written < 0 && errno == EPIPE && !m_file)
            throw ReaderGone();
        if (written < 0 && errno != EINTR)
            throw WriteProblem(m_file ? "The file" : "The output");
        rest.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    m_buffer.clear();
}

std::string_view NumberText(float value, int digits, char (&buffer)[32]) {
    if (IsMissing(value) || !std::isfinite(value))
        return {};
    char const *const end =
        std::to_chars(std::begin(buffer), std::end(buffer), value, std::chars_format::general, digits).ptr;
    return {buffer, static_cast<std::size_t>(end - buffer)};
}

std::size_t TextWidth(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

std::string CsvField(std::string const &text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    std::string quoted = "\"";
    for (char const letter : text)
        quoted.append(letter == '"' ? 2 : 1, letter);
    return quoted + '"';
}

std::string JsonText(std::string const &text) {
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void Tell(std::string text) {
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos;)
        text.replace(at, 1, at + 1 == text.size() ? "" : " ");
    std::fprintf(stderr, "dataseries: %s\n", text.c_str());
}
