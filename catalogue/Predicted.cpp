#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/Translate.h"

// What the model makes of the data, by variable and by observation.

namespace {

using namespace rows;

std::string XVarPredHelp() {
    return translate(
        "XVarPred: Values of an X variable as the model describes them, for the observations of the workset.\n"
        "Compare with XVar: what differs is noise to the model. In the units of XVar.");
}

class ProjectXVarPredVector final : public ProjectVector {
public:
    ProjectXVarPredVector() {
        Init("XVarPred", Scores, Model, WithoutOPLS, Predictive, NumberXVariable, NoScoreLoading, Observed,
             Displayable);
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override { return XVarPredHelp(); }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXVarPred);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXVarPredColumnIDs);
    }
} const xVarPredVector;

class ProjectO2PLSXVarPredVector final : public ProjectVector {
public:
    ProjectO2PLSXVarPredVector() {
        Init("XVarPred", Scores, Model, AnyOPLS, NoComponent, NumberXVariable, NoScoreLoading, Observed, Displayable);
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override { return XVarPredHelp(); }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXVarPred);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXVarPredColumnIDs);
    }
} const o2PLSXVarPredVector;

std::string XVarPredPSHelp() {
    return translate("XVarPredPS: Values of an X variable as the model describes them, for the prediction set.\n"
                     "Compare with XVarPS to see in which variable a new observation departs from the model, and to\n"
                     "fill missing cells. In the units of XVarPS.");
}

class ProjectXVarPredPSVector final : public ProjectVector {
public:
    ProjectXVarPredPSVector() {
        Init("XVarPredPS", Scores, Model, WithoutOPLS, Predictive, NumberXVariable, NoScoreLoading, Predicted,
             Displayable);
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override { return XVarPredPSHelp(); }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXVarPredPS);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXVarPredPSColumnIDs);
    }
} const xVarPredPSVector;

class ProjectO2PLSXVarPredPSVector final : public ProjectVector {
public:
    ProjectO2PLSXVarPredPSVector() {
        Init("XVarPredPS", Scores, Model, AnyOPLS, NoComponent, NumberXVariable, NoScoreLoading, Predicted,
             Displayable);
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override { return XVarPredPSHelp(); }
    bool SupportDateTime() const override { return true; }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXVarPredPS);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXVarPredPSColumnIDs);
    }
} const o2PLSXVarPredPSVector;

std::string XObsPredHelp() {
    return translate("XObsPred: Values of all X variables of one observation as the model describes them.\n"
                     "Compare with XObs to see which part of a profile the model explains. In the units of XObs.");
}

class ProjectXObsPredVector final : public ProjectVector {
public:
    ProjectXObsPredVector() {
        Init("XObsPred", Loadings, Model, WithoutOPLS, Predictive, NumberObsOrVar, NoScoreLoading, Observed,
             Displayable);
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override { return XObsPredHelp(); }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXObsPred, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXObsPredColumnIDs, TriState::Undefined);
    }
} const xObsPredVector;

class ProjectO2PLSXObsPredVector final : public ProjectVector {
public:
    ProjectO2PLSXObsPredVector() {
        Init("XObsPred", Loadings, Model, AnyOPLS, NoComponent, NumberObsOrVar, NoScoreLoading, Observed, Displayable);
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override { return XObsPredHelp(); }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXObsPred, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXObsPredColumnIDs, TriState::Undefined);
    }
} const o2PLSXObsPredVector;

std::string XObsPredPSHelp() {
    return translate(
        "XObsPredPS: Values of all X variables of one observation of the prediction set as the model describes them.\n"
        "They are what the observation would look like if it obeyed the model. In the units of XObs.");
}

class ProjectXObsPredPSVector final : public ProjectVector {
public:
    ProjectXObsPredPSVector() {
        Init("XObsPredPS", Loadings, Model, WithoutOPLS, Predictive, NumberObsOrVar, NoScoreLoading, Predicted,
             Displayable);
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override { return XObsPredPSHelp(); }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXObsPredPS, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXObsPredPSColumnIDs, TriState::Undefined);
    }
} const xObsPredPSVector;

class ProjectO2PLSXObsPredPSVector final : public ProjectVector {
public:
    ProjectO2PLSXObsPredPSVector() {
        Init("XObsPredPS", Loadings, Model, AnyOPLS, NoComponent, NumberObsOrVar, NoScoreLoading, Predicted,
             Displayable);
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override { return XObsPredPSHelp(); }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXObsPredPS, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXObsPredPSColumnIDs, TriState::Undefined);
    }
} const o2PLSXObsPredPSVector;

std::string YPredHelp() {
    return translate(
        "YPred: Values of a response that the model fits, for the observations of the workset.\n"
        "Plot YVar against them: points should lie along the diagonal, without a bend. In the units of YVar.");
}

class ProjectYPredVector final : public ProjectVector {
public:
    ProjectYPredVector() {
        Init("YPred", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_contributionSource = ResponseContribution;
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return YPredHelp(); }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYPred, AllBatches);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredColumnIDs, AllBatches);
    }
} const yPredVector;

class ProjectO2PLSYPredVector final : public ProjectVector {
public:
    ProjectO2PLSYPredVector() {
        Init("YPred", Scores, Model, AnyOPLS, NoComponent, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_contributionSource = ResponseContribution;
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override { return YPredHelp(); }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYPred, AllBatches);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredColumnIDs, AllBatches);
    }
} const o2PLSYPredVector;

std::string YPredPSHelp() {
    return translate("YPredPS: Predicted values of a response for the observations of the prediction set.\n"
                     "Trust them only for observations whose DModXPS and T2RangePS are within their limits.\n"
                     "In the units of YVarPS.");
}

class ProjectYPredPSVector final : public ProjectVector {
public:
    ProjectYPredPSVector() {
        Init("YPredPS", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_contributionSource = ResponseContribution;
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return YPredPSHelp(); }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYPredPS, AllBatches);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredPSColumnIDs, AllBatches);
    }
} const yPredPSVector;

class ProjectO2PLSYPredPSVector final : public ProjectVector {
public:
    ProjectO2PLSYPredPSVector() {
        Init("YPredPS", Scores, Model, AnyOPLS, NoComponent, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_contributionSource = ResponseContribution;
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return YPredPSHelp(); }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYPredPS, AllBatches);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredPSColumnIDs, AllBatches);
    }
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
