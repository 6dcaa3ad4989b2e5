#include "building/ProjectDataBuilder.h"
#include "catalogue/ProjectVectorHandler.h"
#include "engine/Project.h"
#include "engine/TableReader.h"
#include "navigation/DataSeriesUtilities.h"
#include "platform/numerics/ControlChart.h"
#include "platform/project/GetProjectData.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/support/ProbeVector.h"
#include "tests/support/RecordingProject.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <sstream>

namespace {

using Builder = ProjectDataUtilities::ProjectDataBuilder;
using Selection = SelectDataSeriesData;
using T = TransformationData;
using Floats = std::vector<float>;
using namespace probes;

constexpr float none = -99.0f;
Floats const figures{10, 12, 11, 13, 9, 14, 15, 13, 16, 12};

// Of columns that have names; those of items are counted.
std::string Names(ColumnIDs const &columns) {
    if (columns.GetSource() == ColumnIDs::Observations || columns.GetSource() == ColumnIDs::Variables)
        return std::to_string(columns.Size()) + " items";
    return columns.GetTitle() + " " + columns.GetName(1) + ".." + columns.GetName(columns.Size());
}

std::string Text(ProjectData const &table) {
    std::ostringstream text;
    text.precision(4);
    text << Names(table.GetColumnIDs());
    for (int row = 1; row <= table.Rows(); ++row) {
        text << "| " << table.GetRowName(row) << table.GetRowFormat(row) << ":";
        for (float const value : table.GetMatrix().Row(row))
            text << ' ' << value;
    }
    for (std::vector<int> const &group : table.GetOriginalGroups()) {
        text << (&group == table.GetOriginalGroups().data() ? "| of" : ",");
        for (int const column : group)
            text << ' ' << column;
    }
    return text.str();
}

// A model of a batch project whose statistics answer what a test lays down, by the name of the operation.
class Transforms : public testing::Test {
protected:
    Transforms() { m_project->AddBatchModel(2, {"B1"}); }

    void Answer(char const *operation, Floats const &values, ColumnIDs::Source kind = ColumnIDs::Observations) {
        ColumnIDs::Numbers numbers;
        for (std::uint32_t number = 1; number <= values.size(); ++number)
            numbers.push_back(number);
        NCDataVector<float> const floats{std::span<float const>(values)};
        ColumnIDs const columns = kind == ColumnIDs::AlignedPoints ? ColumnIDs(floats, "Time", m_project, kind, 1)
                                                                   : ColumnIDs(kind, numbers, m_project, 1);
        m_project->source.columns = static_cast<int>(values.size());
        m_project->source.columnsOf[std::string(operation) + "ColumnIDs"] = [columns](Call const &) { return columns; };
        m_project->source.tableOf[operation] = [=, this](Call const &) -> TablePtr {
            return std::make_unique<ProjectData>(RowIDs(operation, m_project), columns, NCDataMatrix<float>(floats));
        };
    }

    ProjectVectorData Vector(char const *name, V::VectorTypeEnum type = Scores, int component = 1) const {
        ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
        ProjectVectorData data;
        data.SetProjectVector(std::string(name) == "Num"
                                  ? handler.GetNumVector(type)
                                  : handler.FindVector(name, type, OfModel, m_project->GetModelInfo(1).get()));
        EXPECT_TRUE(data.GetProjectVector()) << name;
        data.SetModelInfoPtr(m_project->GetModelInfo(1));
        data.SetComponent(component);
        data.batchIx = 1;
        return data;
    }

    // With an X axis, if any, and series.
    Selection Make(char const *x, std::vector<char const *> const &series, V::VectorTypeEnum type = Scores) const {
        Selection selection(m_project, *x ? Selection::AxisX : Selection::Normal, type, -1, V::ObsAndPred);
        if (*x)
            selection.SetXAxis(Vector(x, type));
        for (char const *const name : series)
            selection.AddSeries(Vector(name, type), false);
        return selection;
    }

    static std::string Result(Builder const &builder) try {
        std::unique_ptr<ProjectData> const table(builder.Build());
        return table ? Text(*table) : "null";
    } catch (NCError const &error) {
        EXPECT_EQ(error.GetLevel(), NCError::Error);
        return error.what();
    }

    boost::shared_ptr<RecordingProject> m_project = MakeRecordingProject();
};

} // namespace

TEST_F(Transforms, ChartsTheFirstSeries) {
    // clang-format off
    struct {
        char const *x;
        std::vector<char const *> series;
        int chart, shewhart, control, size;
        bool isList;
        char const *table, *columns; // null: the columns are those of the table
    } const cases[] = {
        {"Num", {"t"}, 1, 1, 0, 1, false,
         "10 items| Num: 1 2 3 4 5 6 7 8 9 10| Mean (Sample size 1): 10 12 11 13 9 14 15 13 16 12", nullptr},
        {"Num", {"t"}, 1, 1, 1, 4, false,
         "Subgroups Subgroup 1..Subgroup 2| Subgroups: 1 2| Mean (Sample size 4): 11.5 12.75| of 1 2 3 4, 5 6 7 8, "
         "9 10", nullptr},
        {"Num", {"t"}, 1, 2, 1, 5, false,
         "Subgroups Subgroup 1..Subgroup 2| Subgroups: 1 2| Range (Sample size 5): 4 4| of 1 2 3 4 5, 6 7 8 9 10,",
         nullptr},
        {"", {"t"}, 1, 3, 2, 5, false,
         "Subgroups Subgroup 1..Subgroup 2| Subgroups: 1 2| Std.Dev. (Sample size 5): 1.581 1.581| of 1 2 3 4 5, 6 "
         "7 8 9 10,", nullptr},
        {"", {"t", "tPS"}, 1, 1, 2, 5, false,
         "Subgroups Subgroup 1..Subgroup 2| Subgroups: 1 2| Mean (Sample size 5): 0.5 0.5| of 1 2 3 4 5, 6 7 8 9 "
         "10,", nullptr},
        {"Num", {"t"}, 1, 9, 1, 5, false,
         "10 items| Num: 1 2 3 4 5 6 7 8 9 10| GetT: 10 12 11 13 9 14 15 13 16 12", "Subgroups Subgroup 1..Subgroup 2"},
        {"Num", {"t"}, 2, 1, 0, 5, false,
         "Subgroups Subgroup 1..Subgroup 2| Subgroups: 1 2| EWMA(Filtered): 12.05 12.64| of 1 2 3 4 5, 6 7 8 9 "
         "10,", nullptr},
        {"Num", {"t"}, 3, 1, 0, 5, false,
         "Subgroups Subgroup 1..Subgroup 2| Subgroups: 1 2| High CUSUM: 0 1.124| Dev from Target: -1.5 1.5| Low "
         "CUSUM: -1.124 -0| of 1 2 3 4 5, 6 7 8 9 10,", nullptr},
        {"Num", {"t"}, 4, 1, 0, 3, false,
         "Subgroups Subgroup 1..Subgroup 3| Subgroups: 1 2 3| Shewhart: 11 12 14.67| EWMA(Filtered): 12.09 12.06 "
         "12.84| of 1 2 3, 4 5 6, 7 8 9, 10", nullptr},
        {"Num", {"t"}, 4, 1, 0, 11, false,
         "10 items| Num: 1 2 3 4 5 6 7 8 9 10| GetT: 10 12 11 13 9 14 15 13 16 12", "Subgroups .."},
        {"Num", {"t"}, 1, 2, 1, 1, true,
         "10 items| Shewhart (Sample size 1) Mean: 10 12 11 13 9 14 15 13 16 12| Shewhart (Sample size 1) Range: "
         "-99 2 1 2 4 5 1 2 3 4", nullptr},
        {"Num", {"t"}, 1, 1, 2, 5, true,
         "Subgroups Subgroup 1..Subgroup 2| Shewhart (Sample size 5) Mean: 11 14| Shewhart (Sample size 5) StdDev: "
         "1.581 1.581| of 1 2 3 4 5, 6 7 8 9 10,", nullptr},
        {"Num", {"t"}, 2, 1, 0, 5, true,
         "Subgroups Subgroup 1..Subgroup 2| EWMA: 12.05 12.64| of 1 2 3 4 5, 6 7 8 9 10,", nullptr},
        {"Num", {"t"}, 3, 1, 0, 5, true,
         "Subgroups Subgroup 1..Subgroup 2| Low CUSUM: 1.124 0| Dev from Target: -1.5 1.5| High CUSUM: 0 1.124| of "
         "1 2 3 4 5, 6 7 8 9 10,", nullptr},
        {"Num", {"t"}, 4, 1, 0, 5, true,
         "Subgroups Subgroup 1..Subgroup 2| Shewhart: 11 14| EWMA: 12.05 12.64| of 1 2 3 4 5, 6 7 8 9 10,", nullptr},
        {"Num", {"t"}, 3, 1, 0, 1, true,
         "10 items| Low CUSUM: 1.318 0.6367 0.9551 0 2.318 0 0 0 0 0| Dev from Target: -2.5 -0.5 -1.5 0.5 -3.5 1.5 "
         "2.5 0.5 3.5 -0.5| High CUSUM: 0 0 0 0 0 0.3184 1.637 0.9551 3.273 1.592", "Subgroups Subgroup 1..Subgroup "
         "10"},
    };
    // clang-format on
    for (auto const &c : cases) {
        Answer("GetT", figures);
        Selection selection = Make(c.x, c.series);
        ControlChartData chart;
        chart.SetControlChartType(static_cast<ControlChartData::ControlChartType>(c.chart));
        chart.SetShewhartType(static_cast<ControlChartData::ShewhartType>(c.shewhart));
        chart.SetControlType(static_cast<ControlChart::ControlType>(c.control));
        chart.SetSubgroupSize(c.size);
        chart.SetLambda(0.3);
        selection.SetControlChartData(chart);
        Builder builder(&selection);
        builder.SetIsList(c.isList);
        EXPECT_EQ(Result(builder), c.table);
        std::string const table = c.table;
        EXPECT_EQ(Names(builder.BuildColumnIDs()), c.columns ? c.columns : table.substr(0, table.find('|'))) << table;
    }
}

TEST_F(Transforms, ChangesTheTable) {
    // Over observations unless told; aligned vectors lie over times.
    Answer("GetT", {10, 12, 11, 13});
    Answer("GetTPS", {1, none, 3, 2});
    Answer("GetYVar", {2, 0.5f, none, 9}); // between the origin and the first aligned point, at one, behind the last
    Answer("GetYVarPS", {1, 4, 4, 1});
    Answer("GetAlignedTimeMaturity", {1, 2, 4}, ColumnIDs::AlignedPoints);
    Answer("GetAlignedT", {5, 15, 25}, ColumnIDs::AlignedPoints);
    Answer("GetAlignedDModX", {2, 0, -4}, ColumnIDs::AlignedPoints);
    Answer("GetR2X", {0.25f, 0.5f});
    Answer("GetP", {3, -4, none});
    Answer("GetPcvSE", {1, 2, 2});
    Answer("GetW", {0, 0, 0});
    // clang-format off
    struct {
        T::TransformationType type;
        char const *x;
        std::vector<char const *> series;
        V::VectorTypeEnum axis;
        std::pair<char const *, V::VectorTypeEnum> subtract, divide;
        int size;
        char const *table, *columns; // null: the columns are those of the table
    } const cases[] = {
        {T::Histogram, "Num", {"t", "tPS"}, Scores, {}, {}, 1,
         "Bins 10.5..12.5| Bins: 10.5 11.5 12.5| Histogram of GetT: 1 1 2| of 1, 3, 2 4", nullptr},
        {T::Histogram, "", {"t"}, Scores, {}, {}, 1,
         "Bins 10.5..12.5| Histogram of GetT: 1 1 2| of 1, 3, 2 4", nullptr},
        {T::Dotplot, "Num", {"t"}, Scores, {}, {}, 1,
         "4 items| GetT: 10.5 12.5 10.5 12.5| Num%.3g: 1 1 2 2", nullptr},
        {T::Dotplot, "", {"tPS", "t"}, Scores, {}, {}, 1,
         "4 items| GetTPS: 1 -99 3 2| Num%.3g: 1 -99 1 1", nullptr},
        {T::EWMA, "Num", {"t", "tPS"}, Scores, {}, {}, 2,
         "Subgroups Subgroup 1..Subgroup 2| Subgroups: 1 2| EWMA(Filtered)(GetT): 11.25 11.62| "
         "EWMA(Filtered)(GetTPS): 1.375 1.938| of 1 2, 3 4,", nullptr},
        {T::EWMA, "", {"t"}, Scores, {}, {}, 1,
         "4 items| EWMA(Filtered)(GetT): 10.75 11.38 11.19 12.09", nullptr},
        {T::EWMA, "Num", {"t"}, Scores, {}, {}, 3,
         "Control chart could not be calculated. The subgroup size must be smaller than half the number of "
         "observations.", "Subgroups Subgroup 1..Subgroup 1"},
        {T::SubtractVector, "t", {"t", "tPS"}, Scores, {"tPS", Scores}, {}, 1,
         "4 items| : 10 12 11 13| GetT: 9 111 8 11| GetTPS: 0 0 0 0", nullptr},
        {T::SubtractVector, "", {"t"}, Scores, {"YVar", Scores}, {}, 1,
         "4 items| GetT: 8 11.5 110 4", nullptr},
        {T::SubtractVector, "", {"t"}, Scores, {"p", Loadings}, {}, 1,
         "4 items| GetT: 10 12 11 13", nullptr},
        {T::SubtractVector, "Num", {"t"}, Scores, {"t", Aligned}, {}, 1,
         "4 items| : 1 2 3 4| GetT: -5 9.5 110 -12", nullptr},
        {T::SubtractVector, "Num", {"tPS"}, Scores, {"t", Aligned}, {}, 1,
         "4 items| : 1 2 3 4| GetTPS: -4 -124 -22 -3", nullptr},
        {T::SubtractAndDivideVector, "Num", {"t", "tPS"}, Scores, {"tPS", Scores}, {"YVar", Scores}, 1,
         "4 items| : 1 2 3 4| GetT: 4.5 222 -0.08081 1.222| GetTPS: 0 0 -0 0", nullptr},
        {T::SubtractAndDivideVector, "Num", {"t", "YVar"}, Scores, {"t", Aligned}, {"DModX", Aligned}, 1,
         "4 items| : 1 2 3 4| GetT: -5 6.333 -1.111 3| GetT: -13 -1.333 -0 4", nullptr},
        {T::Normalize, "Num", {"p", "pcvSE"}, Loadings, {}, {}, 1,
         "3 items| Num: 1 2 3| GetP: 0.6 -0.8 -99| GetPcvSE: 0.2 0.4 0.4", nullptr},
        {T::Normalize, "", {"w", "VIP"}, Loadings, {}, {}, 1,
         "3 items| GetW: 0 0 0| GetVIP(1, [1], 2): 0.5 0.5 0.5", nullptr},
        {T::R2X, "Num", {"p", "w"}, Loadings, {}, {}, 1,
         "3 items| Num: 1 2 3| GetP: 0.75 -1 -99| GetW: 0 0 0", nullptr},
    };
    // clang-format on
    for (auto const &c : cases) {
        Selection selection = Make(c.x, c.series, c.axis);
        TransformationData settings;
        settings.SetTransformationType(c.type);
        settings.SetSampleSize(c.size);
        settings.SetLambda(0.5);
        if (c.subtract.first)
            settings.GetSubtractVector() = Vector(c.subtract.first, c.subtract.second);
        if (c.divide.first)
            settings.GetDivideVector() = Vector(c.divide.first, c.divide.second);
        selection.SetTransformationData(settings);
        Builder const builder(&selection);
        EXPECT_EQ(Result(builder), c.table);
        std::string const table = c.table;
        EXPECT_EQ(Names(builder.BuildColumnIDs()), c.columns ? c.columns : table.substr(0, table.find('|'))) << table;
    }
}

TEST_F(Transforms, ReplacesItemsByLagsFrequenciesAndCoefficients) {
    Answer("GetT", figures);
    Answer("GetTPS", {12, 10, 12, 11, 13, 9, 14, 15, 13, 16}); // the same, one later
    Answer("GetP", {1, 2, 3}, ColumnIDs::Terms);
    // clang-format off
    struct {
        T::TransformationType type;
        char const *x;
        std::vector<char const *> series;
        char const *cross;
        int lags, segment, sampling;
        bool decibel;
        char const *table, *columns; // null: the columns are those of the table
    } const cases[] = {
        {T::AutoCorrelation, "", {"t"}, "", 3, 16, 0, false,
         " 0..3| AutoCorrelation(GetT): 1 -0.01765 0.2353 0.04118", nullptr},
        {T::AutoCorrelation, "Num", {"t", "tPS"}, "", 0, 16, 0, false,
         " 0..0| Lag: 0| AutoCorrelation(GetT): 1| AutoCorrelation(GetTPS): 1", nullptr},
        {T::AutoCorrelation, "", {"t"}, "", 99, 16, 0, false,
         " 0..10| AutoCorrelation(GetT): 1 -0.01765 0.2353 0.04118 -0.2 -0.05294 -0.2824 -0.05294 -0.2 0.02941 0",
         nullptr},
        {T::CrossCorrelation, "Num", {"tPS"}, "t", 1, 16, 0, false,
         " -1..1| Lag: -1 0 1| CrossCorrelation(GetTPS): 0.2412 0.01176 0.9941", nullptr},
        {T::CrossCorrelation, "", {"t"}, "p", 1, 16, 0, false,
         "M1.p[Comp. 1] can not be used for cross correlation with current data.", " -1..1"},
        {T::PowerSpectrum, "", {"t"}, "", 0, 16, 1, false,
         "10 items| GetT: 10 12 11 13 9 14 15 13 16 12", "error"},
        {T::WaveletCoefficients, "Num", {"t"}, "", 0, 16, 0, false,
         "Wavelet Coefficient WC_1..WC_16| Num: 0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15| Wavelet Coefficient(GetT): "
         "31.25 17.25 -1.768 9.899 -1 -2.5 14 0 -1.414 -1.414 -3.536 1.414 2.828 0 0 0", nullptr},
    };
    // clang-format on
    for (auto const &c : cases) {
        Selection selection = Make(c.x, c.series);
        TransformationData settings;
        settings.SetTransformationType(c.type);
        settings.SetNumLags(c.lags);
        settings.SetMaxLags(100);
        settings.SetSegmentSize(c.segment);
        settings.SetSamplingFrequency(c.sampling);
        settings.SetAmplitudeInDecibel(c.decibel);
        WaveletOptions haar;
        haar.SetWaveletOrder(1);
        haar.SetDetrend(Wavelet::None);
        settings.SetWaveletOptions(haar);
        if (*c.cross)
            settings.GetCrossVector() = Vector(c.cross, *c.cross == 'p' ? Loadings : Scores);
        selection.SetTransformationData(settings);
        Builder const builder(&selection);
        EXPECT_EQ(Result(builder), c.table);
        std::string const table = c.table;
        if (c.columns && std::string(c.columns) == "error")
            EXPECT_THROW(builder.BuildColumnIDs(), NCInternalError);
        else
            EXPECT_EQ(Names(builder.BuildColumnIDs()), c.columns ? c.columns : table.substr(0, table.find('|')));
    }
}

TEST_F(Transforms, TellsPowerAndEnergy) {
    Floats wave;
    for (int i = 0; i < 40; ++i)
        wave.push_back(static_cast<float>(3 * std::cos(2 * std::numbers::pi * i / 4)));
    Answer("GetT", wave);
    Selection selection = Make("Num", {"t"});
    TransformationData settings;
    settings.SetTransformationType(T::PowerSpectrum);
    settings.SetSegmentSize(64);
    settings.SetSamplingFrequency(8);
    settings.SetScalingMode(FFT::Peaks);
    for (bool const decibel : {false, true}) {
        settings.SetAmplitudeInDecibel(decibel);
        selection.SetTransformationData(settings);
        std::unique_ptr<ProjectData> const table(Builder(&selection).Build());
        EXPECT_EQ(Names(table->GetColumnIDs()), "Frequency (Hz) 0..4");
        EXPECT_EQ(table->Columns(), 17);
        EXPECT_EQ(table->GetRowName(1) + table->GetRowName(2),
                  decibel ? "Frequency (Hz)PowerSpectrum(GetT) (dB)" : "Frequency (Hz)PowerSpectrum(GetT)");
        EXPECT_EQ(table->GetMatrix().Row(1)[8], 2) << "of 8 Hz, a wave of 4 values";
        EXPECT_NEAR(table->GetMatrix().Row(2)[8], decibel ? 10 * std::log10(4.5) : 4.5, 1e-4);
    }
    settings.SetTransformationType(T::WaveletStructure);
    BoolVector scales(4);
    scales(1) = true;
    scales(4) = true;
    settings.SetWCEnergySelection(scales);
    selection.SetTransformationData(settings);
    selection.SetMode(Selection::Normal);
    Builder const builder(&selection);
    std::unique_ptr<ProjectData> const structure(builder.Build());
    EXPECT_EQ(structure->GetRowName(1) + structure->GetRowName(2), "Scale 1Scale 4");
    EXPECT_EQ(structure->Columns(), 40);
    ASSERT_TRUE(builder.GetWCEnergy());
    double sum = 0;
    for (float const share : builder.GetWCEnergy()->Values())
        sum += share;
    EXPECT_NEAR(sum, 100, 1e-4);
    settings.SetWCEnergySelection(BoolVector());
    selection.SetTransformationData(settings);
    std::unique_ptr<ProjectData> const untransformed(builder.Build());
    EXPECT_EQ(Names(untransformed->GetColumnIDs()), "40 items");
}

TEST_F(Transforms, KeepsTheLimitsOfTrainingData) {
    Answer("GetT", figures);
    Answer("GetTPS", {1, 2, 3, 4, 5, 6});
    Answer("GetT2RangePS", {1, 3, 1, 3, 1, 3});
    // The series, and what else is read for its limits
    for (auto const &[series, call, target] : std::initializer_list<std::tuple<char const *, char const *, double>>{
             {"t", "GetT(", 12.5}, {"tPS", "GetT(", 12.5}, {"T2RangePS", "GetT2RangePS(", 2}}) {
        Selection selection = Make("Num", {series});
        ControlChartData chart;
        chart.SetControlChartType(ControlChartData::EWMA);
        selection.SetControlChartData(chart);
        Builder builder(&selection);
        EXPECT_EQ(builder.GetControlChart(), nullptr);
        Result(builder);
        ASSERT_TRUE(builder.GetControlChart());
        EXPECT_EQ(builder.GetControlChart()->GetTarget(), target) << series;
        EXPECT_THAT(m_project->source.Take(), testing::StartsWith(call));
        // Over fewer items the limits stay; another chart, or none, is the caller's choice.
        selection.GetColumnIDs();
        BoolVector objects = selection.GetSelectObjects();
        objects(1) = false;
        selection.SetSelectObjects(objects);
        EXPECT_THAT(Result(builder), testing::StartsWith(std::to_string(objects.Size() - 1) + " items"));
        EXPECT_EQ(builder.GetControlChart()->GetTarget(), target) << series;
        ControlChart const other(ControlChart::EWMA, {7, 8}, 1, ControlChart::Predictive);
        builder.SetControlChartData(&other);
        Result(builder);
        EXPECT_EQ(builder.GetControlChart()->GetTarget(), 7.5);
        builder.SetDataSeriesData(&selection);
        EXPECT_EQ(builder.GetControlChart(), nullptr);
    }
}

TEST_F(Transforms, KnowsWhatComponentsExplain) {
    int const model = m_project->AddModel(ModelTypeE::O2PLS, 2, 1, 1, 3, 2);
    Answer("GetR2X", {0.1f, 0.2f, 0.3f, 0.4f});
    Answer("GetR2Y", {0.5f, 0.6f, 0.7f, none});
    for (auto const &[name, component, share] : std::initializer_list<std::tuple<char const *, int, float>>{
             {"t", 2, 0.2f}, {"to", 1, 0.3f}, {"uo", 1, 1.0f}, {"T2Range", 1, 1.0f}, {"t", 9, 1.0f}}) {
        ProjectVectorData data;
        data.SetModelInfoPtr(m_project->GetModelInfo(model));
        data.SetProjectVector(ProjectVectorHandler::Instance()->FindVector(name, Scores, OfModel, data.GetModelInfo()));
        data.SetComponent(component);
        EXPECT_EQ(static_cast<float>(DataSeriesUtilities::GetR2XSS(data, m_project)), share) << name << component;
    }
}

TEST(TransformsOfEngine, NormaliseAndChartStatistics) {
    TemporaryFolder const folder;
    auto const project = engine::Project::Create(folder / "p.dsp");
    std::istringstream stream("id,x1,x2,x3\na,1,2,1\nb,2,1,4\nc,3,5,2\nd,4,3,6\ne,5,7,3\nf,6,4,8\n");
    project->AddDataSet(engine::ReadTable(stream, "table"));
    engine::ModelRequest request;
    request.components = 2;
    project->AddModel(request);
    GetProjectData const direct(*project);
    auto const select = [&](char const *name, V::VectorTypeEnum type) {
        Selection selection(project, Selection::Normal, type, -1, V::ObsAndPred);
        ProjectVectorData data;
        data.SetModelInfoPtr(project->GetModelInfo(1));
        data.SetProjectVector(ProjectVectorHandler::Instance()->FindVector(name, type, OfModel, data.GetModelInfo()));
        data.SetComponent(1);
        selection.AddSeries(data, false);
        return selection;
    };
    Selection scores = select("t", Scores), loadings = select("p", Loadings);
    TransformationData settings;
    settings.SetTransformationType(T::R2X);
    scores.SetTransformationData(settings);
    settings.SetTransformationType(T::Normalize);
    loadings.SetTransformationData(settings);
    std::unique_ptr<ProjectData> const scaled(Builder(&scores).Build()), unit(Builder(&loadings).Build());
    IntList const first{1};
    TablePtr const t = direct.GetT(1, &first, -1), explained = direct.GetR2X(1);
    EXPECT_NEAR(scaled->GetMatrix()(1, 2), t->GetMatrix()(1, 2) * explained->GetMatrix()(1, 1), 1e-6);
    EXPECT_NEAR(unit->GetMatrix()[1].GetSS(0.0L), 1, 1e-6);

    ControlChartData chart;
    chart.SetControlChartType(ControlChartData::Shewhart);
    chart.SetSubgroupSize(2);
    Selection charted = select("t", Scores);
    charted.SetControlChartData(chart);
    Builder builder(&charted);
    builder.SetIsList(true);
    std::unique_ptr<ProjectData> const table(builder.Build());
    ASSERT_EQ(table->Columns(), 3);
    EXPECT_NEAR(table->GetMatrix()(1, 2), (t->GetMatrix()(1, 3) + t->GetMatrix()(1, 4)) / 2, 1e-6);
    EXPECT_NEAR(builder.GetControlChart()->GetTarget(), 0, 1e-6); // scores are centred
}
