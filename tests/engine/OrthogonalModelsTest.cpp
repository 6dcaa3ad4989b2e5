// OPLS and O2PLS: figures that were worked out independently, what holds for every fit, and comparison with PLS.

#include "engine/models/CrossValidation.h"
#include "engine/models/NipalsExtraction.h"
#include "engine/models/Prediction.h"
#include "tests/engine/ModelBuilders.h"

#include <Eigen/QR>
#include <Eigen/SVD>

namespace engine {
namespace {

constexpr double sixDecimals = 2e-6;
constexpr auto autofit = ModelDefinition::autofit;

ModelDefinition DefineOrthogonal(RowMatrix const &cells, int responses, int a, int ax, int ay, int groups = 0) {
    auto definition = Define(cells, responses, a, groups);
    definition.kind = ay != 0 ? ModelKind::O2Pls : ModelKind::Opls;
    definition.xOrthogonal = ax;
    definition.yOrthogonal = ay;
    return definition;
}

RowMatrix const oneResponse =
    Table({{1, 2, 1, 1.2}, {2, 1, 4, 1.9}, {3, 5, 2, 3.4}, {4, 3, 6, 3.8}, {5, 7, 3, 5.6}, {6, 4, 8, 5.9}});
RowMatrix const twoResponses = Table({{1, 2, 1, 1.2, 2.0},
                                      {2, 1, 4, 1.9, 5.1},
                                      {3, 5, 2, 3.4, 1.4},
                                      {4, 3, 6, 3.8, 4.4},
                                      {5, 7, 3, 5.6, 0.9},
                                      {6, 4, 8, 5.9, 6.2}});

Vector Explained(Matrix const &ledger) {
    Vector const left = ledger.colwise().sum();
    return (left.head(left.size() - 1) - left.tail(left.size() - 1)) / left[0];
}

TEST(WorkedOrthogonalModels, Opls) {
    Fitted const fitted(oneResponse, DefineOrthogonal(oneResponse, 1, 1, 1, 0));
    auto const &model = fitted.model;
    auto const &c = model.components;
    RowMatrix const others = Table({{3.5, 2, 5}, {9, 1, 7}});
    auto const x = ScaleRows(model.definition.xTerms, model.xScales, MatrixSource(others), Counting(2));
    auto const scores = PredictScores(c, x);
    ExpectFigures(
        {
            {"t", model.scores.t, {-1.835790, -1.331184, -0.082078, 0.273628, 1.384310, 1.591115}},
            {"to", model.scores.to, {-0.408166, 0.782874, -0.995510, 0.789415, -1.273711, 1.105098}},
            {"u", model.scores.u, {-1.787224, -1.273091, -0.171378, 0.122413, 1.444469, 1.664811}},
            {"p", c.p, {0.708424, 0.548612, 0.444035}},
            {"po", c.po, {0.162353, -0.630940, 0.767981}},
            {"w", c.w, {0.710357, 0.547223, 0.442651}},
            {"wo", c.wo, {0.051768, -0.667824, 0.742516}},
            {"w*", c.wStar, {0.704662, 0.620691, 0.360966}},
            {"c, q, so", Joined(Joined(c.c, c.q), c.so), {0.717316, 0.717316, 0}},
            {"R2X", Explained(c.ssX), {0.644788, 0.354124}},
            {"R2Y", Explained(c.ssY), {0.995305, 0}},
            {"R2 progression", model.progression.takenY / c.ssY(0, 0), {0.988825, 0.995305}},
            {"CoeffCS", Coefficients(c, 1), {0.505465, 0.445232, 0.258927}},
            {"new t, to", Joined(scores.t, scores.to), {-0.340450, 1.720691, 0.799980, 1.830797}},
        },
        sixDecimals);
    EXPECT_EQ(model.iterations, (std::vector{1, 1}));
}

TEST(WorkedOrthogonalModels, O2Pls) {
    Fitted const fitted(twoResponses, DefineOrthogonal(twoResponses, 2, 1, 1, 1));
    auto const &model = fitted.model;
    auto const &c = model.components;
    Matrix const predicted = PredictedY(c, model.scores.t, 1);
    auto const y = [&](Index m) {
        return predicted.col(m).array() / model.yScales[m].weight + model.yScales[m].offset;
    };
    ExpectFigures(
        {
            {"t", model.scores.t, {-1.914622, -0.895737, -0.533739, 0.616524, 0.722967, 2.004607}},
            {"u", model.scores.u, {-1.902522, -0.914830, -0.475140, 0.288433, 0.968455, 2.035604}},
            {"to", model.scores.to, {-0.074263, -1.067772, 0.923649, -0.666845, 1.536356, -0.651124}},
            {"uo", model.scores.uo, {-0.116135, 1.078890, -0.783204, 0.425035, -1.407510, 0.802924}},
            {"w, p", Joined(c.w, c.p), {0.709700, 0.359108, 0.606108, 0.707298, 0.360553, 0.608065}},
            {"w*", c.wStar, {0.704177, 0.268253, 0.666405}},
            {"wo, po", Joined(c.wo, c.po), {0.050583, 0.832139, -0.552255, 0.170627, 0.845753, -0.520746}},
            {"so", c.so, {0.327578, -0.865000}},
            {"c, q", Joined(c.c, c.q), {0.689809, 0.261232, 0.689809, 0.261232}},
            {"co, qo", Joined(c.co, c.qo), {-0.354157, 0.935186, -0.261520, 0.970268}},
            {"r", c.r, {-0.096250, -0.849347, 0.615938}},
            {"R2X", Explained(c.ssX), {0.644956, 0.353954, 0}},
            {"R2Y", Explained(c.ssY), {0.526354, 0, 0.464244}},
            {"YPred 1", y(0), {1.126511, 2.460542, 2.934506, 4.440551, 4.579917, 6.257974}},
            {"YPred 2", y(1), {2.239516, 2.821602, 3.028410, 3.685552, 3.746362, 4.478559}},
        },
        sixDecimals);
}

// The leading left singular vectors.
Matrix Leading(Matrix const &matrix, Index count) {
    return Eigen::BDCSVD<Matrix>(matrix, Eigen::ComputeThinU).matrixU().leftCols(count);
}

struct Taken {
    Matrix scores, weights, loadings;
};

// Orthogonal components by explicit deflation; `block` becomes what they leave.
Taken TakeOrthogonal(Matrix &block, Matrix const &directions, Index count) {
    Taken taken{Matrix(block.rows(), 0), Matrix(block.cols(), 0), Matrix(block.cols(), 0)};
    for (Index j = 0; j < count; ++j) {
        Matrix const t = block * directions;
        Vector const w = Leading((block - t * directions.transpose()).transpose() * t, 1);
        Vector const score = block * w;
        Vector const p = block.transpose() * score / score.squaredNorm();
        block -= score * p.transpose();
        AppendColumn(taken.scores, score);
        AppendColumn(taken.weights, w);
        AppendColumn(taken.loadings, p);
    }
    return taken;
}

struct OrthogonalShape {
    Shape data;
    int ax, ay;

    friend void PrintTo(OrthogonalShape const &s, std::ostream *out) {
        PrintTo(s.data, out);
        *out << ", " << s.ax << " + " << s.ay << " orthogonal";
    }
};

class OrthogonalModels : public testing::TestWithParam<OrthogonalShape> {
protected:
    OrthogonalModels()
        : m_cells(MakeData(GetParam().data)),
          m_definition(DefineOrthogonal(m_cells, GetParam().data.responses, GetParam().data.components, GetParam().ax,
                                        GetParam().ay, 4)),
          m_fitted(m_cells, m_definition), m_x(m_fitted.workset.x.Values()), m_y(m_fitted.workset.y.Values()) {}

    // Some rows with the values of the companion model of these rows in the missing cells.
    std::pair<Matrix, Matrix> FilledRowsOf(std::vector<Index> const &rows) const {
        auto const &[x, y, xScales, yScales] = m_fitted.workset;
        NipalsExtraction companion(BlockView(x, rows), BlockView(y, rows), nullptr);
        companion.Extract(GetParam().data.components + GetParam().ax);
        Matrix const &t = companion.FoundScores().t;
        return {Copied(FilledRows(BlockView(x, rows), t, companion.Found().p).View()),
                Copied(FilledRows(BlockView(y, rows), t, companion.Found().c).View())};
    }

    RowMatrix m_cells;
    ModelDefinition m_definition;
    Fitted m_fitted;
    Matrix m_x, m_y;
};

std::vector<Index> RowsWhere(Index rows, auto const &condition) {
    std::vector<Index> chosen;
    for (Index i = 0; i < rows; ++i)
        if (condition(i))
            chosen.push_back(i);
    return chosen;
}

// The model of all rows, then the rounds, against explicit deflation and ordinary PLS of what it leaves.
TEST_P(OrthogonalModels, AgreeWithExplicitDeflation) {
    auto const &[shape, ax, ay] = GetParam();
    auto const &validation = *m_fitted.model.crossValidation;
    for (int g = -1; g < 4; ++g) {
        auto const &model = g < 0 ? m_fitted.model.components : validation.rounds[g];
        auto [x, y] = FilledRowsOf(RowsWhere(shape.rows, [&](Index i) { return i % 4 != g; }));
        Matrix const product = x.transpose() * y;
        auto const xTaken = TakeOrthogonal(x, Leading(product, shape.components), ax);
        auto const yTaken = TakeOrthogonal(y, Leading(product.transpose(), shape.components), ay);
        Block const filteredX{RowMatrix(x)};
        Block const filteredY{RowMatrix(y)};
        NipalsExtraction predictive(filteredX, filteredY, &m_fitted.model.components);
        predictive.Extract(shape.components);
        auto const &found = predictive.Found();
        EXPECT_LE(Difference(Signless(xTaken.loadings, model.po), model.po), 1e-7) << g;
        EXPECT_LE(Difference(Signless(yTaken.loadings, model.qo), model.qo), 1e-7) << g;
        EXPECT_LE(Difference(found.p, model.p) + Difference(found.c, model.c) + Difference(found.q, model.q), 1e-6)
            << g;
        Matrix z = Matrix::Identity(shape.columns, shape.columns);
        for (int j = 0; j < ax; ++j)
            z -= z * xTaken.weights.col(j) * xTaken.loadings.col(j).transpose();
        EXPECT_LE(Difference(z * found.wStar, model.wStar), 1e-6) << g;
        for (int j = 0; j < ax; ++j)
            EXPECT_GE(model.wo.col(j).dot(m_fitted.model.components.wo.col(j)), 0) << g;
        for (int j = 0; j < ay; ++j)
            EXPECT_GE(model.co.col(j).dot(m_fitted.model.components.co.col(j)), 0) << g;
    }
}

TEST_P(OrthogonalModels, Decompose) {
    auto const &c = m_fitted.model.components;
    auto const &[t, u, to, uo] = m_fitted.model.scores;
    auto const &[shape, ax, ay] = GetParam();
    ASSERT_EQ(c.Predictive(), shape.components);
    ASSERT_EQ(c.XOrthogonal(), ax);
    ASSERT_EQ(c.YOrthogonal(), ay);
    Matrix const gram = Joined(to, t).transpose() * Joined(to, t);
    EXPECT_LE(OffDiagonal(gram), 1e-8 * gram.trace());
    EXPECT_LE(OffDiagonal(uo.transpose() * uo), 1e-8 * uo.squaredNorm());
    EXPECT_LE(OffDiagonal(c.p.transpose() * c.wStar), 1e-8);
    EXPECT_LE(Difference(c.w.colwise().norm().transpose(), Vector::Ones(shape.components)), 1e-12);

    // The ledger adds up to the residuals of the observed cells.
    auto const &[xBlock, yBlock, xScales, yScales] = m_fitted.workset;
    auto const residuals = XResiduals(c, xBlock, m_fitted.model.scores, shape.components);
    Matrix rest = m_y - t * c.c.transpose() - uo * c.qo.transpose();
    for (Index i = 0; i < rest.rows(); ++i)
        for (auto const m : yBlock.MissingIn(i))
            rest(i, m) = 0;
    EXPECT_LE(Difference(residuals.colwise().squaredNorm().transpose(), c.ssX.rightCols(1)), 1e-8);
    EXPECT_LE(Difference(rest.colwise().squaredNorm().transpose(), c.ssY.rightCols(1)), 1e-8);
    EXPECT_LE(Difference(m_x.colwise().squaredNorm().transpose(), c.ssX.col(0)), 1e-8);
    EXPECT_LE(Difference(m_y.colwise().squaredNorm().transpose(), c.ssY.col(0)), 1e-8);
    if (shape.missing > 0)
        return;
    EXPECT_LE(Difference(m_x * c.wStar, t) + Difference(m_x * c.woStar, to), 1e-8);
    EXPECT_LE(Difference(m_y.transpose() * to, c.so * to.colwise().squaredNorm().asDiagonal()), 1e-8);
    EXPECT_LE(Difference(m_x.transpose() * uo, c.r * uo.colwise().squaredNorm().asDiagonal()), 1e-8);
    Matrix const keep = Leading(m_x.transpose() * m_y, shape.components);
    EXPECT_LE((keep.transpose() * c.wo).norm(), 1e-10);
    // A shorter model has all orthogonal components.
    auto const shorter = FirstComponents(c, shape.components - 1);
    auto const left = XResiduals(c, xBlock, m_fitted.model.scores, shape.components - 1);
    EXPECT_LE(Difference(left.colwise().squaredNorm().transpose(), shorter.ssX.rightCols(1)), 1e-7);
    EXPECT_LE(Difference(shorter.wStar, c.wStar.leftCols(shape.components - 1)), 1e-9);
    // Overall order: each component takes what its own vectors tell, Y-side ones nothing of X, X-side ones none of Y.
    for (Index j = 0; j < c.All(); ++j) {
        Vector x = Vector::Zero(c.ssX.rows());
        Vector y = Vector::Zero(c.ssY.rows());
        if (j < shape.components) {
            x = c.p.col(j).cwiseAbs2() * t.col(j).squaredNorm();
            y = c.c.col(j).cwiseAbs2() * t.col(j).squaredNorm();
        } else if (j < shape.components + ax)
            x = c.po.col(j - shape.components).cwiseAbs2() * to.col(j - shape.components).squaredNorm();
        else
            y = c.qo.col(j - shape.components - ax).cwiseAbs2() * uo.col(j - shape.components - ax).squaredNorm();
        EXPECT_LE(Difference(c.TakenX(j), x) + Difference(c.TakenY(j), y), 1e-7) << j;
    }
}

TEST_P(OrthogonalModels, GiveWorksetRowsTheirOwnScores) {
    auto const &model = m_fitted.model;
    auto scores = PredictScores(model.components, m_fitted.workset.x);
    PredictYScores(model.components, m_fitted.workset.y, scores);
    EXPECT_LE(Difference(scores.t, model.scores.t) + Difference(scores.to, model.scores.to), 1e-7);
    if (GetParam().data.missing == 0) {
        EXPECT_LE(Difference(scores.u, model.scores.u) + Difference(scores.uo, model.scores.uo), 1e-7);
    }
}

TEST_P(OrthogonalModels, CrossValidateRowsLeftOut) {
    auto const &validation = *m_fitted.model.crossValidation;
    auto const &y = m_fitted.workset.y;
    auto const a = GetParam().data.components;
    Matrix press = Matrix::Zero(y.Size(), a + 1);
    for (int g = 0; g < 4; ++g) {
        auto const out = RowsWhere(y.Rows(), [&](Index i) { return i % 4 == g; });
        auto scores = PredictScores(validation.rounds[g], BlockView(m_fitted.workset.x, out));
        PredictYScores(validation.rounds[g], BlockView(y, out), scores);
        EXPECT_LE(Difference(scores.to, Matrix(validation.excluded.to(out, Eigen::all))), 1e-12);
        EXPECT_LE(Difference(scores.u, Matrix(validation.excluded.u(out, Eigen::all))), 1e-12);
        EXPECT_LE(Difference(scores.uo, Matrix(validation.excluded.uo(out, Eigen::all))), 1e-12);
        for (int size = 0; size <= a; ++size) {
            Matrix const predicted = PredictedY(validation.rounds[g], scores.t, size);
            for (std::size_t i = 0; i < out.size(); ++i)
                for (Index m = 0; m < y.Size(); ++m)
                    if (!y.IsMissing(out[i], m))
                        press(m, size) += std::pow(m_y(out[i], m) - predicted(static_cast<Index>(i), m), 2);
        }
    }
    EXPECT_LE(Difference(validation.press, press), 1e-9 * press.sum());
}

// Each model of the progression is that of its own fit, in model and rounds.
TEST_P(OrthogonalModels, ProgressByRefitting) {
    auto const &progression = m_fitted.model.progression;
    ASSERT_EQ(progression.press.cols(), GetParam().ax + 1);
    for (int j = 0; j <= GetParam().ax; ++j) {
        auto definition = m_definition;
        definition.xOrthogonal = j;
        auto const refit = Fit(definition, m_fitted.workset);
        auto const &c = refit.components;
        EXPECT_LE(Difference(progression.press.col(j), refit.crossValidation->press.rightCols(1)), 1e-7) << j;
        EXPECT_LE(Difference(progression.takenY.col(j), c.ssY.col(0) - c.ssY.col(c.Predictive())), 1e-7) << j;
        EXPECT_LE(Difference(progression.predictedY[j], CrossValidatedY(*refit.crossValidation, c.Predictive())), 1e-7);
    }
}

TEST_P(OrthogonalModels, ComeBackFromTheirSavedForm) {
    auto const saved = m_fitted.model.Save();
    auto const loaded = FittedModel::Load(saved);
    EXPECT_EQ(loaded.Save(), saved);
    EXPECT_EQ(loaded.components.companionP, m_fitted.model.components.companionP);
    EXPECT_EQ(loaded.progression.predictedY, m_fitted.model.progression.predictedY);
}

OrthogonalShape const shapes[] = {
    {{40, 8, 1, 1, 0}, 2, 0},    {{12, 30, 1, 1, 0}, 3, 0},   {{40, 8, 3, 2, 0}, 2, 1},
    {{150, 90, 5, 2, 0}, 1, 2},  {{20, 60, 4, 3, 0}, 2, 0},   {{30, 9, 70, 2, 0}, 0, 2},
    {{40, 8, 1, 1, 0.05}, 2, 0}, {{40, 8, 3, 1, 0.05}, 1, 1}, {{25, 30, 3, 2, 0.1}, 1, 1},
};
INSTANTIATE_TEST_SUITE_P(Shapes, OrthogonalModels, testing::ValuesIn(shapes));

// One response: 1 + j components of OPLS predict as 1 + j of PLS do, in the model and in all rounds.
TEST(OplsAndPls, AgreeForOneResponse) {
    for (auto const &shape : {Shape{40, 8, 1, 4, 0}, Shape{12, 30, 1, 3, 0}, Shape{150, 90, 1, 5, 0}}) {
        auto const cells = MakeData(shape);
        auto const size = shape.components;
        Fitted const pls(cells, Define(cells, 1, size, 7));
        Fitted const opls(cells, DefineOrthogonal(cells, 1, 1, size - 1, 0, 7));
        auto const &[one, other] = std::tie(pls.model.components, opls.model.components);
        EXPECT_LE(Difference(Coefficients(other, 1), Coefficients(one, size)), 1e-8);
        EXPECT_LE(Difference(XResiduals(other, opls.workset.x, opls.model.scores, 1),
                             XResiduals(one, pls.workset.x, pls.model.scores, size)),
                  1e-8);
        EXPECT_LE(Difference(opls.model.progression.press, pls.model.crossValidation->press.rightCols(size)), 1e-8);
        Matrix const y = opls.workset.y.Values();
        EXPECT_LE((opls.model.scores.to.transpose() * y).norm() + other.so.norm(), 1e-8);
        // The sum of T2 over all components.
        auto const sphere = [](Matrix const &t) { return Vector(t.colwise().normalized().rowwise().squaredNorm()); };
        EXPECT_LE(Difference(sphere(Joined(opls.model.scores.t, opls.model.scores.to)), sphere(pls.model.scores.t)),
                  1e-8);
        Fitted const openPls(cells, Define(cells, 1, autofit, 7));
        Fitted const openOpls(cells, DefineOrthogonal(cells, 1, autofit, autofit, 0, 7));
        EXPECT_EQ(openOpls.model.components.All(), openPls.model.components.Predictive());
    }
}

struct AutofitCase {
    char const *what;
    int predictive, xSide, ySide; // hidden variables of both blocks, and of one of them only
    int groups;
    bool complete;
    std::vector<Index> expected;
};

// Orthogonal rows with elements about 1.
Matrix Patterns(Index count, Index columns) {
    Matrix const q = Random(columns, columns, 42).householderQr().householderQ();
    return std::sqrt(static_cast<double>(columns)) * q.topRows(count);
}

TEST(OrthogonalAutofit, FindsHiddenVariables) {
    for (auto const &[what, predictive, xSide, ySide, groups, complete, expected] :
         {AutofitCase{"joint only", 2, 0, 0, 7, true, {2, 0, 0}}, AutofitCase{"all kinds", 1, 1, 1, 7, true, {1, 1, 1}},
          AutofitCase{"missing cells", 1, 1, 1, 7, false, {1, 1, 1}},
          AutofitCase{"without rounds", 2, 1, 0, 0, true, {2, 0, 0}}}) {
        constexpr Index rows = 80;
        Matrix const joint = Random(rows, predictive, 41);
        RowMatrix cells = 0.3 * Random(rows, 14, 48);
        cells.leftCols(10) += Joined(joint, 3 * Random(rows, xSide, 43)) * Patterns(predictive + xSide, 10);
        cells.rightCols(4) += Joined(joint, 0.7 * Random(rows, ySide, 46)) * Patterns(predictive + ySide, 4);
        if (!complete)
            cells(3, 1) = cells(7, 2) = cells(8, 11) = nan;
        Fitted const open(cells, DefineOrthogonal(cells, 4, autofit, autofit, autofit, groups));
        auto const &c = open.model.components;
        EXPECT_EQ((std::vector{c.Predictive(), c.XOrthogonal(), c.YOrthogonal()}), expected) << what;
        Fitted const fixed(cells,
                           DefineOrthogonal(cells, 4, static_cast<int>(expected[0]), static_cast<int>(expected[1]),
                                            static_cast<int>(expected[2]), groups));
        EXPECT_LE(Difference(open.model.scores.t, fixed.model.scores.t), 1e-9) << what;
        EXPECT_EQ(open.model.progression.takenY.cols(), expected[1] + 1) << what;
    }
}

TEST(OrthogonalModelProperties, EndWhereTheDataDo) {
    RowMatrix const cells = Random(7, 3, 51) * Random(3, 6, 52);
    Fitted const opls(cells, DefineOrthogonal(cells, 1, 4, 9, 0, 3));
    EXPECT_EQ(opls.model.components.Predictive(), 1);
    EXPECT_EQ(opls.model.components.XOrthogonal(), 2);
    EXPECT_LE(opls.model.components.ssX.rightCols(1).sum(), 1e-10);
    Fitted const full(cells, DefineOrthogonal(cells, 2, 2, 0, 3, 0));
    EXPECT_EQ(full.model.components.YOrthogonal(), 0);
    Fitted const none(cells, DefineOrthogonal(cells, 2, 0, 2, 1, 3));
    EXPECT_EQ(none.model.components.All(), 0);
    EXPECT_LE(Difference(none.model.crossValidation->press, none.model.components.ssY), 1e-12);
}

// A new row with a missing cell on a model of complete rows.
TEST(OrthogonalModelProperties, FillNewRowsByTheCompanion) {
    auto const cells = MakeData({40, 8, 1, 1, 0});
    Fitted const opls(cells, DefineOrthogonal(cells, 1, 1, 2, 0));
    Fitted const pls(cells, Define(cells, 1, 3));
    RowMatrix row = opls.workset.x.Values().row(5);
    row(0, 2) = row(0, 6) = nan;
    auto const t = PredictScores(pls.model.components, Block(row)).t;
    RowMatrix const told = t * pls.model.components.p.transpose();
    RowMatrix filled = row;
    filled(0, 2) = told(0, 2);
    filled(0, 6) = told(0, 6);
    auto const scores = PredictScores(opls.model.components, Block(row));
    EXPECT_LE(Difference(scores.t, filled * opls.model.components.wStar), 1e-10);
    EXPECT_LE(Difference(scores.to, filled * opls.model.components.woStar), 1e-10);
}

} // namespace
} // namespace engine
