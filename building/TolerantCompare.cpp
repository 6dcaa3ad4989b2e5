#include "building/TolerantCompare_internal.h"

#include <algorithm>
#include <cmath>

namespace ProjectDataUtilities {

int TolerantCompare(double a, double b) {
    int exponent = 0;
    std::frexp(std::max(std::abs(a), std::abs(b)), &exponent);
    double const tolerance = std::ldexp(1.1920928955078125e-7, exponent);
    return a - b > tolerance ? 1 : a - b < -tolerance ? -1 : 0;
}

} // namespace ProjectDataUtilities
