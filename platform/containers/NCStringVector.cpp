#include "platform/containers/NCStringVector.h"

#include "platform/text/VqStdString.h"

void NCStringVector::InsertStrings(int at, int count, std::string const &text) {
    auto const offset = static_cast<std::ptrdiff_t>(CheckedOffset("NCStringVector", at, size() + 1));
    m_strings.insert(m_strings.begin() + offset, CheckedSize("NCStringVector", count), text);
}

int NCStringVector::FindString(std::string const &text, bool matchCase, int from) const {
    std::string const folded = matchCase ? text : VqStdString::FoldCase(text);
    auto const first = m_strings.begin() + std::clamp(from - 1, 0, Size());
    auto const found = std::find_if(first, m_strings.end(), [&](std::string const &candidate) {
        return matchCase ? candidate == text : VqStdString::FoldCase(candidate) == folded;
    });
    return found != m_strings.end() ? static_cast<int>(found - m_strings.begin()) + 1 : -1;
}
