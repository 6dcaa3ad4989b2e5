#include "catalogue/ProjectVectorHandler.h"
#include "platform/project/ModelUtilities.h"
#include "platform/project/NCProject.h"
#include "specification/ProjectVectorData.h"
#include "utilities/DefaultSelection.h"

#include <algorithm>

// What a plot shows when nobody chose.

using ProjectUtilities::DefaultSelection;

namespace {

using Vector = ProjectVector;

// The work of choosing for one record; every step answers whether there is something to show.
class DefaultChoice {
public:
    DefaultChoice(boost::shared_ptr<NCProject> const &project, Vector::VectorTypeEnum vectorType,
                  ProjectVectorData &data, Vector::DataTypeEnum dataType, ModelInfo const *model, int dataset,
                  Vector::ObsOrPredType obsPred)
        : m_project(project), m_vectorType(vectorType), m_data(data), m_dataType(dataType), m_model(model),
          m_dataset(dataset), m_obsPred(obsPred) {}

    bool ForNewRecord() {
        switch (m_vectorType) {
        case Vector::VectorTypeComponent:
            Bind(m_model ? m_model->number : FindDefaultModel(false));
            Take("R2Xcum", Vector::DataTypeModel);
            m_data.SetNumber(1);
            return true;
        case Vector::VectorTypeLag:
            return ChooseLag(m_model);
        case Vector::VectorTypeAligned:
            return ChooseAligned(m_model && m_model->isBatchModel ? m_model->number : FindDefaultModel(true));
        case Vector::VectorTypeBatch:
            return ChooseBatch();
        default:
            break;
        }
        bool const ofModels = (m_dataType & Vector::DataTypeModel) != 0 && m_project->GetNumberOfModels() > 0;
        return ofModels ? ChooseOfModel() : ChooseFirstOfData();
    }

    bool ForUsedRecord() {
        switch (m_vectorType) {
        case Vector::VectorTypeComponent:
            if (m_model)
                Bind(m_model->number);
            else if (!m_data.GetModelInfo())
                Bind(FindDefaultModel(false));
            Take("R2Xcum", Vector::DataTypeModel);
            return true;
        case Vector::VectorTypeLag:
            if (!m_model && m_data.GetModelInfo() && m_data.GetModelInfo()->hasLaggedVariables)
                return FinishLag();
            return ChooseLag(m_model);
        case Vector::VectorTypeAligned:
            return ChooseAligned(m_model ? m_model->number : FindDefaultModel(true));
        case Vector::VectorTypeBatch:
            return ChooseBatch();
        default:
            break;
        }
        if ((m_dataType & Vector::DataTypeDataSet) != 0)
            return ChooseCurrentOfData(false);
        if ((m_dataType & Vector::DataTypePredictionSet) != 0)
            return ChooseCurrentOfData(true);
        return IsOverObservations() ? KeepScores() : KeepLoadings();
    }

private:
    bool IsOverObservations() const { return m_vectorType == Vector::VectorTypeVariablesScores; }
    bool WantsObserved() const { return (m_obsPred & Vector::Observed) != 0; }
    bool WantsOnlyPredicted() const { return m_obsPred == Vector::Predicted; }

    void Bind(int model) { m_data.SetModelInfoPtr(m_project->GetModelInfo(model)); }

    void Take(char const *name, Vector::DataTypeEnum data) {
        ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
        ModelInfo const *const model = data == Vector::DataTypeModel ? m_data.GetModelInfoPtr().get() : nullptr;
        auto const found = handler.Find(name, m_vectorType, data, model);
        m_data.SetProjectVector(found == handler.end() ? nullptr : *found);
    }

    // A vector of the bound model, at its first component.
    bool TakeFirstComponent(char const *name) {
        Take(name, Vector::DataTypeModel);
        if (m_data.GetProjectVector())
            m_data.SetComponent(1);
        return true;
    }

    bool TakeWithNumbers(char const *name, Vector::DataTypeEnum data) {
        Take(name, data);
        if (m_data.GetProjectVector())
            m_data.SetDefaultNumberID(DefaultSelection(m_project));
        return true;
    }

    // The active model, else the first of the project's list, that is fitted and, when asked for, of batches; else 0.
    int FindDefaultModel(bool ofBatches) const {
        auto const fits = [&](int model) {
            auto const info = m_project->GetModelInfo(model);
            return info && info->fitted && (!ofBatches || info->isBatchModel);
        };
        if (fits(m_project->GetActiveModelNumber()))
            return m_project->GetActiveModelNumber();
        for (int index = 1; index <= m_project->GetNumberOfModels(); ++index)
            if (fits(m_project->GetModelNumberAt(index)))
                return m_project->GetModelNumberAt(index);
        return 0;
    }

    bool BoundModelHasComponents() const {
        auto const &model = m_data.GetModelInfoPtr();
        return model && ModelUtilities::ModelHasComponents(*m_project, model->number);
    }

    bool FinishLag() {
        Take("pLag", Vector::DataTypeModel);
        m_data.SetNumber(1);
        if (m_data.GetProjectVector())
            m_data.SetComponent(1);
        return true;
    }

    bool ChooseLag(ModelInfo const *model) {
        int const number = model && model->hasLaggedVariables
                               ? model->number
                               : ModelUtilities::GetFirstLaggedModel(*m_project, m_project->GetActiveModelNumber());
        if (number == 0)
            return false;
        Bind(number);
        return FinishLag();
    }

    bool ChooseAligned(int model) {
        Bind(model);
        m_data.batchIx = 1;
        if (BoundModelHasComponents())
            return TakeFirstComponent(WantsObserved() ? "t" : "tPS");
        return TakeWithNumbers(WantsObserved() ? "XVar" : "XVarPS", Vector::DataTypeModel);
    }

    bool ChooseBatch() {
        Bind(m_model ? m_model->number : FindDefaultModel(true));
        if (!BoundModelHasComponents()) {
            m_data.SetProjectVector(ProjectVectorHandler::Instance()->GetNumVector(m_vectorType));
            return true;
        }
        m_data.multiplier1 = 3.0;
        m_data.multiplier2 = -3.0;
        return TakeFirstComponent("TAlignedOOCSum");
    }

    // The first variable or observation of the prediction set or a data set.
    bool ChooseFirstOfData() {
        bool const predicted = m_dataType == Vector::DataTypePredictionSet;
        boost::shared_ptr<NCDataSet const> const data =
            predicted ? m_project->GetPredSet(-1) : m_project->GetDataSet(m_dataset);
        if (!data)
            return false;
        if (!predicted)
            m_data.SetDataSet(m_dataset);
        Take(IsOverObservations() ? (predicted ? "VarPS" : "VarDS") : (predicted ? "ObsPS" : "ObsDS"),
             predicted ? Vector::DataTypePredictionSet : Vector::DataTypeDataSet);
        if (IsOverObservations() && !data->GetVariables().empty())
            m_data.SetNumber(data->GetVariables().front());
        else if (!IsOverObservations() && !data->GetObservations().empty())
            m_data.SetNumber(data->GetObservations().front().GetUniqueID());
        return true;
    }

    bool ChooseOfModel() {
        int const model = m_model ? m_model->number : FindDefaultModel(false);
        bool const ofPredictionSet = WantsOnlyPredicted() && !IsOverObservations();
        if (model < 1 || (ofPredictionSet && !m_project->GetPredSet(-1)))
            return false;
        Bind(model);
        bool const hasComponents = BoundModelHasComponents();
        if (hasComponents && WantsObserved())
            return TakeFirstComponent(IsOverObservations() ? "t" : "p");
        if (hasComponents && (m_obsPred & Vector::Predicted) != 0 && IsOverObservations())
            return TakeFirstComponent("tPS");
        if (IsOverObservations())
            return TakeWithNumbers(WantsOnlyPredicted() ? "XVarPS" : "XVar", Vector::DataTypeModel);
        return ofPredictionSet ? TakeWithNumbers("ObsPS", Vector::DataTypePredictionSet)
                               : TakeWithNumbers("XObs", Vector::DataTypeModel);
    }

    // The project's current variable or observation of the prediction set or a data set.
    bool ChooseCurrentOfData(bool predicted) {
        DefaultSelection const defaults(m_project);
        int const dataset = predicted ? 0 : m_dataset;
        m_data.SetNumber(IsOverObservations() ? defaults.GetDefaultSelectedDatasetVariable(dataset, predicted)
                                              : defaults.GetDefaultSelectedObservation(0, dataset, predicted));
        if (!predicted)
            m_data.SetDataSet(dataset);
        Take(IsOverObservations() ? (predicted ? "VarPS" : "VarDS") : (predicted ? "ObsPS" : "ObsDS"),
             predicted ? Vector::DataTypePredictionSet : Vector::DataTypeDataSet);
        return true;
    }

    bool KeepScores() {
        if (m_model) {
            Bind(m_model->number);
        } else if (!m_data.GetModelInfo()) {
            int const model = FindDefaultModel(false);
            if (model == 0)
                return false;
            Bind(model);
        }
        auto const &info = m_data.GetModelInfoPtr();
        if (info && info->SizeComponents() > 0)
            return TakeFirstComponent(WantsOnlyPredicted() ? "tPS" : "t");
        return TakeWithNumbers(WantsOnlyPredicted() ? "XVarPS" : "XVar", Vector::DataTypeModel);
    }

    bool KeepLoadings() {
        int const model = m_model ? m_model->number : FindDefaultModel(false);
        if (m_dataType != Vector::DataTypeModel || model < 1) {
            m_data.SetDataSet(1);
            Take("ObsDS", Vector::DataTypeDataSet);
            return true;
        }
        Bind(model);
        auto const &info = m_data.GetModelInfoPtr();
        if (!info || info->SizeComponents() == 0)
            return TakeWithNumbers("XObs", Vector::DataTypeModel);
        Take("p", Vector::DataTypeModel);
        return true;
    }

    boost::shared_ptr<NCProject> m_project;
    Vector::VectorTypeEnum m_vectorType;
    ProjectVectorData &m_data;
    Vector::DataTypeEnum m_dataType;
    ModelInfo const *m_model;
    int m_dataset;
    Vector::ObsOrPredType m_obsPred;
};

} // namespace

bool ProjectVectorData::SetProjectVectorDataDefault(boost::shared_ptr<NCProject> const &project,
                                                    ProjectVector::VectorTypeEnum vectorType, ProjectVectorData &data,
                                                    ProjectVector::DataTypeEnum dataType, ModelInfo const *model,
                                                    int dataset, ProjectVector::ObsOrPredType obsPred) {
    data.m_aliases.reset();
    DefaultChoice choice(project, vectorType, data, dataType, model, dataset, obsPred);
    return data.m_vector ? choice.ForUsedRecord() : choice.ForNewRecord();
}

void ProjectVectorData::SetDefaultNumberID(DefaultSelection const &defaults) {
    boost::shared_ptr<NCProject> const project = defaults.GetProject();
    bool const predicted = Vector().GetObsPredType() == ProjectVector::Predicted;
    bool const ofScores = Vector().GetType() == ProjectVector::VectorTypeVariablesScores;
    ProjectVector::DataTypeEnum const data = Vector().GetDataType();
    int const model = GetModelNumber();

    std::uint32_t x = 1;
    std::uint32_t y = 1;
    int batch = 1;
    if (Vector().IsYVector())
        y = static_cast<std::uint32_t>(defaults.GetDefaultYVarIndex(model));
    if (Vector().IsXVector() && Vector().GetType() != ProjectVector::VectorTypeLag)
        x = static_cast<std::uint32_t>(defaults.GetDefaultXVarIndex(model));
    if (Vector().UseBatchIx()) {
        std::string const name = defaults.GetDefaultSelectedBatch(predicted);
        bool const ofModel = data == ProjectVector::DataTypeModel && model >= 1;
        auto const batchModel = boost::dynamic_pointer_cast<NCBatchModel const>(
            ofModel ? project->GetModel(model) : boost::shared_ptr<NCModel const>());
        if (batchModel && !name.empty())
            for (int index = 1; index <= static_cast<int>(batchModel->GetBatchIndexes().size()); ++index)
                if (batchModel->GetBatchName(index) == name)
                    batch = index;
    }

    switch (Vector().GetNumberType()) {
    case ProjectVector::NumberNone:
        m_numberID = 0;
        break;
    case ProjectVector::NumberObsOrVar:
        if (data == ProjectVector::DataTypeModel && ofScores)
            m_numberID = model > 0 ? defaults.GetDefaultSelectedModelVariable(model)
                                   : defaults.GetDefaultSelectedDatasetVariable(0, predicted);
        else if (data == ProjectVector::DataTypeModel)
            m_numberID = defaults.GetDefaultSelectedObservation(model, 0, predicted);
        else if (data == ProjectVector::DataTypePredictionSet)
            m_numberID = ofScores ? defaults.GetDefaultSelectedDatasetVariable(0, true)
                                  : defaults.GetDefaultSelectedObservation(0, 0, true);
        else
            m_numberID = ofScores ? defaults.GetDefaultSelectedDatasetVariable(m_dataset, false)
                                  : defaults.GetDefaultSelectedObservation(0, m_dataset, false);
        break;
    case ProjectVector::NumberYVariable:
    case ProjectVector::NumberXVariable:
        // These follow the defaults.
        m_numberID = NotSet;
        break;
    case ProjectVector::NumberXAndYVariable:
        m_numberID = NotSet;
        m_numberID2 = y;
        break;
    case ProjectVector::NumberComponentRange:
        m_numberID = 1;
        m_numberID2 = 2;
        break;
    case ProjectVector::NumberBatch:
        batchIx = batch;
        m_numberID = 1;
        break;
    case ProjectVector::NumberBatchXVariable:
        batchIx = batch;
        m_numberID = x;
        break;
    case ProjectVector::NumberBatchYVariable:
        batchIx = batch;
        m_numberID = y;
        break;
    case ProjectVector::NumberBatchVIPPhase:
        batchIx = batch;
        m_numberID = y;
        m_numberID2 = 1;
        break;
    case ProjectVector::NumberBatchComponentRange:
        batchIx = batch;
        m_numberID = 1;
        m_numberID2 = 2;
        break;
    case ProjectVector::NumberIdentifier: {
        m_numberID = NotSet;
        AliasAccess const &aliases = GetUsedAliases(*project);
        auto const &used = aliases.GetUsedAliases();
        auto const found =
            std::find_if(used.begin(), used.end(), [&](int alias) { return aliases.IsAliasNumeral(alias); });
        if (found != used.end())
            m_numberID = static_cast<std::uint32_t>(*found);
        break;
    }
    case ProjectVector::NumberBatchVIPSecond:
        batchIx = batch;
        m_numberID = 1;
        m_numberID2 = 1;
        break;
    default:
        break;
    }
}
