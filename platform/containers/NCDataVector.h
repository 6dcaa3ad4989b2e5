#pragma once

#include "platform/containers/Missing.h"
#include "platform/containers/NCIntegralVector.h"
#include "platform/containers/SharedStorage.h"
#include "platform/export.h"

#include <initializer_list>
#include <iosfwd>

// Row of numbers; instantiated for float. Positions count from 1. Copies share their elements until one is written.
// -99 is the mark of a missing value: statistics skip it, sum in double, and answer -99 when nothing can be computed. A
// position or size outside the row is misuse (NCInternalError) unless the operation says otherwise.
template <typename T>
class DATASERIES_API NCDataVector {
public:
    using value_type = T;
    using const_iterator = T const *;

    static constexpr T MissingMark = static_cast<T>(missingValue);

    NCDataVector() = default;
    explicit NCDataVector(int size, T fill = MissingMark);
    explicit NCDataVector(std::span<T const> values) : m_storage(values) {}
    explicit NCDataVector(SharedStorage<T> storage) : m_storage(std::move(storage)) {}
    NCDataVector(std::initializer_list<T> values) : m_storage(std::span(values.begin(), values.size())) {}

    int Size() const { return static_cast<int>(m_storage.Size()); }
    std::size_t size() const { return m_storage.Size(); }
    bool empty() const { return m_storage.Size() == 0; }
    const_iterator begin() const { return m_storage.Data(); }
    const_iterator end() const { return m_storage.Data() + m_storage.Size(); }
    std::span<T const> Values() const { return m_storage.Values(); }
    // The elements for writing, unlinked; good until the next copy of or change to this object.
    std::span<T> MutableValues() { return m_storage.Write(); }

    T operator[](int position) const { return m_storage.Data()[Offset(position)]; }
    T operator()(int position) const & { return (*this)[position]; }
    // For writing: unlinks. Good until the next copy of or change to this object.
    T &operator()(int position) & { return m_storage.Write()[Offset(position)]; }
    // The element, or `otherwise` for a position outside the row.
    T operator()(int position, T otherwise) const {
        return position >= 1 && position <= Size() ? m_storage.Data()[position - 1] : otherwise;
    }

    bool operator==(NCDataVector const &other) const { return m_storage == other.m_storage; }
    bool SharesStorageWith(NCDataVector const &other) const { return m_storage.SharesStorageWith(other.m_storage); }
    void Unlink() { m_storage.Unlink(); }
    SharedStorage<T> const &Storage() const { return m_storage; }

    void reserve(int size);
    // Elements that are added are missing.
    void resize(int size);
    void Clear() { m_storage.Clear(); }
    void push_back(T value) { m_storage.OpenGap(m_storage.Size(), 1).front() = value; }
    void SetAllValues(T value);
    // Keeps the elements at `positions`, in that order.
    void Reduce(NCIntegralVector<int, -99> const &positions);
    // Makes `destination` the positions in the order of their values; the row itself keeps its order. Missing values
    // come last either way, equal ones stay in the order of their positions.
    void Sort(NCIntegralVector<int, -99> &destination, bool ascending = true) const;

    double GetMean() const;
    // Sum of squares about the mean, and about `center`.
    double GetSS() const;
    double GetSS(long double center) const;

    // Element by element; missing where an operand is. Rows of different length are misuse.
    NCDataVector operator+(NCDataVector const &other) const;
    NCDataVector operator*(double factor) const;

private:
    std::size_t Offset(int position) const { return CheckedOffset("NCDataVector", position, m_storage.Size()); }

    SharedStorage<T> m_storage;
};

extern template class NCDataVector<float>;

// Binary form: the count and the elements, four bytes each. Reading throws VqStreamError when the stream is damaged,
// and then leaves the row as it was.
DATASERIES_API std::ostream &operator<<(std::ostream &stream, NCDataVector<float> const &values);
DATASERIES_API std::istream &operator>>(std::istream &stream, NCDataVector<float> &values);
