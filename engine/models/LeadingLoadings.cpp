#include "engine/models/LeadingLoadings.h"

#include "engine/models/Kernels.h"

#include <Eigen/Eigenvalues>
#include <Eigen/QR>

#include <algorithm>
#include <cmath>
#include <random>

namespace engine {
namespace {

// Up to this size the whole space is searched at once.
constexpr Index smallSize = 64;
constexpr Index basisBlocks = 6;
constexpr int maximalRounds = 2000;
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
            if (m_tall)
                AddTall(in, out);
            else
                AddWide(in, out);
            product.middleCols(first, count) = out.leftCols(count);
        }
        return product;
    }

private:
    // X' (X V): some rows at a time, which stay in the cache between the two products.
    void AddTall(RowMatrix const &in, RowMatrix &out) const {
        constexpr Index group = 8;
        auto const &kernels = BestKernels();
        for (Index first = 0; first < m_x.Rows(); first += group) {
            auto const rows = m_x.rows.data() + first;
            auto const n = std::min(group, m_x.Rows() - first);
            double scores[group * blockWidth] = {};
            kernels.blockScores(rows, n, 0, m_x.size, in.data(), scores);
            kernels.blockLoadings(rows, n, 0, m_x.size, scores, out.data());
        }
    }

    // X (X' V): some columns at a time.
    void AddWide(RowMatrix const &in, RowMatrix &out) const {
        auto const group = std::clamp<Index>(65536 / m_x.Rows(), 32, 512);
        auto const &kernels = BestKernels();
        RowMatrix loadings(group, blockWidth);
        for (Index first = 0; first < m_x.size; first += group) {
            auto const n = std::min(group, m_x.size - first);
            loadings.setZero();
            kernels.blockLoadings(m_x.rows.data(), m_x.Rows(), first, n, in.data(), loadings.data());
            kernels.blockScores(m_x.rows.data(), m_x.Rows(), first, n, loadings.data(), out.data());
        }
    }

    RowAddresses const &m_x;
    bool m_tall;
};

// Makes columns orthonormal among themselves and to both bases, leaving out those that lie in their span.
Matrix Orthonormal(Matrix block, Matrix const &known, Eigen::Ref<Matrix const> const &basis) {
    Index kept = 0;
    for (Index j = 0; j < block.cols(); ++j) {
        Vector v = block.col(j);
        auto const before = v.norm();
        if (!(before > 0))
            continue;
        v /= before;
        for (int pass = 0; pass < 3; ++pass) {
            v -= known * (known.transpose() * v);
            v -= basis * (basis.transpose() * v);
            v -= block.leftCols(kept) * (block.leftCols(kept).transpose() * v);
            auto const left = v.norm();
            if (left < 1e-8)
                break;
            v /= left;
            if (pass > 0 && left > 0.5) {
                block.col(kept++) = v;
                break;
            }
        }
    }
    return block.leftCols(kept);
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
        auto const width = blockWidth * ((m_count + 2 + blockWidth - 1) / blockWidth);
        auto const n = m_product.Size();
        auto const capacity = basisBlocks * width;
        m_basis.resize(n, capacity + width);
        m_image.resize(n, capacity + width);
        m_ritz.setZero(capacity + width, capacity + width);
        Matrix block(n, width);
        auto const guessed = std::min(guess.cols(), width - 2);
        block << guess.leftCols(guessed), RandomBlock(n, width - guessed);
        for (int round = 0; round < maximalRounds; ++round) {
            block = Orthonormal(block, m_known, m_basis.leftCols(m_size));
            if (block.cols() == 0)
                break;
            Grow(block);
            Matrix const residuals = Residuals(std::min(width, m_size));
            auto const open = Unconverged(residuals);
            if (open.empty() || open.front() >= Wanted())
                break;
            if (m_size > capacity - width)
                Restart(2 * width);
            block.resize(n, static_cast<Index>(open.size()));
            for (std::size_t j = 0; j < open.size(); ++j)
                block.col(j) = residuals.col(open[j]);
        }
        return m_basis.leftCols(m_size) * m_vectors.leftCols(Wanted());
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
        m_image.middleCols(m_size, block.cols()) = m_product.Apply(block);
        auto fresh = m_ritz.block(0, m_size, grown, block.cols());
        fresh.noalias() = m_basis.leftCols(grown).transpose() * m_image.middleCols(m_size, block.cols());
        m_size = grown;
        Eigen::SelfAdjointEigenSolver<Matrix> const solver(
            Matrix(m_ritz.topLeftCorner(m_size, m_size).selfadjointView<Eigen::Upper>()));
        m_values = solver.eigenvalues().reverse();
        m_vectors = solver.eigenvectors().rowwise().reverse();
    }

    Matrix Residuals(Index count) const {
        Matrix const vectors = m_vectors.leftCols(count);
        Matrix residuals = m_image.leftCols(m_size) * vectors;
        residuals.noalias() -= m_basis.leftCols(m_size) * (vectors * m_values.head(count).asDiagonal());
        residuals -= m_known * (m_known.transpose() * residuals);
        return residuals;
    }

    // The error of a direction is the residual divided by the distance to the nearest other eigenvalue.
    std::vector<Index> Unconverged(Matrix const &residuals) const {
        std::vector<Index> open;
        auto const rounding = 1e-14 * std::sqrt(std::max(m_largest, m_values[0]) * m_values[0]);
        for (Index j = 0; j < residuals.cols(); ++j) {
            auto gap = m_values[j];
            if (j > 0)
                gap = std::min(gap, m_values[j - 1] - m_values[j]);
            if (j + 1 < m_size)
                gap = std::min(gap, m_values[j] - m_values[j + 1]);
            if (residuals.col(j).norm() > std::max(1e-9 * gap, rounding))
                open.push_back(j);
        }
        return open;
    }

    void Restart(Index kept) {
        m_basis.leftCols(kept) = (m_basis.leftCols(m_size) * m_vectors.leftCols(kept)).eval();
        m_image.leftCols(kept) = (m_image.leftCols(m_size) * m_vectors.leftCols(kept)).eval();
        m_size = kept;
        m_ritz.topLeftCorner(kept, kept) = m_values.head(kept).asDiagonal();
        m_vectors = Matrix::Identity(kept, kept);
        m_values = m_values.head(kept).eval();
    }

    SmallSideProduct const &m_product;
    Matrix const &m_known;
    Index m_count;
    // The largest eigenvalue of the product, which sets the rounding errors.
    double m_largest;
    // Basis and its products, columns in use, and the projected product.
    Matrix m_basis, m_image, m_ritz;
    Index m_size = 0;
    Vector m_values;
    Matrix m_vectors;
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
    return Orthonormal(LoadingProducts(x, found), known, Matrix(x.size, 0));
}

} // namespace engine
