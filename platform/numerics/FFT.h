#pragma once

#include "platform/containers/NCDataVector.h"

#include <span>

// Correlation and spectrum of rows. Numbers of the enumerations are kept in saved files. A missing value counts as one
// on the line that is taken off.
struct DATASERIES_API FFT {
    // What is taken off a row, over its observed values, before anything else: nothing, the mean, or the line of least
    // squares.
    enum DetrendMode : int { None = 0, Mean = 1, Linear = 2 };

    // How a power spectrum is scaled: so that it adds up to the variance, or so that a sine of amplitude a on a bin
    // gives a * a / 2 there.
    enum ScalingMode : int { Unbiased = 0, Peaks = 1 };

    // The window over each segment (Welch 1967).
    enum DataWindowMode : int { Bartlett = 0, Hanning = 1, Welch = 2 };

    // r_h = sum of d_i d_(i+h) / sum of d_i^2 for lags h = 0, 1, ..., `lags` of the detrended row d (Box & Jenkins
    // 1976); 0 beyond its end, and all missing for a row that is constant after detrending.
    static void AutoCorrelation(std::span<float const> row, DetrendMode detrend, int lags, NCDataVector<float> &result);
    // r_h = sum of x_i y_(i+h) / sqrt(sum of x^2 times sum of y^2) for h = -lags, ..., lags: a peak at h > 0 tells that
    // y follows x by h. The rows have one length; all missing when one of them is constant after detrending.
    static void CrossCorrelation(std::span<float const> x, std::span<float const> y, DetrendMode detrend, int lags,
                                 NCDataVector<float> &result);
    // The power at frequencies k / segment, k = 0, 1, ..., segment / 2, in units of the sampling frequency: the average
    // of that of all full segments of the row, each detrended and windowed by itself (Welch 1967). Segments follow each
    // other, or with `overlap` begin half a segment apart. All missing when there is none.
    static void PowerSpectrum(std::span<float const> row, int segment, bool overlap, DetrendMode detrend,
                              ScalingMode scaling, DataWindowMode window, NCDataVector<float> &result);
};
