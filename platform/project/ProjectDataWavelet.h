#pragma once

#include "platform/identity/ProjectData.h"
#include "platform/numerics/WaveletOptions.h"

// Tables made of wavelet coefficients.
class DATASERIES_API ProjectDataWavelet {
public:
    explicit ProjectDataWavelet(NCProject const &project) : m_project(project) {}

    // What the scales of a transform tell of its row, one row "Scale 1", "Scale 2", ... for each scale that is
    // selected: the row that the scale's coefficients alone give, as wide as `columns`; the line from `lo` to `hi`,
    // which was taken off the row, is added to the first. Those of all scales add up to the row. `energy` has a value
    // for each scale, and `selection` an entry. Null when none is selected. NCInternalError when the coefficients do
    // not have so many scales, or are fewer than the columns.
    TablePtr GetWaveletStructure(NCDataVector<float> const &coefficients, WaveletOptions const *options,
                                 bool const *selection, NCDataVector<float> const &energy, ColumnIDs const *columns,
                                 long double lo, long double hi) const;

private:
    NCProject const &m_project;
};
