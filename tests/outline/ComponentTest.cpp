#include "outline/VLComponent.h"
#include "model/VLLayer.h"
#include "platform/AffineTransform.h"
#include "platform/BezierPath.h"
#include "support/ComponentInFont.h"

#include <gtest/gtest.h>

namespace {

void expectNear(Point actual, Point expected)
{
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
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

    EXPECT_EQ(f.add("Z")->fastBounds(), Rect()) << "a missing glyph shows nothing";
}
