#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"

// What a model keeps beside its components: groups, times, centres, offsets and weights.

namespace {

using namespace rows;

bool HasLocalCentring(NCProject const &project) {
    return project.GetLocalCentering().SizeVars() != 0;
}

bool HasLocalCentring(NCProject const &project, ModelInfo const &model) {
    boost::shared_ptr<NCModel const> const made = project.GetModel(model.number);
    return HasLocalCentring(project) && made && made->GetCenterValues().SizeVars() != 0;
}

bool HasTime(ProjectPtr const &project) {
    return project->GetVariables().GetDefaultTimeVariable() != nullptr;
}

class ProjectCVGroupsVector final : public ProjectVector {
public:
    ProjectCVGroupsVector() {
        Init("CVGroups", Scores, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_longName = "Cross validation groups";
    }
    std::string GetHelpString() const override {
        return translate("CVGroups: Cross-validation group of each observation.\n"
                         "The observations of one group are left out together. A number from 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetCVGroups);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetCVGroupsColumnIDs);
    }
} const cVGroupsVector;

class ProjectDateTimeVector final : public ProjectVector {
public:
    ProjectDateTimeVector() {
        Init("Date/Time", Scores, Model, AnyModel, NoComponent, NumberNone, Score, Observed, Displayable);
        m_firstComponent = NoFirstComponent;
    }
    std::string GetHelpString() const override {
        return translate("Date/Time: Time of each observation of the workset.\n"
                         "Use it as the X axis of process data. In days since midnight before the first date of the\n"
                         "model's data set.");
    }
    bool IsNumVectorLike() const override { return true; }
    bool IsValidProject(ProjectPtr project) const override { return HasTime(project); }
    bool IsValidModel(NCProject const &, ModelInfo const &model) const override { return model.hasDateTime; }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetDateTimeVariable);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetDateTimeVariableColumnIDs);
    }
} const dateTimeVector;

class ProjectDateTimePSVector final : public ProjectVector {
public:
    ProjectDateTimePSVector() {
        Init("Date/Time-PS", Scores, Model, AnyModel, NoComponent, NumberNone, Score, Predicted, Displayable);
        m_firstComponent = NoFirstComponent;
    }
    std::string GetHelpString() const override {
        return translate("Date/Time-PS: Time of each observation of the prediction set.\n"
                         "Use it as the X axis of process data. In days since midnight before the first date of the\n"
                         "model's data set.");
    }
    bool IsNumVectorLike() const override { return true; }
    bool IsValidProject(ProjectPtr project) const override { return HasTime(project); }
    bool IsValidModel(NCProject const &, ModelInfo const &model) const override { return model.hasDateTime; }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetDateTimePSVariable);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetDateTimePSVariableColumnIDs);
    }
} const dateTimePSVector;

class ModelLocalCenteringVector final : public ProjectVector {
public:
    ModelLocalCenteringVector() {
        Init("LocalCentering", Scores, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate("LocalCentering: Values that locally centred variables are centred about.\n"
                         "They tell how the groups of observations differ before the model sees them. In the units of\n"
                         "the variable after its transformation.");
    }
    bool IsValidProject(ProjectPtr project) const override { return HasLocalCentring(*project); }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return HasLocalCentring(project, model);
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetModelLocalCentering);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetModelLocalCenteringColumnIDs);
    }
} const modelLocalCenteringVector;

class ModelLocalCenteringPSVector final : public ProjectVector {
public:
    ModelLocalCenteringPSVector() {
        Init("LocalCenteringPS", Scores, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Predicted,
             Displayable);
    }
    std::string GetHelpString() const override {
        return translate("LocalCenteringPS: Values that locally centred variables are centred about.\n"
                         "They are those of the workset. In the units of the variable after its transformation.");
    }
    bool IsValidProject(ProjectPtr project) const override { return HasLocalCentring(*project); }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return HasLocalCentring(project, model);
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetModelLocalCentering);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetModelLocalCenteringColumnIDs);
    }
} const modelLocalCenteringPSVector;

class LocalCenteringProjectVector final : public ProjectVector {
public:
    LocalCenteringProjectVector() {
        Init("ProjectLocalCentering", VectorTypeNone, DataTypeNone, NoModel, NoComponent, NumberNone, NoScoreLoading,
             Observed, Hidden);
    }
    std::string GetHelpString() const override {
        return translate("ProjectLocalCentering: Centre values of the project, for each variable and group.\n"
                         "In the units of the variable after its transformation.");
    }
    bool IsValidProject(ProjectPtr project) const override { return HasLocalCentring(*project); }
    TablePtr CreateVector(ProjectPtr project, char const *, int, unsigned long, int) const override {
        return GetProjectData(*project).GetLocalCentering();
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *, int, unsigned long) const override {
        return GetProjectData(*project).GetLocalCenteringColumnIDs();
    }
} const localCenteringProjectVector;

class XOffsetsVector final : public ProjectVector {
public:
    XOffsetsVector() {
        Init("Xavg", Loadings, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_firstComponent = NoFirstComponent;
    }
    std::string GetHelpString() const override {
        return translate("Xavg: Averages of the X variables, 0 for those that are not centred.\n"
                         "In the units of the variables after their transformation.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetXOffsets, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXOffsetsColumnIDs, TriState::Undefined);
    }
} const xOffsetsVector;

class XWeightsVector final : public ProjectVector {
public:
    XWeightsVector() {
        Init("Xws", Loadings, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_firstComponent = NoFirstComponent;
    }
    std::string GetHelpString() const override {
        return translate("Xws: Scaling weights of the X variables.\n"
                         "A variable is multiplied by its weight after centring. In 1 by the units of the variables.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetXWeights, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetXWeightsColumnIDs, TriState::Undefined);
    }
} const xWeightsVector;

class YOffsetsVector final : public ProjectVector {
public:
    YOffsetsVector() {
        Init("Yavg", Loadings, Model, WithY, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_firstComponent = NoFirstComponent;
    }
    std::string GetHelpString() const override {
        return translate("Yavg: Averages of the responses, 0 for those that are not centred.\n"
                         "In the units of the responses after their transformation.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetYOffsets);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYOffsetsColumnIDs);
    }
} const yOffsetsVector;

class YWeightsVector final : public ProjectVector {
public:
    YWeightsVector() {
        Init("Yws", Loadings, Model, WithY, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_firstComponent = NoFirstComponent;
    }
    std::string GetHelpString() const override {
        return translate("Yws: Scaling weights of the responses.\n"
                         "A response is multiplied by its weight after centring. In 1 by the units of the responses.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetYWeights);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYWeightsColumnIDs);
    }
} const yWeightsVector;

} // namespace
