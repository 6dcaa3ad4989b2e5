#include "navigation/ProjectVectorFilter.h"

#include "navigation/DataSeriesUtilities.h"
#include "navigation/VectorForms.h"
#include "platform/project/ModelUtilities.h"
#include "platform/project/NCProject.h"
#include "utilities/ProjectQueries.h"

#include <cstring>

namespace DataSeriesUtilities {

ProjectVectorFilter2::~ProjectVectorFilter2() = default;

DefaultProjectFilter::DefaultProjectFilter(NCProject const &project, int model, int dataset,
                                           ProjectVector::DataTypeEnum dataType,
                                           ProjectVector::ObsOrPredType obsPredType, bool checkScoreLoading,
                                           ProjectVector::ScoreLoadingType scoreLoadingType,
                                           DataSeriesUtilities::CorrCheckType corrCheckType)
    : ObsPredType(obsPredType), CheckScoreLoading(checkScoreLoading), ScoreLoadingType(scoreLoadingType),
      CorrCheckType(corrCheckType), Project(project), Model(model), Dataset(dataset) {
    if ((dataType & ProjectVector::DataTypeModel) != 0 && model > 0) {
        ModelInfoPtr = project.GetModelInfo(model);
        if (ModelInfoPtr)
            ReadModel();
    } else if ((dataType & ProjectVector::DataTypeDataSet) != 0 && dataset >= 1) {
        if (auto const data = project.GetDataSet(dataset))
            ReadData(*data);
        OSCAvailable = ModelUtilities::NumberOfOSCComponents(project, dataset) > 0;
    } else if ((dataType & ProjectVector::DataTypePredictionSet) != 0) {
        if (auto const data = project.GetPredSet(-1))
            ReadData(*data);
    }
}

void DefaultProjectFilter::ReadModel() {
    ModelInfo const &info = *ModelInfoPtr;
    HasValidationRounds = info.crossValidated;
    IsWaveletModel = ProjectUtilities::IsWCSModel(Project, Model);
    IsBatchSource = info.IsBatchLevelModel(Project.shared_from_this());
    IsDateTimeSource = info.hasDateTime;
    NoPredictiveComponents = info.SizePredictiveComponents() == 0;
    NoXSideOrthogonalComponents = info.SizeXSideOrthogonalComponents() == 0;
    NoYSideOrthogonalComponents = info.SizeYSideOrthogonalComponents() == 0;
    HasSeveralComponents = info.SizeComponents() > 1;
}

void DefaultProjectFilter::ReadData(NCDataContainerBase const &data) {
    IsBatchSource = HasBatchLevelVariables(data);
    IsDateTimeSource = HasDateTimeVariables(data);
}

bool DefaultProjectFilter::UseProjectVector(ProjectVector const *vector) const {
    if (!vector)
        return false;
    if (CheckScoreLoading && (ScoreLoadingType & vector->GetScoreLoadingType()) == 0)
        return false;
    if (Dataset == 0 && (ObsPredType & vector->GetObsPredType()) == 0)
        return false;
    if ((!HasValidationRounds && vector->OnlyCrossValidated()) || (IsWaveletModel && vector->IsCenteredAndScaled()))
        return false;
    if (!HasComponentsFor(*vector) || !IsValid(*vector) || !IsOfWantedScale(*vector))
        return false;
    bool const isLocalCentring = std::strcmp(vector->GetName(), "LocalCentering") == 0 ||
                                 std::strcmp(vector->GetName(), "LocalCenteringPS") == 0;
    return !isLocalCentring || HasLocalCentres();
}

bool DefaultProjectFilter::HasComponentsFor(ProjectVector const &vector) const {
    int const kinds = vector.GetComponentType();
    int const first = vector.GetFirstComponent();
    if (NoPredictiveComponents && (((kinds & ProjectVector::ComponentPredictive) != 0 && first != 0) ||
                                   (kinds == ProjectVector::ComponentNone && first > 0)))
        return false;
    if ((kinds & ProjectVector::ComponentOSC) != 0 && !OSCAvailable)
        return false;
    return (!NoXSideOrthogonalComponents || (kinds & ProjectVector::ComponentXSideOrthogonal) == 0 || first == 0) &&
           (!NoYSideOrthogonalComponents || (kinds & ProjectVector::ComponentYSideOrthogonal) == 0 || first == 0);
}

bool DefaultProjectFilter::IsValid(ProjectVector const &vector) const {
    return vector.IsValidProject(Project.shared_from_this()) &&
           (!ModelInfoPtr || (vector.GetDataType() & ProjectVector::DataTypeModel) == 0 ||
            vector.IsValidModel(Project, *ModelInfoPtr)) &&
           (Dataset <= 0 || (vector.GetDataType() & ProjectVector::DataTypeDataSet) == 0 ||
            vector.IsValidDataset(Project, Dataset));
}

bool DefaultProjectFilter::IsOfWantedScale(ProjectVector const &vector) const {
    return CorrCheckType == NoCorrCheck ||
           CorrelationScaleChecker::IsCorrelationScaledVector(vector.GetName()) == (CorrCheckType == OnlyCorrScaled);
}

bool DefaultProjectFilter::HasLocalCentres() const {
    if (Model < 1 || Project.GetLocalCentering().SizeVars() == 0)
        return false;
    auto const model = Project.GetModel(Model);
    return model && model->GetCenterValues().SizeVars() > 0;
}

} // namespace DataSeriesUtilities
