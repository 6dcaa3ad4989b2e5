// Contributions that are built into tables by the engine: the variable that was disturbed comes first.

#include "building/ProjectDataBuilder.h"
#include "contribution/ContributionDataBuilder.h"
#include "contribution/OOCBatchContributionBuilder.h"
#include "platform/text/Exception.h"
#include "tests/engine/BatchProcess.h"
#include "utilities/DefaultSelection.h"

#include <algorithm>

namespace small {
namespace {

using Builder = ContributionDataBuilder;
using Weight = WeightTypeE;

// The name of the variable with the tallest bar.
std::string Tallest(Builder::SelectionPtr const &selection) {
    if (!selection)
        return "null";
    TablePtr const table(ProjectDataUtilities::ProjectDataBuilder(selection.get()).Build());
    if (!table || table->Rows() != 1)
        return "no table";
    auto const bars = table->GetMatrix().Row(1);
    auto const tallest = std::max_element(bars.begin(), bars.end(),
                                          [](float one, float other) { return std::abs(one) < std::abs(other); });
    return table->GetColumnIDs().GetName(static_cast<int>(tallest - bars.begin()) + 1);
}

TEST(RealContribution, NamesTheDisturbedVariable) {
    std::mt19937 random(3);
    std::normal_distribution<double> noise;
    std::ostringstream rows;
    rows << "id,x1,x2,x3,x4,y\n";
    for (int row = 1; row <= 30; ++row) {
        double const a = noise(random), b = noise(random);
        double const x[] = {a, a + b, b, a - b};
        rows << 'r' << row;
        for (int k = 0; k < 4; ++k) // row 30 has one value that does not go with the others
            rows << ',' << x[k] + 0.2 * noise(random) + (row == 30 && k == 2 ? 8 : 0);
        rows << ',' << a + 3 * b + 0.1 * noise(random) << '\n';
    }
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "disturbed.dsp");
    project->AddDataSet(Read(rows.str().c_str()));
    ModelRequest request;
    request.type = ModelTypeE::PLS;
    request.responses = {"y"};
    request.components = 2;
    project->AddModel(request);
    request.excluded = {"r30"};
    project->AddModel(request);
    project->AddPredictions(Read(rows.str().c_str()), true);
    for (bool const predicted : {false, true}) {
        Builder builder(*project, predicted, true);
        builder.SetComponents({1, 2});
        EXPECT_EQ(Tallest(builder.CreateScoreContributionDataSeries(1, {}, {30})), "x3");
        EXPECT_EQ(Tallest(builder.CreateScoreContributionDataSeries(1, {1, 2, 3}, {30})), "x3");
        EXPECT_EQ(Tallest(builder.CreateDModXContributionDataSeries(1, 1, {30})), "x3");
        EXPECT_EQ(Tallest(builder.CreateDModYContributionDataSeries(1, -1, {30})), "y");
    }
    // A model that has not learnt from the row trusts the variable.
    EXPECT_EQ(Tallest(Builder(*project, true, true).CreateYPredContributionDataSeries(2, 1, -1, {1}, {30})), "x3");
}

// Batches of two phases, of which one has a disturbed x2 from the middle on.
TEST(RealContribution, FollowsABatchToItsPoints) {
    std::istringstream lines(ManyBatches(1, 20));
    std::ostringstream text;
    int rowOfBatch = 0;
    for (std::string line; std::getline(lines, line);) {
        rowOfBatch = line.starts_with("B7,") ? rowOfBatch + 1 : 0;
        if (rowOfBatch > 7) {
            std::vector<std::string> cells;
            std::istringstream row(line);
            for (std::string cell; std::getline(row, cell, ',');)
                cells.push_back(cell);
            line = cells[0] + ',' + cells[1] + ',' + cells[2] + ",9," + cells[4] + ',' + cells[5];
        }
        text << line << '\n';
    }
    TemporaryFolder const folder;
    auto const project = Project::Create(folder / "batches.dsp");
    project->AddDataSet(TableOf(text.str()));
    ModelRequest lower;
    lower.type = ModelTypeE::PLS;
    lower.responses = {"time"};
    lower.components = 2;
    lower.evolution = engine::EvolutionRequest{};
    project->AddPhaseModels(lower);
    int const run = 2;
    int const level = project->AddBatchLevelModel({.model = run}, {.components = 2});
    project->AddPredictions(TableOf(text.str(), "again"), true);
    ProjectUtilities::DefaultSelection defaults(project);

    ProjectVectorData sums;
    sums.SetModelInfoPtr(project->GetModelInfo(run));
    sums.SetProjectVector(ProjectVectorHandler::Instance()->FindVector(
        "XVarAlignedOOCSum", ProjectVector::VectorTypeBatch, ProjectVector::DataTypeModel, sums.GetModelInfo()));
    sums.SetNumber(2);
    sums.multiplier1 = 3;
    ColumnIDs const batches(NCStringVector{"B7", "B8"}, "Batch", project, ColumnIDs::Batches, run);
    BatchPoints points;
    OOCBatchContributionBuilder(*project).GetContributionVector(sums, &batches, points, &defaults);
    ASSERT_FALSE(points.empty());
    for (auto const &[batch, maturity] : points) {
        EXPECT_EQ(batch, "B7");
        EXPECT_GT(maturity, 15);
    }

    // The observations of the batch in the model, of which the last one is disturbed.
    Builder::Group const ofBatch = *Builder::GetBatchObservations(project, &batches, run, false);
    Builder::Point point, other;
    for (bool const predicted : {false, true}) {
        Builder builder(*project, predicted, true);
        EXPECT_EQ(Tallest(builder.CreateAlignScoreContributionDataSeries(run, {}, true, points, true)), "x2");
        EXPECT_EQ(Tallest(builder.CreateAlignDModXContributionDataSeries(run, 1, points, true)), "x2");
        ASSERT_TRUE(builder.GetAlignedValues(run, ofBatch[10], 0, point, other));
        EXPECT_EQ(point.first, "B7");
        EXPECT_GT(point.second, 30);
        EXPECT_LE(point.second, 40);

        // From the row of the batch in the model of batches, by all points of both scores, down to the variables.
        ProjectVectorData upper;
        upper.SetModelInfoPtr(project->GetModelInfo(level));
        upper.obs2 = {7};
        ColumnTerms const &terms = project->GetModel(level)->GetXColumnTerms();
        Builder::SelectionPtr const target = builder.CreateScoreContributionDataSeries(run, {}, {});
        target->RemoveSeries(1);
        ColumnTerms ofRun;
        for (ColumnTerm const &term : terms)
            if (term.GetPrimaryName(project->GetVariables()).starts_with("run "))
                ofRun.AppendTerm(term);
        builder.SetLowerLevelContributionDataSeries(*target, upper, &ofRun, &ofRun, true,
                                                    {Weight::WStar, Weight::WStar});
        EXPECT_EQ(target->GetSeries(1).GetWeightComp(), (std::vector{1, 2}));
        EXPECT_TRUE(std::string(target->GetSeries(1).GetProjectVector()->GetName()).starts_with("CombinedContSc"));
        EXPECT_EQ(Tallest(target), "x2");
        // Without a choice of the phase there are two.
        EXPECT_THROW(builder.SetLowerLevelContributionDataSeries(*target, upper, &terms, &terms, true, {}), Exception);
    }
}

} // namespace
} // namespace small
