#include "contribution/ContributionDataBuilder.h"
#include "contribution/ModelRows_internal.h"
#include "platform/project/ModelUtilities.h"
#include "platform/project/NCProject.h"
#include "platform/text/Exception.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>
#include <set>
#include <string_view>

using Selection = SelectDataSeriesData;
using Builder = ContributionDataBuilder;
using Weight = Builder::Weight;

namespace {

// Kinds of variables that are scores of another model.
constexpr int scoreKind = 14, orthogonalScoreKind = 19;

constexpr int KindOf(ModelTypeE::Model type) {
    return type & 0xFF;
}

// By what the lower model explains what the upper one weighs that way.
Weight LowerWeight(ModelInfo const &upper, ModelInfo const &lower, Weight weight, int kind) {
    using Enum = ContributionWeightEnum;
    bool const isOrthogonal = kind == orthogonalScoreKind;
    Weight const loading = isOrthogonal ? Enum::PO : Enum::P;
    if (KindOf(upper.type) != KindOf(lower.type)) {
        switch (KindOf(lower.type)) {
        case ModelTypeE::PCA:
        case ModelTypeE::PLSDA:
            return Enum::P;
        case ModelTypeE::PLS:
            return Enum::WStar;
        case ModelTypeE::OPLS:
        case ModelTypeE::O2PLS:
            return loading;
        default:
            return weight;
        }
    }
    switch (weight) {
    case Enum::P:
    case Enum::PO:
    case Enum::PP:
    case Enum::PPO:
    case Enum::POPO:
    case Enum::PRange:
        return loading;
    case Enum::WStar:
    case Enum::WStarWStar:
    case Enum::WStarRange:
        return isOrthogonal ? Enum::PO : Enum::WStar;
    default:
        return weight;
    }
}

// The lower positions of the observations at those positions of the upper model; what is not there falls out.
std::vector<int> Followed(std::vector<int> const &positions, ObservationInfos const &upper,
                          ObservationInfos const &lower) {
    RowPositions const positionOf(lower);
    std::vector<int> followed;
    for (int const row : positions)
        if (row >= 1 && row <= static_cast<int>(upper.size()))
            if (int const position = positionOf.Of(upper[static_cast<std::size_t>(row - 1)].GetUniqueID()))
                followed.push_back(position);
    return followed;
}

// Both groups of a contribution to scores, the first observation of one to a distance.
void FollowGroups(NCProject const &project, ProjectVectorData const &upper, bool isOfScores, ProjectVectorData &lower) {
    ModelRows const upperRows(project, upper.GetModelInfo()->number, false);
    ModelRows const lowerRows(project, lower.GetModelInfo()->number, false);
    auto const follow = [&](std::vector<int> const &positions) {
        return Followed(positions, upperRows.Observations(), lowerRows.Observations());
    };
    bool const isCut = !isOfScores && !upper.obs1.empty();
    lower.obs1 = follow(isCut ? std::vector{upper.obs1.front()} : upper.obs1);
    if (isOfScores)
        lower.obs2 = follow(upper.obs2);
}

// What the terms of a batch-level model are about.
class LowerTerms {
public:
    LowerTerms(NCProject const &project, int upperModel) : m_project(project), m_upper(upperModel) {}

    // The points of the terms, each once, in the order of the terms; a term that does not tell a batch is about each of
    // `batches`.
    BatchPoints Read(ColumnTerms const *terms, std::vector<std::string> const &batches) {
        BatchPoints points;
        std::set<Builder::Point> known;
        for (int position = 1; terms && position <= terms->Size(); ++position) {
            VariableInfo const variable = VariableOf((*terms)[position]);
            if (variable.GetUniqueID() == 0)
                continue;
            ReadSource(variable);
            std::string const own = variable.GetBatchName(m_project.GetVariables());
            for (std::string const &batch : own.empty() ? batches : std::vector{own})
                if (Builder::Point const point(batch, variable.GetMaturity()); known.insert(point).second)
                    points.push_back(point);
        }
        return points;
    }

    // Of the scores among the terms read, each once; none without scores.
    std::vector<int> const &Components() const { return m_components; }
    int LowerModel() const {
        return ModelUtilities::GetBatchLevelSourceModel(m_project, m_upper, m_phase.value_or(std::string()));
    }

private:
    VariableInfo VariableOf(ColumnTerm const &term) const {
        NCVariables const &variables = m_project.GetVariables();
        return variables[term.GetVariableFromObsLevelInBatchLevel(variables)];
    }

    void ReadSource(VariableInfo const &variable) {
        NCVariables const &variables = m_project.GetVariables();
        std::string const phase = variable.GetPhaseName(variables);
        if (m_phase && *m_phase != phase)
            throw Exception(ExceptionMessage::translate(
                "Variables from different phases are selected. You can only use variables from one phase"));
        m_phase = phase;
        // "to[2]": what it is, in three characters, and the component.
        constexpr std::size_t numberAt = 3;
        std::string const source = variable.GetSourceName(variables, AliasAccess(variables));
        long const component = source.size() > numberAt ? std::strtol(source.c_str() + numberAt, nullptr, 10) : 0;
        if (component >= 1 && std::find(m_components.begin(), m_components.end(), component) == m_components.end())
            m_components.push_back(static_cast<int>(component));
    }

    NCProject const &m_project;
    int m_upper;
    std::optional<std::string> m_phase;
    std::vector<int> m_components;
};

// The batches at those positions among the rows of a batch-level model.
std::vector<std::string> BatchesAt(std::vector<int> const &positions, ModelRows const &rows,
                                   NCObservations const &observations) {
    std::vector<std::string> batches;
    for (int const position : positions)
        if (position >= 1 && position <= static_cast<int>(rows.Observations().size()))
            batches.push_back(rows.Observations()[static_cast<std::size_t>(position - 1)].GetBatchName(observations));
    return batches;
}

// Points are unlike each other, so that a batch that comes again has several.
bool HasSeveralPointsOfOneBatch(BatchPoints const &points) {
    std::set<std::string_view> names;
    return !std::all_of(points.begin(), points.end(),
                        [&names](Builder::Point const &point) { return names.insert(point.first).second; });
}

} // namespace

bool Builder::SetHierarchicalContributionDataSeries(Selection &target, Selection *source,
                                                    unsigned long variable) const {
    VariableInfo const info = m_project->GetVariables()[static_cast<std::uint32_t>(variable)];
    auto const component = static_cast<std::int16_t>(info.lowerComponent);
    bool const isScore = info.kind == scoreKind || info.kind == orthogonalScoreKind;
    if (!isScore || component < 1 || source->NumberOfSeries() == 0)
        return false;
    boost::shared_ptr<ModelInfo const> const lower = m_project->GetModelInfo(info.lowerModel);
    ProjectVectorData const &shown = source->GetSeries(1);
    ModelInfo const *const upper = shown.GetModelInfo();
    if (!lower || !upper || !shown.GetProjectVector())
        return false;

    bool const isPredicted = source->GetObsPredType() == ProjectVector::Predicted;
    std::string_view const name = shown.GetProjectVector()->GetName(), ending = isPredicted ? "PS" : "";
    auto const isNamed = [&](std::string_view stem) { return name == std::string(stem).append(ending); };
    bool const isOfScores = isNamed("ContSc");
    if (!isOfScores && !isNamed("ContDModX") && !isNamed("ContDModY"))
        return false;

    ProjectVectorData data = NewSeries(target, lower->number, isPredicted ? "ContScPS" : "ContSc");
    if (isPredicted)
        (isOfScores ? data.obs2 : data.obs1) = shown.obs1;
    else
        FollowGroups(*m_project, shown, isOfScores, data);
    Weight const byType =
        ModelTypeE::IsPlainPLS(lower->type) ? ContributionWeightEnum::WStar : ContributionWeightEnum::P;
    data.SetWeightType(isOfScores ? LowerWeight(*upper, *lower, shown.GetWeightType(), info.kind) : byType);
    data.SetWeightComp({component});
    target.AddSeries(data, true);
    return true;
}

void Builder::SetLowerLevelContributionDataSeries(Selection &target, ProjectVectorData const &upper,
                                                  ColumnTerms const *first, ColumnTerms const *second, bool aligned,
                                                  std::vector<int> const &weights) const {
    int const upperModel = upper.GetModelInfo() ? upper.GetModelInfo()->number : 0;
    if (ModelUtilities::GetBatchLevelSourceDS(*m_project, upperModel) < 1)
        throw NCError(ExceptionMessage::translate("The model is not a batch level model."), NCError::Error);

    NCObservations const &observations = m_project->GetObservations();
    auto const batchesAt = [&](std::vector<int> const &positions) {
        std::vector<std::string> const average{""};
        return positions.empty() ? average : BatchesAt(positions, {*m_project, upperModel, m_prediction}, observations);
    };
    // A distance has its group where scores have their reference.
    bool const isDistance = upper.obs2.empty();
    LowerTerms terms(*m_project, upperModel);
    BatchPoints compared = terms.Read(first, batchesAt(isDistance ? upper.obs1 : upper.obs2));
    BatchPoints reference = terms.Read(second, batchesAt(isDistance ? upper.obs2 : upper.obs1));
    if (terms.Components().empty())
        throw Exception(ExceptionMessage::translate("None of the selected variables are scores."));

    int const lowerModel = terms.LowerModel();
    ModelRows const lowerRows(*m_project, lowerModel, m_prediction);
    NCIntegralVector<int, -99> const beginnings = lowerRows.Batches().beginnings;
    for (BatchPoints *const group : {&compared, &reference})
        CheckBatchExsistence(&observations, lowerRows.Observations(), beginnings, *group);
    if (compared.empty() || reference.empty()) {
        if (m_prediction)
            throw Exception(
                ExceptionMessage::translate("Selected batches could not be found in lower level active predictionset"));
        throw Exception(ExceptionMessage::translate("Selected batches could not be found in lower level model {1}") %
                        InfoOfModel(*m_project, lowerModel)->name);
    }

    bool const isCombined = HasSeveralPointsOfOneBatch(compared);
    ProjectVectorData data = NewSeries(target, lowerModel, NameOf(isCombined ? "CombinedContSc" : "AlContSc"));
    WeightTypes kinds;
    for (int const weight : weights)
        kinds.push_back(static_cast<WeightTypeE::WeightType>(weight));
    data.SetContributionWeight(kinds, terms.Components());
    data.alignedMaturity1 = data.alignedMaturity2 = aligned;
    data.contGroup = std::move(compared);
    data.contRef = std::move(reference);
    target.AddSeries(data, true);
}
