#include "platform/numerics/Wavelet.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>
#include <tuple>

namespace {

constexpr char const *detrendNames[] = {"None", "Mean", "Linear"};
constexpr char const *functionNames[] = {"Daubechies", "Symmlet", "Coiflet"};

char const *NameOf(std::span<char const *const> names, int value) {
    return value >= 0 && value < static_cast<int>(names.size()) ? names[static_cast<std::size_t>(value)] : "";
}

int ValueOf(std::span<char const *const> names, std::string_view name) {
    auto const found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? 0 : static_cast<int>(found - names.begin());
}

// Whether so many coefficients are halved once more.
bool IsHalved(std::size_t length) {
    return length >= 2 && length % 2 == 0;
}

// Works on the first `length` values: the smooth part goes in front, the details behind.
void Halve(std::vector<double> &values, std::size_t length, Wavelet::Filter const &filter, std::vector<double> &room) {
    std::size_t const half = length / 2;
    for (std::size_t i = 0; i < half; ++i) {
        double smooth = 0;
        double detail = 0;
        std::size_t at = 2 * i;
        for (std::size_t k = 0; k < filter.low.size(); ++k) {
            smooth += filter.low[k] * values[at];
            detail += filter.high[k] * values[at];
            at = at + 1 == length ? 0 : at + 1;
        }
        room[i] = smooth;
        room[half + i] = detail;
    }
    std::copy_n(room.begin(), length, values.begin());
}

// Undoes it: the transform is orthogonal.
void Join(std::vector<double> &values, std::size_t length, Wavelet::Filter const &filter, std::vector<double> &room) {
    std::size_t const half = length / 2;
    std::fill_n(room.begin(), length, 0.0);
    for (std::size_t i = 0; i < half; ++i) {
        std::size_t at = 2 * i;
        for (std::size_t k = 0; k < filter.low.size(); ++k) {
            room[at] += filter.low[k] * values[i] + filter.high[k] * values[half + i];
            at = at + 1 == length ? 0 : at + 1;
        }
    }
    std::copy_n(room.begin(), length, values.begin());
}

// The values of the line at both ends.
std::pair<double, double> LineOf(std::span<float const> row, Wavelet::DetrendMode detrend) {
    auto const isObserved = [](float value) { return !IsMissing(value); };
    auto const first = std::ranges::find_if(row, isObserved);
    if (detrend == Wavelet::None || first == row.end())
        return {0, 0};
    if (detrend == Wavelet::Linear)
        return {*first, *std::find_if(row.rbegin(), row.rend(), isObserved)};
    double sum = 0;
    std::size_t count = 0;
    for (float const value : row)
        if (isObserved(value)) {
            sum += value;
            ++count;
        }
    double const mean = sum / static_cast<double>(count);
    return {mean, mean};
}

} // namespace

char const *Wavelet::DetrendStr(DetrendMode mode) {
    return NameOf(detrendNames, mode);
}
Wavelet::DetrendMode Wavelet::Detrend(std::string_view name) {
    return static_cast<DetrendMode>(ValueOf(detrendNames, name));
}
char const *Wavelet::WaveletFunctionStr(WaveletFunctionType function) {
    return NameOf(functionNames, function);
}
Wavelet::WaveletFunctionType Wavelet::WaveletFunction(std::string_view name) {
    return static_cast<WaveletFunctionType>(ValueOf(functionNames, name));
}

int Wavelet::Scales(int length) {
    return length < 1 ? 0 : 1 + std::countr_zero(static_cast<unsigned>(length));
}

std::pair<int, int> Wavelet::RangeOfScale(int length, int scale) {
    int const halvings = Scales(length) - 1;
    return scale == 1 ? std::pair(0, length >> halvings)
                      : std::pair(length >> (halvings - scale + 2), length >> (halvings - scale + 1));
}

int Wavelet::TransformedLength(int length, bool usePadding) {
    return usePadding && length > 0 ? static_cast<int>(std::bit_ceil(static_cast<unsigned>(length))) : length;
}

double Wavelet::LineAt(long double lo, long double hi, int position, int length) {
    return static_cast<double>(length > 1 ? lo + (hi - lo) * position / (length - 1) : lo);
}

void Wavelet::ForwardTransform(std::span<float const> row, Filter const &filter, DetrendMode detrend, long double &lo,
                               long double &hi, NCDataVector<float> &outRow, bool usePadding) {
    int const length = static_cast<int>(row.size());
    std::tie(lo, hi) = LineOf(row, detrend);
    std::vector<double> values(static_cast<std::size_t>(TransformedLength(length, usePadding)));
    for (int i = 0; i < length; ++i)
        if (float const value = row[static_cast<std::size_t>(i)]; !IsMissing(value))
            values[static_cast<std::size_t>(i)] = value - LineAt(lo, hi, i, length);
    std::vector<double> room(values.size());
    for (std::size_t left = values.size(); IsHalved(left); left /= 2)
        Halve(values, left, filter, room);
    outRow.resize(static_cast<int>(values.size()));
    std::ranges::transform(values, outRow.MutableValues().begin(), ToStored);
}

std::vector<double> Wavelet::InverseTransform(std::span<float const> coefficients, Filter const &filter) {
    std::vector<double> values(coefficients.size());
    std::ranges::transform(coefficients, values.begin(), [](float value) { return IsMissing(value) ? 0 : value; });
    std::vector<double> room(values.size());
    std::size_t length = values.size();
    while (IsHalved(length))
        length /= 2;
    while (length < values.size()) {
        length *= 2;
        Join(values, length, filter, room);
    }
    return values;
}

NCDataVector<float> Wavelet::CalcWCEnergy(NCDataMatrix<float> const &coefficients) {
    int const scales = Scales(coefficients.Columns());
    std::vector<double> squares(static_cast<std::size_t>(scales));
    for (int row = 1; row <= coefficients.Rows(); ++row) {
        std::span<float const> const values = coefficients.Row(row);
        for (int scale = 1; scale <= scales; ++scale) {
            auto const [first, end] = RangeOfScale(coefficients.Columns(), scale);
            for (float const value : std::span(values.begin() + first, values.begin() + end))
                if (!IsMissing(value))
                    squares[static_cast<std::size_t>(scale - 1)] += static_cast<double>(value) * value;
        }
    }
    double const all = std::accumulate(squares.begin(), squares.end(), 0.0);
    NCDataVector<float> energy(scales);
    std::ranges::transform(squares, energy.MutableValues().begin(),
                           [all](double square) { return ToStored(100 * square / all); });
    return energy;
}
