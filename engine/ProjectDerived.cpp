#include "engine/ProjectState_internal.h"

#include "platform/storage/XercesXMLSection.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <set>
#include <tuple>

// Data sets that recipes make of others and of models, and prediction sets, which are put through the recipes.

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

std::vector<ModelView const *> Project::LowerModels(Recipe const &recipe) const {
    std::vector<ModelView const *> models;
    for (int const model : recipe.Models())
        models.push_back(&m_state->FittedView(model));
    return models;
}

namespace {

// All components or terms that a result is asked of have to be there.
void AddResults(HierarchyRequest::Result const &asked, ModelView const &model, HierarchyRecipe &recipe) {
    Components const &components = model.Fit().components;
    int count = components.All() > 0 ? 1 : 0;
    bool isOfOne = true;
    switch (asked.kind) {
    case VariableInfo::Score:
        count = static_cast<int>(components.Predictive());
        break;
    case VariableInfo::OrthogonalScore:
        count = static_cast<int>(components.XOrthogonal());
        break;
    case VariableInfo::PredictedY:
        count = components.Predictive() > 0 ? model.YTerms().Size() : 0;
        break;
    case VariableInfo::Residual:
        count = components.All() > 0 ? model.XTerms().Size() : 0;
        break;
    default:
        isOfOne = false;
    }
    if (count == 0 || asked.place > (isOfOne ? count : 0))
        throw NCError(ExceptionMessage::translate("Model {1} has no such result to make a variable of: it has {2} of "
                                                  "them, and number {3} is asked for.") %
                          model.GetModelNumber() % count % asked.place,
                      NCError::Error);
    for (int place = 1; place <= count; ++place)
        if (asked.place == 0 || asked.place == place)
            recipe.results.push_back({model.GetModelNumber(), asked.kind, isOfOne ? place : 0});
}

// The positions of the largest sizes, rising: as many as are asked for.
std::vector<int> LargestOf(std::vector<double> const &sizes, CompressionRequest const &request) {
    std::vector<int> places(sizes.size());
    std::iota(places.begin(), places.end(), 0);
    std::ranges::stable_sort(places, std::ranges::greater(),
                             [&](int place) { return sizes[static_cast<std::size_t>(place)]; });
    auto count = static_cast<std::size_t>(std::max(request.keep, 0));
    double rest = (1 - request.share) * std::accumulate(sizes.begin(), sizes.end(), 0.0);
    if (count == 0)
        for (count = sizes.size(); count > 1; --count)
            if ((rest -= sizes[static_cast<std::size_t>(places[count - 1])]) < 0)
                break;
    places.resize(std::min(count, places.size()));
    std::ranges::sort(places);
    return places;
}

// Nothing for an identifier column, which the data set has in any case.
std::optional<HierarchyRecipe::Variable> FindVariable(std::string const &name,
                                                      std::vector<ModelView const *> const &models) {
    for (ModelView const *const model : models) {
        DataSet const &data = model->FittedData();
        for (int column = 0; column < static_cast<int>(data.GetVariables().size()); ++column)
            if (data.Name(column) == name)
                return HierarchyRecipe::Variable{data.GetNumber(), column};
    }
    if (models.front()->FittedData().Identifier(name))
        return {};
    throw NCError(ExceptionMessage::translate("None of the data sets of the models below has a variable \"{1}\".") %
                      name,
                  NCError::Error);
}

} // namespace

HierarchyRecipe Project::RecipeFor(HierarchyRequest const &request) const {
    HierarchyRecipe recipe;
    for (HierarchyRequest::Result const &asked : request.results)
        AddResults(asked, m_state->FittedView(asked.model), recipe);
    std::set<std::tuple<int, int, int>> known;
    for (HierarchyRecipe::Result const &result : recipe.results)
        if (!known.emplace(result.model, result.kind, result.place).second)
            throw NCError(ExceptionMessage::translate("A result of model {1} is asked for twice.") % result.model,
                          NCError::Error);
    if (recipe.results.empty())
        throw NCError(ExceptionMessage::translate("There are no results of models to make variables of."),
                      NCError::Error);
    std::vector<ModelView const *> const models = LowerModels({recipe});
    for (std::string const &name : request.variables)
        if (auto const variable = FindVariable(name, models))
            recipe.variables.push_back(*variable);
    return recipe;
}

int Project::AddUpperModel(HierarchyRequest const &hierarchy, ModelRequest request, Progress const &progress) {
    Recipe const recipe{RecipeFor(hierarchy)};
    std::string name = "Results of";
    for (int const model : recipe.Models())
        name += " M" + std::to_string(model);
    return m_state->Change([&] {
        request.dataSet = Derive(recipe, name, {});
        return Fitted(request, 0, progress);
    });
}

int Project::AddCorrection(CorrectionRequest const &request, Progress const &progress) {
    boost::shared_ptr<DataSet const> const source = m_state->SourceOf(request.dataSet);
    ModelRequest model;
    model.type = ModelTypeE::PLS;
    model.dataSet = request.dataSet;
    model.responses = request.responses;
    model.excluded = request.excluded;
    model.scaling = request.scaling;
    model.localCentring = false;
    CorrectionRecipe recipe = CorrectionOf(DefinitionOf(model, m_state->File()), source, request.components);
    if (recipe.correction.Size() == 0)
        throw NCError(ExceptionMessage::translate("Nothing of the {1} X variables of data set {2} has nothing to do "
                                                  "with Y.") %
                          recipe.definition.xTerms.size() % request.dataSet,
                      NCError::Error);
    return Derive({std::move(recipe)}, source->GetName() + " corrected", progress);
}

CompressionRecipe Project::RecipeFor(CompressionRequest const &request) const {
    DataSet const &source = *m_state->SourceOf(request.dataSet);
    CompressionRecipe recipe;
    recipe.dataSet = request.dataSet;
    recipe.function = request.function;
    recipe.order = request.order;
    recipe.denoised = request.denoise;
    std::set<std::string> excluded(request.excluded.begin(), request.excluded.end());
    std::set<std::string> unknown = excluded;
    for (int column = 0; column < static_cast<int>(source.GetVariables().size()); ++column) {
        std::string const name = source.Name(column);
        unknown.erase(name);
        (excluded.contains(name) ? recipe.others : recipe.columns).push_back(column);
    }
    if (!unknown.empty())
        throw NCError(ExceptionMessage::translate("Data set {1} ({2}) has no variable \"{3}\".") % request.dataSet %
                          source.GetName() % *unknown.begin(),
                      NCError::Error);
    if (recipe.columns.size() < 2)
        throw NCError(ExceptionMessage::translate("A row of {1} variables has no wavelet transform: there have to be 2 "
                                                  "at least.") %
                          recipe.columns.size(),
                      NCError::Error);
    recipe.kept = LargestOf(SizesOfCoefficients(recipe, source), request);
    return recipe;
}

int Project::AddCompression(CompressionRequest const &request, Progress const &progress) {
    CompressionRecipe recipe = RecipeFor(request);
    std::string const name = m_state->Data(request.dataSet).GetName() + (request.denoise ? " denoised" : " compressed");
    return Derive({std::move(recipe)}, name, progress);
}

// What a recipe makes of the rows that its models were fitted to, or of the data set that it is for.
DerivedTable Project::MadeOf(Recipe const &recipe) const {
    if (recipe.DataSet() != 0)
        return MadeOfRows(recipe, recipe.DataSet());
    std::vector<ModelView const *> const models = LowerModels(recipe);
    if (auto const *const level = recipe.As<BatchLevelRecipe>())
        return LevelOfWorksets(*level, models, m_state->ConditionSets(level->conditions));
    auto const &hierarchy = std::get<HierarchyRecipe>(recipe.how);
    DataSetList sets;
    for (HierarchyRecipe::Variable const &variable : hierarchy.variables)
        sets.push_back(m_state->NeededData(variable.dataSet));
    DerivedTable table = ResultsOfWorksets(
        hierarchy, models, sets, m_state->File().ObservationIdentifiers(models.front()->FittedData().GetNumber()));
    if (table.columns.front().empty())
        throw NCError(ExceptionMessage::translate("No observation is in all of the {1} models below.") % models.size(),
                      NCError::Error);
    return table;
}

DerivedTable Project::MadeOfRows(Recipe const &recipe, int dataSet) const {
    boost::shared_ptr<DataSet const> const source = m_state->NeededData(recipe.DataSet());
    boost::shared_ptr<DataSet const> const rows = m_state->NeededData(dataSet);
    std::vector<TextColumn> const identifiers = m_state->File().ObservationIdentifiers(dataSet);
    if (auto const *const correction = recipe.As<CorrectionRecipe>())
        return CorrectedRows(*correction, source, rows, identifiers);
    return CompressedRows(std::get<CompressionRecipe>(recipe.how), *source, *rows, identifiers);
}

// A recipe's part of a prediction set. Nothing where none of its models can predict it, and where it has no variable of
// its data set.
std::optional<DerivedTable> Project::MadeOfPredictions(Recipe const &recipe, int predictions) const {
    if (recipe.DataSet() != 0) {
        int const rows = m_state->ShapedLike(recipe.DataSet(), predictions);
        bool const isAny = std::ranges::any_of(m_state->Data(recipe.DataSet()).GetVariables(), [&](std::uint32_t item) {
            return m_state->Data(rows).ColumnOf(item).has_value();
        });
        return isAny ? std::optional(MadeOfRows(recipe, rows)) : std::nullopt;
    }
    std::vector<ModelView const *> const models = LowerModels(recipe);
    DataSetList rows;
    bool isAny = false;
    for (ModelView const *const model : models) {
        rows.push_back(m_state->RowsOn(*model, predictions));
        isAny = isAny || m_state->MatchOf(*model, rows.back()->GetNumber()).found > 0;
    }
    boost::shared_ptr<DataSet const> const set = m_state->NeededData(predictions);
    auto const *const level = recipe.As<BatchLevelRecipe>();
    if (!isAny || (level && set->GetBatchInfo().Empty()))
        return {};
    if (level)
        return LevelOfPredictions(*level, models, m_state->ConditionSets(level->conditions), set);
    return ResultsOfPredictions(std::get<HierarchyRecipe>(recipe.how), models, rows, set,
                                m_state->File().ObservationIdentifiers(predictions));
}

// The data set that a recipe makes, and what it makes of each prediction set; the one that is there, if any.
int Project::Derive(Recipe const &recipe, std::string const &name, Progress const &progress) {
    for (DataSetRecord const &record : m_state->DataSets())
        if (record.kind == DataSetKind::Derived && m_state->FindData(record.number)->MadeBy() == recipe)
            return record.number;
    return m_state->Change([&] {
        int const number = StoreDerived(MadeOf(recipe), recipe, name, DataSetKind::Derived, progress);
        for (DataSetRecord const &record : std::vector(m_state->DataSets()))
            if (record.kind == DataSetKind::Prediction)
                DerivePredictions(number, record.number);
        return number;
    });
}

int Project::StoreDerived(DerivedTable const &table, Recipe const &recipe, std::string const &name, DataSetKind kind,
                          Progress const &progress) {
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
    Recipe recipe = *m_state->Data(derived).MadeBy();
    recipe.trained = derived;
    recipe.predictions = predictions;
    if (std::optional<DerivedTable> const table = MadeOfPredictions(recipe, predictions))
        StoreDerived(*table, recipe, m_state->Data(predictions).GetName(), DataSetKind::DerivedPrediction, {});
}

// Puts a new prediction set through all recipes, and the other sets once more where a new set of any kind may bring
// initial conditions of their batches.
void Project::DeriveFor(int added) {
    std::vector<DataSetRecord> const records = m_state->DataSets();
    for (DataSetRecord const &derived : records) {
        if (derived.kind != DataSetKind::Derived)
            continue;
        auto const *const level = m_state->Data(derived.number).MadeAs<BatchLevelRecipe>();
        bool const isToAll = level && BringsConditions(added, level->conditions);
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
            m_state->FindData(record.number)->MadeBy()->predictions == number)
            m_state->File().DeleteDataSet(record.number);
    m_state->File().DeleteDataSet(number);
    m_state->File().DeleteSection(RunningSection(number));
}

} // namespace engine
