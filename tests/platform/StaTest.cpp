#include "platform/numerics/Sta.h"

#include <boost/math/distributions/fisher_f.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

TEST(Sta, FFTestGivesCriticalValues) {
    double const infinite = std::numeric_limits<double>::infinity();
    struct {
        double df1, df2, p, expected, tolerance;
    } const cases[] = {{1, 3, 0.05, 10.127964, 1e-6},
                       {2, 3, 0.05, 9.552094, 1e-6},
                       {5, 20, 0.05, 2.710890, 1e-6},
                       {10, 100, 0.01, 2.503311, 1e-6},
                       {2.5, 7.5, 0.05, 4.360097, 1e-6},
                       {3, 7, 0.01, 8.451285, 1e-6},
                       // F(1, 1) = tan(pi (1 - p) / 2)^2, F(2, n) = n/2 (p^(-2/n) - 1), F(n, m; p) = 1 / F(m, n; 1 - p)
                       {1, 1, 0.2, 9.4721359550, 1e-9},
                       {2, 10, 1e-6, 74.244659623, 1e-7},
                       {20, 5, 0.95, 1 / 2.7108898372, 1e-9},
                       {3, 1e9, 0.05, 2.604909, 1e-5},
                       {1e6, 1e6, 0.5, 1, 1e-9},
                       {10, 10, 0.5, 1, 1e-9},
                       {1, 1, 1e-300, -99, 0}, // beyond what a double holds
                       {0, 3, 0.05, -99, 0},
                       {3, -1, 0.05, -99, 0},
                       {3, 3, 0, -99, 0},
                       {3, 3, 1, -99, 0},
                       {std::nan(""), 3, 0.5, -99, 0},
                       {3, infinite, 0.5, -99, 0},
                       {3, 3, std::nan(""), -99, 0}};
    for (auto const &c : cases)
        EXPECT_NEAR(Sta::FFTest(c.df1, c.df2, c.p), c.expected, c.tolerance) << c.df1 << ' ' << c.df2 << ' ' << c.p;
}

// The tail beyond it, by another way, lies between those beyond what is larger and smaller by the accuracy promised.
TEST(Sta, FFTestInvertsTheTail) {
    double const freedoms[] = {0.5, 1, 2.5, 7.5, 10, 33, 1000, 1e6, 1e10};
    for (double const df1 : freedoms)
        for (double const df2 : freedoms)
            for (double const p : {1e-30, 1e-6, 0.05, 0.49, 0.5, 0.51, 0.95, 1 - 1e-6}) {
                boost::math::fisher_f_distribution<long double> const f(df1, df2);
                double const found = Sta::FFTest(df1, df2, p);
                EXPECT_GE(cdf(complement(f, found * (1 - 1e-7L))), p * (1 - 1e-12L)) << df1 << ' ' << df2 << ' ' << p;
                EXPECT_LE(cdf(complement(f, found * (1 + 1e-7L))), p * (1 + 1e-12L)) << df1 << ' ' << df2 << ' ' << p;
            }
}
