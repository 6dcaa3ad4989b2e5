#include "engine/statistics/TermStatistics.h"
#include "engine/statistics/Units.h"
#include "platform/text/Exception.h"

#include <algorithm>

// What a lagged variable, the mother, does at each of its lags: one column for each term of X that it has, by rising
// lag, that without lag included. And how Y answers to a change of it.

namespace engine {

namespace {

struct LaggedTerm {
    int lag = 0;
    Index place = 0; // among the terms of X, from 0
};

// Nothing for a variable without lagged term.
std::vector<LaggedTerm> LagsOf(ModelView const &model, ColumnTerm const &mother) {
    std::vector<LaggedTerm> lags;
    Index place = 0;
    for (ColumnTerm const &term : model.GetXColumnTerms()) {
        if (term.Size() == 1 && term.GetMotherVariable(1) == mother.GetMotherVariable(1))
            lags.push_back({term.GetLag(1), place});
        ++place;
    }
    std::ranges::sort(lags, {}, &LaggedTerm::lag);
    return lags.empty() || lags.back().lag == 0 ? std::vector<LaggedTerm>() : lags;
}

ColumnIDs LagColumns(ModelView const &model, ColumnTerm const &mother) {
    ColumnIDs::IntegerList lags;
    for (LaggedTerm const &term : LagsOf(model, mother))
        lags.push_back(term.lag);
    return lags.Size() == 0 ? model.None() : ColumnIDs(std::move(lags), model.GetProject(), model.GetModelNumber());
}

std::string MotherLabel(ModelView const &model, ColumnTerm const &mother) {
    return "(" + ColumnTerm(mother.GetMotherVariable(1)).GetPrimaryName(model.GetProject()->GetVariables()) + ")";
}

// The values of the mother's terms, out of those of all terms of X.
TablePtr ByLag(ModelView const &model, ColumnTerm const &mother, std::string const &name, Vector const &values,
               std::string const &response = {}) {
    std::vector<LaggedTerm> const lags = LagsOf(model, mother);
    Vector picked(static_cast<Index>(lags.size()));
    std::ranges::transform(lags, picked.begin(), [&](LaggedTerm const &term) { return values[term.place]; });
    Answer answer(LagColumns(model, mother));
    answer.Add(model.Label(name) + MotherLabel(model, mother) + response, picked);
    return answer.Take();
}

// The size that is asked for, of a model with Y.
std::optional<Index> SizeWithY(ModelView const &model, int component) {
    std::optional<Index> const size = ChosenSize(model.Fit(), component);
    return HasY(model) && size && *size > 0 ? size : std::nullopt;
}

TablePtr CoefficientsByLag(ModelView const &model, int component, ColumnTerm const &mother, ColumnTerm const &response,
                           bool errors) {
    std::optional<Index> const size = SizeWithY(model, component);
    Index const place = model.GetYColumnTerms().Find(response) - 1;
    if (!size || place < 0 || (errors && !HasValidatedY(model)))
        return nullptr;
    Vector const values = errors ? ErrorsOfCoefficients(model.Fit(), *size, place)
                                 : Vector(ScaledCoefficients(model.Fit().components, *size).col(place));
    return ByLag(model, mother, (errors ? "CoeffCScvSELag" : "CoeffCSLag") + AskedSizeLabel(model, *size), values,
                 Side::Y(model).Label(place));
}

// An input that is 1 from `start` to `end` and 0 otherwise.
struct Pulse {
    int start, end;

    Pulse(int first, int last) : start(std::max(first, 0)), end(std::max(last, start)) {}
    bool IsOn(int time) const { return start <= time && time <= end; }
};

// y(h) = sum of b_L [the pulse is on at h - L] + sum of a_L y(h - L), L >= 1, for h = 0, 1, ... (Ljung 1999); b are the
// coefficients of the input's lags and a those of the response's own.
Vector ResponseTo(Pulse const &pulse, Index size, std::vector<LaggedTerm> const &input,
                  std::vector<LaggedTerm> const &own, Vector const &coefficients) {
    Vector y = Vector::Zero(size);
    for (Index h = 0; h < size; ++h) {
        for (LaggedTerm const &term : input)
            if (pulse.IsOn(static_cast<int>(h) - term.lag))
                y[h] += coefficients[term.place];
        for (LaggedTerm const &term : own)
            if (term.lag >= 1 && term.lag <= h)
                y[h] += coefficients[term.place] * y[h - term.lag];
    }
    return y;
}

// The times 0, 1, ... until the last of the input has passed all lags.
ColumnIDs Times(ModelView const &model, int end, ColumnTerm const &mother) {
    constexpr int longest = 1'000'000;
    std::vector<LaggedTerm> const lags = LagsOf(model, mother);
    if (lags.empty() || !HasY(model) || model.Fit().components.Predictive() == 0)
        return model.None();
    if (end > longest)
        throw NCError(ExceptionMessage::translate("The end lag {1} of a response is too large: at most {2} is shown.") %
                          end % longest,
                      NCError::Error);
    ColumnIDs::IntegerList times(lags.back().lag + std::max(end, 0) + 1);
    std::ranges::generate(times.MutableValues(), [time = 0]() mutable { return time++; });
    return ColumnIDs(std::move(times), model.GetProject(), model.GetModelNumber());
}

// Y terms count from 1; null for all of them.
TablePtr Responses(ModelView const &model, int component, ColumnTerm const &mother, int start, int end,
                   IntList const *yTerms) {
    std::optional<Index> const size = SizeWithY(model, component);
    Pulse const pulse(start, end);
    ColumnIDs const times = Times(model, pulse.end, mother);
    if (!size || times.Size() == 0)
        return nullptr;
    Side const side = Side::Y(model);
    Answer answer(times);
    for (Index const response : ChosenComponents(yTerms, side.all.Size()))
        answer.Add(model.Label("StepResp") + AskedSizeLabel(model, *size) + MotherLabel(model, mother) +
                       side.Label(response),
                   ResponseTo(pulse, times.Size(), LagsOf(model, mother),
                              LagsOf(model, side.all[static_cast<int>(response) + 1]),
                              UnscaledCoefficients(model.Fit(), *size, response)));
    return answer.Take();
}

bool HasOrthogonalComponents(ModelView const &model) {
    return model.Fit().components.XOrthogonal() > 0;
}
bool IsOrthogonalWithComponents(ModelView const &model) {
    return IsOrthogonalKind(model) && HasComponents(model);
}

template <Operation operation>
void OnLagColumns(Handlers &handlers, Needs needs) {
    handlers.On<operation>([needs](ModelView const &model, ColumnTerm const &mother, auto...) {
        return needs(model) ? LagColumns(model, mother) : model.None();
    });
}

// A vector of each component.
template <Operation table, Operation columns>
void AddPart(Handlers &handlers, char const *name, Matrix Components::*part, Needs needs) {
    handlers.On<table>([name, part](ModelView const &model, int component, ColumnTerm const &mother) -> TablePtr {
        Matrix const &values = model.Fit().components.*part;
        std::optional<Index> const chosen = ChosenComponent(component, values.cols());
        return chosen ? ByLag(model, mother, name + ComponentLabel(*chosen), values.col(*chosen)) : nullptr;
    });
    OnLagColumns<columns>(handlers, needs);
}

} // namespace

void AddLagHandlers(Handlers &handlers) {
    using enum Operation;
    AddPart<GetPLag, GetPLagColumnIDs>(handlers, "pLag", &Components::p, HasComponents);
    AddPart<GetWLag, GetWLagColumnIDs>(handlers, "wLag", &Components::w, HasYAndComponents);
    AddPart<GetWStarLag, GetWStarLagColumnIDs>(handlers, "w*Lag", &Components::wStar, HasYAndComponents);
    handlers.On<GetVIPLag>([](ModelView const &model, int component, ColumnTerm const &mother) -> TablePtr {
        std::optional<Index> const size = SizeWithY(model, component);
        return size ? ByLag(model, mother, "VIPLag" + AskedSizeLabel(model, *size),
                            WholeImportance(model.Fit().components, *size, IsOrthogonalKind(model)))
                    : nullptr;
    });
    handlers.On<GetVIPPredLag>([](ModelView const &model, ColumnTerm const &mother) -> TablePtr {
        Components const &components = model.Fit().components;
        return IsOrthogonalWithComponents(model)
                   ? ByLag(model, mother, "VIPpredLag", PredictiveImportance(components, components.Predictive()))
                   : nullptr;
    });
    handlers.On<GetVIPOrthLag>([](ModelView const &model, ColumnTerm const &mother) -> TablePtr {
        return HasOrthogonalComponents(model)
                   ? ByLag(model, mother, "VIPorthLag", OrthogonalImportance(model.Fit().components))
                   : nullptr;
    });
    handlers.On<GetCoeffCSLag>(
        [](ModelView const &model, int component, ColumnTerm const &mother, ColumnTerm const &response) {
            return CoefficientsByLag(model, component, mother, response, false);
        });
    handlers.On<GetCoeffCScvSELag>(
        [](ModelView const &model, int component, ColumnTerm const &mother, ColumnTerm const &response,
           TriState::State) { return CoefficientsByLag(model, component, mother, response, true); });
    handlers.On<GetImpulseResponse>(Responses);

    OnLagColumns<GetVIPLagColumnIDs>(handlers, HasYAndComponents);
    OnLagColumns<GetVIPPredLagColumnIDs>(handlers, IsOrthogonalWithComponents);
    OnLagColumns<GetVIPOrthLagColumnIDs>(handlers, HasOrthogonalComponents);
    OnLagColumns<GetCoeffCSLagColumnIDs>(handlers, HasYAndComponents);
    OnLagColumns<GetCoeffCScvSELagColumnIDs>(
        handlers, [](ModelView const &model) { return HasValidatedY(model) && HasComponents(model); });
    handlers.On<GetImpulseResponseColumnIDs>(Times);
}

} // namespace engine
