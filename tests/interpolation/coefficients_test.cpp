#include "interpolation/coefficients.h"

#include <gtest/gtest.h>

namespace {

void expect_coefficients(const std::vector<double>& actual, const std::vector<double>& expected, double tolerance = 1e-9)
{
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "master " << i;
    }
}

TEST(anyCoeffs, WorkedExamples)
{
    expect_coefficients(anyCoeffs({{100}, {200}, {400}}, {300}, false), {0, 0.5, 0.5});
    const MasterPositions square{{0, 0}, {100, 0}, {0, 100}, {100, 100}};
    expect_coefficients(anyCoeffs(square, {25, 50}, false), {0.375, 0.125, 0.375, 0.125});
    expect_coefficients(anyCoeffs(square, {150, 50}, false), {-0.25, 0.75, -0.25, 0.75});
    expect_coefficients(anyCoeffs({{0, 0}, {100, 0}, {0, 100}}, {50, 50}, false), {0, 0.5, 0.5});
}

} // namespace
