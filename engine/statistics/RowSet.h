#pragma once

#include "engine/statistics/Answer.h"
#include "engine/statistics/Handlers.h"

#include <limits>

namespace engine {

constexpr int allBatches = -1;
constexpr double notComputable = std::numeric_limits<double>::quiet_NaN();

// Neighbouring rows of the workset or of a prediction set, numbered from 0, with all that a model knows of them: a
// statistic of the one has the same formula as that of the other.
class RowSet {
public:
    RowSet(ModelView const &model, PredictedRows const *predicted, RowRange range);

    ModelView const &Model() const { return m_model; }
    bool Predicted() const { return m_predicted != nullptr; }
    Index First() const { return m_range.first; }
    Index Size() const { return m_range.count; }
    // One of these rows.
    RowSet Only(Index row) const { return {m_model, m_predicted, {m_range.first + row, 1}}; }
    // The identity of the rows.
    ColumnIDs Columns() const;
    ObservationInfos const &AllObservations() const;

    auto T() const { return AllScores().t.middleRows(m_range.first, m_range.count); }
    auto To() const { return AllScores().to.middleRows(m_range.first, m_range.count); }
    // What a vector of all rows holds for these.
    template <typename All>
    auto Of(All const &all) const {
        return all.segment(m_range.first, m_range.count);
    }
    bool HasX(Index row) const { return XObserved()[m_range.first + row] > 0; }

    // Scores, scaled values and counts of observed cells, of all rows that these are among.
    Scores const &AllScores() const { return m_predicted ? m_predicted->scores : m_model.Fit().scores; }
    Block const &AllX() const { return m_predicted ? m_predicted->x : m_model.Data().x; }
    Block const &AllY() const { return m_predicted ? m_predicted->y : m_model.Data().y; }
    Eigen::VectorXi const &XObserved() const { return m_predicted ? m_predicted->xObserved : m_model.Fit().xObserved; }
    Eigen::VectorXi const &YObserved() const { return m_predicted ? m_predicted->yObserved : m_model.Fit().yObserved; }

    // Where the values of the rows come from, and the place of a row there.
    SourceColumns const &Source() const;
    std::size_t SourceRow(Index row) const {
        auto const &rows = m_predicted ? m_predicted->rows : m_model.Fit().definition.rows;
        return static_cast<std::size_t>(rows[static_cast<std::size_t>(m_range.first + row)]);
    }

private:
    ModelView const &m_model;
    PredictedRows const *m_predicted;
    RowRange m_range;
};

// The workset or the prediction set of a model, out of which a question takes its rows.
struct RowSource {
    ModelView const &model;
    bool ofPredictions = false;
    PredictedRows const *predicted = nullptr;

    // All rows, or those of a batch; nothing when there is no prediction set or no such batch.
    std::optional<RowSet> Rows(int batch = allBatches) const;
    ColumnIDs Columns(int batch = allBatches) const;
    // The batches among all rows, where there are rows; of a model of the evolution of batches, all of them on its
    // grid.
    BatchRuns const &Batches() const;
    Alignment const &Aligned() const;
    // The name of a statistic of these rows: those of predictions end with PS.
    std::string Name(std::string const &name) const { return ofPredictions ? name + "PS" : name; }
};

// Of a model of the evolution of batches, and with a batch.
bool HasBatches(RowSource const &source);

// Registers a statistic of rows in its two forms: function(row source, arguments...).
template <Operation workset, Operation predicted, typename Function>
void OnRows(Handlers &handlers, Function function) {
    handlers.On<workset>([function](ModelView const &model, auto const &...arguments) requires std::is_invocable_v<
                         Function const &, RowSource const &, decltype(arguments)...> {
        return function(RowSource{model}, arguments...);
    });
    handlers.On<predicted>([function](ModelView const &model, Subject const &subject, auto const &...arguments) {
        return function(RowSource{model, true, subject.Predictions(model.GetModelNumber())}, arguments...);
    });
}

// The rows as columns, where the model is one that the statistic is defined for.
using Needs = bool (*)(ModelView const &);

inline bool Always(ModelView const &) {
    return true;
}
inline bool HasY(ModelView const &model) {
    return model.Fit().definition.HasY();
}
inline bool HasValidatedY(ModelView const &model) {
    return HasY(model) && model.Fit().crossValidation;
}
inline bool HasComponents(ModelView const &model) {
    return model.Fit().components.All() > 0;
}
inline bool HasYAndComponents(ModelView const &model) {
    return HasY(model) && HasComponents(model);
}
inline bool IsOrthogonalKind(ModelView const &model) {
    return model.Fit().definition.HasOrthogonal();
}

// The size of a model behind the name of a statistic that asks for one. Those of OPLS and O2PLS models are of the whole
// model, and name none.
inline std::string AskedSizeLabel(ModelView const &model, Index size) {
    return IsOrthogonalKind(model) ? std::string() : SizeLabel(size);
}

template <Operation operation>
void OnWorksetColumns(Handlers &handlers, Needs needs = Always) {
    handlers.On<operation>([needs](ModelView const &model, auto... batch) {
        return needs(model) ? RowSource{model}.Columns(batch...) : model.None();
    });
}

template <Operation operation>
void OnPredictedColumns(Handlers &handlers, Needs needs = Always) {
    handlers.On<operation>([needs](ModelView const &model, Subject const &subject, auto... batch) {
        RowSource const source{model, true, subject.Predictions(model.GetModelNumber())};
        return needs(model) ? source.Columns(batch...) : model.None();
    });
}

template <Operation workset, Operation predicted>
void OnRowColumns(Handlers &handlers, Needs needs = Always) {
    OnWorksetColumns<workset>(handlers, needs);
    OnPredictedColumns<predicted>(handlers, needs);
}

// Columns of terms, whatever else the operation takes.
template <Operation operation>
void OnTermColumns(Handlers &handlers, ColumnIDs const &(ModelView::*columns)() const, Needs needs = Always) {
    handlers.On<operation>(
        [columns, needs](ModelView const &model, auto...) { return needs(model) ? (model.*columns)() : model.None(); });
}

// Those of a statistic of the prediction set.
template <Operation operation>
void OnPredictedTermColumns(Handlers &handlers, ColumnIDs const &(ModelView::*columns)() const) {
    handlers.On<operation>([columns](ModelView const &model, Subject const &subject, auto...) {
        return subject.Predictions(model.GetModelNumber()) ? (model.*columns)() : model.None();
    });
}

} // namespace engine
