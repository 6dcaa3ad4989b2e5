// Qualitative variables, discriminant models, and how well these tell classes apart.

#include "platform/project/NCModel.h"
#include "platform/text/Exception.h"
#include "tests/engine/SmallProject.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>

namespace {

using namespace small;

class Qualitative : public testing::Test {
protected:
    Qualitative() : m_project(Project::Create(m_folder / "levels.dsp")) {}

    std::vector<float> Values(std::string const &text, ProjectVector::VectorTypeEnum type) const {
        TablePtr const table = ProjectDataUtilities::CreateProjectData(*m_project).GetProjectData(text, type);
        auto const values = table ? table->GetMatrix().Values() : std::span<float const>();
        return {values.begin(), values.end()};
    }
    std::vector<std::string> XNames(int model) const {
        std::vector<std::string> names;
        for (ColumnTerm const &term : m_project->GetModel(model)->GetXColumnTerms())
            names.push_back(term.GetPrimaryName(m_project->GetVariables()));
        return names;
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project;
};

char const *const coloured = "id,colour,x,y\na,red,1,1\nb,blue,2,3\nc,,4,2\nd,red,3,5\ne,blue,6,4\nf,green,5,7\n";

TEST_F(Qualitative, MakesATermOfEachLevel) {
    m_project->AddDataSet(Read(coloured));
    ModelRequest request{.type = ModelTypeE::PLS, .responses = {"y"}, .qualitative = {"colour"}};
    request.excluded = {"f"};
    request.products = {{"x", "colour(red)"}};
    request.components = 1;
    request.crossValidationGroups = 0;
    m_project->AddModel(request);
    EXPECT_EQ(XNames(1), (std::vector<std::string>{"x", "colour(red)", "colour(blue)", "x*colour(red)"}));
    // Observations that have been there before, of other levels now; of an unknown one, and of none.
    m_project->AddPredictions(Read("id,colour,x\na,blue,2\nb,red,3\nf,green,4\nq,,5\n"));
    EXPECT_EQ(m_project->MatchVariables(1, 2).unknownLevels, std::vector<std::string>{"colour(green)"});
    EXPECT_EQ(m_project->MatchVariables(1, 2).found, 2);
    auto const expectFigures = [&] {
        ExpectFigures(*m_project,
                      {{"XVar M1,0,2,0,1,1", Scores, {1, 0, -99, 1, 0}, "M1.XVar(colour(red))"},
                       {"XVar M1,0,3,0,1,1", Scores, {0, 1, -99, 0, 1}, "M1.XVar(colour(blue))"},
                       {"XVarPS M1,0,2,0,1,1", Scores, {0, 1, -99, -99}, "M1.XVarPS(colour(red))"},
                       {"Xavg M1,0,0,0", Loadings, {3.2, 0.5, 0.5, Values("Xavg M1,0,0,0", Loadings).at(3)}}});
    };
    expectFigures();

    // Further data sets, whose variables may have the name, and further levels leave what is there.
    ColumnTerms const before = m_project->GetModel(1)->GetXColumnTerms();
    m_project->AddDataSet(Read("id,shape,colour,new\na,round,1,1\nb,flat,2,5\nc,round,4,2\nd,flat,4,3\n"));
    m_project->AddModel({.type = ModelTypeE::PLS, .dataSet = 3, .responses = {"shape"}, .components = 1});
    request.excluded = {"a", "d"};
    request.products = {};
    request.responses = {"colour"};
    request.qualitative = {};
    m_project->AddModel(request);
    for (bool const reopened : {false, true}) {
        if (reopened) {
            m_project.reset();
            m_project = Project::OpenToRead(m_folder / "levels.dsp");
        }
        EXPECT_EQ(m_project->GetModel(1)->GetXColumnTerms(), before);
        EXPECT_EQ(XNames(2), (std::vector<std::string>{"colour", "new"}));
        EXPECT_NE(m_project->GetModel(2)->GetXColumnTerms()[1].GetMotherVariable(1), before[2].GetMotherVariable(1));
        ColumnTerms const &colours = m_project->GetModel(3)->GetYColumnTerms();
        EXPECT_EQ(colours[1], before[3]); // blue comes first here
        EXPECT_EQ(colours[2].GetQualSetting(1), 3);
        EXPECT_EQ(m_project->GetModelInfo(3)->classOrPhaseNames, (std::vector<std::string>{"blue", "green"}));
        expectFigures();
    }
}

TEST_F(Qualitative, TellsWhatItCannotUse) {
    m_project->AddDataSet(Read("id,one,two,x,y\na,r,p,1,2\nb,r,q,2,1\nc,r,q,4,3\nd,,s,3,5\n"));
    struct {
        char const *expected;
        ModelRequest request;
    } const cases[] = {
        {"\"one\" has 1 different texts for the 3 observations", {.type = ModelTypeE::PLS, .responses = {"one"}}},
        {"\"id\" has 4 different texts", {.type = ModelTypeE::PLS, .responses = {"id"}}},
        {"\"x\" is a variable of data set 1", {.type = ModelTypeE::PLS, .responses = {"y"}, .qualitative = {"x"}}},
        {"\"x\" is a variable of data set 1", {.type = ModelTypeE::PLSDA, .classes = "x"}},
        {"no identifier \"three\"", {.type = ModelTypeE::PLSDA, .classes = "three"}},
        {"and no other response", {.type = ModelTypeE::PLSDA, .responses = {"two"}}},
        {"\"two\" is named twice", {.type = ModelTypeE::PLS, .responses = {"two"}, .qualitative = {"two"}}},
        {"\"two\" of the model",
         {.type = ModelTypeE::PLS,
          .responses = {"two"},
          .transformations = {{"two", {engine::VariableTransformation::Log}}}}},
    };
    for (auto const &[expected, request] : cases)
        try {
            m_project->AddModel(request);
            ADD_FAILURE() << "no error: " << expected;
        } catch (NCError const &error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(expected));
        }
    m_project->AddModel({.type = ModelTypeE::PLS, .responses = {"y"}, .components = 1});
    EXPECT_THROW(m_project->ClassesOf(1), NCError);
}

// The example with the cultivar of each wine, as text and as 0/1 columns.
std::string Wines() {
    std::ifstream file(SOURCE_DIR "/examples/wine.csv");
    std::ostringstream text;
    std::string line;
    std::getline(file, line);
    text << line << ",Cultivar,is1,is2,is3\n";
    for (int row = 1; std::getline(file, line); ++row)
        text << line << (row <= 59 ? ",Barolo,1,0,0\n" : row <= 130 ? ",Grignolino,0,1,0\n" : ",Barbera,0,0,1\n");
    return text.str();
}

// A discriminant model is one of 0/1 columns.
TEST_F(Qualitative, TellsWinesApart) {
    std::string const wines = Wines();
    m_project->AddDataSet(Read(wines.c_str()));
    for (bool const isOrthogonal : {false, true}) {
        ModelRequest request{.type = isOrthogonal ? ModelTypeE::OPLS : ModelTypeE::PLSDA, .classes = "Cultivar"};
        request.excluded = {"is1", "is2", "is3", "o3", "o100"};
        request.components = 2;
        request.xOrthogonal = isOrthogonal ? 1 : 0;
        ModelRequest plain = request;
        plain.type = isOrthogonal ? ModelTypeE::OPLS : ModelTypeE::PLS;
        plain.classes = {};
        plain.responses = {"is1", "is2", "is3"};
        plain.excluded = {"o3", "o100"};
        int const number = m_project->AddModel(request);
        std::string const model = "M" + std::to_string(number);
        std::string const other = "M" + std::to_string(m_project->AddModel(plain));
        for (auto const &[name, axis] :
             {std::pair("p ", Loadings), {"w* ", Loadings}, {"VIP ", Loadings}, {"t ", Scores}, {"DModX ", Scores}}) {
            std::vector<float> const expected = Values(name + other + ",2,0,0", axis);
            EXPECT_FALSE(expected.empty()) << name;
            EXPECT_EQ(Values(name + model + ",2,0,0", axis), expected) << name;
        }
        int counts[2][3][3] = {};
        for (int by = 0; by < 2; ++by) {
            std::vector<std::vector<float>> predicted;
            for (int term = 1; term <= 3; ++term) {
                std::string const arguments = ",2," + std::to_string(term) + ",0,1,1";
                predicted.push_back(Values((by == 0 ? "YPred " : "YPredcv ") + other + arguments, Scores));
                EXPECT_EQ(Values((by == 0 ? "YPred " : "YPredcv ") + model + arguments, Scores), predicted.back());
            }
            for (std::size_t row = 0; row < predicted[0].size(); ++row) {
                std::array const y{predicted[0][row], predicted[1][row], predicted[2][row]};
                // Two wines are left out.
                ++counts[by][row < 58 ? 0 : row < 128 ? 1 : 2][std::ranges::max_element(y) - y.begin()];
            }
        }
        engine::Classification const classes = m_project->ClassesOf(number);
        EXPECT_EQ(classes.classes, (std::vector<std::string>{"Barolo", "Grignolino", "Barbera"}));
        EXPECT_FALSE(classes.predicted);
        for (std::size_t i = 0; i < 3; ++i) {
            for (std::size_t j = 0; j < 3; ++j) {
                EXPECT_EQ(classes.fitted.table.Count(i, j), counts[0][i][j]);
                EXPECT_EQ(classes.crossValidated->table.Count(i, j), counts[1][i][j]);
            }
            EXPECT_GT(classes.crossValidated->curves[i].area, 0.99);
        }
        EXPECT_EQ(classes.fitted.table.Size(), 176);
        EXPECT_GT(classes.fitted.table.Count(0, 0), 55);
    }
    m_project->AddPredictions(Read(wines.c_str()));
    EXPECT_EQ(m_project->ClassesOf(1).predicted->table.Size(), 178);
}

TEST(Classification, CountsAndMeasures) {
    engine::ConfusionTable table(3);
    for (auto const &[is, as, count] : {std::array{0, 0, 4}, {0, 1, 1}, {1, 1, 3}, {1, 0, 2}})
        for (int i = 0; i < count; ++i)
            table.Add(static_cast<std::size_t>(is), static_cast<std::size_t>(as));
    EXPECT_EQ(table.Misclassified(), 3);
    EXPECT_DOUBLE_EQ(table.Sensitivity(0), 0.8);
    EXPECT_DOUBLE_EQ(table.Specificity(0), 0.6);
    EXPECT_DOUBLE_EQ(table.Specificity(2), 1);
    EXPECT_TRUE(std::isnan(table.Sensitivity(2)));
}

TEST(Classification, FollowsRocCurves) {
    double const nan = std::numeric_limits<double>::quiet_NaN();
    struct {
        std::vector<double> scores;
        std::vector<bool> isOfClass;
        std::vector<engine::RocCurve::Point> points;
        double area;
    } const cases[] = {
        {{3, 1, 2, 0}, {true, false, true, false}, {{0, 0}, {0, 0.5}, {0, 1}, {0.5, 1}, {1, 1}}, 1},
        {{1, 2, nan}, {true, false, true}, {{0, 0}, {1, 0}, {1, 1}}, 0},
        {{5, 5, 5, 5}, {true, false, true, false}, {{0, 0}, {1, 1}}, 0.5},
        {{2, 1, 1, 0}, {true, true, false, false}, {{0, 0}, {0, 0.5}, {0.5, 1}, {1, 1}}, 0.875},
        {{2, 1}, {true, true}, {}, nan},
    };
    for (auto const &[scores, isOfClass, points, area] : cases) {
        engine::RocCurve const curve = engine::RocOf(scores, isOfClass);
        EXPECT_EQ(curve.points, points);
        EXPECT_EQ(std::isnan(curve.area) ? -1 : curve.area, std::isnan(area) ? -1 : area);
    }
}

} // namespace
