#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"

// How far the model describes each variable: for all variables, or over the components for one.

namespace {

using namespace rows;

class ProjectR2VXVector final : public ProjectVector {
public:
    ProjectR2VXVector() {
        Init("R2VX", Loadings, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("R2VX: Part of the variation of each X variable that a component explains.\n"
                         "Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2VX);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2VXColumnIDs);
    }
} const r2VXVector;

class ProjectR2VXPerComponent final : public ProjectVector {
public:
    ProjectR2VXPerComponent() {
        Init("R2VX", PerComponent, Model, AnyModel, NoComponent, NumberXVariable, NoScoreLoading, Observed,
             Displayable);
    }
    std::string GetHelpString() const override {
        return translate("R2VX: Part of the variation of one X variable that each component explains.\n"
                         "Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetR2VXPerComponent);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2VXPerComponentColumnIDs);
    }
} const r2VXPerComponentVector;

class ProjectR2VXCumVector final : public ProjectVector {
public:
    ProjectR2VXCumVector() {
        Init("R2VXcum", Loadings, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("R2VXcum: Part of the variation of each X variable that the components up to one explain.\n"
                         "Look at it to see which variables the model describes. Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2VXCum);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2VXCumColumnIDs);
    }
} const r2VXCumVector;

class ProjectR2VXCumPerComponent final : public ProjectVector {
public:
    ProjectR2VXCumPerComponent() {
        Init("R2VXcum", PerComponent, Model, AnyModel, NoComponent, NumberXVariable, NoScoreLoading, Observed,
             Displayable);
    }
    std::string GetHelpString() const override {
        return translate("R2VXcum: Part of the variation of one X variable that the components up to each explain.\n"
                         "Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetR2VXCumPerComponent);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2VXCumPerComponentColumnIDs);
    }
} const r2VXCumPerComponentVector;

class ProjectR2VXAdjVector final : public ProjectVector {
public:
    ProjectR2VXAdjVector() {
        Init("R2VXAdj", Loadings, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("R2VXAdj: Part of the variation of each X variable that a component explains, corrected for "
                         "degrees of freedom.\n"
                         "Without unit.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2VXAdj);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2VXAdjColumnIDs);
    }
} const r2VXAdjVector;

class ProjectR2VXAdjCumVector final : public ProjectVector {
public:
    ProjectR2VXAdjCumVector() {
        Init("R2VXAdjcum", Loadings, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("R2VXAdjcum: Part of the variation of each X variable that is explained so far, corrected for "
                         "degrees of freedom.\n"
                         "Without unit.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2VXAdjCum);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2VXAdjCumColumnIDs);
    }
} const r2VXAdjCumVector;

class ProjectR2VXAdjCumPerComponent final : public ProjectVector {
public:
    ProjectR2VXAdjCumPerComponent() {
        Init("R2VXAdjcum", PerComponent, Model, AnyModel, NoComponent, NumberXVariable, NoScoreLoading, Observed,
             Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "R2VXAdjcum: Part of the variation of one X variable explained so far, corrected for degrees of freedom.\n"
            "Shown for each component. Without unit.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetR2VXAdjCumPerComponent);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2VXAdjCumPerComponentColumnIDs);
    }
} const r2VXAdjCumPerComponentVector;

class ProjectR2VYVector final : public ProjectVector {
public:
    ProjectR2VYVector() {
        Init("R2VY", Loadings, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("R2VY: Part of the variation of each response that a component explains.\n"
                         "Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2VY);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2VYColumnIDs);
    }
} const r2VYVector;

class ProjectR2VYPerComponent final : public ProjectVector {
public:
    ProjectR2VYPerComponent() {
        Init("R2VY", PerComponent, Model, WithY, NoComponent, NumberYVariable, NoScoreLoading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate("R2VY: Part of the variation of one response that each component explains.\n"
                         "Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetR2VYPerComponent);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2VYPerComponentColumnIDs);
    }
} const r2VYPerComponentVector;

class ProjectR2VYCumVector final : public ProjectVector {
public:
    ProjectR2VYCumVector() {
        Init("R2VYcum", Loadings, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("R2VYcum: Part of the variation of each response that the components up to one explain.\n"
                         "Look at it to see which variables the model describes. Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2VYCum);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2VYCumColumnIDs);
    }
} const r2VYCumVector;

class ProjectR2VYCumPerComponent final : public ProjectVector {
public:
    ProjectR2VYCumPerComponent() {
        Init("R2VYcum", PerComponent, Model, WithY, NoComponent, NumberYVariable, NoScoreLoading, Observed,
             Displayable);
    }
    std::string GetHelpString() const override {
        return translate("R2VYcum: Part of the variation of one response that the components up to each explain.\n"
                         "Between 0 and 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetR2VYCumPerComponent);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2VYCumPerComponentColumnIDs);
    }
} const r2VYCumPerComponentVector;

class ProjectR2VYAdjVector final : public ProjectVector {
public:
    ProjectR2VYAdjVector() {
        Init("R2VYAdj", Loadings, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("R2VYAdj: Part of the variation of each response that a component explains, corrected for "
                         "degrees of freedom.\n"
                         "Without unit.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2VYAdj);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2VYAdjColumnIDs);
    }
} const r2VYAdjVector;

class ProjectR2VYAdjCumVector final : public ProjectVector {
public:
    ProjectR2VYAdjCumVector() {
        Init("R2VYAdjcum", Loadings, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate("R2VYAdjcum: Part of the variation of each response that is explained so far, corrected for "
                         "degrees of freedom.\n"
                         "Without unit.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetR2VYAdjCum);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2VYAdjCumColumnIDs);
    }
} const r2VYAdjCumVector;

class ProjectR2VYAdjCumPerComponentVector final : public ProjectVector {
public:
    ProjectR2VYAdjCumPerComponentVector() {
        Init("R2VYAdjcum", PerComponent, Model, WithY, Predictive, NumberYVariable, NoScoreLoading, Observed,
             Displayable);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "R2VYAdjcum: Part of the variation of one response explained so far, corrected for degrees of freedom.\n"
            "Shown for each component. Without unit.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetR2VYAdjCumPerComponent);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetR2VYAdjCumPerComponentColumnIDs);
    }
} const r2VYAdjCumPerComponentVector;

class ProjectQ2VXVector final : public ProjectVector {
public:
    ProjectQ2VXVector() {
        Init("Q2VX", Loadings, Model, OnlyPCA, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "Q2VX: Part of the variation of each X variable that a component predicts, by cross-validation.\n"
            "At most 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetQ2VX);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQ2VXColumnIDs);
    }
} const q2VXVector;

class ProjectQ2VXPerComponent final : public ProjectVector {
public:
    ProjectQ2VXPerComponent() {
        Init("Q2VX", PerComponent, Model, OnlyPCA, NoComponent, NumberXVariable, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "Q2VX: Part of the variation of one X variable that each component predicts, by cross-validation.\n"
            "At most 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetQ2VXPerComponent);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQ2VXCumPerComponentColumnIDs);
    }
} const q2VXPerComponentVector;

class ProjectQ2VXCumVector final : public ProjectVector {
public:
    ProjectQ2VXCumVector() {
        Init("Q2VXcum", Loadings, Model, OnlyPCA, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "Q2VXcum: Part of the variation of each X variable that is predicted so far, by cross-validation.\n"
            "Look at it to see which variables the model predicts. At most 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetQ2VXCum);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQ2VXCumColumnIDs);
    }
} const q2VXCumVector;

class ProjectQ2VXCumPerComponent final : public ProjectVector {
public:
    ProjectQ2VXCumPerComponent() {
        Init("Q2VXcum", PerComponent, Model, OnlyPCA, NoComponent, NumberXVariable, NoScoreLoading, Observed,
             Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "Q2VXcum: Part of the variation of one X variable that is predicted so far, by cross-validation.\n"
            "Shown for each component. At most 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetQ2VXCumPerComponent);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQ2VXCumPerComponentColumnIDs);
    }
} const q2VXCumPerComponentVector;

class ProjectQ2VYVector final : public ProjectVector {
public:
    ProjectQ2VYVector() {
        Init("Q2VY", Loadings, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "Q2VY: Part of the variation of each response that a component predicts, by cross-validation.\n"
            "At most 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetQ2VY);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQ2VYColumnIDs);
    }
} const q2VYVector;

class ProjectQ2VYPerComponent final : public ProjectVector {
public:
    ProjectQ2VYPerComponent() {
        Init("Q2VY", PerComponent, Model, WithY, NoComponent, NumberYVariable, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "Q2VY: Part of the variation of one response that each component predicts, by cross-validation.\n"
            "At most 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetQ2VYPerComponent);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQ2VYPerComponentColumnIDs);
    }
} const q2VYPerComponentVector;

class ProjectQ2VYCumVector final : public ProjectVector {
public:
    ProjectQ2VYCumVector() {
        Init("Q2VYcum", Loadings, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_onlyCrossValidated = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "Q2VYcum: Part of the variation of each response that is predicted so far, by cross-validation.\n"
            "Look at it to see which variables the model predicts. At most 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetQ2VYCum);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQ2VYCumColumnIDs);
    }
} const q2VYCumVector;

class ProjectQ2VYCumPerComponent final : public ProjectVector {
public:
    ProjectQ2VYCumPerComponent() {
        Init("Q2VYcum", PerComponent, Model, WithY, NoComponent, NumberYVariable, NoScoreLoading, Observed,
             Displayable);
        m_onlyCrossValidated = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "Q2VYcum: Part of the variation of one response that is predicted so far, by cross-validation.\n"
            "Shown for each component. At most 1.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long number,
                          int) const override {
        return DeliverTerm({*this, project, source, component}, number, &GetProjectData::GetQ2VYCumPerComponent);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetQ2VYCumPerComponentColumnIDs);
    }
} const q2VYCumPerComponentVector;

class ProjectS2VXVector final : public ProjectVector {
public:
    ProjectS2VXVector() {
        Init("S2VX", Loadings, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_firstComponent = ComponentZero;
    }
    std::string GetHelpString() const override {
        return translate("S2VX: Residual variance of each X variable after a component; component 0 is none.\n"
                         "In squared units of the scaled variables.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetS2VX);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetS2VXColumnIDs);
    }
} const s2VXVector;

class ProjectS2VYVector final : public ProjectVector {
public:
    ProjectS2VYVector() {
        Init("S2VY", Loadings, Model, WithY, Predictive, NumberNone, NoScoreLoading, Observed, Displayable);
        m_firstComponent = ComponentZero;
    }
    std::string GetHelpString() const override {
        return translate("S2VY: Residual variance of each response after a component; component 0 is none.\n"
                         "In squared units of the scaled variables.");
    }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetS2VY);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetS2VYColumnIDs);
    }
} const s2VYVector;

} // namespace
