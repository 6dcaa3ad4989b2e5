#include "navigation/Selectors.h"
#include "catalogue/ProjectVectorHandler.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using namespace DataSeriesUtilities;
using Selection = SelectDataSeriesData;
using Part = DataSeriesChecker::CheckType;

constexpr auto onX = DataSeriesChecker::CheckXAxis;
constexpr auto onY = DataSeriesChecker::CheckYAxis;
constexpr auto onSeries = DataSeriesChecker::CheckSeries;

// Specifications by a letter and what they stand at, "-" where it is open. Of model 1, which has three components, X
// terms 1 2 3, lagged 2 and 1, and Y terms 4 5: t a component, x, y, l over lags, o and p an
// observation and a predicted one, w a contribution weighted by the coefficients of a response. i a component on the X
// side of model 2, which has two. d and s a variable of data set 1 and of the prediction set, a an observation of data
// set 2, k the component of a correction, b a batch of model 4, n the counting row. "_" is an axis that is not in use.
class Steps : public testing::Test {
protected:
    Steps() {
        world.SetDefaults();
        world.project->Model(1).x.AppendTerm(ColumnTerm(2, 1));
        world.project->Model(1).x.AppendTerm(ColumnTerm(1, 1));
        m_kinds = {{'t', {&Probe({.name = "step", .components = 1, .flags = "R"}), "M1"}},
                   {'x', {&Probe({.number = X}), "M1"}},
                   {'y', {&Probe({.number = Y}), "M1"}},
                   {'l', {&Probe({.type = Lag, .number = X}), "M1"}},
                   {'o', {&Probe({.type = Loadings, .number = ObsOrVar}), "M1"}},
                   {'p', {&Probe({.type = Loadings, .number = ObsOrVar, .obsPred = Predicted}), "M1"}},
                   {'w', {&Probe({.contribution = 1}), "M1"}},
                   {'i', {&Probe({.components = 2}), "M2"}},
                   {'d', {&Probe({.number = ObsOrVar, .data = OfSet}), "DS1"}},
                   {'s', {&Probe({.number = ObsOrVar, .data = OfPredSet, .obsPred = Predicted}), "PS"}},
                   {'a', {&Probe({.type = Loadings, .number = ObsOrVar, .data = OfSet}), "DS2"}},
                   {'k', {&Probe({.components = 8, .data = OfSet}), "DS1"}},
                   {'b', {&Probe({.type = Aligned, .number = Batch}), "M4"}},
                   {'n', {ProjectVectorHandler::Instance()->GetNumVector(Scores), ""}}};
    }

    ProjectVectorData Data(std::string const &text) const {
        auto const &[vector, source] = m_kinds.at(text[0]);
        int const value = text[1] == '-' ? open : text[1] - '0';
        return world.Data(*vector, source, [&, value, kind = text[0]](ProjectVectorData &data) {
            data.SetComponent(value);
            Number(value, open, value)(data);
            if (kind == 'w')
                data.SetWeightType(ContributionWeightEnum::CoeffCS);
            data.SetYVar(value);
        });
    }

    static int ValueOf(char kind, ProjectVectorData const &data) {
        if (std::string("tik").find(kind) != std::string::npos)
            return data.GetComponent(static_cast<V::ComponentType>(data.GetProjectVector()->GetComponentType()), false);
        if (kind == 'w') {
            ProjectVectorData copy = data;
            XercesXMLSection section;
            copy.WriteSection(&section);
            int response = 0;
            section.ReadKey("YVar", response);
            return response;
        }
        return kind == 'b' ? data.batchIx : static_cast<int>(data.GetNumberID());
    }

    // X and Y axis, then the series: "x1__y2y2".
    Selection Make(std::string const &text, V::VectorTypeEnum axis = V::VectorTypeNone) const {
        int const mode = (text[0] != '_' ? 1 : 0) + (text[2] != '_' ? 2 : 0);
        Selection selection(world.project, static_cast<Selection::Mode>(mode), V::VectorTypeNone, -1, V::ObsAndPred);
        for (std::size_t at = 0; at < text.size(); at += 2) {
            if (text[at] == '_')
                continue;
            ProjectVectorData const data = Data(text.substr(at, 2));
            if (at == 0)
                selection.SetXAxis(data);
            else if (at == 2)
                selection.SetYAxis(data);
            else
                selection.AddSeries(data, false);
        }
        selection.SetVectorType(axis);
        return selection;
    }

    std::string Text(Selection const &selection) const {
        std::string text;
        int const mode = selection.GetMode();
        auto const add = [&](bool isUsed, ProjectVectorData const &data) {
            auto const kind = std::ranges::find_if(
                m_kinds, [&data](auto const &one) { return one.second.first == data.GetProjectVector(); });
            int const value = isUsed ? ValueOf(kind->first, data) : 0;
            text += !isUsed ? "__" : kind->first + (value == open ? "-" : std::to_string(value));
        };
        add((mode & 1) != 0, selection.GetXAxis());
        add((mode & 2) != 0, selection.GetYAxis());
        for (int position = 1; position <= selection.NumberOfSeries(); ++position)
            add(true, selection.GetSeries(position));
        return text;
    }

    VectorProbe const &Probe(VectorTraits const &traits) {
        m_probes.push_back(std::make_unique<VectorProbe>(traits));
        return *m_probes.back();
    }

    World world;
    std::vector<std::unique_ptr<VectorProbe>> m_probes;
    std::map<char, std::pair<ProjectVector const *, char const *>> m_kinds;
};

using Step = std::function<void(Selection &)>;

struct Case {
    Step step;
    std::string before, after;
};

} // namespace

TEST_F(Steps, GoFromItemToItem) {
    constexpr auto predictive = V::ComponentPredictive, xSide = V::ComponentXSideOrthogonal, osc = V::ComponentOSC;
    Case const cases[] = {
        // Components: behind the last one the last state, which stays; each series by itself; the axis alone.
        {SelectNextComponent(predictive, false), "____t1t2t3", "____t2t3t-"},
        {SelectNextComponent(predictive, false), "____t-", "____t-"},
        {SelectNextComponent(predictive, false), "t1__t1i1", "t1__t2i1"},
        {SelectNextComponent(predictive, true), "t1__t1", "t2__t1"},
        {SelectNextComponent(predictive, false, 2), "____t1t2t3", "____t2t-t3"},
        {SelectNextComponent(xSide, false), "____i1i2t1", "____i2i-t1"},
        {SelectNextComponent(osc, false), "____k0k-", "____k0k0"},
        {SelectPrevComponent(predictive, false), "____t3t1t-", "____t2t1t2"},
        {SelectPrevComponent(predictive, false, 2), "____t3t2t-", "____t2t2t2"},
        {SelectPrevComponent(predictive, false, -1, 3), "____t-", "____t3"},
        {SelectPrevComponent(predictive, true), "t2__t2", "t1__t2"},
        {SelectPrevComponent(xSide, false), "____i-", "____i1"},
        // Variables and observations, in the order of their list; open numbers of variables are the default one.
        {SelectNextVariable(false), "____d1d5d-x1", "____d2d5d2x1"},
        {SelectNextVariable(true), "d1__d1", "d2__d1"},
        {SelectPrevVariable(false), "____d3d1s5", "____d2d1s5"},
        {SelectNextObservation(false), "____o1o6o-p5p6a2d1", "____o2o6o-p6p6a2d2"},
        {SelectPrevObservation(false), "____o3o1p6p5a2", "____o2o1p5p5a2"},
        {SelectPrevObservation(true), "o3__o3", "o2__o3"},
        // X terms; the default is the third one. Forth, a vector over lags has two of them, and back five.
        {SelectNextXVar(onSeries, nullptr, -1), "____x1x5x-y1", "____x2x5x4y1"},
        {SelectNextXVar(onX, nullptr, -1), "x1__x1", "x2__x1"},
        {SelectNextXVar(onY, nullptr, -1), "x1x4x1", "x5x4x1"},
        {SelectNextXVar(static_cast<Part>(5), nullptr, -1), "x1x1x1", "x2x1x2"},
        {SelectNextXVar(onSeries, nullptr, -1), "____l1l2", "____l2l2"},
        {SelectPrevXVar(onSeries, nullptr, -1), "____x2x1l3l2", "____x1x1l2l1"},
        {SelectPrevXVar(onY, nullptr, -1), "x2x2x2", "x2x2x2"},
        {SelectPrevXVar(onX, nullptr, -1), "x2x2x2", "x1x2x2"},
        // Y terms, and responses that weigh a contribution; the default is the second one.
        {SelectNextYVar(onSeries, nullptr), "____y1y2y-w1w2", "____y2y2y-w2w2"},
        {SelectNextYVar(onY, nullptr), "y1y1y1", "y1y2y1"},
        {SelectPrevYVar(onSeries, nullptr), "____y2y1y-w2w1w-", "____y1y1y-w1w1w1"},
        {SelectPrevYVar(onY, nullptr), "y2y2y2", "y2y2y2"},
        {SelectNextYVar(onSeries, nullptr), "____x1t1n1", "____x1t1n1"},
    };
    for (Case const &test : cases) {
        Selection selection = Make(test.before);
        selection.ClearDirty();
        test.step(selection);
        EXPECT_EQ(Text(selection), test.after) << test.before;
    }
}

// Of terms 1 to 5 the list has the third, the first and the fourth.
TEST_F(Steps, GoAlongTheColumnsOfAList) {
    ColumnIDs const list(ColumnTerms({ColumnTerm(3), ColumnTerm(1), ColumnTerm(2, 1)}), world.project, 1);
    ColumnIDs const responses(ColumnTerms({ColumnTerm(5), ColumnTerm(4)}), world.project, 1);
    ColumnIDs const none{ColumnTerms(), world.project, 1};
    Case const cases[] = {
        // Forth the search for the next one goes up from the present term, back it goes down.
        {SelectNextXVar(onSeries, &list, -1), "____x3x1x4x2", "____x3x4x4x2"},
        {SelectPrevXVar(onSeries, &list, -1), "____x3x1x4x5", "____x3x1x1x4"},
        {SelectNextXVar(onSeries, &none, -1), "____x1", "____x1"},
        {SelectPrevXVar(onSeries, &none, -1), "____x1", "____x1"},
        // By the position in the list.
        {SelectNextXVar(onSeries, &list, 1), "____x5", "____x1"},
        {SelectNextXVar(onSeries, &list, 3), "____x5", "____x5"},
        {SelectPrevXVar(onSeries, &list, 2), "____x5", "____x3"},
        {SelectPrevXVar(onSeries, &list, 1), "____x5", "____x5"},
        {SelectPrevYVar(onSeries, &responses), "____y1w1y2w2", "____y1w1y2w2"},
        {SelectNextYVar(onSeries, &responses), "____y1w1y2", "____y1w1y2"},
    };
    for (Case const &test : cases) {
        Selection selection = Make(test.before);
        test.step(selection);
        EXPECT_EQ(Text(selection), test.after) << test.before;
    }
}

TEST_F(Steps, GoFromBatchToBatch) {
    struct {
        Step step;
        V::VectorTypeEnum axis;
        TransformationData::TransformationType transformation;
        std::string before, after;
    } const cases[] = {
        {SelectNextBatch(), Aligned, TransformationData::NoTransformation, "____b1b3b5b0", "____b2b3b6b0"},
        {SelectNextBatch(), Aligned, TransformationData::Normalize, "____b1", "____b2"},
        {SelectNextBatch(), Aligned, TransformationData::Histogram, "____b1", "____b1"},
        {SelectNextBatch(), PerBatch, TransformationData::NoTransformation, "____b1", "____b1"},
        {SelectPrevBatch(), Aligned, TransformationData::NoTransformation, "____b3b1b0", "____b2b1b0"},
        {SelectPrevBatch(), Aligned, TransformationData::PowerSpectrum, "____b3", "____b3"},
    };
    for (auto const &test : cases) {
        Selection selection = Make(test.before, test.axis);
        TransformationData transformation;
        transformation.SetTransformationType(test.transformation);
        selection.SetTransformationData(transformation);
        test.step(selection);
        EXPECT_EQ(Text(selection), test.after) << test.before;
    }
}

// Batches A A B B C C of the observations of model 1.
TEST_F(Steps, MoveTheBatchesThatAreSelected) {
    VectorProbe &scores = const_cast<VectorProbe &>(static_cast<VectorProbe const &>(*m_kinds.at('t').first));
    scores.columns = [](ProjectPtr const &project, std::string const &) {
        return ColumnIDs(ColumnIDs::Observations, {1, 2, 3, 4, 5, 6}, project, 1);
    };
    Selection selection = Make("____t1", Scores);
    auto const selected = [&selection] {
        std::string text;
        for (bool const flag : selection.GetSelectObjects().Values())
            text += flag ? '1' : '0';
        return text;
    };
    for (auto const &[step, from, to] : std::initializer_list<std::tuple<Step, std::vector<int>, std::string>>{
             {SelectNextBatch(), {1}, "001100"},
             {SelectNextBatch(), {2, 3}, "000011"},
             {SelectNextBatch(), {1, 2}, "001111"},
             {SelectPrevBatch(), {1, 2}, "110000"},
             {SelectPrevBatch(), {2, 3}, "111100"}}) {
        selection.SelectBatches(from, false);
        step(selection);
        EXPECT_EQ(selected(), to);
    }
    BoolVector const some(6, false);
    selection.SetSelectObjects(some);
    SelectNextBatch()(selection);
    EXPECT_EQ(selected(), "000000");
}

// What is subtracted and divided by moves along, both or none.
TEST_F(Steps, TakeTheOperandsOfTransformationsAlong) {
    struct {
        TransformationData::TransformationType type;
        char const *subtracted, *divisor, *after;
    } const cases[] = {{TransformationData::SubtractVector, "t1", "t1", "t2t1"},
                       {TransformationData::SubtractAndDivideVector, "t1", "t3", "t2t-"},
                       {TransformationData::SubtractAndDivideVector, "t1", "x1", "t1x1"},
                       {TransformationData::CrossCorrelation, "t1", "t1", "t1t1"}};
    for (auto const &test : cases) {
        Selection selection = Make("____t1");
        TransformationData transformation;
        transformation.SetTransformationType(test.type);
        transformation.SetCrossVector(Data(test.subtracted));
        transformation.GetDivideVector() = Data(test.divisor);
        selection.SetTransformationData(transformation);
        SelectNextComponent(V::ComponentPredictive, false)(selection);
        TransformationData const &moved = selection.GetTransformationData();
        Selection both = Make("____");
        both.AddSeries(moved.GetSubtractVector(), false);
        both.AddSeries(moved.GetDivideVector(), false);
        EXPECT_EQ(Text(both).substr(4), test.after) << test.type;
    }
}
