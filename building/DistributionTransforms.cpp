#include "building/Transforms_internal.h"

#include "platform/numerics/FrequencyHistogram.h"
#include "platform/text/Translate.h"

#include <boost/format.hpp>

namespace ProjectDataUtilities {

namespace {

std::string BinsTitle() {
    return translate("Histogram bins", "Bins");
}

ColumnIDs ColumnsOf(FrequencyHistogram::HistogramInfo const &info, ProjectPtr const &project) {
    return ColumnIDs(info.positions, BinsTitle(), project, ColumnIDs::Floats, 0);
}

int FirstSignal(bool hasAxis) {
    return hasAxis ? 2 : 1;
}

} // namespace

TablePtr HistogramOf(ProjectData const &data, bool hasAxis) {
    int const row = FirstSignal(hasAxis);
    FrequencyHistogram::HistogramInfo info;
    if (data.Rows() >= row)
        FrequencyHistogram::CreateHistogram(data.GetMatrix()[row], info);
    if (info.heights.empty())
        return nullptr;
    std::string const label = (boost::format(translate("Histogram of %1%")) % data.GetRowName(row, 1)).str();
    auto table = std::make_unique<ProjectData>(RowIDs(label, data.GetProject()), ColumnsOf(info, data.GetProject()),
                                               NCDataMatrix<float>(info.heights));
    if (hasAxis)
        table = BelowCount(BinsTitle(), *table, info.positions[1], info.positions[2] - info.positions[1]);
    table->AddOriginalColumnIDs(data.GetColumnIDs(), info.columns);
    return table;
}

ColumnIDs HistogramColumns(ProjectData const &data) {
    FrequencyHistogram::HistogramInfo info;
    FrequencyHistogram::CreateHistogram(data.GetMatrix()[1], info);
    return ColumnsOf(info, data.GetProject());
}

TablePtr DotPlotOf(ProjectData const &data, bool hasAxis, float &lo, float &hi) {
    int const row = FirstSignal(hasAxis);
    if (data.Rows() < row)
        return nullptr;
    NCDataVector<float> positions, stack;
    FrequencyHistogram::CreateDotPlotHistogram(data.GetMatrix()[row], positions, stack, lo, hi);
    auto table = std::make_unique<ProjectData>(RowIDs(data.GetRowIDs(), row), data.GetColumnIDs(),
                                               NCDataMatrix<float>(positions));
    table->AppendNumRow(stack, "%.3g");
    return table;
}

} // namespace ProjectDataUtilities
