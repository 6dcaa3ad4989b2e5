#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"

// Errors of prediction in one number, for each response or each component.

namespace {

using namespace rows;

class ProjectRMSEEVector : public ProjectVector {
public:
    ProjectRMSEEVector() {
        Init("RMSEE", Loadings, Model, AnyPLS, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "RMSEE: Root mean square error of the fit, for each response.\n"
            "It is corrected for the degrees of freedom that the components take. In the units of the response.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetRMSEE);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetRMSEEColumnIDs);
    }
} const rMSEEVector;

class ProjectO2PLSRMSEEVector final : public WholeModel<ProjectRMSEEVector, LeftOfY> {
} const o2PLSRMSEEVector;

class ProjectRMSEPVector : public ProjectVector {
public:
    ProjectRMSEPVector() {
        Init("RMSEP", Loadings, Model, AnyPLS, Predictive, NumberNone, NoScoreLoading, Predicted, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("RMSEP: Root mean square error of prediction, for each response.\n"
                         "It needs a prediction set with known responses, and is the honest measure of the predictive\n"
                         "power. In the units of the response.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetRMSEP);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetRMSEPColumnIDs);
    }
} const rMSEPVector;

class ProjectO2PLSRMSEPVector final : public WholeModel<ProjectRMSEPVector, Predicting> {
} const o2PLSRMSEPVector;

class ProjectRMSEPPerComponentVector final : public ProjectVector {
public:
    ProjectRMSEPPerComponentVector() {
        Init("RMSEP", PerComponent, Model, AnyPLS, NoComponent, NumberYVariable, NoScoreLoading, Predicted,
             Displayable);
    }
    std::string GetHelpString() const override {
        return translate("RMSEP: Root mean square error of prediction of a response, for each number of components.\n"
                         "Choose the number of components where it stops falling. In the units of the response.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetRMSEPPerComponent);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetRMSEPPerComponentColumnIDs);
    }
} const rMSEPPerComponentVector;

class ProjectRMSEPLastComponent final : public ProjectVector {
public:
    ProjectRMSEPLastComponent() {
        Init("RMSEP(Last)", PerComponent, Model, AnyPLS, NoComponent, NumberYVariable, NoScoreLoading, Observed,
             Hidden);
    }
    std::string GetHelpString() const override {
        return translate("RMSEP(Last): Root mean square error of prediction of a response, with all components.\n"
                         "In the units of the response.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetRMSEPPerComponentLast);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetLastCompColumnIDs);
    }
} const rMSEPLastComponentVector;

class ProjectRMSEcvVector : public ProjectVector {
public:
    ProjectRMSEcvVector() {
        Init("RMSEcv", Loadings, Model, AnyPLS, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "RMSEcv: Root mean square error of cross-validation, for each response.\n"
            "It tells how well observations are predicted that the model has not seen. Compare with RMSEE:\n"
            "a much larger value warns of overfit. In the units of the response.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetRMSEcv);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetRMSEcvColumnIDs);
    }
} const rMSEcvVector;

class ProjectO2PLSRMSEcvVector final : public WholeModel<ProjectRMSEcvVector, Refitted> {
} const o2PLSRMSEcvVector;

class ProjectRMSEcvPerComponentVector final : public ProjectVector {
public:
    ProjectRMSEcvPerComponentVector() {
        Init("RMSEcv", PerComponent, Model, AnyPLS, NoComponent, NumberYVariable, NoScoreLoading, Observed,
             Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "RMSEcv: Root mean square error of cross-validation of a response, for each number of components.\n"
            "Choose the number of components where it stops falling. In the units of the response.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetRMSEcvPerComponent);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetRMSEcvPerComponentColumnIDs);
    }
} const rMSEcvPerComponentVector;

class ProjectRMSEcvLastComponent final : public ProjectVector {
public:
    ProjectRMSEcvLastComponent() {
        Init("RMSEcv(Last)", PerComponent, Model, WithY, NoComponent, NumberYVariable, NoScoreLoading, Observed,
             Hidden);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "RMSEcv(Last): Root mean square error of cross-validation of a response, with all components.\n"
            "In the units of the response.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetRMSEcvPerComponentLast);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetLastCompColumnIDs);
    }
} const rMSEcvLastComponentVector;

class ProjectRMSEcvProgressionVector final : public ProjectVector {
public:
    ProjectRMSEcvProgressionVector() {
        Init("RMSEcv-progression", PerComponent, Model, AnyOPLS, NoComponent, NumberYVariable, NoScoreLoading, Observed,
             Displayable);
    }
    std::string GetHelpString() const override {
        return translate("RMSEcv-progression: Root mean square error of cross-validation of a response as orthogonal "
                         "components are added.\n"
                         "It starts with the predictive components alone. In the units of the response.");
    }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetRMSEcvProgression);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetRMSEcvProgressionColumnIDs);
    }
} const rMSEcvProgressionVector;

} // namespace
