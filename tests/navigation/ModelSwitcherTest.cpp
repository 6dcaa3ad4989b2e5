#include "navigation/ModelSwitcher.h"
#include "catalogue/ProjectVectorHandler.h"
#include "navigation/SwitchModelUpdate.h"
#include "platform/text/Exception.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

namespace {

using namespace DataSeriesUtilities;
using Selection = SelectDataSeriesData;

Change Component(int component) {
    return [component](ProjectVectorData &data) {
        for (int const kind : {1, 2, 4})
            data.SetComponent(static_cast<V::ComponentType>(kind), component);
    };
}

Change Groups(std::vector<int> const &first, std::vector<int> const &second) {
    return [=](ProjectVectorData &data) {
        data.obs1 = first;
        data.obs2 = second;
    };
}

Change Points(BatchPoints const &reference, BatchPoints const &compared) {
    return [=](ProjectVectorData &data) {
        data.contRef = reference;
        data.contGroup = compared;
    };
}

Change Weights(Weight::WeightType weight, std::vector<int> const &components, int yVar = 1) {
    return [=](ProjectVectorData &data) {
        data.SetWeightComp(components);
        data.SetWeightType(weight);
        data.SetYVar(yVar);
    };
}

Change List(WeightTypes const &weights, std::vector<int> const &components) {
    return [=](ProjectVectorData &data) { data.SetContributionWeight(weights, components); };
}

// The world, and model 5 of the batches C and B with maturities, predicted on A and C; model 6 PCA without components;
// model 7 with lags 1 of the third and the second term, X 3 2 1 and Y 5 4; model 8, which is not fitted.
class Switching : public testing::Test {
protected:
    Switching() {
        RecordingProject &project = *world.project;
        world.SetDefaults();
        project.AddBatchModel(1, {"C", "B"});
        project.AddWorkset(5, {5, 6, 3, 4}, {1, 2, 3});
        project.Model(5).maturity = NCDataVector<float>({0.0f, 10.0f, 0.0f, 10.0f});
        project.AddPredictions(5, {1, 2, 5, 6});
        project.AddData(0, {1, 2, 5, 6}, {5});
        project.AddModel(ModelTypeE::PCA, 0);
        project.AddModel(ModelTypeE::PLS, 2);
        project.Model(7).x =
            ColumnTerms({ColumnTerm(3), ColumnTerm(2), ColumnTerm(1), ColumnTerm(3, 1), ColumnTerm(2, 1)});
        project.Model(7).y = ColumnTerms({ColumnTerm(5), ColumnTerm(4)});
        project.AddWorkset(7, {6, 4, 2}, {});
        project.AddModel(ModelTypeE::PLS, 2);
        project.Info(8).fitted = false;
        project.Model(1).x.AppendTerm(ColumnTerm(1, 1));
        project.Model(1).x.AppendTerm(ColumnTerm(2, 1));
    }

    Selection Make(ProjectVectorData const &series, Selection::Mode mode = Selection::Normal) {
        Selection selection(world.project, mode, V::VectorTypeNone, -1, V::ObsAndPred);
        selection.AddSeries(series, false);
        return selection;
    }

    // The series on the other model as text; "no" when it cannot be switched, "null" when it is not.
    static std::string Switched(Selection &selection, int model) {
        ModelSwitcher switcher(&selection);
        if (!switcher.CanSwitchModel(model))
            return "no";
        std::unique_ptr<Selection> const result(switcher.SwitchModel(model, false));
        return result ? result->GetSeries(1).ToStdString(nullptr) : "null";
    }

    World world;
};

struct SwitchCase {
    VectorTraits vector;
    int from;
    Change change;
    int to;
    std::string expected;
};

TEST_F(Switching, CarriesSpecificationsOver) {
    VectorTraits const ofPredicted = {.obsPred = Predicted, .contribution = 5};
    std::vector<SwitchCase> const cases = {
        {{}, 1, {}, 2, "probe M2,0,0,0"},
        {{}, 1, {}, 8, "no"},
        {{}, 1, {}, 99, "no"},
        // Components: the last predictive one of models with orthogonal ones is not that of all.
        {{.components = 1}, 1, Component(2), 4, "probe M4,2,0,0"},
        {{.components = 1}, 1, Component(3), 4, "probe M4,2,0,0"},
        {{.components = 1}, 1, Component(-1), 4, "probe M4,2,0,0"},
        {{.components = 1}, 4, Component(-1), 1, "probe M1,3,0,0"},
        {{.components = 1}, 1, Component(3), 2, "probe M2,1,0,0"},
        {{.components = 1}, 5, Component(-1), 3, "probe M3,2,0,0"}, // the last stays the last
        {{.components = 1}, 1, Component(1), 6, "no"},
        {{.components = 2}, 3, Component(2), 2, "probe M2,2,0,0"},
        {{.components = 2}, 3, Component(3), 2, "probe M2,2,0,0"},
        {{.components = 2}, 3, Component(1), 1, "no"},
        {{.components = 4}, 3, Component(1), 2, "no"},
        {{.type = PerComponent}, 1, {}, 6, "no"},
        {{.number = Range}, 1, Number(2, 3), 4, "probe M4,0,2,0,2"},
        {{.number = Range}, 1, Number(3, -1), 4, "probe M4,0,2,0,2"},
        {{.number = Range, .pairLimit = 2}, 3, Number(1, 1), 1, "no"},
        // Terms, by what they are; one response stands for another.
        {{.number = X}, 1, Number(1), 7, "probe M7,0,3,0"},
        {{.number = X}, 1, Number(open), 7, "probe M7,0,1,0"},
        {{.number = X}, 1, Number(4), 7, "no"},
        {{.number = X}, 1, Number(9), 7, "no"},
        {{.type = Lag, .number = X}, 1, Number(2), 7, "no"}, // for what model 1 says of itself
        {{.number = Y}, 1, Number(1), 7, "probe M7,0,2,0"},
        {{.number = Y}, 1, Number(1), 2, "probe M2,0,1,0"},
        {{.number = Y}, 1, Number(2), 2, "no"},
        {{.number = Y}, 1, Number(1), 6, "no"},
        {{.number = Y}, 2, Number(2), 3, "null"}, // which the check does not see
        {{.number = XY}, 1, Number(1, 2), 7, "probe M7,0,3,0,1"},
        {{.number = XY}, 1, Number(1, 2), 2, "no"},
        // Observations go by their numbers, which must be there; variables are not looked at.
        {{.type = Loadings, .number = ObsOrVar}, 1, Number(4), 2, "probe M2,0,4,0"},
        {{.type = Loadings, .number = ObsOrVar}, 1, Number(5), 2, "no"},
        {{.type = Loadings, .number = ObsOrVar}, 1, Number(4), 7, "probe M7,0,4,0"}, // rows that do not rise
        {{.type = Loadings, .number = ObsOrVar, .obsPred = Predicted}, 1, Number(6), 2, "probe M2,0,6,0"},
        {{.type = Loadings, .number = ObsOrVar, .obsPred = Predicted}, 1, Number(5), 2, "no"},
        {{.type = Loadings, .number = ObsOrVar, .obsPred = Predicted}, 1, Number(6), 7, "no"},
        {{.number = ObsOrVar}, 1, Number(77), 2, "probe M2,0,77,0"},
        // Batches, by name.
        {{.type = Aligned, .number = Batch}, 4, Number(1, 1, 3), 5, "probe M5,0,0,0,1"},
        {{.type = Aligned, .number = Batch}, 4, Number(1, 1, 1), 5, "no"},
        {{.type = Aligned, .number = Batch}, 4, Number(1, 1, 4), 5, "no"},
        {{.type = Aligned, .number = Batch}, 4, Number(1, 1, -1), 5, "probe M5,0,0,0,-1"},
        {{.type = Aligned, .number = Batch}, 4, Number(1, 1, 1), 1, "no"},
        {{.number = BatchX}, 1, Number(1, 1, 1), 5, "no"},
        {{.type = Aligned}, 4, {}, 1, "no"},
        // B is not in the prediction set, so that its place has no name.
        {{.type = Aligned, .number = Batch, .obsPred = Predicted}, 4, Number(1, 1, 2), 5, "probe M5,0,0,0,2"},
        {{.type = Aligned, .number = Batch, .obsPred = Predicted}, 4, Number(1, 1, 1), 5, "no"},
        {{.type = Aligned, .number = Batch, .obsPred = Predicted}, 5, Number(1, 1, 1), 4, "no"},
        // Contributions: weights, then the groups, then the components.
        {{.contribution = 1}, 1, Groups({2}, {3, 4}), 2, "probe M2,0,0,0,1,0,0,1,1,2,2,3,0"},
        {{.contribution = 1}, 1, Groups({2}, {1}), 2, "no"},
        {{.contribution = 1}, 1, Groups({9}, {}), 2, "no"},
        {{.obsPred = Predicted, .contribution = 1}, 1, Groups({}, {2}), 2, "probe M2,0,0,0,1,0,0,0,1,1,0"},
        {{.obsPred = Predicted, .contribution = 1}, 1, Groups({}, {1}), 2, "no"},
        {{.contribution = 1}, 1, Weights(Weight::Normalized, {3, 4}), 4, "probe M4,0,0,0,1,0,1,0,0,1,2"},
        {{.contribution = 1}, 1, Weights(Weight::P, {3, 4}), 4, "no"},
        {{.contribution = 1}, 1, Weights(Weight::P, {3, 2}), 4, "probe M4,0,0,0,1,1,1,0,0,1,2"},
        {{.contribution = 1}, 3, List({WeightTypeE::PO, WeightTypeE::P}, {2, 2}), 2, "probe M2,0,0,0,1,9,0,0,0,0,2"},
        {{.contribution = 1}, 1, Weights(Weight::CoeffCS, {1}, 1), 7, "probe M7,0,0,0,1,5,2,0,0,2,1"},
        {{.contribution = 1}, 1, Weights(Weight::CoeffCSRaw, {1}, 2), 2, "no"},
        {{.contribution = 1}, 3, List({WeightTypeE::PO, WeightTypeE::P}, {2, 2}), 4, "probe M4,0,0,0,1,1,0,0,0,0,2"},
        {{.contribution = 1}, 3, Weights(Weight::PPO, {1, 1}), 4, "null"},
        {{.contribution = 1}, 1, Weights(Weight::WStar, {}), 6, "no"},
        {{.contribution = 5}, 4, {}, 1, "no"},
        {{.contribution = 5},
         4,
         Points({{"", 1.0f}, {"A", 1.0f}}, {{"B", 0.5f}, {"A", 0.0f}}),
         5,
         "probe M5,0,0,0,1,0,0,1,$,1,1,B$,0.5"},
        // Of predicted batches, the reference must be there, at a maturity of the model; what is compared goes unseen.
        {ofPredicted, 4, Points({{"C", 10.000001f}}, {{"C", 77.0f}}), 5, "probe M5,0,0,0,1,0,0,1,C$,10.000001,1,C$,77"},
        {ofPredicted, 4, Points({{"", 10.0f}}, {{"B", 10.0f}}), 5, "null"},
        {ofPredicted, 4, Points({{"C", 10.00001f}}, {{"C", 10.0f}}), 5, "no"},
        {ofPredicted, 4, Points({{"B", 10.0f}}, {{"C", 10.0f}}), 5, "no"},
    };
    for (SwitchCase const &test : cases) {
        VectorTraits traits = test.vector;
        traits.flags = "R";
        VectorProbe const probe(traits);
        Selection selection = Make(world.Data(probe, "M" + std::to_string(test.from), test.change));
        std::string const before = selection.GetSeries(1).ToStdString(nullptr);
        EXPECT_EQ(Switched(selection, test.to), test.expected) << before << " to " << test.to;
        EXPECT_EQ(selection.GetSeries(1).ToStdString(nullptr), before);
    }
}

// Vectors of the catalogue have other forms on models of other kinds.
TEST_F(Switching, TakesTheFormOfTheModel) {
    RecordingProject &project = *world.project;
    project.dataSets[20].kind = NCDataSetInfo::WaveletCompressed;
    project.AddData(20, {1}, {1});
    project.Info(4).dataSets = {20};
    ProjectVectorHandler const &catalogue = *ProjectVectorHandler::Instance();
    struct {
        char const *name;
        V::VectorTypeEnum type;
        int from, kind, to;
        std::string expected;
    } const cases[] = {{"DModX", Scores, 1, 0, 2, "DModX M2,0,0,0"},
                       {"DModX", Scores, 2, 0, 1, "DModX M1,3,0,0"}, // the last, not the first
                       {"u", Scores, 1, 0, 6, "no"},
                       {"CoeffC", Loadings, 1, 1, 7, "CoeffMLR M7,2,1,0"},
                       {"CoeffC", Loadings, 1, 3, 7, "CoeffRot M7,2,1,0"},
                       {"CoeffC", Loadings, 1, 4, 7, "CoeffC M7,2,1,0"},
                       {"CoeffCS", Loadings, 1, 2, 7, "CoeffCS M7,2,1,0,0"},
                       {"CoeffCS", Loadings, 7, 2, 4, "CoeffC M4,2,1,0"},
                       {"Date/Time", Scores, 1, 0, 2, "null"}};
    for (auto const &[name, type, from, kind, to, expected] : cases) {
        project.Model(to).coefficientKind = kind;
        auto const info = project.GetModelInfo(from);
        Selection selection = Make(world.Data(*catalogue.FindVector(name, type, OfModel, info.get()),
                                              "M" + std::to_string(from), from == 2 ? Component(1) : Number(2)));
        EXPECT_EQ(Switched(selection, to), expected) << name << from << to;
    }
}

TEST_F(Switching, TakesAxesAndTransformationsAlong) {
    VectorProbe const series({.flags = "R"}), x({.name = "x", .number = X, .flags = "R"});
    for (auto const &[axis, type, operand, to, expected] :
         std::initializer_list<std::tuple<int, TransformationData::TransformationType, int, int, char const *>>{
             {1, TransformationData::NoTransformation, 4, 7, "x M7,0,3,0"},
             {4, TransformationData::NoTransformation, 1, 7, "no"},
             {1, TransformationData::CrossCorrelation, 2, 7, "x M7,0,3,0 x M7,0,2,0"},
             {1, TransformationData::CrossCorrelation, 4, 7, "no"},
             {1, TransformationData::SubtractVector, 4, 7, "null"}}) {
        Selection selection = Make(world.Data(series, "M1"), Selection::AxisY);
        selection.SetYAxis(world.Data(x, "M1", Number(axis)));
        TransformationData transformation;
        transformation.SetTransformationType(type);
        transformation.SetCrossVector(world.Data(x, "M1", Number(operand)));
        selection.SetTransformationData(transformation);
        ModelSwitcher switcher(&selection);
        std::string shown = switcher.CanSwitchModel(to) ? "null" : "no";
        if (shown != "no" && switcher.SwitchModel(to, true)) {
            shown = selection.GetYAxis().ToStdString(nullptr);
            if (type != TransformationData::NoTransformation)
                shown += ' ' + selection.GetTransformationData().GetCrossVector().ToStdString(nullptr);
        }
        EXPECT_EQ(shown, expected) << axis << type;
    }
}

TEST_F(Switching, AsksForPredictionsOnce) {
    VectorProbe const series({.components = 1, .obsPred = Predicted, .flags = "R"});
    Selection selection = Make(world.Data(series, "M1", Component(1)));
    selection.AddSeries(selection.GetSeries(1), false);
    int asked = 0;
    world.project->onPredictions = [&](int) { ++asked; };
    EXPECT_TRUE(ModelSwitcher(&selection).CanSwitchModel(2));
    EXPECT_EQ(std::exchange(asked, 0), 1);
    world.project->onPredictions = [&](int) {
        ++asked;
        throw NCError(ExceptionMessage::translate("None."), NCError::Error);
    };
    EXPECT_FALSE(ModelSwitcher(&selection).CanSwitchModel(2));
    EXPECT_EQ(asked, 1);
}

TEST_F(Switching, MayTakeDefaultsForWhatIsNotThere) {
    for (auto const &[number, change, to, expected] :
         std::initializer_list<std::tuple<V::NumberType, Change, int, char const *>>{
             {X, Number(4), 7, "probe M7,0,1,0"}, // the current term
             {Y, Number(2), 2, "probe M2,0,1,0"},
             {Batch, Number(1, 1, 1), 5, "probe M5,0,0,0,2"}}) {
        VectorProbe const probe({.type = number == Batch ? Aligned : Scores, .number = number, .flags = "R"});
        ProjectVectorData data = world.Data(probe, number == Batch ? "M4" : "M1", change);
        auto const info = world.project->GetModelInfo(to);
        EXPECT_TRUE(SwitchModelUpdate(*world.project, info.get(), &world.defaults, true)(data));
        data.SetModelInfoPtr(info);
        EXPECT_EQ(data.ToStdString(&world.defaults), expected);
    }
}

TEST_F(Switching, FollowsANewNumberOfComponents) {
    VectorProbe const component({.components = 1}), pair({.number = Range}), contribution({.contribution = 1});
    ModelInfo info = *world.project->GetModelInfo(1);
    info.predictiveComponents = 2;
    struct {
        ProjectVectorData axis;
        std::vector<ProjectVectorData> series;
        DataSeriesChange change;
        int left;
    } const cases[] = {
        {{}, {world.Data(component, "M1", Component(2)), world.Data(component, "M1", Component(3))}, Changed, 1},
        {{}, {world.Data(component, "M2", Component(9))}, NotChanged, 1},
        {{}, {world.Data(component, "M1", Component(-1)), world.Data(pair, "M1", Number(3))}, Changed, 1},
        {{}, {world.Data(pair, "M1", Number(1, 3))}, NotValid, 0},
        {{}, {world.Data(contribution, "M1", Weights(Weight::P, {1, 3}))}, NotValid, 0},
        {world.Data(component, "M1", Component(3)), {world.Data(pair, "M1", Number(9))}, NotValid, 1}};
    for (auto const &[axis, series, change, left] : cases) {
        Selection selection(world.project, Selection::AxisX, V::VectorTypeNone, -1, V::ObsAndPred);
        selection.SetXAxis(axis);
        for (ProjectVectorData const &data : series)
            selection.AddSeries(data, false);
        EXPECT_EQ(ModelComponentsUpdated(&info, &selection), change);
        EXPECT_EQ(selection.NumberOfSeries(), left);
        if (change == Changed) {
            EXPECT_EQ(selection.GetSeries(1).GetModelInfo()->SizeComponents(), 2);
        }
    }
}

} // namespace
