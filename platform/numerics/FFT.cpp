#include "platform/numerics/FFT.h"

#include "platform/containers/Missing.h"

#include <kissfft/kissfft.hh>

#include <bit>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace {

using Complex = std::complex<double>;

// The line a + b i of least squares through the observed values, or its mean, or nothing.
struct Line {
    double a = 0, b = 0;

    Line(std::span<float const> row, FFT::DetrendMode mode) {
        if (mode == FFT::None)
            return;
        double count = 0, places = 0, values = 0;
        for (std::size_t i = 0; i < row.size(); ++i)
            if (!IsMissing(row[i])) {
                ++count;
                places += static_cast<double>(i);
                values += row[i];
            }
        if (count == 0)
            return;
        double const middle = places / count, mean = values / count;
        double squares = 0, products = 0;
        for (std::size_t i = 0; i < row.size() && mode == FFT::Linear; ++i)
            if (!IsMissing(row[i])) {
                double const place = static_cast<double>(i) - middle;
                squares += place * place;
                products += place * (row[i] - mean);
            }
        b = squares > 0 ? products / squares : 0;
        a = mean - b * middle;
    }
    double At(std::size_t i) const { return a + b * static_cast<double>(i); }
};

std::vector<double> Detrended(std::span<float const> row, FFT::DetrendMode mode) {
    Line const line(row, mode);
    std::vector<double> values(row.size());
    for (std::size_t i = 0; i < row.size(); ++i)
        values[i] = IsMissing(row[i]) ? 0 : row[i] - line.At(i);
    return values;
}

// Sum of the squares; 0 where they are but rounding of what was taken off.
double SquaresOf(std::vector<double> const &detrended, std::span<float const> row) {
    double squares = 0, all = 0;
    for (std::size_t i = 0; i < row.size(); ++i) {
        squares += detrended[i] * detrended[i];
        all += IsMissing(row[i]) ? 0 : static_cast<double>(row[i]) * row[i];
    }
    return squares <= 1e-24 * all ? 0 : squares;
}

std::vector<Complex> Transformed(std::vector<Complex> const &values, bool inverse) {
    std::vector<Complex> result(values.size());
    kissfft<double>(values.size(), inverse).transform(values.data(), result.data());
    return result;
}

// Sums of x_i y_(i+h) for h = 0, 1, ..., at the place of h, and for h = -1, -2, ... from the end.
std::vector<Complex> Correlated(std::vector<double> const &x, std::vector<double> const &y) {
    std::size_t const size = std::bit_ceil(2 * x.size());
    auto const transform = [size](std::vector<double> const &values) {
        std::vector<Complex> padded(values.begin(), values.end());
        padded.resize(size);
        return Transformed(padded, false);
    };
    std::vector<Complex> const ofX = transform(x);
    std::vector<Complex> product = &x == &y ? ofX : transform(y);
    for (std::size_t k = 0; k < size; ++k)
        product[k] *= std::conj(ofX[k]) / static_cast<double>(size);
    return Transformed(product, true);
}

// At lags from `first` on: as many as the result holds.
void PutCorrelations(std::vector<Complex> const &sums, int length, double squares, int first,
                     NCDataVector<float> &result) {
    int lag = first;
    for (float &value : result.MutableValues()) {
        auto const place = static_cast<std::size_t>(lag < 0 ? static_cast<int>(sums.size()) + lag : lag);
        value = std::abs(lag) >= length ? 0.0f : ToStored(sums[place].real() / squares);
        ++lag;
    }
}

double WindowAt(FFT::DataWindowMode window, double place, double size) {
    double const aside = (place - size / 2) / (size / 2);
    switch (window) {
    case FFT::Bartlett:
        return 1 - std::abs(aside);
    case FFT::Hanning:
        return (1 - std::cos(2 * std::numbers::pi * place / size)) / 2;
    default:
        return 1 - aside * aside;
    }
}

} // namespace

void FFT::AutoCorrelation(std::span<float const> row, DetrendMode detrend, int lags, NCDataVector<float> &result) {
    result = NCDataVector<float>(lags + 1, missingValue);
    std::vector<double> const values = Detrended(row, detrend);
    if (double const squares = SquaresOf(values, row); squares > 0)
        PutCorrelations(Correlated(values, values), static_cast<int>(row.size()), squares, 0, result);
}

void FFT::CrossCorrelation(std::span<float const> x, std::span<float const> y, DetrendMode detrend, int lags,
                           NCDataVector<float> &result) {
    result = NCDataVector<float>(2 * lags + 1, missingValue);
    std::vector<double> const ofX = Detrended(x, detrend), ofY = Detrended(y, detrend);
    double const squares = SquaresOf(ofX, x), others = SquaresOf(ofY, y);
    if (squares > 0 && others > 0)
        PutCorrelations(Correlated(ofX, ofY), static_cast<int>(x.size()), std::sqrt(squares) * std::sqrt(others), -lags,
                        result);
}

void FFT::PowerSpectrum(std::span<float const> row, int segment, bool overlap, DetrendMode detrend, ScalingMode scaling,
                        DataWindowMode window, NCDataVector<float> &result) {
    auto const size = static_cast<std::size_t>(segment);
    result = NCDataVector<float>(segment / 2 + 1, missingValue);
    if (segment < 1 || row.size() < size)
        return;
    std::vector<double> weights(size);
    double sum = 0, squares = 0;
    for (std::size_t j = 0; j < size; ++j) {
        weights[j] = WindowAt(window, static_cast<double>(j), segment);
        sum += weights[j];
        squares += weights[j] * weights[j];
    }
    std::vector<double> power(size / 2 + 1);
    std::size_t const step = overlap ? std::max<std::size_t>(1, size / 2) : size;
    double segments = 0;
    for (std::size_t first = 0; first + size <= row.size(); first += step, ++segments) {
        std::vector<double> const values = Detrended(row.subspan(first, size), detrend);
        std::vector<Complex> windowed(size);
        for (std::size_t j = 0; j < size; ++j)
            windowed[j] = weights[j] * values[j];
        std::vector<Complex> const transformed = Transformed(windowed, false);
        for (std::size_t k = 0; k < power.size(); ++k)
            power[k] += (k == 0 || 2 * k == size ? 1 : 2) * std::norm(transformed[k]);
    }
    double const scale = segments * (scaling == Peaks ? sum * sum : segment * squares);
    auto to = result.MutableValues().begin();
    for (double const value : power)
        *to++ = ToStored(value / scale);
}
