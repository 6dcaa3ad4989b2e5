#include "contribution/ContributionModeEnum.h"
#include "contribution/ContributionWeightEnum.h"
#include "platform/project/ModelInfo.h"

#include <gtest/gtest.h>

namespace {

using DataSeriesUtilities::ContributionModeEnum;
using Weight = ContributionWeightEnum;

ModelInfo Model(ModelTypeE::Model type, int predictive, int xSide = 0) {
    ModelInfo model;
    model.type = type;
    model.predictiveComponents = predictive;
    model.xSideOrthogonalComponents = xSide;
    return model;
}

std::string Text(WeightTypes const &weights) {
    std::string text;
    for (WeightTypeE::WeightType const weight : weights)
        text += std::to_string(static_cast<int>(weight));
    return text;
}

// The five questions in the order of the header: "10100".
std::string Choices(Weight::WeightType weight, ModelInfo const &model) {
    std::string text;
    for (auto const question : {&Weight::HasComp1, &Weight::HasComp2, &Weight::HasPredictiveComp1,
                                &Weight::HasPredictiveComp2, &Weight::HasDModComp1})
        text += question(weight, &model) ? '1' : '0';
    return text;
}

} // namespace

TEST(ContributionWeight, ConvertsAndOffersComponents) {
    ModelInfo const pls = Model(ModelTypeE::PLS, 3), empty = Model(ModelTypeE::PCA, 0);
    ModelInfo const opls = Model(ModelTypeE::OPLS, 1, 2), o2pls = Model(ModelTypeE::O2PLS, 2);
    // name; list of components 2 and 3 of PLS, of OPLS; choices for PLS, without components, OPLS, without orthogonal
    char const *const cases[][7] = {{"Normalized", "0", "0", "00001", "00001", "00001", "00001"},
                                    {"p", "1", "1", "10100", "00100", "10100", "10100"},
                                    {"po", "9", "9", "00000", "00000", "10000", "00000"},
                                    {"pp", "11", "11", "11110", "01110", "11110", "11110"},
                                    {"ppo", "19", "19", "11100", "01100", "11100", "11100"},
                                    {"popo", "99", "99", "01000", "01000", "11000", "01000"},
                                    {"w*", "2", "2", "10100", "00100", "10100", "10100"},
                                    {"w*w*", "22", "22", "11110", "01110", "11110", "11110"},
                                    {"CoeffCS", "5", "5", "10100", "00100", "00000", "00000"},
                                    {"VIP", "7", "7", "10101", "00100", "00100", "00100"},
                                    {"RX", "3", "3", "10101", "00100", "00100", "00100"},
                                    {"RY", "4", "4", "10101", "00100", "00100", "00100"},
                                    {"CoeffCSRaw", "6", "6", "10000", "00000", "00000", "00000"},
                                    {"PRange", "11", "199", "11110", "01110", "00000", "00000"},
                                    {"W*Range", "22", "22", "11110", "01110", "11110", "11110"},
                                    {"Raw", "8", "8", "00000", "00000", "00000", "00000"}};
    int value = 0;
    for (auto const &[name, ofPLS, ofOPLS, choices, choicesEmpty, choicesOPLS, choicesO2PLS] : cases) {
        SCOPED_TRACE(name);
        Weight::WeightType const weight = static_cast<Weight::WeightType>(value++);
        EXPECT_EQ(Weight::GetWeightName(weight), name);
        EXPECT_EQ(Weight::ToWeightType(name), weight);
        EXPECT_EQ(Text(Weight::NCWeightType(weight, &pls, {2, 3})), ofPLS);
        EXPECT_EQ(Text(Weight::NCWeightType(weight, &opls, {2, 3})), ofOPLS);
        EXPECT_EQ(Choices(weight, pls), choices);
        EXPECT_EQ(Choices(weight, empty), choicesEmpty);
        EXPECT_EQ(Choices(weight, opls), choicesOPLS);
        EXPECT_EQ(Choices(weight, o2pls), choicesO2PLS);
        EXPECT_EQ(Weight::PreferLastComp(weight), weight >= 8 && weight <= 12);
    }
    for (int const unknown : {-1, 16, 99}) {
        EXPECT_EQ(Weight::GetWeightName(static_cast<Weight::WeightType>(unknown)), "");
        EXPECT_EQ(Text(Weight::NCWeightType(static_cast<Weight::WeightType>(unknown), &pls, {1})), "");
    }
    for (char const *const text : {"unknown", "", "W*", "w*range", "P", "vip"})
        EXPECT_EQ(Weight::ToWeightType(text), Weight::Normalized) << text;
    EXPECT_EQ(Text(Weight::NCWeightType(Weight::WStarRange, &pls, {})), "");
    EXPECT_EQ(Text(Weight::NCWeightType(Weight::PRange, &pls, {})), "");
}

TEST(ContributionWeight, ReadsListsOfTheStatistics) {
    for (auto const &[list, weight] : std::initializer_list<std::pair<std::string, int>>{
             {"", 0},    {"0", 0},    {"1", 1},   {"2", 6},   {"3", 10},  {"4", 11},   {"5", 8},    {"6", 12},
             {"7", 9},   {"8", 15},   {"9", 2},   {"11", 3},  {"19", 4},  {"12", 1},   {"10", 1},   {"91", 5},
             {"99", 5},  {"95", 5},   {"22", 7},  {"21", 7},  {"222", 7}, {"2222", 7}, {"119", 13}, {"991", 13},
             {"999", 5}, {"111", 13}, {"112", 3}, {"192", 4}, {"55", 8},  {"71", 9},   {"01", 0},   {"1999", 13}}) {
        WeightTypes weights;
        for (char const digit : list)
            weights.push_back(static_cast<WeightTypeE::WeightType>(digit - '0'));
        EXPECT_EQ(Weight::FromWeightTypeE(weights), weight) << list;
    }
}

TEST(ContributionMode, HasCrossedTexts) {
    struct {
        char const *text;
        int reads;
        bool aligned, scoreOrYPred;
    } const cases[] = {{"None", 0, false, false},  {"Score", 1, false, true},   {"DModX", 2, false, false},
                       {"DModY", 3, false, false}, {"YPredAL", 6, false, true}, {"ScoreAL", 5, true, true},
                       {"YPred", 4, true, true},   {"DModXAL", 7, true, false}, {"DModYAL", 8, true, false},
                       {"None", 0, false, false}};
    int value = 0;
    for (auto const &[text, reads, aligned, scoreOrYPred] : cases) {
        ContributionModeEnum::Mode const mode = static_cast<ContributionModeEnum::Mode>(value++);
        EXPECT_STREQ(ContributionModeEnum::FromContributionMode(mode), text);
        EXPECT_EQ(ContributionModeEnum::ToContributionMode(text), reads) << text;
        EXPECT_EQ(ContributionModeEnum::IsAlignedEnabled(mode), aligned) << value;
        EXPECT_EQ(ContributionModeEnum::IsScoreOrYPred(mode), scoreOrYPred) << value;
    }
    for (char const *const text : {"", "score", "YPredal", "Unknown"})
        EXPECT_EQ(ContributionModeEnum::ToContributionMode(text), ContributionModeEnum::None) << text;
}
