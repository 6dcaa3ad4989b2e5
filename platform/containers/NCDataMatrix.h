#pragma once

#include "platform/containers/NCDataVector.h"

class ColumnPick;

// Table of numbers; instantiated for float. Rows and columns count from 1. The elements are contiguous, row after row;
// copies share them until one is written. -99 is the mark of a missing value: statistics skip it, sum in double, and
// answer -99 when nothing can be computed. A row or column outside the table is misuse (NCInternalError) unless the
// operation says otherwise. A position in a span counts from 0.
template <typename T>
class DATASERIES_API NCDataMatrix {
public:
    using value_type = T;

    static constexpr T MissingMark = NCDataVector<T>::MissingMark;

    NCDataMatrix() = default;
    NCDataMatrix(int rows, int columns, T fill = MissingMark);
    // One row, whose elements are shared.
    explicit NCDataMatrix(NCDataVector<T> const &row) : m_storage(row.Storage()), m_rows(1), m_columns(row.Size()) {}
    NCDataMatrix(NCDataMatrix const &other) = default;
    NCDataMatrix(NCDataMatrix &&other) noexcept;
    NCDataMatrix &operator=(NCDataMatrix other) noexcept;

    int Rows() const { return m_rows; }
    int Columns() const { return m_columns; }

    // The row in place.
    std::span<T const> Row(int row) const { return m_storage.Values().subspan(RowOffset(row), Width()); }
    // The row for writing, unlinked; good until the next copy of or change to this object.
    std::span<T> MutableRow(int row) { return m_storage.Write().subspan(RowOffset(row), Width()); }
    // All elements, row after row.
    std::span<T const> Values() const { return m_storage.Values(); }
    std::span<T> MutableValues() { return m_storage.Write(); }

    // A copy of the row: what is written into it stays out of the table. Row() reads without a copy.
    NCDataVector<T> operator[](int row) const { return NCDataVector<T>(Row(row)); }
    NCDataVector<T> operator()(int row) const { return (*this)[row]; }
    // The element, or `otherwise` for a place outside the table.
    T operator()(int row, int column, T otherwise) const;
    T operator()(int row, int column) const & { return Row(row)[ColumnOffset(column)]; }
    // For writing: unlinks. Good until the next copy of or change to this object.
    T &operator()(int row, int column) & { return MutableRow(row)[ColumnOffset(column)]; }

    bool operator==(NCDataMatrix const &other) const {
        return m_rows == other.m_rows && m_columns == other.m_columns && m_storage == other.m_storage;
    }
    bool SharesStorageWith(NCDataMatrix const &other) const {
        return m_rows == other.m_rows && m_columns == other.m_columns && m_storage.SharesStorageWith(other.m_storage);
    }
    void Unlink() { m_storage.Unlink(); }
    void Clear() { *this = NCDataMatrix(); }

    // Room for `rows` rows of the present width; without effect while there are no columns.
    void reserve(int rows);
    // `values` holds one number for each column; the first row of an empty table gives it its columns. Any number of
    // rows is appended in amortised linear time. `values` may be a row of this table.
    void SetRow(int row, std::span<T const> values);
    // Inserts before `at`; `Rows() + 1` appends.
    void InsertRow(int at, std::span<T const> values);
    void AppendRow(std::span<T const> values) { InsertRow(m_rows + 1, values); }
    // Appends a row of missing values, of the present width.
    void AppendRow();
    // Appends the rows of a table of the same width.
    void AppendRows(NCDataMatrix const &other);
    // Appends the chosen columns of the rows of another table.
    void AppendRows(NCDataMatrix const &other, ColumnPick const &pick);
    // Keeps the chosen columns, within the memory of this table where nobody shares it.
    void KeepColumns(ColumnPick const &pick);

    NCDataVector<T> GetColumn(int column) const;
    // The table with rows and columns exchanged; this one stays.
    [[nodiscard]] NCDataMatrix Transpose() const;

    // Over the observed elements of a row; both -99 when there is none.
    void GetRowMinMax(int row, T &minimum, T &maximum) const;
    double GetColumnMean(int column) const;
    // Standard deviation about `mean`, with the observed count less one as divisor; -99 below two observed elements.
    double GetColumnStdDev(int column, float mean) const;

private:
    std::size_t Width() const { return static_cast<std::size_t>(m_columns); }
    std::size_t RowOffset(int row) const {
        return CheckedOffset("NCDataMatrix", row, static_cast<std::size_t>(m_rows)) * Width();
    }
    std::size_t ColumnOffset(int column) const { return CheckedOffset("NCDataMatrix", column, Width()); }
    void CheckWidth(std::size_t width) const;

    SharedStorage<T> m_storage;
    int m_rows = 0;
    int m_columns = 0;
};

extern template class NCDataMatrix<float>;
