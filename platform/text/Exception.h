#pragma once

#include "platform/text/ExceptionMessage.h"

#include <exception>
#include <string>

// Base of all failures that this system throws: a failure of the system's own logic.
class DATASERIES_API Exception : public std::exception {
public:
    explicit Exception(ExceptionMessage const &message) : m_text(message.Text()) {}
    explicit Exception(std::string text) : m_text(std::move(text)) {}

    char const *what() const noexcept override { return m_text.c_str(); }

private:
    std::string m_text;
};

// What the user can meet and is to be told: a wrong number, a missing model, unreadable data.
class DATASERIES_API NCError : public Exception {
public:
    enum Level : int { Information = 0, Warning = 1, Error = 2 };

    NCError(ExceptionMessage const &message, Level level) : Exception(message), m_level(level) {}

    Level GetLevel() const { return m_level; }

private:
    Level m_level;
};

// Misuse by the calling program. Not an NCError, so that a handler for what the user may meet lets it through.
class DATASERIES_API NCInternalError : public Exception {
public:
    // `operation` is the name of the operation that was misused.
    explicit NCInternalError(std::string const &operation) : Exception(operation) {}
    NCInternalError(std::string const &operation, ExceptionMessage const &message)
        : Exception(operation + ": " + message.Text()) {}
};

// Failure of a binary stream: damaged, cut short, or written by another version.
class DATASERIES_API VqStreamError : public Exception {
public:
    using Exception::Exception;
};
