#include "platform/numerics/Sta.h"

#include "platform/containers/Missing.h"

#include <boost/math/special_functions/beta.hpp>
#include <boost/math/tools/toms748_solve.hpp>

namespace Sta {

namespace {

namespace policies = boost::math::policies;
using Quiet =
    policies::policy<policies::domain_error<policies::ignore_error>, policies::pole_error<policies::ignore_error>,
                     policies::overflow_error<policies::ignore_error>,
                     policies::underflow_error<policies::ignore_error>, policies::denorm_error<policies::ignore_error>,
                     policies::rounding_error<policies::ignore_error>,
                     policies::evaluation_error<policies::ignore_error>>;

// The logarithm of a tail of the F distribution at f = df2/df1 e^odds: P(F > f) = I_z(df2/2, df1/2) for the upper one,
// with z = df2/(df2 + df1 f) = 1/(1 + e^odds), I the regularised incomplete beta function. Of z and 1 - z the smaller
// one is given on, which has all its digits.
double LogTail(double df1, double df2, double odds, bool upper) {
    double const smaller = 1 / (1 + std::exp(std::abs(odds)));
    auto const [a, b] = odds > 0 ? std::pair(df2 / 2, df1 / 2) : std::pair(df1 / 2, df2 / 2);
    double const tail =
        upper == (odds > 0) ? boost::math::ibeta(a, b, smaller, Quiet()) : boost::math::ibetac(a, b, smaller, Quiet());
    constexpr double nothing = -1e4;
    return tail > 0 ? std::log(tail) : nothing;
}

} // namespace

double FFTest(double df1, double df2, double p) {
    bool const inDomain = df1 > 0 && std::isfinite(df1) && df2 > 0 && std::isfinite(df2) && p > 0 && p < 1;
    if (!inDomain)
        return missingValue;
    // The smaller tail tells more.
    bool const upper = p <= 0.5;
    double const target = std::log(upper ? p : 1 - p);
    auto const excess = [&](double odds) { return LogTail(df1, df2, odds, upper) - target; };
    // Beyond these odds f is no double.
    constexpr double most = 700;
    double const low = excess(-most);
    double const high = excess(most);
    if (!(low * high <= 0))
        return missingValue;
    auto const isFound = [](double a, double b) { return std::abs(b - a) < 1e-13 * (1 + std::abs(a)); };
    std::uintmax_t rounds = 200; // by halving alone a hundred would do
    auto const [from, to] = boost::math::tools::toms748_solve(excess, -most, most, low, high, isFound, rounds, Quiet());
    return KeepOffMissing(df2 / df1 * std::exp((from + to) / 2));
}

} // namespace Sta
