#include "engine/models/CrossValidation.h"
#include "engine/models/Fit.h"
#include "engine/models/Prediction.h"
#include "engine/statistics/Answer.h"
#include "engine/statistics/Resolution.h"
#include "engine/statistics/TermStatistics.h"
#include "engine/statistics/Units.h"

#include <Eigen/QR>

// Regression coefficients: one row for each Y term, one column for each X term, the constant before them. Every row has
// the form response = constant + sum of coefficient times variable, in units after the transformations. The flag
// Reconstruct is heard by Reconstruction.

namespace engine {

namespace {

// In which units variables and response are.
enum class Form { Scaled, ScaledX, Centred, Plain };

} // namespace

Matrix ScaledCoefficients(Components const &components, Index size) {
    // Filters precede all of W* alike; without them a shorter model has a W* of its own where cells are missing.
    return components.XOrthogonal() > 0 ? Coefficients(components, size)
                                        : Coefficients(FirstComponents(components, size), size);
}

Vector ErrorsOfCoefficients(FittedModel const &fit, Index size, Index yTerm) {
    Matrix const errors = Jackknife(*fit.crossValidation, [&](Components const &round) -> std::optional<Matrix> {
                              if (round.Predictive() < size)
                                  return {};
                              return Matrix(ScaledCoefficients(round, size).col(yTerm));
                          }).error;
    return errors.size() > 0 ? Vector(errors.col(0)) : Vector::Constant(fit.components.p.rows(), notComputable);
}

namespace {

// Rotated towards the prediction (Kvalheim & Karstang 1989; Kvalheim 2010).
Vector Rotated(Block const &x, Vector const &coefficients) {
    Vector const predicted = x.Values() * coefficients;
    return x.Values().transpose() * predicted * (coefficients.squaredNorm() / predicted.squaredNorm());
}

// The constant, then the coefficients in the units of the form.
Vector InForm(FittedModel const &fit, Index term, Vector const &scaled, Form form) {
    TermScale const &y = fit.yScales[static_cast<std::size_t>(term)];
    Vector row(scaled.size() + 1);
    row[0] = form == Form::Scaled ? y.offset * y.weight : y.offset;
    for (Index k = 0; k < scaled.size(); ++k) {
        TermScale const &x = fit.xScales[static_cast<std::size_t>(k)];
        double const unscaledY = form == Form::Scaled ? scaled[k] : scaled[k] / y.weight;
        row[k + 1] = form == Form::Centred || form == Form::Plain ? unscaledY * x.weight : unscaledY;
        if (form == Form::Plain)
            row[0] -= x.offset * row[k + 1];
    }
    return row;
}

} // namespace

Vector UnscaledCoefficients(FittedModel const &fit, Index size, Index yTerm) {
    Vector const withConstant = InForm(fit, yTerm, ScaledCoefficients(fit.components, size).col(yTerm), Form::Plain);
    return withConstant.tail(withConstant.size() - 1);
}

namespace {

struct Question {
    char const *name;
    Form form;
    bool rotated = false;
};

// Scaled coefficients for the variables of the models below.
TablePtr ResolvedRows(ModelView const &model, Subject const &subject, int component, ColumnTerms const *terms) {
    std::optional<Index> const size = ChosenSize(model.Fit(), component);
    if (!HasY(model) || !size || *size == 0)
        return nullptr;
    Resolution const resolution = Resolved(model, subject);
    Matrix const coefficients = resolution.shares * ScaledCoefficients(model.Fit().components, *size);
    Side const side = Side::Y(model);
    Answer answer(model.CoefficientTerms(resolution.terms));
    for (Index const term : ChosenTerms(side.all, terms)) {
        TermScale const &y = side.scales[static_cast<std::size_t>(term)];
        answer.Add(model.Label("CoeffCS") + AskedSizeLabel(model, *size) + side.Label(term),
                   Vector::Constant(1, y.offset * y.weight), coefficients.col(term));
    }
    return answer.Take();
}

TablePtr CoefficientRows(ModelView const &model, Question const &question, int component, ColumnTerms const *terms) {
    std::optional<Index> const size = ChosenSize(model.Fit(), component);
    if (!HasY(model) || !size || *size == 0)
        return nullptr;
    Matrix const coefficients = ScaledCoefficients(model.Fit().components, *size);
    Side const side = Side::Y(model);
    Answer answer(model.CoefficientTerms(model.GetXColumnTerms()));
    for (Index const term : ChosenTerms(side.all, terms)) {
        Vector const scaled =
            question.rotated ? Rotated(model.Data().x, coefficients.col(term)) : Vector(coefficients.col(term));
        answer.Add(model.Label(question.name) + AskedSizeLabel(model, *size) + side.Label(term),
                   InForm(model.Fit(), term, scaled, question.form));
    }
    return answer.Take();
}

Form FormOf(PredictiveModel::CoefficientType type) {
    switch (type) {
    case PredictiveModel::MLR:
        return Form::ScaledX;
    case PredictiveModel::Unscaled:
        return Form::Plain;
    default:
        return Form::Scaled;
    }
}

TablePtr CoefficientsOfRound(ModelView const &model, int round, ColumnTerm const &named, IntList const *components) {
    int const term = model.GetYColumnTerms().Find(named);
    if (!HasValidatedY(model) || term < 1 || round < 1 ||
        round > static_cast<int>(model.Fit().crossValidation->rounds.size()))
        return nullptr;
    Components const &fitted = model.Fit().crossValidation->rounds[static_cast<std::size_t>(round - 1)];
    Answer answer(model.CoefficientTerms(model.GetXColumnTerms()));
    for (Index const size : ChosenSizes(model.Fit(), components))
        if (size > 0 && size <= fitted.Predictive())
            answer.Add(model.Label("CoeffCScv") + AskedSizeLabel(model, size) + Side::Y(model).Label(term - 1) +
                           RoundLabel(round),
                       InForm(model.Fit(), term - 1, ScaledCoefficients(fitted, size).col(term - 1), Form::Scaled));
    return answer.Take();
}

TablePtr CoefficientErrors(ModelView const &model, int component, ColumnTerm const &named) {
    int const term = model.GetYColumnTerms().Find(named);
    std::optional<Index> const size = ChosenSize(model.Fit(), component);
    if (!HasValidatedY(model) || term < 1 || !size || *size == 0)
        return nullptr;
    Vector const errors = ErrorsOfCoefficients(model.Fit(), *size, term - 1);
    Answer answer(model.CoefficientTerms(model.GetXColumnTerms()));
    answer.Add(model.Label("CoeffCScvSE") + AskedSizeLabel(model, *size) + Side::Y(model).Label(term - 1),
               Vector::Constant(1, errors.array().isNaN().all() ? notComputable : 0), errors);
    return answer.Take();
}

// The change of X in unscaled units that goes with one unit of a response: C(C'C)^-1 P' (Trygg 2004).
TablePtr Profiles(ModelView const &model, ColumnTerms const *terms) {
    FittedModel const &fit = model.Fit();
    if (!IsOrthogonalKind(model) || fit.components.Predictive() == 0)
        return nullptr;
    Matrix const inverse = fit.components.c.completeOrthogonalDecomposition().pseudoInverse();
    Matrix const profiles = inverse.transpose() * fit.components.p.transpose();
    Side const side = Side::Y(model);
    Answer answer(model.XTerms());
    for (Index const term : ChosenTerms(side.all, terms)) {
        Vector profile = profiles.row(term).transpose() * fit.yScales[static_cast<std::size_t>(term)].weight;
        for (Index k = 0; k < profile.size(); ++k)
            profile[k] /= fit.xScales[static_cast<std::size_t>(k)].weight;
        answer.Add(model.Label("YRelatedProfile") + side.Label(term), profile);
    }
    return answer.Take();
}

bool HasCoefficients(ModelView const &model) {
    return HasY(model) && model.Fit().components.Predictive() > 0;
}

template <Operation columns>
void AddColumns(Handlers &handlers) {
    handlers.On<columns>([](ModelView const &model, auto...) {
        return HasCoefficients(model) ? model.CoefficientTerms(model.GetXColumnTerms()) : model.None();
    });
}

template <Operation table, Operation columns>
void Add(Handlers &handlers, Question const &question) {
    handlers.On<table>([question](ModelView const &model, int component, ColumnTerms const *terms, auto...) {
        return CoefficientRows(model, question, component, terms);
    });
    AddColumns<columns>(handlers);
}

} // namespace

void AddCoefficientHandlers(Handlers &handlers) {
    using enum Operation;
    handlers.On<GetCoefficientsCenterdScaled>([](ModelView const &model, Subject const &subject, int component,
                                                 ColumnTerms const *terms, TriState::State, TriState::State resolve) {
        return resolve == TriState::Yes ? ResolvedRows(model, subject, component, terms)
                                        : CoefficientRows(model, {"CoeffCS", Form::Scaled}, component, terms);
    });
    handlers.On<GetCoefficientsCenterdScaledColumnIDs>(
        [](ModelView const &model, Subject const &subject, TriState::State, TriState::State resolve) {
            if (!HasCoefficients(model))
                return model.None();
            return model.CoefficientTerms(resolve == TriState::Yes ? Resolved(model, subject).terms
                                                                   : model.GetXColumnTerms());
        });
    Add<GetCoefficientsMLR, GetCoefficientsMLRColumnIDs>(handlers, {"CoeffMLR", Form::ScaledX});
    Add<GetCoefficientsCenterd, GetCoefficientsCenterdColumnIDs>(handlers, {"CoeffC", Form::Centred});
    Add<GetCoefficients, GetCoefficientsColumnIDs>(handlers, {"Coeff", Form::Plain});
    AddColumns<GetCoefficientsRotatedColumnIDs>(handlers);
    handlers.On<GetCoefficientsRotated>([](ModelView const &model, int component, ColumnTerms const *terms,
                                           TriState::State, PredictiveModel::CoefficientType type) {
        return CoefficientRows(model, {"CoeffRot", FormOf(type), true}, component, terms);
    });
    handlers.On<GetCoefficientsCenterdScaledcv>(
        [](ModelView const &model, int round, ColumnTerm const &term, IntList const *components, TriState::State) {
            return CoefficientsOfRound(model, round, term, components);
        });
    handlers.On<GetCoefficientsCenterdScaledcvSE>(
        [](ModelView const &model, int component, ColumnTerm const &term, TriState::State) {
            return CoefficientErrors(model, component, term);
        });
    handlers.On<GetYRelatedProfiles>(Profiles);
    OnTermColumns<GetYRelatedProfilesColumnIDs>(handlers, &ModelView::XTerms, [](ModelView const &model) {
        return IsOrthogonalKind(model) && HasCoefficients(model);
    });
}

} // namespace engine
