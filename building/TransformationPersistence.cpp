#include "building/TransformationData.h"
#include "platform/storage/ConfigurationSection.h"

#include <algorithm>

// A transformation in a section of settings.

namespace {

constexpr char const *crossSection = "DataVector";
constexpr char const *divideSection = "DivideVector";
constexpr char const *waveletSection = "WaveletOptions";
constexpr char const *calculationNames[] = {"Variables", "Observations", "Uninitialized"};

// Each hands what it read to a setter, and answers whether the key was there.
template <typename Set>
bool ReadText(ConfigurationSection const &section, char const *key, Set set) {
    std::string text;
    bool const isThere = section.ReadKey(key, text);
    if (isThere)
        set(text.c_str());
    return isThere;
}

template <typename Set>
bool ReadNumber(ConfigurationSection const &section, char const *key, Set set) {
    int number = 0;
    bool const isThere = section.ReadKey(key, number);
    if (isThere)
        set(number);
    return isThere;
}

// Only 1 is true.
template <typename Set>
bool ReadFlag(ConfigurationSection const &section, char const *key, Set set) {
    return ReadNumber(section, key, [&set](int number) { set(number == 1); });
}

// A value that no text stands for is kept as an empty one.
std::string OrEmpty(char const *text) {
    return text ? text : "";
}

void WriteVector(ConfigurationSection &section, char const *name, ProjectVectorData const &vector) {
    auto const stored = section.CreateSubSection(name);
    stored->Clear();
    vector.WriteSection(stored.get());
}

bool ReadVector(ProjectPtr const &project, ConfigurationSection &section, char const *name, bool activeModel,
                ProjectVectorData &vector) {
    auto const stored = section.OpenSubSection(name);
    return stored && vector.ReadSection(project, stored.get(), activeModel);
}

} // namespace

void TransformationData::WriteSection(ConfigurationSection *section) const {
    section->WriteKey("TransformationType", OrEmpty(GetTransformationType(m_type)));
    section->WriteKey("DetrendMode", OrEmpty(ToDetrendConfigString(m_detrendMode)));
    section->WriteKey("NumLags", m_numLags);
    section->WriteKey("MaxLags", m_maxLags);
    section->WriteKey("SegmentSize", m_segmentSize);
    section->WriteKey("ScalingMode", ToScalingConfigString(m_scalingMode));
    section->WriteKey("WindowType", OrEmpty(ToDataWindowString(m_windowType)));
    section->WriteKey("Overlap", m_overlap ? 1 : 0);
    section->WriteKey("Decibel", m_decibel ? 1 : 0);
    section->WriteKey("SamplingFrequency", m_samplingFrequency);
    WriteVector(*section, crossSection, m_crossVector);
    WriteWaveletOptionsSection(section->CreateSubSection(waveletSection).get());
    std::list<int> scales;
    std::ranges::transform(m_energySelection.Values(), std::back_inserter(scales), [](bool flag) { return flag; });
    section->WriteKey("WCEnergySelection", scales);
    if (m_type == SubtractAndDivideVector)
        WriteVector(*section, divideSection, m_divideVector);
    section->WriteKey("Target", m_target);
    section->WriteKey("StdDev", m_stdDev);
    section->WriteKey("Lambda", m_lambda);
    section->WriteKey("SampleSize", m_sampleSize);
}

void TransformationData::WriteWaveletOptionsSection(ConfigurationSection *section) const {
    WaveletOptions const &options = m_waveletOptions;
    auto const calculation = static_cast<std::size_t>(options.GetDSCalc());
    section->WriteKey("DSCalc", calculation < std::size(calculationNames) ? calculationNames[calculation] : "");
    section->WriteKey("Detrend", Wavelet::DetrendStr(options.GetDetrend()));
    section->WriteKey("WaveletFunction", Wavelet::WaveletFunctionStr(options.GetWaveletFunction()));
    section->WriteKey("WaveletOrder", options.GetWaveletOrder());
    section->WriteKey("IsCoefficientByDetails", options.GetIsCoefficientsByDetails() ? 1 : 0);
    section->WriteKey("IsBestBasis", options.GetIsBestBasis() ? 1 : 0);
    section->WriteKey("TargetVariable", options.GetTargetVariable());
    section->WriteKey("FastPlot", options.GetIsFastPlot() ? 1 : 0);
}

bool TransformationData::ReadSection(ProjectPtr const &project, ConfigurationSection *section, bool activeModel) {
    if (!ReadText(*section, "TransformationType", [this](char const *text) { m_type = GetTransformationType(text); }))
        return false;
    auto const wavelets = [&] {
        auto const stored = section->OpenSubSection(waveletSection);
        return stored && ReadWaveletOptionsSection(stored.get());
    };
    if (m_type == NoTransformation) {
        wavelets();
    } else {
        if (!ReadSettings(*section) || !ReadVectors(project, *section, activeModel) || !wavelets())
            return false;
        if (std::list<int> scales; section->ReadKey("WCEnergySelection", scales)) {
            m_energySelection.resize(static_cast<int>(scales.size()));
            std::ranges::transform(scales, m_energySelection.MutableValues().begin(),
                                   [](int scale) { return scale == 1; });
        }
    }
    constexpr double notSet = -99.0;
    for (auto const &[key, value] :
         {std::pair("Target", &m_target), std::pair("StdDev", &m_stdDev), std::pair("Lambda", &m_lambda)})
        if (!section->ReadKey(key, *value))
            *value = notSet;
    if (!section->ReadKey("SampleSize", m_sampleSize))
        m_sampleSize = 1;
    return true;
}

bool TransformationData::ReadSettings(ConfigurationSection const &section) {
    return ReadText(section, "DetrendMode",
                    [this](char const *text) { m_detrendMode = FromConfigToDetrendMode(text); }) &&
           ReadNumber(section, "NumLags",
                      [this](int lags) {
                          SetNumLags(lags);
                          m_maxLags = 0;
                      }) &&
           section.ReadKey("SegmentSize", m_segmentSize) &&
           ReadText(section, "ScalingMode",
                    [this](char const *text) { m_scalingMode = FromConfigToScalingMode(text); }) &&
           ReadText(section, "WindowType", [this](char const *text) { m_windowType = ToDataWindowMode(text); }) &&
           ReadFlag(section, "Overlap", [this](bool overlap) { m_overlap = overlap; }) &&
           ReadFlag(section, "Decibel", [this](bool decibel) { m_decibel = decibel; }) &&
           section.ReadKey("SamplingFrequency", m_samplingFrequency);
}

bool TransformationData::ReadVectors(ProjectPtr const &project, ConfigurationSection &section, bool activeModel) {
    bool const isDivided = m_type == SubtractAndDivideVector;
    if (m_type != CrossCorrelation && m_type != SubtractVector && !isDivided)
        return true;
    return ReadVector(project, section, crossSection, activeModel, m_crossVector) &&
           (!isDivided || ReadVector(project, section, divideSection, false, m_divideVector));
}

bool TransformationData::ReadWaveletOptionsSection(ConfigurationSection const *section) {
    WaveletOptions &options = m_waveletOptions;
    auto const calculation = [](std::string_view name) {
        bool const isKnown = name == calculationNames[WaveletOptions::Variables] ||
                             name == calculationNames[WaveletOptions::Observations];
        return isKnown ? WaveletOptions::Variables : WaveletOptions::Uninitialized;
    };
    return ReadText(*section, "DSCalc", [&](char const *name) { options.SetDSCalc(calculation(name)); }) &&
           ReadText(*section, "Detrend", [&](char const *name) { options.SetDetrend(Wavelet::Detrend(name)); }) &&
           ReadText(*section, "WaveletFunction",
                    [&](char const *name) { options.SetWaveletFunction(Wavelet::WaveletFunction(name)); }) &&
           ReadNumber(*section, "WaveletOrder", [&](int order) { options.SetWaveletOrder(order); }) &&
           ReadFlag(*section, "IsCoefficientByDetails",
                    [&](bool byDetails) { options.SetIsCoefficientsByDetails(byDetails); }) &&
           ReadFlag(*section, "IsBestBasis", [&](bool best) { options.SetIsBestBasis(best); }) &&
           ReadNumber(*section, "TargetVariable", [&](int variable) { options.SetTargetVariable(variable); }) &&
           ReadFlag(*section, "FastPlot", [&](bool fast) { options.SetIsFastPlot(fast); });
}
