#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"

// How much each X variable matters to the model.

namespace {

using namespace rows;

class ProjectVIPVector final : public ProjectVector {
public:
    ProjectVIPVector() {
        Init("VIP", Loadings, Model, AnyPLS, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "VIP: Importance of each X variable for the PLS model.\n"
            "It sums up the squared weights w of a variable over the components, each as it explains Y. The mean\n"
            "square is 1: variables above 1 matter most, those below 0.5 little. Without unit.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetVIP, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetVIPColumnIDs, TriState::Undefined);
    }
} const vIPVector;

class OPLSProjectVIPVector final : public ProjectVector {
public:
    OPLSProjectVIPVector() {
        Init("VIP", Loadings, Model, AnyOPLS, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "VIP: Importance of each X variable for the OPLS or O2PLS model.\n"
            "It sums up the squared loadings p and po of a variable: half of it by what each component explains of\n"
            "X, half by what predictive ones explain of Y. The mean square is 1: variables above 1 matter most,\n"
            "those below 0.5 little. Without unit.");
    }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetVIP, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetVIPColumnIDs, TriState::Undefined);
    }
} const oPLSVIPVector;

class OPLSProjectVIPPredVector final : public ProjectVector {
public:
    OPLSProjectVIPPredVector() {
        Init("VIPpred", Loadings, Model, AnyOPLS, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "VIPpred: Importance of each X variable for the predictive components.\n"
            "The mean square is 1. Compare with VIPorth to see whether a variable tells of Y or of something else.\n"
            "Without unit.");
    }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetOPLSPredVIP, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetVIPColumnIDs, TriState::Undefined);
    }
} const oPLSVIPPredVector;

class OPLSProjectVIPOrthVector final : public ProjectVector {
public:
    OPLSProjectVIPOrthVector() {
        Init("VIPorth", Loadings, Model, AnyOPLS, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "VIPorth: Importance of each X variable for the orthogonal components.\n"
            "The mean square is 1. Large values mark variables that carry variation unrelated to Y. Without unit.");
    }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetOPLSOrthVIP, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetVIPColumnIDs, TriState::Undefined);
    }
} const oPLSVIPOrthVector;

class ProjectVIPcvVector : public ProjectVector {
public:
    ProjectVIPcvVector() {
        Init("VIPcv", Loadings, Model, AnyPLS, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("VIPcv: Importance of each X variable for the model of one cross-validation round.\n"
                         "Compare rounds to see which importances are stable. Without unit.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long,
                          int round) const override {
        return Deliver({*this, project, source, component, round}, &GetProjectData::GetVIPcv, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetVIPcvColumnIDs, TriState::Undefined);
    }
} const vIPcvVector;

class ProjectO2PLSVIPcvVector final : public WholeModel<ProjectVIPcvVector, ByLoadings> {
public:
    ProjectO2PLSVIPcvVector() { m_predictiveComponentDefaultsToLast = false; }
} const o2PLSVIPcvVector;

std::string VIPcvSEHelp() {
    return translate("VIPcvSE: Jack-knife standard error of the importance of each X variable.\n"
                     "It is computed from all cross-validation rounds. Without unit.");
}

class ProjectVIPcvSEVector final : public ProjectVector {
public:
    ProjectVIPcvSEVector() {
        Init("VIPcvSE", Loadings, Model, AnyPLS, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override { return VIPcvSEHelp(); }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetVIPcvSE, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetVIPcvSEColumnIDs, TriState::Undefined);
    }
} const vIPcvSEVector;

class ProjectOPLSVIPcvSEVector final : public ProjectVector {
public:
    ProjectOPLSVIPcvSEVector() {
        Init("VIPcvSE", Loadings, Model, AnyOPLS, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override { return VIPcvSEHelp() + "\n" + ByLoadings(); }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetVIPcvSE, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetVIPcvSEColumnIDs, TriState::Undefined);
    }
} const oPLSVIPcvSEVector;

class ProjectMPowXVector final : public ProjectVector {
public:
    ProjectMPowXVector() {
        Init("MPowX", Loadings, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("MPowX: Modelling power of each X variable.\n"
                         "It is 1 less the residual standard deviation in parts of the original one. Near 1 the model\n"
                         "describes the variable, near 0 it does not. Without unit.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetMPowX);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetMPowXColumnIDs);
    }
} const mPowXVector;

} // namespace
