#include "platform/containers/BoolVector.h"
#include "platform/containers/NCDataMatrix.h"
#include "platform/containers/NCStringVector.h"
#include "platform/text/Exception.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

using testing::ElementsAre;

namespace {

using Row = NCDataVector<float>;
using Matrix = NCDataMatrix<float>;
using Ids = NCIntegralVector<unsigned long, 0>;
using Ints = NCIntegralVector<int, -99>;

constexpr float none = -99.0f;

Matrix Table(std::initializer_list<Row> rows) {
    Matrix table;
    for (Row const &row : rows)
        table.AppendRow(row);
    return table;
}

// Writes through `write` into one of two that share, and expects that the other stays as it was.
template <typename Container, typename Write>
void ExpectWriteSeparates(Container const &original, Write write) {
    Container before(original);
    before.Unlink();
    EXPECT_FALSE(before.SharesStorageWith(original));
    Container copy(original);
    EXPECT_TRUE(copy.SharesStorageWith(original));
    write(copy);
    EXPECT_FALSE(copy.SharesStorageWith(original));
    EXPECT_TRUE(original == before);
    EXPECT_FALSE(copy == original);
}

} // namespace

TEST(Sharing, LastsUntilAWrite) {
    Row const row{1, 2, 3};
    ExpectWriteSeparates(row, [](Row &copy) { copy(2) = 7; });
    ExpectWriteSeparates(row, [](Row &copy) { copy.push_back(7); });
    ExpectWriteSeparates(row, [](Row &copy) { copy.resize(2); });
    ExpectWriteSeparates(row, [](Row &copy) { copy.SetAllValues(0); });
    ExpectWriteSeparates(row, [](Row &copy) { copy.Reduce({3, 1}); });
    ExpectWriteSeparates(row, [](Row &copy) { copy.resize(2), copy.push_back(9); });
    Ints const ints{1, 2, 3};
    ExpectWriteSeparates(ints, [](Ints &copy) { copy.RemoveValues(1, 1); });
    ExpectWriteSeparates(ints, [](Ints &copy) { copy.InsertValues(1, 2, 5); });
    ExpectWriteSeparates(ints, [](Ints &copy) { copy.SetRange(2, 3, 0); });
    ExpectWriteSeparates(Table({{1, 2}, {3, 4}}), [](Matrix &copy) { copy(1, 2) = 9; });
    ExpectWriteSeparates(Table({{1, 2}, {3, 4}}), [](Matrix &copy) { copy.InsertRow(1, copy.Row(2)); });
    ExpectWriteSeparates(Table({{1, 2}, {3, 4}}), [](Matrix &copy) { copy.AppendRows(copy); });
}

TEST(Sharing, SurvivesReads) {
    Row const row{1, 2, 3};
    Row const copy(row);
    Row taken(copy);
    Row const moved(std::move(taken));
    EXPECT_EQ(copy[1] + copy(2) + copy(3, 0) + copy.Values()[0], 7);
    EXPECT_TRUE(copy.SharesStorageWith(row) && moved.SharesStorageWith(row));
    EXPECT_TRUE(taken.empty());
    Matrix const table = Table({{1, 2}, {3, 4}});
    Matrix const other(table);
    EXPECT_EQ(other(2, 1, 0) + other.Row(1)[1] + other[2][1], 8);
    EXPECT_TRUE(other.SharesStorageWith(table));
}

TEST(Positions, CountFromOneAndAreChecked) {
    Row row{1, 2, 3};
    EXPECT_EQ(row(0, none), none);
    EXPECT_EQ(row(1, none), 1);
    EXPECT_EQ(row(3, none), 3);
    EXPECT_EQ(row(4, none), none);
    EXPECT_THROW(row[0], NCInternalError);
    EXPECT_THROW(row(4) = 1, NCInternalError);
    EXPECT_THROW(row.Reduce({1, 4}), NCInternalError);
    EXPECT_THROW(Row(-1), NCInternalError);
    EXPECT_THROW(row + Row(2), NCInternalError);
    Matrix table = Table({{1, 2, 3}, {4, 5, 6}});
    EXPECT_EQ(table(2, 3, none), 6);
    EXPECT_EQ(table(3, 1, none), none);
    EXPECT_EQ(table(1, 4, none), none);
    EXPECT_THROW(table(1, 4) = 0, NCInternalError);
    EXPECT_THROW(table.Row(0), NCInternalError);
    EXPECT_THROW(table.AppendRow(Row{1, 2}), NCInternalError);
    EXPECT_THROW(table.GetColumnMean(4), NCInternalError);
    Ints ints{1, 2, 3};
    EXPECT_THROW(ints.RemoveValues(2, 3), NCInternalError);
    EXPECT_THROW(ints.InsertValues(5, 1, 0), NCInternalError);
    EXPECT_THROW(ints.SetRange(2, 4, 0), NCInternalError);
    EXPECT_EQ(NCStringVector({"a"})(2, "b"), "b");
    EXPECT_THROW(NCStringVector(1)[2], NCInternalError);
}

TEST(Statistics, SkipMissing) {
    struct {
        Row row;
        double mean, ss, aboutOne;
    } const cases[] = {{{1, 2, 3, 6}, 3, 14, 30},
                       {{none, 2, none, 4}, 3, 2, 10},
                       {{none, none}, none, none, none},
                       {{}, none, none, none},
                       {{5}, 5, 0, 16},
                       {{-98, -100}, std::nextafterf(none, 0), 2, 20002},
                       {{1e8f, 1, -1e8f}, 1 / 3.0, 2e16 + 2 / 3.0, 2e16}};
    for (auto const &c : cases) {
        EXPECT_DOUBLE_EQ(c.row.GetMean(), c.mean);
        EXPECT_DOUBLE_EQ(c.row.GetSS(), c.ss);
        EXPECT_DOUBLE_EQ(c.row.GetSS(1.0L), c.aboutOne);
        Matrix table = Table({c.row});
        EXPECT_DOUBLE_EQ(table.Transpose().Columns() > 0 ? table.Transpose().GetColumnMean(1) : none, c.mean);
    }
    Matrix const table = Table({{1, none, 4, none}, {3, 7, none, none}, {8, none, none, none}, Row(4)});
    struct {
        int at;
        float minimum, maximum;
        double deviation;
    } const bounds[] = {{1, 1, 4, std::sqrt(13.0)}, {2, 3, 7, none}, {3, 8, 8, none}, {4, none, none, none}};
    for (auto const &c : bounds) {
        float minimum = 0, maximum = 0;
        table.GetRowMinMax(c.at, minimum, maximum);
        EXPECT_EQ(minimum, c.minimum);
        EXPECT_EQ(maximum, c.maximum);
        EXPECT_DOUBLE_EQ(table.GetColumnStdDev(c.at, 4), c.deviation);
    }
    EXPECT_THAT(Row({1, none, 3}) + Row({1, 1, none}), ElementsAre(2, none, none));
    EXPECT_THAT(Row({1, none, 3e38f, -49.5f}) * 2, ElementsAre(2, none, none, std::nextafterf(none, 0)));
}

TEST(NCDataVector, SortsPositionsWithMissingLast) {
    Row const row{3, none, 1, 3, 2, -100};
    Ints order;
    row.Sort(order);
    EXPECT_THAT(order, ElementsAre(6, 3, 5, 1, 4, 2));
    row.Sort(order, false);
    EXPECT_THAT(order, ElementsAre(1, 4, 5, 3, 6, 2));
}

TEST(NCIntegralVector, FindsInEachOrder) {
    constexpr auto up = SortKind::Ascending, down = SortKind::Descending, any = SortKind::Unsorted;
    struct {
        Ints list;
        int value;
        SortKind::Kind kind;
        int from, to, expected;
    } const cases[] = {{{5, 3, 9, 3}, 3, any, 1, -1, 2},  {{5, 3, 9, 3}, 3, any, 3, -1, 4},
                       {{5, 3, 9, 3}, 9, any, 1, 2, -1},  {{1, 3, 3, 8}, 3, up, 1, -1, 2},
                       {{1, 3, 3, 8}, 3, up, 3, 99, 3},   {{1, 3, 3, 8}, 4, up, 1, -1, -1},
                       {{8, 3, 3, 1}, 3, down, 1, -1, 2}, {{8, 3, 3, 1}, 9, down, 1, -1, -1},
                       {{8, 3, 3, 1}, 1, down, 1, 3, -1}, {{}, 1, up, 1, -1, -1},
                       {{1}, 1, any, 2, -1, -1},          {{1}, 1, any, -5, 1, 1},
                       {{1, 2, 3}, 1, any, 3, 1, -1},     {{1, 2}, 5, up, 1, -1, -1}};
    for (auto const &c : cases)
        EXPECT_EQ(c.list.Find(c.value, c.kind, c.from, c.to), c.expected) << c.value << " from " << c.from;
    EXPECT_EQ(Ints({1, 3, 3, 8}).LowerBound(3), 2);
    EXPECT_EQ(Ints({1, 3, 3, 8}).LowerBound(9), 5);
    EXPECT_EQ(Ints({8, 3, 1}).LowerBound(2, false), 3);
    EXPECT_EQ(Ids({4, 0xffffffff}).Find(0xffffffff), 2);
    EXPECT_EQ(BoolVector(3, true).Find(false), -1);
}

TEST(NCIntegralVector, InsertsRemovesAndReduces) {
    Ints list{1, 2, 3};
    list.InsertValues(1, 2, 9);
    list.InsertValues(6, 1, 8);
    EXPECT_THAT(list, ElementsAre(9, 9, 1, 2, 3, 8));
    list.RemoveValues(2, 3);
    EXPECT_THAT(list, ElementsAre(9, 3, 8));
    list.Reduce({3, 1, 3});
    EXPECT_THAT(list, ElementsAre(8, 9, 8));
    list.SetSize(4);
    EXPECT_THAT(list, ElementsAre(8, 9, 8, -99));
    BoolVector flags(5);
    flags.SetRange(2, 4, true);
    flags.SetNumValues(4, 2, false);
    flags.SetRange(1, 0, true);
    EXPECT_THAT(flags, ElementsAre(false, true, true, false, false));
    for (int i = 1; i <= 1000; ++i)
        list.push_back(i);
    EXPECT_EQ(list[1004], 1000);
}

TEST(NCDataMatrix, KeepsRowsContiguous) {
    Matrix table(2, 3, 5);
    table.SetRow(1, Row{1, 2, 3});
    table.InsertRow(1, table.Row(2));
    table.AppendRows(table);
    EXPECT_THAT(table.Values(), ElementsAre(5, 5, 5, 1, 2, 3, 5, 5, 5, 5, 5, 5, 1, 2, 3, 5, 5, 5));
    EXPECT_THAT(table.GetColumn(3), ElementsAre(5, 3, 5, 5, 3, 5));
    table.reserve(2000);
    float const *const first = table.Values().data();
    while (table.Rows() < 2000)
        table.AppendRow(table.Row(2));
    EXPECT_EQ(table.Values().data(), first);
    EXPECT_THAT(table[2000], ElementsAre(1, 2, 3));
    Matrix large(70, 41);
    for (int row = 1; row <= 70; ++row)
        for (int column = 1; column <= 41; ++column)
            large(row, column) = static_cast<float>(100 * row + column);
    Matrix const turned = large.Transpose();
    EXPECT_EQ(turned(41, 70, none), 7041);
    EXPECT_EQ(turned(33, 1, none), 133);
    EXPECT_TRUE(turned.Transpose() == large);
}

TEST(NCStringVector, InsertsAndFinds) {
    NCStringVector list{"b", "\xC3\x84 b"};
    list.InsertStrings(2, 2);
    list.InsertStrings(5, 1, "B");
    EXPECT_THAT(list, ElementsAre("b", "", "", "\xC3\x84 b", "B"));
    EXPECT_EQ(list.FindString("B"), 5);
    EXPECT_EQ(list.FindString("B", false), 1);
    EXPECT_EQ(list.FindString("b", false, 2), 5);
    EXPECT_EQ(list.FindString("\xC3\xA4 B", false), 4);
    EXPECT_EQ(list.FindString("c"), -1);
}

TEST(ContainerStreams, RoundTripAndRefuseDamage) {
    std::stringstream stream;
    Ids const ids{1, 0xffffffff};
    Row const row{none, 1.5f, -3e-39f};
    BoolVector flags{true, false, true};
    stream << ids << row << Ids() << flags;
    Ids readIds, emptied{3};
    Row readRow;
    BoolVector readFlags;
    stream >> readIds >> readRow >> emptied >> readFlags;
    EXPECT_TRUE(readIds == ids && readRow == row && emptied.empty() && readFlags == flags);

    std::ostringstream bytes;
    bytes << ids;
    EXPECT_EQ(bytes.str(), std::string("\2\0\0\0\1\0\0\0\xff\xff\xff\xff", 12));
    for (std::string const &damaged : {bytes.str().substr(0, 11), std::string(3, '\0'), std::string(400, '\xff')}) {
        std::istringstream in(damaged);
        EXPECT_THROW(in >> readIds, VqStreamError);
        EXPECT_TRUE(readIds == ids);
    }
    for (char const *text : {"", "3 10", "3 10x", "-1 ", "99999999 1"}) {
        std::istringstream in(text);
        EXPECT_FALSE(in >> readFlags) << text;
        EXPECT_TRUE(readFlags == flags);
    }
}
