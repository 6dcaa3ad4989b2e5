// OPLS and O2PLS models of a project: from the request to the statistics.

#include "building/CreateProjectData.h"
#include "catalogue/ProjectVectorHandler.h"
#include "engine/Project.h"
#include "engine/TableReader.h"
#include "platform/GetProjectData.h"
#include "platform/Missing.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

namespace {

using engine::ModelRequest;
using engine::Project;

char const *const rows = "id,x1,x2,x3,y,z\na,1,2,1,1.2,2.0\nb,2,1,4,1.9,5.1\nc,3,5,2,3.4,1.4\nd,4,3,6,3.8,4.4\n"
                         "e,5,7,3,5.6,0.9\nf,6,4,8,5.9,6.2\n";
char const *const newRows = "id,x1,x2,x3\np,3.5,2,5\nq,9,1,7\n";

engine::ImportedTable Read(char const *text) {
    std::istringstream stream(text);
    return engine::ReadTable(stream, "table");
}

// Model 1 OPLS 1 + 1 of y, model 2 O2PLS 1 + 1 + 1 of y and z; both have a prediction set.
class OrthogonalProject : public testing::Test {
protected:
    OrthogonalProject() : m_project(Project::Create(m_folder / "orthogonal.dsp")) {
        m_project->AddDataSet(Read(rows));
        Add(ModelTypeE::OPLS, {"y"}, {"z"});
        Add(ModelTypeE::O2PLS, {"y", "z"}, {});
    }

    void Add(ModelTypeE::Model type, std::vector<std::string> const &responses,
             std::vector<std::string> const &excluded) {
        ModelRequest request;
        request.type = type;
        request.responses = responses;
        request.excluded = excluded;
        request.components = request.xOrthogonal = request.yOrthogonal = 1;
        request.crossValidationGroups = 3;
        m_project->AddPredictions(m_project->AddModel(request), Read(newRows));
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project;
};

TEST_F(OrthogonalProject, GivesTheWorkedFigures) {
    constexpr auto scores = ProjectVector::VectorTypeVariablesScores;
    constexpr auto loadings = ProjectVector::VectorTypeObservationsLoadings;
    struct {
        char const *text;
        ProjectVector::VectorTypeEnum type;
        std::vector<double> values;
    } const cases[] = {{"to M1,1,0,0", scores, {-0.408166, 0.782874, -0.995510, 0.789415, -1.273711, 1.105098}},
                       {"toPS M1,1,0,0", scores, {0.799980, 1.830797}},
                       {"tPS M1,1,0,0", scores, {-0.340450, 1.720691}},
                       {"uo M2,1,0,0", scores, {-0.116135, 1.078890, -0.783204, 0.425035, -1.407510, 0.802924}},
                       {"w* M1,1,0,0", loadings, {0.704662, 0.620691, 0.360966}},
                       {"po(corr) M1,1,0,0", loadings, {0.166161, -0.645738, 0.785993}},
                       {"po(ctr) M1,1,0,0", loadings, {0.303734, -1.362986, 2.002649}},
                       {"po(pareto) M1,1,0,0", loadings, {0.222063, -0.927341, 1.240160}},
                       {"so M2,1,0,0", loadings, {0.327578, -0.865000}},
                       {"qor M2,1,0,0", loadings, {-0.261520, 0.970268, -0.096250, -0.849347, 0.615938}}};
    for (auto const &row : cases) {
        auto const table = ProjectDataUtilities::CreateProjectData(*m_project).GetProjectData(row.text, row.type);
        ASSERT_NE(table, nullptr) << row.text;
        ASSERT_EQ(table->Columns(), static_cast<int>(row.values.size())) << row.text;
        for (std::size_t i = 0; i < row.values.size(); ++i)
            EXPECT_NEAR(table->GetMatrix().Row(1)[i], row.values[i], 2e-6) << row.text << " at " << i;
    }
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

// What cross-validation gives for orthogonal components: all is there, and the two forms agree.
TEST_F(OrthogonalProject, ValidatesOrthogonalComponents) {
    std::set<std::string> const names{"tocv", "pocv", "wocv",   "pocvSE", "wocvSE", "tocvSE", "ucv",  "uocv",
                                      "cocv", "qocv", "cocvSE", "qocvSE", "qcv",    "qcvSE",  "w*cv", "tcv"};
    std::size_t found = 0;
    for (ProjectVector const *vector : *ProjectVectorHandler::Instance()) {
        if (!names.contains(vector->GetName()))
            continue;
        ++found;
        auto const table = vector->CreateVectorRaw(m_project, "M2,1,0,1");
        ASSERT_NE(table, nullptr) << vector->GetName();
        EXPECT_TRUE(table->GetColumnIDs() == vector->CreateColumnIDsRaw(m_project, "M2,1,0,1")) << vector->GetName();
        for (float const value : table->GetMatrix().Values())
            EXPECT_FALSE(IsMissing(value)) << vector->GetName();
    }
    EXPECT_GE(found, names.size());
}

} // namespace
