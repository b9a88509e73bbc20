#include "geometry/VLBezierPathPen.h"
#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLHint.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"
#include "platform/BezierPath.h"
#include "support/PathInFont.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

TEST(PathDrawing, ClosedPathsStartOnTheLastNodeAndLeaveTheClosingLineToClose)
{
    PathInFont f(0);
    addCurvedSquare(f);
    BezierPath out = f.draw();
    ASSERT_EQ(out.elementCount(), 6);
    EXPECT_EQ(out.elementAtIndex(0), BezierPathElement::MoveTo);
    EXPECT_EQ(out.elementAtIndex(2), BezierPathElement::CurveTo);
    EXPECT_EQ(out.elementAtIndex(4), BezierPathElement::ClosePath) << "no line for the closing segment";
    Point p[3];
    out.elementAtIndex_associatedPoints(2, p);
    EXPECT_EQ(p[0], (Point{150.3, 10.2}));
    EXPECT_EQ(p[1], (Point{190.7, 50.6}));
    EXPECT_EQ(p[2], (Point{200.2, 100.8}));
}

TEST(PathDrawing, GridRoundsOnCurvePointsAndHandlesNoCoarserThanAUnit)
{
    {
        PathInFont f(1);
        addCurvedSquare(f);
        for (Point p : pointsOf(f.draw())) {
            EXPECT_EQ(p.x, std::round(p.x));
            EXPECT_EQ(p.y, std::round(p.y));
        }
    }
    {
        PathInFont f(5);
        addCurvedSquare(f);
        auto points = pointsOf(f.draw());
        EXPECT_EQ(points[0], (Point{0, 0}));
        EXPECT_EQ(points[1], (Point{100, 0}));
        EXPECT_EQ(points[2], (Point{150, 10})) << "handles to whole units";
        EXPECT_EQ(points[3], (Point{191, 51}));
        EXPECT_EQ(points[4], (Point{200, 100})) << "on-curve points to multiples of 5";
    }
    {
        PathInFont f(0.05);
        addCurvedSquare(f);
        EXPECT_EQ(pointsOf(f.draw())[1], (Point{100.4, 0.6})) << "a fine grid leaves points alone";
    }
}

TEST(PathDrawing, OpenPathsSingleNodesAndOffCurveContours)
{
    {
        PathInFont f(0);
        f.add({0, 0}, VLNodeType::LINE);
        f.add({10, 0}, VLNodeType::LINE);
        f.add({10, 10}, VLNodeType::LINE);
        BezierPath out = f.draw();
        EXPECT_EQ(out.elementCount(), 3) << "move and two lines, no close";
        EXPECT_FALSE(VLBezierPathPen::closed(out));
    }
    {
        PathInFont f(0);
        f.add({5, 5}, VLNodeType::LINE);
        f.path->setClosed(true);
        EXPECT_EQ(f.draw().elementCount(), 3) << "a closed single node draws a move and a close";
    }
    {
        PathInFont f(0);
        for (Point p : {Point{0, 0}, Point{100, 0}, Point{100, 100}, Point{0, 100}}) f.add(p, VLNodeType::OFFCURVE);
        f.path->setClosed(true);
        BezierPath out = f.draw();
        EXPECT_EQ(out.elementAtIndex(0), BezierPathElement::MoveTo);
        Point start;
        out.elementAtIndex_associatedPoints(0, &start);
        EXPECT_EQ(start, (Point{0, 50})) << "the run starts between its last and first point";
        EXPECT_EQ(out.elementAtIndex(out.elementCount() - 2), BezierPathElement::ClosePath);
    }
}

TEST(PathDrawing, QuadraticRunsDrawAsCubicsThroughTheirImpliedPoints)
{
    PathInFont f(0);
    f.add({0, 0}, VLNodeType::LINE);
    f.add({0, 90}, VLNodeType::OFFCURVE);
    f.add({60, 90}, VLNodeType::OFFCURVE);
    f.add({90, 0}, VLNodeType::QCURVE);
    f.path->setClosed(true);
    BezierPath out = f.draw();
    ASSERT_EQ(out.elementCount(), 6) << "move, two cubics, the closing line left to close, trailing move";
    Point p[3];
    ASSERT_EQ(out.elementAtIndex_associatedPoints(2, p), BezierPathElement::CurveTo);
    EXPECT_EQ(p[2], (Point{30, 90})) << "the implied point between the two handles";
    EXPECT_NEAR(p[0].x, 0, 1e-9);
    EXPECT_NEAR(p[0].y, 60, 1e-9) << "two thirds of the way to the handle";
    ASSERT_EQ(out.elementAtIndex_associatedPoints(3, p), BezierPathElement::CurveTo);
    EXPECT_EQ(p[2], (Point{90, 0}));
    EXPECT_NEAR(p[1].x, 70, 1e-9);
    EXPECT_NEAR(p[1].y, 60, 1e-9);
}

TEST(PathDrawing, HobbyNodesDrawAsTheCurvesTheyStore)
{
    // A round contour of off-curve nodes and curve ends, once as CURVE and once as HOBBY.
    auto contour = [](VLNodeType end) {
        PathInFont f(0);
        for (Point p : {Point{100, 0}, Point{155, 0}, Point{200, 45}, Point{200, 100}}) f.add(p, VLNodeType::OFFCURVE);
        f.path->nodeAtIndex(3)->setTypeFast(end);
        for (Point p : {Point{200, 155}, Point{155, 200}, Point{100, 200}}) f.add(p, VLNodeType::OFFCURVE);
        f.path->nodeAtIndex(6)->setTypeFast(end);
        for (Point p : {Point{45, 200}, Point{0, 155}, Point{0, 100}, Point{0, 45}, Point{45, 0}, Point{100, 0}})
            f.add(p, VLNodeType::OFFCURVE);
        f.path->nodeAtIndex(9)->setTypeFast(end);
        f.path->nodeAtIndex(12)->setTypeFast(end);
        f.path->removeObjectFromNodesAtIndex(0);
        f.path->setClosed(true);
        return f;
    };
    PathInFont curves = contour(VLNodeType::CURVE), hobby = contour(VLNodeType::HOBBY);
    BezierPath expected = curves.draw();
    ASSERT_EQ(expected.elementCount(), 7);
    EXPECT_EQ(pointsOf(hobby.draw()), pointsOf(expected));

    BezierPath simpleCurves, simpleHobby;
    VLBezierPathPen curvesPen(simpleCurves), hobbyPen(simpleHobby);
    curves.path->drawSimpleInPen(curvesPen);
    hobby.path->drawSimpleInPen(hobbyPen);
    EXPECT_EQ(pointsOf(simpleHobby), pointsOf(simpleCurves));

    auto layerOutline = hobby.layer->bezierPath();
    ASSERT_NE(layerOutline, nullptr);
    EXPECT_EQ(pointsOf(*layerOutline), pointsOf(*curves.layer->bezierPath())) << "through the flattened copy too";
    EXPECT_EQ(hobby.layer->bounds(), curves.layer->bounds());
}

TEST(PathDrawing, SmallOutsideOverlapsBetweenSharpCornersAreCut)
{
    PathInFont f(0);
    for (Point p : {Point{0, 0}, Point{100, 0}, Point{97, -10}, Point{0, 30}}) f.add(p, VLNodeType::LINE);
    f.path->setClosed(true);
    auto points = pointsOf(f.draw());
    ASSERT_EQ(points.size(), 4u) << "the step to (97, -10) is gone";
    EXPECT_EQ(points[1], (Point{0, 0}));
    EXPECT_NEAR(points[2].x, 72.75, 1e-9);
    EXPECT_NEAR(points[2].y, 0, 1e-9);

    PathInFont smooth(0);
    for (Point p : {Point{0, 0}, Point{100, 0}, Point{97, -10}, Point{0, 30}}) smooth.add(p, VLNodeType::LINE);
    smooth.path->nodeAtIndex(1)->setConnectionFast(VLNode::SMOOTH);
    smooth.path->setClosed(true);
    EXPECT_EQ(pointsOf(smooth.draw()).size(), 5u) << "only sharp corners are cut";
}

TEST(PathDrawing, HintsOfReplacedNodesBecomeKnobs)
{
    auto hint = VLHint::init();
    hint->setOriginIndex({0, 3});
    hint->setTargetIndex({1, 3});
    VLPath::findHint_forPoint_index({hint}, {12, 34}, 3);
    EXPECT_TRUE(hint->originIndex().empty());
    EXPECT_EQ(hint->knob(VLHint::Origin), (Point{12, 34}));
    EXPECT_EQ(hint->targetIndex(), (VLIndexPath{1, 3})) << "only the first path's nodes";
}

TEST(PathDrawing, OverlapsAreCutWhereACurveCrossesTheLineBack)
{
    // A curve comes down into the corner at (100, 0); the step to (97, -10) and the line back up
    // to (60, 50) cross the curve close to the corner.
    PathInFont f(0);
    f.add({0, 0}, VLNodeType::LINE);
    f.add({60, 0}, VLNodeType::OFFCURVE);
    f.add({100, 20}, VLNodeType::OFFCURVE);
    f.add({100, 0}, VLNodeType::CURVE);
    f.add({97, -10}, VLNodeType::LINE);
    f.add({60, 50}, VLNodeType::LINE);
    f.path->setClosed(true);
    BezierPath out = f.draw();
    std::vector<Point> points = pointsOf(out);
    bool stepDrawn = std::find(points.begin(), points.end(), Point{97, -10}) != points.end();
    EXPECT_FALSE(stepDrawn) << "the step is gone";
    EXPECT_EQ(out.elementAtIndex(2), BezierPathElement::CurveTo) << "the curve ends at the crossing";
    Point p[3];
    out.elementAtIndex_associatedPoints(2, p);
    EXPECT_LT(p[2].x, 100) << "before the corner";
}

TEST(PathDrawing, OverlapsAreCutWhereTheLineIntoTheStepCrossesTheCurveOutOfIt)
{
    // The mirror of the case above: a line runs into the corner at (100, 0), the step goes to
    // (103, -10), and a curve leaves it back across the line.
    PathInFont f(0);
    f.add({0, 0}, VLNodeType::LINE);
    f.add({100, 0}, VLNodeType::LINE);
    f.add({103, -10}, VLNodeType::LINE);
    f.add({40, 20}, VLNodeType::OFFCURVE);
    f.add({20, 60}, VLNodeType::OFFCURVE);
    f.add({0, 80}, VLNodeType::CURVE);
    f.path->setClosed(true);
    BezierPath out = f.draw();
    std::vector<Point> points = pointsOf(out);
    EXPECT_EQ(std::find(points.begin(), points.end(), Point{103, -10}), points.end()) << "the step is gone";
    ASSERT_EQ(out.elementCount(), 6) << "from the curve's end: the line home, the shortened line, the curve, close";
    Point line[3], curve[3];
    ASSERT_EQ(out.elementAtIndex_associatedPoints(2, line), BezierPathElement::LineTo);
    // The curve crosses y = 0 at x = 84.0948 (by bisection of its y); its chord would at 91.6.
    EXPECT_NEAR(line[0].y, 0, 1e-6) << "the line ends where the curve crosses it";
    EXPECT_NEAR(line[0].x, 84.0948, 0.01);
    ASSERT_EQ(out.elementAtIndex_associatedPoints(3, curve), BezierPathElement::CurveTo);
    EXPECT_EQ(curve[2], (Point{0, 80}));
    // The rest of the curve after the crossing: its handles are those of the split curve, on
    // the way from the old ones towards the end, not the old ones.
    EXPECT_NE(curve[0], (Point{40, 20}));
    EXPECT_NEAR(curve[1].x, 20, 10);
    EXPECT_GT(curve[1].y, 60);
}

TEST(PathDrawing, AStepAtTheStartOfAClosedPathIsCutToo)
{
    PathInFont f(0);
    for (Point p : {Point{97, -10}, Point{0, 30}, Point{0, 0}, Point{100, 0}}) f.add(p, VLNodeType::LINE);
    f.path->setClosed(true);
    auto points = pointsOf(f.draw());
    EXPECT_EQ(std::find(points.begin(), points.end(), Point{97, -10}), points.end()) << "the step is gone";
}

