#pragma once

#include "platform/export.h"

#include <string>

// Kinds of models, as a bit mask.
struct DATASERIES_API ModelTypeE {
    enum Model : int {
        None = 0,
        PCA = 1,
        PLS = 2,
        PLSDA = 4, // PLS on 0/1 columns, one for each class
        OPLS = 8,
        O2PLS = 16,
        AnyPLS = PLS | PLSDA,
        AnyOPLS = OPLS | O2PLS,
        WithoutOrthogonal = PCA | AnyPLS,
        WithY = AnyPLS | AnyOPLS,
        Any = PCA | WithY
    };

    // The name of one kind ("PCA", "PLS", "PLS-DA", "OPLS", "O2PLS"); empty for none or several.
    static std::string GetModelTypeName(Model type);
    static bool IsOPLSorO2PLS(Model type) { return (type & AnyOPLS) != 0; }
    // PLS whose components are not split into predictive and orthogonal ones.
    static bool IsPlainPLS(Model type) { return (type & WithY) != 0 && !IsOPLSorO2PLS(type); }
    static bool IsO2PLS(Model type) { return (type & O2PLS) != 0; }

    // The kinds of both masks together.
    static Model CombinedType(Model one, Model other) { return static_cast<Model>(one | other); }
};
