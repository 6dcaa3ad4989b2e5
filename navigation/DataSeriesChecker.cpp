#include "navigation/DataSeriesChecker.h"

#include "platform/project/NCProject.h"
#include "selection/SelectDataSeriesData.h"

#include <algorithm>
#include <string_view>

namespace DataSeriesUtilities {

namespace {

using Checker = DataSeriesChecker;
using Answer = Checker::VectorTypeStruct;
using Vector = ProjectVector;

bool IsOfBatches(Vector const &vector) {
    switch (vector.GetNumberType()) {
    case Vector::NumberBatch:
    case Vector::NumberBatchXVariable:
    case Vector::NumberBatchYVariable:
    case Vector::NumberBatchComponentRange:
    case Vector::NumberBatchIndexOnly:
        return true;
    default:
        return false;
    }
}

bool HasBatches(NCDataContainerBase const &data) {
    ProjectPtr const project = data.GetProject();
    return project && project->GetObservations().GetBatchID(data.GetObservationAliases()) != 0;
}

void MergeComponent(int component, Answer &type) {
    bool const fits = type.SeriesKind == Checker::KindNone ||
                      (type.SeriesKind == Checker::KindComponent && (type.ComponentMask & ~component) == 0);
    type.SeriesKind = fits ? Checker::KindComponent : Checker::KindMixed;
    if (fits)
        type.ComponentMask = component;
}

void MergeKind(Checker::Kind kind, Answer &type) {
    bool const fits = type.SeriesKind == Checker::KindNone || type.SeriesKind == kind;
    type.SeriesKind = fits ? kind : Checker::KindMixed;
}

void MergeNumber(ProjectVectorData const &data, Answer &type) {
    Vector const &vector = *data.GetProjectVector();
    switch (vector.GetNumberType()) {
    case Vector::NumberXVariable:
    case Vector::NumberXAndYVariable:
    case Vector::NumberBatchXVariable:
        return MergeKind(Checker::KindXVariable, type);
    case Vector::NumberObsOrVar:
        if (vector.GetType() == Vector::VectorTypeVariablesScores)
            return MergeKind(Checker::KindVariable, type);
        if (vector.GetType() == Vector::VectorTypeObservationsLoadings)
            return MergeKind(Checker::KindObservation, type);
        type.SeriesKind = Checker::KindMixed;
        return;
    case Vector::NumberYVariable:
        return MergeKind(Checker::KindYVariable, type);
    case Vector::NumberBatchYVariable:
        // Unlike a Y variable without batch it gives way to what is there.
        if (type.SeriesKind == Checker::KindNone)
            type.SeriesKind = Checker::KindYVariable;
        return;
    default:
        if (data.IsYVarContribution())
            type.SeriesKind = Checker::KindYVariable;
        else if (vector.HasOneComponent())
            MergeComponent(vector.GetComponentType(), type);
    }
}

void AddIfAbsent(int component, std::vector<int> &components) {
    if (std::find(components.begin(), components.end(), component) == components.end())
        components.push_back(component);
}

// The vector starts a contribution to scores or to predicted responses.
bool HasScores(Vector const *vector) {
    return vector && (vector->GetContributionSource() == 1 || vector->GetContributionSource() == 2);
}

// The components that the specification names, or all `count` of them where it is about T2 of a whole model.
void AddStored(ProjectVectorData const &data, Vector::ComponentType kind, char const *withoutComponents, int count,
               std::vector<int> &components) {
    std::string_view const name = data.GetProjectVector()->GetName();
    if (data.GetProjectVector()->GetComponentType() == kind) {
        if (name != withoutComponents)
            AddIfAbsent(data.GetComponent(kind, false), components);
    } else if (name == "T2Range" || name == "T2RangePS") {
        for (int component = 1; component <= count; ++component)
            components.push_back(component);
    }
}

// The number of a pair, or the last component of its kind where it is not set.
int OfPair(ProjectVectorData const &data, std::uint32_t number, int which) {
    static ModelInfo const none;
    ModelInfo const *const model = data.GetModelInfo();
    return number == ProjectVectorData::NotSet
               ? Vector::SelectMaxComponents(data.GetProjectVector()->GetDoubleCompComponentType(which),
                                             model ? *model : none)
               : static_cast<int>(number);
}

} // namespace

void DataSeriesChecker::GetDataSeriesType(SelectDataSeriesData const *selection, VectorTypeStruct &type) const {
    type.SeriesKind = KindNone;
    type.ComponentMask = 0;
    boost::shared_ptr<NCProject> const project = selection->GetProject();
    int const axes = m_parts & static_cast<int>(selection->GetMode()); // whose bits are the same
    if ((axes & CheckXAxis) != 0)
        GetProjectDataType(project, selection->GetXAxis(), type);
    if ((axes & CheckYAxis) != 0)
        GetProjectDataType(project, selection->GetYAxis(), type);
    if ((m_parts & CheckSeries) != 0)
        for (int series = 1; series <= selection->NumberOfSeries(); ++series)
            GetProjectDataType(project, selection->GetSeries(series), type);
}

void DataSeriesChecker::GetProjectDataType(ProjectPtr project, ProjectVectorData const &data,
                                           VectorTypeStruct &type) const {
    Vector const *const vector = data.GetProjectVector();
    if (!vector)
        return;
    if (IsOfBatches(*vector)) {
        type.IsBatchData = true;
    } else if (!type.IsBatchData && !vector->IsNumVector() && vector->GetType() == Vector::VectorTypeVariablesScores &&
               project) {
        m_source = data.GetDataSource(*project);
        type.IsBatchData = m_source && HasBatches(*m_source);
    }
    if (vector->HasOneComponent() && !vector->PredictiveComponentDefaultsToLast()) {
        MergeComponent(vector->GetComponentType(), type);
        if (vector->GetComponentType() != Vector::ComponentOSC) // which may have a number beside it
            return;
    }
    MergeNumber(data, type);
    if (type.ComponentMask == 0)
        type.ComponentMask = vector->GetComponentType();
}

void AddPredictiveComponents(ProjectVectorData const &data, std::vector<int> &components) {
    Vector const *const vector = data.GetProjectVector();
    if (!HasScores(vector))
        return;
    if (vector->GetNumberType() == Vector::NumberComponentRange ||
        vector->GetNumberType() == Vector::NumberBatchComponentRange) {
        auto const [first, last] =
            std::minmax({OfPair(data, data.GetNumberID(), 1), OfPair(data, data.GetNumberID2(nullptr, false), 2)});
        for (int component = first; component <= last; ++component)
            AddIfAbsent(component, components);
        return;
    }
    ModelInfo const *const model = data.GetModelInfo();
    AddStored(data, Vector::ComponentPredictive, "u", model ? model->SizePredictiveComponents() : 0, components);
}

void AddOrthogonalComponents(ProjectVectorData const &data, std::vector<int> &components) {
    if (!HasScores(data.GetProjectVector()))
        return;
    ModelInfo const *const model = data.GetModelInfo();
    AddStored(data, Vector::ComponentXSideOrthogonal, "uo", model ? model->SizeXSideOrthogonalComponents() : 0,
              components);
}

} // namespace DataSeriesUtilities
