#pragma once

#include "platform/export.h"

// Anchor for help on vectors. The texts are with the vectors: ProjectVector::GetHelpString.
class DATASERIES_API VectorHelp {
public:
    static VectorHelp *Instance();

private:
    VectorHelp() = default;
};
