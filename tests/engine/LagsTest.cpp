// Lagged terms, and what is asked of them by lag.

#include "platform/text/Exception.h"
#include "tests/engine/BatchProcess.h"

#include <gmock/gmock.h>

#include <array>

namespace {

using namespace small;
using Kind = engine::VariableTransformation;

// Rows of two measurements and a response, in batches of some lengths, and what was measured one and two rows earlier
// in the same batch written beside them by hand: the third and last column groups.
struct Process {
    std::vector<std::array<double, 3>> rows;
    std::vector<int> batches;

    Process(std::vector<int> const &lengths, unsigned seed) {
        std::mt19937 random(seed);
        std::normal_distribution<double> noise(10, 1);
        for (std::size_t batch = 0; batch < lengths.size(); ++batch)
            for (int i = 0; i < lengths[batch]; ++i) {
                auto const round = [](double value) { return std::round(value * 100) / 100; };
                double const before = i == 0 ? 10 : rows.back()[0];
                rows.push_back({round(noise(random)), round(noise(random)), round(before + noise(random) / 5)});
                batches.push_back(static_cast<int>(batch) + 1);
            }
    }

    std::string Earlier(std::size_t row, std::size_t variable, std::size_t lag) const {
        bool const isThere = row >= lag && batches[row - lag] == batches[row];
        std::ostringstream text;
        if (isThere)
            text << rows[row - lag][variable];
        return text.str();
    }

    // Row `leftOut` counts in no block.
    std::string Text(char const *lagged, std::size_t leftOut) const {
        std::ostringstream text;
        text << "id,batch,block,x1,x2,y" << lagged << '\n';
        std::size_t counted = 0;
        for (std::size_t row = 0; row < rows.size(); ++row) {
            text << 'o' << row << ",B" << batches[row] << ",g" << counted * 3 / (rows.size() - 1);
            counted += row == leftOut ? 0 : 1;
            for (double const value : rows[row])
                text << ',' << value;
            if (*lagged)
                text << ',' << Earlier(row, 0, 1) << ',' << Earlier(row, 0, 2) << ',' << Earlier(row, 2, 1);
            text << '\n';
        }
        return text.str();
    }
};

class Lags : public testing::Test {
protected:
    Lags() : m_project(Project::Create(m_folder / "lags.dsp")) {}

    TablePtr Table(std::string const &text, ProjectVector::VectorTypeEnum type) const {
        return ProjectDataUtilities::CreateProjectData(*m_project).GetProjectData(text, type);
    }
    std::vector<float> Values(std::string const &text, ProjectVector::VectorTypeEnum type) const {
        TablePtr const table = Table(text, type);
        auto const values = table ? table->GetMatrix().Values() : std::span<float const>();
        return {values.begin(), values.end()};
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project;
};

// The same data with earlier values as variables of their own give the same model: of the values in the same batch
// only, of left-out observations too, transformed like those that they are copies of, in blocks of neighbours.
TEST_F(Lags, AreCopiesOfColumns) {
    char const *const copies = ",x1.L1,x1.L2,y.L1";
    Process const process({7, 1, 9, 5}, 1), later({4, 6}, 2);
    m_project->AddDataSet(TableOf(process.Text("", 4), "plain"));
    m_project->AddDataSet(TableOf(process.Text(copies, 4), "copied"));
    m_project->AddPredictions(TableOf(later.Text(copies, 0), "new"));
    for (auto const type : {ModelTypeE::PLS, ModelTypeE::OPLS}) {
        ModelRequest lagged;
        lagged.type = type;
        lagged.responses = {"y"};
        lagged.excluded = {"o4"};
        lagged.components = 2;
        lagged.xOrthogonal = type == ModelTypeE::OPLS ? 1 : 0;
        lagged.crossValidationGroups = 3;
        lagged.transformations = {{"x1", {Kind::Log, 1, 0}}};
        lagged.lags = {{"y", 1, 1}, {"x1", 1, 2}, {"x1", 2, 2}};
        ModelRequest copied = lagged;
        copied.dataSet = 2;
        copied.lags = {};
        copied.crossValidationIdentifier = "block";
        copied.transformations["x1.L1"] = copied.transformations["x1.L2"] = {Kind::Log, 1, 0};
        std::string const model = "M" + std::to_string(m_project->AddModel(lagged));
        std::string const other = "M" + std::to_string(m_project->AddModel(copied));
        for (auto const &[name, axis] : {std::pair("t", Scores),
                                         {"DModX", Scores},
                                         {"YPred", Scores},
                                         {"CVGroups", Scores},
                                         {"YPredcv", Scores},
                                         {"tPS", Scores},
                                         {"DModXPS", Scores},
                                         {"YPredPS", Scores},
                                         {"p", Loadings},
                                         {"CoeffCS", Loadings},
                                         {"Xavg", Loadings}}) {
            std::string const arguments = ",1,1,0,1,1";
            std::vector<float> const expected = Values(name + (" " + other + arguments), axis);
            EXPECT_FALSE(expected.empty()) << name;
            EXPECT_EQ(Values(name + (" " + model + arguments), axis), expected) << name << ' ' << type;
        }
        TablePtr const loadings = Table("p " + model + ",1,0,0", Loadings);
        TablePtr const copiedLoadings = Table("p " + other + ",1,0,0", Loadings);
        for (int column = 1; column <= loadings->Columns(); ++column) {
            EXPECT_EQ(loadings->GetColumnName(column), copiedLoadings->GetColumnName(column));
            std::string const number = std::to_string(column);
            for (char const *const units : {",0,1,1", ",0,1,0", ",0,0,0"})
                for (char const *const name : {"XVar ", "XVarPS ", "XVarPred ", "XVarRes "})
                    EXPECT_EQ(Values(name + model + ",1," + number + units, Scores),
                              Values(name + other + ",1," + number + units, Scores))
                        << name << column << units;
        }
        EXPECT_TRUE(m_project->GetModelInfo(2 * (type == ModelTypeE::OPLS) + 1)->hasLaggedVariables);
        EXPECT_FALSE(m_project->GetModelInfo(2 * (type == ModelTypeE::OPLS) + 2)->hasLaggedVariables);
    }
    // They come back from the file.
    std::vector<float> const before = Values("DModX M1,1,0,0", Scores);
    m_project.reset();
    m_project = Project::OpenToWrite(m_folder / "lags.dsp");
    EXPECT_EQ(Values("DModX M1,1,0,0", Scores), before);
    EXPECT_EQ(m_project->MatchVariables(1, 3).missing, std::vector<std::string>{});
}

// A response by its own past, of which the prediction set tells too.
TEST_F(Lags, PredictAResponseByItself) {
    m_project->AddDataSet(Read("id,x,y\na,0,1\nb,3,2\nc,1,4\nd,5,8\ne,2,16\nf,9,32\n"));
    ModelRequest request{.type = ModelTypeE::PLS, .responses = {"y"}, .excluded = {"x"}, .lags = {{"y", 1, 1}}};
    request.components = 1;
    request.scaling = ModelRequest::None;
    m_project->AddModel(request);
    m_project->AddPredictions(Read("id,y\np,3\nq,5\nr,7\n"));
    ExpectFigures(*m_project,
                  {{"YPredPS M1,1,1,0,1,1", Scores, {-99, 6, 10}}, {"XVarPS M1,0,1,0,1,1", Scores, {-99, 3, 5}}});
    EXPECT_EQ(m_project->MatchVariables(1, 2).found, 1);
}

// By lag they are the figures of the terms: of x1, its first and its second lag, and of one of the response.
TEST_F(Lags, HaveTheFiguresOfTheirTerms) {
    m_project->AddDataSet(TableOf(Process({7, 9, 8, 12}, 3).Text("", 0)));
    for (auto const type : {ModelTypeE::PLS, ModelTypeE::OPLS}) {
        ModelRequest request{.type = type, .responses = {"y"}, .lags = {{"x1", 1, 2}, {"y", 3, 3}}, .components = 1};
        request.xOrthogonal = type == ModelTypeE::OPLS ? 1 : 0;
        std::string const model = " M" + std::to_string(m_project->AddModel(request)) + ",1,";
        std::vector<std::string> names{"p", "w", "w*", "VIP"};
        if (type == ModelTypeE::PLS)
            names.insert(names.end(), {"CoeffCS", "CoeffCScvSE"});
        else
            names.insert(names.end(), {"VIPpred", "VIPorth"});
        for (std::string const &name : names) {
            TablePtr const plain = Table(name + model + "1,0", Loadings);
            ASSERT_NE(plain, nullptr) << name;
            std::vector<float> of(plain->GetMatrix().Values().begin() + (name.starts_with("Coeff") ? 1 : 0),
                                  plain->GetMatrix().Values().end());
            TablePtr const first = Table(name + "Lag" + model + "1,0,1", ProjectVector::VectorTypeLag);
            ASSERT_NE(first, nullptr) << name;
            EXPECT_EQ(std::vector(first->GetMatrix().Values().begin(), first->GetMatrix().Values().end()),
                      (std::vector{of[0], of[2], of[3]}))
                << name;
            EXPECT_EQ(first->GetColumnName(1) + first->GetColumnName(2) + first->GetColumnName(3), "012");
            EXPECT_EQ(Values(name + "Lag" + model + "2,0,1", ProjectVector::VectorTypeLag), std::vector{of[4]}) << name;
        }
    }
    EXPECT_EQ(Table("pLag M1,1,1,0", ProjectVector::VectorTypeLag)->GetRowName(1), "M1.pLag[1](x1)");
    EXPECT_EQ(Table("CoeffCSLag M1,1,2,0,1", ProjectVector::VectorTypeLag)->GetRowName(1), "M1.CoeffCSLag[1](y)(y)");
}

// y(t) = own y(t - 1) + 0.5 x(t) + 0.3 x(t - 1) - 0.1 x(t - 3) + noise, of an x without memory.
std::string Responding(double own, double deviation, int rows) {
    std::mt19937 random(5);
    std::normal_distribution<double> normal;
    std::ostringstream text("id,x,y\n", std::ios::ate);
    std::vector<double> x(3), y(1);
    for (int i = 0; i < rows; ++i) {
        x.push_back(normal(random));
        std::size_t const t = x.size() - 1;
        y.push_back(own * y.back() + 0.5 * x[t] + 0.3 * x[t - 1] - 0.1 * x[t - 3] + deviation * normal(random));
        text << 'o' << i << ',' << x.back() << ',' << y.back() << '\n';
    }
    return text.str();
}

// With and without memory of the response, exact and within noise.
TEST_F(Lags, GiveTheResponseToAPulse) {
    m_project->AddDataSet(Read(Responding(0, 0, 200).c_str()));
    m_project->AddDataSet(Read(Responding(0.4, 0, 200).c_str()));
    m_project->AddDataSet(Read(Responding(0.7, 0.1, 4000).c_str()));
    for (int dataSet = 1; dataSet <= 3; ++dataSet) {
        ModelRequest request{.type = ModelTypeE::PLS, .dataSet = dataSet, .responses = {"y"}, .lags = {{"x", 1, 3}}};
        request.excluded = {"o0", "o1", "o2"};
        request.components = dataSet == 1 ? 4 : 5;
        request.crossValidationGroups = 0;
        if (dataSet > 1)
            request.lags.push_back({"y", 1, 1});
        m_project->AddModel(request);
    }
    double const own = 0.7;
    std::vector<double> decay{0.5, 0.3 + 0.5 * own};
    decay.push_back(decay.back() * own);
    decay.push_back(decay.back() * own - 0.1);
    struct {
        char const *text;
        std::vector<double> expected;
        double tolerance;
    } const cases[] = {{"M1,4,1,0,0-0", {0.5, 0.3, 0, -0.1}, 1e-4},
                       {"M1,4,1,0,0-4", {0.5, 0.8, 0.8, 0.7, 0.7, 0.2, -0.1, -0.1}, 1e-4},
                       {"M2,5,1,0,1-1", {0, 0.5, 0.5, 0.2, -0.02}, 1e-4},
                       {"M2,5,1,0,-3-0", {0.5, 0.5, 0.2, -0.02}, 1e-4},
                       {"M3,5,1,0,0-0", decay, 0.01}};
    for (auto const &[text, expected, tolerance] : cases) {
        std::vector<float> const values = Values(std::string("StepResp ") + text, ProjectVector::VectorTypeLag);
        ASSERT_EQ(values.size(), expected.size()) << text;
        for (std::size_t h = 0; h < values.size(); ++h)
            EXPECT_NEAR(values[h], expected[h], tolerance) << text << " at " << h;
    }
    // The gain in the long run.
    std::vector<float> const step = Values("StepResp M3,5,1,0,0-60", ProjectVector::VectorTypeLag);
    EXPECT_NEAR(step.at(60), 0.7 / (1 - own), 0.05);
    EXPECT_THROW(Table("StepResp M3,5,1,0,0-2000000", ProjectVector::VectorTypeLag), NCError);
}

TEST_F(Lags, OfAllVariablesAreBesideSquares) {
    m_project->AddDataSet(Read(sixRows));
    ModelRequest request{.type = ModelTypeE::PLS, .responses = {"y"}, .excluded = {"x3"}, .squares = true};
    request.lags = {{"", 2, 2}, {"x2", 1, 1}};
    request.components = 1;
    m_project->AddModel(request);
    std::vector<std::string> names;
    TablePtr const loadings = Table("p M1,1,0,0", Loadings);
    for (int column = 1; column <= loadings->Columns(); ++column)
        names.push_back(loadings->GetColumnName(column));
    EXPECT_EQ(names, (std::vector<std::string>{"x1", "x2", "x1.L2", "x2.L1", "x2.L2", "x1*x1", "x2*x2"}));
    EXPECT_EQ(m_project->GetWorkset(1)->GetVariables().size(), 3u) << "variables are counted once";
}

TEST_F(Lags, AreRefusedWithAReason) {
    m_project->AddDataSet(TableOf("id,batch,x,z,y\na,A,1,4,3\nb,A,2,2,5\nc,B,4,7,1\nd,B,5,1,8\n"));
    m_project->AddDataSet(TableOf("id,batch,x,z,y\na,A,1,4,3\nb,B,2,2,5\nc,A,4,7,1\nd,B,5,1,8\n", "mixed"));
    struct {
        engine::VariableLags lags;
        int dataSet;
        char const *expected;
    } const cases[] = {{{"w", 1, 1}, 1, "There is no variable \"w\" of the model in data set 1 (batches) to lag."},
                       {{"z", 1, 1}, 1, "There is no variable \"z\" of the model in data set 1 (batches) to lag."},
                       {{"x", 0, 1}, 1, "There are no lags 0 to 1 in data set 1 (batches)"},
                       {{"x", 2, 1}, 1, "There are no lags 2 to 1"},
                       {{"", 1, 4}, 1, "There are no lags 1 to 4"},
                       {{"x", 1, 2}, 1, "Variable x.L2 has no value in the 4 chosen observations"},
                       {{"x", 1, 1}, 2, "Batch \"A\" stands in two places of data set 2 (mixed)"}};
    for (auto const &[lags, dataSet, expected] : cases)
        try {
            m_project->AddModel({.type = ModelTypeE::PLS,
                                 .dataSet = dataSet,
                                 .responses = {"y"},
                                 .excluded = {"z"},
                                 .lags = {lags},
                                 .components = 1});
            ADD_FAILURE() << "no error: " << expected;
        } catch (NCError const &error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(expected));
        }
}

} // namespace
