#include "catalogue/Batches_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"
#include "platform/text/VqString.h"

#include <boost/format.hpp>

#include <algorithm>
#include <iterator>
#include <locale>

// Batches at the aligned points of maturity: single ones, their average and standard deviation, and the limits that
// both make.

namespace {

using namespace rows;

// Batch indexes that are no batch.
constexpr int listOfBatches = -2;
constexpr int averageOfBatches = -1;
constexpr int deviationOfBatches = 0;

// `values` reads batches, `statistics` their average and standard deviation.
template <auto values, auto statistics, auto columns>
class AlignedVector : public ProjectVector {
public:
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        BatchQuestion const asked(*this, project, args);
        if (!asked.IsWithinModel())
            return nullptr;
        int const batch = asked.arguments.batch;
        if (batch == averageOfBatches || batch == deviationOfBatches)
            return Ask(asked, statistics, batch == averageOfBatches, batch == deviationOfBatches);
        IntList const batches = BatchesOf(asked.arguments);
        return Ask(asked, values, &batches);
    }
    ColumnIDs CreateColumnIDsRaw(ProjectPtr project, char const *args) const override {
        Arguments arguments;
        if (!ReadArguments(args, arguments))
            return ColumnIDs(project);
        IntList const batches = BatchesOf(arguments);
        return Labels(project, arguments.source.c_str(), columns, &batches);
    }

private:
    // The batch index, or the list that stands behind it.
    static IntList BatchesOf(Arguments const &arguments) {
        if (arguments.batch != listOfBatches)
            return {arguments.batch};
        IntList batches;
        ParseIntegerList(arguments.rest ? arguments.rest : "", batches);
        return batches;
    }
};

class ProjectTAlignedVector final
    : public AlignedVector<&GetProjectData::GetAlignedT, &GetProjectData::GetAlignedTStdDevAndAverage,
                           &GetProjectData::GetAlignedColumnIDs> {
public:
    ProjectTAlignedVector() {
        Init("t", Aligned, Model, AnyModel, Predictive, NumberBatch, Score, Observed, Displayable);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "t: Scores t of batches at the aligned points, one vector for each model dimension.\n"
            "Batches of different duration lie on one scale of maturity, so that they can be compared. Asked of\n"
            "one batch, of some, or of all: their average or standard deviation. In the units of the scaled X\n"
            "variables.");
    }
} const tAlignedVector;

class ProjectTPSAlignedVector final
    : public AlignedVector<&GetProjectData::GetAlignedTPS, &GetProjectData::GetAlignedTPSStdDevAndAverage,
                           &GetProjectData::GetAlignedPSColumnIDs> {
public:
    ProjectTPSAlignedVector() {
        Init("tPS", Aligned, Model, AnyModel, Predictive, NumberBatch, NoScoreLoading, Predicted, Displayable);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "tPS: Scores t of batches of the prediction set at the aligned points.\n"
            "Plot them over the average and the limits of the workset to judge new batches. Asked of one batch,\n"
            "of some, or of all: their average or standard deviation. In the units of the scaled X variables.");
    }
} const tPSAlignedVector;

class ProjectTOPLSAlignedVector final
    : public AlignedVector<&GetProjectData::GetAlignedTO, &GetProjectData::GetAlignedTOStdDevAndAverage,
                           &GetProjectData::GetAlignedColumnIDs> {
public:
    ProjectTOPLSAlignedVector() {
        Init("to", Aligned, Model, AnyOPLS, XSide, NumberBatch, Score, Observed, Displayable);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "to: Orthogonal scores to of batches at the aligned points.\n"
            "They show how batches differ in ways that have nothing to do with maturity. Asked of one batch, of\n"
            "some, or of all: their average or standard deviation. In the units of the scaled X variables.");
    }
} const tOPLSAlignedVector;

class ProjectTPSOPLSAlignedVector final
    : public AlignedVector<&GetProjectData::GetAlignedTOPS, &GetProjectData::GetAlignedTOPSStdDevAndAverage,
                           &GetProjectData::GetAlignedPSColumnIDs> {
public:
    ProjectTPSOPLSAlignedVector() {
        Init("toPS", Aligned, Model, AnyOPLS, XSide, NumberBatch, NoScoreLoading, Predicted, Displayable);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "toPS: Orthogonal scores to of batches of the prediction set at the aligned points.\n"
            "Values far outside those of the workset warn of a disturbance that the model has not seen. Asked of\n"
            "one batch, of some, or of all: their average or standard deviation. In the units of the scaled X\n"
            "variables.");
    }
} const tPSOPLSAlignedVector;

class ProjectDModXAlignedVector
    : public AlignedVector<&GetProjectData::GetAlignedDModX, &GetProjectData::GetAlignedDModXStdDevAndAverage,
                           &GetProjectData::GetAlignedColumnIDs> {
public:
    ProjectDModXAlignedVector() {
        Init("DModX", Aligned, Model, WithoutOPLS, Predictive, NumberBatch, NoScoreLoading, Observed, Displayable);
        m_contributionSource = XDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "DModX: Distance of batches to the model in X, at the aligned points.\n"
            "It tells at which maturity a batch did what the model does not describe. Asked of one batch, of\n"
            "some, or of all: their average or standard deviation. In units of the pooled distance, or absolute.");
    }
} const dModXAlignedVector;

class ProjectDModXOPLSAlignedVector final : public OfWholeModel<ProjectDModXAlignedVector, LeftOfX> {
} const dModXOPLSAlignedVector;

class ProjectDModXPSAlignedVector
    : public AlignedVector<&GetProjectData::GetAlignedDModXPS, &GetProjectData::GetAlignedDModXPSStdDevAndAverage,
                           &GetProjectData::GetAlignedPSColumnIDs> {
public:
    ProjectDModXPSAlignedVector() {
        Init("DModXPS", Aligned, Model, WithoutOPLS, Predictive, NumberBatch, NoScoreLoading, Predicted, Displayable);
        m_contributionSource = XDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "DModXPS: Distance of batches of the prediction set to the model in X, at the aligned points.\n"
            "It tells at which maturity a new batch is of another kind than those of the workset. Asked of one\n"
            "batch, of some, or of all: their average or standard deviation. In units of the pooled distance, or\n"
            "absolute.");
    }
} const dModXPSAlignedVector;

class ProjectDModXPSOPLSAlignedVector final : public OfWholeModel<ProjectDModXPSAlignedVector, LeftOfX> {
} const dModXPSOPLSAlignedVector;

class ProjectT2RangeAlignedVector
    : public AlignedVector<&GetProjectData::GetAlignedT2Range, &GetProjectData::GetAlignedT2RangeStdDevAndAverage,
                           &GetProjectData::GetAlignedColumnIDs> {
public:
    ProjectT2RangeAlignedVector() {
        Init("T2Range", Aligned, Model, WithoutOPLS, NoComponent, NumberBatchComponentRange, NoScoreLoading, Observed,
             Displayable);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "T2Range: Hotelling's T2 of batches over a range of components, at the aligned points.\n"
            "It tells at which maturity a batch was extreme though the model describes it. Asked of one batch, of\n"
            "some, or of all: their average or standard deviation. Without unit.");
    }
    bool IsT2RangeVector() const override { return true; }
} const t2RangeAlignedVector;

class ProjectT2RangeOPLSAlignedVector final : public OfWholeModel<ProjectT2RangeAlignedVector, AllOfX> {
public:
    ProjectT2RangeOPLSAlignedVector() { m_numberType = NumberBatch; }
} const t2RangeOPLSAlignedVector;

class ProjectT2RangePSAlignedVector
    : public AlignedVector<&GetProjectData::GetAlignedT2RangePS, &GetProjectData::GetAlignedT2RangePSStdDevAndAverage,
                           &GetProjectData::GetAlignedPSColumnIDs> {
public:
    ProjectT2RangePSAlignedVector() {
        Init("T2RangePS", Aligned, Model, WithoutOPLS, NoComponent, NumberBatchComponentRange, NoScoreLoading,
             Predicted, Displayable);
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "T2RangePS: Hotelling's T2 of batches of the prediction set over a range of components, at the\n"
            "aligned points. Above the limit a new batch runs outside the range of the workset. Asked of one\n"
            "batch, of some, or of all: their average or standard deviation. Without unit.");
    }
    bool IsT2RangeVector() const override { return true; }
} const t2RangePSAlignedVector;

class ProjectT2RangePSOPLSAlignedVector final : public OfWholeModel<ProjectT2RangePSAlignedVector, AllOfX> {
public:
    ProjectT2RangePSOPLSAlignedVector() { m_numberType = NumberBatch; }
} const t2RangePSOPLSAlignedVector;

class ProjectXVarAlignedVector final
    : public AlignedVector<&GetProjectData::GetAlignedXVar, &GetProjectData::GetAlignedXVarStdDevAndAverage,
                           &GetProjectData::GetAlignedColumnIDs> {
public:
    ProjectXVarAlignedVector() {
        Init("XVar", Aligned, Model, AnyModel, NoComponent, NumberBatchXVariable, NoScoreLoading, Observed,
             Displayable);
        m_firstComponent = NoFirstComponent;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "XVar: Values of an X variable in batches, at the aligned points.\n"
            "The average is the trajectory that a good batch follows. Asked of one batch, of some, or of all:\n"
            "their average or standard deviation. In the units of the data set, before the transformation or\n"
            "after it, or scaled as in the workset.");
    }
} const xVarAlignedVector;

class ProjectXVarPSAlignedVector final
    : public AlignedVector<&GetProjectData::GetAlignedXVarPS, &GetProjectData::GetAlignedXVarPSStdDevAndAverage,
                           &GetProjectData::GetAlignedPSColumnIDs> {
public:
    ProjectXVarPSAlignedVector() {
        Init("XVarPS", Aligned, Model, AnyModel, NoComponent, NumberBatchXVariable, NoScoreLoading, Predicted,
             Displayable);
        m_firstComponent = NoFirstComponent;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "XVarPS: Values of an X variable in batches of the prediction set, at the aligned points.\n"
            "Compare with XVar to see at which maturity a new batch leaves the trajectory. Asked of one batch, of\n"
            "some, or of all: their average or standard deviation. In the units of the data set, before the\n"
            "transformation or after it, or scaled as in the workset.");
    }
} const xVarPSAlignedVector;

class ProjectYVarAlignedVector final
    : public AlignedVector<&GetProjectData::GetAlignedYVar, &GetProjectData::GetAlignedYVarStdDevAndAverage,
                           &GetProjectData::GetAlignedColumnIDs> {
public:
    ProjectYVarAlignedVector() {
        Init("YVar", Aligned, Model, WithY, NoComponent, NumberBatchYVariable, NoScoreLoading, Observed, Displayable);
        m_firstComponent = NoFirstComponent;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YVar: Values of a response in batches, at the aligned points.\n"
            "Where the response is maturity they rise along the axis. Asked of one batch, of some, or of all:\n"
            "their average or standard deviation. In the units of the data set, before the transformation or\n"
            "after it, or scaled as in the workset.");
    }
} const yVarAlignedVector;

class ProjectYVarPSAlignedVector final
    : public AlignedVector<&GetProjectData::GetAlignedYVarPS, &GetProjectData::GetAlignedYVarPSStdDevAndAverage,
                           &GetProjectData::GetAlignedPSColumnIDs> {
public:
    ProjectYVarPSAlignedVector() {
        Init("YVarPS", Aligned, Model, WithY, NoComponent, NumberBatchYVariable, NoScoreLoading, Predicted,
             Displayable);
        m_firstComponent = NoFirstComponent;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YVarPS: Values of a response in batches of the prediction set, at the aligned points.\n"
            "Plot YPredPS against them to see how well the model predicts new batches. Asked of one batch, of\n"
            "some, or of all: their average or standard deviation. In the units of the data set, before the\n"
            "transformation or after it, or scaled as in the workset.");
    }
} const yVarPSAlignedVector;

class ProjectYPredAlignedVector
    : public AlignedVector<&GetProjectData::GetAlignedYPred, &GetProjectData::GetAlignedYPredStdDevAndAverage,
                           &GetProjectData::GetAlignedColumnIDs> {
public:
    ProjectYPredAlignedVector() {
        Init("YPred", Aligned, Model, WithoutOPLS, Predictive, NumberBatchYVariable, NoScoreLoading, Observed,
             Displayable);
        m_contributionSource = ResponseContribution;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YPred: Values of a response that the model fits, in batches, at the aligned points.\n"
            "As prediction of maturity they tell which batches ran ahead and which lagged behind. Asked of one\n"
            "batch, of some, or of all: their average or standard deviation. In the units of the data set, before\n"
            "the transformation or after it, or scaled as in the workset.");
    }
    bool SupportDateTime() const override { return true; }
} const yPredAlignedVector;

class ProjectYPredOPLSAlignedVector final : public OfWholeModel<ProjectYPredAlignedVector, Predicting> {
} const yPredOPLSAlignedVector;

class ProjectYPredPSAlignedVector
    : public AlignedVector<&GetProjectData::GetAlignedYPredPS, &GetProjectData::GetAlignedYPredPSStdDevAndAverage,
                           &GetProjectData::GetAlignedPSColumnIDs> {
public:
    ProjectYPredPSAlignedVector() {
        Init("YPredPS", Aligned, Model, WithoutOPLS, Predictive, NumberBatchYVariable, NoScoreLoading, Predicted,
             Displayable);
        m_contributionSource = ResponseContribution;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YPredPS: Predicted values of a response in batches of the prediction set, at the aligned points.\n"
            "As prediction of maturity they tell whether a new batch is ahead or behind. Asked of one batch, of\n"
            "some, or of all: their average or standard deviation. In the units of the data set, before the\n"
            "transformation or after it, or scaled as in the workset.");
    }
    bool SupportDateTime() const override { return true; }
} const yPredPSAlignedVector;

class ProjectYPredPSOPLSAlignedVector final : public OfWholeModel<ProjectYPredPSAlignedVector, Predicting> {
} const yPredPSOPLSAlignedVector;

// The second row, the standard deviation, times the multiplier plus the first row, the average.
TablePtr LimitOf(ProjectData const &both, ColumnIDs columns, double multiplier) {
    NCDataVector<float> const limit = both.GetMatrix()[2] * multiplier + both.GetMatrix()[1];
    boost::format label(multiplier > 0 ? translate("+%1% Std.Dev") : translate("%1% Std.Dev"), std::locale::classic());
    return std::make_unique<ProjectData>(RowIDs((label % multiplier).str(), both.GetProject()), std::move(columns),
                                         NCDataMatrix<float>(limit));
}

// A limit at each aligned point. The first of the two multipliers makes it.
template <auto statistics>
class LimitVector : public ProjectVector {
public:
    bool HasMultiplier() const override { return true; }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        BatchQuestion const asked(*this, project, args);
        bool const lacksComponent = GetComponentType() != ComponentNone && asked.arguments.component < 1;
        if (asked.model == -1 || !asked.arguments.rest || lacksComponent)
            return nullptr;
        TablePtr const both = Ask(asked, statistics, true, true);
        return both && both->Rows() == 2
                   ? LimitOf(*both, ColumnsOf(*both, args), VqString::vqstrtod(asked.arguments.rest))
                   : nullptr;
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetAlignedColumnIDs, nullptr);
    }

private:
    virtual ColumnIDs ColumnsOf(ProjectData const &both, char const * /*args*/) const { return both.GetColumnIDs(); }
};

class ProjectTAvgStdDevAlignedVector final : public LimitVector<&GetProjectData::GetAlignedTStdDevAndAverage> {
public:
    ProjectTAvgStdDevAlignedVector() {
        Init("tstddev", Aligned, Model, AnyModel, Predictive, NumberNone, NoScoreLoading, Observed, Hidden);
        m_longName = "Std.Dev";
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "tstddev: Limits of the scores t of batches at each aligned point: average plus a multiple of the\n"
            "standard deviation over the batches of the workset. A multiple above 0 is an upper limit, one below\n"
            "0 a lower one, 0 the average. In the units of the scaled X variables.");
    }
} const tAvgStdDevAlignedVector;

class ProjectTOAvgStdDevAlignedVector final : public LimitVector<&GetProjectData::GetAlignedTOStdDevAndAverage> {
public:
    ProjectTOAvgStdDevAlignedVector() {
        Init("tostddev", Aligned, Model, AnyOPLS, XSide, NumberNone, NoScoreLoading, Observed, Hidden);
        m_longName = "Std.Dev";
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "tostddev: Limits of the orthogonal scores to of batches at each aligned point: average plus a\n"
            "multiple of the standard deviation over the batches of the workset. A multiple above 0 is an upper\n"
            "limit, one below 0 a lower one, 0 the average. In the units of the scaled X variables.");
    }
} const tOAvgStdDevAlignedVector;

class ProjectDModXAvgStdDevAlignedVector : public LimitVector<&GetProjectData::GetAlignedDModXStdDevAndAverage> {
public:
    ProjectDModXAvgStdDevAlignedVector() {
        Init("DModXstddev", Aligned, Model, WithoutOPLS, Predictive, NumberNone, NoScoreLoading, Observed, Hidden);
        m_longName = "Std.Dev";
        m_contributionSource = XDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "DModXstddev: Limits of the distance of batches to the model in X: average plus a multiple of the\n"
            "standard deviation over the batches of the workset. A multiple above 0 is an upper limit, one below\n"
            "0 a lower one, 0 the average. In units of the pooled distance, or absolute.");
    }
} const dModXAvgStdDevAlignedVector;

class ProjectDModXOPLSAvgStdDevAlignedVector final : public OfWholeModel<ProjectDModXAvgStdDevAlignedVector, LeftOfX> {
} const dModXOPLSAvgStdDevAlignedVector;

class ProjectXVarStdDevAlignedVector final : public LimitVector<&GetProjectData::GetAlignedXVarStdDevAndAverage> {
public:
    ProjectXVarStdDevAlignedVector() {
        Init("XVarstddev", Aligned, Model, AnyModel, NoComponent, NumberXVariable, NoScoreLoading, Observed, Hidden);
        m_longName = "XVar Std.Dev";
        m_useUnscalingTransform = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "XVarstddev: Limits of an X variable in batches at each aligned point: average plus a multiple of the\n"
            "standard deviation over the batches of the workset. A multiple above 0 is an upper limit, one below\n"
            "0 a lower one, 0 the average. In the units of XVar.");
    }
} const xVarStdDevAlignedVector;

class ProjectYPredStdDevAlignedVector final : public LimitVector<&GetProjectData::GetAlignedYPredStdDevAndAverage> {
public:
    ProjectYPredStdDevAlignedVector() {
        Init("YPredstddev", Aligned, Model, AnyModel, Predictive, NumberYVariable, NoScoreLoading, Observed, Hidden);
        m_longName = "YPred Std.Dev";
        m_contributionSource = ResponseContribution;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YPredstddev: Limits of a fitted response in batches at each aligned point: average plus a multiple\n"
            "of the standard deviation over the batches of the workset. A multiple above 0 is an upper limit, one\n"
            "below 0 a lower one, 0 the average. In the units of YPred.");
    }
} const yPredStdDevAlignedVector;

class ProjectT2RangeStdDevAlignedVector final : public LimitVector<&GetProjectData::GetAlignedT2RangeStdDevAndAverage> {
public:
    ProjectT2RangeStdDevAlignedVector() {
        Init("T2Rangestddev", Aligned, Model, AnyModel, NoComponent, NumberComponentRange, NoScoreLoading, Observed,
             Hidden);
        m_longName = "T2Range Std.Dev";
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "T2Rangestddev: Limits of Hotelling's T2 of batches at each aligned point: average plus a multiple of\n"
            "the standard deviation over the batches of the workset. A multiple above 0 is an upper limit, one\n"
            "below 0 a lower one, 0 the average. Without unit.");
    }
    bool IsT2RangeVector() const override { return true; }

private:
    ColumnIDs ColumnsOf(ProjectData const &both, char const *args) const override {
        return CreateColumnIDsRaw(both.GetProject(), args);
    }
} const t2RangeStdDevAlignedVector;

class ProjectTimeMaturityVector final : public ProjectVector {
public:
    ProjectTimeMaturityVector() {
        Init("Time/Maturity", Aligned, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, Observed, Displayable);
        m_firstComponent = NoFirstComponent;
    }
    std::string GetHelpString() const override {
        return translate("Time/Maturity: Time or maturity of each aligned point.\n"
                         "Use it as the X axis of aligned batches. In the units of the variable that tells maturity.");
    }
    bool IsNumVectorLike() const override { return true; }
    TablePtr CreateVector(ProjectPtr project, char const *source, int component, unsigned long, int) const override {
        return Deliver({*this, project, source, component}, &GetProjectData::GetAlignedTimeMaturity);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return Labels(project, source, &GetProjectData::GetAlignedColumnIDs, nullptr);
    }
} const timeMaturityVector;

} // namespace

bool IsAvgStdDevVector(ProjectVector const *vector) {
    static ProjectVector const *const limits[] = {
        &tAvgStdDevAlignedVector,    &dModXAvgStdDevAlignedVector, &dModXOPLSAvgStdDevAlignedVector,
        &xVarStdDevAlignedVector,    &yPredStdDevAlignedVector,    &t2RangeStdDevAlignedVector,
        &t2RangeStdDevAlignedVector, &tOAvgStdDevAlignedVector,    nullptr};
    ProjectVector const *const *limit = limits;
    while (*limit && *limit != vector)
        ++limit;
    return *limit;
}
