#pragma once

#include "engine/statistics/RowSet.h"
#include "platform/containers/Missing.h"

#include <cmath>

namespace engine {

// X or Y of a model.
struct Side {
    std::vector<Term> const &terms;
    std::vector<TermScale> const &scales;
    ColumnTerms const &all;
    ColumnIDs const &columns;

    static Side X(ModelView const &model) {
        return {model.Fit().definition.xTerms, model.Fit().xScales, model.GetXColumnTerms(), model.XTerms()};
    }
    static Side Y(ModelView const &model) {
        return {model.Fit().definition.yTerms, model.Fit().yScales, model.GetYColumnTerms(), model.YTerms()};
    }
    std::string Label(Index term) const { return "(" + columns.GetName(static_cast<int>(term) + 1) + ")"; }
};

// Of the workset, of the data before scaling, of the data set.
enum class Units { Scaled, Transformed, Source };

inline Units UnitsOf(bool unscaled, bool backTransformed) {
    return backTransformed ? Units::Source : unscaled ? Units::Transformed : Units::Scaled;
}
inline Units UnitsOf(TriState::State unscaled, TriState::State backTransformed) {
    return UnitsOf(unscaled != TriState::No, backTransformed != TriState::No);
}

// The cells of one term in some rows, NaN where missing. Made for one pass over the source column: nothing is copied.
class TermCells {
public:
    TermCells(RowSet const &rows, Side const &side, Index term)
        : m_rows(rows), m_values(side.terms, side.scales, term, rows.Source()),
          m_plainCells(m_values.IsPlain() && !m_values.IsLagged() ? m_values.Cells() : std::span<float const>()),
          m_scale(side.scales[static_cast<std::size_t>(term)]) {}

    Index Size() const { return m_rows.Size(); }
    // What the data set holds for its rows, where that is what is observed in these units; else empty.
    std::span<float const> Stored(Units units) const {
        return units == Units::Scaled ? std::span<float const>() : m_plainCells;
    }
    double Observed(Index row, Units units) const {
        std::size_t const place = m_rows.SourceRow(row);
        if (place < m_plainCells.size() && !IsMissing(m_plainCells[place])) {
            double const cell = m_plainCells[place];
            return units == Units::Scaled ? (cell - m_scale.offset) * m_scale.weight : cell;
        }
        double const transformed = m_values.Transformed(place);
        if (units == Units::Scaled)
            return m_values.Scaled(place);
        // What is outside the domain of the transformation is missing in any units.
        return units == Units::Transformed || std::isnan(transformed) ? transformed : m_values.Source(place);
    }
    // A prediction that the model makes in its own units.
    double InUnits(Index row, double scaled, Units units) const {
        if (units == Units::Scaled)
            return scaled;
        if (!m_plainCells.empty())
            return m_scale.Unscale(scaled);
        std::size_t const place = m_rows.SourceRow(row);
        return units == Units::Transformed ? m_values.Unscale(place, scaled) : m_values.ToSource(place, scaled);
    }
    // One end of an interval about a prediction, all in workset scale: the lower for sign -1, the upper for 1. In other
    // units it need not be symmetric, and a falling transformation exchanges the ends.
    double Limit(Index row, double predicted, double halfWidth, Units units, int sign) const {
        int const turn = units == Units::Source && m_values.Falls() ? -1 : 1;
        double const end = InUnits(row, predicted + sign * turn * halfWidth, units);
        double const other = InUnits(row, predicted - sign * turn * halfWidth, units);
        // They may lie on both sides of a pole.
        return (other - end) * sign > 0 ? other : end;
    }
    // What is observed less such a prediction.
    double Residual(Index row, double scaled, Units units) const {
        return units == Units::Transformed ? (Observed(row, Units::Scaled) - scaled) / m_values.Weight()
                                           : Observed(row, units) - InUnits(row, scaled, units);
    }

private:
    RowSet const &m_rows;
    TermValues m_values;
    // The short way of a term that is neither transformed nor centred locally, lagged or a product; else empty.
    std::span<float const> m_plainCells;
    TermScale const &m_scale;
};

// What a model predicts for one term in workset scale; NaN for a row without observed X.
Vector PredictedX(RowSet const &rows, Index term, Index predictive, Index xOrthogonal);
Vector PredictedY(RowSet const &rows, Index term, Index size);

} // namespace engine
