#include "catalogue/ProjectVectorHandler.h"
#include "platform/text/Exception.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

namespace {} // namespace

TEST(VectorValidation, ChecksNumbers) {
    World const world;
    world.project->Info(3).isBatchLevel = true;
    world.project->Info(3).dataSets = {17};
    world.project->dataSets[17].sourceDataSet = 7;
    world.project->dataSets[7].phases = {"early", "late"};
    VectorTraits const range{.number = Range}, batch{.number = Batch};
    VectorTraits const batchPS{.number = Batch, .obsPred = Predicted};
    VectorTraits const lagged{.number = XY}, pair{.number = BatchRange};
    // Vector; source; records (number, second number, batch) that are good, and that are not
    struct {
        VectorTraits vector;
        char const *source;
        std::vector<Change> good, bad;
    } const cases[] = {
        {{}, "M1", {Number(99)}, {}},
        {{.number = Y}, "M1", {Number(open), Number(2)}, {Number(0), Number(3)}},
        {{.number = Y}, "", {}, {Number(open)}},
        {{.number = X}, "M1", {Number(open), Number(3)}, {Number(0), Number(4), Number(-2)}},
        {{.number = X}, "", {Number(open)}, {Number(1)}},
        {lagged, "M1", {Number(open), Number(3, 2)}, {Number(4, 1), Number(3, 3), Number(1, 0)}},
        {range, "M1", {Number(open, open), Number(3, 3), Number(0, -2)}, {Number(4, 3), Number(3, 4)}},
        {range, "", {}, {Number(1, 1)}},
        {batch, "M4", {Number(1, 1, -2), Number(1, 1, 0), Number(1, 1, 3), Number(1, 1, -7)}, {Number(1, 1, 4)}},
        {batch, "M1", {}, {Number(1, 1, 0), Number(1, 1, 1)}},
        {batchPS, "M4", {Number(1, 1, open), Number(1, 1, 2)}, {Number(1, 1, 3)}},
        {{.number = Batch, .data = OfSet}, "DS1", {}, {Number(1, 1, 0)}},
        {{.number = BatchX}, "M4", {Number(3, 1, 1)}, {Number(4, 1, 1), Number(3, 1, 4)}},
        {{.number = BatchY}, "M4", {Number(1, 1, 1)}, {Number(2, 1, 1), Number(1, 1, 4)}},
        {pair, "M4", {Number(2, 2, 1)}, {Number(3, 2, 1), Number(2, 3, 1), Number(2, 2, 4)}},
        {{.number = BatchOnly}, "M4", {}, {Number(1, 1, 1)}},
        {{.number = YPhase}, "M3", {Number(99, 1), Number(1, 2)}, {Number(1, 0), Number(1, 3)}},
        {{.number = Phase}, "M3", {Number(1, 2)}, {Number(1, open)}},
        {{.number = Phase}, "M1", {}, {Number(1, 1)}},
        {{"id", Loadings, Identifier, 0, OfSet}, "DS1", {Number(3)}, {Number(open), Number(0), Number(2)}},
        {{.number = static_cast<V::NumberType>(13)}, "M1", {}, {Number(1)}},
        // Observations of the model, the prediction set, a data set; variables likewise; other axes have neither.
        {{"probe", Loadings, ObsOrVar}, "M1", {Number(open), Number(6)}, {Number(7), Number(0)}},
        {{"probe", Loadings, ObsOrVar, 0, OfModel, Predicted}, "M1", {Number(5)}, {Number(4)}},
        {{"probe", Loadings, ObsOrVar, 0, OfSet}, "DS2", {Number(2)}, {Number(1)}},
        {{"probe", Loadings, ObsOrVar, 0, OfPredSet, Predicted}, "", {Number(6)}, {Number(1)}},
        {{.number = ObsOrVar}, "M1", {Number(3)}, {Number(4)}}, // 4 is in Y
        {{.number = ObsOrVar}, "M2", {Number(5)}, {Number(1)}}, // no workset: the prediction set
        {{.number = ObsOrVar, .data = OfSet}, "DS2", {Number(2)}, {Number(1)}},
        {{.number = ObsOrVar, .data = OfPredSet}, "", {Number(5)}, {Number(1)}},
        {{"probe", PerComponent, ObsOrVar}, "M1", {Number(open)}, {Number(1)}}};
    for (auto const &row : cases) {
        VectorProbe const vector(row.vector);
        for (bool const expected : {true, false})
            for (Change const &change : expected ? row.good : row.bad)
                EXPECT_EQ(world.Data(vector, row.source, change).CheckNumberIDs(world.project), expected)
                    << &row - cases << ": " << world.Data(vector, row.source, change).ToStdString(nullptr);
    }
    EXPECT_TRUE(ProjectVectorData().CheckNumberIDs(world.project));
    ProjectVector const &num = *ProjectVectorHandler::Instance()->GetNumVector(Scores);
    EXPECT_TRUE(world.Data(num, "", Number(7)).CheckNumberIDs(world.project));
    VectorProbe const lost({"probe", Loadings, ObsOrVar, 0, OfSet});
    EXPECT_THROW(world.Data(lost, "DS9", Number(1)).CheckNumberIDs(world.project), NCInternalError);
}

TEST(VectorValidation, ComparesPairs) {
    World const world;
    VectorTraits const t{"t"}, x{"x", Scores, X};
    VectorTraits const y{"y", Scores, Y}, xy{"xy", Scores, XY};
    VectorTraits const range{"r", Scores, Range};
    VectorTraits const batch{"b", Aligned, Batch};
    VectorTraits const batchPS{"b", Scores, Batch, 0, OfModel, Predicted};
    VectorTraits const batchDS{"b", Scores, Batch, 0, OfSet};
    VectorTraits const batchSet{"b", Scores, Batch, 0, OfPredSet};
    VectorTraits const batchPair{"b", Aligned, BatchRange, 1};
    VectorTraits const batchX{"b", Aligned, BatchX};
    VectorTraits const obs{"o", Loadings, ObsOrVar};
    VectorTraits const obsPS{"o", Loadings, ObsOrVar, 0, OfModel, Predicted};
    VectorTraits const varDS{"v", Scores, ObsOrVar, 0, OfSet}, var{"v", Scores, ObsOrVar};
    VectorTraits const varSet{"v", Scores, ObsOrVar, 0, OfPredSet};
    VectorTraits const only{"i", Scores, BatchOnly};
    VectorTraits const identifier{"id", Scores, Identifier, 0, OfSet};
    VectorTraits const xPred{"x", Scores, X, 3, OfModel, V::Observed, 0, "u"};
    auto const unit = [](ProjectVectorData &data) { data.unscaled = false; };
    auto const component = [](int kind, int number) -> Change {
        return [=](ProjectVectorData &data) { data.SetComponent(static_cast<V::ComponentType>(kind), number); };
    };
    // Both vectors with source and changes; whether numbers carry over, batches agree, one text serves: "nbj"
    struct {
        VectorTraits left;
        char const *leftSource;
        Change leftChange;
        VectorTraits right;
        char const *rightSource;
        Change rightChange;
        char const *expected;
    } const cases[] = {{t, "M1", {}, t, "M1", {}, "nb-"},
                       {t, "M1", {}, {"p", Loadings}, "M1", {}, "-b-"},
                       {t, "M1", {}, x, "M1", {}, "-b-"},
                       {x, "M1", Number(1), x, "M1", Number(3), "nbj"},
                       {x, "M1", {}, x, "M2", {}, "-b-"},
                       {x, "M1", {}, x, "DS1", {}, "-b-"},
                       {x, "M1", {}, xy, "M1", {}, "nb-"},
                       {xy, "M1", {}, x, "M1", {}, "-b-"},
                       {y, "M1", {}, xy, "M1", {}, "nb-"},
                       {y, "M1", {}, y, "M1", {}, "nb-"},
                       {y, "M1", {}, y, "M2", {}, "-b-"},
                       {xPred, "M3", {}, xPred, "M3", unit, "nb-"},
                       {xPred, "M3", component(1, 5), xPred, "M3", Number(2), "nbj"},
                       {xPred, "M3", component(1, 1), xPred, "M3", {}, "nb-"},
                       {xPred, "M3", component(2, 1), xPred, "M3", {}, "nb-"},
                       {xPred, "M3", component(4, 9), xPred, "M3", {}, "nbj"},
                       {{"p", Loadings, X}, "M1", {}, {"p", Loadings, X}, "M1", {}, "nb-"},
                       {obs, "M1", {}, obs, "M1", Number(2), "nbj"},
                       {obs, "M1", {}, obsPS, "M1", {}, "-bj"},
                       {obs, "M1", {}, obs, "M2", {}, "-b-"},
                       {var, "M1", {}, varDS, "DS1", {}, "-b-"},
                       {varDS, "DS1", {}, varDS, "DS1", {}, "nbj"},
                       {varDS, "DS1", {}, varDS, "DS2", {}, "-b-"},
                       {varDS, "", {}, varSet, "", {}, "-bj"},
                       {varSet, "", {}, varSet, "", {}, "nbj"},
                       {varSet, "", {}, varDS, "", {}, "-bj"},
                       {only, "M4", {}, only, "M4", {}, "nb-"},
                       {only, "M4", {}, var, "M4", {}, "-b-"},
                       {range, "M1", Number(3, 3), range, "M3", {}, "-b-"},
                       {range, "M1", Number(2, open), range, "M3", {}, "nb-"},
                       {range, "M1", Number(9, 9), range, "M1", {}, "nb-"},
                       {range, "M1", {}, t, "M1", {}, "-b-"},
                       {identifier, "DS1", {}, identifier, "DS2", {}, "nb-"},
                       {identifier, "DS1", {}, varDS, "DS1", {}, "-b-"},
                       {batch, "M4", Number(1, 1, 1), batch, "M4", Number(1, 1, 2), "nbj"},
                       {batch, "M4", Number(1, 1, 1), batch, "M4", Number(2, 1, 2), "nb-"},
                       {batch, "M4", {}, batch, "M3", {}, "n--"},
                       {batch, "M4", {}, batch, "DS1", {}, "n--"},
                       {batch, "DS1", {}, batch, "M4", {}, "n--"},
                       {batch, "", {}, batch, "", {}, "nbj"},
                       {batchPS, "M4", {}, batchPS, "M4", {}, "nb-"},
                       {batchDS, "DS1", {}, batchDS, "DS1", {}, "nb-"},
                       {batchDS, "DS1", {}, batchDS, "DS2", {}, "n--"},
                       {batchDS, "DS1", {}, batchSet, "DS1", {}, "n--"},
                       {batchSet, "", {}, batchSet, "DS1", {}, "nb-"},
                       {batchSet, "", {}, batchDS, "", {}, "n--"},
                       {batchPS, "M4", {}, batchDS, "DS1", {}, "n--"},
                       {batchX, "M4", Number(2, 1, 1), batchX, "M4", Number(2, 9, 2), "nbj"},
                       {batchX, "M4", Number(2, 1, 1), batchX, "M4", Number(3, 9, 2), "nb-"},
                       {batchPair, "M4", Number(1, 2, 1), batchPair, "M4", Number(1, 2, 2), "nbj"},
                       {batchPair, "M4", Number(1, 2, 1), batchPair, "M4", Number(1, 1, 2), "nb-"},
                       {batchPair, "M4", component(1, 1), batchPair, "M4", {}, "nb-"}};
    for (auto const &row : cases) {
        VectorProbe const leftVector(row.left), rightVector(row.right);
        ProjectVectorData const left = world.Data(leftVector, row.leftSource, row.leftChange);
        ProjectVectorData const right = world.Data(rightVector, row.rightSource, row.rightChange);
        std::string found;
        found += left.HasEqualNumberArguments(right) ? 'n' : '-';
        found += left.HasEqualBatchArguments(right) ? 'b' : '-';
        found += left.IsJoinableData(right) ? 'j' : '-';
        EXPECT_EQ(found, row.expected) << &row - cases << ": " << left.ToStdString(nullptr) << " / "
                                       << right.ToStdString(nullptr);
    }
}
