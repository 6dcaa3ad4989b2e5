#pragma once

#include "platform/containers/NCDataVector.h"
#include "platform/export.h"

#include <vector>

// Histograms of rows. Missing values are left out.
struct DATASERIES_API FrequencyHistogram {
    struct HistogramInfo {
        NCDataVector<float> heights;           // counts
        NCDataVector<float> positions;         // the middle of each bin
        std::vector<std::vector<int>> columns; // in each bin, 1-based and rising
    };

    // Bins of equal width from the least value to the greatest, about as many as the count has binary digits and three
    // at least (Sturges 1926). Values that are all the same fill the middle one of three bins of width 1. Empty when
    // there is no value.
    static void CreateHistogram(NCDataVector<float> const &row, HistogramInfo &info);

    // A dot for each value (Wilkinson 1999): values within the width of such a bin above the least of them stand on one
    // another. `positions` is the middle of each value's stack, `stack` the height in it, counted from 1 with the least
    // value; -99 for missing values. The dots reach from `lo` to `hi`; both -99 when there is no value.
    static void CreateDotPlotHistogram(NCDataVector<float> const &row, NCDataVector<float> &positions,
                                       NCDataVector<float> &stack, float &lo, float &hi);
};
