#include "utilities/ProjectQueries.h"
#include "platform/text/Exception.h"
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
    EXPECT_FALSE(IsWCSModel(*project, 1));
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
    // Variables, a product of two as 9; as columns of a model's terms or plain; the range; what is left; any ordinary
    struct {
        std::vector<std::uint32_t> variables;
        bool terms;
        int first, last, expectedFirst, expectedLast;
        bool ordinary;
    } const cases[] = {{{1, 2}, false, 1, -1, 1, 2, true},      {{3, 1, 4, 2, 3}, false, 1, -1, 2, 4, true},
                       {{3, 3, 3}, false, 1, -1, 3, 3, false},  {{4, 3}, false, 1, -1, 1, 1, false},
                       {{3, 1, 2, 3}, false, 3, 4, 3, 3, true}, {{1, 3, 3, 2}, false, 2, 3, 3, 3, true},
                       {{9, 1, 5, 9}, true, 1, -1, 2, 2, true}, {{5, 1, 5}, true, 1, -1, 1, 2, true},
                       {{1, 5}, false, 1, -1, 1, 2, true},      {{9, 3}, true, 1, -1, 2, 2, false}};
    for (auto const &row : cases) {
        ColumnTerms terms;
        ColumnIDs::Numbers numbers;
        for (std::uint32_t const variable : row.variables) {
            terms.AppendTerm(variable == 9 ? ColumnTerm({1, 2}, {}, {}) : ColumnTerm(variable));
            numbers.push_back(variable);
        }
        ColumnIDs const columns =
            row.terms ? ColumnIDs(terms, project, model) : ColumnIDs(ColumnIDs::Variables, numbers, project, 0);
        int first = row.first, last = row.last;
        SkipSpecialVariables(&columns, first, last);
        EXPECT_EQ(std::pair(first, last), std::pair(row.expectedFirst, row.expectedLast))
            << testing::PrintToString(row.variables);
        EXPECT_EQ(HasNonSpecialVariables(&columns), row.ordinary) << testing::PrintToString(row.variables);
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
    EXPECT_TRUE(model.HasBatch("A") && predicted.HasBatch("C"));
    EXPECT_FALSE(model.HasBatch("C") || model.HasBatch("a"));
    project->AddModel(ModelTypeE::PCA, 1);
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
