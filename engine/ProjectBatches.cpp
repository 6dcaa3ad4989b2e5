#include "engine/ProjectState_internal.h"

#include "platform/project/ModelUtilities.h"

// Models of batches, and data sets with one row for each batch.

namespace engine {

std::vector<int> Project::AddPhaseModels(ModelRequest request, Progress const &progress) {
    DataSetRecord const record = m_state->File().DataSet(request.dataSet);
    std::optional<BatchLayout> const layout = FindLayout(m_state->File(), record);
    std::vector<std::string> const phases = layout ? layout->Phases() : std::vector<std::string>();
    if (phases.empty())
        throw NCError(ExceptionMessage::translate("Data set {1} ({2}) has no identifier that tells phases. Import it "
                                                  "with --phase COLUMN.") %
                          record.number % record.name,
                      NCError::Error);
    return m_state->Change([&] {
        std::vector<int> numbers;
        for (std::string const &phase : phases) {
            auto const ofAll = [&](double done) {
                progress.Report((static_cast<double>(numbers.size()) + done) / static_cast<double>(phases.size()));
                return true;
            };
            request.evolution->phase = phase;
            numbers.push_back(Fitted(request, numbers.empty() ? 0 : numbers.front(), Progress(ofAll)));
        }
        return numbers;
    });
}

BatchLevelRecipe Project::RecipeFor(BatchLevelRequest const &request) const {
    m_state->FittedView(request.model);
    std::vector<ModelView const *> views;
    for (int const model :
         ModelUtilities::FindMatchingModels(*this, request.model, false, MatchingModelE::SamePhaseGroup)) {
        views.push_back(&m_state->FittedView(model));
        if (!views.back()->Fit().definition.evolution)
            throw NCError(ExceptionMessage::translate("Model {1} is no model of the evolution of batches.") % model,
                          NCError::Error);
    }
    BatchLevelRecipe recipe = RecipeOf(views, request.ofVariables);
    recipe.conditions = request.conditions;
    if (recipe.ColumnsOfModels() == 0)
        throw NCError(ExceptionMessage::translate("Model {1} has no scores to make batch-level variables of.") %
                          request.model,
                      NCError::Error);
    return recipe;
}

int Project::AddBatchLevel(BatchLevelRequest const &request, Progress const &progress) {
    Recipe const recipe{RecipeFor(request)};
    if (request.conditions != 0)
        m_state->Data(request.conditions);
    std::string name = "Batches of";
    for (int const model : recipe.Models())
        name += " M" + std::to_string(model);
    return Derive(recipe, name, progress);
}

int Project::AddBatchLevelModel(BatchLevelRequest const &level, ModelRequest request, Progress const &progress) {
    return m_state->Change([&] {
        request.dataSet = AddBatchLevel(level);
        return Fitted(request, 0, progress);
    });
}

} // namespace engine
