#include "geometry/VLCubic.h"
#include "geometry/VLCubicIntersections.h"
#include "geometry/VLGeometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

// The nearest of many samples, to check that a point lies on a curve.
double distanceFromCurve(Point p, const VLCubic& c)
{
    double best = INFINITY;
    for (int i = 0; i <= 20000; ++i)
        best = std::min(best, std::sqrt(VLSquareDistance(p, VLCubicPoint(c[0], c[1], c[2], c[3], i / 20000.0))));
    return best;
}

} // namespace

TEST(Geometry, AnglesAreExactAtTheLimitsAndSignedByTurn)
{
    EXPECT_EQ(VLGeometry::angleBetweenVector_andVector({3, 4}, {6, 8}), 0.0);
    EXPECT_EQ(VLGeometry::angleBetweenVector_andVector({3, 4}, {-6, -8}), 180.0);
    EXPECT_NEAR(VLGeometry::angleBetweenVector_andVector({1, 0}, {0, 1}), -90.0, 1e-4);
    EXPECT_NEAR(VLGeometry::angleBetweenVector_andVector({0, 1}, {1, 0}), 90.0, 1e-4);

    EXPECT_EQ(VLVectorAngle(0, -5), 270.0);
    EXPECT_EQ(VLVectorAngle(0, 5), 90.0);
    EXPECT_EQ(VLVectorAngle(-1, 0), 180.0);
    EXPECT_EQ(VLVectorAngle(0.005, -0.009), 0.0);
    EXPECT_NEAR(VLVectorAngle(-1, -1), 225.0, 1e-5);
    EXPECT_NEAR(VLGeometry::angleOfVector({1, -1}), -45.0, 1e-5);
}

TEST(Geometry, ItalicAngleBecomesASmallSlope)
{
    int run = 7, rise = 7;
    EXPECT_TRUE(VLGeometry::angle_toRun_rise(0.005, run, rise));
    EXPECT_EQ(run, 0);
    EXPECT_EQ(rise, 1);
    EXPECT_TRUE(VLGeometry::angle_toRun_rise(-45, run, rise));
    EXPECT_EQ(run, -1);
    EXPECT_EQ(rise, 1);
    ASSERT_TRUE(VLGeometry::angle_toRun_rise(12, run, rise));
    EXPECT_NEAR(static_cast<double>(run) / rise, std::tan(12 * std::numbers::pi / 180), 0.0001);
    EXPECT_LT(rise, 1000);
    EXPECT_FALSE(VLGeometry::angle_toRun_rise(90, run, rise));
    EXPECT_GE(rise, 1000);
}

TEST(Geometry, NearestPointsOnSegmentsAndLines)
{
    double t = -1;
    Point p = VLNearestPoint({5, 3}, {0, 0}, {10, 0}, &t);
    EXPECT_DOUBLE_EQ(p.x, 5);
    EXPECT_DOUBLE_EQ(p.y, 0);
    EXPECT_DOUBLE_EQ(t, 0.5);
    p = VLNearestPoint({-5, 3}, {0, 0}, {10, 0}, &t);
    EXPECT_DOUBLE_EQ(p.x, 0);
    EXPECT_DOUBLE_EQ(t, 0);

    p = VLNearestPointUnlimited({-5, 3}, {0, 0}, {10, 0}, &t);
    EXPECT_DOUBLE_EQ(p.x, -5);
    EXPECT_DOUBLE_EQ(t, -0.5);
    p = VLNearestPointUnlimited({15, 3}, {0, 0}, {10, 0}, &t);
    EXPECT_DOUBLE_EQ(t, 1.5);
    t = 42;
    p = VLNearestPointUnlimited({15, 3}, {1, 1}, {1, 1.00005}, &t);
    EXPECT_EQ(p, (Point{1, 1}));
    EXPECT_EQ(t, 42);

    EXPECT_FLOAT_EQ(VLGeometry::distanceOfPoint_fromLine({3, 4}, {0, 0}, {0.00001, 0}), 5.0f);
    EXPECT_FLOAT_EQ(VLGeometry::distanceOfPoint_fromLine({30, 4}, {0, 0}, {10, 0}), 4.0f);
    EXPECT_EQ(VLDistanceF({0, 0}, {0.1, 0}), std::sqrt(static_cast<float>(0.1 * 0.1)));
}

TEST(Geometry, LineCrossings)
{
    Point x = VLLineIntersection({0, 0}, {10, 10}, {0, 10}, {10, 0});
    EXPECT_DOUBLE_EQ(x.x, 5);
    EXPECT_DOUBLE_EQ(x.y, 5);
    EXPECT_EQ(VLLineIntersection({0, 0}, {10, 0}, {0, 1}, {10, 1}).x, VLUnsetValue);
    // Lines whose x ranges are apart are not extended to meet.
    EXPECT_EQ(VLLineIntersection({0, 0}, {1, 1}, {5, 0}, {6, -1}).x, VLUnsetValue);
    Point far = VLLineIntersectionUnlimited({0, 0}, {1, 1}, {5, 0}, {6, -1});
    EXPECT_DOUBLE_EQ(far.x, 2.5);
    EXPECT_EQ(VLLineIntersectionUnlimited({0, 0}, {0.00005, 0}, {5, 0}, {6, -1}).x, VLUnsetValue);
}

TEST(Geometry, CubicBoundsHoldTheCurveTightly)
{
    VLCubic c = {Point{0, 0}, Point{-50, 100}, Point{150, 120}, Point{100, 0}};
    double minX, minY, maxX, maxY;
    VLCubicBounds(c, minX, minY, maxX, maxY);
    double sMinX = INFINITY, sMaxX = -INFINITY, sMaxY = -INFINITY;
    for (int i = 0; i <= 10000; ++i) {
        Point p = VLCubicPoint(c[0], c[1], c[2], c[3], i / 10000.0);
        sMinX = std::min(sMinX, p.x);
        sMaxX = std::max(sMaxX, p.x);
        sMaxY = std::max(sMaxY, p.y);
    }
    EXPECT_NEAR(minX, sMinX, 1e-3);
    EXPECT_NEAR(maxX, sMaxX, 1e-3);
    EXPECT_NEAR(maxY, sMaxY, 1e-3);
    EXPECT_EQ(minY, 0);
}

TEST(Geometry, CubicLengthAndTimeAtLength)
{
    // Uneven control points: time and length differ along the line.
    VLCubic line = {Point{0, 0}, Point{90, 0}, Point{95, 0}, Point{100, 0}};
    EXPECT_NEAR(VLCubicLength(line), 100.0, 1e-4);
    // Four damped steps move from the first guess, 0.5 (x near 82), well towards x = 50.
    double t = VLCubicTimeAtLength(50, line);
    EXPECT_LT(t, 0.3);
    EXPECT_NEAR(VLCubicPoint(line[0], line[1], line[2], line[3], t).x, 50.0, 10.0);
    VLCubic even = {Point{0, 0}, Point{10, 10}, Point{20, 20}, Point{30, 30}};
    EXPECT_NEAR(VLCubicTimeAtLength(std::hypot(10, 10), even), 1.0 / 3, 1e-5);
    EXPECT_DOUBLE_EQ(VLCubicTimeAtLength(500, line), 1.0);

    double k = 0.5522847498;
    VLCubic arc = {Point{100, 0}, Point{100, 100 * k}, Point{100 * k, 100}, Point{0, 100}};
    EXPECT_NEAR(VLCubicLength(arc), 50 * std::numbers::pi, 0.2);
}

TEST(Geometry, InflectionsCurvatureAndStraightCurves)
{
    VLCubic arch = {Point{0, 0}, Point{30, 100}, Point{70, 100}, Point{100, 0}};
    EXPECT_TRUE(VLCubicInflections(arch).empty());
    VLCubic z = {Point{0, 0}, Point{50, 100}, Point{50, -100}, Point{100, 0}};
    auto times = VLCubicInflections(z);
    ASSERT_EQ(times.size(), 1u);
    EXPECT_NEAR(times[0], 0.5, 1e-9);
    VLCubic twice = {Point{0, 0}, Point{100, 100}, Point{0, -100}, Point{200, 50}};
    times = VLCubicInflections(twice);
    EXPECT_TRUE(std::is_sorted(times.begin(), times.end()));

    EXPECT_EQ(VLCubicCurvature({Point{0, 0}, Point{10, 0}, Point{20, 0}, Point{30, 0}}, 0.3), 0.0);
    EXPECT_EQ(VLCubicCurvature({Point{0, 0}, Point{0, 0}, Point{20, 0}, Point{30, 0}}, 0.0),
              std::numeric_limits<double>::max());
    // A circle of radius r has squared curvature 1/r^2 at the quarter arc's middle, nearly.
    double k = 0.5522847498;
    VLCubic arc = {Point{100, 0}, Point{100, 100 * k}, Point{100 * k, 100}, Point{0, 100}};
    EXPECT_NEAR(VLCubicCurvature(arc, 0.5), 1e-4, 2e-6);

    EXPECT_TRUE(VLHandlesNearChord({Point{0, 0}, Point{30, 0.59}, Point{60, -0.59}, Point{90, 0}}));
    EXPECT_FALSE(VLHandlesNearChord({Point{0, 0}, Point{30, 0.59}, Point{60, 0.61}, Point{90, 0}}));
}

TEST(Geometry, CubicIntersections)
{
    VLCubic a = {Point{0, 0}, Point{30, 100}, Point{70, 100}, Point{100, 0}};
    VLCubic b = {Point{0, 60}, Point{30, 40}, Point{70, 40}, Point{100, 60}};
    auto crossings = VLCubicIntersections(a, b);
    ASSERT_FALSE(crossings.empty());
    bool left = false, right = false;
    for (Point p : crossings) {
        EXPECT_LT(distanceFromCurve(p, a), 0.05);
        EXPECT_LT(distanceFromCurve(p, b), 0.05);
        (p.x < 50 ? left : right) = true;
    }
    EXPECT_TRUE(left && right);

    // Straight curves end in the chord crossing.
    crossings = VLCubicIntersections({Point{0, 0}, Point{3, 3}, Point{7, 7}, Point{10, 10}},
                                     {Point{0, 10}, Point{3, 7}, Point{7, 3}, Point{10, 0}});
    ASSERT_FALSE(crossings.empty());
    for (Point p : crossings) {
        EXPECT_NEAR(p.x, 5, 1e-6);
        EXPECT_NEAR(p.y, 5, 1e-6);
    }

    // Touching at a common end at an angle, with boxes that only meet there.
    crossings = VLCubicIntersections({Point{0, 0}, Point{3, 3}, Point{7, 7}, Point{10, 10}},
                                     {Point{20, 0}, Point{17, 3}, Point{13, 7}, Point{10, 10}});
    ASSERT_EQ(crossings.size(), 1u);
    EXPECT_EQ(crossings[0], (Point{10, 10}));
    EXPECT_TRUE(VLCubicIntersections({Point{0, 0}, Point{3, 3}, Point{7, 7}, Point{10, 10}},
                                     {Point{20, 20}, Point{23, 23}, Point{27, 27}, Point{30, 30}})
                    .empty());

    // The second curve is reached only when extended beyond its end.
    VLCubic wall = {Point{50, -100}, Point{50, -30}, Point{50, 30}, Point{50, 100}};
    VLCubic shortLine = {Point{0, 0}, Point{40.0 / 3, 0}, Point{80.0 / 3, 0}, Point{40, 0}};
    EXPECT_TRUE(VLCubicIntersections(wall, shortLine).empty());
    auto extended = VLExtendedCubicIntersections(wall, shortLine);
    ASSERT_FALSE(extended.empty());
    EXPECT_NEAR(extended[0].x, 50, 1e-6);
    EXPECT_NEAR(extended[0].y, 0, 1e-6);
}

TEST(Geometry, RootsOfCubicWithinTheUnitRange)
{
    double roots[3];
    // (t - 0.2)(t - 0.5)(t - 0.9)
    int n = VLRootsOfCubic(1, -1.6, 0.73, -0.09, roots);
    ASSERT_EQ(n, 3);
    std::sort(roots, roots + 3);
    EXPECT_NEAR(roots[0], 0.2, 1e-12);
    EXPECT_NEAR(roots[1], 0.5, 1e-12);
    EXPECT_NEAR(roots[2], 0.9, 1e-12);
    // The same scaled, and turned upside down: the leading factor must not matter.
    n = VLRootsOfCubic(-2.5, 4, -1.825, 0.225, roots);
    ASSERT_EQ(n, 3);
    std::sort(roots, roots + 3);
    EXPECT_NEAR(roots[0], 0.2, 1e-12);
    EXPECT_NEAR(roots[2], 0.9, 1e-12);
    // (t - 0.5)(t - 2)(t + 1): only one inside.
    n = VLRootsOfCubic(1, -1.5, -1.5, 1, roots);
    ASSERT_EQ(n, 1);
    EXPECT_NEAR(roots[0], 0.5, 1e-12);
    // Roots just past the ends still count.
    n = VLRootsOfCubic(0, 1, -1.00005, 0.00005 * 1.0, roots);
    EXPECT_EQ(n, 2);
    EXPECT_EQ(VLRootsOfCubic(0, 0, 1, -1.001, roots), 0);
    n = VLRootsOfCubic(1, 0, 1, -0.5, roots);
    ASSERT_EQ(n, 1);
    EXPECT_NEAR(roots[0] * roots[0] * roots[0] + roots[0], 0.5, 1e-12);
}

TEST(Geometry, QuadraticRunSplitsAtItsFractionalIndex)
{
    Point run[] = {{0, 0}, {100, 100}, {200, 100}, {300, 0}};
    Point before, on, after;
    VLQuadraticRunSplit(run, 4, 1.5, before, on, after);
    Point expected = VLQuadraticPoint({0, 0}, {100, 100}, {150, 100}, 0.5);
    EXPECT_DOUBLE_EQ(on.x, expected.x);
    EXPECT_DOUBLE_EQ(on.y, expected.y);
    EXPECT_EQ(before, VLLerp({0, 0}, {100, 100}, 0.5));
    EXPECT_EQ(after, VLLerp({100, 100}, {150, 100}, 0.5));
    VLQuadraticRunSplit(run, 4, 2.25, before, on, after);
    expected = VLQuadraticPoint({150, 100}, {200, 100}, {300, 0}, 0.25);
    EXPECT_DOUBLE_EQ(on.x, expected.x);
    VLQuadraticRunSplit(run, 4, 0.5, before, on, after);
    EXPECT_EQ(on.x, VLUnsetValue);
    VLQuadraticRunSplit(run, 4, 4, before, on, after);
    EXPECT_EQ(on.x, VLUnsetValue);
}
