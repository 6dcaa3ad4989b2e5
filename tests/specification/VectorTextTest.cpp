#include "catalogue/ProjectVectorHandler.h"
#include "platform/text/Exception.h"
#include "tests/specification/World.h"
#include "tests/support/GroupingLocale.h"

#include <gtest/gtest.h>

namespace {

using Weight = ContributionWeightEnum;

Change Components(int predictive, int xSide = open, int ySide = open, int osc = open) {
    return [=](ProjectVectorData &data) {
        data.SetPredComponent(predictive);
        data.SetXSideOrthoComponent(xSide);
        data.SetYSideOrthoComponent(ySide);
        data.oscComponent = osc;
    };
}

Change Groups(std::vector<int> from, std::vector<int> to, Weight::WeightType weight = Weight::Raw,
              std::vector<int> components = {}, int yVar = 0) {
    return [=](ProjectVectorData &data) {
        data.obs1 = from;
        data.obs2 = to;
        data.SetWeightType(weight);
        data.SetWeightComp(components);
        data.SetYVar(yVar);
    };
}

VectorTraits Kind(char const *name, int contribution, char const *flags = "") {
    return {.name = name, .contribution = contribution, .flags = flags};
}

Change Points(bool aligned1, bool aligned2) {
    return [=](ProjectVectorData &data) {
        data.contRef = {{"A", 1.5f}};
        data.contGroup = {{"B b", 0.123456789f}, {"", 2.0f}};
        data.alignedMaturity1 = aligned1;
        data.alignedMaturity2 = aligned2;
        data.SetWeightType(Weight::Raw);
    };
}

// The argument text by the documented layout, without defaults.
class ReferenceWriter {
public:
    explicit ReferenceWriter(Plain const &plain) : m_plain(plain), m_vector(plain.vector) {}

    std::string Text() {
        int const number = m_vector.number;
        bool const range = number == Range || number == BatchRange;
        m_text = m_vector.name;
        m_text += (m_vector.data & OfModel) != 0 && m_plain.IsOfModel() ? " M" + std::to_string(m_plain.model)
                  : m_vector.obsPred == Predicted                       ? " PS"
                                                                        : " DS" + std::to_string(m_plain.dataSet);
        Components();
        if (number == NoNumber || number == Batch)
            Add(0);
        else if (range)
            Add(m_plain.number == open ? 1 : Unsigned(m_plain.number) <= Unsigned(Count(1)) ? m_plain.number : -1);
        else
            Add(Unsigned(m_plain.number));
        Add(m_vector.Has('r') ? m_plain.round : 0);
        if (m_vector.Has('u'))
            Add(m_plain.unscaled), Add(m_plain.backTransformed);
        if (m_vector.contribution != 0)
            Contribution();
        if (range) {
            bool const withXSide = std::string(m_vector.name).starts_with("T2Range");
            Add(std::min(Unsigned(m_plain.number2), Unsigned(Count(m_vector.pairLimit) + (withXSide ? Count(2) : 0))));
        } else if (number == XY) {
            Add(m_plain.number2 == open ? 1 : Unsigned(m_plain.number2));
        } else if (number == YPhase || number == Phase) {
            Add(Unsigned(m_plain.number2));
        }
        if (m_plain.UsesBatch())
            Add(m_plain.batch);
        if (m_vector.Has('l'))
            m_text += ",1-1";
        for (int i = 0; i < 2 && m_vector.Has('m'); ++i)
            Add(m_plain.multiplier, m_vector.contribution >= 5 ? 8 : 6);
        if (m_vector.Has('c'))
            Add(m_plain.status);
        return m_text;
    }

private:
    static std::int64_t Unsigned(int number) { return static_cast<std::uint32_t>(number); }

    int Count(int kind) const { return Plain::Count(m_plain.model, kind); }

    void Add(std::int64_t number) { m_text += ',' + std::to_string(number); }
    void Add(double number, int digits) {
        char text[32];
        std::snprintf(text, sizeof text, ",%.*g", digits, number);
        m_text += text;
    }

    void Components() {
        bool const several = m_vector.components == 3 || m_vector.components == 7 || m_vector.components == 15;
        if (m_vector.components == 0)
            Add(0);
        for (int kind = 1, i = 0; kind <= 8; kind *= 2, ++i) {
            int const component = m_plain.components[static_cast<std::size_t>(i)];
            bool const last = component == -1 || (several && component == -2);
            if ((m_vector.components & kind) == 0)
                continue;
            if (kind == 8)
                Add(component);
            else if (!m_plain.IsOfModel())
                Add(1);
            else
                Add(!last ? component : kind == 1 ? Count(1) + Count(2) + Count(4) : Count(kind));
        }
    }

    void List(std::vector<int> const &values) {
        Add(static_cast<std::int64_t>(values.size()));
        for (int const value : values)
            Add(value);
    }

    void Contribution() {
        List(m_plain.weights.empty() ? std::vector<int>{0} : m_plain.weights);
        Add(m_plain.yVar);
        for (int group = 0; group < 2; ++group) {
            if (m_vector.contribution < 5) {
                List(group == 0 ? m_plain.from : m_plain.to);
                continue;
            }
            Add(static_cast<std::int64_t>(m_plain.points.size()));
            for (auto const &[batch, maturity] : m_plain.points) {
                m_text += ',' + batch + '$';
                Add(static_cast<double>(maturity), 8);
            }
        }
        if (m_vector.contribution < 5)
            Add(m_plain.yVar);
        for (int const component : m_plain.weightComponents)
            Add(component);
    }

    Plain const &m_plain;
    VectorTraits const &m_vector;
    std::string m_text;
};

} // namespace

TEST(VectorText, WritesWhatTheCatalogueReads) {
    World const world;
    GroupingLocale const grouping;
    Dice dice(1);
    for (int i = 0; i < 5000; ++i) {
        Plain const plain = Plain::Random(dice);
        VectorProbe const vector(plain.vector);
        EXPECT_EQ(plain.Record(world, &vector).ToStdString(nullptr), ReferenceWriter(plain).Text());
    }
    EXPECT_EQ(ProjectVectorData().ToStdString(&world.defaults), "");
    VectorProbe const lagged({.name = "IR", .flags = "l"});
    EXPECT_EQ(world.Data(lagged, "M1", [](auto &d) { d.startLag = 2, d.endLag = 5; }).ToStdString(nullptr),
              "IR M1,0,0,0,2-5");
}

TEST(VectorText, LabelsSeries) {
    World const world;
    VariableInfo time(2);
    world.project->variables.SetInfo(time);
    world.project->variables.SetDefaultTimeVariable(2);
    world.project->preferredObservationAlias = 2;
    world.project->Model(2).isWeighted = true;
    world.project->Model(3).isNormalized = false;
    world.project->Model(4).isNormalized = false;
    world.project->Model(4).isWeighted = true;
    world.project->Model(4).treatment = 2;
    VectorTraits const t{"t", Scores, NoNumber, 1}, range{"r", Scores, Range};
    VectorTraits const score = Kind("c", 1), distance = Kind("c", 3);
    VectorTraits const unscaled{.name = "u", .flags = "u"}, batch{"b", Scores, Batch};
    VectorTraits const phase{"ph", Scores, Phase}, scorePS{"c", Scores, NoNumber, 0, OfModel, Predicted, 1};
    std::vector<int> const four{1, 2, 3, 4};
    char const *const points = "M1.long c({B b at 0.123457, Average at 2} - A at 1.5), Weight=Raw";
    char const *const alignedPoints = "M1.long c Aligned({B b at 0.123457, Average at 2} - A at 1.5), Weight=Raw";
    struct {
        VectorTraits vector;
        char const *source;
        Change change;
        char const *expected;
        int alias = 1;
        bool compact = false;
    } const cases[] = {
        // Items of data sets.
        {{"VarID", Loadings, Identifier, 0, OfSet}, "DS1", {}, "DS1.second (other)", 2},
        {{"VarID", Loadings, Identifier, 0, OfSet}, "DS1", {}, "DS1.name"},
        {{"VarDS", Scores, ObsOrVar, 0, OfSet}, "DS1", Number(3), "DS1.long VarDS(v3)"},
        {{"VarDS", Scores, ObsOrVar, 0, OfSet}, "DS2", Number(open), "DS2.long VarDS(w2)", 2},
        {{"ObsDS", Loadings, ObsOrVar, 0, OfSet}, "DS1", Number(4), "DS1.long ObsDS(o4)"},
        {{"ObsPS", Loadings, ObsOrVar, 0, OfPredSet, Predicted}, "", {}, "PS.long ObsPS(s5)", 2},
        {{"d", Scores, NoNumber, 1, OfSet}, "DS1", {}, "DS1."},
        {{.name = "d", .data = OfSet, .flags = "u"}, "DS1", [](auto &d) { d.backTransformed = false; }, "DS1.(trans)"},
        // Names and components.
        {{"Date/Time"}, "M1", {}, "M1.w2", 2},
        {t, "", {}, ".long t[Comp. 1]"},
        {t, "M1", Components(2), "M1.long t[Comp. 2]"},
        {t, "M1", Components(2), "M1.long t[2]", 1, true},
        {t, "M1", {}, "M1.long t[Last comp.]"},
        {t, "M1", {}, "M1.long t[3]", 1, true},
        {{"to", Scores, NoNumber, 2}, "M2", Components(open, 2), "M2.long to[XSide Comp. 2]"},
        {{"uo", Scores, NoNumber, 4}, "M3", Components(open, open, 1), "M3.long uo[YSide Comp. 1]"},
        {{"osc", Scores, NoNumber, 8}, "M1", Components(open, open, open, 4), "M1.long osc[Comp. 4]"},
        {{"osc", Scores, NoNumber, 8}, "M1", {}, "M1.long osc[Last comp.]"},
        {{"both", Scores, NoNumber, 3}, "M3", {}, "M3.long both"},
        // Distances: plain, weighted, unnormalised, both.
        {{"DModX"}, "M1", {}, "M1.long DModX(Normalized)"},
        {{"DModXPS+"}, "M2", {}, "M2.long DModXPS+(Weighted and Normalized)"},
        {{"DModXPS"}, "M3", {}, "M3.long DModXPS(Abs)"},
        {{"DModX"}, "M4", {}, "M4.long DModX(Weighted residuals)"},
        {{"DModY"}, "M2", {}, "M2.long DModY(Normalized)"},
        {{"DModYPS"}, "M4", {}, "M4.long DModYPS(Abs)"},
        {{"DModX2"}, "M1", {}, "M1.long DModX2"},
        {{.name = "tcv", .components = 1, .flags = "r"}, "M1", Components(1), "M1.long tcv[Comp. 1][CV. 1]"},
        // Contributions.
        {score, "M1", Groups({}, {1, 2}), "M1.long c(Obs {s1, s2} - Average), Weight=Raw"},
        {score, "M1", Groups({}, {1, 2}), "M1.long c({s1, s2} - Average), Weight=Raw", 2},
        {score, "M1", Groups({3}, {1}), "M1.long c(Obs s1 - Obs s3), Weight=Raw"},
        {score, "M1", Groups({2, 3, 4}, {1}), "M1.long c(s1 - Obs {s2, s3, s4}), Weight=Raw", 2},
        {score, "M1", Groups(four, four), "M1.long c(Group 2 - Group 1), Weight=Raw"},
        {score, "M1", Groups({}, four), "M1.long c(Group - Average), Weight=Raw"},
        {score, "M1", Groups(four, {1}), "M1.long c(Obs s1 - Group), Weight=Raw"},
        {scorePS, "M1", Groups({}, {2}), "M1.long c(Obs s6 - Average), Weight=Raw"},
        {distance, "M1", Groups({2}, {}), "M1.long c(Obs o2), Weight=Raw"},
        {distance, "M1", Groups({2, 3}, {}), "M1.long c({s2, s3}), Weight=Raw", 2},
        {Kind("c", 4), "M1", Groups(four, {}), "M1.long c(Obs Group), Weight=Raw"},
        {Kind("c", 5), "M1", Points(true, true), alignedPoints},
        {Kind("c", 5), "M1", Points(true, false), points},
        {Kind("c", 6), "M1", Points(true, false), alignedPoints},
        {Kind("c", 7), "M1", Points(false, true), points},
        // Weights, after the group of one observation.
        {distance, "M1", Groups({2}, {}, Weight::Normalized, {3}), "M1.long c(Obs o2), Comp: 3"},
        {score, "M1", Groups({}, {1}, Weight::Normalized, {3}), "M1.long c(Obs s1 - Average), Weight=Normalized"},
        {distance, "M1", Groups({2}, {}, Weight::PP, {1, 2}), "M1.long c(Obs o2), Weight=p[1]p[2]"},
        {distance, "M1", Groups({2}, {}, Weight::WStarWStar, {1, 2}), "M1.long c(Obs o2), Weight=w*[1]w*[2]"},
        {distance, "M1", Groups({2}, {}, Weight::CoeffCS, {3}, 2), "M1.long c(Obs o2)(YVar v5), Weight=CoeffCS[3]"},
        {distance, "M1", Groups({2}, {}, Weight::CoeffCSRaw, {3}, 1),
         "M1.YPred Contrib(Obs o2)(YVar v4), Weight=CoeffCSRaw[3]"},
        {distance, "M1", Groups({2}, {}, Weight::PRange, {1, 2, 3}), "M1.long c(Obs o2), Weight=p[1]-p[3]"},
        {distance, "M1", Groups({2}, {}, Weight::WStarRange, {1, 3}), "M1.long c(Obs o2), Weight=w*[1]-w*[3]"},
        {distance, "M1", Groups({2}, {}, Weight::VIP, {3}), "M1.long c(Obs o2), Weight=VIP[3]"},
        {distance, "M1", Groups({2}, {}, Weight::PPO, {1, 2}), "M1.long c(Obs o2), Weight=ppo[1]ppo[2]"},
        // Numbers.
        {{"XObs", Loadings, ObsOrVar}, "M1", Number(3), "M1.long XObs(Obs o3)"},
        {{"XObs", Loadings, ObsOrVar}, "M1", Number(open), "M1.long XObs(s1)", 2},
        {{"v", Scores, ObsOrVar}, "M1", Number(3), "M1.long v(Var w3)", 2},
        {{"v", Scores, ObsOrVar}, "M1", Number(open), "M1.long v(Var )"},
        {{"YPred", Scores, Y}, "M1", Number(2), "M1.long YPred(v5)"},
        {{"XVar", Scores, X}, "M1", Number(open), "M1.long XVar(v1)"},
        {{"pLag", Lag, X}, "M2", Number(2), "M2.long pLag(v3)"},
        {{"C", Scores, XY}, "M1", Number(3, open), "M1.long C(XVar v3)(YVar v4)"},
        {{"C", Lag, XY}, "M2", Number(2, 1), "M2.long C(XVar v3)(YVar v4)"},
        {{"VIP", Scores, YPhase}, "M4", Number(1, 2), "M4.long VIP(v4), Phase end"},
        {phase, "M4", Number(1, 1), "M4.long ph, Phase start"},
        {phase, "M3", Number(1, 2), "M3.long ph, Phase late"},
        {phase, "M3", Number(1, 3), "M3.long ph"},
        {phase, "M2", Number(1, 1), "M2.long ph"},
        // Ranges, of O2PLS and of others.
        {range, "M3", Number(2, 1), "M3.long r[Comp. 1 - 2]"},
        {range, "M3", Number(2, open), "M3.long r[Comp. 2 - Last comp., XSide comp. 2 - Last comp.]"},
        {range, "M3", Number(open, open), "M3.long r[Last comp. - Last comp.]"},
        {range, "M3", Number(open, 2), "M3.long r[Comp. 2 - Last comp., XSide comp. -1 - Last comp.]"},
        {range, "M1", Number(open, 2), "M1.long r[Comp. 2 - Last comp.]"},
        {range, "M1", Number(-2, 2), "M1.long r[Comp. 2 - Last comp.]"},
        {range, "M1", Number(open, -2), "M1.long r[Comp. -2 - Last comp.]"},
        {range, "M1", Number(-2, -2), "M1.long r[Last comp. - Last comp.]"},
        {range, "M2", Number(3, open), "M2.long r[Comp. 3 - Last comp.]"},
        {range, "M1", Number(3, -2), "M1.long r[Comp. 3 - Last comp.]"},
        {range, "M1", Number(3, 1), "M1.long r[Comp. 1 - 3]"},
        {{"YVar"}, "M4", {}, "M4.long YVar(Normalized)"},
        {{"YVarPS"}, "M4", {}, "M4.long YVarPS(Normalized)"},
        {{"YVar2"}, "M4", {}, "M4.long YVar2"},
        {{"YVar"}, "M1", {}, "M1.long YVar"},
        {{.name = "IR", .flags = "l"},
         "M1",
         [](auto &d) { d.startLag = 2, d.endLag = 5; },
         "M1.long IR, Start Lag=2, End Lag=5"},
        // Tails.
        {batch, "M4", Number(1, 1, 0), "M4.long b, Batch: Std.Dev."},
        {batch, "M4", Number(1, 1, 2), "M4.long b, Batch: B"},
        {batch, "M4", Number(1, 1, -2), "M4.long b, Batch: Average"},
        {{"b", Scores, Batch, 0, OfModel, Predicted}, "M4", Number(1, 1, 2), "M4.long b, Batch: C"},
        {{"b", Scores, Batch, 0, OfSet}, "DS1", Number(1, 1, 3), "DS1., Batch: C"},
        {{"b", Scores, Batch, 0, OfSet}, "DS-1", Number(1, 1, 3), "DS-1., Batch: "},
        {{"b", Scores, Batch, 0, OfPredSet, Predicted}, "", Number(1, 1, 1), "PS., Batch: C"},
        {unscaled, "M1", {}, "M1.long u"},
        {unscaled, "M1", [](auto &d) { d.unscaled = false; }, "M1.long u"},
        {unscaled, "M1", [](auto &d) { d.backTransformed = false; }, "M1.long u(trans)"},
        {unscaled, "M1", [](auto &d) { d.unscaled = d.backTransformed = false; }, "M1.long u(as WS)"}};
    world.project->Model(2).x = ColumnTerms({ColumnTerm(1), ColumnTerm(2, 1), ColumnTerm(2, 2), ColumnTerm(3, 1)});
    // Model 3 and 2 are of batches of data set 7, and of 8 with one phase.
    for (auto const &[model, dataSet] : {std::pair(3, 7), {2, 8}}) {
        world.project->Info(model).isBatchLevel = true;
        world.project->Info(model).dataSets = {dataSet + 10};
        world.project->dataSets[dataSet + 10].sourceDataSet = dataSet;
    }
    world.project->dataSets[7].phases = {"early", "late"};
    world.project->dataSets[8].phases = {"only"};
    for (auto const &row : cases) {
        VectorProbe const vector(row.vector);
        EXPECT_EQ(world.Data(vector, row.source, row.change).GetFormattedName(&world.defaults, row.alias, row.compact),
                  row.expected);
    }
    VectorProbe const lost({"b", Scores, Batch, 0, OfSet});
    EXPECT_THROW(world.Data(lost, "DS9", Number(1, 1, 1)).GetFormattedName(&world.defaults, 1, false), NCError);
}

TEST(VectorText, NamesSeriesWithoutPrefixAndWithTheirScale) {
    World const world;
    VectorProbe const vector({"t"});
    ProjectVector const &num = *ProjectVectorHandler::Instance()->GetNumVector(Scores);
    struct {
        ProjectVector const &vector;
        double scaling, offset;
        char const *prefix; // null: stays
        char const *expected;
    } const cases[] = {{vector, 1, 0, nullptr, "M1.long t"},
                       {vector, 1, 0, "M1", "long t"},
                       {vector, 1, 0, "M2", "M1.long t"},
                       {vector, 2, -0.5, nullptr, "2 * M1.long t - 0.5"},
                       {vector, 1, 0.5, "M1", "long t + 0.5"},
                       {vector, -1, 0, "M1", "-1 * long t"},
                       {vector, 1.0000001, 1e-7, "M1", "long t"},
                       {vector, 1.0000002, 0, "M1", "1 * long t"},
                       {vector, 1, 0, "M1.long t", ""},
                       {num, 1, 0, "N", "Num"},
                       {num, 2, 1, "N", "2 * Num + 1"}};
    for (auto const &row : cases) {
        ProjectVectorData data = world.Data(row.vector, "M1");
        data.scaling = row.scaling;
        data.offset = row.offset;
        EXPECT_EQ(data.GetProjectVectorName(&world.defaults, row.prefix, row.prefix ? row.prefix : "", 1, false),
                  row.expected);
    }
    EXPECT_EQ(world.Data(num, "").GetFormattedName(nullptr, 1, false), "Num");
    EXPECT_EQ(world.Data(vector, "").GetDataSourceName(), "");
    EXPECT_EQ(ProjectVectorData().GetDataSourceName(), "");
}
