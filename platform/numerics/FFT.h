#pragma once

// Correlation and spectrum of rows: their choices. Numbers are kept in saved files.
struct FFT {
    // What is taken off a row, over its observed values, before anything else.
    enum DetrendMode : int { None = 0, Mean = 1, Linear = 2 };

    // How a power spectrum is scaled: so that it adds up to the variance, or so that a sine of amplitude a on a bin
    // gives a * a / 2 there.
    enum ScalingMode : int { Unbiased = 0, Peaks = 1 };

    // The window over each segment (Welch 1967).
    enum DataWindowMode : int { Bartlett = 0, Hanning = 1, Welch = 2 };
};
