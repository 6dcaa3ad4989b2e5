#include "building/ProjectDataBuilder.h"
#include "navigation/SelectedNumbers.h"
#include "tests/engine/SmallProject.h"
#include "utilities/DefaultSelection.h"

namespace {

using namespace small;
using DefaultItems = SmallProject;

// A plot of one vector, whose number is that of the defaults where none is given.
SelectDataSeriesData Plot(boost::shared_ptr<Project> const &project, char const *name,
                          ProjectVector::VectorTypeEnum type, int model, std::uint32_t number) {
    ProjectVectorData data;
    data.SetModelInfoPtr(project->GetModelInfo(model));
    data.SetProjectVector(
        ProjectVectorHandler::Instance()->FindVector(name, type, ProjectVector::DataTypeModel, data.GetModelInfo()));
    data.SetNumber(number);
    if (number == ProjectVectorData::NotSet)
        data.SetDefaultNumberID(ProjectUtilities::DefaultSelection(project));
    SelectDataSeriesData selection(project, SelectDataSeriesData::Normal, type, -1, ProjectVector::ObsAndPred);
    selection.AddSeries(data, true);
    return selection;
}

std::string RowOf(SelectDataSeriesData const &selection) {
    TablePtr const table(ProjectDataUtilities::ProjectDataBuilder(&selection).Build());
    return table ? table->GetRowName(1) : "";
}

// What one plot shows, the next one does, of another model and after the project was closed, too.
TEST_F(DefaultItems, OpenTheNextPlot) {
    struct {
        char const *name;
        ProjectVector::VectorTypeEnum type;
        std::uint32_t number;
        char const *expected, *next;
    } const cases[] = {{"XVar", Scores, 3, "M1.XVar(x3)", "M2.XVar(x3)"},
                       {"XVar", Scores, 2, "M1.XVar(x2)", "M2.XVar(x2)"},
                       {"XObs", Loadings, 5, "M1.XObs(e)", "M2.XObs(e)"}};
    for (auto const &row : cases) {
        SelectDataSeriesData selection = Plot(s_project, row.name, row.type, 1, row.number);
        EXPECT_EQ(selection.IsProjectIndependent(), SelectDataSeriesData::GlobalTypeIndependentAfterDefaults);
        EXPECT_EQ(RowOf(selection), row.expected);
        EXPECT_TRUE(selection.MakeProjectIndependent());
        EXPECT_EQ(RowOf(selection), row.expected);
        EXPECT_EQ(selection.IsProjectIndependent(), SelectDataSeriesData::GlobalTypeIndependent);
        EXPECT_EQ(RowOf(Plot(s_project, row.name, row.type, 2, ProjectVectorData::NotSet)), row.next);
    }
    s_project.reset();
    s_project = Project::OpenToWrite(*s_folder / "small.dsp");
    EXPECT_EQ(RowOf(Plot(s_project, "XVar", Scores, 2, ProjectVectorData::NotSet)), "M2.XVar(x2)");
}

} // namespace
