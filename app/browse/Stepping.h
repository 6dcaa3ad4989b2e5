#pragma once

#include "selection/SelectDataSeriesData.h"

// Which part of a plot moves to its neighbour: the series or the X axis along what they step over (a component, a term,
// a variable, an observation), the batches that are shown, the model. Where there is no X axis to move the batches do,
// and the other way round.
enum class SteppedPart { Series, Axis, Batch, Model };

// False when there is nothing to step over, or no model that way. True too at the end, where nothing moves. NCError
// "Could not change to the next model." for a model that can't show all of the plot; the selection then is as it was.
bool Step(SelectDataSeriesData &selection, SteppedPart part, bool forward);
