#include "navigation/SelectedNumbers.h"
#include "catalogue/ProjectVectorHandler.h"
#include "navigation/DataSources.h"
#include "navigation/SelectionList.h"
#include "tests/engine/SmallProject.h"
#include "tests/specification/World.h"

#include <gmock/gmock.h>

namespace {

using namespace DataSeriesUtilities;
using Selection = SelectDataSeriesData;

// Specifications by a letter and their number, "-" where it is open; "_" is an axis that is not in use. Of model 1: x,
// y, X and Y together (z, the number is that of Y), t and q scores and predicted scores of a component, l over lags, o
// and p an observation and a predicted one, v a variable, r components up to the second one, c a contribution; k and g
// x and y of model 2. Of model 4: b a batch. d and h a variable and x of data set 1, e a variable of data set 2, s one
// of the prediction set, n the counting row, 0 nothing.
class Numbers : public testing::Test {
protected:
    Numbers() {
        world.SetDefaults();
        world.project->Model(1).x.AppendTerm(ColumnTerm(2, 1));
        world.project->Model(1).x.AppendTerm(ColumnTerm(1, 1));
        m_kinds = {{'x', {&Probe({.number = X}), "M1"}},
                   {'y', {&Probe({.number = Y}), "M1"}},
                   {'z', {&Probe({.number = XY}), "M1"}},
                   {'t', {&Probe({.components = 1}), "M1"}},
                   {'r', {&Probe({.number = Range, .contributionSource = 1}), "M1"}},
                   {'q', {&Probe({.components = 1, .obsPred = Predicted}), "M1"}},
                   {'l', {&Probe({.type = Lag, .number = X}), "M1"}},
                   {'o', {&Probe({.type = Loadings, .number = ObsOrVar}), "M1"}},
                   {'p', {&Probe({.type = Loadings, .number = ObsOrVar, .obsPred = Predicted}), "M1"}},
                   {'v', {&Probe({.number = ObsOrVar}), "M1"}},
                   {'c', {&Probe({.contribution = 1}), "M1"}},
                   {'k', {&Probe({.number = X}), "M2"}},
                   {'g', {&Probe({.number = Y}), "M2"}},
                   {'b', {&Probe({.type = Aligned, .number = Batch}), "M4"}},
                   {'d', {&Probe({.number = ObsOrVar, .data = OfSet}), "DS1"}},
                   {'h', {&Probe({.number = X, .data = OfSet}), "DS1"}},
                   {'e', {&Probe({.number = ObsOrVar, .data = OfSet}), "DS2"}},
                   {'s', {&Probe({.number = ObsOrVar, .data = OfPredSet, .obsPred = Predicted}), "PS"}},
                   {'n', {ProjectVectorHandler::Instance()->GetNumVector(Scores), ""}}};
    }

    ProjectVectorData Data(char letter, char number) const {
        if (letter == '0')
            return {};
        auto const &[vector, source] = m_kinds.at(letter);
        return world.Data(*vector, source, [&, letter = letter](ProjectVectorData &data) {
            int const value = number == '-' ? open : number - '0';
            data.SetComponent(value);
            Number(letter == 'z' || letter == 'b' ? 1 : value, letter == 'r' ? 2 : value, value)(data);
        });
    }

    // X and Y axis, then the series: "x1__y2y2".
    Selection Make(std::string const &text) const {
        int const mode = (text[0] != '_' ? 1 : 0) + (text[2] != '_' ? 2 : 0);
        Selection selection(world.project, static_cast<Selection::Mode>(mode), V::VectorTypeNone, -1, V::ObsAndPred);
        for (std::size_t at = 0; at < text.size(); at += 2) {
            ProjectVectorData const data = Data(text[at] == '_' ? 'x' : text[at], text[at + 1]);
            if (at == 0)
                selection.SetXAxis(data); // not in use, and of no effect, where it is "_"
            else if (at == 2)
                selection.SetYAxis(data);
            else
                selection.AddSeries(data, false);
        }
        return selection;
    }

    std::vector<ProjectVectorData> Several(std::string const &text) const {
        std::vector<ProjectVectorData> all;
        for (std::size_t at = 0; at < text.size(); at += 2)
            all.push_back(Data(text[at], text[at + 1]));
        return all;
    }

    VectorProbe const &Probe(VectorTraits const &traits) {
        m_probes.push_back(std::make_unique<VectorProbe>(traits));
        return *m_probes.back();
    }

    World world;
    std::vector<std::unique_ptr<VectorProbe>> m_probes;
    std::map<char, std::pair<ProjectVector const *, char const *>> m_kinds;
};

std::string Mother(ColumnTerm const &term) {
    return term.Size() == 0 ? "-" : std::to_string(term.GetMotherVariable(1));
}

std::string Shown(std::uint32_t number) {
    return number == ProjectVectorData::NotSet ? "-" : std::to_string(number);
}

// X and Y term, observation, variable, batch, numbers of data sources; l for a lagged X term, p for predicted.
std::string TextOf(SelectedNumbers const &numbers) {
    return Mother(numbers.GetSelectedXTerm()) + ' ' + Mother(numbers.GetSelectedYTerm()) + ' ' +
           Shown(numbers.GetSelectedObservation()) + ' ' + Shown(numbers.GetSelectedVariable()) + ' ' +
           std::to_string(numbers.GetSelectedBatch()) + ' ' + Shown(numbers.GetDataSourceXNumber()) + ' ' +
           Shown(numbers.GetDataSourceYNumber()) + (numbers.IsLaggedXTerm() ? " l" : "") +
           (numbers.IsPredicted() ? " p" : "") + (numbers.GetBatchName().empty() ? "" : " " + numbers.GetBatchName());
}

TEST_F(Numbers, AreSharedByAllSpecifications) {
    for (auto const &[text, expected] : std::initializer_list<std::pair<char const *, char const *>>{
             {"____", "- - - - -2 - -"},      {"____y2y2", "- 5 - - -2 - -"},     {"____y1y2y1", "- - - - -2 - -"},
             {"y1__y2y2", "- - - - -2 - -"},  {"x2__x2y-", "2 5 - - -2 - -"},     {"x2y1y1x3", "- 4 - - -2 - -"},
             {"x-__", "3 - - - -2 - -"},      {"____x2k2", "2 - - - -2 - -"}, // one term of two models
             {"____y1g1", "- 4 - - -2 - -"},  {"____y9y1", "- 4 - - -2 - -"},     {"____y1y9", "- - - - -2 - -"},
             {"____z2", "1 5 - - -2 - -"},    {"l1__", "2 - - - -2 - - l"}, // the first that is lagged
             {"l2__x1", "1 - - - -2 - - l"},  {"____o3o3", "- - 3 - -2 - -"},     {"____o3o4o3", "- - 0 - -2 - -"},
             {"____p5", "- - 5 - -2 - - p"},  {"____p5o5", "- - 5 - -2 - - p"},   {"____v2v2", "- - - 2 -2 - -"},
             {"s5__", "- - - 5 -2 - - p"},    {"____s5", "- - - 5 -2 - -"}, // of no model, and no X axis
             {"d2__v3", "- - - 0 -2 - -"},    {"____h2h2", "- - - - -2 2 -"},     {"____h2h3", "- - - - -2 0 -"},
             {"____b2b2", "- - - - 2 - - B"}, {"____b2b3b2", "- - - - -3 - - B"}, {"n1__0000", "- - - - -2 - -"}}) {
        Selection const selection = Make(text);
        EXPECT_EQ(TextOf(SelectedNumbers(&selection)), expected) << text;
    }
}

TEST_F(Numbers, BecomeDefaults) {
    struct {
        char const *text;
        int x, y, observation, predicted, variable; // of model 1
        char const *batch;
    } const cases[] = {
        {"x1y1", 1, 1, 1, 5, 1, "B"},         {"l1__", 3, 2, 1, 5, 1, "B"},
        {"____x1x2", 3, 2, 1, 5, 1, "B"},     {"____o3v4", 3, 2, 3, 5, 4, "B"},
        {"____p6", 3, 2, 1, 6, 1, "B"},       {"____p6v1", 3, 2, 6, 5, 1, "B"}, // the variable is not predicted
        {"____o3o4v4v1", 3, 2, 1, 5, 1, "B"}, {"____b3", 3, 2, 1, 5, 1, "C"},
        {"____b1b3", 3, 2, 1, 5, 1, "B"}};
    for (auto const &row : cases) {
        world.SetDefaults();
        world.defaults.SetDefaultSelectedObservation(1, false);
        world.defaults.SetDefaultSelectedObservation(5, true);
        world.defaults.SetDefaultSelectedVariable(1);
        Selection const selection = Make(row.text);
        SelectedNumbers(&selection).UpdateDefaultSelectedItems();
        ProjectUtilities::DefaultSelection const &defaults = *selection.GetDefaultSelection();
        // The project knows, and not only the selection.
        ProjectUtilities::DefaultSelection const anew(world.project);
        for (auto const *found : {&defaults, &anew}) {
            SCOPED_TRACE(row.text);
            EXPECT_EQ(found->GetDefaultXVarIndex(1), row.x);
            EXPECT_EQ(found->GetDefaultYVarIndex(1), row.y);
            EXPECT_EQ(found->GetDefaultSelectedObservation(1, 0, false), row.observation);
            EXPECT_EQ(found->GetDefaultSelectedObservation(1, 0, true), row.predicted);
            EXPECT_EQ(found->GetDefaultSelectedBatch(false), row.batch);
        }
        EXPECT_EQ(defaults.GetDefaultSelectedDatasetVariable(1, false), row.variable);
    }
}

TEST_F(Numbers, AreChosenOrOpen) {
    // X, Y, variable, predicted observation, observation, batch; and which of them are needed as defaults, in the order
    // of the questions: X, Y, variable, observation (of predicted ones), predicted observation (of others), batch.
    struct {
        char const *text, *numbers, *needed;
    } const cases[] = {
        {"", "0 0 0 0 0 0", "000000"},     {"x2x2", "2 0 0 0 0 0", "100000"},  {"x2x1x2", "- 0 0 0 0 0", "000000"},
        {"x3x-", "3 0 0 0 0 0", "000000"}, {"x-x3", "3 0 0 0 0 0", "000000"},  {"x1x-", "- 0 0 0 0 0", "000000"},
        {"y1v2", "0 1 2 0 0 0", "011000"}, {"z2", "1 2 0 0 0 0", "110000"},    {"z-", "1 2 0 0 0 0", "110000"},
        {"p5o3", "0 0 0 5 3 0", "000110"}, {"p-", "0 0 0 5 0 0", "000000"},    {"o3o4", "0 0 0 0 - 0", "000000"},
        {"b2b2", "0 0 0 0 0 2", "000001"}, {"b2b3", "0 0 0 0 0 -1", "000000"}, {"b2b0", "0 0 0 0 0 2", "000001"},
        {"l2", "2 0 0 0 0 0", "100000"}};
    for (auto const &row : cases) {
        CurrentSelectedNumbers numbers(&world.defaults);
        for (ProjectVectorData const &data : Several(row.text))
            numbers(data);
        EXPECT_EQ(Shown(numbers.xNumber) + ' ' + Shown(numbers.yNumber) + ' ' + Shown(numbers.variable) + ' ' +
                      Shown(numbers.predictedObservation) + ' ' + Shown(numbers.observation) + ' ' +
                      std::to_string(numbers.batch),
                  row.numbers)
            << row.text;
        std::string needed;
        for (bool const need : {numbers.NeedDefaultXVar(), numbers.NeedDefaultYVar(), numbers.NeedDefaultVar(),
                                numbers.NeedDefaultObs(), numbers.NeedDefaultPredObs(), numbers.NeedBatchIx()})
            needed += need ? '1' : '0';
        EXPECT_EQ(needed, row.needed) << row.text;
        EXPECT_EQ(numbers.started, *row.text ? 1 : 0);
    }
}

TEST_F(Numbers, TellSources) {
    // Model and data set, m where a model was seen, s a prediction set, p where all models are predicted; and whether
    // the last one shares the source of those before.
    struct {
        char const *text, *sources;
        bool shares;
    } const cases[] = {
        {"", "0 0 p", true},        {"n1", "0 0 p", true},      {"x1", "1 0 m", true},      {"x1y1", "1 0 m", true},
        {"x1k1", "-1 0 m", true},   {"x1k1x1", "-1 0 m", true}, {"q1", "1 0 mp", true},     {"q1x1", "1 0 m", false},
        {"x1q1", "1 0 m", false},   {"q1k1", "-1 0 m", false},  {"k1q1", "-1 0 m", true},   {"d1", "0 1 p", true},
        {"d1d2", "0 1 p", true},    {"d1e1", "0 -1 p", false},  {"d1x1", "-1 1 m", false},  {"x1d1", "1 -1 m", false},
        {"s5", "0 0 sp", true},     {"s5s5", "0 0 sp", true},   {"s5d1", "0 -1 sp", false}, {"d1s5", "0 1 sp", false},
        {"s5x1", "-1 0 ms", false}, {"x1s5", "1 0 ms", false}};
    for (auto const &row : cases) {
        CountCurrentDataSources sources;
        DataSourceType type;
        bool shares = true;
        for (ProjectVectorData const &data : Several(row.text)) {
            sources(data);
            shares = type(data);
        }
        std::string const flags = std::string(sources.hasModel ? "m" : "") + (sources.hasPredictionSet ? "s" : "") +
                                  (sources.areModelsPredicted ? "p" : "");
        EXPECT_EQ(std::to_string(sources.modelNumber) + ' ' + std::to_string(sources.dataSetNumber) + ' ' + flags,
                  row.sources)
            << row.text;
        EXPECT_EQ(shares, row.shares) << row.text;
        Selection const selection = Make("n1__" + std::string(row.text));
        DataSourceType whole;
        EXPECT_EQ(DataSourceType::IterateDataSeries(&selection, whole), row.shares) << row.text;
    }
}

TEST_F(Numbers, AreListed) {
    using Ints = std::vector<int>;
    Ints numbers{7};
    std::vector<std::uint32_t> terms{7};
    auto const listed = [&](char const *text, auto function) {
        Selection const selection = Make(text);
        numbers = {7};
        terms = {7};
        return function(selection);
    };
    for (auto const &[text, expected] :
         std::initializer_list<std::pair<char const *, std::vector<std::uint32_t>>>{{"____x3x1x3", {1, 3}},
                                                                                    {"x2x1", {1, 2}},
                                                                                    {"n1__x2y1", {2}},
                                                                                    {"____x-", {~0u}},
                                                                                    {"____y1", {}},
                                                                                    {"____x1k1", {7}}}) {
        listed(text, [&](Selection const &selection) { CountDifferentXVars(&selection, terms); });
        EXPECT_EQ(terms, expected) << text;
    }
    for (auto const &[text, expected] : std::initializer_list<std::pair<char const *, Ints>>{
             {"____k1x1k2", {1, 2, 7}}, {"d1__b1", {4, 7}}, {"d1__", {7}}}) {
        listed(text, [&](Selection const &selection) { CountDifferentModels(&selection, numbers); });
        EXPECT_EQ(numbers, expected) << text;
    }
    for (auto const &[text, expected] : std::initializer_list<std::pair<char const *, Ints>>{
             {"____t3t1t3", {1, 3, 7}}, {"t2__t2t-", {7, 2, 2, 3}}, {"____x1", {7}}})
        EXPECT_EQ(listed(text,
                         [&](Selection const &selection) {
                             return CountScoreLoadingComponents(&selection, V::ComponentPredictive, numbers);
                         }),
                  static_cast<int>(expected.size()))
            << text;
    for (auto const &[text, expected] :
         std::initializer_list<std::pair<char const *, Ints>>{{"____r2r1", {7, 2, 1}}, {"r1__", {7, 1, 2}}}) {
        listed(text, [&](Selection const &selection) { CountDifferentComponents(&selection, numbers); });
        EXPECT_EQ(numbers, expected) << text;
    }
}

TEST_F(Numbers, AreFound) {
    // Any component and any Y variable of model 1, and the largest component.
    struct {
        char const *text;
        int component, y, largest;
    } const cases[] = {{"____", -1, 2, 0},     {"t2__t3", 2, 2, 3},  {"____t-", 3, 2, 3},
                       {"____y-y1", -1, 1, 0}, {"y2__y1", -1, 2, 0}, {"____z1", -1, 2, 0},
                       {"____g1", -1, 2, 0},   {"____f1", -1, 2, 3}, {"____x1t1", 1, 2, 1}};
    // It sums up the components, and has none of its own.
    m_kinds['f'] = {
        ProjectVectorHandler::Instance()->FindVector("DModX", Scores, OfModel, world.project->GetModelInfo(2).get()),
        "M1"};
    for (auto const &row : cases) {
        Selection const selection = Make(row.text);
        EXPECT_EQ(GetAnyComponent(&selection, 1, V::ComponentPredictive), row.component) << row.text;
        EXPECT_EQ(GetAnyYVar(&selection, 1), row.y) << row.text;
        EXPECT_EQ(GetMaxComponent(&selection, V::ComponentPredictive), row.largest) << row.text;
        EXPECT_EQ(GetMaxComponent(&selection, V::ComponentXSideOrthogonal), 0) << row.text;
    }

    struct {
        char const *data, *text;
        Selection::Mode mode;
        int expected;
    } const equal[] = {{"x-", "x-__x-x1", Selection::Normal, 1},  {"x-", "x-__x-x1", Selection::AxisX, 1},
                       {"x-", "x-y-x-x-", Selection::AxisY, 3},   {"y-", "x-y-x-x-", Selection::Normal, 1},
                       {"x1", "x1__x1x1", Selection::AxisY, 0},   {"v1", "v2__v-d1", Selection::AxisY, 3},
                       {"o1", "____o2p2o-", Selection::AxisX, 2}, {"p1", "____o2p2o-", Selection::AxisX, 1},
                       {"x-", "__x-", Selection::AxisX, 0}};
    for (auto const &row : equal) {
        Selection const selection = Make(row.text);
        EXPECT_EQ(NumberOfEqualDefaultArguments(Data(row.data[0], row.data[1]), &selection, row.mode), row.expected)
            << row.data << ' ' << row.text << ' ' << row.mode;
    }
}

TEST_F(Numbers, AreLeftToTheDefaults) {
    // What the selection is, and the numbers that it keeps when it is made independent ("" when it is not).
    struct {
        char const *text;
        Selection::DataSeriesGlobalType type;
        char const *kept;
    } const cases[] = {{"____t1", Selection::GlobalTypeIndependent, "1"},
                       {"____x-y-", Selection::GlobalTypeIndependent, "--"},
                       {"____x2y-", Selection::GlobalTypeIndependentAfterDefaults, "--"},
                       {"x1y1z1", Selection::GlobalTypeIndependentAfterDefaults, "-"},
                       {"____o3v1", Selection::GlobalTypeIndependentAfterDefaults, "--"},
                       {"____x1x2", Selection::GlobalTypeProject, ""},
                       {"____p5p6", Selection::GlobalTypeProject, ""},
                       {"____x1k1", Selection::GlobalTypeProject, ""},
                       {"____d1e1", Selection::GlobalTypeProject, ""},
                       {"____c1x1", Selection::GlobalTypeProject, "1-"},
                       {"____b1b2", Selection::GlobalTypeIndependent, "11"},
                       {"0000", Selection::GlobalTypeIndependent, ""}};
    for (auto const &row : cases) {
        SCOPED_TRACE(row.text);
        Selection selection = Make(row.text);
        EXPECT_EQ(selection.IsProjectIndependent(), row.type);
        std::string kept;
        if (selection.MakeProjectIndependent())
            for (int position = 1; position <= selection.NumberOfSeries(); ++position)
                kept += Shown(selection.GetSeries(position).GetNumberID());
        EXPECT_EQ(kept, row.kept);
        selection.SetGlobalType(Selection::GlobalTypeIndependent);
        EXPECT_EQ(selection.IsProjectIndependent(), Selection::GlobalTypeIndependent);
    }
    Selection selection = Make("x2__y1");
    selection.MakeProjectIndependent();
    EXPECT_EQ(world.defaults.GetProject(), selection.GetProject());
    EXPECT_EQ(selection.GetXAxis().GetNumber(selection.GetDefaultSelection().get()), 2u);
    EXPECT_EQ(ProjectUtilities::DefaultSelection(world.project).GetDefaultYVarIndex(1), 1);
}

TEST_F(Numbers, AreSharedByAllSelections) {
    // Model, variable, component of all; whether all X numbers are open; X and Y terms of all models of the last one.
    struct {
        std::vector<char const *> texts;
        int model;
        std::uint32_t variable;
        int component;
        bool isDefault;
        int xTerms, yTerms;
    } const cases[] = {{{}, -1, ~0u, -1, false, 0, 0},
                       {{"____x-t2", "____x-t2"}, 1, ~0u, 2, true, 5, 2},
                       {{"____x-t2", "____x1t1"}, 1, ~0u, -1, false, 5, 2},
                       {{"____v2", "____v2", "____x-k-"}, -1, 2, -1, true, 3, 1},
                       {{"____v2", "____v3"}, 1, 0, -1, false, 5, 2}};
    world.project->Model(2).y = ColumnTerms({ColumnTerm(9), ColumnTerm(4)});
    for (auto const &row : cases) {
        SCOPED_TRACE(&row - cases);
        std::vector<Selection> selections;
        for (char const *const text : row.texts)
            selections.push_back(Make(text));
        SelectionList list;
        for (Selection &selection : selections)
            list.push_back(&selection);
        EXPECT_EQ(GetProject(list), list.empty() ? nullptr : world.project);
        EXPECT_EQ(GetSeriesModel(list), row.model);
        EXPECT_EQ(GetSelectedVariable(list), row.variable);
        EXPECT_EQ(GetSelectedComponent(list, V::ComponentPredictive), row.component);
        EXPECT_EQ(IsDefaultSelectedXVar(list), row.isDefault);
        EXPECT_EQ(GetTransformationData(list) != nullptr, !list.empty());
        if (list.empty())
            continue;
        EXPECT_EQ(GetCommonXTerms(list.back()).Size(), row.xTerms);
        EXPECT_EQ(GetCommonYTerms(list.back()).Size(), row.yTerms);
        EXPECT_EQ(IsMultipleModels(list.back()), row.yTerms == 1);
        TransformationData transformation;
        transformation.SetTransformationType(TransformationData::R2X);
        list.front()->SetTransformationData(transformation);
        EXPECT_EQ(GetTransformationData(list) != nullptr, list.size() == 1);
    }
}

} // namespace
