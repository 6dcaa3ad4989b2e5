#include "platform/text/Exception.h"
#include "tests/contribution/Plant.h"

namespace {

using Builder = ContributionDataBuilder;
using Group = Builder::Group;
using Mode = Builder::Mode;
using Selection = SelectDataSeriesData;
using Weight = ContributionWeightEnum;
using DataSeriesUtilities::ContributionModeEnum;

TEST(ContributionBuilder, ExplainsScores) {
    Plant const plant;
    struct {
        int model;
        std::vector<int> components;
        WeightTypes weights;
        Group from, to;
        char const *expected;
        Weight::WeightType weight;
    } const cases[] = {
        {1, {}, {}, {}, {}, "ContSc M1,0,0,0,1,8,1,0,1,1,1", Weight::Raw},
        {1, {}, {}, {2, 3}, {6, 99, 3}, "ContSc M1,0,0,0,1,8,1,2,1,3,2,1,6,1", Weight::Raw},
        {1, {}, {}, {99}, {4}, "ContSc M1,0,0,0,1,8,1,0,1,5,1", Weight::Raw},
        {1, {2}, {}, {}, {3}, "ContSc M1,0,0,0,1,2,1,0,1,1,1,2", Weight::WStar},
        {1, {1, 3}, {}, {}, {3}, "ContSc M1,0,0,0,2,2,2,1,0,1,1,1,1,3", Weight::WStarWStar},
        {1, {1, 2, 3}, {}, {}, {3}, "ContSc M1,0,0,0,3,2,2,2,1,0,1,1,1,1,2,3", Weight::WStarWStar},
        {3, {1}, {}, {}, {3}, "ContSc M3,0,0,0,1,1,1,0,1,1,1,1", Weight::P},
        {2, {1, 2}, {}, {}, {3}, "ContSc M2,0,0,0,2,1,1,1,0,1,1,1,1,2", Weight::PP},
        {2, {1, 2, 3}, {}, {}, {3}, "ContSc M2,0,0,0,3,1,1,1,1,0,1,1,1,1,2,3", Weight::PRange},
        {3, {1, 2}, {WeightTypeE::P, WeightTypeE::PO}, {}, {3}, "ContSc M3,0,0,0,2,1,9,1,0,1,1,1,1,2", Weight::PPO},
        {3, {1, 2}, {WeightTypeE::PO}, {}, {3}, "ContSc M3,0,0,0,2,1,1,1,0,1,1,1,1,2", Weight::PP},
        {3, {}, {WeightTypeE::PO}, {}, {3}, "ContSc M3,0,0,0,1,0,1,0,1,1,1", Weight::Normalized},
    };
    for (auto const &row : cases) {
        Builder builder(*plant.project, false, false);
        builder.SetComponents(row.components);
        builder.SetWeightVector(row.weights);
        auto const made = builder.CreateScoreContributionDataSeries(row.model, row.from, row.to);
        EXPECT_EQ(TextOf(made), row.expected);
        EXPECT_EQ(made->GetSeries(1).GetWeightType(), row.weight) << row.expected;
    }
    auto const predicted = Builder(*plant.project, true, false).CreateScoreContributionDataSeries(1, {2}, {7, 1});
    EXPECT_EQ(TextOf(predicted), "ContScPS M1,0,0,0,1,8,1,1,3,1,2,1");
    EXPECT_EQ(predicted->GetVectorType(), ProjectVector::VectorTypeObservationsLoadings);
    EXPECT_EQ(predicted->GetDisplayObsPredType(), ProjectVector::Predicted);
}

TEST(ContributionBuilder, ExplainsDistances) {
    Plant const plant;
    Builder const builder(*plant.project, false, false), predicted(*plant.project, true, false);
    EXPECT_EQ(TextOf(builder.CreateDModXContributionDataSeries(1, -1, {5, 99, 1})),
              "ContDModX M1,0,0,0,1,3,1,2,4,2,0,1,3");
    EXPECT_EQ(TextOf(builder.CreateDModXContributionDataSeries(2, 0, {})), "ContDModX M2,0,0,0,1,0,1,1,1,0,1,0");
    EXPECT_EQ(TextOf(builder.CreateDModXContributionDataSeries(4, -1, {99})), "ContDModX M4,0,0,0,1,0,1,0,0,1,0");
    EXPECT_EQ(TextOf(predicted.CreateDModXContributionDataSeries(1, 2, {2, 8})),
              "ContDModXPS M1,0,0,0,1,3,1,2,3,1,0,1,2");
    EXPECT_EQ(TextOf(builder.CreateDModYContributionDataSeries(1, 0, {6})), "ContDModY M1,0,0,0,1,4,1,1,6,0,1,0");
    EXPECT_EQ(TextOf(builder.CreateDModYContributionDataSeries(4, 3, {6})), "ContDModY M4,0,0,0,1,0,1,1,6,0,1,3");
    EXPECT_EQ(TextOf(predicted.CreateDModYContributionDataSeries(1, -1, {})), "ContDModYPS M1,0,0,0,1,4,1,1,1,0,1,3");
}

TEST(ContributionBuilder, ExplainsPredictedResponses) {
    Plant const plant;
    auto const ofClass = static_cast<ModelTypeE::Model>(ModelTypeE::OPLS | 1280);
    struct {
        int model, yVariable, component;
        bool byCoefficients;
        int weighting;
        ModelTypeE::Model type;
        char const *expected;
    } const cases[] = {
        {1, 2, -1, false, 0, ModelTypeE::PLS, "ContSc M1,0,0,0,1,5,2,1,1,0,2,3"},
        {1, -1, 2, true, 1, ModelTypeE::PLS, "ContSc M1,0,0,0,1,6,1,1,1,0,1,2"},
        {1, 1, 0, true, 1, ModelTypeE::PLS, "ContSc M1,0,0,0,1,0,1,1,1,0,1,0"},
        {1, 1, 2, false, 1, ModelTypeE::PLS, "ContSc M1,0,0,0,1,2,1,1,1,0,1,2"},
        {3, 1, 1, false, 1, ModelTypeE::OPLS, "ContSc M3,0,0,0,1,1,1,1,1,0,1,1"},
        {3, 1, 1, false, 2, ModelTypeE::OPLS, "ContSc M3,0,0,0,1,5,1,1,1,0,1,1"},
        {3, 1, 1, false, 2, ofClass, "ContSc M3,0,0,0,1,1,1,1,1,0,1,1"},
        {1, 1, 1, false, 2, static_cast<ModelTypeE::Model>(ModelTypeE::PLS | 1280), "ContSc M1,0,0,0,1,5,1,1,1,0,1,1"},
        {3, 1, 1, false, 3, ModelTypeE::OPLS, "ContSc M3,0,0,0,1,5,1,1,1,0,1,1"},
    };
    for (auto const &row : cases) {
        plant.project->Info(row.model).type = row.type;
        plant.project->Info(row.model).responseWeighting = row.weighting;
        Builder const builder(*plant.project, false, row.byCoefficients);
        Selection selection(plant.project, Selection::Normal, ProjectVector::VectorTypeObservationsLoadings, 1,
                            ProjectVector::Observed);
        auto const add = [&] {
            return builder.SetYPredContributionDataSeries(selection, row.model, row.yVariable, row.component, {3},
                                                          {99});
        };
        Weight::WeightType const chosen = add();
        EXPECT_EQ(TextOf(boost::make_shared<Selection>(selection)), row.expected);
        EXPECT_EQ(chosen, selection.GetSeries(1).GetWeightType()) << row.expected;
        EXPECT_EQ(add(), chosen) << row.expected;
        EXPECT_EQ(selection.NumberOfSeries(), 1) << "there is room for one";
    }
}

TEST(ContributionBuilder, ComparesAlignedPoints) {
    Plant const plant;
    Builder builder(*plant.project, false, true), predicted(*plant.project, true, false);
    BatchPoints const points = {{"A", 3}, {"", 1}, {"B", 3}};
    // By observations, of which 1 is the first row where it stands second, and 7 is no row.
    EXPECT_EQ(TextOf(builder.CreateAlignScoreContributionDataSeries(5, {}, {5, 0, 1, 7})),
              "AlContSc M5,0,0,0,1,2,1,3,$,0,$,10.5,$,20,4,B$,10.5,$,0,A$,20,C$,0,1");
    EXPECT_EQ(TextOf(builder.CreateAlignScoreContributionDataSeries(5, {6, 2}, {})),
              "AlContSc M5,0,0,0,1,2,1,2,B$,30,A$,30,1,A$,10,1");
    EXPECT_EQ(TextOf(predicted.CreateAlignScoreContributionDataSeries(5, {}, {7})),
              "AlContScPS M5,0,0,0,1,2,1,1,$,2,1,C$,2,1");
    EXPECT_EQ(TextOf(builder.CreateAlignDModXContributionDataSeries(5, -1, Group{1, 5})),
              "AlContDModX M5,0,0,0,1,3,1,2,A$,10,B$,10.5,0,2");
    EXPECT_EQ(TextOf(builder.CreateAlignDModXContributionDataSeries(5, -1, Group{0})), "null");
    EXPECT_EQ(TextOf(builder.CreateAlignDModYContributionDataSeries(5, -1, Group{})),
              "AlContDModY M5,0,0,0,1,4,1,1,A$,10,0,2");
    EXPECT_EQ(TextOf(builder.CreateAlignYPredContributionDataSeries(5, -1, -1, {0}, {5})),
              "AlContSc M5,0,0,0,1,6,1,1,$,0,1,B$,10.5,2");
    // By points.
    EXPECT_EQ(TextOf(builder.CreateAlignScoreContributionDataSeries(5, {}, true, points, false)),
              "AlContSc M5,0,0,0,1,2,1,2,$,1,$,3,3,A$,3,$,1,B$,3,1 1");
    EXPECT_EQ(TextOf(builder.CreateAlignDModXContributionDataSeries(5, 0, points, true)),
              "AlContDModX M5,0,0,0,1,0,1,2,A$,3,B$,3,0,0");
    EXPECT_EQ(TextOf(predicted.CreateAlignDModYContributionDataSeries(5, 0, points, true)),
              "AlContDModYPS M5,0,0,0,1,4,1,2,A$,3,B$,3,0,0 1 2");
    EXPECT_EQ(TextOf(builder.CreateAlignYPredContributionDataSeries(5, 1, 0, points, false, points, true)),
              "AlContSc M5,0,0,0,1,0,1,3,A$,3,$,1,B$,3,3,A$,3,$,1,B$,3,0 2");
    // The component 1 of the first of them stayed.
    builder.SetWeightVector({WeightTypeE::P});
    EXPECT_EQ(TextOf(builder.CreateScoreContributionDataSeries(1, {}, {})), "ContSc M1,0,0,0,1,1,1,0,1,1,1,1");
    EXPECT_TRUE(Builder::IsOnlyAverageBatch({}));
    EXPECT_TRUE(Builder::IsOnlyAverageBatch({{"", 1}}));
    EXPECT_FALSE(Builder::IsOnlyAverageBatch(points));
    // Without a model of that number there is none, with -1 it is the current one.
    Builder::Point first, second;
    plant.project->activeModel = 5;
    EXPECT_TRUE(builder.GetAlignedValues(-1, 0, 4, first, second));
    EXPECT_EQ(first, Builder::Point("", 20));
    EXPECT_EQ(second, Builder::Point("B", 20));
    EXPECT_FALSE(builder.GetAlignedValues(0, 1, 2, first, second));
    EXPECT_EQ(TextOf(builder.CreateAlignDModYContributionDataSeries(0, -1, Group{3})), "null");
}

TEST(ContributionBuilder, TellsWhatFails) {
    Plant const plant;
    auto const project = plant.project;
    Builder builder(*project, false, false), predicted(*project, true, false);
    BatchPoints const points = {{"A", 3}};
    EXPECT_EQ(MessageOf([&] {
                  builder.CreateScoreContributionDataSeries(1, {}, {7, 99});
              }),
              "The selected observations are not available in the destination model.");
    EXPECT_EQ(MessageOf([&] { builder.CreateDModXContributionDataSeries(77, 1, {1}); }), "There is no model 77.");
    EXPECT_EQ(MessageOf([&] { builder.CreateDModYContributionDataSeries(2, 1, {1}); }),
              "ContDModY is not available for model 2, which is of another type.");
    for (std::string const &message :
         {MessageOf([&] { predicted.CreateScoreContributionDataSeries(3, {}, {}); }),
          MessageOf([&] { predicted.CreateDModXContributionDataSeries(3, 1, {}); }),
          MessageOf([&] { predicted.CreateDModYContributionDataSeries(3, 1, {}); }),
          MessageOf([&] { predicted.CreateYPredContributionDataSeries(3, 1, 1, {}, {}); }),
          MessageOf([&] { predicted.CreateAlignScoreContributionDataSeries(3, points, true, points, true); }),
          MessageOf([&] { predicted.CreateAlignDModXContributionDataSeries(3, 1, points, true); }),
          MessageOf([&] { predicted.CreateAlignDModYContributionDataSeries(3, 1, points, true); })})
        EXPECT_EQ(message, "Aborted.");
}

TEST(ContributionBuilder, StartsFromModesAndPlots) {
    Plant const plant;
    Builder builder(*plant.project, false, true);
    char const *const ofModes[] = {"null",
                                   "ContSc M1,0,0,0,1,8,1,0,1,1,1",
                                   "ContDModX M1,0,0,0,1,3,1,1,1,0,1,3",
                                   "ContDModY M1,0,0,0,1,4,1,1,1,0,1,3",
                                   "ContSc M1,0,0,0,1,6,1,0,1,1,1,3",
                                   "AlContSc M5,0,0,0,1,2,1,1,$,10,1,A$,10,1",
                                   "AlContSc M5,0,0,0,1,6,1,1,$,10,1,A$,10,2",
                                   "AlContDModX M5,0,0,0,1,3,1,1,A$,10,0,2",
                                   "AlContDModY M5,0,0,0,1,4,1,1,A$,10,0,2"};
    for (int mode = 0; mode <= 8; ++mode) {
        plant.project->activeModel = mode <= 4 ? 77 : 5; // the first fitted one, or the active one
        auto const made = builder.CreateContributionDataSeries(true, static_cast<Mode>(mode));
        EXPECT_EQ(TextOf(made), ofModes[mode]);
        if (made) {
            EXPECT_EQ(ContributionModeEnum::GetContributionMode(made.get()), mode);
        }
    }
    auto const empty = MakeRecordingProject();
    EXPECT_EQ(Builder(*empty, false, false).CreateContributionDataSeries(false, Mode::Score), nullptr);

    struct {
        ProjectVectorData series;
        char const *expected, *withoutGroup; // the second one without observations to compare
    } plots[] = {
        {plant.Series("t", 1, 2), "ContSc M1,0,0,0,1,2,1,0,1,5,1,2", "ContSc M1,0,0,0,1,2,1,0,1,1,1,2"},
        {plant.Series("to", 3, 2), "ContSc M3,0,0,0,1,9,1,0,1,5,1,2", "ContSc M3,0,0,0,1,9,1,0,1,1,1,2"},
        {plant.Series("DModX", 1), "ContDModX M1,0,0,0,1,3,1,1,5,0,1,3", "null"},
        {plant.Series("DModY", 1, 2), "ContDModY M1,0,0,0,1,4,1,1,5,0,1,2", "null"},
        {plant.Series("YPred", 1, 1), "ContSc M1,0,0,0,1,6,1,0,1,5,1,1", "ContSc M1,0,0,0,1,6,1,0,1,1,1,1"},
        {plant.Series("t", 5, 2), "AlContSc M5,0,0,0,1,2,1,1,$,20,1,B$,20,2",
         "AlContSc M5,0,0,0,1,2,1,1,$,10,1,A$,10,2"},
        {plant.Series("DModX", 5, 1), "AlContDModX M5,0,0,0,1,3,1,1,B$,20,0,1", "null"},
        {plant.Series("p", 1, 1), "null", "null"},
    };
    for (auto const &plot : plots) {
        Selection selection = plant.Selection({plot.series});
        EXPECT_EQ(TextOf(Builder::CreateContributionDataSeries(&selection, {}, {4}, false)), plot.expected);
        EXPECT_EQ(TextOf(Builder::CreateContributionDataSeries(&selection, {}, {}, false)), plot.withoutGroup);
        TransformationData transformation;
        transformation.SetTransformationType(TransformationData::PowerSpectrum);
        selection.SetTransformationData(transformation);
        EXPECT_EQ(Builder::CreateContributionDataSeries(&selection, {}, {4}, false), nullptr);
    }
}

TEST(ContributionBuilder, ReadsMarks) {
    Plant const plant;
    auto const observations = [&](Group const &numbers) {
        return std::make_unique<ColumnIDs>(ColumnIDs::Observations, numbers, plant.project, 1);
    };
    auto const batches = [&](std::vector<std::string> const &names) {
        return std::make_unique<ColumnIDs>(NCStringVector(names), "Batch", plant.project, ColumnIDs::Batches, 5);
    };
    Group const untouched{42};
    struct {
        char const *vector;
        std::unique_ptr<ColumnIDs> first, second;
        int model;
        bool isRead;
        Group from, to;
    } const cases[] = {
        {"t", nullptr, observations({}), 1, true, untouched, untouched},
        {"t", observations({3, 1}), nullptr, 1, true, {}, {3, 1}},
        {"t", observations({3}), observations({1, 2}), 1, true, {1, 2}, {3}},
        {"t", nullptr, observations({1, 2}), 1, true, {1, 2}, {}},
        {"t", observations({2}), observations({2}), 1, true, {}, {2}},
        {"t", observations({2, 3}), observations({2, 3}), 1, true, {2, 3}, {2, 3}},
        {"t", batches({"B", "no", "A"}), nullptr, 1, true, {}, {5, 4, 6, 3, 1, 2}},
        {"t", batches({"B"}), nullptr, 0, false, {}, {}},
        {"t", observations({2}), batches({"B"}), 0, false, {}, {}},
        {"T2Range", observations({3, 1}), observations({2}), 1, true, {}, {3}},
        {"T2Range", batches({"B"}), nullptr, 5, false, {}, {}},
    };
    for (auto const &row : cases) {
        Selection selection = plant.Selection({plant.Series(row.vector, 1)});
        Group from = untouched, to = untouched;
        EXPECT_EQ(
            Builder::GetObservationVectors(&selection, false, row.model, row.first.get(), row.second.get(), from, to),
            row.isRead);
        if (row.isRead) {
            EXPECT_EQ(from, row.from) << &row - cases;
            EXPECT_EQ(to, row.to) << &row - cases;
        }
    }
    EXPECT_EQ(*Builder::GetBatchObservations(plant.project, batches({"A", "C"}).get(), 5, true), (Group{2, 8, 7}));
}

} // namespace
