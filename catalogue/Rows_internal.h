#pragma once

#include "catalogue/ProjectVector.h"
#include "platform/text/Translate.h"

// Short names for the metadata of a vector, so that a family's file reads as a table.
namespace rows {

constexpr auto Scores = ProjectVector::VectorTypeVariablesScores;
constexpr auto Loadings = ProjectVector::VectorTypeObservationsLoadings;

constexpr auto PerComponent = ProjectVector::VectorTypeComponent;
constexpr auto PerLag = ProjectVector::VectorTypeLag;
constexpr auto Aligned = ProjectVector::VectorTypeAligned;
constexpr auto PerBatch = ProjectVector::VectorTypeBatch;

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

// What a statistic of a whole OPLS or O2PLS model rests on, as the last lines of its help.
inline std::string AllOfX() {
    return translate("In OPLS and O2PLS it is of the whole model: of all predictive and X-side orthogonal components.");
}
inline std::string LeftOfX() {
    return translate(
        "In OPLS and O2PLS it is of the whole model: what all predictive and X-side orthogonal components\n"
        "leave of X. Both count in its degrees of freedom.");
}
inline std::string ScoresOfX() {
    return translate(
        "In OPLS and O2PLS it is of the whole model: what all predictive and X-side orthogonal components\n"
        "leave of X, and the range of both t and to.");
}
inline std::string Predicting() {
    return translate("In OPLS and O2PLS it is of the whole model: all predictive components predict, after the X-side\n"
                     "orthogonal ones are taken out of X. Y-side orthogonal components predict nothing.");
}
inline std::string LeftOfY() {
    return translate(
        "In OPLS and O2PLS it is of the whole model: what all predictive components leave of Y, the part of\n"
        "Y-side orthogonal components included. X-side orthogonal ones count in its degrees of freedom.");
}
inline std::string Leverage() {
    return translate(
        "In OPLS and O2PLS it is of the whole model: the leverage is by both t and to, and X-side orthogonal\n"
        "components count in the degrees of freedom of the error.");
}
inline std::string Refitted() {
    return translate("In OPLS and O2PLS it is of the whole model: each cross-validation round fits all predictive and\n"
                     "orthogonal components anew.");
}
inline std::string OnAllOfX() {
    return translate(
        "They are of the whole model and multiply X as it is: that orthogonal components are taken out first\n"
        "is part of them.");
}
inline std::string ByLoadings() {
    return translate("In OPLS and O2PLS it is of the whole model, by the loadings p and po in place of the weights w.");
}

// The form for OPLS and O2PLS of a statistic that takes a component with other models: it is one of the whole model, so
// that no component is asked for. Its help tells what it rests on.
template <typename Form, std::string (*restsOn)()>
class OfWholeModel : public Form {
public:
    OfWholeModel() {
        this->m_modelType = AnyOPLS;
        this->m_componentType = NoComponent;
    }
    std::string GetHelpString() const override { return Form::GetHelpString() + "\n" + restsOn(); }
};

// The same of a statistic that needs components, unless that of none at all is a statistic too.
template <typename Form, std::string (*restsOn)()>
class WholeModel : public OfWholeModel<Form, restsOn> {
public:
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return Form::IsValidModel(project, model) && (this->GetFirstComponent() < 1 || model.SizeComponents() > 0);
    }
};

} // namespace rows
