#include "outline/VLPathOperator.h"

#include "geometry/VLCubic.h"
#include "geometry/VLCubicIntersections.h"
#include "geometry/VLGeometry.h"
#include "geometry/VLSegmentPen.h"
#include "outline/VLPath.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

// A crossing this near an end of a segment is that end: the segment is not cut there.
constexpr double endTolerance = 0.01;

bool isPoint(const VLPathSegment& segment)
{
    return segment.bounds().size.width + segment.bounds().size.height < 0.0001;
}

bool isCuttable(const VLPathSegment& segment)
{
    return segment.type() == VLPathSegment::Line ||
           (segment.type() == VLPathSegment::Curve && segment.countOfPoints() == 4);
}

bool isNearAnEnd(const VLPathSegment& segment, Point p, double tolerance)
{
    return VLPointsWithin(segment.pointAtIndex(0), p, tolerance) || VLPointsWithin(segment.lastPoint(), p, tolerance);
}

// Boxes that share a point, edges included: a level line has a box without height.
bool boxesMeet(const Rect& a, const Rect& b)
{
    return a.origin.x <= b.origin.x + b.size.width && b.origin.x <= a.origin.x + a.size.width &&
           a.origin.y <= b.origin.y + b.size.height && b.origin.y <= a.origin.y + a.size.height;
}

VLCubic cubicOf(const VLPathSegment& segment)
{
    return {segment.pointAtIndex(0), segment.pointAtIndex(1), segment.pointAtIndex(2), segment.pointAtIndex(3)};
}

// The time of the point of the cubic nearest to p: the best of a coarse sampling, refined by
// halving the step around it until it is far finer than the 0.001 that cutting needs.
double nearestTimeOnCubic(const VLCubic& cubic, Point p, double& squareDistance)
{
    auto distanceAt = [&](double t) { return VLSquareDistance(VLCubicPoint(cubic[0], cubic[1], cubic[2], cubic[3], t), p); };
    constexpr int samples = 64;
    double best = 0;
    squareDistance = distanceAt(0);
    for (int i = 1; i <= samples; ++i) {
        double t = double(i) / samples, d = distanceAt(t);
        if (d < squareDistance) best = t, squareDistance = d;
    }
    for (double step = 1.0 / samples; step > 1e-9; step /= 2) {
        for (double t : {best - step, best + step}) {
            if (t < 0 || t > 1) continue;
            double d = distanceAt(t);
            if (d < squareDistance) best = t, squareDistance = d;
        }
    }
    return best;
}

// Where two lines cross inside both, x = VLUnsetValue for nowhere; parallel lines don't cross.
Point lineCrossing(Point a1, Point a2, Point b1, Point b2)
{
    double dax = a2.x - a1.x, day = a2.y - a1.y, dbx = b2.x - b1.x, dby = b2.y - b1.y;
    double denominator = dax * dby - day * dbx;
    if (std::fabs(denominator) < 1e-12) return {VLUnsetValue, 0};
    double t = ((b1.x - a1.x) * dby - (b1.y - a1.y) * dbx) / denominator;
    double u = ((b1.x - a1.x) * day - (b1.y - a1.y) * dax) / denominator;
    constexpr double slack = 1e-9;
    if (t < -slack || t > 1 + slack || u < -slack || u > 1 + slack) return {VLUnsetValue, 0};
    return {a1.x + t * dax, a1.y + t * day};
}

double doubledArea(Point a, Point b, Point c)
{
    return std::fabs((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x));
}

// Whether p lies strictly inside the line a-b, and on it.
bool liesInside(Point p, Point a, Point b)
{
    double t = 0;
    Point foot = VLNearestPointUnlimited(p, a, b, &t);
    return t >= 0.0001 && t <= 0.9999 && VLPointsWithin(foot, p, 0.001);
}

using Cuts = std::vector<Point>;

void lineHits(const VLPathSegment& l1, const VLPathSegment& l2, Cuts& cuts1, Cuts& cuts2)
{
    Point a1 = l1.pointAtIndex(0), a2 = l1.lastPoint(), b1 = l2.pointAtIndex(0), b2 = l2.lastPoint();
    Point crossing = lineCrossing(a1, a2, b1, b2);
    if (crossing.x != VLUnsetValue) {
        cuts1.push_back(crossing);
        cuts2.push_back(crossing);
        return;
    }
    // Lines on one line cut each other where one's end lies inside the other.
    if (doubledArea(a1, a2, b1) >= 5 || doubledArea(a1, a2, b2) >= 5) return;
    for (Point p : {b1, b2})
        if (liesInside(p, a1, a2)) cuts1.push_back(p);
    for (Point p : {a1, a2})
        if (liesInside(p, b1, b2)) cuts2.push_back(p);
}

void lineCurveHits(const VLPathSegment& line, const VLPathSegment& curve, Cuts& lineCuts, Cuts& curveCuts)
{
    Point a = line.pointAtIndex(0), b = line.lastPoint();
    VLCubic c = cubicOf(curve);
    double length = std::hypot(b.x - a.x, b.y - a.y);
    if (!(length > 0)) return;
    // In units of the outline, whatever the line's length: the root solver's thresholds are.
    double dx = (b.x - a.x) / length, dy = (b.y - a.y) / length;
    double d[4];
    for (int i = 0; i < 4; ++i) d[i] = dx * (c[i].y - a.y) - dy * (c[i].x - a.x);
    double roots[3];
    int count = VLRootsOfCubic(-d[0] + 3 * d[1] - 3 * d[2] + d[3], 3 * d[0] - 6 * d[1] + 3 * d[2],
                               -3 * d[0] + 3 * d[1], d[0], roots);
    // A curve that ends on the line touches it there, maybe tangent to it, where the roots are
    // a double one that rounding may lose.
    for (Point end : {c[0], c[3]})
        if (liesInside(end, a, b)) lineCuts.push_back(end);
    for (int i = 0; i < count; ++i) {
        Point p = VLCubicPoint(c[0], c[1], c[2], c[3], std::clamp(roots[i], 0.0, 1.0));
        double t = 0;
        VLNearestPointUnlimited(p, a, b, &t);
        if (t < -0.0001 || t > 1.0001) continue;
        lineCuts.push_back(p);
        curveCuts.push_back(p);
    }
}

Point roundedToThousandths(Point p)
{
    return {std::round((p.x + 1e-07) / 0.001) * 0.001, std::round((p.y + 1e-07) / 0.001) * 0.001};
}

void curveHits(const VLPathSegment& c1, const VLPathSegment& c2, Cuts& cuts1, Cuts& cuts2)
{
    const Rect& box = c1.bounds();
    double tolerance = box.size.width + box.size.height < 3 ? 0.5 : 1.0;
    for (Point hit : VLCubicIntersections(cubicOf(c1), cubicOf(c2))) {
        // Two curves that only meet where they join are not cut.
        if (isNearAnEnd(c1, hit, tolerance) && isNearAnEnd(c2, hit, tolerance)) continue;
        // Both curves take the same point, so that their pieces meet exactly.
        hit = roundedToThousandths(hit);
        cuts1.push_back(hit);
        cuts2.push_back(hit);
    }
}

void collectHits(const VLPathSegment& a, const VLPathSegment& b, Cuts& cutsA, Cuts& cutsB)
{
    if (isPoint(a) || isPoint(b) || !isCuttable(a) || !isCuttable(b) || !boxesMeet(a.bounds(), b.bounds())) return;
    bool aLine = a.type() == VLPathSegment::Line, bLine = b.type() == VLPathSegment::Line;
    if (aLine && bLine) return lineHits(a, b, cutsA, cutsB);
    if (aLine) return lineCurveHits(a, b, cutsA, cutsB);
    if (bLine) return lineCurveHits(b, a, cutsB, cutsA);
    curveHits(a, b, cutsA, cutsB);
}

double timeOn(const VLPathSegment& segment, Point p)
{
    if (segment.type() == VLPathSegment::Line) {
        double t = 0;
        VLNearestPointUnlimited(p, segment.pointAtIndex(0), segment.lastPoint(), &t);
        return t;
    }
    double distance;
    return nearestTimeOnCubic(cubicOf(segment), p, distance);
}

// Cuts the segment at the points in their order along it: each cut falls into the last piece.
// The first piece stays in the segment's place, the others join the end of the list. A point
// at an end of the piece it falls in cuts nothing.
void cutAtPoints(VLSegments& list, size_t index, Cuts& cuts)
{
    if (cuts.empty()) return;
    const VLPathSegment original = list[index];
    std::sort(cuts.begin(), cuts.end(), [&](Point a, Point b) { return timeOn(original, a) < timeOn(original, b); });
    size_t last = index;
    for (Point p : cuts) {
        if (isNearAnEnd(list[last], p, endTolerance)) continue;
        if (list[last].type() == VLPathSegment::Line) {
            VLPathSegment rest = list[last];
            list[last].setPoint_atIndex(p, 1);
            list[last].updateBounds();
            rest.setPoint_atIndex(p, 0);
            rest.updateBounds();
            list.push_back(std::move(rest));
        } else {
            double distance;
            double t = nearestTimeOnCubic(cubicOf(list[last]), p, distance);
            VLPathSegment first = list[last], second = list[last];
            if (!list[last].splitAtTime_firstHalf_secondHalf(t, first, second)) continue;
            VLPathOperator::divideAndAddTo_segment_Q2_Q3_Q4_R2_R3(list, last, first.pointAtIndex(1), first.pointAtIndex(2),
                                                                   p, second.pointAtIndex(1), second.pointAtIndex(2));
        }
        last = list.size() - 1;
    }
}

// A segment of a list with the points at which others cross it.
struct Family {
    VLSegments* list;
    size_t index;
    Rect box;
    Cuts cuts;
};

void addFamilies(VLSegments& segments, std::vector<Family>& families)
{
    for (size_t i = 0; i < segments.size(); ++i) families.push_back({&segments, i, segments[i].bounds(), {}});
}

// The crossings of every pair whose boxes meet, found on the segments as they are, by the left
// edges of the boxes so that a segment is compared only with those that can still reach it;
// then every segment is cut at its crossings.
void cutAll(std::vector<Family>& families, bool acrossListsOnly)
{
    std::vector<size_t> order(families.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::sort(order.begin(), order.end(),
              [&](size_t a, size_t b) { return families[a].box.origin.x < families[b].box.origin.x; });
    for (size_t a = 0; a < order.size(); ++a) {
        Family& f = families[order[a]];
        double right = f.box.origin.x + f.box.size.width;
        for (size_t b = a + 1; b < order.size(); ++b) {
            Family& g = families[order[b]];
            if (g.box.origin.x > right) break;
            if (acrossListsOnly && f.list == g.list) continue;
            collectHits((*f.list)[f.index], (*g.list)[g.index], f.cuts, g.cuts);
        }
    }
    for (auto& family : families) cutAtPoints(*family.list, family.index, family.cuts);
}

} // namespace

VLSegments VLPathOperator::segmentsFromPaths(const std::vector<std::shared_ptr<VLPath>>& paths)
{
    VLSegmentPen pen;
    for (const auto& path : paths)
        if (path) path->drawSimpleInPen(pen);
    return pen.segments();
}

void VLPathOperator::addIntersections(VLSegments& segments)
{
    std::vector<Family> all;
    all.reserve(segments.size());
    addFamilies(segments, all);
    cutAll(all, false);
}

void VLPathOperator::addIntersections_otherSegments(VLSegments& a, VLSegments& b)
{
    if (&a == &b) return addIntersections(a);
    std::vector<Family> all;
    all.reserve(a.size() + b.size());
    addFamilies(a, all);
    addFamilies(b, all);
    cutAll(all, true);
}

void VLPathOperator::divideAndAddTo_segment_Q2_Q3_Q4_R2_R3(VLSegments& list, size_t segment, Point q2, Point q3,
                                                           Point q4, Point r2, Point r3)
{
    VLPathSegment& first = list[segment];
    Point end = first.lastPoint();
    first.setPoint_atIndex(q2, 1);
    first.setPoint_atIndex(q3, 2);
    first.setPoint_atIndex(q4, 3);
    first.updateBounds();
    VLPathSegment rest = first;
    rest.setPoint_atIndex(q4, 0);
    rest.setPoint_atIndex(r2, 1);
    rest.setPoint_atIndex(r3, 2);
    rest.setPoint_atIndex(end, 3);
    rest.updateBounds();
    list.push_back(std::move(rest));
}

namespace {

std::vector<size_t> segmentsWithPoint(const VLSegments& segments, Point point, bool atStart)
{
    std::vector<size_t> found;
    for (size_t i = 0; i < segments.size(); ++i) {
        Point end = atStart ? segments[i].pointAtIndex(0) : segments[i].lastPoint();
        if (VLPointsWithin(end, point, 0.001)) found.push_back(i);
    }
    return found;
}

} // namespace

std::vector<size_t> VLPathOperator::segments_thatStartAtPoint(const VLSegments& segments, Point point)
{
    return segmentsWithPoint(segments, point, true);
}

std::vector<size_t> VLPathOperator::segments_thatEndAtPoint(const VLSegments& segments, Point point)
{
    return segmentsWithPoint(segments, point, false);
}
