#pragma once

namespace ProjectDataUtilities {

// 1 when a is larger, -1 when b is, and 0 when they differ by no more than 2^-23 times the power of two just above the
// larger magnitude.
int TolerantCompare(double a, double b);

} // namespace ProjectDataUtilities
