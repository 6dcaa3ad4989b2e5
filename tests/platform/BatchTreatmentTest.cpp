#include "platform/project/BatchPreProcess.h"
#include "platform/project/BatchYVarTreatment.h"
#include "tests/support/RecordingProject.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

using Values = std::vector<double>;

TEST(BatchYVarTreatment, TreatsTheValuesOfOneBatch) {
    struct {
        int treatment;
        Values given, expected;
    } const cases[] = {
        {BatchYVarTreatment::None, {3, none, 1}, {3, none, 1}},
        {9, {3, 1}, {3, 1}},
        {BatchYVarTreatment::Shifted, {none, 3, 5, none, 1}, {none, 0, 2, none, -2}},
        {BatchYVarTreatment::Normalized, {none, 2, 3, none, 6, none}, {none, 0, 0.25, none, 1, none}},
        {BatchYVarTreatment::Normalized, {2, 5, 2}, {none, none, none}},
        {BatchYVarTreatment::Normalized, {4}, {none}},
        {BatchYVarTreatment::Normalized, {5, 4, 1}, {0, 0.25, 1}},
        // A parabola is its own fit; behind its top it stays there.
        {BatchYVarTreatment::Smoothed, {0, 5, 8, 9, 8}, {0, 5, 8, 9, 9}},
        // 1 + 0.2x + 0.5(x² - 2), x = -2..2, has residuals orthogonal to 1, x and x²: here 1, -4, 6, -4, 1.
        {BatchYVarTreatment::Smoothed, {2.6, -3.7, 6, -3.3, 3.4}, {1.6, 1.6, 1.6, 1.6, 2.4}},
        // The index runs on over missing values: 0, 1, 9, 16 are its squares.
        {BatchYVarTreatment::Smoothed, {0, 1, none, 9, 16}, {0, 1, none, 9, 16}},
        {BatchYVarTreatment::Smoothed, {none, 3, none, 7}, {none, 3, none, 7}},
        {BatchYVarTreatment::Smoothed, {7, 3}, {7, 7}},
        {BatchYVarTreatment::Smoothed, {none, 3}, {none, 3}},
        {BatchYVarTreatment::Smoothed, {none, none}, {none, none}},
        {BatchYVarTreatment::Shifted, {}, {}}};
    for (auto const &row : cases) {
        Values values = row.given;
        BatchYVarTreatment::Apply(row.treatment, values);
        for (std::size_t i = 0; i < values.size(); ++i) {
            EXPECT_EQ(std::isnan(values[i]), std::isnan(row.expected[i])) << row.treatment << " at " << i;
            if (!std::isnan(row.expected[i])) {
                EXPECT_NEAR(values[i], row.expected[i], 1e-12) << row.treatment << " at " << i;
            }
        }
    }
}

TEST(BatchYVarTreatment, SmoothsLongBatchesAtALargeLevel) {
    Values values, expected;
    for (int i = 0; i < 20000; ++i)
        expected.push_back(1e9 + 3.0 * i + 1e-4 * i * i);
    values = expected;
    BatchYVarTreatment::Apply(BatchYVarTreatment::Smoothed, values);
    for (std::size_t i = 0; i < values.size(); ++i)
        ASSERT_NEAR(values[i], expected[i], 1e-3) << i;
}

TEST(PSPipe, TreatsEachYVariableAsTheModelSays) {
    auto const project = MakeRecordingProject();
    project->AddBatchModel(1, {"b"});
    project->AddModel(ModelTypeE::PLS, 1, 0, 0, 3, 1);
    project->Model(1).treatment = BatchYVarTreatment::Shifted;
    NCDataMatrix<float> matrix;
    for (std::vector<float> const &row : {std::vector{3.0f, -99.0f}, {5.0f, 1.0f}, {-99.0f, 4.0f}})
        matrix.AppendRow(row);
    NCDataMatrix<float> shifted;
    for (std::vector<float> const &row : {std::vector{0.0f, -99.0f}, {2.0f, 0.0f}, {-99.0f, 3.0f}})
        shifted.AppendRow(row);
    EXPECT_EQ(PSPipe::GetPipeSegment(*project, 1).Forward(matrix), shifted);
    for (int const untreated : {2, 9})
        EXPECT_EQ(PSPipe::GetPipeSegment(*project, untreated).Forward(matrix), matrix);
}

} // namespace
