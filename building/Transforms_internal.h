#pragma once

#include "building/TransformationData.h"
#include "platform/identity/ProjectData.h"
#include "platform/numerics/ControlChart.h"

#include <string>
#include <vector>

class SelectDataSeriesData;

namespace ProjectDataUtilities {

// A table of a selection that is to be transformed. With `hasAxis` its row 1 is an axis and no signal.
struct TransformInput {
    SelectDataSeriesData const &selection;
    ProjectData const &data;
    bool hasAxis;

    int FirstRow() const { return hasAxis ? 2 : 1; }
};

// The table of the selection as its transformation makes it, null when it has none, or none that these data allow; and
// the columns of such a table, without reading more than they need.
// A wavelet structure also tells the energy of the scales.
TablePtr Transformed(SelectDataSeriesData const &selection, ProjectData const &data,
                     std::unique_ptr<NCDataVector<float>> &energy);
ColumnIDs TransformedColumns(SelectDataSeriesData const &selection, ColumnIDs const &columns);

// What all of them share.
// A specification of the selection's project, read; null when it gives nothing.
TablePtr ReadVector(SelectDataSeriesData const &selection, ProjectVectorData const &data,
                    ProjectVector::VectorTypeEnum type);
// The specification with another vector of its model, which keeps its own where the model has no such vector.
ProjectVectorData WithVector(ProjectVectorData data, char const *name, ProjectVector::VectorTypeEnum type);
RowIDs Labels(std::vector<std::string> const &labels, ProjectPtr const &project);
// The rows of a table below a new one that counts its columns: start, start + step, ...
TablePtr BelowCount(std::string const &title, ProjectData const &table, double start, double step);
ColumnIDs SubgroupColumns(int number, ProjectPtr const &project);
// New rows that stand for several of the columns of `data` each, or for one with a size below 2: below the axis row,
// if it has one, and with their original columns.
TablePtr OverSubgroups(TransformInput const &input, RowIDs labels, NCDataMatrix<float> matrix, int size);
// The positions of the columns of each subgroup, the last of which may be incomplete, or empty.
std::vector<std::vector<int>> SubgroupsOf(int columns, int size);

// Each signal by its correlation with itself or with another vector, its spectrum, its wavelet coefficients; and the
// first one by what the selected wavelet scales tell of it. Null where there are too few values.
TablePtr AutoCorrelationOf(TransformInput const &input, TransformationData const &settings);
ColumnIDs AutoCorrelationColumns(ColumnIDs const &columns, TransformationData const &settings);
TablePtr CrossCorrelationOf(TransformInput const &input, TransformationData const &settings);
ColumnIDs CrossCorrelationColumns(ColumnIDs const &columns, TransformationData const &settings);
// The segment of a spectrum over so many columns, 0 where it would be below the least one.
int SegmentOf(TransformationData const &settings, int columns);
TablePtr PowerSpectrumOf(TransformInput const &input, TransformationData const &settings);
ColumnIDs PowerSpectrumColumns(ColumnIDs const &columns, TransformationData const &settings);
TablePtr WaveletCoefficientsOf(TransformInput const &input, TransformationData const &settings);
ColumnIDs WaveletCoefficientColumns(ProjectData const &data, TransformationData const &settings);
TablePtr WaveletStructureOf(TransformInput const &input, TransformationData const &settings,
                            NCDataVector<float> &energy);

// Values less a vector, and divided by another; scaled by what their component explains, or to the length of 1 of their
// loading.
TablePtr SubtractVector(TransformInput const &input, TransformationData const &settings);
TablePtr SubtractAndDivideVector(TransformInput const &input, TransformationData const &settings);
TablePtr ScaledByR2X(TransformInput const &input);
TablePtr Normalized(TransformInput const &input);

// How the first signal is distributed.
TablePtr HistogramOf(ProjectData const &data, bool hasAxis);
ColumnIDs HistogramColumns(ProjectData const &data);
TablePtr DotPlotOf(ProjectData const &data, bool hasAxis, float &lo, float &hi);

// Each signal by its exponentially weighted averages.
TablePtr EWMAOf(TransformInput const &input, TransformationData const &settings);
ColumnIDs EWMAColumns(ColumnIDs const &columns, TransformationData const &settings);

// The control chart of the selection, with the limits of the training data where its first series is predicted; null
// where these values make none.
std::unique_ptr<ControlChart> MakeControlChart(SelectDataSeriesData const &selection,
                                               NCDataVector<float> const &values);
// Its rows, for a plot and for a list; null where there are none.
TablePtr ControlChartPlot(SelectDataSeriesData const &selection, ProjectData const &data, ControlChart const &chart);
TablePtr ControlChartList(SelectDataSeriesData const &selection, ProjectData const &data, ControlChart const &chart);
ColumnIDs ControlChartColumns(SelectDataSeriesData const &selection, ColumnIDs const &columns);

} // namespace ProjectDataUtilities
