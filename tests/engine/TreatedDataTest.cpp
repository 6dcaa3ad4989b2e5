#include "platform/text/Exception.h"
#include "tests/engine/SmallProject.h"

#include <gmock/gmock.h>

#include <cmath>

// What is done to data before a model sees it, and undone in what it tells: transformations, local centring, products.

namespace {

using namespace small;
using Kind = engine::VariableTransformation;

class TreatedData : public testing::Test {
protected:
    TreatedData() : m_project(Project::Create(m_folder / "treated.dsp")) {}

    TablePtr Table(std::string const &text, ProjectVector::VectorTypeEnum type) const {
        return ProjectDataUtilities::CreateProjectData(*m_project).GetProjectData(text, type);
    }
    // What each of the arguments makes of a failing call.
    void ExpectError(ModelRequest const &request, char const *expected) const {
        try {
            m_project->AddModel(request);
            ADD_FAILURE() << "no error: " << expected;
        } catch (NCError const &error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(expected));
        }
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project;
};

// Of unit variance, then weighed: the variance of a scaled variable is that of its weight and of its block.
TEST_F(TreatedData, WeighsVariablesAndBlocks) {
    m_project->AddDataSet(Read("id,a,b,c,d,y\n1,1,2,8,1,1\n2,2,1,6,3,3\n3,5,3,7,2,2\n4,4,9,1,2,5\n5,3,3,2,7,4\n"));
    ModelRequest request;
    request.type = ModelTypeE::PLS;
    request.responses = {"y"};
    request.components = 1;
    request.weights = {{"b", 0.5}, {"y", 2}};
    request.blocks = {{"first", {"a", "b", "c"}}};
    request.squares = true;
    for (bool const hard : {false, true}) {
        request.hardBlocks = hard;
        int const model = m_project->AddModel(request);
        double const inThree = hard ? 1.0 / 3 : 1 / std::sqrt(3.0);
        std::vector<double> const variances{inThree, inThree / 4, inThree, 1, 1, 1, 1, 1};
        TablePtr const x = GetProjectData(*m_project).GetXVar(model, false, false, nullptr, -1);
        ASSERT_EQ(x->Rows(), 8) << "and squares, which are in no block";
        for (int term = 1; term <= 8; ++term) {
            double squares = 0;
            for (float const value : x->GetMatrix().Row(term))
                squares += static_cast<double>(value) * value;
            EXPECT_NEAR(squares / 4, variances[static_cast<std::size_t>(term - 1)], 1e-5) << hard << ' ' << term;
        }
        ExpectFigures(
            *m_project,
            {{"YVar M" + std::to_string(model) + ",0,1,0,0,0", Scores, {-2.529822, 0, -1.264911, 2.529822, 1.264911}}});
    }
    // The lags of a variable count in its block.
    request.squares = false;
    request.weights = {};
    request.lags = {{"a", 1, 2}};
    int const lagged = m_project->AddModel(request);
    double squares = 0;
    TablePtr const x = GetProjectData(*m_project).GetXVar(lagged, false, false, nullptr, -1);
    for (float const value : x->GetMatrix().Row(2))
        squares += static_cast<double>(value) * value;
    EXPECT_NEAR(squares / 4, 1.0 / 5, 1e-5);
    request.lags = {};
    for (auto const &[blocks, message] :
         std::vector<std::pair<std::map<std::string, std::vector<std::string>>, std::string>>{
             {{{"one", {"a", "b"}}, {"two", {"b"}}}, "Variable \"b\" is in block \"one\" and again in \"two\"."},
             {{{"one", {"y"}}}, "\"y\" in block \"one\" is no X variable of the model."}}) {
        request.blocks = blocks;
        try {
            m_project->AddModel(request);
            ADD_FAILURE() << message;
        } catch (NCError const &error) {
            EXPECT_EQ(error.what(), message);
        }
    }
}

// One variable with each transformation, and one component: the values after the transformation, what the model
// predicts in these and in the units of the data, and what is left in the latter.
TEST_F(TreatedData, GoesThroughEachTransformationAndBack) {
    m_project->AddDataSet(Read("id,log,neglog,logit,exp,power,none,y\na,45,0.1,10,1,3,5,10\nb,95,0.02,35,4,8,3,80\n"
                               "c,145,0.05,60,9,15,6,400\nd,20,0.4,25,2,24,2,30\ne,70,0.01,90,6,0,9,900\n"));
    ModelRequest request;
    request.type = ModelTypeE::PLS;
    request.responses = {"y"};
    request.components = 1;
    request.transformations = {{"log", {Kind::Log, 2, 10}},         {"neglog", {Kind::NegLog, 1, 0}},
                               {"logit", {Kind::Logit, 0, 100}},    {"exp", {Kind::Exponential, 0.1, 0}},
                               {"power", {Kind::Power, 1, 1, 0.5}}, {"y", {Kind::Log, 1, 0}}};
    m_project->AddModel(request);
    struct {
        std::vector<double> transformed, predicted, predictedSource, residual;
    } const cases[] = {
        {{2.000000, 2.301030, 2.477121, 1.698970, 2.176091},
         {1.968640, 2.124530, 2.304456, 1.845124, 2.410463},
         {41.516778, 61.603917, 95.792034, 30.002108, 123.656796},
         {3.483222, 33.396083, 49.207966, -10.002108, -53.656796}},
        {{1.000000, 1.698970, 1.301030, 0.397940, 2.000000},
         {0.905297, 1.265465, 1.681166, 0.619928, 1.926083},
         {0.124366, 0.054267, 0.020837, 0.239923, 0.011855},
         {-0.024366, -0.034267, 0.029163, 0.160077, -0.001855}},
        {{-0.954243, -0.268845, 0.176091, -0.477121, 0.954243},
         {-0.555904, -0.130650, 0.360173, -0.892843, 0.649349},
         {21.754739, 42.535389, 69.621297, 11.346291, 81.685470},
         {-11.754739, -7.535389, -9.621297, 13.653709, 8.314530}},
        {{1.105171, 1.491825, 2.459603, 1.221403, 1.822119},
         {1.320090, 1.608707, 1.941825, 1.091412, 2.138087},
         {2.776999, 4.754307, 6.636282, 0.874723, 7.599113},
         {-1.776999, -0.754307, 2.363718, 1.125277, -1.599113}},
        {{2.000000, 3.000000, 4.000000, 5.000000, 1.000000},
         {3.595292, 3.022462, 2.361308, 4.049158, 1.971780},
         {11.926123, 8.135275, 4.575778, 15.395684, 2.887915},
         {-8.926123, -0.135275, 10.424222, 8.604316, -2.887915}},
        {{5.000000, 3.000000, 6.000000, 2.000000, 9.000000},
         {3.380915, 4.938908, 6.737124, 2.146481, 7.796571},
         {3.380915, 4.938908, 6.737124, 2.146481, 7.796571},
         {1.619085, -1.938908, -0.737124, -0.146481, 1.203429}},
    };
    int variable = 0;
    for (auto const &row : cases) {
        std::string const number = std::to_string(++variable);
        ExpectFigures(*m_project, {{"XVar M1,0," + number + ",0,1,0", Scores, row.transformed},
                                   {"XVarPred M1,1," + number + ",0,1,0", Scores, row.predicted},
                                   {"XVarPred M1,1," + number + ",0,1,1", Scores, row.predictedSource},
                                   {"XVarRes M1,1," + number + ",0,1,1", Scores, row.residual}});
    }
    ExpectFigures(*m_project,
                  {{"XVar M1,0,3,0,1,1", Scores, {10, 35, 60, 25, 90}},
                   {"XVar M1,0,4,0,0,0", Scores, {-0.945464, -0.235422, 1.541782, -0.732018, 0.371122}},
                   {"YPred M1,1,1,0,1,1", Scores, {29.879599, 92.893759, 343.995562, 12.163734, 743.931088}},
                   {"YPred M1,1,1,0,1,0", Scores, {1.475375, 1.967987, 2.536553, 1.085067, 2.871533}},
                   {"RMSEE M1,1,0,0", Loadings, {97.251534}}});
    // Predictions of a response that falls: its limits do not change places. What has no logarithm is shown as it is.
    request.transformations["y"] = {Kind::NegLog, 1, 0};
    m_project->AddModel(request);
    m_project->AddPredictions(Read("id,log,none,y\np,45,5,12\nq,95,3,-7\n"));
    for (auto const &[lower, upper] :
         {std::pair("SerrL M2,1,1,0", "SerrU M2,1,1,0"), std::pair("SerrLPS M2,1,1,0", "SerrUPS M2,1,1,0"),
          std::pair("YPredPSConfInt- M2,1,1,0,1,1", "YPredPSConfInt+ M2,1,1,0,1,1")})
        EXPECT_LT(Table(lower, Scores)->GetMatrix()(1, 2), Table(upper, Scores)->GetMatrix()(1, 2)) << upper;
    GetProjectData const statistics(*m_project);
    EXPECT_EQ(statistics.GetYVarUntreatedPS(2, nullptr, -1)->GetMatrix()(1, 2), -7);
    EXPECT_TRUE(IsMissing(statistics.GetYVarPS(2, true, true, nullptr, -1, false)->GetMatrix()(1, 2)));
    // What the way back does not reach is missing: the logarithm of a negative prediction.
    m_project->AddPredictions(Read("id,log,neglog,logit,exp,power,none\np,-4,9,1,-20,99,-9\nq,-6,9,1,-20,99,-9\n"),
                              true);
    EXPECT_LT(Table("XVarPredPS M1,1,4,0,1,0", Scores)->GetMatrix()(1, 1), 0);
    EXPECT_TRUE(IsMissing(Table("XVarPredPS M1,1,4,0,1,1", Scores)->GetMatrix()(1, 1)));
    // So is, in any units, what is outside of the domain.
    for (char const *const text : {"XVarPS M1,0,1,0,1,1", "XVarPS M1,0,1,0,1,0", "XVarPS M1,0,1,0,0,0"})
        EXPECT_TRUE(IsMissing(Table(text, Scores)->GetMatrix()(1, 2)) &&
                    !IsMissing(Table(text, Scores)->GetMatrix()(1, 1)))
            << text;
}

// A variable without variance has no part in what models tell of each variable, and the fit says which it is. It is
// constant in each site only where there are centre values.
TEST_F(TreatedData, TellsConstantTerms) {
    m_project->AddDataSet(Read("id,site,x1,x2,x3,y\na,n,1,0.1,7,3\nb,n,3,0.1,7,5\nc,s,11,0.7,7,9\nd,s,14,0.7,7,14\n"
                               "e,n,2,0.1,7,8\nf,s,9,0.7,7,1\n"));
    m_project->SetLocalCentring(m_project->MeansOfGroups({1, "site", {"x2"}, {{"x2", {Kind::Log, 1, 0}}}}));
    ModelRequest request;
    request.components = 1;
    request.crossValidationGroups = 3;
    request.transformations = {{"x2", {Kind::Log, 1, 0}}};
    m_project->AddModel(request);
    EXPECT_EQ(m_project->QualityOf(1).constantTerms, (std::vector<std::string>{"x2", "x3"}));
    request.localCentring = false;
    request.scaling = ModelRequest::None; // and then x3 takes part as it is, but varies no more
    m_project->AddModel(request);
    EXPECT_EQ(m_project->QualityOf(2).constantTerms, std::vector<std::string>{"x3"});
    for (std::string const model : {"M1", "M2"})
        for (char const *const name : {"R2VX", "R2VXcum", "R2VXAdj", "Q2VX", "Q2VXcum", "S2VX", "MPowX", "p(corr)"}) {
            TablePtr const table = Table(name + (" " + model) + ",1,0,0", Loadings);
            EXPECT_TRUE(IsMissing(table->GetMatrix()(1, 3)) && !IsMissing(table->GetMatrix()(1, 1))) << model << name;
        }
}

char const *const sites = "id,site,x1,x2,y\na,n,1,10,3\nb,n,3,1000,5\nc,s,11,100,9\nd,s,14,1,14\ne,,4,10,6\n";

// Means by site: x1 2 and 12.5, the logarithms of x2 2 and 1, y 4 and 11.5.
TEST_F(TreatedData, IsCentredByGroups) {
    m_project->AddDataSet(Read(sites));
    engine::GroupMeansRequest means{1, "site", {"x1", "x2"}, {{"x2", {Kind::Log, 1, 0}}}};
    m_project->SetLocalCentring(m_project->MeansOfGroups(means));
    ModelRequest request;
    request.type = ModelTypeE::PLS;
    request.responses = {"y"};
    request.components = 1;
    request.scaling = ModelRequest::Centred;
    ExpectError(request, "The centre values of \"x2\" were made with another transformation");
    request.transformations = {{"x2", {Kind::Log, 1, 0}}};
    request.excluded = {"e"};
    m_project->AddModel(request);
    ExpectFigures(*m_project, {{"LocalCentering M1,0,0,0", Scores, {2, 2, 12.5, 12.5}, "M1.LocalCentering(x1)"},
                               {"XVar M1,0,1,0,0,0", Scores, {-1, 1, -1.5, 1.5}},
                               {"XVar M1,0,1,0,1,1", Scores, {1, 3, 11, 14}},
                               {"XVar M1,0,2,0,0,0", Scores, {-1, 1, 1, -1}},
                               {"XVar M1,0,2,0,1,0", Scores, {1, 3, 2, 0}},
                               {"Xavg M1,0,0,0", Loadings, {0, 0}}});
    // The way back adds the centre value of the row before the transformation is undone.
    for (int variable = 1; variable <= 2; ++variable) {
        std::string const arguments = "M1,1," + std::to_string(variable) + ",0,";
        TablePtr const predicted = Table("XVarPred " + arguments + "1,1", Scores);
        TablePtr const scaled = Table("XVarPred " + arguments + "0,0", Scores);
        TablePtr const residual = Table("XVarRes " + arguments + "1,1", Scores);
        TablePtr const observed = Table("XVar M1,0," + std::to_string(variable) + ",0,1,1", Scores);
        for (int row = 1; row <= 4; ++row) {
            double const g = scaled->GetMatrix()(1, row) + (variable == 1 ? (row < 3 ? 2 : 12.5) : (row < 3 ? 2 : 1));
            double const expected = variable == 1 ? g : std::pow(10, g);
            EXPECT_NEAR(predicted->GetMatrix()(1, row), expected, 1e-5 * std::abs(expected)) << arguments << row;
            EXPECT_NEAR(residual->GetMatrix()(1, row), observed->GetMatrix()(1, row) - expected,
                        1e-5 * (1 + std::abs(expected)));
        }
    }
    TablePtr const project = GetProjectData(*m_project).GetLocalCentering();
    EXPECT_EQ(project->GetRowName(2), "ProjectLocalCentering(x2)");
    EXPECT_EQ(project->GetColumnIDs().GetTitle() + ":" + project->GetColumnName(2), "Group:s");
    EXPECT_EQ(project->GetMatrix()(1, 2), 12.5f);

    // New rows are found in the model's groups by name; those of no group have their centred variables missing.
    auto const table = Read("id,site,x1,x2\np,s,11,100\nq,west,11,100\nr,,11,100\n");
    EXPECT_EQ(m_project->MatchVariables(1, table).unknownGroups, (std::vector<std::string>{"", "west"}));
    m_project->AddPredictions(table);
    ExpectFigures(*m_project, {{"XVarPS M1,0,1,0,0,0", Scores, {-1.5, -99, -99}},
                               {"XVarPS M1,0,1,0,1,1", Scores, {11, 11, 11}},
                               {"LocalCenteringPS M1,0,0,0", Scores, {2, 2, 12.5, 12.5}}});
    EXPECT_EQ(Table("tPS M1,1,0,0", Scores)->GetMatrix()(1, 1), Table("t M1,1,0,0", Scores)->GetMatrix()(1, 3));

    // The model keeps its values when those of the project change, and a model without them is centred as a whole.
    m_project->SetLocalCentring(engine::CentresInTable(Read("site,x1\ns,5\nn,\n"), "site"));
    EXPECT_EQ(m_project->GetModel(1)->GetCenterValues().variables.at(0).centres, (std::vector<float>{2, 12.5f}));
    m_project->AddModel(request);
    ExpectFigures(*m_project, {{"LocalCentering M2,0,0,0", Scores, {-99, -99, 5, 5}},
                               {"XVar M2,0,1,0,0,0", Scores, {-99, -99, -1.5, 1.5}}});
    request.localCentring = false;
    m_project->AddModel(request);
    EXPECT_EQ(Table("LocalCentering M3,0,0,0", Scores), nullptr);
    EXPECT_EQ(m_project->GetModel(3)->GetCenterValues().SizeVars(), 0);
    EXPECT_THROW(m_project->SetLocalCentring({"site", {"east"}, {{"x1", {1}}}}), NCError);
    m_project->SetLocalCentring({});
    EXPECT_EQ(m_project->GetLocalCentering().SizeVars(), 0);
}

// Scaled x1 is (-1, 0, 1), scaled x2 (0, 1, -1); their product is (0, 0, -1), the square of x1 (1, 0, 1).
TEST_F(TreatedData, HasSquareAndCrossTerms) {
    m_project->AddDataSet(Read("id,x1,x2,y\na,1,20,1\nb,2,30,4\nc,3,10,2\n"));
    m_project->AddDataSet(Read("id,7.5,8,y\na,1,20,1\nb,2,30,4\nc,3,10,2\n"));
    ModelRequest request;
    request.type = ModelTypeE::PLS;
    request.responses = {"y"};
    request.components = 1;
    request.crossValidationGroups = 0;
    request.products = {{"x2", "x1"}, {"x1", "x1"}};
    m_project->AddModel(request);
    double const s = std::sqrt(3.0);
    std::vector<double> const cross = {1 / s, 1 / s, -2 / s};
    ExpectFigures(*m_project, {{"Xavg M1,0,0,0", Loadings, {2, 20, -1 / 3.0, 2 / 3.0}},
                               {"Xws M1,0,0,0", Loadings, {1, 0.1, s, s}},
                               {"XVar M1,0,3,0,0,0", Scores, cross, "M1.XVar(x1*x2)"},
                               {"XVar M1,0,3,0,1,1", Scores, {0, 0, -1}},
                               {"XVar M1,0,4,0,1,1", Scores, {1, 0, 1}, "M1.XVar(x1*x1)"}});
    // Without units of the data their predictions are in those before scaling.
    EXPECT_EQ(Table("XVarPred M1,1,3,0,1,1", Scores)->GetMatrix(), Table("XVarPred M1,1,3,0,1,0", Scores)->GetMatrix());
    // New rows need the factors alone.
    m_project->AddPredictions(Read("id,x2,x1\np,10,3\n"));
    EXPECT_EQ(Table("tPS M1,1,0,0", Scores)->GetMatrix()(1, 1), Table("t M1,1,0,0", Scores)->GetMatrix()(1, 3));
    EXPECT_EQ(m_project->GetWorkset(1)->GetVariables().size(), 3u);

    request.squares = request.crosses = true;
    m_project->AddModel(request);
    TablePtr const weights = Table("Xws M2,0,0,0", Loadings);
    std::string names;
    for (int column = 1; column <= weights->GetColumnIDs().Size(); ++column)
        names += weights->GetColumnName(column) + " ";
    EXPECT_EQ(names, "x1 x2 x1*x2 x1*x1 x2*x2 ");

    // A product has no identifier, even of numbers.
    request.dataSet = 2;
    request.products = {{"7.5", "8"}};
    request.squares = request.crosses = false;
    m_project->AddModel(request);
    ExpectFigures(*m_project, {{"VarID M3,0,1,0", Loadings, {7.5, 8, -99, -99}}});

    request.dataSet = 1;
    request.products = {{"x1", "y"}};
    ExpectError(request, "\"y\", a factor of a square or cross term, is no X variable");
    request.products = {{"x1"}};
    ExpectError(request, "has two factors at least, not 1");
}

} // namespace
