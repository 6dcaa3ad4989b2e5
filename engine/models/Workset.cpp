#include "engine/models/Workset.h"

#include "platform/Exception.h"

#include <limits>
#include <numeric>

namespace engine {
namespace {

constexpr float missingMark = -99.0f;
constexpr double missing = std::numeric_limits<double>::quiet_NaN();

// The chosen rows of a column, transformed and locally centred; NaN where missing.
void TransformColumn(Term const &term, SourceColumns const &source, std::vector<int> const &rows, double *out) {
    auto const values = source.Values(term.column);
    auto const centres = source.LocalCentres(term.column);
    auto const &transformation = term.transformation;
    auto const plain = transformation.kind == TransformationKind::None;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        auto const row = static_cast<std::size_t>(rows[i]);
        auto const value = row < values.size() ? values[row] : missingMark;
        out[i] = value == missingMark ? missing : plain ? value : transformation.Apply(value);
        if (!centres.empty())
            out[i] -= centres[row];
    }
}

bool Centres(ScalingKind scaling) {
    return scaling == ScalingKind::Centred || scaling == ScalingKind::UnitVariance || scaling == ScalingKind::Pareto;
}

double ScalingWeight(ScalingKind scaling, double deviation) {
    switch (scaling) {
    case ScalingKind::UnitVariance:
    case ScalingKind::UnitVarianceUncentred:
        return 1 / deviation;
    case ScalingKind::Pareto:
    case ScalingKind::ParetoUncentred:
        return 1 / std::sqrt(deviation);
    default:
        return 1;
    }
}

TermScale Measure(Term const &term, double const *values, Index n) {
    TermScale scale;
    double sums[4] = {};
    for (Index i = 0; i < n; ++i)
        if (std::isfinite(values[i])) {
            sums[i % 4] += values[i];
            ++scale.observed;
        }
    if (scale.observed == 0)
        return scale;
    auto const mean = (sums[0] + sums[1] + sums[2] + sums[3]) / scale.observed;
    double squares[4] = {};
    for (Index i = 0; i < n; ++i)
        if (std::isfinite(values[i]))
            squares[i % 4] += (values[i] - mean) * (values[i] - mean);
    if (scale.observed > 1)
        scale.deviation = std::sqrt((squares[0] + squares[1] + squares[2] + squares[3]) / (scale.observed - 1));
    scale.centred = Centres(term.scaling);
    if (scale.centred)
        scale.offset = mean;
    auto const constant = scale.deviation <= 1e-12 * std::abs(mean);
    scale.weight = (constant ? 1 : ScalingWeight(term.scaling, scale.deviation)) * term.modifier * term.blockFactor;
    return scale;
}

// Works on as many columns at a time as fill a cache line of a row of the result. `Scale` gets a term's number and its
// transformed column and answers how to scale it.
template <typename Scale>
Block Assemble(std::vector<Term> const &terms, SourceColumns const &source, std::vector<int> const &rows, Scale scale) {
    auto const n = static_cast<Index>(rows.size());
    auto const size = static_cast<Index>(terms.size());
    RowMatrix values(n, size);
    Matrix columns(n, std::min<Index>(8, size));
    for (Index first = 0; first < size; first += 8) {
        auto const count = std::min<Index>(8, size - first);
        for (Index k = 0; k < count; ++k) {
            auto const column = columns.col(k).data();
            TransformColumn(terms[first + k], source, rows, column);
            TermScale const how = scale(first + k, column);
            columns.col(k) = (columns.col(k).array() - how.offset) * how.weight;
        }
        values.middleCols(first, count) = columns.leftCols(count);
    }
    return Block(std::move(values));
}

Block BuildBlock(std::vector<Term> const &terms, SourceColumns const &source, std::vector<int> const &rows,
                 std::vector<TermScale> &scales) {
    scales.resize(terms.size());
    return Assemble(terms, source, rows, [&](Index k, double const *column) {
        scales[k] = Measure(terms[k], column, static_cast<Index>(rows.size()));
        if (scales[k].observed == 0)
            throw NCError(ExceptionMessage::translate("Variable {1} has no value in the {2} chosen observations, after "
                                                      "its transformation. Expected at least one.") %
                              source.Name(terms[k].column) % rows.size(),
                          NCError::Error);
        return scales[k];
    });
}

} // namespace

Workset Workset::Build(ModelDefinition const &definition, SourceColumns const &source) {
    if (definition.rows.size() < 2)
        throw NCError(ExceptionMessage::translate("A model needs at least 2 observations, {1} are chosen.") %
                          definition.rows.size(),
                      NCError::Error);
    if (definition.xTerms.empty())
        throw NCError(ExceptionMessage::translate("A model needs at least one X variable."), NCError::Error);
    if (definition.HasY() != !definition.yTerms.empty())
        throw NCError(ExceptionMessage::translate("A model of this type with {1} Y variables cannot be fitted: PCA has "
                                                  "none, all others have at least one.") %
                          definition.yTerms.size(),
                      NCError::Error);
    Workset workset;
    workset.x = BuildBlock(definition.xTerms, source, definition.rows, workset.xScales);
    workset.y = BuildBlock(definition.yTerms, source, definition.rows, workset.yScales);
    return workset;
}

Block ScaleRows(std::vector<Term> const &terms, std::vector<TermScale> const &scales, SourceColumns const &source,
                std::vector<int> const &rows) {
    return Assemble(terms, source, rows, [&](Index k, double const *) { return scales[k]; });
}

} // namespace engine
