#include "engine/ProjectState_internal.h"

#include "platform/project/ModelUtilities.h"
#include "platform/storage/XercesXMLSection.h"

#include <algorithm>

// Models of batches, data sets with one row for each batch, and prediction sets, which are put through the recipes of
// these.

namespace engine {

namespace {

// Remembers which batches of a data set are still running.
void StoreRunning(ProjectFile &file, int dataSet, ImportedTable const &table) {
    if (table.running.empty())
        return;
    std::vector<std::string> const headings = HeadingsOf(*ReadRoles(file), batchRole);
    auto const column = std::ranges::find_if(table.observations, [&](TextColumn const &identifier) {
        return std::ranges::count(headings, identifier.name) > 0;
    });
    for (std::string const &batch : table.running) {
        bool isThere = false;
        for (std::size_t row = 0; column != table.observations.end() && row < table.ObservationCount(); ++row)
            isThere = isThere || column->texts[row] == batch;
        if (!isThere)
            throw NCError(ExceptionMessage::translate("There is no batch \"{1}\" in {2} that could be running.") %
                              batch % table.name,
                          NCError::Error);
    }
    XercesXMLSection section;
    section.WriteKey(runningKey, table.running, '\n');
    std::string text;
    section.Flush(text);
    file.SetSection(RunningSection(dataSet), text);
}

} // namespace

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

std::vector<ModelView const *> Project::LowerModels(BatchLevelRecipe const &recipe) const {
    std::vector<ModelView const *> models;
    for (BatchLevelRecipe::Source const &source : recipe.sources)
        models.push_back(&m_state->FittedView(source.model));
    return models;
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
    BatchLevelRecipe const recipe = RecipeFor(request);
    if (request.conditions != 0)
        m_state->Data(request.conditions);
    for (DataSetRecord const &record : m_state->DataSets())
        if (record.kind == DataSetKind::Derived && m_state->FindData(record.number)->Recipe() == recipe)
            return record.number;
    std::string name = "Batches of";
    for (BatchLevelRecipe::Source const &source : recipe.sources)
        name += " M" + std::to_string(source.model);
    return m_state->Change([&] {
        BatchLevelTable const table =
            LevelOfWorksets(recipe, LowerModels(recipe), m_state->ConditionSets(recipe.conditions));
        int const number = StoreLevel(table, recipe, name, DataSetKind::Derived, progress);
        for (DataSetRecord const &record : std::vector(m_state->DataSets()))
            if (record.kind == DataSetKind::Prediction)
                DerivePredictions(number, record.number);
        return number;
    });
}

int Project::AddBatchLevelModel(BatchLevelRequest const &level, ModelRequest request, Progress const &progress) {
    return m_state->Change([&] {
        request.dataSet = AddBatchLevel(level);
        return Fitted(request, 0, progress);
    });
}

int Project::StoreLevel(BatchLevelTable const &table, BatchLevelRecipe const &recipe, std::string const &name,
                        DataSetKind kind, Progress const &progress) {
    std::string const saved = recipe.Save();
    NewDataSet dataSet;
    dataSet.name = name;
    dataSet.kind = kind;
    dataSet.observations = table.observations;
    dataSet.variables = table.variables;
    dataSet.columns = table.columns;
    dataSet.recipe = AsBytes(saved);
    int const number = m_state->File().AddDataSet(dataSet, progress);
    m_state->Forget();
    return number;
}

// A prediction set in the shape of a derived data set, where one of its models can predict the set.
void Project::DerivePredictions(int derived, int predictions) {
    BatchLevelRecipe recipe = *m_state->Data(derived).Recipe();
    recipe.trained = derived;
    recipe.predictions = predictions;
    std::vector<ModelView const *> const models = LowerModels(recipe);
    boost::shared_ptr<DataSet const> const rows = m_state->FindData(predictions);
    auto const isMatched = [&](ModelView const *model) { return m_state->MatchOf(*model, predictions).found > 0; };
    if (std::ranges::none_of(models, isMatched) || rows->GetBatchInfo().Empty())
        return;
    StoreLevel(LevelOfPredictions(recipe, models, m_state->ConditionSets(recipe.conditions), rows), recipe,
               rows->GetName(), DataSetKind::DerivedPrediction, {});
}

// Puts a new prediction set through all recipes, and the other sets once more where a new set of any kind may bring
// initial conditions of their batches.
void Project::DeriveFor(int added) {
    std::vector<DataSetRecord> const records = m_state->DataSets();
    for (DataSetRecord const &derived : records) {
        if (derived.kind != DataSetKind::Derived)
            continue;
        bool const isToAll = BringsConditions(added, m_state->Data(derived.number).Recipe()->conditions);
        for (DataSetRecord const &predictions : records) {
            if (predictions.kind != DataSetKind::Prediction || (predictions.number != added && !isToAll))
                continue;
            if (int const old = m_state->DerivedOf(predictions.number, derived.number); old != 0)
                m_state->File().DeleteDataSet(old);
            m_state->Forget();
            DerivePredictions(derived.number, predictions.number);
        }
    }
}

bool Project::BringsConditions(int added, int conditions) const {
    return conditions != 0 &&
           std::ranges::any_of(m_state->Data(conditions).GetVariables(), [&](std::uint32_t variable) {
               return m_state->Data(added).ColumnOf(variable).has_value();
           });
}

int Project::AddPredictions(ImportedTable const &table, bool replace, Progress const &progress) {
    int const old = FindPredictionSet(table.name);
    if (old != 0 && !replace)
        throw NCError(ExceptionMessage::translate("There is a prediction set \"{1}\" already.") % table.name,
                      NCError::Error);
    return m_state->Change([&] {
        if (old != 0)
            DeletePredictions(old);
        int const number = Store(m_state->File(), table, DataSetKind::Prediction, progress);
        StoreRunning(m_state->File(), number, table);
        m_state->Forget();
        DeriveFor(number);
        return number;
    });
}

// With what was derived of it.
void Project::DeletePredictions(int number) {
    for (DataSetRecord const &record : m_state->DataSets())
        if (record.kind == DataSetKind::DerivedPrediction &&
            m_state->FindData(record.number)->Recipe()->predictions == number)
            m_state->File().DeleteDataSet(record.number);
    m_state->File().DeleteDataSet(number);
    m_state->File().DeleteSection(RunningSection(number));
}

} // namespace engine
