#include "platform/numerics/ControlChart.h"

#include "platform/text/Translate.h"

#include <boost/math/special_functions/gamma.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <mutex>
#include <numbers>
#include <numeric>
#include <vector>

namespace {

bool IsSet(double value) {
    return value != missingValue;
}

// P(W > w) of the range W of n standard normal values is 1 - n Int phi(x) (Phi(x + w) - Phi(x))^(n-1) dx (Tippett
// 1925); its integral over w is the mean of W, that of 2 w P(W > w) the mean square. Within the grid lies all that a
// double can hold. The inner integrand falls off like a normal density, for which the rule of equal weights is exact to
// the last digits; the outer one begins at w = 0, with the rule of Simpson.
void RangeMoments(int n, double &mean, double &meanSquare) {
    constexpr int steps = 400;
    constexpr double step = 0.05, reach = 10.0;
    std::array<double, steps + 1> density, below;
    for (int at = 0; at <= steps; ++at) {
        double const x = at * step - reach;
        density[static_cast<std::size_t>(at)] = std::exp(-0.5 * x * x) / std::sqrt(2 * std::numbers::pi);
        below[static_cast<std::size_t>(at)] = 0.5 * std::erfc(-x / std::numbers::sqrt2);
    }
    mean = meanSquare = 0;
    for (int width = 0; width <= steps; ++width) {
        double within = 0;
        for (int at = 0; at <= steps; ++at) {
            auto const low = static_cast<std::size_t>(at), high = static_cast<std::size_t>(std::min(at + width, steps));
            within += density[low] * std::pow(below[high] - below[low], n - 1);
        }
        double const weight = (width == 0 || width == steps ? 1.0 : width % 2 == 1 ? 4.0 : 2.0) * step / 3;
        double const beyond = 1 - n * step * within;
        mean += weight * beyond;
        meanSquare += weight * 2 * width * step * beyond;
    }
}

ControlChart::Constants Compute(int n) {
    double mean, meanSquare;
    RangeMoments(n, mean, meanSquare);
    // Gamma(n/2) / Gamma((n-1)/2)
    double const ratio = 1 / boost::math::tgamma_delta_ratio(0.5 * (n - 1), 0.5);
    return {mean, std::sqrt(meanSquare - mean * mean), std::sqrt(2.0 / (n - 1)) * ratio};
}

// Shares of a mean below and above it that lie three standard deviations, each `relative` of the mean, from it.
double Lower(double relative) {
    return std::max(0.0, 1 - 3 * relative);
}
double Upper(double relative) {
    return 1 + 3 * relative;
}

double SpreadOfSpread(double c4) {
    return std::sqrt(1 - c4 * c4) / c4;
}

ControlChart::Limits Around(double centre, double lower, double upper) {
    if (!IsSet(centre))
        return {missingValue, missingValue, missingValue};
    return {lower * centre, centre, upper * centre};
}

} // namespace

ControlChart::Constants ControlChart::Constants::Of(int n) {
    static std::mutex mutex;
    static std::map<int, Constants> known;
    std::lock_guard const lock(mutex);
    auto const found = known.find(n);
    return found != known.end() ? found->second : known.emplace(n, Compute(n)).first->second;
}

double ControlChart::Constants::D3() const {
    return Lower(d3 / d2);
}
double ControlChart::Constants::D4() const {
    return Upper(d3 / d2);
}
double ControlChart::Constants::B3() const {
    return Lower(SpreadOfSpread(c4));
}
double ControlChart::Constants::B4() const {
    return Upper(SpreadOfSpread(c4));
}

ControlChart::ControlChart(ControlType type, NCDataVector<float> const &values, int subgroupSize, EWMAType ewmaType)
    : m_type(type), m_ewmaType(ewmaType), m_size(std::max(1, subgroupSize)), m_mean(values.Size() / m_size),
      m_range(m_mean.Size()), m_spread(m_mean.Size()) {
    if (m_size == 1)
        SummariseSingles(values);
    else
        Summarise(values);
    m_meanRange = m_range.GetMean();
    m_meanSpread = m_spread.GetMean();
}

void ControlChart::SummariseSingles(NCDataVector<float> const &values) {
    m_mean = values;
    double const d2 = Constants::Of(2).d2;
    std::span<float> const ranges = m_range.MutableValues(), spreads = m_spread.MutableValues();
    for (std::size_t point = 1; point < values.size(); ++point) {
        float const before = values.Values()[point - 1], value = values.Values()[point];
        if (IsMissing(before) || IsMissing(value))
            continue;
        ranges[point] = std::abs(value - before);
        spreads[point] = static_cast<float>(ranges[point] / d2);
    }
}

void ControlChart::Summarise(NCDataVector<float> const &values) {
    std::span<float> const means = m_mean.MutableValues(), ranges = m_range.MutableValues(),
                           spreads = m_spread.MutableValues();
    auto const size = static_cast<std::size_t>(m_size);
    std::vector<float> observed;
    for (std::size_t point = 0; point < means.size(); ++point) {
        observed.clear();
        std::ranges::remove_copy_if(values.Values().subspan(point * size, size), std::back_inserter(observed),
                                    IsMissing);
        if (observed.empty())
            continue;
        auto const count = static_cast<double>(observed.size());
        double const mean = std::accumulate(observed.begin(), observed.end(), 0.0) / count;
        means[point] = ToStored(mean);
        if (observed.size() == 1)
            continue;
        auto const [least, most] = std::ranges::minmax(observed);
        ranges[point] = most - least;
        double squares = 0;
        for (float const value : observed)
            squares += (value - mean) * (value - mean);
        spreads[point] = ToStored(std::sqrt(squares / (count - 1)));
    }
}

std::string ControlChart::ToString(EWMAType type) {
    return type == Predictive ? translate("Predictive") : translate("Filtered");
}

void ControlChart::SetCuSumLimits(double allowance, double interval) {
    m_allowance = allowance;
    m_interval = interval;
}

void ControlChart::ImportLimits(ControlChart const &other) {
    m_target = other.GetTarget();
    m_stdDev = other.GetStdDevSubgroup();
    m_lambda = other.GetEWMALambda();
    m_meanRange = other.m_meanRange;
    m_meanSpread = other.m_meanSpread;
}

double ControlChart::GetTarget() const {
    return IsSet(m_target) ? m_target : m_mean.GetMean();
}

double ControlChart::GetStdDevSubgroup() const {
    if (IsSet(m_stdDev))
        return m_stdDev;
    bool const isOfRanges = m_type == MeanAndRange || m_size == 1;
    double const mean = isOfRanges ? m_meanRange : m_meanSpread;
    if (!IsSet(mean))
        return missingValue;
    Constants const constants = Constants::Of(std::max(2, m_size));
    return mean / (isOfRanges ? constants.d2 : constants.c4);
}

double ControlChart::GetStdDevOfPoint() const {
    double const stdDev = GetStdDevSubgroup();
    return IsSet(stdDev) ? stdDev / std::sqrt(m_size) : stdDev;
}

double ControlChart::ForecastError(double lambda) const {
    double forecast = GetTarget();
    double sum = 0;
    for (float const mean : m_mean)
        if (!IsMissing(mean)) {
            double const error = mean - forecast;
            sum += error * error;
            forecast += lambda * error;
        }
    return sum;
}

double ControlChart::GetEWMALambda() const {
    if (IsSet(m_lambda))
        return m_lambda;
    constexpr int candidates = 20;
    double best = 0, least = HUGE_VAL;
    for (int candidate = 1; candidate <= candidates; ++candidate) {
        double const lambda = static_cast<double>(candidate) / candidates;
        double const error = ForecastError(lambda);
        if (error < least) {
            best = lambda;
            least = error;
        }
    }
    return best;
}

NCDataVector<float> ControlChart::GetEWMA() const {
    NCDataVector<float> ewma(Points());
    std::span<float> const shown = ewma.MutableValues();
    double const lambda = GetEWMALambda();
    double average = GetTarget();
    for (std::size_t point = 0; point < shown.size(); ++point) {
        float const mean = m_mean.Values()[point];
        if (IsMissing(mean))
            continue;
        double const forecast = average;
        average += lambda * (mean - average);
        shown[point] = ToStored(m_ewmaType == Predictive ? forecast : average);
    }
    return ewma;
}

NCDataVector<float> ControlChart::CuSum(int sign) const {
    NCDataVector<float> sums(Points());
    double const deviation = GetStdDevOfPoint();
    if (!IsSet(deviation))
        return sums;
    std::span<float> const shown = sums.MutableValues();
    double const target = GetTarget();
    double sum = 0;
    for (std::size_t point = 0; point < shown.size(); ++point) {
        float const mean = m_mean.Values()[point];
        if (IsMissing(mean))
            continue;
        sum = std::max(0.0, sum + sign * (mean - target) - m_allowance * deviation);
        shown[point] = ToStored(sum);
    }
    return sums;
}

NCDataVector<float> ControlChart::GetDevFromTarget() const {
    NCDataVector<float> deviations = m_mean;
    double const target = GetTarget();
    for (float &value : deviations.MutableValues())
        if (!IsMissing(value))
            value = ToStored(value - target);
    return deviations;
}

ControlChart::Limits ControlChart::GetMeanLimits(double deviations) const {
    double const target = GetTarget(), deviation = GetStdDevOfPoint();
    if (!IsSet(target) || !IsSet(deviation))
        return {missingValue, target, missingValue};
    return {target - deviations * deviation, target, target + deviations * deviation};
}

ControlChart::Limits ControlChart::GetRangeLimits() const {
    Constants const constants = Constants::Of(std::max(2, m_size));
    return Around(m_meanRange, constants.D3(), constants.D4());
}

ControlChart::Limits ControlChart::GetStdDevLimits() const {
    // What single values have is a range, divided.
    if (m_size == 1)
        return Around(m_meanSpread, Constants::Of(2).D3(), Constants::Of(2).D4());
    Constants const constants = Constants::Of(m_size);
    return Around(m_meanSpread, constants.B3(), constants.B4());
}

NCDataVector<float> ControlChart::GetEWMAHalfWidths(double deviations) const {
    NCDataVector<float> widths(Points());
    double const deviation = GetStdDevOfPoint();
    if (!IsSet(deviation))
        return widths;
    double const lambda = GetEWMALambda();
    double const final = deviations * deviation * std::sqrt(lambda / (2 - lambda));
    // (1 - lambda)^(2 j) of the point j, and of the point before it for forecasts
    double remains = m_ewmaType == Predictive ? 1.0 : (1 - lambda) * (1 - lambda);
    for (float &width : widths.MutableValues()) {
        width = ToStored(final * std::sqrt(1 - remains));
        remains *= (1 - lambda) * (1 - lambda);
    }
    return widths;
}

double ControlChart::GetCuSumInterval() const {
    double const deviation = GetStdDevOfPoint();
    return IsSet(deviation) ? m_interval * deviation : deviation;
}
