#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"

// What the model leaves of the data, by variable and by observation.

namespace {

using namespace rows;

constexpr int AllComponents = -1;

// How many components of each kind are taken away.
struct Parts {
    int predictive;
    int xSide;
    int ySide;
};

TablePtr DeliverParts(ProjectVector const &vector, ProjectPtr const &project, char const *args,
                      Parts (*partsOf)(ProjectVector::Arguments const &)) {
    ValueQuestion<ColumnTerms> const asked(vector, project, args);
    if (asked.model == -1)
        return nullptr;
    Parts const parts = partsOf(asked.arguments);
    return GetProjectData(*project).GetXVarResO2PLS(asked.model, parts.predictive, parts.xSide, parts.ySide,
                                                    asked.arguments.unscaled, asked.arguments.backTransformed,
                                                    &asked.items, TriState::Undefined);
}

class ProjectXVarResVector final : public ProjectVector {
public:
    ProjectXVarResVector() {
        Init("XVarRes", Scores, Model, WithoutOPLS, Predictive, NumberXVariable, NoScoreLoading, Observed, Displayable);
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("XVarRes: Residuals of an X variable for the observations of the workset.\n"
                         "Look for outliers, trends and groups that the model leaves behind. In the units of XVar.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXVarRes, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXVarResColumnIDs);
    }
} const xVarResVector;

class ProjectXVarResO2PLSVector final : public ProjectVector {
public:
    ProjectXVarResO2PLSVector() {
        Init("XVarRes", Scores, Model, AnyOPLS, AllKinds, NumberXVariable, NoScoreLoading, Observed, Displayable);
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("XVarRes: Residuals of an X variable for the observations of the workset.\n"
                         "Each kind of component is taken away up to its own number, so that the parts of X can be\n"
                         "looked at one by one. In the units of XVar.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverParts(*this, project, args, [](Arguments const &arguments) {
            return Parts{arguments.component, arguments.xSide, arguments.ySide};
        });
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXVarResO2PLSColumnIDs);
    }
} const xVarResO2PLSVector;

class ProjectXVarResPSVector : public ProjectVector {
public:
    ProjectXVarResPSVector() {
        Init("XVarResPS", Scores, Model, WithoutOPLS, Predictive, NumberXVariable, NoScoreLoading, Predicted,
             Displayable);
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("XVarResPS: Residuals of an X variable for the observations of the prediction set.\n"
                         "Look at them to find the variables in which a new observation departs from the model.\n"
                         "In the units of XVarPS.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXVarResPS, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXVarResPSColumnIDs);
    }
} const xVarResPSVector;

class ProjectO2PLSXVarResPSVector final : public WholeModel<ProjectXVarResPSVector, LeftOfX> {
} const o2PLSXVarResPSVector;

class ProjectXVarResSTVector : public ProjectVector {
public:
    ProjectXVarResSTVector() {
        Init("XVarResSt", Scores, Model, AnyPLS, Predictive, NumberXVariable, NoScoreLoading, Observed, Displayable);
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "XVarResSt: Standardised residuals of an X variable for the observations of the workset.\n"
            "They are divided by the residual standard deviation of the variable: values beyond 3 or so are\n"
            "rare. Without unit.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXVarRes, TriState::Yes);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXVarResColumnIDs);
    }
} const xVarResSTVector;

class ProjectO2PLSXVarResSTVector final : public WholeModel<ProjectXVarResSTVector, LeftOfX> {
} const o2PLSXVarResSTVector;

class ProjectXVarResPSSTVector : public ProjectVector {
public:
    ProjectXVarResPSSTVector() {
        Init("XVarResPSSt", Scores, Model, WithoutOPLS, Predictive, NumberXVariable, NoScoreLoading, Predicted,
             Displayable);
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "XVarResPSSt: Standardised residuals of an X variable for the observations of the prediction set.\n"
            "They are divided by the residual standard deviation of the variable in the workset. Without unit.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXVarResPS, TriState::Yes);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXVarResPSColumnIDs);
    }
} const xVarResPSSTVector;

class ProjectO2PLSXVarResPSSTVector final : public WholeModel<ProjectXVarResPSSTVector, LeftOfX> {
} const o2PLSXVarResPSSTVector;

class ProjectXVarResYRelatedO2PLSVector final : public ProjectVector {
public:
    ProjectXVarResYRelatedO2PLSVector() {
        Init("XVarResYRelated", Scores, Model, AnyOPLS, NoComponent, NumberXVariable, NoScoreLoading, Observed,
             Displayable);
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "XVarResYRelated: What is left of an X variable when its part that is related to Y is taken away.\n"
            "It holds the orthogonal variation and the noise. Look for structure that disturbs the\n"
            "prediction. In the units of XVar.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverParts(*this, project, args, [](Arguments const &) { return Parts{AllComponents, 0, 0}; });
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXVarResO2PLSColumnIDs);
    }
} const xVarResYRelatedO2PLSVector;

class ProjectXObsResVector : public ProjectVector {
public:
    ProjectXObsResVector() {
        Init("XObsRes", Loadings, Model, WithoutOPLS, Predictive, NumberObsOrVar, NoScoreLoading, Observed,
             Displayable);
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override {
        return translate("XObsRes: Residuals of all X variables of one observation of the workset.\n"
                         "Look at them when DModX of the observation is large, to see which variables cause it.\n"
                         "In the units of XObs.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXObsRes, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXObsResColumnIDs, TriState::Undefined);
    }
} const xObsResVector;

class ProjectO2PLSXObsResVector final : public WholeModel<ProjectXObsResVector, LeftOfX> {
public:
    ProjectO2PLSXObsResVector() { m_firstComponent = ComponentZero; }
} const o2PLSXObsResVector;

class ProjectXObsResPSVector : public ProjectVector {
public:
    ProjectXObsResPSVector() {
        Init("XObsResPS", Loadings, Model, AnyPLS, Predictive, NumberObsOrVar, NoScoreLoading, Predicted, Displayable);
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override {
        return translate("XObsResPS: Residuals of all X variables of one observation of the prediction set.\n"
                         "Look at them when DModXPS of the observation is large, to see which variables cause it.\n"
                         "In the units of XObs.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXObsResPS, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXObsResPSColumnIDs, TriState::Undefined);
    }
} const xObsResPSVector;

class ProjectO2PLSXObsResPSVector final : public WholeModel<ProjectXObsResPSVector, LeftOfX> {
public:
    ProjectO2PLSXObsResPSVector() { m_firstComponent = ComponentZero; }
} const o2PLSXObsResPSVector;

class ProjectYVarResVector : public ProjectVector {
public:
    ProjectYVarResVector() {
        Init("YVarRes", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YVarRes: Residuals of a response for the observations of the workset: observed minus fitted.\n"
            "Plot them against time, or any variable, to find what the model does not tell.\n"
            "In the units of YVar.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYVarRes, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYVarResColumnIDs);
    }
} const yVarResVector;

class ProjectO2PLSYVarResVector final : public WholeModel<ProjectYVarResVector, LeftOfY> {
} const o2PLSYVarResVector;

class ProjectYVarResPSVector : public ProjectVector {
public:
    ProjectYVarResPSVector() {
        Init("YVarResPS", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("YVarResPS: Residuals of a response for the prediction set: observed minus predicted.\n"
                         "Where the response is known they show how well the model predicts. In the units of YVarPS.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYVarResPS, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYVarResPSColumnIDs);
    }
} const yVarResPSVector;

class ProjectO2PLSYVarResPSVector final : public WholeModel<ProjectYVarResPSVector, LeftOfY> {
} const o2PLSYVarResPSVector;

class ProjectYVarResSTVector final : public ProjectVector {
public:
    ProjectYVarResSTVector() {
        Init("YVarResSt", Scores, Model, WithY, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YVarResSt: Standardised residuals of a response for the observations of the workset.\n"
            "They are divided by the residual standard deviation of the response: look at values beyond 3.\n"
            "Without unit.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYVarRes, TriState::Yes);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYVarResColumnIDs);
    }
} const yVarResSTVector;

class ProjectYVarResPSSTVector : public ProjectVector {
public:
    ProjectYVarResPSSTVector() {
        Init("YVarResPSSt", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YVarResPSSt: Standardised residuals of a response for the observations of the prediction set.\n"
            "They are divided by the residual standard deviation of the response in the workset. Without unit.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYVarResPS, TriState::Yes);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYVarResPSColumnIDs);
    }
} const yVarResPSSTVector;

class ProjectO2PLSYVarResPSSTVector final : public WholeModel<ProjectYVarResPSSTVector, LeftOfY> {
} const o2PLSYVarResPSSTVector;

class ProjectYObsResVector final : public ProjectVector {
public:
    ProjectYObsResVector() {
        Init("YObsRes", Loadings, Model, WithY, Predictive, NumberObsOrVar, NoScoreLoading, Observed, Displayable);
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override {
        return translate("YObsRes: Residuals of all responses of one observation of the workset.\n"
                         "Look at them when DModY of the observation is large, to see which responses cause it.\n"
                         "In the units of YObs.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYObsRes);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYObsResColumnIDs);
    }
} const yObsResVector;

class ProjectYObsResPSVector : public ProjectVector {
public:
    ProjectYObsResPSVector() {
        Init("YObsResPS", Loadings, Model, AnyPLS, Predictive, NumberObsOrVar, NoScoreLoading, Predicted, Displayable);
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override {
        return translate("YObsResPS: Residuals of all responses of one observation of the prediction set.\n"
                         "Look at them when DModYPS of the observation is large, to see which responses cause it.\n"
                         "In the units of YObs.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYObsResPS);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYObsResPSColumnIDs);
    }
} const yObsResPSVector;

class ProjectO2PLSYObsResPSVector final : public ProjectYObsResPSVector {
public:
    ProjectO2PLSYObsResPSVector() { m_modelType = AnyOPLS; }
    std::string GetHelpString() const override {
        return ProjectYObsResPSVector::GetHelpString() + "\n" +
               translate(
                   "In OPLS and O2PLS by the predictive components up to one, with all orthogonal ones; 0 is all.");
    }
} const o2PLSYObsResPSVector;

} // namespace
