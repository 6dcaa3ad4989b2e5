#include "contribution/ContributionDataBuilder.h"
#include "contribution/ModelRows_internal.h"
#include "platform/project/NCProject.h"

#include <algorithm>
#include <set>
#include <unordered_set>

using Selection = SelectDataSeriesData;
using Builder = ContributionDataBuilder;
using SelectionPtr = Builder::SelectionPtr;
using Group = Builder::Group;
using Point = Builder::Point;

namespace {

// Batch and maturity of observations.
class AlignedObservations {
public:
    AlignedObservations(NCProject const &project, int model, bool predicted)
        : m_observations(project.GetObservations()), m_rows(project, model, predicted), m_maturity(m_rows.Maturity()),
          m_positionOf(m_rows.Observations()) {}

    Point First(unsigned long observation, Point const &second) const {
        return observation == averageBatch ? Point("", second.second) : PointOf(observation);
    }
    Point Second(unsigned long observation) const {
        if (observation == averageBatch)
            return Point("", 0.0f);
        ObservationInfos const &rows = m_rows.Observations();
        if (observation == firstRow && !rows.empty())
            return PointOf(rows.front().GetUniqueID());
        return PointOf(observation);
    }

    static constexpr unsigned long averageBatch = 0;
    static constexpr unsigned long firstRow = 1;

private:
    // An observation that is no row has its batch all the same, and the maturity 0.
    Point PointOf(unsigned long observation) const {
        ObservationInfo const info = m_observations[static_cast<std::uint32_t>(observation)];
        int const position = m_positionOf.Of(info.GetUniqueID());
        bool const isThere = position >= 1 && position <= m_maturity.Size();
        return Point(info.GetBatchName(m_observations), isThere ? m_maturity[position] : 0.0f);
    }

    NCObservations const &m_observations;
    ModelRows m_rows;
    NCDataVector<float> m_maturity;
    RowPositions m_positionOf;
};

bool IsAverageBatch(Point const &point) {
    return point.first.empty();
}

BatchPoints WithoutAverageBatch(BatchPoints points) {
    std::erase_if(points, IsAverageBatch);
    return points;
}

} // namespace

bool Builder::GetAlignedValues(int model, unsigned long first, unsigned long second, Point &firstOut,
                               Point &secondOut) const {
    int const resolved = Resolved(model);
    if (resolved < 1)
        return false;
    AlignedObservations const aligned(*m_project, resolved, m_prediction);
    secondOut = aligned.Second(second);
    firstOut = aligned.First(first, secondOut);
    return true;
}

BatchPoints Builder::PointsOf(int model, Group const &group) const {
    AlignedObservations const aligned(*m_project, model, m_prediction);
    if (group.empty())
        return {aligned.Second(AlignedObservations::firstRow)};
    BatchPoints points;
    for (std::uint32_t const observation : group)
        points.push_back(aligned.Second(observation));
    return points;
}

void Builder::CreateAlignScoreVector(int model, Group const &from, Group const &to, BatchPoints &fromOut,
                                     BatchPoints &toOut) const {
    int const resolved = Resolved(model);
    if (resolved >= 1) {
        AlignedObservations const aligned(*m_project, resolved, m_prediction);
        Point const average = aligned.Second(AlignedObservations::averageBatch);
        for (std::uint32_t const observation : from)
            fromOut.push_back(aligned.First(observation, average));
        for (std::uint32_t const observation : to)
            toOut.push_back(aligned.First(observation, average));
        if (to.empty())
            toOut.push_back(aligned.Second(AlignedObservations::firstRow));
    }
    if (fromOut.empty())
        GetAverageContVector(toOut, fromOut);
}

void Builder::GetAverageContVector(BatchPoints const &group, BatchPoints &out) {
    std::set<float> maturities;
    for (Point const &point : group)
        maturities.insert(point.second);
    for (float const maturity : maturities)
        out.emplace_back("", maturity);
}

bool Builder::IsOnlyAverageBatch(BatchPoints const &group) {
    return std::all_of(group.begin(), group.end(), IsAverageBatch);
}

void Builder::CheckBatchExsistence(NCObservations const *observations, ObservationInfos const &rows,
                                   NCIntegralVector<int, -99> const &beginnings, BatchPoints &group) {
    std::unordered_set<std::string> names{""};
    for (int const first : beginnings)
        names.insert(rows[static_cast<std::size_t>(first - 1)].GetBatchName(*observations));
    std::erase_if(group, [&names](Point const &point) { return !names.contains(point.first); });
}

ProjectVectorData Builder::NewAlignedScores(Selection const &selection, int model, int yVariable,
                                            BatchPoints const &reference, bool alignedReference,
                                            BatchPoints const &compared, bool alignedCompared) const {
    ModelRows const rows(*m_project, model, m_prediction); // which must be there
    ProjectVectorData data = NewSeries(selection, model, NameOf("AlContSc"), yVariable);
    data.alignedMaturity1 = alignedReference;
    data.alignedMaturity2 = alignedCompared;
    data.contGroup = compared;
    data.contRef = reference;
    if (reference.empty())
        GetAverageContVector(compared, data.contRef);
    return data;
}

void Builder::SetAlignScoreContributionSeries(Selection &selection, int model, BatchPoints const &reference,
                                              bool alignedReference, BatchPoints const &compared,
                                              bool alignedCompared) {
    ProjectVectorData data =
        NewAlignedScores(selection, model, -1, reference, alignedReference, compared, alignedCompared);
    if (m_components.empty())
        m_components.push_back(1);
    SetScoreContributionWeight(data);
    selection.AddSeries(data, true);
}

void Builder::SetAlignYPredContributionDataSeries(Selection &selection, int model, int yVariable, int component,
                                                  BatchPoints const &reference, bool alignedReference,
                                                  BatchPoints const &compared, bool alignedCompared) const {
    ProjectVectorData data =
        NewAlignedScores(selection, model, yVariable, reference, alignedReference, compared, alignedCompared);
    int const size = component == -1 ? data.GetModelInfo()->SizeComponents() : component;
    data.SetWeightComp({size});
    SetYPredContributionWeight(data, model, size);
    selection.AddSeries(data, true);
}

bool Builder::SetAlignDModXDataSeries(Selection &selection, int model, int component, BatchPoints const &group,
                                      bool) const {
    BatchPoints const points = WithoutAverageBatch(group);
    if (points.empty())
        return false;
    ModelRows const rows(*m_project, model, m_prediction);
    ProjectVectorData data = NewSeries(selection, model, NameOf("AlContDModX"));
    int const all = data.GetModelInfo()->SizeComponents(), size = component == -1 ? all : component;
    data.contRef = points;
    data.SetWeightType(all == 0 || size == 0 ? ContributionWeightEnum::Normalized : ContributionWeightEnum::RX);
    data.SetWeightComp({size});
    selection.AddSeries(data, true);
    return true;
}

void Builder::SetAlignDModYContributionDataSeries(Selection &selection, int model, int component,
                                                  BatchPoints const &group, bool aligned) const {
    ModelRows const rows(*m_project, model, m_prediction);
    ProjectVectorData data = NewSeries(selection, model, NameOf("AlContDModY"));
    int const all = data.GetModelInfo()->SizeComponents();
    data.contRef = WithoutAverageBatch(group);
    data.alignedMaturity1 = data.alignedMaturity2 = aligned;
    data.SetWeightType(all == 0 ? ContributionWeightEnum::Normalized : ContributionWeightEnum::RY);
    data.SetWeightComp({component == -1 ? all : component});
    selection.AddSeries(data, true);
}

SelectionPtr Builder::CreateAlignScoreContributionDataSeries(int model, Group const &from, Group const &to) {
    int const resolved = Resolved(model);
    if (resolved < 1)
        return nullptr;
    BatchPoints reference, compared;
    CreateAlignScoreVector(resolved, from, to, reference, compared);
    return CreateAlignScoreContributionDataSeries(resolved, reference, false, compared, false);
}

SelectionPtr Builder::CreateAlignScoreContributionDataSeries(int model, BatchPoints const &reference,
                                                             bool alignedReference, BatchPoints const &compared,
                                                             bool alignedCompared) {
    SelectionPtr selection = NewSelection();
    SetAlignScoreContributionSeries(*selection, model, reference, alignedReference, compared, alignedCompared);
    return selection;
}

SelectionPtr Builder::CreateAlignDModXContributionDataSeries(int model, int component, Group const &group) const {
    int const resolved = Resolved(model);
    return resolved < 1 ? nullptr
                        : CreateAlignDModXContributionDataSeries(resolved, component, PointsOf(resolved, group), false);
}

SelectionPtr Builder::CreateAlignDModXContributionDataSeries(int model, int component, BatchPoints const &group,
                                                             bool aligned) const {
    SelectionPtr selection = NewSelection();
    return SetAlignDModXDataSeries(*selection, model, component, group, aligned) ? selection : nullptr;
}

SelectionPtr Builder::CreateAlignDModYContributionDataSeries(int model, int component, Group const &group) const {
    int const resolved = Resolved(model);
    return resolved < 1 ? nullptr
                        : CreateAlignDModYContributionDataSeries(resolved, component, PointsOf(resolved, group), false);
}

SelectionPtr Builder::CreateAlignDModYContributionDataSeries(int model, int component, BatchPoints const &group,
                                                             bool aligned) const {
    SelectionPtr selection = NewSelection();
    SetAlignDModYContributionDataSeries(*selection, model, component, group, aligned);
    return selection;
}

SelectionPtr Builder::CreateAlignYPredContributionDataSeries(int model, int yVariable, int component, Group const &from,
                                                             Group const &to) const {
    int const resolved = Resolved(model);
    if (resolved < 1)
        return nullptr;
    BatchPoints reference, compared;
    CreateAlignScoreVector(resolved, from, to, reference, compared);
    return CreateAlignYPredContributionDataSeries(resolved, yVariable, component, reference, false, compared, false);
}

SelectionPtr Builder::CreateAlignYPredContributionDataSeries(int model, int yVariable, int component,
                                                             BatchPoints const &reference, bool alignedReference,
                                                             BatchPoints const &compared, bool alignedCompared) const {
    SelectionPtr selection = NewSelection();
    SetAlignYPredContributionDataSeries(*selection, model, yVariable, component, reference, alignedReference, compared,
                                        alignedCompared);
    return selection;
}
