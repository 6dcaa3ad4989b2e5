#include "platform/numerics/FFT.h"

#include "platform/containers/Missing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <random>
#include <vector>

namespace {

using Row = std::vector<float>;

Row const chartRow{10, 12, 11, 13, 9, 14, 15, 13, 16, 12};

void ExpectNear(NCDataVector<float> const &found, Row const &expected, double tolerance = 1e-6) {
    ASSERT_EQ(found.Size(), static_cast<int>(expected.size()));
    for (int i = 1; i <= found.Size(); ++i)
        EXPECT_NEAR(found[i], expected[static_cast<std::size_t>(i - 1)], tolerance) << i;
}

Row Cosine(int size, double amplitude, int period) {
    Row row;
    for (int i = 0; i < size; ++i)
        row.push_back(static_cast<float>(amplitude * std::cos(2 * std::numbers::pi * i / period + 0.3)));
    return row;
}

} // namespace

TEST(FFT, CorrelatesRows) {
    NCDataVector<float> found;
    struct {
        FFT::DetrendMode detrend;
        Row expected;
    } const cases[] = {{FFT::Mean, {1, -0.017647f, 0.235294f, 0.041176f}},
                       {FFT::None, {1, 0.899065f, 0.785047f, 0.690343f}},
                       {FFT::Linear, {1, -0.483347f, 0.090396f, -0.080322f}}};
    for (auto const &one : cases) {
        FFT::AutoCorrelation(chartRow, one.detrend, 3, found);
        ExpectNear(found, one.expected);
    }
    Row rotated = chartRow;
    std::rotate(rotated.begin(), rotated.end() - 2, rotated.end());
    FFT::CrossCorrelation(chartRow, rotated, FFT::Mean, 3, found);
    ExpectNear(found, {0.029412f, -0.329412f, 0.017647f, 0.035294f, 0.052941f, 0.705882f, -0.017647f});
    // Rows of several blocks, against the sums themselves.
    std::mt19937 random(3);
    std::normal_distribution<float> normal;
    for (auto const &[size, lags] : {std::pair(1, 2), {7, 6}, {8193, 40}, {20000, 3000}}) {
        Row x(static_cast<std::size_t>(size)), y = x;
        std::ranges::generate(x, [&] { return normal(random); });
        std::ranges::generate(y, [&] { return normal(random); });
        // With cells that are missing, which count as 0 where nothing is taken off.
        for (std::size_t i = 3; i < x.size(); i += 11)
            x[i] = y[x.size() - i] = missingValue;
        FFT::CrossCorrelation(x, y, FFT::None, lags, found);
        std::ranges::replace(x, missingValue, 0.0f);
        std::ranges::replace(y, missingValue, 0.0f);
        double const norm = std::sqrt(std::inner_product(x.begin(), x.end(), x.begin(), 0.0) *
                                      std::inner_product(y.begin(), y.end(), y.begin(), 0.0));
        for (int const lag : {-lags, -1, 0, 1, lags}) {
            double sum = 0;
            for (int i = std::max(0, -lag); i < std::min(size, size - lag); ++i)
                sum += static_cast<double>(x[static_cast<std::size_t>(i)]) * y[static_cast<std::size_t>(i + lag)];
            EXPECT_NEAR(found[lags + 1 + lag], sum / norm, 1e-6) << size << ' ' << lag;
        }
    }
    // Symmetric with itself, 0 beyond the ends, missing where there is nothing to correlate.
    FFT::CrossCorrelation(chartRow, chartRow, FFT::Linear, 12, found);
    for (int lag = 0; lag <= 12; ++lag)
        EXPECT_NEAR(found[13 + lag], found[13 - lag], 1e-6) << lag;
    EXPECT_EQ(found[1], 0);
    FFT::AutoCorrelation(Row(5, 0.1f), FFT::Mean, 2, found);
    ExpectNear(found, Row(3, missingValue), 0);
    FFT::AutoCorrelation(Row{1, 3, 5, missingValue, 9}, FFT::Linear, 1, found);
    ExpectNear(found, Row(2, missingValue), 0);
    FFT::CrossCorrelation(Row{1, 2, missingValue, 2, 1}, Row(5, missingValue), FFT::None, 1, found);
    ExpectNear(found, Row(3, missingValue), 0);
    // A missing value counts as one on the line.
    FFT::AutoCorrelation(Row{1, 2, missingValue, 4, 3}, FFT::Mean, 4, found);
    ExpectNear(found, {1, (0.75f + 0.75f) / 5, (-0.75f) / 5, (-2.25f - 0.25f) / 5, -0.75f / 5});
}

TEST(FFT, TellsThePowerOfFrequencies) {
    NCDataVector<float> found;
    Row row = chartRow;
    row.insert(row.end(), chartRow.begin(), chartRow.begin() + 6);
    FFT::PowerSpectrum(row, 16, false, FFT::Mean, FFT::Unbiased, FFT::Hanning, found);
    ExpectNear(found,
               {0.193127f, 0.967537f, 1.263286f, 0.566896f, 0.064987f, 0.556540f, 1.036392f, 0.325642f, 0.006181f});
    for (auto const window : {FFT::Hanning, FFT::Bartlett, FFT::Welch}) {
        FFT::PowerSpectrum(Cosine(64, 3, 4), 16, true, FFT::Mean, FFT::Peaks, window, found);
        EXPECT_NEAR(found[5], 4.5, window == FFT::Welch ? 0.1 : 1e-5) << window;
    }
    FFT::PowerSpectrum(row, 17, false, FFT::Mean, FFT::Unbiased, FFT::Hanning, found);
    ExpectNear(found, Row(9, missingValue), 0);
    // Without detrending the powers of one segment add up to its weighted sum of squares; any length goes.
    std::mt19937 random(1);
    std::normal_distribution<float> normal;
    for (int const size : {16, 30, 45, 97})
        for (auto const window : {FFT::Hanning, FFT::Bartlett, FFT::Welch}) {
            Row noise(static_cast<std::size_t>(size));
            std::ranges::generate(noise, [&] { return normal(random); });
            FFT::PowerSpectrum(noise, size, false, FFT::None, FFT::Unbiased, window, found);
            double squares = 0, weights = 0, sum = 0;
            for (int j = 0; j < size; ++j) {
                double const aside = (j - size / 2.0) / (size / 2.0);
                double const w = window == FFT::Hanning    ? (1 - std::cos(2 * std::numbers::pi * j / size)) / 2
                                 : window == FFT::Bartlett ? 1 - std::abs(aside)
                                                           : 1 - aside * aside;
                squares += std::pow(w * noise[static_cast<std::size_t>(j)], 2);
                weights += w * w;
            }
            for (float const power : found.Values())
                sum += power;
            EXPECT_NEAR(sum, squares / weights, 1e-5 * sum) << size << ' ' << window;
        }
}
