#include "contribution/ContributionModeEnum.h"
#include "contribution/ContributionWeightEnum.h"
#include "platform/project/ModelInfo.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using DataSeriesUtilities::ContributionModeEnum;
using Weight = ContributionWeightEnum;

constexpr ModelTypeE::Model types[] = {ModelTypeE::PCA, ModelTypeE::PLS, ModelTypeE::OPLS, ModelTypeE::O2PLS};

std::string Text(WeightTypes const &weights) {
    std::string text;
    for (WeightTypeE::WeightType const weight : weights)
        text += std::to_string(static_cast<int>(weight));
    return text;
}

} // namespace

TEST(ContributionWeight, ConvertsAndOffersComponents) {
    // Name; list for the statistics (# as many as components are listed); when the five questions are answered with
    // yes, in the order of the header: + always, c with components, o with orthogonal ones on the X side, m not of
    // OPLS, b not of OPLS and with components
    char const *const cases[] = {"Normalized 0 ----+", "p 1 c-+--",       "po 9 o----",       "pp 11 c+++-",
                                 "ppo 19 c++--",       "popo 99 o+---",   "w* 2 c-+--",       "w*w* 22 c+++-",
                                 "CoeffCS 5 b-m--",    "VIP 7 b-+-b",     "RX 3 b-+-b",       "RY 4 b-+-b",
                                 "CoeffCSRaw 6 b----", "PRange #1 bmmm-", "W*Range #2 c+++-", "Raw 8 -----"};
    for (int value = 0; value < 16 * 4 * 3 * 3; ++value) {
        auto const weight = static_cast<Weight::WeightType>(value % 16);
        int const kind = value / 16 % 4, predictive = value / 64 % 3, xSide = kind >= 2 ? value / 192 : 0;
        bool const opls = kind >= 2, some = predictive + xSide > 0;
        ModelInfo model;
        model.type = types[kind];
        model.predictiveComponents = predictive;
        model.xSideOrthogonalComponents = xSide;
        std::string name, list, yes;
        std::istringstream(cases[weight]) >> name >> list >> yes;
        if (opls && weight == Weight::PRange)
            list = std::string(static_cast<std::size_t>(predictive), '1') +
                   std::string(static_cast<std::size_t>(xSide), '9');
        else if (list[0] == '#')
            list = std::string(3, list[1]);
        SCOPED_TRACE(testing::Message() << cases[weight] << ' ' << kind << predictive << xSide);
        EXPECT_EQ(Weight::GetWeightName(weight), name);
        EXPECT_EQ(Weight::ToWeightType(name.c_str()), weight);
        EXPECT_EQ(Text(Weight::NCWeightType(weight, &model, {2, 3, 5})), list);
        EXPECT_EQ(Weight::PreferLastComp(weight), weight >= 8 && weight <= 12);
        std::string const holds = std::string("+") + (some ? "c" : "") + (xSide > 0 ? "o" : "") +
                                  (opls   ? ""
                                   : some ? "mb"
                                          : "m");
        auto answer = yes.begin();
        for (auto const ask : {&Weight::HasComp1, &Weight::HasComp2, &Weight::HasPredictiveComp1,
                               &Weight::HasPredictiveComp2, &Weight::HasDModComp1})
            EXPECT_EQ(ask(weight, &model), holds.find(*answer++) != std::string::npos);
    }
    for (int const unknown : {-1, 16, 99}) {
        EXPECT_EQ(Weight::GetWeightName(static_cast<Weight::WeightType>(unknown)), "");
        EXPECT_EQ(Text(Weight::NCWeightType(static_cast<Weight::WeightType>(unknown), nullptr, {1})), "");
    }
    for (char const *const text : {"unknown", "", "W*", "w*range", "P", "vip"})
        EXPECT_EQ(Weight::ToWeightType(text), Weight::Normalized) << text;
}

TEST(ContributionWeight, ReadsListsOfTheStatistics) {
    int const single[] = {0, 1, 6, 10, 11, 8, 12, 9, 15, 2};
    for (int value = 1; value < 20000; ++value) { // all lists of up to four, behind a 1
        std::string const list = std::to_string(value).substr(1);
        if (std::to_string(value).front() != '1')
            continue;
        WeightTypes weights;
        for (char const digit : list)
            weights.push_back(static_cast<WeightTypeE::WeightType>(digit - '0'));
        int expected = list.empty() ? 0 : single[list[0] - '0'];
        if (list.size() > 2 && list.find('1') != std::string::npos && list.find_first_not_of("19") == std::string::npos)
            expected = 13;
        else if (list.size() > 1 && expected == 1)
            expected = list[1] == '1' ? 3 : list[1] == '9' ? 4 : 1;
        else if (list.size() > 1 && (expected == 2 || expected == 6))
            expected = expected == 2 ? 5 : 7;
        EXPECT_EQ(Weight::FromWeightTypeE(weights), expected) << list;
    }
}

TEST(ContributionMode, HasCrossedTexts) {
    // By value, the last one unknown: YPred and AlignedYPred write what the other one reads.
    char const *const texts[] = {"None",    "Score", "DModX",   "DModY",   "YPredAL",
                                 "ScoreAL", "YPred", "DModXAL", "DModYAL", "None"};
    int const reads[] = {0, 1, 2, 3, 6, 5, 4, 7, 8, 0};
    for (int value = 0; value < 10; ++value) {
        ContributionModeEnum::Mode const mode = static_cast<ContributionModeEnum::Mode>(value);
        EXPECT_STREQ(ContributionModeEnum::FromContributionMode(mode), texts[value]);
        EXPECT_EQ(ContributionModeEnum::ToContributionMode(texts[value]), reads[value]);
        EXPECT_EQ(ContributionModeEnum::IsAlignedEnabled(mode), value >= 5 && value <= 8) << value;
        EXPECT_EQ(ContributionModeEnum::IsScoreOrYPred(mode), value == 1 || (value >= 4 && value <= 6)) << value;
    }
    for (char const *const text : {"", "score", "YPredal", "Unknown"})
        EXPECT_EQ(ContributionModeEnum::ToContributionMode(text), ContributionModeEnum::None) << text;
}
