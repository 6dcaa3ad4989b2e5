#pragma once

#include "catalogue/ProjectVector.h"

#include <string>

struct PlotStyle {
    bool isPng = false;
    bool isScatter = false; // the second series against the first
    std::string title;
    int width = 900;
    int height = 600;
};

// The script that makes gnuplot draw a table on its standard output: bars for what has one value for each variable,
// component or batch, else lines. Missing values are gaps. No label is read as anything but text. Throws NCError when
// there is nothing to draw.
std::string PlotScript(ProjectData const &table, ProjectVector::VectorTypeEnum axis, PlotStyle const &style);
