#pragma once

#include "platform/export.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <vector>

class SelectDataSeriesData;

// What stands behind the next and previous buttons of a plot.
namespace DataSeriesUtilities {

// Which way, and which part, as a bit mask. The parts run in the order: next and previous on the X axis, next and
// previous of the series, next and previous model.
enum SwitchingType : int {
    SwitchPrevAxis = 1,
    SwitchNextAxis = 2,
    SwitchNextSeries = 4,
    SwitchPrevSeries = 8,
    SwitchPrevModel = 16,
    SwitchNextModel = 32
};

// Moves the selection to the next or previous item of whatever it steps over: a component, an X or Y term, a variable,
// an observation, a batch; or to the neighbour of its model in the project's list. For the axis parts there are two
// candidates, the batches and the X axis, of which the first one that can run does; `batchFirst` puts them in that
// order. Scores and loadings of OPLS and O2PLS models stay among the predictive components.
//
// True when something has run, which may have been at its end. False too when there is no one model, or no neighbour
// of it, whatever ran before. NCError "Could not change to the next model." when that model cannot show the selection.
DATASERIES_API bool DataSeriesSwitcher(SelectDataSeriesData *selection, SwitchingType type, bool batchFirst);

// A selection for each series of the source, with its axes, settings and selected items, appended.
DATASERIES_API void CreateMultipleDataSeries(SelectDataSeriesData const &source,
                                             std::vector<boost::shared_ptr<SelectDataSeriesData>> &selections);

} // namespace DataSeriesUtilities
