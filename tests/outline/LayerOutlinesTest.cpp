#include "model/VLLayer.h"
#include "outline/VLComponent.h"
#include "outline/VLHint.h"
#include "platform/BezierPath.h"
#include "platform/VLUnsetValue.h"
#include "support/PathInFont.h"
#include "support/TestShapes.h"

#include <gtest/gtest.h>

#include <cmath>

TEST(LayerOutlines, ClosedAndOpenContoursAreKeptApart)
{
    PathInFont f(0);
    f.layer->addShapeFast(rectanglePath(0, 0, 100, 100));
    f.add({0, 0}, VLNodeType::LINE);
    f.add({50, 200}, VLNodeType::LINE);
    auto single = VLPath::init();
    single->addNodeFastWithPosition_type_connection({7, 7}, VLNodeType::LINE, VLNode::SHARP);
    f.layer->addShapeFast(single);
    f.layer->setNeedUpdateShapes();

    auto closed = f.layer->bezierPath();
    ASSERT_NE(closed, nullptr);
    EXPECT_EQ(closed->elementCount(), 6) << "only the rectangle; the single node is dropped";
    ASSERT_NE(f.layer->openBezierPath(), nullptr);
    EXPECT_EQ(f.layer->openBezierPath()->elementCount(), 2);
    EXPECT_EQ(f.layer->bounds(), (Rect{{0, 0}, {100, 200}})) << "bounds unite both outlines";

    f.path->setClosed(true);
    f.layer->setNeedUpdateShapes();
    EXPECT_EQ(f.layer->openBezierPath(), nullptr) << "a flush drops the open outline too";
}

TEST(LayerOutlines, EmptyLayers)
{
    auto layer = VLLayer::init();
    EXPECT_EQ(layer->bezierPath(), nullptr);
    EXPECT_EQ(layer->openBezierPath(), nullptr);
    EXPECT_EQ(layer->fastBounds().origin.x, VLUnsetValue);
    EXPECT_EQ(layer->bounds(), Rect());
}

TEST(LayerOutlines, FlatteningRoundsPathsIntoPlainOnes)
{
    PathInFont f(1);
    addCurvedSquare(f);
    EXPECT_TRUE(f.layer->flattenOutlines());
    ASSERT_EQ(f.layer->countOfShapes(), 1u);
    auto flat = std::static_pointer_cast<VLPath>(f.layer->shapes()[0]);
    EXPECT_EQ(flat->compareString(), "loocll_") << "the same nodes in the same order";
    for (const auto& node : flat->nodes()) EXPECT_EQ(node->position().x, std::round(node->position().x));
}

TEST(LayerOutlines, DecomposingCornersDropsTheDrawnCornerHints)
{
    PathInFont f(0);
    for (Point p : {Point{0, 0}, Point{100, 0}, Point{100, 100}}) f.add(p, VLNodeType::LINE);
    f.path->setClosed(true);
    f.layer->decomposeCorners();
    EXPECT_EQ(f.layer->shapes()[0], f.path) << "without corner hints nothing changes";

    auto corner = VLHint::init();
    corner->setType(VLHintType::Corner);
    corner->setName("_corner.serif");
    corner->setStem(0);
    corner->setOriginIndex({0, 1});
    auto survivor = VLHint::init();
    survivor->setType(VLHintType::Corner);
    survivor->setStem(VLHint::StemFoundByPosition);
    survivor->setOriginIndex({0, 2});
    f.layer->setHintsFast({corner, survivor});
    f.layer->decomposeCorners();
    ASSERT_EQ(f.layer->countOfShapes(), 1u);
    EXPECT_NE(f.layer->shapes()[0], f.path) << "the paths are the drawn ones now";
    ASSERT_EQ(f.layer->hints().size(), 1u);
    EXPECT_EQ(f.layer->hints()[0], survivor);
}

TEST(LayerOutlines, DecomposedCopiesHoldPathsOnly)
{
    PathInFont f(0);
    for (Point p : {Point{0, 0}, Point{100, 0}, Point{100, 100}}) f.add(p, VLNodeType::LINE);
    f.path->setClosed(true);
    auto component = VLComponent::init();
    component->setComponentName("B");
    f.layer->addShapeFast(component);

    auto copy = f.layer->copyDecomposedLayer();
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->countOfComponents(), 0);
    EXPECT_EQ(copy->countOfPaths(), 1);
    EXPECT_EQ(f.layer->countOfShapes(), 2u) << "the layer itself keeps its component";
    EXPECT_NE(f.layer->copyDecomposedLayer(), copy) << "each caller gets a copy of the cached twin";

    f.layer->setWidth(777);
    EXPECT_EQ(f.layer->copyDecomposedLayer()->width(), 777) << "the twin follows the width";
}
