#include "engine/models/CrossValidation.h"
#include "engine/models/Prediction.h"
#include "engine/statistics/Answer.h"
#include "engine/statistics/RowStatistics.h"
#include "engine/statistics/Units.h"
#include "platform/numerics/Sta.h"

// How sure predictions of Y are: limits, predictions by cross-validation, and their errors in one number.

namespace engine {

namespace {

constexpr float levelOfModel = -1.0f;

// Half widths of the interval that the scatter of the residuals gives, in workset scale: sigma sqrt(A0/N + h), and for
// a new observation sigma sqrt(1 + A0/N + h) (Martens & Naes 1989; Faber & Bro 2002).
Vector Leverages(RowSet const &rows, Index size) {
    FittedModel const &fit = rows.Model().Fit();
    Vector leverages = Vector::Zero(rows.Size());
    for (Index a = 0; a < size; ++a)
        leverages += rows.T().col(a).cwiseAbs2() / fit.scores.t.col(a).squaredNorm();
    for (Index j = 0; j < fit.components.XOrthogonal(); ++j)
        leverages += rows.To().col(j).cwiseAbs2() / fit.scores.to.col(j).squaredNorm();
    return leverages;
}

// The lower (sign -1) or upper limit of the fitted response by its standard error.
TablePtr StandardErrorLimits(RowSource const &source, char const *name, int component, ColumnTerms const *terms,
                             Units units, int sign) {
    std::optional<Index> const size = ChosenSize(source.model.Fit(), component);
    std::optional<RowSet> const rows = source.Rows();
    if (!size || !rows || !HasY(source.model))
        return nullptr;
    FittedModel const &fit = source.model.Fit();
    double const alone = (rows->Predicted() ? 1.0 : 0.0) + fit.YCentred() / static_cast<double>(fit.Rows());
    Vector const widths = (Leverages(*rows, *size).array() + alone).sqrt();
    Vector const variances = YVariancesOfSize(fit, source.model.Data(), *size);
    Side const side = Side::Y(source.model);
    Answer answer(rows->Columns());
    for (Index const term : ChosenTerms(side.all, terms)) {
        TermCells const cells(*rows, side, term);
        Vector const predicted = PredictedY(*rows, term, *size);
        double const deviation = std::sqrt(variances[term]);
        auto const row =
            answer.Add(source.model.Label(source.Name(name)) + AskedSizeLabel(source.model, *size) + side.Label(term));
        for (Index i = 0; i < rows->Size(); ++i)
            row[static_cast<std::size_t>(i)] =
                ToStored(cells.Limit(i, predicted[i], deviation * widths[i], units, sign));
    }
    return answer.Take();
}

// The prediction of one term in workset scale by the model of a round, NaN for a row without observed X; nothing when
// the round has fewer components.
std::optional<Matrix> PredictionOfRound(RowSet const &rows, Components const &round, Index term, Index size) {
    if (round.Predictive() < size)
        return {};
    Scores const scores = PredictScores(round, rows.AllX());
    Vector const predicted = scores.t.leftCols(size) * round.c.row(term).head(size).transpose();
    return (rows.XObserved().array() > 0).select(predicted.array(), notComputable).matrix();
}

// Jack-knife standard errors of such predictions, after `shown` has changed each of them; NaN with fewer than two.
template <typename Shown>
Vector ErrorsOverRounds(RowSet const &rows, Index term, Index size, double &freedom, Shown shown) {
    auto const [error, count] = Jackknife(*rows.Model().Fit().crossValidation, [&](Components const &round) {
        std::optional<Matrix> predicted = PredictionOfRound(rows, round, term, size);
        if (predicted)
            shown(*predicted);
        return predicted;
    });
    freedom = count;
    return error.size() > 0 ? Vector(error.col(0)) : Vector(Vector::Constant(rows.Size(), notComputable));
}

// What a model of the rounds predicts for a prediction set, made ready for one question.
std::optional<RowSet> ValidatedRows(ModelView const &model, Subject const &subject) {
    if (!HasValidatedY(model))
        return {};
    return RowSource{model, true, subject.Predictions(model.GetModelNumber())}.Rows();
}

// The limits by the jack-knife: prediction + sign t SE in workset scale.
TablePtr ConfidenceLimits(ModelView const &model, Subject const &subject, char const *name, int component, Units units,
                          ColumnTerms const *terms, double level, int sign) {
    std::optional<RowSet> const rows = ValidatedRows(model, subject);
    std::optional<Index> const size = ChosenSize(model.Fit(), component);
    if (!rows || !size)
        return nullptr;
    Side const side = Side::Y(model);
    Answer answer(rows->Columns());
    for (Index const term : ChosenTerms(side.all, terms)) {
        double freedom = 0;
        Vector const errors = ErrorsOverRounds(*rows, term, *size, freedom, [](Matrix const &) {});
        double const quantile = Sta::FFTest(1, freedom, level);
        Vector const widths = errors * (quantile < 0 ? notComputable : std::sqrt(quantile));
        auto const row = answer.Add(model.Label(name) + AskedSizeLabel(model, *size) + side.Label(term));
        TermCells const cells(*rows, side, term);
        Vector const predicted = PredictedY(*rows, term, *size);
        for (Index i = 0; i < rows->Size(); ++i)
            row[static_cast<std::size_t>(i)] = ToStored(cells.Limit(i, predicted[i], widths[i], units, sign));
    }
    return answer.Take();
}

// Predictions of one round: one row for each size.
TablePtr PredictionsOfRound(ModelView const &model, Subject const &subject, int round, ColumnTerm const &named,
                            Units units, IntList const *components) {
    std::optional<RowSet> const rows = ValidatedRows(model, subject);
    int const term = model.GetYColumnTerms().Find(named);
    if (!rows || term < 1 || round < 1 || round > static_cast<int>(model.Fit().crossValidation->rounds.size()))
        return nullptr;
    Components const &fitted = model.Fit().crossValidation->rounds[static_cast<std::size_t>(round - 1)];
    Side const side = Side::Y(model);
    TermCells const cells(*rows, side, term - 1);
    Answer answer(rows->Columns());
    for (Index const size : ChosenSizes(model.Fit(), components)) {
        std::optional<Matrix> const predicted = PredictionOfRound(*rows, fitted, term - 1, size);
        if (!predicted)
            continue;
        auto const row = answer.Add(model.Label("YPredPScv") + AskedSizeLabel(model, size) + side.Label(term - 1) +
                                    RoundLabel(round));
        for (Index i = 0; i < rows->Size(); ++i)
            row[static_cast<std::size_t>(i)] = ToStored(cells.InUnits(i, (*predicted)(i, 0), units));
    }
    return answer.Take();
}

TablePtr PredictionErrorsOfRounds(ModelView const &model, Subject const &subject, int component,
                                  ColumnTerms const *terms) {
    std::optional<RowSet> const rows = ValidatedRows(model, subject);
    std::optional<Index> const size = ChosenSize(model.Fit(), component);
    if (!rows || !size)
        return nullptr;
    Side const side = Side::Y(model);
    Answer answer(rows->Columns());
    for (Index const term : ChosenTerms(side.all, terms)) {
        TermCells const cells(*rows, side, term);
        double freedom = 0;
        auto const shown = [&](Matrix &predicted) {
            for (Index i = 0; i < rows->Size(); ++i)
                predicted(i, 0) = cells.InUnits(i, predicted(i, 0), Units::Source);
        };
        answer.Add(model.Label("YPredPScvSE") + AskedSizeLabel(model, *size) + side.Label(term),
                   ErrorsOverRounds(*rows, term, *size, freedom, shown));
    }
    return answer.Take();
}

// Values of one Y term for each row, in the units of the data set: what cross-validation predicts (given in workset
// scale), and what is observed less that.
Vector ValidatedY(RowSet const &rows, Index term, Vector predicted, bool errors) {
    TermCells const cells(rows, Side::Y(rows.Model()), term);
    for (Index i = 0; i < predicted.size(); ++i)
        predicted[i] = !rows.HasX(i) ? notComputable
                       : errors      ? cells.Residual(i, predicted[i], Units::Source)
                                     : cells.InUnits(i, predicted[i], Units::Source);
    return predicted;
}
Vector ValidatedY(RowSet const &rows, Index term, Index size, bool errors) {
    return ValidatedY(rows, term, CrossValidatedY(*rows.Model().Fit().crossValidation, term, size), errors);
}

TablePtr ValidatedRowsOf(ModelView const &model, char const *name, int component, ColumnTerms const *terms,
                         bool errors) {
    std::optional<Index> const size = ChosenSize(model.Fit(), component);
    if (!size || !HasValidatedY(model))
        return nullptr;
    RowSet const rows = *RowSource{model}.Rows();
    Side const side = Side::Y(model);
    Answer answer(model.Observations());
    for (Index const term : ChosenTerms(side.all, terms))
        answer.Add(model.Label(name) + AskedSizeLabel(model, *size) + side.Label(term),
                   ValidatedY(rows, term, *size, errors));
    return answer.Take();
}

// Errors of a term's prediction in the units of the data set.
Vector ErrorsOf(RowSet const &rows, Index term, Index size) {
    TermCells const cells(rows, Side::Y(rows.Model()), term);
    Vector errors = PredictedY(rows, term, size);
    for (Index i = 0; i < errors.size(); ++i)
        errors[i] = cells.Residual(i, errors[i], Units::Source);
    return errors;
}

struct ErrorSum {
    double squares = 0;
    double sum = 0;
    double count = 0; // of cells that have an error

    explicit ErrorSum(Vector const &errors) {
        for (double const error : errors)
            if (std::isfinite(error)) {
                squares += error * error;
                sum += error;
                count += 1;
            }
    }
    double RootMeanSquare() const { return count > 0 ? std::sqrt(squares / count) : notComputable; }
    double Deviation() const { return std::sqrt((squares - sum * sum / count) / (count - 1)); }
};

// One number for the errors of a term by a model of a size.
using Measure = double (*)(RowSet const &, Index term, Index size);

double FitError(RowSet const &rows, Index term, Index size) {
    FittedModel const &fit = rows.Model().Fit();
    double const freedom = YRowFreedom(fit, size + fit.components.XOrthogonal());
    return ErrorSum(ErrorsOf(rows, term, size)).RootMeanSquare() * std::sqrt(static_cast<double>(fit.Rows()) / freedom);
}

double PredictionError(RowSet const &rows, Index term, Index size) {
    return ErrorSum(ErrorsOf(rows, term, size)).RootMeanSquare();
}

double ValidationError(RowSet const &rows, Index term, Index size) {
    return ErrorSum(ValidatedY(rows, term, size, true)).RootMeanSquare();
}

double ValidationDeviation(RowSet const &rows, Index term, Index size) {
    return ErrorSum(ValidatedY(rows, term, size, true)).Deviation();
}

TablePtr ErrorsByTerm(ModelView const &model, std::optional<RowSet> const &rows, char const *name, Measure measure,
                      IntList const *components) {
    if (!rows || !HasY(model))
        return nullptr;
    Answer answer(model.YTerms());
    Vector errors(model.YTerms().Size());
    for (Index const size : ChosenSizes(model.Fit(), components)) {
        for (Index term = 0; term < errors.size(); ++term)
            errors[term] = measure(*rows, term, size);
        answer.Add(model.Label(name) + AskedSizeLabel(model, size), errors);
    }
    return answer.Take();
}

// One row for each term, for models of each size from 1, or of the whole size alone.
TablePtr ErrorsBySize(ModelView const &model, std::optional<RowSet> const &rows, char const *name, Measure measure,
                      ColumnTerms const *terms, bool last) {
    Index const all = model.Fit().components.Predictive();
    if (!rows || !HasY(model) || all == 0)
        return nullptr;
    Side const side = Side::Y(model);
    Answer answer(last ? model.LastComponent() : model.PredictiveComponents());
    for (Index const term : ChosenTerms(side.all, terms)) {
        Vector errors(last ? 1 : all);
        for (Index i = 0; i < errors.size(); ++i)
            errors[i] = measure(*rows, term, last ? all : i + 1);
        answer.Add(model.Label(name) + side.Label(term), errors);
    }
    return answer.Take();
}

ColumnIDs ValidatedProgressionColumns(ModelView const &model) {
    return HasValidatedY(model) ? model.ProgressionColumns() : model.None();
}

// One row for each term, for models with more and more X-side orthogonal components.
TablePtr ErrorsByProgression(ModelView const &model, ColumnTerms const *terms) {
    ColumnIDs const sizes = ValidatedProgressionColumns(model);
    if (sizes.Size() == 0)
        return nullptr;
    RowSet const rows = *RowSource{model}.Rows();
    Side const side = Side::Y(model);
    auto const &predicted = model.Fit().progression.predictedY;
    Answer answer(sizes);
    for (Index const term : ChosenTerms(side.all, terms)) {
        Vector errors(sizes.Size());
        for (Index j = 0; j < errors.size(); ++j)
            errors[j] = ErrorSum(ValidatedY(rows, term, predicted[static_cast<std::size_t>(j)].col(term), true))
                            .RootMeanSquare();
        answer.Add(model.Label("RMSEcv-progression") + side.Label(term), errors);
    }
    return answer.Take();
}

std::optional<RowSet> ValidatedWorkset(ModelView const &model) {
    return HasValidatedY(model) ? RowSource{model}.Rows() : std::nullopt;
}

template <Operation byTerm, Operation bySize, Operation last>
void AddErrors(Handlers &handlers, std::string name, Measure measure,
               std::optional<RowSet> (*rowsOf)(ModelView const &, Subject const &)) {
    handlers.On<byTerm>([=](ModelView const &model, Subject const &subject, IntList const *components) {
        return ErrorsByTerm(model, rowsOf(model, subject), name.c_str(), measure, components);
    });
    handlers.On<bySize>([=](ModelView const &model, Subject const &subject, ColumnTerms const *terms) {
        return ErrorsBySize(model, rowsOf(model, subject), name.c_str(), measure, terms, false);
    });
    handlers.On<last>([=](ModelView const &model, Subject const &subject, ColumnTerms const *terms) {
        return ErrorsBySize(model, rowsOf(model, subject), (name + "(Last)").c_str(), measure, terms, true);
    });
}

template <Operation operation>
void AddSizeColumns(Handlers &handlers, std::optional<RowSet> (*rowsOf)(ModelView const &, Subject const &)) {
    handlers.On<operation>([rowsOf](ModelView const &model, Subject const &subject) {
        return rowsOf(model, subject) && HasY(model) ? model.PredictiveComponents() : model.None();
    });
}

template <Operation operation>
void AddTermColumns(Handlers &handlers, std::optional<RowSet> (*rowsOf)(ModelView const &, Subject const &)) {
    handlers.On<operation>([rowsOf](ModelView const &model, Subject const &subject) {
        return rowsOf(model, subject) && HasComponents(model) ? model.YTerms() : model.None();
    });
}

std::optional<RowSet> NewRows(ModelView const &model, Subject const &subject) {
    return RowSource{model, true, subject.Predictions(model.GetModelNumber())}.Rows();
}
std::optional<RowSet> LeftOutRows(ModelView const &model, Subject const &) {
    return ValidatedWorkset(model);
}

template <Operation workset, Operation predicted>
void AddStandardErrorLimits(Handlers &handlers, char const *name, int sign) {
    handlers.On<workset>([=](ModelView const &model, int component, ColumnTerms const *terms) {
        return StandardErrorLimits({model}, name, component, terms, Units::Source, sign);
    });
    handlers.On<predicted>([=](ModelView const &model, Subject const &subject, int component, ColumnTerms const *terms,
                               TriState::State unscaled, TriState::State backTransformed) {
        return StandardErrorLimits({model, true, subject.Predictions(model.GetModelNumber())}, name, component, terms,
                                   UnitsOf(unscaled, backTransformed), sign);
    });
}

template <Operation operation>
void AddConfidenceLimits(Handlers &handlers, char const *name, int sign) {
    handlers.On<operation>([=](ModelView const &model, Subject const &subject, int component, TriState::State unscaled,
                               TriState::State backTransformed, ColumnTerms const *terms, float level) {
        double const alpha = level == levelOfModel ? model.Fit().definition.alpha : level;
        return ConfidenceLimits(model, subject, name, component, UnitsOf(unscaled, backTransformed), terms, alpha,
                                sign);
    });
}

} // namespace

Vector ValidatedYPredictions(RowSet const &rows, Index term, Index size) {
    return ValidatedY(rows, term, size, false);
}

void AddPredictionErrorHandlers(Handlers &handlers) {
    using enum Operation;
    AddStandardErrorLimits<GetSerrL, GetSerrLPS>(handlers, "SerrL", -1);
    AddStandardErrorLimits<GetSerrU, GetSerrUPS>(handlers, "SerrU", 1);
    AddConfidenceLimits<GetYPredPSCVConfIntPlus>(handlers, "YPredPSConfInt+", 1);
    AddConfidenceLimits<GetYPredPSCVConfIntMinus>(handlers, "YPredPSConfInt-", -1);
    handlers.On<GetYPredPSCV>([](ModelView const &model, Subject const &subject, int round, ColumnTerm const &term,
                                 TriState::State unscaled, TriState::State backTransformed, IntList const *components) {
        return PredictionsOfRound(model, subject, round, term, UnitsOf(unscaled, backTransformed), components);
    });
    handlers.On<GetYPredPScvSE>(PredictionErrorsOfRounds);
    handlers.On<GetYPredCV>([](ModelView const &model, int component, ColumnTerms const *terms) {
        return ValidatedRowsOf(model, "YPredcv", component, terms, false);
    });
    handlers.On<GetYPredCVErr>([](ModelView const &model, int component, ColumnTerms const *terms) {
        return ValidatedRowsOf(model, "YPredErrcv", component, terms, true);
    });
    handlers.On<GetYPredCVErrSE>([](ModelView const &model, ColumnTerms const *terms) {
        return ErrorsBySize(model, ValidatedWorkset(model), "YPredErrcvSE", ValidationDeviation, terms, false);
    });
    handlers.On<GetRMSEE>([](ModelView const &model, IntList const *components) {
        return ErrorsByTerm(model, RowSource{model}.Rows(), "RMSEE", FitError, components);
    });
    AddErrors<GetRMSEP, GetRMSEPPerComponent, GetRMSEPPerComponentLast>(handlers, "RMSEP", PredictionError, NewRows);
    AddErrors<GetRMSEcv, GetRMSEcvPerComponent, GetRMSEcvPerComponentLast>(handlers, "RMSEcv", ValidationError,
                                                                           LeftOutRows);
    handlers.On<GetRMSEcvProgression>(ErrorsByProgression);
    handlers.On<GetRMSEcvProgressionColumnIDs>(ValidatedProgressionColumns);
    OnRowColumns<GetSerrLColumnIDs, GetSerrLPSColumnIDs>(handlers, HasY);
    OnRowColumns<GetSerrUColumnIDs, GetSerrUPSColumnIDs>(handlers, HasY);
    OnPredictedColumns<GetYPredPSCVColumnIDs>(handlers, HasValidatedY);
    OnPredictedColumns<GetYPredPScvSEColumnIDs>(handlers, HasValidatedY);
    OnWorksetColumns<GetYPredCVColumnIDs>(handlers, HasValidatedY);
    OnWorksetColumns<GetYPredCVErrColumnIDs>(handlers, HasValidatedY);
    OnTermColumns<GetRMSEEColumnIDs>(handlers, &ModelView::YTerms, HasY);
    AddTermColumns<GetRMSEPColumnIDs>(handlers, NewRows);
    AddTermColumns<GetRMSEcvColumnIDs>(handlers, LeftOutRows);
    AddSizeColumns<GetRMSEPPerComponentColumnIDs>(handlers, NewRows);
    AddSizeColumns<GetRMSEcvPerComponentColumnIDs>(handlers, LeftOutRows);
    AddSizeColumns<GetYPredCVErrSEColumnIDs>(handlers, LeftOutRows);
}

} // namespace engine
