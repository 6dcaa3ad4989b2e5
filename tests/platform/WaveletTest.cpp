#include "platform/numerics/Wavelet.h"
#include "platform/project/ProjectDataWavelet.h"
#include "platform/text/Exception.h"
#include "tests/support/Dice.h"
#include "tests/support/RecordingProject.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>
#include <numeric>

namespace {

using Row = std::vector<float>;

struct Function {
    Wavelet::WaveletFunctionType type;
    int order;
    int moments;
};

std::vector<Function> AllFunctions() {
    std::vector<Function> all = {{Wavelet::Coiflet, 1, 2}, {Wavelet::Coiflet, 2, 4}};
    for (int order = 1; order <= 10; ++order)
        all.push_back({Wavelet::Daubechies, order, order});
    for (int order = 4; order <= 9; ++order)
        all.push_back({Wavelet::Symmlet, order, order});
    return all;
}

struct Transformed {
    NCDataVector<float> coefficients;
    long double lo = 0, hi = 0;
};

Transformed Transform(Row const &row, Wavelet::Filter const &filter, Wavelet::DetrendMode detrend, bool usePadding) {
    Transformed result;
    Wavelet::ForwardTransform(row, filter, detrend, result.lo, result.hi, result.coefficients, usePadding);
    return result;
}

NCDataVector<float> EnergyOf(NCDataVector<float> const &coefficients) {
    return Wavelet::CalcWCEnergy(NCDataMatrix<float>(coefficients));
}

void ExpectNear(std::span<float const> found, Row const &expected, double tolerance) {
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_NEAR(found[i], expected[i], tolerance) << "at " << i;
}

} // namespace

// Daubechies 1992, tables 6.1, 6.3 and 8.1.
TEST(Wavelet, FiltersArePublishedOnes) {
    using std::numbers::sqrt2;
    double const root = std::sqrt(7.0);
    struct {
        Wavelet::WaveletFunctionType type;
        int order;
        std::vector<double> low;
    } const cases[] = {
        {Wavelet::Daubechies, 0, {1 / sqrt2, 1 / sqrt2}},
        {Wavelet::Daubechies, 2, {0.482963, 0.836516, 0.224144, -0.129410}},
        {Wavelet::Daubechies, 4, {0.230378, 0.714847, 0.630881, -0.027984, -0.187035, 0.030841, 0.032883, -0.010597}},
        {Wavelet::Symmlet, 1, {-0.075766, -0.029636, 0.497619, 0.803739, 0.297858, -0.099220, -0.012604, 0.032223}},
        {Wavelet::Coiflet,
         -1,
         {(1 - root) / 16 / sqrt2, (5 + root) / 16 / sqrt2, (7 + root) / 8 / sqrt2, (7 - root) / 8 / sqrt2,
          (1 - root) / 16 / sqrt2, (root - 3) / 16 / sqrt2}}};
    for (auto const &c : cases) {
        Wavelet::Filter const filter = Wavelet::GetDecompositionFilter(c.type, c.order);
        ASSERT_EQ(filter.low.size(), c.low.size());
        for (std::size_t k = 0; k < c.low.size(); ++k)
            EXPECT_NEAR(filter.low[k], c.low[k], 6e-7) << c.type << ' ' << c.order << " at " << k;
        Wavelet::WaveletFilters::CleanUp();
        EXPECT_EQ(Wavelet::GetDecompositionFilter(c.type, c.order).low, filter.low);
    }
}

TEST(Wavelet, FiltersAreOrthogonalAndLoseNoMoment) {
    for (auto const &[type, order, moments] : AllFunctions()) {
        SCOPED_TRACE(std::to_string(type) + " " + std::to_string(order));
        auto const [low, high] = Wavelet::GetDecompositionFilter(type, order);
        EXPECT_EQ(low.size(), static_cast<std::size_t>(type == Wavelet::Coiflet ? 6 * order : 2 * order));
        EXPECT_NEAR(std::accumulate(low.begin(), low.end(), 0.0), std::numbers::sqrt2, 1e-14);
        for (std::size_t shift = 0; shift < low.size(); shift += 2) {
            double const same =
                std::inner_product(low.begin() + static_cast<std::ptrdiff_t>(shift), low.end(), low.begin(), 0.0);
            EXPECT_NEAR(same, shift == 0 ? 1 : 0, 1e-11);
        }
        for (int moment = 0; moment < moments; ++moment) {
            double sum = 0, size = 0;
            for (std::size_t k = 0; k < high.size(); ++k) {
                sum += std::pow(k, moment) * high[k];
                size += std::pow(k, moment) * std::abs(high[k]);
            }
            EXPECT_NEAR(sum / size, 0, 1e-9) << "moment " << moment;
        }
        auto const largest = std::ranges::max_element(low) - low.begin();
        EXPECT_TRUE(type != Wavelet::Symmlet || largest < order);
    }
}

TEST(Wavelet, CoefficientsAndEnergiesOfSmallRow) {
    struct {
        int order;
        Row coefficients, energies;
    } const cases[] = {{1,
                        {0, -4.949747f, -1.5f, -2.5f, -1.414214f, -2.121320f, -1.414214f, 0.707107f},
                        {0, 58.333333f, 20.238095f, 21.428571f}},
                       {2,
                        {0, -3.851011f, 0.399519f, -3.363621f, -1.543623f, -0.931251f, 1.448889f, -3.216656f},
                        {0, 35.310210f, 27.317999f, 37.371791f}}};
    for (auto const &c : cases) {
        auto const filter = Wavelet::GetDecompositionFilter(Wavelet::Daubechies, c.order);
        auto const result = Transform({1, 3, 2, 5, 4, 6, 8, 7}, filter, Wavelet::Mean, true);
        ExpectNear(result.coefficients.Values(), c.coefficients, 2e-6);
        ExpectNear(EnergyOf(result.coefficients).Values(), c.energies, 2e-5);
    }
}

TEST(Wavelet, TakesLineOffThroughObservedValues) {
    struct {
        Row row;
        Wavelet::DetrendMode detrend;
        double lo, hi;
        Row left;
    } const cases[] = {{{-99, 2, 4, 9}, Wavelet::None, 0, 0, {0, 2, 4, 9}},
                       {{-99, 2, 4, 9}, Wavelet::Mean, 5, 5, {0, -3, -1, 4}},
                       {{3, 1, -99, 6, -99}, Wavelet::Linear, 3, 6, {0, -2.75f, 0, 0.75f, 0}},
                       {{7}, Wavelet::Linear, 7, 7, {0}},
                       {{-99, -99}, Wavelet::Mean, 0, 0, {0, 0}},
                       {{}, Wavelet::Linear, 0, 0, {}}};
    auto const filter = Wavelet::GetDecompositionFilter(Wavelet::Symmlet, 4);
    for (auto const &c : cases) {
        auto const result = Transform(c.row, filter, c.detrend, false);
        EXPECT_DOUBLE_EQ(static_cast<double>(result.lo), c.lo);
        EXPECT_DOUBLE_EQ(static_cast<double>(result.hi), c.hi);
        std::vector<double> const left = Wavelet::InverseTransform(result.coefficients.Values(), filter);
        ExpectNear(Row(left.begin(), left.end()), c.left, 1e-6);
    }
    // Nothing is left of a row on the line.
    EXPECT_EQ(EnergyOf(Transform({1, 2, 3}, filter, Wavelet::Linear, true).coefficients),
              (NCDataVector<float>{-99, -99, -99}));
}

// For each function and length: the transform keeps the sum of squares, its energies add to 100, and its scales to the
// row.
TEST(Wavelet, ScalesAddUpToRow) {
    auto const project = MakeRecordingProject();
    Dice dice(1);
    for (auto const &[type, order, moments] : AllFunctions())
        for (int const length : {3, 7, 12, 32, 100})
            for (bool const usePadding : {false, true}) {
                SCOPED_TRACE(std::to_string(type) + " " + std::to_string(order) + " of " + std::to_string(length));
                Row row;
                for (int i = 0; i < length; ++i)
                    row.push_back(static_cast<float>(dice(-1000, 1000)) / 100);
                WaveletOptions options;
                options.SetWaveletFunction(type);
                options.SetWaveletOrder(order);
                auto const filter = Wavelet::GetDecompositionFilter(type, order);
                NCDataVector<float> const none = Transform(row, filter, Wavelet::None, usePadding).coefficients;
                EXPECT_NEAR(std::inner_product(none.begin(), none.end(), none.begin(), 0.0) /
                                std::inner_product(row.begin(), row.end(), row.begin(), 0.0),
                            1, 1e-5);
                auto const result = Transform(row, filter, Wavelet::Linear, usePadding);
                NCDataVector<float> const energy = EnergyOf(result.coefficients);
                EXPECT_NEAR(energy.GetMean() * energy.Size(), 100, 1e-3);
                constexpr std::array<bool, 8> all = {true, true, true, true, true, true, true, true};
                ColumnIDs const columns(ColumnIDs::IntegerList(length, 0), project, 0);
                TablePtr const table = ProjectDataWavelet(*project).GetWaveletStructure(
                    result.coefficients, &options, all.data(), energy, &columns, result.lo, result.hi);
                Row sums(row.size());
                for (int scale = 1; scale <= table->Rows(); ++scale)
                    for (std::size_t i = 0; i < row.size(); ++i)
                        sums[i] += table->GetMatrix().Row(scale)[i];
                ExpectNear(sums, row, 1e-4);
            }
}

TEST(Wavelet, StructureHasSelectedScales) {
    auto const project = MakeRecordingProject();
    WaveletOptions options;
    options.SetWaveletOrder(1);
    // 12 = 4 * 3: two halvings
    Row const row = {1, 5, 2, 2, 8, 4, 1, 1, 3, 9, 2, 6};
    auto const filter = Wavelet::GetDecompositionFilter(Wavelet::Daubechies, 1);
    auto const result = Transform(row, filter, Wavelet::None, false);
    NCDataVector<float> const energy = EnergyOf(result.coefficients);
    ColumnIDs const columns(ColumnIDs::IntegerList(12, 0), project, 0);
    auto const ask = [&](std::array<bool, 3> const &selection) {
        return ProjectDataWavelet(*project).GetWaveletStructure(result.coefficients, &options, selection.data(), energy,
                                                                &columns, 0, 0);
    };
    TablePtr const table = ask({true, false, true});
    ASSERT_TRUE(table);
    EXPECT_EQ(table->GetRowName(1) + ", " + table->GetRowName(2), "Scale 1, Scale 3");
    // means of four, and what two neighbours differ from their mean
    ExpectNear(table->GetMatrix().Row(1), {2.5, 2.5, 2.5, 2.5, 3.5, 3.5, 3.5, 3.5, 5, 5, 5, 5}, 1e-6);
    ExpectNear(table->GetMatrix().Row(2), {-2, 2, 0, 0, 2, -2, 0, 0, -3, 3, -2, 2}, 1e-6);
    EXPECT_FALSE(ask({false, false, false}));
    ColumnIDs const more(ColumnIDs::IntegerList(13, 0), project, 0);
    bool const selection[4] = {true, true, true, true};
    ProjectDataWavelet const wavelet(*project);
    EXPECT_THROW(wavelet.GetWaveletStructure(result.coefficients, &options, selection, energy, &more, 0, 0),
                 NCInternalError);
    EXPECT_THROW(wavelet.GetWaveletStructure(result.coefficients, &options, selection, NCDataVector<float>(4, 25),
                                             &columns, 0, 0),
                 NCInternalError);
}
