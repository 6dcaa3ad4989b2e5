#pragma once

#include "specification/ProjectVectorData.h"

class SelectDataSeriesData;

// The parts of a saved selection.
namespace SelectionSections {

constexpr char const *selection = "DataSeries";
constexpr char const *xAxis = "AxisXInfo";
constexpr char const *yAxis = "AxisYInfo";
constexpr char const *series = "SeriesInfo";
constexpr char const *transformation = "Transformation";

// Reads a series of the selection, which has a project. False when a key is missing or the source has nothing to show
// for it; errors as in ProjectVectorData::ReadSection.
bool ReadSeries(SelectDataSeriesData const &selection, ConfigurationSection &section, bool activeModel,
                ProjectVectorData &series);

} // namespace SelectionSections
