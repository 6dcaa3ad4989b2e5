#include "contribution/ContributionWeightEnum.h"

#include "platform/project/ModelInfo.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

// By value.
constexpr char const *names[] = {"Normalized", "p",   "po", "pp", "ppo",        "popo",   "w*",      "w*w*",
                                 "CoeffCS",    "VIP", "RX", "RY", "CoeffCSRaw", "PRange", "W*Range", "Raw"};

bool IsOPLS(ModelInfo const *model) {
    return model && ModelTypeE::IsOPLSorO2PLS(model->type);
}

bool HasComponents(ModelInfo const *model) {
    return model && model->SizeComponents() > 0;
}

// The value of a single weight.
ContributionWeightEnum::WeightType FromFirst(WeightTypeE::WeightType weight) {
    switch (weight) {
    case WeightTypeE::P:
        return ContributionWeightEnum::P;
    case WeightTypeE::WStar:
        return ContributionWeightEnum::WStar;
    case WeightTypeE::RX:
        return ContributionWeightEnum::RX;
    case WeightTypeE::RY:
        return ContributionWeightEnum::RY;
    case WeightTypeE::CoeffCS:
        return ContributionWeightEnum::CoeffCS;
    case WeightTypeE::CoeffCSRaw:
        return ContributionWeightEnum::CoeffCSRaw;
    case WeightTypeE::VIP:
        return ContributionWeightEnum::VIP;
    case WeightTypeE::Raw:
        return ContributionWeightEnum::Raw;
    case WeightTypeE::PO:
        return ContributionWeightEnum::PO;
    default:
        return ContributionWeightEnum::Normalized;
    }
}

} // namespace

std::string ContributionWeightEnum::GetWeightName(WeightType weight) {
    return weight >= 0 && weight < static_cast<int>(std::size(names)) ? names[weight] : "";
}

ContributionWeightEnum::WeightType ContributionWeightEnum::ToWeightType(char const *name) {
    auto const found = std::find_if(std::begin(names), std::end(names),
                                    [name](char const *known) { return std::strcmp(known, name) == 0; });
    return found == std::end(names) ? Normalized : static_cast<WeightType>(found - std::begin(names));
}

WeightTypes ContributionWeightEnum::NCWeightType(WeightType weight, ModelInfo const *model,
                                                 std::vector<int> const &components) {
    switch (weight) {
    case Normalized:
        return {WeightTypeE::Normalized};
    case P:
        return {WeightTypeE::P};
    case PO:
        return {WeightTypeE::PO};
    case PP:
        return {WeightTypeE::P, WeightTypeE::P};
    case PPO:
        return {WeightTypeE::P, WeightTypeE::PO};
    case POPO:
        return {WeightTypeE::PO, WeightTypeE::PO};
    case WStar:
        return {WeightTypeE::WStar};
    case WStarWStar:
        return {WeightTypeE::WStar, WeightTypeE::WStar};
    case CoeffCS:
        return {WeightTypeE::CoeffCS};
    case VIP:
        return {WeightTypeE::VIP};
    case RX:
        return {WeightTypeE::RX};
    case RY:
        return {WeightTypeE::RY};
    case CoeffCSRaw:
        return {WeightTypeE::CoeffCSRaw};
    case PRange: {
        if (!IsOPLS(model))
            return WeightTypes(components.size(), WeightTypeE::P);
        WeightTypes all(static_cast<std::size_t>(model->SizePredictiveComponents()), WeightTypeE::P);
        all.insert(all.end(), static_cast<std::size_t>(model->SizeXSideOrthogonalComponents()), WeightTypeE::PO);
        return all;
    }
    case WStarRange:
        return WeightTypes(components.size(), WeightTypeE::WStar);
    case Raw:
        return {WeightTypeE::Raw};
    }
    return {};
}

ContributionWeightEnum::WeightType ContributionWeightEnum::FromWeightTypeE(WeightTypes const &weights) {
    if (weights.empty())
        return Normalized;
    auto const isLoading = [](WeightTypeE::WeightType weight) {
        return weight == WeightTypeE::P || weight == WeightTypeE::PO;
    };
    bool const anyP = std::find(weights.begin(), weights.end(), WeightTypeE::P) != weights.end();
    if (weights.size() >= 3 && anyP && std::all_of(weights.begin(), weights.end(), isLoading))
        return PRange;
    WeightType const first = FromFirst(weights[0]);
    if (weights.size() == 1)
        return first;
    switch (first) {
    case P:
        return weights[1] == WeightTypeE::P ? PP : weights[1] == WeightTypeE::PO ? PPO : P;
    case WStar:
        return WStarWStar;
    case PO:
        return POPO;
    default:
        return first;
    }
}

bool ContributionWeightEnum::HasComp1(WeightType weight, ModelInfo const *model) {
    switch (weight) {
    case P:
    case PP:
    case PPO:
    case WStar:
    case WStarWStar:
    case WStarRange:
        return HasComponents(model);
    case PO:
    case POPO:
        return model && model->SizeXSideOrthogonalComponents() > 0;
    case Normalized:
    case Raw:
        return false;
    default:
        return weight >= CoeffCS && weight <= PRange && !IsOPLS(model) && HasComponents(model);
    }
}

bool ContributionWeightEnum::HasComp2(WeightType weight, ModelInfo const *model) {
    return weight == PPO || weight == POPO || HasPredictiveComp2(weight, model);
}

bool ContributionWeightEnum::HasPredictiveComp1(WeightType weight, ModelInfo const *model) {
    switch (weight) {
    case P:
    case PP:
    case PPO:
    case WStar:
    case WStarWStar:
    case VIP:
    case RX:
    case RY:
    case WStarRange:
        return true;
    case CoeffCS:
    case PRange:
        return !IsOPLS(model);
    default:
        return false;
    }
}

bool ContributionWeightEnum::HasPredictiveComp2(WeightType weight, ModelInfo const *model) {
    return weight == PP || weight == WStarWStar || weight == WStarRange || (weight == PRange && !IsOPLS(model));
}

bool ContributionWeightEnum::HasDModComp1(WeightType weight, ModelInfo const *model) {
    return weight == Normalized || (weight >= VIP && weight <= RY && !IsOPLS(model) && HasComponents(model));
}
