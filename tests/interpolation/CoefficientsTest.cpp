#include "interpolation/coefficients.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

namespace {

void expect_coefficients(const std::vector<double>& actual, const std::vector<double>& expected,
                         double tolerance = 1e-9)
{
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "master " << i;
    }
}

double sum(const std::vector<double>& values)
{
    return std::accumulate(values.begin(), values.end(), 0.0);
}

std::vector<double> blend_positions(const MasterPositions& masters, const std::vector<double>& coefficients)
{
    std::vector<double> position(masters.front().size(), 0.0);
    for (std::size_t m = 0; m < masters.size(); ++m) {
        for (std::size_t d = 0; d < position.size(); ++d) {
            position[d] += coefficients[m] * masters[m][d];
        }
    }
    return position;
}

const MasterPositions square{{0, 0}, {100, 0}, {0, 100}, {100, 100}};

TEST(anyCoeffs, WorkedExamples)
{
    expect_coefficients(anyCoeffs({{100}, {200}, {400}}, {300}, false), {0, 0.5, 0.5});
    expect_coefficients(anyCoeffs(square, {25, 50}, false), {0.375, 0.125, 0.375, 0.125});
    expect_coefficients(anyCoeffs(square, {150, 50}, false), {-0.25, 0.75, -0.25, 0.75});
    expect_coefficients(anyCoeffs({{0, 0}, {100, 0}, {0, 100}}, {50, 50}, false), {0, 0.5, 0.5});
}

TEST(anyCoeffs, ExactHitIsAUnitVectorAndANearHitIsSolved)
{
    const MasterPositions masters{{0, 0}, {100, 0}, {0, 100}, {100, 100}, {50, 50}};
    EXPECT_EQ(anyCoeffs(masters, {50, 50}, false), (std::vector<double>{0, 0, 0, 0, 1}));
    EXPECT_EQ(anyCoeffs({{}, {}}, {}, false), (std::vector<double>{1, 0}));

    const std::vector<double> near = anyCoeffs(square, {1e-9, 0}, false);
    expect_coefficients(near, {1, 0, 0, 0});
    EXPECT_NEAR(sum(near), 1.0, 1e-12);
}

TEST(anyCoeffs, DegenerateProblemsGiveNothing)
{
    EXPECT_TRUE(anyCoeffs({}, {1}, false).empty());
    EXPECT_TRUE(anyCoeffs({{0}, {1}}, {}, false).empty());
    EXPECT_TRUE(anyCoeffs({{0, 0}, {1}}, {0.5, 0}, false).empty());
    EXPECT_TRUE(anyCoeffs({{3, 4}, {3, 4}}, {1, 1}, false).empty());
}

TEST(anyCoeffs, ExtrapolatesWhenNothingElseReaches)
{
    expect_coefficients(anyCoeffs({{0}, {100}}, {150}, false), {-0.5, 1.5});
    // The masters on a line hide each other: the nearest pair is tried first, and the far
    // master comes back for a second opinion that extrapolates less.
    expect_coefficients(anyCoeffs({{0}, {50}, {100}}, {150}, false), {-0.25, -0.5, 1.75});
}

TEST(anyCoeffs, NeverBringsBackTheWorstRankedMasters)
{
    // The target lies inside the hull, but the one master off the line through the others is
    // hidden the most; without it the target can only be met on that line.
    expect_coefficients(anyCoeffs({{50, 20}, {10, 10}, {30, 10}, {90, 40}}, {66, 30}, false), {0.5, 0, 0, 0.5});
}

TEST(anyCoeffs, IgnoresAxesTheMastersDoNotSpan)
{
    // The target's 7 on the second axis cannot be reached and is not tried.
    expect_coefficients(anyCoeffs({{0, 5}, {100, 5}}, {25, 7}, false), {0.75, 0.25});
    expect_coefficients(anyCoeffs({{0, 5, 1}, {100, 5, 1}, {0, 5, 3}}, {50, 9, 2}, false), {0, 0.5, 0.5});
}

TEST(anyCoeffs, UsesAllNearMastersAroundAnInteriorOne)
{
    const MasterPositions masters{{0, 0}, {100, 0}, {0, 100}, {100, 100}, {50, 50}};
    const std::vector<double> coefficients = anyCoeffs(masters, {25, 25}, false);
    expect_coefficients(coefficients, {0.5, 5.0 / 36, 5.0 / 36, 0, 2.0 / 9}, 1e-5);
    expect_coefficients(blend_positions(masters, coefficients), {25, 25});
}

TEST(anyCoeffs, CoincidingMastersShareTheirWeightAndAreReported)
{
    const MasterPositions masters{{0, 0}, {1, 0}, {0, 1}, {1, 1}, {1, 1}};
    testing::internal::CaptureStdout();
    const std::vector<double> coefficients = anyCoeffs(masters, {0.5, 0.25}, false);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "oh no! this should never happen! 3 and 4 behind each other!\n");
    expect_coefficients(coefficients, {0.375, 0.375, 0.125, 0.0625, 0.0625});
}

TEST(anyCoeffs, SpreadsTheDifferencesOfMastersOnOneLineOntoAMasterOnTheTargetsLevel)
{
    expect_coefficients(anyCoeffs({{0, 0}, {100, 0}, {30, 50}}, {40, 50}, false), {-0.1, 0.1, 1});
}

TEST(anyCoeffs, SolvesASimplexWithAllItsMasters)
{
    const MasterPositions simplex{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    expect_coefficients(anyCoeffs(simplex, {0.5, 0.5, 0.5}, false), {-0.5, 0.5, 0.5, 0.5});
}

// ---- Properties over many targets

std::vector<double> multilinear_coefficients(const std::vector<std::vector<double>>& axes,
                                             const MasterPositions& masters, const std::vector<double>& target)
{
    std::vector<double> coefficients(masters.size(), 1.0);
    for (std::size_t d = 0; d < axes.size(); ++d) {
        const auto upper = std::upper_bound(axes[d].begin(), axes[d].end(), target[d]);
        const double low = *(upper - 1);
        const double high = *upper;
        const double f = (target[d] - low) / (high - low);
        for (std::size_t m = 0; m < masters.size(); ++m) {
            coefficients[m] *= masters[m][d] == low ? 1 - f : masters[m][d] == high ? f : 0;
        }
    }
    return coefficients;
}

TEST(anyCoeffs, EqualsMultilinearInterpolationOnAFullGrid)
{
    const std::vector<std::vector<double>> axes{{0, 40, 100}, {-200, 300, 900}, {1, 2, 4}};
    MasterPositions masters;
    for (double x : axes[0]) {
        for (double y : axes[1]) {
            for (double z : axes[2]) {
                masters.push_back({x, y, z});
            }
        }
    }
    std::mt19937 random(7);
    for (int run = 0; run < 300; ++run) {
        std::vector<double> target;
        for (const auto& axis : axes) {
            target.push_back(std::uniform_real_distribution<double>(axis.front(), axis.back())(random));
        }
        const std::vector<double> coefficients = anyCoeffs(masters, target, false);
        SCOPED_TRACE(testing::Message() << "target " << target[0] << " " << target[1] << " " << target[2]);
        expect_coefficients(coefficients, multilinear_coefficients(axes, masters, target));
        EXPECT_NEAR(sum(coefficients), 1.0, 1e-9);
    }
}

// Masters at distinct random positions in general position, sometimes all on one value of
// the last axis.
MasterPositions random_scatter(std::mt19937& random, std::size_t dimensions, std::size_t count)
{
    std::uniform_real_distribution<double> any_value(0, 100);
    const bool flat = std::bernoulli_distribution(0.2)(random);
    MasterPositions masters;
    while (masters.size() < count) {
        std::vector<double> position;
        for (std::size_t d = 0; d < dimensions; ++d) {
            position.push_back(flat && d + 1 == dimensions ? 30.0 : any_value(random));
        }
        masters.push_back(position);
    }
    return masters;
}

std::vector<double> random_point_inside(std::mt19937& random, const MasterPositions& masters)
{
    std::vector<double> weights;
    for (std::size_t m = 0; m < masters.size(); ++m) {
        weights.push_back(std::exponential_distribution<double>(1.0)(random));
    }
    const double total = sum(weights);
    for (double& weight : weights) {
        weight /= total;
    }
    return blend_positions(masters, weights);
}

TEST(anyCoeffs, ReachesEveryTargetInsideTheHullOfAScatter)
{
    std::mt19937 random(11);
    for (int run = 0; run < 1000; ++run) {
        const std::size_t dimensions = 2 + run % 3;
        const std::size_t count = dimensions + 1 + random() % 8;
        const MasterPositions masters = random_scatter(random, dimensions, count);
        const std::vector<double> target = random_point_inside(random, masters);
        const std::vector<double> coefficients = anyCoeffs(masters, target, false);
        SCOPED_TRACE(testing::Message() << "run " << run);
        ASSERT_EQ(coefficients.size(), masters.size());
        EXPECT_NEAR(sum(coefficients), 1.0, 1e-9);
        expect_coefficients(blend_positions(masters, coefficients), target, 1e-6);
    }
}

TEST(anyCoeffs, ReachesTargetsInManyDimensionsWithLimitedCandidates)
{
    std::mt19937 random(13);
    for (int run = 0; run < 20; ++run) {
        const MasterPositions masters = random_scatter(random, 10, 16);
        const std::vector<double> target = random_point_inside(random, masters);
        const std::vector<double> coefficients = anyCoeffs(masters, target, true);
        SCOPED_TRACE(testing::Message() << "run " << run);
        EXPECT_NEAR(sum(coefficients), 1.0, 1e-9);
        expect_coefficients(blend_positions(masters, coefficients), target, 1e-6);
    }
}

} // namespace
