#include "building/TransformationData.h"

#include "platform/text/Translate.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

// A setting with its text in saved plots and its text for the user, which is translated in a context; no context means
// translated without one, and an empty text for the user means the saved one.
template <typename Value>
struct SettingText {
    Value value;
    char const *config;
    char const *display;
    char const *context;
};

constexpr char const *transformation = "transformation type";

constexpr SettingText<TransformationData::TransformationType> transformationTexts[] = {
    {TransformationData::NoTransformation, "No Transformation", "No transformation", nullptr},
    {TransformationData::AutoCorrelation, "Auto Correlation", "Auto correlation", transformation},
    {TransformationData::CrossCorrelation, "Cross Correlation", "Cross correlation", transformation},
    {TransformationData::PowerSpectrum, "Power Spectrum", "Power spectrum", transformation},
    {TransformationData::WaveletCoefficients, "Wavelet Coefficients", "Wavelet coefficients", transformation},
    {TransformationData::WaveletStructure, "Wavelet Structure", "Wavelet structure", transformation},
    {TransformationData::SubtractVector, "Subtract Vector", "Subtract vector", transformation},
    {TransformationData::SubtractAndDivideVector, "Subtract And Divide Vector", "Subtract and divide vector",
     transformation},
    {TransformationData::EWMA, "EWMA", "EWMA", transformation},
    {TransformationData::Histogram, "Histogram", "Histogram", transformation},
    {TransformationData::R2X, "R2X", nullptr, nullptr},
    {TransformationData::Normalize, "Normalize", "Normalize", transformation},
    {TransformationData::Dotplot, "Dotplot", "Dot plot", "Dotplot transformation"}};

constexpr SettingText<FFT::DetrendMode> detrendTexts[] = {{FFT::None, "None", "None", "Detrend type"},
                                                          {FFT::Mean, "Mean", "Mean", "Detrend type"},
                                                          {FFT::Linear, "Linear", "Linear", "Detrend type"}};

constexpr SettingText<FFT::ScalingMode> scalingTexts[] = {
    {FFT::Unbiased, "Unbiased", "Unbiased", "Unbiased FFT scaling mode"},
    {FFT::Peaks, "Peaks", "Peaks", "Peaks in power spectrum"}};

constexpr SettingText<FFT::DataWindowMode> windowTexts[] = {{FFT::Bartlett, "Bartlett", nullptr, nullptr},
                                                            {FFT::Hanning, "Hanning", nullptr, nullptr},
                                                            {FFT::Welch, "Welch", nullptr, nullptr}};

template <typename Value, std::size_t size>
char const *ConfigText(SettingText<Value> const (&texts)[size], Value value) {
    auto const found =
        std::find_if(std::begin(texts), std::end(texts), [value](auto const &row) { return row.value == value; });
    return found == std::end(texts) ? nullptr : found->config;
}

template <typename Value, std::size_t size>
Value FromConfigText(SettingText<Value> const (&texts)[size], char const *text, int otherwise) {
    auto const found = std::find_if(std::begin(texts), std::end(texts),
                                    [text](auto const &row) { return std::strcmp(row.config, text) == 0; });
    return found == std::end(texts) ? static_cast<Value>(otherwise) : found->value;
}

template <typename Value>
std::string DisplayOf(SettingText<Value> const &row) {
    if (!row.display)
        return row.config;
    return row.context ? translate(row.context, row.display) : translate(row.display);
}

template <typename Value, std::size_t size>
std::string DisplayText(SettingText<Value> const (&texts)[size], Value value) {
    auto const found =
        std::find_if(std::begin(texts), std::end(texts), [value](auto const &row) { return row.value == value; });
    return found == std::end(texts) ? std::string() : DisplayOf(*found);
}

template <typename Value, std::size_t size>
Value FromDisplayText(SettingText<Value> const (&texts)[size], std::string const &text) {
    auto const found =
        std::find_if(std::begin(texts), std::end(texts), [&text](auto const &row) { return DisplayOf(row) == text; });
    return found == std::end(texts) ? static_cast<Value>(0) : found->value;
}

} // namespace

bool TransformationData::operator==(TransformationData const &other) const {
    if (m_type != other.m_type)
        return false;
    bool const sameLags =
        m_lagsInitialised == other.m_lagsInitialised && m_numLags == other.m_numLags && m_maxLags == other.m_maxLags;
    switch (m_type) {
    case AutoCorrelation:
        return sameLags;
    case CrossCorrelation:
        return sameLags && m_detrendMode == other.m_detrendMode && m_crossVector == other.m_crossVector;
    case PowerSpectrum:
        return m_segmentSize == other.m_segmentSize && m_scalingMode == other.m_scalingMode &&
               m_windowType == other.m_windowType && m_overlap == other.m_overlap && m_decibel == other.m_decibel &&
               m_samplingFrequency == other.m_samplingFrequency;
    case WaveletCoefficients:
        return m_waveletOptions == other.m_waveletOptions;
    case WaveletStructure:
        return m_waveletOptions == other.m_waveletOptions && m_energySelection == other.m_energySelection &&
               m_energyInitialized == other.m_energyInitialized;
    case SubtractVector:
        return m_crossVector == other.m_crossVector;
    case SubtractAndDivideVector:
        return m_crossVector == other.m_crossVector && m_divideVector == other.m_divideVector;
    case EWMA:
        return m_target == other.m_target && m_stdDev == other.m_stdDev && m_lambda == other.m_lambda;
    default:
        return true;
    }
}

void TransformationData::SetTransformationType(TransformationType type) {
    m_type = type;
    if (type == CrossCorrelation)
        m_detrendMode = FFT::Mean;
}

bool TransformationData::IsTransformItems() const {
    switch (m_type) {
    case EWMA:
        return m_sampleSize > 1;
    case NoTransformation:
    case SubtractVector:
    case SubtractAndDivideVector:
    case R2X:
    case Normalize:
    case Dotplot:
        return false;
    default:
        return true;
    }
}

void TransformationData::SetNumLags(int lags) {
    m_lagsInitialised = true;
    m_numLags = lags;
}

void TransformationData::ClearLags() {
    m_lagsInitialised = false;
    m_numLags = 0;
}

void TransformationData::SetWCEnergySelection(BoolVector const &selection) {
    m_energyInitialized = true;
    m_energySelection = selection;
}

char const *TransformationData::GetTransformationType(TransformationType type) {
    return ConfigText(transformationTexts, type);
}
TransformationData::TransformationType TransformationData::GetTransformationType(char const *text) {
    return FromConfigText(transformationTexts, text, 0);
}
std::string TransformationData::GetLocalizedTransformationType(TransformationType type) {
    return DisplayText(transformationTexts, type);
}
char const *TransformationData::ToDetrendConfigString(FFT::DetrendMode mode) {
    return ConfigText(detrendTexts, mode);
}
FFT::DetrendMode TransformationData::FromConfigToDetrendMode(char const *text) {
    return FromConfigText(detrendTexts, text, 0);
}
std::string TransformationData::ToDetrendGuiString(FFT::DetrendMode mode) {
    return DisplayText(detrendTexts, mode);
}
FFT::DetrendMode TransformationData::FromGuiToDetrendMode(std::string const &text) {
    return FromDisplayText(detrendTexts, text);
}
std::string TransformationData::ToScalingConfigString(FFT::ScalingMode mode) {
    char const *const text = ConfigText(scalingTexts, mode);
    return text ? text : "";
}
FFT::ScalingMode TransformationData::FromConfigToScalingMode(char const *text) {
    return FromConfigText(scalingTexts, text, 1);
}
std::string TransformationData::ToScalingGuiString(FFT::ScalingMode mode) {
    return DisplayText(scalingTexts, mode);
}
FFT::ScalingMode TransformationData::FromGuiToScalingMode(std::string const &text) {
    return FromDisplayText(scalingTexts, text);
}
char const *TransformationData::ToDataWindowString(FFT::DataWindowMode mode) {
    return ConfigText(windowTexts, mode);
}
FFT::DataWindowMode TransformationData::ToDataWindowMode(char const *text) {
    return FromConfigText(windowTexts, text, 2);
}
