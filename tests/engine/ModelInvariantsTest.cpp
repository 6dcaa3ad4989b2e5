// What holds for every fit, on seeded data of several shapes.

#include "engine/models/CrossValidation.h"
#include "engine/models/LeadingLoadings.h"
#include "engine/models/NipalsExtraction.h"
#include "engine/models/Prediction.h"
#include "tests/engine/ModelBuilders.h"

#include <Eigen/QR>
#include <Eigen/SVD>

namespace engine {
namespace {

class Models : public testing::TestWithParam<Shape> {
protected:
    Models() : m_cells(MakeData(GetParam())) {}

    Fitted FitGroups(int groups) const {
        return {m_cells, Define(m_cells, GetParam().responses, GetParam().components, groups)};
    }

    RowMatrix m_cells;
};

class CompleteModels : public Models {};

TEST_P(CompleteModels, Decompose) {
    auto const fitted = FitGroups(0);
    auto const &c = fitted.model.components;
    auto const &[t, u, to, uo] = fitted.model.scores;
    Matrix const x = fitted.workset.x.Values();
    Matrix const y = fitted.workset.y.Values();
    auto const a = c.Predictive();
    Matrix const identity = Matrix::Identity(a, a);
    ASSERT_EQ(a, GetParam().components);
    EXPECT_LE(OffDiagonal(t.transpose() * t), 1e-8 * t.squaredNorm());
    EXPECT_LE(Difference(x * c.DirectWeights(), t), 1e-8);
    EXPECT_LE(Difference((x - t * c.p.transpose()).colwise().squaredNorm().transpose(), c.ssX.rightCols(1)), 1e-8);
    Matrix const correlation =
        (x.transpose() * t).cwiseAbs2().array() / (c.ssX.col(0) * t.colwise().squaredNorm()).array();
    for (Index b = 0; b < a; ++b)
        EXPECT_LE(Difference(correlation.col(b), c.TakenX(b).cwiseQuotient(c.ssX.col(0))), 1e-8) << b;
    if (y.cols() == 0) {
        EXPECT_LE(Difference(c.p.transpose() * c.p, identity), 1e-10);
        Eigen::BDCSVD<Matrix> const svd(x, Eigen::ComputeThinV);
        EXPECT_LE(Difference(Signless(svd.matrixV().leftCols(a), c.p), c.p), 1e-8);
    } else {
        EXPECT_LE(Difference(c.w.transpose() * c.w, identity), 1e-8);
        EXPECT_LE(Difference(c.p.transpose() * c.wStar, identity), 1e-8);
        Matrix const predicted = x * Coefficients(c, a);
        EXPECT_LE(Difference(PredictedY(c, t, a), predicted), 1e-8);
        EXPECT_LE(Difference((y - predicted).colwise().squaredNorm().transpose(), c.ssY.rightCols(1)), 1e-8);
        Eigen::BDCSVD<Matrix> const svd(x.transpose() * y, Eigen::ComputeThinU);
        EXPECT_LE(Difference(Signless(svd.matrixU().leftCols(1), c.w.leftCols(1)), c.w.leftCols(1)), 1e-8);
        for (Index b = 0; b < a; ++b)
            EXPECT_GT(c.c(Lead(c.c.col(b)), b), 0) << b;
    }
}

TEST_P(CompleteModels, DirectWayAgreesWithIteration) {
    auto const fitted = FitGroups(0);
    NipalsExtraction iteration(fitted.workset.x, fitted.workset.y, nullptr);
    iteration.Extract(GetParam().components);
    auto const &direct = fitted.model.components;
    auto const &found = iteration.Found();
    EXPECT_LE(Difference(direct.p, found.p), 1e-7);
    EXPECT_LE(Difference(direct.wStar, found.wStar), 1e-7);
    EXPECT_LE(Difference(direct.c, found.c), 1e-7);
    EXPECT_LE(Difference(direct.q, found.q), 1e-7);
    EXPECT_LE(Difference(direct.ssX, found.ssX), 1e-7 * direct.ssX.maxCoeff());
    EXPECT_LE(Difference(fitted.model.scores.u, iteration.FoundScores().u), 1e-6 * fitted.model.scores.u.norm());
}

TEST_P(Models, GiveWorksetRowsTheirOwnScores) {
    auto const fitted = FitGroups(0);
    auto scores = PredictScores(fitted.model.components, fitted.workset.x);
    PredictYScores(fitted.model.components, fitted.workset.y, scores);
    EXPECT_LE(Difference(scores.t, fitted.model.scores.t), 1e-7);
    auto const residuals =
        XResiduals(fitted.model.components, fitted.workset.x, scores, fitted.model.components.Predictive());
    EXPECT_LE(Difference(residuals.colwise().squaredNorm().transpose(), fitted.model.components.ssX.rightCols(1)),
              1e-6);
    EXPECT_LE(Difference(scores.u, fitted.model.scores.u), 1e-6 * scores.u.norm());
}

// The rounds again with the component-wise iteration on copied rows, and for PCA by leaving out each element in turn.
TEST_P(Models, CrossValidateByRefitting) {
    auto const fitted = FitGroups(4);
    auto const &[x, y, xScales, yScales] = fitted.workset;
    auto const &validation = *fitted.model.crossValidation;
    auto const components = fitted.model.components.Predictive();
    Matrix press = Matrix::Zero(validation.press.rows(), components + 1);
    for (int g = 0; g < 4; ++g) {
        std::vector<Index> in;
        std::vector<Index> out;
        for (Index i = 0; i < x.Rows(); ++i)
            (i % 4 == g ? out : in).push_back(i);
        NipalsExtraction refit(BlockView(x, in), BlockView(y, in), &fitted.model.components);
        refit.Extract(components);
        auto const &model = refit.Found();
        EXPECT_LE(Difference(validation.rounds[g].p, model.p), 1e-6) << g;
        auto const t = PredictScores(model, BlockView(x, out)).t;
        for (Index a = 0; a <= components; ++a)
            for (Index i = 0; i < t.rows(); ++i) {
                if (y.Size() > 0) {
                    Matrix const predicted = PredictedY(model, t.row(i), a);
                    for (Index m = 0; m < y.Size(); ++m)
                        if (!y.IsMissing(out[i], m))
                            press(m, a) += std::pow(y.Values()(out[i], m) - predicted(0, m), 2);
                    continue;
                }
                for (Index k = 0; k < x.Size(); ++k) {
                    if (x.IsMissing(out[i], k))
                        continue;
                    Matrix others = model.p.leftCols(a);
                    for (Index other = 0; other < x.Size(); ++other)
                        if (other == k || x.IsMissing(out[i], other))
                            others.row(other).setZero();
                    Vector const row = x.Values().row(out[i]);
                    Vector const own = a == 0 ? Vector(0) : Vector(others.householderQr().solve(row));
                    press(k, a) += std::pow(row[k] - model.p.row(k).head(a).dot(own), 2);
                }
            }
    }
    EXPECT_LE(Difference(validation.press, press), 1e-6 * press.maxCoeff());
}

// Rounds of one component by the plain iteration, on what the components before leave.
TEST_P(Models, CrossValidateDeflatedMatrices) {
    auto definition = Define(m_cells, GetParam().responses, 3, 4);
    definition.q2 = Q2Form::Deflated;
    Fitted const fitted(m_cells, definition);
    auto const &[workset, model] = fitted;
    auto const hasY = GetParam().responses > 0;
    RowMatrix e = m_cells.leftCols(GetParam().columns), f = m_cells.rightCols(GetParam().responses);
    for (auto const &[left, block] : {std::pair(&e, &workset.x), std::pair(&f, &workset.y)})
        *left = left->array().isNaN().select(nan, block->Values());
    Matrix press = Matrix::Zero(hasY ? f.cols() : e.cols(), 3);
    for (Index a = 0; a < 3; ++a) {
        Block const x(e), y(f);
        for (auto const &[in, out] : SplitRows(model.crossValidation->roundOfRow)) {
            NipalsExtraction round(BlockView(x, in), BlockView(y, in), nullptr);
            round.Extract(1);
            auto const &found = round.Found();
            auto const t = PredictScores(found, BlockView(x, out)).t;
            for (Index i = 0; i < t.rows(); ++i)
                for (Index k = 0; k < press.rows(); ++k) {
                    auto const row = out[i];
                    if ((hasY ? y : x).IsMissing(row, k))
                        continue;
                    // The score of a row of PCA is that of its other cells.
                    Vector others = hasY ? Vector(1) : Vector(found.p);
                    for (Index other = 0; !hasY && other < others.size(); ++other)
                        if (other == k || x.IsMissing(row, other))
                            others[other] = 0;
                    auto const error =
                        hasY ? f(row, k) - t(i, 0) * found.c(k, 0)
                             : e(row, k) - found.p(k, 0) * x.Values().row(row).dot(others) / others.squaredNorm();
                    press(k, a) += error * error;
                }
        }
        e -= model.scores.t.col(a) * model.components.p.col(a).transpose();
        if (hasY)
            f -= model.scores.t.col(a) * model.components.c.col(a).transpose();
    }
    EXPECT_LE(Difference(model.crossValidation->deflatedPress, press), 1e-6 * press.maxCoeff());
    auto const [errors, before] = ErrorsOf(*model.crossValidation, model.components, 2);
    EXPECT_LE(Difference(errors, press.col(1)), 1e-6 * press.maxCoeff());
    EXPECT_EQ(before, (hasY ? model.components.ssY : model.components.ssX).col(1));
}

Shape const complete[] = {{40, 8, 0, 4, 0}, {12, 30, 0, 4, 0}, {150, 90, 0, 3, 0}, {80, 200, 0, 3, 0},
                          {40, 8, 1, 4, 0}, {12, 30, 1, 4, 0}, {150, 90, 3, 5, 0}, {30, 100, 80, 3, 0}};
Shape const incomplete[] = {
    {40, 8, 0, 3, 0.1}, {15, 30, 0, 2, 0.1}, {40, 8, 1, 3, 0.1}, {40, 8, 3, 3, 0.1}, {15, 30, 3, 2, 0.1}};
INSTANTIATE_TEST_SUITE_P(Complete, CompleteModels, testing::ValuesIn(complete));
INSTANTIATE_TEST_SUITE_P(Complete, Models, testing::ValuesIn(complete));
INSTANTIATE_TEST_SUITE_P(Incomplete, Models, testing::ValuesIn(incomplete));

TEST(ModelProperties, AllComponentsGiveLeastSquares) {
    auto const cells = MakeData({30, 6, 2, 6, 0});
    Fitted const fitted(cells, Define(cells, 2, 6));
    Matrix const x = fitted.workset.x.Values();
    Matrix const expected = x.householderQr().solve(Matrix(fitted.workset.y.Values()));
    EXPECT_LE(Difference(Coefficients(fitted.model.components, 6), expected), 1e-9);
}

// Singular values over eight decades, more than one search can tell apart, beyond and below the size that is searched
// at once, and of a rank below the number asked for.
TEST(ModelProperties, SmallComponentsAreExact) {
    for (auto const &[rows, columns] :
         {std::pair(30, 20), std::pair(20, 30), std::pair(200, 120), std::pair(90, 300)}) {
        constexpr int rank = 9;
        Matrix const left = Random(rows, rank, 5).householderQr().householderQ() * Matrix::Identity(rows, rank);
        Matrix const right = Random(columns, rank, 6).householderQr().householderQ() * Matrix::Identity(columns, rank);
        Vector const sizes = Vector::NullaryExpr(rank, [](Index j) { return std::pow(10.0, -0.6 * j); });
        Block const x(RowMatrix(left * sizes.asDiagonal() * right.transpose()));
        Block const y(RowMatrix(rows, 0));
        auto const extraction = Extraction::Start(x, y, nullptr);
        extraction->Extract(4);
        extraction->Extract(15);
        auto const &found = extraction->Found();
        ASSERT_EQ(found.Predictive(), rank) << rows << " x " << columns;
        EXPECT_LE(Difference(Signless(right, found.p), found.p), 1e-7) << rows << " x " << columns;
        EXPECT_LE(Difference(extraction->FoundScores().t.colwise().norm().transpose().cwiseQuotient(sizes),
                             Vector::Ones(rank)),
                  1e-7);
        for (Index a = 0; a < rank - 1; ++a) {
            auto const left = sizes.tail(rank - 1 - a).squaredNorm();
            EXPECT_NEAR(found.ssX.col(a + 1).sum() / left, 1, 1e-6) << a;
        }
    }
}

// X and the part of it that y follows over five decades: explicit deflation keeps the digits, and so must the direct
// way.
TEST(ModelProperties, SmallPlsComponentsAreExact) {
    Matrix const left = Random(50, 6, 5).householderQr().householderQ() * Matrix::Identity(50, 6);
    Matrix const right = Random(20, 6, 6).householderQr().householderQ() * Matrix::Identity(20, 6);
    Vector const sizes = Vector::NullaryExpr(6, [](Index j) { return std::pow(10.0, -j); });
    Block const x(RowMatrix(left * sizes.asDiagonal() * right.transpose()));
    for (Vector const &part : {Vector(Vector::Ones(6)), Vector(sizes.cwiseAbs2())}) {
        Block const y(RowMatrix(left * part));
        auto const direct = Extraction::Start(x, y, nullptr);
        NipalsExtraction iteration(x, y, nullptr);
        direct->Extract(6);
        iteration.Extract(6);
        EXPECT_LE(Difference(direct->Found().p, iteration.Found().p), 1e-7);
        Matrix const unit = direct->FoundScores().t.colwise().normalized();
        EXPECT_LE(OffDiagonal(unit.transpose() * unit), 1e-8);
    }
}

// The first component of noise with missing cells, in hundreds of rounds of plain iteration from the same start.
TEST(ModelProperties, AcceleratedIterationEndsWherePlainDoes) {
    for (unsigned const seed : {3, 6, 12, 15}) {
        RowMatrix cells = Random(60, 20, seed);
        for (Index cell = 0; cell < cells.size(); cell += 23)
            cells.data()[cell] = nan;
        Block const x(cells);
        Block const y(RowMatrix(60, 0));
        NipalsExtraction extraction(x, y, nullptr);
        extraction.Extract(1);
        Matrix const observed = cells.unaryExpr([](double v) { return std::isnan(v) ? 0.0 : 1.0; });
        Matrix const e = x.Values();
        Index start = 0;
        e.colwise().squaredNorm().maxCoeff(&start);
        Vector t = e.col(start);
        Vector p;
        int rounds = 0;
        for (Vector before = Vector::Zero(60); (t - before).squaredNorm() >= 1e-20 * t.squaredNorm(); ++rounds) {
            before = t;
            p = (e.transpose() * t).cwiseQuotient(observed.transpose() * t.cwiseAbs2()).normalized();
            t = (e * p).cwiseQuotient(observed * p.cwiseAbs2());
        }
        EXPECT_LE(Difference(Signless(p, extraction.Found().p), extraction.Found().p), 1e-7) << seed;
        EXPECT_LT(extraction.Iterations()[0], rounds) << seed;
    }
}

// A row that outweighs all others in t, but not in the column where it is missing.
TEST(ModelProperties, MissingOutlierDoesNotSpoilItsColumn) {
    RowMatrix cells = Random(20, 5, 9);
    cells.row(4) *= 1e7;
    cells(4, 2) = nan;
    Block const x(cells);
    Block const y(RowMatrix(20, 0));
    NipalsExtraction extraction(x, y, nullptr);
    extraction.Extract(1);
    Vector const t = extraction.FoundScores().t;
    auto const &p = extraction.Found().p;
    auto const first = x.Values().col(0).dot(t) / t.squaredNorm();
    Vector others = t;
    others[4] = 0;
    auto const third = x.Values().col(2).dot(others) / others.squaredNorm();
    EXPECT_NEAR(p(2, 0) / p(0, 0), third / first, 1e-9 * std::abs(third / first));
}

// Rows that lack some of several responses do not keep the iteration from its end, nor does the order of responses
// change what it finds.
TEST(ModelProperties, HolesInResponsesConvergeInAnyOrder) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        RowMatrix cells = Random(60, 3, seed) * Random(3, 11, seed + 100) + 2 * Random(60, 11, seed + 200);
        std::mt19937 generator(seed);
        std::bernoulli_distribution lost(0.05);
        for (auto &cell : cells.rightCols(3).reshaped())
            if (lost(generator))
                cell = nan;
        auto definition = Define(cells, 3, 4);
        auto const model = Fitted(cells, definition).model;
        std::ranges::reverse(definition.yTerms);
        auto const turned = Fitted(cells, definition).model;
        EXPECT_TRUE(model.notes.unconverged.empty() && turned.notes.unconverged.empty()) << seed;
        EXPECT_LE(Difference(Signless(turned.scores.t, model.scores.t), model.scores.t), 1e-7) << seed;
    }
}

// X'Y has two singular values that all but agree, so that thousands of rounds do not part them. The last row, without
// any value, makes no difference to that.
TEST(ModelProperties, WhatDoesNotConvergeIsKnown) {
    Matrix const x = Table({{1, 1}, {1, -1}, {-1, 1}, {-1, -1}});
    Matrix const y = x * Table({{0.8, 0.6}, {-0.6 * (1 - 1e-6), 0.8 * (1 - 1e-6)}});
    RowMatrix cells = RowMatrix::Constant(5, 4, nan);
    cells.topRows(4) << x, y;
    auto definition = Define(cells, 2, 1);
    for (auto *const terms : {&definition.xTerms, &definition.yTerms})
        for (auto &term : *terms)
            term.scaling = ScalingKind::Centred;
    for (auto const kind : {ModelKind::Pls, ModelKind::Opls}) {
        definition.kind = kind;
        auto const model = FittedModel::Load(Fitted(cells, definition).model.Save());
        ASSERT_EQ(model.notes.unconverged.size(), 1);
        auto const &[component, rounds, change, ofCompanion] = model.notes.unconverged.front();
        EXPECT_EQ(component, 1);
        EXPECT_EQ(rounds, 5000);
        EXPECT_TRUE(change > 1e-10 && change < 1e-3) << change;
        EXPECT_EQ(ofCompanion, kind == ModelKind::Opls);
        EXPECT_EQ(model.iterations[0], ofCompanion ? 1 : 5000);
    }
}

// The first row is observed only in the last column, which has next to no part in the component.
TEST(ModelProperties, ScoresOfScarceRowsDoNotRunAway) {
    RowMatrix cells = Random(30, 1, 5) * RowMatrix::Ones(1, 6) + 0.01 * Random(30, 6, 6);
    cells.col(5) = 1e-4 * Random(30, 1, 7);
    cells.row(0).head(5).setConstant(nan);
    auto definition = Define(cells, 0, 1);
    for (auto &term : definition.xTerms)
        term.scaling = ScalingKind::Centred;
    Fitted const fitted(cells, definition);
    auto const &[workset, model] = fitted;
    EXPECT_EQ(model.notes.scarceRows, 1);
    double const expected = workset.x.Values()(0, 5) * model.components.p(5, 0) / (0.01 / 6);
    EXPECT_NEAR(model.scores.t(0, 0), expected, 1e-12);
    EXPECT_NEAR(PredictScores(model.components, workset.x).t(0, 0), expected, 1e-12);
}

TEST(ModelProperties, TurningAColumnTurnsItsElements) {
    auto cells = MakeData({30, 6, 1, 3, 0});
    Fitted const plain(cells, Define(cells, 1, 3));
    cells.col(2) *= -1;
    Fitted const turned(cells, Define(cells, 1, 3));
    auto expected = plain.model.components;
    for (auto *const matrix : {&expected.p, &expected.w, &expected.wStar})
        matrix->row(2) *= -1;
    auto const &found = turned.model.components;
    EXPECT_LE(Difference(found.p, expected.p) + Difference(found.wStar, expected.wStar), 1e-10);
    EXPECT_LE(Difference(turned.model.scores.t, plain.model.scores.t), 1e-10);
}

TEST(ModelProperties, RoundsHaveTheSignsOfTheModel) {
    for (int const responses : {0, 3}) {
        RowMatrix const cells = Random(14, 9, 31);
        Fitted const fitted(cells, Define(cells, responses, 4, 7));
        auto const &weights = fitted.model.components.ScoreWeights();
        for (auto const &round : fitted.model.crossValidation->rounds)
            for (Index a = 0; a < 4; ++a)
                EXPECT_GE(round.ScoreWeights().col(a).dot(weights.col(a)), 0) << a;
    }
}

TEST(ModelProperties, JackknifeOfTheMeanIsItsStandardError) {
    auto const values = Random(12, 1, 8);
    CrossValidation validation;
    validation.rounds.resize(12);
    int g = 0;
    auto const error = Jackknife(validation, [&](Components const &) -> std::optional<Matrix> {
        return Matrix::Constant(1, 1, (values.sum() - values(g++, 0)) / 11);
    });
    auto const deviation = std::sqrt((values.array() - values.mean()).square().sum() / 11);
    EXPECT_NEAR(error.error(0, 0), deviation / std::sqrt(12.0), 1e-12);
    EXPECT_EQ(error.freedom, 11);
}

struct AutofitCase {
    char const *what;
    int hidden, responses, groups;
    Index expected;
    bool complete = true;
};

TEST(Autofit, StopsWherePredictionDoes) {
    for (auto const &[what, hidden, responses, groups, expected, complete] :
         {AutofitCase{"PCA of two hidden variables", 2, 0, 7, 2}, AutofitCase{"PCA of noise", 0, 0, 7, 0},
          AutofitCase{"PLS of two hidden variables", 2, 2, 7, 2}, AutofitCase{"PLS of noise", 0, 1, 7, 0},
          AutofitCase{"without rounds", 2, 0, 0, 2}, AutofitCase{"PLS with missing cells", 2, 2, 7, 2, false}}) {
        auto const columns = 10 + responses;
        RowMatrix cells = Random(60, hidden, 21) * Random(hidden, columns, 22) * 3 + 0.3 * Random(60, columns, 23);
        if (!complete)
            cells(3, 1) = cells(7, 2) = cells(8, 11) = nan;
        Fitted const open(cells, Define(cells, responses, ModelDefinition::autofit, groups));
        EXPECT_EQ(open.model.components.Predictive(), expected) << what;
        Fitted const fixed(cells, Define(cells, responses, static_cast<int>(expected), groups));
        EXPECT_LE(Difference(open.model.scores.t, fixed.model.scores.t), 1e-9) << what;
        EXPECT_LE(Difference(open.model.components.wStar, fixed.model.components.wStar), 1e-9) << what;
        EXPECT_EQ(open.model.crossValidation.has_value(), groups > 0) << what;
        if (open.model.crossValidation) {
            EXPECT_LE(Difference(open.model.crossValidation->press, fixed.model.crossValidation->press), 1e-7) << what;
        }
    }
}

TEST(Fit, IsCancelled) {
    auto const cells = MakeData({30, 6, 1, 3, 0});
    auto const definition = Define(cells, 1, 3, 7);
    auto const workset = Workset::Build(definition, MatrixSource(cells));
    int calls = 0;
    Progress const progress([&](double) {
        ++calls;
        return false;
    });
    EXPECT_THROW(Fit(definition, workset, progress), Cancelled);
    EXPECT_EQ(calls, 1);
}

TEST(Fit, SkipsEmptyGroups) {
    auto const cells = MakeData({9, 4, 1, 2, 0});
    auto definition = Define(cells, 1, 1);
    definition.givenGroups = {5, 5, 5, 2, 2, 2, 9, 9, 9};
    Fitted const fitted(cells, definition);
    EXPECT_EQ(fitted.model.crossValidation->roundOfRow, (std::vector{1, 1, 1, 0, 0, 0, 2, 2, 2}));
    EXPECT_EQ(fitted.model.crossValidation->rounds.size(), 3u);
    definition.givenGroups.pop_back();
    EXPECT_THROW(Fit(definition, fitted.workset), NCError);
    definition.givenGroups.assign(9, 1);
    EXPECT_FALSE(Fit(definition, fitted.workset).crossValidation);
}

} // namespace
} // namespace engine
