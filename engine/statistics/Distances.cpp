#include "engine/statistics/Answer.h"
#include "engine/statistics/RowStatistics.h"

#include <Eigen/Cholesky>
#include <Eigen/QR>
#include <boost/math/special_functions/beta.hpp>

#include <cmath>

// Distances of observations to the model and within it: one row for each model size asked for, one column for each
// observation.

namespace engine {

namespace {

// Distances of rows, with what they are measured by.
struct Distances {
    Vector squares;    // NaN where there is none
    double pooled = 0; // mean square of the workset's distances
    double freedom1 = 0;
    double freedom2 = 0;
};

Distances XDistances(RowSet const &rows, Index size, bool weighted) {
    ModelView const &model = rows.Model();
    FittedModel const &fit = model.Fit();
    Index const xSide = size + fit.components.XOrthogonal();
    Distances result;
    result.freedom1 = ColumnFreedom(fit, xSide);
    result.freedom2 = result.freedom1 * XRowFreedom(fit, xSide);
    ModelView::RowDistances const &workset = model.XDistances(size, weighted);
    result.pooled = workset.pooled;
    if (!rows.Predicted()) {
        result.squares = rows.Of(workset.squares);
        return result;
    }
    Vector const weights = weighted ? PowerWeights(fit, size) : Vector();
    Vector const residuals = XRowSquares(fit.components, rows.AllX(), rows.AllScores(), size, weights);
    result.squares = rows.Of(
        SquaredDistances(residuals, rows.XObserved(), static_cast<double>(fit.xScales.size()), result.freedom1, 1));
    return result;
}

Distances YDistances(RowSet const &rows, Index size) {
    ModelView const &model = rows.Model();
    FittedModel const &fit = model.Fit();
    auto const terms = static_cast<double>(fit.yScales.size());
    double const rowFreedom = YRowFreedom(fit, size + fit.components.XOrthogonal());
    auto const distances = [&](RowSet const &all, double inflation) {
        Vector squares = SquaredDistances(YRowSquares(fit.components, all.AllY(), all.AllScores(), size),
                                          all.YObserved(), terms, terms, inflation);
        return Vector((all.XObserved().array() > 0).select(squares.array(), notComputable));
    };
    RowSet const workset(model, nullptr, {0, fit.Rows()});
    Vector const own = distances(workset, static_cast<double>(fit.Rows()) / rowFreedom);
    return {rows.Of(rows.Predicted() ? distances(rows, 1) : own), Pooled(own), terms, terms * rowFreedom};
}

// To the distances in X of a prediction set adds how far its scores are outside the range of the workset's, in their
// standard deviations beyond half of one (Wold & Sjostrom 1977).
void AddScoreDistances(RowSet const &rows, Index size, Distances &distances) {
    FittedModel const &fit = rows.Model().Fit();
    auto const add = [&](Eigen::Ref<Vector const> const &workset, Eigen::Ref<Vector const> const &scores) {
        ScoreSpread const spread = SpreadOf(workset, fit.xObserved);
        double const margin = spread.deviation / 2;
        auto const outside =
            (scores.array() - (spread.largest + margin)).max((spread.smallest - margin) - scores.array());
        distances.squares.array() += distances.pooled * (outside.max(0.0) / spread.deviation).square();
    };
    for (Index a = 0; a < size; ++a)
        add(fit.scores.t.col(a), rows.T().col(a));
    for (Index j = 0; j < fit.components.XOrthogonal(); ++j)
        add(fit.scores.to.col(j), rows.To().col(j));
}

Distances CombinedDistances(RowSet const &rows, Index size, bool weighted) {
    Distances distances = XDistances(rows, size, weighted);
    AddScoreDistances(rows, size, distances);
    return distances;
}

// P(F > f) by the regularised incomplete beta function.
double UpperTail(double f, double freedom1, double freedom2) {
    if (!(f >= 0) || !std::isfinite(f) || !(freedom1 > 0) || !(freedom2 > 0))
        return notComputable;
    // Not in long double: results are stored as float.
    using AsGiven = boost::math::policies::policy<boost::math::policies::promote_double<false>>;
    return boost::math::ibeta(freedom2 / 2, freedom1 / 2, freedom2 / (freedom2 + freedom1 * f), AsGiven());
}

// One row for each size; `values` turns the distances of that size into what is shown.
template <typename DistancesOf, typename Values>
TablePtr ForSizes(RowSource const &source, std::string const &name, IntList const *components, int batch,
                  DistancesOf distancesOf, Values values) {
    std::optional<RowSet> const rows = source.Rows(batch);
    if (!rows)
        return nullptr;
    Answer answer(rows->Columns());
    for (Index const size : ChosenSizes(source.model.Fit(), components))
        answer.Add(source.model.Label(name) + AskedSizeLabel(source.model, size), values(distancesOf(*rows, size)));
    return answer.Take();
}

// Distances as they are, or in units of the pooled one.
auto Shown(ModelView const &model, TriState::State normalised) {
    bool const inUnits = normalised == TriState::Undefined ? model.IsDModNormalized() : normalised == TriState::Yes;
    return [inUnits](Distances const &distances) {
        return Vector((distances.squares / (inUnits ? distances.pooled : 1.0)).cwiseSqrt());
    };
}

// The probability that an observation of the model has a larger distance (Wold 1976).
Vector Probabilities(Distances const &distances) {
    return distances.squares.unaryExpr(
        [&](double square) { return UpperTail(square / distances.pooled, distances.freedom1, distances.freedom2); });
}

bool IsWeighted(ModelView const &model, TriState::State weighted) {
    return weighted == TriState::Undefined ? model.IsDModXWeighted() : weighted == TriState::Yes;
}

auto UnweightedX() {
    return [](RowSet const &rows, Index size) { return XDistances(rows, size, false); };
}

TablePtr T2RangeTable(RowSource const &source, int first, int last, int batch) {
    std::optional<RowSet> const rows = source.Rows(batch);
    auto const range = ComponentRange(source.model, first, last);
    if (!rows || !range)
        return nullptr;
    Answer answer(rows->Columns());
    answer.Add(source.model.Label(source.Name("T2Range")) + RangeLabel(*range), T2Range(*rows, *range));
    return answer.Take();
}

// Diagonal of S (S'S)^+ S'.
Vector Leverages(Matrix const &scores) {
    Matrix const inverse = (scores.transpose() * scores).completeOrthogonalDecomposition().pseudoInverse();
    return (scores * inverse).cwiseProduct(scores).rowwise().sum();
}

Matrix Joined(Matrix const &left, Matrix const &right) {
    Matrix joined(left.rows(), left.cols() + right.cols());
    joined << left, right;
    return joined;
}

// The leverages of the first components in the overall order: those of X by t and to, those of Y by u and uo.
TablePtr LeverageRows(ModelView const &model, char const *name, IntList const *components,
                      Matrix (*scoresOf)(FittedModel const &, Index), Eigen::VectorXi const &observed) {
    Answer answer(model.Observations());
    for (Index const component : ChosenComponents(components, model.Fit().components.All()))
        MarkUnobserved(
            answer.Add(model.Label(name) + ComponentLabel(component), Leverages(scoresOf(model.Fit(), component + 1))),
            observed);
    return answer.Take();
}

Matrix FirstXScores(FittedModel const &fit, Index first) {
    Index const predictive = std::min(first, fit.components.Predictive());
    return Joined(fit.scores.t.leftCols(predictive),
                  fit.scores.to.leftCols(XSideAmong(fit.components, first) - predictive));
}

Matrix FirstYScores(FittedModel const &fit, Index first) {
    Index const xSide = XSideAmong(fit.components, first);
    return Joined(fit.scores.u.leftCols(std::min(first, fit.components.Predictive())),
                  fit.scores.uo.leftCols(first - xSide));
}

} // namespace

Vector DModX(RowSet const &rows, Index size, TriState::State normalised, TriState::State weighted) {
    return Shown(rows.Model(), normalised)(XDistances(rows, size, IsWeighted(rows.Model(), weighted)));
}

std::optional<std::pair<int, int>> ComponentRange(ModelView const &model, int first, int last) {
    Components const &components = model.Fit().components;
    int const all = static_cast<int>(components.Predictive() + components.XOrthogonal());
    if (all == 0)
        return {};
    first = first == -1 ? all : std::clamp(first, 1, all);
    last = last < 1 ? all : std::min(last, all);
    return std::minmax(first, last);
}

std::string RangeLabel(std::pair<int, int> const &range) {
    return "[" + std::to_string(range.first) + "-" + std::to_string(range.second) + "]";
}

Vector T2Range(RowSet const &rows, std::pair<int, int> const &range) {
    FittedModel const &fit = rows.Model().Fit();
    Index const predictive = fit.components.Predictive();
    Vector sum = Vector::Zero(rows.Size());
    for (Index c = range.first - 1; c < range.second; ++c) {
        bool const orthogonal = c >= predictive;
        Index const at = orthogonal ? c - predictive : c;
        ScoreSpread const spread = SpreadOf(orthogonal ? fit.scores.to.col(at) : fit.scores.t.col(at), fit.xObserved);
        Vector const scores = orthogonal ? Vector(rows.To().col(at)) : Vector(rows.T().col(at));
        sum.array() += ((scores.array() - spread.mean) / spread.deviation).square();
    }
    return (rows.Of(rows.XObserved()).array() > 0).select(sum.array(), notComputable);
}

void AddDistanceHandlers(Handlers &handlers) {
    using enum Operation;
    OnRows<GetDModX, GetDModXPS>(handlers, [](RowSource const &source, IntList const *components,
                                              TriState::State normalised, TriState::State weighted, int batch) {
        bool const byPower = IsWeighted(source.model, weighted);
        return ForSizes(
            source, source.Name("DModX"), components, batch,
            [byPower](RowSet const &rows, Index size) { return XDistances(rows, size, byPower); },
            Shown(source.model, normalised));
    });
    OnRows<GetDModY, GetDModYPS>(
        handlers, [](RowSource const &source, IntList const *components, TriState::State normalised) -> TablePtr {
            return HasY(source.model) ? ForSizes(source, source.Name("DModY"), components, allBatches, YDistances,
                                                 Shown(source.model, normalised))
                                      : nullptr;
        });
    handlers.On<GetDModXPSCombined>([](ModelView const &model, Subject const &subject, IntList const *components,
                                       TriState::State normalised, TriState::State weighted) {
        bool const byPower = IsWeighted(model, weighted);
        return ForSizes(
            RowSource{model, true, subject.Predictions(model.GetModelNumber())}, "DModXPS+", components, allBatches,
            [byPower](RowSet const &rows, Index size) { return CombinedDistances(rows, size, byPower); },
            Shown(model, normalised));
    });
    OnRows<GetPModX, GetPModXPS>(handlers, [](RowSource const &source, IntList const *components) {
        return ForSizes(source, source.Name("PModX"), components, allBatches, UnweightedX(), Probabilities);
    });
    OnRows<GetPModY, GetPModYPS>(handlers, [](RowSource const &source, IntList const *components) -> TablePtr {
        return HasY(source.model)
                   ? ForSizes(source, source.Name("PModY"), components, allBatches, YDistances, Probabilities)
                   : nullptr;
    });
    handlers.On<GetPModXPSCombined>([](ModelView const &model, Subject const &subject, IntList const *components) {
        return ForSizes(
            RowSource{model, true, subject.Predictions(model.GetModelNumber())}, "PModXPS+", components, allBatches,
            [](RowSet const &rows, Index size) { return CombinedDistances(rows, size, false); }, Probabilities);
    });
    OnRows<GetT2Range, GetT2RangePS>(handlers, T2RangeTable);
    handlers.On<GetOLevX>([](ModelView const &model, IntList const *components) {
        return LeverageRows(model, "OLevX", components, FirstXScores, model.Fit().xObserved);
    });
    handlers.On<GetOLevY>([](ModelView const &model, IntList const *components) -> TablePtr {
        return HasY(model) ? LeverageRows(model, "OLevY", components, FirstYScores, model.Fit().yObserved) : nullptr;
    });

    OnRowColumns<GetDModXColumnIDs, GetDModXPSColumnIDs>(handlers);
    OnRowColumns<GetDModYColumnIDs, GetDModYPSColumnIDs>(handlers, HasY);
    OnPredictedColumns<GetDModXPSCombinedColumnIDs>(handlers);
    OnRowColumns<GetPModXColumnIDs, GetPModXPSColumnIDs>(handlers);
    OnRowColumns<GetPModYColumnIDs, GetPModYPSColumnIDs>(handlers, HasY);
    OnPredictedColumns<GetPModXPSCombinedColumnIDs>(handlers);
    OnRowColumns<GetT2RangeColumnIDs, GetT2RangePSColumnIDs>(handlers, HasComponents);
    OnWorksetColumns<GetOLevXColumnIDs>(handlers, HasComponents);
    OnWorksetColumns<GetOLevYColumnIDs>(handlers, HasYAndComponents);
}

} // namespace engine
