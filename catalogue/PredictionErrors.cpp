#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/Translate.h"

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

std::string SerrLHelp() {
    return translate("SerrL: Lower limit of the fitted response by its standard error, for the workset.\n"
                     "The error grows with the leverage of the observation. Plot with YPred and SerrU.\n"
                     "In the units of the data set.");
}

class ProjectSerrLVector final : public ProjectVector {
public:
    ProjectSerrLVector() {
        Init("SerrL", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return SerrLHelp(); }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetSerrL);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSerrLColumnIDs);
    }
} const serrLVector;

class ProjectO2PLSSerrLVector final : public ProjectVector {
public:
    ProjectO2PLSSerrLVector() {
        Init("SerrL", Scores, Model, AnyOPLS, NoComponent, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return SerrLHelp(); }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetSerrL);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSerrLColumnIDs);
    }
} const o2PLSSerrLVector;

std::string SerrUHelp() {
    return translate("SerrU: Upper limit of the fitted response by its standard error, for the workset.\n"
                     "The error grows with the leverage of the observation. Plot with YPred and SerrL.\n"
                     "In the units of the data set.");
}

class ProjectSerrUVector final : public ProjectVector {
public:
    ProjectSerrUVector() {
        Init("SerrU", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return SerrUHelp(); }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetSerrU);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSerrUColumnIDs);
    }
} const serrUVector;

class ProjectO2PLSSerrUVector final : public ProjectVector {
public:
    ProjectO2PLSSerrUVector() {
        Init("SerrU", Scores, Model, AnyOPLS, NoComponent, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return SerrUHelp(); }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetSerrU);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSerrUColumnIDs);
    }
} const o2PLSSerrUVector;

std::string SerrLPSHelp() {
    return translate("SerrLPS: Lower limit of the predicted response by its standard error, for the prediction set.\n"
                     "It takes in the scatter of a single new observation. Plot with YPredPS and SerrUPS.\n"
                     "In the units of the data set.");
}

class ProjectSerrLPSVector final : public ProjectVector {
public:
    ProjectSerrLPSVector() {
        Init("SerrLPS", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return SerrLPSHelp(); }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetSerrLPS,
                           TriState::Undefined, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSerrLPSColumnIDs);
    }
} const serrLPSVector;

class ProjectO2PLSSerrLPSVector final : public ProjectVector {
public:
    ProjectO2PLSSerrLPSVector() {
        Init("SerrLPS", Scores, Model, AnyOPLS, NoComponent, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return SerrLPSHelp(); }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetSerrLPS,
                           TriState::Undefined, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSerrLPSColumnIDs);
    }
} const o2PLSSerrLPSVector;

std::string SerrUPSHelp() {
    return translate("SerrUPS: Upper limit of the predicted response by its standard error, for the prediction set.\n"
                     "It takes in the scatter of a single new observation. Plot with YPredPS and SerrLPS.\n"
                     "In the units of the data set.");
}

class ProjectSerrUPSVector final : public ProjectVector {
public:
    ProjectSerrUPSVector() {
        Init("SerrUPS", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return SerrUPSHelp(); }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetSerrUPS,
                           TriState::Undefined, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSerrUPSColumnIDs);
    }
} const serrUPSVector;

class ProjectO2PLSSerrUPSVector final : public ProjectVector {
public:
    ProjectO2PLSSerrUPSVector() {
        Init("SerrUPS", Scores, Model, AnyOPLS, NoComponent, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return SerrUPSHelp(); }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetSerrUPS,
                           TriState::Undefined, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSerrUPSColumnIDs);
    }
} const o2PLSSerrUPSVector;

std::string YPredPSConfIntPlusHelp() {
    return translate("YPredPSConfInt+: Upper limit of the confidence interval of the predicted response.\n"
                     "It rests on the spread of the predictions over the cross-validation rounds. A wide interval\n"
                     "tells that the model does not hold for the observation. In the units of YPredPS.");
}

class ProjectYPredPSConfIntPlusVector final : public ProjectVector {
public:
    ProjectYPredPSConfIntPlusVector() {
        Init("YPredPSConfInt+", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted,
             Displayable);
        m_contributionSource = ResponseContribution;
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return YPredPSConfIntPlusHelp(); }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYPredPSCVConfIntPlus, LevelOfModel);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredPSColumnIDs, AllBatches);
    }
} const yPredPSConfIntPlusVector;

class ProjectO2PLSYPredPSConfIntPlusVector final : public ProjectVector {
public:
    ProjectO2PLSYPredPSConfIntPlusVector() {
        Init("YPredPSConfInt+", Scores, Model, AnyOPLS, NoComponent, NumberYVariable, NoScoreLoading, Predicted,
             Displayable);
        m_contributionSource = ResponseContribution;
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return YPredPSConfIntPlusHelp(); }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYPredPSCVConfIntPlus, LevelOfModel);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredPSColumnIDs, AllBatches);
    }
} const o2PLSYPredPSConfIntPlusVector;

std::string YPredPSConfIntMinusHelp() {
    return translate("YPredPSConfInt-: Lower limit of the confidence interval of the predicted response.\n"
                     "It rests on the spread of the predictions over the cross-validation rounds. A wide interval\n"
                     "tells that the model does not hold for the observation. In the units of YPredPS.");
}

class ProjectYPredPSConfIntMinusVector final : public ProjectVector {
public:
    ProjectYPredPSConfIntMinusVector() {
        Init("YPredPSConfInt-", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted,
             Displayable);
        m_contributionSource = ResponseContribution;
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return YPredPSConfIntMinusHelp(); }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYPredPSCVConfIntMinus, LevelOfModel);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredPSColumnIDs, AllBatches);
    }
} const yPredPSConfIntMinusVector;

class ProjectO2PLSYPredPSConfIntMinusVector final : public ProjectVector {
public:
    ProjectO2PLSYPredPSConfIntMinusVector() {
        Init("YPredPSConfInt-", Scores, Model, AnyOPLS, NoComponent, NumberYVariable, NoScoreLoading, Predicted,
             Displayable);
        m_contributionSource = ResponseContribution;
        m_firstComponent = ComponentZero;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return YPredPSConfIntMinusHelp(); }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverValues(*this, project, args, &GetProjectData::GetYPredPSCVConfIntMinus, LevelOfModel);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredPSColumnIDs, AllBatches);
    }
} const o2PLSYPredPSConfIntMinusVector;

std::string YPredcvHelp() {
    return translate("YPredcv: Cross-validated predictions of a response, for the observations of the workset.\n"
                     "Each is predicted by the round that left the observation out. Plot YVar against them to see the\n"
                     "predictive power of the model. In the units of the data set.");
}

class ProjectYPredCVVector final : public ProjectVector {
public:
    ProjectYPredCVVector() {
        Init("YPredcv", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return YPredcvHelp(); }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetYPredCV);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredCVColumnIDs);
    }
} const yPredCVVector;

class ProjectO2PLSYPredCVVector final : public ProjectVector {
public:
    ProjectO2PLSYPredCVVector() {
        Init("YPredcv", Scores, Model, AnyOPLS, NoComponent, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return YPredcvHelp(); }
    bool SupportDateTime() const override { return true; }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetYPredCV);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredCVColumnIDs);
    }
} const o2PLSYPredCVVector;

std::string YPredErrcvHelp() {
    return translate(
        "YPredErrcv: Cross-validated errors of a response: observed minus predicted with the observation left out.\n"
        "Look for observations that the others do not predict. In the units of the data set.");
}

class ProjectYPredCVErrVector final : public ProjectVector {
public:
    ProjectYPredCVErrVector() {
        Init("YPredErrcv", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return YPredErrcvHelp(); }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetYPredCVErr);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredCVErrColumnIDs);
    }
} const yPredCVErrVector;

class ProjectO2PLSYPredCVErrVector final : public ProjectVector {
public:
    ProjectO2PLSYPredCVErrVector() {
        Init("YPredErrcv", Scores, Model, AnyOPLS, NoComponent, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_firstComponent = ComponentZero;
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return YPredErrcvHelp(); }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetYPredCVErr);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredCVErrColumnIDs);
    }
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

std::string YPredPScvHelp() {
    return translate("YPredPScv: Predicted response of the prediction set by the model of one cross-validation round.\n"
                     "Rounds that differ much tell that the prediction hangs on few observations.\n"
                     "In the units of YPredPS.");
}

class ProjectYPredPSCVVector final : public ProjectVector {
public:
    ProjectYPredPSCVVector() {
        Init("YPredPScv", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_useUnscalingTransform = true;
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return YPredPScvHelp(); }
    bool SupportDateTime() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverRound(*this, project, args);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredPSCVColumnIDs);
    }
} const yPredPSCVVector;

class ProjectO2PLSYPredPSCVVector final : public ProjectVector {
public:
    ProjectO2PLSYPredPSCVVector() {
        Init("YPredPScv", Scores, Model, AnyOPLS, NoComponent, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_useUnscalingTransform = true;
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return YPredPScvHelp(); }
    bool SupportDateTime() const override { return true; }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverRound(*this, project, args);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredPSCVColumnIDs);
    }
} const o2PLSYPredPSCVVector;

std::string YPredPScvSEHelp() {
    return translate("YPredPScvSE: Jack-knife standard error of the predicted response of the prediction set.\n"
                     "It is computed from all cross-validation rounds. In the units of the data set.");
}

class ProjectYPredPScvSEVector final : public ProjectVector {
public:
    ProjectYPredPScvSEVector() {
        Init("YPredPScvSE", Scores, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Predicted, Displayable);
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return YPredPScvSEHelp(); }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetYPredPScvSE);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredPScvSEColumnIDs);
    }
} const yPredPScvSEVector;

class ProjectO2PLSYPredPScvSEVector final : public ProjectVector {
public:
    ProjectO2PLSYPredPScvSEVector() {
        Init("YPredPScvSE", Scores, Model, AnyOPLS, NoComponent, NumberYVariable, NoScoreLoading, Predicted,
             Displayable);
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return YPredPScvSEHelp(); }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetYPredPScvSE);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetYPredPScvSEColumnIDs);
    }
} const o2PLSYPredPScvSEVector;

} // namespace
