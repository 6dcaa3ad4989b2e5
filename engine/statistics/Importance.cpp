#include "engine/models/CrossValidation.h"
#include "engine/statistics/Answer.h"
#include "engine/statistics/RowSet.h"

#include <cmath>

// Importance of the X terms: one column for each. The mean square of each form is 1. The Reconstruct flag has no effect
// on data that are not compressed.

namespace engine {

namespace {

// A mean of squared unit vectors, weighted by what their components explain.
class WeightedSquares {
public:
    explicit WeightedSquares(Index terms) : m_sum(Vector::Zero(terms)) {}

    void Add(Eigen::Ref<Vector const> const &direction, double explained) {
        m_sum += direction.cwiseAbs2() * (explained / direction.squaredNorm());
        m_weight += explained;
    }
    Vector Mean() const { return m_sum / m_weight; }

private:
    Vector m_sum;
    double m_weight = 0;
};

Vector Importance(Vector const &meanSquares) {
    return (meanSquares * static_cast<double>(meanSquares.size())).cwiseSqrt();
}

// The means over the predictive components up to `size`: by w of PLS (Wold et al. 1993; Chong & Jun 2005), and by p of
// OPLS (Galindo-Prieto et al. 2014), of what they explain in Y and in X.
Vector ByY(Components const &model, Matrix const &directions, Index size) {
    WeightedSquares squares(directions.rows());
    for (Index a = 0; a < size; ++a)
        squares.Add(directions.col(a), model.TakenY(a).sum());
    return squares.Mean();
}

WeightedSquares ByX(Components const &model, Index size) {
    WeightedSquares squares(model.p.rows());
    for (Index a = 0; a < size; ++a)
        squares.Add(model.p.col(a), model.TakenX(a).sum());
    return squares;
}

void AddOrthogonal(WeightedSquares &squares, Components const &model) {
    for (Index j = 0; j < model.XOrthogonal(); ++j)
        squares.Add(model.po.col(j), model.TakenX(model.Predictive() + j).sum());
}

Vector OrthogonalImportance(Components const &model) {
    WeightedSquares squares(model.p.rows());
    AddOrthogonal(squares, model);
    return Importance(squares.Mean());
}

Vector PredictiveImportance(Components const &model, Index size) {
    return Importance((ByX(model, size).Mean() + ByY(model, model.p, size)) / 2);
}

// Y has no part in orthogonal components, so that the X part takes its weight.
Vector WholeImportance(Components const &model, Index size, bool orthogonalKind) {
    if (!orthogonalKind)
        return Importance(ByY(model, model.w, size));
    WeightedSquares squares = ByX(model, size);
    AddOrthogonal(squares, model);
    return Importance((squares.Mean() + ByY(model, model.p, size)) / 2);
}

TablePtr ImportanceRows(ModelView const &model, IntList const *components) {
    if (!HasY(model))
        return nullptr;
    Answer answer(model.XTerms());
    for (Index const size : ChosenSizes(model.Fit(), components))
        if (size > 0)
            answer.Add(model.Label("VIP") + AskedSizeLabel(model, size),
                       WholeImportance(model.Fit().components, size, IsOrthogonalKind(model)));
    return answer.Take();
}

TablePtr ImportanceOfRound(ModelView const &model, int round, IntList const *components) {
    if (!HasValidatedY(model) || round < 1 || round > static_cast<int>(model.Fit().crossValidation->rounds.size()))
        return nullptr;
    Components const &fitted = model.Fit().crossValidation->rounds[static_cast<std::size_t>(round - 1)];
    Answer answer(model.XTerms());
    for (Index const size : ChosenSizes(model.Fit(), components))
        if (size > 0 && size <= fitted.Predictive())
            answer.Add(model.Label("VIPcv") + AskedSizeLabel(model, size) + RoundLabel(round),
                       WholeImportance(fitted, size, IsOrthogonalKind(model)));
    return answer.Take();
}

TablePtr ImportanceErrors(ModelView const &model, int component) {
    std::optional<Index> const size = ChosenSize(model.Fit(), component);
    if (!HasValidatedY(model) || !size || *size == 0)
        return nullptr;
    Matrix const errors =
        Jackknife(*model.Fit().crossValidation, [&](Components const &round) -> std::optional<Matrix> {
            if (round.Predictive() < *size)
                return {};
            return Matrix(WholeImportance(round, *size, IsOrthogonalKind(model)));
        }).error;
    Answer answer(model.XTerms());
    std::string const label = model.Label("VIPcvSE") + AskedSizeLabel(model, *size);
    if (errors.size() > 0)
        answer.Add(label, errors.col(0));
    else
        answer.Add(label);
    return answer.Take();
}

TablePtr OneRow(ModelView const &model, char const *name, Vector const &values) {
    Answer answer(model.XTerms());
    answer.Add(model.Label(name), values);
    return answer.Take();
}

bool HasYAndComponents(ModelView const &model) {
    return HasY(model) && model.Fit().components.Predictive() > 0;
}
bool HasValidatedComponents(ModelView const &model) {
    return HasYAndComponents(model) && model.Fit().crossValidation;
}

} // namespace

void AddImportanceHandlers(Handlers &handlers) {
    using enum Operation;
    handlers.On<GetVIP>([](ModelView const &model, IntList const *components, TriState::State) {
        return ImportanceRows(model, components);
    });
    handlers.On<GetVIPcv>([](ModelView const &model, int round, IntList const *components, TriState::State) {
        return ImportanceOfRound(model, round, components);
    });
    handlers.On<GetVIPcvSE>(
        [](ModelView const &model, int component, TriState::State) { return ImportanceErrors(model, component); });
    handlers.On<GetOPLSPredVIP>([](ModelView const &model, TriState::State) -> TablePtr {
        Components const &components = model.Fit().components;
        return IsOrthogonalKind(model) && components.Predictive() > 0
                   ? OneRow(model, "VIPpred", PredictiveImportance(components, components.Predictive()))
                   : nullptr;
    });
    handlers.On<GetOPLSOrthVIP>([](ModelView const &model, TriState::State) -> TablePtr {
        Components const &components = model.Fit().components;
        return components.XOrthogonal() > 0 ? OneRow(model, "VIPorth", OrthogonalImportance(components)) : nullptr;
    });
    OnTermColumns<GetVIPColumnIDs>(handlers, &ModelView::XTerms, HasYAndComponents);
    OnTermColumns<GetVIPcvColumnIDs>(handlers, &ModelView::XTerms, HasValidatedComponents);
    OnTermColumns<GetVIPcvSEColumnIDs>(handlers, &ModelView::XTerms, HasValidatedComponents);
}

} // namespace engine
