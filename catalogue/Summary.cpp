#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"

// The model in one number for each component.

namespace {

using namespace rows;

class ProjectR2XVector final : public ProjectVector {
public:
    ProjectR2XVector() {
        Init("R2X", PerComponent, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("R2X: Part of the variation of X that each component explains.\n"
                         "Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2X);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2XColumnIDs);
    }
} const r2XVector;

class ProjectR2XCumVector final : public ProjectVector {
public:
    ProjectR2XCumVector() {
        Init("R2Xcum", PerComponent, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate("R2Xcum: Part of the variation of X that all components up to each explain together.\n"
                         "Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2XCum);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2XCumColumnIDs);
    }
} const r2XCumVector;

class ProjectR2XAdjVector final : public ProjectVector {
public:
    ProjectR2XAdjVector() {
        Init("R2XAdj", PerComponent, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "R2XAdj: Part of the variation of X that each component explains, corrected for degrees of freedom.\n"
            "Without unit.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2XAdj);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2XAdjColumnIDs);
    }
} const r2XAdjVector;

class ProjectR2XAdjCumVector final : public ProjectVector {
public:
    ProjectR2XAdjCumVector() {
        Init("R2XAdjcum", PerComponent, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed,
             Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("R2XAdjcum: Part of the variation of X that the components up to each explain, corrected for "
                         "degrees of freedom.\n"
                         "It falls when a component explains less than noise would. Without unit.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2XAdjCum);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2XAdjCumColumnIDs);
    }
} const r2XAdjCumVector;

class ProjectR2YVector final : public ProjectVector {
public:
    ProjectR2YVector() {
        Init("R2Y", PerComponent, Model, WithY, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate("R2Y: Part of the variation of Y that each component explains.\n"
                         "Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2Y);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2YColumnIDs);
    }
} const r2YVector;

class ProjectR2YCum final : public ProjectVector {
public:
    ProjectR2YCum() {
        Init("R2Ycum", PerComponent, Model, WithY, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate("R2Ycum: Part of the variation of Y that all components up to each explain together.\n"
                         "Compare with Q2cum: a large gap warns of overfit. Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2YCum);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2YCumColumnIDs);
    }
} const r2YCumVector;

class ProjectR2YAdjVector final : public ProjectVector {
public:
    ProjectR2YAdjVector() {
        Init("R2YAdj", PerComponent, Model, WithY, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "R2YAdj: Part of the variation of Y that each component explains, corrected for degrees of freedom.\n"
            "Without unit.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2YAdj);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2YAdjColumnIDs);
    }
} const r2YAdjVector;

class ProjectR2YAdjCumVector final : public ProjectVector {
public:
    ProjectR2YAdjCumVector() {
        Init("R2YAdjcum", PerComponent, Model, WithY, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("R2YAdjcum: Part of the variation of Y that the components up to each explain, corrected for "
                         "degrees of freedom.\n"
                         "Without unit.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2YAdjCum);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2YAdjCumColumnIDs);
    }
} const r2YAdjCumVector;

class ProjectQ2Vector final : public ProjectVector {
public:
    ProjectQ2Vector() {
        Init("Q2", PerComponent, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "Q2: Part of the variation that each component predicts, by cross-validation.\n"
            "Of X for PCA, of Y for other models. At most 1, negative where a component spoils prediction.\n"
            "Variables count by their variance as scaled: alike under unit variance, the larger the more under ctr\n"
            "and par. By full rounds, or on deflated matrices where the model was fitted so.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetQ2);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQ2ColumnIDs);
    }
} const q2Vector;

class ProjectQ2CumVector final : public ProjectVector {
public:
    ProjectQ2CumVector() {
        Init("Q2cum", PerComponent, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "Q2cum: Part of the variation that all components up to each predict, by cross-validation.\n"
            "Of X for PCA, of Y for other models. It is the measure to choose the number of components by.\n"
            "At most 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetQ2Cum);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQ2CumColumnIDs);
    }
} const q2CumVector;

class ProjectQ2CumLastVector final : public ProjectVector {
public:
    ProjectQ2CumLastVector() {
        Init("Q2cum(Last)", PerComponent, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Hidden);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "Q2cum(Last): Part of the variation that all components of the model predict, by cross-validation.\n"
            "At most 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetQ2CumLast);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetLastCompColumnIDs);
    }
} const q2CumLastVector;

class ProjectR2CumProgressionVector final : public ProjectVector {
public:
    ProjectR2CumProgressionVector() {
        Init("R2(cum)progression", PerComponent, Model, AnyOPLS, NoComponent, NumberNone, NoScoreLoading, Observed,
             Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "R2(cum)progression: Part of the variation of Y that is explained as orthogonal components are added.\n"
            "It starts with the predictive components alone. Between 0 and 1.");
    }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2CumProgression);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2CumProgressionColumnIDs);
    }
} const r2CumProgressionVector;

class ProjectQ2CumProgressionVector final : public ProjectVector {
public:
    ProjectQ2CumProgressionVector() {
        Init("Q2(cum)progression", PerComponent, Model, AnyOPLS, NoComponent, NumberNone, NoScoreLoading, Observed,
             Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "Q2(cum)progression: Part of the variation of Y that is predicted as orthogonal components are added.\n"
            "It shows which of them help prediction. At most 1.");
    }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return ProjectVector::IsValidModel(project, model) && model.SizeComponents() > 0;
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetQ2CumProgression);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQ2CumProgressionColumnIDs);
    }
} const q2CumProgressionVector;

class ProjectEigenValueVector final : public ProjectVector {
public:
    ProjectEigenValueVector() {
        Init("Eig", PerComponent, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "Eig: Eigenvalue of each component.\n"
            "It is the variation of X that the component explains, for one observation. With data scaled to\n"
            "unit variance a component above 1 explains more than one variable would.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetEigenValues);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetEigenValuesColumnIDs);
    }
} const eigenValueVector;

class ProjectIterationVector final : public ProjectVector {
public:
    ProjectIterationVector() {
        Init("Iter", PerComponent, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("Iter: Rounds that each component took to converge.\n"
                         "Many rounds tell that two components explain nearly the same amount.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetIterations);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetIterationsColumnIDs);
    }
} const iterationVector;

class ProjectS2XVector final : public ProjectVector {
public:
    ProjectS2XVector() {
        Init("S2X", PerComponent, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("S2X: Residual variance of X after each component.\n"
                         "In squared units of the scaled variables.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetS2X);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetS2XColumnIDs);
    }
} const s2XVector;

class ProjectS2YVector final : public ProjectVector {
public:
    ProjectS2YVector() {
        Init("S2Y", PerComponent, Model, WithY, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("S2Y: Residual variance of Y after each component.\n"
                         "In squared units of the scaled variables.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetS2Y);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetS2YColumnIDs);
    }
} const s2YVector;

class ProjectSDtVector final : public ProjectVector {
public:
    ProjectSDtVector() {
        Init("SDt", PerComponent, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("SDt: Standard deviation of the scores t, and of the orthogonal scores to.\n"
                         "In the units of the scaled X variables.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetSDT);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSDTColumnIDs);
    }
} const sDtVector;

class ProjectSDUVector final : public ProjectVector {
public:
    ProjectSDUVector() {
        Init("SDu", PerComponent, Model, WithY, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("SDu: Standard deviation of the scores u, and of the orthogonal scores uo.\n"
                         "In the units of the scaled Y variables.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetSDU);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSDUColumnIDs);
    }
} const sDUVector;

class ProjectSSXVector final : public ProjectVector {
public:
    ProjectSSXVector() {
        Init("SSX", PerComponent, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("SSX: Residual sum of squares of X after each component.\n"
                         "In squared units of the scaled variables.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetSSX);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSSXColumnIDs);
    }
} const sSXVector;

class ProjectSSYVector final : public ProjectVector {
public:
    ProjectSSYVector() {
        Init("SSY", PerComponent, Model, WithY, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate("SSY: Residual sum of squares of Y after each component.\n"
                         "In squared units of the scaled variables.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetSSY);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetSSYColumnIDs);
    }
} const sSYVector;

} // namespace
