#pragma once

#include "engine/statistics/RowSet.h"
#include "platform/Missing.h"

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

// The cells of one term in some rows. Values are NaN where the cell is missing, or outside the domain of the term's
// transformation. Made for one pass over the source column: nothing is copied.
class TermCells {
public:
    TermCells(RowSet const &rows, Side const &side, Index term)
        : m_rows(rows), m_term(side.terms[static_cast<std::size_t>(term)]),
          m_scale(side.scales[static_cast<std::size_t>(term)]), m_values(rows.Source().Values(m_term.column)),
          m_centres(rows.Source().LocalCentres(m_term.column)) {}

    Index Size() const { return m_rows.Size(); }
    double Observed(Index row, Units units) const {
        std::size_t const place = m_rows.SourceRow(row);
        if (place >= m_values.size() || IsMissing(m_values[place]))
            return notComputable;
        double const value = m_values[place];
        double const transformed = m_term.transformation.Apply(value);
        if (!std::isfinite(transformed))
            return notComputable;
        if (units == Units::Scaled)
            return (transformed - Centre(place) - m_scale.offset) * m_scale.weight;
        return units == Units::Source ? value : transformed;
    }
    // A prediction that the model makes in its own units.
    double InUnits(Index row, double scaled, Units units) const {
        if (units == Units::Scaled)
            return scaled;
        double const transformed = m_scale.Unscale(scaled) + Centre(m_rows.SourceRow(row));
        return units == Units::Transformed ? transformed : m_term.transformation.Invert(transformed);
    }
    // What is observed less such a prediction.
    double Residual(Index row, double scaled, Units units) const {
        double const observed = Observed(row, units);
        return units == Units::Transformed ? (Observed(row, Units::Scaled) - scaled) / m_scale.weight
                                           : observed - InUnits(row, scaled, units);
    }

private:
    double Centre(std::size_t place) const { return m_centres.empty() ? 0.0 : m_centres[place]; }

    RowSet const &m_rows;
    Term const &m_term;
    TermScale const &m_scale;
    std::span<float const> m_values;
    std::span<float const> m_centres;
};

// What a model predicts for one term in workset scale; NaN for a row without observed X.
Vector PredictedX(RowSet const &rows, Index term, Index predictive, Index xOrthogonal);
Vector PredictedY(RowSet const &rows, Index term, Index size);

} // namespace engine
