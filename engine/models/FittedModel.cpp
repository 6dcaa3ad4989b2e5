#include "engine/models/FittedModel.h"

#include "engine/models/Archive.h"

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
    if (archive.Version() >= 3)
        archive(term.centres, term.factors);
}

template <typename Archive>
void Transfer(Archive &archive, ModelDefinition &definition) {
    archive(definition.kind, definition.xTerms, definition.yTerms, definition.rows, definition.components,
            definition.xOrthogonal, definition.yOrthogonal, definition.groups, definition.givenGroups,
            definition.alpha);
    if (archive.Version() >= 3)
        archive(definition.centringIdentifier, definition.centringGroups);
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
}

template <typename Archive>
void Transfer(Archive &archive, Progression &progression) {
    archive(progression.takenY, progression.press, progression.predictedY);
}

template <typename Archive>
void Transfer(Archive &archive, FittedModel &model) {
    bool validated = model.crossValidation.has_value();
    archive(model.definition, model.xScales, model.yScales, model.xObserved, model.yObserved, model.components,
            model.scores, model.iterations, validated);
    if (validated && !model.crossValidation)
        model.crossValidation.emplace();
    if (validated)
        archive(*model.crossValidation);
    if (archive.Version() >= 2)
        archive(model.progression);
}

namespace {

// Of all saved forms. Version 2 added what models with orthogonal components need, version 3 local centres and
// products.
constexpr std::uint32_t savedVersion = 3;

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
