#include "platform/project/PLSTrees.h"

#include "platform/identity/ProjectData.h"
#include "platform/project/GetProjectData.h"

#include <algorithm>
#include <functional>
#include <limits>

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

// The sum of squares about the mean of the values so far (Welford 1962).
class SquaresSoFar {
public:
    double Add(float value) {
        if (!IsMissing(value)) {
            ++m_count;
            double const step = value - m_mean;
            m_mean += step / m_count;
            m_squares += step * (value - m_mean);
        }
        return m_squares;
    }

private:
    double m_count = 0;
    double m_mean = 0;
    double m_squares = 0;
};

// For the cut behind each but the last of the values: what is left of their sum of squares within both parts, as a part
// of it. NaN for all when they are constant.
std::vector<double> PartsWithin(std::vector<float> const &values) {
    std::vector<double> within(values.size() - 1);
    SquaresSoFar below, above;
    for (std::size_t j = 0; j + 1 < values.size(); ++j)
        within[j] = below.Add(values[j]);
    double const all = below.Add(values.back());
    for (std::size_t j = values.size() - 1; j > 0; --j)
        within[j - 1] = all > 0 ? (within[j - 1] + above.Add(values[j])) / all : none;
    return within;
}

// Positions of the observed values, in rising order.
NCIntegralVector<int, -99> OrderOf(NCDataVector<float> const &scores) {
    NCIntegralVector<int, -99> order;
    scores.Sort(order);
    auto const observed = std::ranges::count_if(scores, [](float value) { return !IsMissing(value); });
    order.resize(static_cast<int>(observed));
    return order;
}

std::vector<float> InOrderOf(NCIntegralVector<int, -99> const &order, std::span<float const> values) {
    std::vector<float> sorted;
    for (int const position : order)
        sorted.push_back(values[static_cast<std::size_t>(position - 1)]);
    return sorted;
}

} // namespace

int PLSTreeProperties::LeastPart(int observations) {
    return std::clamp(observations / 4, 1, 5);
}

NCDataMatrix<float> PLSTrees::GetValues(int model) const {
    GetProjectData const statistics(m_project);
    IntList const first{1};
    TablePtr const scores = statistics.GetT(model, &first, -1);
    if (!scores || scores->Rows() == 0)
        return {};
    NCDataMatrix<float> values = scores->GetMatrix();
    if (TablePtr const responses = statistics.GetYVar(model, false, false, nullptr, -1))
        values.AppendRows(responses->GetMatrix());
    return values;
}

void PLSTrees::GetAllCutWeights(NCDataMatrix<float> const &in, NCDataMatrix<float> &out, int mode) const {
    out = NCDataMatrix<float>(4, in.Columns());
    auto const order = in.Rows() > 0 ? OrderOf(in[1]) : NCIntegralVector<int, -99>();
    int const count = order.Size();
    if (count < 2)
        return;
    std::vector<double> const ofScore = PartsWithin(InOrderOf(order, in.Row(1)));
    std::vector<double> sums(ofScore.size());
    int responses = 0;
    for (int row = 2; row <= in.Rows(); ++row) {
        std::vector<double> const parts = PartsWithin(InOrderOf(order, in.Row(row)));
        if (std::isnan(parts.front()))
            continue;
        ++responses;
        std::ranges::transform(parts, sums, sums.begin(), std::plus());
    }
    int const smallest = mode == AllPositions         ? 1
                         : m_properties.smallest == 0 ? PLSTreeProperties::LeastPart(count)
                                                      : m_properties.smallest;
    auto const [alpha, beta] = std::pair(m_properties.scoreShare, m_properties.balanceShare);
    for (int j = smallest; j <= count - smallest; ++j) {
        auto const at = static_cast<std::size_t>(j - 1);
        double const t = ofScore[at];
        double const y = sums[at] / responses;
        double const unbalance = (2.0 * j - count) / count;
        double const n = unbalance * unbalance;
        int const column = mode == SortedByScore ? j : order[j];
        out(Cut, column) = ToStored((1 - beta) * (alpha * t + (1 - alpha) * y) + beta * n);
        out(NCut, column) = ToStored(n);
        out(TCut, column) = ToStored(t);
        out(YCut, column) = ToStored(y);
    }
}

std::optional<PLSTrees::Place> PLSTrees::FindCut(NCDataMatrix<float> const &in) const {
    NCDataMatrix<float> weights;
    GetAllCutWeights(in, weights, SortedByScore);
    if (weights.Columns() == 0)
        return {};
    std::span<float const> const cut = weights.Row(Cut);
    auto const least = std::ranges::min_element(
        cut, {}, [](float weight) { return IsMissing(weight) ? std::numeric_limits<float>::infinity() : weight; });
    if (IsMissing(*least))
        return {};
    auto const order = OrderOf(in[1]);
    Place place = {static_cast<int>(least - cut.begin()) + 1, *least, 0, {order.begin(), order.end()}};
    place.score = (in(1, order[place.below]) + in(1, order[place.below + 1])) / 2;
    return place;
}
