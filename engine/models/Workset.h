#pragma once

#include "engine/models/Block.h"
#include "engine/models/ModelDefinition.h"
#include "platform/containers/Missing.h"

#include <cmath>
#include <limits>
#include <span>
#include <string>

namespace engine {

// The data set that a definition's columns and rows count in. A cell of -99 is missing. Asked from several threads.
class SourceColumns {
public:
    virtual ~SourceColumns() = default;

    // All rows of a column; empty when the data set does not have it, which makes all its cells missing.
    virtual std::span<float const> Values(int column) const = 0;
    // The same before anything is done to the responses of batches.
    virtual std::span<float const> Untreated(int column) const { return Values(column); }
    // How messages name the column.
    virtual std::string Name(int column) const = 0;
    // The group of each row that terms are locally centred by, from 0, -1 for a row of none; empty where nothing is.
    virtual std::span<int const> Groups() const { return {}; }
    // The first row of the batch that each row is in; empty where all rows are one batch. Asked for lagged terms only.
    virtual std::span<int const> BatchBeginnings() const { return {}; }
};

// How a term was centred and scaled: x = (g - offset) * weight, g being the transformed value.
struct TermScale {
    double offset = 0;
    double weight = 1;
    // Of g over the observed cells, divisor count - 1; 0 with fewer than two of them and where it is but rounding.
    double deviation = 0;
    int observed = 0;
    bool centred = false;

    bool IsConstant() const { return deviation == 0; }
    double Unscale(double x) const { return x / weight + offset; }

    bool operator==(TermScale const &) const = default;
};

// The values of one term of a block in the rows of a source. NaN where a cell is missing, where it is outside the
// domain of the term's transformation, and where its row has no centre value. Nothing is copied: the arguments must
// outlive it.
class TermValues {
public:
    TermValues(std::vector<Term> const &terms, std::vector<TermScale> const &scales, Index place,
               SourceColumns const &source)
        : m_term(terms[static_cast<std::size_t>(place)]), m_scale(scales[static_cast<std::size_t>(place)]),
          m_values(source.Values(m_term.column)),
          m_groups(m_term.centres.empty() ? std::span<int const>() : source.Groups()),
          m_beginnings(m_term.lag > 0 ? source.BatchBeginnings() : std::span<int const>()) {
        for (int const factor : m_term.factors)
            m_factors.emplace_back(terms, scales, factor, source);
    }

    // In the units of the data set; a product has none, and is as it is before it is centred and scaled.
    double Source(std::size_t row) const { return m_term.IsProduct() ? Product(row) : Cell(row); }
    double Transformed(std::size_t row) const {
        if (m_term.IsProduct())
            return Product(row);
        double const transformed = m_term.transformation.Apply(Cell(row));
        return std::isfinite(transformed) ? transformed : missing;
    }
    // What local centring subtracts from the transformed value.
    double Centre(std::size_t at) const {
        if (m_term.centres.empty())
            return 0;
        std::size_t const row = Place(at);
        int const group = row < m_groups.size() ? m_groups[row] : -1;
        double const centre = group < 0 ? missingValue : m_term.centres[static_cast<std::size_t>(group)];
        return centre == missingValue ? missing : centre;
    }
    double Centred(std::size_t row) const { return Transformed(row) - Centre(row); }
    double Scaled(std::size_t row) const { return (Centred(row) - m_scale.offset) * m_scale.weight; }

    // The way back from a value in the scale of the workset.
    double Unscale(std::size_t row, double scaled) const { return m_scale.Unscale(scaled) + Centre(row); }
    double ToSource(std::size_t row, double scaled) const { return m_term.transformation.Invert(Unscale(row, scaled)); }
    double Weight() const { return m_scale.weight; }
    bool Falls() const { return m_term.transformation.Falls(); }

    // Whether the values are the cells as they are, -99 for a missing one: neither transformed nor centred locally.
    bool IsPlain() const {
        return !m_term.IsProduct() && m_term.centres.empty() && m_term.transformation.kind == TransformationKind::None;
    }
    // The cells of the column; those of a row are at its place, beyond the end where there is none.
    std::span<float const> Cells() const { return m_values; }
    bool IsLagged() const { return m_term.lag > 0; }
    std::size_t Place(std::size_t row) const {
        auto const lag = static_cast<std::size_t>(m_term.lag);
        if (lag == 0)
            return row;
        std::size_t const first = row < m_beginnings.size() ? static_cast<std::size_t>(m_beginnings[row]) : 0;
        return row - first < lag ? m_values.size() : row - lag;
    }

private:
    static constexpr double missing = std::numeric_limits<double>::quiet_NaN();

    double Cell(std::size_t at) const {
        std::size_t const row = Place(at);
        return row < m_values.size() && !::IsMissing(m_values[row]) ? m_values[row] : missing;
    }
    double Product(std::size_t row) const {
        double product = 1;
        for (TermValues const &factor : m_factors)
            product *= factor.Scaled(row) / (factor.m_term.modifier * factor.m_term.blockFactor);
        return product;
    }

    Term const &m_term;
    TermScale const &m_scale;
    std::span<float const> m_values;
    std::span<int const> m_groups;
    std::span<int const> m_beginnings;
    std::vector<TermValues> m_factors;
};

// X and Y of a model: chosen rows and columns of a data set, transformed, centred and scaled. Y has no column for PCA.
// A centred term that is constant is exactly 0.
struct Workset {
    Block x, y;
    std::vector<TermScale> xScales, yScales;

    // Throws NCError when there are fewer than two rows, no X term, a model that needs Y without Y terms, or a term
    // without any observed cell.
    static Workset Build(ModelDefinition const &definition, SourceColumns const &source);
};

// Other rows (from 0) of any data set with the same columns, treated as the terms of a workset were.
Block ScaleRows(std::vector<Term> const &terms, std::vector<TermScale> const &scales, SourceColumns const &source,
                std::vector<int> const &rows);

} // namespace engine
