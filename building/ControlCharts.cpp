#include "building/Transforms_internal.h"

#include "platform/project/NCProjectHandler.h"
#include "platform/text/Exception.h"
#include "platform/text/Translate.h"
#include "selection/SelectDataSeriesData.h"

#include <boost/format.hpp>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace ProjectDataUtilities {

namespace {

// The form that a vector of predicted rows has of the training rows.
constexpr struct {
    char const *predicted, *training;
} trainingVectors[] = {{"tPS", "t"},         {"toPS", "to"},       {"XVarPS", "XVar"},       {"YVarPS", "YVar"},
                       {"DModXPS", "DModX"}, {"DModYPS", "DModY"}, {"XVarResPS", "XVarRes"}, {"YVarResPS", "YVarRes"}};

ProjectVectorData OfTraining(ProjectVectorData const &data) {
    auto const found = std::ranges::find_if(trainingVectors, [&](auto const &pair) {
        return std::strcmp(pair.predicted, data.GetProjectVector()->GetName()) == 0;
    });
    return found == std::end(trainingVectors)
               ? data
               : WithVector(data, found->training, ProjectVector::VectorTypeVariablesScores);
}

std::string Filled(std::string const &text, int value) {
    return (boost::format(text, std::locale::classic()) % value).str();
}

std::string EWMALabel(ControlChart const &chart) {
    return (boost::format(translate("EWMA(%1%)")) % ControlChart::ToString(chart.GetEWMAType())).str();
}

// Rows of a chart while they are collected.
struct ChartRows {
    std::vector<std::string> labels;
    NCDataMatrix<float> matrix;

    void Add(std::string label, NCDataVector<float> const &values) {
        labels.push_back(std::move(label));
        matrix.AppendRow(values.Values());
    }
};

// Below the axis of a plot the low sum runs downwards, -99 included.
NCDataVector<float> Negated(NCDataVector<float> values) {
    for (float &value : values.MutableValues())
        value = -value;
    return values;
}

ChartRows RowsOfPlot(ControlChartData const &settings, ControlChart const &chart) {
    ChartRows rows;
    std::string const size = Filled(translate(" (Sample size %1%)"), settings.GetSubgroupSize());
    switch (settings.GetControlChartType()) {
    case ControlChartData::Shewhart:
        if (settings.GetShewhartType() == ControlChartData::Mean)
            rows.Add(translate("Control chart average", "Mean") + size, chart.GetMeanVector());
        else if (settings.GetShewhartType() == ControlChartData::Range)
            rows.Add(translate("Control chart range", "Range") + size, chart.GetRangeVector());
        else if (settings.GetShewhartType() == ControlChartData::StdDev)
            rows.Add(translate("Standard deviation", "Std.Dev.") + size, chart.GetStdDevVector());
        break;
    case ControlChartData::EWMA:
        rows.Add(EWMALabel(chart), chart.GetEWMA());
        break;
    case ControlChartData::CUSUM:
        rows.Add(translate("High CUSUM"), chart.GetHighCuSum());
        rows.Add(translate("Deviation from target", "Dev from Target"), chart.GetDevFromTarget());
        rows.Add(translate("Low CUSUM"), Negated(chart.GetLowCuSum()));
        break;
    case ControlChartData::ShewhartAndEWMA:
        rows.Add(translate("Shewhart"), chart.GetMeanVector());
        rows.Add(EWMALabel(chart), chart.GetEWMA());
        break;
    default:
        break;
    }
    return rows;
}

ChartRows RowsOfList(ControlChartData const &settings, ControlChart const &chart) {
    ChartRows rows;
    auto const shewhart = [&](char const *text) {
        return Filled(translate("Don't translate Shewhart", text), settings.GetSubgroupSize());
    };
    switch (settings.GetControlChartType()) {
    case ControlChartData::Shewhart:
        rows.Add(shewhart("Shewhart (Sample size %1%) Mean"), chart.GetMeanVector());
        if (chart.GetControlType() == ControlChart::MeanAndRange)
            rows.Add(shewhart("Shewhart (Sample size %1%) Range"), chart.GetRangeVector());
        else
            rows.Add(shewhart("Shewhart (Sample size %1%) StdDev"), chart.GetStdDevVector());
        break;
    case ControlChartData::EWMA:
        rows.Add("EWMA", chart.GetEWMA());
        break;
    case ControlChartData::CUSUM:
        rows.Add("Low CUSUM", chart.GetLowCuSum());
        rows.Add(translate("Deviation from target", "Dev from Target"), chart.GetDevFromTarget());
        rows.Add("High CUSUM", chart.GetHighCuSum());
        break;
    case ControlChartData::ShewhartAndEWMA:
        rows.Add("Shewhart", chart.GetMeanVector());
        rows.Add("EWMA", chart.GetEWMA());
        break;
    default:
        break;
    }
    return rows;
}

} // namespace

std::unique_ptr<ControlChart> MakeControlChart(SelectDataSeriesData const &selection,
                                               NCDataVector<float> const &values) {
    ControlChartData const &settings = selection.GetControlChartData();
    std::unique_ptr<ControlChart> chart = settings.CreateControlChart(values);
    ProjectVectorData const &series = selection.GetSeries(1);
    if (!chart || !series.GetProjectVector() || series.GetProjectVector()->GetObsPredType() != ProjectVector::Predicted)
        return chart;
    TablePtr const training = ReadVector(selection, OfTraining(series), ProjectVector::VectorTypeVariablesScores);
    if (training && training->Rows() > 0)
        if (auto const other = settings.CreateControlChart(training->GetMatrix()[1]))
            chart->ImportLimits(*other);
    return chart;
}

TablePtr ControlChartPlot(SelectDataSeriesData const &selection, ProjectData const &data, ControlChart const &chart) {
    ControlChartData const &settings = selection.GetControlChartData();
    ChartRows rows = RowsOfPlot(settings, chart);
    if (settings.GetControlChartType() == ControlChartData::Shewhart && rows.labels.empty())
        return nullptr;
    // Row 1 of the table is the axis, whatever it is.
    return OverSubgroups({selection, data, true}, Labels(rows.labels, data.GetProject()), std::move(rows.matrix),
                         settings.GetSubgroupSize());
}

TablePtr ControlChartList(SelectDataSeriesData const &selection, ProjectData const &data, ControlChart const &chart) {
    ControlChartData const &settings = selection.GetControlChartData();
    ChartRows rows = RowsOfList(settings, chart);
    return OverSubgroups({selection, data, false}, Labels(rows.labels, data.GetProject()), std::move(rows.matrix),
                         settings.GetSubgroupSize());
}

ColumnIDs ControlChartColumns(SelectDataSeriesData const &selection, ColumnIDs const &columns) {
    ControlChartData const &settings = selection.GetControlChartData();
    int const size = settings.GetSubgroupSize();
    if (size == 0)
        throw NCInternalError("ProjectDataBuilder::CreateControlChartIDs");
    // Charts of single values other than this one are told by subgroups of one.
    if (size < 2 && settings.GetControlChartType() == ControlChartData::Shewhart)
        return columns;
    return SubgroupColumns(columns.Size() / size, selection.GetProject());
}

ColumnIDs EWMAColumns(ColumnIDs const &columns, TransformationData const &settings) {
    int const size = settings.GetSampleSize();
    return size < 2 ? columns : SubgroupColumns(columns.Size() / size, columns.GetProject());
}

TablePtr EWMAOf(TransformInput const &input, TransformationData const &settings) {
    ProjectData const &data = input.data;
    int const size = settings.GetSampleSize();
    if (data.Columns() / 2 < size)
        throw NCError(ExceptionMessage::translate("Control chart could not be calculated. The subgroup size must be "
                                                  "smaller than half the number of observations."),
                      NCError::Error);
    ControlChart::EWMAType const type = NCProjectHandler::CurrentGeneralOptions().GetEWMAType();
    ChartRows rows;
    for (int row = input.FirstRow(); row <= data.Rows(); ++row) {
        ControlChart chart(ControlChart::EWMA, data.GetMatrix()[row], size, type);
        chart.SetTarget(settings.GetTarget());
        chart.SetStdDevSubgroup(settings.GetStdDev());
        chart.SetEWMALambda(settings.GetLambda());
        rows.Add(
            (boost::format(translate("EWMA(%1%)(%2%)")) % ControlChart::ToString(type) % data.GetRowName(row, 1)).str(),
            chart.GetEWMA());
    }
    return OverSubgroups(input, Labels(rows.labels, data.GetProject()), std::move(rows.matrix), size);
}

} // namespace ProjectDataUtilities
