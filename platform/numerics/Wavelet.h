#pragma once

// Wavelet transform of rows: its choices. Numbers are kept in saved files.
struct Wavelet {
    // The line that is taken off a row: none, its mean, or the line from its first to its last observed value.
    enum DetrendMode : int { None = 0, Mean = 1, Linear = 2 };

    // Families of filters (Daubechies 1992). Orders: 1 to 10 vanishing moments, 4 to 9, and 1 to 2.
    enum WaveletFunctionType : int { Daubechies = 0, Symmlet = 1, Coiflet = 2 };
};
