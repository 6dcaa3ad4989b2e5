#include "tests/engine/SmallProject.h"

#include <cmath>
#include <random>

// What holds for statistics whatever the data are.

namespace {

using namespace small;

constexpr int rowCount = 18;
constexpr int terms = 5;
constexpr int components = 3;

// Rows of five X variables that share two directions, and two responses of these; one cell missing where asked for.
std::string SeededRows(bool missing) {
    std::mt19937 random(7);
    std::normal_distribution<double> normal;
    std::ostringstream text;
    text << "id,x1,x2,x3,x4,x5,y1,y2\n";
    for (int row = 0; row < rowCount; ++row) {
        double const a = normal(random);
        double const b = normal(random);
        text << "row" << row;
        for (int k = 0; k < terms; ++k) {
            double const value = 10 * k + a * (k + 1) + b * (2 - k) + 0.3 * normal(random);
            text << ',';
            if (!missing || row != 4 || k != 2)
                text << value;
        }
        text << ',' << 3 + a - b + 0.2 * normal(random) << ',' << 100 + 20 * b + 5 * normal(random) << '\n';
    }
    return text.str();
}

// Models 1 and 2 are PLS and PCA of complete rows, 3 and 4 of rows with a missing cell. The rows of each pair are a
// prediction set too.
class SeededProject : public testing::Test {
protected:
    static void SetUpTestSuite() {
        s_folder = new TemporaryFolder;
        s_project = engine::Project::Create(*s_folder / "seeded.dsp");
        for (int dataSet : {0, 1}) {
            int const number = s_project->AddDataSet(Read(SeededRows(dataSet == 1).c_str()));
            for (ModelTypeE::Model const type : {ModelTypeE::PLS, ModelTypeE::PCA}) {
                engine::ModelRequest request;
                request.type = type;
                request.dataSet = number;
                (type == ModelTypeE::PCA ? request.excluded : request.responses) = {"y1", "y2"};
                request.components = components;
                s_project->AddModel(request);
            }
            engine::ImportedTable rows = Read(SeededRows(dataSet == 1).c_str());
            rows.name = dataSet == 1 ? "holes" : "whole";
            s_project->AddPredictions(rows);
        }
    }
    static void TearDownTestSuite() {
        s_project.reset();
        delete s_folder;
    }

    static std::vector<double> Row(std::string const &text, ProjectVector::VectorTypeEnum type) {
        TablePtr const table = ProjectDataUtilities::CreateProjectData(*s_project).GetProjectData(text, type);
        if (!table)
            return {};
        auto const row = table->GetMatrix().Row(1);
        return {row.begin(), row.end()};
    }
    static std::string Of(char const *name, int model, char const *rest) {
        return std::string(name) + " M" + std::to_string(model) + "," + rest;
    }
    static double Sum(std::vector<double> const &values) {
        double sum = 0;
        for (double const value : values)
            sum += value;
        return sum;
    }
    static double Squares(std::vector<double> values) {
        for (double &value : values)
            value *= value;
        return Sum(values);
    }

    static inline TemporaryFolder *s_folder = nullptr;
    static inline boost::shared_ptr<engine::Project> s_project;
};

TEST_F(SeededProject, ExplainedVariationAddsUp) {
    for (int const model : {1, 2, 3, 4}) {
        std::vector<double> const parts = Row(Of("R2X", model, "0,0,0"), PerComponent);
        ASSERT_EQ(parts.size(), components);
        EXPECT_NEAR(Sum(parts), Row(Of("R2Xcum", model, "0,0,0"), PerComponent).back(), 1e-5);
        if (model > 2)
            continue;
        for (int a = 1; a <= components; ++a) {
            std::string const rest = std::to_string(a) + ",0,0";
            std::vector<double> const explained = Row(Of("R2VX", model, rest.c_str()), Loadings);
            std::vector<double> const correlation = Row(Of("p(corr)", model, rest.c_str()), Loadings);
            // Under unit variance all terms have the same sum of squares.
            EXPECT_NEAR(parts[static_cast<std::size_t>(a - 1)], Sum(explained) / terms, 1e-5);
            for (int k = 0; k < terms; ++k)
                EXPECT_NEAR(correlation[k] * correlation[k], explained[k], 1e-5);
        }
    }
}

TEST_F(SeededProject, DistancesHaveTheirUnit) {
    GetProjectData const statistics(*s_project);
    IntList const sizes{0, 1, 2, 3};
    for (int const model : {1, 2, 3, 4})
        for (TriState::State const weighted : {TriState::No, TriState::Yes}) {
            TablePtr const table = statistics.GetDModX(model, &sizes, TriState::Yes, weighted, -1);
            for (int row = 1; row <= table->Rows(); ++row) {
                auto const values = table->GetMatrix().Row(row);
                EXPECT_NEAR(Squares({values.begin(), values.end()}) / rowCount, 1, 1e-5) << model << ' ' << row;
            }
        }
    for (int const model : {1, 3})
        EXPECT_NEAR(Squares(Row(Of("DModY", model, "2,0,0"), Scores)) / rowCount, 1, 1e-5);
}

TEST_F(SeededProject, LeveragesAndT2AddUp) {
    for (int const model : {1, 2, 3, 4}) {
        EXPECT_NEAR(Sum(Row(Of("T2Range", model, "0,1,0,3"), Scores)), (rowCount - 1) * 3, 1e-3);
        EXPECT_NEAR(Sum(Row(Of("T2Range", model, "0,2,0,1"), Scores)), (rowCount - 1) * 2, 1e-3);
        EXPECT_NEAR(Sum(Row(Of("OLevX", model, "2,0,0"), Scores)), 2, 1e-5);
    }
    std::vector<double> const t2 = Row(Of("T2Range", 1, "0,1,0,2"), Scores);
    std::vector<double> const leverage = Row(Of("OLevX", 1, "2,0,0"), Scores);
    for (int i = 0; i < rowCount; ++i)
        EXPECT_NEAR(t2[i], (rowCount - 1) * leverage[i], 1e-4);
}

TEST_F(SeededProject, CrossValidationAgreesWithItself) {
    for (int const model : {1, 2, 3, 4}) {
        double left = 1;
        std::vector<double> const soFar = Row(Of("Q2cum", model, "0,0,0"), PerComponent);
        std::vector<double> const parts = Row(Of("Q2", model, "0,0,0"), PerComponent);
        for (int a = 0; a < components; ++a) {
            left *= 1 - parts[a];
            EXPECT_NEAR(1 - soFar[a], left, 1e-5);
        }
    }
    for (int const model : {1, 3}) {
        std::vector<double> const predicted = Row(Of("Q2VYcum", model, "2,0,0"), Loadings);
        std::vector<double> const errors = Row(Of("RMSEcv", model, "2,0,0"), Loadings);
        std::vector<double> const weights = Row(Of("Yws", model, "0,0,0"), Loadings);
        for (int m = 0; m < 2; ++m)
            EXPECT_NEAR(predicted[m], 1 - rowCount * std::pow(errors[m] * weights[m], 2) / (rowCount - 1), 1e-5);
    }
}

TEST_F(SeededProject, ImportancesHaveMeanSquareOne) {
    for (int const model : {1, 3})
        for (char const *rest : {"1,0,0", "2,0,0", "3,0,0"})
            EXPECT_NEAR(Squares(Row(Of("VIP", model, rest), Loadings)), terms, 1e-5);
}

// The rows of the workset as new ones: the same scores and predictions, and distances without the factor that makes up
// for the degrees of freedom.
TEST_F(SeededProject, OwnRowsArePredictedAsTheyWereFitted) {
    struct {
        char const *own, *predicted, *rest;
        double factor;
    } const cases[] = {{"t", "tPS", "2,0,0", 1},
                       {"T2Range", "T2RangePS", "0,1,0,3", 1},
                       {"XVarRes", "XVarResPS", "2,3,0,1,1", 1},
                       {"YPred", "YPredPS", "3,2,0,1,1", 1},
                       {"YVarResSt", "YVarResPSSt", "3,2,0,1,1", 1},
                       {"DModX", "DModXPS", "2,0,0", std::sqrt((rowCount - 1.0 - 2) / rowCount)}};
    for (int const model : {1, 2, 3, 4}) {
        s_project->UsePredictions(s_project->FindPredictionSet(model < 3 ? "whole" : "holes"));
        for (auto const &row : cases) {
            if (model % 2 == 0 && row.own[0] == 'Y')
                continue; // PCA has no Y
            std::vector<double> const own = Row(Of(row.own, model, row.rest), Scores);
            std::vector<double> const predicted = Row(Of(row.predicted, model, row.rest), Scores);
            ASSERT_EQ(own.size(), rowCount) << row.own << model;
            ASSERT_EQ(own.size(), predicted.size()) << row.own << model;
            for (std::size_t i = 0; i < own.size(); ++i)
                EXPECT_NEAR(predicted[i], IsMissing(static_cast<float>(own[i])) ? own[i] : own[i] * row.factor, 2e-4)
                    << row.own << model << " at " << i;
        }
    }
}

TEST_F(SeededProject, CoefficientsPredict) {
    struct {
        char const *name;
        int unscaled, backTransformed; // units of X
        bool centred;
    } const cases[] = {{"Coeff", 1, 1, false}, {"CoeffC", 1, 0, true}, {"CoeffMLR", 0, 0, false}};
    std::vector<double> const predicted = Row("YPred M1,3,2,0,1,1", Scores);
    std::vector<double> const offsets = Row("Xavg M1,0,0,0", Loadings);
    for (auto const &row : cases) {
        std::vector<double> const coefficients = Row(Of(row.name, 1, "3,2,0"), Loadings);
        std::vector<double> sum(rowCount, coefficients[0]);
        for (int k = 1; k <= terms; ++k) {
            std::string const rest = "0," + std::to_string(k) + ",0," + std::to_string(row.unscaled) + "," +
                                     std::to_string(row.backTransformed);
            std::vector<double> const x = Row(Of("XVar", 1, rest.c_str()), Scores);
            for (int i = 0; i < rowCount; ++i)
                sum[i] += coefficients[k] * (x[i] - (row.centred ? offsets[k - 1] : 0));
        }
        for (int i = 0; i < rowCount; ++i)
            EXPECT_NEAR(sum[i], predicted[i], 1e-3) << row.name;
    }
}

} // namespace
