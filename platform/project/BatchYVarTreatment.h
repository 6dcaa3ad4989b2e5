#pragma once

#include "platform/project/NCModel.h"

#include <string>

// What is done to the Y variable of a batch model before it is used, batch by batch.
struct BatchYVarTreatment {
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
};
