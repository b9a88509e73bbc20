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

// A rectangle whose lower edge is cut into enough line nodes to give the outline `elements`.
Outline denseBox(double x0, double y0, double x1, double y1, long elements)
{
    auto path = VLPath::init();
    // A closed outline has a move, a segment per node and a close.
    long steps = elements - 2 - 3;
    for (long i = 0; i < steps; ++i)
        path->addNodeFastWithPosition_type_connection({x0 + (x1 - x0) * static_cast<double>(i) / static_cast<double>(steps), y0},
                                                     VLNodeType::LINE, VLNode::SHARP);
    for (Point p : {Point{x1, y0}, Point{x1, y1}, Point{x0, y1}})
        path->addNodeFastWithPosition_type_connection(p, VLNodeType::LINE, VLNode::SHARP);
    path->setClosed(true);
    return path;
}

} // namespace

TEST(Drawing, OutlinesTooLongForTheRasterizerAreLeftOut)
{
    Font f;
    auto a = f.add("A", {600}, denseBox(0, 0, 600, 700, VLFontLoader::maximumFilledElements + 1));
    ASSERT_EQ(a->bezierPath()->elementCount(), VLFontLoader::maximumFilledElements + 1);
    f.add("g", {400}, box(0, 0, 400, 500));
    auto loader = f.loader();
    loader.layoutThumbnail();
    {
        TenthScaleContext picture;
        EXPECT_TRUE(loader.drawThumbnail());
        EXPECT_EQ(picture.alphaAt(40, 50), 0) << "A left out";
        EXPECT_EQ(picture.alphaAt(90, 50), 255) << "g drawn";
    }
    setOutline(*a->layerForId("m01"), denseBox(0, 0, 600, 700, VLFontLoader::maximumFilledElements));
    TenthScaleContext picture;
    EXPECT_TRUE(loader.drawThumbnail());
    EXPECT_EQ(picture.alphaAt(40, 50), 255) << "A at the limit is drawn";
}

TEST(Drawing, ARequestStopsFillingWhenItsElementsAreSpent)
{
    // Every master's "A" stands apart; the mean and each overlay cost a full share of elements.
    constexpr size_t masters = 10;
    constexpr long elements = 19000;
    static_assert(VLFontLoader::maximumElementsPerThumbnail / elements == masters);
    Font f(masters);
    auto a = f.add("A", std::vector<double>(masters, 1200));
    for (size_t i = 0; i < masters; ++i) {
        double x = 100.0 * static_cast<double>(i);
        setOutline(*a->layerForId(f.font->fontMasters()[i]->id()), denseBox(x, 0, x + 60, 700, elements));
    }
    f.add("g", std::vector<double>(masters, 400), box(0, 0, 400, 500));
    auto loader = f.loader();
    loader.layoutThumbnail();
    GraphicsContext context(1800, 1200);
    GraphicsContext::Current current(context);
    EXPECT_TRUE(loader.drawThumbnail());
    // The mean covers x 550..610; the first nine overlays fit into what is left after it.
    EXPECT_GT(context.pixelAt(100 + 30, 600)[3], 0) << "first master";
    EXPECT_GT(context.pixelAt(100 + 830, 600)[3], 0) << "ninth master";
    EXPECT_EQ(context.pixelAt(100 + 930, 600)[3], 0) << "tenth master left out";
}
