#include "engine/models/CrossValidation.h"
#include "engine/models/Prediction.h"
#include "engine/statistics/Answer.h"
#include "engine/statistics/Handlers.h"
#include "platform/Missing.h"

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

constexpr int allBatches = -1;

std::string ScoreLabel(ModelView const &model, ScoreKind const &kind, char const *ending, std::string const &rest) {
    return model.Label(kind.name) + ending + rest;
}

TablePtr FittedScores(ModelView const &model, ScoreKind const &kind, IntList const *components, int batch) {
    if (batch != allBatches)
        return nullptr;
    Matrix const &values = model.Fit().scores.*kind.values;
    Answer answer(model.Observations());
    for (Index const component : ChosenComponents(components, values.cols()))
        MarkUnobserved(answer.Add(ScoreLabel(model, kind, "", ComponentLabel(component)), values.col(component)),
                       model.Fit().*kind.observed);
    return answer.Take();
}

TablePtr PredictedScores(PredictedRows const *rows, ModelView const &model, ScoreKind const &kind,
                         IntList const *components, int batch) {
    if (!rows || batch != allBatches)
        return nullptr;
    Matrix const &values = rows->scores.*kind.values;
    Answer answer(rows->columns);
    for (Index const component : ChosenComponents(components, values.cols()))
        MarkUnobserved(answer.Add(ScoreLabel(model, kind, "PS", ComponentLabel(component)), values.col(component)),
                       rows->xObserved);
    return answer.Take();
}

// Each observation's score from the round that left it out, missing where the round has no such component.
TablePtr ExcludedScores(ModelView const &model, ScoreKind const &kind, IntList const *components, int batch) {
    std::optional<CrossValidation> const &validation = model.Fit().crossValidation;
    if (!validation || batch != allBatches)
        return nullptr;
    Matrix const &values = validation->excluded.*kind.values;
    Answer answer(model.Observations());
    for (Index const component : ChosenComponents(components, values.cols())) {
        auto const row = answer.Add(ScoreLabel(model, kind, "cv", ComponentLabel(component)), values.col(component));
        MarkUnobserved(row, model.Fit().*kind.observed);
        for (std::size_t i = 0; i < row.size(); ++i) {
            Components const &round = validation->rounds[static_cast<std::size_t>(validation->roundOfRow[i])];
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
        MarkUnobserved(
            answer.Add(ScoreLabel(model, tScores, ending, RoundLabel(component, round)), scores.t.col(component)),
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
    Vector z = (model.Fit().scores.*kind.values).col(component);
    auto const observed = (model.Fit().*kind.observed).array() > 0;
    double const count = static_cast<double>(observed.count());
    double const mean = observed.select(z.array(), 0.0).sum() / count;
    double const squares = observed.select((z.array() - mean).square(), 0.0).sum();
    z = (z.array() - mean) / std::sqrt(squares / (count - 1));
    return observed.select(z.array(), std::nan(""));
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

ColumnIDs PredictedColumns(ModelView const &model, Subject const &subject) {
    PredictedRows const *const rows = subject.Predictions(model.GetModelNumber());
    return rows ? rows->columns : model.None();
}

ColumnIDs ValidatedPredictedColumns(ModelView const &model, Subject const &subject) {
    return model.Fit().crossValidation ? PredictedColumns(model, subject) : model.None();
}

// The columns of statistics that need components of a kind, or cross-validation.
template <ScoreKind const &kind>
ColumnIDs ColumnsOf(ModelView const &model) {
    return (model.Fit().components.*kind.size)() > 0 ? model.Observations() : model.None();
}

template <ScoreKind const &kind>
ColumnIDs ValidatedColumnsOf(ModelView const &model) {
    return model.Fit().crossValidation ? ColumnsOf<kind>(model) : model.None();
}

ColumnIDs OfBatch(int batch, ColumnIDs const &columns, ModelView const &model) {
    return batch == allBatches ? columns : model.None();
}

} // namespace

void AddScoreHandlers(Handlers &handlers) {
    handlers.On<Operation::GetT>([](ModelView const &model, IntList const *components, int batch) {
        return FittedScores(model, tScores, components, batch);
    });
    handlers.On<Operation::GetTo>([](ModelView const &model, IntList const *components, int batch) {
        return FittedScores(model, toScores, components, batch);
    });
    handlers.On<Operation::GetU>([](ModelView const &model, IntList const *components) {
        return FittedScores(model, uScores, components, allBatches);
    });
    handlers.On<Operation::GetUo>([](ModelView const &model, IntList const *components) {
        return FittedScores(model, uoScores, components, allBatches);
    });
    handlers.On<Operation::GetTPS>(
        [](ModelView const &model, Subject const &subject, IntList const *components, int batch) {
            return PredictedScores(subject.Predictions(model.GetModelNumber()), model, tScores, components, batch);
        });
    handlers.On<Operation::GetToPS>(
        [](ModelView const &model, Subject const &subject, IntList const *components, int batch) {
            return PredictedScores(subject.Predictions(model.GetModelNumber()), model, toScores, components, batch);
        });
    handlers.On<Operation::GetTcvExcluded>([](ModelView const &model, IntList const *components, int batch) {
        return ExcludedScores(model, tScores, components, batch);
    });
    handlers.On<Operation::GetTocvExcluded>([](ModelView const &model, IntList const *components) {
        return ExcludedScores(model, toScores, components, allBatches);
    });
    handlers.On<Operation::GetUcv>([](ModelView const &model, IntList const *components) {
        return ExcludedScores(model, uScores, components, allBatches);
    });
    handlers.On<Operation::GetUocvExcluded>([](ModelView const &model, IntList const *components) {
        return ExcludedScores(model, uoScores, components, allBatches);
    });
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

    handlers.On<Operation::GetTColumnIDs>(
        [](ModelView const &model, int batch) { return OfBatch(batch, ColumnsOf<tScores>(model), model); });
    handlers.On<Operation::GetToColumnIDs>(
        [](ModelView const &model, int batch) { return OfBatch(batch, ColumnsOf<toScores>(model), model); });
    handlers.On<Operation::GetUColumnIDs>(
        [](ModelView const &model) { return model.YTerms().Size() > 0 ? ColumnsOf<uScores>(model) : model.None(); });
    handlers.On<Operation::GetUoColumnIDs>(ColumnsOf<uoScores>);
    handlers.On<Operation::GetTCorrColumnIDs>(ColumnsOf<tScores>);
    handlers.On<Operation::GetToCorrColumnIDs>(ColumnsOf<toScores>);
    handlers.On<Operation::GetTcvColumnIDs>(ValidatedColumnsOf<tScores>);
    handlers.On<Operation::GetTcvSEColumnIDs>(ValidatedColumnsOf<tScores>);
    handlers.On<Operation::GetTocvSEColumnIDs>(ValidatedColumnsOf<toScores>);
    handlers.On<Operation::GetTocvExcludedColumnIDs>(ValidatedColumnsOf<toScores>);
    handlers.On<Operation::GetUocvExcludedColumnIDs>(ValidatedColumnsOf<uoScores>);
    handlers.On<Operation::GetUcvColumnIDs>([](ModelView const &model) {
        return model.YTerms().Size() > 0 ? ValidatedColumnsOf<uScores>(model) : model.None();
    });
    handlers.On<Operation::GetTcvExcludedColumnIDs>(
        [](ModelView const &model, int batch) { return OfBatch(batch, ValidatedColumnsOf<tScores>(model), model); });
    handlers.On<Operation::GetTPSColumnIDs>([](ModelView const &model, Subject const &subject, int batch) {
        return OfBatch(batch, PredictedColumns(model, subject), model);
    });
    handlers.On<Operation::GetToPSColumnIDs>([](ModelView const &model, Subject const &subject, int batch) {
        bool const any = model.Fit().components.XOrthogonal() > 0;
        return any ? OfBatch(batch, PredictedColumns(model, subject), model) : model.None();
    });
    handlers.On<Operation::GetTcvPSColumnIDs>(ValidatedPredictedColumns);
    handlers.On<Operation::GetTcvSEPSColumnIDs>(ValidatedPredictedColumns);
}

} // namespace engine
