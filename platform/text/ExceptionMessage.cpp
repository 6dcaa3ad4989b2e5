#include "platform/text/ExceptionMessage.h"

#include "platform/text/Translate.h"

#include <cassert>
#include <utility>

ExceptionMessage::ExceptionMessage(std::string text) : m_text(std::move(text)) {}

ExceptionMessage ExceptionMessage::translate(char const *text) {
    return ExceptionMessage(::translate(text));
}

ExceptionMessage ExceptionMessage::Filled(std::string value) const {
    ExceptionMessage filled(*this);
    filled.m_values.push_back(std::move(value));
    return filled;
}

std::string ExceptionMessage::Text() const {
    std::string result;
    std::vector<bool> used(m_values.size());
    for (std::size_t at = 0; at < m_text.size(); ++at) {
        bool const placeholder = m_text[at] == '{' && at + 2 < m_text.size() && m_text[at + 1] >= '1' &&
                                 m_text[at + 1] <= '9' && m_text[at + 2] == '}';
        if (!placeholder) {
            result += m_text[at];
            continue;
        }
        std::size_t const value = static_cast<std::size_t>(m_text[at + 1] - '1');
        assert(value < m_values.size() && "a placeholder without its value");
        if (value < m_values.size()) {
            result += m_values[value];
            used[value] = true;
        }
        at += 2;
    }
    assert(used == std::vector<bool>(m_values.size(), true) && "a value without its placeholder");
    return result;
}
