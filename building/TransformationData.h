#pragma once

#include "platform/containers/BoolVector.h"
#include "platform/export.h"
#include "platform/numerics/FFT.h"
#include "platform/numerics/WaveletOptions.h"
#include "specification/ProjectVectorData.h"

#include <string>

// How the rows of a selection are transformed before they are shown: which transformation, and the settings of all of
// them at once. -99.0 in a number means not set. Equality counts only what the chosen transformation uses, with the
// gaps noted at operator==.
class DATASERIES_API TransformationData {
public:
    enum TransformationType : int {
        NoTransformation = 0,
        AutoCorrelation = 1,
        CrossCorrelation = 2,
        PowerSpectrum = 3,
        WaveletCoefficients = 4,
        WaveletStructure = 5,
        SubtractVector = 6,
        SubtractAndDivideVector = 7,
        EWMA = 8,
        Histogram = 9,
        R2X = 10,
        Normalize = 11,
        Dotplot = 12
    };

    // Correlations without regard to detrending, spectra likewise, and EWMA without regard to the sample size.
    bool operator==(TransformationData const &other) const;

    TransformationType GetTransformationType() const { return m_type; }
    // Cross correlation always starts from detrending by the mean.
    void SetTransformationType(TransformationType type);
    // The transformation replaces the items along the axis by others: lags, frequencies, bins, subgroups.
    bool IsTransformItems() const;

    FFT::DetrendMode GetDetrendMode() const { return m_detrendMode; }
    void SetDetrendMode(FFT::DetrendMode mode) { m_detrendMode = mode; }

    // Lags of the correlations, and the bound of a control for them. Setting the number marks it as initialised.
    bool IsNumLagsInitialised() const { return m_lagsInitialised; }
    int GetNumLags() const { return m_numLags; }
    void SetNumLags(int lags);
    void ClearLags();
    int GetMaxLags() const { return m_maxLags; }
    void SetMaxLags(int lags) { m_maxLags = lags; }

    // Spectra. The sampling frequency counts per second; 0 means that the frequency axis has no unit.
    int GetSegmentSize() const { return m_segmentSize; }
    void SetSegmentSize(int size) { m_segmentSize = size; }
    FFT::ScalingMode GetScalingMode() const { return m_scalingMode; }
    void SetScalingMode(FFT::ScalingMode mode) { m_scalingMode = mode; }
    FFT::DataWindowMode GetWindowType() const { return m_windowType; }
    void SetWindowType(FFT::DataWindowMode mode) { m_windowType = mode; }
    bool IsOverlap() const { return m_overlap; }
    void SetOverlap(bool overlap) { m_overlap = overlap; }
    bool HasAmplitudeInDecibel() const { return m_decibel; }
    void SetAmplitudeInDecibel(bool decibel) { m_decibel = decibel; }
    int GetSamplingFrequency() const { return m_samplingFrequency; }
    void SetSamplingFrequency(int frequency) { m_samplingFrequency = frequency; }

    // The second vector of a cross correlation, which is also the one to subtract, and the divisor.
    ProjectVectorData const &GetCrossVector() const { return m_crossVector; }
    ProjectVectorData &GetCrossVector() { return m_crossVector; }
    void SetCrossVector(ProjectVectorData const &vector) { m_crossVector = vector; }
    ProjectVectorData const &GetSubtractVector() const { return m_crossVector; }
    ProjectVectorData &GetSubtractVector() { return m_crossVector; }
    ProjectVectorData const &GetDivideVector() const { return m_divideVector; }
    ProjectVectorData &GetDivideVector() { return m_divideVector; }

    // Wavelets, and the scales that take part in the wavelet structure.
    WaveletOptions const &GetWaveletOptions() const { return m_waveletOptions; }
    void SetWaveletOptions(WaveletOptions const &options) { m_waveletOptions = options; }
    bool IsWCEnergyInitialized() const { return m_energyInitialized; }
    BoolVector const &GetWCEnergySelection() const { return m_energySelection; }
    void SetWCEnergySelection(BoolVector const &selection);

    // EWMA.
    double GetTarget() const { return m_target; }
    void SetTarget(double target) { m_target = target; }
    double GetStdDev() const { return m_stdDev; }
    void SetStdDev(double stdDev) { m_stdDev = stdDev; }
    double GetLambda() const { return m_lambda; }
    void SetLambda(double lambda) { m_lambda = lambda; }
    int GetSampleSize() const { return m_sampleSize; }
    void SetSampleSize(int size) { m_sampleSize = size; }

    // Texts of the settings: those of saved plots, and those for the user. What an unknown value or text gives differs
    // from table to table, and is noted; a null text stands for an unknown value.
    static TransformationType GetTransformationType(char const *text);          // 0
    static std::string GetLocalizedTransformationType(TransformationType type); // empty
    static char const *ToDetrendConfigString(FFT::DetrendMode mode);            // null
    static FFT::DetrendMode FromConfigToDetrendMode(char const *text);          // None
    static std::string ToDetrendGuiString(FFT::DetrendMode mode);               // empty
    static FFT::DetrendMode FromGuiToDetrendMode(std::string const &text);      // None
    static std::string ToScalingConfigString(FFT::ScalingMode mode);            // empty
    static FFT::ScalingMode FromConfigToScalingMode(char const *text);          // Peaks
    static std::string ToScalingGuiString(FFT::ScalingMode mode);               // empty
    static FFT::ScalingMode FromGuiToScalingMode(std::string const &text);      // Unbiased
    static char const *ToDataWindowString(FFT::DataWindowMode mode);            // null
    static FFT::DataWindowMode ToDataWindowMode(char const *text);              // Welch

    // The saved form. All settings are written, whichever transformation is chosen. The writer knows two things that
    // the reader does not take: the bound of lags, which follows from the items, and what rows of wavelets are, where
    // observations come back as variables.
    void WriteSection(ConfigurationSection *section) const;
    // False at the first key that is missing; what was read up to there stays. Only what the chosen transformation uses
    // is read of its vectors, and without a transformation the settings of wavelets and EWMA alone. Vectors that cannot
    // be shown throw as in ProjectVectorData::ReadSection, to which project and flag are passed.
    bool ReadSection(ProjectPtr const &project, ConfigurationSection *section, bool activeModel);

private:
    bool ReadSettings(ConfigurationSection const &section);
    bool ReadVectors(ProjectPtr const &project, ConfigurationSection &section, bool activeModel);
    void WriteWaveletOptionsSection(ConfigurationSection *section) const;
    bool ReadWaveletOptionsSection(ConfigurationSection const *section);
    static char const *GetTransformationType(TransformationType type);

    TransformationType m_type = NoTransformation;
    FFT::DetrendMode m_detrendMode = FFT::Mean;
    bool m_lagsInitialised = false;
    int m_numLags = 0;
    int m_maxLags = 0;
    int m_segmentSize = 16;
    FFT::ScalingMode m_scalingMode = FFT::Unbiased;
    FFT::DataWindowMode m_windowType = FFT::Hanning;
    bool m_overlap = false;
    bool m_decibel = true;
    int m_samplingFrequency = 1;
    ProjectVectorData m_crossVector;
    ProjectVectorData m_divideVector;
    WaveletOptions m_waveletOptions;
    BoolVector m_energySelection = BoolVector(1);
    bool m_energyInitialized = false;
    double m_target = -99.0;
    double m_stdDev = -99.0;
    double m_lambda = -99.0;
    int m_sampleSize = 1;
};
