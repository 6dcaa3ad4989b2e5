#pragma once

#include "platform/containers/SharedStorage.h"
#include "platform/export.h"

#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <type_traits>

// How the values of a container are ordered, as far as the caller knows.
struct SortKind {
    enum Kind : int { Ascending = 0, Descending = 1, Unsorted = 2 };
};

// How an element of an integral vector is kept: identifiers have 32 bits on every machine.
template <typename T>
struct NCIntegralElement {
    using Type = T;
};
template <>
struct NCIntegralElement<unsigned long> {
    using Type = std::uint32_t;
};

// List of integers, identifiers or flags. Positions count from 1. Copies share their elements until one is written.
// Instantiated for <unsigned long, 0> (identifiers), <int, -99> (numbers, positions) and <bool, 0> (flags). A position
// or size outside the list is misuse (NCInternalError) unless the operation says otherwise.
//
// `Missing` is the mark of a missing element and the value of elements that come into being without one.
template <typename T, int Missing = std::is_same_v<T, int> ? -99 : 0>
class DATASERIES_API NCIntegralVector {
public:
    using value_type = typename NCIntegralElement<T>::Type;
    using const_iterator = value_type const *;

    static constexpr value_type MissingMark = static_cast<value_type>(Missing);

    NCIntegralVector() = default;
    explicit NCIntegralVector(int size, value_type fill = MissingMark);
    explicit NCIntegralVector(std::span<value_type const> values) : m_storage(values) {}
    NCIntegralVector(std::initializer_list<value_type> values) : m_storage(std::span(values.begin(), values.size())) {}

    int Size() const { return static_cast<int>(m_storage.Size()); }
    std::size_t size() const { return m_storage.Size(); }
    bool empty() const { return m_storage.Size() == 0; }
    const_iterator begin() const { return m_storage.Data(); }
    const_iterator end() const { return m_storage.Data() + m_storage.Size(); }
    value_type const *GetPtr() const { return m_storage.Data(); }
    std::span<value_type const> Values() const { return m_storage.Values(); }
    // The elements for writing, unlinked; good until the next copy of or change to this object.
    std::span<value_type> MutableValues() { return m_storage.Write(); }

    value_type operator[](int position) const { return m_storage.Data()[Offset(position)]; }
    value_type operator()(int position) const & { return (*this)[position]; }
    // For writing: unlinks. Good until the next copy of or change to this object.
    value_type &operator()(int position) & { return m_storage.Write()[Offset(position)]; }

    bool operator==(NCIntegralVector const &other) const { return m_storage == other.m_storage; }
    bool SharesStorageWith(NCIntegralVector const &other) const { return m_storage.SharesStorageWith(other.m_storage); }
    void Unlink() { m_storage.Unlink(); }

    void reserve(int size);
    // Elements that are added are missing marks.
    void resize(int size);
    void SetSize(int size) { resize(size); }
    void clear() { m_storage.Clear(); }
    void Clear() { clear(); }
    void push_back(value_type value) { m_storage.OpenGap(m_storage.Size(), 1).front() = value; }
    void SetAllValues(value_type value);
    // Sets the elements at `from` to `to`, both included; nothing when `to` is `from` - 1.
    void SetRange(int from, int to, value_type value);
    // Sets `count` elements, the first of them at `from`.
    void SetNumValues(int from, int count, value_type value) { SetRange(from, from + count - 1, value); }
    // Inserts `count` elements before position `at`; `Size() + 1` appends.
    void InsertValues(int at, int count, value_type value);
    void RemoveValues(int at, int count);
    // Keeps the elements at `positions`, in that order.
    void Reduce(NCIntegralVector<int, -99> const &positions);

    // The first position in `from` to `to` that holds `value`, -1 when there is none. `to` of -1 is the end, and a
    // range beyond the list is cut to it. With a sorted kind the search is binary.
    int Find(value_type value, SortKind::Kind kind = SortKind::Unsorted, int from = 1, int to = -1) const;
    // The first position whose element does not come before `value` in a list that is sorted ascending or descending;
    // `Size() + 1` when all do.
    int LowerBound(value_type value, bool ascending = true) const;

private:
    std::size_t Offset(int position) const { return CheckedOffset("NCIntegralVector", position, m_storage.Size()); }

    SharedStorage<value_type> m_storage;
};

extern template class NCIntegralVector<unsigned long, 0>;
extern template class NCIntegralVector<int, -99>;
extern template class NCIntegralVector<bool, 0>;

// Binary form: the count and the elements, four bytes each. Reading throws VqStreamError when the stream is damaged,
// and then leaves the list as it was.
DATASERIES_API std::ostream &operator<<(std::ostream &stream, NCIntegralVector<unsigned long, 0> const &values);
DATASERIES_API std::istream &operator>>(std::istream &stream, NCIntegralVector<unsigned long, 0> &values);

// Text form: the count, a blank, and a digit 0 or 1 for each flag ("5 01101"). Reading text that is no such list sets
// the stream's failbit and leaves the list as it was.
DATASERIES_API std::ostream &operator<<(std::ostream &stream, NCIntegralVector<bool, 0> const &flags);
DATASERIES_API std::istream &operator>>(std::istream &stream, NCIntegralVector<bool, 0> &flags);
