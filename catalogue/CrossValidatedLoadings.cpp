#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"

// Loadings and weights of one cross-validation round, and their jack-knife standard errors.

namespace {

using namespace rows;

class ProjectCcvVector final : public ProjectVector {
public:
    ProjectCcvVector() {
        Init("ccv", Loadings, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "ccv: Weights c of one cross-validation round, are\n"
            "computed with the observations of that round left out, and turned to the sign of the full model.\n"
            "Look at several rounds together: a weight that changes much is not to be relied on.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long,
                          int round) const override {
        return Deliver({*this, project, source, component, round}, &GetProjectData::GetCcv);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetCcvColumnIDs);
    }
} const ccvVector;

class ProjectCcvSEVector final : public ProjectVector {
public:
    ProjectCcvSEVector() {
        Init("ccvSE", Loadings, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "ccvSE: Jack-knife standard error of the weights c, is\n"
            "computed from all cross-validation rounds, in the units of c. A weight smaller than about twice its\n"
            "standard error does not differ clearly from 0.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetCcvSE);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetCcvSEColumnIDs);
    }
} const ccvSEVector;

class ProjectCocvVector final : public ProjectVector {
public:
    ProjectCocvVector() {
        Init("cocv", Loadings, Model, AnyOPLS, YSide, NumberNone, NoScoreLoading, Observed, Displayable);
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "cocv: Orthogonal Y weights co of one cross-validation round, are\n"
            "computed with the observations of that round left out, and turned to the sign of the full model.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long,
                          int round) const override {
        return Deliver({*this, project, source, component, round}, &GetProjectData::GetCocv);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetCocvColumnIDs);
    }
} const cocvVector;

class ProjectCocvSEVector final : public ProjectVector {
public:
    ProjectCocvSEVector() {
        Init("cocvSE", Loadings, Model, AnyOPLS, YSide, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("cocvSE: Jack-knife standard error of the orthogonal Y weights co, is\n"
                         "computed from all cross-validation rounds, in the units of co.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetCocvSE);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetCocvSEColumnIDs);
    }
} const cocvSEVector;

class ProjectPCcvSEVector final : public ProjectVector {
public:
    ProjectPCcvSEVector() {
        Init("pccvSE", Loadings, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("pccvSE: Jack-knife standard errors of pc, are\n"
                         "those of the loadings p for the X variables and of the weights c for the Y variables, each "
                         "in the units of\n"
                         "its vector. Draw them as error bars on pc.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPCcvSE, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPCcvSEColumnIDs, TriState::Undefined);
    }
} const pCcvSEVector;

class ProjectPcvVector final : public ProjectVector {
public:
    ProjectPcvVector() {
        Init("pcv", Loadings, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "pcv: Loadings p of one cross-validation round, are\n"
            "computed with the observations of that round left out, and turned to the sign of the full model.\n"
            "Look at several rounds together to see which loadings hang on few observations.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long,
                          int round) const override {
        return Deliver({*this, project, source, component, round}, &GetProjectData::GetPcv, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPcvColumnIDs, TriState::Undefined);
    }
} const pcvVector;

class ProjectPcvSEVector final : public ProjectVector {
public:
    ProjectPcvSEVector() {
        Init("pcvSE", Loadings, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "pcvSE: Jack-knife standard error of the loadings p, is\n"
            "computed from all cross-validation rounds, in the units of p. Draw it as error bars on p: a bar that\n"
            "crosses 0 marks a variable whose part in the component is uncertain.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPcvSE, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPcvSEColumnIDs, TriState::Undefined);
    }
} const pcvSEVector;

class ProjectPocvVector final : public ProjectVector {
public:
    ProjectPocvVector() {
        Init("pocv", Loadings, Model, AnyOPLS, XSide, NumberNone, NoScoreLoading, Observed, Displayable);
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "pocv: Orthogonal loadings po of one cross-validation round, are\n"
            "computed with the observations of that round left out, and turned to the sign of the full model.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long,
                          int round) const override {
        return Deliver({*this, project, source, component, round}, &GetProjectData::GetPocv, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPocvColumnIDs, TriState::Undefined);
    }
} const pocvVector;

class ProjectPocvSEVector final : public ProjectVector {
public:
    ProjectPocvSEVector() {
        Init("pocvSE", Loadings, Model, AnyOPLS, XSide, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("pocvSE: Jack-knife standard error of the orthogonal loadings po, is\n"
                         "computed from all cross-validation rounds, in the units of po.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPocvSE, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPocvSEColumnIDs, TriState::Undefined);
    }
} const pocvSEVector;

class ProjectPQcvSEVector final : public ProjectVector {
public:
    ProjectPQcvSEVector() {
        Init("pqcvSE", Loadings, Model, AnyOPLS, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("pqcvSE: Jack-knife standard errors of pq, are\n"
                         "those of the loadings p for the X variables and of q for the Y variables, each in the units "
                         "of its vector.\n"
                         "Draw them as error bars on pq.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPQcvSE, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPQcvSEColumnIDs, TriState::Undefined);
    }
} const pQcvSEVector;

class ProjectQcvVector final : public ProjectVector {
public:
    ProjectQcvVector() {
        Init("qcv", Loadings, Model, AnyOPLS, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "qcv: Loadings q of one cross-validation round, are\n"
            "computed with the observations of that round left out, and turned to the sign of the full model.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long,
                          int round) const override {
        return Deliver({*this, project, source, component, round}, &GetProjectData::GetQcv);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQcvColumnIDs);
    }
} const qcvVector;

class ProjectQcvSEVector final : public ProjectVector {
public:
    ProjectQcvSEVector() {
        Init("qcvSE", Loadings, Model, AnyOPLS, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("qcvSE: Jack-knife standard error of the loadings q, is\n"
                         "computed from all cross-validation rounds, in the units of q.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetQcvSE);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQcvSEColumnIDs);
    }
} const qcvSEVector;

class ProjectQocvVector final : public ProjectVector {
public:
    ProjectQocvVector() {
        Init("qocv", Loadings, Model, AnyOPLS, YSide, NumberNone, NoScoreLoading, Observed, Displayable);
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "qocv: Orthogonal Y loadings qo of one cross-validation round, are\n"
            "computed with the observations of that round left out, and turned to the sign of the full model.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long,
                          int round) const override {
        return Deliver({*this, project, source, component, round}, &GetProjectData::GetQocv);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQocvColumnIDs);
    }
} const qocvVector;

class ProjectQocvSEVector final : public ProjectVector {
public:
    ProjectQocvSEVector() {
        Init("qocvSE", Loadings, Model, AnyOPLS, YSide, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("qocvSE: Jack-knife standard error of the orthogonal Y loadings qo, is\n"
                         "computed from all cross-validation rounds, in the units of qo.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetQocvSE);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQocvSEColumnIDs);
    }
} const qocvSEVector;

class ProjectWStarCcvSEVector final : public ProjectVector {
public:
    ProjectWStarCcvSEVector() {
        Init("w*ccvSE", Loadings, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("w*ccvSE: Jack-knife standard errors of w*c, are\n"
                         "those of the weights w* for the X variables and of c for the Y variables, each in the units "
                         "of its vector.\n"
                         "Draw them as error bars on w*c.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetWStarCcvSE, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetWStarCcvSEColumnIDs, TriState::Undefined);
    }
} const wStarCcvSEVector;

class ProjectWStarcvVector final : public ProjectVector {
public:
    ProjectWStarcvVector() {
        Init("w*cv", Loadings, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "w*cv: Weights w* of one cross-validation round, are\n"
            "computed with the observations of that round left out, and turned to the sign of the full model.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long,
                          int round) const override {
        return Deliver({*this, project, source, component, round}, &GetProjectData::GetWStarcv, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetWStarcvColumnIDs, TriState::Undefined);
    }
} const wStarcvVector;

class ProjectWStarcvSEVector final : public ProjectVector {
public:
    ProjectWStarcvSEVector() {
        Init("w*cvSE", Loadings, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "w*cvSE: Jack-knife standard error of the weights w*, is\n"
            "computed from all cross-validation rounds, in the units of w*. A weight smaller than about twice its\n"
            "standard error does not differ clearly from 0.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetWStarcvSE, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetWStarcvSEColumnIDs, TriState::Undefined);
    }
} const wStarcvSEVector;

class ProjectWcvVector final : public ProjectVector {
public:
    ProjectWcvVector() {
        Init("wcv", Loadings, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "wcv: Weights w of one cross-validation round, are\n"
            "computed with the observations of that round left out, and turned to the sign of the full model.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long,
                          int round) const override {
        return Deliver({*this, project, source, component, round}, &GetProjectData::GetWcv, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetWcvColumnIDs, TriState::Undefined);
    }
} const wcvVector;

class ProjectWcvSEVector final : public ProjectVector {
public:
    ProjectWcvSEVector() {
        Init("wcvSE", Loadings, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("wcvSE: Jack-knife standard error of the weights w, is\n"
                         "computed from all cross-validation rounds, in the units of w.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetWcvSE, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetWcvSEColumnIDs, TriState::Undefined);
    }
} const wcvSEVector;

class ProjectWocvVector final : public ProjectVector {
public:
    ProjectWocvVector() {
        Init("wocv", Loadings, Model, AnyOPLS, XSide, NumberNone, NoScoreLoading, Observed, Displayable);
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "wocv: Orthogonal weights wo of one cross-validation round, are\n"
            "computed with the observations of that round left out, and turned to the sign of the full model.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long,
                          int round) const override {
        return Deliver({*this, project, source, component, round}, &GetProjectData::GetWocv, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetWocvColumnIDs, TriState::Undefined);
    }
} const wocvVector;

class ProjectWocvSEVector final : public ProjectVector {
public:
    ProjectWocvSEVector() {
        Init("wocvSE", Loadings, Model, AnyOPLS, XSide, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("wocvSE: Jack-knife standard error of the orthogonal weights wo, is\n"
                         "computed from all cross-validation rounds, in the units of wo.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetWocvSE, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetWocvSEColumnIDs, TriState::Undefined);
    }
} const wocvSEVector;

} // namespace
