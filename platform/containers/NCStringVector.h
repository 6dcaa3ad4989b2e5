#pragma once

#include "platform/containers/SharedStorage.h"
#include "platform/export.h"

#include <initializer_list>
#include <string>
#include <vector>

// List of UTF-8 texts. Positions count from 1. A position or size outside the list is misuse (NCInternalError) unless
// the operation says otherwise.
class DATASERIES_API NCStringVector {
public:
    using value_type = std::string;
    using const_iterator = std::vector<std::string>::const_iterator;

    NCStringVector() = default;
    // `size` empty texts.
    explicit NCStringVector(int size) : m_strings(CheckedSize("NCStringVector", size)) {}
    explicit NCStringVector(std::vector<std::string> strings) : m_strings(std::move(strings)) {}
    NCStringVector(std::initializer_list<std::string> strings) : m_strings(strings) {}

    int Size() const { return static_cast<int>(m_strings.size()); }
    std::size_t size() const { return m_strings.size(); }
    bool empty() const { return m_strings.empty(); }
    const_iterator begin() const { return m_strings.begin(); }
    const_iterator end() const { return m_strings.end(); }
    std::vector<std::string> const &Values() const { return m_strings; }

    std::string const &operator[](int position) const { return m_strings[Offset(position)]; }
    std::string &operator[](int position) { return m_strings[Offset(position)]; }
    // The text, or `otherwise` for a position outside the list.
    std::string operator()(int position, std::string const &otherwise) const {
        return position >= 1 && position <= Size() ? (*this)[position] : otherwise;
    }

    bool operator==(NCStringVector const &other) const = default;

    void Clear() { m_strings.clear(); }
    void reserve(int size) { m_strings.reserve(CheckedSize("NCStringVector", size)); }
    void push_back(std::string text) { m_strings.push_back(std::move(text)); }
    // Inserts `count` texts before position `at`; `Size() + 1` appends.
    void InsertStrings(int at, int count, std::string const &text = {});

    // The first position from `from` on that holds `text`, -1 when there is none. Without `matchCase` letters are equal
    // to their other case, in all scripts.
    int FindString(std::string const &text, bool matchCase = true, int from = 1) const;

private:
    std::size_t Offset(int position) const { return CheckedOffset("NCStringVector", position, m_strings.size()); }

    std::vector<std::string> m_strings;
};
