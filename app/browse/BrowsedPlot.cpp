#include "app/browse/BrowsedPlot.h"

namespace {

using Axis = ProjectVector::VectorTypeEnum;

bool IsTransformed(SelectDataSeriesData const &selection) {
    return selection.GetControlChartData().IsControlChart() ||
           selection.GetTransformationData().GetTransformationType() != TransformationData::NoTransformation;
}

// The X axis is the first row of the table, unless a transformation has put others in its place.
bool HasAxis(SelectDataSeriesData const &selection) {
    return (selection.GetMode() & SelectDataSeriesData::AxisX) != 0 && !IsTransformed(selection);
}

// What is finely divided is drawn as a curve.
PlotPoints::Form FormOf(SelectDataSeriesData const &selection) {
    bool const isHistogram = selection.GetTransformationData().GetTransformationType() == TransformationData::Histogram;
    Axis const axis = selection.GetVectorType();
    bool const isFine = axis == ProjectVector::VectorTypeVariablesScores || axis == ProjectVector::VectorTypeAligned;
    return isFine && !isHistogram ? PlotPoints::Curves : PlotPoints::Bars;
}

} // namespace

BrowsedPlot::BrowsedPlot(boost::shared_ptr<engine::Project> const &project, Selection selection,
                         PictureSettings settings)
    : m_selection(std::move(selection)), m_settings(std::move(settings)), m_built(project, *m_selection, true),
      m_points(m_built.Table(), HasAxis(*m_selection), FormOf(*m_selection)) {}

ShownItems BrowsedPlot::Items() const {
    ShownItems items;
    ColumnIDs const *const columns = m_selection->GetColumnIDs();
    BoolVector const &shown = m_selection->GetSelectObjects();
    if (!columns || m_selection->NumSelectObjects() == columns->Size())
        return items;
    m_selection->GetSelectedBatches(items.batches);
    SelectDataSeriesData ofBatches(*m_selection);
    if (!items.batches.empty() && ofBatches.SelectBatches(items.batches) == SelectDataSeriesData::ItemsSelected &&
        ofBatches.GetSelectObjects() == shown)
        return items;
    items.batches.clear();
    bool const areFew = m_selection->NumSelectObjects() * 2 <= columns->Size();
    for (int item = 1; item <= columns->Size(); ++item)
        if (shown[item] == areFew)
            (areFew ? items.only : items.without).push_back(columns->GetName(item));
    return items;
}

std::string BrowsedPlot::Title() const {
    if (!m_settings.style.title.empty())
        return m_settings.style.title;
    std::string title;
    for (std::size_t series = 0; series < m_points.NumberOfSeries(); ++series)
        title += (title.empty() ? "" : ", ") + m_points.Name(series);
    return m_points.HasAxis() ? title + " against " + m_points.AxisName() : title;
}

std::string BrowsedPlot::Told(int item, int labels) const {
    constexpr int mostSeries = 8;
    std::string text = std::to_string(item) + " " + Table().GetColumnName(item, std::max(labels, 1)) + ":";
    for (int row = 1; row <= std::min(Table().Rows(), mostSeries); ++row)
        text += (row == 1 ? " " : ", ") + Table().GetRowName(row) + " " + CellText(row, item);
    return text;
}

std::string BrowsedPlot::CellText(int row, int item) const {
    auto const index = static_cast<std::size_t>(row - 1), place = static_cast<std::size_t>(item - 1);
    std::string const date = m_built.Dates().Text(index, place);
    if (!date.empty())
        return date;
    constexpr int digits = 6;
    char buffer[32];
    std::string_view const number = NumberText(Table().GetMatrix().Row(row)[place], digits, buffer);
    return number.empty() ? "missing" : std::string(number);
}
