#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"

#include <cstdlib>
#include <cstring>

// Results of lagged variables as functions of the lag, and the response of Y to a change of one. The number of these
// vectors counts the mothers of the model's lagged terms.

namespace {

using namespace rows;

// operation(model, component, mother), operation(model, mother)
TablePtr AskOfMother(Question const &question, int model, ColumnTerm const &mother,
                     TablePtr (GetProjectData::*operation)(int, int, ColumnTerm const &) const) {
    return (GetProjectData(*question.project).*operation)(model, question.component, mother);
}
TablePtr AskOfMother(Question const &question, int model, ColumnTerm const &mother,
                     TablePtr (GetProjectData::*operation)(int, ColumnTerm const &) const) {
    return (GetProjectData(*question.project).*operation)(model, mother);
}

// operation(model, mother, more...)
template <typename... More>
ColumnIDs LabelsOfMother(Question const &question, unsigned long number,
                         ColumnIDs (GetProjectData::*operation)(int, ColumnTerm const &, More...) const,
                         std::type_identity_t<More>... more) {
    int const model = ProjectVector::GetModelNumber(question.project, question.source);
    ColumnTerms const mothers = TermsOf(question, model, number);
    return mothers.Size() == 0 ? ColumnIDs(question.project)
                               : (GetProjectData(*question.project).*operation)(model, mothers[1], more...);
}

class LagVector : public ProjectVector {
public:
    bool IsValidModel(NCProject const &, ModelInfo const &model) const override { return model.hasLaggedVariables; }

protected:
    LagVector(char const *name, ModelTypeE::Model models, int component, NumberType number, bool isDisplayable) {
        Init(name, PerLag, Model, models, component, number, NoScoreLoading, Observed, isDisplayable);
    }
};

template <auto values, auto columns>
class OneMotherVector : public LagVector {
public:
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const final {
        Question const question{*this, project, source, component};
        int const model = question.Model();
        ColumnTerms const mothers = TermsOf(question, model, number);
        return mothers.Size() == 0 ? nullptr : AskOfMother(question, model, mothers[1], values);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int component, unsigned long number) const final {
        return LabelsOfMother({*this, project, source, component}, number, columns);
    }

protected:
    OneMotherVector(char const *name, ModelTypeE::Model models, int component)
        : LagVector(name, models, component, NumberXVariable, Displayable) {}
};

class ProjectPLagVector final : public OneMotherVector<&GetProjectData::GetPLag, &GetProjectData::GetPLagColumnIDs> {
public:
    ProjectPLagVector() : OneMotherVector("pLag", AnyModel, Predictive) {}
    std::string GetHelpString() const override {
        return translate(
            "pLag: Loadings p of one lagged variable, one value for each lag and one vector for each model\n"
            "dimension. Lags with loadings far from 0 vary together in the component; neighbouring lags mostly do,\n"
            "since the variable changes slowly. In units of scaled X for one unit of t.");
    }
} const pLagVector;

class ProjectWLagVector final : public OneMotherVector<&GetProjectData::GetWLag, &GetProjectData::GetWLagColumnIDs> {
public:
    ProjectWLagVector() : OneMotherVector("wLag", WithY, Predictive) {}
    std::string GetHelpString() const override {
        return translate(
            "wLag: Weights w of one lagged variable, one value for each lag and one vector for each model\n"
            "dimension. They show at which delay the variable goes with what earlier components left of Y. Without\n"
            "unit.");
    }
} const wLagVector;

class ProjectWStarLagVector final
    : public OneMotherVector<&GetProjectData::GetWStarLag, &GetProjectData::GetWStarLagColumnIDs> {
public:
    ProjectWStarLagVector() : OneMotherVector("w*Lag", WithY, Predictive) {}
    std::string GetHelpString() const override {
        return translate(
            "w*Lag: Weights w* of one lagged variable, one value for each lag and one vector for each model\n"
            "dimension. Unlike w they apply to X itself and compare between components. Without unit.");
    }
} const wStarLagVector;

class ProjectVIPLagVector final
    : public OneMotherVector<&GetProjectData::GetVIPLag, &GetProjectData::GetVIPLagColumnIDs> {
public:
    ProjectVIPLagVector() : OneMotherVector("VIPLag", AnyPLS, Predictive) {
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "VIPLag: Importance of each lag of one variable for the PLS model.\n"
            "The mean square over all X variables is 1: lags above 1 matter most. A peak tells the delay by which\n"
            "Y follows the variable; lags that stay below 0.5 to the end can be left out. Without unit.");
    }
} const vIPLagVector;

class ProjectO2PLSVIPLagVector final
    : public OneMotherVector<&GetProjectData::GetVIPLag, &GetProjectData::GetVIPLagColumnIDs> {
public:
    ProjectO2PLSVIPLagVector() : OneMotherVector("VIPLag", AnyOPLS, NoComponent) {}
    std::string GetHelpString() const override {
        return translate(
            "VIPLag: Importance of each lag of one variable for the OPLS or O2PLS model.\n"
            "The mean square over all X variables is 1: lags above 1 matter most, be it for Y or for variation\n"
            "beside it. Without unit.");
    }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return UseModel() && LagVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
} const o2PLSVIPLagVector;

// Of a model that sets orthogonal components apart, and has some.
template <auto values, auto columns>
class OrthogonalLagVector : public OneMotherVector<values, columns> {
public:
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return LagVector::IsValidModel(project, model) && model.SizeXSideOrthogonalComponents() > 0;
    }

protected:
    explicit OrthogonalLagVector(char const *name) : OneMotherVector<values, columns>(name, AnyOPLS, NoComponent) {}
};

class ProjectVIPPredLagVector final
    : public OrthogonalLagVector<&GetProjectData::GetVIPPredLag, &GetProjectData::GetVIPPredLagColumnIDs> {
public:
    ProjectVIPPredLagVector() : OrthogonalLagVector("VIPpredLag") {}
    std::string GetHelpString() const override {
        return translate(
            "VIPpredLag: Importance of each lag of one variable for the predictive components.\n"
            "A peak tells the delay by which Y follows the variable. The mean square over all X variables is 1.\n"
            "Without unit.");
    }
} const vIPPredLagVector;

class ProjectVIPOrthLagVector final
    : public OrthogonalLagVector<&GetProjectData::GetVIPOrthLag, &GetProjectData::GetVIPOrthLagColumnIDs> {
public:
    ProjectVIPOrthLagVector() : OrthogonalLagVector("VIPorthLag") {}
    std::string GetHelpString() const override {
        return translate(
            "VIPorthLag: Importance of each lag of one variable for the orthogonal components.\n"
            "Large values mark delays at which the variable tells of something else than Y. The mean square over\n"
            "all X variables is 1. Without unit.");
    }
} const vIPOrthLagVector;

// An X variable and a response, which is the second number.
class CoefficientLagVector : public LagVector {
public:
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const final {
        Arguments arguments;
        if (!ReadArguments(args, arguments))
            return nullptr;
        Question const question{*this, project, arguments.source.c_str(), arguments.component};
        int const model = question.Model();
        if (model == -1)
            return nullptr;
        ColumnTerms const responses = GetYColumnTerm(*project, model, static_cast<unsigned int>(arguments.number2));
        ColumnTerms const mothers = TermsOf(question, model, arguments.number);
        return mothers.Size() == 0 ? nullptr : Ask(question, model, mothers[1], responses[1]);
    }

protected:
    explicit CoefficientLagVector(char const *name)
        : LagVector(name, AnyPLS, Predictive, NumberXAndYVariable, Displayable) {
        m_predictiveComponentDefaultsToLast = true;
    }

private:
    virtual TablePtr Ask(Question const &question, int model, ColumnTerm const &mother,
                         ColumnTerm const &response) const = 0;
};

class ProjectCoeffCSLagVector final : public CoefficientLagVector {
public:
    ProjectCoeffCSLagVector() : CoefficientLagVector("CoeffCSLag") {}
    std::string GetHelpString() const override {
        return translate(
            "CoeffCSLag: PLS regression coefficients of one lagged variable for one response, one value for each\n"
            "lag, for centred and scaled variables. They show how strongly, and with which sign, the response\n"
            "follows the variable after each delay. Without unit.");
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int component,
                              unsigned long number) const override {
        return LabelsOfMother({*this, project, source, component}, number, &GetProjectData::GetCoeffCSLagColumnIDs);
    }

private:
    TablePtr Ask(Question const &question, int model, ColumnTerm const &mother,
                 ColumnTerm const &response) const override {
        return GetProjectData(*question.project).GetCoeffCSLag(model, question.component, mother, response);
    }
} const coeffCSLagVector;

class ProjectCoeffCScvSELagVector final : public CoefficientLagVector {
public:
    ProjectCoeffCScvSELagVector() : CoefficientLagVector("CoeffCScvSELag") { m_onlyCrossValidated = true; }
    std::string GetHelpString() const override {
        return translate(
            "CoeffCScvSELag: Jack-knife standard error of CoeffCSLag, one value for each lag.\n"
            "A coefficient smaller than about twice its standard error does not differ clearly from 0: at that\n"
            "delay nothing is certain. Without unit.");
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int component,
                              unsigned long number) const override {
        return LabelsOfMother({*this, project, source, component}, number, &GetProjectData::GetCoeffCScvSELagColumnIDs,
                              TriState::Undefined);
    }

private:
    TablePtr Ask(Question const &question, int model, ColumnTerm const &mother,
                 ColumnTerm const &response) const override {
        return GetProjectData(*question.project)
            .GetCoeffCScvSELag(model, question.component, mother, response, TriState::Undefined);
    }
} const coeffCScvSELagVector;

// Behind the common arguments stand the lags between which the input is 1: "0-5".
class ProjectImpRespVector final : public LagVector {
public:
    ProjectImpRespVector() : LagVector("StepResp", WithY, Predictive, NumberXVariable, Hidden) {
        m_longName = "Step Response";
        m_isImpulseResponseVector = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "StepResp: Response of Y to a lagged variable that is 1 from the start lag to the end lag, else 0.\n"
            "From 0 to 0 it is the impulse response: how the effect of one disturbance comes and goes. From 0 to\n"
            "a large lag it is the step response: its last value is the gain in the long run. Where X holds\n"
            "earlier values of the response itself, their effect goes round. In units of Y for one unit of X.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        Arguments arguments;
        ReadArguments(args, arguments);
        Question const question{*this, project, arguments.source.c_str(), arguments.component};
        int const model = arguments.rest ? question.Model() : -1;
        ColumnTerms const mothers = TermsOf(question, model, arguments.number);
        if (mothers.Size() == 0)
            return nullptr;
        char *behind = nullptr;
        auto const start = static_cast<int>(std::strtol(arguments.rest, &behind, 10));
        auto const end = *behind == '-' ? static_cast<int>(std::strtol(behind + 1, nullptr, 10)) : 0;
        return GetProjectData(*project).GetImpulseResponse(model, arguments.component, mothers[1], start, end, nullptr);
    }
    ColumnIDs CreateColumnIDsRaw(ProjectPtr project, char const *args) const override {
        Arguments arguments;
        ReadArguments(args, arguments);
        Question const question{*this, project, arguments.source.c_str(), arguments.component};
        int const model = GetModelNumber(project, arguments.source);
        char const *const dash = std::strrchr(args, '-');
        ColumnTerms const mothers = TermsOf(question, dash ? model : -1, arguments.number);
        return mothers.Size() == 0
                   ? ColumnIDs(project)
                   : GetProjectData(*project).GetImpulseResponseColumnIDs(model, std::atoi(dash + 1), mothers[1]);
    }
} const impRespVector;

} // namespace
