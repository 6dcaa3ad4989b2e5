#include "contribution/ContributionDataBuilder.h"

#include "catalogue/ProjectVectorHandler.h"
#include "contribution/ModelRows_internal.h"
#include "platform/project/NCProject.h"
#include "platform/text/Exception.h"
#include "utilities/DefaultSelection.h"
#include "utilities/ProjectQueries.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <string_view>
#include <unordered_map>

using DataSeriesUtilities::ContributionModeEnum;
using Selection = SelectDataSeriesData;
using Builder = ContributionDataBuilder;
using SelectionPtr = Builder::SelectionPtr;
using Group = Builder::Group;

namespace {

constexpr int firstRow = 1;

// The positions of the group in its own order; what is not there falls out.
std::vector<int> PositionsAmong(RowPositions const &positionOf, Group const &group) {
    std::vector<int> positions;
    for (std::uint32_t const observation : group)
        if (int const position = positionOf.Of(observation))
            positions.push_back(position);
    return positions;
}

// In the order of the rows, each once.
std::vector<int> RisingPositions(RowPositions const &positionOf, Group const &group) {
    std::vector<int> positions = PositionsAmong(positionOf, group);
    std::sort(positions.begin(), positions.end());
    positions.erase(std::unique(positions.begin(), positions.end()), positions.end());
    return positions;
}

// Both groups, as a score or a response reads them.
void FillGroups(ModelRows const &rows, Group const &from, Group const &to, ProjectVectorData &data) {
    RowPositions const positionOf(rows.Observations());
    data.obs1 = RisingPositions(positionOf, from);
    data.obs2 = to.empty() ? std::vector<int>{firstRow} : RisingPositions(positionOf, to);
}

// In which a T2 is shown, but for counting rows.
bool IsT2Plot(Selection const &selection) {
    for (int series = 1; series <= selection.NumberOfSeries(); ++series) {
        ProjectVector const *const vector = selection.GetSeries(series).GetProjectVector();
        if (vector && !vector->IsNumVector() && !vector->IsT2RangeVector())
            return false;
    }
    return true;
}

bool IsEmpty(ColumnIDs const *columns) {
    return !columns || columns->Size() == 0;
}

bool AreBatches(ColumnIDs const *columns) {
    return columns && columns->GetSource() == ColumnIDs::Batches;
}

} // namespace

SelectionPtr Builder::NewSelection() const {
    return boost::make_shared<Selection>(m_project->shared_from_this(), Selection::Normal,
                                         ProjectVector::VectorTypeObservationsLoadings, -1,
                                         m_prediction ? ProjectVector::Predicted : ProjectVector::Observed);
}

int Builder::CurrentModel() const {
    int const active = m_project->GetActiveModelNumber();
    return active >= 1 && m_project->GetModelInfo(active) ? active : ProjectUtilities::GetFirstFittedModel(*m_project);
}

ProjectVectorData Builder::NewSeries(Selection const &selection, int model, std::string const &vector,
                                     int yVariable) const {
    boost::shared_ptr<ModelInfo const> const info = InfoOfModel(*m_project, model);
    auto const found = ProjectVectorHandler::Instance()->Find(
        vector.c_str(), ProjectVector::VectorTypeObservationsLoadings, ProjectVector::DataTypeModel, info.get());
    if (found == ProjectVectorHandler::Instance()->end())
        throw NCError(ExceptionMessage::translate("{1} is not available for model {2}, which is of another type.") %
                          vector % model,
                      NCError::Error);
    ProjectVectorData data;
    data.SetModelInfoPtr(info);
    data.SetProjectVector(*found);
    data.SetYVar(yVariable == -1 ? selection.GetDefaultSelection()->GetDefaultYVarIndex(model) : yVariable);
    return data;
}

void Builder::SetScoreContributionDataSeries(Selection &selection, int model, Group const &from,
                                             Group const &to) const {
    ModelRows const rows(*m_project, model, m_prediction);
    ProjectVectorData data = NewSeries(selection, model, NameOf("ContSc"));
    FillGroups(rows, from, to, data);
    if (data.obs2.empty())
        throw Exception(
            ExceptionMessage::translate("The selected observations are not available in the destination model."));
    SetScoreContributionWeight(data);
    selection.AddSeries(data, true);
}

void Builder::SetScoreContributionWeight(ProjectVectorData &data) const {
    if (m_components.size() == m_weights.size()) {
        if (m_weights.empty())
            data.SetWeightType(ContributionWeightEnum::Raw);
        else
            data.SetContributionWeight(m_weights, m_components);
        return;
    }
    bool const isPLS = data.GetModelInfo() && ModelTypeE::IsPlainPLS(data.GetModelInfo()->type);
    WeightTypes const weights(m_components.size(), isPLS ? WeightTypeE::WStar : WeightTypeE::P);
    data.SetContributionWeight(weights, m_components);
    // Up to two weights have a kind of their own, which says all.
    if (weights.size() == 1 || weights.size() == 2)
        data.SetWeightType(data.GetWeightType());
}

void Builder::SetDistance(Selection &selection, ProjectVectorData &data, Group const &group, Weight weight,
                          int component) const {
    ModelRows const rows(*m_project, data.GetModelInfo()->number, m_prediction);
    data.obs1 = group.empty() ? std::vector<int>{firstRow} : PositionsAmong(RowPositions(rows.Observations()), group);
    data.SetWeightType(weight);
    data.SetWeightComp({component});
    selection.AddSeries(data, true);
}

void Builder::SetDModXContributionSeries(Selection &selection, int model, int component, Group const &group) const {
    ProjectVectorData data = NewSeries(selection, model, NameOf("ContDModX"));
    int const size = component == -1 ? data.GetModelInfo()->SizeComponents() : component;
    SetDistance(selection, data, group, size == 0 ? ContributionWeightEnum::Normalized : ContributionWeightEnum::RX,
                size);
}

void Builder::SetDModYContributionSeries(Selection &selection, int model, int component, Group const &group) const {
    ProjectVectorData data = NewSeries(selection, model, NameOf("ContDModY"));
    int const all = data.GetModelInfo()->SizeComponents();
    // The weight goes by the model, whatever component is asked for.
    SetDistance(selection, data, group, all == 0 ? ContributionWeightEnum::Normalized : ContributionWeightEnum::RY,
                component == -1 ? all : component);
}

Builder::Weight Builder::SetYPredContributionDataSeries(Selection &selection, int model, int yVariable, int component,
                                                        Group const &from, Group const &to) const {
    ModelRows const rows(*m_project, model, m_prediction);
    ProjectVectorData data = NewSeries(selection, model, NameOf("ContSc"), yVariable);
    FillGroups(rows, from, to, data);
    int const size = component == -1 ? data.GetModelInfo()->SizeComponents() : component;
    data.SetWeightComp({size});
    SetYPredContributionWeight(data, model, size);
    selection.AddSeries(data, true);
    return data.GetWeightType();
}

void Builder::SetYPredContributionWeight(ProjectVectorData &data, int model, int component) const {
    constexpr int classBits = ~0xFF, orthogonalClass = 1280;
    boost::shared_ptr<ModelInfo const> const info = InfoOfModel(*m_project, model);
    bool const isOrthogonal = ModelTypeE::IsOPLSorO2PLS(info->type);
    Weight weight = ContributionWeightEnum::CoeffCS;
    if (component < 1)
        weight = ContributionWeightEnum::Normalized;
    else if (m_coefficientWeights)
        weight = ContributionWeightEnum::CoeffCSRaw;
    else if (info->responseWeighting == 1)
        weight = isOrthogonal ? ContributionWeightEnum::P : ContributionWeightEnum::WStar;
    else if (info->responseWeighting == 2 && isOrthogonal && (info->type & classBits) == orthogonalClass)
        weight = ContributionWeightEnum::P;
    data.SetWeightType(weight);
}

SelectionPtr Builder::CreateScoreContributionDataSeries(int model, Group const &from, Group const &to) const {
    SelectionPtr selection = NewSelection();
    SetScoreContributionDataSeries(*selection, model, from, to);
    return selection;
}

SelectionPtr Builder::CreateDModXContributionDataSeries(int model, int component, Group const &group) const {
    SelectionPtr selection = NewSelection();
    SetDModXContributionSeries(*selection, model, component, group);
    return selection;
}

SelectionPtr Builder::CreateDModYContributionDataSeries(int model, int component, Group const &group) const {
    SelectionPtr selection = NewSelection();
    SetDModYContributionSeries(*selection, model, component, group);
    return selection;
}

SelectionPtr Builder::CreateYPredContributionDataSeries(int model, int yVariable, int component, Group const &from,
                                                        Group const &to) const {
    SelectionPtr selection = NewSelection();
    SetYPredContributionDataSeries(*selection, model, yVariable, component, from, to);
    return selection;
}

SelectionPtr Builder::Create(Mode mode, int model, int component, int yVariable, Group const &from, Group const &to) {
    switch (mode) {
    case Mode::Score:
        return CreateScoreContributionDataSeries(model, from, to);
    case Mode::DModX:
        return CreateDModXContributionDataSeries(model, component, to);
    case Mode::DModY:
        return CreateDModYContributionDataSeries(model, component, to);
    case Mode::YPred:
        return CreateYPredContributionDataSeries(model, yVariable, component, from, to);
    case Mode::AlignedScore:
        return CreateAlignScoreContributionDataSeries(model, from, to);
    case Mode::AlignedYPred:
        return CreateAlignYPredContributionDataSeries(model, yVariable, component, from, to);
    case Mode::AlignedDModX:
        return CreateAlignDModXContributionDataSeries(model, component, to);
    case Mode::AlignedDModY:
        return CreateAlignDModYContributionDataSeries(model, component, to);
    default:
        return nullptr;
    }
}

SelectionPtr Builder::CreateContributionDataSeries(bool, Mode mode) {
    int const model = CurrentModel();
    return model < 1 ? nullptr : Create(mode, model, -1, -1, {}, {});
}

SelectionPtr Builder::CreateContributionDataSeries(Selection *selection, Group const &from, Group const &to,
                                                   bool prediction) {
    boost::shared_ptr<NCProject> const project = selection->GetProject();
    int model = selection->GetSeriesModel(), component = -1, number = -1;
    Mode const mode = ContributionModeEnum::GetContributionType(selection, model, component, number);
    if (!project || mode == Mode::None || !project->GetModelInfo(model))
        return nullptr;
    if (!ContributionModeEnum::IsScoreOrYPred(mode) && to.empty())
        return nullptr;
    // By these coefficients what comes of it is known as a contribution to a response.
    Builder builder(*project, prediction, true);
    if (mode == Mode::Score || mode == Mode::AlignedScore)
        DataSeriesUtilities::CountWeightsAndComponents(selection, builder.m_components, builder.m_weights);
    return builder.Create(mode, model, component, number, from, to);
}

bool Builder::GetObservationVectors(Selection *selection, bool prediction, int model, ColumnIDs const *first,
                                    ColumnIDs const *second, Group &fromOut, Group &toOut) {
    auto const read = [&](ColumnIDs const *columns, Group &group) {
        if (IsEmpty(columns)) {
            group.clear();
            return true;
        }
        if (AreBatches(columns) && model < 1)
            return false;
        group = AreBatches(columns) ? *GetBatchObservations(selection->GetProject(), columns, model, prediction)
                                    : *columns->GetColumnIDs();
        return true;
    };
    if (IsT2Plot(*selection)) {
        if (AreBatches(first))
            return false;
        fromOut.clear();
        read(first, toOut);
        toOut.resize(std::min(toOut.Size(), 1));
        return true;
    }
    if (IsEmpty(first) && IsEmpty(second))
        return true;
    if (!read(second, fromOut) || !read(first, toOut))
        return false;
    // One and the same observation is held against the average.
    if (fromOut.Size() == 1 && fromOut == toOut)
        fromOut.clear();
    return true;
}

std::unique_ptr<Group> Builder::GetBatchObservations(boost::shared_ptr<NCProject const> project,
                                                     ColumnIDs const *batches, int model, bool prediction) {
    ModelRows const rows(*project, model, prediction);
    ObservationInfos const &observations = rows.Observations();
    BatchRuns const runs = rows.Batches();
    std::unordered_map<std::string_view, int> runOf;
    for (int run = 1; run <= runs.names.Size(); ++run)
        runOf.emplace(runs.names[run], run);
    auto group = std::make_unique<Group>();
    for (int column = 1; column <= batches->Size(); ++column) {
        auto const found = runOf.find(batches->GetName(column, 1));
        if (found == runOf.end())
            continue;
        int const begin = runs.beginnings[found->second] - 1;
        int const end = begin + BatchUtilities::GetBatchLength(runs.beginnings, found->second,
                                                               static_cast<int>(observations.size()));
        for (int row = begin; row < end; ++row)
            group->push_back(observations[static_cast<std::size_t>(row)].GetUniqueID());
    }
    return group;
}
