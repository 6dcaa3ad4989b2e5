#include "engine/models/Fit.h"

#include "engine/models/CrossValidation.h"
#include "platform/Exception.h"

#include <Eigen/LU>

namespace engine {
namespace {

constexpr Index autofitLimit = 15;

// 1 - value/reference, not significant where the reference is 0.
bool Improves(double value, double reference) {
    return reference > 0 && 1 - value / reference > 0.05;
}

// Whether the last component predicts, in all or for enough terms, and is not negligible (Wold 1978; Wold et al. 2001).
bool LastIsSignificant(Components const &model, Matrix const &press) {
    auto const a = model.Predictive();
    Index improved = 0;
    for (Index k = 0; k < press.rows(); ++k)
        improved += Improves(press(k, a), press(k, a - 1));
    auto const predicts = Improves(press.col(a).sum(), press.col(a - 1).sum()) ||
                          static_cast<double>(improved) >= std::sqrt(static_cast<double>(press.rows()));
    auto const weighty = model.TakenX(a - 1).sum() >= 0.01 * model.ssX.col(0).sum() ||
                         (model.ssY.rows() > 0 && model.TakenY(a - 1).sum() >= 0.01 * model.ssY.col(0).sum());
    return predicts && weighty;
}

// Lets the model and its rounds grow until two components in a row are not significant. Answers the number that are.
Index GrowWhileSignificant(Extraction &model, CrossValidator &validator, Index limit, Progress const &progress) {
    Index significant = 0;
    for (Index a = 1; a <= limit && a <= significant + 2; ++a) {
        model.Extract(1);
        if (model.Found().Predictive() < a)
            break;
        validator.Extend(Progress());
        if (LastIsSignificant(model.Found(), validator.Press()))
            significant = a;
        progress.Report(static_cast<double>(a) / static_cast<double>(limit));
    }
    return significant;
}

void CheckGroups(ModelDefinition const &definition, Index rows) {
    auto const given = static_cast<Index>(definition.givenGroups.size());
    if (given != 0 && given != rows)
        throw NCError(ExceptionMessage::translate("Cross-validation groups are given for {1} observations, the model "
                                                  "has {2}.") %
                          given % rows,
                      NCError::Error);
}

} // namespace

Components FirstComponents(Components const &components, Index predictive) {
    auto first = components;
    auto const count = std::min(predictive, components.Predictive());
    for (auto *const matrix : {&first.p, &first.w, &first.wStar, &first.c, &first.q})
        *matrix = matrix->leftCols(std::min(count, matrix->cols())).eval();
    first.ssX = components.ssX.leftCols(count + 1);
    first.ssY = components.ssY.leftCols(count + 1);
    // With missing cells the later components are in the earlier columns of the longer model's W*.
    if (count < components.Predictive() && first.w.cols() > 0)
        first.wStar = first.w * (first.p.transpose() * first.w).partialPivLu().inverse();
    return first;
}

FittedModel Fit(ModelDefinition const &definition, Workset const &workset, Progress const &progress) {
    if (definition.kind == ModelKind::Opls || definition.kind == ModelKind::O2Pls)
        throw NCInternalError("Fit", ExceptionMessage::translate("models of this type are not fitted here"));
    auto const rows = workset.x.Rows();
    CheckGroups(definition, rows);
    auto const extraction = Extraction::Start(workset.x, workset.y, nullptr);
    auto const rounds = RoundsOfRows(definition, rows);
    std::optional<CrossValidator> validator;
    if (!rounds.empty())
        validator.emplace(workset, rounds, *extraction);
    auto const limit = std::min({rows - 1, workset.x.Size(), autofitLimit});
    Index components = 0;
    if (definition.components == ModelDefinition::autofit && validator)
        components = GrowWhileSignificant(*extraction, *validator, limit, progress);
    else {
        auto const asked = definition.components == ModelDefinition::autofit ? std::min<Index>(2, limit)
                                                                             : Index(definition.components);
        extraction->Extract(asked);
        components = extraction->Found().Predictive();
        if (validator)
            validator->Extend(progress);
    }

    FittedModel model;
    model.definition = definition;
    model.xScales = workset.xScales;
    model.yScales = workset.yScales;
    model.xObserved = workset.x.ObservedInRows();
    model.yObserved = workset.y.ObservedInRows();
    model.components = FirstComponents(extraction->Found(), components);
    auto const &scores = extraction->FoundScores();
    model.scores.t = scores.t.leftCols(components);
    model.scores.u = scores.u.leftCols(std::min(components, scores.u.cols()));
    model.scores.to.resize(rows, 0);
    model.scores.uo.resize(rows, 0);
    model.iterations.assign(extraction->Iterations().begin(), extraction->Iterations().begin() + components);
    if (validator)
        model.crossValidation = validator->Result(components);
    return model;
}

} // namespace engine
