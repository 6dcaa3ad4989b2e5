#include "catalogue/ProjectVectorHandler.h"
#include "platform/text/Exception.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

using Selection = SelectDataSeriesData;

// Scores of these models have the columns: 1: 1 2 3 4; 2: 3 4 5; 3: 9; 4: 1 2 3 4 with a batch; 5: 200 of them.
ColumnIDs ColumnsOf(int model) {
    static ColumnIDs::Numbers const numbers[] = {
        {1, 2, 3, 4}, {3, 4, 5}, {9}, {1, 2, 3, 4}, ColumnIDs::Numbers(200, 1)};
    ColumnIDs columns(ColumnIDs::Observations, numbers[model - 1], {}, 0);
    if (model == 4)
        columns.SetBatches(BatchInfoVector({{"b", 1}}));
    return columns;
}

class SelectionTest : public testing::Test {
protected:
    SelectionTest() {
        for (int model = 1; model <= 5; ++model)
            m_project->AddModel(ModelTypeE::PCA, 2);
        m_project->AddData(1, {1}, {1});
        m_project->source.columnsOf["GetTColumnIDs"] = [](Call const &call) {
            return ColumnsOf(std::get<int>(call.arguments[0]));
        };
    }

    Selection New(Selection::Mode mode = Selection::Normal, int maxSeries = -1) const {
        return {m_project, mode, Scores, maxSeries, ProjectVector::ObsAndPred};
    }

    ProjectVectorData T(int model) const {
        ProjectVectorData data;
        data.SetProjectVector(ProjectVectorHandler::Instance()->FindVector("t", Scores, ProjectVector::DataTypeModel,
                                                                           m_project->GetModelInfo(model).get()));
        data.SetModelInfoPtr(m_project->GetModelInfo(model));
        data.SetComponent(1);
        return data;
    }

    boost::shared_ptr<RecordingProject> m_project = MakeRecordingProject();
};

// "1 2 3|101": columns and selected items.
std::string Text(Selection const &selection) {
    std::string text;
    ColumnIDs const *const columns = selection.GetColumnIDs();
    for (int column = 1; columns && column <= columns->Size(); ++column)
        text += (column > 1 ? " " : "") + columns->GetName(column);
    text += '|';
    for (bool const flag : selection.GetSelectObjects().Values())
        text += flag ? '1' : '0';
    return columns ? text : "null" + text;
}

// Models of the series.
std::string Series(Selection const &selection) {
    std::string text;
    for (int position = 1; position <= selection.NumberOfSeries(); ++position)
        text += selection.GetSeries(position).GetDataSourceName().substr(1);
    return text;
}

// What listeners are told, and the signals, a letter each.
class Reporter final : public SelectDataSeriesListener {
public:
    explicit Reporter(Selection &selection) {
        selection.AddListener(this);
        m_projectData = selection.ConnectProjectData([this] { m_text += 'P'; });
        m_options = selection.ConnectOptions([this] { m_text += 'O'; });
    }
    std::string Take() { return std::exchange(m_text, std::string()); }

    void OnChangedVectorType(ProjectVector::VectorTypeEnum type) override { Add('v', type); }
    void OnChangedProjectData() override { m_text += 'p'; }
    void OnAddSeries(ProjectVectorData const &data) override { Add('a', data.GetModelInfo()->number); }
    void OnTransformationTypeChanged(TransformationData::TransformationType type) override { Add('t', type); }
    void OnWaveletOptionsChanged(WaveletOptions const &options) override { Add('w', options.GetWaveletOrder()); }
    void OnControlChartTypeChanged(ControlChartData::ControlChartType chart,
                                   ControlChart::ControlType control) override {
        Add('c', chart);
        Add('/', control);
    }

private:
    void Add(char event, int value) { m_text += event + std::to_string(value); }

    std::string m_text;
    boost::signals2::scoped_connection m_projectData, m_options;
};

TransformationData Transformation(int type, int sampleSize = 1, int order = 4) {
    TransformationData data;
    data.SetTransformationType(static_cast<TransformationData::TransformationType>(type));
    data.SetSampleSize(sampleSize);
    WaveletOptions options;
    options.SetWaveletOrder(order);
    data.SetWaveletOptions(options);
    return data;
}

ControlChartData Chart(int type, int control = 0, int subgroup = 1) {
    ControlChartData data;
    data.SetControlChartType(static_cast<ControlChartData::ControlChartType>(type));
    data.SetControlType(static_cast<ControlChart::ControlType>(control));
    data.SetSubgroupSize(subgroup);
    return data;
}

} // namespace

TEST_F(SelectionTest, ColumnsAreWhatAllSeriesHave) {
    // Models of the series, * before one that is not joined at once; columns; columns once they are out of date
    struct {
        char const *series, *columns, *rebuilt;
    } const cases[] = {{"", "null|", "null|"},
                       {"1", "1 2 3 4|0110", "1 2 3 4|0110"},
                       {"12", "3 4|10", "3 4|10"},
                       {"1*2", "1 2 3 4|0110", "3 4|11"},
                       {"14", "1 2 3 4|0110", "1 2 3 4|0110"},
                       {"13", "|", "null|"},
                       {"1*3", "1 2 3 4|0110", "null|0110"},
                       {"1312", "|", "null|"}};
    for (auto const &[series, columns, rebuilt] : cases) {
        Selection selection = New();
        selection.ClearDirty();
        bool intersect = true;
        for (char const *model = series; *model; ++model) {
            EXPECT_TRUE(*model == '*' || selection.AddSeries(T(*model - '0'), intersect));
            if (model == series)
                selection.SetSelectObjects({false, true, true, false});
            intersect = *model != '*';
        }
        EXPECT_EQ(Text(selection), columns) << series;
        selection.SetIsDirty();
        EXPECT_EQ(Text(selection), rebuilt) << series;
    }
    Selection selection = New();
    selection.AddSeries(T(1), true);
    selection.AddSeries(T(4), true);
    EXPECT_FALSE(selection.GetColumnIDs()->GetBatches().Empty());
    EXPECT_EQ(selection.NumSelectObjects(), 4);
    selection.ClearColumnIDs();
    EXPECT_EQ(Text(selection), "1 2 3 4|1111");
    try {
        selection.AddSeries(ProjectVectorData(), true);
        FAIL();
    } catch (NCError const &error) {
        EXPECT_STREQ(error.what(), "Unknown vector type in project data.");
        EXPECT_EQ(error.GetLevel(), NCError::Error);
        EXPECT_EQ(Series(selection), "14");
    }
    Selection none(m_project, Selection::Normal, ProjectVector::VectorTypeNone, -1, ProjectVector::ObsAndPred);
    EXPECT_TRUE(none.AddSeries(ProjectVectorData(), true)); // without an axis there are no items to keep
    EXPECT_EQ(none.GetSeriesModel() + none.GetCurrentModel(), -2);
}

TEST_F(SelectionTest, LagsFollowTheNumberOfItems) {
    for (auto const &[model, maximum, number] : {std::tuple(1, 4, 1), {3, 1, 0}, {5, 200, 30}}) {
        Selection selection = New();
        selection.AddSeries(T(model), true);
        selection.SetIsDirty();
        selection.GetColumnIDs();
        EXPECT_EQ(selection.GetTransformationData().GetMaxLags(), maximum);
        EXPECT_EQ(selection.GetTransformationData().GetNumLags(), number);
        selection.SetTransformationData(Transformation(1));
        EXPECT_EQ(selection.GetTransformationData().GetNumLags(), number);
        selection.SetColumnIDs(nullptr);
        EXPECT_EQ(selection.GetTransformationData().GetMaxLags(), 0);
        EXPECT_FALSE(selection.GetTransformationData().IsNumLagsInitialised());
        ColumnIDs const two(ColumnIDs::Observations, {1, 2}, {}, 0);
        selection.SetColumnIDs(&two);
        EXPECT_EQ(selection.GetTransformationData().GetMaxLags(), 2);
        EXPECT_EQ(Text(selection), "1 2|11");
    }
}

TEST_F(SelectionTest, ChangesAreToldAndMakeColumnsOutOfDate) {
    using Operation = std::function<void(Selection &)>;
    auto const type = ProjectVector::VectorTypeObservationsLoadings;
    ColumnIDs const known(ColumnIDs::Observations, {2, 3, 77}, {}, 0);
    auto const transform = [](std::vector<TransformationData> const &all) -> Operation {
        return
            [=](Selection &s) { std::ranges::for_each(all, [&](auto const &data) { s.SetTransformationData(data); }); };
    };
    auto const chart = [](std::vector<ControlChartData> const &all) -> Operation {
        return
            [=](Selection &s) { std::ranges::for_each(all, [&](auto const &data) { s.SetControlChartData(data); }); };
    };
    // Events when changes are to be told at once, and else; whether the columns are found anew
    struct {
        Operation operation;
        char const *told, *quiet;
        bool dirty;
    } const cases[] = {
        {[&](auto &s) { s.SetSeries(1, T(2)); }, "pP", "", true},
        {[&](auto &s) { s.SetXAxis(T(2)); }, "pP", "", true},
        {[&](auto &s) { s.SetYAxis(T(2)); }, "pP", "", true},
        {[&](auto &s) { EXPECT_TRUE(s.RemoveSeries(2)); }, "pP", "", true},
        {[&](auto &s) { EXPECT_FALSE(s.RemoveSeries(3) || s.RemoveSeries(0)); }, "", "", false},
        {[&](auto &s) { EXPECT_TRUE(s.AddSeries(T(4), true)); }, "a4", "a4", false},
        {[&](auto &s) { s.SetMaximumNumberOfSeries(2), s.AddSeries(T(4), true); }, "", "", false},
        {[&](auto &s) { s.SetMaximumNumberOfSeries(2), s.InsertSeries(1, T(4)); }, "a4pP", "a4", false},
        {[&](auto &s) { s.SetMaximumNumberOfSeries(1); }, "pP", "", false},
        {[&](auto &s) { s.SetMaximumNumberOfSeries(-1); }, "", "", false},
        {[&](auto &s) { s.SetVectorType(type); }, "v2", "", true},
        {[&](auto &s) { s.SetVectorType(Scores); }, "", "", false},
        {[&](auto &s) { s.SetModel(2); }, "pPpPpP", "", true},
        {[&](auto &s) { s.SetModel(1); }, "", "", false},
        {[&](auto &s) { s.AddSorting({}); }, "O", "O", false},
        {[&](auto &s) { s.ClearSorting(); }, "", "", false},
        {[&](auto &s) { s.AddSorting({}), s.ClearSorting(); }, "OO", "OO", false},
        {[&](auto &s) { s.AddSorting({}), s.RemoveSeries(1); }, "OpP", "O", true},
        {[&](auto &s) { s.SetDisplayDataInverted(false); }, "O", "O", false},
        {[&](auto &s) { s.SetLimits(true); }, "O", "O", false},
        {[&](auto &s) { s.SetSDLimitsVec({}), s.SetMode(Selection::AxisXY), s.SetSelectObjects({}); }, "", "", false},
        {[&](auto &s) { s.SetProject(m_project, true); }, "O", "O", true},
        {[&](auto &s) { s.SetProject(m_project, false); }, "", "", false},
        // 2 cross correlation, 8 EWMA, with sample size and wavelet order
        {transform({Transformation(2)}), "t2", "t2", false},
        {transform({Transformation(0, 5)}), "", "", false},
        {transform({Transformation(8, 5, 8)}), "t8w8", "t8w8", false},
        {transform({Transformation(8), Transformation(8, 3), Transformation(8, 3)}), "t8t8", "t8t8", false},
        // 1 Shewhart, 2 EWMA, 3 CUSUM, with control type and size of subgroups
        {chart({Chart(2)}), "c2/0", "c2/0", true},
        {chart({Chart(0, 1)}), "", "", false},
        {chart({Chart(0, 0, 2)}), "c0/0", "c0/0", true},
        {chart({Chart(1, 0, 2), Chart(1, 1, 3)}), "c1/0c1/0", "c1/0c1/0", true},
        {chart({Chart(3, 0, 2), Chart(3, 1, 3)}), "c3/0", "c3/0", true},
        {[&](auto &s) { s.Clear(); }, "pP", "", true},
        {[&](auto &s) { s.AddSorting({}), s.Clear(); }, "OOpP", "OO", true},
        {[&](auto &s) { s.SetIsDirty(); }, "", "", true},
        {[&](auto &s) { s.SetIsDirty(), s.ClearDirty(); }, "", "", false},
        {[&](auto &s) { s.SetIsDirty(), s.SetColumnIDs(&known); }, "", "", false}};
    for (auto const &row : cases)
        for (bool const update : {true, false}) {
            Selection selection = New(Selection::AxisX);
            selection.SetXAxis(T(1));
            selection.AddSeries(T(1), true);
            selection.AddSeries(T(1), true);
            selection.SetColumnIDs(&known);
            Reporter reporter(selection);
            selection.SetUpdateSelectObjects(update);
            row.operation(selection);
            EXPECT_EQ(reporter.Take(), update ? row.told : row.quiet) << &row - cases;
            // Columns found anew begin with another one, or are none.
            ColumnIDs const *const columns = selection.GetColumnIDs();
            EXPECT_EQ(!columns || columns->GetColumnID(1) != 2, row.dirty) << &row - cases;
        }
}

TEST_F(SelectionTest, SeriesHaveALimitThatInsertingPasses) {
    Selection selection = New(Selection::Normal, 2);
    EXPECT_TRUE(selection.AddSeries(T(1), true) && selection.AddSeries(T(1), true));
    EXPECT_FALSE(selection.AddSeries(T(4), true));
    selection.InsertSeries(2, T(4));
    EXPECT_EQ(Series(selection), "141");
    selection.InsertSeries(4, selection.GetSeries(2));
    EXPECT_EQ(Series(selection), "1414");
    for (auto const &[type, index] : {std::pair(0, 1), {1, 3}, {2, 1}, {5, 2}})
        selection.AddSorting({1, type, index, 0, -1});
    selection.RemoveSeries(1);
    Selection::SortInfo left, leftToo;
    selection.GetSorting(0, left);
    selection.GetSorting(1, leftToo);
    EXPECT_EQ(selection.NumberOfSortings(), 2); // keys of all series go with any
    EXPECT_EQ(std::pair(left.sortType, leftToo.sortType), std::pair(2, 5));
    selection.SetMaximumNumberOfSeries(2);
    EXPECT_EQ(Series(selection), "41");
    EXPECT_EQ(selection.MaximumNumberOfSeries(), 2);
}

TEST_F(SelectionTest, AxesStartAsCountingRowsWithTheSourceOfTheDefault) {
    for (int const mode : {0, 1, 2, 3}) {
        Selection const selection = New(static_cast<Selection::Mode>(mode));
        for (auto const &[axis, bit] : {std::pair(&selection.GetXAxis(), 1), {&selection.GetYAxis(), 2}}) {
            bool const used = (mode & bit) != 0;
            EXPECT_EQ(axis->GetProjectVector(),
                      used ? ProjectVectorHandler::Instance()->GetNumVector(Scores) : nullptr);
            EXPECT_EQ(axis->GetDataSourceName(), used ? "M1" : "");
        }
        EXPECT_EQ(selection.GetSDLimitsVec().size(), 5u);
        EXPECT_EQ(selection.GetSDLimitsVec().front(), std::pair(-3.0f, true));
        EXPECT_EQ(Text(selection), "null|");
    }
    auto const bare = MakeRecordingProject();
    bare->AddData(3, {1}, {2});
    Selection const ofData(bare, Selection::AxisX, Scores, -1, ProjectVector::ObsAndPred);
    EXPECT_EQ(ofData.GetXAxis().GetDataSourceName(), "DS3");
    Selection twice = New();
    twice.SetProject(m_project, true);
    EXPECT_EQ(twice.GetSDLimitsVec().size(), 10u);
    Selection unbound(nullptr, Selection::AxisX, Scores, -1, ProjectVector::ObsAndPred);
    EXPECT_EQ(unbound.GetXAxis().GetProjectVector(), nullptr);
    EXPECT_EQ(unbound.GetDefaultSelection(), nullptr);
    unbound.SetProject(m_project, true); // works on the project held before: none
    EXPECT_TRUE(unbound.GetSDLimitsVec().empty());
    EXPECT_EQ(unbound.GetProject(), m_project);
    auto doomed = MakeRecordingProject();
    Selection const orphan(doomed, Selection::Normal, Scores, -1, ProjectVector::ObsAndPred);
    doomed.reset();
    EXPECT_EQ(orphan.GetProject(), nullptr);
}

TEST_F(SelectionTest, CopiesShareNothingButTheProject) {
    Selection selection = New(Selection::AxisX, 7);
    selection.SetXAxis(T(1));
    selection.AddSeries(T(1), true);
    selection.SetUpdateSelectObjects(true);
    selection.SetSelectObjects({false, true, true, false});
    selection.SetRawHeader("header", true);
    selection.GetExtraOptions().significance = 0.01f;
    char **const format = selection.GetNumberFormatW();
    std::free(*format);
    *format = ::strdup("%.3f");
    selection.GetDefaultSelection()->SetDefaultSelectedVariable(3);

    Selection assigned = New();
    auto const defaults = assigned.GetDefaultSelection();
    assigned.SetUpdateSelectObjects(true);
    assigned = selection;
    assigned = *&assigned;
    std::unique_ptr<Selection> const copy(selection.Copy());
    selection.GetDefaultSelection()->SetDefaultSelectedVariable(2);
    selection.RemoveSeries(1);
    selection.SetSelectObjects({true});
    for (Selection const *const other : {&assigned, copy.get()}) {
        EXPECT_FALSE(other->IsUpdateSelectObjects());
        EXPECT_EQ(Series(*other), "1");
        EXPECT_EQ(other->GetXAxis().GetDataSourceName(), "M1");
        EXPECT_EQ(Text(*other), "1 2 3 4|0110");
        EXPECT_STREQ(other->GetNumberFormat(), "%.3f");
        EXPECT_EQ(other->GetRawHeader(), "header");
        EXPECT_EQ(other->GetExtraOptions().significance, 0.01f);
        EXPECT_EQ(other->MaximumNumberOfSeries(), 7);
        EXPECT_NE(other->GetDefaultSelection(), selection.GetDefaultSelection());
        EXPECT_EQ(other->GetDefaultSelection()->GetDefaultSelectedModelVariable(1), 3u);
    }
    EXPECT_EQ(assigned.GetDefaultSelection(), defaults); // the object stays, its content is the other's
    Selection members = New();
    members.AddSeries(T(2), true);
    members.CopyMembers(*copy);
    EXPECT_EQ(Series(members), "2");
    EXPECT_EQ(members.GetMode(), Selection::AxisX);
}

TEST_F(SelectionTest, EqualityCountsWhatIsShown) {
    using Operation = std::function<void(Selection &)>;
    // What is changed; equal data, equal
    struct {
        Operation change;
        bool data, all;
    } const cases[] = {{[](auto &) {}, true, true},
                       {[](auto &s) { s.SetMode(Selection::AxisXY); }, false, false},
                       {[](auto &s) { s.SetVectorType(ProjectVector::VectorTypeLag); }, false, false},
                       {[](auto &s) { s.SetObsPredType(ProjectVector::Observed); }, false, false},
                       {[&](auto &s) { s.SetProject(MakeRecordingProject(), false); }, false, false},
                       {[&](auto &s) { s.SetXAxis(T(4)); }, false, false},
                       {[&](auto &s) { s.SetYAxis(T(4)); }, true, true}, // not in use
                       {[&](auto &s) { s.SetTransformationData(Transformation(10)); }, false, false},
                       {[&](auto &s) { s.AddSeries(T(1), false); }, false, false},
                       {[&](auto &s) { s.SetSeries(1, T(4)); }, false, false},
                       {[&](auto &s) {
                            ProjectVectorData t = T(1);
                            t.scaling = 2, s.SetSeries(1, t);
                        },
                        true, true},
                       {[](auto &s) {
                            s.SetSelectObjects({true, true, true, false});
                        },
                        false, false},
                       {[](auto &s) { s.SetScaleType(Selection::ScaleZeroToOne); }, true, false},
                       {[](auto &s) { s.SetDisplayDataInverted(true); }, true, false},
                       {[](auto &s) { s.UseConfidenceInterval() = true; }, true, false},
                       {[](auto &s) { s.SetRawHeader("h", false); }, true, false},
                       {[](auto &s) { s.SetSupportsTransformation(false); }, true, false},
                       {[](auto &s) {
                            s.AddSorting({}), s.SetLimits(false), s.SetSDLimitsVec({}),
                                s.GetExtraOptions().significance = 1;
                            s.SetGlobalType(Selection::GlobalTypeProject);
                            s.SetControlChartData(Chart(3));
                            s.SetAxisAspectRatio(static_cast<Selection::AspectRatioType>(2), 1, 2, 3),
                                s.SetPreferredTitleID(2);
                        },
                        true, true}};
    for (auto const &row : cases) {
        Selection one = New(Selection::AxisX);
        one.SetXAxis(T(1));
        one.AddSeries(T(1), true);
        Selection const other(one);
        row.change(one);
        EXPECT_EQ(one.IsDataEqual(other), row.data) << &row - cases;
        EXPECT_EQ(one == other, row.all) << &row - cases;
    }
    Selection one = New(Selection::AxisX), other = New(Selection::AxisX);
    one.Clear();
    other.Clear(); // axes without a vector
    EXPECT_TRUE(one == other);
}

TEST_F(SelectionTest, AsksForRunsOfSeriesWithOneText) {
    VectorProbe const x({"XVar", Scores, X});
    VectorProbe const obs({"XObs", Loadings, ObsOrVar});
    VectorProbe const aligned({"XAL", Aligned, BatchX, 1});
    VectorProbe const alignedNone({"A", Aligned});
    auto const record = [&](ProjectVector const &vector, int model, int number, int batch = -1) {
        ProjectVectorData data;
        data.SetProjectVector(&vector);
        data.SetModelInfoPtr(m_project->GetModelInfo(model));
        Number(number, open, batch)(data);
        return data;
    };
    auto const textsOf = [&](Selection::Mode mode, std::vector<ProjectVectorData> const &series) {
        Selection selection(m_project, mode, ProjectVector::VectorTypeNone, -1, ProjectVector::ObsAndPred);
        selection.SetYAxis(T(2));
        ProjectVectorData axis;
        axis.SetProjectVector(ProjectVectorHandler::Instance()->GetNumVector(Scores));
        selection.SetXAxis(axis);
        for (ProjectVectorData const &data : series)
            selection.AddSeries(data, false);
        std::list<std::string> texts;
        selection.ToStdVectorString(texts);
        return texts;
    };
    EXPECT_EQ(textsOf(Selection::Normal, {}), std::list<std::string>());
    EXPECT_EQ(textsOf(Selection::AxisXY, {}), std::list<std::string>({"Num DS0,0,0,0", "t M2,1,0,0"}));
    EXPECT_EQ(textsOf(Selection::AxisY, {T(1)}), std::list<std::string>({"t M2,1,0,0", "t M1,1,0,0"}));
    EXPECT_EQ(textsOf(Selection::AxisX, {T(1), T(1)}),
              std::list<std::string>({"Num DS0,0,0,0", "t M1,1,0,0", "t M1,1,0,0"}));
    std::pair<std::vector<ProjectVectorData>, std::list<std::string>> const runs[] = {
        {{record(x, 1, 2)}, {"XVar M1,0,2,0"}},
        {{record(x, 1, 3), record(x, 1, open), record(x, 1, 2)}, {"XVar M1,0,4294967295,0,3,1,2"}},
        {{record(x, 1, 3), record(x, 2, 1), record(x, 2, 2)}, {"XVar M1,0,3,0", "XVar M2,0,4294967295,0,1,2"}},
        {{record(x, 1, 3), T(1), record(x, 1, 2)}, {"XVar M1,0,3,0", "t M1,1,0,0", "XVar M1,0,2,0"}},
        {{record(obs, 1, 4), record(obs, 1, 5)}, {"XObs M1,0,4294967295,0,4,5"}},
        {{record(aligned, 1, 2, 2), record(aligned, 1, 2, 5), record(aligned, 1, 3, 5)},
         {"XAL M1,2,2,0,-2,2,5", "XAL M1,2,3,0,5"}},
        {{record(alignedNone, 1, 0), record(alignedNone, 1, 0)}, {"A M1,0,0,0", "A M1,0,0,0"}}};
    for (auto const &[series, texts] : runs)
        EXPECT_EQ(textsOf(Selection::Normal, series), texts);
    std::list<std::string> kept{"before"};
    New().ToStdVectorString(kept);
    EXPECT_EQ(kept.size(), 1u);
}

TEST(Selection, HasTextsForItsEnumerations) {
    for (auto const &[value, mode, order, scale] : {std::tuple(0, "Normal", "No Sort", "None"),
                                                    {1, "AxisX", "Ascending", "Scale 0-1"},
                                                    {2, "AxisY", "Descending", "Scale -1-1"},
                                                    {3, "AxisXY", "", "None"},
                                                    {-1, "", "", "None"}}) {
        EXPECT_STREQ(Selection::FromMode(static_cast<Selection::Mode>(value)), mode);
        EXPECT_STREQ(Selection::FromSortOrder(static_cast<Selection::SortOrder>(value)), order);
        EXPECT_STREQ(Selection::FromScaleTypeToString(static_cast<Selection::ScaleType>(value)), scale);
        EXPECT_EQ(Selection::ToMode(mode), std::max(value, 0));
        EXPECT_EQ(Selection::ToSortOrder(order), value == 3 ? 0 : std::max(value, 0));
        EXPECT_EQ(Selection::FromStringToScaleType(scale), value == 3 ? 0 : std::max(value, 0));
    }
    EXPECT_EQ(Selection::ToMode("Axis"), Selection::Normal);
}
