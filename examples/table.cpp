#include "building/CreateProjectData.h"
#include "engine/Project.h"
#include "engine/TableReader.h"

#include <cstdio>
#include <filesystem>

int main() {
    std::filesystem::path const file = std::filesystem::temp_directory_path() / "table-example.project";
    std::filesystem::remove(file);
    auto const project = engine::Project::Create(file);
    project->AddDataSet(engine::ReadTable("examples/wine.csv"));
    project->AddModel({.type = ModelTypeE::PCA});

    std::list<std::string> const scores = {"t M1,1,0,0", "t M1,2,0,0"};
    ProjectDataUtilities::CreateProjectData const creator(*project);
    TablePtr const table = creator.GetProjectData(scores, ProjectVector::VectorTypeVariablesScores);
    std::printf("%s of %s is %.4f\n", table->GetRowName(1).c_str(), table->GetColumnName(1).c_str(),
                table->GetMatrix()(1, 1));
    std::filesystem::remove(file);
}
