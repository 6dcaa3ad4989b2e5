#include "platform/project/ModelUtilities.h"
#include "platform/project/NCProject.h"
#include "platform/text/Exception.h"
#include "specification/ProjectVectorData.h"

#include <algorithm>

// Whether a specification still makes sense in its project, and what two of them have in common.

namespace {

// -1 is open, and passes.
bool IsOpenOrIn(std::uint32_t number, int size) {
    return number == ProjectVectorData::NotSet || (number >= 1 && number <= static_cast<std::uint32_t>(size));
}

bool IsAmong(ObservationInfos const &observations, std::uint32_t number) {
    return std::find(observations.begin(), observations.end(), ObservationInfo(number)) != observations.end();
}

bool IsAmong(std::vector<std::uint32_t> const &numbers, std::uint32_t number) {
    return std::find(numbers.begin(), numbers.end(), number) != numbers.end();
}

} // namespace

bool ProjectVectorData::CheckNumberIDs(ProjectPtr const &project) const {
    if (!m_vector || Vector().IsNumVector())
        return true;
    ModelInfo const *const model = GetModelInfo();
    int const xVariables = model ? model->sizeXVariables : 0;
    int const yVariables = model ? model->sizeYVariables : 0;
    // Components are compared as signed numbers, so that open ones pass.
    auto const areUpTo = [this](int limit) {
        return static_cast<int>(m_numberID) <= limit && static_cast<int>(m_numberID2) <= limit;
    };
    switch (Vector().GetNumberType()) {
    case ProjectVector::NumberNone:
        return true;
    case ProjectVector::NumberObsOrVar:
        return CheckObservationOrVariable(project);
    case ProjectVector::NumberYVariable:
        return model && IsOpenOrIn(m_numberID, yVariables);
    case ProjectVector::NumberXVariable:
        return IsOpenOrIn(m_numberID, xVariables);
    case ProjectVector::NumberXAndYVariable:
        return IsOpenOrIn(m_numberID, xVariables) && IsOpenOrIn(m_numberID2, yVariables);
    case ProjectVector::NumberComponentRange:
        return model && areUpTo(ProjectVector::SelectMaxComponents(Vector().GetDoubleCompComponentType(2), *model));
    case ProjectVector::NumberBatch:
        return CheckBatch(project);
    case ProjectVector::NumberBatchXVariable:
        return IsOpenOrIn(m_numberID, xVariables) && CheckBatch(project);
    case ProjectVector::NumberBatchYVariable:
        return IsOpenOrIn(m_numberID, yVariables) && CheckBatch(project);
    case ProjectVector::NumberBatchComponentRange:
        return model && areUpTo(model->SizeComponents()) && CheckBatch(project);
    case ProjectVector::NumberBatchVIPPhase:
    case ProjectVector::NumberBatchVIPSecond:
        return CheckPhase(project);
    case ProjectVector::NumberIdentifier: {
        AliasAccess const &aliases = GetUsedAliases(*project);
        int const alias = static_cast<int>(m_numberID);
        auto const &used = aliases.GetUsedAliases();
        return std::find(used.begin(), used.end(), alias) != used.end() && aliases.IsAliasNumeral(alias);
    }
    default:
        return false;
    }
}

bool ProjectVectorData::CheckObservationOrVariable(ProjectPtr const &project) const {
    if (m_numberID == NotSet)
        return true;
    bool const ofModel = Vector().UseModel();
    bool const predicted = Vector().GetObsPredType() == ProjectVector::Predicted;
    boost::shared_ptr<NCDataContainerBase const> container;
    if (!ofModel && (Vector().GetDataType() & ProjectVector::DataTypeDataSet) != 0)
        container = project->GetDataSet(m_dataset);
    auto const predSet = predicted || !container ? project->GetPredSet(-1) : nullptr;

    if (Vector().GetType() == ProjectVector::VectorTypeObservationsLoadings) {
        if (predicted)
            return predSet && IsAmong(predSet->GetObservations(), m_numberID);
        if (ofModel) {
            auto const model = project->GetModel(GetModelNumber());
            return model && IsAmong(model->GetObservations(), m_numberID);
        }
        if (!container)
            throw NCInternalError("ProjectVectorData::CheckNumberIDs");
        return IsAmong(container->GetObservations(), m_numberID);
    }
    if (Vector().GetType() != ProjectVector::VectorTypeVariablesScores)
        return false;
    if (ofModel && project->GetWorkset(GetModelNumber())) {
        auto const model = project->GetModel(GetModelNumber());
        if (!model)
            return false;
        ColumnTerms const &terms = model->GetXColumnTerms();
        return std::any_of(terms.begin(), terms.end(),
                           [this](ColumnTerm const &term) { return term.GetMotherVariable(1) == m_numberID; });
    }
    if (container)
        return IsAmong(container->GetVariables(), m_numberID);
    return predSet && IsAmong(predSet->GetVariables(), m_numberID);
}

bool ProjectVectorData::CheckBatch(ProjectPtr const &project) const {
    if (!Vector().UseModel())
        return false;
    return CheckBatchID(project, boost::dynamic_pointer_cast<NCBatchModel const>(project->GetModel(GetModelNumber())));
}

bool ProjectVectorData::CheckBatchID(ProjectPtr const &project,
                                     boost::shared_ptr<NCBatchModel const> const &batchModel) const {
    if (!batchModel)
        return false;
    // 0, -1 and -2 are statistics over all batches.
    if (batchIx == 0 || batchIx == -1 || batchIx == -2)
        return true;
    int batches = 0;
    if (batchIx >= 1 && Vector().GetObsPredType() != ProjectVector::Predicted) {
        batches = static_cast<int>(batchModel->GetBatchIndexes().size());
    } else if (batchIx >= 1) {
        auto const predictions = project->GetPredictions(GetModelNumber(), false);
        if (predictions)
            batches = predictions->GetBatchRuns().names.Size();
    }
    return batchIx <= batches;
}

bool ProjectVectorData::CheckPhase(ProjectPtr const &project) const {
    int const source = ModelUtilities::GetBatchLevelSourceDS(*project, GetModelNumber());
    auto const info = source >= 1 ? project->GetDataSetInfo(source) : nullptr;
    return info && m_numberID2 >= 1 && m_numberID2 <= info->GetPhaseInfoVector().size();
}

bool ProjectVectorData::HasSameSource(ProjectVectorData const &other) const {
    if (!HasComponents())
        return !other.HasComponents() && m_dataset == other.m_dataset;
    return other.HasComponents() && m_model->number == other.m_model->number;
}

bool ProjectVectorData::HasEqualBatchArguments(ProjectVectorData const &other) const {
    if (!Vector().UseBatchIx() || !other.Vector().UseBatchIx())
        return true;
    if (Vector().GetObsPredType() != other.Vector().GetObsPredType())
        return false;
    if (HasComponents())
        return HasSameSource(other);
    if (other.HasComponents())
        return false;
    if ((Vector().GetDataType() & ProjectVector::DataTypeDataSet) != 0)
        return (other.Vector().GetDataType() & ProjectVector::DataTypeDataSet) != 0 && m_dataset == other.m_dataset;
    if ((Vector().GetDataType() & ProjectVector::DataTypePredictionSet) != 0)
        return (other.Vector().GetDataType() & ProjectVector::DataTypePredictionSet) != 0;
    return true;
}

bool ProjectVectorData::HasEqualNumberArguments(ProjectVectorData const &other) const {
    ProjectVector const &left = Vector();
    ProjectVector const &right = other.Vector();
    if (left.GetType() != right.GetType())
        return false;
    ProjectVector::NumberType const number = left.GetNumberType();
    ProjectVector::NumberType const otherNumber = right.GetNumberType();
    if (number == ProjectVector::NumberNone)
        return otherNumber == ProjectVector::NumberNone;
    ModelInfo const *const model = GetModelInfo();
    ModelInfo const *const otherModel = other.GetModelInfo();
    bool const sameModel = model && otherModel && model->number == otherModel->number;
    if (left.IsYVector() && !(right.IsYVector() && sameModel))
        return false;
    if (left.IsXVector() && !(right.IsXVector() && sameModel))
        return false;

    if (number == ProjectVector::NumberObsOrVar || number == ProjectVector::NumberBatchIndexOnly) {
        if (model || otherModel) {
            if (!sameModel)
                return false;
        } else if ((left.GetDataType() & ProjectVector::DataTypeDataSet) != 0) {
            if ((right.GetDataType() & ProjectVector::DataTypeDataSet) == 0 || m_dataset != other.m_dataset)
                return false;
        } else if ((left.GetDataType() & ProjectVector::DataTypePredictionSet) != 0 &&
                   (right.GetDataType() & ProjectVector::DataTypePredictionSet) == 0) {
            return false;
        }
        bool const sameSet = left.GetType() != ProjectVector::VectorTypeObservationsLoadings ||
                             left.GetObsPredType() == right.GetObsPredType();
        return sameSet && number == otherNumber;
    }
    if (number == ProjectVector::NumberComponentRange || number == ProjectVector::NumberBatchComponentRange) {
        if (model && otherModel && !sameModel) {
            auto const isUpTo = [&](std::uint32_t value, int which) {
                int const limit =
                    ProjectVector::SelectMaxComponents(left.GetDoubleCompComponentType(which), *otherModel);
                return value == NotSet || static_cast<int>(value) <= limit;
            };
            if (!isUpTo(m_numberID, 1) || !isUpTo(m_numberID2, 2))
                return false;
        }
        return otherNumber == ProjectVector::NumberComponentRange ||
               otherNumber == ProjectVector::NumberBatchComponentRange;
    }
    return number != ProjectVector::NumberIdentifier || otherNumber == ProjectVector::NumberIdentifier;
}

bool ProjectVectorData::HasEqualComponents(ProjectVectorData const &other) const {
    int const kinds = Vector().GetComponentType();
    return ((kinds & ProjectVector::ComponentPredictive) == 0 ||
            GetPredComponent(true) == other.GetPredComponent(true)) &&
           ((kinds & ProjectVector::ComponentXSideOrthogonal) == 0 ||
            GetXSideOrthoComponent(true) == other.GetXSideOrthoComponent(true)) &&
           ((kinds & ProjectVector::ComponentYSideOrthogonal) == 0 ||
            GetYSideOrthoComponent(true) == other.GetYSideOrthoComponent(true));
}

bool ProjectVectorData::IsJoinableData(ProjectVectorData const &other) const {
    if (std::string(Vector().GetName()) != other.Vector().GetName() || !HasSameSource(other))
        return false;
    if (Vector().UseUnscalingTransform() && (unscaled != other.unscaled || backTransformed != other.backTransformed))
        return false;
    ProjectVector::NumberType const number = Vector().GetNumberType();
    if (number == ProjectVector::NumberObsOrVar || (Vector().GetType() == ProjectVector::VectorTypeVariablesScores &&
                                                    other.Vector().GetNumberType() == ProjectVector::NumberXVariable))
        return HasEqualComponents(other);
    if (Vector().GetType() != ProjectVector::VectorTypeAligned || !Vector().UseBatchIx() || !HasEqualComponents(other))
        return false;
    return (number == ProjectVector::NumberNone || m_numberID == other.m_numberID) &&
           (number != ProjectVector::NumberBatchComponentRange || m_numberID2 == other.m_numberID2);
}
