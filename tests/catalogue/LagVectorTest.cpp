#include "platform/text/Exception.h"
#include "tests/catalogue/DelegateCases.h"

namespace {

using namespace delegates;

constexpr auto Lag = ProjectVector::VectorTypeLag;

// Terms of X: 1, 2, and earlier values of 3 and 1, which are the first and second mother.
boost::shared_ptr<RecordingProject> LaggedModels() {
    auto const project = FourModels();
    for (int model = 1; model <= 4; ++model) {
        project->Model(model).x = ColumnTerms({ColumnTerm(1), ColumnTerm(2), ColumnTerm(3, 2), ColumnTerm(1, 1)});
        project->Info(model).hasLaggedVariables = true;
    }
    return project;
}

// clang-format off
DelegateCase const ofLags[] = {
    {"pLag", Lag, "M1,2,1,0", "GetPLag(1, 2, {1 3 0 0})", "GetPLagColumnIDs(1, {1 3 0 0})"},
    {"pLag", Lag, "M4,1,2,0", "GetPLag(4, 1, {1 1 0 0})", "GetPLagColumnIDs(4, {1 1 0 0})"},
    {"wLag", Lag, "M2,1,2,0", "GetWLag(2, 1, {1 1 0 0})", "GetWLagColumnIDs(2, {1 1 0 0})"},
    {"w*Lag", Lag, "M3,2,1,0", "GetWStarLag(3, 2, {1 3 0 0})", "GetWStarLagColumnIDs(3, {1 3 0 0})"},
    {"VIPLag", Lag, "M2,2,1,0", "GetVIPLag(2, 2, {1 3 0 0})", "GetVIPLagColumnIDs(2, {1 3 0 0})"},
    {"VIPLag", Lag, "M3,0,1,0", "GetVIPLag(3, 0, {1 3 0 0})", "GetVIPLagColumnIDs(3, {1 3 0 0})"},
    {"VIPpredLag", Lag, "M3,0,2,0", "GetVIPPredLag(3, {1 1 0 0})", "GetVIPPredLagColumnIDs(3, {1 1 0 0})"},
    {"VIPorthLag", Lag, "M4,0,1,0", "GetVIPOrthLag(4, {1 3 0 0})", "GetVIPOrthLagColumnIDs(4, {1 3 0 0})"},
    {"CoeffCSLag", Lag, "M2,1,1,0,2", "GetCoeffCSLag(2, 1, {1 3 0 0}, {1 5 0 0})", "GetCoeffCSLagColumnIDs(2, {1 3 0 0})"},
    {"CoeffCScvSELag", Lag, "M2,2,2,0,1", "GetCoeffCScvSELag(2, 2, {1 1 0 0}, {1 4 0 0}, 2)", "GetCoeffCScvSELagColumnIDs(2, {1 1 0 0}, 2)"},
    {"StepResp", Lag, "M3,1,2,0,0-5", "GetImpulseResponse(3, 1, {1 1 0 0}, 0, 5, null)", "GetImpulseResponseColumnIDs(3, 5, {1 1 0 0})"},
    {"StepResp", Lag, "M2,2,1,0,-2--3", "GetImpulseResponse(2, 2, {1 3 0 0}, -2, -3, null)", "GetImpulseResponseColumnIDs(2, 3, {1 3 0 0})"},
};
// clang-format on

TEST(LagVectors, AskOfTheMother) {
    ExpectCalls(ofLags, LaggedModels());
    auto const project = LaggedModels();
    struct {
        char const *name, *args;
    } const nothing[] = {{"pLag", "M1,0,1,0"},        {"pLag", "M1,1,3,0"},         {"pLag", "M1,1,0,0"},
                         {"CoeffCSLag", "M2,1,1,0"},  {"CoeffCSLag", "M2,1,3,0,1"}, {"StepResp", "M2,1,1,0"},
                         {"StepResp", "M2,1,4,0,0-1"}};
    for (auto const &[name, args] : nothing)
        EXPECT_EQ(FindFor(*project, name, Lag, args)->CreateVectorRaw(project, args), nullptr) << name << ' ' << args;
    EXPECT_THROW(FindFor(*project, "CoeffCSLag", Lag, "M2")->CreateVectorRaw(project, "M2,1,1,0,3"), NCError);
    EXPECT_EQ(project->source.Take(), "");
}

// A model without lags or components has none, though a search finds them.
TEST(LagVectors, AreOfLaggedModels) {
    auto const project = LaggedModels();
    struct {
        char const *name, *model;
        bool plain, withoutComponents, lagged;
    } const cases[] = {{"pLag", "M1", false, true, true},       {"StepResp", "M2", false, true, true},
                       {"CoeffCSLag", "M2", false, true, true}, {"VIPLag", "M2", false, true, true},
                       {"VIPLag", "M3", false, false, true},    {"VIPpredLag", "M3", false, false, true},
                       {"VIPorthLag", "M4", false, false, true}};
    for (auto const &row : cases) {
        ProjectVector const *const vector = FindFor(*project, row.name, Lag, row.model);
        ASSERT_NE(vector, nullptr) << row.name;
        ModelInfo info = project->Info(row.model[1] - '0');
        EXPECT_EQ(vector->IsValidModel(*project, info), row.lagged) << row.name;
        info.predictiveComponents = info.xSideOrthogonalComponents = info.ySideOrthogonalComponents = 0;
        EXPECT_EQ(vector->IsValidModel(*project, info), row.withoutComponents) << row.name;
        info.hasLaggedVariables = false;
        EXPECT_EQ(vector->IsValidModel(*project, info), row.plain) << row.name;
    }
    EXPECT_TRUE(FindFor(*project, "StepResp", Lag, "M2")->IsImpulseResponseVector());
    EXPECT_EQ(FindFor(*project, "StepResp", Lag, "M2")->GetLongName(), "Step Response");
    EXPECT_FALSE(FindFor(*project, "StepResp", Lag, "M2")->IsDisplayable());
}

} // namespace
