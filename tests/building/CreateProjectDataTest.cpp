#include "building/CreateProjectData.h"
#include "platform/text/Exception.h"
#include "tests/support/RecordingProject.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

using Texts = std::list<std::string>;
using ProjectDataUtilities::CreateProjectData;
constexpr auto Scores = ProjectVector::VectorTypeVariablesScores;

// Six models whose scores have these columns; the score of model 6 gives no table.
ColumnIDs ColumnsOf(int model) {
    auto const observations = [](ColumnIDs::Numbers const &numbers, BatchInfo const &batch) {
        ColumnIDs columns(ColumnIDs::Observations, numbers, {}, 0);
        columns.SetBatches(BatchInfoVector({batch}));
        return columns;
    };
    switch (model) {
    case 3:
        return observations({3, 2, 7}, {"b3", 1});
    case 4:
        return observations({8, 9}, {"b4", 1});
    case 5:
        return ColumnIDs(ColumnIDs::IntegerList{0, 5, 2}, {}, 0);
    default:
        return observations({1, 2, 3}, {"b" + std::to_string(model), 1});
    }
}

TablePtr TableOf(int model) {
    ColumnIDs columns = ColumnsOf(model);
    NCDataMatrix<float> matrix(1, columns.Size());
    int column = 0;
    for (float &value : matrix.MutableRow(1))
        value = static_cast<float>(10 * model) + columns.GetFloatValue(++column);
    RowIDs rows("t" + std::to_string(model), {});
    return model == 6 ? nullptr : std::make_unique<ProjectData>(std::move(rows), std::move(columns), std::move(matrix));
}

boost::shared_ptr<RecordingProject> SixModels() {
    auto const project = MakeRecordingProject();
    for (int model = 1; model <= 6; ++model)
        project->AddModel(ModelTypeE::PCA, 2);
    auto const modelOf = [](Call const &call) { return std::get<int>(call.arguments[0]); };
    project->source.tableOf["GetT"] = [=](Call const &call) { return TableOf(modelOf(call)); };
    project->source.columnsOf["GetTColumnIDs"] = [=](Call const &call) { return ColumnsOf(modelOf(call)); };
    return project;
}

// "1 2 3| t1: 11 12 13": columns, then rows. "null" for none.
std::string Text(TablePtr const &table) {
    if (!table)
        return "null";
    std::string text;
    for (int column = 1; column <= table->Columns(); ++column)
        text += (column > 1 ? " " : "") + table->GetColumnName(column);
    for (int row = 1; row <= table->Rows(); ++row) {
        text += "| " + table->GetRowName(row) + ":";
        for (float const value : table->GetMatrix().Row(row))
            text += " " + std::to_string(static_cast<int>(value));
    }
    return text;
}

std::string Text(ColumnIDs const &columns) {
    std::string text;
    for (int column = 1; column <= columns.Size(); ++column)
        text += (column > 1 ? " " : "") + columns.GetName(column);
    for (BatchInfo const &batch : columns.GetBatches())
        text += " " + batch.name;
    return text;
}

// What an operation gives as text, or the sort of exception.
template <typename Operation>
std::string Outcome(Operation const &operation) try {
    return operation();
} catch (NCError const &error) {
    EXPECT_EQ(error.GetLevel(), NCError::Error);
    return std::string("NCError ") + error.what();
} catch (NCInternalError const &error) {
    return std::string("NCInternalError ") + error.what();
}

constexpr char const *notFound = "NCError Project vector not found in CreateProjectData::GetProjectVector.";
constexpr char const *noBlank = "NCInternalError CreateProjectData::GetColumnIDs";

// A vector of its own, in the registry as long as it lives; its table tells what it was asked.
class ProbeVector final : public ProjectVector {
public:
    ProbeVector(DataTypeEnum data, ModelTypeE::Model models, char const *answer) : m_answer(answer) {
        Init("probe", Scores, data, models, ComponentNone, NumberNone, NoScoreLoading, Observed, false);
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        ColumnIDs columns(ColumnIDs::Observations, {1}, {}, 0);
        return std::make_unique<ProjectData>(RowIDs(std::string(m_answer) + " " + args, project), columns,
                                             NCDataMatrix<float>(1, 1));
    }

private:
    char const *m_answer;
};

} // namespace

TEST(CreateProjectData, ResolvesOneText) {
    auto const project = SixModels();
    CreateProjectData const create(*project);
    struct {
        char const *text, *table, *columns;
    } const cases[] = {{"t M1,1", "1 2 3| t1: 11 12 13", "1 2 3 b1"},
                       {"t M5,1", "0 5 2| t5: 50 55 52", "0 5 2"},
                       {"t M6,1", "null", "1 2 3 b6"},
                       {"t M1", "null", "1 2 3 b1"},
                       {"", "null", noBlank},
                       {"t", "null", noBlank},
                       {"t,M1,1", "null", noBlank},
                       {"T M1,1", notFound, notFound},
                       {" M1,1", notFound, notFound},
                       {"t  M1,1", notFound, notFound},
                       {"t DS1,1", notFound, notFound},
                       {"Num M1", notFound, notFound}};
    for (auto const &[text, table, columns] : cases) {
        SCOPED_TRACE(text);
        std::string const string(text);
        EXPECT_EQ(Outcome([&] { return Text(create.GetProjectData(text, Scores)); }), table);
        EXPECT_EQ(Outcome([&] { return Text(create.GetProjectData(string, Scores)); }), table);
        EXPECT_EQ(Outcome([&] { return Text(create.GetColumnIDs(string, Scores)); }), columns);
    }
    EXPECT_EQ(Outcome([&] { return Text(create.GetProjectData("t M1,1", ProjectVector::VectorTypeLag)); }), notFound);
}

TEST(CreateProjectData, LooksTheVectorUpByItsSource) {
    auto const project = SixModels();
    ProbeVector const model(ProjectVector::DataTypeModel, ModelTypeE::PCA, "model");
    ProbeVector const dataSet(ProjectVector::DataTypeDataSet, ModelTypeE::None, "data set");
    ProbeVector const prediction(ProjectVector::DataTypePredictionSet, ModelTypeE::None, "prediction");
    for (auto const &[text, table] :
         std::initializer_list<std::pair<char const *, char const *>>{{"probe M2,1,2", "1| model M2,1,2: -99"},
                                                                      {"probe DS3,1 2", "1| data set DS3,1 2: -99"},
                                                                      {"probe DS1", "1| data set DS1: -99"},
                                                                      {"probe PS", "1| prediction PS: -99"},
                                                                      {"probe PS,4", "1| prediction PS,4: -99"},
                                                                      {"probe ", "1| prediction : -99"},
                                                                      {"probe M9,1", notFound},
                                                                      {"probe D", notFound}})
        EXPECT_EQ(Outcome([&] { return Text(CreateProjectData(*project).GetProjectData(text, Scores)); }), table)
            << text;
}

TEST(CreateProjectData, JoinsListsAndMakesRowsThatNoVectorStandsFor) {
    auto const project = SixModels();
    CreateProjectData const create(*project);
    // texts; joined table; columns; a counting row over them
    struct {
        Texts texts;
        std::string table, columns, num;
    } const cases[] = {{{}, "null", "null", "null"},
                       {{"t M5,1"}, "0 5 2| t5: 50 55 52", "0 5 2", "0 5 2| Lag: 0 5 2"},
                       {{"t M1,1", "t M2,1"}, "1 2 3| t1: 11 12 13| t2: 21 22 23", "1 2 3 b1 b2", "1 2 3| Num: 1 2 3"},
                       {{"t M1,1", "t M3,1"}, "2 3| t1: 12 13| t3: 32 33", "2 3 b1", "2 3| Num: 1 2"},
                       {{"t M3,1", "t M1,1"}, "3 2| t3: 33 32| t1: 13 12", "3 2 b3", "3 2| Num: 1 2"},
                       {{"t M1,1", "t M4,1"}, "1 2 3| t1: 11 12 13", "null", "null"},
                       {{"t M6,1", "t M1,1"}, "1 2 3| t1: 11 12 13", "1 2 3 b6 b1", "1 2 3| Num: 1 2 3"},
                       {{"t M6,1"}, "null", "1 2 3 b6", "1 2 3| Num: 1 2 3"},
                       {{"Num M1", "t M1,1"}, "1 2 3| Num: 1 2 3| t1: 11 12 13", "1 2 3 b1", "1 2 3| Num: 1 2 3"},
                       {{"t M3,1", "Missing ", "Num "},
                        "3 2 7| t3: 33 32 37| Missing: -99 -99 -99| Num: 1 2 3",
                        "3 2 7 b3",
                        "3 2 7| Num: 1 2 3"},
                       {{"Num ", "t M5,1"}, "0 5 2| Lag: 0 5 2| t5: 50 55 52", "0 5 2", "0 5 2| Lag: 0 5 2"},
                       {{"Num ", "Num M1", "Missing x"}, "null", "null", "null"},
                       {{"Num", "t M1,1"}, "1 2 3| t1: 11 12 13", noBlank, noBlank},
                       {{"Num ", "", "t M1,1"}, "1 2 3| t1: 11 12 13", "null", "null"},
                       {{"t M1,1", ""}, "1 2 3| t1: 11 12 13", noBlank, noBlank},
                       {{"t M1,1", "zz M1"}, notFound, "null", "null"},
                       {{"Number M1", "t M1,1"}, notFound, "null", "null"}};
    for (auto const &row : cases) {
        SCOPED_TRACE(testing::PrintToString(row.texts));
        EXPECT_EQ(Outcome([&] { return Text(create.GetProjectData(row.texts, Scores)); }), row.table);
        auto const columns = [&] {
            auto const found = create.GetColumnIDs(row.texts, Scores);
            return found ? Text(*found) : "null";
        };
        EXPECT_EQ(Outcome(columns), row.columns);
        EXPECT_EQ(Outcome([&] { return Text(create.CreateNumProjectData(row.texts, Scores)); }), row.num);
        std::string const missing = Outcome([&] { return Text(create.CreateMissingProjectData(row.texts, Scores)); });
        std::size_t const label = row.num.find('|');
        if (label == std::string::npos)
            EXPECT_EQ(missing, row.num);
        else
            EXPECT_EQ(missing.substr(0, label + 10), row.num.substr(0, label) + "| Missing:");
    }
}

TEST(CreateProjectData, LetsErrorsOfTheSourceOutOfAllFormsButTheListOfColumns) {
    auto const project = SixModels();
    CreateProjectData const create(*project);
    Texts const texts{"t M1,1", "t M2,1"};
    for (int call = 1; call <= 3; ++call) {
        bool const fails = call <= 2;
        FailingSource const columns(project->source, call), tables(project->source, call);
        project->otherSource = &columns;
        EXPECT_EQ(create.GetColumnIDs(texts, Scores) == nullptr, fails);
        project->otherSource = &tables;
        EXPECT_EQ(Outcome([&] { return Text(create.GetProjectData(texts, Scores)); }) == "NCError The source failed.",
                  fails);
        project->otherSource = nullptr;
    }
}
