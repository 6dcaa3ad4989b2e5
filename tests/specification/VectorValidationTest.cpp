#include "catalogue/ProjectVectorHandler.h"
#include "platform/text/Exception.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

#include <set>

namespace {

// Whether the numbers of a record mean something. By number type, what has to hold: m there is a model, x and y it has
// the term (Y the second number), l and c both components are there (of the pair's second kind, of all kinds), b the
// batch is there or a statistic over all, p the phase, a it is the numeral alias, i the item is there, ! nothing can.
struct Check {
    Plain const &plain;
    int model = plain.IsOfModel() ? plain.model : 0;

    bool Passes() const {
        static char const *const rules[] = {"",   "i", "my",  "x", "xY", "ml", "b", "xb",
                                            "yb", "p", "mcb", "!", "a",  "!",  "p"};
        int const number = plain.number, number2 = plain.number2, larger = std::max(number, number2);
        int const phases = model == 3 ? 2 : model == 2 ? 1 : 0, batches = plain.IsPredicted() ? 2 : 3;
        auto const isUpTo = [](int term, int count) { return term == open || (term >= 1 && term <= count); };
        std::map<char, bool> const holds = {
            {'m', model != 0},
            {'x', isUpTo(number, model == 0 ? 0 : 3)},
            {'y', isUpTo(number, plain.YTerms())},
            {'Y', isUpTo(number2, plain.YTerms())},
            {'l', larger <= Plain::Count(model, plain.vector.pairLimit)},
            {'c', larger <= Plain::CountAll(model)},
            {'b', model == 4 && (plain.vector.data & OfModel) != 0 && plain.rest.batchIx <= batches},
            {'p', number2 >= 1 && number2 <= phases},
            {'a', plain.HasNumeralAlias() && number == 3},
            {'i', number == open || IsItem()},
            {'!', false}};
        std::string const rule = rules[plain.vector.number];
        return std::all_of(rule.begin(), rule.end(), [&](char one) { return holds.at(one); });
    }

    // Predicted observations, and variables without a model or data set, are those of the prediction set.
    std::string Source() const {
        bool const ofModel = (plain.vector.data & OfModel) != 0, ofScores = plain.vector.type == Scores;
        if (plain.IsPredicted() && !ofScores)
            return "PS";
        if (ofModel)
            return model != 0 ? "M" + std::to_string(model) : ofScores ? "PS" : "";
        return (plain.vector.data & OfSet) != 0 && plain.dataSet != 0 ? "DS" + std::to_string(plain.dataSet) : "PS";
    }

    bool IsItem() const {
        if ((plain.vector.type != Scores && plain.vector.type != Loadings) || Source().empty())
            return false;
        Items const &items = itemsOf.at(Source());
        auto const &numbers = plain.vector.type == Scores ? items.variables : items.observations;
        bool const inY = plain.vector.type == Scores && Source().front() == 'M' && plain.number > 3;
        return !inY && std::find(numbers.begin(), numbers.end(), plain.number) != numbers.end();
    }
    // An observation of no data at all: misuse.
    bool IsLost() const {
        return plain.vector.number == ObsOrVar && plain.vector.type == Loadings && plain.vector.data == OfPredSet &&
               !plain.IsPredicted() && plain.number != open;
    }
};

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
        return !plain.IsOfModel() ? 1 : plain.components[i] == -1 ? plain.Last(i) : plain.components[i];
    }

    bool ShareText() const {
        bool const sameSource =
            left.IsOfModel() ? AreOfOneModel() : !right.IsOfModel() && left.dataSet == right.dataSet;
        bool const sameUnits = !left.vector.Has('u') || (left.rest.unscaled == right.rest.unscaled &&
                                                         left.rest.backTransformed == right.rest.backTransformed);
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

TEST(VectorValidation, ChecksNumbers) {
    World world;
    Dice dice(8);
    int good = 0;
    for (int i = 0; i < 10000; ++i) {
        Plain const plain = Plain::Random(dice);
        VectorProbe const vector(plain.vector);
        ProjectVectorData const data = plain.Record(world, &vector);
        if (Check{plain}.IsLost()) {
            EXPECT_THROW(data.CheckNumberIDs(world.project), NCInternalError);
            continue;
        }
        bool const expected = Check{plain}.Passes();
        EXPECT_EQ(data.CheckNumberIDs(world.project), expected)
            << data.ToStdString(nullptr) << data.GetDataSourceName();
        good += expected;
    }
    EXPECT_TRUE(good > 1000 && good < 5000) << good;
    EXPECT_TRUE(ProjectVectorData().CheckNumberIDs(world.project));
    ProjectVector const &num = *ProjectVectorHandler::Instance()->GetNumVector(Scores);
    EXPECT_TRUE(world.Data(num, "", Number(7)).CheckNumberIDs(world.project));
    // A pair of a batch model counts components of all kinds.
    world.project->Info(4).xSideOrthogonalComponents = 1;
    VectorProbe const pair({.number = BatchRange});
    EXPECT_TRUE(world.Data(pair, "M4", Number(3, 3, 1)).CheckNumberIDs(world.project));
    // Without a workset the prediction set has the variables.
    world.project->AddModel(ModelTypeE::PCA, 1);
    VectorProbe const variable({.number = ObsOrVar});
    EXPECT_TRUE(world.Data(variable, "M5", Number(5)).CheckNumberIDs(world.project));
}

TEST(VectorValidation, ComparesPairs) {
    World const world;
    Dice dice(4);
    std::set<std::vector<bool>> seen;
    for (int i = 0; i < 20000; ++i) {
        Plain const left = Plain::Random(dice), other = Plain::Random(dice);
        Plain right = left.With(other, dice);
        auto const mix = [&](auto &part, auto const &changed) { part = dice(0, 5) == 0 ? changed : part; };
        mix(right.vector.obsPred, other.vector.obsPred), mix(right.vector.number, other.vector.number);
        mix(right.vector.type, other.vector.type), mix(right.vector.data, other.vector.data);
        mix(right.vector.name, other.vector.name), mix(right, other);
        VectorProbe const leftVector(left.vector), rightVector(right.vector);
        ProjectVectorData const one = left.Record(world, &leftVector), two = right.Record(world, &rightVector);
        Pair const pair{left, right};
        // Whether numbers carry over, batches agree, one text serves.
        std::vector<bool> const found{one.HasEqualNumberArguments(two), one.HasEqualBatchArguments(two),
                                      one.IsJoinableData(two)};
        EXPECT_EQ(found, std::vector<bool>({pair.ShareNumbers(), pair.ShareBatches(), pair.ShareText()}))
            << one.ToStdString(nullptr) << " / " << two.ToStdString(nullptr);
        seen.insert(found);
    }
    EXPECT_EQ(seen.size(), 8u);
    // The last component is joined with its number.
    VectorProbe const item({.number = ObsOrVar, .components = 1});
    auto const last = [](ProjectVectorData &data) { data.SetPredComponent(3); };
    EXPECT_TRUE(world.Data(item, "M1").IsJoinableData(world.Data(item, "M1", last)));
}
