#pragma once

#include "catalogue/ProjectVector.h"

// Short names for the metadata of a vector, so that a family's file reads as a table.
namespace rows {

constexpr auto Scores = ProjectVector::VectorTypeVariablesScores;
constexpr auto Loadings = ProjectVector::VectorTypeObservationsLoadings;

constexpr auto PerComponent = ProjectVector::VectorTypeComponent;

constexpr auto Model = ProjectVector::DataTypeModel;
constexpr auto DataSet = ProjectVector::DataTypeDataSet;
constexpr auto PredictionSet = ProjectVector::DataTypePredictionSet;

constexpr auto AnyModel = ModelTypeE::Any;
constexpr auto WithY = ModelTypeE::WithY;
constexpr auto AnyOPLS = ModelTypeE::AnyOPLS;
constexpr auto OnlyPCA = ModelTypeE::PCA;
constexpr auto AnyPLS = ModelTypeE::AnyPLS;
constexpr auto WithoutOPLS = ModelTypeE::WithoutOrthogonal;
constexpr auto NoModel = ModelTypeE::None;

constexpr auto NoComponent = ProjectVector::ComponentNone;
constexpr auto Predictive = ProjectVector::ComponentPredictive;
constexpr auto XSide = ProjectVector::ComponentXSideOrthogonal;
constexpr auto YSide = ProjectVector::ComponentYSideOrthogonal;
constexpr auto AllKinds = ProjectVector::ComponentPredictive | ProjectVector::ComponentXSideOrthogonal |
                          ProjectVector::ComponentYSideOrthogonal;

constexpr bool Displayable = true;
constexpr bool Hidden = false;

constexpr int ScoreContribution = 1;
constexpr int ResponseContribution = 2;
constexpr int XDistanceContribution = 3;
constexpr int YDistanceContribution = 4;

// The first component of vectors that take component 0 too, and of those that take none.
constexpr int ComponentZero = 0;
constexpr int NoFirstComponent = -1;

// All observations of a workset or prediction set, instead of those of one batch.
constexpr int AllBatches = -1;

// The significance level that the model has.
constexpr float LevelOfModel = -1.0f;

// The form for OPLS and O2PLS of a statistic that takes a component with other models: it is one of the whole model, so
// that no component is asked for, and needs components unless that of none at all is a statistic too.
template <typename Form>
class WholeModel : public Form {
public:
    WholeModel() {
        this->m_modelType = AnyOPLS;
        this->m_componentType = NoComponent;
    }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return Form::IsValidModel(project, model) && (this->GetFirstComponent() < 1 || model.SizeComponents() > 0);
    }
};

} // namespace rows
