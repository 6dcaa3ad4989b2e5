#include "tests/catalogue/DelegateCases.h"

namespace {

using namespace delegates;

// What a vector asks for its text behind "M2,0,0,0,".
struct ContributionCase {
    char const *name, *tail, *call;
};

// Terms 4 and 5 are Y. A first weight of 0 or 8 and a single component stand for one weight, whatever follows.
// clang-format off
ContributionCase const cases[] = {
    {"ContSc", "1,8,0,0,1,3,0,1,2,3", "GetContributionScoresSingleWeight(2, [], [3], 8, 1, 0, 2)"},
    {"ContSc", "2,0,2,0,0,1,3,0,1,2", "GetContributionScoresSingleWeight(2, [], [3], 0, 1, 0, 2)"},
    {"ContSc", "2,2,2,0,2,4,5,1,3,1,1,2", "GetContributionScoresMultiWeight(2, [4, 5], [3], [2, 2], [1, 2], 2)"},
    {"ContSc", "1,9,0,0,0,0,1,2", "GetContributionScoresMultiWeight(2, [], [], [9], [1, 2], 2)"},
    {"ContSc", "1,2,7,1,4,1,3,2,1", "GetContributionScoresSingleWeight(2, [4], [3], 2, 1, 2, 2)"},
    // Without components the list is all of the tail again.
    {"ContSc", "1,2,0,0,0,0", "GetContributionScoresMultiWeight(2, [], [], [2], [1, 2, 0, 0, 0, 0], 2)"},
    {"ContScPS", "1,5,2,0,1,1,2,2", "GetContributionScoresPSSingleWeight(2, [], [1], 5, 2, 2, 2)"},
    {"ContScPS", "2,1,1,0,0,1,1,0,1,2", "GetContributionScoresPSMultiWeight(2, [], [1], [1, 1], [1, 2], 2)"},
    {"AlContSc", "1,1,2,1,A,1$,1.5,1,$,2,1", "GetContributionScoresSingleWeight(2, [A,1@1.5], [@2], 1, 1, 2, 2, false)"},
    {"AlContSc", "2,2,2,0,0,1,B$,2,1,2", "GetContributionScoresMultiWeight(2, [], [B@2], [2, 2], [1, 2], 2, false)"},
    {"AlContScPS", "1,8,0,0,1,B$,2,1,2", "GetContributionScoresPSSingleWeight(2, [], [B@2], 8, 1, 0, 2, false)"},
    {"AlContScPS", "1,1,0,0,1,B$,2,1,2", "GetContributionScoresPSMultiWeight(2, [], [B@2], [1], [1, 2], 2, false)"},
    {"CombinedContSc", "1,1,0,0,1,B$,2,1", "GetContributionScoresSingleWeight(2, [], [B@2], 1, 1, 0, 2, true)"},
    {"CombinedContSc", "1,1,0,0,1,B$,2,1,2", "GetContributionScoresMultiWeight(2, [], [B@2], [1], [1, 2], 2, true)"},
    {"CombinedContScPS", "1,1,0,0,1,B$,2,2", "GetContributionScoresPSSingleWeight(2, [], [B@2], 1, 2, 0, 2, true)"},
    {"CombinedContScPS", "1,2,0,0,1,B$,2,1,2", "GetContributionScoresPSMultiWeight(2, [], [B@2], [2], [1, 2], 2, true)"},
    {"ContDModX", "2,3,1,5,1,4,1,9,2,1,2", "GetContributionDModX(2, [4], 3, 1, 2, 2)"},
    {"ContDModXPS", "1,0,0,2,4,1,0,0,0", "GetContributionDModXPS(2, [4, 1], 0, 0, 0, 2)"},
    {"AlContDModX", "1,3,2,1,A$,7,0,1", "GetContributionDModX(2, [A@7], 3, 1, 2, 2)"},
    {"AlContDModXPS", "1,3,0,1,A$,7,1,B$,8,2", "GetContributionDModXPS(2, [A@7], 3, 2, 0, 2)"},
    {"ContDModY", "1,4,2,1,4,0,2,1", "GetContributionDModY(2, [4], 4, 2)"},
    {"ContDModYPS", "1,8,1,0,0,1,1", "GetContributionDModYPS(2, [], 8, 1)"},
    {"AlContDModY", "1,4,2,1,A$,7,0", "GetContributionDModY(2, [A@7], 4, 2)"},
    {"AlContDModYPS", "1,4,2,1,A$,7,0,1", "GetContributionDModYPS(2, [A@7], 4, 2)"},
    // Too little is said: no weight, no component of an aligned form, no group at all.
    {"ContSc", "0,0,0,0,0,1", ""},
    {"AlContSc", "1,1,0,0,0", ""},
    {"AlContDModX", "1,3,0,0,0", ""},
};
// clang-format on

TEST(ContributionVectors, AskTheOperationOfTheirWeights) {
    for (ContributionCase const &row : cases)
        EXPECT_EQ(CallOf(row.name, Loadings, (std::string("M2,0,0,0,") + row.tail).c_str()), row.call)
            << row.name << ' ' << row.tail;
    for (char const *const args : {"M2,0,0,0", "M2", "DS1,0,0,0,1,8,0,0,0,0,1"})
        EXPECT_EQ(ProjectVectorHandler::Instance()
                      ->FindVector("ContSc", Loadings, ProjectVector::DataTypeModel, nullptr)
                      ->CreateVectorRaw(FourModels(), args),
                  nullptr)
            << args;
}

TEST(ContributionVectors, TellColumnsAndNames) {
    struct {
        char const *name, *columns, *longName;
    } const forms[] = {
        {"ContSc", "GetContributionScoresSingleWeightColumnIDs(2, 2)", "Score Contrib"},
        {"ContScPS", "GetContributionScoresPSSingleWeightColumnIDs(2, 2)", "Score ContribPS"},
        {"AlContSc", "GetContributionScoresSingleWeightColumnIDs(2, 2)", "Score Contrib"},
        {"AlContScPS", "GetContributionScoresPSSingleWeightColumnIDs(2, 2)", "Score ContribPS"},
        {"CombinedContSc", "GetContributionScoresSingleWeightColumnIDs(2, 2)", "Combined Score Contrib"},
        {"CombinedContScPS", "GetContributionScoresPSSingleWeightColumnIDs(2, 2)", "Combined Score Contrib PS"},
        {"ContDModX", "GetContributionDModXColumnIDs(2, 2)", "DModX Contrib"},
        {"ContDModXPS", "GetContributionDModXPSColumnIDs(2, 2)", "DModXPS Contrib"},
        {"AlContDModX", "GetContributionDModXColumnIDs(2, 2)", "DModX Contrib"},
        {"AlContDModXPS", "GetContributionDModXPSColumnIDs(2, 2)", "DModXPS Contrib"},
        {"ContDModY", "GetContributionDModYColumnIDs(2)", "DModY Contrib"},
        {"ContDModYPS", "GetContributionDModYPSColumnIDs(2)", "DModYPS Contrib"},
        {"AlContDModY", "GetContributionDModYColumnIDs(2)", "DModY Contrib"},
        {"AlContDModYPS", "GetContributionDModYPSColumnIDs(2)", "DModYPS Contrib"}};
    auto const project = FourModels();
    for (auto const &form : forms) {
        ProjectVector const *const vector = FindFor(*project, form.name, Loadings, "M2");
        ASSERT_NE(vector, nullptr) << form.name;
        vector->CreateColumnIDsRaw(project, "M2,0,0,0,1,8,0,0,0,0,1");
        EXPECT_EQ(project->source.Take(), form.columns) << form.name;
        EXPECT_EQ(vector->GetLongName(), form.longName) << form.name;
        EXPECT_EQ(vector->GetHelpString().find(std::string(form.name) + ": "), 0u) << form.name;
    }
}

} // namespace
