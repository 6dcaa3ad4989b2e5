#include "engine/statistics/ModelView.h"

#include "engine/models/Prediction.h"
#include "platform/Missing.h"
#include "platform/Sta.h"

#include <numeric>

namespace engine {

namespace {

ColumnTerms TermsOf(std::vector<Term> const &terms, DataSet const &dataSet) {
    ColumnTerms result;
    for (Term const &term : terms)
        result.AppendTerm(ColumnTerm(dataSet.GetVariables()[static_cast<std::size_t>(term.column)]));
    return result;
}

ColumnTerms Joined(ColumnTerms terms, ColumnTerms const &further) {
    for (ColumnTerm const &term : further)
        terms.AppendTerm(term);
    return terms;
}

ColumnIDs ObservationColumns(ObservationInfos const &observations, ProjectPtr const &project, int owner) {
    ColumnIDs::Numbers numbers(static_cast<int>(observations.size()));
    auto to = numbers.MutableValues().begin();
    for (ObservationInfo const &observation : observations)
        *to++ = observation.GetUniqueID();
    return ColumnIDs(ColumnIDs::Observations, std::move(numbers), project, owner);
}

// The columns of another data set in the places where a model has its own.
class MatchedColumns final : public SourceColumns {
public:
    MatchedColumns(DataSet const &model, DataSet const &rows) : m_model(model), m_rows(rows) {}

    std::span<float const> Values(int column) const override {
        std::optional<int> const found = m_rows.ColumnOf(m_model.GetVariables()[static_cast<std::size_t>(column)]);
        return found ? m_rows.Values(*found) : std::span<float const>();
    }
    std::string Name(int column) const override { return m_model.Name(column); }

private:
    DataSet const &m_model;
    DataSet const &m_rows;
};

} // namespace

ModelView::ModelView(int number, FittedModel model, boost::shared_ptr<DataSet const> dataSet, ProjectPtr const &project)
    : m_number(number), m_fit(std::move(model)), m_dataSet(std::move(dataSet)),
      m_xTerms(TermsOf(m_fit.definition.xTerms, *m_dataSet)), m_yTerms(TermsOf(m_fit.definition.yTerms, *m_dataSet)),
      m_xColumns(m_xTerms, project, number), m_yColumns(m_yTerms, project, number),
      m_xyColumns(Joined(m_xTerms, m_yTerms), project, number),
      m_yxColumns(Joined(m_yTerms, m_xTerms), project, number) {
    for (ColumnTerms const *terms : {&m_xTerms, &m_yTerms})
        for (ColumnTerm const &term : *terms)
            m_variables.push_back(term.GetMotherVariable(1));
    m_observations.reserve(m_fit.definition.rows.size());
    for (int const row : m_fit.definition.rows)
        m_observations.push_back(m_dataSet->GetObservations()[static_cast<std::size_t>(row)]);
    m_observationColumns = ObservationColumns(m_observations, project, number);
}

Workset const &ModelView::Data() const {
    if (!m_workset)
        m_workset = Workset::Build(m_fit.definition, *m_dataSet);
    return *m_workset;
}

PredictedRows ModelView::Predict(boost::shared_ptr<DataSet const> dataSet, ProjectPtr const &project) const {
    std::vector<int> rows(dataSet->Record().observations);
    std::iota(rows.begin(), rows.end(), 0);
    MatchedColumns const source(*m_dataSet, *dataSet);
    PredictedRows predicted;
    predicted.x = ScaleRows(m_fit.definition.xTerms, m_fit.xScales, source, rows);
    predicted.y = ScaleRows(m_fit.definition.yTerms, m_fit.yScales, source, rows);
    predicted.scores = PredictScores(m_fit.components, predicted.x);
    predicted.xObserved = predicted.x.ObservedInRows();
    predicted.columns = ObservationColumns(dataSet->GetObservations(), project, m_number);
    predicted.dataSet = std::move(dataSet);
    return predicted;
}

double ModelView::RowFreedom(Index predictive) const {
    return static_cast<double>(m_fit.Rows() - m_fit.XCentred() - predictive - m_fit.components.XOrthogonal());
}

double ModelView::ColumnFreedom(Index predictive) const {
    return static_cast<double>(m_xTerms.Size() - predictive - m_fit.components.XOrthogonal());
}

double ModelView::PooledDistance(Index predictive) const {
    // The distance of row i: s_i^2 = N/d_r K/K_i SS_i/d_c (Wold 1976). A row without observed cell has none.
    RowMatrix const residuals = XResiduals(m_fit.components, Data().x, m_fit.scores, predictive);
    double const terms = m_xTerms.Size();
    double sum = 0;
    Index observedRows = 0;
    for (Index row = 0; row < residuals.rows(); ++row)
        if (m_fit.xObserved[row] > 0) {
            sum += residuals.row(row).squaredNorm() * terms / m_fit.xObserved[row];
            ++observedRows;
        }
    double const rows = static_cast<double>(residuals.rows());
    return std::sqrt(rows / RowFreedom(predictive) * sum / ColumnFreedom(predictive) /
                     static_cast<double>(observedRows));
}

float ModelView::GetDModXCrit(int component, float level, TriState::State normalised) const {
    Index const all = m_fit.components.Predictive();
    Index const predictive = component == -1 ? all : component;
    if (predictive < 0 || predictive > all || RowFreedom(predictive) <= 0 || ColumnFreedom(predictive) <= 0)
        return missingValue;
    double const alpha = level == -1.0f ? m_fit.definition.alpha : level;
    double const columns = ColumnFreedom(predictive);
    double const critical = Sta::FFTest(columns, columns * RowFreedom(predictive), alpha);
    if (critical < 0)
        return missingValue;
    return ToStored(std::sqrt(critical) * (normalised == TriState::No ? PooledDistance(predictive) : 1.0));
}

double ModelView::GetCVStdDevDF(int component) const {
    if (!m_fit.crossValidation)
        return 0;
    Index const predictive = component == -1 ? m_fit.components.Predictive() : component;
    int rounds = 0;
    for (Components const &round : m_fit.crossValidation->rounds)
        rounds += round.Predictive() >= predictive ? 1 : 0;
    return std::max(0, rounds - 1);
}

} // namespace engine
