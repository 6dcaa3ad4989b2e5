#include "catalogue/ProjectVectorHandler.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

namespace {

Change Kinds(int predictive, int xSide, int ySide, int osc) {
    return [=](ProjectVectorData &data) {
        data.SetPredComponent(predictive);
        data.SetXSideOrthoComponent(xSide);
        data.SetYSideOrthoComponent(ySide);
        data.oscComponent = osc;
    };
}

} // namespace

TEST(ProjectVectorData, EqualityIsNarrow) {
    World const world;
    VectorProbe const dataSet({.data = OfSet}), other({});
    // What the vector reads, its components and number; sources; changes of the second record; equal, and the other way
    struct {
        V::DataTypeEnum data;
        int components;
        V::NumberType number;
        char const *left, *right;
        Change change;
        bool equal, equalBack;
    } const cases[] = {{OfModel, 0, NoNumber, "M1", "M1", {}, true, true},
                       {OfModel, 0, NoNumber, "M1", "M2", {}, false, false},
                       {OfModel, 0, NoNumber, "M1", "DS1", {}, false, false},
                       {OfModel, 0, NoNumber, "", "M1", {}, true, false},
                       {OfModel, 0, NoNumber, "", "DS1", {}, true, false},
                       {OfModel, 0, NoNumber, "DS1", "DS2", {}, false, false},
                       {OfSet, 0, NoNumber, "M1", "M2", {}, true, true},
                       {OfSet, 0, NoNumber, "DS1", "DS1", {}, true, true},
                       {OfPredSet, 0, NoNumber, "", "DS1", {}, true, false},
                       {OfModel, 1, NoNumber, "M1", "M1", Kinds(3, -1, -1, -1), false, false}, // 3 is the last one
                       {OfModel, 1, NoNumber, "M1", "M1", Kinds(-1, 2, 2, 2), true, true},
                       {OfModel, 2, NoNumber, "M1", "M1", Kinds(-1, 2, -1, -1), false, false},
                       {OfModel, 4, NoNumber, "M1", "M1", Kinds(-1, -1, 2, -1), false, false},
                       {OfModel, 8, NoNumber, "M1", "M1", Kinds(-1, -1, -1, 2), false, false},
                       {OfModel, 7, NoNumber, "M1", "M1", Kinds(-1, -1, -1, 2), true, true},
                       {OfModel, 0, NoNumber, "M1", "M1",
                        [](auto &data) {
                            data.unscaled = data.backTransformed = false;
                            data.selCV = data.startLag = data.endLag = 7;
                            data.multiplier1 = data.multiplier2 = data.scaling = data.offset = 7;
                            data.obs1 = data.obs2 = {1};
                            data.contRef = data.contGroup = {{"A", 1.0f}};
                            data.SetContributionWeight({WeightTypeE::Raw}, {1});
                            data.SetYVar(2);
                            data.SetCoefficientStatus(ProjectData::Resolved);
                        },
                        true, true}};
    for (auto const &row : cases) {
        VectorProbe const vector({.number = row.number, .components = row.components, .data = row.data});
        ProjectVectorData const left = world.Data(vector, row.left), right = world.Data(vector, row.right, row.change);
        int const line = static_cast<int>(&row - cases);
        EXPECT_EQ(left == right, row.equal) << line;
        EXPECT_EQ(right == left, row.equalBack) << line;
        EXPECT_FALSE(left == world.Data(other, row.left)) << line;
    }
    EXPECT_TRUE(ProjectVectorData() == ProjectVectorData());
    // For each number type: n when the number counts, 2 the second one, b the batch.
    char const *const counts[] = {"", "n", "n", "n", "n2", "n2", "b", "nb", "nb", "n", "n2b", "nb", "", "", "n2"};
    for (int type = 0; type < static_cast<int>(std::size(counts)); ++type) {
        VectorProbe const vector({.number = static_cast<V::NumberType>(type)});
        std::string found;
        for (auto const &[name, change] :
             {std::pair("n", Number(7)), {"2", Number(open, 7)}, {"b", Number(open, open, 7)}})
            if (!(world.Data(vector, "M1") == world.Data(vector, "M1", change)))
                found += name;
        EXPECT_EQ(found, counts[type]) << type;
    }
}

TEST(ProjectVectorData, ResolvesComponents) {
    World const world;
    world.project->dataSets[2].oscComponents = 4;
    // Source; kinds; number type; stored; what the five reads give (each raw and resolved); the largest
    struct {
        char const *source;
        V::DataTypeEnum data;
        int components;
        V::NumberType number;
        Change change;
        std::vector<int> expected; // predictive, X side, Y side, own kind, number, number 2, largest
    } const cases[] = {{"M3", OfModel, 1, NoNumber, {}, {-1, 5, -1, 2, -1, 1, -1, 5, 5, 5, 5}},
                       {"M3", OfModel, 2, NoNumber, Kinds(2, 1, -1, 6), {2, 2, 1, 1, -1, 1, 1, 1, 5, 5, 2}},
                       {"M3", OfModel, 4, NoNumber, Kinds(2, 1, -1, 6), {2, 2, 1, 1, -1, 1, -1, 1, 5, 5, 1}},
                       {"M3", OfModel, 8, NoNumber, Kinds(2, 1, 1, 6), {2, 2, 1, 1, 1, 1, 6, 6, 5, 5, 0}},
                       {"M3", OfModel, 3, NoNumber, {}, {-1, 5, -1, 2, -1, 1, 5, 5, 5, 5, 1}},
                       {"M3", OfModel, 0, NoNumber, {}, {-1, 5, -1, 2, -1, 1, 5, 5, 5, 5, -1}},
                       {"M3", OfModel, 0, X, {}, {-1, 5, -1, 2, -1, 1, 5, 5, 5, 5, 5}},
                       {"M1", OfModel, 0, Y, Number(2), {-1, 3, -1, 0, -1, 0, 3, 3, 2, 3, -1}},
                       {"M3", OfModel, 0, Range, {}, {-1, 5, -1, 2, -1, 1, 2, 2, 1, 5, 5}},
                       {"M3", OfModel, 0, Range, Number(-2, 1), {-1, 5, -1, 2, -1, 1, 1, 1, 1, 1, 5}},
                       {"M3", OfModel, 0, Range, Number(2, 9), {-1, 5, -1, 2, -1, 1, 2, 2, 2, 9, 5}}};
    for (auto const &row : cases) {
        VectorProbe const vector({.number = row.number, .components = row.components, .data = row.data});
        ProjectVectorData const data = world.Data(vector, row.source, row.change);
        std::vector<int> const found{data.GetPredComponent(false),
                                     data.GetPredComponent(true),
                                     data.GetXSideOrthoComponent(false),
                                     data.GetXSideOrthoComponent(true),
                                     data.GetYSideOrthoComponent(false),
                                     data.GetYSideOrthoComponent(true),
                                     data.GetComponent(false),
                                     data.GetComponent(true),
                                     data.GetNumberIDComponent(),
                                     data.GetNumberID2Component(),
                                     data.GetMaxComponents(world.project)};
        EXPECT_EQ(found, row.expected) << &row - cases;
    }
    // 1 where no model is.
    for (auto const &[type, source] : {std::pair(OfSet, "M3"), {OfModel, "DS1"}, {OfModel, ""}}) {
        VectorProbe const vector({.components = 1, .data = type});
        ProjectVectorData const data = world.Data(vector, source, Kinds(5, 5, 5, 5));
        EXPECT_EQ(data.GetComponent(true) + data.GetXSideOrthoComponent(false) + data.GetYSideOrthoComponent(true), 3);
        EXPECT_EQ(data.GetModelInfo(), nullptr);
    }
    VectorProbe const osc({.components = 8});
    EXPECT_EQ(world.Data(osc, "DS2").GetMaxComponents(world.project), 4);
    VectorProbe const both({.components = 3}), ySide({.components = 4});
    ProjectVectorData data = world.Data(both, "M3");
    data.SetComponent(9);
    EXPECT_EQ(data.GetPredComponent(false), -1);
    data.SetProjectVector(&ySide);
    data.SetComponent(9);
    EXPECT_EQ(data.GetYSideOrthoComponent(false), 9);
}

TEST(ProjectVectorData, ResolvesNumbersFromTheDefaults) {
    World const world;
    ProjectUtilities::DefaultSelection defaults(world.project);
    ColumnTerm const x(3), y(5);
    defaults.SetDefaultXTerm(&x);
    defaults.SetDefaultYTerm(&y);
    // Vector; source; number with defaults and without; second number with and without (resolved)
    struct {
        VectorTraits vector;
        char const *source;
        int number, numberWithout, number2, number2Without;
    } const cases[] = {{{}, "M1", 0, 0, 0, 0},
                       {{.number = Batch}, "M4", 0, 0, 0, 0},
                       {{.number = X}, "M1", 3, -1, 0, 0},
                       {{"probe", Lag, X}, "M1", 1, -1, 0, 0},
                       {{.number = BatchX}, "M4", 3, -1, 0, 0},
                       {{.number = Y}, "M1", 2, -1, 0, 0},
                       {{.number = XY}, "M1", 3, -1, 2, 1},
                       {{.number = YPhase}, "M1", 2, -1, -1, -1},
                       {{.number = Phase}, "M1", -1, -1, -1, -1},
                       {{.number = BatchOnly}, "M4", -1, -1, 0, 0},
                       {{.number = Range}, "M1", 1, 1, 3, 3},
                       {{.number = BatchRange}, "M4", 1, 1, 2, 2},
                       {{.number = ObsOrVar}, "M1", 1, -1, 0, 0},
                       {{.number = ObsOrVar}, "DS2", 2, -1, 0, 0},
                       {{"probe", Scores, ObsOrVar, 0, OfPredSet, Predicted}, "", 5, -1, 0, 0},
                       {{"probe", Loadings, ObsOrVar}, "M1", 1, -1, 0, 0},
                       {{"probe", Loadings, ObsOrVar, 0, OfModel, Predicted}, "M4", 3, -1, 0, 0},
                       {{"probe", Loadings, ObsOrVar, 0, OfSet}, "DS2", 2, -1, 0, 0},
                       {{"probe", Loadings, Identifier, 0, OfSet}, "DS1", 3, -1, 0, 0},
                       {{.number = Identifier, .data = OfSet}, "DS1", 1, -1, 0, 0}};
    for (auto const &row : cases) {
        VectorProbe const vector(row.vector);
        ProjectVectorData const data = world.Data(vector, row.source);
        defaults.SetDefaultSelectedVariable(0);
        defaults.clear();
        std::vector<int> const found{
            static_cast<int>(data.GetNumber(&defaults)), static_cast<int>(data.GetNumber(nullptr)),
            static_cast<int>(data.GetNumberID2(&defaults, true)), static_cast<int>(data.GetNumberID2(nullptr, true))};
        EXPECT_EQ(found, std::vector<int>({row.number, row.numberWithout, row.number2, row.number2Without}))
            << &row - cases;
        EXPECT_EQ(data.GetNumberID2(&defaults, false), ProjectVectorData::NotSet);
    }
    VectorProbe const range({.number = Range});
    EXPECT_EQ(world.Data(range, "M1", Number(7, 2)).GetNumberID2(nullptr, true), 2u);
    EXPECT_EQ(world.Data(range, "M1", Number(7, -2)).GetNumberID2(nullptr, true), 3u);
    EXPECT_EQ(world.Data(range, "M1", Number(7, 9)).GetNumberID2(nullptr, true), 3u);
    EXPECT_EQ(world.Data(range, "M1", Number(7, 9)).GetNumber(&defaults), 7u);
    ProjectVectorData data = world.Data(range, "M1");
    EXPECT_EQ(data.GetYVar(defaults), 0);
    data.SetYVar(-1);
    EXPECT_EQ(data.GetYVar(defaults), 2);
}

TEST(ProjectVectorData, FindsItsData) {
    World const world;
    VectorProbe const model({}), predicted({.obsPred = Predicted}), set({.data = OfPredSet});
    for (auto const &[vector, source, expected] :
         std::initializer_list<std::tuple<VectorProbe const &, char const *, void const *>>{
             {model, "M1", world.project->GetWorkset(1).get()},
             {model, "DS2", world.project->GetDataSet(2).get()},
             {model, "", nullptr},
             {predicted, "M1", world.project->GetPredSet(-1).get()},
             {predicted, "DS1", world.project->GetDataSet(1).get()},
             {set, "DS2", world.project->GetPredSet(-1).get()}})
        EXPECT_EQ(world.Data(vector, source).GetDataSource(*world.project).get(), expected) << source;

    // Axis; source; alias numbers of the items
    VectorProbe const variables({.data = OfSet}), component({.type = PerComponent});
    VectorProbe const observations({.type = Loadings, .data = OfSet});
    for (auto const &[vector, source, expected] :
         std::initializer_list<std::tuple<VectorProbe const &, char const *, std::vector<int>>>{
             {variables, "DS1", {1, 2, 3}},
             {variables, "DS2", {1}},
             {observations, "DS1", {1}},
             {variables, "", {}},
             {component, "M1", {}},
             {model, "M1", {1}},
             {model, "M3", {}},
             {set, "", {1}}})
        EXPECT_EQ(world.Data(vector, source).GetUsedAliases(*world.project).GetUsedAliases(), expected) << source;

    ProjectVectorData const first = world.Data(variables, "DS1");
    AliasAccess const &kept = first.GetUsedAliases(*world.project);
    ProjectVectorData copy = first;
    copy.SetDataSet(2);
    EXPECT_EQ(copy.GetUsedAliases(*world.project).SizeAliases(), 1);
    EXPECT_EQ(&kept, &first.GetUsedAliases(*world.project));
    EXPECT_EQ(kept.SizeAliases(), 3);
    copy.SetModelInfoPtr(world.project->GetModelInfo(3)); // a data set no more
    EXPECT_EQ(copy.GetDataSet(), 0);
    copy.SetDataSet(1);
    copy.SetProjectVector(&observations);
    EXPECT_EQ(copy.GetUsedAliases(*world.project).SizeAliases(), 1);
}

TEST(ProjectVectorData, WeightsGoByTheLastThatWasSet) {
    ProjectVectorData data;
    data.SetContributionWeight({WeightTypeE::P, WeightTypeE::P, WeightTypeE::PO}, {1, 2, 3});
    EXPECT_EQ(data.GetWeightType(), ContributionWeightEnum::PRange);
    EXPECT_EQ(data.GetWeightTypeVec().size(), 3u);
    data.SetWeightComp({4});
    EXPECT_TRUE(data.GetWeightTypeVec().empty());
    data.SetContributionWeight({WeightTypeE::CoeffCS}, {1});
    data.SetWeightType(ContributionWeightEnum::CoeffCSRaw);
    EXPECT_TRUE(data.GetWeightTypeVec().empty());
    VectorProbe const plain({}), contribution({.contribution = 1});
    data.SetProjectVector(&plain);
    EXPECT_FALSE(data.IsYVarContribution());
    data.SetProjectVector(&contribution);
    EXPECT_TRUE(data.IsYVarContribution());
    data.SetWeightType(ContributionWeightEnum::VIP);
    EXPECT_FALSE(data.IsYVarContribution());
}
