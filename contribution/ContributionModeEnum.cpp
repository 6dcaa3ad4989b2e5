#include "contribution/ContributionModeEnum.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace DataSeriesUtilities {

namespace {

// What a text reads as, by value.
constexpr char const *readTexts[] = {"None",    "Score",   "DModX",   "DModY",  "YPred",
                                     "ScoreAL", "YPredAL", "DModXAL", "DModYAL"};

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

} // namespace DataSeriesUtilities
