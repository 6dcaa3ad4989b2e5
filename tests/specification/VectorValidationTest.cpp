#include "catalogue/ProjectVectorHandler.h"
#include "platform/text/Exception.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

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

namespace {

// What two records have in common, by the rules for pairs.
struct Pair {
    Plain const &left, &right;

    bool AreOfOneModel() const { return left.IsOfModel() && right.IsOfModel() && left.model == right.model; }
    bool AreOfOneSet() const {
        if ((left.vector.data & OfSet) != 0)
            return (right.vector.data & OfSet) != 0 && left.dataSet == right.dataSet;
        return (left.vector.data & OfPredSet) == 0 || (right.vector.data & OfPredSet) != 0;
    }

    bool ShareBatches() const {
        if (!left.UsesBatch() || !right.UsesBatch())
            return true;
        if (left.vector.obsPred != right.vector.obsPred || left.IsOfModel() || right.IsOfModel())
            return left.vector.obsPred == right.vector.obsPred && AreOfOneModel();
        return AreOfOneSet();
    }

    bool ShareNumbers() const {
        std::set<int> const ofX{X, XY, BatchX}, ofY{Y, XY, BatchY, YPhase}, items{ObsOrVar, BatchOnly},
            ranges{Range, BatchRange};
        int const one = left.vector.number, other = right.vector.number;
        if (left.vector.type != right.vector.type)
            return false;
        if (one == NoNumber || one == Identifier)
            return one == other;
        for (auto const &kinds : {ofX, ofY})
            if (kinds.contains(one) && !(kinds.contains(other) && AreOfOneModel()))
                return false;
        if (items.contains(one))
            return (left.IsOfModel() || right.IsOfModel() ? AreOfOneModel() : AreOfOneSet()) && one == other &&
                   (left.vector.type != Loadings || left.vector.obsPred == right.vector.obsPred);
        if (!ranges.contains(one))
            return true;
        bool const moves = left.IsOfModel() && right.IsOfModel() && left.model != right.model;
        return ranges.contains(other) && (!moves || (left.number <= Plain::Count(right.model, 1) &&
                                                     left.number2 <= Plain::Count(right.model, left.vector.pairLimit)));
    }

    static int Resolved(Plain const &plain, std::size_t i) {
        int const component = plain.components[i];
        if (!plain.IsOfModel())
            return 1;
        int const all = Plain::Count(plain.model, 1) + Plain::Count(plain.model, 2) + Plain::Count(plain.model, 4);
        return component != -1 ? component : i == 0 ? all : Plain::Count(plain.model, i == 1 ? 2 : 4);
    }

    bool ShareText() const {
        bool const sameSource =
            left.IsOfModel() ? AreOfOneModel() : !right.IsOfModel() && left.dataSet == right.dataSet;
        bool const sameUnits =
            !left.vector.Has('u') || (left.unscaled == right.unscaled && left.backTransformed == right.backTransformed);
        bool sameComponents = true;
        for (std::size_t i = 0; i < 3; ++i)
            sameComponents &= (left.vector.components & (1 << i)) == 0 || Resolved(left, i) == Resolved(right, i);
        if (std::string(left.vector.name) != right.vector.name || !sameSource || !sameUnits || !sameComponents)
            return false;
        int const one = left.vector.number;
        if (one == ObsOrVar || (left.vector.type == Scores && right.vector.number == X))
            return true;
        return left.vector.type == Aligned && left.UsesBatch() && (one == NoNumber || left.number == right.number) &&
               (one != BatchRange || left.number2 == right.number2);
    }
};

} // namespace

TEST(VectorValidation, ComparesPairs) {
    World const world;
    Dice dice(4);
    std::map<std::string, int> seen;
    for (int i = 0; i < 20000; ++i) {
        Plain const left = Plain::Random(dice);
        Plain right = left, other = Plain::Random(dice);
        auto const mix = [&](auto &part, auto const &changed) {
            if (dice(0, 5) == 0)
                part = changed;
        };
        mix(right.model, other.model), mix(right.dataSet, other.dataSet), mix(right.components, other.components);
        mix(right.number, other.number), mix(right.number2, other.number2), mix(right.unscaled, other.unscaled);
        mix(right.vector.obsPred, other.vector.obsPred), mix(right.vector.number, other.vector.number);
        mix(right.vector.type, other.vector.type), mix(right.vector.data, other.vector.data);
        mix(right.vector.name, other.vector.name), mix(right, other);
        VectorProbe const leftVector(left.vector), rightVector(right.vector);
        ProjectVectorData const one = left.Record(world, &leftVector), two = right.Record(world, &rightVector);
        Pair const pair{left, right};
        // Whether numbers carry over, batches agree, one text serves.
        auto const text = [](bool numbers, bool batches, bool joined) {
            return std::string(numbers ? "n" : "-") + (batches ? "b" : "-") + (joined ? "j" : "-");
        };
        std::string const found =
            text(one.HasEqualNumberArguments(two), one.HasEqualBatchArguments(two), one.IsJoinableData(two));
        EXPECT_EQ(found, text(pair.ShareNumbers(), pair.ShareBatches(), pair.ShareText()))
            << one.ToStdString(nullptr) << " / " << two.ToStdString(nullptr);
        ++seen[found];
    }
    EXPECT_EQ(seen.size(), 8u);
}
