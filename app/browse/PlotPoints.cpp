#include "app/browse/PlotPoints.h"

#include "platform/containers/Missing.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

bool IsValue(float value) {
    return !IsMissing(value) && std::isfinite(value);
}

// Of what was seen; an end is infinite as long as nothing was.
struct Span {
    double low = infinite, high = -infinite;

    void Add(double value) {
        low = std::min(low, value);
        high = std::max(high, value);
    }
    void Add(std::span<float const> values) {
        for (float const value : values)
            if (IsValue(value))
                Add(static_cast<double>(value));
    }
    void Widen() {
        if (low > high)
            low = high = 0;
        constexpr double share = 0.03;
        double const margin = high > low ? (high - low) * share : std::max(std::abs(high), 1.0) / 2;
        low -= margin;
        high += margin;
    }
};

} // namespace

PlotPoints::PlotPoints(ProjectData const &table, bool hasAxis, Form form)
    : m_table(&table), m_items(table.Columns()), m_form(hasAxis ? Curves : form) {
    hasAxis = hasAxis && table.Rows() > 1;
    for (int row = 1; row <= table.Rows(); ++row) {
        if (hasAxis && row == 1) {
            m_axis = table.GetMatrix().Row(row);
            continue;
        }
        m_series.push_back(table.GetMatrix().Row(row));
        m_names.push_back(table.GetRowName(row));
    }
    m_axisName = hasAxis ? table.GetRowName(1) : table.GetColumnIDs().GetRowTitle(1);
    FindRange();
}

void PlotPoints::FindRange() {
    m_isRising = std::ranges::is_sorted(m_axis);
    Span x, y;
    x.Add(m_axis);
    for (std::span<float const> const series : m_series)
        y.Add(series);
    if (AreBars())
        y.Add(0.0);
    x.Widen();
    y.Widen();
    m_range = HasAxis() ? Area{x.low, x.high, y.low, y.high} : Area{0.5, m_items + 0.5, y.low, y.high};
}

bool PlotPoints::IsShown(std::size_t series, int item) const {
    return IsValue(m_series[series][Index(item)]) && (!HasAxis() || IsValue(m_axis[Index(item)]));
}

std::size_t PlotPoints::SeriesAt(int item) const {
    std::size_t series = 0;
    while (series < m_series.size() && !IsShown(series, item))
        ++series;
    return series;
}

std::vector<int> PlotPoints::Inside(Area const &area) const {
    std::vector<int> items;
    for (int item = 1; item <= m_items; ++item)
        for (std::size_t series = 0; series < m_series.size(); ++series)
            if (IsShown(series, item) && area.Holds(X(item), Y(series, item))) {
                items.push_back(item);
                break;
            }
    return items;
}

Area PlotPoints::Between(int one, int other) const {
    auto const [x0, x1] = std::minmax({X(one), X(other)});
    std::size_t const seriesOfOne = SeriesAt(one), seriesOfOther = SeriesAt(other);
    if (!HasAxis() || seriesOfOne == m_series.size() || seriesOfOther == m_series.size())
        return {x0, x1, -infinite, infinite};
    auto const [y0, y1] = std::minmax({Y(seriesOfOne, one), Y(seriesOfOther, other)});
    return {x0, x1, y0, y1};
}
