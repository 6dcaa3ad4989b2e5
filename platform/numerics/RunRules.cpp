#include "platform/numerics/RunRules.h"

#include "platform/containers/Missing.h"

#include <algorithm>

namespace {

struct Rule {
    std::ptrdiff_t beyond, of; // so many of so many successive points
    double deviations;
};

constexpr Rule rules[] = {{1, 1, 3}, {2, 3, 2}, {4, 5, 1}, {8, 8, 0}};

} // namespace

std::vector<int> RunRules(std::span<float const> points, double centre, double deviation) {
    std::vector<int> completed(points.size());
    if (!(deviation > 0))
        return completed;
    for (std::ptrdiff_t point = 0; point < std::ssize(points); ++point)
        for (int rule = 4; rule >= 1; --rule) {
            Rule const &asked = rules[rule - 1];
            for (double const side : {1.0, -1.0}) {
                auto const isBeyond = [&](float value) {
                    return !IsMissing(value) && side * (value - centre) > asked.deviations * deviation;
                };
                auto const end = points.begin() + point + 1;
                auto const begin = end - std::min(asked.of, point + 1);
                if (isBeyond(*(end - 1)) && std::count_if(begin, end, isBeyond) >= asked.beyond)
                    completed[static_cast<std::size_t>(point)] = rule;
            }
        }
    return completed;
}
