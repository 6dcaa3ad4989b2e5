#include "building/TransformationData.h"
#include "tests/support/ProbeVector.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>

namespace {

using Data = TransformationData;

} // namespace

TEST(TransformationData, HasTexts) {
    char const *const types[][2] = {{"No Transformation", "No transformation"},
                                    {"Auto Correlation", "Auto correlation"},
                                    {"Cross Correlation", "Cross correlation"},
                                    {"Power Spectrum", "Power spectrum"},
                                    {"Wavelet Coefficients", "Wavelet coefficients"},
                                    {"Wavelet Structure", "Wavelet structure"},
                                    {"Subtract Vector", "Subtract vector"},
                                    {"Subtract And Divide Vector", "Subtract and divide vector"},
                                    {"EWMA", "EWMA"},
                                    {"Histogram", "Histogram"},
                                    {"R2X", "R2X"},
                                    {"Normalize", "Normalize"},
                                    {"Dotplot", "Dot plot"}};
    int value = 0;
    for (auto const &[saved, shown] : types) {
        EXPECT_EQ(Data::GetTransformationType(saved), value);
        EXPECT_EQ(Data::GetLocalizedTransformationType(static_cast<Data::TransformationType>(value++)), shown);
    }
    EXPECT_EQ(Data::GetLocalizedTransformationType(static_cast<Data::TransformationType>(13)), "");
    // Text; what it reads as: type, detrending as saved and shown, scaling as saved and shown, window
    std::pair<char const *, std::array<int, 6>> const texts[] = {
        {"None", {0, 0, 0, 1, 0, 2}},     {"Mean", {0, 1, 1, 1, 0, 2}},     {"Linear", {0, 2, 2, 1, 0, 2}},
        {"Unbiased", {0, 0, 0, 0, 0, 2}}, {"Peaks", {0, 0, 0, 1, 1, 2}},    {"Bartlett", {0, 0, 0, 1, 0, 0}},
        {"Hanning", {0, 0, 0, 1, 0, 1}},  {"Welch", {0, 0, 0, 1, 0, 2}},    {"unknown", {0, 0, 0, 1, 0, 2}},
        {"ewma", {0, 0, 0, 1, 0, 2}},     {"Dot plot", {0, 0, 0, 1, 0, 2}}, {"R2X", {10, 0, 0, 1, 0, 2}}};
    for (auto const &[text, expected] : texts) {
        std::array<int, 6> const found{Data::GetTransformationType(text), Data::FromConfigToDetrendMode(text),
                                       Data::FromGuiToDetrendMode(text),  Data::FromConfigToScalingMode(text),
                                       Data::FromGuiToScalingMode(text),  Data::ToDataWindowMode(text)};
        EXPECT_EQ(found, expected) << text;
    }
    std::string all;
    for (int mode = 0; mode <= 3; ++mode) {
        char const *const detrend = Data::ToDetrendConfigString(static_cast<FFT::DetrendMode>(mode));
        char const *const window = Data::ToDataWindowString(static_cast<FFT::DataWindowMode>(mode));
        all += std::string(detrend ? detrend : "null") + Data::ToDetrendGuiString(static_cast<FFT::DetrendMode>(mode)) +
               (window ? window : "null") + ";";
    }
    for (FFT::ScalingMode const mode : {FFT::Unbiased, FFT::Peaks})
        all += Data::ToScalingConfigString(mode) + Data::ToScalingGuiString(mode) + ";";
    EXPECT_EQ(all, "NoneNoneBartlett;MeanMeanHanning;LinearLinearWelch;nullnull;UnbiasedUnbiased;PeaksPeaks;");
}

TEST(TransformationData, EqualityCountsWhatTheTypeUses) {
    VectorProbe const vector({});
    std::pair<char, std::function<void(Data &)>> const changes[] = {
        {'i', [](Data &d) { d.SetNumLags(0); }},
        {'n', [](Data &d) { d.SetNumLags(5), d.ClearLags(), d.SetMaxLags(1); }},
        {'d', [](Data &d) { d.SetDetrendMode(FFT::Linear); }},
        {'c', [&](Data &d) { d.GetCrossVector().SetProjectVector(&vector); }},
        {'v', [&](Data &d) { d.GetDivideVector().SetProjectVector(&vector); }},
        {'s', [](Data &d) { d.SetSegmentSize(32); }},
        {'m', [](Data &d) { d.SetScalingMode(FFT::Peaks); }},
        {'w', [](Data &d) { d.SetWindowType(FFT::Welch); }},
        {'o', [](Data &d) { d.SetOverlap(true); }},
        {'a', [](Data &d) { d.SetAmplitudeInDecibel(false); }},
        {'f', [](Data &d) { d.SetSamplingFrequency(0); }},
        {'W', [](Data &d) { WaveletOptions options; options.SetWaveletOrder(8), d.SetWaveletOptions(options); }},
        {'e', [](Data &d) { d.SetWCEnergySelection(d.GetWCEnergySelection()); }},
        {'t', [](Data &d) { d.SetTarget(1); }},
        {'D', [](Data &d) { d.SetStdDev(1); }},
        {'l', [](Data &d) { d.SetLambda(1); }},
        {'z', [](Data &d) { d.SetSampleSize(2); }}};
    char const *const counted[] = {"", "in", "indc", "smwoaf", "W", "We", "c", "cv", "tDl", "", "", "", "", ""};
    char const *const itemsReplaced = "01111100010001"; // types 0 to 13
    for (int type = 0; type <= 13; ++type) {
        Data data, other;
        data.SetTransformationType(static_cast<Data::TransformationType>(type));
        std::string found;
        for (auto const &[name, change] : changes) {
            other = data;
            change(other);
            found += data == other ? "" : std::string(1, name);
        }
        EXPECT_EQ(found, counted[type]) << type;
        other.SetTransformationType(static_cast<Data::TransformationType>(type == 0 ? 1 : 0));
        EXPECT_FALSE(data == other);
        EXPECT_EQ(data.IsTransformItems(), itemsReplaced[type] == '1') << type;
    }
    Data ewma;
    ewma.SetTransformationType(Data::EWMA);
    EXPECT_TRUE(ewma == ewma);
    ewma.SetTarget(std::nan(""));
    EXPECT_FALSE(ewma == ewma);
    ewma.SetSampleSize(2);
    EXPECT_TRUE(ewma.IsTransformItems());
    Data cross;
    cross.SetDetrendMode(FFT::Linear);
    cross.SetTransformationType(Data::CrossCorrelation);
    EXPECT_EQ(cross.GetDetrendMode(), FFT::Mean);
    cross.SetDetrendMode(FFT::Linear);
    EXPECT_EQ(cross.GetDetrendMode(), FFT::Linear);
}
