#pragma once

#include "contribution/ContributionModeEnum.h"
#include "contribution/ContributionWeightEnum.h"
#include "platform/identity/ColumnIDs.h"
#include "selection/SelectDataSeriesData.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

// Makes the selection that explains, variable by variable, why observations stand out, why a prediction is what it is,
// or why batches differ at points of their evolution (Miller et al. 1998). It computes nothing: its selections have one
// series over variables, a contribution vector with its groups, its weight and its components, and are built into
// tables like any other.
//
// A group of observations goes by their numbers in the project; specifications count positions among the rows of the
// model, from 1. What belongs to the first group ("from") is the reference, what belongs to the second one ("to") is
// compared. An aligned group is a list of points: the name of a batch, empty for the average batch, and a maturity in
// the units of the data set.
//
// Set... adds a series to a selection, which a selection that is full drops without a word; Create... makes a new
// selection with that series. In all of them a component of -1 is the model's last one and a Y variable of -1 that of
// the project's defaults. Failures: NCError when there is no such model, or no such contribution to a model of its
// kind; Exception "Aborted." when the builder is for predictions and there are none.
//
// The project must live longer. For the thread that owns the project.
class DATASERIES_API ContributionDataBuilder {
public:
    using Group = ColumnIDs::Numbers;
    using Point = BatchPoints::value_type;
    using SelectionPtr = boost::shared_ptr<SelectDataSeriesData>;
    using Weight = ContributionWeightEnum::WeightType;
    using Mode = DataSeriesUtilities::ContributionModeEnum::Mode;

    // `prediction`: of the rows predicted on a model in place of its workset. `coefficientWeights`: a predicted
    // response is explained by CoeffCSRaw, whatever the model.
    ContributionDataBuilder(NCProject &project, bool prediction, bool coefficientWeights)
        : m_project(&project), m_prediction(prediction), m_coefficientWeights(coefficientWeights) {}

    // What scores are explained: one weight for each component. Components alone are weighted by w* (PLS) or p, several
    // of them together; neither of both means unweighted differences.
    void SetComponents(std::vector<int> const &components) { m_components = components; }
    void SetWeightVector(WeightTypes const &weights) { m_weights = weights; }

    // Observations. Groups of scores and responses come in the order of the rows, and numbers that no row has fall out;
    // without a first group it is the average, without a second one the first row. Exception when that leaves the
    // second group of scores empty. Groups of distances keep their order; numbers that no row has fall out without a
    // word, and an empty group is the first row.
    SelectionPtr CreateScoreContributionDataSeries(int model, Group const &from, Group const &to) const;
    SelectionPtr CreateDModXContributionDataSeries(int model, int component, Group const &group) const;
    SelectionPtr CreateDModYContributionDataSeries(int model, int component, Group const &group) const;
    SelectionPtr CreateYPredContributionDataSeries(int model, int yVariable, int component, Group const &from,
                                                   Group const &to) const;
    void SetScoreContributionDataSeries(SelectDataSeriesData &selection, int model, Group const &from,
                                        Group const &to) const;
    void SetDModXContributionSeries(SelectDataSeriesData &selection, int model, int component,
                                    Group const &group) const;
    void SetDModYContributionSeries(SelectDataSeriesData &selection, int model, int component,
                                    Group const &group) const;
    // Answers the weight that it chose.
    Weight SetYPredContributionDataSeries(SelectDataSeriesData &selection, int model, int yVariable, int component,
                                          Group const &from, Group const &to) const;

    void SetScoreContributionWeight(ProjectVectorData &data) const;
    void SetYPredContributionWeight(ProjectVectorData &data, int model, int component) const;

    // Points of aligned batches, of which the flags say that their maturities are aligned ones. The forms by
    // observation take the batch and the maturity of each; there a model of -1 is the current one, and the answer null
    // when there is none. Without a first group it is the average batch at the points of the second one, without a
    // second one its point is the first row. Scores with no component set are explained by the first one, which stays
    // set.
    SelectionPtr CreateAlignScoreContributionDataSeries(int model, Group const &from, Group const &to);
    SelectionPtr CreateAlignScoreContributionDataSeries(int model, BatchPoints const &reference, bool alignedReference,
                                                        BatchPoints const &compared, bool alignedCompared);
    SelectionPtr CreateAlignDModXContributionDataSeries(int model, int component, Group const &group) const;
    SelectionPtr CreateAlignDModXContributionDataSeries(int model, int component, BatchPoints const &group,
                                                        bool aligned) const;
    SelectionPtr CreateAlignDModYContributionDataSeries(int model, int component, Group const &group) const;
    SelectionPtr CreateAlignDModYContributionDataSeries(int model, int component, BatchPoints const &group,
                                                        bool aligned) const;
    SelectionPtr CreateAlignYPredContributionDataSeries(int model, int yVariable, int component, Group const &from,
                                                        Group const &to) const;
    SelectionPtr CreateAlignYPredContributionDataSeries(int model, int yVariable, int component,
                                                        BatchPoints const &reference, bool alignedReference,
                                                        BatchPoints const &compared, bool alignedCompared) const;
    void SetAlignScoreContributionSeries(SelectDataSeriesData &selection, int model, BatchPoints const &reference,
                                         bool alignedReference, BatchPoints const &compared, bool alignedCompared);
    // Distances are of batches: points of the average batch fall out. That of X then needs one that is left; without
    // it no series is added, the answer is false, and that of Create... null. Its flag is not kept.
    bool SetAlignDModXDataSeries(SelectDataSeriesData &selection, int model, int component, BatchPoints const &group,
                                 bool aligned) const;
    void SetAlignDModYContributionDataSeries(SelectDataSeriesData &selection, int model, int component,
                                             BatchPoints const &group, bool aligned) const;
    void SetAlignYPredContributionDataSeries(SelectDataSeriesData &selection, int model, int yVariable, int component,
                                             BatchPoints const &reference, bool alignedReference,
                                             BatchPoints const &compared, bool alignedCompared) const;

    // The points of both groups of an aligned score contribution, appended.
    void CreateAlignScoreVector(int model, Group const &from, Group const &to, BatchPoints &fromOut,
                                BatchPoints &toOut) const;
    // The points of two observations. 0 is the average batch, for the first one at the maturity of the second one; 1 as
    // the second one is the first row, whatever its number. False, and no change, without a model.
    bool GetAlignedValues(int model, unsigned long first, unsigned long second, Point &firstOut,
                          Point &secondOut) const;
    // Appends the average batch at each maturity of the group once, rising.
    static void GetAverageContVector(BatchPoints const &group, BatchPoints &out);
    // No point has a batch of its own; so also for none.
    static bool IsOnlyAverageBatch(BatchPoints const &group);
    // Takes out of the group the batches that none of the rows at these 1-based positions has.
    static void CheckBatchExsistence(NCObservations const *observations, ObservationInfos const &rows,
                                     NCIntegralVector<int, -99> const &beginnings, BatchPoints &group);

    // From a contribution to the model behind a variable that is the score of another model: the same groups there,
    // explained by that score. False when the variable can't be followed, or the first series of the source is no
    // contribution of rows. Of the prediction set only one group goes over. Of a distance in the workset the first
    // observation does.
    bool SetHierarchicalContributionDataSeries(SelectDataSeriesData &target, SelectDataSeriesData *source,
                                               unsigned long variable) const;
    // From a contribution to batches, each one row of a batch-level model, to the model of their evolution: why did the
    // batches differ at the points that the terms are about? `first` is compared, `second` the reference; the terms are
    // scores of one phase, and others are passed over. A term says of which batch it is where variables have a batch
    // identifier; elsewhere the batches are those of the contribution, and the average batch where that has none. The
    // components are those of the scores, each once, weighted by `weights` (WeightTypeE), one for each.
    //
    // The series is CombinedContSc, which adds up what each point contributes, when `first` covers more than one
    // aligned point of one batch, and AlContSc otherwise; both groups have the flag. NCError when the model is not a
    // batch-level model, Exception for terms of several phases, without scores, or when no batch of a group is there.
    void SetLowerLevelContributionDataSeries(SelectDataSeriesData &target, ProjectVectorData const &upper,
                                             ColumnTerms const *first, ColumnTerms const *second, bool aligned,
                                             std::vector<int> const &weights) const;

    // The contribution of that mode to the current model, with nothing chosen; null for None and without a model. The
    // flag has no effect.
    SelectionPtr CreateContributionDataSeries(bool flag, Mode mode);
    // The contribution that a plot starts. Null for a plot that starts none, or without the model; and for a distance
    // without a second group, which is the only one that it has.
    static SelectionPtr CreateContributionDataSeries(SelectDataSeriesData *selection, Group const &from,
                                                     Group const &to, bool prediction);

    // The groups of columns that the user marked: `first` is compared (`toOut`), `second` the reference (`fromOut`).
    // Null is none. Marked batches stand for their observations in the model. In a plot of T2 only the first one counts
    // that is marked. False for batches without a model, or in a plot of T2.
    static bool GetObservationVectors(SelectDataSeriesData *selection, bool prediction, int model,
                                      ColumnIDs const *first, ColumnIDs const *second, Group &fromOut, Group &toOut);
    // All observations of the named batches, batch after batch; names that are not there have none.
    static std::unique_ptr<Group> GetBatchObservations(boost::shared_ptr<NCProject const> project,
                                                       ColumnIDs const *batches, int model, bool prediction);

private:
    SelectionPtr NewSelection() const;
    int CurrentModel() const; // 0 when there is none
    int Resolved(int model) const { return model == -1 ? CurrentModel() : model; }
    // A series of the model with that vector, or its form for predictions, and that Y variable.
    ProjectVectorData NewSeries(SelectDataSeriesData const &selection, int model, std::string const &vector,
                                int yVariable = -1) const;
    std::string NameOf(std::string const &vector) const { return m_prediction ? vector + "PS" : vector; }
    // Groups that the mode doesn't have are passed over.
    SelectionPtr Create(Mode mode, int model, int component, int yVariable, Group const &from, Group const &to);
    void SetDistance(SelectDataSeriesData &selection, ProjectVectorData &data, Group const &group, Weight weight,
                     int component) const;
    // A series of an aligned predicted response or score but for its weight.
    ProjectVectorData NewAlignedScores(SelectDataSeriesData const &selection, int model, int yVariable,
                                       BatchPoints const &reference, bool alignedReference, BatchPoints const &compared,
                                       bool alignedCompared) const;
    // The points of the observations, or of the first row; empty when there is no model.
    BatchPoints PointsOf(int model, Group const &group) const;

    NCProject *m_project;
    bool m_prediction;
    std::vector<int> m_components;
    WeightTypes m_weights;
    bool m_coefficientWeights;
};
