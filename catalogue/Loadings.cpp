#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"

// Loadings and weights: one value for each variable.

namespace {

using namespace rows;

class ProjectABSPCorrVector final : public ProjectVector {
public:
    ProjectABSPCorrVector() {
        Init("abs(p(corr))", Loadings, Model, AnyModel, Predictive, NumberNone, Loading, Observed, Hidden);
    }
    std::string GetHelpString() const override {
        return translate(
            "abs(p(corr)): Absolute values of p(corr), the correlation of each X variable with the score t, are\n"
            "numbers between 0 and 1. Sort variables by it to see which ones a component rests on, whatever the\n"
            "direction of the relation.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetAbsPCorr);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPCorrColumnIDs);
    }
} const aBSPCorrVector;

class ProjectCVector final : public ProjectVector {
public:
    ProjectCVector() { Init("c", Loadings, Model, WithY, Predictive, NumberNone, Loading, Observed, Displayable); }
    std::string GetHelpString() const override {
        return translate(
            "c: Weights c, one vector for each predictive component, are\n"
            "the weights that combine the Y variables into the score u, and that turn the scores t into predicted Y.\n"
            "Compare with w* to see which X variables go with which responses. In units of scaled Y for one unit of "
            "t.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetC);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetCColumnIDs);
    }
} const cVector;

class ProjectCCorrVector final : public ProjectVector {
public:
    ProjectCCorrVector() {
        Init("c(corr)", Loadings, Model, WithY, Predictive, NumberNone, Loading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate("c(corr): Correlation of each Y variable with the score t of a component, is\n"
                         "a number between -1 and 1. It shows how strongly a response follows the component, freed "
                         "from the scaling\n"
                         "of the response.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetCCorr);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetCCorrColumnIDs);
    }
} const cCorrVector;

class ProjectCoVector final : public ProjectVector {
public:
    ProjectCoVector() { Init("co", Loadings, Model, AnyOPLS, YSide, NumberNone, Loading, Observed, Displayable); }
    std::string GetHelpString() const override {
        return translate(
            "co: Orthogonal Y weights co, one vector for each Y-side orthogonal component, are\n"
            "the unit-length weights that combine the Y variables into the score uo. They show which responses vary\n"
            "together in a way that X does not tell.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetCo);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetCoColumnIDs);
    }
} const coVector;

class ProjectPVector final : public ProjectVector {
public:
    ProjectPVector() { Init("p", Loadings, Model, AnyModel, Predictive, NumberNone, Loading, Observed, Displayable); }
    std::string GetHelpString() const override {
        return translate("p: Loadings p, one vector for each model dimension, are\n"
                         "the weights by which the score t gives back the X variables. A large value, of either sign, "
                         "is a variable\n"
                         "that the component describes; variables close together in a loading plot vary together.\n"
                         "In units of scaled X for one unit of t.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetP, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPColumnIDs, TriState::Undefined);
    }
} const pVector;

class ProjectPCorrVector final : public ProjectVector {
public:
    ProjectPCorrVector() {
        Init("p(corr)", Loadings, Model, AnyModel, Predictive, NumberNone, Loading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate("p(corr): Loadings p scaled as correlations, are\n"
                         "the correlation of each X variable with the score t of the component, between -1 and 1. "
                         "Their squares are\n"
                         "the explained share of each variable. Compare variables by it whatever their scaling.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPCorr);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPCorrColumnIDs);
    }
} const pCorrVector;

class ProjectPCtrVector final : public ProjectVector {
public:
    ProjectPCtrVector() {
        Init("p(ctr)", Loadings, Model, AnyModel, Predictive, NumberNone, Loading, Observed, Hidden);
    }
    std::string GetHelpString() const override {
        return translate(
            "p(ctr): Loadings p in centred units, are\n"
            "the loadings divided by the scaling weights: the change of each X variable in its own units for one unit\n"
            "of t. For spectra it gives back the shape of the component.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPCtr, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPColumnIDs, TriState::Undefined);
    }
} const pCtrVector;

class ProjectPCVector final : public ProjectVector {
public:
    ProjectPCVector() { Init("pc", Loadings, Model, WithY, Predictive, NumberNone, Loading, Observed, Displayable); }
    std::string GetHelpString() const override {
        return translate("pc: Loadings p of the X variables and weights c of the Y variables together, one vector for "
                         "each predictive component,\n"
                         "show X and Y variables in one plot: those close together go together.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPC, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPCColumnIDs, TriState::Undefined);
    }
} const pCVector;

class ProjectPCCorrVector final : public ProjectVector {
public:
    ProjectPCCorrVector() {
        Init("pc(corr)", Loadings, Model, WithY, Predictive, NumberNone, Loading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "pc(corr): Correlations of X and Y variables with the score t together, between -1 and 1, are\n"
            "p(corr) for the X variables and c(corr) for the Y variables, so that both can be read on one scale.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPCCorr);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPCCorrColumnIDs);
    }
} const pCCorrVector;

class ProjectPoVector final : public ProjectVector {
public:
    ProjectPoVector() { Init("po", Loadings, Model, AnyOPLS, XSide, NumberNone, Loading, Observed, Displayable); }
    std::string GetHelpString() const override {
        return translate(
            "po: Orthogonal loadings po, one vector for each X-side orthogonal component, are\n"
            "the weights by which the score to gives back the X variables. They show which variables carry systematic\n"
            "variation that has nothing to do with Y. In units of scaled X for one unit of to.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPo, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPoColumnIDs, TriState::Undefined);
    }
} const poVector;

class ProjectPoCorrVector final : public ProjectVector {
public:
    ProjectPoCorrVector() {
        Init("po(corr)", Loadings, Model, AnyOPLS, XSide, NumberNone, Loading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "po(corr): Orthogonal loadings po scaled as correlations, are\n"
            "the correlation of each X variable with the score to, between -1 and 1. Their squares are the share of\n"
            "each variable that the orthogonal component explains.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPoCorr);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPoCorrColumnIDs);
    }
} const poCorrVector;

class ProjectPoCtrVector final : public ProjectVector {
public:
    ProjectPoCtrVector() { Init("po(ctr)", Loadings, Model, AnyOPLS, XSide, NumberNone, Loading, Observed, Hidden); }
    std::string GetHelpString() const override {
        return translate(
            "po(ctr): Orthogonal loadings po in centred units, are\n"
            "divided by the scaling weights: the change of each X variable in its own units for one unit of to.\n"
            "For spectra it gives back the shape of the disturbance.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPoCtr, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPoColumnIDs, TriState::Undefined);
    }
} const poCtrVector;

class ProjectPoParetoVector final : public ProjectVector {
public:
    ProjectPoParetoVector() {
        Init("po(pareto)", Loadings, Model, AnyOPLS, XSide, NumberNone, Loading, Observed, Hidden);
    }
    std::string GetHelpString() const override {
        return translate(
            "po(pareto): Orthogonal loadings po as under Pareto scaling, are\n"
            "a compromise between scaled and centred units: large variations stand out without hiding the small ones.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPoPareto, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPoColumnIDs, TriState::Undefined);
    }
} const poParetoVector;

class ProjectPoSVector final : public ProjectVector {
public:
    ProjectPoSVector() { Init("poso", Loadings, Model, AnyOPLS, XSide, NumberNone, Loading, Observed, Displayable); }
    std::string GetHelpString() const override {
        return translate("poso: Orthogonal loadings po of the X variables and so of the Y variables together, one "
                         "vector for each X-side orthogonal component,\n"
                         "show in one plot what the orthogonal variation is made of, and what of it is left in Y.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPoS, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPoSColumnIDs, TriState::Undefined);
    }
} const poSVector;

class ProjectPoSCorrVector final : public ProjectVector {
public:
    ProjectPoSCorrVector() {
        Init("poso(corr)", Loadings, Model, AnyOPLS, XSide, NumberNone, Loading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate("poso(corr): Correlations of X and Y variables with the orthogonal score to together, between "
                         "-1 and 1, are\n"
                         "po(corr) for the X variables and so as a correlation for the Y variables.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPoSCorr);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPoSCorrColumnIDs);
    }
} const poSCorrVector;

class ProjectPQVector final : public ProjectVector {
public:
    ProjectPQVector() { Init("pq", Loadings, Model, AnyOPLS, Predictive, NumberNone, Loading, Observed, Displayable); }
    std::string GetHelpString() const override {
        return translate("pq: Loadings p of the X variables and q of the Y variables together, one vector for each "
                         "predictive component,\n"
                         "show X and Y variables in one plot: those close together go together.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPQ, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPQColumnIDs, TriState::Undefined);
    }
} const pQVector;

class ProjectPQCorrVector final : public ProjectVector {
public:
    ProjectPQCorrVector() {
        Init("pq(corr)", Loadings, Model, AnyOPLS, Predictive, NumberNone, Loading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "pq(corr): Loadings p and q scaled as correlations, between -1 and 1, are\n"
            "the correlation of each X variable with the score t, and of each Y variable with the score u.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetPQCorr);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetPQCorrColumnIDs);
    }
} const pQCorrVector;

class ProjectQVector final : public ProjectVector {
public:
    ProjectQVector() { Init("q", Loadings, Model, AnyOPLS, Predictive, NumberNone, Loading, Observed, Displayable); }
    std::string GetHelpString() const override {
        return translate(
            "q: Loadings q, one vector for each predictive component, are\n"
            "the weights by which the score u gives back the Y variables. Compare with p to see which X variables and\n"
            "responses go together. In units of scaled Y for one unit of u.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetQ);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQColumnIDs);
    }
} const qVector;

class ProjectQoVector final : public ProjectVector {
public:
    ProjectQoVector() { Init("qo", Loadings, Model, AnyOPLS, YSide, NumberNone, Loading, Observed, Displayable); }
    std::string GetHelpString() const override {
        return translate(
            "qo: Orthogonal Y loadings qo, one vector for each Y-side orthogonal component, are\n"
            "the weights by which the score uo gives back the Y variables: systematic variation of the responses that\n"
            "X does not tell. In units of scaled Y for one unit of uo.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetQo);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQoColumnIDs);
    }
} const qoVector;

class ProjectQorVector final : public ProjectVector {
public:
    ProjectQorVector() { Init("qor", Loadings, Model, AnyOPLS, YSide, NumberNone, Loading, Observed, Displayable); }
    std::string GetHelpString() const override {
        return translate("qor: Orthogonal loadings qo of the Y variables and r of the X variables together, one vector "
                         "for each Y-side orthogonal component,\n"
                         "show in one plot what the Y-orthogonal variation is made of, and what of it is left in X.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetQor);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQorColumnIDs);
    }
} const qorVector;

class ProjectRVector final : public ProjectVector {
public:
    ProjectRVector() { Init("r", Loadings, Model, AnyOPLS, YSide, NumberNone, NoScoreLoading, Observed, Displayable); }
    std::string GetHelpString() const override {
        return translate(
            "r: Loadings r of the X variables on the Y-side orthogonal score uo, are\n"
            "close to 0 when X holds nothing of that variation. A large value points at an X variable that the model\n"
            "could still use. In units of scaled X for one unit of uo.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetRColumnIDs);
    }
} const rVector;

class ProjectSVector final : public ProjectVector {
public:
    ProjectSVector() { Init("so", Loadings, Model, AnyOPLS, XSide, NumberNone, NoScoreLoading, Observed, Displayable); }
    std::string GetHelpString() const override {
        return translate("so: Loadings so of the Y variables on the X-side orthogonal score to, are\n"
                         "0 for one response, and close to 0 when the orthogonal components hold nothing of Y.\n"
                         "In units of scaled Y for one unit of to.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetS);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSColumnIDs);
    }
} const sVector;

class ProjectWVector final : public ProjectVector {
public:
    ProjectWVector() { Init("w", Loadings, Model, WithY, Predictive, NumberNone, Loading, Observed, Displayable); }
    std::string GetHelpString() const override {
        return translate(
            "w: Weights w, one vector for each predictive component, are\n"
            "the unit-length weights that combine what is left of the X variables into the score t. A large value is "
            "a\n"
            "variable that goes with Y in this component. For weights on the X variables as they are see w*.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetW, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetWColumnIDs, TriState::Undefined);
    }
} const wVector;

class ProjectWStarVector final : public ProjectVector {
public:
    ProjectWStarVector() { Init("w*", Loadings, Model, WithY, Predictive, NumberNone, Loading, Observed, Displayable); }
    std::string GetHelpString() const override {
        return translate(
            "w*: Weights w*, one vector for each predictive component, are\n"
            "the weights that combine the X variables themselves into the score t, all components at once. Compare\n"
            "with c to see which variables go with which responses. In units of t for one unit of scaled X.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetWStar, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetWStarColumnIDs, TriState::Undefined);
    }
} const wStarVector;

class ProjectWStarCVector final : public ProjectVector {
public:
    ProjectWStarCVector() {
        Init("w*c", Loadings, Model, WithY, Predictive, NumberNone, Loading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "w*c: Weights w* of the X variables and c of the Y variables together, one vector for each predictive "
            "component,\n"
            "show how X and Y are related: an X variable close to a response goes with it, one on the opposite side\n"
            "goes against it.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetWStarC, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetWStarCColumnIDs, TriState::Undefined);
    }
} const wStarCVector;

class ProjectWoVector final : public ProjectVector {
public:
    ProjectWoVector() { Init("wo", Loadings, Model, AnyOPLS, XSide, NumberNone, Loading, Observed, Displayable); }
    std::string GetHelpString() const override {
        return translate("wo: Orthogonal weights wo, one vector for each X-side orthogonal component, are\n"
                         "the unit-length weights that combine what is left of the X variables into the score to.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetWo, TriState::Undefined);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetWoColumnIDs, TriState::Undefined);
    }
} const woVector;

} // namespace
