#include "catalogue/Batches_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/project/BatchPreProcess.h"
#include "platform/project/ModelUtilities.h"
#include "platform/text/Exception.h"
#include "platform/text/Translate.h"

// One batch at a time, by its observations, and what batches have beside that: numbers, importance, treated responses.

namespace {

using namespace rows;

// How the operations of the plain statistics take one batch in place of all.

TablePtr AskOneBatch(BatchQuestion const &asked,
                     TablePtr (GetProjectData::*operation)(int, IntList const *, int) const) {
    return Deliver(asked.Common(), operation, asked.arguments.batch);
}

TablePtr AskOneBatch(BatchQuestion const &asked,
                     TablePtr (GetProjectData::*operation)(int, IntList const *, TriState::State, TriState::State, int)
                         const) {
    return Deliver(asked.Common(), operation, TriState::Undefined, TriState::Undefined, asked.arguments.batch);
}

TablePtr AskOneBatch(BatchQuestion const &asked, TablePtr (GetProjectData::*operation)(int, int, int, int) const) {
    return Ask(asked, operation, asked.arguments.batch);
}

TablePtr AskOneBatch(BatchQuestion const &asked,
                     TablePtr (GetProjectData::*operation)(int, ColumnTerms const *, int) const) {
    return DeliverTerm(asked.Common(), asked.arguments.number, operation, asked.arguments.batch);
}

// Values of variables: several X variables stand in a list behind the batch.
template <typename Operation>
TablePtr AskOneBatch(BatchQuestion const &asked, Operation operation) {
    return DeliverValues(asked.vector, asked.project, asked.args, operation, asked.arguments.batch);
}

// The plain statistic, of one batch: `values` and `columns` are its operations.
template <auto values, auto columns>
class OneBatchVector : public ProjectVector {
public:
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const final {
        BatchQuestion const asked(*this, project, args);
        return asked.IsWithinModel() ? AskOneBatch(asked, values) : nullptr;
    }
    // NCInternalError when the text ends too early, or its source is no model.
    ColumnIDs CreateColumnIDsRaw(ProjectPtr project, char const *args) const final {
        Arguments arguments;
        bool const isWhole = ReadArguments(args, arguments);
        int const model = GetModelNumber(project, arguments.source);
        if (!isWhole || model == -1)
            throw NCInternalError(std::string(Class()) + "::CreateColumnIDsRaw");
        return (GetProjectData(*project).*columns)(model, arguments.batch);
    }

private:
    virtual char const *Class() const = 0;
};

class ProjectTBatchVector final : public OneBatchVector<&GetProjectData::GetT, &GetProjectData::GetTColumnIDs> {
public:
    ProjectTBatchVector() {
        Init("tBatch", Scores, Model, AnyModel, Predictive, NumberBatch, Score, Observed, Hidden);
        m_longName = "t";
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "tBatch: Scores t of one batch of the workset, one vector for each model dimension.\n"
            "Plot them over maturity to follow the batch on its way and to find when it left the others. In the\n"
            "units of the scaled X variables.");
    }

private:
    char const *Class() const override { return "ProjectTBatchVector"; }
} const tBatchVector;

class ProjectTPSBatchVector final : public OneBatchVector<&GetProjectData::GetTPS, &GetProjectData::GetTPSColumnIDs> {
public:
    ProjectTPSBatchVector() {
        Init("tPSBatch", Scores, Model, AnyModel, Predictive, NumberBatch, NoScoreLoading, Predicted, Hidden);
        m_longName = "tPS";
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "tPSBatch: Scores t of one batch of the prediction set, one vector for each model dimension.\n"
            "Plot them with the limits of tstddev to see when a new batch departs from the good ones. In the\n"
            "units of the scaled X variables.");
    }

private:
    char const *Class() const override { return "ProjectTPSBatchVector"; }
} const tPSBatchVector;

class ProjectTOBatchVector final : public OneBatchVector<&GetProjectData::GetTo, &GetProjectData::GetTColumnIDs> {
public:
    ProjectTOBatchVector() {
        Init("toBatch", Scores, Model, AnyOPLS, XSide, NumberBatch, Score, Observed, Hidden);
        m_longName = "to";
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "toBatch: Orthogonal scores to of one batch of the workset.\n"
            "They show how the batch varied in ways that have nothing to do with its maturity. In the units of\n"
            "the scaled X variables.");
    }

private:
    char const *Class() const override { return "ProjectTOBatchVector"; }
} const tOBatchVector;

class ProjectToPSBatchVector final
    : public OneBatchVector<&GetProjectData::GetToPS, &GetProjectData::GetToPSColumnIDs> {
public:
    ProjectToPSBatchVector() {
        Init("toPSBatch", Scores, Model, AnyOPLS, XSide, NumberBatch, NoScoreLoading, Predicted, Hidden);
        m_longName = "toPS";
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate(
            "toPSBatch: Orthogonal scores to of one batch of the prediction set.\n"
            "Values far outside those of the workset tell of a disturbance that the model has not seen. In the\n"
            "units of the scaled X variables.");
    }

private:
    char const *Class() const override { return "ProjectToPSBatchVector"; }
} const toPSBatchVector;

class ProjectDModXBatchVector final
    : public OneBatchVector<&GetProjectData::GetDModX, &GetProjectData::GetDModXColumnIDs> {
public:
    ProjectDModXBatchVector() {
        Init("DModXBatch", Scores, Model, AnyModel, Predictive, NumberBatch, NoScoreLoading, Observed, Hidden);
        m_longName = "DModX";
        m_contributionSource = XDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "DModXBatch: Distance of each observation of one batch of the workset to the model in X.\n"
            "A rise tells when the variables ceased to go together as they do in the other batches. In units of\n"
            "the pooled distance, or absolute.");
    }

private:
    char const *Class() const override { return "ProjectDModXBatchVector"; }
} const dModXBatchVector;

class ProjectDModXPSBatchVector final
    : public OneBatchVector<&GetProjectData::GetDModXPS, &GetProjectData::GetDModXPSColumnIDs> {
public:
    ProjectDModXPSBatchVector() {
        Init("DModXPSBatch", Scores, Model, AnyModel, Predictive, NumberBatch, NoScoreLoading, Predicted, Hidden);
        m_longName = "DModXPS";
        m_contributionSource = XDistanceContribution;
        m_firstComponent = ComponentZero;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "DModXPSBatch: Distance of each observation of one batch of the prediction set to the model in X.\n"
            "A rise above the limit tells when something new happened, such as a sensor that failed. In units of\n"
            "the pooled distance, or absolute.");
    }

private:
    char const *Class() const override { return "ProjectDModXPSBatchVector"; }
} const dModXPSBatchVector;

class ProjectT2RangeBatchVector
    : public OneBatchVector<&GetProjectData::GetT2Range, &GetProjectData::GetT2RangeColumnIDs> {
public:
    ProjectT2RangeBatchVector() {
        Init("T2RangeBatch", Scores, Model, WithoutOPLS, NoComponent, NumberBatchComponentRange, NoScoreLoading,
             Observed, Hidden);
        m_longName = "T2Range";
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate("T2RangeBatch: Hotelling's T2 of the observations of one batch of the workset.\n"
                         "It tells when the batch was extreme in ways that the model describes. Without unit.");
    }
    bool IsT2RangeVector() const override { return true; }

private:
    char const *Class() const override { return "ProjectT2RangeBatchVector"; }
} const t2RangeBatchVector;

class ProjectO2PLST2RangeBatchVector final : public OfWholeModel<ProjectT2RangeBatchVector, AllOfX> {
public:
    ProjectO2PLST2RangeBatchVector() {
        m_numberType = NumberBatch;
        m_predictiveComponentDefaultsToLast = true;
    }

private:
    char const *Class() const override { return "ProjectO2PLST2RangeBatchVector"; }
} const o2PLST2RangeBatchVector;

class ProjectT2RangePSBatchVector
    : public OneBatchVector<&GetProjectData::GetT2RangePS, &GetProjectData::GetT2RangePSColumnIDs> {
public:
    ProjectT2RangePSBatchVector() {
        Init("T2RangePSBatch", Scores, Model, WithoutOPLS, NoComponent, NumberBatchComponentRange, NoScoreLoading,
             Predicted, Hidden);
        m_longName = "T2RangePS";
        m_contributionSource = ScoreContribution;
    }
    std::string GetHelpString() const override {
        return translate("T2RangePSBatch: Hotelling's T2 of the observations of one batch of the prediction set.\n"
                         "Above the limit a new batch runs outside the range of the workset. Without unit.");
    }
    bool IsT2RangeVector() const override { return true; }

private:
    char const *Class() const override { return "ProjectT2RangePSBatchVector"; }
} const t2RangePSBatchVector;

class ProjectO2PLST2RangePSBatchVector final : public OfWholeModel<ProjectT2RangePSBatchVector, AllOfX> {
public:
    ProjectO2PLST2RangePSBatchVector() {
        m_numberType = NumberBatch;
        m_predictiveComponentDefaultsToLast = true;
    }

private:
    char const *Class() const override { return "ProjectO2PLST2RangePSBatchVector"; }
} const o2PLST2RangePSBatchVector;

class ProjectXVarBatchVector final
    : public OneBatchVector<&GetProjectData::GetXVar, &GetProjectData::GetXVarColumnIDs> {
public:
    ProjectXVarBatchVector() {
        Init("XVarBatch", Scores, Model, NoModel, NoComponent, NumberBatchXVariable, NoScoreLoading, Observed, Hidden);
        m_longName = "XVar";
        m_firstComponent = NoFirstComponent;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "XVarBatch: Values of an X variable in one batch of the workset.\n"
            "Look at them to follow an odd score back to the measurement. In the units of the data set, before\n"
            "the transformation or after it, or scaled as in the workset.");
    }

private:
    char const *Class() const override { return "ProjectXVarBatchVector"; }
} const xVarBatchVector;

class ProjectXVarPSBatchVector final
    : public OneBatchVector<&GetProjectData::GetXVarPS, &GetProjectData::GetXVarPSColumnIDs> {
public:
    ProjectXVarPSBatchVector() {
        Init("XVarPSBatch", Scores, Model, AnyModel, NoComponent, NumberBatchXVariable, NoScoreLoading, Predicted,
             Hidden);
        m_longName = "XVarPS";
        m_firstComponent = NoFirstComponent;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "XVarPSBatch: Values of an X variable in one batch of the prediction set.\n"
            "Plot them beside those of a good batch to see where they differ. In the units of the data set,\n"
            "before the transformation or after it, or scaled as in the workset.");
    }
    bool SupportDateTime() const override { return true; }

private:
    char const *Class() const override { return "ProjectXVarPSBatchVector"; }
} const xVarPSBatchVector;

class ProjectYPredBatchVector final
    : public OneBatchVector<&GetProjectData::GetYPred, &GetProjectData::GetYPredColumnIDs> {
public:
    ProjectYPredBatchVector() {
        Init("YPredBatch", Scores, Model, WithY, Predictive, NumberBatchYVariable, NoScoreLoading, Observed, Hidden);
        m_contributionSource = ResponseContribution;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YPredBatch: Values of a response that the model fits, in one batch of the workset.\n"
            "As prediction of maturity they tell how far the batch had come at each observation. In the units of\n"
            "the data set, before the transformation or after it, or scaled as in the workset.");
    }
    bool SupportDateTime() const override { return true; }

private:
    char const *Class() const override { return "ProjectYPredBatchVector"; }
} const yPredBatchVector;

class ProjectYPredPSBatchVector final
    : public OneBatchVector<&GetProjectData::GetYPredPS, &GetProjectData::GetYPredPSColumnIDs> {
public:
    ProjectYPredPSBatchVector() {
        Init("YPredPSBatch", Scores, Model, WithY, Predictive, NumberBatchYVariable, NoScoreLoading, Predicted, Hidden);
        m_longName = "YPredPS";
        m_contributionSource = ResponseContribution;
        m_useUnscalingTransform = true;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YPredPSBatch: Predicted values of a response in one batch of the prediction set.\n"
            "As prediction of maturity they tell whether a new batch is ahead of the others or behind. In the\n"
            "units of the data set, before the transformation or after it, or scaled as in the workset.");
    }

private:
    char const *Class() const override { return "ProjectYPredPSBatchVector"; }
} const yPredPSBatchVector;

class ProjectYVarDSBatchVector final
    : public OneBatchVector<&GetProjectData::GetYVarUntreated, &GetProjectData::GetYVarColumnIDs> {
public:
    ProjectYVarDSBatchVector() {
        Init("YVarDSBatch", Scores, Model, WithY, Predictive, NumberBatchYVariable, NoScoreLoading, Observed, Hidden);
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YVarDSBatch: Values of a response as they stand in the data set, in one batch of the workset.\n"
            "They are the response before it was shifted, normalised or smoothed. In the units of the data set.");
    }

private:
    char const *Class() const override { return "ProjectYVarDSBatchVector"; }
} const yVarDSBatchVector;

class ProjectYVarDSPSBatchVector final
    : public OneBatchVector<&GetProjectData::GetYVarUntreatedPS, &GetProjectData::GetYVarPSColumnIDs> {
public:
    ProjectYVarDSPSBatchVector() {
        Init("YVarDSPSBatch", Scores, Model, WithY, NoComponent, NumberBatchYVariable, NoScoreLoading, Predicted,
             Hidden);
        m_longName = "YVarDSPS";
        m_firstComponent = NoFirstComponent;
        m_predictiveComponentDefaultsToLast = true;
    }
    std::string GetHelpString() const override {
        return translate(
            "YVarDSPSBatch: Values of a response as they stand in the data, in one batch of the prediction set.\n"
            "They are the response before it was shifted, normalised or smoothed. In the units of the data set.");
    }
    bool SupportDateTime() const override { return true; }

private:
    char const *Class() const override { return "ProjectYVarDSPSBatchVector"; }
} const yVarDSPSBatchVector;

ColumnIDs ObservationColumns(ObservationInfos const &observations, ProjectPtr const &project, int model) {
    ColumnIDs::Numbers numbers;
    for (ObservationInfo const &observation : observations)
        numbers.push_back(observation.GetUniqueID());
    return ColumnIDs(ColumnIDs::Observations, std::move(numbers), project, model);
}

// 1, 2, 3, ... within each batch.
TablePtr NumbersInBatches(std::string const &label, ObservationInfos const &observations, ProjectPtr const &project,
                          int model) {
    int const count = static_cast<int>(observations.size());
    NCDataMatrix<float> matrix(1, count);
    auto const beginnings = BatchUtilities::GetBatchBeginnings(project->GetObservations(), observations);
    for (int batch = 1; batch <= beginnings.Size(); ++batch) {
        int const length = BatchUtilities::GetBatchLength(beginnings, batch, count);
        for (int number = 1; number <= length; ++number)
            matrix(1, beginnings[batch] + number - 1) = static_cast<float>(number);
    }
    return std::make_unique<ProjectData>(RowIDs(label, project), ObservationColumns(observations, project, model),
                                         std::move(matrix));
}

// The rows of the model, or those that are projected on it; an empty list when there are none.
ObservationInfos RowsOf(NCProject const &project, int model, bool areNew) {
    if (areNew) {
        auto const predictions = project.GetPredictions(model, false);
        return predictions ? predictions->GetObservations() : ObservationInfos();
    }
    auto const object = project.GetModel(model);
    return object ? object->GetObservations() : ObservationInfos();
}

// The number of each observation within its batch.
class BatchNumberVector : public ProjectVector {
public:
    bool IsNumVectorLike() const override { return true; }
    TablePtr CreateVector(ProjectPtr project, char const *source, int, unsigned long, int) const override {
        int const model = GetModelNumber(project, source);
        ObservationInfos const observations = RowsOf(*project, model, GetObsPredType() == Predicted);
        return observations.empty() ? nullptr : NumbersInBatches(GetName(), observations, project, model);
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        int const model = GetModelNumber(project, source);
        return ObservationColumns(RowsOf(*project, model, GetObsPredType() == Predicted), project, model);
    }

protected:
    BatchNumberVector(char const *name, char const *longName, ObsOrPredType obsPredType) {
        Init(name, Scores, Model, AnyModel, NoComponent, NumberNone, NoScoreLoading, obsPredType, Hidden);
        m_longName = longName;
        m_firstComponent = NoFirstComponent;
        m_contributionKind = ScoreContribution;
    }
};

class ProjectBatchNumVector final : public BatchNumberVector {
public:
    ProjectBatchNumVector() : BatchNumberVector("BatchNum", "Batch Num", Observed) {}
    std::string GetHelpString() const override {
        return translate("BatchNum: Number of each observation of the workset within its batch: 1, 2, 3 and so on.\n"
                         "Use it as the X axis to lay batches over each other by their observations.");
    }
} const batchNumVector;

class ProjectBatchNumPSVector final : public BatchNumberVector {
public:
    ProjectBatchNumPSVector() : BatchNumberVector("BatchNumPS", "Batch Num PS", Predicted) {}
    std::string GetHelpString() const override {
        return translate(
            "BatchNumPS: Number of each observation of the prediction set within its batch: 1, 2, 3 and so on.\n"
            "Use it as the X axis to lay new batches over each other by their observations.");
    }
} const batchNumPSVector;

class ProjectBatchVIPVector final : public ProjectVector {
public:
    ProjectBatchVIPVector(ModelTypeE::Model models, NumberType number) {
        Init("BatchVIP", Loadings, Model, models, Predictive, number, NoScoreLoading, Observed, Displayable);
    }
    std::string GetHelpString() const override {
        return translate(
            "BatchVIP: Influence of each variable of the batches on a model of whole batches.\n"
            "It adds up the importance that the variable has at all maturities, in one phase. Above 1 a variable\n"
            "matters more than the average one. Without unit.");
    }
    bool IsValidProject(ProjectPtr project) const override { return project->IsBatchProject(); }
    bool IsValidModel(NCProject const &project, ModelInfo const &model) const override {
        return model.IsBatchLevelModel(project.shared_from_this());
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        BatchQuestion const asked(*this, project, args);
        if (asked.model == -1)
            return nullptr;
        // No single response stands for all of them, as does a model without any.
        bool const isOfOne = IsYVector() && asked.arguments.number != noSingleItem;
        ColumnTerms const terms =
            isOfOne ? TermsOf(asked.Common(), asked.model, asked.arguments.number) : ColumnTerms();
        ColumnTerm const response = isOfOne ? terms[1] : ColumnTerm();
        return GetProjectData(*project).GetBatchVariableImportance(asked.model, asked.arguments.component,
                                                                   isOfOne ? &response : nullptr, Phase(asked));
    }
    ColumnIDs CreateColumnIDsRaw(ProjectPtr project, char const *args) const override {
        BatchQuestion const asked(*this, project, args);
        return asked.model == -1
                   ? ColumnIDs(project)
                   : GetProjectData(*project).GetBatchVariableImportanceColumnIDs(asked.model, Phase(asked));
    }

private:
    static int Phase(BatchQuestion const &asked) { return static_cast<int>(asked.arguments.number2); }
};
ProjectBatchVIPVector const batchVIPVector(WithY, ProjectVector::NumberBatchVIPPhase);
ProjectBatchVIPVector const batchVIPPCAVector(OnlyPCA, ProjectVector::NumberBatchVIPSecond);

std::vector<int> PhasesOf(ProjectPtr const &project, int model) {
    return ModelUtilities::FindMatchingModels(*project, model, false, MatchingModelE::SamePhaseGroup);
}

// 1 - (squared change by the treatment)/(sum of squares of what was treated), of the first Y variable; missing where
// there are no values.
float ShareKept(NCProject const &project, int model, int batch) {
    TablePtr const values = GetProjectData(project).GetYVar(model, true, true, nullptr, batch);
    if (!values || values->Rows() == 0)
        return missingValue;
    NCDataVector<float> const plain = values->GetMatrix()[1];
    BatchPreProcessSegment const segment = PSPipe::GetPipeSegment(project, model);
    NCDataVector<float> const treated = segment.Forward(values->GetMatrix().Transpose()).GetColumn(1);
    double const variation = treated.GetSS();
    if (variation == missingValue)
        return missingValue;
    double change = 0.0;
    for (int i = 1; i <= plain.Size(); ++i)
        if (double const difference = static_cast<double>(treated[i]) - plain[i];
            !IsMissing(treated[i]) && !IsMissing(plain[i]))
            change += difference * difference;
    constexpr double leastVariation = 0.0001;
    return ToStored(1.0 - change / (variation == 0.0 ? leastVariation : variation));
}

class ProjectYSmoothedResVector final : public ProjectVector {
public:
    ProjectYSmoothedResVector() {
        Init("R2Smoothed", Scores, Model, WithY, NoComponent, NumberBatch, NoScoreLoading, Observed, Hidden);
        m_longName = "R2 of smoothed vs fitted";
    }
    std::string GetHelpString() const override {
        return translate(
            "R2Smoothed: How much of the response of a batch its treatment keeps, for each phase.\n"
            "A value far below 1 tells that the response, such as maturity, was changed much by shifting,\n"
            "normalising or smoothing. At most 1.");
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        BatchQuestion const asked(*this, project, args);
        ColumnIDs columns = PhaseColumns(project, asked.model);
        if (columns.Size() == 0)
            return nullptr;
        std::vector<float> shares;
        for (int const model : PhasesOf(project, asked.model))
            shares.push_back(ShareKept(*project, model, asked.arguments.batch));
        return std::make_unique<ProjectData>(RowIDs("R2. YVar Treated", project), std::move(columns),
                                             NCDataMatrix<float>(NCDataVector<float>(shares)));
    }
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        return PhaseColumns(project, GetModelNumber(project, source));
    }

private:
    // One for each model of the phases that belong together, or of the batch as a whole.
    static ColumnIDs PhaseColumns(ProjectPtr const &project, int model) {
        NCStringVector names;
        for (int const phase : PhasesOf(project, model)) {
            std::string const name = ModelUtilities::GetPhaseName(*project, phase);
            names.push_back(name.empty() ? translate("Batch") : name);
        }
        return ColumnIDs(std::move(names), translate("Phases"), project, ColumnIDs::Strings, model);
    }
} const ySmoothedResVector;

} // namespace
