#include "engine/models/Workset.h"

#include "engine/models/Parallel.h"
#include "platform/Exception.h"
#include "platform/Missing.h"

#include <algorithm>
#include <atomic>
#include <limits>

namespace engine {
namespace {

constexpr double missing = std::numeric_limits<double>::quiet_NaN();

// The chosen rows of a column, transformed and locally centred; NaN where missing. Answers the count of the others.
Index TransformColumn(Term const &term, SourceColumns const &source, std::vector<int> const &rows, double *out) {
    auto const values = source.Values(term.column);
    auto const centres = source.LocalCentres(term.column);
    auto const &transformation = term.transformation;
    auto const plain = transformation.kind == TransformationKind::None && centres.empty();
    Index observed = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        auto const row = static_cast<std::size_t>(rows[i]);
        auto const value = row < values.size() ? values[row] : missingValue;
        double result = value;
        if (!plain)
            result = transformation.Apply(value) - (centres.empty() ? 0 : centres[row]);
        auto const known = value != missingValue && std::isfinite(result);
        out[i] = known ? result : missing;
        observed += known;
    }
    return observed;
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

TermScale Measure(Term const &term, Eigen::Ref<Vector const> const &observed) {
    TermScale scale;
    scale.observed = static_cast<int>(observed.size());
    if (scale.observed == 0)
        return scale;
    auto const mean = observed.mean();
    if (scale.observed > 1)
        scale.deviation = std::sqrt((observed.array() - mean).square().sum() / (scale.observed - 1));
    scale.centred = Centres(term.scaling);
    if (scale.centred)
        scale.offset = mean;
    auto const constant = scale.deviation <= 1e-12 * std::abs(mean);
    scale.weight = (constant ? 1 : ScalingWeight(term.scaling, scale.deviation)) * term.modifier * term.blockFactor;
    return scale;
}

// Only the values that are not missing.
Vector Observed(Eigen::Ref<Vector const> const &values, Index count) {
    Vector observed(count);
    std::ranges::copy_if(values, observed.begin(), [](double value) { return !std::isnan(value); });
    return observed;
}

// `scaleOf` gets a term's number, its transformed column and the count of observed cells there, and answers how to
// scale it; it is called from several threads.
template <typename ScaleOf>
Block Assemble(std::vector<Term> const &terms, SourceColumns const &source, std::vector<int> const &rows,
               ScaleOf scaleOf) {
    // Columns at a time, so that whole cache lines of the result's rows are written.
    constexpr Index group = 16;
    auto const n = static_cast<Index>(rows.size());
    auto const size = static_cast<Index>(terms.size());
    RowMatrix values(n, size);
    std::atomic<bool> complete = true;
    auto const groups = (size + group - 1) / group;
    auto const parts = std::min<Index>(groups, n * size < 500'000 ? 1 : 4);
    InParallel(parts, [&](Index part) {
        Matrix columns(n, std::min(group, size));
        auto const end = std::min(size, groups * (part + 1) / parts * group);
        for (auto first = groups * part / parts * group; first < end; first += group) {
            auto const count = std::min(group, end - first);
            for (Index k = 0; k < count; ++k) {
                auto column = columns.col(k);
                auto const observed = TransformColumn(terms[first + k], source, rows, column.data());
                if (observed < n)
                    complete = false;
                TermScale const scale = scaleOf(first + k, column, observed);
                column = (column.array() - scale.offset) * scale.weight;
            }
            values.middleCols(first, count) = columns.leftCols(count);
        }
    });
    return Block(std::move(values), complete);
}

Block BuildBlock(std::vector<Term> const &terms, SourceColumns const &source, std::vector<int> const &rows,
                 std::vector<TermScale> &scales) {
    scales.resize(terms.size());
    return Assemble(terms, source, rows, [&](Index k, auto const &column, Index observed) {
        scales[k] = Measure(terms[k], observed == column.size() ? column : Observed(column, observed));
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
    return Assemble(terms, source, rows, [&](Index k, auto const &, Index) { return scales[k]; });
}

} // namespace engine
