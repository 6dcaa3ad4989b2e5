#include "tests/catalogue/DelegateCases.h"

namespace {

using namespace delegates;

// clang-format off
DelegateCase const cases[] = {
    {"abs(p(corr))", Loadings, "M2,1,0,3", "GetAbsPCorr(2, [1])", "GetPCorrColumnIDs(2)"},
    {"c", Loadings, "M2,1,0,3", "GetC(2, [1])", "GetCColumnIDs(2)"},
    {"c(corr)", Loadings, "M2,1,0,3", "GetCCorr(2, [1])", "GetCCorrColumnIDs(2)"},
    {"ccv", Loadings, "M2,1,0,3", "GetCcv(2, 3, [1])", "GetCcvColumnIDs(2)"},
    {"ccvSE", Loadings, "M2,1,0,3", "GetCcvSE(2, 1)", "GetCcvSEColumnIDs(2)"},
    {"co", Loadings, "M4,1,0,3", "GetCo(4, [1])", "GetCoColumnIDs(4)"},
    {"cocv", Loadings, "M4,1,0,3", "GetCocv(4, 3, [1])", "GetCocvColumnIDs(4)"},
    {"cocvSE", Loadings, "M4,1,0,3", "GetCocvSE(4, 1)", "GetCocvSEColumnIDs(4)"},
    {"p", Loadings, "M2,1,0,3", "GetP(2, [1], 2)", "GetPColumnIDs(2, 2)"},
    {"p(corr)", Loadings, "M2,1,0,3", "GetPCorr(2, [1])", "GetPCorrColumnIDs(2)"},
    {"p(ctr)", Loadings, "M2,1,0,3", "GetPCtr(2, [1], 2)", "GetPColumnIDs(2, 2)"},
    {"pc", Loadings, "M2,1,0,3", "GetPC(2, [1], 2)", "GetPCColumnIDs(2, 2)"},
    {"pc(corr)", Loadings, "M2,1,0,3", "GetPCCorr(2, [1])", "GetPCCorrColumnIDs(2)"},
    {"pccvSE", Loadings, "M2,1,0,3", "GetPCcvSE(2, 1, 2)", "GetPCcvSEColumnIDs(2, 2)"},
    {"pcv", Loadings, "M2,1,0,3", "GetPcv(2, 3, [1], 2)", "GetPcvColumnIDs(2, 2)"},
    {"pcvSE", Loadings, "M2,1,0,3", "GetPcvSE(2, 1, 2)", "GetPcvSEColumnIDs(2, 2)"},
    {"po", Loadings, "M4,1,0,3", "GetPo(4, [1], 2)", "GetPoColumnIDs(4, 2)"},
    {"po(corr)", Loadings, "M4,1,0,3", "GetPoCorr(4, [1])", "GetPoCorrColumnIDs(4)"},
    {"po(ctr)", Loadings, "M4,1,0,3", "GetPoCtr(4, [1], 2)", "GetPoColumnIDs(4, 2)"},
    {"po(pareto)", Loadings, "M4,1,0,3", "GetPoPareto(4, [1], 2)", "GetPoColumnIDs(4, 2)"},
    {"pocv", Loadings, "M4,1,0,3", "GetPocv(4, 3, [1], 2)", "GetPocvColumnIDs(4, 2)"},
    {"pocvSE", Loadings, "M4,1,0,3", "GetPocvSE(4, 1, 2)", "GetPocvSEColumnIDs(4, 2)"},
    {"poso", Loadings, "M4,1,0,3", "GetPoS(4, [1], 2)", "GetPoSColumnIDs(4, 2)"},
    {"poso(corr)", Loadings, "M4,1,0,3", "GetPoSCorr(4, [1])", "GetPoSCorrColumnIDs(4)"},
    {"pq", Loadings, "M4,1,0,3", "GetPQ(4, [1], 2)", "GetPQColumnIDs(4, 2)"},
    {"pq(corr)", Loadings, "M4,1,0,3", "GetPQCorr(4, [1])", "GetPQCorrColumnIDs(4)"},
    {"pqcvSE", Loadings, "M4,1,0,3", "GetPQcvSE(4, 1, 2)", "GetPQcvSEColumnIDs(4, 2)"},
    {"q", Loadings, "M4,1,0,3", "GetQ(4, [1])", "GetQColumnIDs(4)"},
    {"qcv", Loadings, "M4,1,0,3", "GetQcv(4, 3, [1])", "GetQcvColumnIDs(4)"},
    {"qcvSE", Loadings, "M4,1,0,3", "GetQcvSE(4, 1)", "GetQcvSEColumnIDs(4)"},
    {"qo", Loadings, "M4,1,0,3", "GetQo(4, [1])", "GetQoColumnIDs(4)"},
    {"qocv", Loadings, "M4,1,0,3", "GetQocv(4, 3, [1])", "GetQocvColumnIDs(4)"},
    {"qocvSE", Loadings, "M4,1,0,3", "GetQocvSE(4, 1)", "GetQocvSEColumnIDs(4)"},
    {"qor", Loadings, "M4,1,0,3", "GetQor(4, [1])", "GetQorColumnIDs(4)"},
    {"r", Loadings, "M4,1,0,3", "GetR(4, [1])", "GetRColumnIDs(4)"},
    {"so", Loadings, "M4,1,0,3", "GetS(4, [1])", "GetSColumnIDs(4)"},
    {"t", Scores, "M2,1,0,3", "GetT(2, [1], -1)", "GetTColumnIDs(2, -1)"},
    {"t(corr)", Scores, "M2,0,1,0,2", "GetTCorrExt(2, [1, 2], [0, 0])", "GetTCorrColumnIDs(2)"},
    {"t(corr)2", Scores, "M2,0,1,0,2", "GetTCorrExt(2, [1, 2], [0, 1])", "GetTCorrColumnIDs(2)"},
    {"tcv", Scores, "M1,1,0,3", "GetTcv(1, 3, [1])", "GetTcvColumnIDs(1)"},
    {"tcv", Scores, "M2,1,0,3", "GetTcvExcluded(2, [1], -1)", "GetTcvExcludedColumnIDs(2, -1)"},
    {"tcvSE", Scores, "M2,1,0,3", "GetTcvSE(2, 1)", "GetTcvSEColumnIDs(2)"},
    {"to", Scores, "M4,1,0,3", "GetTo(4, [1], -1)", "GetToColumnIDs(4, -1)"},
    {"to(corr)", Scores, "M4,0,1,0,2", "GetToCorr(4, [1, 2], [1, 1])", "GetToCorrColumnIDs(4)"},
    {"to(corr)2", Scores, "M4,0,1,0,2", "GetToCorr(4, [1, 2], [1, 0])", "GetToCorrColumnIDs(4)"},
    {"tocv", Scores, "M4,1,0,3", "GetTocvExcluded(4, [1])", "GetTocvExcludedColumnIDs(4)"},
    {"tocvSE", Scores, "M4,1,0,3", "GetTocvSE(4, 1)", "GetTocvSEColumnIDs(4)"},
    {"toPS", Scores, "M4,1,0,3", "GetToPS(4, [1], -1)", "GetToPSColumnIDs(4, -1)"},
    {"tPS", Scores, "M2,1,0,3", "GetTPS(2, [1], -1)", "GetTPSColumnIDs(2, -1)"},
    {"tPScv", Scores, "M2,1,0,3", "GetTcvPS(2, 3, [1])", "GetTcvPSColumnIDs(2)"},
    {"tPScvSE", Scores, "M2,1,0,3", "GetTcvSEPS(2, 1)", "GetTcvSEPSColumnIDs(2)"},
    {"u", Scores, "M2,1,0,3", "GetU(2, [1])", "GetUColumnIDs(2)"},
    {"ucv", Scores, "M4,1,0,3", "GetUcv(4, [1])", "GetUcvColumnIDs(4)"},
    {"uo", Scores, "M4,1,0,3", "GetUo(4, [1])", "GetUoColumnIDs(4)"},
    {"uocv", Scores, "M4,1,0,3", "GetUocvExcluded(4, [1])", "GetUocvExcludedColumnIDs(4)"},
    {"w", Loadings, "M2,1,0,3", "GetW(2, [1], 2)", "GetWColumnIDs(2, 2)"},
    {"w*", Loadings, "M2,1,0,3", "GetWStar(2, [1], 2)", "GetWStarColumnIDs(2, 2)"},
    {"w*c", Loadings, "M2,1,0,3", "GetWStarC(2, [1], 2)", "GetWStarCColumnIDs(2, 2)"},
    {"w*ccvSE", Loadings, "M2,1,0,3", "GetWStarCcvSE(2, 1, 2)", "GetWStarCcvSEColumnIDs(2, 2)"},
    {"w*cv", Loadings, "M2,1,0,3", "GetWStarcv(2, 3, [1], 2)", "GetWStarcvColumnIDs(2, 2)"},
    {"w*cvSE", Loadings, "M2,1,0,3", "GetWStarcvSE(2, 1, 2)", "GetWStarcvSEColumnIDs(2, 2)"},
    {"wcv", Loadings, "M2,1,0,3", "GetWcv(2, 3, [1], 2)", "GetWcvColumnIDs(2, 2)"},
    {"wcvSE", Loadings, "M2,1,0,3", "GetWcvSE(2, 1, 2)", "GetWcvSEColumnIDs(2, 2)"},
    {"wo", Loadings, "M4,1,0,3", "GetWo(4, [1], 2)", "GetWoColumnIDs(4, 2)"},
    {"wocv", Loadings, "M4,1,0,3", "GetWocv(4, 3, [1], 2)", "GetWocvColumnIDs(4, 2)"},
    {"wocvSE", Loadings, "M4,1,0,3", "GetWocvSE(4, 1, 2)", "GetWocvSEColumnIDs(4, 2)"},
};
// clang-format on

TEST(ScoresAndLoadings, AskTheirOperationsWithTheirArguments) {
    ExpectCalls(cases);
}

TEST(ScoresAndLoadings, ModelKindDecidesWhichOfTwoVectorsAnswers) {
    EXPECT_EQ(CallOf("tcv", Scores, "M1,1,0,2"), "GetTcv(1, 2, [1])");
    EXPECT_EQ(CallOf("tcv", Scores, "M2,1,0,2"), "GetTcvExcluded(2, [1], -1)");
    EXPECT_EQ(CallOf("w", Loadings, "M1,1,0,0"), "no vector");
    EXPECT_EQ(CallOf("to", Scores, "M2,1,0,0"), "no vector");
}

struct NothingCase {
    char const *name;
    ProjectVector::VectorTypeEnum type;
    char const *args;
    bool nothing;
};

TEST(ScoresAndLoadings, GiveNothingOutsideTheirComponents) {
    NothingCase const cases[] = {{"t", Scores, "M1,0,0,0", true},    {"t", Scores, "M1,2,0,0", false},
                                 {"t", Scores, "M1,3,0,0", true},    {"t", Scores, "M4,6,0,0", false},
                                 {"t", Scores, "M4,7,0,0", true},    {"to", Scores, "M4,2,0,0", false},
                                 {"to", Scores, "M4,3,0,0", true},   {"p", Loadings, "M1,0,0,0", true},
                                 {"p", Loadings, "M1,-1,0,0", true}, {"p", Loadings, "M1,9,0,0", false}};
    for (NothingCase const &row : cases)
        EXPECT_EQ(CallOf(row.name, row.type, row.args).empty(), row.nothing) << row.name << " " << row.args;
}

TEST(ScoresAndLoadings, PairsNeedBothComponents) {
    EXPECT_EQ(CallOf("t(corr)", Scores, "M1,0,2,0,1"), "GetTCorrExt(1, [2, 1], [0, 0])");
    for (char const *args : {"M1,0,1,0", "M1,0,1,0,0", "M1,0,0,0,1", "M1,0,-1,0,1", "M1,0,1,0,-1"})
        EXPECT_EQ(CallOf("t(corr)", Scores, args), "") << args;
}

TEST(ScoresAndLoadings, BadSourceGivesNothing) {
    auto const project = FourModels();
    ProjectVector const *const t = FindFor(*project, "t", Scores, "M1");
    for (char const *args : {"DS1,1,0,0", "Mx,1,0,0", "PS,1,0,0", "M9,1,0,0", ",1,0,0"})
        EXPECT_EQ(t->CreateVectorRaw(project, args), nullptr) << args;
    EXPECT_EQ(t->CreateColumnIDsRaw(project, "DS1,1,0,0").Size(), 0);
    EXPECT_EQ(project->source.Take(), "");
}

} // namespace
