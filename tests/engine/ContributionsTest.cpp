// What holds for contributions on every kind of model, and figures worked by hand.

#include "tests/engine/BatchProcess.h"

#include <algorithm>
#include <numeric>

namespace small {
namespace {

using Weight = WeightTypeE;

constexpr int rowCount = 18;
constexpr int terms = 5;
constexpr int components = 2;
constexpr int incompleteRow = 5; // from 1

std::string SeededRows(bool isComplete) {
    std::mt19937 random(7);
    std::normal_distribution<double> normal;
    std::ostringstream text;
    text << "id,x1,x2,x3,x4,x5,y1,y2\n";
    for (int row = 1; row <= rowCount; ++row) {
        double const a = normal(random), b = normal(random);
        text << "row" << row;
        for (int k = 0; k < terms; ++k) {
            double const value = 10 * k + a * (k + 1) + b * (2 - k) + 0.3 * normal(random);
            text << ',';
            if (isComplete || row != incompleteRow || k != 2)
                text << value;
        }
        text << ',' << 3 + a - b + 0.2 * normal(random) << ',' << 100 + 20 * b + 5 * normal(random) << '\n';
    }
    return text.str();
}

std::vector<double> FirstRow(TablePtr const &table) {
    if (!table)
        return {};
    auto const row = table->GetMatrix().Row(1);
    return {row.begin(), row.end()};
}

double Sum(std::vector<double> const &values) {
    return std::accumulate(values.begin(), values.end(), 0.0);
}

double Squares(std::vector<double> const &values) {
    return std::inner_product(values.begin(), values.end(), values.begin(), 0.0);
}

double Mean(std::vector<double> const &values, IntList const &group) {
    double sum = 0;
    for (int const position : group)
        sum += values[static_cast<std::size_t>(position - 1)];
    return sum / static_cast<double>(group.size());
}

double Deviation(std::vector<double> const &values) {
    double const mean = Sum(values) / rowCount;
    return std::sqrt((Squares(values) - rowCount * mean * mean) / (rowCount - 1));
}

struct Kind {
    ModelTypeE::Model type;
    bool isComplete, isCentred;
};

// One model of each kind, whose own rows are the prediction set too.
class Contributions : public testing::TestWithParam<Kind> {
protected:
    Contributions() : m_project(Project::Create(m_folder / "contributions.dsp")), m_statistics(*m_project) {
        std::string const rows = SeededRows(GetParam().isComplete);
        m_project->AddDataSet(Read(rows.c_str()));
        ModelRequest request;
        request.type = GetParam().type;
        (HasY() ? request.responses : request.excluded) = {"y1", "y2"};
        request.components = components;
        request.xOrthogonal = request.yOrthogonal = IsOrthogonal() ? 1 : 0;
        if (!GetParam().isCentred)
            request.scalings["x2"] = ModelRequest::None;
        m_project->AddModel(request);
        m_project->AddPredictions(Read(rows.c_str()), true);
    }

    static bool HasY() { return GetParam().type != ModelTypeE::PCA; }
    static bool IsOrthogonal() { return (GetParam().type & ModelTypeE::AnyOPLS) != 0; }
    // Cells that are missing in the workset leave directions that are not quite orthogonal, which scores of PCA and PLS
    // take into account one component after the other; the sums of contributions do not.
    static double Tolerance(double exact) { return GetParam().isComplete || IsOrthogonal() ? exact : 0.02; }
    static Weight::WeightType Direct() { return HasY() ? Weight::WStar : Weight::P; }

    std::vector<double> Scores(int component) const {
        IntList const one{component};
        return FirstRow(m_statistics.GetT(1, &one, -1));
    }
    std::vector<double> Single(IntList const &from, IntList const &to, Weight::WeightType weight, int component,
                               int response = 1) const {
        return FirstRow(
            m_statistics.GetContributionScoresSingleWeight(1, from, to, weight, component, response, TriState::No));
    }
    std::vector<double> Several(IntList const &from, IntList const &to) const {
        return FirstRow(
            m_statistics.GetContributionScoresMultiWeight(1, from, to, {Direct(), Direct()}, {1, 2}, TriState::No));
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project;
    GetProjectData m_statistics;
};

// Pairs of groups: a reference, and what is compared with it.
std::vector<std::pair<IntList, IntList>> const groups = {{{1}, {2}}, {{3, 4, 6}, {7, 18}}, {{}, {9}}, {{}, {10, 12}}};

TEST_P(Contributions, ExplainDifferencesOfScoresAndPredictions) {
    for (auto const &[from, to] : groups)
        for (int a = 1; a <= components; ++a) {
            std::vector<double> const t = Scores(a);
            // Without a reference they are held against the average row.
            double const origin = !from.empty() ? Mean(t, from) : GetParam().isCentred ? 0 : Sum(t) / rowCount;
            EXPECT_NEAR(Sum(Single(from, to, Direct(), a)), Mean(t, to) - origin, Tolerance(1e-5)) << a;
            if (!HasY() || from.empty())
                continue;
            for (int const y : {1, 2}) {
                ColumnTerms const named({m_project->GetModel(1)->GetYColumnTerms()[y]});
                std::vector<double> const predicted =
                    FirstRow(m_statistics.GetYPred(1, a, TriState::No, TriState::No, &named, -1));
                double const expected = Mean(predicted, to) - Mean(predicted, from);
                EXPECT_NEAR(Sum(Single(from, to, Weight::CoeffCSRaw, a, y)), expected, Tolerance(1e-5)) << a << y;
                if (GetParam().isCentred) {
                    EXPECT_NEAR(Sum(Single(from, to, Weight::CoeffCS, a, y)), expected, Tolerance(1e-5)) << a << y;
                }
            }
        }
}

TEST_P(Contributions, OfSeveralWeightsExplainT2) {
    for (auto const &[from, to] : groups) {
        double distance = 0;
        for (int a = 1; a <= components; ++a) {
            std::vector<double> const t = Scores(a);
            double const origin = !from.empty() ? Mean(t, from) : GetParam().isCentred ? 0 : Sum(t) / rowCount;
            distance += std::pow((Mean(t, to) - origin) / Deviation(t), 2);
        }
        EXPECT_NEAR(Sum(Several(from, to)), distance, Tolerance(1e-4));
        if (from.empty() && to.size() == 1 && GetParam().isComplete) {
            EXPECT_NEAR(distance, FirstRow(m_statistics.GetT2Range(1, 1, components, -1))[8], 1e-4);
        }
    }
}

TEST_P(Contributions, WeighDifferencesByTheModel) {
    auto const lastRow = [](TablePtr const &table) {
        auto const row = table->GetMatrix().Row(table->Rows());
        return std::vector<double>(row.begin(), row.end());
    };
    IntList const one{3}, other{8}, whole{components};
    std::vector<double> const raw = Single(one, other, Weight::Raw, 0);
    std::vector<double> const normalized = Single(one, other, Weight::Normalized, 0);
    std::vector<double> const byX = Single(one, other, Weight::RX, components);
    std::vector<double> const explained = lastRow(m_statistics.GetR2VXCum(1, nullptr));
    for (int k = 0; k < terms; ++k) {
        ColumnTerms const named({m_project->GetModel(1)->GetXColumnTerms()[k + 1]});
        std::vector<double> const x = FirstRow(m_statistics.GetXVar(1, false, false, &named, -1));
        EXPECT_NEAR(raw[k], x[7] - x[2], 1e-5) << k;
        if (GetParam().isComplete) {
            EXPECT_NEAR(normalized[k], raw[k] / Deviation(x), 1e-5) << k;
        }
        EXPECT_NEAR(byX[k], normalized[k] * std::sqrt(explained[k]), 1e-5) << k;
    }
    EXPECT_EQ(Single(one, other, static_cast<Weight::WeightType>(77), 0), normalized);
    if (!HasY())
        return;
    std::vector<double> const byY = Single(one, other, Weight::RY, components, 2);
    std::vector<double> const byImportance = Single(one, other, Weight::VIP, components);
    std::vector<double> const importance = FirstRow(m_statistics.GetVIP(1, &whole, TriState::No));
    double const explainedY = lastRow(m_statistics.GetR2VYCum(1, nullptr))[1];
    for (int k = 0; k < terms; ++k) {
        EXPECT_NEAR(byY[k], normalized[k] * std::sqrt(explainedY), 1e-5) << k;
        EXPECT_NEAR(byImportance[k], normalized[k] * importance[k], 1e-5) << k;
    }
    EXPECT_TRUE(Single(one, other, Weight::CoeffCS, components, 3).empty()); // there is no third response
}

// A single weight tells which way, several tell how far.
TEST_P(Contributions, ChangeSignWithTheirGroups) {
    IntList const one{3, 5}, other{8};
    std::vector<Weight::WeightType> weights = {Weight::Normalized, Weight::P, Weight::RX, Weight::Raw};
    if (HasY())
        weights.insert(weights.end(), {Weight::WStar, Weight::RY, Weight::CoeffCS, Weight::CoeffCSRaw, Weight::VIP});
    if (IsOrthogonal())
        weights.push_back(Weight::PO);
    for (Weight::WeightType const weight : weights) {
        std::vector<double> const there = Single(one, other, weight, 1), back = Single(other, one, weight, 1);
        ASSERT_EQ(there.size(), terms) << weight;
        EXPECT_GT(Squares(there), 1e-6) << weight;
        for (int k = 0; k < terms; ++k)
            EXPECT_EQ(there[k], -back[k]) << weight;
    }
    EXPECT_EQ(Several(one, other), Several(other, one));
    for (Weight::WeightType const weight :
         {Weight::WStar, Weight::RY, Weight::CoeffCS, Weight::CoeffCSRaw, Weight::VIP, Weight::PO})
        if (std::ranges::find(weights, weight) == weights.end()) {
            EXPECT_EQ(Single(one, other, weight, 1), std::vector<double>()) << weight;
        }
}

TEST_P(Contributions, ExplainDistances) {
    double const orthogonal = IsOrthogonal() ? 1 : 0;
    double const centred = 1; // the degree of freedom that centring takes
    for (int const size : {0, 1, 2}) {
        if (IsOrthogonal() && size == 0)
            continue; // stands for the whole model
        double const columns = terms - size - orthogonal;
        double const inflation = rowCount / (rowCount - centred - size - orthogonal);
        IntList const sizes{size};
        std::vector<double> const distances =
            FirstRow(m_statistics.GetDModX(1, &sizes, TriState::No, TriState::No, -1));
        for (int const row : {1, 2, 17}) {
            double const square = std::pow(distances[static_cast<std::size_t>(row - 1)], 2);
            std::vector<double> const parts =
                FirstRow(m_statistics.GetContributionDModX(1, IntList{row}, Weight::Raw, size, 0, TriState::No));
            EXPECT_NEAR(Squares(parts), square * columns / inflation, 1e-4) << size << ' ' << row;
            // The rows are known, so that as new ones they leave the same.
            std::vector<double> const predicted =
                FirstRow(m_statistics.GetContributionDModXPS(1, IntList{row}, Weight::Raw, size, 0, TriState::No));
            for (int k = 0; k < terms; ++k)
                EXPECT_NEAR(predicted[k], parts[k], 1e-4);
        }
    }
    if (!HasY()) {
        EXPECT_EQ(m_statistics.GetContributionDModY(1, IntList{1}, Weight::Raw, 0), nullptr);
        return;
    }
    IntList const all{components};
    std::vector<double> const distances = FirstRow(m_statistics.GetDModY(1, &all, TriState::No));
    std::vector<double> const parts = FirstRow(m_statistics.GetContributionDModY(1, IntList{4}, Weight::Raw, 2));
    double const inflation = rowCount / (rowCount - centred - components - orthogonal);
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_NEAR(Squares(parts), distances[3] * distances[3] * 2 / inflation, 1e-4);
    std::vector<double> const weighted = FirstRow(m_statistics.GetContributionDModY(1, IntList{4}, Weight::RY, 0));
    TablePtr const cumulative = m_statistics.GetR2VYCum(1, nullptr);
    for (int m = 0; m < 2; ++m)
        EXPECT_NEAR(weighted[m], parts[m] * std::sqrt(cumulative->GetMatrix().Row(cumulative->Rows())[m]), 1e-5);
}

std::string NameOf(testing::TestParamInfo<Kind> const &info) {
    return std::string(ModelTypeE::GetModelTypeName(info.param.type)).substr(0, 5) +
           (info.param.isComplete ? "" : "WithGap") + (info.param.isCentred ? "" : "NotCentred");
}

INSTANTIATE_TEST_SUITE_P(Models, Contributions,
                         testing::Values(Kind{ModelTypeE::PCA, true, true}, Kind{ModelTypeE::PCA, false, true},
                                         Kind{ModelTypeE::PLS, true, true}, Kind{ModelTypeE::PLS, false, true},
                                         Kind{ModelTypeE::OPLS, true, true}, Kind{ModelTypeE::OPLS, false, true},
                                         Kind{ModelTypeE::O2PLS, true, true}, Kind{ModelTypeE::O2PLS, false, true},
                                         Kind{ModelTypeE::PLS, true, false}, Kind{ModelTypeE::PCA, true, false}),
                         NameOf);

// Batches A and B of five points, with the same values in another order of size; C is a prediction.
class AlignedContributions : public testing::Test {
protected:
    AlignedContributions() : m_project(Project::Create(m_folder / "aligned.dsp")), m_statistics(*m_project) {
        m_project->AddDataSet(TableOf("batch,x,z,time\nA,1,3,0\nA,2,1,10\nA,4,4,20\nA,7,1,30\nA,9,5,40\n"
                                      "B,3,9,0\nB,4,2,10\nB,5,6,20\nB,8,5,30\nB,9,3,40\n"));
        ModelRequest request;
        request.type = ModelTypeE::PLS;
        request.responses = {"time"};
        request.components = 1;
        request.scaling = ModelRequest::Centred;
        request.evolution = engine::EvolutionRequest{};
        m_project->AddModel(request);
        m_project->AddPredictions(TableOf("batch,x,z,time\nC,1,1,0\nC,3,1,20\nC,9,1,40\n", "new"));
    }

    std::vector<double> Raw(BatchPoints const &from, BatchPoints const &to, bool combined) const {
        return FirstRow(
            m_statistics.GetContributionScoresSingleWeight(1, from, to, Weight::Raw, 1, 0, TriState::No, combined));
    }
    std::vector<double> RawOfNew(BatchPoints const &from, BatchPoints const &to) const {
        return FirstRow(
            m_statistics.GetContributionScoresPSSingleWeight(1, from, to, Weight::Raw, 1, 0, TriState::No, false));
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project;
    GetProjectData m_statistics;
};

void ExpectNear(std::vector<double> const &found, std::vector<double> const &expected, char const *what) {
    ASSERT_EQ(found.size(), expected.size()) << what;
    for (std::size_t k = 0; k < found.size(); ++k)
        EXPECT_NEAR(found[k], expected[k], 1e-5) << what << " at " << k;
}

TEST_F(AlignedContributions, CompareBatchesAtTheirPoints) {
    struct {
        char const *what;
        BatchPoints from, to;
        bool combined;
        std::vector<double> expected;
    } const cases[] = {
        {"two batches", {{"A", 10}}, {{"B", 20}}, false, {3, 5}},
        {"the nearest point", {{"A", 14}}, {{"B", 16}}, false, {3, 5}},
        {"means of groups", {{"A", 0}, {"A", 20}}, {{"B", 0}, {"B", 10}}, false, {1, 2}},
        {"the average batch", {{"", 30}}, {{"B", 30}}, false, {0.5, 2}},
        {"no reference", {}, {{"A", 0}, {"A", 10}}, false, {-1, -1.75}},
        {"no group", {{"A", 10}}, {}, false, {-1, 2}},
        {"unknown batches", {{"A", 0}, {"D", 10}}, {{"D", 0}, {"B", 0}}, false, {2, 6}},
        {"nothing known", {{"A", 0}}, {{"D", 0}}, false, {}},
        {"combined, at the same points", {{"A", 0}, {"A", 20}}, {{"B", 0}, {"B", 20}}, true, {3, 8}},
        {"combined, without the point", {{"A", 0}}, {{"B", 0}, {"B", 20}}, true, {2.5, 7}},
    };
    for (auto const &row : cases)
        ExpectNear(Raw(row.from, row.to, row.combined), row.expected, row.what);
    // New batches are held against those of the workset; between two rows they are read in between.
    ExpectNear(RawOfNew({}, {{"C", 10}}), {-1, -0.5}, "a new batch");
    ExpectNear(RawOfNew({{"C", 0}}, {{"C", 30}}), {5, 0}, "within a new batch");
    EXPECT_TRUE(RawOfNew({}, {{"A", 10}}).empty());
}

TEST_F(AlignedContributions, ReadResidualsAtTheirPoints) {
    for (int const component : {0, 1}) {
        TriState::State const no = TriState::No;
        std::vector<double> const ofRow =
            FirstRow(m_statistics.GetContributionDModX(1, IntList{7}, Weight::Raw, component, 0, no));
        ExpectNear(
            FirstRow(m_statistics.GetContributionDModX(1, BatchPoints{{"B", 10}}, Weight::Raw, component, 0, no)),
            ofRow, "X");
        std::vector<double> const other =
            FirstRow(m_statistics.GetContributionDModX(1, IntList{2}, Weight::Raw, component, 0, no));
        ExpectNear(FirstRow(m_statistics.GetContributionDModX(1, BatchPoints{{"", 10}}, Weight::Raw, component, 0, no)),
                   {(ofRow[0] + other[0]) / 2, (ofRow[1] + other[1]) / 2}, "average");
    }
    ExpectNear(FirstRow(m_statistics.GetContributionDModY(1, BatchPoints{{"B", 10}}, Weight::Raw, 0)),
               FirstRow(m_statistics.GetContributionDModY(1, IntList{7}, Weight::Raw, 0)), "Y");
}

// Squares are added up, so that differences of other sign do not cancel.
TEST_F(AlignedContributions, CombineSquaredDistances) {
    auto const several = [&](BatchPoints const &to, bool combined) {
        return FirstRow(m_statistics.GetContributionScoresMultiWeight(
            1, BatchPoints{}, to, {Weight::WStar, Weight::WStar}, {1}, TriState::No, combined));
    };
    EXPECT_TRUE(several({{"B", 0}}, true).empty()); // there is no second component
    auto const one = [&](BatchPoints const &to, bool combined) {
        return FirstRow(m_statistics.GetContributionScoresMultiWeight(1, BatchPoints{}, to, {Weight::WStar}, {1},
                                                                      TriState::No, combined));
    };
    std::vector<double> const first = one({{"A", 0}}, false), second = one({{"B", 0}}, false);
    ExpectNear(one({{"A", 0}, {"B", 0}}, true), {first[0] + second[0], first[1] + second[1]}, "combined");
    ExpectNear(one({{"A", 0}, {"B", 0}}, false), {0, 0}, "means");
}

} // namespace

// Figures of another program: of each person against the average, to one score up to its sign, and to T2.
TEST(ContributionsOfPeople, AgreeWithOthers) {
    std::filesystem::path const reference = std::filesystem::path(REFERENCE_DIR) / "people";
    if (!std::filesystem::exists(reference))
        GTEST_SKIP() << "no reference data here";
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "people.dsp");
    project->AddDataSet(engine::ReadTable(reference / "people.csv"));
    project->AddModel({.components = 2});
    GetProjectData const statistics(*project);
    for (bool const ofT2 : {false, true}) {
        engine::ImportedTable const figures = engine::ReadTable(
            reference / (ofT2 ? "pca_A2_T2_contributions.csv" : "pca_score1_contributions_x_times_p.csv"));
        double sign = 0;
        for (std::size_t person = 0; person < figures.ObservationCount(); ++person) {
            IntList const one{static_cast<int>(person) + 1};
            std::vector<double> const found = FirstRow(
                ofT2 ? statistics.GetContributionScoresMultiWeight(1, {}, one, {Weight::P, Weight::P}, {1, 2},
                                                                   TriState::No)
                     : statistics.GetContributionScoresSingleWeight(1, {}, one, Weight::P, 1, 1, TriState::No));
            ASSERT_EQ(found.size(), figures.columns.size());
            if (sign == 0)
                sign = found[0] * figures.columns[0][person] < 0 && !ofT2 ? -1 : 1;
            for (std::size_t variable = 0; variable < found.size(); ++variable)
                EXPECT_NEAR(found[variable], sign * figures.columns[variable][person], 2e-6) << person << variable;
        }
    }
}

} // namespace small
