#pragma once

#include "engine/models/Matrices.h"
#include "engine/models/ModelDefinition.h"

#include <cstdint>
#include <span>
#include <vector>

namespace engine {

// The points at which all batches of a model are read, so that they can be laid side by side (Nomikos & MacGregor 1995;
// Wold et al. 1998b).
struct AlignmentGrid {
    AlignmentMode mode = AlignmentMode::Length;
    Vector maturity; // of each point, rising in the maturity mode
    double step = 0; // between two points, on average

    Index Points() const { return maturity.size(); }
};

// The rows of batches as they are read at the points of a grid.
//
// By length, point j of L lies at position (j-1)(n-1)/(L-1) among the n rows of a batch. By maturity it lies where the
// batch has the maturity of the point; maturity counts as non-decreasing by its running maximum, of equal ones the last
// row stands, and beyond half a step outside of the batch there is nothing. Between two rows a value is interpolated
// linearly. Where one of them is missing, the nearest observed row stands in that is no further off than one row, or by
// maturity one step; of two that are equally near the earlier one.
class Alignment {
public:
    // `maturity` holds the Y variable of all rows, NaN where missing. Each batch has a row at least. Those that
    // `running` tells, from 0 and rising, are not finished: they are read by maturity on any grid.
    Alignment(AlignmentGrid const &grid, std::span<RowRange const> batches, Eigen::Ref<Vector const> const &maturity,
              std::span<std::size_t const> running = {});

    // The grid of a model by its own batches. In the length mode the maturity of a point is the mean of those that the
    // batches have there. `points` is 0 for the median of their lengths, rounded half up; `maturity` as above.
    static AlignmentGrid GridOf(AlignmentMode mode, int points, std::span<RowRange const> batches,
                                Eigen::Ref<Vector const> const &maturity);

    Index Points() const { return m_points; }
    Index Batches() const { return static_cast<Index>(m_tracks.size()) - 1; }

    // One batch, from 0, at each point, of a statistic that has a value for each row, NaN where missing.
    void Read(Index batch, Eigen::Ref<Vector const> const &values, std::span<double> points) const;
    // All batches: batches by points.
    RowMatrix ReadAll(Eigen::Ref<Vector const> const &values) const;

private:
    // A point between two rows, or at one of them.
    struct Place {
        std::int32_t row = 0;   // -1 for a point that the batch does not reach
        std::int32_t after = 0; // the same as `row` for a point at a row
        double part = 0;        // of the way from the one to the other
    };

    void AddRow(Index row, double position);
    // A point that lies so far on a track that begins at `begin`, behind the row at `at`.
    void AddPlace(std::size_t at, double position);
    void AddByLength(RowRange const &batch);
    void AddByMaturity(AlignmentGrid const &grid, RowRange const &batch, Eigen::Ref<Vector const> const &maturity);
    double Nearest(Place const &place, std::size_t batch, Eigen::Ref<Vector const> const &values) const;

    Index m_points;
    std::vector<double> m_reaches; // of each batch: how far off a row may stand in for a missing one
    std::vector<Place> m_places;   // batch after batch
    // For each batch its rows that count, with the position of each on the way of the batch; where tracks begin, and
    // where the last one ends.
    std::vector<std::int32_t> m_rows;
    std::vector<double> m_positions;
    std::vector<std::size_t> m_tracks = {0};
};

// Of the batches with a value at each point; the deviation with divisor count - 1. NaN where there are none, or for the
// deviation fewer than two.
struct AlignedSpread {
    Vector average, deviation;
};
AlignedSpread SpreadOfBatches(RowMatrix const &batches);

} // namespace engine
