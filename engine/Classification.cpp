#include "engine/Classification.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>

namespace engine {

namespace {

double Share(int part, int all) {
    return all == 0 ? std::numeric_limits<double>::quiet_NaN() : static_cast<double>(part) / all;
}

} // namespace

int ConfusionTable::SizeOf(std::size_t trueClass) const {
    auto const row = m_counts.begin() + static_cast<std::ptrdiff_t>(trueClass * m_classes);
    return std::accumulate(row, row + static_cast<std::ptrdiff_t>(m_classes), 0);
}

int ConfusionTable::Size() const {
    return std::accumulate(m_counts.begin(), m_counts.end(), 0);
}

int ConfusionTable::Misclassified() const {
    int wrong = Size();
    for (std::size_t each = 0; each < m_classes; ++each)
        wrong -= Count(each, each);
    return wrong;
}

int ConfusionTable::TakenFor(std::size_t predictedClass) const {
    int count = 0;
    for (std::size_t each = 0; each < m_classes; ++each)
        count += Count(each, predictedClass);
    return count;
}

double ConfusionTable::Sensitivity(std::size_t ofClass) const {
    return Share(Count(ofClass, ofClass), SizeOf(ofClass));
}

double ConfusionTable::Specificity(std::size_t ofClass) const {
    int const others = Size() - SizeOf(ofClass);
    return Share(others - (TakenFor(ofClass) - Count(ofClass, ofClass)), others);
}

RocCurve RocOf(std::span<double const> scores, std::vector<bool> const &isOfClass) {
    std::vector<std::size_t> order;
    double total[2] = {0, 0}; // others, those of the class
    for (std::size_t i = 0; i < scores.size(); ++i)
        if (!std::isnan(scores[i])) {
            order.push_back(i);
            ++total[isOfClass[i]];
        }
    if (total[0] == 0 || total[1] == 0)
        return {{}, std::numeric_limits<double>::quiet_NaN()};
    std::ranges::sort(order, std::greater<>(), [&](std::size_t i) { return scores[i]; });
    RocCurve curve{{{0, 0}}, 0};
    double count[2] = {0, 0};
    for (std::size_t i = 0; i < order.size(); ++i) {
        ++count[isOfClass[order[i]]];
        if (i + 1 < order.size() && scores[order[i + 1]] == scores[order[i]])
            continue;
        RocCurve::Point const before = curve.points.back();
        curve.points.push_back({count[0] / total[0], count[1] / total[1]});
        RocCurve::Point const &now = curve.points.back();
        curve.area += (now.falsePositives - before.falsePositives) * (now.truePositives + before.truePositives) / 2;
    }
    return curve;
}

} // namespace engine
