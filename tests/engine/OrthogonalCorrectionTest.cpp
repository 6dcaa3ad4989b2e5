// Orthogonal signal correction: worked figures, and what holds for any data.

#include "engine/models/OrthogonalCorrection.h"
#include "engine/models/Extraction.h"
#include "platform/text/Exception.h"
#include "tests/engine/ModelBuilders.h"

#include <Eigen/QR>

namespace engine {
namespace {

// The difference beside how large they are.
double Relative(Matrix const &actual, Matrix const &expected) {
    return Difference(actual, expected) / std::max(expected.cwiseAbs().maxCoeff(), 1e-300);
}

} // namespace

TEST(OrthogonalCorrection, WorkedFigures) {
    RowMatrix const cells =
        Table({{1, 2, 1, 1.2}, {2, 1, 4, 1.9}, {3, 5, 2, 3.4}, {4, 3, 6, 3.8}, {5, 7, 3, 5.6}, {6, 4, 8, 5.9}});
    Workset const workset = Workset::Build(Define(cells, 1, 1), MatrixSource(cells));
    auto const [correction, left] = CorrectOrthogonally(workset.x, workset.y, 1);
    ExpectFigures({{"t", correction.t, {-0.406357, 0.784813, -0.999695, 0.786611, -1.273407, 1.108034}},
                   {"p", correction.p, {0.162113, -0.630464, 0.766980}},
                   {"w", correction.w, {0.084217, -0.690472, 0.718440}}},
                  1e-6);
}

// Random, wider than long, of rank 3 in X and with dependent responses, with missing cells.
TEST(OrthogonalCorrection, LeavesWhatGoesWithY) {
    struct {
        Index rows, columns;
        int responses;
        bool isOfRankThree;
        double missing;
        Index asked, found;
    } const cases[] = {{30, 8, 1, false, 0, 3, 3},   {20, 50, 2, false, 0, 4, 4}, {25, 10, 2, true, 0, 5, 1},
                       {30, 8, 2, false, 0.1, 2, 2}, {12, 2, 3, false, 0, 2, 0},  {10, 3, 1, false, 0, 9, 2}};
    for (auto const &c : cases) {
        SCOPED_TRACE(std::to_string(c.rows) + " x " + std::to_string(c.columns));
        RowMatrix cells = MakeData({c.rows, c.columns, c.responses, 1, c.missing});
        if (c.isOfRankThree)
            cells.leftCols(c.columns) = cells.leftCols(3) * Random(3, c.columns, 7);
        Workset const workset = Workset::Build(Define(cells, c.responses, 1), MatrixSource(cells));
        auto const [correction, left] = CorrectOrthogonally(workset.x, workset.y, c.asked);
        auto const &[w, p, wStar, t] = correction;
        ASSERT_EQ(correction.Size(), c.found);
        Matrix const x = left + t * p.transpose();
        Matrix const y = workset.y.Values();
        EXPECT_LE(Relative(left.transpose() * y, x.transpose() * y), 1e-6);
        if (c.found == 0)
            continue;
        EXPECT_LE((t.transpose() * y).cwiseAbs().maxCoeff(), 1e-6 * t.norm() * y.norm());
        EXPECT_LE(OffDiagonal(t.transpose() * t), 1e-6 * t.squaredNorm());
        EXPECT_LE(Relative(x * wStar, t), 1e-6);
        EXPECT_LE(Difference(w.colwise().norm(), Matrix::Ones(1, c.found)), 1e-9);
        for (Index b = 0; b < c.found; ++b) {
            EXPECT_GT(p(Lead(p.col(b)), b), 0);
            // Nothing else beside Y varies more.
            Matrix const s = x.transpose() * y;
            Vector direction = Random(c.columns, 1, 9).col(0);
            direction -= s * s.completeOrthogonalDecomposition().solve(direction);
            EXPECT_GE(t.col(0).norm(), (x * direction).norm() / direction.norm());
        }
        if (c.missing == 0) {
            EXPECT_LE(Relative(correction.Corrected(workset.x), left), 1e-6);
            EXPECT_LE(Relative(x, workset.x.Values()), 1e-9);
        }
    }
}

TEST(OrthogonalCorrection, CorrectsRowsWithMissingCells) {
    OrthogonalCorrection const correction = {Column({0.6, 0.8}), Column({1, 2}), Column({0.6, 0.8}), Matrix(1, 1)};
    RowMatrix const left = correction.Corrected(Block(Table({{5, 10}, {3, nan}, {nan, nan}})));
    // t = 11; t = 3 * 0.6 / 0.36
    EXPECT_LE(Difference(left.topLeftCorner(2, 1), Column({-6, -2})), 1e-12);
    EXPECT_NEAR(left(0, 1), -12, 1e-12);
    EXPECT_TRUE(std::isnan(left(1, 1)) && std::isnan(left(2, 0)) && std::isnan(left(2, 1)));
}

} // namespace engine
