#include "engine/batches/BatchLevelRecipe.h"

#include "engine/models/Archive.h"
#include "platform/text/Exception.h"

#include <limits>

namespace engine {

namespace {

constexpr char const *savedName = "DSBL";
constexpr std::uint32_t savedVersion = 1;
constexpr int most = 100'000'000; // statistics of a kind, and points

} // namespace

template <typename Archive>
void Transfer(Archive &archive, BatchLevelRecipe::Source &source) {
    archive(source.model, source.scores, source.orthogonal, source.variables, source.points);
}

template <typename Archive>
void Transfer(Archive &archive, BatchLevelRecipe &recipe) {
    archive(recipe.dataSet, recipe.sources, recipe.conditions, recipe.trained, recipe.predictions);
}

std::optional<BatchLevelRecipe::Place> BatchLevelRecipe::PlaceOf(int column) const {
    for (std::size_t source = 0; source < sources.size(); ++source) {
        int const size = sources[source].Statistics() * sources[source].points;
        if (column < size)
            return Place{source, column / sources[source].points, column % sources[source].points};
        column -= size;
    }
    return {};
}

int BatchLevelRecipe::ColumnsOfModels() const {
    int columns = 0;
    for (Source const &source : sources)
        columns += source.Statistics() * source.points;
    return columns;
}

std::string BatchLevelRecipe::Save() const {
    BatchLevelRecipe copy = *this;
    WritingArchive archive(savedName, savedVersion);
    archive(copy);
    return archive.Finish();
}

BatchLevelRecipe BatchLevelRecipe::Load(std::string const &saved) {
    ReadingArchive archive(saved, savedName, savedVersion);
    BatchLevelRecipe recipe;
    archive(recipe);
    archive.Finish();
    std::int64_t columns = 0;
    bool isWhole = !recipe.sources.empty();
    for (Source const &source : recipe.sources) {
        for (int const count : {source.scores, source.orthogonal, source.variables, source.points - 1})
            isWhole = isWhole && count >= 0 && count <= most;
        columns += isWhole ? static_cast<std::int64_t>(source.Statistics()) * source.points : 0;
    }
    if (!isWhole || columns > std::numeric_limits<int>::max())
        throw NCError(ExceptionMessage::translate("The recipe of a data set is damaged: its counts do not agree."),
                      NCError::Error);
    return recipe;
}

} // namespace engine
