#include "geometry/VLPathSegment.h"
#include "geometry/VLSegmentPen.h"
#include "platform/VLUnsetValue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

VLPathSegment sCurve()
{
    return VLPathSegment::initWithCurvePoint1_point2_point3_point4_options({0, 0}, {100, 200}, {200, -100}, {300, 50},
                                                                          VLPathSegment::OptionOpenPath);
}

void expectNear(Point a, Point b, double tolerance = 1e-9)
{
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
}

} // namespace

TEST(PathSegment, SplitHalvesMeetAndTraceTheOriginal)
{
    VLPathSegment curve = sCurve();
    for (double t : {0.3, 0.5, 0.9}) {
        SCOPED_TRACE(t);
        VLPathSegment first = curve, second = curve;
        ASSERT_TRUE(curve.splitAtTime_firstHalf_secondHalf(t, first, second));
        EXPECT_EQ(first.lastPoint(), second.pointAtIndex(0)) << "the halves meet exactly";
        EXPECT_EQ(first.options(), VLPathSegment::OptionOpenPath);
        EXPECT_EQ(second.options(), VLPathSegment::OptionOpenPath);
        for (double u : {0.0, 0.25, 0.5, 0.75, 1.0}) {
            expectNear(first.pointAtTime(u), curve.pointAtTime(t * u), 1e-9);
            expectNear(second.pointAtTime(u), curve.pointAtTime(t + (1 - t) * u), 1e-9);
        }
    }
    VLPathSegment line = VLPathSegment::initWithLinePoint1_point2_options({0, 0}, {10, 20}, 2);
    VLPathSegment a = line, b = line;
    ASSERT_TRUE(line.splitAtTime_firstHalf_secondHalf(0.25, a, b));
    expectNear(a.lastPoint(), {2.5, 5});
    expectNear(b.pointAtIndex(0), {2.5, 5});
    EXPECT_EQ(b.lastPoint(), (Point{10, 20}));
    std::vector<Point> run{{0, 0}, {10, 10}, {20, 0}};
    VLPathSegment quadratic = VLPathSegment::initWithQCurve(run);
    EXPECT_FALSE(quadratic.splitAtTime_firstHalf_secondHalf(0.5, a, b));
}

TEST(PathSegment, ExtremaOfAKnownCubic)
{
    // x runs monotonously; y = 600 t - 1500 t^2 + 950 t^3 turns where 2850 t^2 - 3000 t + 600 = 0.
    VLPathSegment curve = sCurve();
    std::vector<double> times = curve.extremeTimes();
    ASSERT_EQ(times.size(), 2u);
    double root = std::sqrt(3000.0 * 3000 - 4 * 2850 * 600);
    std::vector<double> expected{(3000 - root) / 5700, (3000 + root) / 5700};
    std::sort(times.begin(), times.end());
    EXPECT_NEAR(times[0], expected[0], 1e-9);
    EXPECT_NEAR(times[1], expected[1], 1e-9);
    for (double t : times) EXPECT_NEAR(curve.normalAtTime(t).y, 0, 1e-9) << "y turns there";
    EXPECT_EQ(curve.extremePoints().size(), 2u);
    // The box reaches the extrema, not the control points.
    Rect box = curve.bounds();
    EXPECT_NEAR(box.maxY(), curve.pointAtTime(expected[0]).y, 1e-6);
    EXPECT_GT(curve.pointAtTime(expected[1]).y, 0);
    EXPECT_EQ(box.minY(), 0) << "the dip stays above the start";
    EXPECT_LT(box.maxY(), 200);
    EXPECT_TRUE(VLPathSegment::initWithLinePoint1_point2_options({0, 0}, {1, 1}, 0).extremeTimes().empty());
}

TEST(PathSegment, LengthAgainstAFinePolyline)
{
    VLPathSegment curve = sCurve();
    double polyline = 0;
    Point last = curve.pointAtTime(0);
    for (int k = 1; k <= 10000; ++k) {
        Point p = curve.pointAtTime(k / 10000.0);
        polyline += std::hypot(p.x - last.x, p.y - last.y);
        last = p;
    }
    EXPECT_NEAR(curve.length(), polyline, polyline * 0.01);
    EXPECT_FLOAT_EQ(curve.lengthFast(), std::hypot(300.0, 50.0));
    EXPECT_FLOAT_EQ(VLPathSegment::initWithLinePoint1_point2_options({1, 1}, {4, 5}, 0).length(), 5.0);
    VLPathSegment loop =
        VLPathSegment::initWithCurvePoint1_point2_point3_point4_options({5, 5}, {100, 0}, {100, 100}, {5, 5}, 0);
    EXPECT_EQ(loop.lengthFast(), 0.0) << "a cubic back at its start";
    std::vector<Point> run{{0, 0}, {10, 10}, {20, 0}};
    EXPECT_EQ(VLPathSegment::initWithQCurve(run).length(), VLUnsetValue);
}

TEST(PathSegment, EvaluationOfEachType)
{
    VLPathSegment line = VLPathSegment::initWithLinePoint1_point2_options({0, 0}, {0, 10}, 0);
    EXPECT_EQ(line.tangentAtTime(0.5), 90.0);
    expectNear(line.normalAtTime(0.2), {0, 1});
    expectNear(line.middlePointRight(), {0.0001, 5}); // right of a line going up
    VLPathSegment curve = sCurve();
    expectNear(curve.middlePoint(), curve.pointAtTime(0.5));
    EXPECT_NEAR(curve.tangentAtTime(0), std::atan2(200.0, 100.0) * 180 / M_PI, 1e-9);
    std::vector<Point> run{{0, 0}, {10, 10}, {20, 0}};
    VLPathSegment quadratic = VLPathSegment::initWithQCurve(run);
    EXPECT_EQ(quadratic.pointAtTime(0.5).x, VLUnsetValue);
    EXPECT_EQ(quadratic.tangentAtTime(0.5), VLUnsetValue);
    expectNear(quadratic.middlePointRight(), {10, 5 - 0.0001});
}

TEST(PathSegment, RecordsCopiesAndComparison)
{
    std::vector<Point> many(45);
    for (size_t i = 0; i < many.size(); ++i) many[i] = {double(i), 0};
    EXPECT_EQ(VLPathSegment::initWithQCurve_count(many.data(), 40).countOfPoints(), 39u);
    EXPECT_EQ(VLPathSegment::initWithQCurve(many).countOfPoints(), 40u) << "cut to the room of a segment";

    VLPathSegment curve = sCurve();
    VLPathSegment copy = VLPathSegment::initWithSegmentStruct(curve.segmentStruct());
    EXPECT_TRUE(copy.isEqualToSegment(curve));
    EXPECT_EQ(copy.bounds(), curve.bounds());
    copy.setOptions(0);
    EXPECT_FALSE(copy.isEqualToSegment(curve)) << "other options, same points";
    copy.setOptions(curve.options());
    copy.setPoint_atIndex({0, 0.01}, 0);
    EXPECT_FALSE(copy.isEqualToSegment(curve));
    EXPECT_TRUE(copy.isEqualToSegment_tolerance(curve, 0.1));

    VLPathSegment reversed = curve;
    reversed.reverse();
    EXPECT_EQ(reversed.pointAtIndex(0), (Point{300, 50}));
    EXPECT_EQ(reversed.pointAtIndex(1), (Point{200, -100}));
    EXPECT_EQ(reversed.lastPoint(), (Point{0, 0}));

    VLPathSegment left = VLPathSegment::initWithLinePoint1_point2_options({0, 0}, {0, 100}, 0);
    VLPathSegment right = VLPathSegment::initWithLinePoint1_point2_options({50, 0}, {50, 100}, 0);
    VLPathSegment dot = VLPathSegment::initWithLinePoint1_point2_options({90, 0}, {90, 0.05}, 0);
    EXPECT_EQ(left.compare(right), -1);
    EXPECT_EQ(right.compare(left), 1);
    EXPECT_EQ(dot.compare(left), -1) << "a segment of no length comes first";
    EXPECT_EQ(left.compare(left), 0);
    // Along a slant of 45 degrees the top of the right line lies left of the bottom of the left.
    VLPathSegment low = VLPathSegment::initWithLinePoint1_point2_options({0, 0}, {0, 10}, 0);
    VLPathSegment high = VLPathSegment::initWithLinePoint1_point2_options({50, 100}, {50, 110}, 0);
    EXPECT_EQ(high.compare_italicAngle(low, 45), -1);
}

TEST(PathSegment, NormalizedHandles)
{
    VLPathSegment oneRetracted =
        VLPathSegment::initWithCurvePoint1_point2_point3_point4_options({0, 0}, {0, 0}, {100, 50}, {100, 100}, 0);
    ASSERT_TRUE(oneRetracted.normalizeHandles());
    EXPECT_GT(std::hypot(oneRetracted.pointAtIndex(1).x, oneRetracted.pointAtIndex(1).y), 1);
    EXPECT_EQ(oneRetracted.pointAtIndex(0), (Point{0, 0}));
    EXPECT_EQ(oneRetracted.lastPoint(), (Point{100, 100}));
    VLPathSegment otherEnd =
        VLPathSegment::initWithCurvePoint1_point2_point3_point4_options({100, 100}, {100, 50}, {0, 0}, {0, 0}, 0);
    ASSERT_TRUE(otherEnd.normalizeHandles());
    otherEnd.reverse();
    EXPECT_TRUE(otherEnd.isEqualToSegment(oneRetracted)) << "the same shape from either end";
    VLPathSegment bothRetracted =
        VLPathSegment::initWithCurvePoint1_point2_point3_point4_options({0, 0}, {0, 0}, {9, 9}, {9, 9}, 0);
    EXPECT_FALSE(bothRetracted.normalizeHandles());
    EXPECT_EQ(bothRetracted.pointAtIndex(1), (Point{0, 0}));
}

TEST(PathSegment, LongQuadraticRunsAreCutWhereTheyPassOnCurve)
{
    VLSegmentPen pen;
    pen.moveTo({0, 0});
    VLQuadraticPoints run;
    for (int i = 1; i <= 60; ++i) run.push_back({i * 10.0, i % 2 ? 10.0 : -10.0});
    run.push_back({610, 0});
    pen.qCurveTo(run);
    pen.endPath();
    const auto& segments = pen.segments();
    ASSERT_EQ(segments.size(), 2u);
    EXPECT_EQ(segments[0].countOfPoints(), 40u);
    EXPECT_EQ(segments[0].lastPoint(), segments[1].pointAtIndex(0));
    EXPECT_EQ(segments[0].lastPoint(), (Point{385, 0})) << "between the 38th and 39th off-curve point";
    EXPECT_EQ(segments[1].lastPoint(), (Point{610, 0}));
    EXPECT_EQ(segments[0].countOfPoints() + segments[1].countOfPoints(), 62u + 2)
        << "the new on-curve point ends one piece and starts the other";
}
