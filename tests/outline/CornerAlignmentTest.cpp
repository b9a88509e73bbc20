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
// outgoing one at 100. The notch's ends always land 100 units along the legs; its inner point, 141
// units out at 45 degrees between legs at 90 and 0, turns with the leg that the alignment keeps.
TEST(CornerAlignment, EachAlignmentTurnsTheCornerByItsOwnReference)
{
    CornerOutline acute("acute");
    ASSERT_NE(acute.layer, nullptr);
    Point inEnd{306.0, 134.2}, outEnd{382.6, 198.5};
    // Along the incoming leg: turned by 70 degrees, the inner point at 115.
    expectPassesThrough(acute.drawnWith(0), {inEnd, outEnd, {340.2, 228.2}});
    // Along the outgoing leg: turned by 100, at 145.
    expectPassesThrough(acute.drawnWith(1), {inEnd, outEnd, {284.2, 181.1}});
    // Bisector onto bisector: turned by 85, at 130.
    expectPassesThrough(acute.drawnWith(2), {inEnd, outEnd, {309.1, 208.3}});
    // Upright: not turned at all, so the inner point stands outside the narrow corner.
    expectPassesThrough(acute.drawnWith(4), {inEnd, outEnd, {500, 200}});
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
