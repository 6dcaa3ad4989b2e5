#include "engine/batches/BatchLevelRecipe.h"

namespace engine {

std::optional<BatchLevelRecipe::Place> BatchLevelRecipe::PlaceOf(int column) const {
    for (std::size_t source = 0; source < sources.size(); ++source) {
        int const size = sources[source].Statistics() * sources[source].points;
        if (column < size)
            return Place{source, column / sources[source].points, column % sources[source].points};
        column -= size;
    }
    return {};
}

std::int64_t BatchLevelRecipe::ColumnsOfModels() const {
    std::int64_t columns = 0;
    for (Source const &source : sources)
        columns += static_cast<std::int64_t>(source.Statistics()) * source.points;
    return columns;
}

} // namespace engine
