#include "engine/models/CrossValidation.h"
#include "engine/statistics/Answer.h"
#include "engine/statistics/RowSet.h"
#include "engine/statistics/TermStatistics.h"

#include <cmath>

// Importance of the X terms: one column for each. The mean square of each form is 1. The Reconstruct flag
// is heard by Reconstruction.

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
// With a response, of what they explain of that one.
Vector ByY(Components const &model, Matrix const &directions, Index size, std::optional<Index> response = {}) {
    WeightedSquares squares(directions.rows());
    for (Index a = 0; a < size; ++a)
        squares.Add(directions.col(a), response ? model.TakenY(a)[*response] : model.TakenY(a).sum());
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

} // namespace

Vector OrthogonalImportance(Components const &model) {
    WeightedSquares squares(model.p.rows());
    AddOrthogonal(squares, model);
    return Importance(squares.Mean());
}

Vector PredictiveImportance(Components const &model, Index size) {
    return Importance((ByX(model, size).Mean() + ByY(model, model.p, size)) / 2);
}

// Y has no part in orthogonal components, so that the X part takes its weight.
Vector WholeImportance(Components const &model, Index size, bool orthogonalKind, std::optional<Index> response) {
    if (!orthogonalKind)
        return Importance(ByY(model, model.w, size, response));
    WeightedSquares squares = ByX(model, size);
    AddOrthogonal(squares, model);
    return Importance((squares.Mean() + ByY(model, model.p, size, response)) / 2);
}

namespace {

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

// The lower-level model of a phase of a batch-level model, and its place among those that the data set is made of.
// Phases count from 1; below that it is the first.
struct LowerModel {
    ModelView const *view = nullptr; // null where there is none
    std::size_t source = 0;
};

LowerModel LowerModelOf(ModelView const &model, Subject const &subject, int phase) {
    auto const *const recipe = model.FittedData().MadeAs<BatchLevelRecipe>();
    auto const source = static_cast<std::size_t>(std::max(1, phase) - 1);
    if (!recipe || source >= recipe->sources.size())
        return {};
    return {subject.Model(recipe->sources[source].model), source};
}

// How much each X term of a lower-level model has part in one of its statistics: squares that add up to 1.
Vector Shares(ModelView const &lower, BatchLevelRecipe::Source const &source, int statistic) {
    Components const &components = lower.Fit().components;
    if (statistic < source.scores)
        return components.DirectWeights().col(statistic).normalized().cwiseAbs2();
    if (statistic -= source.scores; statistic < source.orthogonal)
        return components.woStar.col(statistic).normalized().cwiseAbs2();
    return Vector::Unit(lower.XTerms().Size(), statistic - source.orthogonal);
}

// Importance of the lower-level variables of a phase: that of batch-level terms, shared out to what they are made of.
TablePtr BatchImportance(ModelView const &model, Subject const &subject, int component, ColumnTerm const *response,
                         int phase) {
    LowerModel const lower = LowerModelOf(model, subject, phase);
    std::optional<Index> const size = ChosenSize(model.Fit(), component);
    int const place = response ? model.GetYColumnTerms().Find(*response) : 0;
    if (!lower.view || !size || *size == 0 || place < 0)
        return nullptr;
    Components const &components = model.Fit().components;
    Vector const squares = (HasY(model) ? WholeImportance(components, *size, IsOrthogonalKind(model),
                                                          place > 0 ? std::optional<Index>(place - 1) : std::nullopt)
                                        : Importance(ByX(components, *size).Mean()))
                               .cwiseAbs2();
    auto const &recipe = *model.FittedData().MadeAs<BatchLevelRecipe>();
    Vector sum = Vector::Zero(lower.view->XTerms().Size());
    double terms = 0;
    for (Index k = 0; k < squares.size(); ++k) {
        Term const &term = model.Fit().definition.xTerms[static_cast<std::size_t>(k)];
        auto const from = term.IsProduct() || term.IsLevel() ? std::nullopt : recipe.PlaceOf(term.column);
        if (!from || from->source != lower.source)
            continue;
        sum += squares[k] * Shares(*lower.view, recipe.sources[from->source], from->statistic);
        ++terms;
    }
    Answer answer(lower.view->XTerms());
    answer.Add(model.Label("BatchVIP") + AskedSizeLabel(model, *size),
               (sum * static_cast<double>(sum.size()) / terms).cwiseSqrt());
    return answer.Take();
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
    handlers.On<GetBatchVariableImportance>(BatchImportance);
    handlers.On<GetBatchVariableImportanceColumnIDs>([](ModelView const &model, Subject const &subject, int phase) {
        LowerModel const lower = LowerModelOf(model, subject, phase);
        return lower.view ? lower.view->XTerms() : model.None();
    });
    OnTermColumns<GetVIPColumnIDs>(handlers, &ModelView::XTerms, HasYAndComponents);
    OnTermColumns<GetVIPcvColumnIDs>(handlers, &ModelView::XTerms, HasValidatedComponents);
    OnTermColumns<GetVIPcvSEColumnIDs>(handlers, &ModelView::XTerms, HasValidatedComponents);
}

} // namespace engine
