#include "catalogue/ProjectVectorHandler.h"
#include "platform/Exception.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

#include <locale>

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

Change Points(bool aligned1, bool aligned2) {
    return [=](ProjectVectorData &data) {
        data.contRef = {{"A", 1.5f}};
        data.contGroup = {{"B b", 0.123456789f}, {"", 2.0f}};
        data.alignedMaturity1 = aligned1;
        data.alignedMaturity2 = aligned2;
        data.SetWeightType(Weight::Raw);
    };
}

} // namespace

TEST(VectorText, WritesWhatTheCatalogueReads) {
    World const world;
    constexpr auto X = V::NumberXVariable;
    constexpr auto DataSet = V::DataTypeDataSet;
    VectorTraits const t{.name = "t", .components = 1}, xVar{.name = "XVar", .number = X, .unscales = true};
    VectorTraits const xVarRes{.name = "XVarRes", .number = X, .components = 15};
    VectorTraits const t2Range{.name = "T2Range", .number = V::NumberComponentRange};
    VectorTraits const coefficients{
        .name = "Coeff", .type = V::VectorTypeLag, .number = V::NumberXAndYVariable, .hasCoefficientStatus = true};
    // vector; source; what is set; the text with defaults, and without where it differs
    struct {
        VectorTraits vector;
        char const *source;
        Change change;
        char const *expected, *expectedWithout = nullptr;
    } const cases[] = {
        {t, "M1", Components(2), "t M1,2,0,0"},
        {t, "M1", Components(open), "t M1,3,0,0"},
        {t, "M1", [](auto &data) { data.SetDataSet(2); }, "t DS2,1,0,0"},
        {t, "", Components(2), "t DS0,1,0,0"},
        {{.name = "tPS", .components = 1, .obsPred = V::Predicted}, "", {}, "tPS PS,1,0,0"},
        {{.name = "tcv", .components = 2, .hasRounds = true}, "M2", [](auto &data) { data.selCV = 4; }, "tcv M2,2,0,4"},
        {xVar, "M1", Number(7), "XVar M1,0,7,0,1,1"},
        {xVar, "M1", [](auto &data) { data.unscaled = false; }, "XVar M1,0,1,0,0,1", "XVar M1,0,4294967295,0,0,1"},
        {xVar, "M1", [](auto &data) { data.backTransformed = false; }, "XVar M1,0,1,0,1,0",
         "XVar M1,0,4294967295,0,1,0"},
        {{.name = "YVar", .number = V::NumberYVariable}, "M1", {}, "YVar M1,0,1,0", "YVar M1,0,4294967295,0"},
        {{.name = "VarDS", .number = V::NumberObsOrVar, .data = DataSet},
         "DS2",
         {},
         "VarDS DS2,0,2,0",
         "VarDS DS2,0,4294967295,0"},
        {{.name = "VarPS", .number = V::NumberObsOrVar, .data = V::DataTypePredictionSet, .obsPred = V::Predicted},
         "",
         {},
         "VarPS PS,0,5,0",
         "VarPS PS,0,4294967295,0"},
        {{.name = "XObs", .type = V::VectorTypeObservationsLoadings, .number = V::NumberObsOrVar},
         "M1",
         Number(open),
         "XObs M1,0,1,0",
         "XObs M1,0,4294967295,0"},
        {{.name = "n", .type = V::VectorTypeComponent, .number = V::NumberObsOrVar}, "M1", {}, "n M1,0,4294967295,0"},
        {{.name = "VarID", .number = V::NumberIdentifier, .data = DataSet},
         "DS1",
         {},
         "VarID DS1,0,3,0",
         "VarID DS1,0,4294967295,0"},
        // Several kinds of components, -2 is the last one, too.
        {xVarRes, "M3", [](auto &data) { Components(open, -2, -2, 7)(data), data.SetNumber(1); },
         "XVarRes M3,5,2,1,7,1,0"},
        {xVarRes, "M3", [](auto &data) { Components(1, 2, 1, -2)(data), data.SetNumber(1); },
         "XVarRes M3,1,2,1,-2,1,0"},
        {xVarRes, "", [](auto &data) { Components(5, 2, -2, -1)(data), data.SetNumber(1); },
         "XVarRes DS0,1,1,1,-1,1,0"},
        {{.name = "two", .components = 6}, "M3", {}, "two M3,2,1,0,0"},
        // Ranges, within the model.
        {t2Range, "M1", {}, "T2Range M1,0,1,0,3"},
        {t2Range, "M1", Number(2, 3), "T2Range M1,0,2,0,3"},
        {t2Range, "M1", Number(4, 4), "T2Range M1,0,-1,0,3"},
        {t2Range, "M1", Number(-2, -2), "T2Range M1,0,-1,0,3"},
        {t2Range, "M3", {}, "T2Range M3,0,1,0,4"},
        {t2Range, "M2", Number(1, 9), "T2Range M2,0,1,0,3"},
        {{.name = "T2RangePS", .number = V::NumberComponentRange}, "M3", Number(1, 3), "T2RangePS M3,0,1,0,3"},
        {{.name = "t(corr)", .number = V::NumberComponentRange}, "M3", {}, "t(corr) M3,0,1,0,2"},
        {{.name = "o", .number = V::NumberComponentRange, .pairLimit = 4}, "M3", {}, "o M3,0,1,0,1"},
        {{.name = "T2RangeBatch", .number = V::NumberBatchComponentRange},
         "M4",
         Number(open, open, 5),
         "T2RangeBatch M4,0,1,0,2,5"},
        {coefficients, "M1", {}, "Coeff M1,0,1,0,1,0", "Coeff M1,0,4294967295,0,1,0"},
        {coefficients, "M1", [](auto &data) { Number(3, 2)(data), data.SetCoefficientStatus(ProjectData::Resolved); },
         "Coeff M1,0,3,0,2,2"},
        {{.name = "BatchVIP", .number = V::NumberBatchVIPPhase},
         "M4",
         Number(open, 2),
         "BatchVIP M4,0,1,0,2",
         "BatchVIP M4,0,4294967295,0,2"},
        {{.name = "VIP2", .number = V::NumberBatchVIPSecond}, "M4", Number(1, open), "VIP2 M4,0,1,0,4294967295"},
        {{.name = "tBatch", .number = V::NumberBatch, .components = 1}, "M4", Number(9, 9, 3), "tBatch M4,2,0,0,3"},
        {{.name = "XVarBatch", .number = V::NumberBatchXVariable}, "M4", Number(2, 9, -2), "XVarBatch M4,0,2,0,-2"},
        {{.name = "IR", .hasLags = true},
         "M1",
         [](auto &data) { data.startLag = 2, data.endLag = 5; },
         "IR M1,0,0,0,2-5"},
        {{.name = "SD", .hasMultiplier = true},
         "M1",
         [](auto &data) { data.multiplier1 = 3, data.multiplier2 = -2.123456789; },
         "SD M1,0,0,0,3,-2.12346"},
        {{.name = "SD", .hasMultiplier = true}, "M1", {}, "SD M1,0,0,0,-99,-99"},
        // Contributions: weights, response, groups, the response again, components.
        {{.name = "ContSc", .contribution = 1},
         "M1",
         Groups({1}, {2, 3}, Weight::PP, {1, 2}, 2),
         "ContSc M1,0,0,0,2,1,1,2,1,1,2,2,3,2,1,2"},
        {{.name = "ContDX", .contribution = 3},
         "M1",
         Groups({4}, {}, Weight::Normalized, {3}, -1),
         "ContDX M1,0,0,0,1,0,-1,1,4,0,-1,3"},
        {{.name = "ContSc", .contribution = 1},
         "M1",
         [](auto &data) {
             data.SetContributionWeight({WeightTypeE::WStar, WeightTypeE::PO}, {7});
         },
         "ContSc M1,0,0,0,2,2,9,0,0,0,0,7"},
        {{.name = "ContAL", .contribution = 5},
         "M1",
         Points(true, true),
         "ContAL M1,0,0,0,1,8,0,1,A$,1.5,2,B b$,0.12345679,$,2"},
        // Eight digits stay for what follows.
        {{.name = "long", .contribution = 7, .hasMultiplier = true},
         "M1",
         [](auto &data) { data.multiplier1 = 0.123456789; },
         "long M1,0,0,0,1,0,0,0,0,0.12345679,-99"}};
    class Grouping final : public std::numpunct<char> {
        std::string do_grouping() const override { return "\1"; }
        char do_decimal_point() const override { return ','; }
    };
    std::locale const before = std::locale::global(std::locale(std::locale(), new Grouping));
    for (auto const &row : cases) {
        VectorProbe const vector(row.vector);
        ProjectVectorData const data = world.Data(vector, row.source, row.change);
        EXPECT_EQ(data.ToStdString(&world.defaults), row.expected);
        EXPECT_EQ(data.ToStdString(nullptr), row.expectedWithout ? row.expectedWithout : row.expected);
    }
    std::locale::global(before);
    EXPECT_EQ(ProjectVectorData().ToStdString(&world.defaults), "");
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
    constexpr auto Loadings = V::VectorTypeObservationsLoadings;
    constexpr auto ObsOrVar = V::NumberObsOrVar;
    constexpr auto DataSet = V::DataTypeDataSet;
    VectorTraits const t{.name = "t", .components = 1}, range{.name = "r", .number = V::NumberComponentRange};
    VectorTraits const score{.name = "c", .contribution = 1}, distance{.name = "c", .contribution = 3};
    VectorTraits const unscaled{.name = "u", .unscales = true}, batch{.name = "b", .number = V::NumberBatch};
    VectorTraits const phase{.name = "ph", .number = V::NumberBatchVIPSecond};
    std::vector<int> const four{1, 2, 3, 4};
    struct {
        VectorTraits vector;
        char const *source;
        Change change;
        char const *expected;
        int alias = 1;
        bool compact = false;
    } const cases[] = {
        // Items of data sets.
        {{.name = "VarID", .number = V::NumberIdentifier, .data = DataSet}, "DS1", {}, "DS1.second (other)", 2},
        {{.name = "VarID", .number = V::NumberIdentifier, .data = DataSet}, "DS1", {}, "DS1.name"},
        {{.name = "VarDS", .number = ObsOrVar, .data = DataSet}, "DS1", Number(3), "DS1.long VarDS(v3)"},
        {{.name = "VarDS", .number = ObsOrVar, .data = DataSet}, "DS2", Number(open), "DS2.long VarDS(w2)", 2},
        {{.name = "ObsDS", .type = Loadings, .number = ObsOrVar, .data = DataSet},
         "DS1",
         Number(4),
         "DS1.long ObsDS(o4)"},
        {{.name = "ObsPS",
          .type = Loadings,
          .number = ObsOrVar,
          .data = V::DataTypePredictionSet,
          .obsPred = V::Predicted},
         "",
         {},
         "PS.long ObsPS(s5)",
         2},
        {{.name = "d", .components = 1, .data = DataSet}, "DS1", {}, "DS1."},
        {{.name = "d", .data = DataSet, .unscales = true},
         "DS1",
         [](auto &data) { data.backTransformed = false; },
         "DS1.(trans)"},
        // Names and components.
        {{.name = "Date/Time"}, "M1", {}, "M1.w2", 2},
        {t, "", {}, ".long t[Comp. 1]"},
        {t, "M1", Components(2), "M1.long t[Comp. 2]"},
        {t, "M1", Components(2), "M1.long t[2]", 1, true},
        {t, "M1", {}, "M1.long t[Last comp.]"},
        {t, "M1", {}, "M1.long t[3]", 1, true},
        {{.name = "to", .components = 2}, "M2", Components(open, 2), "M2.long to[XSide Comp. 2]"},
        {{.name = "uo", .components = 4}, "M3", Components(open, open, 1), "M3.long uo[YSide Comp. 1]"},
        {{.name = "osc", .components = 8}, "M1", Components(open, open, open, 4), "M1.long osc[Comp. 4]"},
        {{.name = "osc", .components = 8}, "M1", {}, "M1.long osc[Last comp.]"},
        {{.name = "both", .components = 3}, "M3", {}, "M3.long both"},
        // Distances: plain, weighted, unnormalised, both.
        {{.name = "DModX"}, "M1", {}, "M1.long DModX(Normalized)"},
        {{.name = "DModXPS+"}, "M2", {}, "M2.long DModXPS+(Weighted and Normalized)"},
        {{.name = "DModXPS"}, "M3", {}, "M3.long DModXPS(Abs)"},
        {{.name = "DModX"}, "M4", {}, "M4.long DModX(Weighted residuals)"},
        {{.name = "DModY"}, "M2", {}, "M2.long DModY(Normalized)"},
        {{.name = "DModYPS"}, "M4", {}, "M4.long DModYPS(Abs)"},
        {{.name = "DModX2"}, "M1", {}, "M1.long DModX2"},
        {{.name = "tcv", .components = 1, .hasRounds = true}, "M1", Components(1), "M1.long tcv[Comp. 1][CV. 1]"},
        // Contributions.
        {score, "M1", Groups({}, {1, 2}), "M1.long c(Obs {s1, s2} - Average), Weight=Raw"},
        {score, "M1", Groups({}, {1, 2}), "M1.long c({s1, s2} - Average), Weight=Raw", 2},
        {score, "M1", Groups({3}, {1}), "M1.long c(Obs s1 - Obs s3), Weight=Raw"},
        {score, "M1", Groups({2, 3, 4}, {1}), "M1.long c(s1 - Obs {s2, s3, s4}), Weight=Raw", 2},
        {score, "M1", Groups(four, four), "M1.long c(Group 2 - Group 1), Weight=Raw"},
        {score, "M1", Groups({}, four), "M1.long c(Group - Average), Weight=Raw"},
        {score, "M1", Groups(four, {1}), "M1.long c(Obs s1 - Group), Weight=Raw"},
        {{.name = "c", .obsPred = V::Predicted, .contribution = 1},
         "M1",
         Groups({}, {2}),
         "M1.long c(Obs s6 - Average), Weight=Raw"},
        {distance, "M1", Groups({2}, {}), "M1.long c(Obs o2), Weight=Raw"},
        {distance, "M1", Groups({2, 3}, {}), "M1.long c({s2, s3}), Weight=Raw", 2},
        {{.name = "c", .contribution = 4}, "M1", Groups(four, {}), "M1.long c(Obs Group), Weight=Raw"},
        {{.name = "c", .contribution = 5},
         "M1",
         Points(true, true),
         "M1.long c Aligned({B b at 0.123457, Average at 2} - A at 1.5), Weight=Raw"},
        {{.name = "c", .contribution = 5},
         "M1",
         Points(true, false),
         "M1.long c({B b at 0.123457, Average at 2} - A at 1.5), Weight=Raw"},
        {{.name = "c", .contribution = 6},
         "M1",
         Points(true, false),
         "M1.long c Aligned({B b at 0.123457, Average at 2} - A at 1.5), Weight=Raw"},
        {{.name = "c", .contribution = 7},
         "M1",
         Points(false, true),
         "M1.long c({B b at 0.123457, Average at 2} - A at 1.5), Weight=Raw"},
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
        {{.name = "XObs", .type = Loadings, .number = ObsOrVar}, "M1", Number(3), "M1.long XObs(Obs o3)"},
        {{.name = "XObs", .type = Loadings, .number = ObsOrVar}, "M1", Number(open), "M1.long XObs(s1)", 2},
        {{.name = "v", .number = ObsOrVar}, "M1", Number(3), "M1.long v(Var w3)", 2},
        {{.name = "v", .number = ObsOrVar}, "M1", Number(open), "M1.long v(Var )"},
        {{.name = "YPred", .number = V::NumberYVariable}, "M1", Number(2), "M1.long YPred(v5)"},
        {{.name = "XVar", .number = V::NumberXVariable}, "M1", Number(open), "M1.long XVar(v1)"},
        {{.name = "pLag", .type = V::VectorTypeLag, .number = V::NumberXVariable}, "M2", Number(2), "M2.long pLag(v3)"},
        {{.name = "C", .number = V::NumberXAndYVariable}, "M1", Number(3, open), "M1.long C(XVar v3)(YVar v4)"},
        {{.name = "C", .type = V::VectorTypeLag, .number = V::NumberXAndYVariable},
         "M2",
         Number(2, 1),
         "M2.long C(XVar v3)(YVar v4)"},
        {{.name = "VIP", .number = V::NumberBatchVIPPhase}, "M4", Number(1, 2), "M4.long VIP(v4), Phase end"},
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
        {{.name = "YVar"}, "M4", {}, "M4.long YVar(Normalized)"},
        {{.name = "YVarPS"}, "M4", {}, "M4.long YVarPS(Normalized)"},
        {{.name = "YVar2"}, "M4", {}, "M4.long YVar2"},
        {{.name = "YVar"}, "M1", {}, "M1.long YVar"},
        {{.name = "IR", .hasLags = true},
         "M1",
         [](auto &data) { data.startLag = 2, data.endLag = 5; },
         "M1.long IR, Start Lag=2, End Lag=5"},
        // Tails.
        {batch, "M4", Number(1, 1, 0), "M4.long b, Batch: Std.Dev."},
        {batch, "M4", Number(1, 1, 2), "M4.long b, Batch: B"},
        {batch, "M4", Number(1, 1, -2), "M4.long b, Batch: Average"},
        {{.name = "b", .number = V::NumberBatch, .obsPred = V::Predicted},
         "M4",
         Number(1, 1, 2),
         "M4.long b, Batch: C"},
        {{.name = "b", .number = V::NumberBatch, .data = DataSet}, "DS1", Number(1, 1, 3), "DS1., Batch: C"},
        {{.name = "b", .number = V::NumberBatch, .data = DataSet}, "DS-1", Number(1, 1, 3), "DS-1., Batch: "},
        {{.name = "b", .number = V::NumberBatch, .data = V::DataTypePredictionSet, .obsPred = V::Predicted},
         "",
         Number(1, 1, 1),
         "PS., Batch: C"},
        {unscaled, "M1", {}, "M1.long u"},
        {unscaled, "M1", [](auto &data) { data.unscaled = false; }, "M1.long u"},
        {unscaled, "M1", [](auto &data) { data.backTransformed = false; }, "M1.long u(trans)"},
        {unscaled, "M1", [](auto &data) { data.unscaled = data.backTransformed = false; }, "M1.long u(as WS)"}};
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
    VectorProbe const lost({.name = "b", .number = V::NumberBatch, .data = DataSet});
    EXPECT_THROW(world.Data(lost, "DS9", Number(1, 1, 1)).GetFormattedName(&world.defaults, 1, false), NCError);
}

TEST(VectorText, NamesSeriesWithoutPrefixAndWithTheirScale) {
    World const world;
    VectorProbe const vector({.name = "t"});
    ProjectVector const &num = *ProjectVectorHandler::Instance()->GetNumVector(V::VectorTypeVariablesScores);
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
