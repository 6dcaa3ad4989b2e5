#include "engine/data/Recipe.h"

#include "engine/models/Archive.h"
#include "platform/identity/VarObs.h"
#include "platform/numerics/Wavelet.h"
#include "platform/text/Exception.h"

#include <algorithm>
#include <limits>

namespace engine {

namespace {

constexpr char const *savedName = "DSRE";
constexpr std::uint32_t savedVersion = 1;
constexpr int most = 100'000'000; // statistics of a kind, and points

// Whether what was read is one that could have been written.
bool IsWhole(BatchLevelRecipe const &recipe) {
    auto const isCount = [](int count) { return count >= 0 && count <= most; };
    for (BatchLevelRecipe::Source const &source : recipe.sources)
        for (int const count : {source.scores, source.orthogonal, source.variables, source.points - 1})
            if (!isCount(count))
                return false;
    return !recipe.sources.empty() && recipe.ColumnsOfModels() <= std::numeric_limits<int>::max();
}

bool IsWhole(HierarchyRecipe const &recipe) {
    auto const isResult = [](HierarchyRecipe::Result const &result) {
        return VariableInfo::IsResult(result.kind) && result.place >= 0;
    };
    auto const isVariable = [](HierarchyRecipe::Variable const &variable) { return variable.column >= 0; };
    return !recipe.results.empty() && std::ranges::all_of(recipe.results, isResult) &&
           std::ranges::all_of(recipe.variables, isVariable);
}

bool IsWhole(CorrectionRecipe const &recipe) {
    std::size_t const terms = recipe.definition.xTerms.size();
    auto const isPlain = [](Term const &term) { return !term.IsProduct() && term.lag == 0 && term.column >= 0; };
    OrthogonalCorrection const &made = recipe.correction;
    auto const isOfTerms = [&](Matrix const &vectors) {
        return static_cast<std::size_t>(vectors.rows()) == terms && vectors.cols() == made.t.cols();
    };
    return recipe.offsets.size() == terms && recipe.weights.size() == terms && isOfTerms(made.w) && isOfTerms(made.p) &&
           isOfTerms(made.wStar) && static_cast<std::size_t>(made.t.rows()) == recipe.definition.rows.size() &&
           std::ranges::all_of(recipe.definition.xTerms, isPlain);
}

bool IsWhole(CompressionRecipe const &recipe) {
    auto const isPlace = [](int place) { return place >= 0; };
    auto const isCoefficient = [length = Wavelet::TransformedLength(static_cast<int>(recipe.columns.size()), true)](
                                   int place) { return place >= 0 && place < length; };
    return !recipe.columns.empty() && std::ranges::all_of(recipe.columns, isPlace) &&
           std::ranges::all_of(recipe.others, isPlace) && std::ranges::all_of(recipe.kept, isCoefficient) &&
           recipe.function >= Wavelet::Daubechies && recipe.function <= Wavelet::Coiflet;
}

} // namespace

template <typename Archive>
void Transfer(Archive &archive, BatchLevelRecipe::Source &source) {
    archive(source.model, source.scores, source.orthogonal, source.variables, source.points);
}

template <typename Archive>
void Transfer(Archive &archive, BatchLevelRecipe &recipe) {
    archive(recipe.dataSet, recipe.sources, recipe.conditions);
}

template <typename Archive>
void Transfer(Archive &archive, HierarchyRecipe::Result &result) {
    archive(result.model, result.kind, result.place);
}

template <typename Archive>
void Transfer(Archive &archive, HierarchyRecipe::Variable &variable) {
    archive(variable.dataSet, variable.column);
}

template <typename Archive>
void Transfer(Archive &archive, HierarchyRecipe &recipe) {
    archive(recipe.results, recipe.variables);
}

// Which has a saved form of its own.
void TransferDefinition(WritingArchive &archive, ModelDefinition &definition) {
    std::string saved = definition.Save();
    archive(saved);
}
void TransferDefinition(ReadingArchive &archive, ModelDefinition &definition) {
    std::string saved;
    archive(saved);
    definition = ModelDefinition::Load(saved);
}

template <typename Archive>
void Transfer(Archive &archive, OrthogonalCorrection &correction) {
    archive(correction.w, correction.p, correction.wStar, correction.t);
}

template <typename Archive>
void Transfer(Archive &archive, CorrectionRecipe &recipe) {
    archive(recipe.dataSet, recipe.offsets, recipe.weights, recipe.correction);
    TransferDefinition(archive, recipe.definition);
}

template <typename Archive>
void Transfer(Archive &archive, CompressionRecipe &recipe) {
    archive(recipe.dataSet, recipe.columns, recipe.others, recipe.function, recipe.order, recipe.kept, recipe.denoised);
}

namespace {

// Reads what stands there after its number among the forms.
template <std::size_t form = 0>
bool ReadForm(ReadingArchive &archive, std::uint32_t number, Recipe &recipe) {
    if constexpr (form < std::variant_size_v<decltype(recipe.how)>) {
        if (number != form)
            return ReadForm<form + 1>(archive, number, recipe);
        Transfer(archive, recipe.how.emplace<form>());
        return true;
    }
    return false;
}

} // namespace

std::vector<int> HierarchyRecipe::Models() const {
    std::vector<int> models;
    for (Result const &result : results)
        if (std::ranges::find(models, result.model) == models.end())
            models.push_back(result.model);
    return models;
}

std::vector<int> Recipe::Models() const {
    if (auto const *const hierarchy = As<HierarchyRecipe>())
        return hierarchy->Models();
    std::vector<int> models;
    if (auto const *const level = As<BatchLevelRecipe>())
        for (BatchLevelRecipe::Source const &source : level->sources)
            models.push_back(source.model);
    return models;
}

int Recipe::DataSet() const {
    auto const *const correction = As<CorrectionRecipe>();
    auto const *const compression = As<CompressionRecipe>();
    return correction ? correction->dataSet : compression ? compression->dataSet : 0;
}

std::string Recipe::Save() const {
    Recipe copy = *this;
    WritingArchive archive(savedName, savedVersion);
    auto form = static_cast<std::uint32_t>(how.index());
    archive(copy.trained, copy.predictions, form);
    std::visit([&](auto &recipe) { Transfer(archive, recipe); }, copy.how);
    return archive.Finish();
}

Recipe Recipe::Load(std::string const &saved) {
    ReadingArchive archive(saved, savedName, savedVersion);
    Recipe recipe;
    std::uint32_t form = 0;
    archive(recipe.trained, recipe.predictions, form);
    bool const isKnown = ReadForm(archive, form, recipe);
    if (isKnown)
        archive.Finish();
    if (!isKnown || !std::visit([](auto const &read) { return IsWhole(read); }, recipe.how))
        throw NCError(ExceptionMessage::translate("The recipe of a data set is damaged: its counts do not agree."),
                      NCError::Error);
    return recipe;
}

} // namespace engine
