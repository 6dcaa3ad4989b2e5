#include "platform/identity/AliasAccess.h"
#include "platform/identity/BatchUtilities.h"
#include "platform/identity/ColumnIDs.h"
#include "platform/identity/RowIDs.h"
#include "platform/text/Exception.h"
#include "tests/support/RecordingProject.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <numeric>
#include <sstream>

namespace {

using Ints = std::vector<int>;
using Numbers = ColumnIDs::Numbers;

// Observations 1 to 6 in batches b1, b2, b10 with phases; variables 1 to 3.
boost::shared_ptr<RecordingProject> Labelled() {
    auto const project = MakeRecordingProject();
    project->observations.AddAlias({"Name", "", VarObs::Role::Plain, {"o1", "o2", "o3", "o4", "o5", "o6"}, false});
    project->observations.AddAlias({"B", "batch", VarObs::Role::Batch, {"b1", "b1", "b1", "b10", "b10", "b2"}, false});
    project->observations.AddAlias({"Ph", "", VarObs::Role::Phase, {"p", "p", "q", "q", "p", "p"}, false});
    project->observations.AddAlias({"Time", "", VarObs::Role::Plain, {"1", "2.5", "-3", "1e2", "0", "7"}, false});
    project->variables.AddAlias({"Name", "", VarObs::Role::Plain, {"length", "width", "colour"}, false});
    project->variables.AddAlias({"Short", "", VarObs::Role::Plain, {"l", "w", "c"}, false});
    return project;
}

// Columns of each kind from small numbers: one number stands for one item of any kind.
struct KindOfColumns {
    char const *name;
    ColumnIDs::Source source;
    std::function<ColumnIDs(Ints const &, ProjectPtr const &)> make;
    char const *labels;     // of 2, 3 with the project
    char const *bareLabels; // without
    float value;            // of 2, as a number
};

template <typename To>
std::vector<To> Each(Ints const &items, std::function<To(int)> const &convert) {
    std::vector<To> converted;
    for (int const item : items)
        converted.push_back(convert(item));
    return converted;
}

Numbers ToNumbers(Ints const &items) {
    std::vector<std::uint32_t> const numbers(items.begin(), items.end());
    return Numbers(numbers);
}

ColumnIDs OfText(Ints const &items, ProjectPtr const &project, ColumnIDs::Source kind) {
    auto const text = [](int item) { return "b" + std::to_string(item); };
    return ColumnIDs(NCStringVector(Each<std::string>(items, text)), "T", project, kind, 0);
}

ColumnIDs OfFloats(Ints const &items, ProjectPtr const &project, ColumnIDs::Source kind) {
    return ColumnIDs(NCDataVector<float>(Each<float>(items, [](int item) { return item / 2.0f; })), "T", project, kind,
                     0);
}

ColumnIDs OfTerms(Ints const &items, ProjectPtr const &project) {
    auto const term = [](int item) { return ColumnTerm({static_cast<std::uint32_t>(item), 1}, {item, 0}, {0, 2}); };
    return ColumnIDs(ColumnTerms(Each<ColumnTerm>(items, term)), project, 0);
}

using Source = ColumnIDs::Source;
// clang-format off
KindOfColumns const kinds[] = {
    {"variables", Source::Variables, [](Ints const &i, ProjectPtr const &p) { return ColumnIDs(Source::Variables, ToNumbers(i), p, 1); }, "width colour", "2 3", -99},
    {"numeral alias", Source::Observations, [](Ints const &i, ProjectPtr const &p) { return ColumnIDs(Source::Observations, ToNumbers(i), p, 1, {4, 1}); }, "2.5 -3", "2 3", 2.5f},
    {"far numbers", Source::Observations, [](Ints const &i, ProjectPtr const &p) { return ColumnIDs(Source::Observations, ToNumbers(Each<int>(i, [](int n) { return n << 26; })), p, 1); }, " ", "134217728 201326592", -99},
    {"terms", Source::Terms, OfTerms, "width.L2*length(2) colour.L3*length(2)", "2 3", -99},
    {"integers", Source::Integers, [](Ints const &i, ProjectPtr const &p) { return ColumnIDs(ColumnIDs::IntegerList(i), p, 1); }, "2 3", "2 3", 2},
    {"strings", Source::Strings, [](Ints const &i, ProjectPtr const &p) { return OfText(i, p, Source::Strings); }, "b2 b3", "b2 b3", -99},
    {"batches", Source::Batches, [](Ints const &i, ProjectPtr const &p) { return OfText(i, p, Source::Batches); }, "b2 b3", "b2 b3", -99},
    {"maturities", Source::AlignedPoints, [](Ints const &i, ProjectPtr const &p) { return OfFloats(i, p, Source::AlignedPoints); }, "1 1.5", "1 1.5", 1},
    {"bins", Source::Floats, [](Ints const &i, ProjectPtr const &p) { return OfFloats(i, p, Source::Floats); }, "1 1.5", "1 1.5", 1},
};

// this, other; answer, positions here and there; columns only here and only there
struct PairOfLists { Ints one, other; int answer; Ints here, there, onlyHere, onlyThere; };
PairOfLists const pairs[] = {
    {{1, 2, 3}, {1, 2, 3}, 2, {1, 2, 3}, {1, 2, 3}, {}, {}},
    {{1, 2, 3}, {3, 1, 2}, 1, {1, 2, 3}, {2, 3, 1}, {}, {}},
    {{5, 2, 9}, {9, 4, 5, 6}, 1, {1, 3}, {3, 1}, {2}, {2, 4}},
    {{1, 2}, {2}, 1, {2}, {1}, {1}, {}},
    {{1, 2, 3, 4}, {1, 2}, 1, {1, 2}, {1, 2}, {3, 4}, {}},
    {{1, 2, 4, 5}, {1, 2, 3, 4, 6}, 1, {1, 2, 3}, {1, 2, 4}, {4}, {3, 5}},
    {{1, 1, 2}, {1, 1, 2, 3}, 1, {1, 2, 3}, {1, 1, 3}, {}, {4}},
    {{1, 2}, {3, 4, 5}, 0, {}, {}, {1, 2}, {1, 2, 3}},
    {{1}, {}, 0, {}, {}, {1}, {}},
    {{}, {}, 0, {}, {}, {}, {}},
};
// clang-format on

Ints List(ColumnIDs::Positions const &positions) {
    return Ints(positions.begin(), positions.end());
}

std::string Labels(ColumnIDs const &columns, int row = 1) {
    std::string labels;
    for (int column = 1; column <= columns.Size(); ++column)
        labels += (column > 1 ? " " : "") + columns.GetName(column, row);
    return labels;
}

template <typename Streamed>
std::string Bytes(Streamed const &object) {
    std::ostringstream stream;
    stream << object;
    return stream.str();
}

} // namespace

TEST(ColumnIDs, CompareItemsOfEveryKind) {
    for (KindOfColumns const &kind : kinds)
        for (PairOfLists const &pair : pairs) {
            SCOPED_TRACE(kind.name + testing::PrintToString(pair.one) + testing::PrintToString(pair.other));
            ColumnIDs const one = kind.make(pair.one, {}), other = kind.make(pair.other, {});
            ColumnIDs::Positions here{7}, there{7};
            EXPECT_EQ(one.InterSection(other, here, there, 0), pair.answer);
            EXPECT_EQ(List(here), pair.here);
            EXPECT_EQ(List(there), pair.there);
            one.Difference(other, here, there);
            EXPECT_EQ(List(here), pair.onlyHere);
            EXPECT_EQ(List(there), pair.onlyThere);
            ColumnIDs common(one), rest(one), both(one);
            common.Reduce(ColumnIDs::Positions(pair.here));
            rest.Remove(ColumnIDs::Positions(pair.here));
            both.UpdateSelected(other);
            EXPECT_EQ(common.Size() + rest.Size(), one.Size());
            EXPECT_EQ(both.Size(), one.Size() + there.Size());
            EXPECT_EQ(one, kind.make(pair.one, {}));
        }
}

TEST(ColumnIDs, CompareLongListsThatHaveGaps) {
    Ints all(2000);
    std::iota(all.begin(), all.end(), 1);
    // Of so many numbers that follow each other so many are absent.
    struct {
        int of, absent;
    } const cases[] = {{2000, 1500}, {700, 100}, {20, 1}, {9, 1}, {3, 1}, {4, 3}};
    for (auto const &[of, absent] : cases)
        for (bool const falls : {false, true}) {
            SCOPED_TRACE(testing::Message() << absent << " of " << of << (falls ? ", falling" : ""));
            Ints other, here, there;
            std::ranges::copy_if(all, std::back_inserter(other), [&](int n) { return n % of >= absent; });
            here = other;
            for (int i = 1; i <= static_cast<int>(other.size()); ++i)
                there.push_back(falls ? static_cast<int>(other.size()) + 1 - i : i);
            if (falls)
                std::ranges::reverse(other);
            ColumnIDs const one(ColumnIDs::IntegerList(all), {}, 1), few(ColumnIDs::IntegerList(other), {}, 1);
            ColumnIDs::Positions mine, others;
            EXPECT_EQ(one.InterSection(few, mine, others), 1);
            EXPECT_EQ(List(mine), here);
            EXPECT_EQ(List(others), there);
            ColumnIDs common(one), back(few);
            common.Reduce(mine);
            back.Reduce(others);
            EXPECT_EQ(common, back);
        }
}

TEST(ColumnIDs, LabelItemsWithAndWithoutTheirProject) {
    auto project = Labelled();
    for (KindOfColumns const &kind : kinds) {
        SCOPED_TRACE(kind.name);
        ColumnIDs columns = kind.make({1, 2, 3}, project);
        columns.Remove({1, 99, 0});
        EXPECT_EQ(columns.GetSource(), kind.source);
        EXPECT_EQ(Labels(columns), kind.labels);
        EXPECT_EQ(columns.GetFloatValue(1), kind.value);
        EXPECT_EQ(columns.GetName(0) + columns.GetName(3), "");
        EXPECT_EQ(columns.GetFloatValue(3), -99.0f);
        columns.SetProject({});
        EXPECT_EQ(Labels(columns), kind.bareLabels);
    }
    ColumnIDs const variables(Source::Variables, {1, 2}, project, 1),
        other(Source::Observations, {1, 4}, project, 1, {2, 1});
    EXPECT_EQ(Labels(variables, 2) + "/" + Labels(other, 2) + "/" + other.GetRowTitle(1), "l w/o1 o4/B (batch)");
    EXPECT_EQ(variables.SizeRows() * 10 + other.SizeRows(), 22);
    EXPECT_EQ(variables.GetColumnTerm(2), ColumnTerm(2));
    project.reset();
    EXPECT_EQ(Labels(variables), "1 2") << "columns keep no project alive";
}

TEST(ColumnIDs, ShareUntilChangedAndKeepBatches) {
    ColumnIDs const columns = kinds[0].make({4, 5, 6}, {});
    ColumnIDs copy(columns);
    ColumnIDs::Positions here{1}, there{1};
    EXPECT_EQ(copy.InterSection(columns, here, there, 1), 2);
    EXPECT_EQ(here.Size() + there.Size(), 0);
    EXPECT_TRUE(copy.GetColumnIDs()->SharesStorageWith(*columns.GetColumnIDs()));
    copy.SetBatches(BatchInfoVector({{"b1", 2}, {"b2", 1}}));
    ColumnIDs more(columns);
    more.SetBatches(BatchInfoVector({{"b2", 1}, {"b3", 4}}));
    copy.MergeBatches(more);
    EXPECT_EQ(copy.GetBatches(), BatchInfoVector({{"b1", 2}, {"b2", 1}, {"b3", 4}}));
    EXPECT_TRUE(columns.GetBatches().Empty());
    EXPECT_EQ(copy, columns) << "batches are no part of identity";
    std::list<int> const chosen{3, 1};
    copy.Clear();
    copy.UpdateSelected(columns, &chosen);
    EXPECT_EQ(Labels(copy), "6 4");
    copy.UpdateSelected(kinds[4].make({1}, {}));
    EXPECT_EQ(copy.GetSource(), Source::Integers) << "another kind takes the place";
}

TEST(ColumnIDs, TravelInStreamsAndRefuseDamage) {
    for (KindOfColumns const &kind : kinds) {
        SCOPED_TRACE(kind.name);
        ColumnIDs columns = kind.make({3, 1, 2}, {});
        columns.SetBatches(BatchInfoVector({{"b1", 3}}));
        std::string const bytes = Bytes(columns);
        std::istringstream whole(bytes);
        ColumnIDs read(Labelled());
        whole >> read;
        EXPECT_EQ(read, columns);
        EXPECT_EQ(Bytes(read), bytes);
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            std::istringstream cut(bytes.substr(0, size));
            EXPECT_THROW(cut >> read, VqStreamError) << size;
        }
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            std::string damaged = bytes;
            damaged[at] = static_cast<char>(damaged[at] ^ 0x81);
            std::istringstream stream(damaged);
            ColumnIDs other;
            try {
                stream >> other;
            } catch (VqStreamError const &) {
                EXPECT_EQ(other.Size(), 0);
            }
        }
    }
}

TEST(ColumnTerm, ReadsItsTextAndNothingElse) {
    for (char const *text : {"0", "1 5 0 0", "2 5 -1 0 6 0 3"}) {
        std::istringstream stream(text);
        ColumnTerm term;
        EXPECT_TRUE(stream >> term);
        EXPECT_EQ(Bytes(term), text);
    }
    for (char const *text : {"", "x", "2 5 0 0", "1 5 0 y"}) {
        std::istringstream stream(text);
        ColumnTerm term(3);
        EXPECT_FALSE(stream >> term) << text;
        EXPECT_EQ(term, ColumnTerm()) << text;
    }
    ColumnTerms const terms({ColumnTerm(5), ColumnTerm(5, 2), ColumnTerm({6, 5}, {1, 3}, {})});
    EXPECT_EQ(terms.Find(ColumnTerm(5, 2)) * 100 + terms.FindFirst(6) * 10 + terms.Find(ColumnTerm(9)), 229);
    EXPECT_EQ(terms.GetLaggedColumnTermMothers(), (std::vector<std::uint32_t>{5, 6}));
    EXPECT_THROW(terms[4], NCInternalError);
}

TEST(BatchUtilities, FindBatchesAndPhasesAsRuns) {
    auto const project = Labelled();
    NCObservations const bare;
    struct {
        std::vector<std::uint32_t> rows;
        Ints batches, phases, indexes, lengths;
    } const cases[] = {{{1, 2, 3, 4, 5, 6}, {1, 4, 6}, {1, 3, 4, 5, 6}, {1, -99, 2}, {3, 2, 1}},
                       {{6, 1, 4, 2}, {1, 2, 3, 4}, {1, 2, 3, 4}, {2, 1, -99, 1}, {1, 1, 1, 1}},
                       {{5}, {1}, {1}, {-99}, {1}},
                       {{}, {}, {}, {}, {}}};
    BatchInfoVector const known({{"b1", 3}, {"b2", 1}});
    for (auto const &row : cases) {
        ObservationInfos const infos = project->observations.GetInfoVector(row.rows);
        auto const beginnings = BatchUtilities::GetBatchBeginnings(project->observations, infos);
        EXPECT_EQ(List(beginnings), row.batches);
        EXPECT_EQ(List(BatchUtilities::GetPhaseBeginnings(project->observations, infos)), row.phases);
        EXPECT_EQ(List(BatchUtilities::GetBatchIndexes(infos, project->observations, known)), row.indexes);
        EXPECT_EQ(List(BatchUtilities::GetBatchBeginnings(bare, infos)), infos.empty() ? Ints{} : Ints{1});
        for (int batch = 0; batch <= beginnings.Size() + 1; ++batch)
            EXPECT_EQ(BatchUtilities::GetBatchLength(beginnings, batch, static_cast<int>(infos.size())),
                      batch < 1 || batch > beginnings.Size() ? 0 : row.lengths[static_cast<std::size_t>(batch - 1)]);
    }
    BatchInfoVector const batches({{"B10", 1}, {"b2", 1}, {"a", 1}});
    EXPECT_EQ(batches.GetBatchNames(), (NCStringVector{"B10", "b2", "a"}));
}

TEST(AliasAccess, ReadsTextsAndNumerals) {
    auto const project = Labelled();
    NCObservations const &list = project->observations;
    AliasAccess const all(list), chosen({4, 9, 2}, list);
    EXPECT_EQ(chosen.GetUsedAliases(), (Ints{4, 2}));
    EXPECT_EQ(chosen.GetPreferredAlias(2, list[4]) + chosen.GetPreferredAlias(1, list[4]), "b101e2");
    EXPECT_EQ(all.GetAliasNameWithDescription(2) + all.GetRawAliasName(2) + all.GetRawAliasName(9), "B (batch)B");
    EXPECT_TRUE(list.HasNumeralIDs() && !all.IsAliasNumeral(1) && all.IsAliasNumeral(4) && !all.IsAliasNumeral(5));
    EXPECT_EQ(all.GetNumeralValues(4, std::vector<std::uint32_t>{2, 4, 9, 3}),
              (NCDataVector<float>{2.5f, 100, -99, -3}));
    EXPECT_EQ(all.GetNumeralValues(1, std::vector<std::uint32_t>{1}), NCDataVector<float>{-99});
    // Items decide for themselves, blanks aside, whatever the others have.
    NCObservations mixed;
    mixed.AddAlias({"id", "", VarObs::Role::Plain, {"a", "b", "c", "d"}});
    mixed.AddAlias({"depth", "", VarObs::Role::Plain, {"1.5", " ", "deep", "3"}});
    for (auto const &[items, numeral] : {std::pair(std::vector<std::uint32_t>{1, 2, 4}, true),
                                         {{1, 3}, false},
                                         {{2}, false},
                                         {{}, false},
                                         {{9, 4}, true}}) {
        EXPECT_EQ(AliasAccess(mixed).Of(items).IsAliasNumeral(2), numeral) << items.size();
        EXPECT_EQ(AliasAccess({2}, mixed).Of(mixed.GetInfoVector(items)).IsAliasNumeral(2), numeral) << items.size();
    }
    EXPECT_TRUE(mixed.HasNumeralIDs() && !AliasAccess(mixed).IsAliasNumeral(2));
    EXPECT_EQ(list.GetBatchID(all) * 100 + list.GetBatchID(chosen) * 10 + list.GetPhaseID(chosen), 220);
    EXPECT_EQ(list[6].GetBatchName(list) + list[6].GetPhaseName(list) + list[7].GetBatchName(list), "b2p");
}

TEST(RowIDs, LabelRowsOfEverySort) {
    auto const project = Labelled();
    RowIDs::FurtherLabels const further{{2, {"second", "third"}}};
    RowIDs rows(NCStringVector{"x", "y"}, project, &further);
    rows.Append(RowIDs({1, 3}, RowIDs::Variables, project, {2, 1}, "XVar"));
    rows.Append(RowIDs({4, 2}, RowIDs::Observations, project, {}, "", BoolVector{true, false}));
    rows.Append(RowIDs(rows, 2));
    rows.Append(rows);
    struct {
        int row, column;
        char const *label;
    } const cases[] = {{1, 1, "x"},
                       {2, 1, "y"},
                       {2, 2, "second"},
                       {2, 3, "third"},
                       {2, 4, ""},
                       {1, 2, ""},
                       {3, 1, "XVar(l)"},
                       {4, 2, "XVar(colour)"},
                       {5, 1, "o4"},
                       {5, 2, "b10"},
                       {6, 1, ""},
                       {7, 3, "third"},
                       {8, 1, "x"},
                       {14, 2, "second"},
                       {10, 2, "XVar(length)"},
                       {0, 1, ""},
                       {15, 1, ""}};
    std::istringstream stream(Bytes(rows));
    RowIDs read("old", project);
    stream >> read;
    for (auto const &[row, column, label] : cases) {
        EXPECT_EQ(rows.GetName(row, column), label) << row << " " << column;
        EXPECT_EQ(read.GetName(row, column), label) << row << " " << column;
    }
    rows.SetName(3, "new");
    EXPECT_EQ(rows.GetName(3) + rows.GetName(4), "newXVar(c)");
    EXPECT_THROW(RowIDs(rows, 15), NCInternalError);
}
