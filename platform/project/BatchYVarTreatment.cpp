#include "platform/project/BatchYVarTreatment.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace {

constexpr std::size_t termsOfParabola = 3;

// The observed values of a batch, and their positions in it.
struct ObservedPoints {
    std::vector<double> positions, values;

    explicit ObservedPoints(std::span<double const> all) {
        for (std::size_t i = 0; i < all.size(); ++i)
            if (!std::isnan(all[i])) {
                positions.push_back(static_cast<double>(i));
                values.push_back(all[i]);
            }
    }
};

double Dot(std::vector<double> const &a, std::vector<double> const &b) {
    return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

// The least-squares polynomial of so many terms at its own points, by polynomials that are orthogonal on them, each
// made of the two before (Forsythe 1957).
std::vector<double> FittedPolynomial(ObservedPoints const &points, std::size_t terms) {
    std::size_t const count = points.values.size();
    std::vector<double> fitted(count, 0.0), before(count, 0.0), polynomial(count, 1.0), left = points.values;
    double normBefore = 1.0;
    for (std::size_t term = 0; term < std::min(terms, count); ++term) {
        double const norm = Dot(polynomial, polynomial);
        double const share = Dot(left, polynomial) / norm;
        double centre = 0.0;
        for (std::size_t i = 0; i < count; ++i) {
            fitted[i] += share * polynomial[i];
            left[i] -= share * polynomial[i];
            centre += points.positions[i] * polynomial[i] * polynomial[i] / norm;
        }
        for (std::size_t i = 0; i < count; ++i) {
            double const next = (points.positions[i] - centre) * polynomial[i] - norm / normBefore * before[i];
            before[i] = polynomial[i];
            polynomial[i] = next;
        }
        normBefore = norm;
    }
    return fitted;
}

void Smooth(std::span<double> values, ObservedPoints const &points) {
    std::vector<double> const fitted = FittedPolynomial(points, termsOfParabola);
    double highest = -std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < fitted.size(); ++i)
        values[static_cast<std::size_t>(points.positions[i])] = highest = std::max(highest, fitted[i]);
}

} // namespace

void BatchYVarTreatment::Apply(int treatment, std::span<double> values) {
    ObservedPoints const points(values);
    if (points.values.empty())
        return;
    if (treatment == Smoothed)
        return Smooth(values, points);
    if (treatment != Shifted && treatment != Normalized)
        return;
    double const first = points.values.front();
    double const range = points.values.back() - first;
    double const unit = treatment == Shifted ? 1.0 : range == 0.0 ? std::numeric_limits<double>::quiet_NaN() : range;
    for (double &value : values)
        value = (value - first) / unit;
}
