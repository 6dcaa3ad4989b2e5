#pragma once

#include "platform/export.h"

// Statistical distributions.
namespace Sta {

// The critical value of the F distribution with `df1` and `df2` degrees of freedom: the f above which lies probability
// `p`. The degrees of freedom are real and above 0, `p` lies between 0 and 1, both excluded; -99 otherwise.
DATASERIES_API double FFTest(double df1, double df2, double p);

} // namespace Sta
