#include "engine/models/Workset.h"

#include "engine/models/Parallel.h"
#include "platform/text/Exception.h"

#include <algorithm>
#include <atomic>

namespace engine {
namespace {

// The chosen rows of a term, transformed and locally centred; NaN where missing. Answers the count of the others.
Index FillColumn(TermValues const &values, std::vector<int> const &rows, double *out) {
    constexpr double missing = std::numeric_limits<double>::quiet_NaN();
    std::span<float const> const cells = values.Cells();
    bool const isPlain = values.IsPlain() && !cells.empty();
    Index observed = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        auto const row = static_cast<std::size_t>(rows[i]);
        if (isPlain) {
            std::size_t const place = values.Place(row);
            out[i] = place >= cells.size() || IsMissing(cells[place]) ? missing : cells[place];
        } else {
            out[i] = values.Centred(row);
        }
        observed += !std::isnan(out[i]);
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
    // The second pass takes away what rounding has left of the sum over many rows.
    auto const rough = observed.mean();
    auto const mean = rough + (observed.array() - rough).mean();
    if (scale.observed > 1)
        scale.deviation = std::sqrt((observed.array() - mean).square().sum() / (scale.observed - 1));
    scale.centred = Centres(term.scaling);
    if (scale.centred)
        scale.offset = mean;
    if (scale.deviation <= 1e-12 * std::abs(mean))
        scale.deviation = 0;
    scale.weight = scale.IsConstant() ? 1 : ScalingWeight(term.scaling, scale.deviation);
    scale.weight *= term.modifier * term.blockFactor;
    return scale;
}

// "length", "length.L2", "length*width".
std::string NameOf(std::vector<Term> const &terms, Index place, SourceColumns const &source) {
    Term const &term = terms[static_cast<std::size_t>(place)];
    if (!term.IsProduct())
        return source.Name(term.column) + (term.lag > 0 ? ".L" + std::to_string(term.lag) : "");
    std::string name;
    for (int const factor : term.factors)
        name += (name.empty() ? "" : "*") + NameOf(terms, factor, source);
    return name;
}

// Only the values that are not missing.
Vector Observed(Eigen::Ref<Vector const> const &values, Index count) {
    Vector observed(count);
    std::ranges::copy_if(values, observed.begin(), [](double value) { return !std::isnan(value); });
    return observed;
}

void Scale(Eigen::Ref<Vector> column, TermScale const &scale) {
    column = (column.array() - scale.offset) * scale.weight;
}

// Some neighbouring terms, to the columns of `values` in their places. `scale` gets a term's place, its transformed
// column and the count of observed cells there, and scales the column; it is called from several threads. Answers
// whether no cell is missing.
template <typename ScaleColumn>
bool Fill(RowMatrix &values, Index begin, Index end, std::vector<Term> const &terms,
          std::vector<TermScale> const &scales, SourceColumns const &source, std::vector<int> const &rows,
          ScaleColumn scale) {
    // Columns at a time, so that whole cache lines of the result's rows are written.
    constexpr Index group = 16;
    Index const n = values.rows();
    Index const groups = (end - begin + group - 1) / group;
    Index const parts = std::min<Index>(groups, n * (end - begin) < 500'000 ? 1 : 4);
    std::atomic<bool> complete = true;
    InParallel(parts, [&](Index part) {
        Matrix columns(n, std::min(group, end - begin));
        Index const last = std::min(end, begin + groups * (part + 1) / parts * group);
        for (Index first = begin + groups * part / parts * group; first < last; first += group) {
            Index const count = std::min(group, last - first);
            for (Index k = 0; k < count; ++k) {
                auto column = columns.col(k);
                Index const observed = FillColumn(TermValues(terms, scales, first + k, source), rows, column.data());
                if (observed < n)
                    complete = false;
                scale(first + k, column, observed);
            }
            values.middleCols(first, count) = columns.leftCols(count);
        }
    });
    return complete;
}

Block BuildBlock(std::vector<Term> const &terms, SourceColumns const &source, std::vector<int> const &rows,
                 std::vector<TermScale> &scales) {
    auto const size = static_cast<Index>(terms.size());
    scales.assign(terms.size(), {});
    RowMatrix values(static_cast<Index>(rows.size()), size);
    auto const scale = [&](Index k, Eigen::Ref<Vector> column, Index observed) {
        bool const isComplete = observed == column.size();
        scales[k] = isComplete ? Measure(terms[k], column) : Measure(terms[k], Observed(column, observed));
        if (scales[k].observed == 0)
            throw NCError(ExceptionMessage::translate("Variable {1} has no value in the {2} chosen observations, after "
                                                      "its transformation. Expected at least one.") %
                              NameOf(terms, k, source) % rows.size(),
                          NCError::Error);
        Scale(column, scales[k]);
        if (scales[k].centred && scales[k].IsConstant())
            column *= 0; // and a missing cell stays NaN
    };
    // Products are made of scaled columns.
    Index const columns = std::ranges::find_if(terms, &Term::IsProduct) - terms.begin();
    bool const complete = Fill(values, 0, columns, terms, scales, source, rows, scale);
    bool const productsComplete = Fill(values, columns, size, terms, scales, source, rows, scale);
    return Block(std::move(values), complete && productsComplete);
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
    RowMatrix values(static_cast<Index>(rows.size()), static_cast<Index>(terms.size()));
    bool const complete = Fill(values, 0, values.cols(), terms, scales, source, rows,
                               [&](Index k, Eigen::Ref<Vector> column, Index) { Scale(column, scales[k]); });
    return Block(std::move(values), complete);
}

} // namespace engine
