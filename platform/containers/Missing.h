#pragma once

#include <cmath>

// The mark of a missing or not computable value in float rows, and of a result in double that could not be computed.
inline constexpr float missingValue = -99.0f;

inline bool IsMissing(float value) {
    return value == missingValue;
}

// A computed number as a table holds it: NaN and infinities become the missing mark, and a genuine number that would
// round to the mark becomes the next float towards zero, so that it is not taken for a missing one.
inline double KeepOffMissing(double value) {
    if (!std::isfinite(value))
        return missingValue;
    return static_cast<float>(value) == missingValue ? std::nextafterf(missingValue, 0.0f) : value;
}

// The same, rounded to the float that is stored. A number beyond the range of float becomes the missing mark.
inline float ToStored(double value) {
    float const stored = static_cast<float>(value);
    if (!std::isfinite(stored))
        return missingValue;
    return stored == missingValue ? static_cast<float>(KeepOffMissing(value)) : stored;
}
