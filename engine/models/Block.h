#pragma once

#include "engine/models/Matrices.h"

#include <cstdint>
#include <span>
#include <vector>

namespace engine {

// A matrix of one row for each observation and one column for each term, rows contiguous. A missing cell holds 0 and
// is listed beside the values, so that sums of products over a row or column need no test.
class Block {
public:
    using Columns = std::span<std::uint32_t const>;

    Block() = default;
    // A value that is NaN or infinite is a missing cell; `complete` tells that there is none.
    explicit Block(RowMatrix values, bool complete = false);

    Index Rows() const { return m_values.rows(); }
    Index Size() const { return m_values.cols(); }
    bool Complete() const { return m_missing.empty(); }

    RowMatrix const &Values() const { return m_values; }
    // The columns without value in a row, rising.
    Columns MissingIn(Index row) const;
    bool IsMissing(Index row, Index column) const;

    // Counts of observed cells.
    Index ObservedInRow(Index row) const { return Size() - static_cast<Index>(MissingIn(row).size()); }
    Eigen::VectorXi ObservedInRows() const;
    Eigen::VectorXi ObservedInColumns() const;

private:
    RowMatrix m_values;
    std::vector<std::uint32_t> m_missing;
    std::vector<std::size_t> m_firstMissing;
};

// A matrix by the addresses of its rows, which kernels work on.
struct RowAddresses {
    std::vector<double const *> rows;
    Index size = 0;

    RowAddresses() = default;
    explicit RowAddresses(RowMatrix const &matrix);
    Index Rows() const { return static_cast<Index>(rows.size()); }
};

// Some rows of a block, by address. The block must outlive the view.
class BlockView {
public:
    BlockView(Block const &block);
    BlockView(Block const &block, std::vector<Index> const &rows);
    // Rows without missing cell, wherever they are.
    explicit BlockView(RowAddresses rows) : m_addresses(std::move(rows)) {}

    Index Rows() const { return m_addresses.Rows(); }
    Index Size() const { return m_addresses.size; }
    // No cell of the chosen rows is missing.
    bool Complete() const { return m_complete; }
    RowAddresses const &Addresses() const { return m_addresses; }
    Eigen::Map<Eigen::RowVectorXd const> Row(Index row) const { return {m_addresses.rows[row], Size()}; }
    Block::Columns MissingIn(Index row) const {
        return m_complete ? Block::Columns() : m_block->MissingIn(m_index[row]);
    }

private:
    Block const *m_block = nullptr;
    std::vector<Index> m_index;
    RowAddresses m_addresses;
    bool m_complete = true;
};

// The rows of a view whose missing cells get the elements of T P'. Rows without missing cell are shared with the view's
// block, which must outlive it.
class FilledRows {
public:
    FilledRows(BlockView const &view, Matrix const &t, Matrix const &p);
    FilledRows(FilledRows &&) = default;
    FilledRows &operator=(FilledRows &&) = default;

    BlockView const &View() const { return m_view; }

private:
    RowMatrix m_filled;
    BlockView m_view;
};

RowMatrix Copied(BlockView const &view);

// X w, one number for each row, and X' t, one for each column. Missing cells add nothing.
Vector ScoreProducts(RowAddresses const &x, Vector const &w);
Vector LoadingProducts(RowAddresses const &x, Vector const &t);
// X' T, a column for each of T.
Matrix LoadingProducts(RowAddresses const &x, Matrix const &t);
// X V, a column for each of V.
Matrix ScoreProducts(RowAddresses const &x, Matrix const &v);

// Adds X w to t and answers X' t of the t that this gives, in one pass.
Vector AddScoresAndProducts(RowAddresses const &x, Vector const &w, Vector &t);

// Sums of squares of the columns; missing cells add nothing.
Vector ColumnSquares(RowAddresses const &x);

// The denominator of a row's score on `w`: the sum of the squares of w over the row's observed cells, `total` being the
// sum over all cells. It is not below a hundredth of what even weights would give so many cells, lest the score of a
// row that is observed only where w is next to nothing runs away; 0 for a row without any.
struct ScoreDenominator {
    double value = 0;
    bool isBound = false; // the row meets that limit
};
ScoreDenominator DenominatorOfScore(Vector const &w, double total, Block::Columns missing);

// The part that a row's missing cells have in its product with w when they count as the elements of t w'; 0 when none
// is observed.
double FilledPart(Vector const &w, double t, Block::Columns missing);

} // namespace engine
