#include "navigation/DataSeriesChecker.h"
#include "tests/contribution/Plant.h"
#include "tests/support/ProbeVector.h"

namespace {

using Checker = DataSeriesUtilities::DataSeriesChecker;
using DataSeriesUtilities::ContributionModeEnum;
using Selection = SelectDataSeriesData;
using namespace probes;

std::string TextOf(Checker::VectorTypeStruct const &type) {
    return std::to_string(type.SeriesKind) + " " + std::to_string(type.ComponentMask) + (type.IsBatchData ? " b" : "");
}

// The kind after each of some vectors, which are folded in one after the other.
TEST(SeriesKind, FoldsSpecifications) {
    Plant const plant;
    struct {
        std::vector<char const *> vectors;
        char const *expected;
        int model = 3;
    } const cases[] = {
        {{}, "0 0"},
        {{"t"}, "2 1 b"},
        {{"t", "t"}, "2 1 b"},
        {{"t", "to"}, "1 1 b"},
        {{"XVar"}, "3 0 b"},
        {{"XVar", "YVar"}, "3 0 b"},
        {{"YVar", "XVar"}, "1 0 b"},
        {{"YVar"}, "6 0 b"},
        {{"YPred"}, "6 1 b", 1},
        {{"YPred"}, "6 0 b"}, // of the whole model
        {{"DModX"}, "2 1 b", 1},
        {{"DModX"}, "0 0 b"},
        {{"t", "DModX"}, "2 1 b"},
        {{"XVar", "t"}, "1 0 b"},
        {{"p"}, "2 1"},
        {{"ContSc"}, "0 0"},
    };
    for (auto const &row : cases) {
        Checker::VectorTypeStruct type;
        for (char const *vector : row.vectors)
            Checker(Checker::CheckSeries).GetProjectDataType(plant.project, plant.Series(vector, row.model), type);
        EXPECT_EQ(TextOf(type), row.expected) << (row.vectors.empty() ? "none" : row.vectors.front());
    }
    struct {
        std::vector<VectorTraits> vectors;
        char const *expected;
    } const probed[] = {
        {{{"", Scores, ObsOrVar}}, "4 0"},
        {{{"", Loadings, ObsOrVar}}, "5 0"},
        {{{"", Loadings, ObsOrVar}, {"", Scores, ObsOrVar}}, "1 0"},
        {{{"", Lag, ObsOrVar}}, "1 0"},
        {{{"", Aligned, BatchX}, {"", Aligned, BatchY}}, "3 0 b"},
        {{{"", Aligned, BatchY}}, "6 0 b"},
        {{{"", Aligned, BatchX}, {"", Aligned, Y}}, "1 0 b"},
        {{{"", Lag, XY}}, "3 0"},
        {{{"", Lag, NoNumber, 8}}, "2 8"},
        {{{"", Lag, X, 8}}, "1 8"},
        {{{"", Lag, NoNumber, 3}}, "0 3"},
        {{{"", Lag, NoNumber, 3}, {"", Lag, NoNumber, 4}}, "2 4"},
        {{{"", Lag, NoNumber, 4}, {"", Lag, NoNumber, 1}}, "1 4"},
    };
    for (auto const &row : probed) {
        Checker::VectorTypeStruct type;
        for (VectorTraits const &traits : row.vectors) {
            VectorProbe const probe(traits);
            ProjectVectorData data;
            data.SetProjectVector(&probe);
            Checker(Checker::CheckAll).GetProjectDataType(plant.project, data, type);
        }
        EXPECT_EQ(TextOf(type), row.expected) << &row - probed;
    }
    ProjectVectorData byResponse = plant.Series("ContSc", 1);
    byResponse.SetWeightType(ContributionWeightEnum::CoeffCS);
    Checker::VectorTypeStruct type{Checker::KindMixed, 0, false};
    Checker(Checker::CheckSeries).GetProjectDataType(plant.project, byResponse, type);
    EXPECT_EQ(TextOf(type), "6 0");

    Selection selection = plant.Selection({plant.Series("t", 1, 2)}, Selection::AxisXY);
    selection.SetXAxis(plant.Series("XVar", 1));
    selection.SetYAxis(plant.Series("YVar", 1));
    for (auto const &[parts, expected] : {std::pair(1, "3 0 b"), {2, "6 0 b"}, {4, "2 1 b"}, {5, "1 0 b"}}) {
        Checker(static_cast<Checker::CheckType>(parts)).GetDataSeriesType(&selection, type);
        EXPECT_EQ(TextOf(type), expected) << parts;
    }
    selection.SetMode(Selection::AxisY);
    Checker(Checker::CheckXAxis).GetDataSeriesType(&selection, type);
    EXPECT_EQ(TextOf(type), "0 0 b");
}

TEST(SeriesKind, ReadsContributionsOfSelections) {
    Plant const plant;
    Selection selection = plant.Selection({plant.Series("ContSc", 1)}, Selection::AxisX);
    selection.SetXAxis(plant.Series("ContDModX", 1));
    EXPECT_EQ(ContributionModeEnum::GetContributionMode(&selection), ContributionModeEnum::DModX);
    selection.SetMode(Selection::Normal);
    EXPECT_EQ(ContributionModeEnum::GetContributionMode(&selection), ContributionModeEnum::Score);
    selection = plant.Selection({plant.Series("p", 1)});
    EXPECT_EQ(ContributionModeEnum::GetContributionMode(&selection), ContributionModeEnum::None);

    // A plot of p starts nothing by itself, but by its X axis.
    selection.SetMode(Selection::AxisX);
    selection.SetXAxis(plant.Series("YPred", 1, 2));
    int model = 0, component = 0, number = 0;
    EXPECT_EQ(ContributionModeEnum::GetContributionType(&selection, model, component, number),
              ContributionModeEnum::YPred);
    EXPECT_EQ((std::vector{model, component, number}), (std::vector{1, 2, -1}));

    ProjectVectorData range = plant.Series("T2Range", 1);
    range.SetNumber(1);
    struct {
        std::vector<ProjectVectorData> series;
        std::vector<int> components, weights;
    } cases[] = {
        {{plant.Series("t", 1, 2), plant.Series("t", 1, 1), plant.Series("t", 1, 2)}, {2, 1}, {2, 2}},
        {{plant.Series("to", 3, 2), plant.Series("t", 3, 1)}, {1, 2}, {1, 9}},
        {{plant.Series("t", 2, 1)}, {1}, {1}},
        {{range}, {1, 2, 3}, {2, 2, 2}},
        {{plant.Series("T2Range", 1)}, {3}, {2}}, // from the last one to itself
        {{plant.Series("u", 1, 1), plant.Series("p", 1, 1)}, {}, {}},
        {{plant.Series("DModX", 1, 1)}, {}, {}},
    };
    for (auto &row : cases) {
        std::vector<int> components;
        WeightTypes weights;
        Selection const shown = plant.Selection(row.series);
        DataSeriesUtilities::CountWeightsAndComponents(&shown, components, weights);
        EXPECT_EQ(components, row.components) << row.series.front().GetProjectVector()->GetName();
        EXPECT_EQ(std::vector<int>(weights.begin(), weights.end()), row.weights)
            << row.series.front().GetProjectVector()->GetName();
    }
    range.SetNumber(3);
    range.SetNumberID2(2);
    std::vector<int> components{2};
    DataSeriesUtilities::AddPredictiveComponents(range, components);
    EXPECT_EQ(components, (std::vector{2, 3}));
}

} // namespace
