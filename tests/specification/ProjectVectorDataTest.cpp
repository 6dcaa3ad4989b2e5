#include "platform/text/Exception.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

namespace {

// Whether the left record says all that tells the right one from others.
bool IsSame(Plain const &left, Plain const &right) {
    VectorTraits const &vector = left.vector;
    if (left.IsOfModel()) {
        if (right.dataSet != 0 || right.model != left.model)
            return false;
    } else if (left.dataSet > 0 && left.dataSet != right.dataSet) {
        return false;
    }
    for (std::size_t i = 0; i < 4; ++i)
        if ((vector.components & (1 << i)) != 0 && left.components[i] != right.components[i])
            return false;
    // For each number type: n when the number counts, 2 the second one, b the batch.
    static char const *const counts[] = {"",   "n", "n",   "n",  "n2", "n2", "b", "nb",
                                         "nb", "n", "n2b", "nb", "",   "",   "n2"};
    std::string const counted = counts[vector.number];
    auto const agrees = [&](char what, int one, int other) {
        return counted.find(what) == std::string::npos || one == other;
    };
    return agrees('n', left.number, right.number) && agrees('2', left.number2, right.number2) &&
           agrees('b', left.batch, right.batch);
}

} // namespace

TEST(ProjectVectorData, EqualityIsNarrow) {
    World const world;
    VectorProbe const other({});
    Dice dice(2);
    int equal = 0;
    for (int i = 0; i < 5000; ++i) {
        Plain const left = Plain::Random(dice);
        // The same but for a part or two, all others, or what takes no part.
        Plain right = left, changed = Plain::Random(dice);
        auto const mix = [&](auto member) {
            if (dice(0, 5) == 0)
                right.*member = changed.*member;
        };
        mix(&Plain::model), mix(&Plain::dataSet), mix(&Plain::components), mix(&Plain::number), mix(&Plain::number2);
        mix(&Plain::batch), mix(&Plain::round), mix(&Plain::weights), mix(&Plain::unscaled), mix(&Plain::from);
        VectorProbe const vector(left.vector);
        ProjectVectorData const one = left.Record(world, &vector), two = right.Record(world, &vector);
        EXPECT_EQ(one == two, IsSame(left, right)) << one.ToStdString(nullptr) << " / " << two.ToStdString(nullptr);
        EXPECT_FALSE(one == left.Record(world, &other));
        equal += one == two ? 1 : 0;
    }
    EXPECT_TRUE(equal > 1000 && equal < 4000) << equal;
    EXPECT_TRUE(ProjectVectorData() == ProjectVectorData());
}

// Nothing ends the process, whatever a record holds: no vector, no model, data that have gone, numbers out of range.
TEST(ProjectVectorData, AnswersForAnyContent) {
    World const world;
    auto const gone = MakeRecordingProject();
    Dice dice(3);
    for (int i = 0; i < 3000; ++i) {
        Plain plain = Plain::Random(dice);
        plain.dataSet = dice({0, 0, 9, -1});
        plain.number = dice({-1, -2, 0, 1, 77});
        plain.batch = dice({-7, 0, 2, 77});
        VectorProbe const vector(plain.vector);
        ProjectVectorData const data = plain.Record(world, dice(0, 9) == 0 ? nullptr : &vector), empty;
        for (auto const &project : {world.project, gone})
            for (std::function<void()> const &ask : std::initializer_list<std::function<void()>>{
                     [&] { data.GetMaxComponents(project); }, [&] { data.GetMaxComponents(nullptr, V::ComponentOSC); },
                     [&] { data.GetNumberIDComponent(), data.GetNumberID2Component(), data.GetComponent(true); },
                     [&] { data.GetDataSource(*project), data.GetUsedAliases(*project), data.GetBatchName(project); },
                     [&] { data.CheckNumberIDs(project); },
                     [&] { data.GetNumber(&world.defaults), data.GetNumberID2(&world.defaults, true); },
                     [&] { data.GetFormattedName(&world.defaults, 1, dice(0, 1) == 1); },
                     [&] { ProjectVectorData(data).SetDefaultNumberID(world.defaults); },
                     [&] { ProjectVectorData(data).SetComponent(2); },
                     [&] { data.HasEqualNumberArguments(empty), empty.HasEqualNumberArguments(data); },
                     [&] {
                         data.HasEqualBatchArguments(empty), data.IsJoinableData(empty), empty.IsJoinableData(data);
                     }})
                try {
                    ask();
                } catch (Exception const &) {
                    // An error that can be told is an answer.
                }
    }
}

TEST(ProjectVectorData, ResolvesComponents) {
    World const world;
    world.project->dataSets[2].oscComponents = 4;
    Dice dice(6);
    for (int i = 0; i < 2000; ++i) {
        Plain plain = Plain::Random(dice);
        plain.vector.data = OfModel;
        plain.dataSet = 0;
        VectorProbe const vector(plain.vector);
        ProjectVectorData const data = plain.Record(world, &vector);
        auto const count = [&](int kind) { return Plain::Count(plain.model, kind); };
        int const all = count(1) + count(2) + count(4), kinds = plain.vector.components, type = plain.vector.number;
        int const of[] = {all, count(2), count(4), 0}, last = count(plain.vector.pairLimit);
        auto const stored = [&](std::size_t which, bool resolve) {
            int const component = plain.components[which];
            return plain.model == 0 && which < 3 ? 1 : resolve && component == -1 && which < 3 ? of[which] : component;
        };
        bool const isRange = type == Range || type == BatchRange;
        int const number2 = plain.number2 == open ? all : plain.number2;
        int const place = kinds == 1 ? 0 : kinds == 2 ? 1 : kinds == 4 ? 2 : kinds == 8 ? 3 : -1;
        for (bool const resolve : {false, true}) {
            EXPECT_EQ(data.GetPredComponent(resolve), stored(0, resolve));
            EXPECT_EQ(data.GetXSideOrthoComponent(resolve), stored(1, resolve));
            EXPECT_EQ(data.GetYSideOrthoComponent(resolve), stored(2, resolve));
            EXPECT_EQ(data.GetComponent(resolve), place >= 0 ? stored(static_cast<std::size_t>(place), resolve)
                                                  : type != Range
                                                      ? all
                                                      : std::min(last, plain.number2 == open ? last : plain.number2));
        }
        EXPECT_EQ(data.GetNumberIDComponent(), isRange && plain.number < 0 ? 1
                                               : plain.number == open      ? all
                                                                           : plain.number);
        EXPECT_EQ(data.GetNumberID2Component(), number2);
        EXPECT_EQ(data.GetMaxComponents(world.project), (kinds & 8) != 0  ? 0
                                                        : place >= 0      ? of[place]
                                                        : (type & 5) != 0 ? all
                                                        : kinds == 0      ? -1
                                                                          : 1);
    }
    // 1 where no model is.
    for (auto const &[type, source] : {std::pair(OfSet, "M3"), {OfModel, "DS1"}, {OfModel, ""}}) {
        VectorProbe const vector({.components = 1, .data = type});
        ProjectVectorData const data = world.Data(vector, source, [](auto &d) {
            d.SetPredComponent(5), d.SetXSideOrthoComponent(5), d.SetYSideOrthoComponent(5);
        });
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
    EXPECT_EQ(copy.GetUsedAliases(*world.project).SizeAliases(), 0);
    copy.SetDataSet(1);
    EXPECT_EQ(copy.GetUsedAliases(*world.project).SizeAliases(), 3);
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
