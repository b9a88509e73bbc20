#include "model/VLCustomParameter.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "model/VLPartProperty.h"
#include "outline/VLComponent.h"
#include "platform/BezierPath.h"
#include "platform/GraphicsContext.h"
#include "platform/VLError.h"
#include "support/PlistTestSupport.h"
#include "support/SmartGlyphInFont.h"
#include "thumbnail/VLFontLoader.h"

#include <gtest/gtest.h>

namespace {

ValueDictionary at(double width, double height)
{
    return {{"width", Value(width)}, {"height", Value(height)}};
}

// A smart glyph "frame" with the part axis "size" (0 to 100), whose two layers place "part": at
// its bottom ends at (0, 0) in the layer at the bottom of "size", and at its top ends at (100, 0)
// in the other. The first names the width only, so that its height is the end its base stands at.
std::shared_ptr<VLGlyph> addFrame(SmartGlyphInFont& f)
{
    auto frame = VLGlyph::initFast();
    frame->setNameFast("frame");
    frame->setPartsSettings({VLPartProperty::initWithName_bottom_top("size", 0, 100)});
    auto glyphs = f.font->glyphs();
    glyphs.push_back(frame);
    f.font->setGlyphs(glyphs);
    f.font->resetCache();
    auto placePart = [](const std::shared_ptr<VLLayer>& layer, ValueDictionary settings, Point position) {
        auto component = VLComponent::init();
        component->setComponentName("part");
        component->setPositionFast(position);
        component->setPieceSettings(std::move(settings));
        layer->addShapeFast(component);
    };
    auto small = frame->layerForId("m01");
    small->setPartSelection({{"size", Value(1)}});
    placePart(small, {{"width", Value(0)}}, {0, 0});
    auto big = VLLayer::init();
    big->setAssociatedMasterId("m01");
    big->setPartSelection({{"size", Value(2)}});
    frame->setLayer_forId(big, "frame-big");
    placePart(big, at(100, 200), {100, 0});
    return frame;
}

// The layout of the thumbnail of a font whose "A" and "g" are 600 and 400 wide, ascender 800 and
// descender -200: a canvas of 1200 by 1200, A at 100 on the baseline at 300.
struct Thumbnail {
    GraphicsContext context{1200, 1200};

    explicit Thumbnail(const std::shared_ptr<VLFont>& font)
    {
        VLFontLoader loader;
        loader.setFont(font);
        loader.layoutThumbnail();
        GraphicsContext::Current current(context);
        drawn = loader.drawThumbnail();
    }

    // Inside A, in its own units.
    uint8_t alphaInA(int x, int y) const { return context.pixelAt(100 + x, 300 + y)[3]; }

    bool drawn = false;
};

// The smart glyph and a component at (50, 100) in "A", in the document format given: 3 with
// "shapes", "ref" and "partSelection", 1 with "paths", "components" and the part selection in
// the layers' user data.
std::string smartDocument(int format)
{
    auto rectangle = [&](int x0, int y0, int x1, int y1, int oddX, int oddY) {
        char nodes[200];
        if (format == 3)
            std::snprintf(nodes, sizeof nodes, "(\n(%d,%d,l),\n(%d,%d,l),\n(%d,%d,l),\n(%d,%d,l)\n)", x1, y0, x1, y1, oddX,
                          oddY, x0, y0);
        else
            std::snprintf(nodes, sizeof nodes, "(\n\"%d %d LINE\",\n\"%d %d LINE\",\n\"%d %d LINE\",\n\"%d %d LINE\"\n)", x1,
                          y0, x1, y1, oddX, oddY, x0, y0);
        return std::string(format == 3 ? "shapes" : "paths") + " = (\n{\nclosed = 1;\nnodes = " + nodes + ";\n}\n);\n";
    };
    auto smartLayer = [&](const std::string& id, int width, int height, const std::string& shapes) {
        std::string selection = "{\nheight = " + std::to_string(height) + ";\nwidth = " + std::to_string(width) + ";\n}";
        std::string text = "{\n";
        if (id != "m01") text += "associatedMasterId = m01;\n";
        text += "layerId = " + id + ";\n";
        if (id != "m01") text += "name = " + id + ";\n";
        if (format == 3) text += "partSelection = " + selection + ";\n";
        text += shapes;
        if (format == 1) text += "userData = {\nPartSelection = " + selection + ";\n};\n";
        return text + "width = 10;\n}";
    };
    std::string component = format == 3 ? "shapes = (\n{\npiece = {\nheight = 100;\nwidth = 50;\n};\npos = (100,0);\nref = part;\n}\n);\n"
                                         : "components = (\n{\nname = part;\npiece = {\nheight = 100;\nwidth = 50;\n};\n"
                                           "transform = \"{1, 0, 0, 1, 100, 0}\";\n}\n);\n";
    return "{\n.formatVersion = " + std::to_string(format) + ";\nfontMaster = (\n{\nid = m01;\n}\n);\nglyphs = (\n"
           "{\nglyphname = A;\nlayers = (\n{\n" + component + "layerId = m01;\nwidth = 600;\n}\n);\n},\n"
           "{\nglyphname = part;\nlayers = (\n" +
           smartLayer("m01", 1, 1, rectangle(0, 0, 10, 20, 0, 20)) + ",\n" +
           smartLayer("wide", 2, 1, rectangle(0, 0, 110, 20, 0, 20)) + ",\n" +
           smartLayer("tall", 1, 2, rectangle(0, 0, 10, 220, 0, 220)) + ",\n" +
           smartLayer("both", 2, 2, rectangle(0, 0, 110, 220, 30, 240)) +
           "\n);\npartsSettings = (\n{\nbottomValue = 0;\nname = width;\ntopValue = 100;\n},\n"
           "{\nbottomValue = 0;\nname = height;\ntopValue = 200;\n}\n);\n}\n);\n}\n";
}

} // namespace

TEST(SmartComponent, ShowsItsGlyphAtItsPartValuesInTheThumbnail)
{
    SmartGlyphInFont f;
    for (const auto& master : f.font->fontMasters()) {
        master->setDefaultAscender(800);
        master->setDefaultDescender(-200);
    }
    auto g = VLGlyph::initFast();
    g->setNameFast("g");
    f.font->addGlyphFast(g);
    f.font->resetCache();
    g->layerForId("m01")->setWidth(400);
    g->layerForId("m01")->addShapeFast(rectanglePath(0, 0, 10, 10));

    auto corner = f.place(at(100, 0));
    EXPECT_EQ(firstPathNodes(corner->componentLayer()), firstPathNodes(f.part->layerForId("wide")));
    // The middle: (60, 0), (60, 120), (7.5, 125), (0, 0) from 100 on; and 150 wide past the end.
    auto middle = f.place(at(50, 100), {100, 0});
    EXPECT_EQ(middle->bounds(), (Rect{{100, 0}, {60, 125}}));
    auto beyond = f.place(at(150, 0), {300, 0});
    EXPECT_EQ(beyond->bounds(), (Rect{{300, 0}, {160, 20}}));
    f.layer->setShapesFast({middle, beyond});
    f.layer->setNeedUpdateShapes();

    Thumbnail picture(f.font);
    ASSERT_TRUE(picture.drawn);
    EXPECT_EQ(picture.alphaInA(100 + 30, 60), 255) << "inside the middle, far outside the plain layer";
    EXPECT_EQ(picture.alphaInA(100 + 58, 110), 255);
    EXPECT_EQ(picture.alphaInA(100 + 62, 60), 0) << "right of the middle";
    EXPECT_EQ(picture.alphaInA(100 + 30, 128), 0) << "above its slanted top";
    EXPECT_EQ(picture.alphaInA(300 + 155, 10), 255) << "past the end of the width axis";
    EXPECT_EQ(picture.alphaInA(300 + 165, 10), 0);
}

TEST(SmartComponent, ReadFromDocumentsOfBothFormats)
{
    for (int format : {3, 1}) {
        SCOPED_TRACE(format);
        TemporaryFile file(smartDocument(format));
        VLError error;
        auto font = VLFont::initWithURL_error(file.path, &error);
        ASSERT_NE(font, nullptr) << error.description();
        auto a = font->glyphForName("A")->layerForId("m01");
        ASSERT_EQ(a->countOfComponents(), 1);
        auto part = font->glyphForName("part");
        ASSERT_EQ(part->partsSettings().size(), 2u);
        EXPECT_EQ(part->layerForId("both")->partSelection().at("width").integerValue(), 2);
        EXPECT_EQ(a->drawBezierPath()->bounds(), (Rect{{100, 0}, {60, 125}}));
    }
}

TEST(SmartComponent, PieceValuesAreSetRemovedAndFoundOnTheBase)
{
    SmartGlyphInFont f;
    auto component = f.place({{"width", Value(0.1)}});
    EXPECT_EQ(component->pieceValueForKey("width"), static_cast<double>(0.1f)) << "through single precision";
    EXPECT_EQ(component->pieceValueForKey("height"), VLUnsetValue);
    component->setPieceValue_forKey(40, "height");
    EXPECT_EQ(component->pieceValueForKey("height"), 40);
    component->setPieceValue_forKey(VLUnsetValue, "width");
    EXPECT_EQ(component->pieceValueForKey("width"), VLUnsetValue);
    component->setPieceValue_forKey(1e30, "height");
    EXPECT_TRUE(component->pieceSettings().empty()) << "anything from two to the 63rd on removes";

    // An axis without a value is where the base layer of the component's master stands.
    const auto& axes = f.part->partsSettings();
    component->setPieceValue_forKey(70, "width");
    EXPECT_EQ(component->valueForAxis(*axes[0]), 70);
    EXPECT_EQ(component->valueForAxis(*axes[1]), 0);
    f.part->layerForId("m01")->setPartSelection({{"height", Value(2)}});
    EXPECT_EQ(component->valueForAxis(*axes[1]), 200);
    f.part->layerForId("m01")->setPartSelection({});
    EXPECT_EQ(component->valueForAxis(*axes[1]), VLUnsetValue);
}

TEST(SmartComponent, TheLayerIsKeptUntilSettingsOrGlyphsChange)
{
    SmartGlyphInFont f;
    auto component = f.place(at(50, 100));
    auto first = component->componentLayer();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->parent(), f.part) << "so that its own components find their glyphs";
    EXPECT_EQ(component->componentLayer(), first);

    f.part->setLastOperationInterval(VLAbsoluteTimeGetCurrent());
    auto second = component->componentLayer();
    EXPECT_NE(second, first);
    EXPECT_EQ(component->componentLayer(), second);
    component->setPieceSettings(at(50, 100));
    auto third = component->componentLayer();
    EXPECT_NE(third, second);
    EXPECT_EQ(firstPathNodes(third), firstPathNodes(first));

    // A glyph placed by the base layer counts too.
    auto frame = addFrame(f);
    auto framed = VLComponent::init();
    framed->setComponentName("frame");
    framed->setPieceSettings({{"size", Value(50)}});
    f.layer->addShapeFast(framed);
    auto outer = framed->componentLayer();
    ASSERT_NE(outer, nullptr);
    EXPECT_EQ(framed->componentLayer(), outer);
    f.part->setLastOperationInterval(VLAbsoluteTimeGetCurrent() + 10);
    EXPECT_NE(framed->componentLayer(), outer);
}

TEST(SmartComponent, SmartComponentsInsideASmartGlyph)
{
    SmartGlyphInFont f;
    addFrame(f);
    auto framed = VLComponent::init();
    framed->setComponentName("frame");
    framed->setPositionFast({1000, 0});
    framed->setPieceSettings({{"size", Value(50)}});
    f.layer->addShapeFast(framed);
    // Halfway: the inner component at (50, 0) with width 50 and height 100, the height halfway
    // between the bottom end where the small frame's base stands and 200.
    auto inner = framed->componentLayer();
    ASSERT_TRUE(inner && inner->countOfComponents() == 1);
    const auto& nested = static_cast<const VLComponent&>(*inner->shapes()[0]);
    EXPECT_EQ(nested.position(), (Point{50, 0}));
    EXPECT_EQ(nested.pieceSettings().at("width").doubleValue(), 50);
    EXPECT_EQ(nested.pieceSettings().at("height").doubleValue(), 100);
    EXPECT_EQ(framed->bounds(), (Rect{{1050, 0}, {60, 125}}));
    f.layer->setNeedUpdateShapes();
    EXPECT_EQ(f.layer->drawBezierPath()->bounds(), (Rect{{1050, 0}, {60, 125}}));

    // Past the end of the outer axis the inner values go past theirs, and both extrapolate: the
    // inner rectangle at (150, 300) is 160 wide and at least 320 high.
    framed->setPieceSettings({{"size", Value(150)}});
    inner = framed->componentLayer();
    ASSERT_TRUE(inner && inner->countOfComponents() == 1);
    const auto& farther = static_cast<const VLComponent&>(*inner->shapes()[0]);
    EXPECT_EQ(farther.position(), (Point{150, 0}));
    EXPECT_EQ(farther.pieceSettings().at("width").doubleValue(), 150);
    EXPECT_EQ(farther.pieceSettings().at("height").doubleValue(), 300);
    Rect far = framed->bounds();
    EXPECT_EQ(far.origin, (Point{1150, 0}));
    EXPECT_EQ(far.size.width, 160);
    EXPECT_GE(far.size.height, 320);
}

TEST(SmartComponent, GroupSettingsAndKeptWeightShowTheBase)
{
    SmartGlyphInFont f;
    auto base = f.part->layerForId("m01");
    auto group = f.place({{"Group", Value(1)}});
    EXPECT_EQ(group->componentLayer(), base);
    group->setPieceSettings({{"Group", Value(1)}, {"width", Value(100)}});
    EXPECT_EQ(firstPathNodes(group->componentLayer()), firstPathNodes(f.part->layerForId("wide")));
    EXPECT_EQ(f.place({})->componentLayer(), base);

    // A component that keeps its weight is scaled instead, and its part values have no effect.
    auto kept = f.place(at(100, 200));
    kept->setKeepWeight(40);
    EXPECT_EQ(kept->componentLayer(), base);
    EXPECT_EQ(kept->bezierPath()->bounds(), (Rect{{0, 0}, {10, 20}}));
}

TEST(SmartComponent, NoFactorsShowTheFigureOfAMissingGlyph)
{
    // Without the layer at both top ends, the product of weights has nothing at (100, 200).
    SmartGlyphInFont f;
    f.part->removeLayerForId("both");
    f.font->addCustomParameter(VLCustomParameter::initWithName_value("Smart Components MM Mode", Value(true)));
    auto component = f.place(at(100, 200), {500, 0});
    EXPECT_EQ(component->componentLayer(), nullptr);
    Rect figure = VLComponent::newMissingBaseGlyphPath()->bounds();
    EXPECT_EQ(component->bezierPath()->bounds(), (Rect{{500 + figure.origin.x, figure.origin.y}, figure.size}));
    EXPECT_EQ(component->bezierPathIgnorePlaceholder(true), nullptr);
    component->setPieceSettings(at(50, 0));
    EXPECT_EQ(component->bounds(), (Rect{{500, 0}, {60, 20}}));
}
