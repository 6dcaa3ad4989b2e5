#include "platform/numerics/FrequencyHistogram.h"

#include "platform/containers/NCDataMatrix.h"

#include <algorithm>
#include <cmath>

namespace {

// The bins between the least value and the greatest.
struct Bins {
    std::size_t observed = 0;
    float least = missingValue;
    float most = missingValue;
    int count = 0;
    double width = 0;

    explicit Bins(NCDataVector<float> const &row)
        : observed(row.size() - static_cast<std::size_t>(std::ranges::count_if(row, IsMissing))) {
        if (observed == 0)
            return;
        NCDataMatrix<float>(row).GetRowMinMax(1, least, most);
        constexpr int fewest = 3;
        count = IsConstant()
                    ? fewest
                    : std::max(fewest, static_cast<int>(std::ceil(1 + std::log2(static_cast<double>(observed)))));
        width = IsConstant() ? 1.0 : (static_cast<double>(most) - least) / count;
    }
    bool IsConstant() const { return least == most; }
    // Of the first bin, the lower edge.
    double Start() const { return IsConstant() ? least - 0.5 * count * width : least; }
};

} // namespace

void FrequencyHistogram::CreateHistogram(NCDataVector<float> const &row, HistogramInfo &info) {
    Bins const bins(row);
    info = {NCDataVector<float>(bins.count, 0.0f), NCDataVector<float>(bins.count),
            std::vector<std::vector<int>>(static_cast<std::size_t>(bins.count))};
    std::span<float> const heights = info.heights.MutableValues(), positions = info.positions.MutableValues();
    for (std::size_t bin = 0; bin < positions.size(); ++bin)
        positions[bin] = ToStored(bins.Start() + (static_cast<double>(bin) + 0.5) * bins.width);
    int column = 0;
    for (float const value : row) {
        ++column;
        if (IsMissing(value))
            continue;
        auto const bin =
            static_cast<std::size_t>(std::min(static_cast<int>((value - bins.Start()) / bins.width), bins.count - 1));
        ++heights[bin];
        info.columns[bin].push_back(column);
    }
}

void FrequencyHistogram::CreateDotPlotHistogram(NCDataVector<float> const &row, NCDataVector<float> &positions,
                                                NCDataVector<float> &stack, float &lo, float &hi) {
    Bins const bins(row);
    positions = NCDataVector<float>(row.Size());
    stack = NCDataVector<float>(row.Size());
    double const reach = bins.IsConstant() ? 0.5 : 0.5 * bins.width;
    lo = bins.observed > 0 ? ToStored(bins.least - reach) : missingValue;
    hi = bins.observed > 0 ? ToStored(bins.most + reach) : missingValue;

    NCIntegralVector<int, -99> order; // missing values last
    row.Sort(order);
    auto const value = [&](std::size_t place) { return static_cast<double>(row[order[static_cast<int>(place) + 1]]); };
    std::span<float> const middles = positions.MutableValues(), heights = stack.MutableValues();
    for (std::size_t first = 0, end = 0; first < bins.observed; first = end) {
        // What rounding adds to a difference is no reason for another stack.
        double const top = value(first) + bins.width + 1e-9 * (std::abs(value(first)) + bins.width);
        while (end < bins.observed && value(end) <= top)
            ++end;
        for (std::size_t place = first; place < end; ++place) {
            auto const at = static_cast<std::size_t>(order[static_cast<int>(place) + 1] - 1);
            middles[at] = ToStored(0.5 * (value(first) + value(end - 1)));
            heights[at] = static_cast<float>(place - first + 1);
        }
    }
}
