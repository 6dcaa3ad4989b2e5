#include "utilities/ProjectQueries.h"
#include "platform/text/Exception.h"
#include "tests/support/Dice.h"
#include "tests/support/GroupingLocale.h"
#include "tests/support/RecordingProject.h"
#include "utilities/BatchConverter.h"

#include <gtest/gtest.h>

using namespace ProjectUtilities;

namespace {

using Names = std::vector<std::string>;

// Observations 1 to 7 in batches A (1, 2), B (3, 4), C (5), A (6, 7).
boost::shared_ptr<RecordingProject> BatchProject() {
    auto const project = MakeRecordingProject();
    project->observations.AddAlias({"id", "", VarObs::Role::Plain, {"1", "2", "3", "4", "5", "6", "7"}});
    project->observations.AddAlias({"batch", "", VarObs::Role::Batch, {"A", "A", "B", "B", "C", "A", "A"}});
    project->AddBatchModel(1, {"A", "B"});
    project->AddWorkset(1, {1, 2, 3, 4, 6}, {});
    project->AddPredictions(1, {5, 3});
    return project;
}

} // namespace

TEST(ProjectQueries, FindFittedModels) {
    // A letter for each model: f fitted with components, e fitted and empty, n neither, c components and not fitted.
    struct {
        char const *models;
        int first, last, secondLast;
    } const cases[] = {{"", 0, 0, 0},      {"n", 0, 0, 0},   {"f", 1, 1, 1},  {"ef", 2, 2, 1},
                       {"nfenf", 2, 5, 3}, {"fnn", 1, 1, 1}, {"cf", 1, 2, 2}, {"fcn", 1, 1, 1}};
    for (auto const &[models, first, last, secondLast] : cases) {
        auto const project = MakeRecordingProject();
        for (char const *model = models; *model; ++model) {
            int const number = project->AddModel(ModelTypeE::PCA, *model == 'f' || *model == 'c' ? 1 : 0);
            project->Info(number).fitted = *model == 'f' || *model == 'e';
        }
        EXPECT_EQ(GetFirstFittedModel(*project), first) << models;
        EXPECT_EQ(GetLastFittedModel(*project), last) << models;
        EXPECT_EQ(GetSecondLastFittedModel(*project), secondLast) << models;
        EXPECT_FALSE(CheckIfProjectHasLags(*project));
    }
}

TEST(ProjectQueries, TellModelsApart) {
    auto const project = BatchProject();
    project->AddModel(ModelTypeE::PCA, 1);
    project->Info(2).hasLaggedVariables = true;
    EXPECT_TRUE(CheckIfProjectHasLags(*project));
    project->variables.AddAlias({"name", "", VarObs::Role::Plain, {"a", "b", "b"}});
    EXPECT_EQ(GetXTermIndex(*project, 2, "b"), 2u);
    EXPECT_EQ(GetXTermIndex(*project, 2, "c"), 0xFFFFFFFFu);
    EXPECT_EQ(GetXTermIndex(*project, 9, "b"), 0xFFFFFFFFu);
    EXPECT_EQ(GetXTermName(*project, 2, 1), "a");
    EXPECT_EQ(GetXTermName(*project, 2, 3) + GetXTermName(*project, 2, 4), "b");

    EXPECT_TRUE(HasNonWSPredictions(*project, 1)); // 5 is none of the model's
    project->AddPredictions(1, {4, 1});
    EXPECT_FALSE(HasNonWSPredictions(*project, 1));
    EXPECT_FALSE(HasNonWSPredictions(*project, 2));

    project->Info(2).dataSets = {1, 3};
    project->dataSets[1].kind = NCDataSetInfo::Primary;
    project->dataSets[3].kind = NCDataSetInfo::WaveletCompressed;
    EXPECT_FALSE(IsWCSModel(*project, 2)); // the data set itself is gone
    project->AddData(3, {1}, {1});
    EXPECT_TRUE(IsWCSModel(*project, 2));
    project->Info(2).dataSets = {1};
    project->AddData(1, {1}, {1});
    EXPECT_FALSE(IsWCSModel(*project, 2));
    EXPECT_FALSE(IsWCSModel(*project, 1));
}

TEST(ProjectQueries, TellThePointsOfContributions) {
    GroupingLocale const grouping;
    EXPECT_EQ(AddContributionBatchPoints({{"A", 1234.5f}}, {{"B", 0.5f}, {"", 2}}),
              "({B at 0.5, Average at 2} - A at 1234.5)");
    EXPECT_EQ(AddContributionBatchPoints({}, {}), "(Average - Average)");
}

TEST(ProjectQueries, TellSpecialVariablesApart) {
    for (int kind = 0; kind <= 20; ++kind) {
        VariableInfo variable(1);
        variable.kind = kind;
        EXPECT_EQ(IsSpecialULVariable(&variable), (kind >= 1 && kind <= 3) || (kind >= 6 && kind <= 13)) << kind;
        EXPECT_EQ(IsHierarchicalVariable(&variable), kind >= 14 && kind <= 19) << kind;
        variable.dateTime = true;
        EXPECT_TRUE(IsSpecialULVariable(&variable));
    }
}

TEST(ProjectQueries, NarrowColumnsToOrdinaryVariables) {
    auto const project = MakeRecordingProject();
    project->variables.AddAlias({"name", "", VarObs::Role::Plain, {"o1", "o2", "special", "result", "y"}});
    for (auto const &[item, kind] : {std::pair(3u, 1), {4u, 14}}) {
        VariableInfo info(item);
        info.kind = kind;
        project->variables.SetInfo(info);
    }
    int const model = project->AddModel(ModelTypeE::PLS, 1, 0, 0, 0);
    project->Model(model).y.AppendTerm(ColumnTerm(5));
    ColumnIDs const gone(ColumnTerms({ColumnTerm(1)}), MakeRecordingProject(), 1);
    EXPECT_FALSE(HasNonSpecialVariables(&gone));
    Dice dice(1);
    for (int i = 0; i < 2000; ++i) {
        // Variables, or terms of the model; 9 is the product of two.
        bool const ofTerms = dice(0, 1) == 1;
        ColumnTerms terms;
        std::vector<std::uint32_t> numbers;
        ColumnIDs::Numbers plain;
        for (int size = dice(1, 6); size > 0; --size) {
            numbers.push_back(dice({1u, 3u, 3u, 4u, 5u, ofTerms ? 9u : 2u}));
            plain.push_back(numbers.back());
            terms.AppendTerm(numbers.back() == 9 ? ColumnTerm({1, 2}, {}, {}) : ColumnTerm(numbers.back()));
        }
        ColumnIDs const columns =
            ofTerms ? ColumnIDs(terms, project, model) : ColumnIDs(ColumnIDs::Variables, plain, project, 0);
        // s special, h of another model, y of Y, * a product, v ordinary
        std::string kinds;
        for (std::uint32_t const number : numbers)
            kinds += ofTerms && number == 5 ? 'y' : "?vvshv???*"[number];
        int const count = static_cast<int>(kinds.size());
        int first = dice(1, count), last = dice({-1, dice(first, count)});
        auto const end = static_cast<std::size_t>(last == -1 ? count : last), begin = static_cast<std::size_t>(first);
        std::size_t const left = std::min(kinds.find_first_not_of("s*", begin - 1), end - 1);
        std::size_t const right = kinds.find_last_not_of("s*y", end - 1);
        SkipSpecialVariables(&columns, first, last);
        EXPECT_EQ(first, static_cast<int>(left) + 1) << kinds;
        EXPECT_EQ(last, right == std::string::npos || right < left ? first : static_cast<int>(right) + 1) << kinds;
        EXPECT_EQ(HasNonSpecialVariables(&columns), kinds.find_first_of("vy") != std::string::npos) << kinds;
    }
}

TEST(BatchConverter, CountsBatchesAmongTheRows) {
    auto const project = BatchProject();
    BatchConverter const model(*project, 1, false), predicted(*project, 1, true); // A B A; C B
    struct {
        BatchConverter const &converter;
        Names names;
        std::vector<int> indexes;
        Names back;
    } const cases[] = {{model, {"B", "nowhere", "A"}, {2, 3}, {"B", "A"}},
                       {model, {}, {}, {}},
                       {model, {"C"}, {}, {}},
                       {predicted, {"B", "C", "B"}, {2, 1, 2}, {"B", "C", "B"}}};
    for (auto const &row : cases) {
        std::vector<int> indexes{99};
        Names names{"old"};
        row.converter.FromBatchToIndex(row.names, indexes);
        EXPECT_EQ(indexes, row.indexes);
        row.converter.FromIndexToBatch(indexes, names);
        EXPECT_EQ(names, row.back);
    }
    EXPECT_TRUE(model.HasBatch("A") && model.HasBatch("B") && predicted.HasBatch("C"));
    EXPECT_FALSE(model.HasBatch("C") || model.HasBatch("a"));
    project->AddModel(ModelTypeE::PCA, 1);
    EXPECT_THROW(BatchConverter(*project, 9, false), NCError);
    try {
        BatchConverter(*project, 2, true);
        FAIL();
    } catch (NCError const &error) {
        EXPECT_STREQ(error.what(), "Predictions could not be calculated.");
    }
}

TEST(BatchInfoConverter, GoesBetweenADataSetAndSomeOfItsRows) {
    auto const project = BatchProject();
    project->AddData(1, {1, 2, 3, 4, 5}, {}); // A B C
    ObservationInfos const rows{ObservationInfo(5), ObservationInfo(1), ObservationInfo(2)};
    BatchInfoConverter const converter(*project, project->GetDataSet(1), rows);
    for (auto const &[batchInfo, local] : {std::pair(3, 1), {1, 2}, {2, -1}, {0, -1}, {9, -1}})
        EXPECT_EQ(converter.FromBatchInfoToLocalIndex(batchInfo), local) << batchInfo;
    EXPECT_EQ(converter.FromLocalIndexToBatchInfo(0), 3);
    EXPECT_EQ(converter.FromLocalIndexToBatchInfo(1), 1);
}
