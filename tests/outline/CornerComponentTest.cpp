#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLHint.h"
#include "platform/BezierPath.h"
#include "platform/Color.h"
#include "platform/GraphicsContext.h"
#include "support/TestDocuments.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

// The glyph's outline filled in black at one pixel a unit.
struct Rendered {
    GraphicsContext context{800, 800};

    Rendered(VLFont& font, const std::string& glyphName)
    {
        GraphicsContext::Current current(context);
        auto glyph = font.glyphForName(glyphName);
        auto layer = glyph ? glyph->layerForId("m01") : nullptr;
        auto outline = layer ? layer->bezierPath() : nullptr;
        if (!outline) return;
        Color::blackColor().set();
        outline->fill();
    }

    bool inked(Point p) const { return context.pixelAt(int(p.x), int(p.y))[3] > 200; }
    bool clear(Point p) const { return context.pixelAt(int(p.x), int(p.y))[3] < 55; }
};

// Each place is expected to be inked (true) or clear (false); a pixel of anti-aliased edge between
// counts as neither, so the places keep a few units off every edge.
void expectInk(const Rendered& picture, const std::vector<std::pair<Point, bool>>& places)
{
    for (const auto& [place, ink] : places) {
        SCOPED_TRACE(testing::Message() << "at " << place.x << "," << place.y);
        EXPECT_TRUE(ink ? picture.inked(place) : picture.clear(place));
    }
}

std::shared_ptr<VLFont> cornerDocument()
{
    return readTestDocument("corners/corners-format3.velmor");
}

} // namespace

TEST(CornerComponents, AnInwardNotchCutsTheCornerOfASquare)
{
    auto font = cornerDocument();
    ASSERT_NE(font, nullptr);
    Rendered picture(*font, "notched");
    expectInk(picture, {{{150, 150}, false},
                        {{195, 195}, false},
                        {{150, 230}, true},
                        {{230, 150}, true},
                        {{300, 300}, true},
                        {{480, 480}, true},
                        {{110, 480}, true},
                        {{480, 110}, true},
                        {{90, 300}, false},
                        {{520, 300}, false}});
    // Drawn the other way round, the corner turns the other way: the notch, drawn for a left
    // turn, is mirrored onto it and cuts the same square out.
    expectInk(Rendered(*font, "notchedClockwise"),
              {{{150, 150}, false}, {{195, 195}, false}, {{150, 250}, true}, {{250, 150}, true}, {{300, 300}, true}});
}

TEST(CornerComponents, ACornerOfTwoNodesBevelsTheCorner)
{
    auto font = cornerDocument();
    ASSERT_NE(font, nullptr);
    Rendered picture(*font, "bevelled");
    expectInk(picture, {{{110, 110}, false}, {{140, 140}, true}, {{105, 170}, true}, {{170, 105}, true}});
}

TEST(CornerComponents, AMissingCornerGlyphLeavesTheNodeSharp)
{
    auto font = cornerDocument();
    ASSERT_NE(font, nullptr);
    Rendered picture(*font, "missing");
    expectInk(picture, {{{105, 105}, true}, {{150, 150}, true}, {{300, 300}, true}, {{95, 95}, false}});
}

TEST(CornerComponents, ACornerOnACurveToLineJoinFollowsBothSegments)
{
    auto font = cornerDocument();
    ASSERT_NE(font, nullptr);
    Rendered picture(*font, "curved");
    // The notch sits in the top left corner, between the curve coming in from the right and the
    // line going down; turned and sheared to that corner, it still reaches about 100 units along
    // each.
    expectInk(picture, {{{130, 470}, false},
                        {{170, 430}, false},
                        {{105, 350}, true},
                        {{250, 440}, true},
                        {{250, 250}, true},
                        {{150, 150}, true}});
}

// The notch on the bottom left corner of shapes whose segments at that corner are not both long
// lines: an outgoing curve, an incoming curve shorter than the notch's leg (which the notch
// swallows whole), and a leg of no length, which leaves nothing to lay the notch along.
TEST(CornerComponents, CurvedShortAndEmptyLegs)
{
    auto font = cornerDocument();
    ASSERT_NE(font, nullptr);
    {
        SCOPED_TRACE("curved outgoing leg");
        expectInk(Rendered(*font, "curvedOut"), {{{150, 150}, false},
                                                 {{195, 195}, false},
                                                 {{130, 300}, true},
                                                 {{250, 230}, true},
                                                 {{450, 420}, true},
                                                 {{480, 330}, false}});
    }
    {
        SCOPED_TRACE("short incoming curve");
        expectInk(Rendered(*font, "shortCurve"),
                  {{{150, 150}, false}, {{150, 250}, true}, {{300, 300}, true}, {{50, 300}, false}});
    }
    {
        SCOPED_TRACE("leg of no length");
        expectInk(Rendered(*font, "zeroLeg"), {{{105, 105}, true}, {{150, 150}, true}, {{95, 95}, false}});
    }
}

TEST(CapComponents, RoundCapsAtBothEndsOfABarOneAcrossTheClosingPoint)
{
    auto font = cornerDocument();
    ASSERT_NE(font, nullptr);
    Rendered picture(*font, "capped");
    // The bar spans 100 to 500; each end gets a half disc of radius 200 around its middle.
    expectInk(picture, {{{300, 300}, true},
                        {{650, 300}, true},
                        {{30, 300}, true},
                        {{680, 300}, true},
                        {{690, 130}, false},
                        {{690, 470}, false},
                        {{710, 300}, false},
                        {{10, 110}, false},
                        {{10, 490}, false}});
}

// The cap is 400 wide on a stroke of 300: alignment 0 puts its first node on the stroke's
// arriving side, 1 its last node on the leaving side, 2 its middle on the stroke's middle.
TEST(CapComponents, TheAlignmentSaysWhereANarrowerStrokeHoldsTheCap)
{
    auto font = cornerDocument();
    ASSERT_NE(font, nullptr);
    auto glyph = font->glyphForName("narrowCapped");
    ASSERT_NE(glyph, nullptr);
    auto layer = glyph->layerForId("m01");
    ASSERT_NE(layer, nullptr);
    const std::pair<uint8_t, double> centres[] = {{0, 300}, {1, 200}, {2, 250}};
    for (auto [alignment, centre] : centres) {
        SCOPED_TRACE(testing::Message() << "alignment " << int(alignment));
        layer->hints().at(0)->setAlignment(alignment);
        layer->setNeedUpdateShapes();
        Rendered picture(*font, "narrowCapped");
        expectInk(picture, {{{680, centre}, true}, {{690, centre - 100}, false}, {{690, centre + 100}, false}});
    }
}

TEST(BentComponents, ABrushAlongALine)
{
    auto font = cornerDocument();
    ASSERT_NE(font, nullptr);
    Rendered picture(*font, "brushed");
    expectInk(picture, {{{110, 300}, true},
                        {{300, 320}, true},
                        {{490, 280}, true},
                        {{300, 340}, false},
                        {{300, 260}, false},
                        {{90, 300}, false},
                        {{510, 300}, false}});
}

TEST(BentComponents, ASegmentComponentBentAlongACurve)
{
    auto font = cornerDocument();
    ASSERT_NE(font, nullptr);
    Rendered picture(*font, "bumped");
    // The bump points to the left of the curve's travel, into the ink, halfway along the curve.
    expectInk(picture, {{{355, 355}, false}, {{300, 300}, true}, {{420, 250}, true}, {{250, 420}, true}});
}

// A cap asked to fit its stroke takes the stroke's width: the round cap, 400 wide, on a stroke of
// 200 becomes a half ellipse that overhangs neither side. A cap glyph without
// node anchors sits on the stroke by its path's ends.
TEST(CapComponents, AFittedCapTakesTheStrokesWidthAndAnOldCapItsPathsEnds)
{
    auto font = cornerDocument();
    ASSERT_NE(font, nullptr);
    expectInk(Rendered(*font, "fitCapped"), {{{600, 200}, true},
                       {{600, 120}, true},
                       {{680, 200}, true},
                       {{690, 150}, false},
                       {{600, 350}, false},
                       {{600, 50}, false}});
    expectInk(Rendered(*font, "oldCapped"), {{{300, 300}, true},
                                              {{650, 300}, true},
                                              {{680, 300}, true},
                                              {{690, 130}, false},
                                              {{690, 470}, false},
                                              {{710, 300}, false}});
}

// The older format writes nodes, anchors, hint places and the cap's fitting option its own way;
// every glyph of the corner document draws the same from it.
TEST(CornerComponents, BothFormatsDrawTheSame)
{
    auto current = cornerDocument();
    auto older = readTestDocument("corners/corners-format1.velmor");
    ASSERT_NE(current, nullptr);
    ASSERT_NE(older, nullptr);
    ASSERT_EQ(current->countOfGlyphs(), older->countOfGlyphs());
    for (const auto& glyph : current->glyphs()) {
        SCOPED_TRACE(glyph->name());
        Rendered a(*current, glyph->name()), b(*older, glyph->name());
        int differing = 0;
        for (int y = 0; y < 800; y += 2)
            for (int x = 0; x < 800; x += 2) differing += a.context.pixelAt(x, y)[3] != b.context.pixelAt(x, y)[3];
        EXPECT_EQ(differing, 0);
    }
}

// A segment component and a corner on one node: the left side is bent first, and the notch then
// finds its node on the bent outline.
TEST(BentComponents, ABentSideKeepsTheCornerAtItsEnd)
{
    auto font = cornerDocument();
    ASSERT_NE(font, nullptr);
    expectInk(Rendered(*font, "bumpedAndNotched"), {{{150, 150}, false},
                                                     {{130, 300}, false},
                                                     {{110, 350}, true},
                                                     {{110, 250}, true},
                                                     {{300, 300}, true},
                                                     {{480, 480}, true}});
}
