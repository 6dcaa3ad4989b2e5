#include "catalogue/Delegates_internal.h"
#include "catalogue/Rows_internal.h"
#include "platform/text/Translate.h"

#include <tuple>

// What each variable contributes to the difference between two groups of observations, or to the distance of a group to
// the model. Groups of the aligned forms are points of batches.

namespace {

using namespace rows;
using Weight = WeightTypeE::WeightType;

// What an argument text asks. The model is -1 when it says too little: no weight, or no model of the project.
struct ContributionQuestion : ProjectVector::ContributionArguments {
    ProjectPtr const &project;
    int model = -1;

    ContributionQuestion(ProjectVector const &vector, ProjectPtr const &asked, char const *args) : project(asked) {
        if (vector.ReadContribution(args, *this) && !weights.empty())
            model = ProjectVector::GetModelNumber(project, source);
    }

    // Both groups, as observations or as points of batches.
    template <typename Group>
    std::tuple<Group const &, Group const &> Groups() const {
        if constexpr (std::is_same_v<Group, IntList>)
            return {observations1, observations2};
        else
            return {points1, points2};
    }
    // By several scores: a weight that belongs to a component, and more than one component.
    bool HasSeveralWeights() const {
        return components.size() > 1 && (weights.front() & ~WeightTypeE::Raw) != WeightTypeE::Normalized;
    }
};

template <typename Group, typename... Combined>
using BySingleWeight = TablePtr (GetProjectData::*)(int, Group const &, Group const &, Weight, int, int,
                                                    TriState::State, Combined...) const;
template <typename Group, typename... Combined>
using BySeveralWeights = TablePtr (GetProjectData::*)(int, Group const &, Group const &, WeightTypes const &,
                                                      IntList const &, TriState::State, Combined...) const;

template <typename Group, typename... Combined>
TablePtr DeliverScores(ContributionQuestion const &asked,
                       std::type_identity_t<BySingleWeight<Group, Combined...>> single,
                       std::type_identity_t<BySeveralWeights<Group, Combined...>> several, Combined... combined) {
    if (asked.model == -1 || asked.components.empty())
        return nullptr;
    GetProjectData const data(*asked.project);
    auto const &[reference, compared] = asked.Groups<Group>();
    if (asked.HasSeveralWeights())
        return (data.*several)(asked.model, reference, compared, asked.weights, asked.components, TriState::Undefined,
                               combined...);
    return (data.*single)(asked.model, reference, compared, asked.weights.front(), asked.components.front(),
                          asked.yVariable, TriState::Undefined, combined...);
}

template <typename Group>
TablePtr DeliverXDistance(ContributionQuestion const &asked,
                          TablePtr (GetProjectData::*operation)(int, Group const &, Weight, int, int, TriState::State)
                              const) {
    if (asked.model == -1 || asked.components.empty())
        return nullptr;
    return (GetProjectData(*asked.project).*operation)(asked.model, std::get<0>(asked.Groups<Group>()),
                                                       asked.weights.front(), asked.components.front(), asked.yVariable,
                                                       TriState::Undefined);
}

template <typename Group>
TablePtr DeliverYDistance(ContributionQuestion const &asked,
                          TablePtr (GetProjectData::*operation)(int, Group const &, Weight, int) const) {
    return asked.model == -1
               ? nullptr
               : (GetProjectData(*asked.project).*operation)(asked.model, std::get<0>(asked.Groups<Group>()),
                                                             asked.weights.front(), asked.yVariable);
}

// The columns are the same whatever is asked.
template <auto columns>
class ContributionVector : public ProjectVector {
public:
    ColumnIDs CreateColumnIDs(ProjectPtr project, char const *source, int, unsigned long) const override {
        if constexpr (std::is_invocable_v<decltype(columns), GetProjectData const &, int>)
            return Labels(project, source, columns);
        else
            return Labels(project, source, columns, TriState::Undefined);
    }

protected:
    ContributionVector(char const *name, ModelTypeE::Model models, int kind, ObsOrPredType rows, int firstComponent,
                       char const *longName) {
        Init(name, Loadings, Model, models, NoComponent, NumberNone, NoScoreLoading, rows, Hidden);
        m_longName = longName;
        m_isContribution = true;
        m_contributionKind = kind;
        m_firstComponent = firstComponent;
    }
};

// Kinds of contributions.
constexpr int OfScores = 1;
constexpr int OfXDistance = 3;
constexpr int OfYDistance = 4;
constexpr int OfAlignedScores = 5;
constexpr int OfAlignedXDistance = 6;
constexpr int OfAlignedYDistance = 7;

constexpr int ComponentOne = 1;
constexpr char const *NameByWeight = ""; // GetLongName has it

// How to read the bars, as the last lines of a help.
std::string BarsOfScores() {
    return translate(
        "A bar is the difference of the variable times its weight: positive ones raise the score or the\n"
        "prediction, negative ones lower it, and the tallest tell where to look first. By a loading p, by w* or\n"
        "by po the bars explain the difference of that score, by coefficients that of the prediction, by\n"
        "several of p, w* and po Hotelling's T2. In the units of the scaled variables, or in their standard\n"
        "deviations.");
}
std::string BarsOfDistance() {
    return translate(
        "A bar is the mean residual of the group times the weight of the variable: the tallest tell which\n"
        "variables break the pattern that the model knows, upwards where positive, downwards where negative.\n"
        "Raw bars of one observation, squared and added up, are its squared distance but for a factor. In the\n"
        "units of the scaled variables, or in their standard deviations.");
}

class ScoreVector : public ContributionVector<&GetProjectData::GetContributionScoresSingleWeightColumnIDs> {
public:
    std::string GetLongName() const override { return translate("Score contribution vector", "Score Contrib"); }

protected:
    ScoreVector(char const *name, ModelTypeE::Model models, int kind)
        : ContributionVector(name, models, kind, Observed, ComponentOne, NameByWeight) {}
};

class ScorePSVector : public ContributionVector<&GetProjectData::GetContributionScoresPSSingleWeightColumnIDs> {
public:
    std::string GetLongName() const override { return translate("Score contribution vector", "Score ContribPS"); }

protected:
    ScorePSVector(char const *name, ModelTypeE::Model models, int kind)
        : ContributionVector(name, models, kind, Predicted, ComponentOne, NameByWeight) {}
};

class ProjectContScVector final : public ScoreVector {
public:
    ProjectContScVector() : ScoreVector("ContSc", AnyModel, OfScores) {}
    std::string GetHelpString() const override {
        return translate(
                   "ContSc: What each variable contributes to the difference between two groups of observations.\n"
                   "Look at it for an observation or a cluster that stands out in a score plot. Without a first\n"
                   "group the second one is held against the average of the workset.\n") +
               BarsOfScores();
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverScores<IntList>({*this, project, args}, &GetProjectData::GetContributionScoresSingleWeight,
                                      &GetProjectData::GetContributionScoresMultiWeight);
    }
} const contScVector;

class ProjectContScPSVector final : public ScorePSVector {
public:
    ProjectContScPSVector() : ScorePSVector("ContScPS", AnyModel, OfScores) {}
    std::string GetHelpString() const override {
        return translate(
                   "ContScPS: What each variable contributes to the difference between two groups of the\n"
                   "prediction set.\n"
                   "Look at it for new observations whose scores or predictions are unusual. Without a first group\n"
                   "the second one is held against the average of the workset.\n") +
               BarsOfScores();
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverScores<IntList>({*this, project, args}, &GetProjectData::GetContributionScoresPSSingleWeight,
                                      &GetProjectData::GetContributionScoresPSMultiWeight);
    }
} const contScPSVector;

class ProjectAlContScVector final : public ScoreVector {
public:
    ProjectAlContScVector() : ScoreVector("AlContSc", WithY, OfAlignedScores) {}
    std::string GetHelpString() const override {
        return translate(
                   "AlContSc: What each variable contributes to the difference between batches at points of\n"
                   "maturity.\n"
                   "Look at it where the curve of a batch leaves the others. Without a first group the second one\n"
                   "is held against the average batch at the same points.\n") +
               BarsOfScores();
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverScores<BatchPoints>({*this, project, args}, &GetProjectData::GetContributionScoresSingleWeight,
                                          &GetProjectData::GetContributionScoresMultiWeight, false);
    }
} const alContScVector;

class ProjectAlContScPSVector final : public ScorePSVector {
public:
    ProjectAlContScPSVector() : ScorePSVector("AlContScPS", WithY, OfAlignedScores) {}
    std::string GetHelpString() const override {
        return translate(
                   "AlContScPS: What each variable contributes to the difference between batches of the prediction\n"
                   "set.\n"
                   "Look at it at the maturity where the curve of a new batch leaves its limits. Without a first\n"
                   "group the second one is held against the average batch of the workset at the same points.\n") +
               BarsOfScores();
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverScores<BatchPoints>({*this, project, args}, &GetProjectData::GetContributionScoresPSSingleWeight,
                                          &GetProjectData::GetContributionScoresPSMultiWeight, false);
    }
} const alContScPSVector;

class ProjectCombinedContScVector final
    : public ContributionVector<&GetProjectData::GetContributionScoresSingleWeightColumnIDs> {
public:
    ProjectCombinedContScVector()
        : ContributionVector("CombinedContSc", WithY, OfAlignedScores, Observed, ComponentOne,
                             "Combined Score Contrib") {}
    std::string GetHelpString() const override {
        return translate(
                   "CombinedContSc: What each variable contributes to the difference of a batch, over its aligned\n"
                   "points.\n"
                   "The contributions at all points of the second group are added up, each against the first group\n"
                   "at the same point, or against the average batch. Look at it for a batch that was unusual for a\n"
                   "long time.\n") +
               BarsOfScores();
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverScores<BatchPoints>({*this, project, args}, &GetProjectData::GetContributionScoresSingleWeight,
                                          &GetProjectData::GetContributionScoresMultiWeight, true);
    }
} const combinedContScVector;

class ProjectCombinedContScPSVector final
    : public ContributionVector<&GetProjectData::GetContributionScoresPSSingleWeightColumnIDs> {
public:
    ProjectCombinedContScPSVector()
        : ContributionVector("CombinedContScPS", WithY, OfAlignedScores, Predicted, ComponentOne,
                             "Combined Score Contrib PS") {}
    std::string GetHelpString() const override {
        return translate(
                   "CombinedContScPS: What each variable contributes to the difference of a new batch, over its\n"
                   "points.\n"
                   "The contributions at all points of the second group are added up, each against the first group\n"
                   "at the same point, or against the average batch of the workset.\n") +
               BarsOfScores();
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverScores<BatchPoints>({*this, project, args}, &GetProjectData::GetContributionScoresPSSingleWeight,
                                          &GetProjectData::GetContributionScoresPSMultiWeight, true);
    }
} const combinedContScPSVector;

class ProjectContDModXVector final : public ContributionVector<&GetProjectData::GetContributionDModXColumnIDs> {
public:
    ProjectContDModXVector()
        : ContributionVector("ContDModX", AnyModel, OfXDistance, Observed, ComponentZero, "DModX Contrib") {}
    std::string GetHelpString() const override {
        return translate(
                   "ContDModX: What each variable contributes to the distance of observations to the model in X.\n"
                   "Look at it for observations whose DModX is above the critical distance.\n") +
               BarsOfDistance();
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverXDistance<IntList>({*this, project, args}, &GetProjectData::GetContributionDModX);
    }
} const contDModXVector;

class ProjectContDModXPSVector final : public ContributionVector<&GetProjectData::GetContributionDModXPSColumnIDs> {
public:
    ProjectContDModXPSVector()
        : ContributionVector("ContDModXPS", AnyModel, OfXDistance, Predicted, ComponentZero, "DModXPS Contrib") {}
    std::string GetHelpString() const override {
        return translate(
                   "ContDModXPS: What each variable contributes to the distance of new observations to the model\n"
                   "in X.\n"
                   "Look at it for observations of the prediction set of another kind than those of the workset.\n") +
               BarsOfDistance();
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverXDistance<IntList>({*this, project, args}, &GetProjectData::GetContributionDModXPS);
    }
} const contDModXPSVector;

class ProjectAlContDModXVector final : public ContributionVector<&GetProjectData::GetContributionDModXColumnIDs> {
public:
    ProjectAlContDModXVector()
        : ContributionVector("AlContDModX", WithY, OfAlignedXDistance, Observed, ComponentOne, "DModX Contrib") {}
    std::string GetHelpString() const override {
        return translate(
                   "AlContDModX: What each variable contributes to the distance of batches at points of maturity.\n"
                   "Look at it where the curve of DModX of a batch leaves its limit.\n") +
               BarsOfDistance();
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverXDistance<BatchPoints>({*this, project, args}, &GetProjectData::GetContributionDModX);
    }
} const alContDModXVector;

class ProjectAlContDModXPSVector final : public ContributionVector<&GetProjectData::GetContributionDModXPSColumnIDs> {
public:
    ProjectAlContDModXPSVector()
        : ContributionVector("AlContDModXPS", WithY, OfAlignedXDistance, Predicted, ComponentOne, "DModXPS Contrib") {}
    std::string GetHelpString() const override {
        return translate("AlContDModXPS: What each variable contributes to the distance of new batches at points of\n"
                         "maturity.\n"
                         "Look at it where a batch of the prediction set does what the model has not seen.\n") +
               BarsOfDistance();
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverXDistance<BatchPoints>({*this, project, args}, &GetProjectData::GetContributionDModXPS);
    }
} const alContDModXPSVector;

class ProjectContDModYVector final : public ContributionVector<&GetProjectData::GetContributionDModYColumnIDs> {
public:
    ProjectContDModYVector()
        : ContributionVector("ContDModY", WithY, OfYDistance, Observed, ComponentZero, "DModY Contrib") {}
    std::string GetHelpString() const override {
        return translate(
                   "ContDModY: What each response contributes to the distance of observations to the model in Y.\n"
                   "Look at it for observations whose DModY is large: it tells which responses are predicted\n"
                   "badly.\n") +
               BarsOfDistance();
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverYDistance<IntList>({*this, project, args}, &GetProjectData::GetContributionDModY);
    }
} const contDModYVector;

class ProjectContDModYPSVector final : public ContributionVector<&GetProjectData::GetContributionDModYPSColumnIDs> {
public:
    ProjectContDModYPSVector()
        : ContributionVector("ContDModYPS", WithY, OfYDistance, Predicted, ComponentZero, "DModYPS Contrib") {}
    std::string GetHelpString() const override {
        return translate(
                   "ContDModYPS: What each response contributes to the distance of new observations to the model\n"
                   "in Y.\n"
                   "It needs responses that are known in the prediction set, and tells which ones are predicted\n"
                   "badly.\n") +
               BarsOfDistance();
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverYDistance<IntList>({*this, project, args}, &GetProjectData::GetContributionDModYPS);
    }
} const contDModYPSVector;

class ProjectAlContDModYVector final : public ContributionVector<&GetProjectData::GetContributionDModYColumnIDs> {
public:
    ProjectAlContDModYVector()
        : ContributionVector("AlContDModY", WithY, OfAlignedYDistance, Observed, ComponentZero, "DModY Contrib") {}
    std::string GetHelpString() const override {
        return translate("AlContDModY: What each response contributes to the distance in Y of batches at points of\n"
                         "maturity.\n"
                         "A model of the evolution of batches has one response, their maturity: the bar tells by how\n"
                         "much a batch is ahead or behind.\n") +
               BarsOfDistance();
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverYDistance<BatchPoints>({*this, project, args}, &GetProjectData::GetContributionDModY);
    }
} const alContDModYVector;

class ProjectAlContDModYPSVector final : public ContributionVector<&GetProjectData::GetContributionDModYPSColumnIDs> {
public:
    ProjectAlContDModYPSVector()
        : ContributionVector("AlContDModYPS", WithY, OfAlignedYDistance, Predicted, ComponentZero, "DModYPS Contrib") {}
    std::string GetHelpString() const override {
        return translate(
                   "AlContDModYPS: What each response contributes to the distance in Y of new batches at points of\n"
                   "maturity.\n"
                   "The response is maturity: the bar tells by how much a new batch is ahead or behind.\n") +
               BarsOfDistance();
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        return DeliverYDistance<BatchPoints>({*this, project, args}, &GetProjectData::GetContributionDModYPS);
    }
} const alContDModYPSVector;

} // namespace
