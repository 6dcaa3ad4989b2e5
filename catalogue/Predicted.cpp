#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"

// What the model makes of the data, by variable and by observation.

namespace {

using namespace rows;

class ProjectXVarPredVector : public ProjectVector {
public:
    ProjectXVarPredVector() {
        Init("XVarPred", Scores, Model, WithoutOPLS, Predictive, NumberXVariable, NoScoreLoading, Observed,
             Displayable);
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "XVarPred: Values of an X variable as the model describes them, for the observations of the workset.\n"
            "Compare with XVar: what differs is noise to the model. In the units of XVar.");
    }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXVarPred);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXVarPredColumnIDs);
    }
} const xVarPredVector;

class ProjectO2PLSXVarPredVector final : public WholeModel<ProjectXVarPredVector, AllOfX> {
public:
    ProjectO2PLSXVarPredVector() { m_firstComponent = ComponentZero; }
} const o2PLSXVarPredVector;

class ProjectXVarPredPSVector : public ProjectVector {
public:
    ProjectXVarPredPSVector() {
        Init("XVarPredPS", Scores, Model, WithoutOPLS, Predictive, NumberXVariable, NoScoreLoading, Predicted,
             Displayable);
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "XVarPredPS: Values of an X variable as the model describes them, for the prediction set.\n"
            "Compare with XVarPS to see in which variable a new observation departs from the model, and to\n"
            "fill missing cells. In the units of XVarPS.");
    }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXVarPredPS);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXVarPredPSColumnIDs);
    }
} const xVarPredPSVector;

class ProjectO2PLSXVarPredPSVector final : public WholeModel<ProjectXVarPredPSVector, AllOfX> {
} const o2PLSXVarPredPSVector;

class ProjectXObsPredVector : public ProjectVector {
public:
    ProjectXObsPredVector() {
        Init("XObsPred", Loadings, Model, WithoutOPLS, Predictive, NumberObsOrVar, NoScoreLoading, Observed,
             Displayable);
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override {
        return translate("XObsPred: Values of all X variables of one observation as the model describes them.\n"
                         "Compare with XObs to see which part of a profile the model explains. In the units of XObs.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXObsPred, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXObsPredColumnIDs, TriState::Undefined);
    }
} const xObsPredVector;

class ProjectO2PLSXObsPredVector final : public WholeModel<ProjectXObsPredVector, AllOfX> {
} const o2PLSXObsPredVector;

class ProjectXObsPredPSVector : public ProjectVector {
public:
    ProjectXObsPredPSVector() {
        Init("XObsPredPS", Loadings, Model, WithoutOPLS, Predictive, NumberObsOrVar, NoScoreLoading, Predicted,
             Displayable);
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override {
        return translate("XObsPredPS: Values of all X variables of one observation of the prediction set as the model "
                         "describes them.\n"
                         "They are what the observation would look like if it obeyed the model. In the units of XObs.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXObsPredPS, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXObsPredPSColumnIDs, TriState::Undefined);
    }
} const xObsPredPSVector;

class ProjectO2PLSXObsPredPSVector final : public WholeModel<ProjectXObsPredPSVector, AllOfX> {
} const o2PLSXObsPredPSVector;

class ProjectYPredVector : public ProjectVector {
public:
    ProjectYPredVector() {
        Init("YPred", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_contributionSource = ResponseContribution;
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YPred: Values of a response that the model fits, for the observations of the workset.\n"
            "Plot YVar against them: points should lie along the diagonal, without a bend. In the units of YVar.");
    }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYPred, AllBatches);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredColumnIDs, AllBatches);
    }
} const yPredVector;

class ProjectO2PLSYPredVector final : public WholeModel<ProjectYPredVector, Predicting> {
public:
    ProjectO2PLSYPredVector() { m_predictiveComponentDefaultsToLast = false; }
} const o2PLSYPredVector;

class ProjectYPredPSVector : public ProjectVector {
public:
    ProjectYPredPSVector() {
        Init("YPredPS", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_contributionSource = ResponseContribution;
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("YPredPS: Predicted values of a response for the observations of the prediction set.\n"
                         "Trust them only for observations whose DModXPS and T2RangePS are within their limits.\n"
                         "In the units of YVarPS.");
    }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYPredPS, AllBatches);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredPSColumnIDs, AllBatches);
    }
} const yPredPSVector;

class ProjectO2PLSYPredPSVector final : public WholeModel<ProjectYPredPSVector, Predicting> {
} const o2PLSYPredPSVector;

class ProjectYRelatedProfilesVector final : public ProjectVector {
public:
    ProjectYRelatedProfilesVector() {
        Init("YRelatedProfile", Loadings, Model, AnyOPLS, NoComponent, NumberYVariable, NoScoreLoading, Observed,
             Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "YRelatedProfile: Profile of the X variables that belongs to a response.\n"
            "It is the change of each X variable for one unit of the response, without the variation that\n"
            "has nothing to do with it: for spectra an estimate of the pure spectrum.\n"
            "In units of X for one unit of Y.");
    }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetYRelatedProfiles);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYRelatedProfilesColumnIDs);
    }
} const yRelatedProfilesVector;

} // namespace
