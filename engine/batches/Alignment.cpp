#include "engine/batches/Alignment.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace engine {

namespace {

constexpr double missing = std::numeric_limits<double>::quiet_NaN();

// Of an even number, the mean of the two in the middle.
double Median(std::vector<double> values) {
    if (values.empty())
        return missing;
    auto const middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    if (values.size() % 2 == 1)
        return *middle;
    return (*middle + *std::max_element(values.begin(), middle)) / 2;
}

int MedianLength(std::span<RowRange const> batches) {
    std::vector<double> lengths;
    for (RowRange const &batch : batches)
        lengths.push_back(static_cast<double>(batch.count));
    return batches.empty() ? 0 : static_cast<int>(std::floor(Median(std::move(lengths)) + 0.5));
}

// Median over the batches of the smallest and of the largest maturity.
std::pair<double, double> UsualRange(std::span<RowRange const> batches, Eigen::Ref<Vector const> const &maturity) {
    std::vector<double> smallest, largest;
    for (RowRange const &batch : batches) {
        double low = missing, high = missing;
        for (double const value : maturity.segment(batch.first, batch.count)) {
            low = std::fmin(low, value);
            high = std::fmax(high, value);
        }
        if (std::isnan(low))
            continue;
        smallest.push_back(low);
        largest.push_back(high);
    }
    return {Median(std::move(smallest)), Median(std::move(largest))};
}

} // namespace

AlignmentGrid Alignment::GridOf(AlignmentMode mode, int points, std::span<RowRange const> batches,
                                Eigen::Ref<Vector const> const &maturity) {
    Index const size = points > 0 ? points : MedianLength(batches);
    AlignmentGrid grid{mode, Vector::Zero(size), 0};
    if (mode == AlignmentMode::Maturity) {
        auto const [low, high] = UsualRange(batches, maturity);
        grid.step = size > 1 ? (high - low) / static_cast<double>(size - 1) : 0;
        for (Index j = 0; j < size; ++j)
            grid.maturity[j] = low + static_cast<double>(j) * grid.step;
        return grid;
    }
    Alignment const alignment(grid, batches, maturity);
    grid.maturity = SpreadOfBatches(alignment.ReadAll(maturity)).average;
    grid.step = size > 1 ? (grid.maturity[size - 1] - grid.maturity[0]) / static_cast<double>(size - 1) : 0;
    return grid;
}

Alignment::Alignment(AlignmentGrid const &grid, std::span<RowRange const> batches,
                     Eigen::Ref<Vector const> const &maturity, std::span<std::size_t const> running)
    : m_points(grid.Points()) {
    m_places.reserve(batches.size() * static_cast<std::size_t>(m_points));
    for (std::size_t batch = 0; batch < batches.size(); ++batch) {
        bool const byLength =
            grid.mode == AlignmentMode::Length && !std::binary_search(running.begin(), running.end(), batch);
        if (byLength)
            AddByLength(batches[batch]);
        else
            AddByMaturity(grid, batches[batch], maturity);
        m_reaches.push_back(byLength ? 1 : grid.step);
        m_tracks.push_back(m_rows.size());
    }
}

void Alignment::AddRow(Index row, double position) {
    m_rows.push_back(static_cast<std::int32_t>(row));
    m_positions.push_back(position);
}

void Alignment::AddPlace(std::size_t at, double position) {
    double const beyond = position - m_positions[at];
    if (beyond > 0)
        m_places.push_back({m_rows[at], m_rows[at + 1], beyond / (m_positions[at + 1] - m_positions[at])});
    else
        m_places.push_back({m_rows[at], m_rows[at], 0});
}

void Alignment::AddByLength(RowRange const &batch) {
    std::size_t const begin = m_rows.size();
    for (Index row = 0; row < batch.count; ++row)
        AddRow(batch.first + row, static_cast<double>(row));
    for (Index j = 0; j < m_points; ++j) {
        // In integers, so that a batch of as many rows as there are points is itself.
        Index const way = j * (batch.count - 1);
        Index const parts = std::max<Index>(1, m_points - 1);
        AddPlace(begin + static_cast<std::size_t>(way / parts),
                 static_cast<double>(way / parts) + static_cast<double>(way % parts) / static_cast<double>(parts));
    }
}

void Alignment::AddByMaturity(AlignmentGrid const &grid, RowRange const &batch,
                              Eigen::Ref<Vector const> const &maturity) {
    std::size_t const begin = m_rows.size();
    for (Index row = batch.first; row < batch.first + batch.count; ++row) {
        double const own = maturity[row];
        if (std::isnan(own))
            continue;
        if (m_rows.size() == begin || own > m_positions.back())
            AddRow(row, own);
        else
            m_rows.back() = static_cast<std::int32_t>(row);
    }
    auto const track = std::span(m_positions).subspan(begin);
    for (double const target : grid.maturity) {
        bool const isWithin =
            !track.empty() && target >= track.front() - grid.step / 2 && target <= track.back() + grid.step / 2;
        if (!isWithin) {
            m_places.push_back({-1, -1, 0});
            continue;
        }
        double const position = std::clamp(target, track.front(), track.back());
        auto const at = std::ranges::upper_bound(track, position) - track.begin() - 1;
        AddPlace(begin + static_cast<std::size_t>(at), position);
    }
}

// The observed row that is nearest to a point between rows of which one at least is missing.
double Alignment::Nearest(Place const &place, std::size_t batch, Eigen::Ref<Vector const> const &values) const {
    std::size_t const begin = m_tracks[batch], end = m_tracks[batch + 1];
    auto const row = std::lower_bound(m_rows.begin() + static_cast<std::ptrdiff_t>(begin),
                                      m_rows.begin() + static_cast<std::ptrdiff_t>(end), place.row);
    auto const at = static_cast<std::size_t>(row - m_rows.begin());
    double const position = place.after == place.row
                                ? m_positions[at]
                                : m_positions[at] + place.part * (m_positions[at + 1] - m_positions[at]);
    auto const distance = [&](std::size_t other) { return std::abs(m_positions[other] - position); };
    double nearest = missing;
    double reach = m_reaches[batch];
    for (std::size_t back = at + 1; back > begin && distance(back - 1) <= reach; --back)
        if (double const value = values[m_rows[back - 1]]; !std::isnan(value)) {
            nearest = value;
            reach = distance(back - 1);
            break;
        }
    for (std::size_t ahead = at + 1; ahead < end && distance(ahead) <= reach; ++ahead)
        if (double const value = values[m_rows[ahead]]; !std::isnan(value))
            return distance(ahead) < reach || std::isnan(nearest) ? value : nearest;
    return nearest;
}

void Alignment::Read(Index batch, Eigen::Ref<Vector const> const &values, std::span<double> points) const {
    Place const *place = m_places.data() + batch * m_points;
    for (double &point : points) {
        if (place->row < 0) {
            point = missing;
        } else {
            double const value = values[place->row];
            point = value + (values[place->after] - value) * place->part;
            if (std::isnan(point))
                point = Nearest(*place, static_cast<std::size_t>(batch), values);
        }
        ++place;
    }
}

RowMatrix Alignment::ReadAll(Eigen::Ref<Vector const> const &values) const {
    RowMatrix all(Batches(), m_points);
    for (Index batch = 0; batch < Batches(); ++batch)
        Read(batch, values, {all.row(batch).data(), static_cast<std::size_t>(m_points)});
    return all;
}

AlignedSpread SpreadOfBatches(RowMatrix const &batches) {
    Index const points = batches.cols();
    Vector counts = Vector::Zero(points), sums = Vector::Zero(points), squares = Vector::Zero(points);
    // In one pass over each row: a missing value is not equal to itself.
    auto const add = [&](auto const &ofRow) {
        for (Index batch = 0; batch < batches.rows(); ++batch) {
            double const *const row = batches.row(batch).data();
            for (Index j = 0; j < points; ++j)
                ofRow(j, row[j], row[j] == row[j]);
        }
    };
    add([&](Index j, double value, bool observed) {
        counts[j] += observed ? 1 : 0;
        sums[j] += observed ? value : 0;
    });
    Vector const average = (counts.array() > 0).select(sums.array() / counts.array(), missing);
    add([&](Index j, double value, bool observed) {
        double const off = observed ? value - average[j] : 0;
        squares[j] += off * off;
    });
    return {average, (counts.array() > 1).select((squares.array() / (counts.array() - 1)).sqrt(), missing)};
}

} // namespace engine
