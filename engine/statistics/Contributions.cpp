#include "engine/models/Prediction.h"
#include "engine/statistics/Answer.h"
#include "engine/statistics/RowStatistics.h"
#include "engine/statistics/TermStatistics.h"
#include "engine/statistics/Units.h"
#include "platform/project/NCProject.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <numeric>

// Contributions: what part each term has in the difference between two groups of observations, or in the distance of
// one group to the model (Miller et al. 1998; Westerhuis et al. 2000). One row, one column for each term. Only the
// rows of the groups are read. The Reconstruct flag has no effect.

namespace engine {

namespace {

// Some rows, numbered from 0 in their set.
using Places = std::vector<Index>;

// What is compared: rows by terms in workset scale, NaN where missing.
struct Quantity {
    std::function<RowMatrix(RowSet const &, Places const &)> cells;
    bool isX = false; // and no residual: the model keeps the average batch
};

RowMatrix ScaledCells(RowSet const &rows, Side const &side, Places const &places) {
    std::vector<int> sourceRows;
    for (Index const place : places)
        sourceRows.push_back(static_cast<int>(rows.SourceRow(place)));
    Block const block = ScaleRows(side.terms, side.scales, rows.Source(), sourceRows);
    RowMatrix cells = block.Values();
    for (Index row = 0; row < cells.rows(); ++row)
        for (std::uint32_t const k : block.MissingIn(row))
            cells(row, k) = notComputable;
    return cells;
}

RowMatrix XCells(RowSet const &rows, Places const &places) {
    return ScaledCells(rows, Side::X(rows.Model()), places);
}

Quantity const xQuantity{XCells, true};

Scores ScoresOf(RowSet const &rows, Places const &places) {
    Scores scores;
    scores.t = rows.T()(places, Eigen::all);
    scores.to = rows.To()(places, Eigen::all);
    return scores;
}

// What a model of that size leaves of X.
Quantity XResiduals(Index size) {
    return {[size](RowSet const &rows, Places const &places) -> RowMatrix {
        return XCells(rows, places) - PredictedX(rows.Model().Fit().components, ScoresOf(rows, places), size);
    }};
}

// What the whole model leaves of Y.
RowMatrix YResiduals(RowSet const &rows, Places const &places) {
    Components const &components = rows.Model().Fit().components;
    return ScaledCells(rows, Side::Y(rows.Model()), places) -
           PredictedY(components, ScoresOf(rows, places).t, components.Predictive());
}

// Sums over rows of one value for each term, which skip missing ones.
class ObservedSums {
public:
    void Add(Vector const &row) {
        if (m_sums.size() == 0)
            m_sums = m_counts = Vector::Zero(row.size());
        auto const observed = !row.array().isNaN();
        m_sums.array() += observed.select(row.array(), 0.0);
        m_counts.array() += observed.cast<double>();
    }
    // NaN where there is none.
    Vector Sum() const { return (m_counts.array() > 0).select(m_sums.array(), notComputable); }
    Vector Mean() const { return m_sums.array() / m_counts.array(); }

private:
    Vector m_sums, m_counts;
};

// The mean of a group; without elements when none of its members is there or has an observed cell of X. Members count
// from 1; an empty group stands for the first one.
Vector MeanOf(RowSource const &source, Quantity const &quantity, IntList const &group) {
    std::optional<RowSet> const rows = source.Rows();
    Places places;
    for (int const position : group.empty() ? IntList{1} : group)
        if (rows && position >= 1 && position <= rows->Size() && rows->HasX(position - 1))
            places.push_back(position - 1);
    if (places.empty())
        return {};
    RowMatrix const cells = quantity.cells(*rows, places);
    ObservedSums sums;
    for (auto const &row : cells.rowwise())
        sums.Add(row.transpose());
    return sums.Mean();
}

// A batch, from 1, at one of the points of the grid, from 0. Batch 0 is the average of all batches of the workset,
// which those of a prediction set are held against too.
struct AlignedPoint {
    int batch = 0;
    Index point = 0;
};
using AlignedPoints = std::vector<AlignedPoint>;

// A quantity of batches at aligned points; each batch is read when it is first needed.
class AlignedQuantity {
public:
    AlignedQuantity(RowSource const &source, Quantity const &quantity) : m_source(source), m_quantity(quantity) {}

    Vector Mean(AlignedPoints const &points) {
        ObservedSums sums;
        for (AlignedPoint const &at : points)
            sums.Add(OfBatch(at.batch).row(at.point).transpose());
        return sums.Mean();
    }

private:
    // Points by terms.
    RowMatrix const &OfBatch(int batch) {
        if (batch == 0 && m_quantity.isX)
            return m_source.model.Batches().AverageX([this] { return Average(); });
        auto const [at, isNew] = m_batches.try_emplace(batch);
        if (isNew)
            at->second = batch == 0 ? Average() : Resampled(m_source, batch);
        return at->second;
    }

    RowMatrix Average() const {
        RowSource const workset{m_source.model};
        RowMatrix sums, counts;
        for (int batch = 1; batch <= workset.Batches().names.Size(); ++batch) {
            RowMatrix const cells = Resampled(workset, batch);
            if (batch == 1)
                sums = counts = RowMatrix::Zero(cells.rows(), cells.cols());
            auto const observed = !cells.array().isNaN();
            sums.array() += observed.select(cells.array(), 0.0);
            counts.array() += observed.cast<double>();
        }
        return sums.array() / counts.array();
    }

    RowMatrix Resampled(RowSource const &source, int batch) const {
        RowSet const rows = *source.Rows(batch);
        Places places(static_cast<std::size_t>(rows.Size()));
        std::iota(places.begin(), places.end(), 0);
        Matrix cells = m_quantity.cells(rows, places); // the alignment reads one term after the other
        for (Index const place : places)
            if (!rows.HasX(place))
                cells.row(place).setConstant(notComputable);
        RowRange const all[] = {{0, rows.Size()}};
        std::vector<std::size_t> running;
        if (source.predicted &&
            std::ranges::binary_search(source.predicted->running, static_cast<std::size_t>(batch - 1)))
            running.push_back(0);
        Alignment const alignment(source.model.Grid(), all, YValues(rows, 0, Units::Source), running);
        RowMatrix points(alignment.Points(), cells.cols());
        for (Index k = 0; k < cells.cols(); ++k)
            points.col(k) = alignment.ReadAll(cells.col(k)).transpose();
        return points;
    }

    RowSource const &m_source;
    Quantity const &m_quantity;
    std::map<int, RowMatrix> m_batches;
};

Index NearestPoint(AlignmentGrid const &grid, double maturity) {
    Index nearest = 0;
    for (Index point = 1; point < grid.Points(); ++point)
        if (std::abs(grid.maturity[point] - maturity) < std::abs(grid.maturity[nearest] - maturity))
            nearest = point;
    return nearest;
}

// Those of a group whose batch is there. An empty group stands for the first point of the first batch.
AlignedPoints PointsOf(RowSource const &source, BatchPoints const &group) {
    AlignedPoints points;
    for (auto const &[name, maturity] : group)
        if (int const batch = name.empty() ? 0 : source.Batches().names.FindString(name); batch >= 0)
            points.push_back({batch, NearestPoint(source.model.Grid(), maturity)});
    return group.empty() ? AlignedPoints{{1, 0}} : points;
}

// As above.
Vector MeanOf(RowSource const &source, Quantity const &quantity, BatchPoints const &group) {
    AlignedPoints const points = HasBatches(source) ? PointsOf(source, group) : AlignedPoints();
    return points.empty() ? Vector() : AlignedQuantity(source, quantity).Mean(points);
}

// The average batch at the same points.
AlignedPoints AverageAt(AlignedPoints points) {
    for (AlignedPoint &at : points)
        at.batch = 0;
    return points;
}

// What compared groups have more in X than their reference: one difference, missing where either is, or several whose
// contributions are added up. None when there is nothing to compare.
using Differences = std::vector<Vector>;

// Without a reference from the average of the workset.
Differences DifferencesOf(RowSource const &source, IntList const &reference, IntList const &compared) {
    Vector const from = reference.empty() ? source.model.XMeans() : MeanOf(source, xQuantity, reference);
    Vector const to = MeanOf(source, xQuantity, compared);
    return from.size() == 0 || to.size() == 0 ? Differences() : Differences{to - from};
}

// Without a reference from the average batch at the same points. Combined, each point of the compared group is held
// against the reference at the same point, or against the average batch when that has none.
Differences DifferencesOf(RowSource const &source, BatchPoints const &reference, BatchPoints const &compared,
                          bool combined) {
    if (!HasBatches(source))
        return {};
    AlignedPoints const to = PointsOf(source, compared);
    AlignedPoints const from = reference.empty() ? AverageAt(to) : PointsOf(source, reference);
    if (from.empty() || to.empty())
        return {};
    AlignedQuantity x(source, xQuantity);
    if (!combined)
        return {x.Mean(to) - x.Mean(from)};
    Differences differences;
    for (AlignedPoint const &at : to) {
        AlignedPoints same;
        std::ranges::copy_if(from, std::back_inserter(same),
                             [&at](AlignedPoint const &other) { return other.point == at.point; });
        differences.push_back(x.Mean({at}) - x.Mean(same.empty() ? AverageAt({at}) : same));
    }
    return differences;
}

// What the difference or residual of each term is multiplied by, and what of it the label tells.
struct Weights {
    Vector ofTerms;
    std::string label;
};
using MaybeWeights = std::optional<Weights>;

// Makes standard deviations of differences in workset scale.
Vector PerDeviation(std::vector<TermScale> const &scales) {
    Vector weights(static_cast<Index>(scales.size()));
    for (std::size_t k = 0; k < scales.size(); ++k)
        weights[static_cast<Index>(k)] = scales[k].IsConstant() ? 1 : 1 / (scales[k].deviation * scales[k].weight);
    return weights;
}

// Root of the explained variation of each term, by its sums of squares; NaN where there is none to explain.
Vector RootExplained(std::vector<TermScale> const &scales, Vector const &left, Vector const &before) {
    Vector roots = (1 - left.array() / before.array()).max(0.0).sqrt();
    for (std::size_t k = 0; k < scales.size(); ++k)
        if (scales[k].IsConstant())
            roots[static_cast<Index>(k)] = notComputable;
    return roots;
}

// What all orthogonal components and the first predictive ones leave of each Y term.
Vector LeftOfY(Components const &components, Index size) {
    Vector squares = components.ssY.col(components.All());
    for (Index a = size; a < components.Predictive(); ++a)
        squares += components.TakenY(a);
    return squares;
}

Vector RootExplainedY(FittedModel const &fit, Index size) {
    return RootExplained(fit.yScales, LeftOfY(fit.components, size), fit.components.ssY.col(0));
}

MaybeWeights ColumnOf(Matrix const &directions, int component) {
    auto const chosen = ChosenComponent(component, directions.cols());
    return chosen ? MaybeWeights({directions.col(*chosen), ComponentLabel(*chosen)}) : std::nullopt;
}

// Those that rest on a model of some size, for differences in standard deviations. The response counts from 1, and is
// the first one below that.
MaybeWeights WeightsOfSize(ModelView const &model, WeightTypeE::WeightType weight, int component, int response) {
    FittedModel const &fit = model.Fit();
    std::optional<Index> const size = ChosenSize(fit, component);
    if (!size)
        return {};
    std::string const label = AskedSizeLabel(model, *size);
    if (weight == WeightTypeE::RX)
        return Weights{RootExplained(fit.xScales, XSquares(fit.components, *size, fit.components.XOrthogonal()),
                                     fit.components.ssX.col(0)),
                       label};
    Index const y = std::max(response, 1) - 1;
    if (y >= model.GetYColumnTerms().Size())
        return {};
    if (weight == WeightTypeE::RY)
        return Weights{Vector::Constant(fit.components.p.rows(), RootExplainedY(fit, *size)[y]), label};
    if (*size == 0)
        return {};
    return Weights{weight == WeightTypeE::VIP ? WholeImportance(fit.components, *size, IsOrthogonalKind(model))
                                              : ScaledCoefficients(fit.components, *size).col(y),
                   label};
}

// Nothing for a weight that the model does not have. An unknown kind is taken as normalized.
MaybeWeights WeightsOfX(ModelView const &model, WeightTypeE::WeightType weight, int component, int response) {
    FittedModel const &fit = model.Fit();
    switch (weight) {
    case WeightTypeE::P:
        return ColumnOf(fit.components.p, component);
    case WeightTypeE::WStar:
        return ColumnOf(fit.components.wStar, component);
    case WeightTypeE::PO:
        return ColumnOf(fit.components.po, component);
    case WeightTypeE::CoeffCSRaw:
        return WeightsOfSize(model, weight, component, response);
    case WeightTypeE::Raw:
        return Weights{Vector::Ones(fit.components.p.rows()), {}};
    case WeightTypeE::RX:
    case WeightTypeE::RY:
    case WeightTypeE::CoeffCS:
    case WeightTypeE::VIP: {
        MaybeWeights weights = WeightsOfSize(model, weight, component, response);
        if (weights)
            weights->ofTerms.array() *= PerDeviation(fit.xScales).array();
        return weights;
    }
    default:
        return Weights{PerDeviation(fit.xScales), {}};
    }
}

Weights WeightsOfY(FittedModel const &fit, WeightTypeE::WeightType weight) {
    if (weight == WeightTypeE::Raw)
        return {Vector::Ones(fit.components.c.rows()), {}};
    Vector weights = PerDeviation(fit.yScales);
    if (weight == WeightTypeE::RY)
        weights.array() *= RootExplainedY(fit, fit.components.Predictive()).array();
    return {weights, {}};
}

// A direction that scores are made by, and their standard deviation over the workset.
struct Direction {
    Vector ofTerms;
    double deviation = 0;
};

std::optional<Direction> DirectionOf(ModelView const &model, WeightTypeE::WeightType weight, int component) {
    Components const &components = model.Fit().components;
    bool const isOrthogonal = weight == WeightTypeE::PO;
    Matrix const &directions = isOrthogonal                   ? components.po
                               : weight == WeightTypeE::WStar ? components.wStar
                                                              : components.p;
    auto const chosen = ChosenComponent(component, directions.cols());
    if (!chosen)
        return {};
    return Direction{directions.col(*chosen), (isOrthogonal ? model.DeviationsOfTo() : model.DeviationsOfT())[*chosen]};
}

bool IsDirection(WeightTypeE::WeightType weight) {
    return weight == WeightTypeE::P || weight == WeightTypeE::WStar || weight == WeightTypeE::PO;
}

// Of each weight its component: those of a list as long, otherwise 1, 2, 3, ... among the weights of the same kind.
std::vector<int> ComponentsOf(WeightTypes const &weights, IntList const &components) {
    if (weights.size() == components.size())
        return {components.begin(), components.end()};
    std::vector<int> counted;
    std::map<WeightTypeE::WeightType, int> counts;
    for (WeightTypeE::WeightType const weight : weights)
        counted.push_back(++counts[weight]);
    return counted;
}

// Nothing when one of them is missing from the model.
std::optional<std::vector<Direction>> DirectionsOf(ModelView const &model, WeightTypes const &weights,
                                                   IntList const &components) {
    std::vector<int> const numbers = ComponentsOf(weights, components);
    std::vector<Direction> directions;
    for (std::size_t j = 0; j < weights.size(); ++j) {
        if (!IsDirection(weights[j]))
            continue;
        auto const direction = DirectionOf(model, weights[j], numbers[j]);
        if (!direction)
            return {};
        directions.push_back(*direction);
    }
    return directions;
}

// The parts of the terms in the squared distance along the directions, in variances of the scores (Kourti & MacGregor
// 1996).
Vector PartsOfDistance(std::vector<Direction> const &directions, Vector const &difference) {
    Vector const known = difference.array().isNaN().select(0.0, difference.array());
    Vector sum = Vector::Zero(difference.size());
    for (Direction const &direction : directions)
        sum += direction.ofTerms * (direction.ofTerms.dot(known) / (direction.deviation * direction.deviation));
    return difference.cwiseProduct(sum);
}

template <typename Parts>
TablePtr ContributionTable(ModelView const &model, std::string const &label, Differences const &differences,
                           Parts parts) {
    if (differences.empty())
        return nullptr;
    ObservedSums sums;
    for (Vector const &difference : differences)
        sums.Add(parts(difference));
    Answer answer(model.XTerms());
    answer.Add(model.Label(label), sums.Sum());
    return answer.Take();
}

TablePtr BySingleWeight(RowSource const &source, std::string const &name, Differences const &differences,
                        WeightTypeE::WeightType weight, int component, int response) {
    MaybeWeights const weights = WeightsOfX(source.model, weight, component, response);
    if (!weights)
        return nullptr;
    return ContributionTable(
        source.model, source.Name(name) + weights->label, differences,
        [&](Vector const &difference) -> Vector { return difference.cwiseProduct(weights->ofTerms); });
}

// A list that begins with another weight than one of a score is taken by its first entries.
TablePtr BySeveralWeights(RowSource const &source, std::string const &name, Differences const &differences,
                          WeightTypes const &weights, IntList const &components) {
    if (weights.empty() || components.empty())
        return nullptr;
    if (!IsDirection(weights.front()))
        return BySingleWeight(source, name, differences, weights.front(), components.front(), 0);
    auto const directions = DirectionsOf(source.model, weights, components);
    if (!directions)
        return nullptr;
    return ContributionTable(source.model, source.Name(name), differences,
                             [&](Vector const &difference) { return PartsOfDistance(*directions, difference); });
}

TablePtr DistanceTable(RowSource const &source, ColumnIDs const &terms, std::string const &name, Vector const &residual,
                       MaybeWeights const &weights) {
    if (residual.size() == 0 || !weights)
        return nullptr;
    Answer answer(terms);
    answer.Add(source.model.Label(source.Name(name) + weights->label), residual.cwiseProduct(weights->ofTerms));
    return answer.Take();
}

// Groups of both kinds.
template <typename Group>
TablePtr XDistanceTable(RowSource const &source, std::string const &name, Group const &group,
                        WeightTypeE::WeightType weight, int component, int response) {
    std::optional<Index> const size = ChosenSize(source.model.Fit(), component);
    if (!size)
        return nullptr;
    MaybeWeights weights = WeightsOfX(source.model, weight, component, response);
    if (weights)
        weights->label = AskedSizeLabel(source.model, *size); // of the model that leaves the residuals
    return DistanceTable(source, source.model.XTerms(), name, MeanOf(source, XResiduals(*size), group), weights);
}

template <typename Group>
TablePtr YDistanceTable(RowSource const &source, std::string const &name, Group const &group,
                        WeightTypeE::WeightType weight) {
    if (!HasY(source.model))
        return nullptr;
    return DistanceTable(source, source.model.YTerms(), name, MeanOf(source, {YResiduals}, group),
                         WeightsOfY(source.model.Fit(), weight));
}

char const *NameOfAligned(bool combined) {
    return combined ? "CombinedContSc" : "AlContSc";
}

void AddScoreContributions(Handlers &handlers) {
    using enum Operation;
    using Weight = WeightTypeE::WeightType;
    OnRows<GetContributionScoresSingleWeight, GetContributionScoresPSSingleWeight>(
        handlers, [](RowSource const &source, IntList const &reference, IntList const &compared, Weight weight,
                     int component, int response, TriState::State) {
            return BySingleWeight(source, "ContSc", DifferencesOf(source, reference, compared), weight, component,
                                  response);
        });
    OnRows<GetContributionScoresMultiWeight, GetContributionScoresPSMultiWeight>(
        handlers, [](RowSource const &source, IntList const &reference, IntList const &compared,
                     WeightTypes const &weights, IntList const &components, TriState::State) {
            return BySeveralWeights(source, "ContSc", DifferencesOf(source, reference, compared), weights, components);
        });
    OnRows<GetContributionScoresSingleWeightAtPoints, GetContributionScoresPSSingleWeightAtPoints>(
        handlers, [](RowSource const &source, BatchPoints const &reference, BatchPoints const &compared, Weight weight,
                     int component, int response, TriState::State, bool combined) {
            return BySingleWeight(source, NameOfAligned(combined), DifferencesOf(source, reference, compared, combined),
                                  weight, component, response);
        });
    OnRows<GetContributionScoresMultiWeightAtPoints, GetContributionScoresPSMultiWeightAtPoints>(
        handlers, [](RowSource const &source, BatchPoints const &reference, BatchPoints const &compared,
                     WeightTypes const &weights, IntList const &components, TriState::State, bool combined) {
            return BySeveralWeights(source, NameOfAligned(combined),
                                    DifferencesOf(source, reference, compared, combined), weights, components);
        });
}

void AddDistanceContributions(Handlers &handlers) {
    using enum Operation;
    using Weight = WeightTypeE::WeightType;
    OnRows<GetContributionDModX, GetContributionDModXPS>(
        handlers,
        [](RowSource const &source, IntList const &group, Weight weight, int component, int response, TriState::State) {
            return XDistanceTable(source, "ContDModX", group, weight, component, response);
        });
    OnRows<GetContributionDModXAtPoints, GetContributionDModXPSAtPoints>(
        handlers,
        [](RowSource const &source, BatchPoints const &group, Weight weight, int component, int response,
           TriState::State) { return XDistanceTable(source, "AlContDModX", group, weight, component, response); });
    OnRows<GetContributionDModY, GetContributionDModYPS>(
        handlers, [](RowSource const &source, IntList const &group, Weight weight, int) {
            return YDistanceTable(source, "ContDModY", group, weight);
        });
    OnRows<GetContributionDModYAtPoints, GetContributionDModYPSAtPoints>(
        handlers, [](RowSource const &source, BatchPoints const &group, Weight weight, int) {
            return YDistanceTable(source, "AlContDModY", group, weight);
        });
}

} // namespace

void AddContributionHandlers(Handlers &handlers) {
    using enum Operation;
    AddScoreContributions(handlers);
    AddDistanceContributions(handlers);
    OnTermColumns<GetContributionScoresSingleWeightColumnIDs>(handlers, &ModelView::XTerms);
    OnPredictedTermColumns<GetContributionScoresPSSingleWeightColumnIDs>(handlers, &ModelView::XTerms);
    OnTermColumns<GetContributionDModXColumnIDs>(handlers, &ModelView::XTerms);
    OnPredictedTermColumns<GetContributionDModXPSColumnIDs>(handlers, &ModelView::XTerms);
    OnTermColumns<GetContributionDModYColumnIDs>(handlers, &ModelView::YTerms);
    OnPredictedTermColumns<GetContributionDModYPSColumnIDs>(handlers, &ModelView::YTerms);
}

} // namespace engine
