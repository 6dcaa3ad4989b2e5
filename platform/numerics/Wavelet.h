#pragma once

#include "platform/containers/NCDataMatrix.h"

#include <span>
#include <string_view>
#include <vector>

// Wavelet transform of rows (Daubechies 1988, 1992; Mallat 1989): orthogonal, on a row that is continued periodically.
// Numbers of the enumerations are kept in saved files.
//
// A row of length L = 2^J m, m odd, is halved J times into a smooth part and details: it has J + 1 scales, of which the
// first is the smooth part that is left, of m coefficients, and the others are the details, coarse to fine, of m, 2 m,
// 4 m, ... Coefficients stand in the order of their scales.
struct DATASERIES_API Wavelet {
    // The line that is taken off a row of n values: none, its mean, or the line that has the first observed value at
    // position 1 and the last one at n.
    enum DetrendMode : int { None = 0, Mean = 1, Linear = 2 };

    // Families of filters (Daubechies 1992). Orders: 1 to 10 vanishing moments (1 is the filter of Haar), 4 to 9, and 1
    // to 2, with twice as many vanishing moments.
    enum WaveletFunctionType : int { Daubechies = 0, Symmlet = 1, Coiflet = 2 };

    // Their names in saved files; empty for an unknown value, and the first value for an unknown name.
    static char const *DetrendStr(DetrendMode mode);
    static DetrendMode Detrend(std::string_view name);
    static char const *WaveletFunctionStr(WaveletFunctionType function);
    static WaveletFunctionType WaveletFunction(std::string_view name);

    struct Filter {
        std::vector<double> low;  // h, normalised to a sum of sqrt(2)
        std::vector<double> high; // g_k = (-1)^k h_(n-1-k)
    };

    // The filters that were asked for so far, which are kept.
    struct DATASERIES_API WaveletFilters {
        // Forgets them.
        static void CleanUp();
    };

    // An order that the function does not have goes to the nearest that it has. From any thread.
    static Filter GetDecompositionFilter(WaveletFunctionType function, int order);

    // How many scales so many coefficients have; 0 for none.
    static int Scales(int length);
    // Positions from 0 of the coefficients of a scale from 1: first, and behind the last.
    static std::pair<int, int> RangeOfScale(int length, int scale);
    // The length of the transform of a row: itself, or with padding the next power of two.
    static int TransformedLength(int length, bool usePadding);

    // Makes `outRow` the coefficients of `row` less a line, which is told by its values `lo` and `hi` at both ends of
    // the row. A missing value counts as being on that line. Padding puts zeros behind the row.
    static void ForwardTransform(std::span<float const> row, Filter const &filter, DetrendMode detrend, long double &lo,
                                 long double &hi, NCDataVector<float> &outRow, bool usePadding);
    // The way back: the row whose transform has these coefficients, padding included, without its line. A missing
    // coefficient counts as 0.
    static std::vector<double> InverseTransform(std::span<float const> coefficients, Filter const &filter);
    // The line of a row of `length` values at a position from 0.
    static double LineAt(long double lo, long double hi, int position, int length);

    // For each scale, how much of the sum of squares of all coefficients it has, in percent; a row of the table holds
    // the coefficients of one transform. -99 where all coefficients are 0 or missing.
    static NCDataVector<float> CalcWCEnergy(NCDataMatrix<float> const &coefficients);
};
