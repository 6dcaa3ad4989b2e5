#pragma once

#include "app/PlotScript.h"
#include "selection/SelectDataSeriesData.h"

// What an analyst expects on the picture of a selection: the ellipse of Hotelling's T2 on a plot of two scores, the
// critical distance on distances to the model, the diagonal on predicted against observed values, jack-knife error bars
// on cross-validated loadings, weights and coefficients. `table` is what the selection was built into.
void Decorate(SelectDataSeriesData const &selection, ProjectData const &table, PlotStyle &style);
