#pragma once

#include "engine/Project.h"
#include "engine/TableReader.h"
#include "engine/data/DataSet_internal.h"
#include "engine/data/QualitativeVariables_internal.h"
#include "engine/models/Definition_internal.h"
#include "engine/models/FittedModel.h"
#include "engine/statistics/DerivedTable.h"
#include "engine/statistics/Handlers.h"
#include "platform/text/Exception.h"

#include <boost/make_shared.hpp>

#include <map>
#include <optional>
#include <span>

namespace engine {

inline std::string AsText(std::vector<std::byte> const &bytes) {
    return {reinterpret_cast<char const *>(bytes.data()), bytes.size()};
}

inline std::span<std::byte const> AsBytes(std::string const &text) {
    return std::as_bytes(std::span(text));
}

// How a table with variables of these names fits a model.
VariableMatch Match(ModelView const &model, std::span<TextColumn const> observations, PackedTexts const &names);

// Stores a table, and which of its identifier columns tell batches and phases; answers the number of the data set.
int Store(ProjectFile &file, ImportedTable const &table, DataSetKind kind, Progress const &progress);

// The file, and what was read from it so far.
class Project::State final : public StatisticSource, public Subject {
public:
    explicit State(ProjectFile file) : m_file(std::move(file)) {}

    ProjectFile &File() { return m_file; }
    ProjectFile const &File() const { return m_file; }
    void SetProject(NCProject const &project) { m_project = &project; }

    ItemLists const &Items() const {
        if (!m_items)
            m_items = std::make_unique<ItemLists>(m_file);
        else if (m_itemsChanged)
            m_items->Refresh(m_file);
        m_itemsChanged = false;
        return *m_items;
    }

    std::vector<ModelRecord> const &Models() const {
        if (!m_models)
            m_models = m_file.Models();
        return *m_models;
    }

    std::vector<DataSetRecord> const &DataSets() const {
        if (!m_dataSets)
            m_dataSets = m_file.DataSets();
        return *m_dataSets;
    }

    DataSetRecord const *RecordOf(int dataSet) const {
        auto const found = std::find_if(DataSets().begin(), DataSets().end(),
                                        [dataSet](DataSetRecord const &record) { return record.number == dataSet; });
        return found == DataSets().end() ? nullptr : &*found;
    }

    // 0 when there is none.
    int CurrentPredictionSet() const {
        if (!m_currentPredictionSet)
            m_currentPredictionSet = m_file.CurrentPredictionSet();
        return *m_currentPredictionSet;
    }

    boost::shared_ptr<DataSet const> FindData(int number) const {
        DataSetRecord const *const record = RecordOf(number);
        if (!record)
            return {};
        boost::shared_ptr<DataSet const> &data = m_data[number];
        if (!data)
            data = boost::make_shared<DataSet>(m_file, *record, Items(), m_project->shared_from_this());
        return data;
    }

    boost::shared_ptr<ModelView const> View(int number) const {
        boost::shared_ptr<ModelView const> &view = m_views[number];
        if (view)
            return view;
        auto const record = FindModel(number);
        std::optional<std::vector<std::byte>> const results = record ? m_file.Results(number) : std::nullopt;
        if (results)
            view = boost::make_shared<ModelView>(number, FittedModel::Load(AsText(*results)),
                                                 NeededData(record->dataSets.front()), m_project->shared_from_this());
        return view;
    }

    ModelRecord const *FindModel(int number) const {
        auto const found = std::find_if(Models().begin(), Models().end(),
                                        [number](ModelRecord const &record) { return record.number == number; });
        return found == Models().end() ? nullptr : &*found;
    }

    // In their order; none where batches do not stand as models of them need it.
    std::vector<std::string> const &PhasesOf(int dataSet) const {
        auto const [at, isNew] = m_phases.try_emplace(dataSet);
        if (isNew)
            try {
                if (auto const layout = FindLayout(m_file, m_file.DataSet(dataSet)))
                    at->second = layout->Phases();
            } catch (NCError const &) {
                // Told when a model is fitted.
            }
        return at->second;
    }

    // The rows of a prediction set in the shape of a derived data set; 0 when there are none.
    int DerivedOf(int predictions, int derived) const {
        for (DataSetRecord const &record : DataSets())
            if (record.kind == DataSetKind::DerivedPrediction) {
                Recipe const recipe = *FindData(record.number)->MadeBy();
                if (recipe.predictions == predictions && recipe.trained == derived)
                    return record.number;
            }
        return 0;
    }

    // That data set before all others that were imported; none for 0.
    DataSetList ConditionSets(int first) const {
        DataSetList sets;
        if (first == 0)
            return sets;
        sets.push_back(FindData(first));
        for (DataSetRecord const &record : DataSets())
            if (record.number != first && !IsDerived(record.kind))
                sets.push_back(FindData(record.number));
        return sets;
    }

    // Stores what `change` does, all of it or nothing, and answers what it answers.
    template <typename Function>
    auto Change(Function change) {
        try {
            Transaction transaction(m_file);
            auto const result = change();
            transaction.Commit();
            Forget();
            return result;
        } catch (...) {
            // Lists may hold what has just been taken back.
            if (m_items)
                m_items->StartAnew();
            Forget();
            throw;
        }
    }

    Workset BuildWorkset(int dataSet, ModelDefinition const &definition) const {
        boost::shared_ptr<DataSet const> const data = FindData(dataSet);
        // One lock on the file, not one for each column.
        Transaction const reading(m_file);
        return Workset::Build(definition, ModelColumns(definition, data, data, definition.rows));
    }

    // Stores a model and answers its number, which is also that of its phase group or tree when it is the first there.
    int StoreModel(int dataSet, FittedModel model) {
        ModelDefinition &definition = model.definition;
        Transaction transaction(m_file);
        AddQualitativeVariables(m_file, definition.levels);
        int const number = m_file.AddModel("", std::vector{dataSet}, AsBytes(definition.Save()));
        if (definition.evolution && definition.evolution->phaseGroup == 0)
            definition.evolution->phaseGroup = number;
        if (definition.tree && definition.tree->root == 0)
            definition.tree->root = number;
        m_file.ChangeModel(number, "M" + std::to_string(number), std::vector{dataSet}, AsBytes(definition.Save()));
        m_file.SetResults(number, AsBytes(model.Save()));
        transaction.Commit();
        return number;
    }

    // What the project holds has changed.
    void Forget() {
        m_predictions.clear();
        m_phases.clear();
        m_views.clear();
        m_data.clear();
        m_itemsChanged = true;
        m_models.reset();
        m_dataSets.reset();
        m_currentPredictionSet.reset();
    }

    TablePtr Table(Call const &call) const override { return Answers().Table(call, *this); }
    ColumnIDs Columns(Call const &call) const override { return Answers().Columns(call, *this); }
    NCDataMatrix<float> Matrix(Call const &call) const override { return Answers().Matrix(call, *this); }

    ModelView const *Model(int number) const override {
        if (!FindModel(number))
            throw NCError(ExceptionMessage::translate("There is no model {1}.") % number, NCError::Error);
        return View(number).get();
    }

    ModelView const &FittedView(int number) const {
        ModelView const *const view = Model(number);
        if (!view)
            throw NCError(ExceptionMessage::translate("Model {1} is not fitted.") % number, NCError::Error);
        return *view;
    }

    DataSet const &Data(int number) const override { return *NeededData(number); }

    boost::shared_ptr<DataSet const> NeededData(int number) const {
        boost::shared_ptr<DataSet const> const data = FindData(number);
        if (!data)
            throw NCError(ExceptionMessage::translate("There is no data set {1}.") % number, NCError::Error);
        return data;
    }

    // One that a recipe can be for.
    boost::shared_ptr<DataSet const> SourceOf(int dataSet) const {
        boost::shared_ptr<DataSet const> const data = NeededData(dataSet);
        DataSetRecord const &record = *RecordOf(dataSet);
        if (record.kind == DataSetKind::Prediction || record.kind == DataSetKind::DerivedPrediction)
            throw NCError(
                ExceptionMessage::translate("Data set {1} ({2}) is a prediction set: it is put through what is "
                                            "made of other data sets.") %
                    dataSet % record.name,
                NCError::Error);
        return data;
    }

    PredictedRows const *Predictions(int model) const override { return PredictedOn(model).get(); }

    std::shared_ptr<PredictedRows const> PredictedOn(int model) const {
        if (CurrentPredictionSet() == 0)
            return {};
        auto const known = m_predictions.find(model);
        if (known != m_predictions.end())
            return known->second;
        ModelView const *const view = Model(model);
        if (!view)
            return {};
        boost::shared_ptr<DataSet const> const rows = RowsOn(*view, CurrentPredictionSet());
        if (MatchOf(*view, rows->GetNumber()).found == 0)
            throw NCError(ExceptionMessage::translate("None of the {1} X variables of model {2} is among the {3} "
                                                      "variables of prediction set {4} (\"{5}\").") %
                              view->Fit().definition.xTerms.size() % model % rows->GetVariables().size() %
                              rows->GetNumber() % rows->GetName(),
                          NCError::Error);
        return m_predictions.emplace(model, view->Predict(rows, m_project->shared_from_this())).first->second;
    }

    // A prediction set in the shape of a data set: put through the recipe of that where it has one.
    int ShapedLike(int dataSet, int predictions) const {
        int const derived = Data(dataSet).MadeBy() ? DerivedOf(predictions, dataSet) : 0;
        return derived != 0 ? derived : predictions;
    }
    // As a model takes it.
    boost::shared_ptr<DataSet const> RowsOn(ModelView const &model, int predictions) const {
        return NeededData(ShapedLike(model.FittedData().GetNumber(), predictions));
    }

    VariableMatch MatchOf(ModelView const &model, int dataSet) const {
        return Match(model, m_file.ObservationIdentifiers(dataSet), m_file.VariableIdentifiers(dataSet).front().texts);
    }

private:
    static Handlers const &Answers() {
        static Handlers const handlers;
        return handlers;
    }

    ProjectFile m_file;
    NCProject const *m_project = nullptr;
    mutable std::optional<std::vector<ModelRecord>> m_models;
    mutable std::optional<std::vector<DataSetRecord>> m_dataSets;
    mutable std::optional<int> m_currentPredictionSet;
    mutable std::unique_ptr<ItemLists> m_items;
    mutable bool m_itemsChanged = false;
    mutable std::map<int, boost::shared_ptr<DataSet const>> m_data;
    mutable std::map<int, std::vector<std::string>> m_phases;
    mutable std::map<int, boost::shared_ptr<ModelView const>> m_views;
    mutable std::map<int, std::shared_ptr<PredictedRows const>> m_predictions;
};

} // namespace engine
