#pragma once

#include "engine/batches/BatchLevelRecipe.h"
#include "engine/statistics/RowSet.h"

namespace engine {

// A data set with one row for each batch, as a file stores it.
struct BatchLevelTable {
    std::vector<TextColumn> observations; // the names of the batches, and the same as the identifier that tells batches
    std::vector<TextColumn> variables;    // names, and under the headings of the recipe where they come from
    std::vector<std::vector<float>> columns;
};

// All scores of these models at their aligned points, or all of their X variables. The models are fitted ones of the
// evolution of batches.
BatchLevelRecipe RecipeOf(std::vector<ModelView const *> const &models, bool ofVariables);

// The batches of the models' worksets, or of a prediction set. `models` are those of the recipe. `conditions` are data
// sets that have initial conditions of batches, by their names: the first tells the variables, and the first that has a
// batch its values. A batch that a model or a data set lacks has its cells missing.
using DataSets = std::vector<boost::shared_ptr<DataSet const>>;
BatchLevelTable LevelOfWorksets(BatchLevelRecipe const &recipe, std::vector<ModelView const *> const &models,
                                DataSets const &conditions);
BatchLevelTable LevelOfPredictions(BatchLevelRecipe const &recipe, std::vector<ModelView const *> const &models,
                                   DataSets const &conditions, boost::shared_ptr<DataSet const> const &predictions);

} // namespace engine
