#include "platform/project/PLSTrees.h"
#include "tests/support/RecordingProject.h"

#include <gtest/gtest.h>

namespace {

using Row = std::vector<float>;

constexpr float none = -99.0f;

NCDataMatrix<float> Rows(std::vector<Row> const &rows) {
    NCDataMatrix<float> matrix;
    for (Row const &row : rows)
        matrix.AppendRow(row);
    return matrix;
}

NCDataMatrix<float> WeightsOf(std::vector<Row> const &in, PLSTreeProperties const &properties, int mode) {
    NCDataMatrix<float> out;
    PLSTrees(*MakeRecordingProject(), properties).GetAllCutWeights(Rows(in), out, mode);
    return out;
}

void ExpectRow(std::span<float const> found, Row const &expected, std::string const &what) {
    ASSERT_EQ(found.size(), expected.size()) << what;
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(found[i], expected[i], 1e-5) << what << " at " << i;
}

} // namespace

// Of scores that are in order; and with the observations in another.
TEST(PLSTrees, WorkedFigures) {
    Row const t = {-1.880693f, -1.245060f, -0.191595f, 0.360472f, 1.244187f, 1.712688f};
    Row const y = {-1.282004f, -0.913209f, -0.122932f, 0.087808f, 1.036140f, 1.194195f};
    Row const expected[] = {{0.549697f, 0.224444f, 0.198705f, 0.245377f, 0.597172f, none},
                            {0.444444f, 0.111111f, 0, 0.111111f, 0.444444f, none},
                            {0.564011f, 0.247288f, 0.246386f, 0.326426f, 0.638427f, none},
                            {0.605551f, 0.277156f, 0.283494f, 0.253840f, 0.657735f, none}};
    std::size_t const order[] = {3, 0, 5, 1, 4, 2};
    std::vector<Row> shuffled(2, Row(6));
    for (std::size_t i = 0; i < 6; ++i) {
        shuffled[0][i] = t[order[i]];
        shuffled[1][i] = y[order[i]];
    }
    NCDataMatrix<float> const inOrder = WeightsOf(shuffled, {}, PLSTrees::InOrder);
    NCDataMatrix<float> const sorted = WeightsOf(shuffled, {}, PLSTrees::SortedByScore);
    for (int row = 1; row <= 4; ++row) {
        Row const &of = expected[row - 1];
        ExpectRow(sorted.Row(row), of, "sorted");
        Row moved(6);
        for (std::size_t i = 0; i < 6; ++i)
            moved[i] = of[order[i]];
        ExpectRow(inOrder.Row(row), moved, "in order");
    }
    auto const cut = PLSTrees(*MakeRecordingProject(), {}).FindCut(Rows(shuffled));
    ASSERT_TRUE(cut);
    EXPECT_EQ(cut->below, 3);
    EXPECT_EQ(cut->order, (std::vector{2, 4, 6, 1, 5, 3}));
    EXPECT_NEAR(cut->weight, 0.198705, 1e-5);
    EXPECT_NEAR(cut->score, (0.360472 - 0.191595) / 2, 1e-6);
}

// By hand: sums of squares of t 1, 2, 3, 5 are 0, 0.5, 2 from below, 0, 2, 14/3 from above, 8.75 of all.
TEST(PLSTrees, SharesMissingValuesAndSmallestPart) {
    struct {
        char const *what;
        std::vector<Row> in;
        PLSTreeProperties properties;
        int mode;
        Row cut;
    } const cases[] = {
        {"score alone", {{1, 2, 3, 5}, {4, 4, 5, 5}}, {1, 0, 1}, 2, {0.533333f, 0.285714f, 0.228571f, none}},
        {"response alone", {{1, 2, 3, 5}, {4, 4, 5, 5}}, {0, 0, 1}, 2, {0.666667f, 0, 0.666667f, none}},
        {"balance alone", {{1, 2, 3, 5}, {4, 4, 5, 5}}, {0, 1, 1}, 2, {0.25f, 0, 0.25f, none}},
        {"parts of two", {{1, 2, 3, 5}, {4, 4, 5, 5}}, {1, 0, 2}, 2, {none, 0.285714f, none, none}},
        {"any parts", {{1, 2, 3, 5}, {4, 4, 5, 5}}, {1, 0, 2}, 0, {0.533333f, 0.285714f, 0.228571f, none}},
        {"parts too small", {{1, 2, 3, 5}, {4, 4, 5, 5}}, {1, 0, 3}, 2, {none, none, none, none}},
        {"missing t",
         {{5, none, 1, 3, 2}, {5, 9, 4, 5, 4}},
         {1, 0, 1},
         1,
         {none, none, 0.533333f, 0.228571f, 0.285714f}},
        {"missing y", {{1, 2, 3, 5}, {4, none, 5, 5}}, {0, 0, 1}, 2, {0, 0, 0.75f, none}},
        {"constant y beside another",
         {{1, 2, 3, 5}, {7, 7, 7, 7}, {4, 4, 5, 5}},
         {0, 0, 1},
         2,
         {0.666667f, 0, 0.666667f, none}},
        {"constant y", {{1, 2, 3, 5}, {7, 7, 7, 7}}, {0, 0, 1}, 2, {none, none, none, none}},
        {"one observation", {{1}, {2}}, {}, 2, {none}}};
    for (auto const &c : cases)
        ExpectRow(WeightsOf(c.in, c.properties, c.mode).Row(PLSTrees::Cut), c.cut, c.what);
    EXPECT_FALSE(PLSTrees(*MakeRecordingProject(), {}).FindCut(Rows({{1}, {2}})));
    EXPECT_FALSE(PLSTrees(*MakeRecordingProject(), {}).FindCut({}));
    for (auto const &[observations, least] : {std::pair(3, 1), {8, 2}, {19, 4}, {20, 5}, {1000, 5}})
        EXPECT_EQ(PLSTreeProperties::LeastPart(observations), least);
}
