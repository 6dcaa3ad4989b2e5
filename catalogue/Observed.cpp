#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"

// The data as the model sees them, by variable and by observation.

namespace {

using namespace rows;

class ProjectXVarVector final : public ProjectVector {
public:
    ProjectXVarVector() {
        Init("XVar", Scores, Model, AnyModel, NoComponent, NumberXVariable, NoScoreLoading, Observed, Displayable);
        m_firstComponent = NoFirstComponent;
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "XVar: Values of an X variable for the observations of the workset, as the model was fitted to them.\n"
            "Look at them to follow an odd point back to the data. In the units of the data set, before\n"
            "the transformation or after it, or scaled as in the workset.");
    }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXVar, AllBatches);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXVarColumnIDs, AllBatches);
    }
} const xVarVector;

class ProjectXVarPSVector final : public ProjectVector {
public:
    ProjectXVarPSVector() {
        Init("XVarPS", Scores, Model, AnyModel, NoComponent, NumberXVariable, NoScoreLoading, Predicted, Displayable);
        m_firstComponent = NoFirstComponent;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "XVarPS: Values of an X variable for the observations of the prediction set, treated like the workset.\n"
            "Plot them beside XVar to see whether new observations lie in the range of the model.\n"
            "In the units of the data set, before the transformation or after it, or scaled as in the workset.");
    }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXVarPS, AllBatches);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXVarPSColumnIDs, AllBatches);
    }
} const xVarPSVector;

class ProjectYVarVector final : public ProjectVector {
public:
    ProjectYVarVector() {
        Init("YVar", Scores, Model, WithY, NoComponent, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_firstComponent = NoFirstComponent;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YVar: Values of a response for the observations of the workset, as the model was fitted to them.\n"
            "Plot YPred against them to judge the fit. In the units of the data set, before the\n"
            "transformation or after it, or scaled as in the workset.");
    }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYVar, AllBatches);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYVarColumnIDs, AllBatches);
    }
} const yVarVector;

class ProjectYVarPSVector final : public ProjectVector {
public:
    ProjectYVarPSVector() {
        Init("YVarPS", Scores, Model, WithY, NoComponent, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_firstComponent = NoFirstComponent;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YVarPS: Values of a response for the observations of the prediction set, where they are known.\n"
            "Plot YPredPS against them to see how well the model predicts what it was not fitted to.\n"
            "In the units of the data set, before the transformation or after it, or scaled as in the workset.");
    }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYVarPS, AllBatches, true);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYVarPSColumnIDs, AllBatches);
    }
} const yVarPSVector;

class ProjectYVarUntreatedVector final : public ProjectVector {
public:
    ProjectYVarUntreatedVector() {
        Init("YVarDS", Scores, Model, WithY, NoComponent, NumberYVariable, NoScoreLoading, Observed, Hidden);
        m_firstComponent = NoFirstComponent;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YVarDS: Values of a response as they stand in the data set, for the observations of the workset.\n"
            "They differ from YVar where the response of a batch model was replaced or normalised.\n"
            "In the units of the data set.");
    }
    bool IsValidProject(ProjectPtr project) const override { return project->IsBatchProject(); }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetYVarUntreated, AllBatches);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYVarColumnIDs, AllBatches);
    }
} const yVarUntreatedVector;

class ProjectYVarUntreatedPSVector final : public ProjectVector {
public:
    ProjectYVarUntreatedPSVector() {
        Init("YVarDSPS", Scores, Model, WithY, NoComponent, NumberYVariable, NoScoreLoading, Predicted, Hidden);
        m_firstComponent = NoFirstComponent;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YVarDSPS: Values of a response as they stand in the data, for the observations of the prediction set.\n"
            "They differ from YVarPS where the response of a batch model was replaced or normalised.\n"
            "In the units of the data set.");
    }
    bool IsValidProject(ProjectPtr project) const override { return project->IsBatchProject(); }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetYVarUntreatedPS,
                           AllBatches);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetTPSColumnIDs, AllBatches);
    }
} const yVarUntreatedPSVector;

class ProjectXObsVector final : public ProjectVector {
public:
    ProjectXObsVector() {
        Init("XObs", Loadings, Model, AnyModel, NoComponent, NumberObsOrVar, NoScoreLoading, Observed, Displayable);
        m_firstComponent = NoFirstComponent;
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override {
        return translate("XObs: Values of all X variables for one observation of the workset.\n"
                         "Look at them to see the profile, or the spectrum, of an observation. In the units of the\n"
                         "data set, before the transformation or after it, or scaled as in the workset.");
    }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetXObs, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXObsColumnIDs, TriState::Undefined);
    }
} const xObsVector;

class ProjectYObsVector final : public ProjectVector {
public:
    ProjectYObsVector() {
        Init("YObs", Loadings, Model, WithY, NoComponent, NumberObsOrVar, NoScoreLoading, Observed, Displayable);
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YObs: Values of all responses for one observation of the workset.\n"
            "In the units of the data set, before the transformation or after it, or scaled as in the workset.");
    }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYObs);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYObsColumnIDs);
    }
} const yObsVector;

} // namespace
