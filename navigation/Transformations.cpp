#include "navigation/Transformations.h"

#include "building/Transforms_internal.h"
#include "selection/SelectDataSeriesData.h"

#include <algorithm>

namespace DataSeriesUtilities {

namespace {

bool IsNum(ProjectVectorData const &data) {
    return !data.GetProjectVector() || data.GetProjectVector()->IsNumVector();
}

// What a transformation is of: all but counting rows and identifiers.
std::ptrdiff_t SignalsOf(SelectDataSeriesData const &selection) {
    return std::ranges::count_if(selection.VectorsInUse(), [](ProjectVectorData const *data) {
        return data->GetProjectVector() && !data->GetProjectVector()->IsNumVectorLike();
    });
}

// There is such a row to read.
bool RunsAlong(ProjectVectorData const &data, ProjectVector::VectorTypeEnum axis) {
    return !IsNum(data) && data.GetProjectVector()->GetType() == axis && !data.GetDataSourceName().empty();
}

bool CanBuild(SelectDataSeriesData const &selection, TransformationData const &settings) {
    std::ptrdiff_t const signals = SignalsOf(selection);
    if (signals == 0)
        return false;
    auto const items = [&selection] {
        ColumnIDs const *const columns = selection.GetColumnIDs();
        return columns ? columns->Size() : 0;
    };
    ProjectVector::VectorTypeEnum const axis = selection.GetVectorType();
    ProjectVectorData const &operand = settings.GetCrossVector(); // of differences too
    bool const byTime =
        axis == ProjectVector::VectorTypeVariablesScores && RunsAlong(operand, ProjectVector::VectorTypeAligned);
    switch (settings.GetTransformationType()) {
    case TransformationData::CrossCorrelation:
        return RunsAlong(operand, axis);
    case TransformationData::SubtractVector:
        return byTime || RunsAlong(operand, axis);
    case TransformationData::SubtractAndDivideVector:
        return byTime ? RunsAlong(settings.GetDivideVector(), ProjectVector::VectorTypeAligned)
                      : RunsAlong(operand, axis) && RunsAlong(settings.GetDivideVector(), axis);
    case TransformationData::PowerSpectrum:
        return ProjectDataUtilities::SegmentOf(settings, items()) > 0;
    case TransformationData::EWMA:
        return settings.GetSampleSize() <= items() / 2;
    case TransformationData::WaveletStructure:
        return settings.GetWCEnergySelection().Size() > 0;
    case TransformationData::Histogram:
    case TransformationData::Dotplot:
        return signals == 1;
    default:
        return true;
    }
}

} // namespace

void ValidateTransformationType(SelectDataSeriesData const *selection, TransformationData &transformation) {
    if (!CanBuild(*selection, transformation))
        transformation.SetTransformationType(TransformationData::NoTransformation);
}

bool CanHistogramTransform(SelectDataSeriesData const *selection) {
    if (selection->GetTransformationData().GetTransformationType() != TransformationData::NoTransformation)
        return true;
    int const mode = selection->GetMode();
    return selection->NumberOfSeries() <= 1 &&
           ((mode & SelectDataSeriesData::AxisX) == 0 || IsNum(selection->GetXAxis())) &&
           ((mode & SelectDataSeriesData::AxisY) == 0 || IsNum(selection->GetYAxis()));
}

} // namespace DataSeriesUtilities
