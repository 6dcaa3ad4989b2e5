#pragma once

#include "engine/data/Recipe.h"
#include "engine/statistics/RowSet.h"

namespace engine {

// A data set that a recipe makes, as a file stores it.
struct DerivedTable {
    std::vector<TextColumn> observations; // identifiers, the primary one first
    std::vector<TextColumn> variables;
    std::vector<std::vector<float>> columns; // -99 missing
};

using DataSetList = std::vector<boost::shared_ptr<DataSet const>>;

// All scores of these models at their aligned points, or all of their X variables. The models are fitted ones of the
// evolution of batches.
BatchLevelRecipe RecipeOf(std::vector<ModelView const *> const &models, bool ofVariables);

// The batches of the models' worksets, or of a prediction set: their names, and the same as the identifier that tells
// batches; of the variables also where they come from, under the headings of the recipe. `models` are those of the
// recipe. `conditions` are data sets that have initial conditions of batches, by their names: the first tells the
// variables, and the first that has a batch its values. A batch that a model or a data set lacks has its cells missing.
DerivedTable LevelOfWorksets(BatchLevelRecipe const &recipe, std::vector<ModelView const *> const &models,
                             DataSetList const &conditions);
DerivedTable LevelOfPredictions(BatchLevelRecipe const &recipe, std::vector<ModelView const *> const &models,
                                DataSetList const &conditions, boost::shared_ptr<DataSet const> const &predictions);

// Results of models for their observations: of the worksets, for those that all of them have, in the order of the first
// model; of a prediction set, for all of its observations. `models` are those of the recipe, in its order. `sets` has
// for each variable of the recipe the data set that its values are read from, null where none has it. `identifiers` are
// those of the data set of the first model, or of the prediction set.
DerivedTable ResultsOfWorksets(HierarchyRecipe const &recipe, std::vector<ModelView const *> const &models,
                               DataSetList const &sets, std::vector<TextColumn> const &identifiers);
// `rows` are the prediction set as each model takes it: as it is, or put through the recipe of the model's data set.
DerivedTable ResultsOfPredictions(HierarchyRecipe const &recipe, std::vector<ModelView const *> const &models,
                                  DataSetList const &rows, boost::shared_ptr<DataSet const> const &predictions,
                                  std::vector<TextColumn> const &identifiers);

// A correction of so many components, or of fewer where no more of X has nothing to do with Y, made of the rows of the
// definition, whose terms are columns as they are.
CorrectionRecipe CorrectionOf(ModelDefinition definition, boost::shared_ptr<DataSet const> const &source,
                              Index components);
// All variables of the source in some rows, those of the source or of a prediction set, with those of X corrected.
DerivedTable CorrectedRows(CorrectionRecipe const &recipe, boost::shared_ptr<DataSet const> const &source,
                           boost::shared_ptr<DataSet const> const &rows, std::vector<TextColumn> const &identifiers);

// How much each wavelet coefficient tells, kept or not: the mean of its squares over the rows of a data set; about its
// mean, which is what it tells of differences between rows, where coefficients are to be the variables.
std::vector<double> SizesOfCoefficients(CompressionRecipe const &recipe, DataSet const &source);
// The kept coefficients of some rows, or what they tell of the variables, and the other variables.
DerivedTable CompressedRows(CompressionRecipe const &recipe, DataSet const &source, DataSet const &rows,
                            std::vector<TextColumn> const &identifiers);

} // namespace engine
