#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/ExceptionMessage.h"

// Regression coefficients: one value for each X variable, with the constant first.

namespace {

using namespace rows;

// The status behind the other arguments as the flag of the operation: the default is the model's to choose.
TriState::State ResolveFlag(char const *text) {
    switch (text ? std::atoi(text) : ProjectData::Default) {
    case ProjectData::Default:
        return TriState::Undefined;
    case ProjectData::Resolved:
        return TriState::Yes;
    default:
        return TriState::No;
    }
}

TablePtr DeliverResolved(ProjectVector const &vector, ProjectPtr const &project, char const *args) {
    ValueQuestion<ColumnTerms> const asked(vector, project, args);
    return asked.model == -1
               ? nullptr
               : GetProjectData(*project).GetCoefficientsCenterdScaled(asked.model, asked.arguments.component,
                                                                       &asked.items, TriState::Undefined,
                                                                       ResolveFlag(asked.arguments.rest));
}

ColumnIDs ResolvedLabels(ProjectVector const &vector, ProjectPtr const &project, char const *args) {
    ProjectVector::Arguments arguments;
    vector.ReadArguments(args, arguments);
    return Labels(project, arguments.source.c_str(), &GetProjectData::GetCoefficientsCenterdScaledColumnIDs,
                  TriState::Undefined, ResolveFlag(arguments.rest));
}

TablePtr DeliverRound(Question const &question, unsigned long number) {
    int const model = question.Model();
    ColumnTerms const terms = TermsOf(question, model, number);
    IntList const components{question.component};
    return terms.Size() == 0
               ? nullptr
               : GetProjectData(*question.project)
                     .GetCoefficientsCenterdScaledcv(model, question.round, terms[1], &components, TriState::Undefined);
}

TablePtr DeliverError(Question const &question, unsigned long number) {
    int const model = question.Model();
    ColumnTerms const terms = TermsOf(question, model, number);
    return terms.Size() == 0
               ? nullptr
               : GetProjectData(*question.project)
                     .GetCoefficientsCenterdScaledcvSE(model, question.component, terms[1], TriState::Undefined);
}

// A help text with the kind of model that a form is for.
std::string OfKind(ProjectVector const &vector, ExceptionMessage const &help) {
    return (help % (vector.GetModelType() == AnyOPLS ? "OPLS" : "PLS")).Text();
}

class ProjectCoeffVector : public ProjectVector {
public:
    ProjectCoeffVector() {
        Init("Coeff", Loadings, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return OfKind(
            *this, ExceptionMessage::translate(
                       "Coeff: {1} regression coefficients corresponding to\n"
                       "the X variables in their own units after transformation, for one response, with the constant\n"
                       "first. Use them to compute predictions outside of this program. In units of Y for one unit\n"
                       "of X."));
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetCoefficients,
                           TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetCoefficientsColumnIDs, TriState::Undefined);
    }
} const coeffVector;

class ProjectO2PLSCoeffVector final : public WholeModel<ProjectCoeffVector, OnAllOfX> {
} const o2PLSCoeffVector;

class ProjectCoeffCenterdVector : public ProjectVector {
public:
    ProjectCoeffCenterdVector() {
        Init("CoeffC", Loadings, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return OfKind(
            *this, ExceptionMessage::translate(
                       "CoeffC: {1} regression coefficients corresponding to\n"
                       "the centred X variables in their own units, for one response; the constant is the mean of the\n"
                       "response. In units of Y for one unit of X."));
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetCoefficientsCenterd,
                           TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetCoefficientsCenterdColumnIDs, TriState::Undefined);
    }
} const coeffCenterdVector;

class ProjectO2PLSCoeffCenterdVector final : public WholeModel<ProjectCoeffCenterdVector, OnAllOfX> {
} const o2PLSCoeffCenterdVector;

class ProjectCoeffCenterScaledVector : public ProjectVector {
public:
    ProjectCoeffCenterScaledVector() {
        Init("CoeffCS", Loadings, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return OfKind(
            *this,
            ExceptionMessage::translate(
                "CoeffCS: {1} regression coefficients corresponding to\n"
                "the centred and scaled X variables and the scaled response. Compare their sizes to see which\n"
                "variables drive the response, and their standard errors to see which are certain. Without unit."));
    }
    bool HasResolvableCoefficients() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverResolved(*this, project, args);
    }

    ColumnIDs CreateColumnIDsRaw(ProjectPtr project, char const *args) const override {
        return ResolvedLabels(*this, project, args);
    }
} const coeffCenterScaledVector;

class ProjectCoeffCSO2PLSVector final : public WholeModel<ProjectCoeffCenterScaledVector, OnAllOfX> {
} const coeffCSO2PLSVector;

class ProjectCoeffCenterScaledcvVector : public ProjectVector {
public:
    ProjectCoeffCenterScaledcvVector() {
        Init("CoeffCScv", Loadings, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return OfKind(
            *this,
            ExceptionMessage::translate(
                "CoeffCScv: {1} regression coefficients of one cross-validation round corresponding to\n"
                "the centred and scaled X variables and the scaled response. Coefficients that change much from\n"
                "round to round are not to be relied on. Without unit."));
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int round) const override {
        return DeliverRound({*this, project, source, component, round}, number);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetCoefficientsCenterdScaledColumnIDs, TriState::Undefined,
                      TriState::Undefined);
    }
} const coeffCenterScaledcvVector;

class ProjectO2PLSCoeffCenterScaledcvVector final : public WholeModel<ProjectCoeffCenterScaledcvVector, Refitted> {
} const o2PLSCoeffCenterScaledcvVector;

class ProjectCoeffCenterScaledcvSEVector : public ProjectVector {
public:
    ProjectCoeffCenterScaledcvSEVector() {
        Init("CoeffCScvSE", Loadings, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed,
             Displayable);
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return OfKind(
            *this, ExceptionMessage::translate(
                       "CoeffCScvSE: Jack-knife standard error of the {1} regression coefficients corresponding to\n"
                       "the centred and scaled X variables. A coefficient smaller than about twice its standard error\n"
                       "does not differ clearly from 0. Without unit."));
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverError({*this, project, source, component}, number);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetCoefficientsCenterdScaledColumnIDs, TriState::Undefined,
                      TriState::Undefined);
    }
} const coeffCenterScaledcvSEVector;

class ProjectO2PLSCoeffCenterScaledcvSEVector final : public WholeModel<ProjectCoeffCenterScaledcvSEVector, Refitted> {
} const o2PLSCoeffCenterScaledcvSEVector;

class ProjectCoeffMLRVector : public ProjectVector {
public:
    ProjectCoeffMLRVector() {
        Init("CoeffMLR", Loadings, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return OfKind(
            *this, ExceptionMessage::translate(
                       "CoeffMLR: {1} regression coefficients corresponding to\n"
                       "the centred and scaled X variables, for the response in its own units, as in multiple linear\n"
                       "regression. Use them to compare variables in terms of their effect. In units of Y."));
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetCoefficientsMLR,
                           TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetCoefficientsMLRColumnIDs, TriState::Undefined);
    }
} const coeffMLRVector;

class ProjectO2PLSCoeffMLRVector final : public WholeModel<ProjectCoeffMLRVector, OnAllOfX> {
} const o2PLSCoeffMLRVector;

class ProjectCoeffRotatedVector : public ProjectVector {
public:
    ProjectCoeffRotatedVector() {
        Init("CoeffRot", Loadings, Model, AnyPLS, Predictive, NumberYVariable, NoScoreLoading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return OfKind(
            *this,
            ExceptionMessage::translate(
                "CoeffRot: {1} regression coefficients rotated to\n"
                "the direction in which the X variables vary together with the prediction. Variables that do not\n"
                "tell of the response come near 0; for spectra they resemble the pure spectrum. Without unit."));
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetCoefficientsRotated,
                           TriState::Undefined, PredictiveModel::CenteredScaled);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetCoefficientsRotatedColumnIDs, TriState::Undefined);
    }
} const coeffRotatedVector;

class ProjectO2PLSCoeffRotatedVector final : public WholeModel<ProjectCoeffRotatedVector, OnAllOfX> {
} const o2PLSCoeffRotatedVector;

} // namespace
