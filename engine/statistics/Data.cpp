#include "engine/statistics/Answer.h"
#include "engine/statistics/Units.h"
#include "platform/containers/Missing.h"
#include "platform/identity/PlaceOfItem_internal.h"

#include <algorithm>
#include <array>
#include <numeric>

// Data as they were read, and what a model keeps beside its components: offsets, weights, cross-validation groups.

namespace engine {

namespace {

constexpr int allPhases = -1;

std::string SetLabel(DataSet const &dataSet) {
    return "DS" + std::to_string(dataSet.GetNumber());
}

ColumnIDs VariableColumns(DataSet const &dataSet) {
    ColumnIDs::Numbers numbers;
    for (std::uint32_t const variable : dataSet.GetVariables())
        numbers.push_back(variable);
    return ColumnIDs(ColumnIDs::Variables, std::move(numbers), dataSet.GetProject(), dataSet.GetNumber());
}

// The places of the items of a list, all for null; items that are not there are dropped.
template <typename PlaceOf>
std::vector<int> Places(IntList const *items, int size, PlaceOf placeOf) {
    std::vector<int> places;
    if (!items)
        for (int place = 0; place < size; ++place)
            places.push_back(place);
    else
        for (int const item : *items)
            if (std::optional<int> const place = placeOf(static_cast<std::uint32_t>(item)))
                places.push_back(*place);
    return places;
}

TablePtr ObservationRows(DataSet const &dataSet, IntList const *observations) {
    ObservationInfos const &all = dataSet.GetObservations();
    int const variables = static_cast<int>(dataSet.GetVariables().size());
    auto const numbers = dataSet.ObservationColumns().GetColumnIDs();
    PlaceOfItem const placeOf(*numbers);
    std::vector<int> const rows = Places(observations, static_cast<int>(all.size()), [&](std::uint32_t item) {
        int const place = placeOf(item);
        return place > 0 ? std::optional(place - 1) : std::nullopt;
    });
    AliasAccess const aliases = dataSet.GetObservationAliases();
    Answer answer(VariableColumns(dataSet), rows.size());
    std::string const days = dataSet.GetDaysLabel(dataSet.GetVariables());
    for (int const place : rows) {
        auto const row = answer.Add(SetLabel(dataSet) + ".Obs(" +
                                    aliases.GetAlias(1, all[static_cast<std::size_t>(place)]) + ")" + days);
        for (int column = 0; column < variables; ++column)
            row[static_cast<std::size_t>(column)] = dataSet.Values(column)[static_cast<std::size_t>(place)];
    }
    return answer.Take();
}

// The rows of a batch in a phase, both counted from 1; -1 stands for all batches and all phases. None where there is no
// such batch or phase.
std::vector<Index> RowsOf(DataSet const &dataSet, int batch, int phase) {
    std::optional<RowRange> const range = RowsOfBatch(dataSet, batch);
    ProjectPtr const project = dataSet.GetProject();
    std::vector<std::string> const phases =
        phase == allPhases ? std::vector<std::string>() : project->GetDataSetInfo(dataSet.GetNumber())->phases;
    if (!range || (phase != allPhases && (phase < 1 || static_cast<std::size_t>(phase) > phases.size())))
        return {};
    std::vector<Index> rows(static_cast<std::size_t>(range->count));
    std::iota(rows.begin(), rows.end(), range->first);
    if (phase != allPhases)
        std::erase_if(rows, [&](Index row) {
            return dataSet.GetObservations()[static_cast<std::size_t>(row)].GetPhaseName(project->GetObservations()) !=
                   phases[static_cast<std::size_t>(phase - 1)];
        });
    return rows;
}

bool AreAll(int batch, int phase) {
    return batch == allBatches && phase == allPhases;
}

ColumnIDs RowColumns(DataSet const &dataSet, int batch, int phase) {
    if (AreAll(batch, phase))
        return dataSet.ObservationColumns();
    ObservationInfos chosen;
    for (Index const row : RowsOf(dataSet, batch, phase))
        chosen.push_back(dataSet.GetObservations()[static_cast<std::size_t>(row)]);
    return ObservationColumns(chosen, dataSet.GetProject(), dataSet.GetNumber());
}

TablePtr VariableRows(DataSet const &dataSet, IntList const *variables, int batch, int phase) {
    std::vector<Index> const rows = AreAll(batch, phase) ? std::vector<Index>() : RowsOf(dataSet, batch, phase);
    std::vector<int> const columns = Places(variables, static_cast<int>(dataSet.GetVariables().size()),
                                            [&](std::uint32_t item) { return dataSet.ColumnOf(item); });
    Answer answer(RowColumns(dataSet, batch, phase), columns.size());
    for (int const column : columns) {
        std::string const days =
            dataSet.GetDaysLabel(std::span(dataSet.GetVariables()).subspan(static_cast<std::size_t>(column), 1));
        std::string const label = SetLabel(dataSet) + ".Var(" + dataSet.Name(column) + ")" + days;
        NCDataVector<float> const &values = dataSet.Stored(column);
        if (AreAll(batch, phase)) {
            answer.AddStored(label, values);
            continue;
        }
        std::ranges::transform(rows, answer.Add(label).begin(),
                               [&](Index row) { return values.Values()[static_cast<std::size_t>(row)]; });
    }
    return answer.Take();
}

// One number of each term's scaling.
TablePtr ScaleRow(ModelView const &model, char const *name, ColumnIDs const &columns,
                  std::vector<TermScale> const &scales, double TermScale::*figure) {
    Vector values(static_cast<Index>(scales.size()));
    std::ranges::transform(scales, values.begin(), figure);
    Answer answer(columns);
    answer.Add(model.Label(name), values);
    return answer.Take();
}

TablePtr Groups(ModelView const &model) {
    auto const &validation = model.Fit().crossValidation;
    if (!validation)
        return nullptr;
    Answer answer(model.Observations());
    auto const row = answer.Add(model.Label("CVGroups"));
    std::ranges::transform(validation->roundOfRow, row.begin(),
                           [](int round) { return static_cast<float>(round + 1); });
    return answer.Take();
}

// One row for each term that is locally centred.
TablePtr LocalCentres(ModelView const &model) {
    Answer answer(model.Observations());
    for (Side const &side : {Side::X(model), Side::Y(model)})
        for (Index term = 0; term < side.all.Size(); ++term) {
            if (side.terms[static_cast<std::size_t>(term)].centres.empty())
                continue;
            TermValues const values(side.terms, side.scales, term, model.Source());
            std::vector<int> const &rows = model.Fit().definition.rows;
            auto const row = answer.Add(model.Label("LocalCentering") + side.Label(term));
            std::ranges::transform(rows, row.begin(), [&](int at) { return ToStored(values.Centre(at)); });
        }
    return answer.Take();
}

bool IsLocallyCentred(ModelView const &model) {
    return model.GetCenterValues().SizeVars() > 0;
}

// The groups of a project's centre values; nothing where none are.
ColumnIDs CentringGroups(NCProject const &project) {
    LocalCenteringData const centring = project.GetLocalCentering();
    NCStringVector groups;
    for (std::string const &group : centring.groups)
        groups.push_back(group);
    return centring.SizeVars() == 0
               ? ColumnIDs(project.shared_from_this())
               : ColumnIDs(std::move(groups), "Group", project.shared_from_this(), ColumnIDs::Strings, 0);
}

// One row for each variable.
TablePtr CentreValues(NCProject const &project) {
    Answer answer(CentringGroups(project));
    for (LocalCenteringData::Variable const &variable : project.GetLocalCentering().variables)
        std::ranges::copy(
            variable.centres,
            answer.Add("ProjectLocalCentering(" + project.GetVariables().GetText(variable.number, 1) + ")").begin());
    return answer.Take();
}

// The values of the project's time variable, in days since the first date of the model's data set; nothing when there
// is none, or the model's data set lacks it.
TablePtr Times(RowSource const &source) {
    std::optional<RowSet> const rows = source.Rows();
    VariableInfo const *const time = source.model.GetProject()->GetVariables().GetDefaultTimeVariable();
    std::optional<int> const column = time ? source.model.FittedData().ColumnOf(time->GetUniqueID()) : std::nullopt;
    if (!rows || !column)
        return nullptr;
    std::span<float const> const values = rows->Source().Values(*column);
    Answer answer(rows->Columns());
    auto const row = answer.Add(source.model.Label(source.ofPredictions ? "Date/Time-PS" : "Date/Time") +
                                source.model.FittedData().GetDaysLabel(std::array{time->GetUniqueID()}));
    for (Index i = 0; i < rows->Size() && !values.empty(); ++i)
        row[static_cast<std::size_t>(i)] = values[rows->SourceRow(i)];
    return answer.Take();
}

// A vector of each component of the correction that made a data set; nothing for any other.
template <Operation values, Operation columns, typename Columns>
void AddCorrection(Handlers &handlers, char const *name, Matrix OrthogonalCorrection::*part, Columns columnsOf) {
    handlers.OnDataSet<values>(
        [=](DataSet const &dataSet, Subject const &subject, IntList const *components) -> TablePtr {
            auto const *const made = dataSet.MadeAs<CorrectionRecipe>();
            if (!made)
                return nullptr;
            Answer answer(columnsOf(*made, subject));
            for (Index const component : ChosenComponents(components, made->correction.Size()))
                answer.Add("DS" + std::to_string(dataSet.GetNumber()) + "." + name + ComponentLabel(component),
                           (made->correction.*part).col(component));
            return answer.Take();
        });
    handlers.OnDataSet<columns>(
        [=](DataSet const &dataSet, Subject const &subject, boost::shared_ptr<OSCModel const> const &osc) {
            auto const *const made = dataSet.MadeAs<CorrectionRecipe>();
            return made && osc ? columnsOf(*made, subject) : ColumnIDs(dataSet.GetProject());
        });
}

// What a correction was made of.
ColumnIDs CorrectedObservations(CorrectionRecipe const &made, Subject const &subject) {
    DataSet const &source = subject.Data(made.dataSet);
    ObservationInfos chosen;
    for (int const row : made.definition.rows)
        chosen.push_back(source.GetObservations()[static_cast<std::size_t>(row)]);
    return ObservationColumns(chosen, source.GetProject(), made.dataSet);
}
ColumnIDs CorrectedVariables(CorrectionRecipe const &made, Subject const &subject) {
    DataSet const &source = subject.Data(made.dataSet);
    ColumnIDs::Numbers numbers;
    for (Term const &term : made.definition.xTerms)
        numbers.push_back(source.GetVariables()[static_cast<std::size_t>(term.column)]);
    return ColumnIDs(ColumnIDs::Variables, std::move(numbers), source.GetProject(), made.dataSet);
}

bool HasTimes(ModelView const &model) {
    VariableInfo const *const time = model.GetProject()->GetVariables().GetDefaultTimeVariable();
    return time && model.FittedData().ColumnOf(time->GetUniqueID());
}
bool IsValidated(ModelView const &model) {
    return model.Fit().crossValidation.has_value();
}

} // namespace

void AddDataHandlers(Handlers &handlers) {
    using enum Operation;
    handlers.OnDataSet<GetObsDS>(ObservationRows);
    handlers.OnDataSet<GetObsDSColumnIDs>(VariableColumns);
    AddCorrection<GetOSCScores, GetOSCScoresColumnIDs>(handlers, "OSC-t", &OrthogonalCorrection::t,
                                                       CorrectedObservations);
    AddCorrection<GetOSCP, GetOSCPColumnIDs>(handlers, "OSC-p", &OrthogonalCorrection::p, CorrectedVariables);
    AddCorrection<GetOSCW, GetOSCWColumnIDs>(handlers, "OSC-w", &OrthogonalCorrection::w, CorrectedVariables);
    AddCorrection<GetOSCWStar, GetOSCWStarColumnIDs>(handlers, "OSC-w*", &OrthogonalCorrection::wStar,
                                                     CorrectedVariables);
    handlers.OnDataSet<GetVarDS>(VariableRows);
    handlers.OnDataSet<GetVarDSColumnIDs>(
        [](DataSet const &dataSet, int batch, int phase) { return RowColumns(dataSet, batch, phase); });
    handlers.On<GetXOffsets>([](ModelView const &model, TriState::State) {
        return ScaleRow(model, "Xavg", model.XTerms(), model.Fit().xScales, &TermScale::offset);
    });
    handlers.On<GetXWeights>([](ModelView const &model, TriState::State) {
        return ScaleRow(model, "Xws", model.XTerms(), model.Fit().xScales, &TermScale::weight);
    });
    handlers.On<GetYOffsets>([](ModelView const &model) {
        return ScaleRow(model, "Yavg", model.YTerms(), model.Fit().yScales, &TermScale::offset);
    });
    handlers.On<GetYWeights>([](ModelView const &model) {
        return ScaleRow(model, "Yws", model.YTerms(), model.Fit().yScales, &TermScale::weight);
    });
    handlers.On<GetCVGroups>(Groups);
    handlers.On<GetModelLocalCentering>(LocalCentres);
    OnWorksetColumns<GetModelLocalCenteringColumnIDs>(handlers, IsLocallyCentred);
    handlers.OnProject<GetLocalCentering>(CentreValues);
    handlers.OnProject<GetLocalCenteringColumnIDs>(CentringGroups);
    OnRows<GetDateTimeVariable, GetDateTimePSVariable>(handlers, Times);

    OnTermColumns<GetXOffsetsColumnIDs>(handlers, &ModelView::XTerms);
    OnTermColumns<GetXWeightsColumnIDs>(handlers, &ModelView::XTerms);
    OnTermColumns<GetYOffsetsColumnIDs>(handlers, &ModelView::YTerms);
    OnTermColumns<GetYWeightsColumnIDs>(handlers, &ModelView::YTerms);
    OnWorksetColumns<GetCVGroupsColumnIDs>(handlers, IsValidated);
    OnRowColumns<GetDateTimeVariableColumnIDs, GetDateTimePSVariableColumnIDs>(handlers, HasTimes);
}

} // namespace engine
