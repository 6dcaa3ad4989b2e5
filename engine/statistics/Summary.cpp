#include "engine/models/CrossValidation.h"
#include "engine/statistics/Answer.h"
#include "engine/statistics/RowSet.h"

#include <cmath>

// A model in one number for each component: one row, one column for each component in the overall order.

namespace engine {

namespace {

// The number for the model's first `first` components, or for the last of them.
using Figure = double (*)(ModelView const &, Index first);

double ExplainedX(ModelView const &model, Index first) {
    return model.Fit().components.TakenX(first - 1).sum() / model.Fit().components.ssX.col(0).sum();
}
double ExplainedY(ModelView const &model, Index first) {
    return model.Fit().components.TakenY(first - 1).sum() / model.Fit().components.ssY.col(0).sum();
}
double ExplainedXSoFar(ModelView const &model, Index first) {
    return 1 - model.Fit().components.ssX.col(first).sum() / model.Fit().components.ssX.col(0).sum();
}
double ExplainedYSoFar(ModelView const &model, Index first) {
    return 1 - model.Fit().components.ssY.col(first).sum() / model.Fit().components.ssY.col(0).sum();
}
double VarianceX(ModelView const &model, Index first) {
    return XVariancesAfter(model.Fit(), first).mean();
}
double VarianceY(ModelView const &model, Index first) {
    return YVariancesAfter(model.Fit(), model.Data(), first).mean();
}
double AdjustedSoFarX(ModelView const &model, Index first) {
    return first == 0 ? 0 : 1 - VarianceX(model, first) / VarianceX(model, 0);
}
double AdjustedSoFarY(ModelView const &model, Index first) {
    return first == 0 ? 0 : 1 - VarianceY(model, first) / VarianceY(model, 0);
}
template <Figure soFar>
double Difference(ModelView const &model, Index first) {
    return soFar(model, first) - soFar(model, first - 1);
}

// Errors of cross-validation are those of models of each size: orthogonal components have none of their own.
double ErrorSquares(ModelView const &model, Index first) {
    return model.Fit().crossValidation->press.col(std::min(first, model.Fit().components.Predictive())).sum();
}
double Predicted(ModelView const &model, Index first) {
    auto const [errors, before] = ErrorsOf(*model.Fit().crossValidation, model.Fit().components, first);
    return 1 - errors.sum() / before.sum();
}
double PredictedSoFar(ModelView const &model, Index first) {
    if (model.Fit().definition.q2 == Q2Form::Rounds)
        return 1 - ErrorSquares(model, first) / ErrorSquares(model, 0);
    double left = 1;
    for (Index a = 1; a <= first; ++a)
        left *= 1 - Predicted(model, a);
    return 1 - left;
}

double Eigenvalue(ModelView const &model, Index first) {
    return model.Fit().components.TakenX(first - 1).sum() /
           static_cast<double>(model.Fit().Rows() - model.Fit().XCentred());
}
double Iterations(ModelView const &model, Index first) {
    return model.Fit().iterations[static_cast<std::size_t>(first - 1)];
}
double SquaresX(ModelView const &model, Index first) {
    return model.Fit().components.ssX.col(first).sum();
}
double SquaresY(ModelView const &model, Index first) {
    return model.Fit().components.ssY.col(first).sum();
}

double DeviationX(ModelView const &model, Index first) {
    FittedModel const &fit = model.Fit();
    Index const predictive = fit.components.Predictive();
    if (first <= predictive)
        return SpreadOf(fit.scores.t.col(first - 1), fit.xObserved).deviation;
    return first <= XSideAmong(fit.components, first)
               ? SpreadOf(fit.scores.to.col(first - 1 - predictive), fit.xObserved).deviation
               : notComputable;
}
double DeviationY(ModelView const &model, Index first) {
    FittedModel const &fit = model.Fit();
    if (first <= fit.components.Predictive())
        return SpreadOf(fit.scores.u.col(first - 1), fit.yObserved).deviation;
    Index const xSide = XSideAmong(fit.components, first);
    return first > xSide ? SpreadOf(fit.scores.uo.col(first - 1 - xSide), fit.yObserved).deviation : notComputable;
}

bool IsValidated(ModelView const &model) {
    return model.Fit().crossValidation.has_value();
}

// The same for the predictive part of models with more and more X-side orthogonal components.
Vector ExplainedProgression(ModelView const &model) {
    return model.Fit().progression.takenY.colwise().sum() / model.Fit().components.ssY.col(0).sum();
}
Vector PredictedProgression(ModelView const &model) {
    return 1 - model.Fit().progression.press.colwise().sum().array() / ErrorSquares(model, 0);
}

template <Operation table, Operation columns>
void AddProgression(Handlers &handlers, char const *name, Vector (*figures)(ModelView const &), Needs needs) {
    auto const columnsOf = [needs](ModelView const &model) {
        return needs(model) ? model.ProgressionColumns() : model.None();
    };
    handlers.On<columns>(columnsOf);
    handlers.On<table>([=](ModelView const &model) -> TablePtr {
        ColumnIDs const sizes = columnsOf(model);
        if (sizes.Size() == 0)
            return nullptr;
        Answer answer(sizes);
        answer.Add(model.Label(name), figures(model));
        return answer.Take();
    });
}

template <Operation table, Operation columns>
void Add(Handlers &handlers, char const *name, Figure figure, Needs needs) {
    handlers.On<table>([=](ModelView const &model) -> TablePtr {
        if (!needs(model))
            return nullptr;
        Vector values(model.Fit().components.All());
        for (Index i = 0; i < values.size(); ++i)
            values[i] = figure(model, i + 1);
        Answer answer(model.ComponentColumns());
        answer.Add(model.Label(name), values);
        return answer.Take();
    });
    handlers.On<columns>(
        [=](ModelView const &model) { return needs(model) ? model.ComponentColumns() : model.None(); });
}

} // namespace

void AddSummaryHandlers(Handlers &handlers) {
    using enum Operation;
    Add<GetR2X, GetR2XColumnIDs>(handlers, "R2X", ExplainedX, Always);
    Add<GetR2XCum, GetR2XCumColumnIDs>(handlers, "R2Xcum", ExplainedXSoFar, Always);
    Add<GetR2XAdjCum, GetR2XAdjCumColumnIDs>(handlers, "R2XAdjcum", AdjustedSoFarX, Always);
    Add<GetR2XAdj, GetR2XAdjColumnIDs>(handlers, "R2XAdj", Difference<AdjustedSoFarX>, Always);
    Add<GetR2Y, GetR2YColumnIDs>(handlers, "R2Y", ExplainedY, HasY);
    Add<GetR2YCum, GetR2YCumColumnIDs>(handlers, "R2Ycum", ExplainedYSoFar, HasY);
    Add<GetR2YAdjCum, GetR2YAdjCumColumnIDs>(handlers, "R2YAdjcum", AdjustedSoFarY, HasY);
    Add<GetR2YAdj, GetR2YAdjColumnIDs>(handlers, "R2YAdj", Difference<AdjustedSoFarY>, HasY);
    Add<GetQ2, GetQ2ColumnIDs>(handlers, "Q2", Predicted, IsValidated);
    Add<GetQ2Cum, GetQ2CumColumnIDs>(handlers, "Q2cum", PredictedSoFar, IsValidated);
    Add<GetEigenValues, GetEigenValuesColumnIDs>(handlers, "Eig", Eigenvalue, Always);
    Add<GetIterations, GetIterationsColumnIDs>(handlers, "Iter", Iterations, Always);
    Add<GetS2X, GetS2XColumnIDs>(handlers, "S2X", VarianceX, Always);
    Add<GetS2Y, GetS2YColumnIDs>(handlers, "S2Y", VarianceY, HasY);
    Add<GetSSX, GetSSXColumnIDs>(handlers, "SSX", SquaresX, Always);
    Add<GetSSY, GetSSYColumnIDs>(handlers, "SSY", SquaresY, HasY);
    Add<GetSDT, GetSDTColumnIDs>(handlers, "SDt", DeviationX, Always);
    Add<GetSDU, GetSDUColumnIDs>(handlers, "SDu", DeviationY, HasY);
    AddProgression<GetR2CumProgression, GetR2CumProgressionColumnIDs>(handlers, "R2(cum)progression",
                                                                      ExplainedProgression, Always);
    AddProgression<GetQ2CumProgression, GetQ2CumProgressionColumnIDs>(handlers, "Q2(cum)progression",
                                                                      PredictedProgression, IsValidated);
    handlers.On<GetQ2CumLast>([](ModelView const &model) -> TablePtr {
        if (!IsValidated(model) || !HasComponents(model))
            return nullptr;
        Answer answer(model.LastComponent());
        answer.Add(model.Label("Q2cum(Last)"),
                   Vector::Constant(1, PredictedSoFar(model, model.Fit().components.All())));
        return answer.Take();
    });
    handlers.On<GetLastCompColumnIDs>(
        [](ModelView const &model) { return HasComponents(model) ? model.LastComponent() : model.None(); });
}

} // namespace engine
