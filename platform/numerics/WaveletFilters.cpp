#include "platform/numerics/Wavelet.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <map>
#include <mutex>
#include <numbers>
#include <numeric>

namespace {

using Real = long double;
using Complex = std::complex<Real>;
// By rising powers.
using Polynomial = std::vector<Real>;

Polynomial Product(Polynomial const &a, Polynomial const &b) {
    Polynomial product(a.size() + b.size() - 1);
    for (std::size_t i = 0; i < a.size(); ++i)
        for (std::size_t j = 0; j < b.size(); ++j)
            product[i + j] += a[i] * b[j];
    return product;
}

Complex ValueAt(Polynomial const &polynomial, Complex x) {
    Complex value;
    for (auto coefficient = polynomial.rbegin(); coefficient != polynomial.rend(); ++coefficient)
        value = value * x + *coefficient;
    return value;
}

// All roots at once (Durand 1960; Kerner 1966). The roots are simple.
std::vector<Complex> RootsOf(Polynomial const &polynomial) {
    std::vector<Complex> roots(polynomial.size() - 1);
    Complex start = 1;
    for (Complex &root : roots)
        root = start *= Complex(0.4L, 0.9L);
    constexpr int mostRounds = 1000;
    constexpr Real enough = 1e-17L;
    Real change = 1;
    for (int round = 0; round < mostRounds && change > enough; ++round) {
        change = 0;
        for (std::size_t i = 0; i < roots.size(); ++i) {
            Complex others = polynomial.back();
            for (std::size_t j = 0; j < roots.size(); ++j)
                if (j != i)
                    others *= roots[i] - roots[j];
            Complex const step = ValueAt(polynomial, roots[i]) / others;
            roots[i] -= step;
            change = std::max(change, std::abs(step));
        }
    }
    return roots;
}

// The factors 1 - z x of the filter with `order` vanishing moments, z within the unit circle: one of degree 1 for each
// real z, one of degree 2 for two that are conjugate. Each z = w +- sqrt(w^2 - 1), w = 1 - 2 y, comes of a root y of
// sum_k binomial(order - 1 + k, k) y^k with y = (2 - z - 1/z)/4 (Daubechies 1988).
std::vector<Polynomial> FactorsWithin(int order) {
    Polynomial polynomial = {1};
    for (int k = 1; k < order; ++k)
        polynomial.push_back(polynomial.back() * static_cast<Real>(order - 1 + k) / static_cast<Real>(k));
    std::vector<Polynomial> factors;
    for (Complex const y : RootsOf(polynomial)) {
        constexpr Real rounding = 1e-10L;
        if (y.imag() < -rounding)
            continue; // its conjugate stands for both
        Complex const w = Real(1) - Real(2) * y;
        Complex const root = std::sqrt(w * w - Real(1));
        Complex const z = std::abs(w + root) < 1 ? w + root : w - root;
        factors.push_back(y.imag() > rounding ? Polynomial{1, -2 * z.real(), std::norm(z)} : Polynomial{1, -z.real()});
    }
    return factors;
}

// With taps that add up to sqrt(2).
Polynomial Normalised(Polynomial filter) {
    Real const factor = std::numbers::sqrt2_v<Real> / std::accumulate(filter.begin(), filter.end(), Real(0));
    for (Real &tap : filter)
        tap *= factor;
    return filter;
}

// (1 + x)^order times the factors; of those whose bit in `mirrored` is set the roots are replaced by their reciprocals.
Polynomial FilterOf(int order, std::vector<Polynomial> const &factors, unsigned mirrored) {
    Polynomial filter = {1};
    for (int i = 0; i < order; ++i)
        filter = Product(filter, {1, 1});
    for (std::size_t i = 0; i < factors.size(); ++i)
        filter = Product(filter,
                         (mirrored >> i & 1U) != 0 ? Polynomial(factors[i].rbegin(), factors[i].rend()) : factors[i]);
    return Normalised(std::move(filter));
}

// How far the phase of a filter is from linear: the sum of squared deviations of its unwrapped phase from the best line
// through the origin, at equally spaced frequencies.
Real PhaseDeviation(Polynomial const &filter) {
    constexpr int steps = 1024; // from 0 to pi, where the response is 0
    Complex last = ValueAt(filter, 1);
    Real phase = 0;
    Real squares = 0, products = 0, phases = 0;
    for (int step = 1; step < steps; ++step) {
        Real const frequency = std::numbers::pi_v<Real> * step / steps;
        Complex const response = ValueAt(filter, std::polar(Real(1), -frequency));
        phase += std::arg(response / last);
        last = response;
        squares += frequency * frequency;
        products += frequency * phase;
        phases += phase * phase;
    }
    return phases - products * products / squares;
}

// The most symmetric of the filters with these moments (Daubechies 1992, 8.1). A filter and its mirror deviate alike,
// so that one factor may stay as it is.
Polynomial Symmlet(int order) {
    std::vector<Polynomial> const factors = FactorsWithin(order);
    Polynomial best;
    Real least = 0;
    for (unsigned mirrored = 0; mirrored < 1U << (factors.size() - 1); ++mirrored) {
        Polynomial filter = FilterOf(order, factors, mirrored);
        Real const deviation = PhaseDeviation(filter);
        if (best.empty() || deviation < least) {
            best = std::move(filter);
            least = deviation;
        }
    }
    bool const isLate = std::ranges::max_element(best) - best.begin() >= order;
    if (isLate)
        std::ranges::reverse(best);
    return best;
}

// Daubechies 1992, table 8.1.
Polynomial Coiflet(int order) {
    if (order == 1) {
        Real const root = std::sqrt(Real(7));
        return Normalised({1 - root, 5 + root, 14 + 2 * root, 14 - 2 * root, 1 - root, -3 + root});
    }
    return Normalised({0.011587596739L, -0.029320137980L, -0.047639590310L, 0.273021046535L, 0.574682393857L,
                       0.294867193696L, -0.054085607092L, -0.042026480461L, 0.016744410163L, 0.003967883613L,
                       -0.001289203356L, -0.000509505399L});
}

Polynomial LowPassFilter(Wavelet::WaveletFunctionType function, int order) {
    switch (function) {
    case Wavelet::Symmlet:
        return Symmlet(order);
    case Wavelet::Coiflet:
        return Coiflet(order);
    default:
        return FilterOf(order, FactorsWithin(order), 0);
    }
}

// Orders that a function has, the first and the last.
std::pair<int, int> OrdersOf(Wavelet::WaveletFunctionType function) {
    switch (function) {
    case Wavelet::Symmlet:
        return {4, 9};
    case Wavelet::Coiflet:
        return {1, 2};
    default:
        return {1, 10};
    }
}

struct Known {
    std::mutex mutex;
    std::map<std::pair<Wavelet::WaveletFunctionType, int>, Wavelet::Filter> filters;
};

Known &KnownFilters() {
    static Known known;
    return known;
}

// Mirrored, every second tap with the other sign.
std::vector<double> HighPassFilter(std::vector<double> const &low) {
    std::vector<double> high(low.rbegin(), low.rend());
    for (std::size_t k = 1; k < high.size(); k += 2)
        high[k] = -high[k];
    return high;
}

} // namespace

Wavelet::Filter Wavelet::GetDecompositionFilter(WaveletFunctionType function, int order) {
    auto const [first, last] = OrdersOf(function);
    int const taken = std::clamp(order, first, last);
    Known &known = KnownFilters();
    std::lock_guard const lock(known.mutex);
    auto const [at, isNew] = known.filters.try_emplace({function, taken});
    if (isNew) {
        Polynomial const low = LowPassFilter(function, taken);
        at->second.low.assign(low.begin(), low.end());
        at->second.high = HighPassFilter(at->second.low);
    }
    return at->second;
}

void Wavelet::WaveletFilters::CleanUp() {
    Known &known = KnownFilters();
    std::lock_guard const lock(known.mutex);
    known.filters.clear();
}
