#pragma once

#include <vector>

// How the difference of a variable between two groups of observations is weighted in a contribution.
struct WeightTypeE {
    enum WeightType : int {
        Normalized = 0, // in standard deviations of the variable
        P = 1,          // by the loading p of a component
        WStar = 2,      // by the weight w* of a component
        RX = 3,         // by the square root of the explained variation of the X variable
        RY = 4,         // by that of a response
        CoeffCS = 5,    // by the regression coefficient, difference in standard deviations
        CoeffCSRaw = 6, // by the regression coefficient, difference in scaled units
        VIP = 7,        // by the importance of the variable
        Raw = 8,        // not at all, difference in scaled units
        PO = 9          // by the orthogonal loading p_o of a component
    };
};

using WeightTypes = std::vector<WeightTypeE::WeightType>;
