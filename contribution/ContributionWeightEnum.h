#pragma once

#include "platform/export.h"
#include "platform/forward.h"
#include "platform/project/WeightTypeE.h"

#include <string>
#include <vector>

// How the differences between two groups of observations are weighted in a contribution, as one value for the user's
// choice; the statistics take a list of weights, one for each component.
class DATASERIES_API ContributionWeightEnum {
public:
    enum WeightType : int {
        Normalized = 0,
        P = 1,
        PO = 2,
        PP = 3,
        PPO = 4,
        POPO = 5,
        WStar = 6,
        WStarWStar = 7,
        CoeffCS = 8,
        VIP = 9,
        RX = 10,
        RY = 11,
        CoeffCSRaw = 12,
        PRange = 13,     // p of all listed components; of an OPLS model p and p_o of all its components
        WStarRange = 14, // w* of all listed components
        Raw = 15
    };

    // Saved names; empty for an unknown value, and 0 for an unknown name.
    static std::string GetWeightName(WeightType weight);
    static WeightType ToWeightType(char const *name);

    // The list for the statistics, empty for an unknown value. `model`, which may be null here and below for none, is
    // asked for PRange only.
    static WeightTypes NCWeightType(WeightType weight, ModelInfo const *model, std::vector<int> const &components);
    // The value behind such a list. Never WStarRange: a list of many w* reads as two of them.
    static WeightType FromWeightTypeE(WeightTypes const &weights);

    // Which choices of components a dialog offers for a weight.
    static bool HasComp1(WeightType weight, ModelInfo const *model);
    static bool HasComp2(WeightType weight, ModelInfo const *model);
    static bool HasPredictiveComp1(WeightType weight, ModelInfo const *model);
    static bool HasPredictiveComp2(WeightType weight, ModelInfo const *model);
    static bool HasDModComp1(WeightType weight, ModelInfo const *model);

    // Cumulative over components, so that the last one is the natural choice.
    static bool PreferLastComp(WeightType weight) { return weight >= CoeffCS && weight <= CoeffCSRaw; }
};
