#include "engine/statistics/Answer.h"
#include "engine/statistics/RowSet.h"

#include <cmath>

// Loadings and weights: one row for each component, one column for each term. The Reconstruct flag is heard
// by Reconstruction.

namespace engine {

namespace {

// A matrix of the model with one column for each component of its kind.
using Part = Matrix Components::*;

TablePtr Rows(ModelView const &model, char const *name, ColumnIDs const &columns, IntList const *components,
              Matrix const &values) {
    Answer answer(columns);
    for (Index const component : ChosenComponents(components, values.cols()))
        answer.Add(model.Label(name) + ComponentLabel(component), values.col(component));
    return answer.Take();
}

// Two parts, one behind the other, of a model that has both.
TablePtr Rows(ModelView const &model, char const *name, ColumnIDs const &columns, IntList const *components,
              Matrix const &values, Matrix const &further) {
    Answer answer(columns);
    for (Index const component : ChosenComponents(components, std::min(values.cols(), further.cols())))
        answer.Add(model.Label(name) + ComponentLabel(component), values.col(component), further.col(component));
    return answer.Take();
}

// Means of each term, and of t, over the rows where both are observed.
struct PairedMeans {
    Vector x, t;
};

PairedMeans MeansOf(Block const &block, Vector const &scores, Eigen::VectorXi const &observed) {
    PairedMeans sums{Vector::Zero(block.Size()), Vector::Zero(block.Size())};
    Vector counts = sums.x;
    for (Index row = 0; row < block.Rows(); ++row) {
        if (observed[row] == 0)
            continue;
        sums.x += block.Values().row(row).transpose();
        sums.t.array() += scores[row];
        counts.array() += 1;
        for (std::uint32_t const column : block.MissingIn(row)) {
            sums.t[column] -= scores[row];
            counts[column] -= 1;
        }
    }
    return {sums.x.cwiseQuotient(counts), sums.t.cwiseQuotient(counts)};
}

// Correlation of each term with the scores of one component, over the rows where both are observed; NaN where one of
// them does not vary. In two passes, since terms need not be centred.
Vector Correlations(Block const &block, Vector const &scores, Eigen::VectorXi const &observed) {
    auto const [meanX, meanT] = MeansOf(block, scores, observed);
    Vector spreadX = Vector::Zero(block.Size()), spreadT = spreadX, both = spreadX, squaresX = spreadX,
           squaresT = spreadX;
    Vector x, t;
    for (Index row = 0; row < block.Rows(); ++row) {
        if (observed[row] == 0)
            continue;
        x = block.Values().row(row).transpose() - meanX;
        t = scores[row] - meanT.array();
        for (std::uint32_t const column : block.MissingIn(row))
            x[column] = t[column] = 0;
        spreadX += x.cwiseAbs2();
        spreadT += t.cwiseAbs2();
        both += x.cwiseProduct(t);
        squaresX += block.Values().row(row).transpose().cwiseAbs2();
        squaresT.array() += scores[row] * scores[row];
    }
    // What is left of a constant term is the rounding of its mean.
    auto const varies = spreadX.array() > 1e-24 * squaresX.array() && spreadT.array() > 1e-24 * squaresT.array();
    return varies.select(both.array() / (spreadX.array() * spreadT.array()).sqrt(), std::nan(""));
}

// One column for each component: correlations of the terms of a block with a kind of scores.
Matrix AllCorrelations(Block const &block, Matrix const &scores, Eigen::VectorXi const &observed,
                       IntList const *components) {
    Matrix all = Matrix::Zero(block.Size(), scores.cols());
    for (Index const component : ChosenComponents(components, scores.cols()))
        all.col(component) = Correlations(block, scores.col(component), observed);
    return all;
}

Matrix XCorrelations(ModelView const &model, Matrix Scores::*scores, IntList const *components) {
    return AllCorrelations(model.Data().x, model.Fit().scores.*scores, model.Fit().xObserved, components);
}

Matrix YCorrelations(ModelView const &model, Matrix Scores::*scores, IntList const *components) {
    bool const ofX = scores == &Scores::t || scores == &Scores::to;
    return AllCorrelations(model.Data().y, model.Fit().scores.*scores,
                           ofX ? model.Fit().xObserved : model.Fit().yObserved, components);
}

// Loadings of scaled terms in other units, by a factor for each term.
template <typename Factor>
Matrix Rescaled(ModelView const &model, Part part, Factor const &factor) {
    Matrix values = model.Fit().components.*part;
    for (Index term = 0; term < values.rows(); ++term)
        values.row(term) *= factor(model.Fit().xScales[static_cast<std::size_t>(term)]);
    return values;
}

double PerUnit(TermScale const &scale) {
    return 1 / scale.weight;
}
double AsUnderPareto(TermScale const &scale) {
    return 1 / (scale.weight * std::sqrt(scale.deviation));
}

// Registers a part of the model as a statistic over X terms, over Y terms.
template <Operation operation>
void AddX(Handlers &handlers, char const *name, Part part) {
    handlers.On<operation>([name, part](ModelView const &model, IntList const *components, TriState::State) {
        return Rows(model, name, model.XTerms(), components, model.Fit().components.*part);
    });
}

template <Operation operation>
void AddY(Handlers &handlers, char const *name, Part part) {
    handlers.On<operation>([name, part](ModelView const &model, IntList const *components) {
        return Rows(model, name, model.YTerms(), components, model.Fit().components.*part);
    });
}

template <Operation operation>
void AddXY(Handlers &handlers, char const *name, Part xPart, Part yPart) {
    handlers.On<operation>([=](ModelView const &model, IntList const *components, TriState::State) {
        Components const &all = model.Fit().components;
        return HasY(model) ? Rows(model, name, model.XYTerms(), components, all.*xPart, all.*yPart) : nullptr;
    });
}

// Components that the columns of a statistic need.

bool HasPredictive(ModelView const &model) {
    return model.Fit().components.Predictive() > 0;
}
bool HasPredictiveAndY(ModelView const &model) {
    return HasPredictive(model) && HasY(model);
}
bool HasPredictiveAndQ(ModelView const &model) {
    return HasPredictive(model) && IsOrthogonalKind(model);
}
bool HasXOrthogonal(ModelView const &model) {
    return model.Fit().components.XOrthogonal() > 0;
}
bool HasYOrthogonal(ModelView const &model) {
    return model.Fit().components.YOrthogonal() > 0;
}

} // namespace

void AddLoadingHandlers(Handlers &handlers) {
    AddX<Operation::GetP>(handlers, "p", &Components::p);
    AddX<Operation::GetW>(handlers, "w", &Components::w);
    AddX<Operation::GetWStar>(handlers, "w*", &Components::wStar);
    AddX<Operation::GetPo>(handlers, "po", &Components::po);
    AddX<Operation::GetWo>(handlers, "wo", &Components::wo);
    AddY<Operation::GetC>(handlers, "c", &Components::c);
    AddY<Operation::GetS>(handlers, "so", &Components::so);
    AddY<Operation::GetCo>(handlers, "co", &Components::co);
    AddY<Operation::GetQo>(handlers, "qo", &Components::qo);
    AddXY<Operation::GetPC>(handlers, "pc", &Components::p, &Components::c);
    AddXY<Operation::GetWStarC>(handlers, "w*c", &Components::wStar, &Components::c);
    AddXY<Operation::GetPoS>(handlers, "poso", &Components::po, &Components::so);

    handlers.On<Operation::GetQ>([](ModelView const &model, IntList const *components) {
        return IsOrthogonalKind(model) ? Rows(model, "q", model.YTerms(), components, model.Fit().components.q)
                                       : nullptr;
    });
    handlers.On<Operation::GetPQ>([](ModelView const &model, IntList const *components, TriState::State) {
        Components const &all = model.Fit().components;
        return IsOrthogonalKind(model) ? Rows(model, "pq", model.XYTerms(), components, all.p, all.q) : nullptr;
    });
    handlers.On<Operation::GetR>([](ModelView const &model, IntList const *components) {
        return Rows(model, "r", model.XTerms(), components, model.Fit().components.r);
    });
    handlers.On<Operation::GetQor>([](ModelView const &model, IntList const *components) {
        Components const &all = model.Fit().components;
        return Rows(model, "qor", model.YXTerms(), components, all.qo, all.r);
    });

    handlers.On<Operation::GetPCtr>([](ModelView const &model, IntList const *components, TriState::State) {
        return Rows(model, "p(ctr)", model.XTerms(), components, Rescaled(model, &Components::p, PerUnit));
    });
    handlers.On<Operation::GetPoCtr>([](ModelView const &model, IntList const *components, TriState::State) {
        return Rows(model, "po(ctr)", model.XTerms(), components, Rescaled(model, &Components::po, PerUnit));
    });
    handlers.On<Operation::GetPoPareto>([](ModelView const &model, IntList const *components, TriState::State) {
        return Rows(model, "po(pareto)", model.XTerms(), components, Rescaled(model, &Components::po, AsUnderPareto));
    });

    handlers.On<Operation::GetPCorr>([](ModelView const &model, IntList const *components) {
        return Rows(model, "p(corr)", model.XTerms(), components, XCorrelations(model, &Scores::t, components));
    });
    handlers.On<Operation::GetAbsPCorr>([](ModelView const &model, IntList const *components) {
        return Rows(model, "abs(p(corr))", model.XTerms(), components,
                    XCorrelations(model, &Scores::t, components).cwiseAbs());
    });
    handlers.On<Operation::GetPoCorr>([](ModelView const &model, IntList const *components) {
        return Rows(model, "po(corr)", model.XTerms(), components, XCorrelations(model, &Scores::to, components));
    });
    handlers.On<Operation::GetCCorr>([](ModelView const &model, IntList const *components) {
        return HasY(model)
                   ? Rows(model, "c(corr)", model.YTerms(), components, YCorrelations(model, &Scores::t, components))
                   : nullptr;
    });
    handlers.On<Operation::GetPCCorr>([](ModelView const &model, IntList const *components) {
        return HasY(model)
                   ? Rows(model, "pc(corr)", model.XYTerms(), components, XCorrelations(model, &Scores::t, components),
                          YCorrelations(model, &Scores::t, components))
                   : nullptr;
    });
    handlers.On<Operation::GetPQCorr>([](ModelView const &model, IntList const *components) {
        return IsOrthogonalKind(model)
                   ? Rows(model, "pq(corr)", model.XYTerms(), components, XCorrelations(model, &Scores::t, components),
                          YCorrelations(model, &Scores::u, components))
                   : nullptr;
    });
    handlers.On<Operation::GetPoSCorr>([](ModelView const &model, IntList const *components) {
        return Rows(model, "poso(corr)", model.XYTerms(), components, XCorrelations(model, &Scores::to, components),
                    YCorrelations(model, &Scores::to, components));
    });

    OnTermColumns<Operation::GetPColumnIDs>(handlers, &ModelView::XTerms, HasPredictive);
    OnTermColumns<Operation::GetPCorrColumnIDs>(handlers, &ModelView::XTerms, HasPredictive);
    OnTermColumns<Operation::GetWColumnIDs>(handlers, &ModelView::XTerms, HasPredictiveAndY);
    OnTermColumns<Operation::GetWStarColumnIDs>(handlers, &ModelView::XTerms, HasPredictiveAndY);
    OnTermColumns<Operation::GetCColumnIDs>(handlers, &ModelView::YTerms, HasPredictiveAndY);
    OnTermColumns<Operation::GetCCorrColumnIDs>(handlers, &ModelView::YTerms, HasPredictiveAndY);
    OnTermColumns<Operation::GetPCColumnIDs>(handlers, &ModelView::XYTerms, HasPredictiveAndY);
    OnTermColumns<Operation::GetPCCorrColumnIDs>(handlers, &ModelView::XYTerms, HasPredictiveAndY);
    OnTermColumns<Operation::GetWStarCColumnIDs>(handlers, &ModelView::XYTerms, HasPredictiveAndY);
    OnTermColumns<Operation::GetQColumnIDs>(handlers, &ModelView::YTerms, HasPredictiveAndQ);
    OnTermColumns<Operation::GetPQColumnIDs>(handlers, &ModelView::XYTerms, HasPredictiveAndQ);
    OnTermColumns<Operation::GetPQCorrColumnIDs>(handlers, &ModelView::XYTerms, HasPredictiveAndQ);
    OnTermColumns<Operation::GetPoColumnIDs>(handlers, &ModelView::XTerms, HasXOrthogonal);
    OnTermColumns<Operation::GetPoCorrColumnIDs>(handlers, &ModelView::XTerms, HasXOrthogonal);
    OnTermColumns<Operation::GetWoColumnIDs>(handlers, &ModelView::XTerms, HasXOrthogonal);
    OnTermColumns<Operation::GetSColumnIDs>(handlers, &ModelView::YTerms, HasXOrthogonal);
    OnTermColumns<Operation::GetPoSColumnIDs>(handlers, &ModelView::XYTerms, HasXOrthogonal);
    OnTermColumns<Operation::GetPoSCorrColumnIDs>(handlers, &ModelView::XYTerms, HasXOrthogonal);
    OnTermColumns<Operation::GetCoColumnIDs>(handlers, &ModelView::YTerms, HasYOrthogonal);
    OnTermColumns<Operation::GetQoColumnIDs>(handlers, &ModelView::YTerms, HasYOrthogonal);
    OnTermColumns<Operation::GetRColumnIDs>(handlers, &ModelView::XTerms, HasYOrthogonal);
    OnTermColumns<Operation::GetQorColumnIDs>(handlers, &ModelView::YXTerms, HasYOrthogonal);
}

} // namespace engine
