#include "platform/storage/ConfigurationSection.h"
#include "platform/text/Exception.h"
#include "specification/ProjectVectorData.h"
#include "tests/engine/SmallProject.h"
#include "tests/support/ProbeVector.h"

#include <cmath>
#include <functional>

namespace {

using namespace small;

// Worked by hand for these six rows.
TEST_F(SmallProject, GivesTheWorkedFigures) {
    std::vector<Figures> const cases = {
        {"t M1,1,0,0", Scores, {-1.880693, -1.245060, -0.191595, 0.360472, 1.244187, 1.712688}, "M1.t[1]"},
        {"t M1,2,0,0", Scores, {0.296860, -0.856561, 0.984170, -0.768081, 1.347346, -1.003735}, "M1.t[2]"},
        {"u M1,2,0,0", Scores, {0.738327, -0.328492, 0.172437, -2.142626, 1.894192, -0.333838}, "M1.u[2]"},
        {"p M1,2,0,0", Loadings, {-0.084418, 0.691293, -0.719132}, "M1.p[2]"},
        {"w M1,2,0,0", Loadings, {-0.051768, 0.667824, -0.742516}, "M1.w[2]"},
        {"w* M1,2,0,0", Loadings, {-0.009726, 0.700211, -0.716319}, "M1.w*[2]"},
        {"c M1,1,0,0", Loadings, {0.712646}, "M1.c[1]"},
        {"pc M1,1,0,0", Loadings, {0.713420, 0.507699, 0.486596, 0.712646}, "M1.pc[1]"},
        {"w*c M1,2,0,0", Loadings, {-0.009726, 0.700211, -0.716319, 0.078913}, "M1.w*c[2]"},
        {"p(corr) M1,1,0,0", Loadings, {0.995477, 0.708423, 0.678976}, "M1.p(corr)[1]"},
        {"c(corr) M1,1,0,0", Loadings, {0.994397}, "M1.c(corr)[1]"},
        {"pc(corr) M1,1,0,0", Loadings, {0.995477, 0.708423, 0.678976, 0.994397}, "M1.pc(corr)[1]"},
        {"p(ctr) M1,1,0,0", Loadings, {1.334687, 1.096756, 1.268887}, "M1.p(ctr)[1]"},
        {"t(corr) M1,0,1,0,2",
         Scores,
         {-0.845779, -0.559924, -0.086164, 0.162110, 0.559532, 0.770224},
         "M1.t(corr)[1]"},
        {"t(corr) M1,0,2,0,1",
         Scores,
         {0.182611, -0.526906, 0.605404, -0.472478, 0.828809, -0.617439},
         "M1.t(corr)[2]"},
        {"tcv M1,1,0,0", Scores, {-1.810863, -0.812068, 0.101666, 0.253802, 0.610096, 1.325856}, "M1.tcv[1]"},
        {"pcvSE M1,1,0,0", Loadings, {0.031865, 0.372748, 0.331956}, "M1.pcvSE[1]"},
        {"wcvSE M1,1,0,0", Loadings, {0.031428, 0.311744, 0.286963}, "M1.wcvSE[1]"},
        {"tcvSE M1,1,0,0", Scores, {0.113333, 0.379268, 0.414787, 0.318681, 0.584998, 0.406435}, "M1.tcvSE[1]"},
        {"tPS M1,1,0,0", Scores, {-0.252443, 1.922098, 0.242309}, "M1.tPS[1]"},
        {"tPS M1,2,0,0", Scores, {-0.814920, -1.717040, -0.339787}, "M1.tPS[2]"},
        {"p M2,1,0,0", Loadings, {0.713419, 0.457718, 0.530591}, "M2.p[1]"},
        {"t M2,1,0,0", Scores, {-1.916901, -1.137027, -0.315105, 0.456360, 1.074809, 1.837864}, "M2.t[1]"},
        {"p M3,2,0,0", Loadings, {0.094106, 0.743486, -0.662097}, "M3.p[2]"},
        {"t M3,2,0,0", Scores, {0.228895, -0.825595, 0.551765, -0.624999, 1.466636, -0.742642}, "M3.t[2]"},
        {"t M4,1,0,0", Scores, {-1.798484, -1.131479, -0.747529, 0.442453, 1.237772, 1.784818}, "M4.t[1]"},
        {"p M4,1,0,0", Loadings, {0.701517, 0.487590, 0.525168}, "M4.p[1]"}};
    ExpectFigures(*s_project, cases);
}

TEST_F(SmallProject, LabelsItemsByTheirIdentifiers) {
    TablePtr const scores = Table("t M1,1,0,0", Scores);
    EXPECT_EQ(scores->GetColumnName(1) + scores->GetColumnName(6), "af");
    TablePtr const both = Table("w*c M1,1,0,0", Loadings);
    EXPECT_EQ(both->GetColumnName(1) + both->GetColumnName(3) + both->GetColumnName(4), "x1x3y");
    EXPECT_EQ(Table("tPS M1,1,0,0", Scores)->GetColumnName(2), "q");
}

// Correlations with a missing cell go over the rows that have it: pairs by hand from the scores.
TEST_F(SmallProject, CorrelationsSkipMissingCells) {
    std::vector<float> const t = Row("t M3,1,0,0", Scores);
    double const x2[] = {2, 1, 0, 3, 7, 4};
    double n = 0, st = 0, sx = 0, stt = 0, sxx = 0, stx = 0;
    for (std::size_t i : {0, 1, 3, 4, 5}) {
        n += 1, st += t[i], sx += x2[i], stt += t[i] * t[i], sxx += x2[i] * x2[i], stx += t[i] * x2[i];
    }
    double const expected = (stx - st * sx / n) / std::sqrt((stt - st * st / n) * (sxx - sx * sx / n));
    EXPECT_NEAR(Row("p(corr) M3,1,0,0", Loadings)[1], expected, 1e-6);
    EXPECT_NEAR(Row("abs(p(corr)) M3,1,0,0", Loadings)[1], std::abs(expected), 1e-6);
}

// Every standard error is that of its quantity over the three rounds.
TEST_F(SmallProject, StandardErrorsComeFromTheRounds) {
    struct {
        char const *error, *round;
        ProjectVector::VectorTypeEnum type;
    } const cases[] = {{"pcvSE", "pcv", Loadings},
                       {"wcvSE", "wcv", Loadings},
                       {"w*cvSE", "w*cv", Loadings},
                       {"ccvSE", "ccv", Loadings},
                       {"tPScvSE", "tPScv", Scores}};
    for (auto const &row : cases) {
        std::vector<float> const errors = Row(std::string(row.error) + " M1,2,0,0", row.type);
        std::vector<std::vector<float>> rounds;
        for (char const *round : {"1", "2", "3"})
            rounds.push_back(Row(std::string(row.round) + " M1,2,0," + round, row.type));
        ASSERT_FALSE(errors.empty()) << row.error;
        for (std::size_t i = 0; i < errors.size(); ++i) {
            double const mean = (rounds[0][i] + rounds[1][i] + rounds[2][i]) / 3.0;
            double squares = 0;
            for (auto const &round : rounds)
                squares += (round[i] - mean) * (round[i] - mean);
            EXPECT_NEAR(errors[i], std::sqrt(squares * 2 / 3), 2e-6) << row.error;
        }
    }
    std::vector<float> joint = Row("pcvSE M1,1,0,0", Loadings);
    joint.push_back(Row("ccvSE M1,1,0,0", Loadings).front());
    EXPECT_EQ(Row("pccvSE M1,1,0,0", Loadings), joint);
    EXPECT_EQ(Row("w*ccvSE M1,1,0,0", Loadings).size(), 4u);
    EXPECT_EQ(Table("tcv M2,1,0,2", Scores)->GetRowName(1), "M2.tcv[1][CV. 2]");
}

TEST_F(SmallProject, ListsOfComponents) {
    GetProjectData const statistics(*s_project);
    struct {
        IntList components;
        int rows;
        char const *last;
    } const cases[] = {{{2, 1}, 2, "M1.t[1]"}, {{-1}, 1, "M1.t[2]"}, {{0, 3, 2}, 1, "M1.t[2]"}, {{1, 1}, 2, "M1.t[1]"}};
    for (auto const &row : cases) {
        TablePtr const table = statistics.GetT(1, &row.components, -1);
        ASSERT_NE(table, nullptr);
        EXPECT_EQ(table->Rows(), row.rows);
        EXPECT_EQ(table->GetRowName(row.rows), row.last);
    }
    IntList const none{0, 3};
    EXPECT_EQ(statistics.GetT(1, &none, -1), nullptr);
    EXPECT_EQ(statistics.GetT(1, nullptr, -1)->Rows(), 2);
    EXPECT_EQ(statistics.GetT(1, nullptr, 1), nullptr);
    EXPECT_EQ(statistics.GetTcv(1, 4, nullptr), nullptr);
    EXPECT_EQ(statistics.GetW(2, nullptr, TriState::Undefined), nullptr);
    EXPECT_EQ(statistics.GetQ(1, nullptr), nullptr);
    EXPECT_EQ(statistics.GetTo(1, nullptr, -1), nullptr);
    EXPECT_THROW(statistics.GetT(9, nullptr, -1), NCError);
}

TEST_F(SmallProject, ModelLimits) {
    auto const model = boost::dynamic_pointer_cast<ProjectionModel const>(s_project->GetModel(1));
    ASSERT_TRUE(model);
    EXPECT_NEAR(model->GetDModXCrit(1, 0.05f, TriState::Yes), 2.111627, 1e-5);
    EXPECT_NEAR(model->GetDModXCrit(1, -1.0f, TriState::No), 2.111627 * 0.808608, 1e-5);
    EXPECT_EQ(model->GetDModXCrit(3, 0.05f, TriState::Yes), missingValue);
    EXPECT_EQ(model->GetCVStdDevDF(2), 2);
}

TEST(EngineProject, KeepsModelsPredictionsAndSettingsInItsFile) {
    TemporaryFolder const folder;
    {
        auto const project = Project::Create(folder / "kept.dsp");
        project->AddDataSet(Read(sixRows));
        ModelRequest request;
        request.type = ModelTypeE::PLS;
        request.responses = {"y"};
        request.excluded = {"x3", "c"};
        request.components = 1;
        EXPECT_EQ(project->AddModel(request), 1);
        project->AddPredictions(Read(newRows));
        auto const section = project->GetSettingsSection("DefaultSelection");
        section->WriteKey("number", 7);
        section->CreateSubSection("XTerm")->WriteKey("text", "x1");
    }
    auto const project = Project::OpenToRead(folder / "kept.dsp");
    auto const info = project->GetModelInfo(1);
    ASSERT_TRUE(info);
    EXPECT_EQ(info->sizeXVariables, 2);
    EXPECT_EQ(info->sizeObservations, 5);
    EXPECT_EQ(info->SizeComponents(), 1);
    TablePtr const scores = GetProjectData(*project).GetT(1, nullptr, -1);
    EXPECT_EQ(scores->GetColumnName(3), "d");
    EXPECT_EQ(GetProjectData(*project).GetTPS(1, nullptr, -1)->Columns(), 3);
    int number = 0;
    EXPECT_TRUE(project->GetSettingsSection("DefaultSelection")->ReadKey("number", number));
    EXPECT_EQ(number, 7);
    EXPECT_EQ(project->GetSettingsSection("DefaultSelection")->CountSubSections("XTerm"), 1);
}

TEST(EngineProject, RefusesRequestsThatItCannotMeet) {
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "refused.dsp");
    project->AddDataSet(Read(sixRows));
    struct {
        ModelTypeE::Model type;
        int dataSet;
        std::vector<std::string> responses, excluded;
        char const *message;
    } const cases[] = {{ModelTypeE::PLS, 2, {"y"}, {}, "There is no data set 2."},
                       {ModelTypeE::PLS, 1, {"z"}, {}, "There is no variable \"z\" in data set 1 (table)."},
                       {ModelTypeE::PLS, 1, {"y", "y"}, {}, "The variable \"y\" is named twice as a response."},
                       {ModelTypeE::PLS,
                        1,
                        {"y"},
                        {"y"},
                        "The variable \"y\" is left out, and is also a response or left out before."},
                       {ModelTypeE::PCA,
                        1,
                        {},
                        {"g"},
                        "There is no variable and no observation \"g\" in data set 1 (table) to leave out."}};
    for (auto const &row : cases)
        try {
            ModelRequest request;
            request.type = row.type;
            request.dataSet = row.dataSet;
            request.responses = row.responses;
            request.excluded = row.excluded;
            project->AddModel(request);
            ADD_FAILURE() << row.message;
        } catch (NCError const &error) {
            EXPECT_STREQ(error.what(), row.message);
        }
    EXPECT_EQ(project->GetNumberOfModels(), 0);
    EXPECT_THROW(project->MatchVariables(1, Read(newRows)), NCError);
}

// Items are the same when their identifiers are; one that stands twice in a data set is two items.
TEST(EngineProject, ItemsRunOverDataSets) {
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "items.dsp");
    project->AddDataSet(Read("id,v,w\na,1,2\nb,3,4\na,5,6\n"));
    project->AddDataSet(Read("id,w,z\nc,1,2\na,3,4\na,3,4\n"));
    auto const numbers = [&](int dataSet) {
        std::vector<std::uint32_t> result;
        for (ObservationInfo const &info : project->GetDataSet(dataSet)->GetObservations())
            result.push_back(info.GetUniqueID());
        return result;
    };
    EXPECT_EQ(numbers(1), (std::vector<std::uint32_t>{1, 2, 3}));
    EXPECT_EQ(numbers(2), (std::vector<std::uint32_t>{4, 1, 5}));
    EXPECT_EQ(project->GetDataSet(2)->GetVariables(), (std::vector<std::uint32_t>{2, 3}));
    EXPECT_EQ(project->GetDataSet(2)->GetVariable(2)[1], 1.0f);
    EXPECT_EQ(project->GetDataSet(2)->GetObservation(1)[2], 4.0f);
    EXPECT_EQ(project->GetObservations().GetText(5, 1), "a");
    EXPECT_EQ(project->GetDataSet(3), nullptr);
    EXPECT_EQ(project->GetFirstDataSet(1), 2);
}

// What a label, a number and a table say of a batch is the same, in whatever order the batches are.
TEST(EngineProject, NamesTheBatchesThatItDraws) {
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "batches.dsp");
    std::istringstream rows("id,lot,a,b\n1,B10,1,2\n2,B10,2,3\n3,B2,4,1\n4,B2,3,3\n5,B2,7,5\n6,B1,5,4\n7,B10,3,8\n");
    std::istringstream newRows("id,lot,a,b\n8,B2,1,2\n9,B10,2,3\n10,B1,2,2\n");
    project->AddDataSet(engine::ReadTable(rows, "rows", {.batchColumn = "lot"}));
    ModelRequest request;
    request.components = 1;
    project->AddModel(request);
    project->AddPredictions(engine::ReadTable(newRows, "new rows", {.batchColumn = "lot"}));
    GetProjectData const source(*project);
    using Draw = std::function<TablePtr(int)>;
    struct {
        ProjectVector::DataTypeEnum data;
        ProjectVector::ObsOrPredType rows;
        Draw draw;
        std::vector<std::string> batches;
    } const cases[] = {{probes::OfSet,
                        ProjectVector::Observed,
                        [&](int batch) { return source.GetVarDS(1, nullptr, batch, -1); },
                        {"B10", "B2", "B1", "B10"}},
                       {probes::OfModel,
                        ProjectVector::Observed,
                        [&](int batch) { return source.GetT(1, nullptr, batch); },
                        {"B10", "B2", "B1", "B10"}},
                       {probes::OfModel,
                        probes::Predicted,
                        [&](int batch) { return source.GetTPS(1, nullptr, batch); },
                        {"B2", "B10", "B1"}},
                       {probes::OfPredSet,
                        probes::Predicted,
                        [&](int batch) { return source.GetVarDS(2, nullptr, batch, -1); },
                        {"B2", "B10", "B1"}}};
    for (auto const &row : cases) {
        VectorProbe const vector({.number = probes::Batch, .data = row.data, .obsPred = row.rows});
        ProjectVectorData data;
        data.SetProjectVector(&vector);
        if (row.data == probes::OfModel)
            data.SetModelInfoPtr(project->GetModelInfo(1));
        else if (row.data == probes::OfSet)
            data.SetDataSet(1);
        for (data.batchIx = 1; data.batchIx <= static_cast<int>(row.batches.size()); ++data.batchIx) {
            EXPECT_EQ(data.GetBatchName(project), row.batches[static_cast<std::size_t>(data.batchIx - 1)]);
            TablePtr const drawn = row.draw(data.batchIx);
            ASSERT_TRUE(drawn);
            EXPECT_EQ(ObservationInfo(drawn->GetColumnIDs().GetColumnID(1)).GetBatchName(project->GetObservations()),
                      data.GetBatchName(project));
        }
        EXPECT_EQ(row.draw(data.batchIx), nullptr);
        EXPECT_EQ(data.GetBatchName(project), "");
    }
    EXPECT_EQ(project->GetDataSet(1)->GetBatchInfo().GetBatchNames(), (NCStringVector{"B10", "B2", "B1"}));
}

// All that the project's lists tell.
std::string ListsOf(Project const &project) {
    std::ostringstream text;
    auto const write = [&text](VarObs const &list) {
        for (int alias = 1; alias <= list.SizeAliases(); ++alias) {
            VarObs::Alias const &column = *list.GetAlias(alias);
            text << column.name << static_cast<int>(column.role) << column.hasNumbers << column.numeral << ':';
            for (std::uint32_t item = 1; item <= list.Size(); ++item)
                text << list.GetText(item, alias) << ',';
            text << '\n';
        }
    };
    write(project.GetVariables());
    write(project.GetObservations());
    for (engine::DataSetRecord const &record : project.DataSets()) {
        auto const data = record.kind == engine::DataSetKind::Data ? project.GetDataSet(record.number)
                                                                   : project.GetPredSet(record.number);
        for (ObservationInfo const &row : data->GetObservations())
            text << row.GetUniqueID() << ' ';
        for (std::uint32_t const variable : data->GetVariables())
            text << variable << (project.GetVariables()[variable].dateTime ? "d " : " ");
    }
    return text.str();
}

// What comes in is added to lists that were read before, and they are as if read afresh.
TEST(EngineProject, AddsToItsLists) {
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "grow.dsp");
    struct {
        char const *rows, *batches;
        bool isPrediction;
    } const tables[] = {{"id,lot,depth,a,b\n1,x,1.5,1,2\n2,x,,2,3\n", "", false},
                        {"name,lot,site,b,c\n2,w,n,1,2\n3,q,s,2,3\n3,y1,s,4,4\n", "", false},
                        {"id,when,a\n4,2024-01-01,1\nfive,2024-01-02,3\n", "", true},
                        {"id,batch,d\n5,u,1\n,v,2\n", "batch", false},
                        {"id,lot,a\n6,z,1\n1,y,3\n", "lot", false}, // what lots of earlier sets are changes
                        {"id,when,a\n8,2024-01-03,1\n1,2024-01-02,3\n", "", true}, // in place of the other
                        {"id,lot,e\n6,q,1\n9,y,3\n", "lot", false}};
    for (auto const &table : tables) {
        std::istringstream stream(table.rows);
        engine::ImportedTable const imported = engine::ReadTable(stream, "t", {.batchColumn = table.batches});
        if (table.isPrediction)
            project->AddPredictions(imported, true);
        else
            project->AddDataSet(imported);
        EXPECT_EQ(ListsOf(*project), ListsOf(*Project::OpenToRead(folder / "grow.dsp"))) << table.rows;
    }
}

// Dates stay out of X, and a transformed variable is transformed before it is centred.
TEST(EngineProject, KnowsDatesBatchesAndTransformations) {
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "known.dsp");
    std::istringstream stream("id,lot,when,a,b\n1,x,2024-01-01,1,2\n2,x,2024-01-02,10,3\n3,y,2024-01-03,100,5\n");
    project->AddDataSet(engine::ReadTable(stream, "t", {.batchColumn = "lot"}));
    ModelRequest request;
    request.scaling = ModelRequest::Centred;
    request.components = 1;
    request.crossValidationGroups = 0;
    request.transformations = {{"a", {engine::VariableTransformation::Log, 1, 0, 1}}};
    request.excluded = {"b"};
    project->AddModel(request);
    EXPECT_EQ(project->GetModelInfo(1)->sizeXVariables, 1);
    EXPECT_TRUE(project->GetModelInfo(1)->hasDateTime);
    EXPECT_EQ(project->GetVariables().GetText(project->GetVariables().GetDefaultTimeVariable()->GetUniqueID(), 1),
              "when");
    TablePtr const scores = GetProjectData(*project).GetT(1, nullptr, -1);
    EXPECT_NEAR(scores->GetMatrix()(1, 1), -1, 1e-6);
    EXPECT_NEAR(scores->GetMatrix()(1, 3), 1, 1e-6);
    EXPECT_TRUE(project->IsBatchProject());
    NCStringVector const names = project->GetDataSet(1)->GetBatchInfo().GetBatchNames();
    EXPECT_EQ(names, (NCStringVector{"x", "y"}));
    std::istringstream further("id,batch,b\n7,u,2\n8,w,3\n9,w,5\n");
    project->AddDataSet(engine::ReadTable(further, "other heading", {.batchColumn = "batch"}));
    EXPECT_EQ(project->GetDataSet(2)->GetBatchInfo().GetBatchNames(), (NCStringVector{"u", "w"}));
    request.transformations = {{"z", {}}};
    EXPECT_THROW(project->AddModel(request), NCError);
}

} // namespace
