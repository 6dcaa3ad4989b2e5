#include "engine/statistics/Residuals.h"

#include <cmath>
#include <limits>

namespace engine {

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

double Positive(double freedom) {
    return freedom > 0 ? freedom : none;
}

Vector ObservedCounts(std::vector<TermScale> const &scales) {
    Vector counts(static_cast<Index>(scales.size()));
    for (std::size_t k = 0; k < scales.size(); ++k)
        counts[static_cast<Index>(k)] = scales[k].observed;
    return counts;
}

// Row after row in bands that stay in the nearest caches. `predict(first, band)` takes the prediction of the rows from
// `first` on off their values.
template <typename Predict>
Vector RowSquares(Block const &block, Vector const &weights, Predict predict) {
    constexpr Index bandRows = 32;
    Vector squares(block.Rows());
    RowMatrix band;
    for (Index first = 0; first < block.Rows(); first += band.rows()) {
        band = block.Values().middleRows(first, std::min(bandRows, block.Rows() - first));
        predict(first, band);
        for (Index i = 0; i < band.rows(); ++i)
            for (std::uint32_t const k : block.MissingIn(first + i))
                band(i, k) = 0;
        if (weights.size() > 0)
            band.array().rowwise() *= weights.transpose().array();
        squares.segment(first, band.rows()) = band.rowwise().squaredNorm();
    }
    return squares;
}

} // namespace

std::optional<Index> ChosenSize(FittedModel const &model, int component) {
    Index const all = model.components.Predictive();
    if (component == -1 || (model.definition.HasOrthogonal() && (component < 1 || component > all)))
        return all;
    return component >= 0 && component <= all ? std::optional<Index>(component) : std::nullopt;
}

std::vector<Index> ChosenSizes(FittedModel const &model, IntList const *components) {
    std::vector<Index> chosen;
    if (!components)
        for (Index size = 1; size <= model.components.Predictive(); ++size)
            chosen.push_back(size);
    else
        for (int const component : *components)
            if (auto const size = ChosenSize(model, component))
                chosen.push_back(*size);
    return chosen;
}

Index XSideAmong(Components const &components, Index first) {
    return std::min(first, components.Predictive() + components.XOrthogonal());
}

Index UsedAmong(Components const &components, Index first) {
    return first == 0 ? 0 : std::min(first, components.Predictive()) + components.XOrthogonal();
}

double XRowFreedom(FittedModel const &model, Index xSide) {
    return Positive(static_cast<double>(model.Rows() - model.XCentred() - xSide));
}

double YRowFreedom(FittedModel const &model, Index used) {
    return Positive(static_cast<double>(model.Rows() - model.YCentred() - used));
}

double ColumnFreedom(FittedModel const &model, Index xSide) {
    return Positive(static_cast<double>(model.xScales.size()) - static_cast<double>(xSide));
}

Vector XSquares(Components const &components, Index predictive, Index xOrthogonal) {
    Index const all = components.Predictive();
    if (xOrthogonal == 0)
        return components.ssX.col(predictive);
    // What is not taken away goes back to what all X-side components leave.
    Vector squares = components.ssX.col(all + components.XOrthogonal());
    for (Index a = predictive; a < all; ++a)
        squares += components.TakenX(a);
    for (Index j = xOrthogonal; j < components.XOrthogonal(); ++j)
        squares += components.TakenX(all + j);
    return squares;
}

Vector YSquares(FittedModel const &model, Workset const &workset, Index size) {
    Components const &components = model.components;
    if (components.YOrthogonal() == 0)
        return components.ssY.col(size);
    // The ledger takes the Y-side components away too, which predict nothing.
    RowMatrix residuals = workset.y.Values();
    residuals.noalias() -= model.scores.t.leftCols(size) * components.c.leftCols(size).transpose();
    for (Index row = 0; row < residuals.rows(); ++row)
        for (std::uint32_t const m : workset.y.MissingIn(row))
            residuals(row, m) = 0;
    return residuals.colwise().squaredNorm();
}

ScoreSpread SpreadOf(Eigen::Ref<Vector const> const &scores, Eigen::VectorXi const &observed) {
    auto const known = observed.array() > 0;
    double const count = static_cast<double>(known.count());
    constexpr double infinity = std::numeric_limits<double>::infinity();
    ScoreSpread spread;
    spread.mean = known.select(scores.array(), 0.0).sum() / count;
    double const squares = known.select((scores.array() - spread.mean).square(), 0.0).sum();
    spread.deviation = count > 1 ? std::sqrt(squares / (count - 1)) : none;
    spread.smallest = known.select(scores.array(), infinity).minCoeff();
    spread.largest = known.select(scores.array(), -infinity).maxCoeff();
    return spread;
}

Vector XVariances(FittedModel const &model, Vector const &squares, Index xSide) {
    double const factor = static_cast<double>(model.Rows()) * static_cast<double>(squares.size()) /
                          (XRowFreedom(model, xSide) * ColumnFreedom(model, xSide));
    return squares.array() / ObservedCounts(model.xScales).array() * factor;
}

Vector YVariances(FittedModel const &model, Vector const &squares, Index used) {
    double const factor = static_cast<double>(model.Rows()) / YRowFreedom(model, used);
    return squares.array() / ObservedCounts(model.yScales).array() * factor;
}

Vector XVariancesAfter(FittedModel const &model, Index first) {
    return XVariances(model, model.components.ssX.col(first), XSideAmong(model.components, first));
}

Vector YVariancesAfter(FittedModel const &model, Workset const &workset, Index first) {
    Index const size = std::min(first, model.components.Predictive());
    return YVariances(model, YSquares(model, workset, size), UsedAmong(model.components, first));
}

Vector XVariancesOfSize(FittedModel const &model, Index size) {
    Index const orthogonal = model.components.XOrthogonal();
    return XVariances(model, XSquares(model.components, size, orthogonal), size + orthogonal);
}

Vector YVariancesOfSize(FittedModel const &model, Workset const &workset, Index size) {
    return YVariances(model, YSquares(model, workset, size), size + model.components.XOrthogonal());
}

Vector XRowSquares(Components const &components, Block const &x, Scores const &scores, Index size,
                   Vector const &weights) {
    Matrix const loadings = components.p.leftCols(size).transpose();
    return RowSquares(x, weights, [&](Index first, RowMatrix &band) {
        band.noalias() -= scores.t.middleRows(first, band.rows()).leftCols(size) * loadings;
        if (components.XOrthogonal() > 0)
            band.noalias() -= scores.to.middleRows(first, band.rows()) * components.po.transpose();
    });
}

Vector YRowSquares(Components const &components, Block const &y, Scores const &scores, Index size) {
    Matrix const weights = components.c.leftCols(size).transpose();
    return RowSquares(y, Vector(), [&](Index first, RowMatrix &band) {
        band.noalias() -= scores.t.middleRows(first, band.rows()).leftCols(size) * weights;
    });
}

Vector ModellingPower(FittedModel const &model, Vector const &variances) {
    Vector const original = XVariances(model, model.components.ssX.col(0), 0);
    return 1 - (variances.array() / original.array()).sqrt();
}

Vector PowerWeights(FittedModel const &model, Index size) {
    Vector power = ModellingPower(model, XVariancesOfSize(model, size));
    // A term without variation has no power.
    power = (power.array() > 0).select(power, 0.0);
    double const squares = power.squaredNorm();
    if (squares == 0)
        return Vector::Ones(power.size());
    return power * std::sqrt(static_cast<double>(power.size()) / squares);
}

Vector SquaredDistances(Vector const &rowSquares, Eigen::VectorXi const &observed, double terms, double freedom,
                        double inflation) {
    Vector distances = rowSquares * (inflation * terms / freedom);
    for (Index row = 0; row < distances.size(); ++row)
        distances[row] = observed[row] > 0 ? distances[row] / observed[row] : none;
    return distances;
}

double Pooled(Vector const &squaredDistances) {
    double sum = 0;
    Index count = 0;
    for (double const square : squaredDistances)
        if (!std::isnan(square)) {
            sum += square;
            ++count;
        }
    return count > 0 ? sum / static_cast<double>(count) : none;
}

} // namespace engine
