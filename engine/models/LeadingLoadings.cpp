#include "engine/models/LeadingLoadings.h"

#include "engine/models/Kernels.h"
#include "engine/models/Parallel.h"

#include <Eigen/Eigenvalues>
#include <Eigen/QR>

#include <algorithm>
#include <cmath>
#include <random>

namespace engine {
namespace {

// Up to this size the whole space is searched at once.
constexpr Index smallSize = 64;
constexpr Index basisBlocks = 12;
constexpr Index parallelCells = 500'000;
constexpr Index parallelParts = 4;
constexpr int maximalSolutions = 2000;
// Eigenvalues below this part of the first are left to a later search.
constexpr double leaveBelow = 1e-6;

// The product of a multi-vector with the smaller of X'X and XX'.
class SmallSideProduct {
public:
    explicit SmallSideProduct(RowAddresses const &x) : m_x(x), m_tall(x.Rows() >= x.size) {}

    bool Tall() const { return m_tall; }
    Index Size() const { return std::min(m_x.Rows(), m_x.size); }

    Matrix Apply(Matrix const &v) const {
        Matrix product(Size(), v.cols());
        RowMatrix in(Size(), blockWidth);
        RowMatrix out(Size(), blockWidth);
        for (Index first = 0; first < v.cols(); first += blockWidth) {
            auto const count = std::min<Index>(blockWidth, v.cols() - first);
            in.leftCols(count) = v.middleCols(first, count);
            in.rightCols(blockWidth - count).setZero();
            out.setZero();
            AddParts(in, out);
            product.middleCols(first, count) = out.leftCols(count);
        }
        return product;
    }

private:
    // Always in the same parts, however many processors there are, so that sums always have the same order.
    void AddParts(RowMatrix const &in, RowMatrix &out) const {
        auto const length = std::max(m_x.Rows(), m_x.size);
        auto const parts = m_x.Rows() * m_x.size < parallelCells ? 1 : parallelParts;
        std::vector<RowMatrix> sums(parts - 1, out);
        InParallel(parts, [&](std::size_t part) {
            auto &sum = part == 0 ? out : sums[part - 1];
            auto const first = length * static_cast<Index>(part) / parts;
            auto const end = length * static_cast<Index>(part + 1) / parts;
            if (m_tall)
                AddRows(first, end, in, sum);
            else
                AddColumns(first, end, in, sum);
        });
        for (auto const &sum : sums)
            out += sum;
    }

    // X' (X V): some rows at a time, which stay in the cache between the two products.
    void AddRows(Index first, Index end, RowMatrix const &in, RowMatrix &out) const {
        constexpr Index group = 16;
        auto const &kernels = BestKernels();
        for (; first < end; first += group) {
            auto const rows = m_x.rows.data() + first;
            auto const n = std::min(group, end - first);
            double scores[group * blockWidth] = {};
            kernels.blockScores(rows, n, 0, m_x.size, in.data(), scores);
            kernels.blockLoadings(rows, n, 0, m_x.size, scores, out.data());
        }
    }

    // X (X' V): some columns at a time.
    void AddColumns(Index first, Index end, RowMatrix const &in, RowMatrix &out) const {
        auto const group = std::clamp<Index>(65536 / m_x.Rows(), 32, 512);
        auto const &kernels = BestKernels();
        RowMatrix loadings(group, blockWidth);
        for (; first < end; first += group) {
            auto const n = std::min(group, end - first);
            loadings.setZero();
            kernels.blockLoadings(m_x.rows.data(), m_x.Rows(), first, n, in.data(), loadings.data());
            kernels.blockScores(m_x.rows.data(), m_x.Rows(), first, n, loadings.data(), out.data());
        }
    }

    RowAddresses const &m_x;
    bool m_tall;
};

// The first columns of a matrix as rows for the kernels.
RowAddresses Transposed(Matrix const &matrix, Index columns) {
    RowAddresses rows;
    rows.size = matrix.rows();
    for (Index j = 0; j < columns; ++j)
        rows.rows.push_back(matrix.col(j).data());
    return rows;
}

// Makes the columns unit length and orthogonal to those before, leaving out those shorter than `least` then.
Matrix OrthonormalAmongThemselves(Matrix block, double least) {
    Index kept = 0;
    for (Index j = 0; j < block.cols(); ++j) {
        Vector v = block.col(j);
        for (int pass = 0; pass < 2; ++pass)
            v -= block.leftCols(kept) * (block.leftCols(kept).transpose() * v);
        auto const length = v.norm();
        if (length > least)
            block.col(kept++) = v / length;
    }
    return block.leftCols(kept);
}

// Makes columns orthonormal among themselves and to both bases, leaving out those that lie in their span.
Matrix Orthonormal(Matrix block, RowAddresses const &known, RowAddresses const &basis) {
    block = block.colwise().normalized().eval();
    for (auto const least : {1e-10, 0.5}) {
        for (auto const *const other : {&known, &basis})
            block -= LoadingProducts(*other, ScoreProducts(*other, block));
        block = OrthonormalAmongThemselves(std::move(block), least);
    }
    return block;
}

Matrix RandomBlock(Index rows, Index columns) {
    std::mt19937_64 generator(20231);
    std::normal_distribution<double> normal;
    return Matrix::NullaryExpr(rows, columns, [&] { return normal(generator); });
}

// Eigenvectors of the product in the space orthogonal to `known`, by Rayleigh-Ritz in a growing basis.
class Search {
public:
    Search(SmallSideProduct const &product, Index count, Matrix const &known, double largest)
        : m_product(product), m_known(known), m_count(count), m_largest(largest) {}

    Matrix InWholeSpace() {
        auto const n = m_product.Size();
        Matrix basis = Matrix::Identity(n, n);
        if (m_known.cols() > 0) {
            basis.applyOnTheLeft(Eigen::HouseholderQR<Matrix>(m_known).householderQ());
            basis = basis.rightCols(n - m_known.cols()).eval();
        }
        Matrix const small = basis.transpose() * m_product.Apply(basis);
        Eigen::SelfAdjointEigenSolver<Matrix> const solver(0.5 * (small + small.transpose()));
        m_values = solver.eigenvalues().reverse();
        return basis * solver.eigenvectors().rowwise().reverse().leftCols(Wanted());
    }

    Matrix Iterate(Matrix const &guess) {
        auto const n = m_product.Size();
        m_width = blockWidth * ((m_count + 2 + blockWidth - 1) / blockWidth);
        m_capacity = std::min(basisBlocks * m_width, n - m_known.cols());
        m_basis.resize(n, m_capacity);
        m_image.resize(n, m_capacity);
        m_ritz.setZero(m_capacity, m_capacity);
        auto const known = Transposed(m_known, m_known.cols());
        auto const guessed = std::min(guess.cols(), m_width - 2);
        Matrix block(n, m_width);
        block << guess.leftCols(guessed), RandomBlock(n, m_width - guessed);
        block = Orthonormal(std::move(block), known, Transposed(m_basis, 0));
        for (Index checked = 0; block.cols() > 0;) {
            auto const width = std::min(block.cols(), m_capacity - m_size);
            Grow(block.leftCols(width));
            auto const full = m_size + m_width > m_capacity;
            if (full || 2 * m_size >= 3 * checked) {
                checked = m_size;
                SolveProjection();
                if (++m_solutions == maximalSolutions || Converged())
                    return m_vectors;
            }
            block = Orthonormal(m_image.middleCols(m_size - width, width), known, Transposed(m_basis, m_size));
            if (full && block.cols() > 0) {
                Restart();
                checked = m_size;
            }
        }
        SolveProjection();
        return RitzVectors(Wanted());
    }

private:
    // How many of the eigenvalues found are asked for and not to be left to a later search.
    Index Wanted() const {
        Index wanted = 1;
        while (wanted < std::min(m_count, m_values.size()) && m_values[wanted] >= leaveBelow * m_values[0])
            ++wanted;
        return wanted;
    }

    void Grow(Matrix const &block) {
        auto const grown = m_size + block.cols();
        m_basis.middleCols(m_size, block.cols()) = block;
        Matrix const image = m_product.Apply(block);
        m_image.middleCols(m_size, block.cols()) = image;
        m_ritz.block(0, m_size, grown, block.cols()) = ScoreProducts(Transposed(m_basis, grown), image);
        m_size = grown;
    }

    void SolveProjection() {
        Eigen::SelfAdjointEigenSolver<Matrix> const solver(
            Matrix(m_ritz.topLeftCorner(m_size, m_size).selfadjointView<Eigen::Upper>()));
        m_values = solver.eigenvalues().reverse();
        m_small = solver.eigenvectors().rowwise().reverse();
    }

    Matrix RitzVectors(Index count) const {
        return LoadingProducts(Transposed(m_basis, m_size), Matrix(m_small.leftCols(count)));
    }

    // Sets m_vectors when all directions wanted are found. The error of a direction is its residual divided by the
    // distance to the nearest other eigenvalue.
    bool Converged() {
        auto const wanted = Wanted();
        auto const rounding = 1e-14 * std::sqrt(std::max(m_largest, m_values[0]) * m_values[0]);
        m_vectors = RitzVectors(wanted);
        Matrix residuals = LoadingProducts(Transposed(m_image, m_size), Matrix(m_small.leftCols(wanted)));
        residuals -= m_vectors * m_values.head(wanted).asDiagonal();
        residuals -= m_known * (m_known.transpose() * residuals);
        for (Index j = 0; j < wanted; ++j) {
            auto gap = m_values[j];
            if (j > 0)
                gap = std::min(gap, m_values[j - 1] - m_values[j]);
            if (j + 1 < m_size)
                gap = std::min(gap, m_values[j] - m_values[j + 1]);
            if (residuals.col(j).norm() > std::max(1e-9 * gap, rounding))
                return false;
        }
        return true;
    }

    // Goes on with the leading part of the basis alone (thick restart).
    void Restart() {
        auto const kept = m_size / 2;
        Matrix const leading = m_small.leftCols(kept);
        m_basis.leftCols(kept) = RitzVectors(kept);
        m_image.leftCols(kept) = LoadingProducts(Transposed(m_image, m_size), leading);
        m_ritz.topLeftCorner(kept, kept) = m_values.head(kept).asDiagonal();
        m_size = kept;
    }

    SmallSideProduct const &m_product;
    Matrix const &m_known;
    Index m_count;
    // The largest eigenvalue of the product, which sets the rounding errors.
    double m_largest;
    // Basis and its products, columns in use, and the projected product.
    Matrix m_basis, m_image, m_ritz;
    Index m_size = 0;
    Index m_capacity = 0;
    Index m_width = 0;
    // Eigenvalues and eigenvectors of the projected product, and the leading ones in full.
    Vector m_values;
    Matrix m_small, m_vectors;
    int m_solutions = 0;
};

} // namespace

Matrix LeadingLoadings(RowAddresses const &x, Index count, Matrix const &known, Matrix const &scores,
                       Matrix const &guess) {
    SmallSideProduct const product(x);
    Matrix const taken = product.Tall() ? known : Matrix(scores.colwise().normalized());
    auto const largest = scores.cols() > 0 ? scores.colwise().squaredNorm().maxCoeff() : 0.0;
    auto const left = product.Size() - taken.cols();
    count = std::min(count, left);
    if (count <= 0)
        return Matrix(x.size, 0);
    Search search(product, count, taken, largest);
    Matrix const found = left <= std::max(smallSize, 4 * count)
                             ? search.InWholeSpace()
                             : search.Iterate(product.Tall() ? guess : ScoreProducts(x, guess));
    if (product.Tall())
        return found;
    return Orthonormal(LoadingProducts(x, found), Transposed(known, known.cols()), Transposed(known, 0));
}

} // namespace engine
