#include "engine/models/FittedModel.h"

#include "engine/models/Archive.h"

#include "platform/text/Exception.h"

#include <algorithm>

namespace engine {

// The members of each saved class, in the order of its saved form.

template <typename Archive>
void Transfer(Archive &archive, Transformation &transformation) {
    archive(transformation.kind, transformation.c1, transformation.c2, transformation.c3);
}

template <typename Archive>
void Transfer(Archive &archive, Term &term) {
    archive(term.column, term.transformation, term.scaling, term.modifier, term.blockFactor);
    if (archive.Version() == 3) {
        std::vector<float> centres;
        archive(centres);
        term.centres.assign(centres.begin(), centres.end());
    }
    if (archive.Version() >= 4)
        archive(term.centres);
    if (archive.Version() >= 3)
        archive(term.factors);
    if (archive.Version() >= 6)
        archive(term.lag);
}

template <typename Archive>
void Transfer(Archive &archive, Level &level) {
    archive(level.variable, level.text);
}

template <typename Archive>
void Transfer(Archive &archive, Evolution &evolution) {
    archive(evolution.phase, evolution.phaseGroup, evolution.treatment, evolution.alignment, evolution.points);
}

template <typename Archive>
void Transfer(Archive &archive, PLSTreeProperties &properties) {
    archive(properties.scoreShare, properties.balanceShare, properties.smallest);
}

template <typename Archive>
void Transfer(Archive &archive, TreePlace &place) {
    archive(place.root, place.parent, place.depth, place.isAbove, place.properties);
}

template <typename Archive>
void Transfer(Archive &archive, ModelDefinition &definition) {
    archive(definition.kind, definition.xTerms, definition.yTerms, definition.rows, definition.components,
            definition.xOrthogonal, definition.yOrthogonal, definition.groups, definition.givenGroups,
            definition.alpha);
    if (archive.Version() >= 3)
        archive(definition.centringIdentifier, definition.centringGroups);
    if (archive.Version() >= 4)
        archive(definition.q2);
    if (archive.Version() >= 5)
        archive(definition.evolution);
    if (archive.Version() >= 7)
        archive(definition.levels, definition.tree);
}

template <typename Archive>
void Transfer(Archive &archive, TermScale &scale) {
    archive(scale.offset, scale.weight, scale.deviation, scale.observed, scale.centred);
}

template <typename Archive>
void Transfer(Archive &archive, Components &components) {
    archive(components.p, components.w, components.wStar, components.c, components.q, components.po, components.wo,
            components.woStar, components.so, components.co, components.qo, components.r, components.ssX,
            components.ssY);
    if (archive.Version() >= 2)
        archive(components.companionW, components.companionP);
}

template <typename Archive>
void Transfer(Archive &archive, Scores &scores) {
    archive(scores.t, scores.u, scores.to, scores.uo);
}

template <typename Archive>
void Transfer(Archive &archive, CrossValidation &validation) {
    archive(validation.roundOfRow, validation.rounds, validation.press, validation.excluded);
    if (archive.Version() >= 4)
        archive(validation.deflatedPress);
}

template <typename Archive>
void Transfer(Archive &archive, Progression &progression) {
    archive(progression.takenY, progression.press, progression.predictedY);
}

template <typename Archive>
void Transfer(Archive &archive, Unconverged &unconverged) {
    archive(unconverged.component, unconverged.rounds, unconverged.change, unconverged.ofCompanion);
}

template <typename Archive>
void Transfer(Archive &archive, FitNotes &notes) {
    archive(notes.unconverged, notes.scarceRows);
}

template <typename Archive>
void Transfer(Archive &archive, FittedModel &model) {
    archive(model.definition, model.xScales, model.yScales, model.xObserved, model.yObserved, model.components,
            model.scores, model.iterations, model.crossValidation);
    if (archive.Version() >= 2)
        archive(model.progression);
    if (archive.Version() >= 4)
        archive(model.notes);
}

namespace {

void Expect(bool agrees) {
    if (!agrees)
        throw NCError(ExceptionMessage::translate(
                          "The saved model is damaged: the counts and numbers in it do not agree with each other."),
                      NCError::Error);
}

template <typename Stored>
void ExpectSize(Stored const &matrix, Index rows, Index columns) {
    Expect(matrix.rows() == rows && matrix.cols() == columns);
}

template <typename Enumeration>
bool IsUpTo(Enumeration value, Enumeration last) {
    return value >= Enumeration() && value <= last;
}

void CheckTerms(std::vector<Term> const &terms, ModelDefinition const &definition) {
    std::size_t const groups = definition.centringGroups.size();
    auto const columns = std::ranges::find_if(terms, &Term::IsProduct) - terms.begin();
    for (std::size_t k = 0; k < terms.size(); ++k) {
        auto const &term = terms[k];
        Expect(IsUpTo(term.transformation.kind, TransformationKind::Power));
        Expect(IsUpTo(term.scaling, ScalingKind::ParetoUncentred));
        Expect(term.centres.empty() || term.centres.size() == groups);
        Expect(term.IsProduct() == (static_cast<std::ptrdiff_t>(k) >= columns));
        Expect(term.lag == 0 || (term.lag > 0 && !term.IsProduct()));
        Expect(!term.IsLevel() || static_cast<std::size_t>(-1 - term.column) < definition.levels.size());
        Expect(std::ranges::all_of(term.factors, [&](int factor) { return factor >= 0 && factor < columns; }));
    }
}

void CheckTree(ModelDefinition const &definition) {
    if (!definition.tree)
        return;
    TreePlace const &place = *definition.tree;
    Expect(definition.kind == ModelKind::Pls && !definition.evolution);
    Expect(place.root >= 0 && place.parent >= 0 && place.depth >= 0 && place.properties.smallest >= 0);
    for (double const share : {place.properties.scoreShare, place.properties.balanceShare})
        Expect(share >= 0 && share <= 1);
}

void CheckCounts(ModelDefinition const &definition) {
    constexpr ModelKind kinds[] = {ModelKind::Pca, ModelKind::Pls, ModelKind::PlsDiscriminant, ModelKind::Opls,
                                   ModelKind::O2Pls};
    Expect(std::ranges::find(kinds, definition.kind) != std::end(kinds));
    Expect(IsUpTo(definition.q2, Q2Form::Deflated));
    CheckTerms(definition.xTerms, definition);
    CheckTerms(definition.yTerms, definition);
    Expect(std::ranges::all_of(definition.yTerms, [](Term const &term) { return term.lag == 0; }));
    Expect(definition.rows.size() >= 2 && !definition.xTerms.empty());
    Expect(definition.HasY() != definition.yTerms.empty());
    Expect(definition.givenGroups.empty() || definition.givenGroups.size() == definition.rows.size());
    if (definition.evolution) {
        Expect(definition.kind == ModelKind::Pls || definition.kind == ModelKind::Opls);
        Expect(IsUpTo(definition.evolution->alignment, AlignmentMode::Maturity));
        Expect(definition.evolution->points >= 0);
    }
    CheckTree(definition);
}

// What a model of X terms and Y terms has of components.
void CheckCounts(Components const &components, ModelDefinition const &definition) {
    auto const xTerms = static_cast<Index>(definition.xTerms.size());
    auto const yTerms = static_cast<Index>(definition.yTerms.size());
    auto const predictive = components.Predictive();
    auto const withY = definition.HasY() ? predictive : 0;
    auto const xOrthogonal = components.XOrthogonal();
    auto const yOrthogonal = components.YOrthogonal();
    Expect(xOrthogonal == 0 || definition.HasOrthogonal());
    Expect(yOrthogonal == 0 || definition.kind == ModelKind::O2Pls);
    ExpectSize(components.p, xTerms, predictive);
    for (auto const *const matrix : {&components.w, &components.wStar})
        ExpectSize(*matrix, definition.HasY() ? xTerms : 0, withY);
    for (auto const *const matrix : {&components.c, &components.q})
        ExpectSize(*matrix, yTerms, withY);
    for (auto const *const matrix : {&components.po, &components.wo, &components.woStar})
        ExpectSize(*matrix, xTerms, xOrthogonal);
    ExpectSize(components.so, yTerms, xOrthogonal);
    for (auto const *const matrix : {&components.co, &components.qo})
        ExpectSize(*matrix, yTerms, yOrthogonal);
    ExpectSize(components.r, xTerms, yOrthogonal);
    ExpectSize(components.ssX, xTerms, components.All() + 1);
    ExpectSize(components.ssY, yTerms, components.All() + 1);
    auto const companion = components.companionW.cols();
    ExpectSize(components.companionW, companion > 0 ? xTerms : components.companionW.rows(), companion);
    ExpectSize(components.companionP, companion > 0 ? xTerms : components.companionP.rows(), companion);
}

void CheckCounts(Scores const &scores, Index rows, Components const &components) {
    ExpectSize(scores.t, rows, components.Predictive());
    ExpectSize(scores.u, rows, components.c.cols());
    ExpectSize(scores.to, rows, components.XOrthogonal());
    ExpectSize(scores.uo, rows, components.YOrthogonal());
}

void CheckCounts(CrossValidation const &validation, FittedModel const &model) {
    auto const rounds = static_cast<int>(validation.rounds.size());
    auto const terms = model.definition.HasY() ? model.yScales.size() : model.xScales.size();
    Expect(static_cast<Index>(validation.roundOfRow.size()) == model.Rows());
    Expect(std::ranges::all_of(validation.roundOfRow, [&](int round) { return round >= 0 && round < rounds; }));
    for (auto const &round : validation.rounds) {
        CheckCounts(round, model.definition);
        Expect(round.Predictive() <= model.components.Predictive());
        Expect(round.XOrthogonal() <= model.components.XOrthogonal());
        Expect(round.YOrthogonal() <= model.components.YOrthogonal());
    }
    CheckCounts(validation.excluded, model.Rows(), model.components);
    ExpectSize(validation.press, static_cast<Index>(terms), model.components.Predictive() + 1);
    if (model.definition.q2 == Q2Form::Deflated)
        ExpectSize(validation.deflatedPress, static_cast<Index>(terms), model.components.Predictive());
}

void CheckCounts(Progression const &progression, FittedModel const &model) {
    auto const yTerms = static_cast<Index>(model.yScales.size());
    auto const sizes = progression.takenY.cols();
    Expect(sizes == (model.definition.HasOrthogonal() ? model.components.XOrthogonal() + 1 : 0));
    Expect(progression.press.cols() == (model.crossValidation ? sizes : 0));
    Expect(static_cast<Index>(progression.predictedY.size()) == progression.press.cols());
    if (sizes > 0)
        ExpectSize(progression.takenY, yTerms, sizes);
    if (progression.press.cols() > 0)
        ExpectSize(progression.press, yTerms, sizes);
    for (auto const &predicted : progression.predictedY)
        ExpectSize(predicted, model.Rows(), yTerms);
}

void CheckCounts(FittedModel const &model) {
    CheckCounts(model.definition);
    auto const rows = static_cast<Index>(model.definition.rows.size());
    Expect(model.xScales.size() == model.definition.xTerms.size());
    Expect(model.yScales.size() == model.definition.yTerms.size());
    Expect(model.xObserved.size() == rows && model.yObserved.size() == rows);
    CheckCounts(model.components, model.definition);
    CheckCounts(model.scores, rows, model.components);
    Expect(static_cast<Index>(model.iterations.size()) == model.components.All());
    if (model.crossValidation)
        CheckCounts(*model.crossValidation, model);
    CheckCounts(model.progression, model);
}

// Of all saved forms. Version 2 added what models with orthogonal components need, version 3 local centres and
// products, version 4 notes on the fit and the form of Q2, and made centres double, version 5 the evolution of batches,
// version 6 lagged terms, version 7 levels and places in trees.
constexpr std::uint32_t savedVersion = 7;

template <typename Value>
std::string SaveAs(char const *name, Value value) {
    WritingArchive archive(name, savedVersion);
    archive(value);
    return archive.Finish();
}

template <typename Value>
Value LoadAs(char const *name, std::string const &saved) {
    ReadingArchive archive(saved, name, savedVersion);
    Value value;
    archive(value);
    archive.Finish();
    CheckCounts(value);
    return value;
}

int AnyCentred(std::vector<TermScale> const &scales) {
    return std::ranges::any_of(scales, &TermScale::centred) ? 1 : 0;
}

} // namespace

int FittedModel::XCentred() const {
    return AnyCentred(xScales);
}

int FittedModel::YCentred() const {
    return AnyCentred(yScales);
}

std::string FittedModel::Save() const {
    return SaveAs("DSFM", *this);
}

FittedModel FittedModel::Load(std::string const &saved) {
    return LoadAs<FittedModel>("DSFM", saved);
}

std::string ModelDefinition::Save() const {
    return SaveAs("DSMD", *this);
}

ModelDefinition ModelDefinition::Load(std::string const &saved) {
    return LoadAs<ModelDefinition>("DSMD", saved);
}

} // namespace engine
