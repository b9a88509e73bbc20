#include "model/VLLayer.h"
#include "outline/VLHandle.h"
#include "outline/VLHint.h"
#include "outline/VLPath.h"
#include "platform/BezierPath.h"

#include <gtest/gtest.h>

namespace {

std::shared_ptr<VLPath> square(double x, double y, double size)
{
    auto path = VLPath::init();
    for (Point p : {Point{x, y}, Point{x + size, y}, Point{x + size, y + size}, Point{x, y + size}})
        path->addNodeFastWithPosition_type_connection(p, VLNodeType::LINE, VLNode::SHARP);
    path->setClosed(true);
    return path;
}

std::shared_ptr<VLLayer> layerWith(std::initializer_list<std::shared_ptr<VLPath>> paths)
{
    auto layer = VLLayer::init();
    for (const auto& path : paths) layer->addShapeFast(path);
    return layer;
}

std::shared_ptr<VLHint> hint(VLHintType type, VLIndexPath origin, VLIndexPath target = {})
{
    auto result = VLHint::init();
    result->setType(type);
    result->setOriginIndex(std::move(origin));
    result->setTargetIndex(std::move(target));
    return result;
}

} // namespace

TEST(Hint, TypeNamesReadOldSpellingsAndUnknownsAsStems)
{
    EXPECT_EQ(VLHint::typeForName("Anchor"), VLHintType::TTSnap);
    EXPECT_EQ(VLHint::typeForName("Diagonal"), VLHintType::TTDiagonal);
    EXPECT_EQ(VLHint::typeForName("Segment"), VLHintType::Segment);
    EXPECT_EQ(VLHint::typeForName("Wobble"), VLHintType::Stem);
    EXPECT_STREQ(VLHint::typeNameC(static_cast<VLHintType>(10)), "Unknown");
    EXPECT_STREQ(VLHint::typeNameC(VLHintType::Tag), "Tag");

    EXPECT_TRUE(hint(VLHintType::Cap, {})->isCorner());
    EXPECT_FALSE(hint(VLHintType::Auto, {})->isCorner());
    EXPECT_TRUE(hint(VLHintType::TTDelta, {})->isTrueType());
    EXPECT_FALSE(hint(VLHintType::Tag, {})->isPostScript());
}

TEST(Hint, IndexPathsSelectNodesAndSideBearings)
{
    EXPECT_EQ(VLHint::indexPathFromPlist(Value(ValueArray{Value(0), Value(5)})), (VLIndexPath{0, 5}));
    EXPECT_EQ(VLHint::indexPathFromPlist(Value("{1, 12}")), (VLIndexPath{1, 12}));
    EXPECT_TRUE(VLHint::indexPathFromPlist(Value(ValueArray{Value(-1)})).empty());

    auto path = square(0, 0, 100);
    auto layer = layerWith({path});
    layer->setWidth(500);
    auto h = hint(VLHintType::Stem, {0, 2});
    layer->addHint(h);
    EXPECT_EQ(h->nodeForIndexPath({0, 2}), path->nodes()[2]);
    EXPECT_EQ(h->nodeForIndexPath({0, 6}), nullptr);
    EXPECT_EQ(h->nodeForIndexPath_unlimited({0, 6}, true), path->nodes()[2]) << "a closed path wraps";
    EXPECT_EQ(h->nodeForIndexPath({1, 0}), nullptr);

    auto right = h->nodeForIndexPath({VLHint::RightSideBearingIndex});
    ASSERT_NE(right, nullptr);
    EXPECT_EQ(right->position(), (Point{500, -20}));
    EXPECT_EQ(VLHint::indexPathForNode_inLayer(*right, *layer), (VLIndexPath{VLHint::RightSideBearingIndex}));
    EXPECT_EQ(h->nodeForIndexPath({VLHint::LeftSideBearingIndex})->position(), (Point{0, -20}));
}

TEST(Hint, UpdateIndexesFollowsNodesThroughReversal)
{
    auto path = square(0, 0, 100);
    auto layer = layerWith({square(500, 0, 10), path});
    auto corner = hint(VLHintType::Corner, {1, 0});
    layer->addHint(corner);
    EXPECT_TRUE(corner->updateIndexes());
    EXPECT_EQ(corner->originNode(), path->nodes()[0]);
    EXPECT_EQ(corner->origin(), 0.0) << "a horizontal hint takes its origin from y";

    path->reverse();
    corner->reverse();
    EXPECT_EQ(corner->originIndex(), (VLIndexPath{1, 0})) << "reversing a corner hint changes nothing";
    EXPECT_TRUE(corner->updateIndexes());
    EXPECT_EQ(corner->originIndex(), (VLIndexPath{1, 2}));

    auto lost = hint(VLHintType::Cap, {1, 9});
    layer->addHint(lost);
    EXPECT_FALSE(lost->updateIndexes()) << "no node and no knob";

    auto stem = hint(VLHintType::Stem, {1, 0}, {1, 3});
    stem->reverse();
    EXPECT_EQ(stem->originIndex(), (VLIndexPath{1, 3}));
    EXPECT_EQ(stem->targetIndex(), (VLIndexPath{1, 0}));
}

TEST(Hint, RestoreFindsSavedPositionsInNewShapes)
{
    auto layer = layerWith({square(0, 0, 100)});
    auto corner = hint(VLHintType::Corner, {0, 2});
    auto stem = hint(VLHintType::Stem, {0, 0}, {0, 3});
    layer->setHintsFast({corner, stem});
    layer->saveHints();
    EXPECT_EQ(stem->width(), 100.0);

    // The same square, drawn from another corner.
    auto rotated = square(0, 0, 100);
    rotated->nodes()[0]->makeNodeFirst();
    layer->setShapesFast({rotated});
    EXPECT_EQ(corner->originIndex(), (VLIndexPath{0, 1}));
    EXPECT_EQ(corner->originNode(), rotated->nodes()[1]);
    EXPECT_EQ(stem->originIndex(), (VLIndexPath{0, 3}));
    EXPECT_EQ(stem->targetIndex(), (VLIndexPath{0, 2}));
    EXPECT_EQ(corner->stem(), VLHint::StemNone);
}

TEST(Hint, CopiesFindTheirNodesInAnotherLayer)
{
    auto sourcePath = square(0, 0, 100);
    auto source = layerWith({sourcePath});
    auto corner = hint(VLHintType::Corner, {0, 1});
    source->addHint(corner);
    corner->updateIndexes();
    corner->save();

    auto same = layerWith({square(0, 0, 100)});
    auto kept = corner->copyHint();
    same->addHint(kept);
    kept->restore();
    EXPECT_EQ(kept->originIndex(), (VLIndexPath{0, 1}));
    EXPECT_EQ(kept->stem(), VLHint::StemNone);

    sourcePath->nodes()[1]->setPositionFast({100, 50});
    auto moved = layerWith({square(0, 0, 100), square(100, 50, 10)});
    auto searched = corner->copyHint();
    moved->addHint(searched);
    searched->restore();
    EXPECT_EQ(searched->originIndex(), (VLIndexPath{1, 0})) << "found where the node went";
    EXPECT_EQ(searched->stem(), VLHint::StemFoundByPosition);
}

TEST(Hint, CompareOrdersDirectionTypeAndPlaces)
{
    auto vertical = hint(VLHintType::Stem, {0, 0}, {0, 1});
    vertical->setHorizontal(false);
    auto early = hint(VLHintType::Stem, {0, 0}, {0, 2});
    auto late = hint(VLHintType::Stem, {0, 1}, {0, 0});
    EXPECT_EQ(early->compare(*vertical), -1);
    EXPECT_EQ(early->compare(*late), -1);
    EXPECT_EQ(late->compare(*early), 1);
    EXPECT_EQ(hint(VLHintType::TopGhost, {})->compare(*early), -1);

    auto high = hint(VLHintType::BottomGhost, {});
    high->setOrigin(700);
    auto low = hint(VLHintType::BottomGhost, {});
    low->setOrigin(-10);
    EXPECT_EQ(high->compare(*low), -1) << "ghosts without nodes: higher first";
    EXPECT_EQ(hint(VLHintType::Corner, {0, 5})->compare(*hint(VLHintType::Corner, {0, 1})), 0);

    auto groups = VLHint::_sortedHints({late, hint(VLHintType::Corner, {}), early, hint(VLHintType::Cap, {0, 1})});
    ASSERT_EQ(groups[VLHintType::Stem].size(), 2u);
    EXPECT_EQ(groups[VLHintType::Stem][0], early);
    EXPECT_EQ(groups.count(VLHintType::Corner), 0u) << "a corner without origin index is left out";
    EXPECT_EQ(groups[VLHintType::Cap].size(), 1u);
}

TEST(Hint, SortPutsTrueTypeInstructionsAfterThoseTheyDependOn)
{
    auto interpolate = hint(VLHintType::TTInterpolate, {0, 1}, {0, 3});
    interpolate->setOtherIndex1({0, 2});
    auto link = hint(VLHintType::TTStem, {0, 0}, {0, 1});
    auto snap = hint(VLHintType::TTSnap, {0, 0});
    std::vector<std::shared_ptr<VLHint>> hints{interpolate, link, snap};
    VLHint::sortHints(hints);
    EXPECT_EQ(hints, (std::vector<std::shared_ptr<VLHint>>{snap, link, interpolate}));

    auto empty = hint(VLHintType::TTSnap, {});
    std::vector<std::shared_ptr<VLHint>> unsorted{interpolate, link, empty};
    VLHint::sortHints(unsorted);
    EXPECT_EQ(unsorted[0], interpolate) << "an instruction that touches nothing stops the sort";
}

TEST(Hint, TransferCopiesOnlyKindsTheTargetLacks)
{
    auto source = layerWith({square(0, 0, 100)});
    source->setHintsFast({hint(VLHintType::Stem, {0, 0}, {0, 3}), hint(VLHintType::TTSnap, {0, 1}),
                          hint(VLHintType::Corner, {0, 2}), hint(VLHintType::Corner, {0, 2})});
    auto target = layerWith({square(0, 0, 100)});
    auto own = hint(VLHintType::TopGhost, {0, 3});
    target->addHint(own);
    auto outline = target->bezierPath();

    VLHint::transferHintsFromLayer_to(*source, *target);
    ASSERT_EQ(target->hints().size(), 3u);
    EXPECT_EQ(target->hints()[0], own);
    EXPECT_EQ(target->hints()[1]->type(), VLHintType::TTSnap);
    EXPECT_EQ(target->hints()[2]->type(), VLHintType::Corner) << "equal corners go in once";
    EXPECT_EQ(target->hints()[2]->layer(), target);
    EXPECT_NE(target->bezierPath(), outline) << "hint changes flush the outline";

    target->removeHint(own);
    EXPECT_EQ(own->layer(), nullptr);
    EXPECT_EQ(target->hints().size(), 2u);
}
