#include "building/ProjectDataBuilder.h"
#include "catalogue/ProjectVectorHandler.h"
#include "engine/Project.h"
#include "engine/TableReader.h"
#include "platform/project/GetProjectData.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/support/ProbeVector.h"
#include "tests/support/RecordingProject.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <sstream>

namespace {

using Builder = ProjectDataUtilities::ProjectDataBuilder;
using Selection = SelectDataSeriesData;
using namespace probes;

// Columns and rows by a letter: a, b, c over 1 2 3 (c missing throughout), h over 3 4 5, z over 9, k over terms 4,
// a product with the constant, the constant and 7, o a single column 1, x as a over 3 2 1; 0 gives nothing, N and M are
// counting and missing.
struct Row {
    ColumnIDs::Numbers columns;
    std::vector<float> values;
};

std::map<char, Row> const rows{{'a', {{1, 2, 3}, {1, 2, 3}}},
                               {'b', {{1, 2, 3}, {-4, -2, 0}}},
                               {'c', {{1, 2, 3}, {-99, -99, -99}}},
                               {'h', {{3, 4, 5}, {30, 40, 50}}},
                               {'z', {{9}, {9}}},
                               {'k', {{}, {10, 20, 30, 40}}},
                               {'o', {{1}, {5}}},
                               {'x', {{3, 2, 1}, {7, 8, 9}}},
                               {'f', {{1, 2, 3}, {6, 6, -99}}}};

// A vector for each letter, of the project's own.
class Build : public testing::Test {
protected:
    Build() {
        m_project->AddModel(ModelTypeE::PCA, 2);
        m_vector.table = [](ProjectPtr const &project, std::string const &args) -> TablePtr {
            auto const row = rows.find(Letter(args));
            if (row == rows.end())
                return nullptr;
            NCDataMatrix<float> matrix;
            matrix.AppendRow(row->second.values);
            return std::make_unique<ProjectData>(RowIDs(std::string(1, row->first), project), Columns(project, args),
                                                 std::move(matrix));
        };
        m_vector.columns = Columns;
    }

    static char Letter(std::string const &args) {
        return static_cast<char>(std::stoi(args.substr(args.find(',') + 3))); // "M1,0,97,0"
    }

    static ColumnIDs Columns(ProjectPtr const &project, std::string const &args) {
        char const letter = Letter(args);
        if (letter == 'k')
            return ColumnIDs(ColumnTerms({ColumnTerm(4), ColumnTerm({ColumnTerm::Constant, 5}, {}, {}),
                                          ColumnTerm(ColumnTerm::Constant), ColumnTerm(7)}),
                             {}, 1);
        auto const row = rows.find(letter);
        return row == rows.end() ? ColumnIDs(project) : ColumnIDs(ColumnIDs::Observations, row->second.columns, {}, 1);
    }

    ProjectVectorData Series(char letter) const {
        ProjectVectorData data;
        ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
        data.SetProjectVector(letter == 'N'   ? handler.GetNumVector(Scores)
                              : letter == 'M' ? handler.GetMissingVector(Scores)
                                              : &m_vector);
        data.SetModelInfoPtr(m_project->GetModelInfo(1));
        data.SetNumber(static_cast<std::uint32_t>(letter));
        return data;
    }

    // X, Y axis, - for none, and the series: "a-bh".
    Selection Make(std::string const &letters) const {
        int const mode = (letters[0] != '-' ? 1 : 0) + (letters[1] != '-' ? 2 : 0);
        Selection selection(m_project, static_cast<Selection::Mode>(mode), Scores, -1, V::ObsAndPred);
        selection.SetXAxis(Series(letters[0]));
        selection.SetYAxis(Series(letters[1]));
        for (char const letter : letters.substr(2))
            selection.AddSeries(Series(letter), false);
        return selection;
    }

    static std::string Text(ProjectData const &table) {
        std::ostringstream text;
        for (int column = 1; column <= table.Columns(); ++column)
            text << (column > 1 ? " " : "") << table.GetColumnName(column);
        for (int row = 1; row <= table.Rows(); ++row) {
            text << "| " << table.GetRowName(row) << ":";
            for (float const value : table.GetMatrix().Row(row))
                text << ' ' << value;
        }
        return text.str();
    }

    static std::string Result(Builder const &builder) try {
        std::unique_ptr<ProjectData> const table(builder.Build());
        return table ? Text(*table) : "null";
    } catch (Builder::ProjectDataBuilderError const &error) {
        EXPECT_EQ(error.GetLevel(), NCError::Error);
        return error.what();
    }

    // As many times as the vector was read since the last look.
    int Reads() const { return static_cast<int>(std::exchange(m_vector.asked, {}).size()); }

    boost::shared_ptr<RecordingProject> m_project = MakeRecordingProject();
    VectorProbe m_vector{{.name = "row", .number = Y, .flags = "R"}};
};

constexpr char const *noCommon = "No common elements to create the data.";
constexpr char const *noVectors = "Not enough legal vectors to create the data.";

} // namespace

TEST_F(Build, JoinsAxesAndSeries) {
    for (auto const &[letters, table, columns] :
         std::initializer_list<std::tuple<char const *, char const *, char const *>>{
             {"--", "null", ""},
             {"--0", "null", ""},
             {"--ab", "1 2 3| a: 1 2 3| b: -4 -2 0", "1 2 3"},
             {"--a0h", "3| a: 3| h: 30", ""},
             {"b-ha", "3| b: 0| h: 30| a: 3", "3"},
             {"-ba", "1 2 3| b: -4 -2 0| a: 1 2 3", "1 2 3"},
             {"bxa", "1 2 3| b: -4 -2 0| x: 9 8 7| a: 1 2 3", "1 2 3"},
             {"--az", noCommon, ""},
             {"a-z", noCommon, ""},
             {"0-a", "null", ""},
             {"0ba", "1 2 3| b: -4 -2 0| a: 1 2 3", ""},
             {"a-0", noVectors, ""},
             {"-a0", "1 2 3| a: 1 2 3", ""},
             {"a-", noVectors, "1 2 3"},
             {"N-ah", "3| Num: 1| a: 3| h: 30", "3"},
             {"N-a", "1 2 3| Num: 1 2 3| a: 1 2 3", "1 2 3"},
             {"N-NM", "null", ""},
             {"--Ma", "1 2 3| Missing: -99 -99 -99| a: 1 2 3", "1 2 3"}}) {
        Selection const selection = Make(letters);
        Builder const builder(&selection);
        EXPECT_EQ(Result(builder), table) << letters;
        EXPECT_EQ(Result(builder), table) << letters; // as often as asked
        std::string names;
        ColumnIDs const found = builder.BuildColumnIDs();
        for (int column = 1; column <= found.Size(); ++column)
            names += (column > 1 ? " " : "") + found.GetName(column);
        EXPECT_EQ(names, columns) << letters;
    }
}

TEST_F(Build, KnowsTheBatchesOfAllTables) {
    auto const named = m_vector.table;
    m_vector.table = [named](ProjectPtr const &project, std::string const &args) {
        TablePtr table = named(project, args);
        table->GetColumnIDs().SetBatches(BatchInfoVector({{std::string(1, Letter(args)), 3}}));
        return table;
    };
    for (char const *const letters : {"--ab", "--abh", "--ah"}) {
        Selection const selection = Make(letters);
        std::unique_ptr<ProjectData> const table(Builder(&selection).Build());
        NCStringVector const names = table->GetColumnIDs().GetBatches().GetBatchNames();
        EXPECT_EQ(names.Size(), static_cast<int>(std::string(letters).size()) - 2) << letters;
    }
}

// Tables over hundreds of items that share some of them, in runs and scattered, in rising and other orders, against a
// join that looks up each item.
TEST_F(Build, GivesWhatRandomTablesShare) {
    std::mt19937 random(5);
    auto const below = [&](unsigned limit) { return static_cast<std::uint32_t>(random() % limit); };
    for (int round = 0; round < 300; ++round) {
        std::vector<ColumnIDs::Numbers> lists(1 + below(4));
        for (ColumnIDs::Numbers &list : lists) {
            std::vector<std::uint32_t> items;
            std::uint32_t const step = 1 + below(3), gap = below(1200);
            for (std::uint32_t item = 1 + below(20); item < 1500; item += step)
                if (item < gap || item > gap + 40)
                    items.push_back(item);
            if (below(4) == 0)
                std::ranges::shuffle(items, random);
            list = ColumnIDs::Numbers(items);
        }
        std::string letters = "--";
        while (letters.size() < 3 + static_cast<std::size_t>(round) % 6)
            letters += static_cast<char>('a' + below(static_cast<unsigned>(lists.size())));
        auto const listOf = [&](char letter) -> auto const & {
            return lists[static_cast<std::size_t>(letter - 'a')];
        };
        auto const value = [](char letter, std::uint32_t item) {
            return item % 7 == 0 ? -99.0f : static_cast<float>((item * 37) % 101) + static_cast<float>(letter);
        };
        m_vector.columns = [&](ProjectPtr const &, std::string const &args) {
            return ColumnIDs(ColumnIDs::Observations, listOf(Letter(args)), {}, 1);
        };
        m_vector.table = [&](ProjectPtr const &project, std::string const &args) {
            NCDataMatrix<float> matrix;
            NCDataVector<float> row;
            for (std::uint32_t const item : listOf(Letter(args)))
                row.push_back(value(Letter(args), item));
            matrix.AppendRow(row.Values());
            return std::make_unique<ProjectData>(RowIDs("row", project), m_vector.columns(project, args),
                                                 std::move(matrix));
        };
        std::vector<std::uint32_t> common;
        for (std::uint32_t const item : listOf(letters[2]))
            if (std::all_of(letters.begin() + 2, letters.end(),
                            [&](char letter) { return std::ranges::count(listOf(letter), item) == 1; }))
                common.push_back(item);
        SCOPED_TRACE(testing::Message() << "round " << round << ", " << letters << ", " << common.size());
        Selection selection = Make(letters);
        Builder const builder(&selection);
        if (common.empty()) {
            EXPECT_EQ(Result(builder), noCommon);
            continue;
        }
        std::unique_ptr<ProjectData> table(builder.Build());
        if (below(2) == 0) {
            BoolVector objects = selection.GetSelectObjects();
            std::vector<std::uint32_t> kept;
            for (int place = 1; place <= objects.Size(); ++place)
                if ((objects(place) = place == 1 || (place > 60 && place < 90) || place % 5 != 0))
                    kept.push_back(common[static_cast<std::size_t>(place - 1)]);
            common = kept;
            selection.SetSelectObjects(objects);
            table.reset(builder.Build());
        }
        EXPECT_THAT(*table->GetColumnIDs().GetColumnIDs(), testing::ElementsAreArray(common));
        ASSERT_EQ(table->Rows(), static_cast<int>(letters.size()) - 2);
        for (int row = 1; row <= table->Rows(); ++row) {
            std::vector<float> expected, observed;
            for (std::uint32_t const item : common)
                expected.push_back(value(letters[static_cast<std::size_t>(row) + 1], item));
            std::ranges::copy_if(expected, std::back_inserter(observed), [](float each) { return each != -99.0f; });
            EXPECT_THAT(table->GetMatrix().Row(row), testing::ElementsAreArray(expected));
            float least = 0, most = 0;
            table->GetMatrix().GetRowMinMax(row, least, most);
            EXPECT_EQ(least, observed.empty() ? -99.0f : std::ranges::min(observed));
            EXPECT_EQ(most, observed.empty() ? -99.0f : std::ranges::max(observed));
        }
    }
}

TEST_F(Build, KeepsTheXAxis) {
    // Axes and series before and after; vectors read then
    for (auto const &[before, after, reads] :
         std::initializer_list<std::tuple<char const *, char const *, int>>{{"a-b", "a-b", 1},
                                                                            {"a-b", "a-bh", 2},
                                                                            {"a-b", "x-b", 2},
                                                                            {"aab", "aab", 3},
                                                                            {"N-a", "N-a", 1},
                                                                            {"a-b", "aab", 3},
                                                                            {"-ab", "-ab", 2},
                                                                            {"0-b", "0-b", 0}}) {
        Selection first = Make(before), second = Make(after);
        Builder builder(&first);
        std::string const expected = Result(Builder(&second));
        Result(builder);
        Reads();
        builder.SetDataSeriesData(&second);
        EXPECT_EQ(Result(builder), expected) << before << after;
        EXPECT_EQ(Reads(), reads) << before << " " << after;
    }
    Selection selection = Make("a-b");
    selection.SetScaleType(Selection::ScaleZeroToOne); // changes the joined table, not what is kept
    Builder const builder(&selection);
    EXPECT_EQ(Result(builder), Result(builder));
}

TEST_F(Build, LeavesOutWhatIsNotSelected) {
    Selection selection = Make("--ab");
    selection.GetColumnIDs();
    selection.SetSelectObjects({false, true, true});
    EXPECT_EQ(Result(Builder(&selection)), "2 3| a: 2 3| b: -2 0");
    EXPECT_EQ(Builder(&selection).BuildColumnIDs().Size(), 3); // whatever is selected
    selection.SetSelectObjects({false, false, false});
    EXPECT_EQ(Result(Builder(&selection)), noCommon);
    selection.SetSelectObjects({false, true, true});
    selection.AddSeries(Series('h'), false);
    EXPECT_EQ(Result(Builder(&selection)), "3| a: 3| b: 0| h: 30"); // other columns: all are selected
    EXPECT_EQ(selection.GetColumnIDs()->Size(), 1);

    // A plot hides the first column that is the constant of a regression; a list shows it.
    Selection coefficients = Make("--k");
    coefficients.GetColumnIDs();
    Builder builder(&coefficients);
    builder.SetIsList(true);
    EXPECT_EQ(coefficients.NumSelectObjects(), 4);
    EXPECT_TRUE(Result(builder).ends_with("k: 10 20 30 40"));
    builder.SetIsList(false);
    EXPECT_TRUE(Result(builder).ends_with("k: 10 20 40"));
    builder.SetIsList(true);
    EXPECT_TRUE(Result(builder).ends_with("k: 10 20 40")); // until the selection shows it again
}

TEST_F(Build, ScalesRows) {
    auto const own = [](double scaling, double offset) {
        return [=](ProjectVectorData data) {
            data.scaling = scaling;
            data.offset = offset;
            return data;
        };
    };
    // a is 1 2 3, b -4 -2 0, c missing, f 6 6 and missing
    for (auto const &[letters, type, table] : std::initializer_list<std::tuple<char const *, int, char const *>>{
             {"--abcf", 1, "1 2 3| a: 0 0.5 1| b: -1 -0.5 0| c: -99 -99 -99| f: 1 1 -99"},
             {"--abcf", 2, "1 2 3| a: -1 0 1| b: -2 -1 0| c: -99 -99 -99| f: 1 1 -99"},
             {"a-a", 1, "1 2 3| a: 1 2 3| a: 0 0.5 1"},
             {"-aa", 1, "1 2 3| a: 1 2 3| a: 0 0.5 1"},
             {"aaa", 1, "1 2 3| a: 1 2 3| a: 0 0.5 1| a: 0 0.5 1"},
             {"aNa", 1, "1 2 3| a: 1 2 3| Num: 1 2 3| a: 0 0.5 1"},
             {"-Na", 2, "1 2 3| Num: 1 2 3| a: 1 2 3"},
             {"NNa", 1, "1 2 3| Num: 1 2 3| Num: 1 2 3| a: 0 0.5 1"}}) {
        Selection selection = Make(letters);
        selection.SetScaleType(static_cast<Selection::ScaleType>(type));
        EXPECT_EQ(Result(Builder(&selection)), table) << letters;
    }
    Selection selection = Make("axab");
    selection.SetXAxis(own(2, 0)(Series('a')));
    selection.SetYAxis(own(1, 10)(Series('x')));
    selection.SetSeries(1, own(1.00000001, 0)(Series('a'))); // no difference that counts
    selection.SetSeries(2, own(-1, -0.5)(Series('b')));
    EXPECT_EQ(Result(Builder(&selection)),
              "1 2 3| a * 2 + 0: 2 4 6| x * 1 + 10: 19 18 17| a: 1 2 3| b * -1 - 0.5: 3.5 1.5 -0.5");
    Builder plain(&selection);
    plain.SetTransformData(false);
    EXPECT_EQ(Result(plain), "1 2 3| a: 1 2 3| x: 9 8 7| a: 1 2 3| b: -4 -2 0");
    Selection onlyY = Make("-ab");
    onlyY.SetYAxis(own(3, 0)(Series('a')));
    EXPECT_EQ(Result(Builder(&onlyY)), "1 2 3| a * 3 + 0: 3 6 9| b: -4 -2 0");
}

TEST_F(Build, RefusesWhatIsNotThere) {
    Selection selection = Make("--a");
    Builder builder(&selection);
    builder.SetTransformData(false);
    EXPECT_EQ(Result(builder), "1 2 3| a: 1 2 3");
    selection.SetProject(nullptr, false);
    EXPECT_EQ(Result(builder), "null");
}

TEST(BuildOfEngine, GivesTheNumbersOfTheStatistics) {
    TemporaryFolder const folder;
    auto const project = engine::Project::Create(folder / "p.dsp");
    std::istringstream stream("id,x1,x2,x3\na,1,2,1\nb,2,1,4\nc,3,5,2\nd,4,3,6\ne,5,7,3\nf,6,4,8\n");
    project->AddDataSet(engine::ReadTable(stream, "table"));
    engine::ModelRequest request;
    request.components = 2;
    project->AddModel(request);
    GetProjectData const direct(*project);
    for (auto const &[name, type] : {std::pair("t", Scores), {"p", Loadings}}) {
        Selection selection(project, Selection::AxisX, type, -1, V::ObsAndPred);
        ProjectVectorData data;
        data.SetProjectVector(
            ProjectVectorHandler::Instance()->FindVector(name, type, OfModel, project->GetModelInfo(1).get()));
        data.SetModelInfoPtr(project->GetModelInfo(1));
        data.SetComponent(1);
        selection.SetXAxis(data);
        data.SetComponent(-1);
        selection.AddSeries(data, true);
        std::unique_ptr<ProjectData> const built(Builder(&selection).Build());
        ASSERT_TRUE(built);
        for (int component = 1; component <= 2; ++component) {
            IntList const components{component};
            TablePtr const expected =
                *name == 't' ? direct.GetT(1, &components, -1) : direct.GetP(1, &components, TriState::Undefined);
            EXPECT_TRUE(std::ranges::equal(built->GetMatrix().Row(component), expected->GetMatrix().Row(1)));
            EXPECT_EQ(built->GetRowName(component), expected->GetRowName(1));
        }
        EXPECT_EQ(Builder(&selection).BuildColumnIDs(), built->GetColumnIDs());
    }
}
