// Small models whose figures were worked out independently, to six decimals.

#include "engine/models/CrossValidation.h"
#include "engine/models/Prediction.h"
#include "tests/engine/ModelBuilders.h"

namespace engine {
namespace {

// The data are held as float, which shows in the last decimal.
constexpr double sixDecimals = 2e-6;

RowMatrix const data =
    Table({{1, 2, 1, 1.2}, {2, 1, 4, 1.9}, {3, 5, 2, 3.4}, {4, 3, 6, 3.8}, {5, 7, 3, 5.6}, {6, 4, 8, 5.9}});

std::vector<double> Weights(std::vector<TermScale> const &scales) {
    std::vector<double> weights;
    for (auto const &scale : scales)
        weights.push_back(scale.weight);
    return weights;
}

std::vector<double> Offsets(std::vector<TermScale> const &scales) {
    std::vector<double> offsets;
    for (auto const &scale : scales)
        offsets.push_back(scale.offset);
    return offsets;
}

// Residual variance of each term: (N/n_k) SSX_k K/(d_r d_c).
Vector ResidualVariance(Fitted const &fitted, Index a) {
    auto const n = static_cast<double>(fitted.model.Rows());
    auto const k = static_cast<double>(fitted.workset.x.Size());
    auto const freedom = (n - fitted.model.XCentred() - a) * (k - a);
    Vector const observed = fitted.workset.x.ObservedInColumns().cast<double>();
    return (fitted.model.components.ssX.col(a).array() / observed.array() * (n * k / freedom)).matrix();
}

TEST(WorkedModels, Pls) {
    Fitted const fitted(data, Define(data, 1, 2));
    auto const &model = fitted.model;
    auto const &c = model.components;
    ExpectFigures(
        {
            {"Xavg", Column(Offsets(model.xScales)), {3.5, 3.666667, 4}},
            {"Xws", Column(Weights(model.xScales)), {0.534522, 0.462910, 0.383482}},
            {"Yavg, Yws", Column({model.yScales[0].offset, model.yScales[0].weight}), {3.633333, 0.526851}},
            {"t1", model.scores.t.col(0), {-1.880693, -1.245060, -0.191595, 0.360472, 1.244187, 1.712688}},
            {"t2", model.scores.t.col(1), {0.296860, -0.856561, 0.984170, -0.768081, 1.347346, -1.003735}},
            {"u1", model.scores.u.col(0), {-1.798936, -1.281434, -0.172501, 0.123215, 1.453935, 1.675722}},
            {"u2", model.scores.u.col(1), {0.738327, -0.328492, 0.172437, -2.142626, 1.894192, -0.333838}},
            {"p", c.p, {0.713420, 0.507699, 0.486596, -0.084418, 0.691293, -0.719132}},
            {"w", c.w, {0.710357, 0.547223, 0.442651, -0.051768, 0.667824, -0.742516}},
            {"w*", c.wStar, {0.710357, 0.547223, 0.442651, -0.009726, 0.700211, -0.716319}},
            {"c", c.c, {0.712646, 0.078913}},
            {"q", c.q, {0.712646, 0.078913}},
            {"SSX", c.ssX.colwise().sum(), {15, 5.230770, 0.016323}},
            {"SSY", c.ssY.colwise().sum(), {5, 0.055877, 0.023476}},
            {"S2VX(1)", ResidualVariance(fitted, 1), {0.016921, 0.934008, 1.010610}},
            {"CoeffCS(2)", Coefficients(c, 2), {0.505465, 0.445232, 0.258927}},
            {"YPred(2)",
             PredictedY(c, model.scores.t, 2).array() / model.yScales[0].weight + model.yScales[0].offset,
             {1.133876, 1.820905, 3.521583, 4.005882, 5.518093, 5.799662}},
        },
        sixDecimals);
    EXPECT_EQ(model.iterations, (std::vector{1, 1}));
}

TEST(WorkedModels, PlsOfOtherRows) {
    Fitted const fitted(data, Define(data, 1, 2));
    auto const &model = fitted.model;
    RowMatrix const others = Table({{3.5, 2, 5}, {9, 1, 7}, {3.5, nan, 5}});
    auto const x = ScaleRows(model.definition.xTerms, model.xScales, MatrixSource(others), Counting(3));
    auto const scores = PredictScores(model.components, x);
    Matrix const predicted = PredictedY(model.components, scores.t, 2).topRows(2);
    auto const residuals = XResiduals(model.components, x, scores, 2);
    // Prediction rows: s_i^2 = sum of e^2 / d_c; s_0^2 is the residual variance of the workset.
    auto const s0 = std::sqrt(ResidualVariance(fitted, 2).mean());
    ExpectFigures(
        {
            {"t", scores.t.transpose(), {-0.252443, -0.814920, 1.922098, -1.717040, 0.242309, -0.339787}},
            {"y", predicted.array() / model.yScales[0].weight + model.yScales[0].offset, {3.169806, 5.976081}},
            {"distance", residuals.rowwise().norm().head(2) / s0, {2.149665, 27.495836}},
        },
        sixDecimals);
}

TEST(WorkedModels, CrossValidatedPls) {
    Fitted const fitted(data, Define(data, 1, 2, 3));
    auto const &model = fitted.model;
    auto const &validation = *model.crossValidation;
    auto const scale = model.yScales[0];
    Matrix rounds(3, 3);
    for (int g = 0; g < 3; ++g)
        rounds.col(g) = Coefficients(validation.rounds[g], 2);
    auto const over = [&](auto quantity) { return Jackknife(validation, quantity).error; };
    RowMatrix const others = Table({{3.5, 2, 5}, {9, 1, 7}});
    auto const x = ScaleRows(model.definition.xTerms, model.xScales, MatrixSource(others), Counting(2));
    ExpectFigures(
        {
            {"PRESS", validation.press, {5, 0.767050, 0.071624}},
            {"YPredcv(2)",
             CrossValidatedY(validation, 2).array() / scale.weight + scale.offset,
             {1.048123, 1.862727, 3.636992, 4.053823, 5.460970, 5.593957}},
            {"tcv excluded",
             validation.excluded.t.col(0),
             {-1.810863, -0.812068, 0.101666, 0.253802, 0.610096, 1.325856}},
            {"CoeffCScv",
             rounds,
             {0.527766, 0.434241, 0.279666, 0.497493, 0.432560, 0.269750, 0.472070, 0.474040, 0.214470}},
            {"CoeffCScvSE",
             over([](auto const &round) { return Coefficients(round, 2); }),
             {0.032197, 0.027110, 0.040565}},
            {"pcvSE", over([](auto const &round) { return Matrix(round.p.col(0)); }), {0.031865, 0.372748, 0.331956}},
            {"wcvSE", over([](auto const &round) { return Matrix(round.w.col(0)); }), {0.031428, 0.311744, 0.286963}},
            {"tcvSE",
             over([&](auto const &round) { return Matrix(PredictScores(round, fitted.workset.x).t.col(0)); }),
             {0.113333, 0.379268, 0.414787, 0.318681, 0.584998, 0.406435}},
            {"YPredPScvSE",
             over([&](auto const &round) {
                 return Matrix(PredictedY(round, PredictScores(round, x).t, 2) / scale.weight);
             }),
             {0.068960, 0.320702}},
        },
        sixDecimals);
}

TEST(WorkedModels, Pca) {
    RowMatrix const x = data.leftCols(3);
    Fitted const two(x, Define(x, 0, 2, 3));
    auto const &c = two.model.components;
    Matrix const &press = two.model.crossValidation->press;
    Fitted const three(x, Define(x, 0, 3));
    ExpectFigures(
        {
            {"p", c.p, {0.713419, 0.457718, 0.530591, 0.004957, 0.753875, -0.656999}},
            {"t1", two.model.scores.t.col(0), {-1.916901, -1.137027, -0.315105, 0.456360, 1.074809, 1.837864}},
            {"Eig", three.model.scores.t.colwise().squaredNorm() / 5, {1.961571, 1.035171, 0.003258}},
            {"PRESS", press.colwise().sum(), {15, 19.721130, 0.639455}},
            {"Q2VXcum(1)", 1 - press.col(1).array() / press.col(0).array(), {0.476394, -0.903455, -0.517165}},
        },
        sixDecimals);
}

TEST(WorkedModels, PcaWithMissingCell) {
    RowMatrix x = data.leftCols(3);
    x(2, 1) = nan;
    Fitted const fitted(x, Define(x, 0, 2));
    auto const &model = fitted.model;
    auto const &c = model.components;
    auto const &scale = model.xScales[1];
    auto const filled = [&](Index a) { return scale.Unscale(PredictedX(c, model.scores, a)(2, 1)); };
    ExpectFigures(
        {
            {"Xavg", Column(Offsets(model.xScales)), {3.5, 3.4, 4}},
            {"Xws", Column(Weights(model.xScales)), {0.534522, 0.434372, 0.383482}},
            {"p", c.p, {0.697297, 0.444961, 0.561949, 0.094106, 0.743486, -0.662097}},
            {"t1", model.scores.t.col(0), {-1.848885, -1.022951, -0.769761, 0.540044, 1.039388, 1.909760}},
            {"t2", model.scores.t.col(1), {0.228895, -0.825595, 0.551765, -0.624999, 1.466636, -0.742642}},
            {"SSX", c.ssX.colwise().sum(), {14, 4.040824, 0.077504}},
            {"R2VXcum(1)", 1 - c.ssX.col(1).array() / c.ssX.col(0).array(), {0.979885, 0.469433, 0.636403}},
            {"S2VX(1)", ResidualVariance(fitted, 1), {0.037715, 0.955020, 0.681744}},
            {"missing cell", Column({filled(1), filled(2)}), {2.611475, 3.555894}},
        },
        sixDecimals);
    EXPECT_GT(model.iterations[0], 1);
    EXPECT_EQ(model.xObserved[2], 2);
}

TEST(WorkedModels, PlsWithMissingCell) {
    RowMatrix cells = data;
    cells(2, 1) = nan;
    Fitted const fitted(cells, Define(cells, 1, 2));
    auto const &c = fitted.model.components;
    ExpectFigures(
        {
            {"t1", fitted.model.scores.t.col(0), {-1.798484, -1.131479, -0.747529, 0.442453, 1.237772, 1.784818}},
            {"w1", c.w.col(0), {0.718047, 0.533107, 0.447443}},
            {"p1", c.p.col(0), {0.701517, 0.487590, 0.525168}},
            {"c", c.c, {0.689257, 0.192859}},
        },
        sixDecimals);
    EXPECT_EQ(fitted.model.iterations, (std::vector{1, 1}));
}

} // namespace
} // namespace engine
