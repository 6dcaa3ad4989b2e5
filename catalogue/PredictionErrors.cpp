#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"

// How sure predictions are: limits, and predictions by cross-validation.

namespace {

using namespace rows;

TablePtr DeliverRound(ProjectVector const &vector, ProjectPtr const &project, char const *args) {
    ValueQuestion<ColumnTerms> const asked(vector, project, args);
    if (asked.model == -1)
        return nullptr;
    auto const &arguments = asked.arguments;
    IntList const components{arguments.component};
    return GetProjectData(*project).GetYPredPSCV(asked.model, arguments.round, asked.items[1],
                                                 static_cast<TriState::State>(arguments.unscaled),
                                                 static_cast<TriState::State>(arguments.backTransformed), &components);
}

class ProjectSerrLVector : public ProjectVector {
public:
    ProjectSerrLVector() {
        Init("SerrL", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("SerrL: Lower limit of the fitted response by its standard error, for the workset.\n"
                         "The error grows with the leverage of the observation. Plot with YPred and SerrU.\n"
                         "In the units of the data set.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetSerrL);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSerrLColumnIDs);
    }
} const serrLVector;

class ProjectO2PLSSerrLVector final : public WholeModel<ProjectSerrLVector, Leverage> {
} const o2PLSSerrLVector;

class ProjectSerrUVector : public ProjectVector {
public:
    ProjectSerrUVector() {
        Init("SerrU", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("SerrU: Upper limit of the fitted response by its standard error, for the workset.\n"
                         "The error grows with the leverage of the observation. Plot with YPred and SerrL.\n"
                         "In the units of the data set.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetSerrU);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSerrUColumnIDs);
    }
} const serrUVector;

class ProjectO2PLSSerrUVector final : public WholeModel<ProjectSerrUVector, Leverage> {
} const o2PLSSerrUVector;

class ProjectSerrLPSVector : public ProjectVector {
public:
    ProjectSerrLPSVector() {
        Init("SerrLPS", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "SerrLPS: Lower limit of the predicted response by its standard error, for the prediction set.\n"
            "It takes in the scatter of a single new observation. Plot with YPredPS and SerrUPS.\n"
            "In the units of the data set.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetSerrLPS,
                           TriState::Undefined, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSerrLPSColumnIDs);
    }
} const serrLPSVector;

class ProjectO2PLSSerrLPSVector final : public WholeModel<ProjectSerrLPSVector, Leverage> {
} const o2PLSSerrLPSVector;

class ProjectSerrUPSVector : public ProjectVector {
public:
    ProjectSerrUPSVector() {
        Init("SerrUPS", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "SerrUPS: Upper limit of the predicted response by its standard error, for the prediction set.\n"
            "It takes in the scatter of a single new observation. Plot with YPredPS and SerrLPS.\n"
            "In the units of the data set.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetSerrUPS,
                           TriState::Undefined, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSerrUPSColumnIDs);
    }
} const serrUPSVector;

class ProjectO2PLSSerrUPSVector final : public WholeModel<ProjectSerrUPSVector, Leverage> {
} const o2PLSSerrUPSVector;

class ProjectYPredPSConfIntPlusVector : public ProjectVector {
public:
    ProjectYPredPSConfIntPlusVector() {
        Init("YPredPSConfInt+", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted,
             Displayable);
        m_contributionSource = ResponseContribution;
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("YPredPSConfInt+: Upper limit of the confidence interval of the predicted response.\n"
                         "It rests on the spread of the predictions over the cross-validation rounds. A wide interval\n"
                         "tells that the model does not hold for the observation. In the units of YPredPS.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYPredPSCVConfIntPlus, LevelOfModel);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredPSColumnIDs, AllBatches);
    }
} const yPredPSConfIntPlusVector;

class ProjectO2PLSYPredPSConfIntPlusVector final : public WholeModel<ProjectYPredPSConfIntPlusVector, Refitted> {
} const o2PLSYPredPSConfIntPlusVector;

class ProjectYPredPSConfIntMinusVector : public ProjectVector {
public:
    ProjectYPredPSConfIntMinusVector() {
        Init("YPredPSConfInt-", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted,
             Displayable);
        m_contributionSource = ResponseContribution;
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("YPredPSConfInt-: Lower limit of the confidence interval of the predicted response.\n"
                         "It rests on the spread of the predictions over the cross-validation rounds. A wide interval\n"
                         "tells that the model does not hold for the observation. In the units of YPredPS.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYPredPSCVConfIntMinus, LevelOfModel);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredPSColumnIDs, AllBatches);
    }
} const yPredPSConfIntMinusVector;

class ProjectO2PLSYPredPSConfIntMinusVector final : public WholeModel<ProjectYPredPSConfIntMinusVector, Refitted> {
} const o2PLSYPredPSConfIntMinusVector;

class ProjectYPredCVVector : public ProjectVector {
public:
    ProjectYPredCVVector() {
        Init("YPredcv", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YPredcv: Cross-validated predictions of a response, for the observations of the workset.\n"
            "Each is predicted by the round that left the observation out. Plot YVar against them to see the\n"
            "predictive power of the model. In the units of the data set.");
    }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetYPredCV);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredCVColumnIDs);
    }
} const yPredCVVector;

class ProjectO2PLSYPredCVVector final : public WholeModel<ProjectYPredCVVector, Refitted> {
} const o2PLSYPredCVVector;

class ProjectYPredCVErrVector : public ProjectVector {
public:
    ProjectYPredCVErrVector() {
        Init("YPredErrcv", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("YPredErrcv: Cross-validated errors of a response: observed minus predicted with the "
                         "observation left out.\n"
                         "Look for observations that the others do not predict. In the units of the data set.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetYPredCVErr);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredCVErrColumnIDs);
    }
} const yPredCVErrVector;

class ProjectO2PLSYPredCVErrVector final : public WholeModel<ProjectYPredCVErrVector, Refitted> {
public:
    ProjectO2PLSYPredCVErrVector() { m_firstComponent = ComponentZero; }
} const o2PLSYPredCVErrVector;

class ProjectYPredCVErrSE final : public ProjectVector {
public:
    ProjectYPredCVErrSE() {
        Init("YPredErrcvSE", PerComponent, Model, AnyPLS, NoComponent, NumberYVariable, NoScoreLoading, Observed,
             Displayable);
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YPredErrcvSE: Standard deviation of the cross-validated errors of a response, for each component.\n"
            "It is the error of prediction freed from its mean. Compare with RMSEcv to see a bias.\n"
            "In the units of the data set.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetYPredCVErrSE);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredCVErrSEColumnIDs);
    }
} const yPredCVErrSEVector;

class ProjectYPredPSCVVector : public ProjectVector {
public:
    ProjectYPredPSCVVector() {
        Init("YPredPScv", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_useUnscalingTransform = true;
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YPredPScv: Predicted response of the prediction set by the model of one cross-validation round.\n"
            "Rounds that differ much tell that the prediction hangs on few observations.\n"
            "In the units of YPredPS.");
    }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverRound(*this, project, args);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredPSCVColumnIDs);
    }
} const yPredPSCVVector;

class ProjectO2PLSYPredPSCVVector final : public WholeModel<ProjectYPredPSCVVector, Refitted> {
} const o2PLSYPredPSCVVector;

class ProjectYPredPScvSEVector : public ProjectVector {
public:
    ProjectYPredPScvSEVector() {
        Init("YPredPScvSE", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("YPredPScvSE: Jack-knife standard error of the predicted response of the prediction set.\n"
                         "It is computed from all cross-validation rounds. In the units of the data set.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetYPredPScvSE);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredPScvSEColumnIDs);
    }
} const yPredPScvSEVector;

class ProjectO2PLSYPredPScvSEVector final : public WholeModel<ProjectYPredPScvSEVector, Refitted> {
} const o2PLSYPredPScvSEVector;

} // namespace
