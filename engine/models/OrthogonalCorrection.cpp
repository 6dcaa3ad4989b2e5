#include "engine/models/OrthogonalCorrection.h"

#include "engine/models/Extraction.h"
#include "engine/models/LeadingLoadings.h"

#include <Eigen/QR>

#include <limits>

namespace engine {

namespace {

// X with a value in each cell.
RowMatrix Filled(Block const &x) {
    if (x.Complete())
        return x.Values();
    constexpr Index components = 5;
    Block const none(RowMatrix(x.Rows(), 0), true);
    auto const pca = Extraction::Start(x, none, nullptr);
    pca->Extract(std::min(components, x.Size()));
    return Copied(FilledRows(x, pca->FoundScores().t, pca->Found().p).View());
}

// Orthonormal vectors that span the columns.
Matrix BasisOf(Matrix const &columns) {
    Eigen::ColPivHouseholderQR<Matrix> decomposition(columns.rows(), columns.cols());
    decomposition.setThreshold(1e-10);
    decomposition.compute(columns);
    return decomposition.householderQ() * Matrix::Identity(columns.rows(), decomposition.rank());
}

// The direction, of length 1 and orthogonal to the basis, along which rows vary most; 0 when they do not.
Vector WeightsBeside(RowMatrix const &e, Matrix const &basis) {
    RowMatrix const beside = e - (e * basis) * basis.transpose();
    Matrix const found =
        LeadingLoadings(RowAddresses(beside), 1, Matrix(e.cols(), 0), Matrix(e.rows(), 0), Matrix(e.cols(), 0));
    Vector const w = found.col(0) - basis * (basis.transpose() * found.col(0));
    return w.stableNormalized();
}

} // namespace

RowMatrix OrthogonalCorrection::Corrected(Block const &rows) const {
    RowMatrix left = rows.Values();
    for (Index component = 0; component < Size(); ++component) {
        Vector const weights = w.col(component);
        double const total = weights.squaredNorm();
        for (Index i = 0; i < left.rows(); ++i) {
            auto const missing = rows.MissingIn(i);
            double const denominator = DenominatorOfScore(weights, total, missing).value;
            if (denominator == 0)
                continue;
            left.row(i) -= left.row(i).dot(weights) / denominator * p.col(component).transpose();
            for (std::uint32_t const column : missing)
                left(i, column) = 0;
        }
    }
    for (Index i = 0; i < left.rows(); ++i)
        for (std::uint32_t const column : rows.MissingIn(i))
            left(i, column) = std::numeric_limits<double>::quiet_NaN();
    return left;
}

CorrectedBlock CorrectOrthogonally(Block const &x, Block const &y, Index components) {
    CorrectedBlock result = {{Matrix(x.Size(), 0), Matrix(x.Size(), 0), Matrix(x.Size(), 0), Matrix(x.Rows(), 0)},
                             Filled(x)};
    auto &[w, p, wStar, t] = result.correction;
    RowMatrix &e = result.x;
    Matrix const basis = BasisOf(e.transpose() * y.Values());
    double const least = 1e-12 * e.squaredNorm();
    while (t.cols() < components && basis.cols() < e.cols()) {
        Vector weights = WeightsBeside(e, basis);
        Vector scores = e * weights;
        double const squares = scores.squaredNorm();
        if (!(squares > least))
            break;
        Vector loadings = e.transpose() * scores / squares;
        if (loadings[Lead(loadings)] < 0)
            for (Vector *const vector : {&weights, &scores, &loadings})
                *vector = -*vector;
        e -= scores * loadings.transpose();
        Vector direct = weights;
        for (Index l = t.cols(); l-- > 0;)
            direct -= w.col(l) * p.col(l).dot(direct);
        AppendColumn(w, weights);
        AppendColumn(p, loadings);
        AppendColumn(wStar, direct);
        AppendColumn(t, scores);
    }
    return result;
}

} // namespace engine
