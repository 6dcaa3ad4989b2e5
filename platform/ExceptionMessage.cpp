#include "platform/ExceptionMessage.h"

#include <boost/locale/message.hpp>

#include <cassert>
#include <utility>

namespace {

std::string Placeholder(int number) {
    return "{" + std::to_string(number) + "}";
}

} // namespace

ExceptionMessage::ExceptionMessage(std::string text) : m_text(std::move(text)) {}

ExceptionMessage ExceptionMessage::translate(char const *text) {
    return ExceptionMessage(boost::locale::translate(text).str());
}

ExceptionMessage ExceptionMessage::Filled(std::string const &value) const {
    ExceptionMessage filled(*this);
    std::string const placeholder = Placeholder(++filled.m_filled);
    std::size_t at = filled.m_text.find(placeholder);
    assert(at != std::string::npos && "a value without its placeholder");
    for (; at != std::string::npos; at = filled.m_text.find(placeholder, at + value.size()))
        filled.m_text.replace(at, placeholder.size(), value);
    return filled;
}

std::string ExceptionMessage::Text() const {
    assert(m_text.find(Placeholder(m_filled + 1)) == std::string::npos && "a placeholder without its value");
    return m_text;
}
