#pragma once

#include "platform/numerics/Wavelet.h"

// All settings of a wavelet transform.
class WaveletOptions {
public:
    // What the rows of the transform are.
    enum DSCalc : int { Variables = 0, Observations = 1, Uninitialized = 2 };

    DSCalc GetDSCalc() const { return m_calculation; }
    void SetDSCalc(DSCalc calculation) { m_calculation = calculation; }
    Wavelet::DetrendMode GetDetrend() const { return m_detrend; }
    void SetDetrend(Wavelet::DetrendMode detrend) { m_detrend = detrend; }
    Wavelet::WaveletFunctionType GetWaveletFunction() const { return m_function; }
    void SetWaveletFunction(Wavelet::WaveletFunctionType function) { m_function = function; }
    // An order that the function does not have goes to the nearest that it has.
    int GetWaveletOrder() const { return m_order; }
    void SetWaveletOrder(int order) { m_order = order; }
    bool GetIsCoefficientsByDetails() const { return m_coefficientsByDetails; }
    void SetIsCoefficientsByDetails(bool byDetails) { m_coefficientsByDetails = byDetails; }
    bool GetIsBestBasis() const { return m_bestBasis; }
    void SetIsBestBasis(bool bestBasis) { m_bestBasis = bestBasis; }
    int GetTargetVariable() const { return m_targetVariable; }
    void SetTargetVariable(int variable) { m_targetVariable = variable; }
    bool GetIsFastPlot() const { return m_fastPlot; }
    void SetIsFastPlot(bool fastPlot) { m_fastPlot = fastPlot; }
    // Zeros behind the row, up to a power of two.
    bool GetUsePadding() const { return m_padding; }
    void SetUsePadding(bool padding) { m_padding = padding; }

    bool operator==(WaveletOptions const &) const = default;

private:
    DSCalc m_calculation = Uninitialized;
    Wavelet::DetrendMode m_detrend = Wavelet::Mean;
    Wavelet::WaveletFunctionType m_function = Wavelet::Daubechies;
    int m_order = 4;
    int m_targetVariable = 0;
    bool m_coefficientsByDetails = false;
    bool m_bestBasis = false;
    bool m_fastPlot = false;
    bool m_padding = true;
};
