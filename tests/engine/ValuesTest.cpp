#include "platform/text/Exception.h"
#include "tests/engine/SmallProject.h"

#include <cmath>

// Figures worked by hand for the six rows: a PLS model of two components, and PCA models without and with a missing
// cell.

namespace {

using namespace small;

TEST_F(SmallProject, GivesValuesPredictionsAndResiduals) {
    ExpectFigures(
        *s_project,
        {{"XVar M1,0,2,0,1,1", Scores, {2, 1, 5, 3, 7, 4}, "M1.XVar(x2)"},
         {"XVar M1,0,1,0,1,0", Scores, {1, 2, 3, 4, 5, 6}},
         {"XVar M1,0,1,0,0,0", Scores, {-1.336306, -0.801784, -0.267261, 0.267261, 0.801784, 1.336306}},
         {"XVar M1,0,-1,0,1,1,3,1", Scores, {1, 4, 2, 6, 3, 8}, "M1.XVar(x3)"},
         {"XVar M3,0,2,0,1,1", Scores, {2, 1, -99, 3, 7, 4}},
         {"XVarPS M1,0,2,0,1,1", Scores, {2, 1, -99}, "M1.XVarPS(x2)"},
         {"XObs M1,0,3,0,1,1", Loadings, {3, 5, 2}, "M1.XObs(c)"},
         {"YVar M1,0,1,0,1,1", Scores, {1.2, 1.9, 3.4, 3.8, 5.6, 5.9}, "M1.YVar(y)"},
         {"YVarPS M1,0,1,0,1,1", Scores, {3, 6.5, 2.9}, "M1.YVarPS(y)"},
         {"YPred M1,2,1,0,1,1", Scores, {1.133876, 1.820905, 3.521583, 4.005882, 5.518093, 5.799662}, "M1.YPred[2](y)"},
         {"YVarRes M1,2,1,0,1,1",
          Scores,
          {0.066124, 0.079095, -0.121583, -0.205882, 0.081907, 0.100338},
          "M1.YVarRes[2](y)"},
         {"YPredPS M1,2,1,0,1,1", Scores, {3.169806, 5.976081, 3.910199}, "M1.YPredPS[2](y)"}});
    double const standardised[] = {0.041655, 0.189675, -0.234072};
    for (int k = 0; k < 3; ++k)
        EXPECT_NEAR(
            GetProjectData(*s_project).GetXVarRes(1, 1, true, true, nullptr, TriState::Yes)->GetMatrix()(k + 1, 1),
            standardised[k], 2e-6);
    // The missing cell, by one component and by two.
    EXPECT_NEAR(Row("XVarPred M3,1,2,0,1,1", Scores)[2], 2.611475, 1e-5);
    EXPECT_NEAR(Row("XVarPred M3,2,2,0,1,1", Scores)[2], 3.555894, 1e-5);
}

TEST_F(SmallProject, GivesDistances) {
    ExpectFigures(
        *s_project,
        {{"DModX M1,0,0,0", Scores, {1.217289, 0.930949, 0.645172, 0.549510, 1.126209, 1.290343}, "M1.DModX[0]"},
         {"DModX M1,1,0,0", Scores, {0.319517, 0.919633, 1.061033, 0.823865, 1.443228, 1.079227}},
         {"DModX M1,2,0,0", Scores, {0.832483, 0.386696, 1.297149, 1.495324, 0.761928, 0.811366}},
         {"DModX M3,1,0,0", Scores, {0.296796, 0.995913, 0.633757, 0.760315, 1.768688, 0.901158}},
         {"PModX M1,1,0,0", Scores, {0.904105, 0.464307, 0.370848, 0.534219, 0.186980, 0.359790}},
         {"DModY M1,2,0,0", Scores, {0.556946, 0.666200, 1.024065, 1.734097, 0.689888, 0.845128}},
         {"T2Range M1,0,1,0,2",
          Scores,
          {1.901304, 1.501220, 0.949621, 0.633648, 2.539512, 2.474696},
          "M1.T2Range[1-2]"},
         {"T2Range M3,0,1,0,2", Scores, {1.709080, 1.337036, 0.631580, 0.645223, 3.134347, 2.542734}},
         {"OLevX M1,2,0,0", Scores, {0.380261, 0.300244, 0.189924, 0.126730, 0.507902, 0.494939}},
         {"OLevY M1,1,0,0", Scores, {0.328707, 0.166790, 0.003022, 0.001542, 0.214717, 0.285221}},
         {"OLevY M1,2,0,0", Scores, {0.424076, 0.171261, 0.007085, 0.524975, 0.558873, 0.313731}}});
    GetProjectData const statistics(*s_project);
    IntList const one{1};
    IntList const two{2};
    struct {
        TablePtr table;
        std::vector<double> values;
    } const cases[] = {
        {statistics.GetDModX(1, &one, TriState::No, TriState::No, -1),
         {0.258364, 0.743622, 0.857960, 0.666184, 1.167005, 0.872671}},
        {statistics.GetDModX(1, &one, TriState::Yes, TriState::Yes, -1),
         {0.098754, 0.992488, 1.479296, 0.238148, 1.028302, 1.304906}},
        {statistics.GetDModX(3, &one, TriState::No, TriState::No, -1),
         {0.213328, 0.715833, 0.455526, 0.546492, 1.271281, 0.647726}},
        {statistics.GetDModXPS(1, &two, TriState::Undefined, TriState::Undefined, -1), {2.149665, 27.495836}},
        {statistics.GetT2RangePS(1, 1, 2, -1), {0.670892, 4.730586}},
        {statistics.GetT2RangePS(1, 2, 1, -1), {0.670892, 4.730586}},
        // The last component alone.
        {statistics.GetT2RangePS(1, -1, -1, -1), {0.638161, 2.833093}},
        {statistics.GetDModXPSCombined(1, &two, TriState::Undefined, TriState::Undefined), {2.149665, 27.496558}},
        {statistics.GetPModXPSCombined(1, &two), {0.120746, 0.000106}}};
    for (auto const &row : cases)
        for (std::size_t i = 0; i < row.values.size(); ++i)
            EXPECT_NEAR(row.table->GetMatrix().Row(1)[i], row.values[i], 2e-6 * (1 + row.values[i]))
                << row.table->GetRowName(1);
    // Without batches none has rows.
    EXPECT_EQ(statistics.GetDModX(1, &one, TriState::Yes, TriState::No, 1), nullptr);
}

TEST_F(SmallProject, GivesErrorsOfPrediction) {
    ExpectFigures(
        *s_project,
        {{"SerrL M1,2,1,0", Scores, {1.009704, 1.706175, 3.421319, 3.914935, 5.380190, 5.663091}, "M1.SerrL[2](y)"},
         {"SerrU M1,2,1,0", Scores, {1.258048, 1.935635, 3.621847, 4.096829, 5.655996, 5.936233}},
         {"RMSEE M1,1,0,0", Loadings, {0.224336}, "M1.RMSEE[1]"},
         {"RMSEE M1,2,0,0", Loadings, {0.167903}},
         {"RMSEcv M1,1,0,0", Loadings, {0.678654}},
         {"RMSEcv M1,0,1,0", PerComponent, {0.678654, 0.207380}, "M1.RMSEcv(y)"},
         {"RMSEcv(Last) M1,0,1,0", PerComponent, {0.207380}},
         {"YPredcv M1,2,1,0", Scores, {1.048123, 1.862727, 3.636992, 4.053823, 5.460970, 5.593957}},
         {"YPredErrcv M1,2,1,0", Scores, {0.151877, 0.037273, -0.236992, -0.253823, 0.139030, 0.306043}},
         {"YPredErrcvSE M1,0,1,0", PerComponent, {0.737522, 0.225659}}});
    std::vector<float> const errors = Row("YPredPScvSE M1,2,1,0", Scores);
    std::vector<float> const upper = Row("YPredPSConfInt+ M1,2,1,0,1,1", Scores);
    std::vector<float> const lower = Row("YPredPSConfInt- M1,2,1,0,1,1", Scores);
    std::vector<float> const limit = Row("SerrUPS M1,2,1,0", Scores);
    std::vector<float> const predicted = Row("YPredPS M1,2,1,0,1,1", Scores);
    EXPECT_NEAR(errors[0], 0.068960, 2e-6);
    EXPECT_NEAR(errors[1], 0.320702, 2e-6);
    EXPECT_NEAR(upper[0], 3.466518, 1e-5);
    EXPECT_NEAR(upper[1], 7.355949, 1e-5);
    EXPECT_NEAR(upper[0] + lower[0], 2 * predicted[0], 1e-5);
    EXPECT_NEAR(limit[0] - predicted[0], 0.191501, 1e-5);
    double const squares =
        std::pow(3 - predicted[0], 2) + std::pow(6.5 - predicted[1], 2) + std::pow(2.9 - predicted[2], 2);
    EXPECT_NEAR(Row("RMSEP M1,2,0,0", Loadings)[0], std::sqrt(squares / 3), 1e-5);
    EXPECT_NEAR(Row("RMSEP M1,0,1,0", PerComponent)[1], std::sqrt(squares / 3), 1e-5);
}

TEST_F(SmallProject, SummarisesModels) {
    ExpectFigures(*s_project, {{"R2X M1,0,0,0", PerComponent, {0.651282, 0.347630}, "M1.R2X"},
                               {"R2Y M1,0,0,0", PerComponent, {0.988825, 0.006480}},
                               {"R2Xcum M3,0,0,0", PerComponent, {0.711370, 0.994464}},
                               {"Eig M1,0,0,0", PerComponent, {1.953846, 1.042889}},
                               {"Eig M2,0,0,0", PerComponent, {1.961571, 1.035171}},
                               {"SDt M1,0,0,0", PerComponent, {1.395359, 1.020117}},
                               {"SDt M3,0,0,0", PerComponent, {1.419339, 0.908969}},
                               {"S2X M1,0,0,0", PerComponent, {0.653846, 0.005441}},
                               {"S2Y M1,0,0,0", PerComponent, {0.013969, 0.007825}},
                               {"SSX M1,0,0,0", PerComponent, {5.230770, 0.016323}},
                               {"SSY M1,0,0,0", PerComponent, {0.055877, 0.023476}},
                               {"R2XAdjcum M1,0,0,0", PerComponent, {0.346154, 0.994559}},
                               {"R2YAdjcum M1,0,0,0", PerComponent, {0.986031, 0.992175}},
                               {"R2YAdj M1,0,0,0", PerComponent, {0.986031, 0.006144}},
                               {"Q2cum M1,0,0,0", PerComponent, {0.846590, 0.985675}},
                               {"Q2 M1,0,0,0", PerComponent, {0.846590, 0.906624}},
                               {"Q2cum(Last) M1,0,0,0", PerComponent, {0.985675}, "M1.Q2cum(Last)"},
                               {"Q2cum M2,0,0,0", PerComponent, {-0.314742, 0.957370}},
                               {"R2VX M1,1,0,0", Loadings, {0.990975, 0.501863, 0.461008}, "M1.R2VX[1]"},
                               {"R2VXcum M1,2,0,0", Loadings, {0.998391, 0.999169, 0.999175}},
                               {"R2VXcum M1,0,1,0", PerComponent, {0.990975, 0.998391}, "M1.R2VXcum(x1)"},
                               {"R2VXcum M3,2,0,0", Loadings, {0.987203, 0.998320, 0.998640}},
                               {"S2VX M1,0,0,0", Loadings, {1, 1, 1}, "M1.S2VX[0]"},
                               {"S2VX M1,1,0,0", Loadings, {0.016921, 0.934008, 1.010610}},
                               {"S2VX M3,1,0,0", Loadings, {0.037715, 0.955020, 0.681744}},
                               {"S2X M3,0,0,0", PerComponent, {0.558160, 0.026283}},
                               {"Q2VXcum M2,1,0,0", Loadings, {0.476394, -0.903455, -0.517165}},
                               {"MPowX M1,1,0,0", Loadings, {0.869919, 0.033559, -0.005291}},
                               {"MPowX M1,2,0,0", Loadings, {0.910319, 0.935539, 0.935771}},
                               {"VIP M1,1,0,0", Loadings, {1.230374, 0.947819, 0.766694}, "M1.VIP[1]"},
                               {"VIP M1,2,0,0", Loadings, {1.226383, 0.949327, 0.771208}},
                               {"VIPcvSE M1,2,0,0", Loadings, {0.055917, 0.464969, 0.482516}}});
}

TEST_F(SmallProject, GivesCoefficients) {
    ExpectFigures(
        *s_project,
        {{"CoeffCS M1,2,1,0,0", Loadings, {1.914226, 0.505465, 0.445232, 0.258927}, "M1.CoeffCS[2](y)"},
         {"CoeffMLR M1,2,1,0", Loadings, {3.633333, 0.959408, 0.845081, 0.491461}},
         {"CoeffC M1,2,1,0", Loadings, {3.633333, 0.512825, 0.391197, 0.188467}},
         {"Coeff M1,2,1,0", Loadings, {-0.349809, 0.512825, 0.391197, 0.188467}},
         {"CoeffRot M1,2,1,0", Loadings, {1.914226, 0.514314, 0.398291, 0.322368}},
         {"CoeffCScv M1,2,1,1", Loadings, {1.914226, 0.527766, 0.434241, 0.279666}, "M1.CoeffCScv[2](y)[CV. 1]"},
         {"CoeffCScv M1,2,1,3", Loadings, {1.914226, 0.472070, 0.474040, 0.214470}},
         {"CoeffCScvSE M1,2,1,0", Loadings, {0, 0.032197, 0.027110, 0.040565}}});
}

TEST_F(SmallProject, ReadsDataSetsAndWhatModelsKeep) {
    ExpectFigures(*s_project, {{"VarDS DS1,0,2,0", Scores, {2, 1, 5, 3, 7, 4}, "DS1.Var(x2)"},
                               {"ObsDS DS1,0,3,0", Loadings, {3, 5, 2, 3.4}, "DS1.Obs(c)"},
                               {"VarPS PS,0,1,0", Scores, {3.5, 9, 3.5}, "PS.x1"},
                               {"ObsPS PS,0,8,0", Loadings, {7, 1, 9, 1, 6.5}, "PS.q"},
                               {"SourceOfVarNum M1,0,0,0", Loadings, {1, 2, 3, 4}},
                               {"SourceOfVarNum DS1,0,0,0", Loadings, {1, 2, 3, 4}},
                               {"CVGroups M1,0,0,0", Scores, {1, 2, 3, 1, 2, 3}, "M1.CVGroups"},
                               {"Xavg M3,0,0,0", Loadings, {3.5, 3.4, 4}, "M3.Xavg"},
                               {"Xws M3,0,0,0", Loadings, {0.534522, 0.434372, 0.383482}},
                               {"Yavg M1,0,0,0", Loadings, {3.633333}},
                               {"Yws M1,0,0,0", Loadings, {0.526851}}});
    // Several of one vector, as a selection joins them. Items that are not there are left out.
    struct {
        char const *text;
        ProjectVector::VectorTypeEnum type;
        std::vector<double> second;
    } const lists[] = {{"VarDS DS1,0,-1,0,3,2", Scores, {2, 1, 5, 3, 7, 4}},
                       {"ObsDS DS1,0,-1,0,1,99,3", Loadings, {3, 5, 2, 3.4}},
                       {"VarPS PS,0,-1,0,3,1", Scores, {3.5, 9, 3.5}},
                       {"ObsPS PS,0,-1,0,99,7,8", Loadings, {7, 1, 9, 1, 6.5}},
                       {"XObs M1,0,-1,0,1,1,1,3", Loadings, {3, 5, 2}}};
    for (auto const &row : lists) {
        TablePtr const table = Table(row.text, row.type);
        ASSERT_TRUE(table && table->Rows() == 2) << row.text;
        auto const values = table->GetMatrix().Row(2);
        EXPECT_EQ(std::vector<float>(values.begin(), values.end()),
                  std::vector<float>(row.second.begin(), row.second.end()))
            << row.text;
    }
    EXPECT_THROW(Table("VarDS DS9,0,1,0", Scores), NCError);
    EXPECT_EQ(Table("VarDS DS1,0,99,0", Scores), nullptr);
    EXPECT_EQ(Table("ObsID M1,0,9,0", Scores), nullptr);
}

// Identifiers that are numbers: depths of samples and wavelengths of variables.
TEST(Identifiers, AreValuesWhereTheyAreNumbers) {
    TemporaryFolder const folder;
    auto const project = engine::Project::Create(folder / "numbers.dsp");
    project->AddDataSet(Read("id,400,410,y\n1.5,1,2,3\n2.5,2,1,5\n4,5,3,4\n"));
    engine::ModelRequest request;
    request.type = ModelTypeE::PLS;
    request.responses = {"y"};
    request.components = 1;
    request.crossValidationGroups = 0;
    project->AddModel(request);
    ExpectFigures(*project, {{"ObsID M1,0,1,0", Scores, {1.5, 2.5, 4}}, {"ObsID DS1,0,1,0", Scores, {1.5, 2.5, 4}}});
    ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
    auto const info = project->GetModelInfo(1);
    auto const obsId = handler.Find("ObsID", Scores, ProjectVector::DataTypeModel, info.get());
    auto const varId = handler.Find("VarID", Loadings, ProjectVector::DataTypeModel, info.get());
    EXPECT_TRUE((*obsId)->IsValidModel(*project, *info));
    EXPECT_FALSE((*varId)->IsValidModel(*project, *info)); // "y" is no number
    // Nothing was cross-validated.
    for (char const *text : {"Q2 M1,0,0,0", "RMSEcv(Last) M1,0,1,0"})
        EXPECT_EQ(ProjectDataUtilities::CreateProjectData(*project).GetProjectData(text, PerComponent), nullptr);
}

} // namespace
