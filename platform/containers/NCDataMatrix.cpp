#include "platform/containers/NCDataMatrix.h"

#include "platform/containers/ColumnPick_internal.h"
#include "platform/containers/observed_internal.h"
#include "platform/containers/vectorised_internal.h"

#include <algorithm>
#include <limits>

namespace {

constexpr char const *container = "NCDataMatrix";

// Of the observed values; both missing when there is none.
DATASERIES_VECTORISED void FindExtremes(std::span<float const> values, float &minimum, float &maximum) {
    // So many at a time, each with extremes of its own: the compiler makes vector instructions of it.
    constexpr std::size_t lanes = 32;
    constexpr float largest = std::numeric_limits<float>::max();
    float least[lanes], most[lanes];
    std::ranges::fill(least, largest);
    std::ranges::fill(most, -largest);
    std::size_t const whole = values.size() / lanes * lanes;
    for (std::size_t at = 0; at < whole; at += lanes)
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            float const value = values[at + lane];
            float const forLeast = value == missingValue ? largest : value;
            float const forMost = value == missingValue ? -largest : value;
            least[lane] = forLeast < least[lane] ? forLeast : least[lane];
            most[lane] = forMost > most[lane] ? forMost : most[lane];
        }
    minimum = *std::ranges::min_element(least);
    maximum = *std::ranges::max_element(most);
    for (float const value : values.subspan(whole))
        if (value != missingValue) {
            minimum = std::min(minimum, value);
            maximum = std::max(maximum, value);
        }
    if (minimum > maximum)
        minimum = maximum = missingValue;
}

} // namespace

template <typename T>
NCDataMatrix<T>::NCDataMatrix(int rows, int columns, T fill)
    : m_storage(CheckedSize(container, rows) * CheckedSize(container, columns), fill), m_rows(rows),
      m_columns(columns) {}

template <typename T>
NCDataMatrix<T>::NCDataMatrix(NCDataMatrix &&other) noexcept
    : m_storage(std::move(other.m_storage)), m_rows(std::exchange(other.m_rows, 0)),
      m_columns(std::exchange(other.m_columns, 0)) {}

template <typename T>
NCDataMatrix<T> &NCDataMatrix<T>::operator=(NCDataMatrix other) noexcept {
    m_storage = std::move(other.m_storage);
    m_rows = other.m_rows;
    m_columns = other.m_columns;
    return *this;
}

template <typename T>
T NCDataMatrix<T>::operator()(int row, int column, T otherwise) const {
    bool const within = row >= 1 && row <= m_rows && column >= 1 && column <= m_columns;
    return within ? (*this)(row, column) : otherwise;
}

template <typename T>
void NCDataMatrix<T>::CheckWidth(std::size_t width) const {
    if (width != Width())
        ThrowOutOfRange(container, static_cast<long long>(width), m_columns, m_columns);
}

template <typename T>
void NCDataMatrix<T>::reserve(int rows) {
    m_storage.Reserve(CheckedSize(container, rows) * Width());
}

template <typename T>
void NCDataMatrix<T>::SetRow(int row, std::span<T const> values) {
    CheckWidth(values.size());
    std::ranges::copy(values, MutableRow(row).begin());
}

template <typename T>
void NCDataMatrix<T>::InsertRow(int at, std::span<T const> values) {
    std::size_t const offset = CheckedOffset(container, at, static_cast<std::size_t>(m_rows) + 1);
    if (m_rows == 0)
        m_columns = static_cast<int>(values.size());
    CheckWidth(values.size());
    m_storage.Insert(offset * Width(), values);
    ++m_rows;
}

template <typename T>
void NCDataMatrix<T>::AppendRow() {
    std::ranges::fill(m_storage.OpenGap(m_storage.Size(), Width()), MissingMark);
    ++m_rows;
}

template <typename T>
void NCDataMatrix<T>::AppendRows(NCDataMatrix const &other) {
    if (m_rows == 0)
        m_columns = other.m_columns;
    CheckWidth(other.Width());
    int const appended = other.m_rows;
    m_storage.Insert(m_storage.Size(), other.Values());
    m_rows += appended;
}

template <typename T>
void NCDataMatrix<T>::AppendRows(NCDataMatrix const &other, ColumnPick const &pick) {
    if (m_rows == 0)
        m_columns = static_cast<int>(pick.Size());
    CheckWidth(pick.Size());
    T *to = m_storage.OpenGap(m_storage.Size(), pick.Size() * static_cast<std::size_t>(other.m_rows)).data();
    for (int row = 1; row <= other.m_rows; ++row, to += Width())
        pick.Copy(other.Row(row).data(), to);
    m_rows += other.m_rows;
}

template <typename T>
void NCDataMatrix<T>::KeepColumns(ColumnPick const &pick) {
    if (m_storage.IsShared() || !pick.IsRising()) {
        NCDataMatrix kept;
        kept.AppendRows(*this, pick);
        kept.m_columns = static_cast<int>(pick.Size());
        *this = std::move(kept);
        return;
    }
    T *const values = m_storage.Write().data();
    std::size_t const rows = static_cast<std::size_t>(m_rows);
    for (std::size_t row = 0; row < rows; ++row)
        pick.Copy(values + row * Width(), values + row * pick.Size());
    m_columns = static_cast<int>(pick.Size());
    m_storage.Truncate(rows * pick.Size());
}

template <typename T>
NCDataVector<T> NCDataMatrix<T>::GetColumn(int column) const {
    NCDataVector<T> values(m_rows);
    T const *from = m_storage.Data() + ColumnOffset(column);
    for (T &value : values.MutableValues()) {
        value = *from;
        from += m_columns;
    }
    return values;
}

template <typename T>
NCDataMatrix<T> NCDataMatrix<T>::Transpose() const {
    // Squares that stay in the nearest cache.
    constexpr std::size_t tile = 32;
    NCDataMatrix transposed;
    transposed.m_rows = m_columns;
    transposed.m_columns = m_rows;
    T const *const from = m_storage.Data();
    std::size_t const rows = static_cast<std::size_t>(m_rows), columns = Width();
    T *const to = transposed.m_storage.OpenGap(0, rows * columns).data();
    for (std::size_t top = 0; top < rows; top += tile)
        for (std::size_t left = 0; left < columns; left += tile)
            for (std::size_t row = top; row < std::min(top + tile, rows); ++row)
                for (std::size_t column = left; column < std::min(left + tile, columns); ++column)
                    to[column * rows + row] = from[row * columns + column];
    return transposed;
}

template <typename T>
void NCDataMatrix<T>::GetRowMinMax(int row, T &minimum, T &maximum) const {
    FindExtremes(Row(row), minimum, maximum);
}

template <typename T>
double NCDataMatrix<T>::GetColumnMean(int column) const {
    return SumObserved(m_storage.Data() + ColumnOffset(column), static_cast<std::size_t>(m_rows), Width()).Mean();
}

template <typename T>
double NCDataMatrix<T>::GetColumnStdDev(int column, float mean) const {
    ObservedSum const squares = SquaresObserved(m_storage.Data() + ColumnOffset(column),
                                                static_cast<std::size_t>(m_rows), Width(), static_cast<double>(mean));
    return squares.count > 1 ? KeepOffMissing(std::sqrt(squares.sum / static_cast<double>(squares.count - 1)))
                             : missingValue;
}

template class NCDataMatrix<float>;
