#include "engine/models/CrossValidation.h"
#include "engine/statistics/Answer.h"
#include "engine/statistics/Units.h"

// How far a model describes each term: rows of components over columns of terms, and the other way round.

namespace engine {

namespace {

// One number for each term, after the first components or of the last of them.
using Figures = Vector (*)(ModelView const &, Index first);

Vector ExplainedX(ModelView const &model, Index first) {
    return model.Fit().components.TakenX(first - 1).cwiseQuotient(model.Fit().components.ssX.col(0));
}
Vector ExplainedY(ModelView const &model, Index first) {
    return model.Fit().components.TakenY(first - 1).cwiseQuotient(model.Fit().components.ssY.col(0));
}
Vector ExplainedXSoFar(ModelView const &model, Index first) {
    Components const &components = model.Fit().components;
    return 1 - components.ssX.col(first).array() / components.ssX.col(0).array();
}
Vector ExplainedYSoFar(ModelView const &model, Index first) {
    Components const &components = model.Fit().components;
    return 1 - components.ssY.col(first).array() / components.ssY.col(0).array();
}
Vector VariancesX(ModelView const &model, Index first) {
    return XVariancesAfter(model.Fit(), first);
}
Vector VariancesY(ModelView const &model, Index first) {
    return YVariancesAfter(model.Fit(), model.Data(), first);
}
Vector AdjustedSoFarX(ModelView const &model, Index first) {
    return 1 - VariancesX(model, first).array() / VariancesX(model, 0).array();
}
Vector AdjustedSoFarY(ModelView const &model, Index first) {
    return 1 - VariancesY(model, first).array() / VariancesY(model, 0).array();
}
template <Figures soFar>
Vector Difference(ModelView const &model, Index first) {
    return soFar(model, first) - soFar(model, first - 1);
}
Vector Power(ModelView const &model, Index first) {
    return ModellingPower(model.Fit(), VariancesX(model, first));
}

auto ErrorSquares(ModelView const &model, Index first) {
    return model.Fit().crossValidation->press.col(std::min(first, model.Fit().components.Predictive())).array();
}
Vector Predicted(ModelView const &model, Index first) {
    auto const [errors, before] = ErrorsOf(*model.Fit().crossValidation, model.Fit().components, first);
    return 1 - errors.array() / before.array();
}
Vector PredictedSoFar(ModelView const &model, Index first) {
    if (model.Fit().definition.q2 == Q2Form::Rounds)
        return 1 - ErrorSquares(model, first) / ErrorSquares(model, 0);
    Vector left = Vector::Ones(model.Fit().crossValidation->press.rows());
    for (Index a = 1; a <= first; ++a)
        left.array() *= 1 - Predicted(model, a).array();
    return 1 - left.array();
}

bool IsValidatedPca(ModelView const &model) {
    return !HasY(model) && model.Fit().crossValidation;
}

// The components of a list that are valid, counted from 1, and 0 where it stands for none.
std::vector<Index> Chosen(ModelView const &model, IntList const *components, bool zero) {
    std::vector<Index> chosen;
    Index const all = model.Fit().components.All();
    if (!components)
        for (Index component = 1; component <= all; ++component)
            chosen.push_back(component);
    else
        for (int const component : *components)
            if (zero && component == 0)
                chosen.push_back(0);
            else if (auto const valid = ChosenComponent(component, all))
                chosen.push_back(*valid + 1);
    return chosen;
}

struct TermSummary {
    char const *name;
    Side (*side)(ModelView const &);
    Figures figures;
    Needs needs;
    bool zero = false; // component 0 stands for no component at all
};

// A term that does not vary has no part that a model could describe.
Vector FiguresOf(TermSummary const &summary, ModelView const &model, Index first) {
    std::vector<TermScale> const &scales = summary.side(model).scales;
    Vector figures = summary.figures(model, first);
    for (std::size_t term = 0; term < scales.size(); ++term)
        if (scales[term].IsConstant())
            figures[static_cast<Index>(term)] = notComputable;
    return figures;
}

template <Operation table, Operation columns>
void AddOverTerms(Handlers &handlers, TermSummary const &summary) {
    handlers.On<table>([summary](ModelView const &model, IntList const *components) -> TablePtr {
        if (!summary.needs(model))
            return nullptr;
        Answer answer(summary.side(model).columns);
        for (Index const first : Chosen(model, components, summary.zero))
            answer.Add(model.Label(summary.name) + SizeLabel(first), FiguresOf(summary, model, first));
        return answer.Take();
    });
    handlers.On<columns>([summary](ModelView const &model) {
        bool const any = summary.needs(model) && (summary.zero || HasComponents(model));
        return any ? summary.side(model).columns : model.None();
    });
}

template <Operation table>
void AddOverComponents(Handlers &handlers, TermSummary const &summary) {
    handlers.On<table>([summary](ModelView const &model, ColumnTerms const *terms) -> TablePtr {
        Index const all = model.Fit().components.All();
        if (!summary.needs(model) || all == 0)
            return nullptr;
        Side const side = summary.side(model);
        Matrix figures(side.columns.Size(), all);
        for (Index first = 1; first <= all; ++first)
            figures.col(first - 1) = FiguresOf(summary, model, first);
        Answer answer(model.ComponentColumns());
        for (Index const term : ChosenTerms(side.all, terms))
            answer.Add(model.Label(summary.name) + side.Label(term), figures.row(term).transpose());
        return answer.Take();
    });
}

template <Operation columns>
void AddComponentColumns(Handlers &handlers, Needs needs) {
    handlers.On<columns>(
        [needs](ModelView const &model) { return needs(model) ? model.ComponentColumns() : model.None(); });
}

} // namespace

void AddVariableSummaryHandlers(Handlers &handlers) {
    using enum Operation;
    TermSummary const r2vx{"R2VX", Side::X, ExplainedX, Always};
    TermSummary const r2vxCum{"R2VXcum", Side::X, ExplainedXSoFar, Always};
    TermSummary const r2vxAdjCum{"R2VXAdjcum", Side::X, AdjustedSoFarX, Always};
    TermSummary const r2vy{"R2VY", Side::Y, ExplainedY, HasY};
    TermSummary const r2vyCum{"R2VYcum", Side::Y, ExplainedYSoFar, HasY};
    TermSummary const r2vyAdjCum{"R2VYAdjcum", Side::Y, AdjustedSoFarY, HasY};
    TermSummary const q2vx{"Q2VX", Side::X, Predicted, IsValidatedPca};
    TermSummary const q2vxCum{"Q2VXcum", Side::X, PredictedSoFar, IsValidatedPca};
    TermSummary const q2vy{"Q2VY", Side::Y, Predicted, HasValidatedY};
    TermSummary const q2vyCum{"Q2VYcum", Side::Y, PredictedSoFar, HasValidatedY};

    AddOverTerms<GetR2VX, GetR2VXColumnIDs>(handlers, r2vx);
    AddOverTerms<GetR2VXCum, GetR2VXCumColumnIDs>(handlers, r2vxCum);
    AddOverTerms<GetR2VXAdjCum, GetR2VXAdjCumColumnIDs>(handlers, r2vxAdjCum);
    AddOverTerms<GetR2VXAdj, GetR2VXAdjColumnIDs>(handlers, {"R2VXAdj", Side::X, Difference<AdjustedSoFarX>, Always});
    AddOverTerms<GetR2VY, GetR2VYColumnIDs>(handlers, r2vy);
    AddOverTerms<GetR2VYCum, GetR2VYCumColumnIDs>(handlers, r2vyCum);
    AddOverTerms<GetR2VYAdjCum, GetR2VYAdjCumColumnIDs>(handlers, r2vyAdjCum);
    AddOverTerms<GetR2VYAdj, GetR2VYAdjColumnIDs>(handlers, {"R2VYAdj", Side::Y, Difference<AdjustedSoFarY>, HasY});
    AddOverTerms<GetQ2VX, GetQ2VXColumnIDs>(handlers, q2vx);
    AddOverTerms<GetQ2VXCum, GetQ2VXCumColumnIDs>(handlers, q2vxCum);
    AddOverTerms<GetQ2VY, GetQ2VYColumnIDs>(handlers, q2vy);
    AddOverTerms<GetQ2VYCum, GetQ2VYCumColumnIDs>(handlers, q2vyCum);
    AddOverTerms<GetS2VX, GetS2VXColumnIDs>(handlers, {"S2VX", Side::X, VariancesX, Always, true});
    AddOverTerms<GetS2VY, GetS2VYColumnIDs>(handlers, {"S2VY", Side::Y, VariancesY, HasY, true});
    AddOverTerms<GetMPowX, GetMPowXColumnIDs>(handlers, {"MPowX", Side::X, Power, Always});

    AddOverComponents<GetR2VXPerComponent>(handlers, r2vx);
    AddOverComponents<GetR2VXCumPerComponent>(handlers, r2vxCum);
    AddOverComponents<GetR2VXAdjCumPerComponent>(handlers, r2vxAdjCum);
    AddOverComponents<GetR2VYPerComponent>(handlers, r2vy);
    AddOverComponents<GetR2VYCumPerComponent>(handlers, r2vyCum);
    AddOverComponents<GetR2VYAdjCumPerComponent>(handlers, r2vyAdjCum);
    AddOverComponents<GetQ2VXPerComponent>(handlers, q2vx);
    AddOverComponents<GetQ2VXCumPerComponent>(handlers, q2vxCum);
    AddOverComponents<GetQ2VYPerComponent>(handlers, q2vy);
    AddOverComponents<GetQ2VYCumPerComponent>(handlers, q2vyCum);
    AddComponentColumns<GetR2VXPerComponentColumnIDs>(handlers, Always);
    AddComponentColumns<GetR2VXCumPerComponentColumnIDs>(handlers, Always);
    AddComponentColumns<GetR2VXAdjCumPerComponentColumnIDs>(handlers, Always);
    AddComponentColumns<GetR2VYPerComponentColumnIDs>(handlers, HasY);
    AddComponentColumns<GetR2VYCumPerComponentColumnIDs>(handlers, HasY);
    AddComponentColumns<GetR2VYAdjCumPerComponentColumnIDs>(handlers, HasY);
    AddComponentColumns<GetQ2VXCumPerComponentColumnIDs>(handlers, IsValidatedPca);
    AddComponentColumns<GetQ2VYPerComponentColumnIDs>(handlers, HasValidatedY);
    AddComponentColumns<GetQ2VYCumPerComponentColumnIDs>(handlers, HasValidatedY);
}

} // namespace engine
