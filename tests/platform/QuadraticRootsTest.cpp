#include "platform/QuadraticRoots.h"

#include <gtest/gtest.h>

#include <algorithm>

TEST(QuadraticRoots, TwoOneOrNoneAsTheCoefficientsAllow)
{
    double r1, r2;
    VLSolveQuadratic(1, -3, 2, r1, r2);
    EXPECT_DOUBLE_EQ(std::max(r1, r2), 2);
    EXPECT_DOUBLE_EQ(std::min(r1, r2), 1);
    VLSolveQuadratic(1, -2, 1, r1, r2);
    EXPECT_EQ(r1, 1);
    EXPECT_EQ(r2, 1) << "a double root comes twice";
    VLSolveQuadratic(1e-13, 2, -4, r1, r2);
    EXPECT_DOUBLE_EQ(r1, 2) << "a leading coefficient below 1e-12 leaves a line";
    EXPECT_EQ(r2, VLUnsetValue);
    VLSolveQuadratic(1e-12, 2, -4, r1, r2);
    EXPECT_NE(r2, VLUnsetValue) << "1e-12 itself is no longer below";
    VLSolveQuadratic(0, 1e-12, -1e-12, r1, r2);
    EXPECT_DOUBLE_EQ(r1, 1);
    VLSolveQuadratic(1e-13, 1e-13, 1, r1, r2);
    EXPECT_EQ(r1, VLUnsetValue);
    VLSolveQuadratic(1, 0, 1, r1, r2);
    EXPECT_EQ(r1, VLUnsetValue);
    EXPECT_EQ(r2, VLUnsetValue);

    // The roots keep the precision asked for: in double these two would be one.
    long double l1, l2;
    VLSolveQuadratic(1, -2, 1 - 1e-17L, l1, l2);
    EXPECT_NE(l1, l2);
}

TEST(QuadraticRoots, CubicExtremaLieStrictlyInsideTheRange)
{
    // 0, 1, 1, 0 turns at t = 0.5 only.
    double times[2];
    ASSERT_EQ(VLCubicExtremaTimes(0, 1, 1, 0, 0.0, 1.0, times), 1);
    EXPECT_DOUBLE_EQ(times[0], 0.5);
    EXPECT_EQ(VLCubicExtremaTimes(0, 1, 1, 0, 0.5, 1.0, times), 0) << "the ends of the range are out";
    EXPECT_EQ(VLCubicExtremaTimes(0, 1, 1, 0, 0.0, 0.5, times), 0);
    // 0, 3, -3, 0 turns twice, at 1/2 - 1/(2 sqrt 3) and 1/2 + 1/(2 sqrt 3).
    ASSERT_EQ(VLCubicExtremaTimes(0, 3, -3, 0, 0.0, 1.0, times), 2);
    EXPECT_NEAR(std::min(times[0], times[1]), 0.2113, 1e-4);
    EXPECT_NEAR(std::max(times[0], times[1]), 0.7887, 1e-4);
    EXPECT_EQ(VLCubicExtremaTimes(0, 1, 2, 3, 0.0, 1.0, times), 0) << "a straight run never turns";
}
