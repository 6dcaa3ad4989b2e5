#pragma once

#include "specification/ProjectVectorData.h"

namespace DataSeriesUtilities {

// The number of the Y term that a Y vector is about, which one that also has an X number has as its second.
inline std::uint32_t YNumberOf(ProjectVectorData const &data, ProjectUtilities::DefaultSelection const *defaults) {
    return data.GetProjectVector()->IsXVector() ? data.GetNumberID2(defaults, true) : data.GetNumber(defaults);
}

} // namespace DataSeriesUtilities
