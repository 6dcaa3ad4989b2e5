#include "contribution/ContributionModeEnum.h"

#include "navigation/DataSeriesChecker.h"
#include "selection/SelectDataSeriesData.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace DataSeriesUtilities {

namespace {

// What a text reads as, by value.
constexpr char const *readTexts[] = {"None",    "Score",   "DModX",   "DModY",  "YPred",
                                     "ScoreAL", "YPredAL", "DModXAL", "DModYAL"};

// By the kind of a contribution vector (1, 3, 4 and 5 to 7 the same of aligned batches).
ContributionModeEnum::Mode ModeOf(ProjectVectorData const &data) {
    using enum ContributionModeEnum::Mode;
    bool const ofResponse = data.GetWeightType() == ContributionWeightEnum::CoeffCSRaw;
    switch (data.GetProjectVector() ? data.GetProjectVector()->GetContributionKind() : 0) {
    case 1:
        return ofResponse ? YPred : Score;
    case 3:
        return DModX;
    case 4:
        return DModY;
    case 5:
        return ofResponse ? AlignedYPred : AlignedScore;
    case 6:
        return AlignedDModX;
    case 7:
        return AlignedDModY;
    default:
        return None;
    }
}

// What the vector of a plot can start; 0 for nothing.
int SourceOf(ProjectVectorData const &data) {
    return data.GetProjectVector() ? data.GetProjectVector()->GetContributionSource() : 0;
}

ContributionModeEnum::Mode ModeFrom(int source, bool ofBatches) {
    using enum ContributionModeEnum::Mode;
    constexpr ContributionModeEnum::Mode plain[] = {None, Score, YPred, DModX, DModY};
    constexpr ContributionModeEnum::Mode aligned[] = {None, AlignedScore, AlignedYPred, AlignedDModX, AlignedDModY};
    return (ofBatches ? aligned : plain)[source];
}

bool KeepsRows(TransformationData::TransformationType type) {
    return type == TransformationData::NoTransformation ||
           (type >= TransformationData::SubtractVector && type <= TransformationData::Normalize);
}

} // namespace

char const *ContributionModeEnum::FromContributionMode(Mode mode) {
    if (mode == YPred)
        return readTexts[AlignedYPred];
    if (mode == AlignedYPred)
        return readTexts[YPred];
    return mode >= None && mode <= AlignedDModY ? readTexts[mode] : readTexts[None];
}

ContributionModeEnum::Mode ContributionModeEnum::ToContributionMode(char const *text) {
    auto const found = std::find_if(std::begin(readTexts), std::end(readTexts),
                                    [text](char const *known) { return std::strcmp(known, text) == 0; });
    return found == std::end(readTexts) ? None : static_cast<Mode>(found - std::begin(readTexts));
}

ContributionModeEnum::Mode ContributionModeEnum::GetContributionMode(SelectDataSeriesData const *selection) {
    for (ProjectVectorData const *const data : selection->VectorsInUse())
        if (Mode const mode = ModeOf(*data); mode != None)
            return mode;
    return None;
}

ContributionModeEnum::Mode ContributionModeEnum::GetContributionType(SelectDataSeriesData const *selection, int &model,
                                                                     int &component, int &number) {
    if (selection->NumberOfSeries() == 0 || !KeepsRows(selection->GetTransformationData().GetTransformationType()))
        return None;
    ProjectVectorData const *data = &selection->GetSeries(1);
    if (SourceOf(*data) == 0 && (selection->GetMode() & SelectDataSeriesData::AxisX) != 0)
        data = &selection->GetXAxis();
    if (SourceOf(*data) == 0)
        return None;
    ModelInfo const *const info = data->GetModelInfo();
    model = info ? info->number : -1;
    component = data->GetProjectVector()->HasOneComponent() ? data->GetComponent(true) : -1;
    number = static_cast<int>(data->GetNumber(nullptr));
    return ModeFrom(SourceOf(*data), info && info->isBatchModel);
}

void CountWeightsAndComponents(SelectDataSeriesData const *selection, std::vector<int> &components,
                               WeightTypes &weights) {
    std::vector<int> orthogonal;
    for (ProjectVectorData const *const data : selection->VectorsInUse()) {
        AddPredictiveComponents(*data, components);
        AddOrthogonalComponents(*data, orthogonal);
    }
    ModelInfo const *const model = selection->NumberOfSeries() > 0 ? selection->GetSeries(1).GetModelInfo() : nullptr;
    bool const isPLS = model && ModelTypeE::IsPlainPLS(model->type);
    weights.insert(weights.end(), components.size(), isPLS ? WeightTypeE::WStar : WeightTypeE::P);
    weights.insert(weights.end(), orthogonal.size(), WeightTypeE::PO);
    components.insert(components.end(), orthogonal.begin(), orthogonal.end());
}

} // namespace DataSeriesUtilities
