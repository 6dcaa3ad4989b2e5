#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"

// Scores: one value for each observation.

namespace {

using namespace rows;

// Nothing above the last component of its kind that the model has.
TablePtr DeliverUpTo(int (ModelInfo::*last)() const, Question const &question,
                     TablePtr (GetProjectData::*operation)(int, IntList const *, int) const) {
    return question.ModelUpTo(last) == -1 ? nullptr : Deliver(question, operation, AllBatches);
}

// The scores of two components, scaled as a pair: the number and the second number of the text.
TablePtr DeliverPair(ProjectVector const &vector, ProjectPtr const &project, ProjectVector::Arguments const &arguments,
                     TablePtr (GetProjectData::*operation)(int, IntList const &, std::vector<bool> const &) const) {
    int const model = ProjectVector::GetModelNumber(project, arguments.source);
    IntList const components{static_cast<int>(arguments.number), static_cast<int>(arguments.number2)};
    if (model == -1 || components.front() < 1 || components.back() < 1)
        return nullptr;
    std::vector<bool> orthogonal;
    for (int const which : {1, 2})
        orthogonal.push_back(vector.GetDoubleCompComponentType(which) == ProjectVector::ComponentXSideOrthogonal);
    return (GetProjectData(*project).*operation)(model, components, orthogonal);
}

class ProjectTVector final : public ProjectVector {
public:
    ProjectTVector() {
        Init("t", Scores, Model, AnyModel, Predictive, NumberNone, Score, Observed, Displayable);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "t: Scores t, one vector for each model dimension, are\n"
            "new variables that summarise the X variables: the coordinates of the observations in the model.\n"
            "Plot t[1] against t[2] for groups, trends and outliers. In the units of the scaled X variables.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return DeliverUpTo(&ModelInfo::SizeComponents, {*this, project, source, component}, &GetProjectData::GetT);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetTColumnIDs, AllBatches);
    }
} const tVector;

class ProjectTCorrVector final : public ProjectVector {
public:
    ProjectTCorrVector() {
        Init("t(corr)", Scores, Model, AnyModel, Predictive, NumberComponentRange, NoScoreLoading, Observed, Hidden);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate("t(corr): Scores t of two components scaled as a pair, are\n"
                         "standardised and divided by the largest distance from the centre, so that all observations "
                         "lie within the\n"
                         "unit circle. Use them with p(corr) for a biplot in which both can be read on one scale.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        Arguments arguments;
        return ReadArguments(args, arguments) ? DeliverPair(*this, project, arguments, &GetProjectData::GetTCorrExt)
                                              : nullptr;
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetTCorrColumnIDs);
    }
} const tCorrVector;

class ProjectTCorr2Vector final : public ProjectVector {
public:
    ProjectTCorr2Vector() {
        Init("t(corr)2", Scores, Model, AnyModel, NoComponent, NumberComponentRange, NoScoreLoading, Observed, Hidden);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "t(corr)2: Scores of a predictive and an orthogonal component scaled as a pair, are\n"
            "shown for the predictive one of them: standardised and divided by the largest distance from the centre.\n"
            "Use it with to(corr)2 as the other axis of a biplot.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        Arguments arguments;
        return ReadArguments(args, arguments) ? DeliverPair(*this, project, arguments, &GetProjectData::GetTCorrExt)
                                              : nullptr;
    }
    ComponentType GetDoubleCompComponentType(int which) const override {
        return which == 2 ? ComponentXSideOrthogonal : ComponentPredictive;
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetTCorrColumnIDs);
    }
} const tCorr2Vector;

class ProjectTcvVector final : public ProjectVector {
public:
    ProjectTcvVector() {
        Init("tcv", Scores, Model, OnlyPCA, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "tcv: Scores t of one cross-validation round, are\n"
            "those of all observations under the model that was fitted with the observations of that round left out.\n"
            "Compare with t to see how much the round matters.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long,
                          int round) const override {
        return Deliver({*this, project, source, component, round}, &GetProjectData::GetTcv);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetTcvColumnIDs);
    }
} const tcvVector;

class ProjectTcvExcludedVector final : public ProjectVector {
public:
    ProjectTcvExcludedVector() {
        Init("tcv", Scores, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate("tcv: Cross-validated scores t, one vector for each predictive component, are\n"
                         "each observation's score from the round that left it out. Where they fall far from t, the "
                         "model describes\n"
                         "the observation only because it was fitted to it.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetTcvExcluded, AllBatches);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetTcvExcludedColumnIDs, AllBatches);
    }
} const tcvExcludedVector;

class ProjectTcvSEVector final : public ProjectVector {
public:
    ProjectTcvSEVector() {
        Init("tcvSE", Scores, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "tcvSE: Jack-knife standard error of the scores t, is\n"
            "computed from all cross-validation rounds, in the units of t. Large values mark observations whose place\n"
            "in the score plot is uncertain.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetTcvSE);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetTcvSEColumnIDs);
    }
} const tcvSEVector;

class ProjectToVector final : public ProjectVector {
public:
    ProjectToVector() {
        Init("to", Scores, Model, AnyOPLS, XSide, NumberNone, Score, Observed, Displayable);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "to: Orthogonal scores to, one vector for each X-side orthogonal component, are\n"
            "the coordinates of the observations along systematic variation of X that has nothing to do with Y.\n"
            "Look for groups, drift and outliers that would blur t. In the units of the scaled X variables.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        Arguments arguments;
        ReadArguments(args, arguments);
        return DeliverUpTo(&ModelInfo::SizeXSideOrthogonalComponents,
                           {*this, project, arguments.source.c_str(), arguments.component}, &GetProjectData::GetTo);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetToColumnIDs, AllBatches);
    }
} const toVector;

class ProjectToCorrVector final : public ProjectVector {
public:
    ProjectToCorrVector() {
        Init("to(corr)", Scores, Model, AnyOPLS, NoComponent, NumberComponentRange, NoScoreLoading, Observed, Hidden);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "to(corr): Orthogonal scores to of two components scaled as a pair, are\n"
            "standardised and divided by the largest distance from the centre. Use them with po(corr) for a biplot of\n"
            "the orthogonal variation.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        Arguments arguments;
        return ReadArguments(args, arguments) ? DeliverPair(*this, project, arguments, &GetProjectData::GetToCorr)
                                              : nullptr;
    }
    ComponentType GetDoubleCompComponentType(int) const override { return ComponentXSideOrthogonal; }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetToCorrColumnIDs);
    }
} const toCorrVector;

class ProjectTo2CorrVector final : public ProjectVector {
public:
    ProjectTo2CorrVector() {
        Init("to(corr)2", Scores, Model, AnyOPLS, NoComponent, NumberComponentRange, NoScoreLoading, Observed, Hidden);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "to(corr)2: Scores of an orthogonal and a predictive component scaled as a pair, are\n"
            "shown for the orthogonal one of them: standardised and divided by the largest distance from the centre.\n"
            "Use it with t(corr)2 as the other axis of a biplot.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        Arguments arguments;
        return ReadArguments(args, arguments) ? DeliverPair(*this, project, arguments, &GetProjectData::GetToCorr)
                                              : nullptr;
    }
    ComponentType GetDoubleCompComponentType(int which) const override {
        return which == 1 ? ComponentXSideOrthogonal : ComponentPredictive;
    }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetToCorrColumnIDs);
    }
} const to2CorrVector;

class ProjectTocvExcludedVector final : public ProjectVector {
public:
    ProjectTocvExcludedVector() {
        Init("tocv", Scores, Model, AnyOPLS, XSide, NumberNone, NoScoreLoading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "tocv: Cross-validated orthogonal scores to, one vector for each X-side orthogonal component, are\n"
            "each observation's score from the round that left it out.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetTocvExcluded);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetTocvExcludedColumnIDs);
    }
} const tocvExcludedVector;

class ProjectTocvSEVector final : public ProjectVector {
public:
    ProjectTocvSEVector() {
        Init("tocvSE", Scores, Model, AnyOPLS, XSide, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("tocvSE: Jack-knife standard error of the orthogonal scores to, is\n"
                         "computed from all cross-validation rounds, in the units of to.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetTocvSE);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetTocvSEColumnIDs);
    }
} const tocvSEVector;

class ProjectToPSVector final : public ProjectVector {
public:
    ProjectToPSVector() {
        Init("toPS", Scores, Model, AnyOPLS, XSide, NumberNone, Score, Predicted, Displayable);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "toPS: Orthogonal scores to of the prediction set, one vector for each X-side orthogonal component, are\n"
            "the coordinates of new observations along the variation that has nothing to do with Y. A value far "
            "outside\n"
            "those of to warns of a disturbance that the model has not seen.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        Arguments arguments;
        ReadArguments(args, arguments);
        return DeliverUpTo(&ModelInfo::SizeXSideOrthogonalComponents,
                           {*this, project, arguments.source.c_str(), arguments.component}, &GetProjectData::GetToPS);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetToPSColumnIDs, AllBatches);
    }
} const toPSVector;

class ProjectTPSVector final : public ProjectVector {
public:
    ProjectTPSVector() {
        Init("tPS", Scores, Model, AnyModel, Predictive, NumberNone, Score, Predicted, Displayable);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "tPS: Scores t of the prediction set, one vector for each model dimension, are\n"
            "the coordinates of new observations in the model. Plot them with t to see whether the new observations\n"
            "resemble those that the model was fitted to. In the units of the scaled X variables.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return DeliverUpTo(&ModelInfo::SizeComponents, {*this, project, source, component}, &GetProjectData::GetTPS);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetTPSColumnIDs, AllBatches);
    }
} const tPSVector;

class ProjectTcvPSVector final : public ProjectVector {
public:
    ProjectTcvPSVector() {
        Init("tPScv", Scores, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Predicted, Displayable);
        m_needsValidationRounds = true;
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("tPScv: Scores t of the prediction set from one cross-validation round, are\n"
                         "computed with the model that was fitted with the observations of that round left out.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long,
                          int round) const override {
        return Deliver({*this, project, source, component, round}, &GetProjectData::GetTcvPS);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetTcvPSColumnIDs);
    }
} const tcvPSVector;

class ProjectTcvSEPSVector final : public ProjectVector {
public:
    ProjectTcvSEPSVector() {
        Init("tPScvSE", Scores, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Predicted, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("tPScvSE: Jack-knife standard error of the scores t of the prediction set, is\n"
                         "computed from all cross-validation rounds, in the units of t.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetTcvSEPS);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetTcvSEPSColumnIDs);
    }
} const tcvSEPSVector;

class ProjectUVector final : public ProjectVector {
public:
    ProjectUVector() {
        Init("u", Scores, Model, WithY, Predictive, NumberNone, Score, Observed, Displayable);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate("u: Scores u, one vector for each predictive component, are\n"
                         "new variables that summarise the Y variables as t summarises X. Plot u against t of one "
                         "component: points\n"
                         "along a line show that X tells Y, a curve asks for a transformation. In the units of the "
                         "scaled Y variables.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetU);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetUColumnIDs);
    }
} const uVector;

class ProjectUcvExcludedVector final : public ProjectVector {
public:
    ProjectUcvExcludedVector() {
        Init("ucv", Scores, Model, AnyOPLS, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate("ucv: Cross-validated scores u, one vector for each predictive component, are\n"
                         "each observation's score from the round that left it out.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetUcv);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetUcvColumnIDs);
    }
} const ucvExcludedVector;

class ProjectUoVector final : public ProjectVector {
public:
    ProjectUoVector() {
        Init("uo", Scores, Model, AnyOPLS, YSide, NumberNone, Score, Observed, Displayable);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate("uo: Orthogonal Y scores uo, one vector for each Y-side orthogonal component, are\n"
                         "the coordinates of the observations along systematic variation of Y that X does not tell.\n"
                         "Groups or trends here point at something that was not measured in X.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetUo);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetUoColumnIDs);
    }
} const uoVector;

class ProjectUoCVExcludedVector final : public ProjectVector {
public:
    ProjectUoCVExcludedVector() {
        Init("uocv", Scores, Model, AnyOPLS, YSide, NumberNone, NoScoreLoading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "uocv: Cross-validated orthogonal Y scores uo, one vector for each Y-side orthogonal component, are\n"
            "each observation's score from the round that left it out.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetUocvExcluded);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetUocvExcludedColumnIDs);
    }
} const uoCVExcludedVector;

} // namespace
