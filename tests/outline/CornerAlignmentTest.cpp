#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLHint.h"
#include "platform/BezierPath.h"
#include "support/TestDocuments.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

namespace {

// The outline of a glyph of the corner document after its one hint is changed.
struct CornerOutline {
    std::shared_ptr<VLFont> font = readTestDocument("corners/corners-format3.velmor");
    std::shared_ptr<VLLayer> layer;

    explicit CornerOutline(const std::string& glyphName)
    {
        auto glyph = font ? font->glyphForName(glyphName) : nullptr;
        layer = glyph ? glyph->layerForId("m01") : nullptr;
    }

    std::shared_ptr<BezierPath> drawnWith(uint8_t alignment, Point scale = {1, 1})
    {
        VLHint& hint = *layer->hints().at(0);
        hint.setAlignment(alignment);
        hint.setScale(scale);
        layer->setNeedUpdateShapes();
        return layer->bezierPath();
    }
};

// Whether a point of the outline lies within a unit of p, as the grid rounds it.
bool passesThrough(const BezierPath& outline, Point p)
{
    Point points[3];
    for (long i = 0; i < outline.elementCount(); ++i) {
        auto kind = outline.elementAtIndex_associatedPoints(i, points);
        if (kind == BezierPathElement::ClosePath) continue;
        Point end = points[kind == BezierPathElement::CurveTo ? 2 : 0];
        if (std::hypot(end.x - p.x, end.y - p.y) <= 1) return true;
    }
    return false;
}

void expectPassesThrough(const std::shared_ptr<BezierPath>& outline, std::initializer_list<Point> points)
{
    ASSERT_NE(outline, nullptr);
    for (Point p : points)
        EXPECT_TRUE(passesThrough(*outline, p)) << "no point at " << p.x << "," << p.y;
}

} // namespace

// The node of "acute" at (400, 100) opens 60 degrees, from its incoming leg at 160 degrees to its
// outgoing one at 100. The notch keeps its right angle: its ends lie 100 units out at 90 and 0
// degrees, its inner point 141 units out at 45. Laid along one leg, it slides along that leg
// until its other end meets the other leg, 115 units out, while the first end lies 158 out.
TEST(CornerAlignment, EachAlignmentTurnsTheCornerByItsOwnReference)
{
    CornerOutline acute("acute");
    ASSERT_NE(acute.layer, nullptr);
    // Along the incoming leg: turned by 70 degrees.
    expectPassesThrough(acute.drawnWith(0), {{251.8, 153.9}, {379.9, 213.7}, {286.0, 247.9}});
    // Along the outgoing leg: turned by 100.
    expectPassesThrough(acute.drawnWith(1), {{291.5, 139.5}, {372.6, 255.3}, {274.2, 238.0}});
    // Chord onto chord: turned by 85 around the node and not moved, so that each end stands 15
    // degrees off its leg.
    expectPassesThrough(acute.drawnWith(2), {{300.4, 108.7}, {408.7, 199.6}, {309.1, 208.3}});
    // Upright: not turned at all, so the notch stands outside the narrow corner; its last step
    // sticks out past the outgoing leg and is cut where that leg crosses the notch's top.
    auto upright = acute.drawnWith(4);
    expectPassesThrough(upright, {{400, 200}, {457.1, 200}});
    EXPECT_FALSE(passesThrough(*upright, {500, 200}));
}

// The step's inner point sits nearer its outgoing leg. A negative x scale mirrors the step, which
// reverses it: on the same corner, the inner point then sits nearer the incoming leg.
TEST(CornerAlignment, ANegativeScaleMirrorsTheCornerAcrossItsDiagonal)
{
    CornerOutline stepped("stepped");
    ASSERT_NE(stepped.layer, nullptr);
    auto plain = stepped.drawnWith(0);
    expectPassesThrough(plain, {{100, 200}, {200, 150}, {200, 100}});
    EXPECT_FALSE(passesThrough(*plain, {150, 200}));
    auto mirrored = stepped.drawnWith(0, {-1, 1});
    expectPassesThrough(mirrored, {{100, 200}, {150, 200}, {200, 100}});
    EXPECT_FALSE(passesThrough(*mirrored, {200, 150}));
}
