#pragma once

#include "platform/export.h"
#include "platform/project/WeightTypeE.h"

#include <vector>

class SelectDataSeriesData;

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

    // What a selection shows: the answer of the first of its axes in use and its series that is a contribution; None
    // when there is none. A contribution to scores that is weighted by CoeffCSRaw is one to a predicted response.
    static Mode GetContributionMode(SelectDataSeriesData const *selection);
    // What contribution a plot can start: the answer of its first series, or else of its X axis. None for a plot
    // without series, of other rows than the selected ones (transformed to correlations, spectra, wavelets), or of
    // vectors that start none. `model` is -1 without one, `component` -1 where the vector has not one kind of them,
    // `number` the Y variable of a predicted response. None leaves all of them alone.
    static Mode GetContributionType(SelectDataSeriesData const *selection, int &model, int &component, int &number);
};

// The components that a selection shows, predictive ones first, and for each the weight by which a contribution
// explains it: w* of a PLS model, else p, and po of an orthogonal one. Both lists are appended to.
DATASERIES_API void CountWeightsAndComponents(SelectDataSeriesData const *selection, std::vector<int> &components,
                                              WeightTypes &weights);

} // namespace DataSeriesUtilities
