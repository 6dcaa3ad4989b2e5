#include "platform/numerics/Sta.h"

#include "platform/containers/Missing.h"

#include <boost/math/special_functions/beta.hpp>

namespace Sta {

double FFTest(double df1, double df2, double p) {
    namespace policies = boost::math::policies;
    using Quiet = policies::policy<policies::domain_error<policies::ignore_error>,
                                   policies::overflow_error<policies::ignore_error>,
                                   policies::evaluation_error<policies::ignore_error>>;
    bool const inDomain = df1 > 0 && std::isfinite(df1) && df2 > 0 && std::isfinite(df2) && p > 0 && p < 1;
    if (!inDomain)
        return missingValue;
    // P(F > f) = I_z(df2/2, df1/2) with z = df2/(df2 + df1 f), I the regularised incomplete beta function. The inverse
    // gives 1 - z beside z, so that neither loses digits to the other.
    double complement = 0;
    double const z = boost::math::ibeta_inv(df2 / 2, df1 / 2, p, &complement, Quiet());
    return KeepOffMissing(df2 / df1 * (complement / z));
}

} // namespace Sta
