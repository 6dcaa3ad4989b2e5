#pragma once

#include "app/PlotScript.h"
#include "catalogue/ProjectVector.h"

#include <string>
#include <vector>

// How many components a range of T2 has: as the statistic reads it, -1 being the last one, and the first two numbers of
// a whole model 0.
int ComponentsInRange(ModelInfo const &model, ProjectVector::Arguments const &arguments);

// The table of functions of the cut of a PLS tree with its observations by rising t of the first component, as the tree
// orders them. Null for all other series, which are drawn as they are.
TablePtr InDrawnOrder(NCProject const &project, std::vector<DrawnSeries> const &series,
                      ProjectVector::VectorTypeEnum axis, ProjectData const &table);

// What an analyst expects on a picture: the ellipse of Hotelling's T2 on a plot of two scores, the critical value on
// distances to the model and on T2, the diagonal on predicted against observed values, jack-knife intervals on
// cross-validated loadings, weights and coefficients, steps of responses to a change, the least value of cut functions.
// `series` has one entry for each row of the table; otherwise only the form is set. `significance` is that of the
// critical distance, -1.0 the model's own.
void Decorate(NCProject const &project, std::vector<DrawnSeries> const &series, ProjectVector::VectorTypeEnum axis,
              float significance, ProjectData const &table, PlotStyle &style);
