#include "engine/models/Prediction.h"

#include "engine/models/Kernels.h"

namespace engine {
namespace {

// The scores of one row with missing cells, of which the first `known` are there.
void ProjectRow(Components const &model, BlockView const &x, Index row, Index known, Matrix &t) {
    auto const &kernels = BestKernels();
    auto const &weights = model.ScoreWeights();
    auto const missing = x.MissingIn(row);
    Vector residual = x.Row(row);
    for (Index a = 0; a < t.cols(); ++a) {
        if (a >= known) {
            Vector const w = weights.col(a);
            auto const squares = ObservedSquares(w, w.squaredNorm(), missing);
            t(row, a) = squares > 0 ? residual.dot(w) / squares : 0;
        }
        kernels.add(residual.size(), -t(row, a), model.p.col(a).data(), residual.data());
        for (auto const k : missing)
            residual[k] = 0;
    }
}

} // namespace

void ExtendScores(Components const &model, BlockView const &x, Matrix &t) {
    auto const known = t.cols();
    auto const all = model.Predictive();
    if (known >= all)
        return;
    auto const &weights = model.ScoreWeights();
    t.conservativeResize(x.Rows(), all);
    t.rightCols(all - known) = ScoreProducts(x.Addresses(), Matrix(weights.rightCols(all - known)));
    // What the earlier components took away of each product.
    Matrix const taken = model.p.transpose() * weights;
    for (Index a = known; a < all; ++a) {
        t.col(a).noalias() -= t.leftCols(a) * taken.col(a).head(a);
        t.col(a) /= weights.col(a).squaredNorm();
    }
    if (!x.Complete())
        for (Index i = 0; i < x.Rows(); ++i)
            if (!x.MissingIn(i).empty())
                ProjectRow(model, x, i, known, t);
}

Scores PredictScores(Components const &model, BlockView const &x) {
    Scores scores;
    scores.t.resize(x.Rows(), 0);
    ExtendScores(model, x, scores.t);
    for (auto *const matrix : {&scores.u, &scores.to, &scores.uo})
        matrix->resize(x.Rows(), 0);
    return scores;
}

void PredictYScores(Components const &model, BlockView const &y, Scores &scores) {
    // c has no column for PCA, and then u has none.
    scores.u.setZero(y.Rows(), model.c.cols());
    Vector const squares = model.c.colwise().squaredNorm();
    for (Index i = 0; i < y.Rows(); ++i) {
        Vector residual = y.Row(i);
        for (Index a = 0; a < scores.u.cols(); ++a) {
            auto const observed = ObservedSquares(model.c.col(a), squares[a], y.MissingIn(i));
            if (observed > 0)
                scores.u(i, a) = residual.dot(model.c.col(a)) / observed;
            residual -= scores.t(i, a) * model.c.col(a);
            for (auto const m : y.MissingIn(i))
                residual[m] = 0;
        }
    }
}

Matrix Coefficients(Components const &model, Index predictive) {
    return model.wStar.leftCols(predictive) * model.c.leftCols(predictive).transpose();
}

Matrix PredictedY(Components const &model, Matrix const &t, Index predictive) {
    return t.leftCols(predictive) * model.c.leftCols(predictive).transpose();
}

RowMatrix PredictedX(Components const &model, Scores const &scores, Index predictive) {
    RowMatrix predicted = scores.t.leftCols(predictive) * model.p.leftCols(predictive).transpose();
    predicted.noalias() += scores.to * model.po.transpose();
    return predicted;
}

RowMatrix XResiduals(Components const &model, BlockView const &x, Scores const &scores, Index predictive) {
    RowMatrix residuals = -PredictedX(model, scores, predictive);
    for (Index i = 0; i < x.Rows(); ++i) {
        residuals.row(i) += x.Row(i);
        for (auto const k : x.MissingIn(i))
            residuals(i, k) = 0;
    }
    return residuals;
}

} // namespace engine
