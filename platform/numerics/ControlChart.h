#pragma once

// Control charts of rows (Montgomery 2009): their choices. Numbers are kept in saved files.
struct ControlChart {
    enum ControlType : int { Individual = 0, MeanAndRange = 1, MeanAndStdDev = 2, CUSUM = 3, EWMA = 4 };

    // Which exponentially weighted average a chart shows: the one that includes the value itself, or the forecast for
    // it (Hunter 1986).
    enum EWMAType : int { Filtered = 0, Predictive = 1 };
};
