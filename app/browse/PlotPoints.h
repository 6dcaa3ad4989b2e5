#pragma once

#include "platform/identity/ProjectData.h"

#include <span>
#include <string>
#include <vector>

// A part of a plot, in the units of its axes, both ends included.
struct Area {
    double x0, x1, y0, y1;

    bool Holds(double x, double y) const { return x >= x0 && x <= x1 && y >= y0 && y <= y1; }
};

// What a plot draws of a table: a point of each series for each item, at its position (from 1) or at its value in the
// first row, the X axis. Items count from 1, series from 0. The table is borrowed.
class PlotPoints {
public:
    enum Form { Curves, Bars };

    PlotPoints(ProjectData const &table, bool hasAxis, Form form);

    int Items() const { return m_items; }
    std::size_t NumberOfSeries() const { return m_series.size(); }
    std::string const &Name(std::size_t series) const { return m_names[series]; }
    // Of the X axis; what the items are called where there is none.
    std::string const &AxisName() const { return m_axisName; }
    // For an item: its identifier in the row-th of the identifier columns.
    std::string Label(int item, int row) const { return m_table->GetColumnName(item, row); }
    int NumberOfLabels() const { return m_table->GetColumnIDs().SizeRows(); }

    bool HasAxis() const { return !m_axis.empty(); }
    bool AreBars() const { return m_form == Bars; }
    // The values of the X axis never fall: its points can be joined by lines.
    bool IsRising() const { return m_isRising; }
    double X(int item) const { return HasAxis() ? static_cast<double>(m_axis[Index(item)]) : item; }
    double Y(std::size_t series, int item) const { return static_cast<double>(m_series[series][Index(item)]); }
    bool IsShown(std::size_t series, int item) const;
    // The first series that has a point for the item; the number of series when none has.
    std::size_t SeriesAt(int item) const;

    // All points, with a margin; of bars also 0.
    Area const &Range() const { return m_range; }
    // The items with a point in there, rising.
    std::vector<int> Inside(Area const &area) const;
    // What lies between two items: between their points or, without an X axis, all items between.
    Area Between(int one, int other) const;

private:
    static std::size_t Index(int item) { return static_cast<std::size_t>(item - 1); }
    void FindRange();

    ProjectData const *m_table;
    int m_items;
    Form m_form;
    bool m_isRising = true;
    std::span<float const> m_axis;
    std::vector<std::span<float const>> m_series;
    std::vector<std::string> m_names;
    std::string m_axisName;
    Area m_range{};
};
