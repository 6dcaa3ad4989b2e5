#pragma once

#include "platform/export.h"

namespace DataSeriesUtilities {

// Which kind of contribution a plot stands for.
class DATASERIES_API ContributionModeEnum {
public:
    enum Mode : int {
        None = 0,
        Score = 1,
        DModX = 2,
        DModY = 3,
        YPred = 4,
        AlignedScore = 5,
        AlignedYPred = 6,
        AlignedDModX = 7,
        AlignedDModY = 8
    };

    // The text forms of YPred and AlignedYPred are crossed: written texts read back as the other one. Saved plots hold
    // them so.
    static char const *FromContributionMode(Mode mode);
    static Mode ToContributionMode(char const *text);

    static bool IsAlignedEnabled(Mode mode) { return mode >= AlignedScore && mode <= AlignedDModY; }
    static bool IsScoreOrYPred(Mode mode) { return mode == Score || (mode >= YPred && mode <= AlignedYPred); }
};

} // namespace DataSeriesUtilities
