#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "platform/BezierPath.h"
#include "platform/GraphicsContext.h"
#include "platform/VLException.h"
#include "support/TestShapes.h"
#include "thumbnail/VLFontLoader.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// A layer outline of one rectangle.
using Outline = std::shared_ptr<VLPath>;

Outline box(double x0, double y0, double x1, double y1)
{
    return rectanglePath(x0, y0, x1, y1);
}

void setOutline(VLLayer& layer, const std::shared_ptr<VLShape>& outline)
{
    layer.setShapesFast({outline});
    layer.setNeedUpdateShapes();
}

// A font built in memory: masters with ascender 800 and descender -200, glyphs with one layer
// per master of the given width and outline.
struct Font {
    std::shared_ptr<VLFont> font = VLFont::init();

    explicit Font(size_t masters = 1)
    {
        for (size_t i = 1; i < masters; ++i) {
            auto master = VLFontMaster::initFast();
            master->setId("m0" + std::to_string(i + 1));
            font->addFontMaster(master);
        }
        for (const auto& master : font->fontMasters()) {
            master->setDefaultAscender(800);
            master->setDefaultDescender(-200);
        }
    }

    std::shared_ptr<VLGlyph> add(const std::string& name, std::vector<double> widths,
                                 Outline outline = nullptr, const std::string& category = "")
    {
        auto glyph = VLGlyph::initFast();
        glyph->setNameFast(name);
        glyph->setCategory(category);
        font->addGlyphFast(glyph);
        for (size_t i = 0; i < widths.size(); ++i) {
            auto layer = glyph->layerForId(font->fontMasters()[i]->id());
            layer->setWidth(widths[i]);
            if (outline) setOutline(*layer, outline->copy());
        }
        return glyph;
    }

    VLFontLoader loader() const
    {
        VLFontLoader loader;
        loader.setFont(font);
        return loader;
    }
};

// A context of 120 pixels square that shows the canvas at a tenth, current while it lives.
struct TenthScaleContext {
    GraphicsContext context{120, 120};
    GraphicsContext::Current current{context};

    TenthScaleContext()
    {
        AffineTransform scale;
        scale.scaleBy(0.1);
        scale.concat();
    }

    uint8_t alphaAt(int x, int y) const { return context.pixelAt(x, y)[3]; }
};

std::vector<std::string> names(const std::vector<std::shared_ptr<VLGlyph>>& glyphs)
{
    std::vector<std::string> result;
    for (const auto& glyph : glyphs) result.push_back(glyph->name());
    return result;
}

} // namespace

TEST(Layout, NamedSamplesComeFirstInOrder)
{
    Font f;
    f.add("g", {500});
    f.add("x", {300});
    f.add("A", {600});
    auto loader = f.loader();
    Size size = loader.layoutThumbnail();
    EXPECT_EQ(names(loader.cachedGlyphs()), (std::vector<std::string>{"A", "g"}));
    EXPECT_EQ(size.width, 100 + 600 + 500 + 100);
    EXPECT_EQ(size.height, 800 + 200 + 200);
    EXPECT_EQ(loader.canvasSize(), size);
}

TEST(Layout, FallbackSearchGoesDownFromTheMiddleAndSkipsMarks)
{
    {
        Font f;
        f.add("a", {100});
        f.add("g", {100});
        f.add("acute", {100}, nullptr, "Mark");
        f.add("b", {100});
        auto loader = f.loader();
        loader.layoutThumbnail();
        // Four glyphs start at index 2, a mark, and go down to "g", which is chosen twice.
        EXPECT_EQ(names(loader.cachedGlyphs()), (std::vector<std::string>{"g", "g"}));
    }
    {
        Font f;
        f.add("a", {100});
        f.add("b", {100});
        f.add("c", {100});
        auto loader = f.loader();
        loader.layoutThumbnail();
        EXPECT_EQ(names(loader.cachedGlyphs()), (std::vector<std::string>{"c", "b"}));
    }
}

TEST(Layout, AFontOfOneGlyphRaisesInTheFallbackSearch)
{
    Font f;
    f.add("A", {600});
    auto loader = f.loader();
    EXPECT_THROW(loader.layoutThumbnail(), VLException);
}

TEST(Layout, TooWideAndEmptySamples)
{
    {
        Font f(2);
        f.add("A", {600, 100001});
        f.add("g", {500, 500});
        auto loader = f.loader();
        EXPECT_EQ(loader.layoutThumbnail(), (Size{0, 0}));
        EXPECT_EQ(loader.canvasSize(), (Size{0, 0})) << "the canvas is left as it was";
    }
    {
        Font f;
        f.add("A", {0});
        f.add("g", {0});
        auto loader = f.loader();
        EXPECT_EQ(loader.layoutThumbnail().width, 200.0);
    }
}

TEST(GlyphThumbnail, WidthsOfMasters)
{
    Font f(2);
    auto wide = f.add("A", {40000, 40000});
    EXPECT_EQ(wide->width(), 7232) << "the 16-bit running total wraps";
    EXPECT_EQ(wide->maxWidth(), 40000);

    auto uneven = f.add("g", {300, 500});
    EXPECT_EQ(uneven->width(), 400);
    EXPECT_EQ(uneven->maxWidth(), 500);

    auto special = VLLayer::init();
    uneven->setLayer_forId(special, "brace");
    special->setWidth(9000);
    EXPECT_EQ(uneven->maxWidth(), 500) << "only master layers count";

    auto empty = VLGlyph::initFast();
    f.font->addGlyphFast(empty);
    EXPECT_EQ(empty->maxWidth(), 0.0);
    EXPECT_EQ(empty->bezierPath(), nullptr);
    EXPECT_EQ(VLGlyph::initFast()->width(), 0) << "a glyph outside a font has no masters to average";
}

TEST(GlyphThumbnail, CompatibleMastersAverageElementByElementWithoutCloses)
{
    Font f(2);
    auto glyph = f.add("A", {600, 600});
    setOutline(*glyph->layerForId("m01"), box(0, 0, 100, 100));
    setOutline(*glyph->layerForId("m02"), box(100, 0, 300, 500));

    auto mean = glyph->bezierPath();
    ASSERT_NE(mean, nullptr);
    EXPECT_EQ(mean->elementCount(), 5) << "four points; the close and its trailing move become one move";
    for (long e = 0; e < mean->elementCount(); ++e)
        EXPECT_NE(mean->elementAtIndex(e), BezierPathElement::ClosePath);
    Point p[3];
    mean->elementAtIndex_associatedPoints(0, p);
    EXPECT_EQ(p[0], (Point{50, 0})) << "the mean starts at the mean of the starts";
    mean->elementAtIndex_associatedPoints(2, p);
    EXPECT_EQ(p[0], (Point{200, 300}));

    glyph->removeLayerForId("m02");
    auto alone = glyph->bezierPath();
    ASSERT_NE(alone, nullptr) << "a master without layer is left out of the mean";
    alone->elementAtIndex_associatedPoints(2, p);
    EXPECT_EQ(p[0], (Point{100, 100}));
}

namespace {

// A counter (clockwise) whose closing line runs from (450, 200) to (250, 200). Both neighbours
// of that line lie nearly on it, so a unit decides on which side: the outside-step test passes
// in one master and fails in the other, and the crossing of the neighbours is too far for a cut.
Outline counterWithFlatBottom(double nextY, double handleY, bool curved)
{
    auto path = VLPath::init();
    auto add = [&](Point p, VLNodeType type) {
        path->addNodeFastWithPosition_type_connection(p, type, VLNode::SHARP);
    };
    add({250, 200}, VLNodeType::LINE);
    add({150, nextY}, VLNodeType::LINE);
    add({150, 400}, VLNodeType::LINE);
    add({550, 400}, VLNodeType::LINE);
    if (curved) {
        add({550, 300}, VLNodeType::OFFCURVE);
        add({500, handleY}, VLNodeType::OFFCURVE);
        add({450, 200}, VLNodeType::CURVE);
    } else {
        add({550, handleY}, VLNodeType::LINE);
        add({450, 200}, VLNodeType::LINE);
    }
    path->setClosed(true);
    return path;
}

uint8_t alphaOfFillAt(const BezierPath& path, int x, int y)
{
    GraphicsContext context(700, 600);
    GraphicsContext::Current current(context);
    path.fill();
    return context.pixelAt(x, y)[3];
}

} // namespace

TEST(GlyphThumbnail, MastersAUnitApartStartTheirContoursAlike)
{
    struct Case {
        const char* name;
        bool curved;
        double nextY[2];
        double handleY[2];
    };
    for (Case c : {Case{"lines", false, {199, 201}, {201, 201}}, Case{"curve", true, {201, 201}, {199, 201}}}) {
        Font f(2);
        auto glyph = f.add("A", {700, 700});
        for (int m = 0; m < 2; ++m) {
            auto& layer = *glyph->layerForId(f.font->fontMasters()[static_cast<size_t>(m)]->id());
            layer.setShapesFast({box(50, 100, 650, 500), counterWithFlatBottom(c.nextY[m], c.handleY[m], c.curved)});
            layer.setNeedUpdateShapes();
        }
        auto first = glyph->layerForId("m01")->drawBezierPath();
        auto second = glyph->layerForId("m02")->drawBezierPath();
        ASSERT_EQ(first->elementCount(), second->elementCount()) << c.name;
        Point p[3], q[3];
        first->elementAtIndex_associatedPoints(first->elementCount() - 3, p);
        second->elementAtIndex_associatedPoints(second->elementCount() - 3, q);
        EXPECT_EQ(p[0], q[0]) << c.name << ": the counters end on the same node";

        auto mean = glyph->bezierPath();
        ASSERT_NE(mean, nullptr) << c.name;
        EXPECT_EQ(alphaOfFillAt(*mean, 350, 300), 0) << c.name << ": inside both counters";
        EXPECT_EQ(alphaOfFillAt(*mean, 100, 300), 255) << c.name << ": the stem";
        EXPECT_EQ(alphaOfFillAt(*mean, 350, 150), 255) << c.name << ": below the counter";
    }
}

namespace {

// A closed contour of one line and one cubic, scaled.
Outline dome(double scale)
{
    auto path = VLPath::init();
    auto add = [&](Point p, VLNodeType type) {
        path->addNodeFastWithPosition_type_connection({p.x * scale, p.y * scale}, type, VLNode::SHARP);
    };
    add({100, 0}, VLNodeType::LINE);
    add({100, 60}, VLNodeType::OFFCURVE);
    add({0, 90}, VLNodeType::OFFCURVE);
    add({0, 0}, VLNodeType::CURVE);
    path->setClosed(true);
    return path;
}

} // namespace

TEST(GlyphThumbnail, CurvesAreAveragedInAllThreePoints)
{
    Font f(2);
    auto glyph = f.add("A", {600, 600});
    setOutline(*glyph->layerForId("m01"), dome(1));
    setOutline(*glyph->layerForId("m02"), dome(3));
    auto first = glyph->layerForId("m01")->drawBezierPath();
    auto second = glyph->layerForId("m02")->drawBezierPath();
    auto mean = glyph->bezierPath();
    ASSERT_NE(mean, nullptr);
    ASSERT_EQ(mean->elementCount(), first->elementCount() - 1) << "without the close";
    bool sawCurve = false;
    for (long e = 0; e < mean->elementCount(); ++e) {
        Point m[3], a[3], b[3];
        BezierPathElement kind = mean->elementAtIndex_associatedPoints(e, m);
        first->elementAtIndex_associatedPoints(e, a);
        second->elementAtIndex_associatedPoints(e, b);
        int points = kind == BezierPathElement::CurveTo ? 3 : 1;
        sawCurve = sawCurve || points == 3;
        for (int k = 0; k < points; ++k) EXPECT_EQ(m[k], (Point{(a[k].x + b[k].x) / 2, (a[k].y + b[k].y) / 2})) << e;
    }
    EXPECT_TRUE(sawCurve);
}

TEST(GlyphThumbnail, IncompatibleMastersShowTheFirstMasterAlone)
{
    Font f(2);
    f.font->addAxis(VLAxis::initWithName_tag("Weight", "wght"));
    auto glyph = f.add("A", {600, 600});
    setOutline(*glyph->layerForId("m01"), box(0, 0, 100, 100));
    setOutline(*glyph->layerForId("m02"), dome(1));
    ASSERT_FALSE(glyph->mastersCompatible());
    auto shown = glyph->bezierPath();
    auto first = glyph->layerForId("m01")->drawBezierPath();
    ASSERT_NE(shown, nullptr);
    ASSERT_EQ(shown->elementCount(), first->elementCount());
    for (long e = 0; e < shown->elementCount(); ++e) {
        Point a[3], b[3];
        EXPECT_EQ(shown->elementAtIndex_associatedPoints(e, a), first->elementAtIndex_associatedPoints(e, b));
        EXPECT_EQ(a[0], b[0]) << e;
    }
}

TEST(GlyphThumbnail, ShorterMasterOutlineGivesNoMean)
{
    Font f(2);
    auto glyph = f.add("A", {600, 600});
    setOutline(*glyph->layerForId("m01"), box(0, 0, 100, 100));
    auto stroke = box(0, 0, 10, 10);
    stroke->setClosed(false);
    setOutline(*glyph->layerForId("m02"), stroke);
    EXPECT_EQ(glyph->bezierPath(), nullptr);
}

TEST(Drawing, SamplesStandOnTheBaselineFirstFlushRight)
{
    Font f;
    f.add("A", {600}, box(0, 0, 600, 700));
    f.add("g", {400}, box(0, 0, 400, 500));
    auto loader = f.loader();
    Size canvas = loader.layoutThumbnail();
    ASSERT_EQ(canvas, (Size{1200, 1200}));

    TenthScaleContext picture;
    EXPECT_TRUE(loader.drawThumbnail());
    // Baseline at 100 - descender = 300 units; "A" spans x 100..700, "g" 700..1100.
    EXPECT_EQ(picture.alphaAt(40, 50), 255) << "inside A";
    EXPECT_EQ(picture.alphaAt(90, 50), 255) << "inside g";
    EXPECT_EQ(picture.alphaAt(90, 90), 0) << "above g";
    EXPECT_EQ(picture.alphaAt(40, 25), 0) << "below the baseline";
    EXPECT_EQ(picture.alphaAt(5, 50), 0) << "left margin";
}

TEST(Drawing, MastersAreOverlaidInATintEachFlushRightOnItsOwnWidth)
{
    Font f(2);
    auto a = f.add("A", {500, 600});
    setOutline(*a->layerForId("m01"), box(0, 0, 300, 700));
    setOutline(*a->layerForId("m02"), box(0, 0, 500, 700));
    f.add("g", {400, 400}, box(0, 0, 400, 500));
    auto loader = f.loader();
    loader.layoutThumbnail();

    GraphicsContext context(1200, 1200);
    GraphicsContext::Current current(context);
    EXPECT_TRUE(loader.drawThumbnail());
    // The widest "A" is 600: the mean (width 550) stands at 150 and covers 150..550, the first
    // master's overlay at 200 (200..500), the second's at 100 (100..600).
    auto onlySecondMaster = context.pixelAt(125, 600);
    EXPECT_GT(onlySecondMaster[3], 55) << "one tint of alpha 0.25";
    EXPECT_LT(onlySecondMaster[3], 75);
    EXPECT_LT(onlySecondMaster[0], 12) << "a dark tint: white 0.1";
    EXPECT_EQ(onlySecondMaster[0], onlySecondMaster[2]) << "grey";
    EXPECT_EQ(context.pixelAt(575, 600)[3], onlySecondMaster[3]) << "the right edge of the second master";
    EXPECT_EQ(context.pixelAt(175, 600)[3], 255) << "inside the black mean";
    EXPECT_EQ(context.pixelAt(530, 600)[3], 255);
    EXPECT_EQ(context.pixelAt(650, 600)[3], 0) << "between the samples";
}

TEST(Drawing, NothingDrawnWhenNoOutlineHasThreeElements)
{
    Font f;
    f.add("A", {600});
    f.add("g", {400});
    auto loader = f.loader();
    loader.layoutThumbnail();
    GraphicsContext context(10, 10);
    GraphicsContext::Current current(context);
    EXPECT_FALSE(loader.drawThumbnail());
}

namespace {

// Curves running between the bottom and the top of a glyph, as in a hostile outline, all within
// x0 to x0 + 60.
Outline zigzag(double x0, long curves)
{
    auto path = VLPath::init();
    for (long i = 0; i < curves; ++i) {
        double x = x0 + 60.0 * static_cast<double>(i) / static_cast<double>(curves);
        double low = i % 2 ? 700 : 0;
        path->addNodeFastWithPosition_type_connection({x, 700 - low}, VLNodeType::OFFCURVE, VLNode::SHARP);
        path->addNodeFastWithPosition_type_connection({x + 0.01, low}, VLNodeType::OFFCURVE, VLNode::SHARP);
        path->addNodeFastWithPosition_type_connection({x + 0.02, 700 - low}, VLNodeType::CURVE, VLNode::SHARP);
    }
    path->setClosed(true);
    return path;
}

double costAtFullSize(VLLayer& layer)
{
    return VLFontLoader::fillCost(*layer.bezierPath(), AffineTransform());
}

} // namespace

TEST(FillCost, FollowsTheRowsEveryFlattenedEdgeCrosses)
{
    auto line = BezierPath::bezierPath();
    line->moveToPoint({0, 0});
    line->lineToPoint({0, 100});
    // Up 100 rows and closed down again, one row more each.
    EXPECT_DOUBLE_EQ(VLFontLoader::fillCost(*line, AffineTransform()), 1 + 101 + 101);
    AffineTransform tenfold;
    tenfold.scaleBy(10);
    EXPECT_DOUBLE_EQ(VLFontLoader::fillCost(*line, tenfold), 1 + 1001 + 1001);
    AffineTransform sideways;
    sideways.rotateByDegrees(90);
    EXPECT_NEAR(VLFontLoader::fillCost(*line, sideways), 3, 1e-9) << "a horizontal edge crosses one row";
    // Each subpath is closed, explicitly or by the fill.
    auto two = BezierPath::bezierPath();
    two->moveToPoint({0, 50});
    two->lineToPoint({0, 150});
    two->closePath();
    two->moveToPoint({0, 0});
    two->lineToPoint({0, 50});
    EXPECT_DOUBLE_EQ(VLFontLoader::fillCost(*two, AffineTransform()), 1 + 101 + 101 + 1 + 51 + 51);

    // A curve costs the rows of its control polygon and a row for each line it flattens into,
    // more lines the more it bends.
    auto flat = BezierPath::bezierPath();
    flat->moveToPoint({0, 0});
    flat->curveToPoint_controlPoint1_controlPoint2({0, 300}, {0, 100}, {0, 200});
    EXPECT_DOUBLE_EQ(VLFontLoader::fillCost(*flat, AffineTransform()), 1 + 301 + 301);
    auto bent = BezierPath::bezierPath();
    bent->moveToPoint({0, 0});
    bent->curveToPoint_controlPoint1_controlPoint2({500, 0}, {1000, 0}, {1000, 0});
    // Second differences of 1000 and 500 pixels: ceil(sqrt(0.75 x 1000 / 0.1)) = 87 lines.
    EXPECT_DOUBLE_EQ(VLFontLoader::fillCost(*bent, AffineTransform()), 1 + 87 + 1);

    auto notANumber = BezierPath::bezierPath();
    notANumber->moveToPoint({0, 0});
    notANumber->lineToPoint({0, std::nan("")});
    EXPECT_TRUE(std::isnan(VLFontLoader::fillCost(*notANumber, AffineTransform())));
}

TEST(Drawing, OutlinesTooCostlyForTheRasterizerAreLeftOut)
{
    Font f;
    auto a = f.add("A", {600}, zigzag(0, 1000));
    ASSERT_GT(costAtFullSize(*a->layerForId("m01")), VLFontLoader::maximumFillCost);
    f.add("g", {400}, box(0, 0, 400, 500));
    auto loader = f.loader();
    loader.layoutThumbnail();
    {
        GraphicsContext context(1200, 1200);
        GraphicsContext::Current current(context);
        EXPECT_TRUE(loader.drawThumbnail());
        EXPECT_EQ(context.pixelAt(100 + 30, 300 + 350)[3], 0) << "A left out at full size";
        EXPECT_EQ(context.pixelAt(700 + 200, 300 + 250)[3], 255) << "g drawn";
    }
    // The same outline costs a tenth at a tenth of the size.
    TenthScaleContext picture;
    EXPECT_TRUE(loader.drawThumbnail());
    EXPECT_GT(picture.alphaAt(13, 65), 0) << "A drawn at a tenth";
}

TEST(Drawing, ARequestStopsFillingWhenItsCostIsSpent)
{
    // Every master's "A" stands apart; the mean and each overlay cost a full share.
    constexpr size_t masters = 10;
    Font f(masters);
    auto a = f.add("A", std::vector<double>(masters, 1200));
    constexpr long curves = 350;
    for (size_t i = 0; i < masters; ++i) {
        double x = 100.0 * static_cast<double>(i);
        setOutline(*a->layerForId(f.font->fontMasters()[i]->id()), zigzag(x, curves));
    }
    double share = costAtFullSize(*a->layerForId("m01"));
    ASSERT_EQ(static_cast<size_t>(VLFontLoader::maximumFillCostPerThumbnail / share), masters);
    f.add("g", std::vector<double>(masters, 400), box(0, 0, 400, 500));
    auto loader = f.loader();
    loader.layoutThumbnail();
    GraphicsContext context(1800, 1200);
    GraphicsContext::Current current(context);
    EXPECT_TRUE(loader.drawThumbnail());
    // The mean covers x 550..610; the first nine overlays fit into what is left after it.
    EXPECT_GT(context.pixelAt(100 + 30, 650)[3], 0) << "first master";
    EXPECT_GT(context.pixelAt(100 + 830, 650)[3], 0) << "ninth master";
    EXPECT_EQ(context.pixelAt(100 + 930, 650)[3], 0) << "tenth master left out";
}
