#pragma once

#include "building/CreateProjectData.h"
#include "catalogue/ProjectVectorHandler.h"
#include "engine/Project.h"
#include "engine/TableReader.h"
#include "platform/containers/Missing.h"
#include "platform/project/GetProjectData.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace small {

using engine::ModelRequest;
using engine::Project;

inline constexpr auto Scores = ProjectVector::VectorTypeVariablesScores;
inline constexpr auto Loadings = ProjectVector::VectorTypeObservationsLoadings;
inline constexpr auto PerComponent = ProjectVector::VectorTypeComponent;

inline char const *const sixRows =
    "id,x1,x2,x3,y\na,1,2,1,1.2\nb,2,1,4,1.9\nc,3,5,2,3.4\nd,4,3,6,3.8\ne,5,7,3,5.6\nf,6,4,8,5.9\n";
inline char const *const oneMissing =
    "id,x1,x2,x3,y\na,1,2,1,1.2\nb,2,1,4,1.9\nc,3,,2,3.4\nd,4,3,6,3.8\ne,5,7,3,5.6\nf,6,4,8,5.9\n";
inline char const *const newRows = "id,x3,extra,x1,x2,y\np,5,1,3.5,2,3\nq,7,1,9,1,6.5\nr,5,1,3.5,,2.9\n";

inline engine::ImportedTable Read(std::string const &text, std::string const &name = "table") {
    std::istringstream stream(text);
    return engine::ReadTable(stream, name);
}

struct ModelCase {
    ModelTypeE::Model type;
    std::vector<std::string> responses, excluded;
    int components;
    std::vector<engine::VariableLags> lags = {};
};

// One orthogonal component of each kind that the model can have, three rounds; and new rows, the same for all models.
inline void AddModel(Project &project, ModelCase const &model, char const *predictions) {
    ModelRequest request;
    request.type = model.type;
    request.responses = model.responses;
    request.excluded = model.excluded;
    request.components = model.components;
    request.lags = model.lags;
    request.xOrthogonal = request.yOrthogonal = 1;
    request.crossValidationGroups = 3;
    project.AddModel(request);
    project.AddPredictions(Read(predictions), true);
}

// Model 1 PLS, model 2 PCA, both of the complete rows; model 3 PCA and 4 PLS with one cell missing; there is a
// prediction set.
class SmallProject : public testing::Test {
protected:
    static void SetUpTestSuite() {
        s_folder = new TemporaryFolder;
        s_project = Project::Create(*s_folder / "small.dsp");
        s_project->AddDataSet(Read(sixRows));
        s_project->AddDataSet(Read(oneMissing));
        Add(ModelTypeE::PLS, 1);
        Add(ModelTypeE::PCA, 1);
        Add(ModelTypeE::PCA, 2);
        Add(ModelTypeE::PLS, 2);
        s_project->AddPredictions(Read(newRows));
    }
    static void TearDownTestSuite() {
        s_project.reset();
        delete s_folder;
    }

    static void Add(ModelTypeE::Model type, int dataSet) {
        ModelRequest request;
        request.type = type;
        request.dataSet = dataSet;
        (type == ModelTypeE::PCA ? request.excluded : request.responses) = {"y"};
        request.components = 2;
        request.crossValidationGroups = 3;
        s_project->AddModel(request);
    }

    static TablePtr Table(std::string const &text, ProjectVector::VectorTypeEnum type) {
        return ProjectDataUtilities::CreateProjectData(*s_project).GetProjectData(text, type);
    }

    static std::vector<float> Row(std::string const &text, ProjectVector::VectorTypeEnum type) {
        TablePtr const table = Table(text, type);
        if (!table)
            return {};
        auto const row = table->GetMatrix().Row(1);
        return {row.begin(), row.end()};
    }

    static inline TemporaryFolder *s_folder = nullptr;
    static inline boost::shared_ptr<Project> s_project;
};

struct Figures {
    std::string text;
    ProjectVector::VectorTypeEnum type;
    std::vector<double> values;
    char const *label = nullptr;
};

// The first row of each table has these values, and this label where one is given.
inline void ExpectFigures(engine::Project const &project, std::vector<Figures> const &cases) {
    for (Figures const &row : cases) {
        TablePtr const table = ProjectDataUtilities::CreateProjectData(project).GetProjectData(row.text, row.type);
        ASSERT_NE(table, nullptr) << row.text;
        if (row.label) {
            EXPECT_EQ(table->GetRowName(1), row.label);
        }
        ASSERT_EQ(table->Columns(), static_cast<int>(row.values.size())) << row.text;
        for (std::size_t i = 0; i < row.values.size(); ++i)
            EXPECT_NEAR(table->GetMatrix().Row(1)[i], row.values[i], 2e-6 + 2e-6 * std::abs(row.values[i]))
                << row.text << " at " << i;
    }
}

} // namespace small
