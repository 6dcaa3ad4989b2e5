#include "platform/numerics/FFT.h"

#include "platform/containers/Missing.h"

#include <kissfft/kissfft.hh>

#include <algorithm>
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

// The Fourier transforms of real rows of one length: frequencies 0 to half of it.
class RealTransform {
public:
    explicit RealTransform(std::size_t size)
        : m_size(size), m_isEven(size % 2 == 0), m_transform(m_isEven ? size / 2 : size, false),
          m_complex(m_isEven ? 0 : size) {}

    void operator()(std::vector<double> const &row, std::vector<Complex> &result) {
        result.resize(m_isEven ? m_size / 2 + 1 : m_size);
        if (m_isEven) {
            m_transform.transform_real(row.data(), result.data());
            // The last one comes beside the first; both are real.
            result.back() = result.front().imag();
            result.front() = result.front().real();
        } else {
            std::copy(row.begin(), row.end(), m_complex.begin());
            m_transform.transform(m_complex.data(), result.data());
            result.resize(m_size / 2 + 1);
        }
    }

private:
    std::size_t m_size;
    bool m_isEven;
    kissfft<double> m_transform;
    std::vector<Complex> m_complex;
};

// The row of an even length that has this transform.
std::vector<double> BackTransformed(std::vector<Complex> const &spectrum) {
    std::size_t const half = spectrum.size() - 1, size = 2 * half;
    std::vector<Complex> all(spectrum), result(size);
    for (std::size_t k = half + 1; k < size; ++k)
        all.push_back(std::conj(spectrum[size - k]));
    kissfft<double>(size, true).transform(all.data(), result.data());
    std::vector<double> values;
    for (Complex const &value : result)
        values.push_back(value.real() / static_cast<double>(size));
    return values;
}

// Sums of x_i y_(i+h) for h = 0, 1, ..., lags, which are at least 0. Long rows go through the cache in blocks, whose
// products add up.
std::vector<double> Products(std::vector<double> const &x, std::vector<double> const &y, std::size_t lags) {
    constexpr std::size_t usual = 8192;
    std::size_t const size =
        std::bit_ceil(std::max<std::size_t>(2, std::min(x.size() + lags, std::max(usual, 4 * lags))));
    std::size_t const step = size - lags;
    RealTransform transform(size);
    std::vector<Complex> sum(size / 2 + 1), ofX, ofY;
    std::vector<double> block(size);
    for (std::size_t first = 0; first < x.size(); first += step) {
        auto const put = [&](std::vector<double> const &row, std::size_t count) {
            std::size_t const part = std::min(count, row.size() - first);
            std::fill(std::copy_n(row.begin() + static_cast<std::ptrdiff_t>(first), part, block.begin()), block.end(),
                      0);
        };
        put(x, step);
        transform(block, ofX);
        put(y, size);
        transform(block, ofY);
        for (std::size_t k = 0; k < sum.size(); ++k)
            sum[k] += std::conj(ofX[k]) * ofY[k];
    }
    std::vector<double> products = BackTransformed(sum);
    products.resize(lags + 1);
    return products;
}

// The lags of a result that lie within a row; those beyond have no product.
std::size_t Within(int lags, std::span<float const> row) {
    return std::min(static_cast<std::size_t>(lags), row.size() - 1);
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
    double const squares = SquaresOf(values, row);
    if (squares == 0)
        return;
    result.SetAllValues(0);
    std::vector<double> const products = Products(values, values, Within(lags, row));
    for (std::size_t lag = 0; lag < products.size(); ++lag)
        result(static_cast<int>(lag) + 1) = ToStored(products[lag] / squares);
}

void FFT::CrossCorrelation(std::span<float const> x, std::span<float const> y, DetrendMode detrend, int lags,
                           NCDataVector<float> &result) {
    result = NCDataVector<float>(2 * lags + 1, missingValue);
    std::vector<double> const ofX = Detrended(x, detrend), ofY = Detrended(y, detrend);
    double const squares = std::sqrt(SquaresOf(ofX, x)) * std::sqrt(SquaresOf(ofY, y));
    if (squares == 0)
        return;
    result.SetAllValues(0);
    std::vector<double> const after = Products(ofX, ofY, Within(lags, x)), before = Products(ofY, ofX, Within(lags, x));
    for (std::size_t lag = 0; lag < after.size(); ++lag) {
        result(lags + 1 + static_cast<int>(lag)) = ToStored(after[lag] / squares);
        result(lags + 1 - static_cast<int>(lag)) = ToStored(before[lag] / squares);
    }
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
    RealTransform transform(size);
    std::vector<Complex> transformed;
    for (std::size_t first = 0; first + size <= row.size(); first += step, ++segments) {
        std::vector<double> values = Detrended(row.subspan(first, size), detrend);
        for (std::size_t j = 0; j < size; ++j)
            values[j] *= weights[j];
        transform(values, transformed);
        for (std::size_t k = 0; k < power.size(); ++k)
            power[k] += (k == 0 || 2 * k == size ? 1 : 2) * std::norm(transformed[k]);
    }
    double const scale = segments * (scaling == Peaks ? sum * sum : segment * squares);
    auto to = result.MutableValues().begin();
    for (double const value : power)
        *to++ = ToStored(value / scale);
}
