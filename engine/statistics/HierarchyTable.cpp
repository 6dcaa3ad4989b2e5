#include "engine/statistics/DerivedTable.h"
#include "engine/statistics/RowStatistics.h"
#include "platform/containers/Missing.h"
#include "platform/project/NCProject.h"

#include <algorithm>
#include <unordered_map>

namespace engine {

namespace {

using Result = HierarchyRecipe::Result;

// The place, from 0, of each observation.
using Places = std::unordered_map<std::uint32_t, std::size_t>;

Places PlacesOf(ObservationInfos const &observations) {
    Places places;
    for (std::size_t row = 0; row < observations.size(); ++row)
        places.emplace(observations[row].GetUniqueID(), row);
    return places;
}

Vector ValuesOf(Result const &result, RowSet const &rows) {
    ModelView const &model = rows.Model();
    Index const place = result.place - 1;
    switch (result.kind) {
    case VariableInfo::Score:
        return ScoresT(rows, place);
    case VariableInfo::OrthogonalScore:
        return ScoresTo(rows, place);
    case VariableInfo::PredictedY:
        return YPredictions(rows, place, model.Fit().components.Predictive(), Units::Source);
    case VariableInfo::Residual:
        return XResiduals(rows, place, Units::Source);
    case VariableInfo::Distance:
        return DModX(rows, model.Fit().components.Predictive(), TriState::Undefined, TriState::Undefined);
    default:
        return T2Range(rows, *ComponentRange(model, 0, 0));
    }
}

// "M1.t[2]", "M1.YPred(octane)".
std::string NameOf(Result const &result, ModelView const &model) {
    switch (result.kind) {
    case VariableInfo::Score:
        return model.Label("t") + ComponentLabel(result.place - 1);
    case VariableInfo::OrthogonalScore:
        return model.Label("to") + ComponentLabel(result.place - 1);
    case VariableInfo::PredictedY:
        return model.Label("YPred") + Side::Y(model).Label(result.place - 1);
    case VariableInfo::Residual:
        return model.Label("XVarRes") + Side::X(model).Label(result.place - 1);
    case VariableInfo::Distance:
        return model.Label("DModX");
    default:
        return model.Label("T2");
    }
}

class Maker {
public:
    // The observations are rows of the table.
    explicit Maker(ObservationInfos observations) : m_observations(std::move(observations)) {}

    void Add(Result const &result, RowSet const &rows) {
        Vector const values = ValuesOf(result, rows);
        AddColumn(NameOf(result, rows.Model()), PlacesIn(&rows.Model(), rows.AllObservations()),
                  [&](std::size_t row) { return ToStored(values[static_cast<Index>(row)]); });
    }

    // A variable as it is; missing where no data set has it.
    void Add(std::string const &name, DataSet const *set, std::optional<int> column) {
        std::span<float const> const values = column ? set->Values(*column) : std::span<float const>();
        AddColumn(name, column ? PlacesIn(set, set->GetObservations()) : Places(),
                  [&](std::size_t row) { return values[row]; });
    }

    DerivedTable Take(std::vector<TextColumn> observations) {
        DerivedTable table;
        table.observations = std::move(observations);
        table.variables = {{"Name", PackedTexts(m_names)}};
        table.columns = std::move(m_columns);
        return table;
    }

private:
    // Made once for each source of columns.
    Places const &PlacesIn(void const *source, ObservationInfos const &observations) {
        auto const [at, isNew] = m_places.try_emplace(source);
        if (isNew)
            at->second = PlacesOf(observations);
        return at->second;
    }

    template <typename Value>
    void AddColumn(std::string const &name, Places const &places, Value value) {
        m_names.push_back(name);
        std::vector<float> &column = m_columns.emplace_back(m_observations.size(), missingValue);
        for (std::size_t row = 0; row < column.size(); ++row)
            if (auto const found = places.find(m_observations[row].GetUniqueID()); found != places.end())
                column[row] = value(found->second);
    }

    ObservationInfos m_observations;
    std::unordered_map<void const *, Places> m_places;
    std::vector<std::string> m_names;
    std::vector<std::vector<float>> m_columns;
};

// A variable that a recipe takes as it is, by its number in the project.
std::uint32_t VariableOf(HierarchyRecipe::Variable const &variable, NCProject const &project) {
    return project.GetDataSet(variable.dataSet)->GetVariables()[static_cast<std::size_t>(variable.column)];
}

ModelView const &ModelOf(Result const &result, HierarchyRecipe const &recipe,
                         std::vector<ModelView const *> const &models) {
    std::vector<int> const numbers = recipe.Models();
    return *models[static_cast<std::size_t>(std::ranges::find(numbers, result.model) - numbers.begin())];
}

} // namespace

DerivedTable ResultsOfWorksets(HierarchyRecipe const &recipe, std::vector<ModelView const *> const &models,
                               DataSetList const &sets, std::vector<TextColumn> const &identifiers) {
    std::vector<Places> others;
    for (ModelView const *const model : std::span(models).subspan(1))
        others.push_back(PlacesOf(model->GetObservations()));
    ModelView const &first = *models.front();
    ObservationInfos common;
    std::vector<std::size_t> rows;
    for (std::size_t row = 0; row < first.GetObservations().size(); ++row) {
        ObservationInfo const &observation = first.GetObservations()[row];
        if (std::ranges::all_of(others, [&](Places const &has) { return has.contains(observation.GetUniqueID()); })) {
            common.push_back(observation);
            rows.push_back(static_cast<std::size_t>(first.Fit().definition.rows[row]));
        }
    }
    Maker maker(common);
    for (Result const &result : recipe.results)
        maker.Add(result, *RowSource{ModelOf(result, recipe, models)}.Rows());
    NCProject const &project = *first.GetProject();
    for (std::size_t i = 0; i < recipe.variables.size(); ++i)
        maker.Add(project.GetVariables().GetText(VariableOf(recipe.variables[i], project), 1), sets[i].get(),
                  recipe.variables[i].column);
    std::vector<TextColumn> chosen;
    for (TextColumn const &all : identifiers) {
        chosen.push_back({all.name, {}});
        for (std::size_t const row : rows)
            chosen.back().texts.Append(all.texts[row]);
    }
    return maker.Take(std::move(chosen));
}

DerivedTable ResultsOfPredictions(HierarchyRecipe const &recipe, std::vector<ModelView const *> const &models,
                                  DataSetList const &rows, boost::shared_ptr<DataSet const> const &predictions,
                                  std::vector<TextColumn> const &identifiers) {
    ProjectPtr const project = predictions->GetProject();
    std::unordered_map<ModelView const *, std::unique_ptr<PredictedRows>> predicted;
    for (std::size_t i = 0; i < models.size(); ++i)
        predicted.emplace(models[i], models[i]->Predict(rows[i], project));
    Maker maker(predictions->GetObservations());
    for (Result const &result : recipe.results) {
        ModelView const &model = ModelOf(result, recipe, models);
        maker.Add(result, *RowSource{model, true, predicted.at(&model).get()}.Rows());
    }
    for (HierarchyRecipe::Variable const &variable : recipe.variables) {
        std::uint32_t const item = VariableOf(variable, *project);
        maker.Add(project->GetVariables().GetText(item, 1), predictions.get(), predictions->ColumnOf(item));
    }
    return maker.Take(identifiers);
}

} // namespace engine
