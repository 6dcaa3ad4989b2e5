#include "app/browse/Stepping.h"

#include "navigation/DataSeriesSwitcher.h"

using namespace DataSeriesUtilities;

bool Step(SelectDataSeriesData &selection, SteppedPart part, bool forward) {
    auto const run = [&](SwitchingType next, SwitchingType previous, bool batchFirst) {
        return DataSeriesSwitcher(&selection, forward ? next : previous, batchFirst);
    };
    switch (part) {
    case SteppedPart::Series:
        return run(SwitchNextSeries, SwitchPrevSeries, false);
    case SteppedPart::Axis:
        return run(SwitchNextAxis, SwitchPrevAxis, false);
    case SteppedPart::Batch:
        return run(SwitchNextAxis, SwitchPrevAxis, true);
    case SteppedPart::Model:
        return run(SwitchNextModel, SwitchPrevModel, false);
    }
    return false;
}
