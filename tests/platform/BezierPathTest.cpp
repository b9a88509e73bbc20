#include "platform/BezierPath.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using Kind = BezierPathElement;

std::vector<Kind> kinds(const BezierPath& path)
{
    std::vector<Kind> result;
    for (long i = 0; i < path.elementCount(); ++i) result.push_back(path.elementAtIndex(i));
    return result;
}

Point pointAt(const BezierPath& path, long index, int which = 0)
{
    Point p[3];
    path.elementAtIndex_associatedPoints(index, p);
    return p[which];
}

void expectPoint(Point actual, Point expected, double tolerance = 1e-9)
{
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
}

Point cubicAt(const Point (&p)[4], double t)
{
    double u = 1 - t;
    auto mix = [&](double a, double b, double c, double d) {
        return u * u * u * a + 3 * u * u * t * b + 3 * u * t * t * c + t * t * t * d;
    };
    return {mix(p[0].x, p[1].x, p[2].x, p[3].x), mix(p[0].y, p[1].y, p[2].y, p[3].y)};
}

// Every point of the outline, curves sampled, one list per subpath.
std::vector<std::vector<Point>> flatten(const BezierPath& path)
{
    std::vector<std::vector<Point>> subpaths;
    Point p[3];
    for (long i = 0; i < path.elementCount(); ++i) {
        Kind kind = path.elementAtIndex_associatedPoints(i, p);
        if (kind == Kind::MoveTo) subpaths.push_back({p[0]});
        if (kind == Kind::LineTo) subpaths.back().push_back(p[0]);
        if (kind == Kind::CurveTo) {
            Point cubic[4] = {subpaths.back().back(), p[0], p[1], p[2]};
            for (int k = 1; k <= 32; ++k) subpaths.back().push_back(cubicAt(cubic, k / 32.0));
        }
    }
    return subpaths;
}

double signedArea(const BezierPath& path)
{
    double area = 0;
    for (const auto& points : flatten(path))
        for (size_t i = 0; i < points.size(); ++i) {
            Point a = points[i], b = points[(i + 1) % points.size()];
            area += (a.x * b.y - b.x * a.y) / 2;
        }
    return area;
}

BezierPath closedShapeWithCurve()
{
    BezierPath path;
    path.moveToPoint({0, 0});
    path.lineToPoint({10, 0});
    path.curveToPoint_controlPoint1_controlPoint2({0, 10}, {15, 5}, {5, 15});
    path.closePath();
    return path;
}

TEST(BezierPath, CloseAppendsCloseAndMoveBackToTheStart)
{
    BezierPath path;
    path.closePath();
    EXPECT_TRUE(path.isEmpty());

    path = closedShapeWithCurve();
    EXPECT_EQ(kinds(path), (std::vector{Kind::MoveTo, Kind::LineTo, Kind::CurveTo, Kind::ClosePath, Kind::MoveTo}));
    expectPoint(pointAt(path, 4), {0, 0});
    expectPoint(path.currentPoint(), {0, 0});
    expectPoint(pointAt(path, 2, 0), {15, 5});
    expectPoint(pointAt(path, 2, 1), {5, 15});
    expectPoint(pointAt(path, 2, 2), {0, 10});

    path.closePath();
    EXPECT_EQ(path.elementCount(), 5);
    path.moveToPoint({20, 20});
    path.lineToPoint({30, 20});
    path.closePath();
    EXPECT_EQ(path.elementAtIndex(path.elementCount() - 2), Kind::ClosePath);
    expectPoint(path.currentPoint(), {20, 20});
}

TEST(BezierPath, MovesReplaceMovesAndSegmentsStartAtTheOriginWhenNeeded)
{
    BezierPath path;
    path.moveToPoint({1, 1});
    path.moveToPoint({2, 2});
    path.lineToPoint({3, 3});
    EXPECT_EQ(kinds(path), (std::vector{Kind::MoveTo, Kind::LineTo}));
    expectPoint(pointAt(path, 0), {2, 2});

    BezierPath implicit;
    EXPECT_EQ(implicit.currentPoint(), (Point{0, 0}));
    implicit.curveToPoint_controlPoint1_controlPoint2({3, 0}, {1, 1}, {2, 1});
    EXPECT_EQ(kinds(implicit), (std::vector{Kind::MoveTo, Kind::CurveTo}));
    expectPoint(pointAt(implicit, 0), {0, 0});
    expectPoint(implicit.currentPoint(), {3, 0});
}

TEST(BezierPath, AppendKeepsTheOtherPathsSubpaths)
{
    BezierPath path = closedShapeWithCurve();
    BezierPath other;
    other.moveToPoint({50, 50});
    other.lineToPoint({60, 50});
    other.lineToPoint({60, 60});
    other.closePath();
    path.appendBezierPath(other);
    EXPECT_EQ(path.elementCount(), 9);
    EXPECT_EQ(path.elementAtIndex(3), Kind::ClosePath);
    expectPoint(pointAt(path, 4), {50, 50});
    EXPECT_EQ(path.elementAtIndex(7), Kind::ClosePath);
    expectPoint(path.currentPoint(), {50, 50});
}

TEST(BezierPath, BoundsFollowTheCurveNotItsControlPoints)
{
    EXPECT_EQ(BezierPath().bounds(), Rect{});

    BezierPath hump;
    hump.moveToPoint({0, 0});
    hump.curveToPoint_controlPoint1_controlPoint2({100, 0}, {0, 100}, {100, 100});
    Rect bounds = hump.bounds();
    expectPoint(bounds.origin, {0, 0});
    EXPECT_NEAR(bounds.size.width, 100, 1e-9);
    EXPECT_NEAR(bounds.size.height, 75, 1e-9);

    BezierPath flat;
    flat.moveToPoint({2, 5});
    flat.lineToPoint({12, 5});
    flat.closePath();
    EXPECT_EQ(flat.bounds(), (Rect{{2, 5}, {10, 0}}));
}

TEST(BezierPath, TransformMapsControlPointsToo)
{
    BezierPath path = closedShapeWithCurve();
    AffineTransform t;
    t.translateXBy_yBy(1, 2);
    t.scaleBy(2);
    path.transformUsingAffineTransform(t);
    expectPoint(pointAt(path, 2, 0), {31, 12});
    expectPoint(pointAt(path, 2, 1), {11, 32});
    expectPoint(pointAt(path, 4), {1, 2});
}

TEST(BezierPath, ReversingKeepsTheOutlineAndFlipsTheWinding)
{
    BezierPath path = closedShapeWithCurve();
    path.moveToPoint({20, 0});
    path.lineToPoint({30, 0});
    path.curveToPoint_controlPoint1_controlPoint2({40, 10}, {35, 0}, {40, 5});

    BezierPath reversed = path.bezierPathByReversingPath();
    EXPECT_EQ(kinds(reversed), (std::vector{Kind::MoveTo, Kind::CurveTo, Kind::LineTo, Kind::ClosePath, Kind::MoveTo,
                                            Kind::CurveTo, Kind::LineTo}));
    expectPoint(pointAt(reversed, 0), {0, 10});
    expectPoint(pointAt(reversed, 1, 0), {5, 15});
    expectPoint(pointAt(reversed, 1, 1), {15, 5});
    expectPoint(pointAt(reversed, 1, 2), {10, 0});
    expectPoint(pointAt(reversed, 4), {40, 10});
    expectPoint(pointAt(reversed, 5, 0), {40, 5});
    expectPoint(reversed.currentPoint(), {20, 0});

    EXPECT_NEAR(signedArea(reversed), -signedArea(path), 1e-9);
    EXPECT_NE(signedArea(path), 0);
    expectPoint(reversed.bounds().origin, path.bounds().origin);
    expectPoint({reversed.bounds().maxX(), reversed.bounds().maxY()}, {path.bounds().maxX(), path.bounds().maxY()});

    BezierPath closedOnly = closedShapeWithCurve().bezierPathByReversingPath();
    EXPECT_EQ(closedOnly.elementAtIndex(closedOnly.elementCount() - 2), Kind::ClosePath);
    expectPoint(closedOnly.currentPoint(), {0, 10});

    BezierPath twice = reversed.bezierPathByReversingPath();
    ASSERT_EQ(kinds(twice), kinds(path));
    for (long i = 0; i < path.elementCount(); ++i)
        for (int k = 0; k < 3; ++k) expectPoint(pointAt(twice, i, k), pointAt(path, i, k));
}

// The arc of radius r between the lines current -> corner -> next, sampled.
struct ArcCase {
    Point current, corner, next;
    double radius;
    Point center, start, end;
};

void checkArc(const ArcCase& c)
{
    BezierPath path;
    path.moveToPoint(c.current);
    path.appendBezierPathWithArcFromPoint_toPoint_radius(c.corner, c.next, c.radius);
    ASSERT_GE(path.elementCount(), 3);
    EXPECT_EQ(path.elementAtIndex(1), Kind::LineTo);
    expectPoint(pointAt(path, 1), c.start, 1e-9);
    expectPoint(path.currentPoint(), c.end, 1e-9);

    Point from = c.start;
    for (long i = 2; i < path.elementCount(); ++i) {
        Point p[3];
        ASSERT_EQ(path.elementAtIndex_associatedPoints(i, p), Kind::CurveTo);
        Point cubic[4] = {from, p[0], p[1], p[2]};
        for (int k = 0; k <= 16; ++k) {
            Point q = cubicAt(cubic, k / 16.0);
            EXPECT_NEAR(std::hypot(q.x - c.center.x, q.y - c.center.y), c.radius, c.radius * 1e-3);
        }
        from = p[2];
    }
    // Tangent to the incoming line where the arc starts.
    Point c1 = pointAt(path, 2, 0);
    Point in{c.corner.x - c.current.x, c.corner.y - c.current.y};
    EXPECT_NEAR(in.x * (c1.y - c.start.y) - in.y * (c1.x - c.start.x), 0, 1e-9);
}

TEST(BezierPath, ArcIsTangentToBothLines)
{
    checkArc({{0, 0}, {10, 0}, {10, 10}, 3, {7, 3}, {7, 0}, {10, 3}});
    checkArc({{0, 0}, {10, 0}, {10, -10}, 3, {7, -3}, {7, 0}, {10, -3}});
    // A sharp 60 degree corner needs more than a quarter turn of arc.
    double d = 2 * std::sqrt(3.0);
    checkArc({{0, 0}, {10, 0}, {5, 5 * std::sqrt(3.0)}, 2, {10 - d, 2}, {10 - d, 0},
              {10 - d / 2, d * std::sqrt(3.0) / 2}});
}

TEST(BezierPath, DegenerateArcIsALineToTheCorner)
{
    for (auto [next, radius] : {std::pair{Point{20, 0}, 3.0}, {Point{10, 10}, 0.0}, {Point{10, 0}, 3.0}}) {
        BezierPath path;
        path.moveToPoint({0, 0});
        path.appendBezierPathWithArcFromPoint_toPoint_radius({10, 0}, next, radius);
        EXPECT_EQ(kinds(path), (std::vector{Kind::MoveTo, Kind::LineTo}));
        expectPoint(path.currentPoint(), {10, 0});
    }
}

} // namespace
