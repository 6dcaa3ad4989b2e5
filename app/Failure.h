#pragma once

#include "platform/text/Exception.h"

#include <stdexcept>

// What was asked for can't be meant: exit status 2, with a hint at the help of the command.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Whoever reads our standard output wants no more of it. No failure.
class ReaderGone : public std::exception {};

// A problem to be told: Problem(ExceptionMessage::translate("There is no model {1}.") % 3).
inline NCError Problem(ExceptionMessage const &message) {
    return NCError(message, NCError::Error);
}
