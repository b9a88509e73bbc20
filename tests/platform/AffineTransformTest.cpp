#include "platform/AffineTransform.h"

#include <gtest/gtest.h>

namespace {

void expectPoint(Point actual, Point expected)
{
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
}

TEST(AffineTransform, NewStepsActBeforeWhatTheTransformAlreadyDoes)
{
    AffineTransform t;
    t.translateXBy_yBy(10, 0);
    t.scaleBy(2);
    expectPoint(t.transformPoint({1, 0}), {12, 0});

    AffineTransform r;
    r.rotateByDegrees(90);
    r.translateXBy_yBy(1, 0);
    expectPoint(r.transformPoint({0, 0}), {0, 1});
    r.scaleXBy_yBy(1, 3);
    expectPoint(r.transformPoint({0, 1}), {-3, 1});
}

TEST(AffineTransform, AppendActsAfterAndPrependBefore)
{
    AffineTransform move;
    move.translateXBy_yBy(5, 0);
    AffineTransform twice;
    twice.scaleBy(2);

    AffineTransform appended = move;
    appended.appendTransform(twice);
    expectPoint(appended.transformPoint({1, 1}), {12, 2});

    AffineTransform prepended = move;
    prepended.prependTransform(twice);
    expectPoint(prepended.transformPoint({1, 1}), {7, 2});
}

TEST(AffineTransform, InvertUndoesAndLeavesSingularAlone)
{
    AffineTransform t;
    t.translateXBy_yBy(3, -7);
    t.rotateByRadians(0.7);
    t.scaleXBy_yBy(2, 0.5);
    AffineTransform inverse = t;
    inverse.invert();
    expectPoint(inverse.transformPoint(t.transformPoint({4, 9})), {4, 9});
    expectPoint(t.transformPoint(inverse.transformPoint({-2, 5})), {-2, 5});

    AffineTransform flat({1, 2, 2, 4, 5, 6});
    flat.invert();
    EXPECT_EQ(flat.transformStruct(), (AffineTransformStruct{1, 2, 2, 4, 5, 6}));
}

TEST(AffineTransform, SizesIgnoreTranslation)
{
    AffineTransform t({2, 1, 0, 3, 100, 200});
    EXPECT_EQ(t.transformSize({4, 5}), (Size{8, 19}));
    EXPECT_EQ(t.transformPoint({4, 5}), (Point{108, 219}));
}

} // namespace
