#include "building/ProjectDataBuilder.h"

#include "building/CreateProjectData.h"
#include "building/TolerantCompare_internal.h"
#include "building/TransformationData.h"
#include "building/Transforms_internal.h"
#include "platform/containers/Missing.h"
#include "platform/identity/ColumnTerm.h"
#include "platform/identity/TableJoin_internal.h"
#include "platform/project/NCProject.h"
#include "selection/SelectDataSeriesData.h"
#include "utilities/DefaultSelection.h"

#include <algorithm>
#include <list>
#include <optional>

namespace ProjectDataUtilities {

namespace {

ProjectDataBuilder::ProjectDataBuilderError NothingInCommon() {
    return {ExceptionMessage::translate("No common elements to create the data."), NCError::Error};
}

int NumberOfAxes(SelectDataSeriesData const &selection) {
    int const mode = selection.GetMode();
    return (mode & SelectDataSeriesData::AxisX) + ((mode & SelectDataSeriesData::AxisY) != 0 ? 1 : 0);
}

// Multiplier and offset that stretch a row from minimum to maximum over a span above a low end.
struct Stretch {
    float multiplier = 1.0f;
    float offset = 0.0f;
};

Stretch StretchOf(float minimum, float maximum, double span, double low) {
    if (IsMissing(minimum) || IsMissing(maximum))
        return {0.0f, 0.0f};
    float const range = maximum - minimum;
    bool const isConstant = TolerantCompare(range, 0.0) == 0;
    Stretch stretch;
    stretch.multiplier = isConstant ? 0.0f : static_cast<float>(span) / range;
    if (TolerantCompare(maximum, 0.0) == 0) {
        // A row that ends at 0 is stretched and not shifted.
        stretch.offset = 0.0f;
    } else if (isConstant) {
        stretch.offset = 1.0f;
    } else {
        float const quotient = minimum / maximum;
        stretch.offset = static_cast<float>((quotient - low) / (quotient - 1.0));
    }
    return stretch;
}

// The places of the items that are selected; nothing when these are all.
std::optional<ColumnPick> SelectedAmong(BoolVector const &objects) {
    ColumnPick selected(objects);
    if (selected.Size() == 0)
        throw NothingInCommon();
    return selected.IsAll(objects.size()) ? std::nullopt : std::optional(std::move(selected));
}

} // namespace

ProjectDataBuilder::ProjectDataBuilder(SelectDataSeriesData const *selection) : m_selection(selection) {}

ProjectDataBuilder::~ProjectDataBuilder() = default;

void ProjectDataBuilder::SetDataSeriesData(SelectDataSeriesData *selection) {
    m_selection = selection;
    m_controlChart.reset();
}

void ProjectDataBuilder::SetControlChartData(ControlChart const *chart) {
    m_controlChart = chart ? std::make_unique<ControlChart>(*chart) : nullptr;
}

void ProjectDataBuilder::Read(std::list<std::string> const &texts, TableJoin &join) const {
    boost::shared_ptr<NCProject> const project = m_selection->GetProject();
    CreateProjectData const create(*project);
    ProjectVector::VectorTypeEnum const type = m_selection->GetVectorType();
    auto text = texts.begin();

    ProjectVectorData const &axis = m_selection->GetXAxis();
    bool const keepsAxis = m_selection->GetMode() == SelectDataSeriesData::AxisX && axis.GetProjectVector() &&
                           !axis.GetProjectVector()->IsNumVector() && text != texts.end() &&
                           *text == axis.ToStdString(m_selection->GetDefaultSelection().get());
    if (keepsAxis) {
        if (!m_cachedAxis.GetProjectVector() || !(m_cachedAxis == axis)) {
            m_cachedAxisData = create.GetProjectData(*text, type);
            m_cachedAxis = axis;
        }
        if (!m_cachedAxisData)
            return;
        join.Add(std::make_unique<ProjectData>(*m_cachedAxisData));
        ++text;
    }
    for (; text != texts.end(); ++text) {
        TablePtr table = CreateProjectData::IsNum(*text)       ? create.CreateNumProjectData(texts, type)
                         : CreateProjectData::IsMissing(*text) ? create.CreateMissingProjectData(texts, type)
                                                               : create.GetProjectData(*text, type);
        if (table && !join.Add(std::move(table)))
            throw NothingInCommon();
    }
}

void ProjectDataBuilder::HideConstant(ColumnIDs const &columns) const {
    if (m_isList || columns.GetSource() != ColumnIDs::Terms)
        return;
    for (int column = 1; column <= columns.Size(); ++column) {
        ColumnTerm const term = columns.GetColumnTerm(column);
        if (term.Size() != 1 || term.GetMotherVariable(1) != ColumnTerm::Constant)
            continue;
        // The flag is the selection's own: the constant stays hidden until the selection shows it again.
        BoolVector objects = m_selection->GetSelectObjects();
        if (column <= objects.Size())
            objects(column) = false;
        const_cast<SelectDataSeriesData *>(m_selection)->SetSelectObjects(objects);
        return;
    }
}

ProjectData *ProjectDataBuilder::Build() const {
    boost::shared_ptr<NCProject> const project = m_selection->GetProject();
    if (!project)
        return nullptr;
    // The model stays in memory for all reads.
    int const seriesModel = m_selection->GetSeriesModel();
    boost::shared_ptr<NCModel const> const model = seriesModel != -1 ? project->GetModel(seriesModel) : nullptr;
    std::list<std::string> texts;
    m_selection->ToStdVectorString(texts);
    TableJoin join(static_cast<int>(texts.size()));
    Read(texts, join);
    if (join.IsEmpty())
        return nullptr;

    const_cast<SelectDataSeriesData *>(m_selection)->SetColumnIDs(&join.Columns());
    HideConstant(join.Columns());
    TablePtr table = join.Take(SelectedAmong(m_selection->GetSelectObjects()));
    if (m_selection->GetMode() == SelectDataSeriesData::AxisX && table->Rows() == 1)
        throw ProjectDataBuilderError(ExceptionMessage::translate("Not enough legal vectors to create the data."),
                                      NCError::Error);
    if (m_transformData)
        if (ProjectData *const transformed = Transform(table.get()))
            return transformed;
    return table.release();
}

ColumnIDs ProjectDataBuilder::BuildColumnIDs() const {
    boost::shared_ptr<NCProject> const project = m_selection->GetProject();
    if (!project)
        return ColumnIDs();
    std::list<std::string> texts;
    m_selection->ToStdVectorString(texts);
    std::unique_ptr<ColumnIDs> const columns =
        CreateProjectData(*project).GetColumnIDs(texts, m_selection->GetVectorType());
    if (!columns)
        return ColumnIDs(project);
    ColumnIDs const transformed = TransformedColumns(*m_selection, *columns);
    return m_selection->GetControlChartData().IsControlChart() ? ControlChartColumns(*m_selection, transformed)
                                                               : transformed;
}

TablePtr ProjectDataBuilder::ChartOf(ProjectData const &data) const {
    ControlChartData const &settings = m_selection->GetControlChartData();
    if (!settings.IsControlChart() || m_selection->NumberOfSeries() == 0 || data.Rows() == 0)
        return nullptr;
    int const points = data.Columns() / std::max(1, settings.GetSubgroupSize());
    if (!m_controlChart || m_controlChart->Points() != points) {
        std::unique_ptr<ControlChart> chart =
            MakeControlChart(*m_selection, data.GetMatrix()[std::min(2, data.Rows())]);
        // Over other items, the limits stay.
        if (chart && m_controlChart)
            chart->ImportLimits(*m_controlChart);
        m_controlChart = std::move(chart);
    }
    if (!m_controlChart)
        return nullptr;
    return m_isList ? ControlChartList(*m_selection, data, *m_controlChart)
                    : ControlChartPlot(*m_selection, data, *m_controlChart);
}

ProjectData *ProjectDataBuilder::Transform(ProjectData *data) const {
    TablePtr transformed = Transformed(*m_selection, *data, m_energy);
    ProjectData &current = transformed ? *transformed : *data;
    Scale(current);
    TablePtr chart = ChartOf(current);
    return chart ? chart.release() : transformed.release();
}

ProjectData *ProjectDataBuilder::ToHistogramProjectData(bool axis, ProjectData const *data,
                                                        TransformationData const &) const {
    return HistogramOf(*data, axis).release();
}

ProjectData *ProjectDataBuilder::ToDotplotProjectData(bool axis, ProjectData const *data, TransformationData const &,
                                                      float &lo, float &hi) const {
    return DotPlotOf(*data, axis, lo, hi).release();
}

void ProjectDataBuilder::Scale(ProjectData &data) const {
    if (m_selection->GetScaleType() == SelectDataSeriesData::ScaleNone)
        ScaleBySpecifications(data);
    else
        ScaleToSpan(data);
}

ProjectVectorData const *ProjectDataBuilder::SpecificationOf(int row) const {
    int const axes = NumberOfAxes(*m_selection);
    if (row <= axes) {
        bool const isX = row == 1 && m_selection->GetMode() != SelectDataSeriesData::AxisY;
        return isX ? &m_selection->GetXAxis() : &m_selection->GetYAxis();
    }
    return row - axes <= m_selection->NumberOfSeries() ? &m_selection->GetSeries(row - axes) : nullptr;
}

void ProjectDataBuilder::ScaleBySpecifications(ProjectData &data) const {
    std::vector<float> multipliers(static_cast<std::size_t>(data.Rows()), 1.0f);
    std::vector<float> offsets(static_cast<std::size_t>(data.Rows()), 0.0f);
    bool changed = false;
    for (int row = 1; row <= data.Rows(); ++row) {
        ProjectVectorData const *const specification = SpecificationOf(row);
        if (!specification ||
            (TolerantCompare(specification->scaling, 1.0) == 0 && TolerantCompare(specification->offset, 0.0) == 0))
            continue;
        multipliers[static_cast<std::size_t>(row - 1)] = static_cast<float>(specification->scaling);
        offsets[static_cast<std::size_t>(row - 1)] = static_cast<float>(specification->offset);
        changed = true;
    }
    if (changed)
        data.AdjustRows(multipliers, offsets, true);
}

void ProjectDataBuilder::ScaleToSpan(ProjectData &data) const {
    bool const aroundZero = m_selection->GetScaleType() == SelectDataSeriesData::ScaleMinusOneToOne;
    double const span = aroundZero ? 2.0 : 1.0;
    double const low = aroundZero ? -1.0 : 0.0;
    int const mode = m_selection->GetMode();
    ProjectVector const *const yVector = m_selection->GetYAxis().GetProjectVector();
    bool const yIsNum = (mode & SelectDataSeriesData::AxisY) != 0 && yVector && yVector->IsNumVector();
    // Row by row, while the row is near.
    for (int row = 1; row <= data.Rows(); ++row) {
        if ((row == 1 && mode != SelectDataSeriesData::Normal) || (row == 2 && yIsNum))
            continue;
        float minimum = missingValue;
        float maximum = missingValue;
        data.GetMatrix().GetRowMinMax(row, minimum, maximum);
        Stretch const stretch = StretchOf(minimum, maximum, span, low);
        data.AdjustRow(row, stretch.multiplier, stretch.offset, false);
    }
}

} // namespace ProjectDataUtilities
