#include "platform/numerics/ControlChartData.h"
#include "platform/numerics/FrequencyHistogram.h"
#include "platform/numerics/RunRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using testing::FloatNear;
using testing::Pointwise;
using Floats = std::vector<float>;

constexpr float none = -99.0f;
NCDataVector<float> const row{10, 12, 11, 13, 9, 14, 15, 13, 16, 12};

ControlChart Chart(int type, int size, double lambda = -99, NCDataVector<float> const &values = row,
                   ControlChart::EWMAType ewma = ControlChart::Filtered) {
    ControlChart chart(static_cast<ControlChart::ControlType>(type), values, size, ewma);
    chart.SetEWMALambda(lambda);
    return chart;
}

} // namespace

// Montgomery (2009), factors for constructing variables control charts.
TEST(ControlChart, HasTheConstantsOfItsTables) {
    struct {
        int n;
        double d2, d3, c4, lowerRange, upperRange, lowerSpread, upperSpread;
    } const cases[] = {{2, 1.1284, 0.8525, 0.7979, 0, 3.2665, 0, 3.2665},
                       {5, 2.3259, 0.8641, 0.9400, 0, 2.1145, 0, 2.0890},
                       {7, 2.7044, 0.8332, 0.9594, 0.0757, 1.9243, 0.1177, 1.8823},
                       {10, 3.0775, 0.7971, 0.9727, 0.2230, 1.7770, 0.2837, 1.7163},
                       {25, 3.9306, 0.7084, 0.9896, 0.4593, 1.5407, 0.5648, 1.4352}};
    for (auto const &c : cases) {
        auto const found = ControlChart::Constants::Of(c.n);
        double const values[] = {found.d2, found.d3, found.c4, found.D3(), found.D4(), found.B3(), found.B4()};
        EXPECT_THAT(values, Pointwise(testing::DoubleNear(6e-5),
                                      {c.d2, c.d3, c.c4, c.lowerRange, c.upperRange, c.lowerSpread, c.upperSpread}))
            << c.n;
    }
}

TEST(ControlChart, ChartsSubgroups) {
    NCDataVector<float> const holes{1, none, 3, none, none, none, 2, 4, 9, 5};
    struct {
        ControlChart chart;
        Floats mean, range;
        double target, deviation;
    } const cases[] = {{Chart(1, 2), {11, 12, 11.5f, 14, 14}, {2, 2, 5, 2, 4}, 12.5, 2.658681},
                       {Chart(2, 2), {11, 12, 11.5f, 14, 14}, {2, 2, 5, 2, 4}, 12.5, 2.658681},
                       {Chart(1, 3), {11, 12, 14.6667f}, {2, 5, 3}, 12.555556, 3.3333333 / 1.6925688},
                       {Chart(2, 3), {11, 12, 14.6667f}, {2, 5, 3}, 12.555556, 1.724425 / 0.8862269},
                       {Chart(0, 1), Floats(row.begin(), row.end()), {none, 2, 1, 2, 4, 5, 1, 2, 3, 4}, 12.5, 2.363272},
                       {Chart(1, 3, -99, holes), {2, none, 5}, {2, none, 7}, 3.5, 4.5 / 1.6925688},
                       {Chart(2, 2, -99, {1, none, none, none}), {1, none}, {none, none}, 1, none},
                       {Chart(0, 1, -99, {none, none}), {none, none}, {none, none}, none, none},
                       {Chart(1, 11), {}, {}, none, none}};
    for (auto const &c : cases) {
        SCOPED_TRACE(&c - cases);
        EXPECT_THAT(c.chart.GetMeanVector(), Pointwise(FloatNear(1e-4f), c.mean));
        EXPECT_THAT(c.chart.GetRangeVector(), Pointwise(FloatNear(1e-4f), c.range));
        EXPECT_NEAR(c.chart.GetTarget(), c.target, 1e-5);
        EXPECT_NEAR(c.chart.GetStdDevSubgroup(), c.deviation, 1e-5);
    }
    EXPECT_NEAR(Chart(1, 2).GetMeanLimits().upper, 18.139914, 1e-5);
    EXPECT_NEAR(Chart(1, 2).GetMeanLimits(2).lower, 12.5 - 2.0 / 3 * 5.639914, 1e-5);
    EXPECT_NEAR(Chart(1, 2).GetRangeLimits().upper, 3 * 3.2665, 1e-3);
    EXPECT_NEAR(Chart(0, 1).GetStdDevLimits().upper, 2.363272 * 3.2665, 1e-3);
}

TEST(ControlChart, AveragesAndSums) {
    NCDataVector<float> const holes{10, none, 12, 20};
    struct {
        char const *name;
        NCDataVector<float> found;
        Floats expected;
    } const cases[] = {
        {"EWMA",
         Chart(4, 1, 0.3).GetEWMA(),
         {11.75f, 11.825f, 11.5775f, 12.00425f, 11.102975f, 11.972082f, 12.880458f, 12.916320f, 13.841424f,
          13.288997f}},
        {"forecast",
         Chart(4, 2, 0.5, row, ControlChart::Predictive).GetEWMA(),
         {12.5f, 11.75f, 11.875f, 11.6875f, 12.84375f}},
        {"EWMA over a gap", Chart(4, 1, 0.5, holes).GetEWMA(), {12, none, 12, 16}},
        {"widths", Chart(4, 5, 0.3).GetEWMAHalfWidths(), {0.677027f, 0.826417f}},
        {"widths of single values",
         Chart(4, 1, 0.3, {10, 12, 14}).GetEWMAHalfWidths(),
         {1.595209f, 1.947200f, 2.098225f}},
        {"widths of forecasts",
         Chart(4, 1, 0.3, {10, 12, 14}, ControlChart::Predictive).GetEWMAHalfWidths(),
         {0, 1.595209f, 1.947200f}},
        {"high", Chart(3, 1).GetHighCuSum(), {0, 0, 0, 0, 0, 0.318364f, 1.636728f, 0.955092f, 3.273456f, 1.591820f}},
        {"low", Chart(3, 1).GetLowCuSum(), {1.318364f, 0.636728f, 0.955092f, 0, 2.318364f, 0, 0, 0, 0, 0}},
        {"low over a gap", Chart(3, 1, -99, holes).GetLowCuSum(), {0.455092f, none, 0, 0}},
        {"deviation", Chart(3, 1, -99, holes).GetDevFromTarget(), {-4, none, -2, 6}},
        {"no deviation known", Chart(3, 1, -99, {5}).GetHighCuSum(), {none}}};
    for (auto const &c : cases)
        EXPECT_THAT(c.found, Pointwise(FloatNear(2e-5f), c.expected)) << c.name;
    EXPECT_NEAR(Chart(4, 1).GetEWMALambda(), 0.05, 1e-12);
    EXPECT_NEAR(Chart(4, 1, -99, {1, 2, 3, 4, 5, 6, 7, 8}).GetEWMALambda(), 1, 1e-12);
    EXPECT_NEAR(Chart(3, 1).GetCuSumInterval(), 5 * 2.363272, 1e-5);
}

TEST(ControlChart, TakesLimitsFromAnotherChart) {
    ControlChart chart = Chart(1, 2, -99, {1, 2, 3, 5});
    chart.ImportLimits(Chart(1, 2, 0.3));
    EXPECT_THAT(chart.GetMeanVector(), ElementsAre(1.5f, 4.0f));
    EXPECT_NEAR(chart.GetMeanLimits().lower, 12.5 - 5.639914, 1e-5);
    EXPECT_NEAR(chart.GetRangeLimits().centre, 3, 1e-6);
    EXPECT_THAT(chart.GetEWMA(), ElementsAre(FloatNear(9.2f, 1e-5f), FloatNear(7.64f, 1e-5f)));

    ControlChartData data;
    EXPECT_FALSE(data.CreateControlChart(row));
    data.SetControlChartType(ControlChartData::CUSUM);
    data.SetTarget(11);
    data.SetStdDev(2);
    data.SetAllowance(1);
    data.SetDecisionInterval(4);
    data.SetSubgroupSize(4);
    auto const made = data.CreateControlChart(row);
    ASSERT_TRUE(made);
    EXPECT_EQ(made->GetControlType(), ControlChart::CUSUM);
    EXPECT_THAT(made->GetHighCuSum(), ElementsAre(0.0f, 0.75f));
    EXPECT_EQ(made->GetCuSumInterval(), 4);
    data.SetSubgroupSize(11);
    EXPECT_FALSE(data.CreateControlChart(row));
}

TEST(ControlChart, TellsRunsOfPoints) {
    struct {
        Floats points;
        std::vector<int> rules;
    } const cases[] = {{{3.1f, -3.1f, 3, 0}, {1, 1, 2, 0}},
                       {{2.1f, 0, 2.1f, 0, 0, 2.1f}, {0, 0, 2, 0, 0, 0}},
                       {{2.1f, -2.1f, 0, -2.1f}, {0, 0, 0, 2}},
                       {{1.1f, 1.1f, 0, 1.1f, 1.1f, 0.5f}, {0, 0, 0, 0, 3, 0}},
                       {{-1, -1, -1, -1, -1, -1, -1, -1, -1, 1}, {0, 0, 0, 0, 0, 0, 0, 4, 4, 0}},
                       {{1, 1, 1, none, 1, 1, 1, 1, 1}, {0, 0, 0, 0, 0, 0, 0, 0, 0}},
                       {{none, none}, {0, 0}}};
    for (auto const &c : cases)
        EXPECT_EQ(RunRules(c.points, 0, 1), c.rules) << testing::PrintToString(c.points);
    EXPECT_EQ(RunRules(cases[0].points, 0, 0), std::vector<int>(4));
}

TEST(FrequencyHistogram, CountsAndStacks) {
    struct {
        NCDataVector<float> values;
        Floats positions, heights;
        std::vector<int> first; // columns in the first bin
        Floats places, stack;
        float lo, hi;
    } const cases[] = {{row,
                        {9.7f, 11.1f, 12.5f, 13.9f, 15.3f},
                        {2, 1, 4, 1, 2},
                        {1, 5},
                        {9.5f, 11.5f, 11.5f, 13.5f, 9.5f, 13.5f, 15.5f, 13.5f, 15.5f, 11.5f},
                        {2, 2, 1, 1, 1, 3, 1, 2, 2, 3},
                        8.3f,
                        16.7f},
                       {{4, none, 4}, {3, 4, 5}, {0, 2, 0}, {}, {4, none, 4}, {1, none, 2}, 3.5f, 4.5f},
                       {{1, 3}, {1.333333f, 2, 2.666667f}, {1, 0, 1}, {1}, {1, 3}, {1, 1}, 0.666667f, 3.333333f},
                       {{none}, {}, {}, {}, {none}, {none}, none, none},
                       {{}, {}, {}, {}, {}, {}, none, none}};
    for (auto const &c : cases) {
        SCOPED_TRACE(&c - cases);
        FrequencyHistogram::HistogramInfo info;
        FrequencyHistogram::CreateHistogram(c.values, info);
        EXPECT_THAT(info.positions, Pointwise(FloatNear(1e-5f), c.positions));
        EXPECT_THAT(info.heights, testing::ElementsAreArray(c.heights));
        EXPECT_EQ(info.columns.empty() ? std::vector<int>() : info.columns.front(), c.first);
        NCDataVector<float> places, stack;
        float lo = 0, hi = 0;
        FrequencyHistogram::CreateDotPlotHistogram(c.values, places, stack, lo, hi);
        EXPECT_THAT(places, Pointwise(FloatNear(1e-5f), c.places));
        EXPECT_THAT(stack, testing::ElementsAreArray(c.stack));
        EXPECT_NEAR(lo, c.lo, 1e-5);
        EXPECT_NEAR(hi, c.hi, 1e-5);
    }
}
