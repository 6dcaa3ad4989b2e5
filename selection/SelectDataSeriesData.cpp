#include "selection/SelectDataSeriesData.h"

#include "building/CreateProjectData.h"
#include "catalogue/ProjectVectorHandler.h"
#include "platform/project/NCProject.h"
#include "platform/text/Exception.h"
#include "utilities/DefaultSelection.h"
#include "utilities/KestaProjectHandlerBase.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

using ProjectUtilities::DefaultSelection;

namespace {

constexpr char const *seriesList = "series";

constexpr char const *modeTexts[] = {"Normal", "AxisX", "AxisY", "AxisXY"};
constexpr char const *sortOrderTexts[] = {"No Sort", "Ascending", "Descending"};
constexpr char const *scaleTexts[] = {"None", "Scale 0-1", "Scale -1-1"};

// The text of a value, `otherwise` for an unknown one; the value of a text, 0 for an unknown one.
template <std::size_t size>
char const *TextOf(char const *const (&texts)[size], int value, char const *otherwise) {
    return value >= 0 && value < static_cast<int>(size) ? texts[value] : otherwise;
}

template <std::size_t size>
int ValueOf(char const *const (&texts)[size], char const *text) {
    auto const found = std::find_if(std::begin(texts), std::end(texts),
                                    [text](char const *known) { return std::strcmp(known, text) == 0; });
    return found == std::end(texts) ? 0 : static_cast<int>(found - std::begin(texts));
}

// Freed by the plain C allocator, as callers may put their own in its place.
char *Allocated(char const *text) {
    return ::strdup(text ? text : "");
}

ControlChart::EWMAType DefaultEWMAType() {
    return NCProjectHandler::CurrentGeneralOptions().GetEWMAType();
}

} // namespace

SelectDataSeriesData::SelectDataSeriesData() : m_controlChart(DefaultEWMAType()), m_numberFormat(Allocated("%g")) {
    boost::shared_ptr<NCProject> const project = KestaProjectHandlerBase::Instance().GetActiveProject();
    SetProject(project, true);
    m_defaults = boost::make_shared<DefaultSelection>(project);
}

SelectDataSeriesData::SelectDataSeriesData(boost::shared_ptr<NCProject> const &project, Mode mode,
                                           ProjectVector::VectorTypeEnum vectorType, int maxSeries,
                                           ProjectVector::ObsOrPredType obsPred)
    : m_mode(mode), m_vectorType(vectorType), m_project(project), m_maxSeries(maxSeries), m_obsPredType(obsPred),
      m_controlChart(DefaultEWMAType()), m_numberFormat(Allocated("%g")) {
    if (!project)
        return;
    // The axes are filled before there are defaults, so that their first texts have open numbers.
    SetProject(project, true);
    m_defaults = boost::make_shared<DefaultSelection>(project);
}

SelectDataSeriesData::SelectDataSeriesData(SelectDataSeriesData const &other)
    : SelectDataSeriesSubject(other), m_numberFormat(nullptr) {
    CopyMembers(other);
    CopyVectors(other);
    if (other.m_defaults)
        m_defaults = boost::make_shared<DefaultSelection>(*other.m_defaults);
}

SelectDataSeriesData &SelectDataSeriesData::operator=(SelectDataSeriesData const &other) {
    if (this == &other)
        return *this;
    m_updateSelectObjects = false;
    CopyMembers(other);
    CopyVectors(other);
    if (m_defaults && other.m_defaults)
        *m_defaults = *other.m_defaults;
    else if (other.m_defaults)
        m_defaults = boost::make_shared<DefaultSelection>(*other.m_defaults);
    return *this;
}

SelectDataSeriesData::~SelectDataSeriesData() {
    std::free(m_numberFormat);
}

SelectDataSeriesData *SelectDataSeriesData::Copy() const {
    return new SelectDataSeriesData(*this);
}

void SelectDataSeriesData::CopyMembers(SelectDataSeriesData const &other) {
    if (this == &other)
        return;
    m_columns.reset();
    m_mode = other.m_mode;
    m_globalType = other.m_globalType;
    m_vectorType = other.m_vectorType;
    m_project = other.m_project;
    m_maxSeries = other.m_maxSeries;
    m_scoreLoadingType = other.m_scoreLoadingType;
    m_scaleType = other.m_scaleType;
    m_obsPredType = other.m_obsPredType;
    m_transformation = other.m_transformation;
    m_supportsTransformation = other.m_supportsTransformation;
    m_controlChart = other.m_controlChart;
    m_invertData = other.m_invertData;
    std::free(m_numberFormat);
    m_numberFormat = Allocated(other.m_numberFormat);
    m_extraOptions = other.m_extraOptions;
    m_useConfidenceInterval = other.m_useConfidenceInterval;
    m_rawHeader = other.m_rawHeader;
    m_sortings = other.m_sortings;
    m_aspectRatio = other.m_aspectRatio;
    m_xScale = other.m_xScale;
    m_yScale = other.m_yScale;
    m_zScale = other.m_zScale;
    m_preferredTitle = other.m_preferredTitle;
    m_useDefaultSelectObjects = other.m_useDefaultSelectObjects;
    m_showLimits = other.m_showLimits;
    m_sdLimits = other.m_sdLimits;
    m_useFormattedDefault = other.m_useFormattedDefault;
}

void SelectDataSeriesData::CopyVectors(SelectDataSeriesData const &other) {
    if (UsesX())
        m_xAxis = other.m_xAxis;
    if (UsesY())
        m_yAxis = other.m_yAxis;
    m_series = other.m_series;
    SetColumnIDs(other.m_columns.get());
    m_dirty = other.m_dirty;
    m_selectObjects = other.m_selectObjects;
}

// The transformations last: to find the selected items sets the bound of their lags.
bool SelectDataSeriesData::IsDataEqual(SelectDataSeriesData const &other) const {
    return m_mode == other.m_mode && GetProject() == other.GetProject() && m_vectorType == other.m_vectorType &&
           m_obsPredType == other.m_obsPredType && (!UsesX() || m_xAxis == other.m_xAxis) &&
           (!UsesY() || m_yAxis == other.m_yAxis) && m_series == other.m_series &&
           GetSelectObjects() == other.GetSelectObjects() && m_transformation == other.m_transformation;
}

bool SelectDataSeriesData::operator==(SelectDataSeriesData const &other) const {
    return m_scaleType == other.m_scaleType && m_invertData == other.m_invertData &&
           m_useConfidenceInterval == other.m_useConfidenceInterval && m_rawHeader == other.m_rawHeader &&
           m_supportsTransformation == other.m_supportsTransformation && IsDataEqual(other);
}

ProjectVectorData const &SelectDataSeriesData::GetSeries(int position) const {
    return m_series[CheckedOffset(seriesList, position, m_series.size())];
}

void SelectDataSeriesData::SetDisplayDataInverted(bool invert) {
    m_invertData = invert;
    FireOptions();
}

void SelectDataSeriesData::SetLimits(bool visible) {
    m_showLimits = visible;
    FireOptions();
}

void SelectDataSeriesData::SetRawHeader(std::string const &header, bool useFormattedDefault) {
    m_rawHeader = header;
    m_useFormattedDefault = useFormattedDefault;
}

void SelectDataSeriesData::SetAxisAspectRatio(AspectRatioType type, double x, double y, double z) {
    m_aspectRatio = type;
    m_xScale = x;
    m_yScale = y;
    m_zScale = z;
}

SelectDataSeriesData::AspectRatioType SelectDataSeriesData::GetAxisAspectRatio(double &x, double &y, double &z) const {
    x = m_xScale;
    y = m_yScale;
    z = m_zScale;
    return m_aspectRatio;
}

char const *SelectDataSeriesData::FromMode(Mode mode) {
    return TextOf(modeTexts, mode, "");
}
SelectDataSeriesData::Mode SelectDataSeriesData::ToMode(char const *text) {
    return static_cast<Mode>(ValueOf(modeTexts, text));
}
char const *SelectDataSeriesData::FromSortOrder(SortOrder order) {
    return TextOf(sortOrderTexts, order, "");
}
SelectDataSeriesData::SortOrder SelectDataSeriesData::ToSortOrder(char const *text) {
    return static_cast<SortOrder>(ValueOf(sortOrderTexts, text));
}
char const *SelectDataSeriesData::FromScaleTypeToString(ScaleType type) {
    return TextOf(scaleTexts, type, "None");
}
SelectDataSeriesData::ScaleType SelectDataSeriesData::FromStringToScaleType(char const *text) {
    return static_cast<ScaleType>(ValueOf(scaleTexts, text));
}

void SelectDataSeriesData::SetProject(boost::shared_ptr<NCProject> const &project, bool init) {
    if (project && init) {
        InitVectors();
        m_dirty = true;
    }
    m_project = project;
}

void SelectDataSeriesData::InitVectors() {
    boost::shared_ptr<NCProject> const project = GetProject();
    if (!project)
        return;
    int const dataset = project->GetFirstDataSet(0);
    if (UsesX())
        InitAxis(m_xAxis, dataset);
    if (UsesY())
        InitAxis(m_yAxis, dataset);
    AddDefaultSDLimits();
}

void SelectDataSeriesData::InitAxis(ProjectVectorData &axis, int dataset) {
    boost::shared_ptr<NCProject> const project = GetProject();
    bool const chosen = ProjectVectorData::SetProjectVectorDataDefault(
        project, m_vectorType, axis, ProjectVector::DataTypeModel, nullptr, dataset, GetObsPredType());
    if (!chosen) {
        bool const observed = (GetObsPredType() & ProjectVector::Observed) != 0;
        ProjectVectorData::SetProjectVectorDataDefault(
            project, m_vectorType, axis,
            observed ? ProjectVector::DataTypeDataSet : ProjectVector::DataTypePredictionSet, nullptr, dataset,
            observed ? ProjectVector::Observed : ProjectVector::Predicted);
    }
    // An axis starts as a counting row; the source of the default stays.
    axis.SetProjectVector(ProjectVectorHandler::Instance()->GetNumVector(m_vectorType));
    AddProjectData(axis, true);
}

void SelectDataSeriesData::AddDefaultSDLimits() {
    for (float const limit : {-3.0f, -2.0f, 0.0f, 2.0f, 3.0f})
        m_sdLimits.emplace_back(limit, true);
    FireOptions();
}

void SelectDataSeriesData::CorrectNumVectors() {
    int const model = GetCurrentModel();
    boost::shared_ptr<NCProject> const project = GetProject();
    if (model == -1 || !project)
        return;
    boost::shared_ptr<ModelInfo const> const info = project->GetModelInfo(model);
    auto const follow = [&info](ProjectVectorData &data) {
        if (data.GetProjectVector() && data.GetProjectVector()->IsNumVector())
            data.SetModelInfoPtr(info);
    };
    if (UsesX())
        follow(m_xAxis);
    if (UsesY())
        follow(m_yAxis);
    std::for_each(m_series.begin(), m_series.end(), follow);
}

void SelectDataSeriesData::SetModel(int model) {
    boost::shared_ptr<NCProject> const project = GetProject();
    boost::shared_ptr<ModelInfo const> const info = project ? project->GetModelInfo(model) : nullptr;
    auto const moves = [model](ProjectVectorData const &data) {
        return data.GetDataSet() == 0 && (!data.GetModelInfo() || data.GetModelInfo()->number != model);
    };
    auto const moved = [&info](ProjectVectorData data) {
        data.SetModelInfoPtr(info);
        return data;
    };
    if (UsesX() && moves(m_xAxis))
        SetXAxis(moved(m_xAxis));
    if (UsesY() && moves(m_yAxis))
        SetYAxis(moved(m_yAxis));
    for (int position = 1; position <= NumberOfSeries(); ++position)
        if (moves(GetSeries(position)))
            SetSeries(position, moved(GetSeries(position)));
}

void SelectDataSeriesData::Announce() {
    m_dirty = true;
    if (m_updateSelectObjects)
        UpdateProjectData();
}

bool SelectDataSeriesData::AddSeries(ProjectVectorData const &series, bool intersect) {
    if (m_maxSeries >= 0 && NumberOfSeries() >= m_maxSeries)
        return false;
    // A listener may add series itself, which moves those that are here; the argument may be one of them.
    ProjectVectorData const added(series);
    AddProjectData(added, intersect);
    m_series.push_back(added);
    UpdateAddSeries(added);
    return true;
}

void SelectDataSeriesData::InsertSeries(int position, ProjectVectorData const &series) {
    std::size_t const place = CheckedOffset(seriesList, position, m_series.size() + 1);
    ProjectVectorData const added(series);
    AddProjectData(added, true);
    m_series.insert(m_series.begin() + static_cast<std::ptrdiff_t>(place), added);
    UpdateAddSeries(added);
    if (m_updateSelectObjects)
        UpdateProjectData();
}

bool SelectDataSeriesData::RemoveSeries(int position) {
    if (position < 1 || position > NumberOfSeries())
        return false;
    m_series.erase(m_series.begin() + (position - 1));
    std::erase_if(m_sortings, [](SortInfo const &sorting) { return sorting.sortType == 0 || sorting.sortType == 1; });
    Announce();
    return true;
}

void SelectDataSeriesData::SetSeries(int position, ProjectVectorData const &series) {
    m_series[CheckedOffset(seriesList, position, m_series.size())] = series;
    Announce();
}

void SelectDataSeriesData::SetXAxis(ProjectVectorData const &axis) {
    m_xAxis = axis;
    Announce();
}

void SelectDataSeriesData::SetYAxis(ProjectVectorData const &axis) {
    m_yAxis = axis;
    Announce();
}

void SelectDataSeriesData::SetMaximumNumberOfSeries(int number) {
    if (number >= 0 && NumberOfSeries() > number) {
        m_series.resize(static_cast<std::size_t>(number));
        if (m_updateSelectObjects)
            UpdateProjectData();
    }
    m_maxSeries = number;
}

void SelectDataSeriesData::SetVectorType(ProjectVector::VectorTypeEnum type) {
    if (type == m_vectorType)
        return;
    m_vectorType = type;
    m_dirty = true;
    if (m_updateSelectObjects)
        UpdateListeners(type);
}

void SelectDataSeriesData::Clear() {
    m_series.clear();
    if (UsesX())
        m_xAxis.SetProjectVector(nullptr);
    if (UsesY())
        m_yAxis.SetProjectVector(nullptr);
    ClearSorting();
    m_columns.reset();
    Announce();
}

std::vector<ProjectVectorData const *> SelectDataSeriesData::VectorsInUse() const {
    std::vector<ProjectVectorData const *> vectors;
    vectors.reserve(m_series.size() + 2);
    if (UsesX())
        vectors.push_back(&m_xAxis);
    if (UsesY())
        vectors.push_back(&m_yAxis);
    for (ProjectVectorData const &series : m_series)
        vectors.push_back(&series);
    return vectors;
}

void SelectDataSeriesData::ToStdVectorString(std::list<std::string> &texts) const {
    if (UsesX())
        texts.push_back(m_xAxis.ToStdString(Defaults()));
    if (UsesY())
        texts.push_back(m_yAxis.ToStdString(Defaults()));
    for (auto first = m_series.begin(); first != m_series.end();) {
        ProjectVector const *const vector = first->GetProjectVector();
        bool const byNumber = vector && (vector->GetNumberType() == ProjectVector::NumberObsOrVar ||
                                         (vector->GetType() == ProjectVector::VectorTypeVariablesScores &&
                                          vector->GetNumberType() == ProjectVector::NumberXVariable));
        bool const byBatch = vector && vector->GetType() == ProjectVector::VectorTypeAligned && vector->UseBatchIx();
        auto last = first + 1;
        if (byNumber || byBatch)
            last = std::find_if_not(last, m_series.end(),
                                    [first](ProjectVectorData const &next) { return first->IsJoinableData(next); });
        if (last - first == 1) {
            texts.push_back(first->ToStdString(Defaults()));
        } else {
            // One text asks for the whole run: its numbers, or its batches, trail.
            ProjectVectorData joined(*first);
            if (byNumber)
                joined.SetNumber(ProjectVectorData::NotSet);
            else
                joined.batchIx = -2;
            std::string text = joined.ToStdString(byNumber ? nullptr : Defaults());
            for (auto series = first; series != last; ++series)
                text +=
                    ',' + (byNumber ? std::to_string(series->GetNumber(Defaults())) : std::to_string(series->batchIx));
            texts.push_back(std::move(text));
        }
        first = last;
    }
}

void SelectDataSeriesData::AddSorting(SortInfo const &sorting) {
    m_sortings.push_back(sorting);
    FireOptions();
}

void SelectDataSeriesData::ClearSorting() {
    if (m_sortings.empty())
        return;
    m_sortings.clear();
    FireOptions();
}

void SelectDataSeriesData::GetSorting(int index, SortInfo &sorting) const {
    sorting = m_sortings[CheckedOffset("sort keys", index + 1, m_sortings.size())];
}

void SelectDataSeriesData::SetTransformationData(TransformationData const &transformation) {
    TransformationData const old = m_transformation;
    m_transformation = transformation;
    if (m_columns && m_columns->Size() > 0 &&
        (m_transformation.GetMaxLags() == 0 || !m_transformation.IsNumLagsInitialised()))
        SetDefaultLags(m_transformation);
    TransformationData::TransformationType const type = m_transformation.GetTransformationType();
    if (type != old.GetTransformationType() ||
        (type == TransformationData::EWMA && m_transformation.GetSampleSize() != old.GetSampleSize()))
        UpdateTransformationTypeChanged(type);
    if (!(m_transformation.GetWaveletOptions() == old.GetWaveletOptions()))
        UpdateWaveletOptionsChanged(m_transformation.GetWaveletOptions());
}

void SelectDataSeriesData::SetControlChartData(ControlChartData const &chart) {
    ControlChartData const old = m_controlChart;
    m_controlChart = chart;
    ControlChartData::ControlChartType const type = chart.GetControlChartType();
    bool const changed = type != old.GetControlChartType() ||
                         (type == ControlChartData::Shewhart && chart.GetControlType() != old.GetControlType()) ||
                         (chart.GetSubgroupSize() == 1) != (old.GetSubgroupSize() == 1);
    if (!changed)
        return;
    m_dirty = true;
    UpdateControlChartTypeChanged(type, old.GetControlType());
}
