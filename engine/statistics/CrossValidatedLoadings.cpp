#include "engine/models/CrossValidation.h"
#include "engine/statistics/Answer.h"
#include "engine/statistics/Handlers.h"
#include "platform/containers/Missing.h"

// Loadings and weights of the models of the cross-validation rounds, and their jack-knife standard errors.

namespace engine {

namespace {

using Part = Matrix Components::*;
using Columns = ColumnIDs const &(ModelView::*)() const;

bool HasPart(ModelView const &model, Part part) {
    // q is a statistic of its own only beside orthogonal components: in PLS it goes with c.
    FittedModel const &fit = model.Fit();
    return (fit.components.*part).cols() > 0 && (part != &Components::q || fit.definition.HasOrthogonal());
}

TablePtr OfRound(ModelView const &model, char const *name, Columns columns, Part part, int round,
                 IntList const *components) {
    auto const &validation = model.Fit().crossValidation;
    if (!validation || !HasPart(model, part) || round < 1 || round > static_cast<int>(validation->rounds.size()))
        return nullptr;
    Matrix const &values = validation->rounds[static_cast<std::size_t>(round - 1)].*part;
    Answer answer((model.*columns)());
    for (Index const component : ChosenComponents(components, values.cols()))
        answer.Add(model.Label(name) + ComponentLabel(component) + RoundLabel(round), values.col(component));
    return answer.Take();
}

// Missing values when fewer than two rounds have the component.
Vector ErrorsOf(ModelView const &model, Part part, Index component) {
    auto const columnOf = [part, component](Components const &round) -> std::optional<Matrix> {
        if (component >= (round.*part).cols())
            return std::nullopt;
        return Matrix((round.*part).col(component));
    };
    Matrix const errors = Jackknife(*model.Fit().crossValidation, columnOf).error;
    return errors.size() > 0 ? Vector(errors.col(0))
                             : Vector(Vector::Constant((model.Fit().components.*part).rows(), missingValue));
}

TablePtr ErrorRow(ModelView const &model, char const *name, Columns columns, Part part, Part further, int component) {
    auto const chosen = ChosenComponent(component, (model.Fit().components.*part).cols());
    bool const present = HasPart(model, part) && (!further || HasPart(model, further));
    if (!model.Fit().crossValidation || !present || !chosen)
        return nullptr;
    Answer answer((model.*columns)());
    answer.Add(model.Label(name) + ComponentLabel(*chosen), ErrorsOf(model, part, *chosen),
               further ? ErrorsOf(model, further, *chosen) : Vector());
    return answer.Take();
}

// One statistic with its two forms: the name without ending, what it stands for, and over which columns.
struct Form {
    char const *name;
    Part part;
    Columns columns;
    Part further = nullptr; // behind `part`, over the Y terms
};

template <Operation operation>
void AddRound(Handlers &handlers, Form const &form) {
    handlers.On<operation>([form](ModelView const &model, int round, IntList const *components, auto...) {
        return OfRound(model, form.name, form.columns, form.part, round, components);
    });
}

template <Operation operation>
void AddError(Handlers &handlers, Form const &form) {
    handlers.On<operation>([form](ModelView const &model, int component, auto...) {
        return ErrorRow(model, form.name, form.columns, form.part, form.further, component);
    });
}

template <Operation operation>
void AddColumns(Handlers &handlers, Form const &form) {
    handlers.On<operation>([form](ModelView const &model, auto...) {
        bool const present = HasPart(model, form.part) && (!form.further || HasPart(model, form.further));
        return present && model.Fit().crossValidation ? (model.*form.columns)() : model.None();
    });
}

template <Operation round, Operation roundColumns, Operation error, Operation errorColumns>
void Add(Handlers &handlers, char const *roundName, char const *errorName, Part part, Columns columns) {
    AddRound<round>(handlers, {roundName, part, columns});
    AddColumns<roundColumns>(handlers, {roundName, part, columns});
    AddError<error>(handlers, {errorName, part, columns});
    AddColumns<errorColumns>(handlers, {errorName, part, columns});
}

template <Operation error, Operation errorColumns>
void AddJoint(Handlers &handlers, char const *name, Part part, Part further) {
    AddError<error>(handlers, {name, part, &ModelView::XYTerms, further});
    AddColumns<errorColumns>(handlers, {name, part, &ModelView::XYTerms, further});
}

} // namespace

void AddCrossValidatedLoadingHandlers(Handlers &handlers) {
    using enum Operation;
    Columns const x = &ModelView::XTerms;
    Columns const y = &ModelView::YTerms;
    Add<GetPcv, GetPcvColumnIDs, GetPcvSE, GetPcvSEColumnIDs>(handlers, "pcv", "pcvSE", &Components::p, x);
    Add<GetWcv, GetWcvColumnIDs, GetWcvSE, GetWcvSEColumnIDs>(handlers, "wcv", "wcvSE", &Components::w, x);
    Add<GetWStarcv, GetWStarcvColumnIDs, GetWStarcvSE, GetWStarcvSEColumnIDs>(handlers, "w*cv", "w*cvSE",
                                                                              &Components::wStar, x);
    Add<GetCcv, GetCcvColumnIDs, GetCcvSE, GetCcvSEColumnIDs>(handlers, "ccv", "ccvSE", &Components::c, y);
    Add<GetQcv, GetQcvColumnIDs, GetQcvSE, GetQcvSEColumnIDs>(handlers, "qcv", "qcvSE", &Components::q, y);
    Add<GetPocv, GetPocvColumnIDs, GetPocvSE, GetPocvSEColumnIDs>(handlers, "pocv", "pocvSE", &Components::po, x);
    Add<GetWocv, GetWocvColumnIDs, GetWocvSE, GetWocvSEColumnIDs>(handlers, "wocv", "wocvSE", &Components::wo, x);
    Add<GetCocv, GetCocvColumnIDs, GetCocvSE, GetCocvSEColumnIDs>(handlers, "cocv", "cocvSE", &Components::co, y);
    Add<GetQocv, GetQocvColumnIDs, GetQocvSE, GetQocvSEColumnIDs>(handlers, "qocv", "qocvSE", &Components::qo, y);
    AddJoint<GetPCcvSE, GetPCcvSEColumnIDs>(handlers, "pccvSE", &Components::p, &Components::c);
    AddJoint<GetPQcvSE, GetPQcvSEColumnIDs>(handlers, "pqcvSE", &Components::p, &Components::q);
    AddJoint<GetWStarCcvSE, GetWStarCcvSEColumnIDs>(handlers, "w*ccvSE", &Components::wStar, &Components::c);
}

} // namespace engine
