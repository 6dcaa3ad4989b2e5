// Models of the evolution of batches: alignment, control charts, and what they say of new batches.

#include "platform/containers/Missing.h"
#include "platform/project/ModelUtilities.h"
#include "platform/text/Exception.h"
#include "tests/engine/BatchProcess.h"
#include "tests/engine/RegistryWalk.h"

#include <cmath>
#include <filesystem>

namespace small {
namespace {

using engine::EvolutionRequest;

constexpr auto Aligned = ProjectVector::VectorTypeAligned;
constexpr double missing = missingValue;

struct Batch {
    std::string name;
    std::vector<double> values, maturity;
};

std::string TextOf(std::vector<Batch> const &batches) {
    std::ostringstream text;
    text << "batch,x,z,time\n";
    int row = 0;
    for (Batch const &batch : batches)
        for (std::size_t i = 0; i < batch.values.size(); ++i)
            text << batch.name << ',' << batch.values[i] << ',' << (++row * 7) % 5 << ',' << batch.maturity[i] << '\n';
    return text.str();
}

int AddEvolution(Project &project, EvolutionRequest const &evolution, int components = 1,
                 ModelTypeE::Model type = ModelTypeE::PLS) {
    ModelRequest request;
    request.type = type;
    request.responses = {"time"};
    request.components = components;
    request.xOrthogonal = 1;
    request.evolution = evolution;
    return project.AddModel(request);
}

std::vector<std::vector<float>> RowsOf(TablePtr const &table) {
    std::vector<std::vector<float>> rows;
    for (int row = 1; table && row <= table->Rows(); ++row) {
        auto const values = table->GetMatrix().Row(row);
        rows.emplace_back(values.begin(), values.end());
    }
    return rows;
}

void ExpectRows(std::vector<std::vector<float>> const &found, std::vector<std::vector<double>> const &expected,
                std::string const &what) {
    ASSERT_EQ(found.size(), expected.size()) << what;
    for (std::size_t row = 0; row < found.size(); ++row) {
        ASSERT_EQ(found[row].size(), expected[row].size()) << what;
        for (std::size_t j = 0; j < found[row].size(); ++j)
            EXPECT_NEAR(found[row][j], expected[row][j], 2e-6 + 1e-6 * std::abs(expected[row][j]))
                << what << ", row " << row + 1 << ", point " << j + 1;
    }
}

std::size_t VariableOf(engine::ImportedTable const &table, std::string const &name) {
    std::size_t variable = 0;
    while (table.variables.front().texts[variable] != name)
        ++variable;
    return variable;
}

// The values of the first variable, and of statistics, on the grid of a project with one model.
class AlignedValues {
public:
    AlignedValues(std::vector<Batch> const &batches, EvolutionRequest const &evolution)
        : m_project(Project::Create(m_folder / "batches.dsp")) {
        m_project->AddDataSet(TableOf(TextOf(batches)));
        AddEvolution(*m_project, evolution);
    }

    Project &File() { return *m_project; }
    GetProjectData Statistics() const { return GetProjectData(*m_project); }
    ColumnTerm X() const { return m_project->GetModel(1)->GetXColumnTerms()[1]; }
    auto Batches() const { return RowsOf(Statistics().GetAlignedXVar(1, true, true, X(), nullptr)); }
    auto Spread() const { return RowsOf(Statistics().GetAlignedXVarStdDevAndAverage(1, true, true, X(), true, true)); }
    auto Sums(double first, double second) const {
        return RowsOf(Statistics().GetXVarAlignedOOCBatchSums(1, true, true, X(), first, second));
    }
    auto Grid() const { return RowsOf(Statistics().GetAlignedTimeMaturity(1)); }

private:
    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project;
};

std::vector<Batch> const byLength{{"A", {1, 2, 4, 7}, {0, 10, 20, 30}},
                                  {"B", {2, 3, 5, 8, 9, 12}, {0, 8, 16, 24, 32, 40}},
                                  {"C", {0, 4, 5, 9, 10}, {0, 10, 20, 28, 36}}};

TEST(Alignment, WorkedFigures) {
    AlignedValues const length(byLength, {});
    ExpectRows(length.Batches(), {{1, 1.75, 3, 4.75, 7}, {2, 3.5, 6.5, 8.75, 12}, {0, 4, 5, 9, 10}}, "by length");
    ExpectRows(length.Spread(), {{1, 3.083333, 4.833333, 7.5, 9.666667}, {1, 1.181454, 1.755942, 2.384848, 2.516611}},
               "spread");
    ExpectRows(length.Grid(), {{0, 27.5 / 3, 55.0 / 3, 80.5 / 3, 106.0 / 3}}, "maturity by length");
    // B lies on the upper limit at the first point, and C on the lower one: both are in control.
    ExpectRows(length.Sums(1, -1), {{0.744478, 0, 0}}, "sums");
    ExpectRows(length.Sums(1, missing), {{0, 0, 0}}, "sums above");

    AlignedValues const maturity(byLength, {.alignByMaturity = true});
    ExpectRows(maturity.Grid(), {{0, 9, 18, 27, 36}}, "grid");
    ExpectRows(maturity.Batches(), {{1, 1.9, 3.6, 6.1, missing}, {2, 3.25, 5.75, 8.375, 10.5}, {0, 3.6, 4.8, 8.5, 10}},
               "by maturity");
}

// A cell that is missing, a maturity that stands still, falls or is missing.
TEST(Alignment, GapsAndStandstill) {
    struct Case {
        char const *what;
        Batch batch;
        bool byMaturity;
        std::vector<double> expected;
    };
    std::vector<Case> const cases{
        {"the nearer row within one position",
         {"D", {1, missing, 3, 4, 5}, {0, 9, 18, 27, 36}},
         false,
         {1, 1, 3, 4, 5}},
        {"a gap of two positions",
         {"D", {1, missing, missing, missing, 5}, {0, 9, 18, 27, 36}},
         false,
         {1, 1, missing, 5, 5}},
        {"stretched over a gap", {"D", {1, missing, 9}, {0, 18, 36}}, false, {1, 1, 1, 9, 9}},
        {"the last of equal maturities", {"D", {1, 2, 3, 4, 5, 6}, {0, 9, 9, 18, 27, 36}}, true, {1, 3, 4, 5, 6}},
        {"a maturity that falls counts as standing",
         {"D", {1, 2, 3, 4, 5, 6}, {0, 9, 5, 18, 27, 36}},
         true,
         {1, 3, 4, 5, 6}},
        {"a row without maturity", {"D", {1, 2, 30, 4, 5, 6}, {0, 9, missing, 18, 27, 36}}, true, {1, 2, 4, 5, 6}},
        {"shorter by half a step", {"D", {1, 2, 3}, {0, 8.25, 12.375}}, true, {1, 2, 3, missing, missing}},
        {"within one step of a gap", {"D", {1, 2, missing, 4, 5}, {0, 9, 18, 27, 36}}, true, {1, 2, 2, 4, 5}},
    };
    for (Case const &one : cases) {
        std::vector<Batch> batches = byLength;
        batches.push_back(one.batch);
        AlignedValues const values(batches, {.alignByMaturity = one.byMaturity, .points = 5});
        ExpectRows({values.Batches().back()}, {one.expected}, one.what);
    }
}

class Evolution : public testing::Test {
protected:
    static void SetUpTestSuite() {
        s_folder = new TemporaryFolder;
        s_project = Project::Create(*s_folder / "many.dsp");
        s_project->AddDataSet(TableOf(ManyBatches(1, 30)));
        ModelRequest request;
        request.type = ModelTypeE::PLS;
        request.responses = {"time"};
        request.components = 2;
        request.evolution.emplace();
        s_phases = s_project->AddPhaseModels(request);
        AddEvolution(*s_project, {.alignByMaturity = true}, 1, ModelTypeE::OPLS); // model 3, whole batches
        s_project->AddPredictions(TableOf(ManyBatches(11, 5), "again"));
    }
    static void TearDownTestSuite() {
        s_project.reset();
        delete s_folder;
    }
    static std::vector<float> Row(std::string const &text, ProjectVector::VectorTypeEnum type) {
        TablePtr const table = ProjectDataUtilities::CreateProjectData(*s_project).GetProjectData(text, type);
        return table ? RowsOf(table).front() : std::vector<float>();
    }

    static inline TemporaryFolder *s_folder = nullptr;
    static inline boost::shared_ptr<Project> s_project;
    static inline std::vector<int> s_phases;
};

TEST_F(Evolution, ModelsOfPhases) {
    EXPECT_EQ(s_phases, (std::vector{1, 2}));
    for (auto const &[model, phase, rows] : {std::tuple(1, "warm", 105), {2, "run", 240}, {3, "", 345}}) {
        auto const info = s_project->GetModelInfo(model);
        EXPECT_TRUE(info->isBatchModel);
        EXPECT_EQ(ModelUtilities::GetPhaseName(*s_project, model), phase);
        EXPECT_EQ(info->sizeObservations, rows) << phase;
        auto const batches = boost::dynamic_pointer_cast<NCBatchModel const>(s_project->GetModel(model));
        ASSERT_TRUE(batches);
        EXPECT_EQ(batches->GetBatchIndexes().size(), 30u);
        EXPECT_EQ(batches->GetBatchName(11), "B11");
        EXPECT_EQ(batches->GetBatchInfo().GetBatchNames()[11], "B11");
        EXPECT_EQ(std::next(batches->GetBatchInfo().begin(), 10)->length, model == 1 ? 3 : model == 2 ? 8 : 11);
    }
    EXPECT_EQ(ModelUtilities::FindMatchingModels(*s_project, 2, true, MatchingModelE::SamePhaseGroup), s_phases);
    EXPECT_EQ(ModelUtilities::FindMatchingModels(*s_project, 3, true, MatchingModelE::SamePhaseGroup), std::vector{3});
}

TEST_F(Evolution, CrossValidationLeavesOutWholeBatches) {
    std::vector<float> const groups = Row("CVGroups M1", Scores);
    std::vector<float> const batches = [] {
        std::vector<float> numbers;
        auto const model = s_project->GetModel(1);
        for (int batch = 1; batch <= 30; ++batch)
            numbers.insert(numbers.end(), static_cast<std::size_t>((8 + batch % 8) / 3),
                           static_cast<float>((batch - 1) % 7 + 1));
        return numbers;
    }();
    EXPECT_EQ(groups, batches);
}

// Aligned statistics of model 3, as texts before and behind the batches.
struct AlignedText {
    char const *name;
    char const *arguments;  // up to the batch index
    char const *range = ""; // behind it
};
std::vector<AlignedText> const alignedTexts{
    {"t", "M3,1,0,0,"},        {"to", "M3,1,0,0,"},       {"DModX", "M3,0,0,0,"},     {"T2Range", "M3,0,0,0,"},
    {"XVar", "M3,0,2,0,1,1,"}, {"XVar", "M3,0,2,0,0,0,"}, {"YPred", "M3,0,1,0,1,1,"}, {"YVar", "M3,0,1,0,1,1,"}};

std::string const allBatches = [] {
    std::string list = "-2";
    for (int batch = 1; batch <= 30; ++batch)
        list += "," + std::to_string(batch);
    return list;
}();

std::vector<std::vector<float>> AlignedRows(Project const &project, std::string const &text) {
    return RowsOf(ProjectDataUtilities::CreateProjectData(project).GetProjectData(text, Aligned));
}

TEST_F(Evolution, AverageAndDeviationOfAllBatches) {
    for (AlignedText const &one : alignedTexts) {
        std::string const text = std::string(one.name) + ' ' + one.arguments;
        auto const rows = AlignedRows(*s_project, text + allBatches);
        ASSERT_EQ(rows.size(), 30u) << text;
        auto const average = AlignedRows(*s_project, text + "-1");
        auto const deviation = AlignedRows(*s_project, text + "0");
        for (std::size_t point = 0; point < rows.front().size(); ++point) {
            double count = 0, sum = 0, squares = 0;
            for (auto const &row : rows)
                if (row[point] != missingValue) {
                    ++count;
                    sum += row[point];
                    squares += static_cast<double>(row[point]) * row[point];
                }
            double const mean = sum / count;
            EXPECT_NEAR(average[0][point], mean, 1e-5 + 1e-5 * std::abs(mean)) << text << " at " << point;
            EXPECT_NEAR(deviation[0][point], std::sqrt((squares - count * mean * mean) / (count - 1)), 2e-4)
                << text << " at " << point;
        }
    }
}

// The distance of a row of the workset makes up for what it spent on the model: it is larger by one factor.
TEST_F(Evolution, ABatchPredictedAsNewGivesItsOwnCurve) {
    double const inflation = [] {
        auto const info = s_project->GetModelInfo(3);
        double const rows = info->sizeObservations;
        return std::sqrt(rows / (rows - 1 - info->SizeComponents()));
    }();
    for (AlignedText const &one : alignedTexts) {
        double const factor = std::string(one.name) == "DModX" ? inflation : 1;
        auto const own = AlignedRows(*s_project, std::string(one.name) + ' ' + one.arguments + allBatches);
        auto const again = AlignedRows(*s_project, std::string(one.name) + "PS " + one.arguments + "-2,1,2,3,4,5");
        ASSERT_EQ(again.size(), 5u) << one.name;
        for (std::size_t batch = 0; batch < 5; ++batch)
            for (std::size_t point = 0; point < own.front().size(); ++point) {
                float const value = own[10 + batch][point];
                double const expected = value == missingValue ? value : value / factor;
                EXPECT_NEAR(again[batch][point], expected, 2e-5 + 2e-5 * std::abs(expected)) << one.name;
            }
    }
}

// As far as a running batch has come it is aligned as it will be when it is finished, by its maturity; the rest is
// open.
TEST_F(Evolution, ARunningBatchIsAlignedAsFarAsItHasCome) {
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "running.dsp");
    project->AddDataSet(TableOf(ManyBatches(1, 30)));
    AddEvolution(*project, {}); // by length; all batches go from 0 to 40 at an even pace
    engine::ImportedTable table = TableOf(ManyBatches(14, 1), "whole");
    project->AddPredictions(table);
    auto const whole = AlignedRows(*project, "tPS M1,1,0,0,1").front();
    std::string const text = ManyBatches(14, 1);
    std::size_t end = 0;
    for (int line = 0; line < 8; ++line) // a heading, and 7 of 14 rows: up to 40 * 6/13
        end = text.find('\n', end) + 1;
    table = TableOf(text.substr(0, end), "running");
    table.running = {"B14"};
    project->AddPredictions(table);
    auto const running = AlignedRows(*project, "tPS M1,1,0,0,1").front();
    auto const grid = AlignedRows(*project, "Time/Maturity M1,0,0,0").front();
    float const reached = 40.0f * 6 / 13, step = grid[1] - grid[0];
    for (std::size_t point = 0; point < grid.size(); ++point) {
        if (grid[point] <= reached) {
            EXPECT_NEAR(running[point], whole[point], 1e-4) << point;
        }
        EXPECT_EQ(running[point] == missingValue, grid[point] > reached + step / 2) << point;
    }
    table.running = {"B15"};
    table.name = "unknown";
    EXPECT_THROW(project->AddPredictions(table), NCError);
    EXPECT_EQ(project->FindPredictionSet("unknown"), 0);
    // What was taken back leaves nothing in the lists either.
    project->AddPredictions(TableOf(ManyBatches(20, 1), "next"));
    EXPECT_EQ(project->GetPredictions(1, true)->GetBatchRuns().names, NCStringVector{"B20"});
    EXPECT_EQ(AlignedRows(*project, "tPS M1,1,0,0,1").front().size(), whole.size());
}

std::vector<std::vector<float>> RowsOf(NCDataMatrix<float> const &matrix) {
    std::vector<std::vector<float>> rows;
    for (int row = 1; row <= matrix.Rows(); ++row)
        rows.emplace_back(matrix.Row(row).begin(), matrix.Row(row).end());
    return rows;
}

// Plain matrices and the model itself hold the figures of the tables.
TEST_F(Evolution, MatricesAreThoseOfTheTables) {
    GetProjectData const tables(*s_project);
    GetProjectDataMatrix const scaled(*s_project, {}, false), source(*s_project, {}, true);
    ColumnTerm const x = s_project->GetModel(3)->GetXColumnTerms()[2], y = s_project->GetModel(3)->GetYColumnTerms()[1];
    auto const undefined = TriState::Undefined;
    EXPECT_EQ(RowsOf(source.GetAlignedXVarMatrix(3, x)), RowsOf(tables.GetAlignedXVar(3, true, true, x, nullptr)));
    EXPECT_EQ(RowsOf(scaled.GetAlignedXVarMatrix(3, x)), RowsOf(tables.GetAlignedXVar(3, false, false, x, nullptr)));
    EXPECT_EQ(RowsOf(source.GetAlignedXVarPSMat(3, x)), RowsOf(tables.GetAlignedXVarPS(3, true, true, x, nullptr)));
    EXPECT_EQ(RowsOf(source.GetAlignedYPredMat(3, -1, y)),
              RowsOf(tables.GetAlignedYPred(3, -1, true, true, y, nullptr)));
    EXPECT_EQ(RowsOf(scaled.GetAlignedYPredPSMat(3, -1, y)),
              RowsOf(tables.GetAlignedYPredPS(3, -1, false, false, y, nullptr)));
    EXPECT_EQ(RowsOf(scaled.GetAlignedTPSMat(3, 1)), RowsOf(tables.GetAlignedTPS(3, 1, nullptr)));
    EXPECT_EQ(RowsOf(scaled.GetAlignedTOMat(3, 1)), RowsOf(tables.GetAlignedTO(3, 1, nullptr)));
    EXPECT_EQ(RowsOf(scaled.GetAlignedDModXPSMat(3, -1)),
              RowsOf(tables.GetAlignedDModXPS(3, -1, undefined, undefined, nullptr)));
    EXPECT_EQ(RowsOf(scaled.GetAlignedT2RangeMat(3, 1, 2)), RowsOf(tables.GetAlignedT2Range(3, 1, 2, nullptr)));
    EXPECT_EQ(RowsOf(scaled.GetAlignedT2RangePSMat(3, 1, 2)), RowsOf(tables.GetAlignedT2RangePS(3, 1, 2, nullptr)));
    auto const model = boost::dynamic_pointer_cast<NCBatchModel const>(s_project->GetModel(3));
    EXPECT_EQ(RowsOf(model->GetAlignedScores(1)), RowsOf(tables.GetAlignedT(3, 1, nullptr)));
    EXPECT_EQ(RowsOf(model->GetAlignedDModX(-1)), RowsOf(tables.GetAlignedDModX(3, -1, undefined, undefined, nullptr)));
    EXPECT_EQ(RowsOf(NCDataMatrix<float>(model->GetTimeMaturityVector())), RowsOf(tables.GetAlignedTimeMaturity(3)));
    EXPECT_EQ(scaled.GetAlignedTPSMat(3, 9).Rows(), 0);
    EXPECT_EQ(scaled.GetAlignedTOMat(1, 1).Rows(), 0) << "a PLS model";
}

// The area outside of the limits, added up from the curves.
TEST_F(Evolution, OutOfControlSums) {
    struct Case {
        char const *stem, *aligned, *arguments; // up to the batch index, or to the multipliers
        double first, second;
    };
    std::vector<Case> const cases{
        {"T", "t", "M3,1,0,0,", 1, -1.5},           {"T", "t", "M3,1,0,0,", 50, -50},
        {"TO", "to", "M3,1,0,0,", 0.5, missing},    {"XVar", "XVar", "M3,0,1,0,1,1,", 2, -0.5},
        {"YPred", "YPred", "M3,1,1,0,1,1,", -1, 1}, {"DModX", "DModX", "M3,0,0,0,", 1, missing}};
    for (Case const &one : cases) {
        std::string const multipliers = std::to_string(one.first) + "," + std::to_string(one.second);
        TablePtr const found =
            ProjectDataUtilities::CreateProjectData(*s_project)
                .GetProjectData(one.stem + std::string("AlignedOOCSum ") + one.arguments + multipliers,
                                ProjectVector::VectorTypeBatch);
        ASSERT_TRUE(found) << one.stem;
        EXPECT_EQ(found->GetColumnIDs().GetName(11), "B11");
        std::string const text = std::string(one.aligned) + ' ' + one.arguments;
        auto const rows = AlignedRows(*s_project, text + allBatches);
        auto const average = AlignedRows(*s_project, text + "-1")[0];
        auto const deviation = AlignedRows(*s_project, text + "0")[0];
        double total = 0;
        for (std::size_t batch = 0; batch < rows.size(); ++batch) {
            double sum = 0;
            for (std::size_t point = 0; point < average.size(); ++point)
                for (double const multiplier : {one.first, one.second}) {
                    if (multiplier == missing || rows[batch][point] == missingValue)
                        continue;
                    double const beyond = rows[batch][point] - average[point] - deviation[point] * multiplier;
                    sum += std::max(0.0, multiplier > 0 ? beyond : -beyond);
                }
            EXPECT_NEAR(found->GetMatrix().Row(1)[batch], sum, 1e-4 + 1e-5 * sum) << one.stem << " batch " << batch + 1;
            total += sum;
        }
        EXPECT_EQ(total > 0, one.first < 50) << one.stem;
    }
}

// Rows of batches: a row of the workset that is predicted is itself, what has not happened yet is missing.
TEST(BatchLevel, RowsOfTheWorksetPredictedAsNew) {
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "level.dsp");
    project->AddDataSet(TableOf(ManyBatches(1, 30)));
    std::string conditions = "batch,charge,yield\n";
    for (int batch = 1; batch <= 31; ++batch)
        conditions +=
            "B" + std::to_string(batch) + "," + std::to_string(batch % 6) + "," + std::to_string(batch % 7) + "\n";
    project->AddDataSet(Read(conditions.c_str()));
    ModelRequest lower;
    lower.type = ModelTypeE::PLS;
    lower.responses = {"time"};
    lower.components = 2;
    lower.evolution = EvolutionRequest{.alignByMaturity = true};
    project->AddPhaseModels(lower);
    for (bool const ofVariables : {false, true})
        for (auto const type : {ModelTypeE::PCA, ModelTypeE::PLS, ModelTypeE::OPLS}) {
            ModelRequest request;
            request.type = type;
            if (type != ModelTypeE::PCA)
                request.responses = {"yield"};
            request.components = 1;
            request.xOrthogonal = 1;
            project->AddBatchLevelModel({.model = 2, .ofVariables = ofVariables, .conditions = 2}, request);
        }
    EXPECT_EQ(project->DataSets().size(), 4u) << "models of the same batches share a data set";
    EXPECT_EQ(ModelUtilities::GetBatchLevelSourceDS(*project, 3), 1);
    EXPECT_EQ(ModelUtilities::GetBatchLevelSourceModel(*project, 3, "run"), 2);
    EXPECT_EQ(project->GetModelInfo(3)->sizeObservations, 30);

    // All of batches 11 to 14, and the beginning of a new one.
    std::string rows = ManyBatches(11, 4);
    std::string const next = ManyBatches(31, 1);
    std::size_t end = next.find('\n') + 1;
    for (int line = 0; line < 4; ++line)
        end = next.find('\n', end) + 1;
    rows += next.substr(next.find('\n') + 1, end - next.find('\n') - 1);
    project->AddPredictions(TableOf(rows, "new"));
    for (int model = 3; model <= 8; ++model) {
        auto const statistics = GetProjectData(*project);
        auto const own = RowsOf(statistics.GetT(model, nullptr, -1)),
                   predicted = RowsOf(statistics.GetTPS(model, nullptr, -1));
        ASSERT_EQ(predicted.front().size(), 5u) << model;
        for (std::size_t batch = 0; batch < 4; ++batch)
            EXPECT_NEAR(predicted[0][batch], own[0][10 + batch], 1e-4 * std::abs(own[0][10 + batch])) << model;
        EXPECT_NE(predicted[0][4], missingValue) << model;
        TablePtr const running = statistics.GetXVarPS(model, true, true, nullptr, -1);
        int reached = 0, open = 0;
        for (int term = 1; term <= running->Rows(); ++term)
            ++(running->GetMatrix()(term, 5, missingValue) == missingValue ? open : reached);
        EXPECT_GT(reached, 4) << model;
        EXPECT_GT(open, reached) << model;
        EXPECT_EQ(running->GetMatrix()(running->Rows() - (model % 3 == 0 ? 1 : 0), 5, missingValue), 31 % 6)
            << "charge";
    }
    // The file holds all of it.
    auto const before = RowsOf(GetProjectData(*project).GetTPS(5, nullptr, -1));
    auto const again = Project::OpenToRead(folder / "level.dsp");
    EXPECT_EQ(RowsOf(GetProjectData(*again).GetTPS(5, nullptr, -1)), before);
}

// What is known of a new batch may come in before its course or behind it.
TEST(BatchLevel, InitialConditionsThatComeLater) {
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "later.dsp");
    project->AddDataSet(TableOf(ManyBatches(1, 30)));
    std::string conditions = "batch,charge\n";
    for (int batch = 1; batch <= 30; ++batch)
        conditions += "B" + std::to_string(batch) + "," + std::to_string(batch % 6) + "\n";
    project->AddDataSet(Read(conditions.c_str()));
    AddEvolution(*project, {});
    int const model = project->AddBatchLevelModel({.model = 1, .conditions = 2}, {.components = 1});
    project->AddPredictions(TableOf(ManyBatches(31, 2), "new"));
    auto const charges = [&] {
        TablePtr const x = GetProjectData(*project).GetXVarPS(model, true, true, nullptr, -1);
        auto const row = x->GetMatrix().Row(x->Rows());
        return std::vector<float>(row.begin(), row.end());
    };
    EXPECT_EQ(charges(), (std::vector<float>{missingValue, missingValue}));
    project->AddDataSet(Read("batch,charge\nB31,7\n"));
    EXPECT_EQ(charges(), (std::vector<float>{7, missingValue}));
    std::size_t const sets = project->DataSets().size();
    project->AddDataSet(Read("batch,colour\nB32,9\n"));
    EXPECT_EQ(project->DataSets().size(), sets + 1);
    engine::ImportedTable more = Read("batch,charge\nB32,8\n");
    more.name = "more";
    project->AddPredictions(more);
    project->UsePredictions(project->FindPredictionSet("new"));
    EXPECT_EQ(charges(), (std::vector<float>{7, 8}));
}

// Importance of lower variables: its mean square is that of the terms, and raw variables have their own.
TEST(BatchLevel, ImportanceOfLowerVariables) {
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "importance.dsp");
    project->AddDataSet(TableOf(ManyBatches(1, 30)));
    ModelRequest lower;
    lower.type = ModelTypeE::PLS;
    lower.responses = {"time"};
    lower.components = 2;
    lower.evolution.emplace();
    project->AddModel(lower);
    ModelRequest upper;
    upper.components = 2;
    for (bool const ofVariables : {false, true}) {
        int const model = project->AddBatchLevelModel({.model = 1, .ofVariables = ofVariables}, upper);
        auto const importance = RowsOf(GetProjectData(*project).GetBatchVariableImportance(model, 2, nullptr, 1));
        ASSERT_EQ(importance.size(), 1u);
        ASSERT_EQ(importance[0].size(), 3u);
        double squares = 0;
        for (float const value : importance[0])
            squares += static_cast<double>(value) * value;
        EXPECT_NEAR(squares, 3, 1e-5) << "the mean square of the importance of all terms is 1";
        EXPECT_FALSE(GetProjectData(*project).GetBatchVariableImportance(model, 2, nullptr, 2));
    }
}

// Every statistic of batches gives numbers, in the columns that it announces, on the models that it is about: those of
// phases, of whole batches, and with one row for each batch.
TEST(BatchLevel, EveryStatisticOfBatchesGivesNumbers) {
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "walk.dsp");
    project->AddDataSet(TableOf(ManyBatches(1, 30)));
    ModelRequest request;
    request.type = ModelTypeE::PLS;
    request.responses = {"time"};
    request.components = 2;
    request.evolution = EvolutionRequest{.treatment = BatchYVarTreatment::Smoothed};
    project->AddPhaseModels(request);
    AddEvolution(*project, {}, 1, ModelTypeE::OPLS);
    for (int const from : {1, 3})
        project->AddBatchLevelModel({.model = from}, {});
    ModelRequest level;
    level.type = ModelTypeE::PLS;
    level.components = 1;
    level.dataSet = project->GetModelInfo(4)->dataSets.front();
    level.responses = {project->GetVariables().GetText(project->GetDataSet(level.dataSet)->GetVariables().back(), 1)};
    project->AddModel(level);
    project->AddPredictions(TableOf(ManyBatches(11, 5), "again"));
    for (ProjectVector const *vector : *ProjectVectorHandler::Instance()) {
        if (!walk::IsOfBatches(*vector))
            continue;
        int asked = 0;
        auto const ask = [&](ModelInfo const *info) {
            bool const isAbout = info->isBatchModel || std::string_view(vector->GetName()) == "BatchVIP";
            if (!isAbout || !walk::HasComponents(*vector, *info))
                return;
            ++asked;
            std::string const args = walk::ArgumentsOf(*vector, info, 1);
            TablePtr const table = vector->CreateVectorRaw(project, args.c_str());
            ASSERT_TRUE(table) << vector->GetName() << ' ' << args;
            EXPECT_TRUE(table->GetColumnIDs() == vector->CreateColumnIDsRaw(project, args.c_str()))
                << vector->GetName() << ' ' << args;
            EXPECT_TRUE(std::ranges::any_of(table->GetMatrix().Values(), [](float value) { return !IsMissing(value); }))
                << vector->GetName() << ' ' << args;
        };
        walk::ForModels(*vector, project, ask);
        if (vector->GetModelType() == ModelTypeE::None)
            ask(project->GetModelInfo(1).get());
        EXPECT_GT(asked, 0) << vector->GetName();
    }
}

// Real batches that another program has aligned, whole ones to 250 points and each phase to a number of its own.
TEST(Alignment, FilmCoating) {
    std::filesystem::path const reference = std::filesystem::path(REFERENCE_DIR) / "batch_film_coating";
    if (!std::filesystem::exists(reference))
        GTEST_SKIP() << "no reference data";
    engine::TableOptions options;
    options.batchColumn = "BATCH NUMBER";
    options.phaseColumn = "PHASE";
    struct Case {
        char const *phase;
        int points;
        char const *file;
    };
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "film.dsp");
    project->AddDataSet(engine::ReadTable(reference / "film_coating.csv", options));
    for (Case const &one : std::vector<Case>{{"", 250, "pyphi_simple_aligned_250.csv"},
                                             {"STARTUP", 3, "pyphi_phase_aligned_108.csv"},
                                             {"HEATING", 20, "pyphi_phase_aligned_108.csv"},
                                             {"SPRAYING", 40, "pyphi_phase_aligned_108.csv"},
                                             {"DRYING", 40, "pyphi_phase_aligned_108.csv"},
                                             {"DISCHARGING", 5, "pyphi_phase_aligned_108.csv"}}) {
        ModelRequest request;
        request.type = ModelTypeE::PLS;
        request.responses = {"Time (min)"};
        request.components = 1;
        request.evolution = EvolutionRequest{.phase = one.phase, .points = one.points};
        int const model = project->AddModel(request);
        engine::ImportedTable const figures = engine::ReadTable(reference / one.file, options);
        for (ColumnTerm const &term : project->GetModel(model)->GetXColumnTerms()) {
            std::string const name = term.GetPrimaryName(project->GetVariables());
            auto const rows = RowsOf(GetProjectData(*project).GetAlignedXVar(model, true, true, term, nullptr));
            ASSERT_EQ(rows.size(), 17u);
            // The rows of this phase, batch after batch.
            std::size_t const variable = VariableOf(figures, name);
            std::size_t batch = 0, point = 0;
            for (std::size_t row = 0; row < figures.ObservationCount(); ++row) {
                if (*one.phase != 0 && figures.observations[2].texts[row] != one.phase)
                    continue;
                float const expected = figures.columns[variable][row];
                EXPECT_NEAR(rows.at(batch)[point], expected, 1e-5 + 2e-6 * std::abs(expected)) << name << one.phase;
                if (++point == rows[batch].size()) {
                    ++batch;
                    point = 0;
                }
            }
            EXPECT_EQ(batch, 17u) << one.phase;
        }
    }
}

// Each mistake has one line that tells where it is.
TEST(BatchLevel, MistakesAreTold) {
    struct Case {
        char const *table, *message;
    };
    std::vector<Case> const cases{
        {"batch,phase,x,time\nA,p,1,1\nA,p,2,2\nB,p,1,1\nB,p,2,2\nA,p,3,3\n",
         "Batch \"A\" stands in two places of data set 1 (batches): it begins in row 1, and again in row 5"},
        {"batch,phase,x,time\nA,p,1,1\nA,q,2,2\nA,p,3,3\n",
         "Phase \"p\" comes back within batch \"A\" of data set 1 (batches): it begins in row 1, and again in row 3"},
        {"batch,phase,x,time\nA,p,1,1\nA,q,2,2\nB,q,1,1\nB,p,2,2\n",
         "Phase \"q\" comes before phase \"p\" in one batch"},
        {"id,x,time\n1,2,3\n4,5,6\n", "has no identifier that tells"},
    };
    for (Case const &one : cases) {
        TemporaryFolder const folder;
        auto const project = Project::Create(folder / "mistake.dsp");
        project->AddDataSet(std::string(one.table).starts_with("id") ? Read(one.table) : TableOf(one.table));
        ModelRequest request;
        request.type = ModelTypeE::PLS;
        request.responses = {"time"};
        request.evolution.emplace();
        try {
            project->AddPhaseModels(request);
            ADD_FAILURE() << one.message;
        } catch (NCError const &error) {
            EXPECT_NE(std::string(error.what()).find(one.message), std::string::npos) << error.what();
        }
        EXPECT_EQ(project->GetNumberOfModels(), 0);
    }
}

// Raw values by batch and phase, each counted from 1 in its order, -1 for all.
TEST_F(Evolution, RowsOfBatchesAndPhases) {
    auto const rows = [](int batch, int phase) {
        ColumnIDs const columns = GetProjectData(*s_project).GetVarDSColumnIDs(1, batch, phase);
        TablePtr const table = GetProjectData(*s_project).GetVarDS(1, nullptr, batch, phase);
        EXPECT_EQ(table ? table->Columns() : 0, columns.Size());
        return columns.Size();
    };
    EXPECT_EQ(rows(-1, -1), 345);
    EXPECT_EQ(rows(-1, 1), 105);
    EXPECT_EQ(rows(-1, 2), 240);
    EXPECT_EQ(rows(1, -1), 9);
    EXPECT_EQ(rows(1, 1), 3);
    EXPECT_EQ(rows(1, 2), 6);
    EXPECT_EQ(rows(31, 1), 0);
    EXPECT_EQ(rows(1, 3), 0);
}

TEST(BatchLevel, OtherKindsAreNoModelsOfEvolution) {
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "kinds.dsp");
    project->AddDataSet(TableOf(ManyBatches(1, 5)));
    for (auto const type : {ModelTypeE::PCA, ModelTypeE::O2PLS})
        EXPECT_THROW(AddEvolution(*project, {}, 1, type), NCError) << type;
    EXPECT_THROW(AddEvolution(*project, {.points = -1}), NCError);
    EXPECT_EQ(project->GetNumberOfModels(), 0);
}

// A batch that lacks a phase does not hide the order of the others.
TEST(BatchLevel, PhasesInTheirOrder) {
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "phases.dsp");
    project->AddDataSet(TableOf("batch,phase,x,time\nA,heat,1,1\nA,cool,2,2\nB,fill,1,1\nB,heat,2,2\nB,hold,3,3\n"
                                "B,cool,4,4\nC,cool,4,4\nC,empty,5,5\n"));
    EXPECT_EQ(project->GetDataSetInfo(1)->phases, (std::vector<std::string>{"fill", "heat", "hold", "cool", "empty"}));
}

} // namespace
} // namespace small
