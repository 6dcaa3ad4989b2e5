#include "engine/statistics/ModelView.h"

#include "engine/models/Prediction.h"
#include "engine/statistics/RowStatistics.h"
#include "platform/containers/Missing.h"
#include "platform/numerics/Sta.h"
#include "platform/project/NCProject.h"

#include "platform/text/Exception.h"

#include <algorithm>
#include <numeric>

namespace engine {

namespace {

// The definition, when its terms and rows are in the data set: a stored model may have been damaged.
ModelDefinition const &Checked(ModelDefinition const &definition, DataSet const &dataSet) {
    auto const isWithin = [](int place, std::size_t size) {
        return place >= 0 && static_cast<std::size_t>(place) < size;
    };
    auto const hasColumn = [&](Term const &term) {
        return term.IsProduct() || term.IsLevel() || isWithin(term.column, dataSet.GetVariables().size());
    };
    auto const hasRow = [&](int row) { return isWithin(row, dataSet.GetObservations().size()); };
    if (!std::ranges::all_of(definition.xTerms, hasColumn) || !std::ranges::all_of(definition.yTerms, hasColumn) ||
        !std::ranges::all_of(definition.rows, hasRow))
        throw NCError(ExceptionMessage::translate("The saved model is damaged: it has terms or observations that its "
                                                  "data set lacks."),
                      NCError::Error);
    return definition;
}

ColumnTerms TermsOf(std::vector<Term> const &terms, ModelDefinition const &definition, DataSet const &dataSet) {
    ColumnTerms result;
    for (Term const &term : terms) {
        if (term.IsLevel()) {
            result.AppendTerm(dataSet.Items().TermOf(definition.LevelOf(term.column)));
        } else if (!term.IsProduct()) {
            result.AppendTerm(ColumnTerm(dataSet.GetVariables()[static_cast<std::size_t>(term.column)], term.lag));
        } else {
            std::vector<std::uint32_t> mothers;
            std::vector<int> lags, settings;
            for (int const place : term.factors) {
                ColumnTerm const &factor = result[place + 1]; // products stand behind all others
                mothers.push_back(factor.GetMotherVariable(1));
                lags.push_back(factor.GetLag(1));
                settings.push_back(factor.GetQualSetting(1));
            }
            result.AppendTerm(ColumnTerm(std::move(mothers), std::move(lags), std::move(settings)));
        }
    }
    return result;
}

ColumnTerms Joined(ColumnTerms terms, ColumnTerms const &further) {
    for (ColumnTerm const &term : further)
        terms.AppendTerm(term);
    return terms;
}

// Of each column of scores, over the rows that have one.
Vector DeviationsOf(Matrix const &scores, Eigen::VectorXi const &observed) {
    Vector deviations(scores.cols());
    for (Index a = 0; a < scores.cols(); ++a)
        deviations[a] = SpreadOf(scores.col(a), observed).deviation;
    return deviations;
}

NCStringVector ComponentNames(std::string const &kind, Index count) {
    NCStringVector names;
    for (Index component = 1; component <= count; ++component)
        names.push_back(kind + "[" + std::to_string(component) + "]");
    return names;
}

} // namespace

ColumnIDs ObservationColumns(std::span<ObservationInfo const> observations, ProjectPtr const &project, int owner) {
    ColumnIDs::Numbers numbers(static_cast<int>(observations.size()));
    auto to = numbers.MutableValues().begin();
    for (ObservationInfo const &observation : observations)
        *to++ = observation.GetUniqueID();
    return ColumnIDs(ColumnIDs::Observations, std::move(numbers), project, owner);
}

std::optional<RowRange> RowsOfBatch(NCDataContainerBase const &data, int batch) {
    int const rows = static_cast<int>(data.GetObservations().size());
    if (batch == -1)
        return RowRange{0, rows};
    if (batch < 1 || data.GetProject()->GetObservations().GetBatchID() == 0)
        return {};
    auto const &beginnings = data.GetBatchRuns().beginnings;
    int const length = BatchUtilities::GetBatchLength(beginnings, batch, rows);
    return length == 0 ? std::nullopt : std::optional(RowRange{beginnings[batch] - 1, length});
}

std::vector<RowRange> RangesOfBatches(NCDataContainerBase const &data) {
    auto const &beginnings = data.GetBatchRuns().beginnings;
    int const rows = static_cast<int>(data.GetObservations().size());
    std::vector<RowRange> ranges;
    for (int batch = 1; batch <= beginnings.Size(); ++batch)
        ranges.push_back({beginnings[batch] - 1, BatchUtilities::GetBatchLength(beginnings, batch, rows)});
    return ranges;
}

PredictedRows::PredictedRows(boost::shared_ptr<DataSet const> set, std::vector<int> chosen)
    : dataSet(std::move(set)), rows(std::move(chosen)) {
    observations.reserve(rows.size());
    for (int const row : rows)
        observations.push_back(dataSet->GetObservations()[static_cast<std::size_t>(row)]);
}

// The batches that are running, where the rows are those of their last phase.
std::vector<std::size_t> RunningAmong(PredictedRows const &predicted) {
    std::vector<std::string> const &names = predicted.dataSet->Running();
    std::vector<std::size_t> running;
    BatchRuns const &all = predicted.dataSet->GetBatchRuns();
    int const rows = static_cast<int>(predicted.dataSet->GetObservations().size());
    for (std::size_t batch = 0; !names.empty() && batch < predicted.GetBatchRuns().names.size(); ++batch) {
        int const at = static_cast<int>(batch) + 1;
        std::string const &name = predicted.GetBatchRuns().names[at];
        if (std::ranges::find(names, name) == names.end())
            continue;
        int const whole = all.names.FindString(name, true, 1);
        int const end = all.beginnings[whole] + BatchUtilities::GetBatchLength(all.beginnings, whole, rows);
        int const last = at < predicted.GetBatchRuns().beginnings.Size()
                             ? predicted.GetBatchRuns().beginnings[at + 1] - 1
                             : static_cast<int>(predicted.rows.size());
        if (predicted.rows[static_cast<std::size_t>(last - 1)] + 2 == end)
            running.push_back(batch);
    }
    return running;
}

ModelView::ModelView(int number, FittedModel model, boost::shared_ptr<DataSet const> dataSet, ProjectPtr const &project)
    : m_number(number), m_fit(std::move(model)), m_dataSet(std::move(dataSet)),
      m_source(Checked(m_fit.definition, *m_dataSet), m_dataSet, m_dataSet, m_fit.definition.rows),
      m_xTerms(TermsOf(m_fit.definition.xTerms, m_fit.definition, *m_dataSet)),
      m_yTerms(TermsOf(m_fit.definition.yTerms, m_fit.definition, *m_dataSet)), m_xColumns(m_xTerms, project, number),
      m_yColumns(m_yTerms, project, number), m_xyColumns(Joined(m_xTerms, m_yTerms), project, number),
      m_yxColumns(Joined(m_yTerms, m_xTerms), project, number) {
    for (ColumnTerms const *terms : {&m_xTerms, &m_yTerms})
        for (ColumnTerm const &term : *terms)
            // Those of a qualitative variable follow each other.
            if (std::uint32_t const mother = term.GetMotherVariable(1);
                term.Size() == 1 && term.GetLag(1) == 0 && (m_variables.empty() || m_variables.back() != mother))
                m_variables.push_back(mother);
    m_observations.reserve(m_fit.definition.rows.size());
    for (int const row : m_fit.definition.rows)
        m_observations.push_back(m_dataSet->GetObservations()[static_cast<std::size_t>(row)]);
    m_observationColumns = ObservationColumns(m_observations, project, number);
}

ColumnIDs ModelView::CoefficientTerms(ColumnTerms const &terms) const {
    return ColumnIDs(Joined(ColumnTerms({ColumnTerm(ColumnTerm::Constant)}), terms), GetProject(), m_number);
}

ColumnIDs ModelView::NamedColumns(NCStringVector names) const {
    return ColumnIDs(std::move(names), "Component", GetProject(), ColumnIDs::Strings, m_number);
}

ColumnIDs ModelView::ComponentColumns() const {
    Components const &components = m_fit.components;
    NCStringVector names = ComponentNames("Comp", components.Predictive());
    for (std::string const &name : ComponentNames("XSide Comp", components.XOrthogonal()))
        names.push_back(name);
    for (std::string const &name : ComponentNames("YSide Comp", components.YOrthogonal()))
        names.push_back(name);
    return NamedColumns(std::move(names));
}

ColumnIDs ModelView::PredictiveComponents() const {
    return NamedColumns(ComponentNames("Comp", m_fit.components.Predictive()));
}

ColumnIDs ModelView::LastComponent() const {
    return NamedColumns(NCStringVector{"Last comp"});
}

ColumnIDs ModelView::ProgressionColumns() const {
    if (m_fit.components.All() == 0 || m_fit.progression.takenY.cols() == 0)
        return None();
    NCStringVector names;
    for (Index j = 0; j < m_fit.progression.takenY.cols(); ++j)
        names.push_back(std::to_string(m_fit.components.Predictive()) + "+" + std::to_string(j));
    return NamedColumns(std::move(names));
}

Workset const &ModelView::Data() const {
    if (!m_workset)
        m_workset = Workset::Build(m_fit.definition, m_source);
    return *m_workset;
}

std::unique_ptr<PredictedRows> ModelView::Predict(boost::shared_ptr<DataSet const> dataSet,
                                                  ProjectPtr const &project) const {
    std::string const phase = m_fit.definition.evolution ? m_fit.definition.evolution->phase : std::string();
    std::vector<int> rows;
    for (std::size_t row = 0; row < dataSet->GetObservations().size(); ++row)
        if (phase.empty() || dataSet->GetObservations()[row].GetPhaseName(project->GetObservations()) == phase)
            rows.push_back(static_cast<int>(row));
    auto predicted = std::make_unique<PredictedRows>(dataSet, std::move(rows));
    predicted->running = RunningAmong(*predicted);
    predicted->columns = ObservationColumns(predicted->observations, project, m_number);
    predicted->source =
        std::make_shared<ModelColumns>(m_fit.definition, m_dataSet, std::move(dataSet), predicted->rows);
    SourceColumns const &source = *predicted->source;
    predicted->x = ScaleRows(m_fit.definition.xTerms, m_fit.xScales, source, predicted->rows);
    predicted->y = ScaleRows(m_fit.definition.yTerms, m_fit.yScales, source, predicted->rows);
    predicted->scores = PredictScores(m_fit.components, predicted->x);
    predicted->xObserved = predicted->x.ObservedInRows();
    predicted->yObserved = predicted->y.ObservedInRows();
    return predicted;
}

AlignmentGrid const &ModelView::Grid() const {
    if (!m_grid)
        m_grid = Alignment::GridOf(m_fit.definition.evolution->alignment, m_fit.definition.evolution->points,
                                   RangesOfBatches(*this), YValues(*RowSource{*this}.Rows(), 0, Units::Source));
    return *m_grid;
}

ModelView::RowDistances const &ModelView::XDistances(Index size, bool weighted) const {
    auto const [at, isNew] = m_xDistances.try_emplace({size, weighted});
    if (isNew) {
        Index const xSide = size + m_fit.components.XOrthogonal();
        double const inflation = static_cast<double>(m_fit.Rows()) / XRowFreedom(m_fit, xSide);
        Vector const residuals = XRowSquares(m_fit.components, Data().x, m_fit.scores, size,
                                             weighted ? PowerWeights(m_fit, size) : Vector());
        Vector squares =
            SquaredDistances(residuals, m_fit.xObserved, m_xTerms.Size(), ColumnFreedom(m_fit, xSide), inflation);
        double const pooled = Pooled(squares);
        at->second = {std::move(squares), pooled};
    }
    return at->second;
}

Vector const &ModelView::XMeans() const {
    if (!m_xMeans) {
        m_xMeans = Vector::Zero(m_xTerms.Size());
        for (Index k = 0; k < m_xMeans->size(); ++k)
            if (TermScale const &scale = m_fit.xScales[static_cast<std::size_t>(k)]; !scale.centred)
                (*m_xMeans)[k] = Data().x.Values().col(k).sum() / scale.observed;
    }
    return *m_xMeans;
}

Vector const &ModelView::DeviationsOfT() const {
    if (!m_tDeviations)
        m_tDeviations = DeviationsOf(m_fit.scores.t, m_fit.xObserved);
    return *m_tDeviations;
}

Vector const &ModelView::DeviationsOfTo() const {
    if (!m_toDeviations)
        m_toDeviations = DeviationsOf(m_fit.scores.to, m_fit.xObserved);
    return *m_toDeviations;
}

AliasAccess ModelView::GetObservationAliases() const {
    return m_observationAliases.Of(GetProject()->GetObservations(), m_observations);
}

AliasAccess ModelView::GetVariableAliases() const {
    return m_variableAliases.Of(GetProject()->GetVariables(), m_variables);
}

DefaultCenterValues ModelView::GetCenterValues() const {
    DefaultCenterValues values{m_fit.definition.centringIdentifier, m_fit.definition.centringGroups, {}};
    for (Side const &side : {Side::X(*this), Side::Y(*this)})
        for (Index term = 0; term < side.all.Size(); ++term)
            if (Term const &of = side.terms[static_cast<std::size_t>(term)]; !of.centres.empty() && of.lag == 0)
                values.variables.push_back({side.all[static_cast<int>(term) + 1].GetMotherVariable(1),
                                            {of.centres.begin(), of.centres.end()}});
    return values;
}

float ModelView::GetDModXCrit(int component, float level, TriState::State normalised) const {
    std::optional<Index> const size = ChosenSize(m_fit, component);
    if (!size)
        return missingValue;
    Index const xSide = *size + m_fit.components.XOrthogonal();
    double const columns = ColumnFreedom(m_fit, xSide);
    double const alpha = level == -1.0f ? m_fit.definition.alpha : level;
    double const critical = Sta::FFTest(columns, columns * XRowFreedom(m_fit, xSide), alpha);
    if (critical < 0)
        return missingValue;
    return ToStored(std::sqrt(critical * (normalised == TriState::No ? XDistances(*size, false).pooled : 1.0)));
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

double ModelView::GetRowDF(int xSideComponents, bool ofY) const {
    double const freedom = ofY ? YRowFreedom(m_fit, xSideComponents) : XRowFreedom(m_fit, xSideComponents);
    return freedom > 0 ? freedom : 0; // NaN where there is none
}

} // namespace engine
