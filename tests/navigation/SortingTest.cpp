#include "navigation/DataSeriesSorting.h"
#include "navigation/ObsMaturityConverter.h"
#include "platform/text/Exception.h"
#include "tests/contribution/Plant.h"

#include <numeric>

namespace {

using Selection = SelectDataSeriesData;
using Keys = std::vector<Selection::SortInfo>;

constexpr float missing = -99.0f;

// Three series.
Selection Sorted(Plant const &plant, Keys const &keys) {
    ProjectVectorData const t = plant.Series("t", 1, 1);
    Selection selection = plant.Selection({t, t, t});
    DataSeriesUtilities::SetSortInformation(&selection, keys);
    return selection;
}

TEST(Sorting, OrdersColumns) {
    Plant plant;
    NCStringVector labels;
    for (char const *const label : {"Batch 10", "batch 9", "x3", "a\xC3\xA9z", "b\xC3\xA9y"})
        labels.push_back(label);
    NCDataMatrix<float> matrix;
    matrix.AppendRow(std::vector{2.0f, missing, -3.0f, 1.0f, 2.0f});
    matrix.AppendRow(std::vector{5.0f, missing, 5.0f, 5.0000001f, 4.0f});
    ProjectData table(RowIDs(NCStringVector{"one", "two"}, plant.project),
                      ColumnIDs(std::move(labels), "columns", plant.project, ColumnIDs::Strings, 0), std::move(matrix));
    table.SetColumnClasses({3, 1, 2, 1, 0});
    // Columns of equal keys stay as they were.
    struct {
        Keys keys;
        std::vector<int> expected;
    } const cases[] = {{{}, {1, 2, 3, 4, 5}},
                       {{{1, 0, 1}}, {3, 4, 1, 5, 2}},
                       {{{2, 0, 1}}, {1, 5, 4, 3, 2}},
                       {{{1, 1, 1}}, {4, 1, 5, 3, 2}},
                       {{{2, 1, 1}}, {3, 1, 5, 4, 2}},
                       {{{1, 0, 2}, {2, 0, 1}}, {5, 1, 4, 3, 2}},
                       {{{1, 2, 1}}, {4, 2, 1, 5, 3}},
                       {{{2, 2, 1}}, {3, 5, 1, 2, 4}},
                       {{{1, 2, 1, 1, 1}, {1, 2, 1, 0, 1}}, {3, 1, 2, 4, 5}}, // the second character, then the first
                       {{{1, 2, 1, 2, -1}}, {3, 2, 1, 5, 4}},                 // from the third one on
                       {{{1, 3, 0}, {1, 0, 1}}, {5, 4, 2, 3, 1}},
                       {{{2, 3, 0}}, {1, 3, 2, 4, 5}},
                       {{{1, 0, 3}}, {1, 2, 3, 4, 5}}, // a row that the table lacks
                       {{{1, 0, 4}, {2, 3, 0}}, {1, 3, 2, 4, 5}},
                       {{{1, 9, 1}}, {1, 2, 3, 4, 5}}};
    for (auto const &row : cases) {
        Selection const selection = Sorted(plant, row.keys);
        DataSeriesUtilities::DataSeriesSortingCompare const order(&selection);
        std::vector<int> columns(5);
        std::iota(columns.begin(), columns.end(), 1);
        std::ranges::stable_sort(columns, [&](int a, int b) { return order.Compare(&table, a, b); });
        EXPECT_EQ(columns, row.expected) << &row - cases;
    }
}

TEST(Sorting, IsCarriedOver) {
    Plant const plant;
    Selection const from = Sorted(plant, {{1, 0, 3}, {1, 1, 4}, {2, 2, 9, 1, 2}, {1, 3, 4}});
    Selection to = Sorted(plant, {{1, 0, 1}});
    DataSeriesUtilities::CopySorting(&from, &to);
    Keys keys{{2, 0, 2}};
    DataSeriesUtilities::GetSortInformation(&to, keys);
    EXPECT_EQ(keys, (Keys{{2, 0, 2}, {1, 0, 3}, {2, 2, 9, 1, 2}, {1, 3, 4}}));
}

TEST(Maturity, IsFoundByObservation) {
    Plant plant;
    struct {
        bool predicted;
        int model;
        unsigned long observation;
        char const *batch;
        float maturity;
    } const cases[] = {{false, 5, 5, "B", 10.5f}, {false, 5, 3, "A", 10}, {false, 5, 8, "C", 0},
                       {false, 5, 0, "", 0},      {true, 5, 8, "C", 1},   {true, 5, 2, "A", 3},
                       {true, 5, 3, "A", 0},      {true, 1, 8, "C", 0},   {false, 1, 5, "B", 0}};
    DataSeriesUtilities::ObsMaturityConverter const own(*plant.project, false), predicted(*plant.project, true);
    for (auto const &row : cases)
        EXPECT_EQ((row.predicted ? predicted : own).GetMaturityValue(row.model, row.observation),
                  std::pair(std::string(row.batch), row.maturity))
            << row.predicted << ' ' << row.model << ' ' << row.observation;
    EXPECT_THROW(own.GetMaturityValue(9, 1), NCError);
}

} // namespace
