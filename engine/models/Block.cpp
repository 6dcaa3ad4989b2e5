#include "engine/models/Block.h"

#include "engine/models/Kernels.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace engine {

Block::Block(RowMatrix values, bool complete) : m_values(std::move(values)) {
    if (complete || m_values.allFinite())
        return;
    m_firstMissing.reserve(Rows() + 1);
    for (Index i = 0; i < Rows(); ++i) {
        m_firstMissing.push_back(m_missing.size());
        for (Index k = 0; k < Size(); ++k)
            if (!std::isfinite(m_values(i, k))) {
                m_values(i, k) = 0;
                m_missing.push_back(static_cast<std::uint32_t>(k));
            }
    }
    m_firstMissing.push_back(m_missing.size());
}

Block::Columns Block::MissingIn(Index row) const {
    if (Complete())
        return {};
    return Columns(m_missing).subspan(m_firstMissing[row], m_firstMissing[row + 1] - m_firstMissing[row]);
}

bool Block::IsMissing(Index row, Index column) const {
    return std::ranges::binary_search(MissingIn(row), static_cast<std::uint32_t>(column));
}

Eigen::VectorXi Block::ObservedInRows() const {
    Eigen::VectorXi counts(Rows());
    for (Index i = 0; i < Rows(); ++i)
        counts[i] = static_cast<int>(ObservedInRow(i));
    return counts;
}

Eigen::VectorXi Block::ObservedInColumns() const {
    Eigen::VectorXi counts = Eigen::VectorXi::Constant(Size(), static_cast<int>(Rows()));
    for (auto const column : m_missing)
        --counts[column];
    return counts;
}

namespace {

std::vector<Index> AllRows(Block const &block) {
    std::vector<Index> rows(block.Rows());
    std::iota(rows.begin(), rows.end(), Index(0));
    return rows;
}

} // namespace

BlockView::BlockView(Block const &block) : BlockView(block, AllRows(block)) {}

BlockView::BlockView(Block const &block, std::vector<Index> const &rows) : m_block(&block), m_index(rows) {
    m_addresses.size = block.Size();
    m_addresses.rows.reserve(rows.size());
    for (auto const row : rows) {
        m_addresses.rows.push_back(block.Values().row(row).data());
        m_complete = m_complete && block.MissingIn(row).empty();
    }
}

namespace {

RowAddresses Fill(BlockView const &view, Matrix const &t, Matrix const &p, RowMatrix &filled) {
    auto addresses = view.Addresses();
    Index incomplete = 0;
    for (Index i = 0; i < view.Rows(); ++i)
        incomplete += !view.MissingIn(i).empty();
    filled.resize(incomplete, view.Size());
    Index next = 0;
    for (Index i = 0; i < view.Rows(); ++i) {
        auto const missing = view.MissingIn(i);
        if (missing.empty())
            continue;
        filled.row(next) = view.Row(i);
        for (auto const k : missing)
            filled(next, k) = t.row(i).dot(p.row(k));
        addresses.rows[i] = filled.row(next++).data();
    }
    return addresses;
}

} // namespace

FilledRows::FilledRows(BlockView const &view, Matrix const &t, Matrix const &p) : m_view(Fill(view, t, p, m_filled)) {}

RowMatrix Copied(BlockView const &view) {
    RowMatrix copy(view.Rows(), view.Size());
    for (Index i = 0; i < view.Rows(); ++i)
        copy.row(i) = view.Row(i);
    return copy;
}

RowAddresses::RowAddresses(RowMatrix const &matrix) : size(matrix.cols()) {
    for (Index i = 0; i < matrix.rows(); ++i)
        rows.push_back(matrix.row(i).data());
}

Vector ScoreProducts(RowAddresses const &x, Vector const &w) {
    Vector t = Vector::Zero(x.Rows());
    BestKernels().scores(x.rows.data(), x.Rows(), 0, x.size, w.data(), t.data());
    return t;
}

Vector LoadingProducts(RowAddresses const &x, Vector const &t) {
    Vector p = Vector::Zero(x.size);
    BestKernels().loadings(x.rows.data(), x.Rows(), 0, x.size, t.data(), p.data());
    return p;
}

namespace {

// Some columns of a matrix as a multi-vector of the block kernels, the rest of its columns 0.
RowMatrix Widened(Matrix const &columns, Index first) {
    RowMatrix block = RowMatrix::Zero(columns.rows(), blockWidth);
    auto const count = std::min<Index>(blockWidth, columns.cols() - first);
    block.leftCols(count) = columns.middleCols(first, count);
    return block;
}

// Calls `kernel(in, out)` for blocks of columns.
template <typename Kernel>
Matrix InBlocks(Matrix const &in, Index rows, Kernel kernel) {
    Matrix out(rows, in.cols());
    for (Index first = 0; first < in.cols(); first += blockWidth) {
        RowMatrix const block = Widened(in, first);
        RowMatrix product = RowMatrix::Zero(rows, blockWidth);
        kernel(block.data(), product.data());
        auto const count = std::min<Index>(blockWidth, in.cols() - first);
        out.middleCols(first, count) = product.leftCols(count);
    }
    return out;
}

} // namespace

Matrix LoadingProducts(RowAddresses const &x, Matrix const &t) {
    if (t.cols() == 1)
        return LoadingProducts(x, Vector(t));
    return InBlocks(t, x.size, [&](double const *in, double *out) {
        BestKernels().blockLoadings(x.rows.data(), x.Rows(), 0, x.size, in, out);
    });
}

Matrix ScoreProducts(RowAddresses const &x, Matrix const &v) {
    if (v.cols() == 1)
        return ScoreProducts(x, Vector(v));
    return InBlocks(v, x.Rows(), [&](double const *in, double *out) {
        BestKernels().blockScores(x.rows.data(), x.Rows(), 0, x.size, in, out);
    });
}

Vector AddScoresAndProducts(RowAddresses const &x, Vector const &w, Vector &t) {
    auto const &kernels = BestKernels();
    Vector products = Vector::Zero(x.size);
    // Some rows at a time, which stay in the cache between the two products.
    constexpr Index group = 8;
    for (Index first = 0; first < x.Rows(); first += group) {
        auto const rows = x.rows.data() + first;
        auto const n = std::min(group, x.Rows() - first);
        kernels.scores(rows, n, 0, x.size, w.data(), t.data() + first);
        kernels.loadings(rows, n, 0, x.size, t.data() + first, products.data());
    }
    return products;
}

Vector ColumnSquares(RowAddresses const &x) {
    Vector squares = Vector::Zero(x.size);
    for (auto const row : x.rows)
        BestKernels().addSquares(x.size, row, squares.data());
    return squares;
}

namespace {

double ObservedSquares(Vector const &w, double total, Block::Columns missing) {
    double lost = 0;
    for (auto const k : missing)
        lost += w[k] * w[k];
    if (lost < 0.99 * total)
        return total - lost;
    // The difference would have lost its digits.
    double sum = 0;
    auto next = missing.begin();
    for (Index k = 0; k < w.size(); ++k)
        if (next != missing.end() && *next == k)
            ++next;
        else
            sum += w[k] * w[k];
    return sum;
}

} // namespace

ScoreDenominator DenominatorOfScore(Vector const &w, double total, Block::Columns missing) {
    auto const size = static_cast<double>(w.size());
    auto const least = 0.01 * (size - static_cast<double>(missing.size())) / size * total;
    auto const squares = ObservedSquares(w, total, missing);
    return squares < least ? ScoreDenominator{least, true} : ScoreDenominator{squares, false};
}

double FilledPart(Vector const &w, double t, Block::Columns missing) {
    if (static_cast<Index>(missing.size()) == w.size())
        return 0;
    double squares = 0;
    for (auto const k : missing)
        squares += w[k] * w[k];
    return t * squares;
}

} // namespace engine
