#pragma once

#include "app/SavedPlot.h"
#include "app/browse/PlotPoints.h"

#include <memory>

// A selection with its table, as it is shown. NCError, as of any built plot, when there is nothing to show.
class BrowsedPlot {
public:
    using Selection = std::unique_ptr<SelectDataSeriesData>;

    BrowsedPlot(boost::shared_ptr<engine::Project> const &project, Selection selection, PictureSettings settings);
    BrowsedPlot(BrowsedPlot const &) = delete;
    BrowsedPlot &operator=(BrowsedPlot const &) = delete;

    SelectDataSeriesData const &GetSelection() const { return *m_selection; }
    PictureSettings const &Settings() const { return m_settings; }
    BuiltPlot const &Built() const { return m_built; }
    ProjectData const &Table() const { return m_built.Table(); }
    PlotPoints const &Points() const { return m_points; }

    std::string Title() const;
    // Which items it shows, for a plot that is kept: by their batches if that tells it, else by their names.
    ShownItems Items() const;
    // The label of an item, and its values in the first so many series.
    std::string Told(int item, int labels) const;
    // What the table has in a cell; row and item count from 1.
    std::string CellText(int row, int item) const;

private:
    Selection m_selection;
    PictureSettings m_settings;
    BuiltPlot m_built;
    PlotPoints m_points;
};
