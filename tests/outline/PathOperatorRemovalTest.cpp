#include "geometry/VLBezierPathPen.h"
#include "outline/VLHint.h"
#include "outline/VLPath.h"
#include "outline/VLPathOperator.h"
#include "outline/VLPathPen.h"
#include "model/VLLayer.h"
#include "platform/AffineTransform.h"
#include "platform/BezierPath.h"
#include "platform/Color.h"
#include "platform/GraphicsContext.h"
#include "support/ComponentInFont.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

namespace {

using Paths = std::vector<std::shared_ptr<VLPath>>;
using Shapes = std::vector<std::shared_ptr<VLShape>>;

std::shared_ptr<VLPath> polygon(std::initializer_list<Point> points)
{
    auto path = VLPath::init();
    for (Point p : points) path->addNodeFastWithPosition_type_connection(p, VLNodeType::LINE, 0);
    path->setClosed(true);
    return path;
}

std::shared_ptr<VLPath> square(double x, double y, double size, bool clockwise = false)
{
    if (clockwise) return polygon({{x, y}, {x, y + size}, {x + size, y + size}, {x + size, y}});
    return polygon({{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}});
}

// An ellipse of four quarter cubics, counterclockwise unless asked otherwise.
std::shared_ptr<VLPath> ellipse(Point centre, double rx, double ry, bool clockwise = false)
{
    constexpr double k = 0.5523;
    auto path = VLPath::init();
    auto add = [&](double x, double y, VLNodeType type) {
        path->addNodeFastWithPosition_type_connection({centre.x + x, centre.y + (clockwise ? -y : y)}, type, 0);
    };
    add(rx, k * ry, VLNodeType::OFFCURVE);
    add(k * rx, ry, VLNodeType::OFFCURVE);
    add(0, ry, VLNodeType::CURVE);
    add(-k * rx, ry, VLNodeType::OFFCURVE);
    add(-rx, k * ry, VLNodeType::OFFCURVE);
    add(-rx, 0, VLNodeType::CURVE);
    add(-rx, -k * ry, VLNodeType::OFFCURVE);
    add(-k * rx, -ry, VLNodeType::OFFCURVE);
    add(0, -ry, VLNodeType::CURVE);
    add(k * rx, -ry, VLNodeType::OFFCURVE);
    add(rx, -k * ry, VLNodeType::OFFCURVE);
    add(rx, 0, VLNodeType::CURVE);
    path->setClosed(true);
    return path;
}

// The shapes filled by the non-zero rule, a unit of the shapes a fifth of a pixel; each pixel's
// coverage, and whether an anti-aliased pixel lies around it.
struct Picture {
    static constexpr int side = 220;
    std::vector<int> alphas = std::vector<int>(side * side);
    std::vector<bool> edges = std::vector<bool>(side * side);

    explicit Picture(const Shapes& shapes)
    {
        GraphicsContext context{side, side};
        {
            GraphicsContext::Current current(context);
            AffineTransform scale;
            scale.translateXBy_yBy(10, 10);
            scale.scaleBy(0.2);
            scale.concat();
            BezierPath outline;
            VLBezierPathPen pen(outline);
            for (const auto& shape : shapes)
                if (auto path = std::dynamic_pointer_cast<VLPath>(shape)) path->drawSimpleInPen(pen);
            Color::blackColor().set();
            outline.fill();
        }
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x) alphas[size_t(y * side + x)] = context.pixelAt(x, y)[3];
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x)
                if (int a = alpha(x, y); a > 0 && a < 255)
                    for (int dy = -1; dy <= 1; ++dy)
                        for (int dx = -1; dx <= 1; ++dx)
                            edges[size_t(std::clamp(y + dy, 0, side - 1) * side + std::clamp(x + dx, 0, side - 1))] = true;
    }

    int alpha(int x, int y) const { return alphas[size_t(y * side + x)]; }
    bool isEdge(int x, int y) const { return edges[size_t(y * side + x)]; }
};

// Pixels that one picture inks and the other leaves clear, away from the anti-aliased edges.
int differingPixels(const Picture& a, const Picture& b)
{
    int count = 0;
    for (int y = 0; y < Picture::side; ++y)
        for (int x = 0; x < Picture::side; ++x)
            if (std::abs(a.alpha(x, y) - b.alpha(x, y)) > 128 && !a.isEdge(x, y) && !b.isEdge(x, y)) ++count;
    return count;
}

Shapes asShapes(const Paths& paths)
{
    return Shapes(paths.begin(), paths.end());
}

// Pixels where the result is not what the two inputs' pictures combine to, away from edges.
template <typename Combine>
int wrongPixels(const Paths& a, const Paths& b, const Paths& result, Combine combine)
{
    Picture first(asShapes(a)), second(asShapes(b)), got(asShapes(result));
    int count = 0;
    for (int y = 0; y < Picture::side; ++y)
        for (int x = 0; x < Picture::side; ++x) {
            if (first.isEdge(x, y) || second.isEdge(x, y) || got.isEdge(x, y)) continue;
            bool expected = combine(first.alpha(x, y) > 128, second.alpha(x, y) > 128);
            count += expected != (got.alpha(x, y) > 128);
        }
    return count;
}

void expectSubtraction(const Paths& cut, const Paths& target)
{
    Paths result = target;
    VLPathOperator::subtractPaths_from_keepOverlaps(asShapes(cut), result, false);
    EXPECT_EQ(wrongPixels(cut, target, result, [](bool c, bool t) { return t && !c; }), 0);
}

void expectIntersection(const Paths& first, const Paths& second)
{
    Paths result = second;
    bool common = VLPathOperator::intersectPaths_with(first, result);
    EXPECT_EQ(wrongPixels(first, second, common ? result : Paths{}, [](bool a, bool b) { return a && b; }), 0);
}

// Contours that touch along a curve, running opposite ways, are cut at slightly different places
// on each side and so don't cancel: they leave a slit of no area, two pieces a tenth of a unit
// apart at most, running opposite ways, with ink on both sides.
bool isHalfOfASlit(const VLPathSegment& segment, const VLSegments& all)
{
    Point middle = segment.pointAtTime(0.5), d = segment.normalAtTime(0.5);
    for (const auto& other : all) {
        if (&other == &segment) continue;
        for (int i = 0; i <= 32; ++i) {
            Point p = other.pointAtTime(i / 32.0), e = other.normalAtTime(i / 32.0);
            if (std::hypot(p.x - middle.x, p.y - middle.y) < 0.1 && d.x * e.x + d.y * e.y < -0.9) return true;
        }
    }
    return false;
}

Paths closedPaths(const Shapes& shapes)
{
    Paths closed;
    for (const auto& shape : shapes)
        if (auto path = std::dynamic_pointer_cast<VLPath>(shape); path && path->closed()) closed.push_back(path);
    return closed;
}

// The union covers what the input covers; its segments no longer cross, and each has the input's
// ink on its left only: none is left inside.
void expectUnionOfInput(const Shapes& input, const Shapes& output)
{
    EXPECT_EQ(differingPixels(Picture(input), Picture(output)), 0);
    VLSegments segments = VLPathOperator::segmentsFromPaths(closedPaths(output));
    VLSegments inputSegments = VLPathOperator::segmentsFromPaths(closedPaths(input));
    for (const auto& segment : segments) {
        // A twentieth of a unit right of the middle: cut curves stray from their originals by
        // the rounding of the cut points, and the slivers where three curves cross nearly at one
        // place are shorter than a unit.
        if (segment.lengthFast() < 0.5 || isHalfOfASlit(segment, segments)) continue;
        Point on = segment.pointAtTime(0.5), d = segment.normalAtTime(0.5);
        Point probe{on.x + 0.05 * d.y, on.y - 0.05 * d.x};
        auto across = VLPathSegment::initWithLinePoint1_point2_options({probe.x - 0.01 * d.x, probe.y - 0.01 * d.y},
                                                                       {probe.x + 0.01 * d.x, probe.y + 0.01 * d.y}, 0);
        EXPECT_TRUE(VLPathOperator::segmentIsOutside(across, inputSegments))
            << "ink right of " << segment.pointAtIndex(0).x << "," << segment.pointAtIndex(0).y;
    }
    size_t before = segments.size();
    VLPathOperator::addIntersections(segments);
    EXPECT_EQ(segments.size(), before) << "the result crosses itself";
}

Shapes removeOverlaps(const Shapes& input)
{
    Shapes shapes = input;
    EXPECT_TRUE(VLPathOperator::removeOverlapPaths(shapes));
    expectUnionOfInput(input, shapes);
    return shapes;
}

size_t nodeCount(const std::shared_ptr<VLShape>& shape)
{
    auto path = std::dynamic_pointer_cast<VLPath>(shape);
    return path ? static_cast<size_t>(path->count()) : 0;
}

// A contour around the centre with a random radius at each of its angles: never crossing itself.
std::shared_ptr<VLPath> randomStar(std::mt19937& random, bool curved)
{
    std::uniform_real_distribution<double> centre(250, 750), radius(60, 250);
    std::uniform_int_distribution<int> corners(3, 7);
    Point c{centre(random), centre(random)};
    int n = corners(random);
    std::vector<Point> points;
    std::vector<double> angles;
    for (int i = 0; i < n; ++i) {
        double angle = 2 * std::numbers::pi * i / n, r = radius(random);
        points.push_back({c.x + r * std::cos(angle), c.y + r * std::sin(angle)});
        angles.push_back(angle);
    }
    auto path = VLPath::init();
    for (int i = 1; i <= n; ++i) {
        Point from = points[size_t(i - 1)], to = points[size_t(i % n)];
        if (!curved) {
            path->addNodeFastWithPosition_type_connection(to, VLNodeType::LINE, 0);
            continue;
        }
        // Handles across the radius keep the contour turning around its centre.
        double a0 = angles[size_t(i - 1)], a1 = angles[size_t(i % n)], h = 40;
        path->addNodeFastWithPosition_type_connection({from.x - h * std::sin(a0), from.y + h * std::cos(a0)},
                                                      VLNodeType::OFFCURVE, 0);
        path->addNodeFastWithPosition_type_connection({to.x + h * std::sin(a1), to.y - h * std::cos(a1)},
                                                      VLNodeType::OFFCURVE, 0);
        path->addNodeFastWithPosition_type_connection(to, VLNodeType::CURVE, 0);
    }
    path->setClosed(true);
    return path;
}

} // namespace

TEST(PathOperatorRemoval, SquaresMergeCancelAndKeepTheirHoles)
{
    {
        SCOPED_TRACE("two overlapping squares give one outline of eight corners");
        auto result = removeOverlaps({square(0, 0, 400), square(200, 200, 400)});
        ASSERT_EQ(result.size(), 1u);
        EXPECT_EQ(nodeCount(result[0]), 8u);
        // The outline starts where the first square did, at its last node.
        auto path = std::dynamic_pointer_cast<VLPath>(result[0]);
        EXPECT_TRUE(path->closed());
        EXPECT_EQ(path->positionAtIndex(path->count() - 1), (Point{0, 400}));
        // The same into a pen.
        VLPathPen pen;
        EXPECT_TRUE(VLPathOperator::removeOverlapPaths_intoPen_italicAngle({square(0, 0, 400), square(200, 200, 400)},
                                                                          pen, 0));
        ASSERT_EQ(pen.layer()->shapes().size(), 1u);
        EXPECT_EQ(differingPixels(Picture(pen.layer()->shapes()), Picture(result)), 0);
    }
    {
        SCOPED_TRACE("a clockwise square inside stays a hole");
        auto result = removeOverlaps({square(0, 0, 600), square(200, 200, 200, true)});
        EXPECT_EQ(result.size(), 2u);
    }
    {
        SCOPED_TRACE("two identical squares the same way leave one");
        auto result = removeOverlaps({square(0, 0, 400), square(0, 0, 400)});
        ASSERT_EQ(result.size(), 1u);
        EXPECT_EQ(nodeCount(result[0]), 4u);
    }
    {
        SCOPED_TRACE("squares that touch at a corner, and squares with edges on one line");
        // At the shared corner each outline turns the widest way, and so keeps to its own square.
        auto touching = removeOverlaps({square(0, 0, 400), square(400, 400, 400)});
        ASSERT_EQ(touching.size(), 2u);
        EXPECT_EQ(nodeCount(touching[0]), 4u);
        EXPECT_EQ(nodeCount(touching[1]), 4u);
        auto result = removeOverlaps({square(0, 0, 400), square(200, 0, 400)});
        ASSERT_EQ(result.size(), 1u);
    }
    {
        SCOPED_TRACE("two identical squares running opposite ways cancel: nothing is left, and nothing changes");
        Shapes shapes{square(0, 0, 400), square(0, 0, 400, true)};
        Shapes before = shapes;
        EXPECT_FALSE(VLPathOperator::removeOverlapPaths(shapes));
        EXPECT_EQ(shapes, before);
    }
}

TEST(PathOperatorRemoval, WhatIsNotAClosedOutlineIsKeptApart)
{
    {
        SCOPED_TRACE("an open path crossing a closed one");
        auto open = VLPath::init();
        open->addNodeFastWithPosition_type_connection({-100, 200}, VLNodeType::LINE, 0);
        open->addNodeFastWithPosition_type_connection({900, 200}, VLNodeType::LINE, 0);
        Shapes shapes{open, square(0, 0, 400), square(200, 200, 400)};
        ASSERT_TRUE(VLPathOperator::removeOverlapPaths(shapes));
        ASSERT_EQ(shapes.size(), 2u);
        EXPECT_EQ(shapes.back(), open);
        EXPECT_EQ(nodeCount(shapes.back()), 2u);
    }
    {
        SCOPED_TRACE("a closed path of TrueType curves refuses");
        auto quadratic = VLPath::init();
        for (Point p : {Point{0, 0}, Point{400, 0}, Point{400, 400}})
            quadratic->addNodeFastWithPosition_type_connection(p, VLNodeType::OFFCURVE, 0);
        quadratic->addNodeFastWithPosition_type_connection({0, 400}, VLNodeType::QCURVE, 0);
        quadratic->setClosed(true);
        Shapes shapes{square(0, 0, 400), quadratic};
        Shapes before = shapes;
        EXPECT_FALSE(VLPathOperator::removeOverlapPaths(shapes));
        EXPECT_EQ(shapes, before);
    }
}

TEST(PathOperatorRemoval, LettersOfOverlappingStrokes)
{
    {
        SCOPED_TRACE("an A of two strokes and a bar");
        auto result = removeOverlaps({polygon({{0, 0}, {120, 0}, {560, 1000}, {440, 1000}}),
                                      polygon({{880, 0}, {1000, 0}, {560, 1000}, {440, 1000}}),
                                      polygon({{150, 300}, {850, 300}, {850, 400}, {150, 400}})});
        EXPECT_EQ(result.size(), 2u) << "the outline and the counter above the bar";
    }
    {
        SCOPED_TRACE("an O with its counter, crossed by a bar");
        removeOverlaps({ellipse({500, 500}, 400, 450), ellipse({500, 500}, 250, 320, true),
                        polygon({{0, 450}, {1000, 450}, {1000, 550}, {0, 550}})});
    }
    {
        SCOPED_TRACE("a round contour resting on a square's edge, the curve tangent to the line");
        auto result = removeOverlaps({ellipse({500, 500}, 200, 200), polygon({{300, 100}, {700, 100}, {700, 300}, {300, 300}})});
        EXPECT_LE(result.size(), 2u);
    }
    {
        SCOPED_TRACE("two round contours overlapping at their curve joins");
        removeOverlaps({ellipse({400, 500}, 300, 300), ellipse({700, 500}, 300, 300)});
    }
}

TEST(PathOperatorRemoval, RandomContoursAgreeWithTheFill)
{
    std::mt19937 random(2024);
    for (int round = 0; round < 120; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        bool curved = round % 2 == 1;
        removeOverlaps({randomStar(random, curved), randomStar(random, curved), randomStar(random, curved)});
    }
}

TEST(PathOperatorRemoval, SubtractionAndIntersectionAgreeWithTheFill)
{
    {
        SCOPED_TRACE("overlapping squares");
        expectSubtraction({square(200, 200, 400)}, {square(0, 0, 400)});
        expectIntersection({square(200, 200, 400)}, {square(0, 0, 400)});
        Paths bite{square(0, 0, 400)};
        VLPathOperator::subtractPaths_from_keepOverlaps({square(200, 200, 400)}, bite, false);
        ASSERT_EQ(bite.size(), 1u);
        EXPECT_EQ(bite[0]->count(), 6);
    }
    {
        SCOPED_TRACE("a hole cut into a square, and a square inside another");
        Paths holed{square(0, 0, 600)};
        VLPathOperator::subtractPaths_from_keepOverlaps({square(200, 200, 200)}, holed, false);
        EXPECT_EQ(holed.size(), 2u);
        expectSubtraction({square(200, 200, 200)}, {square(0, 0, 600)});
        expectIntersection({square(200, 200, 200)}, {square(0, 0, 600)});
    }
    {
        SCOPED_TRACE("a target of two overlapping squares is merged only when its overlaps may go");
        Paths twoSquares{square(0, 0, 400), square(200, 0, 400)};
        Paths cut{square(50, 50, 100), square(450, 50, 100)};
        Paths kept = twoSquares, merged = twoSquares;
        VLPathOperator::subtractPaths_from_keepOverlaps(asShapes(cut), kept, true);
        VLPathOperator::subtractPaths_from_keepOverlaps(asShapes(cut), merged, false);
        EXPECT_EQ(kept.size(), 4u);
        EXPECT_EQ(merged.size(), 3u);
        for (const Paths* result : {&kept, &merged})
            EXPECT_EQ(wrongPixels(cut, twoSquares, *result, [](bool c, bool t) { return t && !c; }), 0);
    }
    {
        SCOPED_TRACE("shapes apart have nothing in common");
        Paths apart{square(600, 600, 200)};
        EXPECT_FALSE(VLPathOperator::intersectPaths_with({square(0, 0, 200)}, apart));
    }
    {
        SCOPED_TRACE("an O cut by a bar");
        Paths o{ellipse({500, 500}, 400, 450), ellipse({500, 500}, 250, 320, true)};
        Paths bar{polygon({{0, 450}, {1000, 450}, {1000, 550}, {0, 550}})};
        expectSubtraction(bar, o);
        expectIntersection(bar, o);
        expectSubtraction(o, bar);
    }
    std::mt19937 random(99);
    for (int round = 0; round < 40; ++round) {
        SCOPED_TRACE(testing::Message() << "round " << round);
        bool curved = round % 2 == 1;
        Paths a{randomStar(random, curved)}, b{randomStar(random, curved)};
        expectSubtraction(a, b);
        expectIntersection(a, b);
    }
}

// Far from the origin, as the lists are sorted and searched by x.
TEST(PathOperatorRemoval, DoubledAndCancellingSegmentsGo)
{
    auto line = [](Point a, Point b) { return VLPathSegment::initWithLinePoint1_point2_options(a, b, 0); };
    auto curve = [](Point a, Point b, Point c, Point d) {
        return VLPathSegment::initWithCurvePoint1_point2_point3_point4_options(a, b, c, d, 0);
    };
    VLSegments doubled{line({500, 0}, {600, 0}), line({700, 50}, {800, 50}), line({500, 0}, {600, 0})};
    VLPathOperator::removeOverlappingSegments(doubled);
    EXPECT_EQ(doubled.size(), 2u);
    VLSegments others{line({500, 0}, {600, 0}), line({900, 0}, {950, 0})};
    VLSegments mine{line({500, 0}, {600, 0}), line({700, 50}, {800, 50})};
    VLPathOperator::removeOverlappingSegments_otherSegments(mine, others);
    ASSERT_EQ(mine.size(), 1u);
    EXPECT_EQ(mine[0].pointAtIndex(0), (Point{700, 50}));

    VLSegments cancelling{curve({500, 0}, {520, 80}, {580, 80}, {600, 0}), line({700, 0}, {800, 0}),
                          curve({600, 0}, {580, 80}, {520, 80}, {500, 0}), line({800, 0}, {700, 0}),
                          curve({600, 0}, {520, 80}, {580, 80}, {500, 0})};
    VLPathOperator::removeCancelingSegments(cancelling);
    // The first and third curves cancel, and so do the lines; the last curve runs back between
    // the first's ends but not over its handles, and stays.
    ASSERT_EQ(cancelling.size(), 1u);
    EXPECT_EQ(cancelling[0].pointAtIndex(1), (Point{520, 80}));
}

TEST(PathOperatorRemoval, ResultsKeepTheirSourcesAttributes)
{
    auto stroked = square(0, 0, 400), plain = square(200, 200, 400), apart = square(700, 0, 200);
    stroked->setAttribute_forKey(Value(20), "strokeWidth");
    apart->setAttribute_forKey(Value(true), "mask");
    Shapes shapes{stroked, plain, apart};
    ASSERT_TRUE(VLPathOperator::removeOverlapPaths(shapes));
    ASSERT_EQ(shapes.size(), 2u);
    // The merged outline starts on the stroked square, and takes its attributes.
    EXPECT_EQ(shapes[0]->attributes(), stroked->attributes());
    EXPECT_EQ(shapes[1]->attributes(), apart->attributes());
}

TEST(PathOperatorRemoval, AnOpenPathDrawnIntoAPenLeavesTheClosedOutline)
{
    // The pen variant takes open paths into the work: the pieces of the line outside the square
    // hang loose and go, and the piece inside lies in ink.
    auto open = VLPath::init();
    open->addNodeFastWithPosition_type_connection({-100, 200}, VLNodeType::LINE, 0);
    open->addNodeFastWithPosition_type_connection({900, 200}, VLNodeType::LINE, 0);
    VLPathPen pen;
    ASSERT_TRUE(VLPathOperator::removeOverlapPaths_intoPen_italicAngle({open, square(0, 0, 400)}, pen, 0));
    const auto& drawn = pen.layer()->shapes();
    ASSERT_EQ(drawn.size(), 1u);
    EXPECT_TRUE(std::dynamic_pointer_cast<VLPath>(drawn[0])->closed());
    EXPECT_EQ(differingPixels(Picture(drawn), Picture({square(0, 0, 400)})), 0);
}

TEST(PathOperatorRemoval, TheItalicAngleSlantsTheOrderOfNewContours)
{
    // The upper square lies right of the lower one, but left of it along a slant of 30 degrees.
    Paths squares{square(0, 0, 100), square(60, 300, 100)};
    auto upright = VLPathOperator::pathsFromSegments_startingPoints_italicAngle(
        VLPathOperator::segmentsFromPaths(squares), {}, 0);
    auto slanted = VLPathOperator::pathsFromSegments_startingPoints_italicAngle(
        VLPathOperator::segmentsFromPaths(squares), {}, 30);
    ASSERT_EQ(upright.size(), 2u);
    ASSERT_EQ(slanted.size(), 2u);
    EXPECT_LT(upright[0]->bounds().origin.y, 100);
    EXPECT_GT(slanted[0]->bounds().origin.y, 200);
}

TEST(PathOperatorRemoval, CuttingDropsTheCornersOfTheCutPathsAndDecomposesComponents)
{
    ComponentInFont f;
    f.font->glyphForName("B")->layerForId("m01")->setShapesFast({square(0, 0, 400)});
    auto first = square(0, 0, 600), second = square(700, 0, 200);
    f.layer->setShapesFast({first, second});
    auto cornerOn = [&](size_t pathIndex) {
        auto corner = VLHint::init();
        corner->setType(VLHintType::Corner);
        corner->setName("_corner.notch");
        corner->setOriginIndex({pathIndex, 1});
        f.layer->addHint(corner);
        return corner;
    };
    cornerOn(0);
    auto kept = cornerOn(1);

    Paths target{first};
    VLPathOperator::subtractPaths_from_keepOverlaps({square(200, 200, 200)}, target, true);
    EXPECT_EQ(f.layer->hints().size(), 2u) << "a subtraction that keeps overlaps keeps corners";
    target = {first};
    VLPathOperator::subtractPaths_from_keepOverlaps({square(200, 200, 200)}, target, false);
    ASSERT_EQ(f.layer->hints().size(), 1u);
    EXPECT_EQ(f.layer->hints()[0], kept);

    cornerOn(0);
    Paths other{square(100, 100, 200)};
    EXPECT_TRUE(VLPathOperator::intersectPaths_with({first}, other));
    ASSERT_EQ(f.layer->hints().size(), 1u);
    EXPECT_EQ(f.layer->hints()[0], kept);

    // A component is cut away where it shows its glyph's square.
    auto component = VLComponent::init();
    component->setComponentName("B");
    component->setPosition({300, 0});
    f.layer->addShapeFast(component);
    Paths bitten{square(0, 0, 600)};
    auto hole = square(100, 100, 100);
    VLPathOperator::subtractPaths_from_keepOverlaps({component, hole}, bitten, false);
    EXPECT_EQ(wrongPixels({square(300, 0, 400), hole}, {square(0, 0, 600)}, bitten,
                          [](bool c, bool t) { return t && !c; }),
              0);
    ASSERT_EQ(bitten.size(), 2u);
    EXPECT_EQ(bitten[0]->count() + bitten[1]->count(), 10) << "the bitten square's 6 nodes and the hole's 4";
}
