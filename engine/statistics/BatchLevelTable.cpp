#include "engine/statistics/DerivedTable.h"

#include "engine/statistics/RowStatistics.h"
#include "platform/containers/Missing.h"
#include "platform/project/NCProject.h"

#include <set>
#include <sstream>
#include <unordered_map>
#include <unordered_set>

namespace engine {

namespace {

// One of the statistics of a source, from 0.
struct LowerStatistic {
    std::string name;   // "t[1]", "to[1]", "temperature"
    std::string source; // the same, but that the component of a score always begins at the fourth character: "t [1]"
    Vector values;      // for each row
};

LowerStatistic StatisticOf(BatchLevelRecipe::Source const &source, RowSource const &rows, int statistic) {
    std::optional<RowSet> const all = rows.Rows();
    if (statistic < source.scores)
        return {"t" + ComponentLabel(statistic), "t " + ComponentLabel(statistic), ScoresT(*all, statistic)};
    statistic -= source.scores;
    if (statistic < source.orthogonal)
        return {"to" + ComponentLabel(statistic), "to" + ComponentLabel(statistic), ScoresTo(*all, statistic)};
    statistic -= source.orthogonal;
    std::string const name = rows.model.XTerms().GetName(statistic + 1);
    return {name, name, XValues(*all, statistic, Units::Source)};
}

std::string TextOf(double number) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << number;
    return text.str();
}

class Maker {
public:
    explicit Maker(std::vector<std::string> const &batches) : m_batches(batches) {
        for (std::size_t row = 0; row < batches.size(); ++row)
            m_rows.emplace(batches[row], row);
    }

    void Add(BatchLevelRecipe::Source const &source, RowSource const &rows) {
        ModelView const &model = rows.model;
        std::string const phase = model.Fit().definition.evolution->phase;
        bool const isThere = rows.Rows() && rows.Rows()->Size() > 0;
        std::vector<std::size_t> const places = isThere ? PlacesOf(rows) : std::vector<std::size_t>();
        for (int statistic = 0; statistic < source.Statistics(); ++statistic) {
            LowerStatistic const lower = StatisticOf(source, isThere ? rows : RowSource{model}, statistic);
            RowMatrix const aligned = isThere ? rows.Aligned().ReadAll(lower.values) : RowMatrix();
            for (int point = 0; point < source.points; ++point) {
                std::string const maturity = TextOf(model.Grid().maturity[point]);
                std::vector<float> &column = AddColumn(lower.name, lower.source, maturity, phase);
                for (std::size_t batch = 0; batch < places.size(); ++batch)
                    column[places[batch]] = ToStored(aligned(static_cast<Index>(batch), point));
            }
        }
    }

    void Add(DataSetList const &conditions) {
        std::vector<std::vector<std::optional<std::size_t>>> rowsOf;
        for (auto const &set : conditions)
            rowsOf.push_back(RowsIn(*set));
        for (std::uint32_t const variable : conditions.front()->GetVariables()) {
            NCVariables const &variables = conditions.front()->GetProject()->GetVariables();
            std::string const &name = variables.GetText(variable, 1);
            std::vector<float> &column = AddColumn(name, name, "", "");
            for (std::size_t batch = 0; batch < m_batches.size(); ++batch)
                column[batch] = Condition(conditions, rowsOf, variable, batch);
        }
    }

    DerivedTable Take(std::string const &batchHeading) {
        DerivedTable table;
        PackedTexts const batches(m_batches);
        table.observations = {{"Batch", batches}, {batchHeading, batches}};
        if (batchHeading == table.observations.front().name)
            table.observations.pop_back();
        table.variables = {{"Name", PackedTexts(m_names)},
                           {sourceHeading, PackedTexts(m_sources)},
                           {maturityHeading, PackedTexts(m_maturities)},
                           {variablePhaseHeading, PackedTexts(m_phases)}};
        table.columns = std::move(m_columns);
        return table;
    }

private:
    // The row of each batch in a data set whose observations are batches.
    std::vector<std::optional<std::size_t>> RowsIn(DataSet const &set) const {
        std::vector<std::optional<std::size_t>> rows(m_batches.size());
        NCObservations const &list = set.GetProject()->GetObservations();
        for (std::size_t row = 0; row < set.GetObservations().size(); ++row)
            if (auto const found = m_rows.find(list.GetText(set.GetObservations()[row].GetUniqueID(), 1));
                found != m_rows.end() && !rows[found->second])
                rows[found->second] = row;
        return rows;
    }

    static float Condition(DataSetList const &sets, std::vector<std::vector<std::optional<std::size_t>>> const &rowsOf,
                           std::uint32_t variable, std::size_t batch) {
        for (std::size_t set = 0; set < sets.size(); ++set)
            if (std::optional<int> const column = sets[set]->ColumnOf(variable); column && rowsOf[set][batch])
                return sets[set]->Values(*column)[*rowsOf[set][batch]];
        return missingValue;
    }

    // The row of each batch of a source; all of them are known.
    std::vector<std::size_t> PlacesOf(RowSource const &rows) const {
        std::vector<std::size_t> places;
        for (std::string const &name : rows.Batches().names)
            places.push_back(m_rows.at(name));
        return places;
    }

    // "run t[1] 12.5"; a number tells points of one maturity apart.
    std::vector<float> &AddColumn(std::string const &statistic, std::string const &source, std::string const &maturity,
                                  std::string const &phase) {
        std::string const name =
            (phase.empty() ? "" : phase + " ") + statistic + (maturity.empty() ? "" : " " + maturity);
        std::string unique = name;
        for (int again = 2; !m_known.insert(unique).second; ++again)
            unique = name + " (" + std::to_string(again) + ")";
        m_names.push_back(unique);
        m_sources.push_back(source);
        m_maturities.push_back(maturity);
        m_phases.push_back(phase);
        return m_columns.emplace_back(m_batches.size(), missingValue);
    }

    std::vector<std::string> const &m_batches;
    std::unordered_map<std::string, std::size_t> m_rows;
    std::set<std::string> m_known;
    std::vector<std::string> m_names, m_sources, m_maturities, m_phases;
    std::vector<std::vector<float>> m_columns;
};

DerivedTable Made(BatchLevelRecipe const &recipe, std::vector<RowSource> const &sources,
                  std::vector<std::string> const &batches, DataSetList const &conditions) {
    Maker maker(batches);
    for (std::size_t i = 0; i < sources.size(); ++i)
        maker.Add(recipe.sources[i], sources[i]);
    if (!conditions.empty())
        maker.Add(conditions);
    NCObservations const &observations = sources.front().model.GetProject()->GetObservations();
    return maker.Take(observations.GetAlias(observations.GetBatchID())->name);
}

} // namespace

BatchLevelRecipe RecipeOf(std::vector<ModelView const *> const &models, bool ofVariables) {
    BatchLevelRecipe recipe;
    recipe.dataSet = models.front()->FittedData().GetNumber();
    for (ModelView const *const model : models) {
        Components const &components = model->Fit().components;
        BatchLevelRecipe::Source source{model->GetModelNumber(), 0, 0, 0, static_cast<int>(model->Grid().Points())};
        if (ofVariables) {
            source.variables = model->XTerms().Size();
        } else {
            source.scores = static_cast<int>(components.Predictive());
            source.orthogonal = static_cast<int>(components.XOrthogonal());
        }
        recipe.sources.push_back(source);
    }
    return recipe;
}

DerivedTable LevelOfWorksets(BatchLevelRecipe const &recipe, std::vector<ModelView const *> const &models,
                             DataSetList const &conditions) {
    std::vector<RowSource> sources;
    std::unordered_set<std::string> used;
    for (ModelView const *const model : models) {
        sources.push_back({*model});
        used.insert(sources.back().Batches().names.begin(), sources.back().Batches().names.end());
    }
    std::vector<std::string> batches;
    for (BatchInfo const &batch : models.front()->FittedData().GetBatchInfo())
        if (used.contains(batch.name))
            batches.push_back(batch.name);
    return Made(recipe, sources, batches, conditions);
}

DerivedTable LevelOfPredictions(BatchLevelRecipe const &recipe, std::vector<ModelView const *> const &models,
                                DataSetList const &conditions, boost::shared_ptr<DataSet const> const &predictions) {
    std::vector<std::unique_ptr<PredictedRows>> predicted;
    std::vector<RowSource> sources;
    for (ModelView const *const model : models) {
        predicted.push_back(model->Predict(predictions, predictions->GetProject()));
        sources.push_back({*model, true, predicted.back().get()});
    }
    std::vector<std::string> batches;
    for (BatchInfo const &batch : predictions->GetBatchInfo())
        batches.push_back(batch.name);
    return Made(recipe, sources, batches, conditions);
}

} // namespace engine
