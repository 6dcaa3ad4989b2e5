#include "platform/text/Exception.h"
#include "tests/catalogue/DelegateCases.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace {

using namespace delegates;

constexpr auto Aligned = ProjectVector::VectorTypeAligned;
constexpr auto PerBatch = ProjectVector::VectorTypeBatch;

// What a vector asks, by the text of its arguments up to the batch index or the multipliers: the operation, its
// arguments up to the same place, and the operation of its columns.
struct BatchCase {
    char const *name, *args, *operation, *given, *columns;
};

// The first batch or multiplier that is given, and what it becomes.
using Ending = std::pair<std::string, std::string>;

class Asked {
public:
    Asked(BatchCase const &row, ProjectVector::VectorTypeEnum type)
        : m_row(row), m_project(FourModels()), m_vector(FindFor(*m_project, row.name, type, row.args)) {
        EXPECT_NE(m_vector, nullptr) << row.name;
        EXPECT_EQ(m_vector->GetHelpString().find(std::string(row.name) + ": "), 0u) << row.name;
    }

    void ExpectTable(std::string const &operation, Ending const &ending) const {
        m_vector->CreateVectorRaw(m_project, (m_row.args + ending.first).c_str());
        EXPECT_EQ(m_project->source.Take(), operation + '(' + m_row.given + ending.second + ')') << m_row.name;
    }
    void ExpectColumns(Ending const &ending) const {
        m_vector->CreateColumnIDsRaw(m_project, (m_row.args + ending.first).c_str());
        EXPECT_EQ(m_project->source.Take(), m_row.columns + ('(' + std::string(1, m_row.args[1])) + ending.second + ')')
            << m_row.name;
    }

private:
    BatchCase const &m_row;
    boost::shared_ptr<RecordingProject> m_project;
    ProjectVector const *m_vector;
};

// Terms 1 to 3 are X, 4 and 5 are Y.
// clang-format off
BatchCase const ofOneBatch[] = {
    {"tBatch", "M2,1,0,0", "GetT", "2, [1]", "GetTColumnIDs"},
    {"tPSBatch", "M2,2,0,0", "GetTPS", "2, [2]", "GetTPSColumnIDs"},
    {"toBatch", "M4,2,0,0", "GetTo", "4, [2]", "GetTColumnIDs"},
    {"toPSBatch", "M4,1,0,0", "GetToPS", "4, [1]", "GetToPSColumnIDs"},
    {"DModXBatch", "M4,0,0,0", "GetDModX", "4, [0], 2, 2", "GetDModXColumnIDs"},
    {"DModXPSBatch", "M1,1,0,0", "GetDModXPS", "1, [1], 2, 2", "GetDModXPSColumnIDs"},
    {"T2RangeBatch", "M1,0,1,0,2", "GetT2Range", "1, 1, 2", "GetT2RangeColumnIDs"},
    {"T2RangeBatch", "M3,0,1,0", "GetT2Range", "3, 0, 0", "GetT2RangeColumnIDs"},
    {"T2RangePSBatch", "M1,0,1,0,2", "GetT2RangePS", "1, 1, 2", "GetT2RangePSColumnIDs"},
    {"T2RangePSBatch", "M4,0,0,0", "GetT2RangePS", "4, 0, 0", "GetT2RangePSColumnIDs"},
    {"XVarBatch", "M1,0,2,0,1,0", "GetXVar", "1, true, false, [{1 2 0 0}]", "GetXVarColumnIDs"},
    {"XVarPSBatch", "M2,0,2,0,0,1", "GetXVarPS", "2, false, true, [{1 2 0 0}]", "GetXVarPSColumnIDs"},
    {"YPredBatch", "M2,1,2,0,1,0", "GetYPred", "2, 1, 1, 0, [{1 5 0 0}]", "GetYPredColumnIDs"},
    {"YPredPSBatch", "M2,1,1,0,0,1", "GetYPredPS", "2, 1, 0, 1, [{1 4 0 0}]", "GetYPredPSColumnIDs"},
    {"YVarDSBatch", "M3,1,2,0", "GetYVarUntreated", "3, [{1 5 0 0}]", "GetYVarColumnIDs"},
    {"YVarDSPSBatch", "M3,0,1,0", "GetYVarUntreatedPS", "3, [{1 4 0 0}]", "GetYVarPSColumnIDs"},
};

BatchCase const aligned[] = {
    {"t", "M2,1,0,0", "GetAlignedT", "2, 1", "GetAlignedColumnIDs"},
    {"tPS", "M3,2,0,0", "GetAlignedTPS", "3, 2", "GetAlignedPSColumnIDs"},
    {"to", "M4,2,0,0", "GetAlignedTO", "4, 2", "GetAlignedColumnIDs"},
    {"toPS", "M4,1,0,0", "GetAlignedTOPS", "4, 1", "GetAlignedPSColumnIDs"},
    {"DModX", "M1,0,0,0", "GetAlignedDModX", "1, 0, 2, 2", "GetAlignedColumnIDs"},
    {"DModX", "M4,0,0,0", "GetAlignedDModX", "4, 0, 2, 2", "GetAlignedColumnIDs"},
    {"DModXPS", "M2,2,0,0", "GetAlignedDModXPS", "2, 2, 2, 2", "GetAlignedPSColumnIDs"},
    {"DModXPS", "M3,0,0,0", "GetAlignedDModXPS", "3, 0, 2, 2", "GetAlignedPSColumnIDs"},
    {"T2Range", "M2,0,1,0,2", "GetAlignedT2Range", "2, 1, 2", "GetAlignedColumnIDs"},
    {"T2Range", "M3,0,1,0", "GetAlignedT2Range", "3, 0, 0", "GetAlignedColumnIDs"},
    {"T2RangePS", "M2,0,-1,0,2", "GetAlignedT2RangePS", "2, -1, 2", "GetAlignedPSColumnIDs"},
    {"T2RangePS", "M4,0,0,0", "GetAlignedT2RangePS", "4, 0, 0", "GetAlignedPSColumnIDs"},
    {"XVar", "M1,0,2,0,1,0", "GetAlignedXVar", "1, true, false, {1 2 0 0}", "GetAlignedColumnIDs"},
    {"XVarPS", "M4,0,3,0,0,1", "GetAlignedXVarPS", "4, false, true, {1 3 0 0}", "GetAlignedPSColumnIDs"},
    {"YVar", "M2,0,2,0,1,0", "GetAlignedYVar", "2, true, false, {1 5 0 0}", "GetAlignedColumnIDs"},
    {"YVarPS", "M4,0,1,0,0,1", "GetAlignedYVarPS", "4, false, true, {1 4 0 0}", "GetAlignedPSColumnIDs"},
    {"YPred", "M2,1,2,0,1,0", "GetAlignedYPred", "2, 1, true, false, {1 5 0 0}", "GetAlignedColumnIDs"},
    {"YPred", "M4,0,1,0,1,0", "GetAlignedYPred", "4, 0, true, false, {1 4 0 0}", "GetAlignedColumnIDs"},
    {"YPredPS", "M2,2,2,0,0,1", "GetAlignedYPredPS", "2, 2, false, true, {1 5 0 0}", "GetAlignedPSColumnIDs"},
    {"YPredPS", "M3,0,2,0,0,1", "GetAlignedYPredPS", "3, 0, false, true, {1 5 0 0}", "GetAlignedPSColumnIDs"},
};

BatchCase const limits[] = {
    {"tstddev", "M2,1,0,0", "GetAlignedTStdDevAndAverage", "2, 1", "GetAlignedColumnIDs"},
    {"tostddev", "M4,2,0,0", "GetAlignedTOStdDevAndAverage", "4, 2", "GetAlignedColumnIDs"},
    {"DModXstddev", "M2,2,0,0", "GetAlignedDModXStdDevAndAverage", "2, 2, 2, 2", "GetAlignedColumnIDs"},
    {"DModXstddev", "M3,0,0,0", "GetAlignedDModXStdDevAndAverage", "3, 0, 2, 2", "GetAlignedColumnIDs"},
    {"XVarstddev", "M1,0,2,0,1,0", "GetAlignedXVarStdDevAndAverage", "1, true, false, {1 2 0 0}", "GetAlignedColumnIDs"},
    {"YPredstddev", "M4,1,2,0,0,1", "GetAlignedYPredStdDevAndAverage", "4, 1, false, true, {1 5 0 0}", "GetAlignedColumnIDs"},
    {"T2Rangestddev", "M4,0,1,0,2", "GetAlignedT2RangeStdDevAndAverage", "4, 1, 2", "GetAlignedColumnIDs"},
};

BatchCase const sumsOfTwoLimits[] = {
    {"TAlignedOOCSum", "M2,1,0,0", "GetTAlignedOOCBatchSums", "2, 1", "GetOOCBatchSumsColumnIDs"},
    {"TPSAlignedOOCSum", "M2,2,0,0", "GetTPSAlignedOOCBatchSums", "2, 2", "GetPSOOCBatchSumsColumnIDs"},
    {"TOAlignedOOCSum", "M4,1,0,0", "GetTOAlignedOOCBatchSums", "4, 1", "GetOOCBatchSumsColumnIDs"},
    {"TOPSAlignedOOCSum", "M4,2,0,0", "GetTOPSAlignedOOCBatchSums", "4, 2", "GetPSOOCBatchSumsColumnIDs"},
    {"XVarAlignedOOCSum", "M1,0,2,0,1,0", "GetXVarAlignedOOCBatchSums", "1, true, false, {1 2 0 0}", "GetOOCBatchSumsColumnIDs"},
    {"XVarPSAlignedOOCSum", "M1,0,2,0,0,1", "GetXVarPSAlignedOOCBatchSums", "1, false, true, {1 2 0 0}", "GetPSOOCBatchSumsColumnIDs"},
    {"YPredAlignedOOCSum", "M2,1,2,0,1,0", "GetYPredAlignedOOCBatchSums", "2, 1, true, false, {1 5 0 0}", "GetOOCBatchSumsColumnIDs"},
    {"YPredPSAlignedOOCSum", "M2,1,2,0,0,1", "GetYPredPSAlignedOOCBatchSums", "2, 1, false, true, {1 5 0 0}", "GetPSOOCBatchSumsColumnIDs"},
};

BatchCase const sumsOfOneLimit[] = {
    {"DModXAlignedOOCSum", "M4,0,0,0", "GetDModXAlignedOOCBatchSums", "4, 0", "GetOOCBatchSumsColumnIDs"},
    {"DModXPSAlignedOOCSum", "M1,2,0,0", "GetDModXPSAlignedOOCBatchSums", "1, 2", "GetPSOOCBatchSumsColumnIDs"},
};

BatchCase const sumsOfOwnLimit[] = {
    {"T2RangeAlignedOOCSum", "M4,0,1,0,2", "GetT2RangeAlignedOOCBatchSums", "4, 1, 2", "GetOOCBatchSumsColumnIDs"},
    {"T2RangePSAlignedOOCSum", "M1,0,1,0,2", "GetT2RangePSAlignedOOCBatchSums", "1, 1, 2", "GetPSOOCBatchSumsColumnIDs"},
};
// clang-format on

TEST(BatchVectors, AskThePlainOperationsForTheirBatch) {
    for (BatchCase const &row : ofOneBatch) {
        Asked const asked(row, Scores);
        for (std::string const batch : {"3", "-1", "0", "-2"}) {
            asked.ExpectTable(row.operation, {"," + batch, ", " + batch});
            asked.ExpectColumns({"," + batch, ", " + batch});
        }
    }
    EXPECT_EQ(CallOf("XVarBatch", Scores, "M1,0,-1,0,1,1,3,2,1"), "GetXVar(1, true, true, [{1 2 0 0}, {1 1 0 0}], 3)");
}

TEST(AlignedVectors, TakeABatchAListAndBothStatistics) {
    for (BatchCase const &row : aligned) {
        Asked const asked(row, Aligned);
        std::string const statistics = std::string(row.operation) + "StdDevAndAverage";
        asked.ExpectTable(row.operation, {",3", ", [3]"});
        asked.ExpectTable(row.operation, {",-3,7", ", [-3]"});
        asked.ExpectTable(row.operation, {",-2,4,5", ", [4, 5]"});
        asked.ExpectTable(row.operation, {",-2", ", [0]"});
        asked.ExpectTable(statistics, {",-1", ", true, false"});
        asked.ExpectTable(statistics, {",0", ", false, true"});
        for (Ending const &ending :
             {Ending(",3", ", [3]"), {",-2,4,5", ", [4, 5]"}, {",-1", ", [-1]"}, {",0", ", [0]"}})
            asked.ExpectColumns(ending);
    }
}

TEST(AlignedVectors, LimitsAskForBothStatistics) {
    for (BatchCase const &row : limits) {
        Asked const asked(row, Aligned);
        asked.ExpectTable(row.operation, {",3,-3", ", true, true"});
        asked.ExpectColumns({",3,-3", ", null"});
    }
}

TEST(AlignedVectors, LimitsAreTheAverageAndAMultipleOfTheDeviation) {
    auto const project = FourModels();
    for (char const *const operation : {"GetAlignedTStdDevAndAverage", "GetAlignedT2RangeStdDevAndAverage"})
        project->source.tableOf[operation] = [](Call const &call) {
            NCDataMatrix<float> both;
            both.AppendRow(std::vector{1.0f, 2.0f, -99.0f});
            both.AppendRow(std::vector{0.5f, -99.0f, 0.25f});
            ProjectPtr const owner = call.project.shared_from_this();
            return std::make_unique<ProjectData>(RowIDs(NCStringVector{"average", "deviation"}, owner),
                                                 ColumnIDs(ColumnIDs::Observations, {7, 8, 9}, owner, 2),
                                                 std::move(both));
        };
    struct {
        char const *multipliers, *label;
        float first, second;
    } const cases[] = {{",3,-3", "+3 Std.Dev", 2.5f, -99.0f},
                       {",-2.5", "-2.5 Std.Dev", -0.25f, -99.0f},
                       {",0,3", "0 Std.Dev", 1.0f, -99.0f},
                       {",x", "0 Std.Dev", 1.0f, -99.0f}};
    for (auto const &row : cases) {
        std::string const args = std::string("M2,1,0,0") + row.multipliers;
        TablePtr const table = FindFor(*project, "tstddev", Aligned, "M2")->CreateVectorRaw(project, args.c_str());
        ASSERT_TRUE(table) << args;
        EXPECT_EQ(table->GetRowName(1), row.label);
        EXPECT_EQ(table->GetMatrix()[1], (NCDataVector<float>{row.first, row.second, -99.0f})) << args;
        EXPECT_EQ(table->GetColumnIDs().GetColumnID(1), 7u);
    }
    // T2 takes its columns from their own operation.
    project->source.calls.clear();
    TablePtr const table = FindFor(*project, "T2Rangestddev", Aligned, "M2")->CreateVectorRaw(project, "M2,0,1,0,2,1");
    EXPECT_THAT(project->source.calls, testing::ElementsAre("GetAlignedT2RangeStdDevAndAverage(2, 1, 2, true, true)",
                                                            "GetAlignedColumnIDs(2, null)"));
    EXPECT_EQ(table->GetColumnIDs().GetColumnID(1), 1u);
}

TEST(AlignedVectors, KnowTheLimitsAmongThem) {
    auto const project = FourModels();
    for (BatchCase const &row : limits)
        EXPECT_TRUE(IsAvgStdDevVector(FindFor(*project, row.name, Aligned, row.args))) << row.name << row.args;
    for (auto const type : {Scores, Aligned})
        EXPECT_FALSE(IsAvgStdDevVector(FindFor(*project, "t", type, "M2")));
    EXPECT_FALSE(IsAvgStdDevVector(nullptr));
}

TEST(OutOfControlVectors, HandOverTheMultipliersThatTheirOperationTakes) {
    auto const expectAll = [](std::span<BatchCase const> rows, std::vector<Ending> const &endings) {
        for (BatchCase const &row : rows) {
            Asked const asked(row, PerBatch);
            for (Ending const &ending : endings)
                asked.ExpectTable(row.operation, ending);
            asked.ExpectColumns({",3,-3", ""});
        }
    };
    expectAll(sumsOfTwoLimits,
              {{",3,-2.5", ", 3, -2.5"}, {",0,1e1", ", 0, 10"}, {",-3", ", -3, -99"}, {",x", ", 0, -99"}});
    expectAll(sumsOfOneLimit, {{",3,-2.5", ", 3"}, {",-1", ", -1"}});
    expectAll(sumsOfOwnLimit, {{",3,-2.5", ""}});
}

TEST(Batches, GiveNothingWhereThereIsNothingToAsk) {
    struct {
        char const *name;
        ProjectVector::VectorTypeEnum type;
        std::vector<char const *> args;
    } const cases[] = {{"tBatch", Scores, {"M1", "M1,1,0,0", "M1,0,0,0,3", "M1,3,0,0,3"}},
                       {"XVarBatch", Scores, {"M1,0,1,0,1,1", "M1,0,0,0,1,1,3", "M1,0,4,0,1,1,3"}},
                       {"t", Aligned, {"M1", "M1,1,0,0", "M1,0,0,0,3", "M1,3,0,0,3", "M1,3,0,0,-1"}},
                       {"to", Aligned, {"M3,0,0,0,3", "M3,5,0,0,3"}},
                       {"DModX", Aligned, {"M1,-1,0,0,3", "M1,3,0,0,3"}},
                       {"T2Range", Aligned, {"M1,0,1,0", "M1,0,1,0,2"}},
                       // The list of an aligned variable is one of batches.
                       {"XVar", Aligned, {"M1,0,1,0,3", "M1,0,4,0,1,1,3", "M1,0,-1,0,1,1,-2,1"}},
                       {"tstddev", Aligned, {"M1", "M1,1,0,0", "M1,0,0,0,3"}},
                       {"DModXstddev", Aligned, {"M1,0,0,0,3"}},
                       {"T2Rangestddev", Aligned, {"M1,0,1,0", "M1,0,1,0,2"}},
                       {"TAlignedOOCSum", PerBatch, {"M1", "M1,1,0,0", "M1,0,0,0,3,3"}},
                       {"XVarAlignedOOCSum", PerBatch, {"M1,0,1,0,1,1", "M1,0,9,0,1,1,3,3"}},
                       {"BatchVIP", Loadings, {"M1", "M1,1,0,0", "M1,0,0,0,1"}}};
    auto const project = FourModels();
    for (auto const &row : cases)
        for (char const *const args : row.args) {
            EXPECT_EQ(CallOf(row.name, row.type, args), "") << row.name << ' ' << args;
            std::string const source = std::string("DS") + (args + 1);
            ProjectVector const &vector = *FindFor(*project, row.name, row.type, args);
            EXPECT_EQ(vector.CreateVectorRaw(project, source.c_str()), nullptr) << row.name << ' ' << source;
            if (row.type != Scores) {
                EXPECT_EQ(vector.CreateColumnIDsRaw(project, source.c_str()).Size(), 0) << row.name << ' ' << source;
            }
        }
    EXPECT_THROW(CallOf("YPred", Aligned, "M1,1,1,0,1,1,3"), NCError);
    EXPECT_THROW(CallOf("YVar", Aligned, "M2,0,3,0,1,1,3"), NCError);
}

TEST(BatchVectors, NameTheirClassWhereColumnsCannotBeTold) {
    auto const project = FourModels();
    for (auto const &[name, args, message] :
         {std::tuple("YVarDSBatch", "M2,1,1,0", "ProjectYVarDSBatchVector::CreateColumnIDsRaw"),
          {"YVarDSBatch", "DS1,1,1,0,3", "ProjectYVarDSBatchVector::CreateColumnIDsRaw"},
          {"toPSBatch", "M3", "ProjectToPSBatchVector::CreateColumnIDsRaw"},
          {"T2RangeBatch", "M2,0,1,0", "ProjectT2RangeBatchVector::CreateColumnIDsRaw"},
          {"T2RangeBatch", "M3,0,1,0", "ProjectO2PLST2RangeBatchVector::CreateColumnIDsRaw"}})
        try {
            FindFor(*project, name, Scores, args[0] == 'M' ? args : "M2")->CreateColumnIDsRaw(project, args);
            ADD_FAILURE() << name << ' ' << args;
        } catch (NCInternalError const &error) {
            EXPECT_STREQ(error.what(), message);
        }
}

TEST(BatchVectors, TellWhatTheyAre) {
    auto const project = FourModels();
    auto const find = [&](auto const &row, ProjectVector::VectorTypeEnum type) -> ProjectVector const & {
        return *FindFor(*project, row.name, type, row.args);
    };
    std::vector<ProjectVector const *> all;
    for (BatchCase const &row : ofOneBatch)
        all.push_back(&find(row, Scores));
    for (std::span<BatchCase const> const rows : {std::span<BatchCase const>(aligned), {limits}})
        for (BatchCase const &row : rows)
            all.push_back(&find(row, Aligned));
    for (std::span<BatchCase const> const rows :
         {std::span<BatchCase const>(sumsOfTwoLimits), {sumsOfOneLimit}, {sumsOfOwnLimit}})
        for (BatchCase const &row : rows)
            all.push_back(&find(row, PerBatch));
    // The forms of a whole model take no range of components.
    std::string dates, ranges, plainNames;
    for (ProjectVector const *const vector : all) {
        std::string const name = vector->GetName();
        bool const ofBatch = vector->GetType() == Scores;
        EXPECT_EQ(vector->HasMultiplier(), name.ends_with("stddev") || name.ends_with("Sum")) << name;
        EXPECT_EQ(vector->IsT2RangeVector(), name.starts_with("T2Range")) << name;
        EXPECT_EQ(vector->UseBatchIx(), ofBatch || (vector->GetType() == Aligned && !vector->HasMultiplier())) << name;
        EXPECT_EQ(vector->UseNumberID2(), vector->IsT2RangeVector() && vector->GetModelType() != ModelTypeE::AnyOPLS)
            << name;
        EXPECT_TRUE(vector->IsValidModel(*project, ModelInfo())) << name;
        dates += vector->SupportDateTime() ? name + ' ' : "";
        plainNames += ofBatch && vector->GetLongName() == name ? name + ' ' : "";
    }
    EXPECT_EQ(dates, "XVarPSBatch YPredBatch YVarDSPSBatch YPred YPred YPredPS YPredPS ");
    EXPECT_EQ(plainNames, "YPredBatch YVarDSBatch ");
}

TEST(BatchNumbers, CountWithinEachBatch) {
    auto const project = FourModels();
    project->observations.AddAlias({"batch", "", VarObs::Role::Batch, {"A", "A", "B", "B", "B", "C"}});
    project->AddWorkset(1, {2, 3, 4, 5, 6}, {});
    project->AddPredictions(1, {1, 2, 6});
    struct {
        char const *name, *source;
        std::vector<float> numbers;
    } const cases[] = {{"BatchNum", "M1,0,0,0", {1, 1, 2, 3, 1}},
                       {"BatchNumPS", "M1,0,0,0", {1, 2, 1}},
                       {"BatchNum", "M9,0,0,0", {}},
                       {"BatchNumPS", "M2,0,0,0", {}},
                       {"BatchNum", "DS1,0,0,0", {}}};
    for (auto const &row : cases) {
        ProjectVector const &vector = *FindFor(*project, row.name, Scores, "M1");
        TablePtr const table = vector.CreateVectorRaw(project, row.source);
        ColumnIDs const columns = vector.CreateColumnIDsRaw(project, row.source);
        ASSERT_EQ(table == nullptr, row.numbers.empty()) << row.name << row.source;
        EXPECT_EQ(columns.Size(), static_cast<int>(row.numbers.size()));
        EXPECT_TRUE(vector.IsNumVectorLike() && vector.GetContributionKind() == 1);
        if (!table)
            continue;
        EXPECT_EQ(table->GetMatrix()[1], NCDataVector<float>(row.numbers)) << row.name;
        EXPECT_EQ(table->GetRowName(1), row.name);
        EXPECT_TRUE(table->GetColumnIDs() == columns);
    }
}

TEST(BatchVIP, AsksForAResponseAndAPhaseOfABatchLevelModel) {
    DelegateCase const cases[] = {
        {"BatchVIP", Loadings, "M1,2,0,0,3", "GetBatchVariableImportance(1, 2, null, 3)",
         "GetBatchVariableImportanceColumnIDs(1, 3)"},
        {"BatchVIP", Loadings, "M2,1,2,0,3", "GetBatchVariableImportance(2, 1, {1 5 0 0}, 3)",
         "GetBatchVariableImportanceColumnIDs(2, 3)"},
        {"BatchVIP", Loadings, "M4,1,-1,0,-1", "GetBatchVariableImportance(4, 1, null, -1)",
         "GetBatchVariableImportanceColumnIDs(4, -1)"},
        {"Time/Maturity", Aligned, "M2,0,0,0", "GetAlignedTimeMaturity(2)", "GetAlignedColumnIDs(2, null)"}};
    ExpectCalls(cases);
    EXPECT_THROW(CallOf("BatchVIP", Loadings, "M2,1,3,0,1"), NCError);
    auto const project = FourModels();
    ProjectVector const &vector = *FindFor(*project, "BatchVIP", Loadings, "M1");
    for (bool const isBatchLevel : {false, true}) {
        project->isBatchProject = project->Info(1).isBatchLevel = isBatchLevel;
        EXPECT_EQ(vector.IsValidProject(project), isBatchLevel);
        EXPECT_EQ(vector.IsValidModel(*project, project->Info(1)), isBatchLevel);
    }
    EXPECT_TRUE(FindFor(*project, "Time/Maturity", Aligned, "M1")->IsNumVectorLike());
}

// Models 1, 2 and 4 are of one batch in phases, 3 stands alone. Each has the Y values of the batch: one row for each
// variable, of which the first counts.
TEST(R2Smoothed, ComparesTheTreatedResponseOfEachPhase) {
    auto const project = MakeRecordingProject();
    for (int model = 1; model <= 4; ++model)
        project->AddBatchModel(2, {"A"});
    for (int const phase : {1, 2, 4}) {
        project->Info(phase).phaseGroup = 5;
        project->Info(phase).classOrPhaseNames = {"p" + std::to_string(phase)};
    }
    project->Model(1).treatment = 1;
    project->Model(3).treatment = 1;
    std::map<int, std::vector<float>> const values = {{1, {1, 2, -99, 3}}, {2, {4, 5, 6, 6}}, {3, {2, 2, 2, 2}}};
    project->source.tableOf["GetYVar"] = [&values](Call const &call) -> TablePtr {
        auto const found = values.find(std::get<int>(call.arguments[0]));
        if (found == values.end())
            return nullptr;
        NCDataMatrix<float> matrix;
        matrix.AppendRow(found->second);
        matrix.AppendRow(std::vector{9.0f, 1.0f, 9.0f, 1.0f});
        ProjectPtr const owner = call.project.shared_from_this();
        return std::make_unique<ProjectData>(RowIDs(NCStringVector{"y1", "y2"}, owner),
                                             ColumnIDs(ColumnIDs::Observations, {1, 2, 3, 4}, owner, 1),
                                             std::move(matrix));
    };
    ProjectVector const &vector = *FindFor(*project, "R2Smoothed", Scores, "M1");
    struct {
        char const *args;
        std::vector<float> shares;
        std::vector<std::string> columns;
    } const cases[] = {// shifted by 1: 1 - 3·1²/2; untreated; no values
                       {"M1,0,0,0,7", {-0.5f, 1.0f, -99.0f}, {"p1", "p2", "p4"}},
                       // a constant 0 of no variation: 1 - 4·2²/0.0001
                       {"M3,0,0,0,7", {-159999.0f}, {"Batch"}}};
    for (auto const &row : cases) {
        TablePtr const table = vector.CreateVectorRaw(project, row.args);
        ASSERT_TRUE(table);
        EXPECT_EQ(table->GetMatrix()[1], NCDataVector<float>(row.shares)) << row.args;
        EXPECT_EQ(table->GetRowName(1), "R2. YVar Treated");
        EXPECT_TRUE(table->GetColumnIDs() == vector.CreateColumnIDsRaw(project, row.args));
        for (int column = 1; column <= table->Columns(); ++column)
            EXPECT_EQ(table->GetColumnName(column), row.columns[static_cast<std::size_t>(column - 1)]);
        EXPECT_EQ(table->GetColumnIDs().GetTitle(), "Phases");
    }
    EXPECT_THAT(project->source.calls, testing::Contains("GetYVar(2, true, true, null, 7)"));
    for (char const *const args : {"M1,0,0,0", "M9,0,0,0,7", "DS1,0,0,0,7"})
        EXPECT_EQ(vector.CreateVectorRaw(project, args), nullptr) << args;
}

} // namespace
