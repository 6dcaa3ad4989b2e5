#pragma once

#include "platform/project/NCModel.h"

#include <span>
#include <string>

// What is done to the Y variable of a batch model before it is used, batch by batch.
struct DATASERIES_API BatchYVarTreatment {
    enum Treatment : int { None = 0, Shifted = 1, Normalized = 2, Smoothed = 3 };

    static int GetTreatment(NCBatchModel const &model) { return model.GetYVarTreatment(); }

    // Empty for none.
    static std::string ToString(int treatment) {
        switch (treatment) {
        case Shifted:
            return "Shifted";
        case Normalized:
            return "Normalized";
        case Smoothed:
            return "Smoothed";
        default:
            return {};
        }
    }

    // Treats the values of one batch in place, in the order of its observations. NaN is a missing value, stays one, and
    // does not count as first or last. With y(1) the first and y(n) the last observed value:
    //   Shifted     y - y(1)
    //   Normalized  (y - y(1))/(y(n) - y(1)), missing where the batch ends where it began
    //   Smoothed    the least-squares parabola in the position within the batch, then its running maximum, so that
    //               maturity never goes back; of one or two observed values a constant or a line
    // Any other treatment changes nothing.
    static void Apply(int treatment, std::span<double> values);
};
