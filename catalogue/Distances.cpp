#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"

// How far observations are from the model, and from its centre.

namespace {

using namespace rows;

using RangeOperation = TablePtr (GetProjectData::*)(int, int, int, int) const;

// From the component of the number to that of the second number.
TablePtr DeliverRange(ProjectVector const &vector, ProjectPtr const &project, char const *args,
                      RangeOperation operation) {
    ProjectVector::Arguments arguments;
    if (!vector.ReadArguments(args, arguments))
        return nullptr;
    int const model = ProjectVector::GetModelNumber(project, arguments.source);
    return model == -1 ? nullptr
                       : (GetProjectData(*project).*operation)(model, static_cast<int>(arguments.number),
                                                               static_cast<int>(arguments.number2), AllBatches);
}

// All components.
TablePtr DeliverAll(Question const &question, RangeOperation operation) {
    int const model = question.Model();
    return model == -1 ? nullptr : (GetProjectData(*question.project).*operation)(model, 0, 0, AllBatches);
}

class ProjectDModXVector : public ProjectVector {
public:
    ProjectDModXVector() {
        Init("DModX", Scores, Model, WithoutOPLS, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_contributionSource = XDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "DModX: Distance of each observation of the workset to the model in X.\n"
            "It is the residual standard deviation of the observation. Values above the critical distance\n"
            "mark observations that the model does not describe. In units of the pooled distance, or absolute.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetDModX, TriState::Undefined,
                       TriState::Undefined, AllBatches);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetDModXColumnIDs, AllBatches);
    }
} const dModXVector;

class ProjectDModXO2PLSVector final : public WholeModel<ProjectDModXVector, LeftOfX> {
} const dModXO2PLSVector;

class ProjectDModXPSVector : public ProjectVector {
public:
    ProjectDModXPSVector() {
        Init("DModXPS", Scores, Model, WithoutOPLS, Predictive, NumberNone, NoScoreLoading, Predicted, Displayable);
        m_contributionSource = XDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "DModXPS: Distance of each observation of the prediction set to the model in X.\n"
            "A value above the critical distance tells that the observation is of another kind than those\n"
            "of the workset. In units of the pooled distance, or absolute.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetDModXPS, TriState::Undefined,
                       TriState::Undefined, AllBatches);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetDModXPSColumnIDs, AllBatches);
    }
} const dModXPSVector;

class ProjectO2PLSDModXPSVector final : public WholeModel<ProjectDModXPSVector, LeftOfX> {
} const o2PLSDModXPSVector;

class ProjectDModXPSCombinedVector : public ProjectVector {
public:
    ProjectDModXPSCombinedVector() {
        Init("DModXPS+", Scores, Model, WithoutOPLS, Predictive, NumberNone, NoScoreLoading, Predicted, Displayable);
        m_contributionSource = XDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "DModXPS+: Distance of each observation of the prediction set to the model in X and to its scores.\n"
            "To DModXPS it adds how far the scores lie outside the range of the workset, so that it also\n"
            "shows extrapolation. In units of the pooled distance, or absolute.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetDModXPSCombined, TriState::Undefined,
                       TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetDModXPSCombinedColumnIDs);
    }
} const dModXPSCombinedVector;

class ProjectO2PLSDModXPSCombinedVector final : public WholeModel<ProjectDModXPSCombinedVector, ScoresOfX> {
} const o2PLSDModXPSCombinedVector;

class ProjectDModYVector : public ProjectVector {
public:
    ProjectDModYVector() {
        Init("DModY", Scores, Model, AnyPLS, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_contributionSource = YDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("DModY: Distance of each observation of the workset to the model in Y.\n"
                         "Large values mark observations whose responses the model does not fit.\n"
                         "In units of the pooled distance, or absolute.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetDModY, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetDModYColumnIDs);
    }
} const dModYVector;

class ProjectO2PLSDModYVector final : public WholeModel<ProjectDModYVector, LeftOfY> {
} const o2PLSDModYVector;

class ProjectDModYPSVector : public ProjectVector {
public:
    ProjectDModYPSVector() {
        Init("DModYPS", Scores, Model, AnyPLS, Predictive, NumberNone, NoScoreLoading, Predicted, Displayable);
        m_contributionSource = YDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("DModYPS: Distance of each observation of the prediction set to the model in Y.\n"
                         "It needs known responses, and shows which of them are predicted badly.\n"
                         "In units of the pooled distance, or absolute.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetDModYPS, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetDModYPSColumnIDs);
    }
} const dModYPSVector;

class ProjectO2PLSDModYPSVector final : public WholeModel<ProjectDModYPSVector, LeftOfY> {
} const o2PLSDModYPSVector;

class ProjectPModXVector : public ProjectVector {
public:
    ProjectPModXVector() {
        Init("PModX", Scores, Model, WithoutOPLS, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_contributionSource = XDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "PModX: Probability that an observation of the workset belongs to the model, by its distance in X.\n"
            "Values below the significance level go with a DModX above the critical distance.\n"
            "Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPModX);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPModXColumnIDs);
    }
} const pModXVector;

class ProjectO2PLSPModXVector final : public WholeModel<ProjectPModXVector, LeftOfX> {
public:
    ProjectO2PLSPModXVector() { m_predictiveComponentDefaultsToLast = false; }
} const o2PLSPModXVector;

class ProjectPModXPSVector : public ProjectVector {
public:
    ProjectPModXPSVector() {
        Init("PModXPS", Scores, Model, WithoutOPLS, Predictive, NumberNone, NoScoreLoading, Predicted, Displayable);
        m_contributionSource = XDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("PModXPS: Probability that an observation of the prediction set belongs to the model, by its "
                         "distance in X.\n"
                         "Use it to assign new observations to one of several class models. Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPModXPS);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPModXPSColumnIDs);
    }
} const pModXPSVector;

class ProjectO2PLSPModXPSVector final : public WholeModel<ProjectPModXPSVector, LeftOfX> {
} const o2PLSPModXPSVector;

class ProjectPModXPSCombinedVector : public ProjectVector {
public:
    ProjectPModXPSCombinedVector() {
        Init("PModXPS+", Scores, Model, WithoutOPLS, Predictive, NumberNone, NoScoreLoading, Predicted, Displayable);
        m_contributionSource = XDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "PModXPS+: Probability that an observation of the prediction set belongs to the model, by DModXPS+.\n"
            "Use it to assign new observations to one of several class models when scores outside the range\n"
            "of the workset are to count against a class. Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPModXPSCombined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPModXPSCombinedColumnIDs);
    }
} const pModXPSCombinedVector;

class ProjectO2PLSPModXPSCombinedVector final : public WholeModel<ProjectPModXPSCombinedVector, ScoresOfX> {
} const o2PLSPModXPSCombinedVector;

class ProjectPModYVector : public ProjectVector {
public:
    ProjectPModYVector() {
        Init("PModY", Scores, Model, AnyPLS, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_contributionSource = YDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "PModY: Probability that an observation of the workset belongs to the model, by its distance in Y.\n"
            "Values below the significance level go with a large DModY. Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPModY);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPModYColumnIDs);
    }
} const pModYVector;

class ProjectO2PLSPModYVector final : public WholeModel<ProjectPModYVector, LeftOfY> {
} const o2PLSPModYVector;

class ProjectPModYPSVector : public ProjectVector {
public:
    ProjectPModYPSVector() {
        Init("PModYPS", Scores, Model, AnyPLS, Predictive, NumberNone, NoScoreLoading, Predicted, Displayable);
        m_contributionSource = YDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("PModYPS: Probability that an observation of the prediction set belongs to the model, by its "
                         "distance in Y.\n"
                         "It needs known responses. Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPModYPS);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPModYPSColumnIDs);
    }
} const pModYPSVector;

class ProjectO2PLSPModYPSVector final : public WholeModel<ProjectPModYPSVector, LeftOfY> {
} const o2PLSPModYPSVector;

class ProjectOLevXVector final : public ProjectVector {
public:
    ProjectOLevXVector() {
        Init("OLevX", Scores, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "OLevX: Leverage of each observation of the workset in X.\n"
            "It is the influence of the observation on the model, by its scores t, and to of OPLS and O2PLS.\n"
            "Large values mark observations that draw the model to themselves. Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetOLevX);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetOLevXColumnIDs);
    }
} const oLevXVector;

class ProjectOLevYVector final : public ProjectVector {
public:
    ProjectOLevYVector() {
        Init("OLevY", Scores, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("OLevY: Leverage of each observation of the workset in Y.\n"
                         "It is the influence of the observation on the model, by its scores u. Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetOLevY);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetOLevYColumnIDs);
    }
} const oLevYVector;

std::string T2RangeHelp() {
    return translate("T2Range: Hotelling's T2 of the observations of the workset over a range of components.\n"
                     "It is the distance of an observation from the centre within the model. Values above the limit\n"
                     "mark observations that are extreme though the model describes them. Without unit.");
}

class ProjectT2RangeVector final : public ProjectVector {
public:
    ProjectT2RangeVector() {
        Init("T2Range", Scores, Model, WithoutOPLS, NoComponent, NumberComponentRange, NoScoreLoading, Observed,
             Displayable);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override { return T2RangeHelp(); }
    bool IsT2RangeVector() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverRange(*this, project, args, &GetProjectData::GetT2Range);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetT2RangeColumnIDs, AllBatches);
    }
} const t2RangeVector;

class ProjectO2PLST2RangeVector final : public ProjectVector {
public:
    ProjectO2PLST2RangeVector() {
        Init("T2Range", Scores, Model, AnyOPLS, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_contributionSource = ScoreContribution;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return T2RangeHelp() + "\n" + AllOfX(); }
    bool IsT2RangeVector() const override { return true; }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return DeliverAll({*this, project, source, component}, &GetProjectData::GetT2Range);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetT2RangeColumnIDs, AllBatches);
    }
} const o2PLST2RangeVector;

std::string T2RangePSHelp() {
    return translate("T2RangePS: Hotelling's T2 of the observations of the prediction set over a range of components.\n"
                     "It is the distance of a new observation from the centre of the workset within the model.\n"
                     "Above the limit a prediction extrapolates. Without unit.");
}

class ProjectT2RangePSVector final : public ProjectVector {
public:
    ProjectT2RangePSVector() {
        Init("T2RangePS", Scores, Model, WithoutOPLS, NoComponent, NumberComponentRange, NoScoreLoading, Predicted,
             Displayable);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override { return T2RangePSHelp(); }
    bool IsT2RangeVector() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverRange(*this, project, args, &GetProjectData::GetT2RangePS);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetT2RangePSColumnIDs, AllBatches);
    }
} const t2RangePSVector;

class ProjectO2PLST2RangePSVector final : public ProjectVector {
public:
    ProjectO2PLST2RangePSVector() {
        Init("T2RangePS", Scores, Model, AnyOPLS, NoComponent, NumberNone, NoScoreLoading, Predicted, Displayable);
        m_contributionSource = ScoreContribution;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return T2RangePSHelp() + "\n" + AllOfX(); }
    bool IsT2RangeVector() const override { return true; }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return DeliverAll({*this, project, source, component}, &GetProjectData::GetT2RangePS);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetT2RangePSColumnIDs, AllBatches);
    }
} const o2PLST2RangePSVector;

} // namespace
