#include "selection/SavedSelection.h"
#include "building/ProjectDataBuilder.h"
#include "platform/storage/XercesXMLSection.h"
#include "platform/text/Exception.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/engine/SmallProject.h"
#include "utilities/DefaultSelection.h"

#include <cmath>
#include <functional>

namespace {

using namespace small;
using Selection = SelectDataSeriesData;
using Axis = ProjectVector::VectorTypeEnum;

char const *const eightRows = "id,x0,x3,y,x2,x1\ng,0,3,9,1,9\na,5,1,1.2,2,1\nb,3,4,1.9,1,2\nc,4,2,3.4,5,3\n"
                              "d,1,6,3.8,3,4\ne,2,3,5.6,7,5\nf,7,8,5.9,4,6\nh,6,5,2,2,8\n";
char const *const halfOfThem = "id,x3,z,x2\na,1,7,2\nb,4,5,1\nc,2,6,5\nd,6,2,3\ne,3,1,7\nk,8,3,4\n";

struct Fit {
    ModelTypeE::Model type;
    int components;
    std::vector<std::string> excluded = {};
};

boost::shared_ptr<Project> Made(TemporaryFolder const &folder, char const *name, char const *rows,
                                std::vector<Fit> const &fits) {
    auto const project = Project::Create(folder / name);
    project->AddDataSet(Read(rows));
    for (Fit const &fit : fits) {
        ModelRequest request;
        request.type = fit.type;
        request.excluded = fit.excluded;
        (fit.type == ModelTypeE::PCA ? request.excluded : request.responses).push_back("y");
        request.components = fit.components;
        request.xOrthogonal = 1;
        request.crossValidationGroups = 3;
        if (fit.type == ModelTypeE::PCA && std::string(rows).find(",y") == std::string::npos)
            request.excluded.pop_back();
        project->AddModel(request);
    }
    return project;
}

// A series of a model, or of data set 1 for model 0, with its numbers.
struct Wanted {
    char const *name;
    int model, component, number, number2 = -1;
    std::vector<int> group = {};
};

ProjectVectorData DataOf(Project const &project, Axis axis, Wanted const &wanted) {
    auto const model = wanted.model > 0 ? project.GetModelInfo(wanted.model) : nullptr;
    ProjectVectorData data;
    data.SetProjectVector(ProjectVectorHandler::Instance()->FindVector(
        wanted.name, axis, model ? ProjectVector::DataTypeModel : ProjectVector::DataTypeDataSet, model.get()));
    if (model)
        data.SetModelInfoPtr(model);
    else
        data.SetDataSet(1);
    data.SetComponent(wanted.component);
    data.SetNumber(static_cast<std::uint32_t>(wanted.number));
    data.SetNumberID2(static_cast<std::uint32_t>(wanted.number2));
    data.obs2 = wanted.group;
    return data;
}

// "label: values" for each row that the selection gives, "no table" for none.
std::string Shown(Selection const &selection) {
    ProjectDataUtilities::ProjectDataBuilder builder(&selection);
    TablePtr const table(builder.Build());
    if (!table || table->Rows() != static_cast<int>(selection.VectorsInUse().size()))
        return "no table";
    std::string text;
    int row = 0;
    for (ProjectVectorData const *const data : selection.VectorsInUse()) {
        text += data->GetFormattedName(selection.GetDefaultSelection().get(), 1, false);
        for (float const value : table->GetMatrix().Row(++row))
            text += ' ' + std::to_string(std::lround(value * 10));
        text += '\n';
    }
    return text;
}

struct Restored {
    std::string shown, losses;
};

Restored Restore(boost::shared_ptr<Project> const &project, ConfigurationSection const &saved,
                 std::optional<int> model = {}) {
    Selection selection(project, Selection::Normal, ProjectVector::VectorTypeNone, -1, ProjectVector::ObsAndPred);
    std::vector<std::string> losses;
    Restored restored;
    try {
        restored.shown = SavedSelection::Read(saved, model, selection, losses) ? Shown(selection) : "nothing";
    } catch (NCError const &error) {
        restored.shown = error.what();
    }
    for (std::string const &loss : losses)
        restored.losses += loss + '\n';
    return restored;
}

// The row of a text of the catalogue, as Shown writes it.
std::string Values(Project const &project, std::string const &text, Axis axis) {
    TablePtr const table = ProjectDataUtilities::CreateProjectData(project).GetProjectData(text, axis);
    std::string values;
    if (table)
        for (float const value : table->GetMatrix().Row(1))
            values += ' ' + std::to_string(std::lround(value * 10));
    return values;
}

} // namespace

class SavedSelectionTest : public testing::Test {
protected:
    // Scores, a response and variables of model 1, and a variable of the data.
    void Save(Axis axis, std::vector<Wanted> const &series, std::function<void(Selection &)> const &change = {}) {
        Selection selection(m_first, Selection::Normal, axis, -1, ProjectVector::ObsAndPred);
        for (Wanted const &wanted : series)
            ASSERT_TRUE(selection.AddSeries(DataOf(*m_first, axis, wanted), true));
        if (change)
            change(selection);
        ASSERT_NE(Shown(selection), "no table");
        SavedSelection::Write(selection, m_saved, false);
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_first = Made(m_folder, "first", sixRows,
                                              {{ModelTypeE::PLS, 2},
                                               {ModelTypeE::PLS, 1, {"x1"}},
                                               {ModelTypeE::PCA, 2},
                                               {ModelTypeE::OPLS, 1},
                                               {ModelTypeE::PLS, 0}});
    XercesXMLSection m_saved;
};

TEST_F(SavedSelectionTest, FollowsItsItemsThroughOtherModels) {
    Save(Scores, {{"t", 1, 2, -1}, {"YPred", 1, 2, 1}, {"XVar", 1, -1, 3}, {"XVar", 1, -1, 1}});
    std::string const x3 = " 10 40 20 60 30 80", x1 = " 10 20 30 40 50 60";
    struct Case {
        std::optional<int> model;
        std::string t, yPred, variables, losses;
    } const cases[] = {
        {{}, "M1.t[Comp. 2]", "M1.YPred[Comp. 2](y)", "M1.XVar(x3)" + x3 + "\nM1.XVar(x1)" + x1 + "\n", ""},
        // Fewer components, and the first variable is left out, so that the third one counts as the second.
        {2, "M2.t[Comp. 1]", "M2.YPred[Comp. 1](y)", "M2.XVar(x3)" + x3 + "\n",
         "M1.t[Comp. 2]: there is no component 2 any more; component 1 stands in.\n"
         "M1.YPred[Comp. 2](y): there is no component 2 any more; component 1 stands in.\n"
         "M1.XVar(x1): there is no variable \"x1\" any more.\n"},
        {3, "M3.t[Comp. 2]", "", "M3.XVar(x3)" + x3 + "\nM3.XVar(x1)" + x1 + "\n",
         "M1.YPred[Comp. 2](y): Vector is not available for this model: YPred\n"},
        {4, "M4.t[Comp. 1]", "M4.YPred(y)", "M4.XVar(x3)" + x3 + "\nM4.XVar(x1)" + x1 + "\n",
         "M1.t[Comp. 2]: there is no component 2 any more; component 1 stands in.\n"},
    };
    for (Case const &test : cases) {
        Restored const restored = Restore(m_first, m_saved, test.model);
        EXPECT_EQ(restored.losses, test.losses) << test.model.value_or(0);
        for (std::string const &label : {test.t, test.yPred, test.variables})
            EXPECT_NE(restored.shown.find(label), std::string::npos) << restored.shown;
    }
    EXPECT_EQ(Restore(m_first, m_saved, 5).shown.substr(0, 6), "M5.YPr");
    EXPECT_EQ(Restore(m_first, m_saved, 77).shown, "nothing");
    // The active model is the newest one.
    m_saved.OpenSubSection("DataSeries")->WriteKey("ActiveModel", 1);
    EXPECT_EQ(Restore(m_first, m_saved).losses, Restore(m_first, m_saved, m_first->GetActiveModelNumber()).losses);
}

// Another project counts observations, variables and terms in its own way, or does not have them.
TEST_F(SavedSelectionTest, FindsItsItemsInOtherData) {
    auto const more = Made(m_folder, "more", eightRows, {{ModelTypeE::PLS, 2}});
    auto const half = Made(m_folder, "half", halfOfThem, {{ModelTypeE::PCA, 2}});
    Save(Scores, {{"XVar", 1, -1, 1}, {"XVar", 1, -1, 3}, {"YPred", 1, 2, 1}, {"VarDS", 0, -1, 2}});
    Restored restored = Restore(more, m_saved);
    EXPECT_EQ(restored.losses, "");
    EXPECT_EQ(restored.shown, "M1.XVar(x1) 90 10 20 30 40 50 60 80\nM1.XVar(x3) 30 10 40 20 60 30 80 50\n"
                              "M1.YPred[Comp. 2](y)" +
                                  Values(*more, "YPred M1,2,1,0,1,1", Scores) +
                                  "\nDS1.Variable(x2) 10 20 10 50 30 70 40 20\n");
    restored = Restore(half, m_saved);
    EXPECT_EQ(restored.shown, "M1.XVar(x3) 10 40 20 60 30 80\nDS1.Variable(x2) 20 10 50 30 70 40\n");
    EXPECT_EQ(restored.losses, "M1.XVar(x1): there is no variable \"x1\" any more.\n"
                               "M1.YPred[Comp. 2](y): Vector is not available for this model: YPred\n");

    // Observations: one that is among the columns, one that is not, and the groups of a contribution.
    Save(Loadings, {{"ContSc", 1, 2, -1, -1, {3, 6}}});
    restored = Restore(more, m_saved);
    EXPECT_EQ(restored.losses, "");
    EXPECT_EQ(restored.shown.substr(0, 38), "M1.Score Contrib(Obs {c, f} - Average)");
    restored = Restore(half, m_saved);
    EXPECT_NE(restored.losses.find("Weight=Normalized: there is no observation \"f\" any more.\n"), std::string::npos);
    EXPECT_EQ(restored.shown.substr(0, 33), "M1.Score Contrib(Obs c - Average)");
    Save(Loadings, {{"ObsDS", 0, -1, 3}, {"ObsDS", 0, -1, 6}});
    restored = Restore(more, m_saved);
    EXPECT_EQ(restored.losses, "");
    EXPECT_EQ(restored.shown, "DS1.Observation(c) 40 20 34 50 30\nDS1.Observation(f) 70 80 59 40 60\n");
    restored = Restore(half, m_saved);
    EXPECT_EQ(restored.losses, "DS1.Observation(f): there is no observation \"f\" any more.\n");
    Save(Loadings, {{"ObsDS", 0, -1, 6}});
    EXPECT_EQ(Restore(half, m_saved).shown, "nothing");
}

TEST_F(SavedSelectionTest, KeepsWhatBelongsToThePlot) {
    Save(Scores, {{"t", 1, 1, -1}, {"t", 1, 2, -1}}, [&](Selection &selection) {
        TransformationData transformation;
        transformation.SetTransformationType(TransformationData::CrossCorrelation);
        transformation.SetCrossVector(DataOf(*m_first, Scores, {"XVar", 1, -1, 1}));
        transformation.SetMaxLags(6);
        transformation.SetNumLags(3);
        WaveletOptions wavelets;
        wavelets.SetUsePadding(false);
        transformation.SetWaveletOptions(wavelets);
        selection.SetTransformationData(transformation);
        selection.GetExtraOptions().significance = 0.01f;
    });
    Selection selection(m_first, Selection::Normal, Scores, -1, ProjectVector::ObsAndPred);
    std::vector<std::string> losses;
    ASSERT_TRUE(SavedSelection::Read(m_saved, {}, selection, losses));
    EXPECT_EQ(selection.GetTransformationData().GetNumLags(), 3);
    EXPECT_FALSE(selection.GetTransformationData().GetWaveletOptions().GetUsePadding());
    EXPECT_EQ(selection.GetExtraOptions().significance, 0.01f);
    // The transformation goes, with a word, and the series stay.
    Restored const restored = Restore(m_first, m_saved, 2);
    EXPECT_NE(restored.losses.find("M1.XVar(x1): there is no variable \"x1\" any more.\n"
                                   "The transformation \"Cross correlation\" cannot be made any more.\n"),
              std::string::npos)
        << restored.losses;
    EXPECT_EQ(restored.shown.substr(0, 13), "M2.t[Comp. 1]");

    // A series that was deleted is no more there than others, and what is no saved selection gives nothing.
    m_saved.OpenSubSection("DataSeries")->DeleteSubSection("SeriesInfo", 1);
    EXPECT_EQ(Restore(m_first, m_saved).shown.substr(0, 13), "M1.t[Comp. 2]");
    m_saved.OpenSubSection("DataSeries")->DeleteKey("Mode");
    EXPECT_EQ(Restore(m_first, m_saved).shown, "nothing");
    m_saved.Clear();
    EXPECT_EQ(Restore(m_first, m_saved).shown, "nothing");
}
