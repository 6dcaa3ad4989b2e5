#include "building/ProjectDataBuilder.h"
#include "navigation/DataSeriesSwitcher.h"
#include "platform/text/Exception.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/engine/SmallProject.h"
#include "utilities/DefaultSelection.h"

namespace {

using namespace DataSeriesUtilities;
using Selection = SelectDataSeriesData;

constexpr auto byAxis = static_cast<SwitchingType>(SwitchNextAxis | SwitchPrevAxis);

// Model 1 PLS and model 2 PCA of two components, model 3 OPLS of one and one orthogonal component, model 4 PLS.
class Switcher : public testing::Test {
protected:
    Switcher() {
        m_project->AddDataSet(small::Read(small::sixRows));
        for (small::ModelCase const &model : {small::ModelCase{ModelTypeE::PLS, {"y"}, {}, 2},
                                              {ModelTypeE::PCA, {}, {"y"}, 2},
                                              {ModelTypeE::OPLS, {"y"}, {}, 1},
                                              {ModelTypeE::PLS, {"y"}, {}, 2}})
            small::AddModel(*m_project, model, small::newRows);
    }

    ProjectVectorData Data(char const *name, int number) const {
        auto const model = m_project->GetModelInfo(1);
        ProjectVectorData data;
        data.SetProjectVector(ProjectVectorHandler::Instance()->FindVector(name, small::Scores,
                                                                           ProjectVector::DataTypeModel, model.get()));
        data.SetModelInfoPtr(model);
        data.SetComponent(number);
        data.SetNumber(static_cast<std::uint32_t>(number));
        return data;
    }

    // The X axis, "-" for none, and a series, by a name and a number: "t1 XVar2".
    Selection Make(std::string const &text) const {
        std::istringstream words(text);
        std::string x, y;
        words >> x >> y;
        auto const data = [this](std::string const &word) {
            return Data(word.substr(0, word.size() - 1).c_str(), word.back() - '0');
        };
        Selection selection(m_project, x == "-" ? Selection::Normal : Selection::AxisX, small::Scores, -1,
                            ProjectVector::ObsAndPred);
        if (x != "-")
            selection.SetXAxis(data(x));
        selection.AddSeries(data(y), true);
        return selection;
    }

    // What it shows, "nothing" where that gives no table.
    static std::string Text(Selection const &selection) {
        ProjectDataUtilities::ProjectDataBuilder builder(&selection);
        TablePtr const table(builder.Build());
        if (!table || table->Rows() != static_cast<int>(selection.VectorsInUse().size()))
            return "nothing";
        std::string text;
        for (ProjectVectorData const *const data : selection.VectorsInUse())
            text += (text.empty() ? "" : " ") + data->GetFormattedName(selection.GetDefaultSelection().get(), 1, false);
        return text;
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<engine::Project> m_project = engine::Project::Create(m_folder / "switched.dsp");
};

} // namespace

TEST_F(Switcher, MovesWhatThePlotStepsOver) {
    struct {
        char const *selection;
        int type;
        bool hasRun;
        char const *shown;
    } const cases[] = {
        {"- t1", 0, false, "M1.t[Comp. 1]"},
        {"- t1", SwitchNextSeries, true, "M1.t[Comp. 2]"},
        {"- t2", SwitchPrevSeries, true, "M1.t[Comp. 1]"},
        {"t1 t1", SwitchNextAxis, true, "M1.t[Comp. 2] M1.t[Comp. 1]"},
        {"t1 t1", SwitchNextSeries, true, "M1.t[Comp. 1] M1.t[Comp. 2]"},
        {"t1 t1", byAxis, true, "M1.t[Comp. 2] M1.t[Comp. 1]"}, // one of both
        {"- t1", SwitchNextAxis, false, "M1.t[Comp. 1]"},
        {"- XVar1", SwitchNextSeries, true, "M1.XVar(x2)"},
        {"XVar1 XVarRes1", SwitchNextSeries, true, "M1.XVar(x2) M1.XVarRes[Comp. 1](x2)"}, // together
        {"XVar1 XVar1", SwitchNextSeries, true, "M1.XVar(x1) M1.XVar(x2)"},
        {"XVar1 t1", SwitchNextAxis, true, "M1.XVar(x2) M1.t[Comp. 1]"},
        {"- DModX2", SwitchPrevSeries, true, "M1.DModX[Comp. 1](Normalized)"},
        {"- t2", SwitchNextModel, true, "M2.t[Comp. 2]"},
        {"- t2", SwitchPrevModel, false, "M1.t[Comp. 2]"},
        {"- t1", SwitchNextSeries | SwitchNextModel, true, "M2.t[Comp. 2]"},
        {"- t1", SwitchNextSeries | SwitchPrevModel, false, "M1.t[Comp. 2]"},
    };
    for (auto const &test : cases) {
        Selection selection = Make(test.selection);
        EXPECT_EQ(DataSeriesSwitcher(&selection, static_cast<SwitchingType>(test.type), false), test.hasRun)
            << test.selection << ' ' << test.type;
        EXPECT_EQ(Text(selection), test.shown) << test.selection << ' ' << test.type;
    }
    Selection response = Make("- YPred1");
    EXPECT_THROW(DataSeriesSwitcher(&response, SwitchNextModel, false), NCError);
    EXPECT_EQ(response.GetCurrentModel(), 1);
}

// Among the components of a model with orthogonal ones no step ends on an empty plot.
TEST_F(Switcher, StaysAmongThePredictiveComponents) {
    Selection selection = Make("t1 t1");
    for (int step = 0; step < 2; ++step)
        ASSERT_TRUE(DataSeriesSwitcher(&selection, SwitchNextModel, false));
    ASSERT_EQ(selection.GetCurrentModel(), 3);
    for (SwitchingType const type : {SwitchNextSeries, SwitchNextAxis, SwitchPrevSeries, SwitchPrevAxis})
        for (int step = 0; step < 3; ++step) {
            EXPECT_TRUE(DataSeriesSwitcher(&selection, type, false));
            EXPECT_EQ(Text(selection), "M3.t[Comp. 1] M3.t[Comp. 1]") << type;
        }
}

TEST_F(Switcher, SplitsAPlotIntoItsSeries) {
    Selection selection = Make("t1 t2");
    selection.AddSeries(Data("XVar", 3), true);
    selection.GetColumnIDs();
    BoolVector some(6, true);
    some(2) = false;
    selection.SetSelectObjects(some);
    std::vector<boost::shared_ptr<Selection>> parts;
    CreateMultipleDataSeries(selection, parts);
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_EQ(Text(*parts[0]) + ", " + Text(*parts[1]), "M1.t[Comp. 1] M1.t[Comp. 2], M1.t[Comp. 1] M1.XVar(x3)");
    EXPECT_EQ(parts[1]->GetSelectObjects(), some);
}
