#pragma once

#include "app/Colouring.h"
#include "app/TableDates.h"
#include "catalogue/ProjectVector.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

// How values of items that follow each other are drawn.
enum class SeriesForm {
    ByAxis, // bars for variables, components, lags and batches, curves for what is more finely divided
    Steps,  // each value holds until the next
    Valley, // a curve whose least value is marked
};

struct PlotStyle {
    bool isPng = false;
    bool isScatter = false; // the second series against the first
    SeriesForm form = SeriesForm::ByAxis;
    std::string title;
    std::string itemTitle; // below the axis, where it is not what the items are called
    // Half axes of an ellipse about the origin, for points; none when 0.
    double ellipseX = 0;
    double ellipseY = 0;
    bool hasDiagonal = false;    // y = x, for points
    std::optional<double> limit; // a line across, with its label
    std::string limitLabel;
    // For each series, or none of them: half lengths of intervals about its values, below 0 where there is none; empty
    // for a series without. Bars bear error bars, curves a band.
    std::vector<std::vector<double>> errors;
    TableDates dates;                   // cells that are drawn as dates
    std::optional<Colouring> colouring; // of the items of lines and points
    std::vector<bool> marked;           // one entry for each item; none where no item is marked
    // In pixels.
    static constexpr int smallest = 100, largest = 9999;
    int width = 900;
    int height = 600;
};

// Adds --title and --size.
void AddPictureOptions(CLI::App &command, PlotStyle &style);

// The script that makes gnuplot draw a table on its standard output: bars for what has one value for each variable,
// component, lag or batch, else lines, unless the form says otherwise. Missing values are gaps. No label is read as
// anything but text. Throws NCError when there is nothing to draw.
std::string PlotScript(ProjectData const &table, ProjectVector::VectorTypeEnum axis, PlotStyle const &style);
