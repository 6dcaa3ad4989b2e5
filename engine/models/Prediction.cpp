#include "engine/models/Prediction.h"

#include "engine/models/Kernels.h"

namespace engine {
namespace {

// The scores of one row with missing cells, of which the first `known` are there.
void ProjectRow(Matrix const &weights, Matrix const &loadings, BlockView const &x, Index row, Index known, Matrix &t) {
    auto const &kernels = BestKernels();
    auto const missing = x.MissingIn(row);
    Vector residual = x.Row(row);
    for (Index a = 0; a < t.cols(); ++a) {
        if (a >= known) {
            Vector const w = weights.col(a);
            auto const squares = DenominatorOfScore(w, w.squaredNorm(), missing).value;
            t(row, a) = squares > 0 ? residual.dot(w) / squares : 0;
        }
        kernels.add(residual.size(), -t(row, a), loadings.col(a).data(), residual.data());
        for (auto const k : missing)
            residual[k] = 0;
    }
}

// Adds to `t` the scores of the other components, in the order in which they were extracted.
void Project(Matrix const &weights, Matrix const &loadings, BlockView const &x, Matrix &t) {
    auto const known = t.cols();
    auto const all = weights.cols();
    if (known >= all)
        return;
    t.conservativeResize(x.Rows(), all);
    t.rightCols(all - known) = ScoreProducts(x.Addresses(), Matrix(weights.rightCols(all - known)));
    // What the earlier components took away of each product.
    Matrix const taken = loadings.transpose() * weights;
    for (Index a = known; a < all; ++a) {
        t.col(a).noalias() -= t.leftCols(a) * taken.col(a).head(a);
        t.col(a) /= weights.col(a).squaredNorm();
    }
    if (!x.Complete())
        for (Index i = 0; i < x.Rows(); ++i)
            if (!x.MissingIn(i).empty())
                ProjectRow(weights, loadings, x, i, known, t);
}

} // namespace

void ExtendScores(Components const &model, BlockView const &x, Matrix &t) {
    Project(model.ScoreWeights(), model.p, x, t);
}

Scores PredictScores(Components const &model, BlockView const &x) {
    Matrix companion(x.Rows(), 0);
    if (!x.Complete())
        Project(model.companionW, model.companionP, x, companion);
    Matrix scores(x.Rows(), 0);
    Matrix const weights = Joined(model.wo, model.ScoreWeights());
    Matrix const loadings = Joined(model.po, model.p);
    if (companion.cols() > 0)
        Project(weights, loadings, FilledRows(x, companion, model.companionP).View(), scores);
    else
        Project(weights, loadings, x, scores);
    Matrix const none(x.Rows(), 0);
    return {scores.rightCols(model.Predictive()), none, scores.leftCols(model.XOrthogonal()), none};
}

void PredictYScores(Components const &model, BlockView const &y, Scores &scores) {
    // c has no column for PCA, and then u has none.
    scores.u.setZero(y.Rows(), model.c.cols());
    scores.uo.setZero(y.Rows(), model.co.cols());
    for (Index i = 0; i < y.Rows(); ++i) {
        auto const missing = y.MissingIn(i);
        Vector residual = y.Row(i);
        auto const ratio = [](double product, double squares) { return squares > 0 ? product / squares : 0; };
        auto const take = [&](double part, auto const &loadings) {
            residual -= part * loadings;
            for (auto const m : missing)
                residual[m] = 0;
        };
        for (Index j = 0; j < scores.uo.cols(); ++j) {
            Vector const w = model.co.col(j);
            scores.uo(i, j) = ratio(residual.dot(w), DenominatorOfScore(w, w.squaredNorm(), missing).value);
            take(scores.uo(i, j), model.qo.col(j));
        }
        for (Index a = 0; a < scores.u.cols(); ++a) {
            Vector const c = model.c.col(a);
            scores.u(i, a) = ratio(residual.dot(c) + FilledPart(c, scores.t(i, a), missing), c.squaredNorm());
            take(scores.t(i, a), model.c.col(a));
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
