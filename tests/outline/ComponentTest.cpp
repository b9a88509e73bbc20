#include "outline/VLComponent.h"
#include "geometry/VLBezierPathPen.h"
#include "model/VLLayer.h"
#include "outline/VLAnchor.h"
#include "outline/VLPathPen.h"
#include "platform/AffineTransform.h"
#include "platform/BezierPath.h"
#include "support/ComponentInFont.h"
#include "support/TestDocuments.h"

#include <gtest/gtest.h>

namespace {

void expectNear(Point actual, Point expected)
{
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
}

// Twice the area enclosed by the outline's contours, by their end points: positive for contours
// that run counter-clockwise.
double windingArea(const BezierPath& path)
{
    double area = 0;
    Point start{}, last{}, points[3];
    for (long i = 0; i < path.elementCount(); ++i) {
        auto kind = path.elementAtIndex_associatedPoints(i, points);
        Point p = kind == BezierPathElement::CurveTo ? points[2] : kind == BezierPathElement::ClosePath ? start : points[0];
        if (kind == BezierPathElement::MoveTo)
            start = p;
        else
            area += last.x * p.y - p.x * last.y;
        last = p;
    }
    return area;
}

std::shared_ptr<VLLayer> layerOf(ComponentInFont& f, const std::string& name)
{
    auto glyph = f.font->glyphForName(name);
    if (!glyph) {
        glyph = VLGlyph::initFast();
        glyph->setNameFast(name);
        f.font->addGlyphFast(glyph);
        f.font->resetCache();
    }
    return glyph->layerForId("m01");
}

// Glyphs of these names, added at once: a font indexes its names again after each addition.
void addGlyphs(ComponentInFont& f, const std::vector<std::string>& names)
{
    auto glyphs = f.font->glyphs();
    for (const auto& name : names) {
        auto glyph = VLGlyph::initFast();
        glyph->setNameFast(name);
        glyphs.push_back(glyph);
    }
    f.font->setGlyphs(glyphs);
}

std::shared_ptr<VLComponent> place(const std::shared_ptr<VLLayer>& layer, const std::string& name, Point position = {},
                                   Point scale = {1, 1})
{
    auto component = VLComponent::init();
    component->setComponentName(name);
    component->setPositionFast(position);
    component->setScale(scale);
    layer->addShapeFast(component);
    layer->setNeedUpdateShapes();
    return component;
}

} // namespace

TEST(Component, TransformScalesRotatesAndShearsAroundThePosition)
{
    auto component = VLComponent::init();
    component->setPositionFast({100, 50});
    component->setScale({2, 1});
    component->setAngle(90);
    expectNear(component->transform().transformPoint({10, 0}), {100, 70});
    expectNear(component->transform().transformPoint({0, 0}), {100, 50});

    component->setScale({1, 1});
    component->setAngle(0);
    component->setSlantHorizontal(45);
    // x follows the height above the position.
    expectNear(component->transform().transformPoint({0, 10}), {110, 60});
    component->setSlantHorizontal(0);
    component->setSlantVertical(45);
    expectNear(component->transform().transformPoint({10, 0}), {110, 60});
    // A slant of 0.001 or less is none.
    component->setSlantVertical(0.001);
    expectNear(component->transform().transformPoint({1000, 0}), {1100, 50});
}

TEST(Component, MovesAsAWholeAndDecomposesTheResult)
{
    auto component = VLComponent::init();
    component->setPositionFast_round({10.4, 0}, 1);
    component->setScale({2, 2});
    AffineTransform quarter;
    quarter.rotateByDegrees(90);
    component->transformFast_round(quarter, 1);
    EXPECT_NEAR(component->angle(), 90, 1e-9);
    expectNear(component->scale(), {2, 2});
    EXPECT_EQ(component->position(), (Point{0, 10}));
    expectNear(component->positionPrecise(), {0, 10.4});

    // The matrix of a placement gives that placement back.
    auto copy = VLComponent::init();
    copy->setTransformStructFast_round(component->transform().transformStruct(), 0);
    EXPECT_NEAR(copy->angle(), 90, 1e-9);
    expectNear(copy->scale(), {2, 2});
    EXPECT_EQ(copy->position(), (Point{0, 10}));
    auto slanted = VLComponent::init();
    slanted->setSlantHorizontal(20);
    copy->setTransformStructFast_round(slanted->transform().transformStruct(), 0);
    EXPECT_NEAR(copy->slantHorizontal(), 20, 1e-9);
    EXPECT_NEAR(copy->angle(), 0, 1e-9);

    auto other = VLComponent::init();
    component->setSlantHorizontal(10);
    component->setSlantVertical(-5);
    other->getPositionsFromShape(*component);
    EXPECT_NEAR(other->angle(), 90, 1e-9);
    expectNear(other->scale(), {2, 2});
    expectNear(other->positionPrecise(), {0, 10.4});
    EXPECT_EQ(other->slantHorizontal(), 10);
    EXPECT_EQ(other->slantVertical(), -5);
    other->getPositionsFromShape(*VLNode::init());
    EXPECT_NEAR(other->angle(), 90, 1e-9) << "a node is no transformable element";
}

TEST(Component, FastBoundsAreTheOutlineOfItsLayerPlaced)
{
    ComponentInFont f;
    auto component = f.add("B");
    component->setPositionFast({100, 0});
    component->setScale({2, 2});
    EXPECT_EQ(component->fastBounds(), (Rect{{100, 0}, {20, 20}}));
    AffineTransform up;
    up.translateXBy_yBy(0, 5);
    EXPECT_EQ(component->fastBoundsTransform(&up), (Rect{{100, 5}, {20, 20}})) << "after the component's own";

    f.layer->addShapeFast(rectanglePath(0, 0, 30, 30));
    EXPECT_EQ(f.layer->fastBounds(), (Rect{{0, 0}, {120, 30}})) << "a layer with a component has fast bounds";
    EXPECT_EQ(component->componentLayer()->bezierPath()->bounds(), (Rect{{0, 0}, {10, 10}}))
        << "the outline of the layer shown stays where it is";

    EXPECT_EQ(f.add("Z")->fastBounds(), VLComponent::newMissingBaseGlyphPath()->bounds()) << "a missing glyph shows its figure";
}

TEST(ComponentOutline, LayersShowTheirComponentsPlacedNestedAndMirrored)
{
    ComponentInFont f;
    // C places B twice as large; A places C 100 to the right, and B once more, mirrored.
    place(layerOf(f, "C"), "B", {0, 0}, {2, 2});
    place(f.layer, "C", {100, 0});
    auto mirrored = place(f.layer, "B", {50, 0}, {-1, 1});
    auto outline = f.layer->drawBezierPath();
    EXPECT_EQ(outline->bounds(), (Rect{{40, 0}, {80, 20}}));
    EXPECT_GT(windingArea(*mirrored->bezierPath()), 0) << "a mirrored outline still runs counter-clockwise";
    EXPECT_GT(windingArea(*outline), 0);
    EXPECT_TRUE(f.layer->hasPaths());

    // The same glyph twice in one layer draws twice: only the way down is remembered.
    auto twice = layerOf(f, "D");
    place(twice, "B");
    place(twice, "B", {20, 0});
    EXPECT_EQ(twice->drawBezierPath()->bounds(), (Rect{{0, 0}, {30, 10}}));

    // A masked component shapes an editor's fill only.
    auto masked = place(twice, "B", {100, 0});
    masked->setAttribute_forKey(Value(true), "mask");
    twice->setNeedUpdateShapes();
    EXPECT_EQ(twice->drawBezierPath()->bounds(), (Rect{{0, 0}, {30, 10}}));

    // Bounds in the component's own space undo its placement.
    auto turned = place(layerOf(f, "E"), "B", {100, 100}, {2, 3});
    turned->setAngle(90);
    EXPECT_EQ(turned->bounds(), (Rect{{70, 100}, {30, 20}}));
    Rect own = turned->_bounds();
    EXPECT_NEAR(own.origin.x, 0, 1e-9);
    EXPECT_NEAR(own.size.width, 10, 1e-9);
    EXPECT_NEAR(own.size.height, 10, 1e-9);
}

TEST(ComponentOutline, OriginAnchorsAndScaledLayersChangeThePlacement)
{
    ComponentInFont f;
    // A glyph once found is followed when it is renamed; a new reference by the old name is not.
    auto follower = place(f.layer, "B");
    EXPECT_EQ(follower->bezierPath()->bounds(), (Rect{{0, 0}, {10, 10}}));
    f.font->glyphForName("B")->setNameFast("B.renamed");
    f.font->resetCache();
    EXPECT_EQ(follower->bezierPath()->bounds(), (Rect{{0, 0}, {10, 10}}));
    EXPECT_EQ(place(f.layer, "B")->bezierPath()->bounds(), VLComponent::newMissingBaseGlyphPath()->bounds());
    f.font->glyphForName("B.renamed")->setNameFast("B");
    f.font->resetCache();
    f.layer->setShapesFast({});

    auto origin = VLAnchor::init();
    origin->setName("*origin");
    origin->setPositionFast({5, 5});
    auto anchors = f.font->glyphForName("B")->layerForId("m01")->anchors();
    anchors.setObject_forKey(origin, "*origin");
    f.font->glyphForName("B")->layerForId("m01")->setAnchorsFast(anchors);
    auto component = place(f.layer, "B", {100, 0});
    EXPECT_EQ(component->bezierPath()->bounds(), (Rect{{95, -5}, {10, 10}})) << "the origin anchor lands on the position";

    // A layer that keeps its weight is scaled already, so no transform applies.
    auto kept = place(layerOf(f, "K"), "C", {100, 0}, {2, 2});
    place(layerOf(f, "C"), "B");
    kept->setKeepWeight(50);
    EXPECT_EQ(kept->bezierPath()->bounds(), (Rect{{-5, -5}, {10, 10}}));
    kept->setScale({1.005, 1});
    EXPECT_NEAR(kept->bezierPath()->bounds().minX(), 100 - 5 * 1.005, 1e-9) << "within 0.01 of 1 is no scaling";
}

TEST(ComponentOutline, ReferencesThatCannotBeDrawnShowTheirFigures)
{
    ComponentInFont f;
    auto missing = place(f.layer, "Z", {1000, 0});
    Rect figure = VLComponent::newMissingBaseGlyphPath()->bounds();
    EXPECT_EQ(missing->bezierPath()->bounds(), (Rect{{1000 + figure.origin.x, figure.origin.y}, figure.size}));
    EXPECT_EQ(missing->bezierPathIgnorePlaceholder(true), nullptr);

    // A glyph that contains itself draws one figure, no deeper.
    auto self = layerOf(f, "S");
    place(self, "S");
    EXPECT_EQ(self->drawBezierPath()->bounds(), VLComponent::newBadReferencePath()->bounds());

    // A circle of two glyphs: P shows Q's square and, inside Q, the figure where P comes round.
    place(layerOf(f, "P"), "Q");
    auto q = layerOf(f, "Q");
    q->addShapeFast(rectanglePath(-10, -10, 0, 0));
    place(q, "P", {2000, 0});
    Rect circle = layerOf(f, "P")->drawBezierPath()->bounds();
    EXPECT_EQ(circle.origin, (Point{-10, -10}));
    EXPECT_GT(circle.maxX(), 2000);

    // A glyph without outline shows its figure, beside real outline too.
    layerOf(f, "N");
    auto lone = layerOf(f, "L");
    place(lone, "N", {0, -1000});
    lone->addShapeFast(rectanglePath(0, 0, 1, 1));
    Rect empty = VLComponent::newEmptyBaseGlyphPath()->bounds();
    EXPECT_EQ(lone->drawBezierPath()->bounds(), (Rect{{empty.origin.x, -1000}, {empty.size.width, 1001}}));
    EXPECT_EQ(layerOf(f, "N")->drawBezierPath()->elementCount(), 0);
    EXPECT_EQ(place(layerOf(f, "L2"), "N")->bezierPathIgnorePlaceholder(true)->elementCount(), 0) << "no figure when ignored";
}

TEST(ComponentOutline, ChainsCirclesAndFanOutsEndWithBoundedOutlines)
{
    ComponentInFont f;
    // A chain of 20,000 glyphs ends at the depth limit with the figure of a circular reference.
    std::vector<std::string> names;
    for (int i = 0; i <= 20000; ++i) names.push_back("c" + std::to_string(i));
    for (int level = 0; level < 8; ++level) names.push_back("f" + std::to_string(level));
    addGlyphs(f, names);
    for (int i = 0; i < 20000; ++i) place(layerOf(f, "c" + std::to_string(i)), "c" + std::to_string(i + 1));
    auto chain = layerOf(f, "c0")->drawBezierPath();
    EXPECT_EQ(chain->bounds(), VLComponent::newBadReferencePath()->bounds());
    EXPECT_FALSE(place(layerOf(f, "H2"), "c0")->hasAnyPaths()) << "no glyph of the chain within reach has paths";
    // Each level's own square, 20 units on from the last, counts the levels drawn: 31 below the
    // top, and the figure in place of the 32nd.
    for (int i = 0; i < 40; ++i) {
        auto level = layerOf(f, "c" + std::to_string(i));
        level->addShapeFast(rectanglePath(0, 0, 10, 10));
        std::static_pointer_cast<VLComponent>(level->shapes().front())->setPositionFast({20, 0});
        level->setNeedUpdateShapes();
    }
    EXPECT_EQ(layerOf(f, "c0")->drawBezierPath()->bounds().maxX(), 32 * 20 + VLComponent::newBadReferencePath()->bounds().maxX());

    // Eight levels that each place ten copies of the next would be 10^8 squares.
    for (int level = 0; level < 8; ++level)
        for (int copy = 0; copy < 10; ++copy)
            place(layerOf(f, "f" + std::to_string(level)), level == 7 ? "B" : "f" + std::to_string(level + 1),
                  {static_cast<double>(copy) * 20, 0});
    auto fan = layerOf(f, "f0")->drawBezierPath();
    EXPECT_GT(fan->elementCount(), VLLayerMaximumComposedElements / 2);
    EXPECT_LE(fan->elementCount(), 2 * VLLayerMaximumComposedElements);
    EXPECT_TRUE(place(layerOf(f, "H"), "f0")->hasAnyPaths());
}

TEST(ComponentOutline, DecomposingLeavesThePathsTheComponentsShow)
{
    ComponentInFont f;
    place(layerOf(f, "C"), "B", {0, 0}, {2, 2});
    place(f.layer, "C", {100, 0});
    place(f.layer, "B", {50, 0}, {-1, 1});
    place(f.layer, "Z");
    f.layer->addShapeFast(rectanglePath(0, 0, 5, 5));
    f.layer->setNeedUpdateShapes();
    // The own square, C's square and the mirrored B; the missing Z leaves no figure behind.
    auto copy = f.layer->copyDecomposedLayer();
    EXPECT_EQ(copy->countOfComponents(), 0);
    EXPECT_EQ(copy->countOfPaths(), 3);
    EXPECT_EQ(copy->bezierPath()->bounds(), (Rect{{0, 0}, {120, 20}}));
    EXPECT_NEAR(windingArea(*copy->bezierPath()), 2 * (25 + 400 + 100), 1e-9) << "every contour counter-clockwise";
    EXPECT_EQ(f.layer->countOfComponents(), 3) << "the layer itself keeps its components";

    f.layer->decomposeComponents();
    EXPECT_EQ(f.layer->countOfComponents(), 0);
    EXPECT_EQ(f.layer->countOfPaths(), 3);
}

TEST(ComponentOutline, PensThatFillReceiveOutlinesOthersTheComponent)
{
    ComponentInFont f;
    auto component = place(f.layer, "B", {100, 0});
    BezierPath filled;
    VLBezierPathPen fill(filled);
    component->drawInPen(fill);
    EXPECT_EQ(filled.bounds(), (Rect{{100, 0}, {10, 10}}));

    VLPathPen paths;
    component->drawInPen(paths);
    ASSERT_EQ(paths.layer()->countOfComponents(), 1);
    EXPECT_EQ(paths.layer()->countOfPaths(), 0);
}

TEST(ComponentOutline, SpecialLayersShowTheBaseGlyphsLayerOfTheSameKind)
{
    auto font = readTestDocument("components/special-layers.velmor");
    ASSERT_TRUE(font);
    auto a = font->glyphForName("A");
    // The brace layer at weight 500: "base" has no layer there and is interpolated halfway
    // between its squares of 100 and 300; "owned" has its own brace layer, a square of 55.
    auto brace = a->layerForId("A-brace");
    ASSERT_TRUE(brace && brace->isBraceLayer());
    EXPECT_EQ(brace->drawBezierPath()->bounds(), (Rect{{0, 0}, {1055, 200}}));
    EXPECT_EQ(a->layerForId("light")->drawBezierPath()->bounds(), (Rect{{0, 0}, {100, 100}})) << "masters show masters";

    // Palette entry 1, third colour: "base" has only the first, which stands in.
    EXPECT_EQ(a->layerForId("A-palette")->drawBezierPath()->bounds(), (Rect{{0, 0}, {7, 7}}));
    auto base = font->glyphForName("base");
    // The interpolated layer is made once, and again after the glyph changed.
    auto inBrace = std::static_pointer_cast<VLComponent>(brace->shapes().front());
    auto interpolated = inBrace->componentLayer();
    EXPECT_EQ(inBrace->componentLayer(), interpolated);
    base->setLastOperationInterval(base->lastOperationInterval() + 1);
    EXPECT_NE(inBrace->componentLayer(), interpolated);

    EXPECT_EQ(VLComponent::fallbackColorLayerKey_layerKey_masterID(*base, "Color 1_1", "light"), nullptr)
        << "no lower colour than the first";
    EXPECT_EQ(VLComponent::fallbackColorLayerKey_layerKey_masterID(*base, "Color 1_9", "bold"), nullptr)
        << "only the master's own colour layers";
}
