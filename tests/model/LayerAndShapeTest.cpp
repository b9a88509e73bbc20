#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLAnchor.h"
#include "platform/BezierPath.h"
#include "platform/VLUnsetValue.h"
#include "support/TestShapes.h"

#include <gtest/gtest.h>

namespace {

struct LayerInFont {
    std::shared_ptr<VLFont> font = VLFont::init();
    std::shared_ptr<VLGlyph> glyph = VLGlyph::initFast();
    std::shared_ptr<VLLayer> layer;

    LayerInFont()
    {
        glyph->setNameFast("A");
        font->setGlyphs({glyph});
        layer = glyph->layerForId("m01");
    }
};

std::shared_ptr<TestShape> shape(VLShapeType type)
{
    return std::make_shared<TestShape>(type);
}

} // namespace

TEST(Layer, WidthIsGridRoundedNeverNegativeAndMovesTheRightSideBearing)
{
    LayerInFont f;
    f.layer->setWidth(-5);
    EXPECT_EQ(f.layer->width(), 0);

    f.layer->setRSB(50);
    f.layer->setWidth(100.4);
    EXPECT_EQ(f.layer->width(), 100) << "grid 1 rounds to whole units";
    EXPECT_EQ(f.layer->RSB(), 150);

    f.font->setGridMain(0);
    f.layer->setWidth(100.4);
    EXPECT_DOUBLE_EQ(f.layer->width(), 100.4);

    f.font->setGridMain(5);
    f.layer->setWidth(12.5);
    EXPECT_EQ(f.layer->width(), 15) << "half of a grid step rounds away from zero";
}

TEST(Layer, WidthChangeFlushesTheOutlineCaches)
{
    LayerInFont f;
    EXPECT_EQ(f.layer->bezierPath(), nullptr) << "a layer without shapes has no outline";
    EXPECT_EQ(f.layer->drawBezierPath()->elementCount(), 0) << "but draws an empty path";

    f.layer->addShapeFast(rectanglePath(0, 0, 10, 10));
    f.layer->setNeedUpdateShapes(); // writers of shapes flush the caches themselves
    auto outline = f.layer->bezierPath();
    ASSERT_NE(outline, nullptr);
    EXPECT_EQ(outline->elementCount(), 6);
    EXPECT_EQ(f.layer->drawBezierPath()->elementCount(), 6);
    EXPECT_NE(f.layer->drawBezierPath(), f.layer->drawBezierPath()) << "each caller gets its own copy";

    f.layer->setWidth(f.layer->width());
    EXPECT_EQ(f.layer->bezierPath(), outline) << "an unchanged width keeps the cache";
    f.layer->setWidth(700);
    EXPECT_NE(f.layer->bezierPath(), outline) << "a new width rebuilds it";
    EXPECT_GT(f.layer->lastUpdate(), 0);
}

TEST(Layer, ShapesGetTheirParentAndCountsAreCached)
{
    LayerInFont f;
    auto path = shape(VLShapeType::Path);
    auto component = shape(VLShapeType::Component);
    f.layer->addShapes({path, component, shape(VLShapeType::Path)});
    f.layer->addShapeFast(nullptr);
    EXPECT_EQ(f.layer->countOfShapes(), 3u);
    EXPECT_EQ(path->layer(), f.layer);
    EXPECT_EQ(path->glyph(), f.glyph);
    EXPECT_EQ(path->font(), f.font);
    EXPECT_EQ(f.layer->countOfPaths(), 2);
    EXPECT_EQ(f.layer->countOfComponents(), 1);
    EXPECT_EQ(f.layer->objectInShapesAtIndex(3), nullptr);
    EXPECT_EQ(f.layer->indexOfObjectInShapes(component.get()), 1);

    std::vector<std::vector<size_t>> visited;
    f.layer->enumeratePathsUsingBlock([&](const auto&, const auto& indexPath, bool&) { visited.push_back(indexPath); });
    EXPECT_EQ(visited, (std::vector<std::vector<size_t>>{{0}, {2}}));

    f.layer->setShapes({component});
    EXPECT_EQ(path->parent(), nullptr) << "a replaced shape lets go of the layer";
    EXPECT_EQ(f.layer->countOfPaths(), 2) << "the count stays cached until the shapes are flushed";
    f.layer->setNeedUpdateShapes();
    EXPECT_EQ(f.layer->countOfPaths(), 0);
}

TEST(Layer, VisibilityOfMasterLayersIsTheMasters)
{
    LayerInFont f;
    f.layer->setVisible(true);
    EXPECT_TRUE(f.font->fontMasterAtIndex(0)->visible());
    auto special = VLLayer::init();
    f.glyph->setLayer_forId(special, "brace");
    special->setVisible(true);
    EXPECT_TRUE(special->visible());
    f.font->fontMasterAtIndex(0)->setVisible(false);
    EXPECT_FALSE(f.layer->visible());
    EXPECT_TRUE(special->visible());
}

TEST(Layer, UpdateStates)
{
    auto layer = VLLayer::init();
    layer->ignoreUpdates();
    EXPECT_TRUE(layer->isIgnoringUpdates());
    EXPECT_TRUE(layer->updatesDisabled());
    layer->setRSB(40);
    layer->startUpdates();
    EXPECT_FALSE(layer->isIgnoringUpdates());
    EXPECT_FALSE(layer->updatesDisabled());
    EXPECT_EQ(layer->RSB(), VLUnsetValue) << "enabling updates flushes the metrics";

    layer->setRSB(40);
    layer->startUpdates();
    EXPECT_EQ(layer->RSB(), 40) << "updates were on: nothing to flush";

    layer->stopUpdates();
    EXPECT_TRUE(layer->updatesDisabled());
    EXPECT_FALSE(layer->isIgnoringUpdates());
    layer->enableFutureUpdates();
    EXPECT_FALSE(layer->updatesDisabled());
    EXPECT_EQ(layer->RSB(), 40) << "future updates start without a flush";
}

TEST(Layer, CopiesKeepKindAnchorsAndPartsAndThinOnesLeaveTheFreeColour)
{
    LayerInFont f;
    f.layer->setColor(Color::colorWithCalibratedWhite_alpha(0.2, 1));
    f.layer->addShapeFast(shape(VLShapeType::Path));
    f.layer->setWidth(432);
    f.layer->setAttribute_forKey(Value(ValueArray{Value(int64_t{400})}), "coordinates");
    auto top = VLAnchor::init();
    top->setName("top");
    top->setPositionFast({250, 700});
    VLLayer::Anchors anchors;
    anchors.setObject_forKey(top, "top");
    f.layer->setAnchorsFast(anchors);
    f.layer->setPartSelection({{"height", Value(int64_t{2})}});

    auto thick = f.layer->copyThin(false);
    EXPECT_TRUE(thick->isIgnoringUpdates());
    EXPECT_EQ(thick->width(), 432);
    EXPECT_EQ(thick->layerId(), "m01");
    EXPECT_TRUE(thick->color());
    ASSERT_EQ(thick->countOfShapes(), 1u);
    EXPECT_NE(thick->shapes()[0], f.layer->shapes()[0]) << "shapes are copied, not shared";
    EXPECT_EQ(thick->shapes()[0]->layer(), thick);
    EXPECT_EQ(thick->attributes(), f.layer->attributes()) << "a brace layer stays a brace layer";
    EXPECT_EQ(thick->partSelection(), f.layer->partSelection());
    auto anchor = thick->anchors().objectForKey("top");
    ASSERT_NE(anchor, nullptr);
    EXPECT_NE(anchor, top) << "anchors are copied, not shared";
    EXPECT_EQ(anchor->position(), (Point{250, 700}));
    EXPECT_EQ(anchor->layer(), thick);

    auto thin = f.layer->copyThin(true);
    EXPECT_FALSE(thin->color());
    EXPECT_EQ(thin->attributes(), f.layer->attributes());

    auto glyphCopy = f.glyph->copy();
    EXPECT_EQ(glyphCopy->layerForIdFast("m01")->attributes(), f.layer->attributes()) << "and so in copies of glyphs";
}

TEST(Shape, CoordinatesBeyondTheGuardBecome21)
{
    TestShape s(VLShapeType::Path);
    s.setPositionFast({32000.5, 10});
    EXPECT_EQ(s.position(), (Point{21, 10}));
    s.setPositionFast({32000, -40000});
    EXPECT_EQ(s.position(), (Point{32000, 21}));
    EXPECT_EQ(s.positionPrecise(), (Point{32000, 21}));
}

TEST(Shape, RoundedPositionsKeepThePreciseValue)
{
    TestShape s(VLShapeType::Path);
    s.setPositionFast_round({10.4, 0}, 1);
    EXPECT_EQ(s.position(), (Point{10, 0}));
    EXPECT_EQ(s.positionPrecise(), (Point{10.4, 0}));
    s.setPositionFast_round({10.4, 0}, 0);
    EXPECT_EQ(s.position(), (Point{10.4, 0}));

    s.setPositionFast_round({7.3, -2.5}, 0.5);
    EXPECT_EQ(s.position(), (Point{7.5, -2.5}));
    s.setPositionFast_round({7, 0}, 4);
    EXPECT_EQ(s.position(), (Point{8, 0}));

    s.setPosition({3.6, 0});
    s.roundToGridFast(1);
    EXPECT_EQ(s.positionPrecise(), (Point{4, 0}));
}

TEST(Shape, OrientationPlacesRelativeToTheLayerWidth)
{
    LayerInFont f;
    f.layer->setWidth(500);
    auto s = shape(VLShapeType::Path);
    f.layer->addShapeFast(s);
    s->setPositionFast({10, 20});
    s->setOrientation(3);
    EXPECT_EQ(s->orientation(), 0);
    s->setOrientation(VLElement::OrientationRight);
    EXPECT_EQ(s->position(), (Point{510, 20}));
    EXPECT_EQ(s->positionPrecise(), (Point{510, 20}));
    s->setOrientation(VLElement::OrientationCenter);
    EXPECT_EQ(s->position(), (Point{260, 20}));
    EXPECT_EQ(s->positionPrecise(), (Point{10, 20})) << "centred precise positions are the stored value";

    s->setOrientation(VLElement::OrientationLeft);
    s->setPosition({15, 20});
    EXPECT_EQ(s->positionPrecise(), (Point{15, 20})) << "a precise value drifted by more than 1.2 is replaced";
}

TEST(Shape, ElementsAnswerTheShapeOperationsFromTheirPoint)
{
    TestShape s(VLShapeType::Path);
    s.setPositionFast_round({10.4, 20}, 1);
    AffineTransform shift;
    shift.translateXBy_yBy(5, -5);
    EXPECT_EQ(s.fastBounds(), (Rect{{10, 20}, {0, 0}}));
    EXPECT_EQ(s.fastBoundsTransform(&shift), (Rect{{15, 15}, {0, 0}}));

    s.transformFast_round(shift, 1);
    EXPECT_EQ(s.position(), (Point{15, 15}));
    EXPECT_EQ(s.positionPrecise(), (Point{15.4, 15})) << "moved from the precise place";

    TestShape other(VLShapeType::Component);
    other.getPositionsFromShape(s);
    EXPECT_EQ(other.position(), (Point{15, 15}));
    EXPECT_EQ(other.positionPrecise(), (Point{15.4, 15}));
    other.getPositionsFromShape(*rectanglePath(0, 0, 1, 1));
    EXPECT_EQ(other.position(), (Point{15, 15})) << "a path is no element";
}
