#pragma once

#include "catalogue/ProjectVectorHandler.h"
#include "platform/project/ModelInfo.h"
#include "platform/project/NCProject.h"

#include <string>
#include <string_view>

// What a walk over all statistics of the registry asks of each.
namespace walk {

// Whether the model has components of each kind that the vector is indexed by.
inline bool HasComponents(ProjectVector const &vector, ModelInfo const &info) {
    for (int const kind : {vector.HasOneComponent() ? vector.GetComponentType() : 0,
                           int{vector.GetDoubleCompComponentType(1)}, int{vector.GetDoubleCompComponentType(2)}})
        if (kind != 0 && ProjectVector::SelectMaxComponents(ProjectVector::ComponentType(kind), info) == 0)
            return false;
    return true;
}

// The first of each thing that the vector takes; pairs and ranges end at the last predictive component,
// multipliers are 1 and -1.
// Corrections are those of data set 2. `newObservation` is the number of the first observation of the prediction set.
inline std::string ArgumentsOf(ProjectVector const &vector, ModelInfo const *info, int newObservation) {
    bool const isNew = vector.GetNumberType() == ProjectVector::NumberObsOrVar &&
                       vector.GetType() == ProjectVector::VectorTypeObservationsLoadings &&
                       vector.GetObsPredType() == ProjectVector::Predicted;
    bool const allKinds =
        vector.GetComponentType() == (ProjectVector::ComponentPredictive | ProjectVector::ComponentXSideOrthogonal |
                                      ProjectVector::ComponentYSideOrthogonal);
    bool const isOfData = (vector.GetDataType() & ProjectVector::DataTypeDataSet) != 0;
    bool const isOfCorrection = vector.GetComponentType() == ProjectVector::ComponentOSC;
    std::string text = info ? "M" + std::to_string(info->number) : isOfCorrection ? "DS2" : isOfData ? "DS1" : "PS";
    text += std::string(allKinds ? ",1,1,1," : ",1,") + std::to_string(isNew ? newObservation : 1) + ",1";
    if (vector.UseUnscalingTransform())
        text += ",1,1";
    // Of a pair or range; a phase or response is the first.
    bool const isComponent = vector.GetNumberType() == ProjectVector::NumberComponentRange ||
                             vector.GetNumberType() == ProjectVector::NumberBatchComponentRange;
    if (vector.UseNumberID2())
        text += "," + std::to_string(info && isComponent ? info->predictiveComponents : 1);
    if (vector.IsContribution()) // in standard deviations, the first observation against the second, or the first point
        text += vector.IsAlignedContribution() ? ",1,0,0,0,0,1" : ",1,0,0,1,2,1,1,0,1";
    if (vector.IsImpulseResponseVector())
        text += ",0-2";
    return text + (vector.UseBatchIx() ? ",1" : "") + (vector.HasMultiplier() ? ",1,-1" : "");
}

// Statistics of batch projects.
inline bool IsOfBatches(ProjectVector const &vector) {
    std::string_view const name = vector.GetName();
    return vector.UseBatchIx() || vector.GetType() >= ProjectVector::VectorTypeAligned || name == "BatchVIP" ||
           name == "YVarDS" || name == "YVarDSPS" || vector.IsAlignedContribution();
}

// Calls ask(model) for each model that the vector is valid for, and ask(nullptr) for a vector that takes none.
template <typename Ask>
void ForModels(ProjectVector const &vector, ProjectPtr const &project, Ask ask) {
    if (!vector.IsValidProject(project))
        return;
    if (!vector.UseModel())
        return ask(nullptr);
    for (int index = 1; index <= project->GetNumberOfModels(); ++index)
        if (auto const info = project->GetModelInfo(project->GetModelNumberAt(index));
            (vector.GetModelType() & info->type) != 0 && vector.IsValidModel(*project, *info))
            ask(info.get());
}

} // namespace walk
