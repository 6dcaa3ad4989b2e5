// OPLS and O2PLS models of a project: from the request to the statistics.

#include "tests/engine/SmallProject.h"

namespace {

using namespace small;

char const *const rows = "id,x1,x2,x3,y,z\na,1,2,1,1.2,2.0\nb,2,1,4,1.9,5.1\nc,3,5,2,3.4,1.4\nd,4,3,6,3.8,4.4\n"
                         "e,5,7,3,5.6,0.9\nf,6,4,8,5.9,6.2\n";
char const *const predicted = "id,x1,x2,x3\np,3.5,2,5\nq,9,1,7\n";

// Model 1 OPLS 1 + 1 of y, model 2 O2PLS 1 + 1 + 1 of y and z, model 3 PLS of y with two components; all have a
// prediction set.
class OrthogonalProject : public testing::Test {
protected:
    OrthogonalProject() : m_project(Project::Create(m_folder / "orthogonal.dsp")) {
        m_project->AddDataSet(Read(rows));
        AddModel(*m_project, {ModelTypeE::OPLS, {"y"}, {"z"}, 1}, predicted);
        AddModel(*m_project, {ModelTypeE::O2PLS, {"y", "z"}, {}, 1}, predicted);
        AddModel(*m_project, {ModelTypeE::PLS, {"y"}, {"z"}, 2}, predicted);
    }

    std::vector<float> Row(std::string const &text, ProjectVector::VectorTypeEnum type) const {
        TablePtr const table = ProjectDataUtilities::CreateProjectData(*m_project).GetProjectData(text, type);
        if (!table)
            return {};
        auto const row = table->GetMatrix().Row(1);
        return {row.begin(), row.end()};
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project;
};

// Worked by hand for these six rows.
TEST_F(OrthogonalProject, GivesTheWorkedFiguresOfOpls) {
    ExpectFigures(
        *m_project,
        {{"t M1,1,0,0", Scores, {-1.835790, -1.331184, -0.082078, 0.273628, 1.384310, 1.591115}, "M1.t[1]"},
         {"to M1,1,0,0", Scores, {-0.408166, 0.782874, -0.995510, 0.789415, -1.273711, 1.105098}, "M1.to[1]"},
         {"u M1,1,0,0", Scores, {-1.787224, -1.273091, -0.171378, 0.122413, 1.444469, 1.664811}, "M1.u[1]"},
         {"tPS M1,1,0,0", Scores, {-0.340450, 1.720691}, "M1.tPS[1]"},
         {"toPS M1,1,0,0", Scores, {0.799980, 1.830797}, "M1.toPS[1]"},
         {"YPred M1,1,1,0,1,1", Scores, {1.133876, 1.820905, 3.521583, 4.005882, 5.518093, 5.799662}, "M1.YPred(y)"},
         {"YPredPS M1,1,1,0,1,1", Scores, {3.169806, 5.976081}, "M1.YPredPS(y)"},
         {"YPredcv M1,1,1,0", Scores, {1.048123, 1.862727, 3.636992, 4.053823, 5.460970, 5.593957}},
         {"DModX M1,1,0,0", Scores, {0.832483, 0.386696, 1.297149, 1.495324, 0.761928, 0.811366}, "M1.DModX"},
         {"DModXPS M1,1,0,0", Scores, {2.149665, 27.495836}},
         {"p M1,1,0,0", Loadings, {0.708424, 0.548612, 0.444035}, "M1.p[1]"},
         {"po M1,1,0,0", Loadings, {0.162353, -0.630940, 0.767981}, "M1.po[1]"},
         {"w M1,1,0,0", Loadings, {0.710357, 0.547223, 0.442651}, "M1.w[1]"},
         {"wo M1,1,0,0", Loadings, {0.051768, -0.667824, 0.742516}, "M1.wo[1]"},
         {"w* M1,1,0,0", Loadings, {0.704662, 0.620691, 0.360966}, "M1.w*[1]"},
         {"c M1,1,0,0", Loadings, {0.717316}, "M1.c[1]"},
         {"q M1,1,0,0", Loadings, {0.717316}, "M1.q[1]"},
         {"so M1,1,0,0", Loadings, {0}, "M1.so[1]"},
         {"CoeffCS M1,1,1,0,0", Loadings, {1.914226, 0.505465, 0.445232, 0.258927}, "M1.CoeffCS(y)"},
         {"VIPpred M1,0,0,0", Loadings, {1.227022, 0.950221, 0.769088}, "M1.VIPpred"},
         {"VIPorth M1,0,0,0", Loadings, {0.279223, 1.085122, 1.320812}, "M1.VIPorth"},
         {"VIP M1,1,0,0", Loadings, {1.119165, 0.975494, 0.892121}, "M1.VIP"},
         {"p(corr) M1,1,0,0", Loadings, {0.985283, 0.763015, 0.617568}, "M1.p(corr)[1]"},
         {"po(corr) M1,1,0,0", Loadings, {0.166161, -0.645738, 0.785993}, "M1.po(corr)[1]"},
         {"po(ctr) M1,1,0,0", Loadings, {0.303734, -1.362986, 2.002649}, "M1.po(ctr)[1]"},
         {"po(pareto) M1,1,0,0", Loadings, {0.222063, -0.927341, 1.240160}, "M1.po(pareto)[1]"},
         {"YRelatedProfile M1,0,1,0", Loadings, {0.973430, 0.870455, 0.850451}, "M1.YRelatedProfile(y)"},
         {"R2X M1,0,0,0", PerComponent, {0.644788, 0.354124}, "M1.R2X"},
         {"R2Y M1,0,0,0", PerComponent, {0.995305, 0}, "M1.R2Y"},
         {"Q2cum M1,0,0,0", PerComponent, {0.985675, 0.985675}, "M1.Q2cum"},
         // With one response these are the figures of PLS with one and with two components.
         {"R2(cum)progression M1,0,0,0", PerComponent, {0.988825, 0.995305}, "M1.R2(cum)progression"},
         {"Q2(cum)progression M1,0,0,0", PerComponent, {0.846590, 0.985675}, "M1.Q2(cum)progression"},
         {"RMSEcv-progression M1,0,1,0", PerComponent, {0.678654, 0.207380}, "M1.RMSEcv-progression(y)"}});
}

TEST_F(OrthogonalProject, GivesTheWorkedFiguresOfO2pls) {
    ExpectFigures(
        *m_project,
        {{"t M2,1,0,0", Scores, {-1.914622, -0.895737, -0.533739, 0.616524, 0.722967, 2.004607}, "M2.t[1]"},
         {"u M2,1,0,0", Scores, {-1.902522, -0.914830, -0.475140, 0.288433, 0.968455, 2.035604}, "M2.u[1]"},
         {"to M2,1,0,0", Scores, {-0.074263, -1.067772, 0.923649, -0.666845, 1.536356, -0.651124}, "M2.to[1]"},
         {"uo M2,1,0,0", Scores, {-0.116135, 1.078890, -0.783204, 0.425035, -1.407510, 0.802924}, "M2.uo[1]"},
         {"w M2,1,0,0", Loadings, {0.709700, 0.359108, 0.606108}},
         {"p M2,1,0,0", Loadings, {0.707298, 0.360553, 0.608065}},
         {"w* M2,1,0,0", Loadings, {0.704177, 0.268253, 0.666405}},
         {"wo M2,1,0,0", Loadings, {0.050583, 0.832139, -0.552255}},
         {"po M2,1,0,0", Loadings, {0.170627, 0.845753, -0.520746}},
         {"so M2,1,0,0", Loadings, {0.327578, -0.865000}, "M2.so[1]"},
         {"poso M2,1,0,0", Loadings, {0.170627, 0.845753, -0.520746, 0.327578, -0.865000}},
         {"c M2,1,0,0", Loadings, {0.689809, 0.261232}},
         {"q M2,1,0,0", Loadings, {0.689809, 0.261232}},
         {"pq M2,1,0,0", Loadings, {0.707298, 0.360553, 0.608065, 0.689809, 0.261232}, "M2.pq[1]"},
         {"co M2,1,0,0", Loadings, {-0.354157, 0.935186}},
         {"qo M2,1,0,0", Loadings, {-0.261520, 0.970268}},
         {"r M2,1,0,0", Loadings, {-0.096250, -0.849347, 0.615938}, "M2.r[1]"},
         {"qor M2,1,0,0", Loadings, {-0.261520, 0.970268, -0.096250, -0.849347, 0.615938}, "M2.qor[1]"},
         {"R2X M2,0,0,0", PerComponent, {0.644956, 0.353954, 0}},
         {"R2Y M2,0,0,0", PerComponent, {0.526354, 0, 0.464244}},
         {"YPred M2,1,1,0,1,1", Scores, {1.126511, 2.460542, 2.934506, 4.440551, 4.579917, 6.257974}},
         {"YPred M2,1,2,0,1,1", Scores, {2.239516, 2.821602, 3.028410, 3.685552, 3.746362, 4.478559}, "M2.YPred(z)"}});
}

// What is asked of the whole model names no size; what takes a part of each kind of components away names how many.
TEST_F(OrthogonalProject, NamesTheComponentsThatWereAskedFor) {
    for (auto const &[text, label] : {std::pair("XVarRes M2,1,0,0,1,0,0,0", "M2.XVarRes[1+0](x1)"),
                                      {"XVarRes M2,1,1,1,1,0,0,0", "M2.XVarRes[1+1](x1)"},
                                      {"XVarResYRelated M2,0,1,0,0,0", "M2.XVarResYRelated(x1)"},
                                      {"XVarResSt M2,0,1,0,0,0", "M2.XVarResSt(x1)"},
                                      {"YVarResSt M2,1,1,0,0,0", "M2.YVarResSt[1](y)"},
                                      {"YPredcv M2,0,1,0,0,0", "M2.YPredcv(y)"}}) {
        TablePtr const table = ProjectDataUtilities::CreateProjectData(*m_project).GetProjectData(text, Scores);
        ASSERT_NE(table, nullptr) << text;
        EXPECT_EQ(table->GetRowName(1), label);
    }
}

// With one response, one orthogonal component more is one component more: the same equation and the same distances.
TEST_F(OrthogonalProject, AgreesWithPlsWithOneResponse) {
    struct {
        char const *orthogonal, *pls;
        ProjectVector::VectorTypeEnum type;
    } const cases[] = {
        {"T2Range M1,0,0,0", "T2Range M3,1,1,0,2", Scores},  {"DModXPS+ M1,1,0,0", "DModXPS+ M3,2,0,0", Scores},
        {"SerrL M1,1,1,0", "SerrL M3,2,1,0", Scores},        {"YPredPScvSE M1,1,1,0", "YPredPScvSE M3,2,1,0", Scores},
        {"RMSEE M1,1,0,0", "RMSEE M3,2,0,0", Loadings},      {"CoeffCScvSE M1,1,1,0", "CoeffCScvSE M3,2,1,0", Loadings},
        {"CoeffRot M1,1,1,0", "CoeffRot M3,2,1,0", Loadings}};
    for (auto const &row : cases) {
        std::vector<float> const found = Row(row.orthogonal, row.type), expected = Row(row.pls, row.type);
        ASSERT_FALSE(found.empty()) << row.orthogonal;
        ASSERT_EQ(found.size(), expected.size()) << row.orthogonal;
        for (std::size_t i = 0; i < found.size(); ++i)
            EXPECT_NEAR(found[i], expected[i], 1e-5 * (1 + std::abs(expected[i]))) << row.orthogonal << " at " << i;
    }
}

// The last model of each progression is the model itself.
TEST_F(OrthogonalProject, ProgressionsEndWithTheModel) {
    TablePtr const table =
        ProjectDataUtilities::CreateProjectData(*m_project).GetProjectData("RMSEcv-progression M2,0,2,0", PerComponent);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->GetColumnName(1) + ' ' + table->GetColumnName(2), "1+0 1+1");
    EXPECT_EQ(table->GetRowName(1), "M2.RMSEcv-progression(z)");
    EXPECT_EQ(table->GetMatrix().Row(1)[1], Row("RMSEcv(Last) M2,0,2,0", PerComponent).at(0));
    EXPECT_EQ(Row("Q2(cum)progression M2,0,0,0", PerComponent).at(1), Row("Q2cum(Last) M2,0,0,0", PerComponent).at(0));
    EXPECT_FLOAT_EQ(Row("R2(cum)progression M2,0,0,0", PerComponent).at(1), Row("R2Y M2,0,0,0", PerComponent).at(0));
    EXPECT_EQ(GetProjectData(*m_project).GetR2CumProgression(3), nullptr);
    EXPECT_EQ(GetProjectData(*m_project).GetRMSEcvProgressionColumnIDs(3).Size(), 0);
}

TEST_F(OrthogonalProject, KeepsItsSizesInTheFile) {
    for (int const model : {1, 2}) {
        auto const info = Project::OpenToRead(m_folder / "orthogonal.dsp")->GetModelInfo(model);
        EXPECT_EQ(info->type, model == 1 ? ModelTypeE::OPLS : ModelTypeE::O2PLS);
        EXPECT_EQ(info->predictiveComponents, 1);
        EXPECT_EQ(info->xSideOrthogonalComponents, 1);
        EXPECT_EQ(info->ySideOrthogonalComponents, model - 1);
    }
}

} // namespace
