#pragma once

#include "platform/containers/Missing.h"

#include <cstddef>

// Sum over the observed ones of `count` values that lie `stride` elements apart.
struct ObservedSum {
    double sum = 0;
    std::size_t count = 0;

    double Mean() const { return count > 0 ? KeepOffMissing(sum / static_cast<double>(count)) : missingValue; }
};

template <typename T, typename Function>
ObservedSum SumObserved(T const *values, std::size_t count, std::size_t stride, Function term) {
    ObservedSum total;
    for (std::size_t i = 0; i < count; ++i) {
        double const value = values[i * stride];
        bool const observed = value != missingValue;
        total.sum += observed ? term(value) : 0.0;
        total.count += observed;
    }
    return total;
}

template <typename T>
ObservedSum SumObserved(T const *values, std::size_t count, std::size_t stride) {
    return SumObserved(values, count, stride, [](double value) { return value; });
}

// Sum of squares about `center`.
template <typename T>
ObservedSum SquaresObserved(T const *values, std::size_t count, std::size_t stride, double center) {
    return SumObserved(values, count, stride, [center](double value) { return (value - center) * (value - center); });
}
