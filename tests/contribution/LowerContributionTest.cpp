#include "platform/text/Exception.h"
#include "tests/contribution/Plant.h"

namespace {

using Builder = ContributionDataBuilder;
using Selection = SelectDataSeriesData;
using Weight = ContributionWeightEnum;

Selection EmptyTarget(Plant const &plant) {
    return {plant.project, Selection::Normal, ProjectVector::VectorTypeObservationsLoadings, -1,
            ProjectVector::ObsAndPred};
}

std::string TextOf(Selection const &selection) {
    return selection.NumberOfSeries() == 0 ? "none" : ::TextOf(boost::make_shared<Selection>(selection));
}

// Variable 6 is a score of the lower model.
TEST(HierarchicalContribution, FollowsAVariableDown) {
    Plant const plant;
    plant.project->AddWorkset(1, {6, 5, 3}, {1, 2, 3});
    auto const follow = [&](char const *vector, int upper, Weight::WeightType weight, int kind, int lower,
                            int component) {
        VariableInfo variable(6);
        variable.kind = kind;
        variable.lowerModel = lower;
        variable.lowerComponent = component;
        plant.project->variables.SetInfo(variable);
        ProjectVectorData series = plant.Series(vector, upper);
        series.SetWeightType(weight);
        series.obs1 = {6, 1, 2};
        series.obs2 = {4};
        Selection source = plant.Selection({series});
        source.SetObsPredType(series.GetProjectVector()->GetObsPredType());
        Selection target = EmptyTarget(plant);
        bool const isFollowed =
            Builder(*plant.project, false, false).SetHierarchicalContributionDataSeries(target, &source, 6);
        EXPECT_EQ(isFollowed, target.NumberOfSeries() == 1);
        return TextOf(target);
    };
    // Observations 6, 3 and 5 of the upper model; 2 is not in the lower one.
    EXPECT_EQ(follow("ContSc", 3, Weight::P, 14, 1, 2), "ContSc M1,0,0,0,1,2,1,2,1,3,1,2,1,2");
    EXPECT_EQ(follow("ContDModX", 3, Weight::RX, 14, 1, 2), "ContSc M1,0,0,0,1,2,1,1,1,0,1,2");
    EXPECT_EQ(follow("ContDModY", 3, Weight::RY, 19, 2, 1), "ContSc M2,0,0,0,1,1,1,1,6,0,1,1");
    EXPECT_EQ(follow("ContScPS", 3, Weight::P, 14, 1, 2), "ContScPS M1,0,0,0,1,2,1,0,3,6,1,2,1,2");
    EXPECT_EQ(follow("ContDModXPS", 3, Weight::RX, 14, 2, 1), "ContScPS M2,0,0,0,1,1,1,3,6,1,2,0,1,1");
    struct {
        char const *vector;
        int kind, lower, component;
    } const refused[] = {{"ContSc", 13, 1, 1}, {"ContSc", 15, 1, 1},     {"ContSc", 18, 1, 1},
                         {"ContSc", 14, 0, 1}, {"ContSc", 14, 77, 1},    {"ContSc", 14, 1, 0},
                         {"p", 14, 1, 1},      {"ContSc", 14, 1, 65536}, {"AlContSc", 14, 1, 1}};
    for (auto const &row : refused)
        EXPECT_EQ(follow(row.vector, 3, Weight::P, row.kind, row.lower, row.component), "none") << row.vector;

    using enum Weight::WeightType;
    struct {
        ModelTypeE::Model upper, lower;
        Weight::WeightType weight, ofScore, ofOrthogonal;
    } const weights[] = {
        {ModelTypeE::OPLS, ModelTypeE::PCA, WStar, P, P},
        {ModelTypeE::OPLS, ModelTypeE::PLSDA, WStar, P, P},
        {ModelTypeE::OPLS, ModelTypeE::PLS, P, WStar, WStar},
        {ModelTypeE::PCA, ModelTypeE::OPLS, VIP, P, PO},
        {ModelTypeE::PCA, ModelTypeE::O2PLS, VIP, P, PO},
        {ModelTypeE::PLS, ModelTypeE::PLS, PRange, P, PO},
        {ModelTypeE::PLS, ModelTypeE::PLS, POPO, P, PO},
        {ModelTypeE::PLS, ModelTypeE::PLS, WStar, WStar, PO},
        {ModelTypeE::PLS, ModelTypeE::PLS, WStarRange, WStar, PO},
        {ModelTypeE::PLS, ModelTypeE::PLS, Raw, Raw, Raw},
        {ModelTypeE::PLS, ModelTypeE::PLS, CoeffCS, CoeffCS, CoeffCS},
    };
    for (auto const &row : weights)
        for (int const kind : {14, 19}) {
            plant.project->Info(2).type = row.upper;
            plant.project->Info(1).type = row.lower;
            std::string const made = follow("ContSc", 2, row.weight, kind, 1, 1);
            ProjectVectorData expected = plant.Series("ContSc", 1);
            expected.SetYVar(1);
            expected.obs1 = {1, 3};
            expected.obs2 = {2};
            expected.SetWeightType(kind == 14 ? row.ofScore : row.ofOrthogonal);
            expected.SetWeightComp({1});
            EXPECT_EQ(made, expected.ToStdString(nullptr)) << row.upper << row.lower << row.weight << kind;
        }
}

// Model 6 has a row for each batch A, B, C (observations 1, 4, 7), and variables of model 5: 1 and 2 the first score at
// two points, 3 the second one, 4 an X variable, 5 the score of another phase, 6 an initial condition.
TEST(LowerLevelContribution, FollowsScoresOfBatchesDown) {
    Plant plant;
    RecordingProject &project = *plant.project;
    int const level = project.AddModel(ModelTypeE::PCA, 2);
    project.AddWorkset(level, {1, 4, 7}, {1, 2, 3, 4, 5, 6});
    project.AddPredictions(level, {7, 2, 4});
    project.Info(level).isBatchLevel = true;
    project.Info(level).dataSets = {9};
    project.dataSets[9].sourceDataSet = 1;
    project.dataSets[9].sourceModels = {5};
    project.Info(5).classOrPhaseNames = {"run"};
    project.variables.AddAlias({"phase", "", VarObs::Role::Phase, {"run", "run", "run", "run", "warm", ""}});
    struct {
        float maturity;
        char const *source;
    } const variables[] = {{10, "t [1]"}, {20, "t [1]"}, {10, "to[2]"}, {10, "ph3"}, {10, "t [1]"}, {-99, "charge"}};
    for (std::uint32_t item = 1; item <= 6; ++item) {
        VariableInfo info(item);
        info.maturity = variables[item - 1].maturity;
        info.sourceName = variables[item - 1].source;
        project.variables.SetInfo(info);
    }
    auto const terms = [](std::vector<std::uint32_t> const &mothers) {
        ColumnTerms made;
        for (std::uint32_t const mother : mothers)
            made.AppendTerm(ColumnTerm(mother));
        return made;
    };
    using Mothers = std::vector<std::uint32_t>;
    auto const follow = [&](int model, std::vector<int> const &from, std::vector<int> const &to, Mothers const &first,
                            Mothers const &second, bool predicted = false) {
        ProjectVectorData upper = plant.Series("ContSc", model);
        upper.obs1 = from;
        upper.obs2 = to;
        ColumnTerms const one = terms(first), other = terms(second);
        Selection target = EmptyTarget(plant);
        std::string const message = MessageOf([&] {
            Builder(project, predicted, false)
                .SetLowerLevelContributionDataSeries(target, upper, &one, &other, true, {2, 2});
        });
        return message + ": " + TextOf(target);
    };
    struct {
        std::vector<int> from, to;
        Mothers first, second;
        bool predicted;
        char const *expected;
    } const cases[] = {
        {{}, {2}, {1}, {1}, false, "AlContSc M5,0,0,0,2,2,2,1,1,$,10,1,B$,10,1 1 2"},
        {{1}, {2}, {1, 6, 3}, {2}, false, "AlContSc M5,0,0,0,2,2,2,1,1,A$,20,1,B$,10,1,2 1 2"},
        {{}, {2, 1}, {1, 4}, {1, 2}, false, "AlContSc M5,0,0,0,2,2,2,1,2,$,10,$,20,2,B$,10,A$,10,1 1 2"},
        {{}, {2, 3}, {1, 2}, {1}, false, "CombinedContSc M5,0,0,0,2,2,2,1,1,$,10,2,B$,10,B$,20,1 1 2"},
        {{2}, {}, {1}, {1}, false, "AlContSc M5,0,0,0,2,2,2,1,1,$,10,1,B$,10,1 1 2"}, // of a distance
        {{}, {1}, {1, 2}, {1}, true, "CombinedContScPS M5,0,0,0,2,2,2,1,1,$,10,2,C$,10,C$,20,1 1 2"},
        {{}, {2}, {2}, {1}, true, "AlContScPS M5,0,0,0,2,2,2,1,1,$,10,1,A$,20,1 1 2"},
    };
    for (auto const &row : cases)
        EXPECT_EQ(follow(level, row.from, row.to, row.first, row.second, row.predicted),
                  std::string("nothing: ") + row.expected);

    EXPECT_EQ(follow(1, {}, {2}, {1}, {1}), "The model is not a batch level model.: none");
    EXPECT_EQ(follow(level, {}, {2}, {1, 2, 3}, {5}),
              "Variables from different phases are selected. You can only use variables from one phase: none");
    EXPECT_EQ(follow(level, {}, {2}, {6, 4}, {4}), "None of the selected variables are scores.: none");
    EXPECT_EQ(follow(level, {}, {3}, {1}, {1}),
              "Selected batches could not be found in lower level model model5: none");
    EXPECT_EQ(follow(level, {}, {2}, {1}, {}), "Selected batches could not be found in lower level model model5: none");
    EXPECT_EQ(follow(level, {}, {3}, {1}, {1}, true),
              "Selected batches could not be found in lower level active predictionset: none");
    // Variables may tell batches themselves.
    project.variables.AddAlias({"batch", "", VarObs::Role::Batch, {"A", "A", "B", "", "", ""}});
    EXPECT_EQ(follow(level, {}, {3}, {1, 2}, {3}),
              "nothing: CombinedContSc M5,0,0,0,2,2,2,1,1,B$,10,2,A$,10,A$,20,1,2 1 2");
}

} // namespace
