#pragma once

#include "platform/containers/NCDataVector.h"

#include <set>
#include <vector>

// Histograms of rows.
struct FrequencyHistogram {
    struct HistogramInfo {
        NCDataVector<float> heights;
        NCDataVector<float> positions;      // the middle of each bin
        std::vector<std::set<int>> columns; // in each bin, 1-based
    };
};
