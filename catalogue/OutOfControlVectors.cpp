#include "catalogue/Batches_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"

#include <sstream>

// How far each batch lies outside the limits of a batch control chart.

namespace {

using namespace rows;

// The limits are the average plus so many standard deviations; a multiplier that stays at the missing mark is none.
struct Multipliers {
    double first = missingValue, second = missingValue;

    explicit Multipliers(char const *text) {
        std::istringstream stream(text);
        stream.imbue(std::locale::classic());
        char comma = 0;
        stream >> first >> comma >> second;
    }
};

// The texts of all of them have two multipliers; `taken` tells how many of them the operation takes.
template <int taken, auto sums, auto columns>
class OutOfControlVector : public ProjectVector {
public:
    bool HasMultiplier() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        BatchQuestion const asked(*this, project, args);
        if (asked.model == -1 || !asked.arguments.rest)
            return nullptr;
        Multipliers const multipliers(asked.arguments.rest);
        if constexpr (taken == 2)
            return Ask(asked, sums, multipliers.first, multipliers.second);
        else if constexpr (taken == 1)
            return Ask(asked, sums, multipliers.first);
        else
            return Ask(asked, sums);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, columns);
    }
};

class ProjectTAlignedOOCSumVector final : public OutOfControlVector<2, &GetProjectData::GetTAlignedOOCBatchSums,
                                                                    &GetProjectData::GetOOCBatchSumsColumnIDs> {
public:
    ProjectTAlignedOOCSumVector() {
        Init("TAlignedOOCSum", PerBatch, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Observed,
             Displayable);
        m_longName = "Score Out of Control Summary";
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "TAlignedOOCSum: How far the scores t of each batch of the workset lie outside their limits.\n"
            "It is the area between the curve of the batch and the limits that it crosses, with a base of one\n"
            "aligned point; 0 for a batch within average plus multiples of the standard deviation. Large values\n"
            "mark the batches to look into. In the units of the scaled X variables.");
    }
} const tAlignedOOCSumVector;

class ProjectTPSAlignedOOCSumVector final : public OutOfControlVector<2, &GetProjectData::GetTPSAlignedOOCBatchSums,
                                                                      &GetProjectData::GetPSOOCBatchSumsColumnIDs> {
public:
    ProjectTPSAlignedOOCSumVector() {
        Init("TPSAlignedOOCSum", PerBatch, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Predicted,
             Displayable);
        m_longName = "Predicted Score Out of Control Summary";
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "TPSAlignedOOCSum: How far the scores t of each batch of the prediction set lie outside the limits.\n"
            "It is the area between the curve of the batch and the limits that it crosses, with a base of one\n"
            "aligned point; 0 for a batch within average plus multiples of the standard deviation. The limits are\n"
            "those of the workset. In the units of the scaled X variables.");
    }
} const tPSAlignedOOCSumVector;

class ProjectTOAlignedOOCSumVector final : public OutOfControlVector<2, &GetProjectData::GetTOAlignedOOCBatchSums,
                                                                     &GetProjectData::GetOOCBatchSumsColumnIDs> {
public:
    ProjectTOAlignedOOCSumVector() {
        Init("TOAlignedOOCSum", PerBatch, Model, AnyOPLS, XSide, NumberNone, NoScoreLoading, Observed, Displayable);
        m_longName = "Orthogonal Score Out of Control Summary";
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "TOAlignedOOCSum: How far the orthogonal scores to of each batch of the workset lie outside their\n"
            "limits.\n"
            "It is the area between the curve of the batch and the limits that it crosses, with a base of one\n"
            "aligned point; 0 for a batch within average plus multiples of the standard deviation. Large values\n"
            "mark odd batches that t does not show. In the units of the scaled X variables.");
    }
} const tOAlignedOOCSumVector;

class ProjectTOPSAlignedOOCSumVector final : public OutOfControlVector<2, &GetProjectData::GetTOPSAlignedOOCBatchSums,
                                                                       &GetProjectData::GetPSOOCBatchSumsColumnIDs> {
public:
    ProjectTOPSAlignedOOCSumVector() {
        Init("TOPSAlignedOOCSum", PerBatch, Model, AnyOPLS, XSide, NumberNone, NoScoreLoading, Predicted, Displayable);
        m_longName = "Predicted Orthogonal Score Out of Control Summary";
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "TOPSAlignedOOCSum: How far the orthogonal scores to of each batch of the prediction set lie outside\n"
            "the limits.\n"
            "It is the area between the curve of the batch and the limits that it crosses, with a base of one\n"
            "aligned point; 0 for a batch within average plus multiples of the standard deviation. The limits are\n"
            "those of the workset. In the units of the scaled X variables.");
    }
} const tOPSAlignedOOCSumVector;

class ProjectDModXAlignedOOCSumVector final : public OutOfControlVector<1, &GetProjectData::GetDModXAlignedOOCBatchSums,
                                                                        &GetProjectData::GetOOCBatchSumsColumnIDs> {
public:
    ProjectDModXAlignedOOCSumVector() {
        Init("DModXAlignedOOCSum", PerBatch, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Observed,
             Displayable);
        m_longName = "DModX Out of Control Summary";
        m_contributionSource = XDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "DModXAlignedOOCSum: How far the distance of each batch of the workset to the model lies above its\n"
            "limit.\n"
            "It is the area between the curve of the batch and the limits that it crosses, with a base of one\n"
            "aligned point. Large values mark batches that the model does not describe. In units of the pooled\n"
            "distance, or absolute.");
    }
} const dModXAlignedOOCSumVector;

class ProjectDModXPSAlignedOOCSumVector final
    : public OutOfControlVector<1, &GetProjectData::GetDModXPSAlignedOOCBatchSums,
                                &GetProjectData::GetPSOOCBatchSumsColumnIDs> {
public:
    ProjectDModXPSAlignedOOCSumVector() {
        Init("DModXPSAlignedOOCSum", PerBatch, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Predicted,
             Displayable);
        m_longName = "DModXPS Out of Control Summary";
        m_contributionSource = XDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "DModXPSAlignedOOCSum: How far the distance of each batch of the prediction set to the model lies\n"
            "above its limit.\n"
            "It is the area between the curve of the batch and the limits that it crosses, with a base of one\n"
            "aligned point. The limit is that of the workset. In units of the pooled distance, or absolute.");
    }
} const dModXPSAlignedOOCSumVector;

class ProjectT2RangeAlignedOOCSumVector final
    : public OutOfControlVector<0, &GetProjectData::GetT2RangeAlignedOOCBatchSums,
                                &GetProjectData::GetOOCBatchSumsColumnIDs> {
public:
    ProjectT2RangeAlignedOOCSumVector() {
        Init("T2RangeAlignedOOCSum", PerBatch, Model, AnyModel, NoComponent, NumberComponentRange, NoScoreLoading,
             Observed, Displayable);
        m_longName = "T2Range Out of Control Summary";
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "T2RangeAlignedOOCSum: How far Hotelling's T2 of each batch of the workset lies above its limit.\n"
            "It is the area between the curve of the batch and the limits that it crosses, with a base of one\n"
            "aligned point. The limit is that of an F distribution with significance 0.01. Without unit.");
    }
    bool IsT2RangeVector() const override { return true; }
} const t2RangeAlignedOOCSumVector;

class ProjectT2RangePSAlignedOOCSumVector final
    : public OutOfControlVector<0, &GetProjectData::GetT2RangePSAlignedOOCBatchSums,
                                &GetProjectData::GetPSOOCBatchSumsColumnIDs> {
public:
    ProjectT2RangePSAlignedOOCSumVector() {
        Init("T2RangePSAlignedOOCSum", PerBatch, Model, AnyModel, NoComponent, NumberComponentRange, NoScoreLoading,
             Predicted, Displayable);
        m_longName = "T2RangePS Out of Control Summary";
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "T2RangePSAlignedOOCSum: How far Hotelling's T2 of each batch of the prediction set lies above the\n"
            "limit.\n"
            "It is the area between the curve of the batch and the limits that it crosses, with a base of one\n"
            "aligned point. The limit is that of the workset, by an F distribution with significance 0.01.\n"
            "Without unit.");
    }
    bool IsT2RangeVector() const override { return true; }
} const t2RangePSAlignedOOCSumVector;

class ProjectXVarAlignedOOCSumVector final : public OutOfControlVector<2, &GetProjectData::GetXVarAlignedOOCBatchSums,
                                                                       &GetProjectData::GetOOCBatchSumsColumnIDs> {
public:
    ProjectXVarAlignedOOCSumVector() {
        Init("XVarAlignedOOCSum", PerBatch, Model, AnyModel, NoComponent, NumberXVariable, NoScoreLoading, Observed,
             Displayable);
        m_longName = "XVar Out of Control Summary";
        m_firstComponent = NoFirstComponent;
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "XVarAlignedOOCSum: How far an X variable lies outside its limits, for each batch of the workset.\n"
            "It is the area between the curve of the batch and the limits that it crosses, with a base of one\n"
            "aligned point; 0 for a batch within average plus multiples of the standard deviation. It tells which\n"
            "batches were run otherwise. In the units of XVar.");
    }
} const xVarAlignedOOCSumVector;

class ProjectXVarPSAlignedOOCSumVector final
    : public OutOfControlVector<2, &GetProjectData::GetXVarPSAlignedOOCBatchSums,
                                &GetProjectData::GetPSOOCBatchSumsColumnIDs> {
public:
    ProjectXVarPSAlignedOOCSumVector() {
        Init("XVarPSAlignedOOCSum", PerBatch, Model, AnyModel, NoComponent, NumberXVariable, NoScoreLoading, Predicted,
             Displayable);
        m_longName = "XVarPS Out of Control Summary";
        m_firstComponent = NoFirstComponent;
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "XVarPSAlignedOOCSum: How far an X variable lies outside its limits, for each batch of the prediction\n"
            "set.\n"
            "It is the area between the curve of the batch and the limits that it crosses, with a base of one\n"
            "aligned point; 0 for a batch within average plus multiples of the standard deviation. The limits are\n"
            "those of the workset. In the units of XVarPS.");
    }
} const xVarPSAlignedOOCSumVector;

class ProjectYPredAlignedOOCSumVector final : public OutOfControlVector<2, &GetProjectData::GetYPredAlignedOOCBatchSums,
                                                                        &GetProjectData::GetOOCBatchSumsColumnIDs> {
public:
    ProjectYPredAlignedOOCSumVector() {
        Init("YPredAlignedOOCSum", PerBatch, Model, AnyModel, Predictive, NumberYVariable, NoScoreLoading, Observed,
             Displayable);
        m_longName = "YPred Out of Control Summary";
        m_contributionSource = ResponseContribution;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YPredAlignedOOCSum: How far the fitted response lies outside its limits, for each batch of the\n"
            "workset.\n"
            "It is the area between the curve of the batch and the limits that it crosses, with a base of one\n"
            "aligned point; 0 for a batch within average plus multiples of the standard deviation. Of maturity it\n"
            "tells which batches ran ahead or lagged behind. In the units of YPred.");
    }
} const yPredAlignedOOCSumVector;

class ProjectYPredPSAlignedOOCSumVector final
    : public OutOfControlVector<2, &GetProjectData::GetYPredPSAlignedOOCBatchSums,
                                &GetProjectData::GetPSOOCBatchSumsColumnIDs> {
public:
    ProjectYPredPSAlignedOOCSumVector() {
        Init("YPredPSAlignedOOCSum", PerBatch, Model, AnyModel, Predictive, NumberYVariable, NoScoreLoading, Predicted,
             Displayable);
        m_longName = "YPredPS Out of Control Summary";
        m_contributionSource = ResponseContribution;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YPredPSAlignedOOCSum: How far the predicted response lies outside the limits, for each batch of the\n"
            "prediction set.\n"
            "It is the area between the curve of the batch and the limits that it crosses, with a base of one\n"
            "aligned point; 0 for a batch within average plus multiples of the standard deviation. The limits are\n"
            "those of the workset. In the units of YPredPS.");
    }
} const yPredPSAlignedOOCSumVector;

} // namespace
