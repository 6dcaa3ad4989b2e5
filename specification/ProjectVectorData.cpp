#include "specification/ProjectVectorData.h"

#include "platform/project/ModelUtilities.h"
#include "platform/project/NCProject.h"
#include "utilities/DefaultSelection.h"

#include <algorithm>

using ProjectUtilities::DefaultSelection;

ProjectVectorData::ProjectVectorData() = default;
ProjectVectorData::ProjectVectorData(ProjectVectorData const &other) = default;
ProjectVectorData &ProjectVectorData::operator=(ProjectVectorData const &other) = default;
ProjectVectorData::~ProjectVectorData() = default;

ProjectVector const &ProjectVectorData::Vector() const {
    static ProjectVector const none;
    return m_vector ? *m_vector : none;
}

ModelInfo const &ProjectVectorData::Model() const {
    static ModelInfo const none;
    return m_model ? *m_model : none;
}

bool ProjectVectorData::IsPureDataSource() const {
    return Vector().GetDataType() == ProjectVector::DataTypeDataSet ||
           Vector().GetDataType() == ProjectVector::DataTypePredictionSet;
}

bool ProjectVectorData::HasComponents() const {
    return !IsPureDataSource() && m_dataset == 0 && m_model;
}

int ProjectVectorData::GetModelNumber() const {
    ModelInfo const *const model = GetModelInfo();
    return model ? model->number : 0;
}

bool ProjectVectorData::operator==(ProjectVectorData const &other) const {
    if (m_vector != other.m_vector)
        return false;
    if (!m_vector)
        return true;
    if (HasComponents()) {
        if (other.m_dataset != 0 || !other.m_model || other.m_model->number != m_model->number)
            return false;
    } else if (m_dataset > 0 && other.m_dataset != m_dataset) {
        return false;
    }
    int const kinds = Vector().GetComponentType();
    if (((kinds & ProjectVector::ComponentPredictive) && m_predictiveComponent != other.m_predictiveComponent) ||
        ((kinds & ProjectVector::ComponentXSideOrthogonal) && m_xSideComponent != other.m_xSideComponent) ||
        ((kinds & ProjectVector::ComponentYSideOrthogonal) && m_ySideComponent != other.m_ySideComponent) ||
        ((kinds & ProjectVector::ComponentOSC) && oscComponent != other.oscComponent))
        return false;
    bool number = false;
    bool number2 = false;
    switch (Vector().GetNumberType()) {
    case ProjectVector::NumberObsOrVar:
    case ProjectVector::NumberYVariable:
    case ProjectVector::NumberXVariable:
    case ProjectVector::NumberBatchXVariable:
    case ProjectVector::NumberBatchYVariable:
    case ProjectVector::NumberBatchVIPPhase:
    case ProjectVector::NumberBatchIndexOnly:
        number = true;
        break;
    case ProjectVector::NumberXAndYVariable:
    case ProjectVector::NumberComponentRange:
    case ProjectVector::NumberBatchComponentRange:
    case ProjectVector::NumberBatchVIPSecond:
        number = true;
        number2 = true;
        break;
    default:
        break;
    }
    return (!number || m_numberID == other.m_numberID) && (!number2 || m_numberID2 == other.m_numberID2) &&
           (!Vector().UseBatchIx() || batchIx == other.batchIx);
}

void ProjectVectorData::SetProjectVector(ProjectVector const *vector) {
    m_vector = vector;
    m_aliases.reset();
}

ModelInfo const *ProjectVectorData::GetModelInfo() const {
    return IsPureDataSource() || m_dataset != 0 ? nullptr : m_model.get();
}

void ProjectVectorData::SetModelInfoPtr(boost::shared_ptr<ModelInfo const> const &model) {
    m_model = model;
    m_dataset = 0;
    m_aliases.reset();
}

void ProjectVectorData::SetDataSet(int dataset) {
    m_dataset = dataset;
    m_aliases.reset();
}

boost::shared_ptr<NCDataContainerBase const> ProjectVectorData::GetDataSource(NCProject const &project) const {
    if (Vector().GetDataType() == ProjectVector::DataTypePredictionSet)
        return project.GetPredSet(-1);
    if (m_dataset != 0)
        return project.GetDataSet(m_dataset);
    if (!m_model)
        return {};
    if (Vector().GetObsPredType() == ProjectVector::Predicted)
        return project.GetModelPredSet(m_model->number);
    return project.GetWorkset(m_model->number);
}

void ProjectVectorData::SetComponent(ProjectVector::ComponentType kind, int component) {
    switch (kind) {
    case ProjectVector::ComponentPredictive:
        m_predictiveComponent = component;
        break;
    case ProjectVector::ComponentXSideOrthogonal:
        m_xSideComponent = component;
        break;
    case ProjectVector::ComponentYSideOrthogonal:
        m_ySideComponent = component;
        break;
    case ProjectVector::ComponentOSC:
        oscComponent = component;
        break;
    default:
        break;
    }
}

void ProjectVectorData::SetComponent(int component) {
    SetComponent(static_cast<ProjectVector::ComponentType>(Vector().GetComponentType()), component);
}

int ProjectVectorData::Resolved(int component, bool resolve, int (ModelInfo::*last)() const) const {
    if (!HasComponents())
        return 1;
    return resolve && component == -1 ? (Model().*last)() : component;
}

int ProjectVectorData::GetPredComponent(bool resolve) const {
    return Resolved(m_predictiveComponent, resolve, &ModelInfo::SizeComponents);
}

int ProjectVectorData::GetXSideOrthoComponent(bool resolve) const {
    return Resolved(m_xSideComponent, resolve, &ModelInfo::SizeXSideOrthogonalComponents);
}

int ProjectVectorData::GetYSideOrthoComponent(bool resolve) const {
    return Resolved(m_ySideComponent, resolve, &ModelInfo::SizeYSideOrthogonalComponents);
}

int ProjectVectorData::GetComponent(ProjectVector::ComponentType kind, bool resolve) const {
    switch (kind) {
    case ProjectVector::ComponentPredictive:
        return GetPredComponent(resolve);
    case ProjectVector::ComponentXSideOrthogonal:
        return GetXSideOrthoComponent(resolve);
    case ProjectVector::ComponentYSideOrthogonal:
        return GetYSideOrthoComponent(resolve);
    case ProjectVector::ComponentOSC:
        return oscComponent;
    default:
        break;
    }
    if (Vector().GetNumberType() != ProjectVector::NumberComponentRange)
        return Model().SizeComponents();
    int const largest = MaxOfPair(2);
    return m_numberID2 == NotSet ? largest : std::min(largest, static_cast<int>(m_numberID2));
}

int ProjectVectorData::GetComponent(bool resolve) const {
    return GetComponent(static_cast<ProjectVector::ComponentType>(Vector().GetComponentType()), resolve);
}

int ProjectVectorData::MaxOfPair(int which) const {
    return ProjectVector::SelectMaxComponents(Vector().GetDoubleCompComponentType(which), Model());
}

int ProjectVectorData::GetNumberIDComponent() const {
    int const number = static_cast<int>(m_numberID);
    if (Vector().GetNumberType() == ProjectVector::NumberComponentRange ||
        Vector().GetNumberType() == ProjectVector::NumberBatchComponentRange)
        return number == -1 || number == -2 ? Vector().GetFirstComponent() : number;
    return number == -1 ? Model().SizeComponents() : number;
}

int ProjectVectorData::GetNumberID2Component() const {
    return m_numberID2 == NotSet ? Model().SizeComponents() : static_cast<int>(m_numberID2);
}

int ProjectVectorData::GetMaxComponents(ProjectPtr const &project, ProjectVector::ComponentType kind) const {
    switch (kind) {
    case ProjectVector::ComponentPredictive:
        return Model().SizeComponents();
    case ProjectVector::ComponentXSideOrthogonal:
        return Model().SizeXSideOrthogonalComponents();
    case ProjectVector::ComponentYSideOrthogonal:
        return Model().SizeYSideOrthogonalComponents();
    case ProjectVector::ComponentOSC:
        return project ? ModelUtilities::NumberOfOSCComponents(*project, m_dataset) : 0;
    default:
        return 1;
    }
}

int ProjectVectorData::GetMaxComponents(ProjectPtr const &project) const {
    int const kinds = Vector().GetComponentType();
    if (kinds & ProjectVector::ComponentOSC)
        return GetMaxComponents(project, ProjectVector::ComponentOSC);
    if (Vector().HasOneComponent())
        return GetMaxComponents(project, static_cast<ProjectVector::ComponentType>(kinds));
    if (Vector().IsT2RangeVector() || (Vector().GetNumberType() & 5) != 0)
        return IsModelBased() ? Model().SizeComponents() : 0;
    return kinds == ProjectVector::ComponentNone
               ? -1
               : GetMaxComponents(project, static_cast<ProjectVector::ComponentType>(kinds));
}

std::uint32_t ProjectVectorData::DefaultNumber(DefaultSelection const &defaults) const {
    bool const predicted = Vector().GetObsPredType() == ProjectVector::Predicted;
    bool const ofScores = Vector().GetType() == ProjectVector::VectorTypeVariablesScores;
    int const model = GetModelNumber();
    if (Vector().IsXVector())
        return Vector().GetType() == ProjectVector::VectorTypeLag
                   ? 1
                   : static_cast<std::uint32_t>(defaults.GetDefaultXVarIndex(model));
    if (Vector().IsYVector())
        return static_cast<std::uint32_t>(defaults.GetDefaultYVarIndex(model));
    if (Vector().GetNumberType() != ProjectVector::NumberObsOrVar)
        return NotSet;
    if (ofScores)
        return model >= 1 ? defaults.GetDefaultSelectedModelVariable(model)
                          : defaults.GetDefaultSelectedDatasetVariable(m_dataset, predicted);
    return defaults.GetDefaultSelectedObservation(model, m_dataset, predicted);
}

std::uint32_t ProjectVectorData::GetNumber(DefaultSelection const *defaults) const {
    switch (Vector().GetNumberType()) {
    case ProjectVector::NumberNone:
    case ProjectVector::NumberBatch:
        return 0;
    case ProjectVector::NumberComponentRange:
    case ProjectVector::NumberBatchComponentRange:
        return m_numberID == NotSet ? static_cast<std::uint32_t>(Vector().GetFirstComponent()) : m_numberID;
    case ProjectVector::NumberIdentifier: {
        if (!defaults || m_numberID != NotSet)
            return m_numberID;
        AliasAccess const &aliases = GetUsedAliases(*defaults->GetProject());
        for (int const alias : aliases.GetUsedAliases())
            if (aliases.IsAliasNumeral(alias))
                return static_cast<std::uint32_t>(alias);
        return 1;
    }
    default:
        return m_numberID != NotSet || !defaults ? m_numberID : DefaultNumber(*defaults);
    }
}

std::uint32_t ProjectVectorData::GetNumberID2(DefaultSelection const *defaults, bool resolve) const {
    if (!resolve)
        return m_numberID2;
    switch (Vector().GetNumberType()) {
    case ProjectVector::NumberComponentRange:
    case ProjectVector::NumberBatchComponentRange: {
        int const largest = MaxOfPair(2);
        int const number = static_cast<int>(m_numberID2);
        return static_cast<std::uint32_t>(number == -1 || number == -2 ? largest : std::min(largest, number));
    }
    case ProjectVector::NumberXAndYVariable:
        if (m_numberID2 != NotSet)
            return m_numberID2;
        return defaults ? static_cast<std::uint32_t>(defaults->GetDefaultYVarIndex(GetModelNumber())) : 1;
    case ProjectVector::NumberBatchVIPPhase:
    case ProjectVector::NumberBatchVIPSecond:
        return m_numberID2;
    default:
        return 0;
    }
}

int ProjectVectorData::GetYVar(DefaultSelection const &defaults) const {
    return m_yVar == -1 ? defaults.GetDefaultYVarIndex(GetModelNumber()) : m_yVar;
}

void ProjectVectorData::SetWeightType(ContributionWeightEnum::WeightType weight) {
    m_weightType = weight;
    m_weights.clear();
}

void ProjectVectorData::SetWeightComp(std::vector<int> const &components) {
    m_components = components;
    m_weights.clear();
}

void ProjectVectorData::SetContributionWeight(WeightTypes const &weights, std::vector<int> const &components) {
    m_weightType = ContributionWeightEnum::FromWeightTypeE(weights);
    m_weights = weights;
    m_components = components;
}

bool ProjectVectorData::IsYVarContribution() const {
    return Vector().IsContribution() &&
           (m_weightType == ContributionWeightEnum::CoeffCS || m_weightType == ContributionWeightEnum::CoeffCSRaw);
}

AliasAccess const &ProjectVectorData::GetUsedAliases(NCProject const &project) const {
    if (m_aliases)
        return *m_aliases;
    bool const ofScores = Vector().GetType() == ProjectVector::VectorTypeVariablesScores;
    bool const ofLoadings = Vector().GetType() == ProjectVector::VectorTypeObservationsLoadings;
    // Values are about the items of the other axis, identifiers about those of their own.
    bool const ofVariables = ofScores != (Vector().GetNumberType() == ProjectVector::NumberIdentifier);
    boost::shared_ptr<NCDataContainerBase const> source;
    if (ofScores || ofLoadings) {
        if (Vector().GetDataType() == ProjectVector::DataTypePredictionSet)
            source = project.GetPredSet(-1);
        else if (m_dataset >= 1)
            source = project.GetDataSet(m_dataset);
        else if (m_model)
            source = project.GetWorkset(m_model->number);
    }
    if (source)
        m_aliases = ofVariables ? source->GetVariableAliases() : source->GetObservationAliases();
    else
        m_aliases.emplace(std::vector<int>(), project.GetObservations());
    return *m_aliases;
}
