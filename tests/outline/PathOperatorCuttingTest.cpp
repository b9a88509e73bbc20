#include "outline/VLPathOperator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

// Each segment is marked with a number of its own, which its parts inherit.
int marks = 0;

VLPathSegment line(Point a, Point b)
{
    auto segment = VLPathSegment::initWithLinePoint1_point2_options(a, b, 0);
    segment.setFlag(++marks);
    return segment;
}

VLPathSegment curve(Point a, Point b, Point c, Point d)
{
    auto segment = VLPathSegment::initWithCurvePoint1_point2_point3_point4_options(a, b, c, d, 0);
    segment.setFlag(++marks);
    return segment;
}

bool near(Point a, Point b, double tolerance = 0.002)
{
    return std::fabs(a.x - b.x) < tolerance && std::fabs(a.y - b.y) < tolerance;
}

// The parts of a cut segment, wherever they went in the list, chain from its start to its end,
// each starting where another ends.
void expectChain(const VLSegments& segments, Point start, Point end, size_t parts)
{
    Point at = start;
    int mark = 0;
    size_t count = 0;
    for (bool found = true; found && !(count > 0 && near(at, end));) {
        found = false;
        for (size_t index : VLPathOperator::segments_thatStartAtPoint(segments, at)) {
            if (mark != 0 && segments[index].flag() != mark) continue;
            mark = segments[index].flag();
            at = segments[index].lastPoint();
            found = true;
            ++count;
            break;
        }
    }
    EXPECT_TRUE(near(at, end)) << "the chain stops at " << at.x << "," << at.y;
    EXPECT_EQ(count, parts);
}

// Where two segments cross away from both of their ends; x = NaN for nowhere.
bool crossInside(const VLPathSegment& a, const VLPathSegment& b)
{
    Point a1 = a.pointAtIndex(0), a2 = a.lastPoint(), b1 = b.pointAtIndex(0), b2 = b.lastPoint();
    double d = (a2.x - a1.x) * (b2.y - b1.y) - (a2.y - a1.y) * (b2.x - b1.x);
    if (std::fabs(d) < 1e-9) return false;
    double t = ((b1.x - a1.x) * (b2.y - b1.y) - (b1.y - a1.y) * (b2.x - b1.x)) / d;
    double u = ((b1.x - a1.x) * (a2.y - a1.y) - (b1.y - a1.y) * (a2.x - a1.x)) / d;
    double la = std::hypot(a2.x - a1.x, a2.y - a1.y), lb = std::hypot(b2.x - b1.x, b2.y - b1.y);
    // A hundredth of a unit from an end counts as the end, as the cutting does.
    return t * la > 0.02 && (1 - t) * la > 0.02 && u * lb > 0.02 && (1 - u) * lb > 0.02;
}

} // namespace

TEST(PathOperatorCutting, LinesCutEachOtherAtCrossingsAndAlongOverlaps)
{
    {
        SCOPED_TRACE("a crossing at an end of one line cuts only the other");
        VLSegments segments{line({0, 0}, {100, 0}), line({50, 0}, {50, 100})};
        VLPathOperator::addIntersections(segments);
        ASSERT_EQ(segments.size(), 3u);
        EXPECT_TRUE(near(segments[0].lastPoint(), {50, 0}));
        EXPECT_TRUE(near(segments[1].lastPoint(), {50, 100}));
        expectChain(segments, {0, 0}, {100, 0}, 2);
    }
    {
        SCOPED_TRACE("two lines crossing in their middles");
        VLSegments segments{line({0, 0}, {100, 100}), line({0, 100}, {100, 0})};
        VLPathOperator::addIntersections(segments);
        ASSERT_EQ(segments.size(), 4u);
        expectChain(segments, {0, 0}, {100, 100}, 2);
        expectChain(segments, {0, 100}, {100, 0}, 2);
        EXPECT_EQ(VLPathOperator::segments_thatEndAtPoint(segments, {50, 50}).size(), 2u);
    }
    {
        SCOPED_TRACE("collinear lines cut each other at the ends of their overlap");
        VLSegments segments{line({0, 0}, {100, 0}), line({50, 0}, {150, 0})};
        VLPathOperator::addIntersections(segments);
        ASSERT_EQ(segments.size(), 4u);
        expectChain(segments, {0, 0}, {100, 0}, 2);
        expectChain(segments, {50, 0}, {150, 0}, 2);
        auto overlap = VLPathOperator::segments_thatStartAtPoint(segments, {50, 0});
        ASSERT_EQ(overlap.size(), 2u);
        EXPECT_TRUE(segments[overlap[0]].isEqualToSegment(segments[overlap[1]]));
    }
    {
        SCOPED_TRACE("a segment of no length takes no part");
        VLSegments segments{line({50, 50}, {50, 50}), line({0, 50}, {100, 50}), line({50, 0}, {50, 100})};
        VLPathOperator::addIntersections(segments);
        EXPECT_EQ(segments.size(), 5u);
        EXPECT_TRUE(near(segments[0].lastPoint(), {50, 50}));
        EXPECT_TRUE(near(segments[0].pointAtIndex(0), {50, 50}));
    }
}

TEST(PathOperatorCutting, CurvesAreCutIntoPiecesThatMeetExactly)
{
    Point arch[] = {{0, 0}, {0, 100}, {100, 100}, {100, 0}};
    {
        SCOPED_TRACE("a line crossing an arch twice");
        VLSegments segments{curve(arch[0], arch[1], arch[2], arch[3]), line({-10, 50}, {110, 50})};
        VLPathOperator::addIntersections(segments);
        ASSERT_EQ(segments.size(), 6u);
        expectChain(segments, arch[0], arch[3], 3);
        expectChain(segments, {-10, 50}, {110, 50}, 3);
        // Every cut end of the arch lies on the line.
        for (const auto& segment : segments)
            if (segment.type() == VLPathSegment::Curve) {
                for (Point p : {segment.pointAtIndex(0), segment.lastPoint()}) {
                    bool archEnd = near(p, arch[0]) || near(p, arch[3]);
                    EXPECT_TRUE(archEnd || std::fabs(p.y - 50) < 0.002) << p.x << "," << p.y;
                }
                // The pieces trace the arch: their middles lie where the arch's own points are.
                Point middle = segment.pointAtTime(0.5);
                EXPECT_LE(middle.y, 75.001);
            }
    }
    {
        SCOPED_TRACE("an arch and a valley cross twice and share the cut points");
        VLSegments segments{curve(arch[0], arch[1], arch[2], arch[3]), curve({0, 100}, {0, 0}, {100, 0}, {100, 100})};
        VLPathOperator::addIntersections(segments);
        ASSERT_EQ(segments.size(), 6u);
        expectChain(segments, arch[0], arch[3], 3);
        expectChain(segments, {0, 100}, {100, 100}, 3);
        for (const auto& segment : segments) {
            Point end = segment.lastPoint();
            if (near(end, arch[3]) || near(end, {100, 100})) continue;
            EXPECT_EQ(VLPathOperator::segments_thatEndAtPoint(segments, end).size(), 2u);
        }
    }
    {
        SCOPED_TRACE("two curves that only meet at their joint stay whole");
        VLSegments segments{curve(arch[0], arch[1], arch[2], arch[3]), curve(arch[3], {100, -100}, {200, -100}, {200, 0})};
        VLPathOperator::addIntersections(segments);
        EXPECT_EQ(segments.size(), 2u);
    }
}

// Random lines, cut: no two pieces cross inside any more, and every line is a chain of pieces.
TEST(PathOperatorCutting, RandomLinesEndUpTouchingOnlyAtTheirEnds)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> coordinate(0, 1000);
    for (int round = 0; round < 20; ++round) {
        VLSegments segments, originals;
        for (int i = 0; i < 12; ++i)
            originals.push_back(line({coordinate(random), coordinate(random)}, {coordinate(random), coordinate(random)}));
        segments = originals;
        VLPathOperator::addIntersections(segments);
        for (size_t i = 0; i < segments.size(); ++i)
            for (size_t j = i + 1; j < segments.size(); ++j)
                EXPECT_FALSE(crossInside(segments[i], segments[j])) << "round " << round << ": " << i << " and " << j;
    }
}

TEST(PathOperatorCutting, TwoListsAreCutAgainstEachOtherOnly)
{
    auto square = [](double x, double y) {
        return VLSegments{line({x, y}, {x + 100, y}), line({x + 100, y}, {x + 100, y + 100}),
                          line({x + 100, y + 100}, {x, y + 100}), line({x, y + 100}, {x, y})};
    };
    VLSegments a = square(0, 0), b = square(50, 50);
    VLPathOperator::addIntersections_otherSegments(a, b);
    EXPECT_EQ(a.size(), 6u);
    EXPECT_EQ(b.size(), 6u);
    expectChain(a, {100, 0}, {100, 100}, 2);
    expectChain(a, {100, 100}, {0, 100}, 2);
    expectChain(b, {50, 50}, {150, 50}, 2);
    expectChain(b, {50, 150}, {50, 50}, 2);
    EXPECT_EQ(VLPathOperator::segments_thatStartAtPoint(a, {100, 50}).size(), 1u);
    EXPECT_EQ(VLPathOperator::segments_thatStartAtPoint(b, {50, 100}).size(), 1u);
}
