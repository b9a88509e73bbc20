#include "model/VLLayer.h"
#include "outline/VLPath.h"
#include "platform/AffineTransform.h"
#include "platform/VLUnsetValue.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// A node of a made-up path: where it stands and its type.
struct NodeAt {
    double x, y;
    VLNodeType type;
};

std::shared_ptr<VLPath> makePath(std::initializer_list<NodeAt> nodes, bool closed)
{
    auto path = VLPath::init();
    for (const auto& n : nodes) path->addNodeFastWithPosition_type_connection({n.x, n.y}, n.type, VLNode::SHARP);
    path->setClosed(closed);
    return path;
}

std::string types(const VLPath& path)
{
    return path.compareString();
}

constexpr VLNodeType L = VLNodeType::LINE;
constexpr VLNodeType C = VLNodeType::CURVE;
constexpr VLNodeType O = VLNodeType::OFFCURVE;
constexpr VLNodeType Q = VLNodeType::QCURVE;

} // namespace

TEST(Path, NodeAtIndexWrapsOnceAroundClosedPathsOnly)
{
    auto closed = makePath({{0, 0, L}, {10, 0, L}, {10, 10, L}}, true);
    EXPECT_EQ(closed->nodeAtIndex(-1), closed->nodes()[2]);
    EXPECT_EQ(closed->nodeAtIndex(-3), closed->nodes()[0]);
    EXPECT_EQ(closed->nodeAtIndex(-4), nullptr) << "below -count the signed remainder stays negative";
    EXPECT_EQ(closed->nodeAtIndex(3), closed->nodes()[0]);
    EXPECT_EQ(closed->startNode(), nullptr);
    EXPECT_EQ(closed->endNode(), nullptr);

    auto open = makePath({{0, 0, L}, {10, 0, L}, {10, 10, L}}, false);
    EXPECT_EQ(open->nodeAtIndex(-1), nullptr);
    EXPECT_EQ(open->nodeAtIndex(3), nullptr);
    EXPECT_EQ(open->startNode(), open->nodes()[0]);
    EXPECT_EQ(open->positionAtIndex(7), (Point{0, 0}));
    EXPECT_EQ(VLPath::init()->nodeAtIndex(0), nullptr);
}

TEST(Path, ClosingDropsACoincidentStartAndOpeningMakesItExplicit)
{
    auto coincident = makePath({{0, 0, L}, {100, 0, L}, {100, 100, L}, {0, 0.005, L}}, false);
    coincident->setClosePath(true);
    EXPECT_TRUE(coincident->closed());
    EXPECT_EQ(coincident->count(), 3);
    EXPECT_EQ(coincident->nodes()[0]->position(), (Point{100, 0}));

    auto apart = makePath({{0, 0, L}, {100, 0, L}, {0, 0.02, L}}, false);
    apart->setClosePath(true);
    EXPECT_EQ(apart->count(), 3);
    EXPECT_EQ(apart->nodes()[0]->position(), (Point{0, 0}));

    auto fixed = makePath({{0, 0, L}, {100, 0, L}, {0, 0.02, L}}, false);
    fixed->setClosePath_fixStartNode(true, true);
    EXPECT_EQ(fixed->nodes().back()->position(), (Point{0, 0})) << "the start node becomes the closing point";

    fixed->nodes().back()->setConnectionFast(VLNode::SMOOTH);
    fixed->setClosePath(false);
    EXPECT_FALSE(fixed->closed());
    EXPECT_EQ(fixed->count(), 4);
    EXPECT_EQ(fixed->nodes()[0]->position(), fixed->nodes()[3]->position());
    EXPECT_EQ(fixed->nodes()[3]->connection(), VLNode::SHARP);
}

TEST(Path, BoundsFollowTheCurveNotItsControlPoints)
{
    auto cubic = makePath({{0, 0, L}, {0, 100, O}, {100, 100, O}, {100, 0, C}}, false);
    Rect tight = cubic->bounds();
    EXPECT_DOUBLE_EQ(tight.maxY(), 75.0) << "the top of the arch lies between the end points";
    EXPECT_DOUBLE_EQ(tight.minX(), 0.0);
    EXPECT_DOUBLE_EQ(tight.maxX(), 100.0);
    EXPECT_DOUBLE_EQ(cubic->fastBounds().maxY(), 100.0) << "fast bounds take the control points";

    auto quadratic = makePath({{0, 0, L}, {50, 100, O}, {100, 0, Q}}, true);
    EXPECT_DOUBLE_EQ(quadratic->bounds().maxY(), 50.0);

    auto offcurvesOnly = makePath({{0, 0, O}, {100, 0, O}, {100, 100, O}, {0, 100, O}}, true);
    Rect round = offcurvesOnly->bounds();
    EXPECT_DOUBLE_EQ(round.minX(), 0.0);
    EXPECT_DOUBLE_EQ(round.maxY(), 100.0);

    EXPECT_EQ(VLPath::init()->bounds().origin.x, VLUnsetValue);
    EXPECT_EQ(VLPath::init()->fastBounds().origin.x, VLUnsetValue);
    EXPECT_EQ(makePath({{5, 6, L}}, false)->bounds(), (Rect{{5, 6}, {0, 0}}));
}

TEST(Path, ReversalMovesEachTypeToTheSegmentItDescribes)
{
    auto closed = makePath({{0, 0, L}, {0, 50, O}, {50, 100, O}, {100, 100, C}, {100, 0, L}}, true);
    auto start = closed->nodes().back();
    auto curveEnd = closed->nodes()[0];
    closed->reverse();
    EXPECT_EQ(closed->nodes().back(), start) << "the start point stays the start point";
    EXPECT_EQ(types(*closed), "loocl_");
    EXPECT_EQ(curveEnd->type(), C) << "the curve now arrives at the old line end";
    closed->reverse();
    EXPECT_EQ(types(*closed), "loocl_");
    EXPECT_EQ(closed->nodes()[3]->type(), C);

    auto offcurveFirst = makePath({{0, 0, L}, {0, 50, O}, {50, 100, O}, {100, 100, C}}, true);
    offcurveFirst->reverse();
    EXPECT_EQ(types(*offcurveFirst), "oocl_");

    auto open = makePath({{0, 0, L}, {0, 50, O}, {50, 100, O}, {100, 100, C}, {200, 100, L}}, false);
    open->reverse();
    EXPECT_EQ(types(*open), "llooc|_");
    EXPECT_EQ(open->nodes()[0]->position(), (Point{200, 100}));

    auto single = makePath({{1, 2, C}}, true);
    single->reverse();
    EXPECT_EQ(types(*single), "c_");
}

TEST(Path, CompareStringTagsEveryNode)
{
    EXPECT_EQ(types(*makePath({{0, 0, L}, {1, 1, O}, {2, 2, O}, {3, 3, C}}, false)), "looc|_");
    auto hobby = VLNodeType::HOBBY, special = VLNodeType::SPECIAL, unknown = static_cast<VLNodeType>(99);
    EXPECT_EQ(types(*makePath({{0, 0, hobby}, {1, 1, Q}, {2, 2, special}, {3, 3, unknown}}, true)), "hqxx_");
}

TEST(Path, CheckConnectionsRepairsTypesAndSmoothsLinedUpHandles)
{
    auto path = makePath({{0, 0, L},
                          {0, 50, O},
                          {50, 100, O},
                          {100, 100, C},
                          {150, 100, O},
                          {200, 50, O},
                          {200, 0, C},
                          {300, 0, C}},
                         false);
    path->nodes()[1]->setConnectionFast(VLNode::SMOOTH);
    path->nodes()[6]->setConnectionFast(VLNode::SMOOTH);
    path->checkConnections();
    EXPECT_EQ(path->nodes()[3]->connection(), VLNode::SMOOTH) << "handles on one line";
    EXPECT_EQ(path->nodes()[1]->connection(), VLNode::SHARP) << "off-curve nodes are never smooth";
    EXPECT_EQ(path->nodes()[7]->type(), L) << "a curve without handles is a line";
    EXPECT_EQ(path->nodes()[6]->connection(), VLNode::SHARP);

    path->nodes()[4]->setPositionFast({150, 160});
    path->checkConnections();
    EXPECT_EQ(path->nodes()[3]->connection(), VLNode::SHARP);

    path->nodes()[4]->setPositionFast({150, 101});
    path->checkConnectionForNode(*path->nodes()[3]);
    EXPECT_EQ(path->nodes()[3]->connection(), VLNode::SMOOTH) << "within two degrees";
    path->nodes()[4]->setPositionFast({150, 110});
    path->checkConnectionForNode(*path->nodes()[3]);
    EXPECT_EQ(path->nodes()[3]->connection(), VLNode::SHARP);
}

TEST(Path, FindMinNodeTakesTheLowestThenLeftmostWithinATolerance)
{
    auto path = makePath({{30, 0, O}, {20, 0, L}, {10, 0.0005, L}, {0, 5, L}}, true);
    EXPECT_EQ(path->findMinNode(), path->nodes()[2]);
}

TEST(Path, MakeNodeFirstMakesTheNodeTheStartPoint)
{
    auto closed = makePath({{0, 0, L}, {1, 0, L}, {2, 0, L}, {3, 0, L}}, true);
    auto node = closed->nodes()[1];
    node->makeNodeFirst();
    EXPECT_EQ(closed->nodes().back(), node);
    EXPECT_EQ(closed->nodes()[0]->position(), (Point{2, 0}));
}

TEST(Path, PathTimeNamesTheSegmentArrivingAtANode)
{
    auto path = makePath({{0, 0, L}, {0, 100, O}, {100, 100, O}, {100, 0, C}, {200, 0, L}}, false);
    EXPECT_EQ(path->pointAtPathTime(4.5), (Point{150, 0}));
    EXPECT_EQ(path->pointAtPathTime(3.0), (Point{100, 0}));
    EXPECT_EQ(path->nearestNodeWithPathTime(3.2), path->nodes()[0]);
    EXPECT_EQ(path->nearestNodeWithPathTime(3.7), path->nodes()[3]);

    Point quarter = path->pointAtPathTime(3.25);
    auto inserted = path->insertNodeWithPathTime(3.5);
    ASSERT_NE(inserted, nullptr);
    EXPECT_EQ(types(*path), "loocoocl|_");
    EXPECT_EQ(inserted->position(), (Point{50, 75}));
    EXPECT_EQ(inserted->connection(), VLNode::SMOOTH);
    Point split = path->pointAtPathTime(3.5);
    EXPECT_NEAR(split.x, quarter.x, 1e-9) << "the first half keeps the old shape";
    EXPECT_NEAR(split.y, quarter.y, 1e-9);

    auto onLine = path->insertNodeWithPathTime(7.25);
    EXPECT_EQ(onLine->position(), (Point{125, 0}));
    EXPECT_EQ(path->insertNodeWithPathTime(7.0), path->nodes()[6]) << "at the start of a line segment nothing is added";
}

TEST(Path, QuadraticRunIsCollectedInPathOrder)
{
    auto path = makePath({{0, 0, L}, {10, 10, O}, {20, 10, O}, {30, 0, Q}}, true);
    std::vector<Point> expected{{0, 0}, {10, 10}, {20, 10}, {30, 0}};
    EXPECT_EQ(path->qcurvePointListAtNodeIndex_qCurveSegment_count(1), expected);

    auto offcurves = makePath({{0, 0, O}, {10, 0, O}}, true);
    std::vector<Point> around{{5, 0}, {0, 0}, {10, 0}, {5, 0}};
    EXPECT_EQ(offcurves->qcurvePointListAtNodeIndex_qCurveSegment_count(0), around);
}

TEST(Path, NodesInsertedIntoAQuadraticRunKeepItsShape)
{
    auto path = makePath({{0, 0, L}, {0, 90, O}, {60, 120, O}, {150, 120, O}, {180, 0, Q}, {90, -40, L}}, true);
    auto outline = [](VLPath& p) {
        std::vector<Point> samples;
        for (long i = 0; i < p.count(); ++i)
            for (double t : {0.25, 0.5, 0.75}) samples.push_back(p.pointAtPathTime(static_cast<double>(i) + t));
        return samples;
    };
    std::vector<Point> before = outline(*path);
    Point expected = path->pointAtPathTime(2.3);
    auto inserted = path->insertNodeWithPathTime(2.3);
    ASSERT_NE(inserted, nullptr);
    EXPECT_EQ(types(*path), "loqoqoqoql_") << "the implied points on both sides are on-curve nodes now";
    EXPECT_EQ(inserted->type(), VLNodeType::QCURVE);
    EXPECT_EQ(inserted->connection(), VLNode::SMOOTH);
    EXPECT_NEAR(inserted->position().x, expected.x, 1e-9);
    EXPECT_NEAR(inserted->position().y, expected.y, 1e-9);
    for (Point p : before) {
        Point near = path->nearestPointOnPath_pathTime(p, nullptr);
        EXPECT_NEAR(near.x, p.x, 1e-3);
        EXPECT_NEAR(near.y, p.y, 1e-3);
    }
    EXPECT_EQ(path->nodeAtIndex(4), inserted);

    auto curveFollows = makePath({{0, 0, L}, {0, 50, O}, {50, 100, O}, {100, 100, C}}, false);
    EXPECT_EQ(curveFollows->insertNodeWithPathTime(1.5), nullptr) << "a cubic's handle is no quadratic run";
    EXPECT_EQ(curveFollows->count(), 4);
}

TEST(Path, NearestPointsFindThePathTimeOfEverySegmentKind)
{
    auto path = makePath({{0, 0, L}, {0, 100, O}, {100, 100, O}, {100, 0, C}, {140, -30, O}, {200, 0, Q}, {300, 0, L}},
                         false);
    for (double time : {0.0, 3.3, 3.8, 4.5, 6.25, 6.9}) {
        Point on = path->pointAtPathTime(time);
        double found = -1;
        Point nearest = path->nearestPointOnPath_pathTime(on, &found);
        EXPECT_NEAR(nearest.x, on.x, 1e-3) << time;
        EXPECT_NEAR(nearest.y, on.y, 1e-3) << time;
        Point again = path->pointAtPathTime(found);
        EXPECT_NEAR(again.x, on.x, 1e-3) << time << " gave " << found;
        EXPECT_NEAR(again.y, on.y, 1e-3) << time << " gave " << found;
    }
    double atNode = -1;
    EXPECT_EQ(path->nearestPointOnPath_pathTime({100, 0}, &atNode), (Point{100, 0}));
    EXPECT_EQ(atNode, 3) << "a query on a node answers the node's index";
    EXPECT_EQ(path->nearestPointOnPath_pathTime({250, 40}, nullptr), (Point{250, 0}));
    double nearNode = -1;
    Point justOff = path->nearestPointOnPath_pathTime({100.4, -0.3}, &nearNode);
    EXPECT_NE(justOff, (Point{100.4, -0.3})) << "half a unit from a node is not on it";
    Point onPath = path->pointAtPathTime(nearNode);
    EXPECT_NEAR(onPath.x, justOff.x, 1e-6);
    EXPECT_NEAR(onPath.y, justOff.y, 1e-6);

    auto ring = makePath({{0, 0, O}, {100, 0, O}, {100, 100, O}, {0, 100, O}}, true);
    Point onRing = ring->nearestPointOnPath_pathTime({50, -20}, nullptr);
    EXPECT_NEAR(onRing.x, 50, 1e-3) << "a contour of control points alone";
    EXPECT_NEAR(onRing.y, 0, 1e-3) << "the implied point between two corners";
    EXPECT_EQ(ring->count(), 4) << "searched on a copy";
    EXPECT_EQ(VLPath::init()->nearestPointOnPath_pathTime({1, 1}, nullptr), (Point{0, 0}));
}

TEST(Path, TransformStartsFromThePrecisePosition)
{
    auto path = makePath({{3, 0, L}}, false);
    AffineTransform scale(AffineTransformStruct{1.5, 0, 0, 1.5, 0, 0});
    path->transformFast_round(scale, 1.0);
    path->transformFast_round(scale, 1.0);
    EXPECT_EQ(path->nodes()[0]->position(), (Point{7, 0}));
    EXPECT_EQ(path->nodes()[0]->positionPrecise(), (Point{6.75, 0}));
}

TEST(Path, CopiesDropNodeUserData)
{
    auto path = makePath({{1, 2, L}, {3, 4, L}}, true);
    path->nodes()[0]->setUserData_forKey(Value("x"), "note");
    auto copy = path->copyPath();
    EXPECT_TRUE(copy->nodes()[0]->userData().empty());
    EXPECT_EQ(copy->nodes()[0]->parentPath(), copy);
    EXPECT_FALSE(copy->isEqualToPath(*path));
    path->nodes()[0]->setUserData_forKey(Value(), "note");
    EXPECT_TRUE(copy->isEqualToPath(*path));
}

TEST(Node, PositionGuardsTellNaNFromOutOfRange)
{
    auto node = VLNode::initWithPosition_type_connection({40000, NAN}, L, VLNode::SHARP);
    EXPECT_EQ(node->position(), (Point{22, 21}));
    node->setPositionFast({40000, 5});
    EXPECT_EQ(node->position(), (Point{21, 5}));

    node->setTypeString("QCURVE");
    EXPECT_EQ(node->type(), Q);
    node->setTypeString("BEND");
    EXPECT_EQ(node->type(), VLNodeType::None);
    EXPECT_EQ(node->typeString(), "n/a");

    node->setConnectionFast(VLNode::SMOOTH_OTHER);
    EXPECT_TRUE(node->isSmooth());
}

TEST(Node, ToggleKeepsLinesBetweenLinesSharp)
{
    auto path = makePath({{0, 0, L}, {100, 0, L}, {200, 0, L}, {250, 50, O}, {300, 50, O}, {400, 0, C}}, false);
    path->nodes()[1]->toggleConnection();
    EXPECT_EQ(path->nodes()[1]->connection(), VLNode::SHARP);
    path->nodes()[2]->toggleConnection();
    EXPECT_EQ(path->nodes()[2]->connection(), VLNode::SMOOTH);
    path->nodes()[2]->toggleConnection();
    EXPECT_EQ(path->nodes()[2]->connection(), VLNode::SHARP);
}
