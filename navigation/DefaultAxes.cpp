#include "navigation/DefaultAxes.h"

#include "catalogue/ProjectVectorHandler.h"
#include "platform/project/NCProject.h"
#include "selection/SelectDataSeriesData.h"

#include <algorithm>

namespace DataSeriesUtilities {

namespace {

using Vector = ProjectVector;

bool IsPredicted(ProjectVectorData const &series) {
    return series.GetProjectVector() && series.GetProjectVector()->GetObsPredType() == Vector::Predicted;
}

// Where a vector for the axis of the series would read from.
Vector::DataTypeEnum SourceTypeOf(ProjectVectorData const &series) {
    return series.GetModelInfo() ? Vector::DataTypeModel
           : IsPredicted(series) ? Vector::DataTypePredictionSet
                                 : Vector::DataTypeDataSet;
}

// The series with another vector, or the counting row without one.
ProjectVectorData AxisOf(ProjectVectorData const &series, Vector const *vector, Vector::VectorTypeEnum type,
                         std::uint32_t number) {
    ProjectVectorData axis;
    axis.SetProjectVector(vector ? vector : ProjectVectorHandler::Instance()->GetNumVector(type));
    if (series.GetModelInfo())
        axis.SetModelInfoPtr(series.GetModelInfoPtr());
    else
        axis.SetDataSet(series.GetDataSet());
    axis.SetNumber(number);
    return axis;
}

boost::shared_ptr<NCDataContainerBase const> DataOf(SelectDataSeriesData const &selection,
                                                    ProjectVectorData const &series) {
    boost::shared_ptr<NCProject> const project = selection.GetProject();
    return project && series.GetProjectVector() ? series.GetDataSource(*project) : nullptr;
}

// The time of its rows, by the number of the default time variable; null when they have none.
Vector const *TimeOf(ProjectVectorData const &series) {
    bool const predicted = IsPredicted(series);
    if (series.GetModelInfo())
        return series.GetModelInfo()->hasDateTime ? GetTimeVector(predicted) : nullptr;
    return ProjectVectorHandler::Instance()->FindVector(
        predicted ? "VarPS" : "VarDS", Vector::VectorTypeVariablesScores, SourceTypeOf(series), nullptr);
}

// The first identifier of its variables that is a number; 0 when there is none.
int NumeralAlias(NCDataContainerBase const &data) {
    AliasAccess const aliases = data.GetVariableAliases();
    std::vector<int> const &used = aliases.GetUsedAliases();
    auto const found = std::ranges::find_if(used, [&](int alias) { return aliases.IsAliasNumeral(alias); });
    return found == used.end() ? 0 : *found;
}

template <typename Changed>
void ChangeAll(SelectDataSeriesData &selection, int model, bool (Vector::*isOfKind)() const, Changed changed) {
    auto const isMeant = [&](ProjectVectorData const &data) {
        return data.GetProjectVector() && (data.GetProjectVector()->*isOfKind)() && data.GetModelInfo() &&
               data.GetModelInfo()->number == model;
    };
    if ((selection.GetMode() & SelectDataSeriesData::AxisX) != 0 && isMeant(selection.GetXAxis()))
        selection.SetXAxis(changed(selection.GetXAxis()));
    if ((selection.GetMode() & SelectDataSeriesData::AxisY) != 0 && isMeant(selection.GetYAxis()))
        selection.SetYAxis(changed(selection.GetYAxis()));
    for (int position = 1; position <= selection.NumberOfSeries(); ++position)
        if (isMeant(selection.GetSeries(position)))
            selection.SetSeries(position, changed(selection.GetSeries(position)));
}

} // namespace

ProjectVector const *GetTimeVector(bool predicted) {
    return ProjectVectorHandler::Instance()->FindVector(
        predicted ? "Date/Time-PS" : "Date/Time", Vector::VectorTypeVariablesScores, Vector::DataTypeModel, nullptr);
}

void SetDefaultScoreNumAxis(SelectDataSeriesData *selection, ProjectVectorData const &series) {
    if ((selection->GetMode() & SelectDataSeriesData::AxisX) == 0)
        return;
    auto const data = DataOf(*selection, series);
    VariableInfo const *const time = data ? data->GetProject()->GetVariables().GetDefaultTimeVariable() : nullptr;
    bool const hasTime = time && std::ranges::count(data->GetVariables(), time->GetUniqueID()) > 0;
    Vector const *const vector = hasTime ? TimeOf(series) : nullptr;
    selection->SetXAxis(AxisOf(series, vector, Vector::VectorTypeVariablesScores,
                               vector ? time->GetUniqueID() : ProjectVectorData::NotSet));
}

void SetDefaultLoadingNumAxis(SelectDataSeriesData *selection, ProjectVectorData const &series) {
    if ((selection->GetMode() & SelectDataSeriesData::AxisX) == 0)
        return;
    auto const data = DataOf(*selection, series);
    int const identifier = data ? NumeralAlias(*data) : 0;
    Vector const *const vector =
        identifier > 0 ? ProjectVectorHandler::Instance()->FindVector("VarID", Vector::VectorTypeObservationsLoadings,
                                                                      SourceTypeOf(series), nullptr)
                       : nullptr;
    selection->SetXAxis(AxisOf(series, vector, Vector::VectorTypeObservationsLoadings,
                               vector ? static_cast<std::uint32_t>(identifier) : ProjectVectorData::NotSet));
}

void SetXVariable(SelectDataSeriesData *selection, int model, int term) {
    ChangeAll(*selection, model, &Vector::IsXVector, [term](ProjectVectorData data) {
        data.SetNumber(static_cast<std::uint32_t>(term));
        return data;
    });
}

void SetSelectedYVariable(SelectDataSeriesData *selection, int model, int term) {
    ChangeAll(*selection, model, &Vector::IsYVector, [term](ProjectVectorData data) {
        if (data.GetProjectVector()->IsXVector())
            data.SetNumberID2(static_cast<std::uint32_t>(term));
        else
            data.SetNumber(static_cast<std::uint32_t>(term));
        return data;
    });
}

} // namespace DataSeriesUtilities
