#pragma once

#include "platform/containers/NCIntegralVector.h"

// The select-objects list of a selection: one flag for each object.
class DATASERIES_API BoolVector : public NCIntegralVector<bool, 0> {
public:
    using NCIntegralVector<bool, 0>::NCIntegralVector;
};
