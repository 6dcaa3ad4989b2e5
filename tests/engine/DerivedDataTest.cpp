// Data sets that are made of others and of models, and the models on them.

#include "platform/text/Exception.h"
#include "tests/engine/SmallProject.h"

#include <gmock/gmock.h>

#include <random>

namespace {

using namespace small;
using Result = engine::HierarchyRequest::Result;

// Rows of six measurements that two hidden ones drive, and a response of both.
std::string Measured(int rows, unsigned seed, char const *prefix) {
    std::mt19937 random(seed);
    std::normal_distribution<double> normal;
    std::ostringstream text;
    text << "id,a,b,c,d,e,f,y\n";
    for (int row = 0; row < rows; ++row) {
        double const one = normal(random), two = normal(random);
        text << prefix << row;
        for (double const mixed : {one, -one, one + two, two, 2 * two, two - one})
            text << ',' << 20 + mixed + normal(random) / 4;
        text << ',' << 5 + one - two + normal(random) / 4 << '\n';
    }
    return text.str();
}

class Hierarchy : public testing::Test {
protected:
    Hierarchy() : m_project(Project::Create(m_folder / "upper.dsp")) {
        m_project->AddDataSet(Read(Measured(30, 1, "o")));
        m_project->AddModel({.excluded = {"d", "e", "f", "y"}, .components = 2});
        m_project->AddModel({.type = ModelTypeE::OPLS,
                             .responses = {"y"},
                             .excluded = {"a", "b", "o3"},
                             .components = 1,
                             .xOrthogonal = 1});
    }

    // PLS of y on scores of both, and on a variable that is in none of them.
    int AddUpper(std::vector<Result> const &results = {{1}, {2}, {2, VariableInfo::OrthogonalScore}}) {
        ModelRequest request{.type = ModelTypeE::PLS, .responses = {"y"}, .components = 2};
        return m_project->AddUpperModel({results, {"y", "a"}}, request);
    }
    std::vector<float> Values(std::string const &text, ProjectVector::VectorTypeEnum type = Scores) const {
        TablePtr const table = ProjectDataUtilities::CreateProjectData(*m_project).GetProjectData(text, type);
        auto const values = table ? table->GetMatrix().Values() : std::span<float const>();
        return {values.begin(), values.end()};
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project;
};

std::vector<float> Without(std::vector<float> values, std::size_t row) {
    values.erase(values.begin() + static_cast<std::ptrdiff_t>(row));
    return values;
}

// The variables are what the models below give for the observations that all of them have.
TEST_F(Hierarchy, StandsOnResults) {
    std::vector<Result> const results{{1},
                                      {2, VariableInfo::OrthogonalScore, 1},
                                      {2, VariableInfo::PredictedY},
                                      {1, VariableInfo::Residual, 3},
                                      {1, VariableInfo::Distance},
                                      {1, VariableInfo::T2}};
    int const model = AddUpper(results);
    ASSERT_EQ(model, 3);
    NCDataSetInfo const info = *m_project->GetDataSetInfo(2);
    EXPECT_EQ(info.observations, 29u);
    EXPECT_FALSE(m_project->GetModelInfo(model)->isBatchLevel);
    struct Case {
        char const *name, *statistic;
        int kind, below, component;
    };
    int variable = 0;
    for (Case const &one :
         {Case{"M1.t[1]", "t M1,1,0,0", 14, 1, 1}, Case{"M1.t[2]", "t M1,2,0,0", 14, 1, 2},
          Case{"M2.to[1]", "to M2,1,0,0", 19, 2, 1}, Case{"M2.YPred(y)", "YPred M2,0,1,0,1,1", 15, 2, 0},
          Case{"M1.XVarRes(c)", "XVarRes M1,2,3,0,1,1", 18, 1, 0}, Case{"M1.DModX", "DModX M1,2,0,0", 16, 1, 0},
          Case{"M1.T2", "T2Range M1,0,1,0,2", 17, 1, 0}, Case{"y", "YVar M2,0,1,0,1,1", 0, 0, 0}}) {
        std::vector<float> const expected = Values(one.statistic);
        VariableInfo const known =
            m_project->GetVariables()[m_project->GetDataSet(2)->GetVariables().at(static_cast<std::size_t>(variable))];
        EXPECT_EQ(m_project->GetVariables().GetText(known.GetUniqueID(), 1), one.name);
        EXPECT_THAT(m_project->GetDataSet(2)->GetVariable(known.GetUniqueID()).Values(),
                    testing::ElementsAreArray(expected.size() == 30 ? Without(expected, 3) : expected))
            << one.name;
        EXPECT_EQ(known.kind, one.kind) << one.name;
        EXPECT_EQ(known.lowerModel, one.below) << one.name;
        EXPECT_EQ(known.lowerComponent, one.component) << one.name;
        ++variable;
    }
    EXPECT_EQ(AddUpper(results), 4) << "a second model of the same data set";
    EXPECT_EQ(m_project->GetFirstDataSet(2), 0);
}

// New observations go through the models below, those that come before the model and those that come later, also of a
// model two levels up; those of the workset get their own prediction.
TEST_F(Hierarchy, PredictsThroughTheModelsBelow) {
    m_project->AddPredictions(Read(Measured(30, 1, "o"), "early"));
    int const upper = AddUpper();
    ModelRequest request{.type = ModelTypeE::PLS, .responses = {"y"}, .components = 1};
    int const top = m_project->AddUpperModel({{{upper}}, {"y"}}, request);
    auto const expectOwn = [&] {
        for (int const model : {upper, top}) {
            std::string const text = " M" + std::to_string(model) + (model == top ? ",1,1" : ",2,1");
            std::vector<float> const fitted = Values("YPred" + text);
            std::vector<float> const predicted = Without(Values("YPredPS" + text), 3);
            ASSERT_EQ(fitted.size(), 29u);
            ASSERT_EQ(predicted.size(), 29u);
            for (std::size_t row = 0; row < fitted.size(); ++row)
                EXPECT_NEAR(predicted[row], fitted[row], 1e-4) << text << row;
        }
    };
    expectOwn();
    m_project->AddPredictions(Read("id,a,c\nn1,20,21\nn2,19,18\n", "few"));
    EXPECT_EQ(Values("YPredPS M3,2,1").size(), 2u);
    m_project->AddPredictions(Read(Measured(30, 1, "o"), "later"));
    expectOwn();
    m_project = Project::OpenToWrite((m_project.reset(), m_folder / "upper.dsp"));
    expectOwn();
    EXPECT_EQ(m_project->MatchVariables(upper, Read("id,a,c,x\nn1,20,21,1\n")).missing,
              (std::vector<std::string>{"b", "d", "e", "f"}));
    EXPECT_EQ(m_project->MatchVariables(upper, Read("id,a,c,x\nn1,20,21,1\n")).surplus, std::vector<std::string>{"x"});
}

// Coefficients for the variables at the bottom predict what the hierarchy predicts.
TEST_F(Hierarchy, ResolvesCoefficients) {
    m_project->AddModel({.excluded = {"d", "e", "f", "y", "o3"}, .components = 2});
    int const upper = AddUpper({{3}, {2}, {2, VariableInfo::OrthogonalScore}});
    std::vector<Result> const overUpper{{upper}};
    ModelRequest request{.type = ModelTypeE::PLS, .responses = {"y"}, .components = 2};
    int const top = m_project->AddUpperModel({overUpper, {"y"}}, request);
    // Of the workset, scaled: of both models below, which have the same rows.
    TablePtr const first = GetProjectData(*m_project).GetXVar(3, false, false, nullptr, -1);
    TablePtr const second = GetProjectData(*m_project).GetXVar(2, false, false, nullptr, -1);
    for (int const model : {upper, top}) {
        std::string const of = " M" + std::to_string(model) + ",2,1";
        TablePtr const resolved =
            ProjectDataUtilities::CreateProjectData(*m_project).GetProjectData("CoeffCS" + of + ",0,2", Loadings);
        ASSERT_NE(resolved, nullptr);
        std::vector<std::string> names;
        for (int column = 1; column <= resolved->GetColumnIDs().Size(); ++column)
            names.push_back(resolved->GetColumnName(column, 1));
        std::vector<std::string> expected{"Constant", "a", "b", "c", "d", "e", "f"};
        // The variable that the upper model has as it is counts once, and is of its own scale: that of the first.
        EXPECT_EQ(names, expected);
        std::vector<float> const predicted = Values("YPred" + of);
        auto const coefficients = resolved->GetMatrix().Row(1);
        std::vector<double> sums;
        for (std::size_t row = 0; row < predicted.size(); ++row) {
            double sum = coefficients[0];
            for (int term = 1; term <= 6; ++term)
                sum += static_cast<double>(coefficients[static_cast<std::size_t>(term)]) *
                       (term <= 3 ? first->GetMatrix().Row(term) : second->GetMatrix().Row(term - 2))[row];
            sums.push_back(sum);
            EXPECT_NEAR(sum / sums[0], predicted[row] / predicted[0], 1e-5) << of << row;
        }
    }
}

TEST_F(Hierarchy, RefusesWhatIsNotThere) {
    m_project->AddDataSet(Read(Measured(10, 5, "p")));
    m_project->AddModel({.dataSet = 2, .components = 1});
    struct Case {
        std::vector<Result> results;
        char const *message;
    };
    for (Case const &one :
         {Case{{{1, VariableInfo::Score, 3}},
               "Model 1 has no such result to make a variable of: it has 2 of them, and number 3 is asked for."},
          Case{{{1, VariableInfo::OrthogonalScore}},
               "Model 1 has no such result to make a variable of: it has 0 of them, and number 0 is asked for."},
          Case{{{1}, {1, VariableInfo::Score, 2}}, "A result of model 1 is asked for twice."},
          Case{{{9}}, "There is no model 9."}, Case{{}, "There are no results of models to make variables of."},
          Case{{{1}, {3}}, "No observation is in all of the 2 models below."}})
        try {
            AddUpper(one.results);
            ADD_FAILURE() << one.message;
        } catch (NCError const &error) {
            EXPECT_STREQ(error.what(), one.message);
        }
    EXPECT_EQ(m_project->GetFirstDataSet(2), 0) << "nothing is left of what failed";
}

class Transformed : public Hierarchy {
protected:
    // PLS of y on all other variables of a data set.
    int AddPLS(int dataSet, ModelRequest::Scaling scaling = ModelRequest::Centred) {
        return m_project->AddModel({.type = ModelTypeE::PLS,
                                    .dataSet = dataSet,
                                    .responses = {"y"},
                                    .scaling = scaling,
                                    .components = 2,
                                    .crossValidationGroups = 5});
    }
    void ExpectSame(std::string const &text, ProjectVector::VectorTypeEnum type, int one, int other) const {
        auto const of = [&](int model) {
            std::string asked = text;
            asked.replace(asked.find('#'), 1, std::to_string(model));
            return Values(asked, type);
        };
        std::vector<float> const expected = of(one), found = of(other);
        ASSERT_EQ(expected.size(), found.size()) << text;
        EXPECT_FALSE(expected.empty()) << text;
        for (std::size_t i = 0; i < expected.size(); ++i)
            EXPECT_NEAR(found[i], expected[i], 1e-5 * std::max(1.0f, std::abs(expected[i]))) << text << ' ' << i;
    }
};

// A model of all wavelet coefficients is the model of what they were made of, and is shown there.
TEST_F(Transformed, CoefficientsGoBackToVariables) {
    m_project->AddPredictions(Read(Measured(8, 7, "n"), "new"));
    for (auto const function : {Wavelet::Daubechies, Wavelet::Coiflet}) {
        int const compressed =
            m_project->AddCompression({.excluded = {"y"}, .function = function, .order = 2, .share = 1});
        int const plain = AddPLS(1), model = AddPLS(compressed);
        EXPECT_EQ(m_project->GetModelInfo(model)->sizeXVariables, 8) << "with padding";
        EXPECT_EQ(m_project->GetDataSetInfo(compressed)->kind, NCDataSetInfo::WaveletCompressed);
        for (char const *const text : {"t M#,2,0,0", "tPS M#,1,0,0", "YPred M#,2,1,0,1,1", "YPredPS M#,2,1,0,1,1"})
            ExpectSame(text, Scores, plain, model);
        for (char const *const text :
             {"p M#,1,0,0", "p M#,2,0,0", "pc M#,1,0,0", "w M#,2,0,0", "w* M#,2,0,0", "pcv M#,2,0,3", "Coeff M#,2,1,0",
              "CoeffC M#,2,1,0", "CoeffCS M#,2,1,0", "CoeffCScv M#,2,1,2", "XObs M#,0,4,0,1,1", "XObsPred M#,2,4,0,1,1",
              "XObsRes M#,2,4,0,0,0", "Xavg M#,0,0,0"})
            ExpectSame(text, Loadings, plain, model);
    }
    // Scaled coefficients are other variables, whose coefficients of regression predict the same from the source.
    int const scaled =
        AddPLS(m_project->AddCompression({.excluded = {"y"}, .order = 2, .share = 1}), ModelRequest::UnitVariance);
    std::vector<float> const b = Values("Coeff M" + std::to_string(scaled) + ",2,1,0", Loadings);
    std::vector<float> const predicted = Values("YPred M" + std::to_string(scaled) + ",2,1,0,1,1");
    ASSERT_EQ(b.size(), 7u) << "the constant and six variables";
    for (std::size_t row = 0; row < predicted.size(); ++row) {
        double sum = b[0];
        for (int k = 0; k < 6; ++k)
            sum += static_cast<double>(b[static_cast<std::size_t>(k) + 1]) *
                   m_project->GetDataSet(1)
                       ->GetVariable(m_project->GetDataSet(1)->GetVariables()[static_cast<std::size_t>(k)])
                       .Values()[row];
        EXPECT_NEAR(sum, predicted[row], 1e-4) << row;
    }
    // Loadings and weights lead from scores to the variables and back, in their own units.
    std::string const of = " M" + std::to_string(scaled);
    std::vector<float> const mean = Values("Xavg" + of, Loadings), seen = Values("XObs" + of + ",0,4,0,1,1", Loadings),
                             modelled = Values("XObsPred" + of + ",2,4,0,1,1", Loadings);
    std::vector<double> sums(mean.begin(), mean.end());
    for (std::string const component : {"1", "2"}) {
        std::vector<float> const p = Values("p" + of + "," + component + ",0,0", Loadings),
                                 w = Values("w*" + of + "," + component + ",0,0", Loadings);
        double const t = Values("t" + of + "," + component + ",0,0").at(3);
        double score = 0;
        for (std::size_t k = 0; k < sums.size(); ++k) {
            sums[k] += t * p.at(k);
            score += static_cast<double>(w.at(k)) * (seen.at(k) - mean[k]);
        }
        EXPECT_NEAR(score, t, 1e-4) << component;
    }
    for (std::size_t k = 0; k < sums.size(); ++k)
        EXPECT_NEAR(modelled.at(k), sums[k], 1e-4) << k;
}

// Few coefficients have what varies; denoised data are near the data, and missing cells are read off their neighbours.
TEST_F(Transformed, KeepsTheLargestCoefficients) {
    std::ostringstream text;
    text << "id,y";
    for (int k = 0; k < 32; ++k)
        text << ",v" << k;
    for (int row = 0; row < 12; ++row) {
        text << "\no" << row << ',' << row;
        for (int k = 0; k < 32; ++k)
            if (row == 3 && k == 10)
                text << ',';
            else
                text << ',' << 5 + row * std::exp(-std::pow((k - 12) / 6.0, 2));
    }
    int const spectra = m_project->AddDataSet(Read(text.str() + '\n'));
    int const few = m_project->AddCompression({.dataSet = spectra, .excluded = {"y"}, .share = 0.999});
    EXPECT_LE(m_project->GetDataSetInfo(few)->variables, 9u);
    EXPECT_EQ(m_project->GetDataSetInfo(m_project->AddCompression({.dataSet = spectra, .excluded = {"y"}, .keep = 5}))
                  ->variables,
              6u);
    int const clear =
        m_project->AddCompression({.dataSet = spectra, .excluded = {"y"}, .share = 0.9999, .denoise = true});
    auto const variable = [&](int dataSet, std::size_t column) {
        boost::shared_ptr<NCDataSet const> const set = m_project->GetDataSet(dataSet);
        auto const values = set->GetVariable(set->GetVariables()[column]).Values();
        return std::vector<float>(values.begin(), values.end());
    };
    ASSERT_EQ(m_project->GetDataSetInfo(clear)->variables, 33u);
    // Those that are excluded stand at the end.
    EXPECT_EQ(variable(clear, 32), variable(spectra, 0));
    double worst = 0;
    for (std::size_t row = 0; row < 12; ++row)
        worst = std::max(worst, std::abs(variable(clear, 10)[row] -
                                         (5 + static_cast<double>(row) * std::exp(-std::pow((10 - 12) / 6.0, 2)))));
    EXPECT_LT(worst, 0.3);
    EXPECT_GT(worst, 0) << "something was taken off";
}

// What is taken off has nothing to do with Y, new rows go through the same correction, and the vectors show it.
TEST_F(Transformed, CorrectionTakesOffWhatHasNothingToDoWithY) {
    m_project->AddPredictions(Read(Measured(30, 1, "o"), "same"));
    int const corrected = m_project->AddCorrection(
        {.responses = {"y"}, .excluded = {"f"}, .scaling = ModelRequest::Centred, .components = 2});
    EXPECT_EQ(m_project->GetDataSetInfo(corrected)->oscComponents, 2);
    EXPECT_EQ(m_project->AddCorrection(
                  {.responses = {"y"}, .excluded = {"f"}, .scaling = ModelRequest::Centred, .components = 2}),
              corrected);
    int const plain = AddPLS(1), model = AddPLS(corrected);
    std::string const set = " DS" + std::to_string(corrected);
    std::vector<float> const y = Values("YVar M" + std::to_string(plain) + ",0,1,0,0,0");
    TablePtr const before = GetProjectData(*m_project).GetXVar(plain, true, true, nullptr, -1);
    TablePtr const after = GetProjectData(*m_project).GetXVar(model, true, true, nullptr, -1);
    std::vector<std::vector<float>> const t{Values("OSC-t" + set + ",1"), Values("OSC-t" + set + ",2")};
    std::vector<std::vector<float>> const p{Values("OSC-p" + set + ",1", Loadings),
                                            Values("OSC-p" + set + ",2", Loadings)};
    for (std::size_t component : {0, 1}) {
        double product = 0, squares = 0;
        for (std::size_t row = 0; row < y.size(); ++row) {
            product += static_cast<double>(t[component].at(row)) * y[row];
            squares += static_cast<double>(t[component][row]) * t[component][row];
        }
        EXPECT_NEAR(product / squares, 0, 1e-6);
    }
    for (int term = 1; term <= 6; ++term)
        for (std::size_t row = 0; row < y.size(); ++row) {
            double off = 0;
            for (std::size_t component : {0, 1})
                off += term == 6 ? 0 // left as it is
                                 : static_cast<double>(t[component][row]) *
                                       p[component].at(static_cast<std::size_t>(term) - 1);
            EXPECT_NEAR(before->GetMatrix().Row(term)[row] - after->GetMatrix().Row(term)[row], off, 1e-5) << term;
        }
    std::vector<float> const fitted = Values("YPred M" + std::to_string(model) + ",2,1,0,1,1");
    std::vector<float> const predicted = Values("YPredPS M" + std::to_string(model) + ",2,1,0,1,1");
    for (std::size_t row = 0; row < fitted.size(); ++row)
        EXPECT_NEAR(predicted.at(row), fitted[row], 1e-5);
    EXPECT_TRUE(Values("OSC-t DS1,1").empty());
}

// A correction is made of filled cells, which are not missing in what is left; those of new rows stay missing.
TEST_F(Transformed, CorrectionFillsTheCellsThatItIsMadeOf) {
    std::string rows = Measured(12, 3, "o");
    std::size_t const cell = rows.find(',', rows.find("\no4,") + 1) + 1;
    rows.erase(cell, rows.find(',', cell) - cell);
    int const incomplete = m_project->AddDataSet(Read(rows));
    m_project->AddPredictions(Read(rows, "new"));
    int const corrected = m_project->AddCorrection({.dataSet = incomplete, .responses = {"y"}});
    auto const a = [&](int dataSet) {
        boost::shared_ptr<NCDataSet const> const set = m_project->GetDataSet(dataSet);
        return set->GetVariable(set->GetVariables()[0])[5];
    };
    EXPECT_EQ(a(incomplete), missingValue);
    EXPECT_NEAR(a(corrected), 20, 4);
    EXPECT_EQ(a(corrected + 1), missingValue) << "the prediction set, corrected";
}

} // namespace
