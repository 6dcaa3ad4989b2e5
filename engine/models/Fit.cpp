#include "engine/models/Fit.h"

#include "engine/models/Autofit.h"
#include "engine/models/CrossValidation.h"
#include "engine/models/FitOrthogonal.h"
#include "platform/text/Exception.h"

namespace engine {
namespace {

// Whether the last component predicts, in all or for enough terms, and is not negligible (Wold 1978; Wold et al. 2001).
bool LastIsSignificant(Components const &model, ComparedErrors const &press) {
    auto const a = model.Predictive();
    auto const &[errors, before] = press;
    Index improved = 0;
    for (Index k = 0; k < errors.size(); ++k)
        improved += Improves(errors[k], before[k]);
    auto const predicts = Improves(errors.sum(), before.sum()) ||
                          static_cast<double>(improved) >= std::sqrt(static_cast<double>(errors.size()));
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
        validator.Extend(CrossValidator::Rounds::Grow, Progress());
        if (LastIsSignificant(model.Found(), validator.LastErrors()))
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

// A PCA or PLS model.
FittedModel FitInOrder(ModelDefinition const &definition, Workset const &workset, std::vector<int> const &roundOfRow,
                       Progress const &progress) {
    auto const extraction = Extraction::Start(workset.x, workset.y, nullptr);
    std::optional<CrossValidator> validator;
    if (!roundOfRow.empty())
        validator.emplace(workset, roundOfRow, *extraction, definition.q2);
    auto const open = definition.components == ModelDefinition::autofit;
    Index components = 0;
    if (open && validator)
        components = GrowWhileSignificant(*extraction, *validator, AutofitLimit(workset), progress);
    else {
        extraction->Extract(open ? ComponentsWithoutRounds(workset) : Index(definition.components));
        components = extraction->Found().Predictive();
        if (validator)
            validator->Extend(CrossValidator::Rounds::End, progress);
    }

    FittedModel model;
    model.components = FirstComponents(extraction->Found(), components);
    auto const &scores = extraction->FoundScores();
    model.scores = NoScores(workset.x.Rows());
    model.scores.t = scores.t.leftCols(components);
    model.scores.u = scores.u.leftCols(std::min(components, scores.u.cols()));
    model.iterations.assign(extraction->Iterations().begin(), extraction->Iterations().begin() + components);
    model.notes = extraction->NotesOn(components);
    if (validator)
        model.crossValidation = validator->Result(components);
    return model;
}

// A ledger without the predictive components behind the first `count`.
Matrix ShortLedger(Matrix const &ledger, Index count, Index predictive) {
    auto const orthogonal = ledger.cols() - 1 - predictive;
    Matrix kept(ledger.rows(), count + 1 + orthogonal);
    kept.leftCols(count + 1) = ledger.leftCols(count + 1);
    kept.rightCols(orthogonal) = ledger.rightCols(orthogonal).colwise() + (ledger.col(count) - ledger.col(predictive));
    return kept;
}

} // namespace

Components FirstComponents(Components const &components, Index predictive) {
    auto first = components;
    auto const all = components.Predictive();
    auto const count = std::min(predictive, all);
    for (auto *const matrix : {&first.p, &first.w, &first.wStar, &first.c, &first.q})
        *matrix = matrix->leftCols(std::min(count, matrix->cols())).eval();
    first.ssX = ShortLedger(components.ssX, count, all);
    first.ssY = ShortLedger(components.ssY, count, all);
    // With missing cells the later components are in the earlier columns of the longer model's W*.
    if (count < all && first.w.cols() > 0)
        first.wStar = DirectWeights(first);
    return first;
}

FittedModel Fit(ModelDefinition const &definition, Workset const &workset, Progress const &progress) {
    auto const rows = workset.x.Rows();
    if (definition.q2 == Q2Form::Deflated && definition.HasOrthogonal())
        throw NCError(ExceptionMessage::translate("Q2 on deflated matrices is defined for PCA and PLS, not for models "
                                                  "with orthogonal components. Expected full rounds."),
                      NCError::Error);
    CheckGroups(definition, rows);
    auto const roundOfRow = RoundsOfRows(definition, rows);
    auto model = (definition.HasOrthogonal() ? FitOrthogonal : FitInOrder)(definition, workset, roundOfRow, progress);
    model.definition = definition;
    model.xScales = workset.xScales;
    model.yScales = workset.yScales;
    model.xObserved = workset.x.ObservedInRows();
    model.yObserved = workset.y.ObservedInRows();
    return model;
}

} // namespace engine
