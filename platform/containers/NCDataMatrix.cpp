#include "platform/containers/NCDataMatrix.h"

#include "platform/containers/observed_internal.h"

namespace {

constexpr char const *container = "NCDataMatrix";

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
    minimum = maximum = MissingMark;
    for (T const value : Row(row)) {
        if (value == MissingMark)
            continue;
        if (minimum == MissingMark)
            minimum = maximum = value;
        minimum = std::min(minimum, value);
        maximum = std::max(maximum, value);
    }
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
