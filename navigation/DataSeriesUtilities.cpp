#include "navigation/DataSeriesUtilities.h"

#include "platform/containers/ColumnPick_internal.h"
#include "platform/containers/Missing.h"
#include "platform/project/GetProjectData.h"
#include "platform/project/NCProject.h"
#include "selection/SelectDataSeriesData.h"

#include <algorithm>
#include <cstring>

namespace DataSeriesUtilities {

namespace {

template <typename Predicate>
bool HasVariable(NCDataContainerBase const &data, Predicate predicate) {
    ProjectPtr const project = data.GetProject();
    return project && std::ranges::any_of(data.GetVariables(), [&](std::uint32_t variable) {
               return predicate(project->GetVariables()[variable]);
           });
}

} // namespace

bool IsTimeVector(ProjectVector const *vector) {
    return vector &&
           (std::strcmp(vector->GetName(), "Date/Time") == 0 || std::strcmp(vector->GetName(), "Date/Time-PS") == 0);
}

ArgumentType GetProjectDataArgumentType(ProjectVectorData const &data) {
    ProjectVector const *const vector = data.GetProjectVector();
    if (!vector)
        return NoArgument;
    if (IsTimeVector(vector) || vector->IsXVector() || vector->IsYVector())
        return VariableArgument;
    if (vector->GetNumberType() == ProjectVector::NumberObsOrVar)
        return vector->GetType() == ProjectVector::VectorTypeVariablesScores ? VariableArgument : ObservationArgument;
    return vector->IsContribution() ? VariableArgument : NoArgument;
}

ArgumentType GetVectorArgumentType(SelectDataSeriesData const *selection) {
    ArgumentType type = NoArgument;
    // The X axis speaks for both axes.
    if (selection->GetMode() != SelectDataSeriesData::Normal)
        type = GetProjectDataArgumentType(selection->GetXAxis());
    for (int series = 1; type == NoArgument && series <= selection->NumberOfSeries(); ++series)
        type = GetProjectDataArgumentType(selection->GetSeries(series));
    return type;
}

boost::shared_ptr<NCDataContainerBase const> GetDataSource(SelectDataSeriesData const *selection) {
    boost::shared_ptr<NCProject> const project = selection->GetProject();
    boost::shared_ptr<NCDataContainerBase const> source;
    if (project)
        for (ProjectVectorData const *const data : selection->VectorsInUse())
            if (!source && data->GetProjectVector() && !data->GetProjectVector()->IsNumVector())
                source = data->GetDataSource(*project);
    return source;
}

bool HasBatchLevelVariables(NCDataContainerBase const &data) {
    return HasVariable(data, [](VariableInfo const &variable) { return !IsMissing(variable.GetMaturity()); });
}

bool HasDateTimeVariables(NCDataContainerBase const &data) {
    return HasVariable(data, [](VariableInfo const &variable) { return variable.dateTime; });
}

ColumnIDs::Positions GetSelectedPositions(BoolVector const &selected) {
    return ColumnPick(selected).ToPositions();
}

std::unique_ptr<ColumnIDs> GetSelectedColumnIDs(ColumnIDs const *columns, BoolVector const &selected) {
    ColumnIDs::Positions const kept = GetSelectedPositions(selected);
    if (!columns || columns->Size() == 0 || kept.empty() || kept[1] > columns->Size())
        return nullptr;
    auto reduced = std::make_unique<ColumnIDs>(*columns);
    if (kept.Size() < columns->Size())
        reduced->Reduce(kept);
    return reduced;
}

double GetR2XSS(ProjectVectorData const &data, ProjectPtr const &project) {
    ProjectVector const *const vector = data.GetProjectVector();
    ModelInfo const *const model = data.GetModelInfo();
    if (!vector || !model || !vector->HasOneComponent())
        return 1.0;
    auto const kind = static_cast<ProjectVector::ComponentType>(vector->GetComponentType());
    if (kind == ProjectVector::ComponentOSC)
        return 1.0;
    int column = data.GetComponent(kind, true);
    if (kind != ProjectVector::ComponentPredictive)
        column += model->SizePredictiveComponents();
    bool const isOfY = kind == ProjectVector::ComponentYSideOrthogonal;
    if (isOfY)
        column += model->SizeXSideOrthogonalComponents();
    GetProjectData const read(*project);
    TablePtr const shares = isOfY ? read.GetR2Y(model->number) : read.GetR2X(model->number);
    float const share = shares ? shares->GetMatrix()(1, column, missingValue) : missingValue;
    return IsMissing(share) ? 1.0 : share;
}

} // namespace DataSeriesUtilities
