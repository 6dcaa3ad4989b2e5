#include "platform/text/Exception.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

#include <tuple>

namespace {

// Whether the left record says all that tells the right one from others.
bool IsSame(Plain const &left, Plain const &right) {
    if (left.IsOfModel() ? right.dataSet != 0 || right.model != left.model
                         : left.dataSet > 0 && left.dataSet != right.dataSet)
        return false;
    for (std::size_t i = 0; i < 4; ++i)
        if ((left.vector.components & (1 << i)) != 0 && left.components[i] != right.components[i])
            return false;
    // For each number type: n when the number counts, 2 the second one, b the batch.
    static char const *const counts[] = {"",   "n", "n",   "n",  "n2", "n2", "b", "nb",
                                         "nb", "n", "n2b", "nb", "",   "",   "n2"};
    std::string const counted = counts[left.vector.number];
    auto const agrees = [&](char what, int one, int other) {
        return counted.find(what) == std::string::npos || one == other;
    };
    return agrees('n', left.number, right.number) && agrees('2', left.number2, right.number2) &&
           agrees('b', left.rest.batchIx, right.rest.batchIx);
}

} // namespace

TEST(ProjectVectorData, EqualityIsNarrow) {
    World const world;
    VectorProbe const other({});
    Dice dice(2);
    int equal = 0;
    for (int i = 0; i < 5000; ++i) {
        Plain const left = Plain::Random(dice), right = left.With(Plain::Random(dice), dice);
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
        plain.rest.batchIx = dice({-7, 0, 2, 77});
        VectorProbe const vector(plain.vector);
        ProjectVectorData const data = plain.Record(world, dice(0, 9) == 0 ? nullptr : &vector), empty;
        for (auto const &project : {world.project, gone})
            for (std::function<void()> const &ask : std::initializer_list<std::function<void()>>{
                     [&] {
                         data.GetMaxComponents(project), data.GetMaxComponents(nullptr, V::ComponentOSC);
                         data.GetNumberIDComponent(), data.GetNumberID2Component(), data.GetComponent(true);
                         data.GetDataSource(*project), data.GetUsedAliases(*project);
                         data.HasEqualNumberArguments(empty), empty.HasEqualNumberArguments(data);
                         data.HasEqualBatchArguments(empty), data.IsJoinableData(empty), empty.IsJoinableData(data);
                         ProjectVectorData(data).SetComponent(2);
                     },
                     [&] { data.GetBatchName(project); }, [&] { data.CheckNumberIDs(project); },
                     [&] { data.GetNumber(&world.defaults), data.GetNumberID2(&world.defaults, true); },
                     [&] { data.GetFormattedName(&world.defaults, 1, dice(0, 1) == 1); },
                     [&] { ProjectVectorData(data).SetDefaultNumberID(world.defaults); }})
                try {
                    ask();
                } catch (Exception const &) {
                    // An error that can be told is an answer.
                }
    }
}

TEST(ProjectVectorData, ResolvesComponentsAndNumbers) {
    World world;
    world.SetDefaults();
    world.project->dataSets[2].oscComponents = 4;
    Dice dice(6);
    for (int i = 0; i < 5000; ++i) {
        Plain const plain = Plain::Random(dice);
        VectorProbe const vector(plain.vector);
        ProjectVectorData const data = plain.Record(world, &vector);
        SCOPED_TRACE(data.ToStdString(nullptr));
        int const kinds = plain.vector.components, type = plain.vector.number, all = Plain::CountAll(plain.model);
        std::size_t const place = kinds == 1 ? 0 : kinds == 2 ? 1 : kinds == 4 ? 2 : kinds == 8 ? 3 : 4; // 4: none
        int const last = Plain::Count(plain.model, plain.vector.pairLimit);
        int const several = type != Range ? all : plain.number2 == open ? last : std::min(last, plain.number2);
        auto const components = [](ProjectVectorData const &of, bool resolve) {
            return std::vector<int>{of.GetPredComponent(resolve), of.GetXSideOrthoComponent(resolve),
                                    of.GetYSideOrthoComponent(resolve), of.oscComponent};
        };
        for (bool const resolve : {false, true}) {
            std::vector<int> expected(plain.components.begin(), plain.components.end());
            for (std::size_t which = 0; which < 3; ++which)
                if (!plain.IsOfModel() || (resolve && expected[which] == -1))
                    expected[which] = plain.IsOfModel() ? plain.Last(which) : 1;
            EXPECT_EQ(components(data, resolve), expected);
            EXPECT_EQ(data.GetComponent(resolve), place < 4 ? expected[place] : several);
            ProjectVectorData set = data;
            set.SetComponent(9); // only a single kind can be set
            if (place == 3 || (place < 3 && plain.IsOfModel()))
                expected[place] = 9;
            EXPECT_EQ(components(set, resolve), expected);
        }
        int const none = kinds == 0 ? -1 : 1, ofNumber = plain.IsOfModel() ? all : 0, osc = plain.dataSet == 2 ? 4 : 0;
        EXPECT_EQ(data.GetMaxComponents(world.project), (kinds & 8) != 0  ? osc
                                                        : place < 4       ? plain.Last(place)
                                                        : (type & 5) != 0 ? ofNumber
                                                                          : none);
        int const first = plain.IsRange() ? 1 : all;
        EXPECT_EQ(data.GetNumberIDComponent(),
                  plain.number == -1 || (plain.IsRange() && plain.number == -2) ? first : plain.number);
        EXPECT_EQ(data.GetNumberID2Component(), plain.number2 == open ? all : plain.number2);
        EXPECT_EQ(data.GetModelInfo() ? data.GetModelInfo()->number : 0, plain.IsOfModel() ? plain.model : 0);
        world.defaults.clear();
        for (auto const defaults : {&world.defaults, static_cast<ProjectUtilities::DefaultSelection *>(nullptr)}) {
            EXPECT_EQ(static_cast<int>(data.GetNumber(defaults)), plain.First(defaults != nullptr));
            EXPECT_EQ(static_cast<int>(data.GetNumberID2(defaults, true)), plain.Second(defaults != nullptr));
            EXPECT_EQ(static_cast<int>(data.GetNumberID2(defaults, false)), plain.number2);
        }
        EXPECT_EQ(data.GetYVar(world.defaults), plain.yVar == open ? plain.YTerm() : plain.yVar);
    }
}

TEST(ProjectVectorData, FindsItsData) {
    World const world;
    NCProject const &project = *world.project;
    VectorProbe const model({}), predicted({.obsPred = Predicted}), set({.data = OfPredSet});
    VectorProbe const variables({.data = OfSet}), observations({.type = Loadings, .data = OfSet});
    VectorProbe const component({.type = PerComponent}), identifier({.number = Identifier, .data = OfSet});
    world.project->AddData(0, {5}, {5}).variableAliases = {1, 3};
    // Vector; source; the data behind it; numbers of the aliases
    for (auto const &[vector, source, expected, aliases] :
         std::initializer_list<std::tuple<VectorProbe const &, char const *, void const *, std::vector<int>>>{
             {model, "M1", project.GetWorkset(1).get(), {1}},
             {model, "DS2", project.GetDataSet(2).get(), {1}},
             {model, "", nullptr, {}},
             {predicted, "M1", project.GetPredSet(-1).get(), {1}},
             {predicted, "DS1", project.GetDataSet(1).get(), {1, 2, 3}},
             {set, "DS2", project.GetPredSet(-1).get(), {1, 3}},
             {observations, "DS1", project.GetDataSet(1).get(), {1}},
             {identifier, "DS1", project.GetDataSet(1).get(), {1}},
             {component, "M1", project.GetWorkset(1).get(), {}}}) {
        ProjectVectorData const data = world.Data(vector, source);
        EXPECT_EQ(data.GetDataSource(project).get(), expected) << source;
        EXPECT_EQ(data.GetUsedAliases(project).GetUsedAliases(), aliases) << source;
    }
    // What was found is kept until the vector or the source changes, and a copy has its own.
    ProjectVectorData const first = world.Data(variables, "DS1");
    AliasAccess const &kept = first.GetUsedAliases(project);
    ProjectVectorData copy = first;
    auto const count = [&] { return copy.GetUsedAliases(project).SizeAliases(); };
    EXPECT_EQ(count(), 3);
    copy.SetModelInfoPtr(project.GetModelInfo(3)); // a data set no more
    EXPECT_EQ(count(), 1);
    copy.SetDataSet(1);
    EXPECT_EQ(count(), 3);
    copy.SetProjectVector(&observations);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(&kept, &first.GetUsedAliases(project));
    EXPECT_EQ(kept.SizeAliases(), 3);
}

TEST(ProjectVectorData, WeightsGoByTheLastThatWasSet) {
    VectorProbe const plain({}), contribution({.contribution = 1});
    for (auto const weight : {Weight::Normalized, Weight::CoeffCS, Weight::VIP, Weight::CoeffCSRaw}) {
        ProjectVectorData data;
        data.SetContributionWeight({WeightTypeE::P, WeightTypeE::P, WeightTypeE::PO}, {1, 2, 3});
        EXPECT_EQ(data.GetWeightType(), Weight::PRange);
        ProjectVectorData other = data;
        other.SetWeightComp({4});
        data.SetWeightType(weight);
        EXPECT_TRUE(data.GetWeightTypeVec().empty() && other.GetWeightTypeVec().empty());
        data.SetProjectVector(&plain);
        EXPECT_FALSE(data.IsYVarContribution());
        data.SetProjectVector(&contribution);
        EXPECT_EQ(data.IsYVarContribution(), weight == Weight::CoeffCS || weight == Weight::CoeffCSRaw);
    }
}
