#include "catalogue/ProjectVectorHandler.h"
#include "navigation/DataSeriesUtilities.h"
#include "navigation/DefaultAxes.h"
#include "navigation/Transformations.h"
#include "navigation/VectorForms.h"
#include "platform/containers/Missing.h"
#include "platform/project/NCModel.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

namespace {

using namespace DataSeriesUtilities;
using Selection = SelectDataSeriesData;

TEST(VectorForms, HaveNames) {
    using Checker = CorrelationScaleChecker;
    struct {
        char const *name, *nonCorr, *corr;
        bool isCorr;
        char const *error;
        bool isError;
    } const cases[] = {{"p", "p", "p(corr)", false, "pcvSE", false},
                       {"p(corr)", "p", "p(corr)", true, "", false},
                       {"w*", "w*", "p(corr)", false, "w*cvSE", false},
                       {"w*c", "w*c", "pc(corr)", false, "w*ccvSE", false},
                       {"pc(corr)", "pc", "pc(corr)", true, "", false},
                       {"poso", "poso", "poso(corr)", false, "", false},
                       {"tPS", "tPS", "tPS", false, "tPScvSE", false},
                       {"Num", "Num", "Num", false, "", false},
                       {"wcvSE", "wcvSE", "wcvSE", false, "", true},
                       {"CoeffCSLag", "CoeffCSLag", "CoeffCSLag", false, "CoeffCScvSELag", false},
                       {"RMSEE", "RMSEE", "RMSEE", false, "", false}};
    for (auto const &row : cases) {
        EXPECT_EQ(Checker::ToNonCorr(row.name), row.nonCorr);
        EXPECT_EQ(Checker::ToCorr(row.name), row.corr);
        EXPECT_EQ(Checker::IsCorrelationScaledVector(row.name), row.isCorr) << row.name;
        EXPECT_EQ(ToSEVector(row.name), row.error);
        EXPECT_EQ(IsCVSEVector(row.name), row.isError) << row.name;
    }
    // Every standard error of the catalogue belongs to a vector of it.
    ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
    for (ProjectVector const *const vector : handler) {
        std::string const error = ToSEVector(vector->GetName());
        EXPECT_TRUE(error.empty() || handler.FindVector(error.c_str(), V::VectorTypeNone, OfModel, nullptr)) << error;
        EXPECT_EQ(IsCVSEVector(vector->GetName()), std::string(vector->GetName()).find("cvSE") != std::string::npos)
            << vector->GetName();
    }
    World const world;
    auto const model = boost::dynamic_pointer_cast<ProjectionModel const>(world.project->GetModel(1));
    EXPECT_EQ(GetDF("pcvSE", *model, 1), 0.0);
    EXPECT_EQ(GetDF("p", *model, 1), missingValue);
}

// Vectors by a letter, of model 1 unless told otherwise: p loadings, r and t correlation-scaled ones and scores of
// those, D and E distances in X and Y, o orthogonal scores of model 2, n the counting row, v and w a variable of data
// set 1, and of the prediction set, q and Q predicted observations 5 and 1, c a predicted contribution, a, b and B
// batches 2, 3 and the average, A predicted ones; x, X and k the X terms 1, 2 and 1 of model 2, y, Y the Y terms 1, 2,
// z both.
class SeriesQueries : public testing::Test {
protected:
    SeriesQueries() {
        for (auto const &[letter, traits, source, number] :
             std::initializer_list<std::tuple<char, VectorTraits, char const *, int>>{
                 {'p', {.name = "p", .components = 1}, "M1", 0},
                 {'r', {.name = "p(corr)", .components = 1}, "M1", 0},
                 {'t', {.name = "t(corr)", .components = 1}, "M1", 0},
                 {'D', {.name = "DModXPS+"}, "M1", 0},
                 {'E', {.name = "PModY"}, "M1", 0},
                 {'o', {.name = "to", .components = 2}, "M2", 0},
                 {'v', {.number = ObsOrVar, .data = OfSet}, "DS1", 1},
                 {'w', {.number = ObsOrVar, .data = OfPredSet, .obsPred = Predicted}, "PS", 5},
                 {'q', {.number = ObsOrVar, .obsPred = Predicted}, "M1", 5},
                 {'Q', {.number = ObsOrVar, .obsPred = Predicted}, "M1", 1},
                 {'c', {.obsPred = Predicted, .contribution = 1}, "M1", 0},
                 {'a', {.type = Aligned, .number = Batch}, "M4", 2},
                 {'b', {.type = Aligned, .number = Batch}, "M4", 3},
                 {'B', {.type = Aligned, .number = Batch}, "M4", -1},
                 {'A', {.type = Aligned, .number = Batch, .obsPred = Predicted}, "M4", 1},
                 {'x', {.name = "x", .number = X}, "M1", 1},
                 {'X', {.name = "x", .number = X}, "M1", 2},
                 {'k', {.name = "x", .number = X}, "M2", 1},
                 {'y', {.name = "y", .number = Y}, "M1", 1},
                 {'Y', {.name = "y", .number = Y}, "M1", 2},
                 {'z', {.name = "z", .number = XY}, "M1", 1}}) {
            m_probes.push_back(std::make_unique<VectorProbe>(traits));
            m_data[letter] = world.Data(*m_probes.back(), source, Number(number, 1, number));
        }
        m_data['n'] = world.Data(*ProjectVectorHandler::Instance()->GetNumVector(Scores), "");
    }

    Selection Make(std::string const &letters) const {
        int const mode = (letters[0] != '-' ? 1 : 0) + (letters[1] != '-' ? 2 : 0);
        Selection selection(world.project, static_cast<Selection::Mode>(mode), V::VectorTypeNone, -1, V::ObsAndPred);
        selection.SetXAxis(m_data.at(letters[0] == '-' ? 'x' : letters[0]));
        selection.SetYAxis(m_data.at(letters[1] == '-' ? 'x' : letters[1]));
        for (char const letter : letters.substr(2))
            selection.AddSeries(m_data.at(letter), false);
        return selection;
    }

    World world;
    std::vector<std::unique_ptr<VectorProbe>> m_probes;
    std::map<char, ProjectVectorData> m_data;
};

TEST_F(SeriesQueries, TellWhatASelectionShows) {
    // Letters of what is true: c correlation-scaled, C with counting rows, p the prediction set can change, 1 and 2
    // models. Then all data types.
    struct {
        char const *text, *expected;
        int data;
    } const cases[] = {{"--", "p", 0},   {"--rt", "cCp1", 4}, {"n-r", "cp1", 4}, {"--rp", "p1", 4}, {"n-n", "p", 0},
                       {"--o", "p2", 4}, {"--v", "p", 1},     {"v-w", "p", 3},   {"--q", "p1", 4},  {"--Q", "1", 4},
                       {"--c", "1", 4},  {"--A", "", 4},      {"x-rk", "p12", 4}};
    for (auto const &row : cases) {
        Selection const selection = Make(row.text);
        std::string const found = std::string(IsCorrelationScaled(&selection) ? "c" : "") +
                                  (IsPurelyCorrelationScaled(&selection) ? "C" : "") +
                                  (CanChangePredSet(&selection) ? "p" : "") + (ContainsModel(selection, 1) ? "1" : "") +
                                  (ContainsModel(selection, 2) ? "2" : "");
        EXPECT_EQ(found, row.expected) << row.text;
        EXPECT_EQ(GetDataType(&selection), row.data) << row.text;
    }
    EXPECT_EQ(IsDistanceToModel(m_data['D']), true);
    EXPECT_EQ(IsDistanceToModelY(m_data['D']), false);
    EXPECT_EQ(IsDistanceToModelY(m_data['E']) && IsDistanceToModel(m_data['E']), true);
    EXPECT_EQ(IsDistanceToModel(m_data['p']), false);
}

TEST_F(SeriesQueries, TellTermsOfSeries) {
    // Whether all are about X, and about Y; then whether the numbers, and the vectors, are equal.
    struct {
        char const *text;
        bool axes;
        char const *x, *y;
    } const cases[] = {{"--", true, "111", "111"},    {"--xx", false, "111", "011"}, {"--xX", false, "101", "011"},
                       {"--xk", false, "110", "011"}, {"y-xx", false, "111", "011"}, {"x-xn", true, "111", "011"},
                       {"y-xx", true, "011", "011"},  {"--yY", true, "011", "101"},  {"--zy", true, "011", "110"},
                       {"--Yz", true, "011", "100"}};
    for (auto const &row : cases) {
        Selection const selection = Make(row.text);
        bool numbers = false, vectors = false;
        bool const x = HasXVariablesSelected(&selection, numbers, vectors, row.axes);
        EXPECT_EQ(x ? std::string("1") + (numbers ? '1' : '0') + (vectors ? '1' : '0') : "011", row.x) << row.text;
        bool const y = HasYVariablesSelected(&selection, numbers, vectors, row.axes);
        EXPECT_EQ(y ? std::string("1") + (numbers ? '1' : '0') + (vectors ? '1' : '0') : "011", row.y) << row.text;
    }
}

TEST_F(SeriesQueries, TellBatchesAndTimes) {
    std::vector<int> batches{9};
    Selection selection = Make("--baB");
    selection.SetVectorType(Aligned);
    EXPECT_TRUE(GetAllSelectedBatches(&selection, batches));
    EXPECT_EQ(batches, (std::vector{3, 2, -1}));
    EXPECT_TRUE(CanUseTimeVector(&selection));
    selection = Make("--x");
    selection.SetVectorType(Aligned);
    EXPECT_FALSE(GetAllSelectedBatches(&selection, batches));

    TransformationData transformation;
    transformation.SetTransformationType(TransformationData::EWMA);
    for (auto const &[type, size, expected] : std::initializer_list<std::tuple<V::VectorTypeEnum, int, bool>>{
             {Scores, 1, true}, {Scores, 2, false}, {Lag, 1, false}, {PerComponent, 1, false}, {PerBatch, 1, false}}) {
        transformation.SetSampleSize(size);
        selection.SetVectorType(type);
        selection.SetTransformationData(transformation);
        EXPECT_EQ(CanUseTimeVector(&selection), expected) << type << ' ' << size;
    }

    selection = Make("--v");
    EXPECT_FALSE(IsBatchLevelData(&selection));
    VariableInfo point(3);
    point.maturity = 0.5f;
    world.project->variables.SetInfo(point);
    EXPECT_TRUE(IsBatchLevelData(&selection));
}

TEST_F(SeriesQueries, TellVectors) {
    for (auto const &[name, expected] : std::initializer_list<std::pair<char const *, char const *>>{
             {"tPS", "t"}, {"DModXPS+", "DModX+"}, {"Date/Time-PS", "Date/Time"}, {"tPScvSE", "tcvSE"}, {"p", "p"}})
        EXPECT_EQ(GetNameWithoutPS(name), expected);

    VectorProbe const limits{{.name = "Q2cum", .flags = "m"}};
    m_data['m'] = m_data['M'] = world.Data(limits, "M1");
    m_data['m'].multiplier1 = 3.0;
    m_data['m'].multiplier2 = -2.0;
    // The largest and the smallest multiplier; whether explained variation alone is shown, and a contribution.
    for (auto const &[text, largest, smallest, isR2, isContribution] :
         std::initializer_list<std::tuple<char const *, double, double, bool, bool>>{{"--", -99, -99, false, false},
                                                                                     {"--M", -99, -99, true, false},
                                                                                     {"p-mMn", 3, -2, true, false},
                                                                                     {"m-p", 3, -2, false, false},
                                                                                     {"c-m", 3, -2, true, true}}) {
        Selection const selection = Make(text);
        EXPECT_EQ(GetMaxMultiplierValue(&selection), largest) << text;
        EXPECT_EQ(GetMinMultiplierValue(&selection), smallest) << text;
        EXPECT_EQ(IsOnlyR2Q2Series(&selection), isR2) << text;
        EXPECT_EQ(IsContribution(&selection), isContribution) << text;
    }
    // What can be scaled by its component, and normalised.
    for (auto const &[text, byShare, byLength] : std::initializer_list<std::tuple<char const *, bool, bool>>{
             {"--pv", true, true}, {"--o", true, false}, {"--x", false, false}, {"n-v", false, false}}) {
        Selection const selection = Make(text);
        EXPECT_EQ(CanApplyR2XTransformation(&selection), byShare) << text;
        EXPECT_EQ(CanApplyNormlizeTransformation(&selection), byLength) << text;
    }
    world.project->Info(3).dataSets = {17, 4, 18};
    EXPECT_EQ(GetBaseDatasets(*world.project, 3), (std::vector{4, 7, 8}));
}

TEST_F(SeriesQueries, GetDefaultAxes) {
    world.project->variables.SetInfo(VariableInfo(4));
    world.project->variables.SetDefaultTimeVariable(4); // of model 1 and data set 1
    world.project->Info(1).hasDateTime = true;
    struct {
        char series;
        char const *scores, *loadings; // the vector, its source and its number
    } const cases[] = {{'p', "Date/Time M1 4", "Num M1 -1"},
                       {'o', "Num M2 -1", "Num M2 -1"},
                       {'v', "VarDS DS1 4", "VarID DS1 3"},
                       {'w', "VarPS PS 4", "Num  -1"},
                       {'q', "Date/Time-PS M1 4", "Num M1 -1"}};
    Selection selection = Make("nn");
    auto const axis = [&] {
        ProjectVectorData const &data = selection.GetXAxis();
        return std::string(data.GetProjectVector()->GetName()) + ' ' + data.GetDataSourceName() + ' ' +
               std::to_string(static_cast<int>(data.GetNumberID()));
    };
    world.project->AddData(0, {5, 6}, {4, 5});
    world.project->AddData(1, {1}, {3, 4}).variableAliases = {1, 3};
    for (auto const &row : cases) {
        SetDefaultScoreNumAxis(&selection, m_data[row.series]);
        EXPECT_EQ(axis(), row.scores);
        SetDefaultLoadingNumAxis(&selection, m_data[row.series]);
        EXPECT_EQ(axis(), row.loadings);
    }

    selection = Make("xyXkz");
    SetXVariable(&selection, 1, 3);
    SetSelectedYVariable(&selection, 1, 2);
    std::string numbers;
    for (ProjectVectorData const *const data : selection.VectorsInUse())
        numbers += std::to_string(data->GetNumberID()) + std::to_string(data->GetNumberID2(nullptr, false)) + ' ';
    EXPECT_EQ(numbers, "31 21 31 11 32 ");
}

} // namespace
