#include "navigation/Selectors.h"

#include "platform/identity/BatchUtilities.h"
#include "platform/project/NCProject.h"
#include "utilities/DefaultSelection.h"
#include "utilities/ProjectQueries.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>

namespace DataSeriesUtilities {

namespace {

using ProjectUtilities::DefaultSelection;
using Vector = ProjectVector;

enum Direction : int { Back = -1, Forth = 1 };

// Calls `move` with the X axis, the Y axis, each series as the parts say, and puts what moved in their place.
template <typename Move>
void MoveSeries(SelectDataSeriesData &selection, Move move) {
    for (int position = 1; position <= selection.NumberOfSeries(); ++position)
        if (std::optional<ProjectVectorData> const moved = move(selection.GetSeries(position)))
            selection.SetSeries(position, *moved);
}

template <typename Move>
void MoveXAxis(SelectDataSeriesData &selection, Move move) {
    if (std::optional<ProjectVectorData> const moved = move(selection.GetXAxis()))
        selection.SetXAxis(*moved);
}

template <typename Move>
void MoveOne(SelectDataSeriesData &selection, bool axisOnly, Move move) {
    axisOnly ? MoveXAxis(selection, move) : MoveSeries(selection, move);
}

// What a transformation subtracts and divides by, if both can move.
template <typename Move>
void MoveOperands(SelectDataSeriesData &selection, Move move) {
    TransformationData transformation = selection.GetTransformationData();
    TransformationData::TransformationType const type = transformation.GetTransformationType();
    if (type != TransformationData::SubtractVector && type != TransformationData::SubtractAndDivideVector)
        return;
    bool const divides = type == TransformationData::SubtractAndDivideVector;
    if (move(transformation.GetSubtractVector()) && (!divides || move(transformation.GetDivideVector())))
        selection.SetTransformationData(transformation);
}

template <typename Step>
void MoveComponents(SelectDataSeriesData &selection, bool axisOnly, Step step) {
    MoveOne(selection, axisOnly,
            [&step](ProjectVectorData data) { return step(data) ? std::optional(data) : std::nullopt; });
    MoveOperands(selection, step);
}

bool IsIndexedBy(Vector::ComponentType kinds, ProjectVectorData const &data) {
    return data.GetProjectVector() && (data.GetProjectVector()->GetComponentType() & kinds) != 0;
}

ProjectVectorData WithNumber(ProjectVectorData data, std::uint32_t number) {
    data.SetNumber(number);
    return data;
}

bool IsOfItem(ProjectVectorData const &data) {
    return data.GetProjectVector() && data.GetProjectVector()->GetNumberType() == Vector::NumberObsOrVar;
}

// The neighbour of an item of a list.
template <typename Items, typename Item>
auto const *Neighbour(Items const &items, Item const &item, Direction direction) {
    auto const found = std::find(items.begin(), items.end(), item);
    bool const isEnd = found == items.end() || (direction == Forth ? found + 1 == items.end() : found == items.begin());
    return isEnd ? nullptr : &*(found + direction);
}

// The data that a vector without a model reads; null for others.
boost::shared_ptr<NCDataSet const> PureData(NCProject const &project, ProjectVectorData const &data) {
    int const source = data.GetProjectVector()->GetDataType();
    if ((source & Vector::DataTypeDataSet) != 0)
        return project.GetDataSet(data.GetDataSet());
    return (source & Vector::DataTypePredictionSet) != 0 ? project.GetPredSet(-1) : nullptr;
}

bool IsOfData(ProjectVectorData const &data) {
    return (data.GetProjectVector()->GetDataType() & (Vector::DataTypeDataSet | Vector::DataTypePredictionSet)) != 0;
}

void MoveVariables(SelectDataSeriesData &selection, bool axisOnly, Direction direction) {
    boost::shared_ptr<NCProject> const project = selection.GetProject();
    MoveOne(selection, axisOnly, [&](ProjectVectorData const &data) -> std::optional<ProjectVectorData> {
        auto const source = IsOfItem(data) && IsOfData(data) ? PureData(*project, data) : nullptr;
        if (!source)
            return {};
        std::uint32_t const variable = data.GetNumber(selection.GetDefaultSelection().get());
        std::uint32_t const *const next = Neighbour(source->GetVariables(), variable, direction);
        return next ? std::optional(WithNumber(data, *next)) : std::nullopt;
    });
}

ObservationInfos ObservationsOf(NCProject const &project, ProjectVectorData const &data) {
    if (IsOfData(data)) {
        auto const source = PureData(project, data);
        return source ? source->GetObservations() : ObservationInfos();
    }
    int const number = data.GetModelInfo() ? data.GetModelInfo()->number : -1;
    if (data.GetProjectVector()->GetObsPredType() == Vector::Predicted) {
        auto const predictions = project.GetPredictions(number, false);
        return predictions ? predictions->GetObservations() : ObservationInfos();
    }
    auto const model = project.GetModel(number);
    return model ? model->GetObservations() : ObservationInfos();
}

void MoveObservations(SelectDataSeriesData &selection, bool axisOnly, Direction direction) {
    boost::shared_ptr<NCProject> const project = selection.GetProject();
    MoveOne(selection, axisOnly, [&](ProjectVectorData const &data) -> std::optional<ProjectVectorData> {
        if (!IsOfItem(data))
            return {};
        project->RefreshObservations();
        ObservationInfos const observations = ObservationsOf(*project, data);
        ObservationInfo const *const next = Neighbour(observations, ObservationInfo(data.GetNumberID()), direction);
        return next ? std::optional(WithNumber(data, next->GetUniqueID())) : std::nullopt;
    });
}

// A walk along the terms of a model: from `number`, the present term, or to those that a list names.
class TermWalk {
public:
    TermWalk(NCProject const &project, ColumnTerms const &terms, Direction direction)
        : m_variables(project.GetVariables()), m_terms(terms), m_direction(direction) {}

    std::optional<int> Plain(int number) const {
        bool const isEnd = m_direction == Forth ? number >= m_terms.Size() : number < 2;
        return number < 1 || isEnd ? std::nullopt : std::optional(number + m_direction);
    }

    // The term that comes in the list, looked for from term `from` on.
    std::optional<int> InList(ColumnIDs const &list, int number, int from) const {
        std::unique_ptr<ColumnTerms> const listed = list.GetColumnTerms();
        if (!listed || number < 1 || number > m_terms.Size())
            return {};
        std::string const present = Name(m_terms[number]);
        auto const here = std::ranges::find_if(*listed, [&](ColumnTerm const &term) { return Name(term) == present; });
        int const place = static_cast<int>(here - listed->begin()) + 1;
        if (m_direction == Forth ? place >= listed->Size() : place < 2)
            return {};
        std::string const wanted = Name((*listed)[place + m_direction]);
        for (int term = from; term >= 1 && term <= m_terms.Size(); term += m_direction)
            if (Name(m_terms[term]) == wanted)
                return term;
        return {};
    }

private:
    std::string Name(ColumnTerm const &term) const { return term.GetPrimaryName(m_variables); }

    NCVariables const &m_variables;
    ColumnTerms const &m_terms;
    Direction m_direction;
};

// Forth, a vector over lags steps over the variables behind the lagged terms.
ColumnTerms XTermsToStep(NCProject const &project, ProjectVectorData const &data, Direction direction) {
    int const number = data.GetModelInfo()->number;
    if (direction == Forth)
        return data.GetProjectVector()->XTermsOf(project, number);
    auto const model = project.GetModel(number);
    return model ? model->GetXColumnTerms() : ColumnTerms();
}

std::optional<ProjectVectorData> NextXTerm(SelectDataSeriesData const &selection, ProjectVectorData const &data,
                                           ColumnIDs const *list, int position, Direction direction) {
    if (!data.GetProjectVector() || !data.GetProjectVector()->IsXVector() || !data.GetModelInfo())
        return {};
    boost::shared_ptr<NCProject> const project = selection.GetProject();
    if (list && position >= 1) {
        int const to = position + direction;
        if (to < 1 || to > list->Size())
            return {};
        std::string const name = list->GetName(to, 1);
        return WithNumber(data, ProjectUtilities::GetXTermIndex(*project, data.GetModelInfo()->number, name.c_str()));
    }
    ColumnTerms const terms = XTermsToStep(*project, data, direction);
    TermWalk const walk(*project, terms, direction);
    int const number = static_cast<int>(data.GetNumber(selection.GetDefaultSelection().get()));
    std::optional<int> const next = list ? walk.InList(*list, number, number) : walk.Plain(number);
    return next ? std::optional(WithNumber(data, static_cast<std::uint32_t>(*next))) : std::nullopt;
}

std::optional<ProjectVectorData> NextYTerm(SelectDataSeriesData const &selection, ProjectVectorData data,
                                           ColumnIDs const *list, Direction direction) {
    Vector const *const vector = data.GetProjectVector();
    if (!vector || !data.GetModelInfo())
        return {};
    bool const isNumber =
        vector->GetNumberType() == Vector::NumberYVariable || vector->GetNumberType() == Vector::NumberBatchYVariable;
    if (!isNumber && !data.IsYVarContribution())
        return {};
    boost::shared_ptr<NCProject> const project = selection.GetProject();
    auto const model = project->GetModel(data.GetModelInfo()->number);
    if (!model)
        return {};
    TermWalk const walk(*project, model->GetYColumnTerms(), direction);
    DefaultSelection const &defaults = *selection.GetDefaultSelection();
    std::optional<int> next;
    if (isNumber) {
        int const stored = static_cast<int>(data.GetNumberID());
        next = list ? walk.InList(*list, static_cast<int>(data.GetNumber(&defaults)), stored) : walk.Plain(stored);
        if (next)
            data.SetNumber(static_cast<std::uint32_t>(*next));
    } else {
        // Forth in a list an open response is what the project says, whatever the selection was told.
        int const number =
            list && direction == Forth ? data.GetYVar(DefaultSelection(project)) : data.GetYVar(defaults);
        next = list ? walk.InList(*list, number, number) : walk.Plain(number);
        if (next)
            data.SetYVar(*next);
    }
    return next ? std::optional(data) : std::nullopt;
}

bool CanMoveBatch(SelectDataSeriesData const &selection) {
    return (selection.GetVectorType() == Vector::VectorTypeVariablesScores ||
            selection.GetVectorType() == Vector::VectorTypeAligned) &&
           !selection.GetTransformationData().IsTransformItems();
}

bool ShowsBatch(ProjectVectorData const &data) {
    return data.GetProjectVector() && data.GetProjectVector()->UseBatchIx() && data.batchIx >= 1;
}

int CountBatches(NCProject const &project, ObservationInfos const &rows) {
    return BatchUtilities::GetBatchBeginnings(project.GetObservations(), rows).Size();
}

// Of the rows that an observed, or a predicted, vector shows; none where a predicted one has no model.
std::optional<int> CountBatches(NCProject const &project, ProjectVectorData const &data) {
    ModelInfo const *const info = data.GetModelInfo();
    if (data.GetProjectVector()->GetObsPredType() == Vector::Observed) {
        if (auto const model = info ? project.GetModel(info->number) : nullptr)
            return CountBatches(project, model->GetObservations());
        auto const source = project.GetDataSet(data.GetDataSet());
        return source ? CountBatches(project, source->GetObservations()) : 0;
    }
    if (!info)
        return {};
    auto const predictions = project.GetPredictions(info->number, false);
    return predictions ? CountBatches(project, predictions->GetObservations()) : 0;
}

// The batches that are selected among the observations, each moved by `move`.
template <typename Move>
void MoveSelectedBatches(SelectDataSeriesData &selection, Move move) {
    std::vector<int> batches;
    bool const isOnePhase = selection.GetSelectedBatches(batches);
    std::set<int> moved;
    std::ranges::transform(batches, std::inserter(moved, moved.end()), move);
    if (!moved.empty())
        selection.SelectBatches({moved.begin(), moved.end()}, isOnePhase);
}

void SetBatch(SelectDataSeriesData &selection, int position, int batch) {
    ProjectVectorData data = selection.GetSeries(position);
    data.batchIx = batch;
    selection.SetSeries(position, data);
}

} // namespace

bool SelectNextComponent::NextComponent(ProjectPtr const &project, ProjectVectorData &data) const {
    if (!IsIndexedBy(m_type, data))
        return false;
    int const limit = m_upperLimit == -1 ? data.GetMaxComponents(project, m_type) : m_upperLimit;
    int const component = data.GetComponent(m_type, true);
    if (component > limit || (component == limit && m_type == Vector::ComponentOSC))
        return false;
    if (component < limit)
        data.SetComponent(m_type, component + 1);
    else
        data.SetComponent(-1);
    return true;
}

void SelectNextComponent::operator()(SelectDataSeriesData &selection) const {
    ProjectPtr const project = selection.GetProject();
    MoveComponents(selection, m_axisOnly, [&](ProjectVectorData &data) { return NextComponent(project, data); });
}

bool SelectPrevComponent::PrevComponent(ProjectPtr const &project, ProjectVectorData &data) const {
    if (!IsIndexedBy(m_type, data))
        return false;
    int const floor = m_lowerLimit == -1 ? data.GetProjectVector()->GetFirstComponent() : m_lowerLimit;
    int const stored = data.GetComponent(m_type, false);
    if (stored > floor)
        data.SetComponent(data.GetComponent(m_type, true) - 1);
    else if (stored != -1)
        return false;
    else
        data.SetComponent(m_type, m_stepFromLast == -1 ? std::max(floor, data.GetMaxComponents(project, m_type) - 1)
                                                       : m_stepFromLast);
    return true;
}

void SelectPrevComponent::operator()(SelectDataSeriesData &selection) const {
    ProjectPtr const project = selection.GetProject();
    MoveComponents(selection, m_axisOnly, [&](ProjectVectorData &data) { return PrevComponent(project, data); });
}

void SelectNextVariable::operator()(SelectDataSeriesData &selection) const {
    MoveVariables(selection, m_axisOnly, Forth);
}
void SelectPrevVariable::operator()(SelectDataSeriesData &selection) const {
    MoveVariables(selection, m_axisOnly, Back);
}
void SelectNextObservation::operator()(SelectDataSeriesData &selection) const {
    MoveObservations(selection, m_axisOnly, Forth);
}
void SelectPrevObservation::operator()(SelectDataSeriesData &selection) const {
    MoveObservations(selection, m_axisOnly, Back);
}

void SelectNextXVar::operator()(SelectDataSeriesData &selection) const {
    auto const next = [&](ProjectVectorData const &data) {
        return NextXTerm(selection, data, m_list, m_position, Forth);
    };
    if ((m_parts & DataSeriesChecker::CheckXAxis) != 0)
        MoveXAxis(selection, next);
    if ((m_parts & DataSeriesChecker::CheckYAxis) != 0)
        if (std::optional<ProjectVectorData> const moved = next(selection.GetYAxis()))
            selection.SetXAxis(*moved);
    if ((m_parts & DataSeriesChecker::CheckSeries) != 0)
        MoveSeries(selection, next);
}

void SelectPrevXVar::operator()(SelectDataSeriesData &selection) const {
    auto const previous = [&](ProjectVectorData const &data) {
        return NextXTerm(selection, data, m_list, m_position, Back);
    };
    if ((m_parts & DataSeriesChecker::CheckXAxis) != 0)
        MoveXAxis(selection, previous);
    if ((m_parts & DataSeriesChecker::CheckSeries) != 0)
        MoveSeries(selection, previous);
}

void SelectNextYVar::operator()(SelectDataSeriesData &selection) const {
    auto const next = [&](ProjectVectorData const &data) { return NextYTerm(selection, data, m_list, Forth); };
    if ((m_parts & DataSeriesChecker::CheckXAxis) != 0)
        MoveXAxis(selection, next);
    if ((m_parts & DataSeriesChecker::CheckYAxis) != 0)
        if (std::optional<ProjectVectorData> const moved = next(selection.GetYAxis()))
            selection.SetYAxis(*moved);
    if ((m_parts & DataSeriesChecker::CheckSeries) != 0)
        MoveSeries(selection, next);
}

void SelectPrevYVar::operator()(SelectDataSeriesData &selection) const {
    auto const previous = [&](ProjectVectorData const &data) { return NextYTerm(selection, data, m_list, Back); };
    if ((m_parts & DataSeriesChecker::CheckXAxis) != 0)
        MoveXAxis(selection, previous);
    if ((m_parts & DataSeriesChecker::CheckSeries) != 0)
        MoveSeries(selection, previous);
}

void SelectNextBatch::operator()(SelectDataSeriesData &selection) const {
    if (!CanMoveBatch(selection))
        return;
    boost::shared_ptr<NCProject> const project = selection.GetProject();
    std::optional<int> ofObserved, ofOthers;
    bool isShown = false;
    for (int position = selection.NumberOfSeries(); position >= 1; --position) {
        ProjectVectorData const &data = selection.GetSeries(position);
        if (!ShowsBatch(data))
            continue;
        isShown = true;
        std::optional<int> &count =
            data.GetProjectVector()->GetObsPredType() == Vector::Observed ? ofObserved : ofOthers;
        if (!count)
            count = CountBatches(*project, data);
        if (!count)
            return;
        if (data.batchIx != *count)
            SetBatch(selection, position, data.batchIx + 1);
    }
    ColumnIDs const *const columns = selection.GetColumnIDs();
    if (isShown || selection.GetVectorType() != Vector::VectorTypeVariablesScores || !columns)
        return;
    std::unique_ptr<ColumnIDs::Numbers> const numbers = columns->GetColumnIDs();
    int const last = numbers ? CountBatches(*project, project->GetObservations().GetInfoVector(*numbers)) : 0;
    MoveSelectedBatches(selection, [last](int batch) { return batch == last ? batch : batch + 1; });
}

void SelectPrevBatch::operator()(SelectDataSeriesData &selection) const {
    if (!CanMoveBatch(selection))
        return;
    bool isShown = false;
    for (int position = selection.NumberOfSeries(); position >= 1; --position) {
        ProjectVectorData const &data = selection.GetSeries(position);
        if (!ShowsBatch(data))
            continue;
        isShown = true;
        if (data.batchIx > 1)
            SetBatch(selection, position, data.batchIx - 1);
    }
    if (!isShown && selection.GetVectorType() == Vector::VectorTypeVariablesScores)
        MoveSelectedBatches(selection, [](int batch) { return std::max(batch - 1, 1); });
}

} // namespace DataSeriesUtilities
