#pragma once

#include "engine/models/Block.h"
#include "engine/models/ModelDefinition.h"

#include <span>
#include <string>

namespace engine {

// The data set that a definition's columns and rows count in. A cell of -99 is missing. Asked from several threads.
class SourceColumns {
public:
    virtual ~SourceColumns() = default;

    // All rows of a column; empty when the data set does not have it, which makes all its cells missing.
    virtual std::span<float const> Values(int column) const = 0;
    // How messages name the column.
    virtual std::string Name(int column) const = 0;
    // What is subtracted from each row's transformed value before centring; empty for nothing.
    virtual std::span<float const> LocalCentres(int /*column*/) const { return {}; }
};

// How a term was centred and scaled: x = (g - offset) * weight, g being the transformed value.
struct TermScale {
    double offset = 0;
    double weight = 1;
    // Of g over the observed cells, divisor count - 1; 0 with fewer than two of them.
    double deviation = 0;
    int observed = 0;
    bool centred = false;

    double Unscale(double x) const { return x / weight + offset; }

    bool operator==(TermScale const &) const = default;
};

// A value of the workset in the units of the data set; NaN or infinite where the transformation has no inverse there.
inline double BackTransform(Term const &term, TermScale const &scale, double x, double localCentre = 0) {
    return term.transformation.Invert(scale.Unscale(x) + localCentre);
}

// X and Y of a model: chosen rows and columns of a data set, transformed, centred and scaled. Y has no column for PCA.
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
