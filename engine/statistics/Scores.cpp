#include "engine/models/CrossValidation.h"
#include "engine/models/Prediction.h"
#include "engine/statistics/Answer.h"
#include "engine/statistics/RowSet.h"
#include "engine/statistics/RowStatistics.h"
#include "platform/containers/Missing.h"

#include <cmath>

// Scores: one row for each component, one column for each observation.

namespace engine {

namespace {

// Kinds of scores, and where each of them is found.
struct ScoreKind {
    char const *name;
    Matrix Scores::*values;
    Index (Components::*size)() const;
    Eigen::VectorXi FittedModel::*observed; // cells of each row; without any there is no score
};

constexpr ScoreKind tScores{"t", &Scores::t, &Components::Predictive, &FittedModel::xObserved};
constexpr ScoreKind toScores{"to", &Scores::to, &Components::XOrthogonal, &FittedModel::xObserved};
constexpr ScoreKind uScores{"u", &Scores::u, &Components::Predictive, &FittedModel::yObserved};
constexpr ScoreKind uoScores{"uo", &Scores::uo, &Components::YOrthogonal, &FittedModel::yObserved};

std::string ScoreLabel(ModelView const &model, ScoreKind const &kind, char const *ending, std::string const &rest) {
    return model.Label(kind.name) + ending + rest;
}

TablePtr ScoresOf(RowSource const &source, ScoreKind const &kind, IntList const *components, int batch = allBatches) {
    std::optional<RowSet> const rows = source.Rows(batch);
    if (!rows)
        return nullptr;
    Matrix const &values = rows->AllScores().*kind.values;
    Eigen::VectorXi const &observed = rows->Predicted() ? rows->XObserved() : source.model.Fit().*kind.observed;
    std::vector<Index> const chosen = ChosenComponents(components, values.cols());
    Answer answer(rows->Columns(), chosen.size());
    for (Index const component : chosen)
        MarkUnobserved(answer.Add(source.model.Label(source.Name(kind.name)) + ComponentLabel(component),
                                  rows->Of(values.col(component))),
                       rows->Of(observed));
    return answer.Take();
}

// Each observation's score from the round that left it out, missing where the round has no such component.
TablePtr ExcludedScores(ModelView const &model, ScoreKind const &kind, IntList const *components,
                        int batch = allBatches) {
    std::optional<CrossValidation> const &validation = model.Fit().crossValidation;
    std::optional<RowSet> const rows = RowSource{model}.Rows(batch);
    if (!validation || !rows)
        return nullptr;
    Matrix const &values = validation->excluded.*kind.values;
    Answer answer(rows->Columns());
    for (Index const component : ChosenComponents(components, values.cols())) {
        auto const row =
            answer.Add(ScoreLabel(model, kind, "cv", ComponentLabel(component)), rows->Of(values.col(component)));
        MarkUnobserved(row, rows->Of(model.Fit().*kind.observed));
        for (std::size_t i = 0; i < row.size(); ++i) {
            std::size_t const place = static_cast<std::size_t>(rows->First()) + i;
            Components const &round = validation->rounds[static_cast<std::size_t>(validation->roundOfRow[place])];
            if (component >= (round.*kind.size)())
                row[i] = missingValue;
        }
    }
    return answer.Take();
}

// The model of a round counted from 1, null when there is none.
Components const *RoundOf(ModelView const &model, int round) {
    std::optional<CrossValidation> const &validation = model.Fit().crossValidation;
    bool const known = validation && round >= 1 && round <= static_cast<int>(validation->rounds.size());
    return known ? &validation->rounds[static_cast<std::size_t>(round - 1)] : nullptr;
}

// Scores t of any rows with the model of one round.
TablePtr RoundScores(ModelView const &model, char const *ending, int round, IntList const *components, Block const &x,
                     Eigen::VectorXi const &observed, ColumnIDs const &columns) {
    Components const *const fitted = RoundOf(model, round);
    if (!fitted)
        return nullptr;
    Scores const scores = PredictScores(*fitted, x);
    Answer answer(columns);
    for (Index const component : ChosenComponents(components, scores.t.cols()))
        MarkUnobserved(answer.Add(ScoreLabel(model, tScores, ending, ComponentLabel(component) + RoundLabel(round)),
                                  scores.t.col(component)),
                       observed);
    return answer.Take();
}

// Jack-knife standard errors of the scores of any rows.
TablePtr ScoreErrors(ModelView const &model, ScoreKind const &kind, char const *ending, int component, Block const &x,
                     Eigen::VectorXi const &observed, ColumnIDs const &columns) {
    std::optional<CrossValidation> const &validation = model.Fit().crossValidation;
    auto const chosen = ChosenComponent(component, (model.Fit().components.*kind.size)());
    if (!validation || !chosen)
        return nullptr;
    auto const scoresOf = [&](Components const &round) -> std::optional<Matrix> {
        if (*chosen >= (round.*kind.size)())
            return std::nullopt;
        return Matrix((PredictScores(round, x).*kind.values).col(*chosen));
    };
    Matrix const errors = Jackknife(*validation, scoresOf).error;
    Answer answer(columns);
    MarkUnobserved(
        answer.Add(ScoreLabel(model, kind, ending, ComponentLabel(*chosen)),
                   errors.size() > 0 ? Vector(errors.col(0)) : Vector(Vector::Constant(x.Rows(), missingValue))),
        observed);
    return answer.Take();
}

// Scores in standard deviations about their mean; NaN where there is none.
Vector Standardised(ModelView const &model, ScoreKind const &kind, Index component) {
    Vector const z = (model.Fit().scores.*kind.values).col(component);
    Eigen::VectorXi const &observed = model.Fit().*kind.observed;
    ScoreSpread const spread = SpreadOf(z, observed);
    return (observed.array() > 0).select((z.array() - spread.mean) / spread.deviation, notComputable);
}

// The first of two scores, in units that make the outermost observation of the pair lie on the unit circle.
TablePtr PairScores(ModelView const &model, char const *name, IntList const &components,
                    std::vector<bool> const &orthogonal) {
    if (components.size() != 2 || orthogonal.size() != 2)
        return nullptr;
    Vector z[2];
    Index chosen[2];
    auto component = components.begin();
    for (int i = 0; i < 2; ++i, ++component) {
        ScoreKind const &kind = orthogonal[static_cast<std::size_t>(i)] ? toScores : tScores;
        auto const valid = ChosenComponent(*component, (model.Fit().components.*kind.size)());
        if (!valid)
            return nullptr;
        chosen[i] = *valid;
        z[i] = Standardised(model, kind, *valid);
    }
    bool const same = chosen[0] == chosen[1] && orthogonal[0] == orthogonal[1];
    double radius = 0;
    for (Index i = 0; i < z[0].size(); ++i)
        if (double const distance = same ? std::abs(z[0][i]) : std::hypot(z[0][i], z[1][i]); std::isfinite(distance))
            radius = std::max(radius, distance);
    Answer answer(model.Observations());
    answer.Add(model.Label(name) + ComponentLabel(chosen[0]), z[0] / radius);
    return answer.Take();
}

// The model has components of a kind.
template <ScoreKind const &kind>
bool HasScores(ModelView const &model) {
    return (model.Fit().components.*kind.size)() > 0;
}

template <ScoreKind const &kind>
bool HasValidatedScores(ModelView const &model) {
    return model.Fit().crossValidation && HasScores<kind>(model);
}

bool HasUScores(ModelView const &model) {
    return HasY(model) && HasScores<uScores>(model);
}
bool HasValidatedUScores(ModelView const &model) {
    return HasY(model) && HasValidatedScores<uScores>(model);
}

Vector ScoreValues(RowSet const &rows, ScoreKind const &kind, Index component) {
    return (rows.Of(rows.XObserved()).array() > 0)
        .select(rows.Of((rows.AllScores().*kind.values).col(component)).array(), notComputable);
}

} // namespace

Vector ScoresT(RowSet const &rows, Index component) {
    return ScoreValues(rows, tScores, component);
}

Vector ScoresTo(RowSet const &rows, Index component) {
    return ScoreValues(rows, toScores, component);
}

void AddScoreHandlers(Handlers &handlers) {
    OnRows<Operation::GetT, Operation::GetTPS>(handlers,
                                               [](RowSource const &source, IntList const *components, int batch) {
                                                   return ScoresOf(source, tScores, components, batch);
                                               });
    OnRows<Operation::GetTo, Operation::GetToPS>(handlers,
                                                 [](RowSource const &source, IntList const *components, int batch) {
                                                     return ScoresOf(source, toScores, components, batch);
                                                 });
    handlers.On<Operation::GetU>(
        [](ModelView const &model, IntList const *components) { return ScoresOf({model}, uScores, components); });
    handlers.On<Operation::GetUo>(
        [](ModelView const &model, IntList const *components) { return ScoresOf({model}, uoScores, components); });
    handlers.On<Operation::GetTcvExcluded>([](ModelView const &model, IntList const *components, int batch) {
        return ExcludedScores(model, tScores, components, batch);
    });
    handlers.On<Operation::GetTocvExcluded>(
        [](ModelView const &model, IntList const *components) { return ExcludedScores(model, toScores, components); });
    handlers.On<Operation::GetUcv>(
        [](ModelView const &model, IntList const *components) { return ExcludedScores(model, uScores, components); });
    handlers.On<Operation::GetUocvExcluded>(
        [](ModelView const &model, IntList const *components) { return ExcludedScores(model, uoScores, components); });
    handlers.On<Operation::GetTcv>([](ModelView const &model, int round, IntList const *components) {
        return RoundScores(model, "cv", round, components, model.Data().x, model.Fit().xObserved, model.Observations());
    });
    handlers.On<Operation::GetTcvPS>(
        [](ModelView const &model, Subject const &subject, int round, IntList const *components) -> TablePtr {
            PredictedRows const *const rows = subject.Predictions(model.GetModelNumber());
            if (!rows)
                return nullptr;
            return RoundScores(model, "PScv", round, components, rows->x, rows->xObserved, rows->columns);
        });
    handlers.On<Operation::GetTcvSE>([](ModelView const &model, int component) {
        return ScoreErrors(model, tScores, "cvSE", component, model.Data().x, model.Fit().xObserved,
                           model.Observations());
    });
    handlers.On<Operation::GetTocvSE>([](ModelView const &model, int component) {
        return ScoreErrors(model, toScores, "cvSE", component, model.Data().x, model.Fit().xObserved,
                           model.Observations());
    });
    handlers.On<Operation::GetTcvSEPS>([](ModelView const &model, Subject const &subject, int component) -> TablePtr {
        PredictedRows const *const rows = subject.Predictions(model.GetModelNumber());
        if (!rows)
            return nullptr;
        return ScoreErrors(model, tScores, "PScvSE", component, rows->x, rows->xObserved, rows->columns);
    });
    handlers.On<Operation::GetTCorrExt>(
        [](ModelView const &model, IntList const &components, std::vector<bool> const &orthogonal) {
            return PairScores(model, "t(corr)", components, orthogonal);
        });
    handlers.On<Operation::GetToCorr>(
        [](ModelView const &model, IntList const &components, std::vector<bool> const &orthogonal) {
            return PairScores(model, "to(corr)", components, orthogonal);
        });

    OnRowColumns<Operation::GetTColumnIDs, Operation::GetTPSColumnIDs>(handlers, HasScores<tScores>);
    OnRowColumns<Operation::GetToColumnIDs, Operation::GetToPSColumnIDs>(handlers, HasScores<toScores>);
    OnWorksetColumns<Operation::GetUColumnIDs>(handlers, HasUScores);
    OnWorksetColumns<Operation::GetUoColumnIDs>(handlers, HasScores<uoScores>);
    OnWorksetColumns<Operation::GetTCorrColumnIDs>(handlers, HasScores<tScores>);
    OnWorksetColumns<Operation::GetToCorrColumnIDs>(handlers, HasScores<toScores>);
    OnWorksetColumns<Operation::GetTcvColumnIDs>(handlers, HasValidatedScores<tScores>);
    OnWorksetColumns<Operation::GetTcvExcludedColumnIDs>(handlers, HasValidatedScores<tScores>);
    OnWorksetColumns<Operation::GetTcvSEColumnIDs>(handlers, HasValidatedScores<tScores>);
    OnWorksetColumns<Operation::GetTocvSEColumnIDs>(handlers, HasValidatedScores<toScores>);
    OnWorksetColumns<Operation::GetTocvExcludedColumnIDs>(handlers, HasValidatedScores<toScores>);
    OnWorksetColumns<Operation::GetUocvExcludedColumnIDs>(handlers, HasValidatedScores<uoScores>);
    OnWorksetColumns<Operation::GetUcvColumnIDs>(handlers, HasValidatedUScores);
    OnPredictedColumns<Operation::GetTcvPSColumnIDs>(handlers, HasValidatedScores<tScores>);
    OnPredictedColumns<Operation::GetTcvSEPSColumnIDs>(handlers, HasValidatedScores<tScores>);
}

} // namespace engine
