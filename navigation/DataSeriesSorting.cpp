#include "navigation/DataSeriesSorting.h"

#include "building/TolerantCompare_internal.h"
#include "platform/containers/Missing.h"
#include "platform/identity/ProjectData.h"
#include "platform/text/VqStdString.h"

#include <cmath>
#include <utility>

ProjectDataCompare::~ProjectDataCompare() = default;

namespace DataSeriesUtilities {

namespace {

using SortInfo = SelectDataSeriesData::SortInfo;

bool IsBySeries(SortInfo const &key) {
    return key.sortType == 0 || key.sortType == 1;
}

// All below answer as strcmp does.
int CompareValues(float a, float b, bool ascending) {
    if (IsMissing(a) || IsMissing(b))
        return IsMissing(a) == IsMissing(b) ? 0 : IsMissing(a) ? 1 : -1;
    return ascending ? ProjectDataUtilities::TolerantCompare(a, b) : ProjectDataUtilities::TolerantCompare(b, a);
}

int CompareLabels(SortInfo const &key, ProjectData const &data, int a, int b) {
    std::locale const &locale = std::locale::classic();
    auto const label = [&](int column) {
        return VqStdString::GraphemeClusterSubString(data.GetColumnName(column, key.sortIndex), key.startPos,
                                                     key.length, locale);
    };
    return VqStdString::CompareNumberNoCase(label(a), label(b), locale);
}

int CompareBy(SortInfo const &key, ProjectData const &data, int a, int b) {
    bool const ascending = key.sortOrder == SelectDataSeriesData::SortAscending;
    if (IsBySeries(key)) {
        auto const value = [&](int column) {
            float const found = data.GetMatrix()(key.sortIndex, column, missingValue);
            return key.sortType == 1 && !IsMissing(found) ? std::abs(found) : found;
        };
        return CompareValues(value(a), value(b), ascending);
    }
    if (!ascending)
        std::swap(a, b);
    switch (key.sortType) {
    case 2:
        return CompareLabels(key, data, a, b);
    case 3:
        return data.GetColumnClass(a) - data.GetColumnClass(b);
    default:
        return 0;
    }
}

} // namespace

DataSeriesSortingCompare::DataSeriesSortingCompare(SelectDataSeriesData const *selection) {
    GetSortInformation(selection, m_sortings);
}

bool DataSeriesSortingCompare::Compare(ProjectData const *data, int a, int b) const {
    for (SortInfo const &key : m_sortings)
        if (int const order = CompareBy(key, *data, a, b); order != 0)
            return order < 0;
    return false;
}

void GetSortInformation(SelectDataSeriesData const *selection, std::vector<SortInfo> &sortings) {
    for (int index = 0; index < selection->NumberOfSortings(); ++index) {
        SortInfo key;
        selection->GetSorting(index, key);
        if (!IsBySeries(key) || key.sortIndex <= selection->NumberOfSeries())
            sortings.push_back(key);
    }
}

void SetSortInformation(SelectDataSeriesData *selection, std::vector<SortInfo> const &sortings) {
    selection->ClearSorting();
    for (SortInfo const &key : sortings)
        selection->AddSorting(key);
}

void CopySorting(SelectDataSeriesData const *from, SelectDataSeriesData *to) {
    std::vector<SortInfo> sortings;
    GetSortInformation(from, sortings);
    SetSortInformation(to, sortings);
}

} // namespace DataSeriesUtilities
