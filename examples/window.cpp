// A window in forty lines: it shows a selection, hears of its changes, and draws again.

#include "building/ProjectDataBuilder.h"
#include "catalogue/ProjectVectorHandler.h"
#include "engine/Project.h"
#include "engine/TableReader.h"
#include "platform/project/NCProject.h"
#include "selection/SelectDataSeriesData.h"

#include <cstdio>
#include <filesystem>

class Window : public SelectDataSeriesListener {
public:
    explicit Window(SelectDataSeriesData &selection) : m_selection(selection), m_builder(&selection) {
        selection.SetUpdateSelectObjects(true);
        selection.AddListener(this);
    }
    void OnChangedProjectData() override { Draw(); }
    void Draw() {
        TablePtr const table(m_builder.Build());
        std::printf("%d series over %d observations, the first is %s\n", table->Rows(), table->Columns(),
                    Name().c_str());
    }

private:
    std::string Name() const {
        return m_selection.GetSeries(1).GetFormattedName(m_selection.GetDefaultSelection().get(), 1, true);
    }

    SelectDataSeriesData &m_selection;
    ProjectDataUtilities::ProjectDataBuilder m_builder;
};

int main() {
    auto const file = std::filesystem::temp_directory_path() / "window-example.project";
    std::filesystem::remove(file);
    auto const project = engine::Project::Create(file);
    project->AddDataSet(engine::ReadTable("examples/wine.csv"));
    project->AddModel({.type = ModelTypeE::PCA});

    auto const axis = ProjectVector::VectorTypeVariablesScores;
    SelectDataSeriesData selection(project, SelectDataSeriesData::Normal, axis, -1, ProjectVector::Observed);
    ProjectVectorData series;
    ProjectVectorData::SetProjectVectorDataDefault(project, axis, series, ProjectVector::DataTypeModel, nullptr, 1,
                                                   ProjectVector::Observed);
    selection.AddSeries(series, true);
    Window window(selection);
    window.Draw();
    series.SetComponent(2);
    selection.SetSeries(1, series); // the window hears of it
    std::filesystem::remove(file);
}
