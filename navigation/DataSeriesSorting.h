#pragma once

#include "platform/export.h"
#include "selection/SelectDataSeriesData.h"

#include <vector>

class ProjectData;

// An order of the columns of a table.
class DATASERIES_API ProjectDataCompare {
public:
    virtual ~ProjectDataCompare();
    // Column `a` (1-based) goes before column `b`.
    virtual bool Compare(ProjectData const *data, int a, int b) const = 0;
};

namespace DataSeriesUtilities {

// The order by the sort keys of a selection, the first of which that tells two columns apart decides; without one no
// column goes before another. For the finished table of that selection.
//
// By `sortType`: 0 the values of row `sortIndex`, 1 the same without sign, 2 the labels of the columns in their alias
// `sortIndex`, 3 the classes of the items; other types are no key. The order is ascending for 1, descending for any
// other number. Missing values, and those of a row that is not there, go last either way; values count as equal when
// they differ by no more than 2^-23 of the power of two just above the larger one. Of a label the characters from
// `startPos`, which counts from 0, are compared, `length` of them, without regard to case and runs of digits by their
// number.
class DATASERIES_API DataSeriesSortingCompare final : public ProjectDataCompare {
public:
    explicit DataSeriesSortingCompare(SelectDataSeriesData const *selection);

    bool Compare(ProjectData const *data, int a, int b) const override;

private:
    std::vector<SelectDataSeriesData::SortInfo> m_sortings;
};

// Appends the sort keys but for those by a series that the selection does not have.
DATASERIES_API void GetSortInformation(SelectDataSeriesData const *selection,
                                       std::vector<SelectDataSeriesData::SortInfo> &sortings);
DATASERIES_API void SetSortInformation(SelectDataSeriesData *selection,
                                       std::vector<SelectDataSeriesData::SortInfo> const &sortings);
DATASERIES_API void CopySorting(SelectDataSeriesData const *from, SelectDataSeriesData *to);

} // namespace DataSeriesUtilities
