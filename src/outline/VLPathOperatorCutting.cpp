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

bool within(Point a, Point b, double tolerance)
{
    return std::fabs(a.x - b.x) < tolerance && std::fabs(a.y - b.y) < tolerance;
}

bool isNearAnEnd(const VLPathSegment& segment, Point p, double tolerance)
{
    return within(segment.pointAtIndex(0), p, tolerance) || within(segment.lastPoint(), p, tolerance);
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

// The pieces that one segment has been cut into by one crossing routine: the segment itself
// first, then the parts it gave to the list.
class Pieces {
public:
    // New parts are also added to parts, the segment's parts so far.
    Pieces(VLSegments& list, size_t first, std::vector<size_t>& parts) : _list(list), _indexes{first}, _parts(parts) {}

    // Cuts the piece that holds p there, unless p is one of its ends; a cubic's new ends become p
    // exactly, so that what cut it meets it.
    void cutAt(Point p)
    {
        size_t piece = holder(p);
        VLPathSegment& segment = _list[piece];
        if (isNearAnEnd(segment, p, endTolerance)) return;
        if (segment.type() == VLPathSegment::Line) return cutLine(piece, p);
        double distance;
        double t = nearestTimeOnCubic(cubicOf(segment), p, distance);
        VLPathSegment first = segment, second = segment;
        if (!segment.splitAtTime_firstHalf_secondHalf(t, first, second)) return;
        added(_list.size());
        VLPathOperator::divideAndAddTo_segment_Q2_Q3_Q4_R2_R3(_list, piece, first.pointAtIndex(1),
                                                               first.pointAtIndex(2), p, second.pointAtIndex(1),
                                                               second.pointAtIndex(2));
    }

private:
    size_t holder(Point p) const
    {
        size_t best = _indexes.front();
        double bestDistance = INFINITY;
        for (size_t index : _indexes) {
            const VLPathSegment& segment = _list[index];
            double distance;
            if (segment.type() == VLPathSegment::Line) {
                Point foot = VLNearestPoint(p, segment.pointAtIndex(0), segment.lastPoint(), nullptr);
                distance = VLSquareDistance(foot, p);
            } else {
                nearestTimeOnCubic(cubicOf(segment), p, distance);
            }
            if (distance < bestDistance) best = index, bestDistance = distance;
        }
        return best;
    }

    void cutLine(size_t piece, Point p)
    {
        VLPathSegment rest = _list[piece];
        _list[piece].setPoint_atIndex(p, 1);
        _list[piece].updateBounds();
        rest.setPoint_atIndex(p, 0);
        rest.updateBounds();
        added(_list.size());
        _list.push_back(std::move(rest));
    }

    void added(size_t index)
    {
        _indexes.push_back(index);
        _parts.push_back(index);
    }

    VLSegments& _list;
    std::vector<size_t> _indexes;
    std::vector<size_t>& _parts;
};

// Where the two lines cross inside both, x = VLUnsetValue for nowhere; parallel lines don't cross.
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
    return t >= 0.0001 && t <= 0.9999 && within(foot, p, 0.001);
}

void intersectLines(VLSegments& list1, size_t l1, std::vector<size_t>& parts1, VLSegments& list2, size_t l2,
                    std::vector<size_t>& parts2)
{
    Point a1 = list1[l1].pointAtIndex(0), a2 = list1[l1].lastPoint();
    Point b1 = list2[l2].pointAtIndex(0), b2 = list2[l2].lastPoint();
    Pieces first(list1, l1, parts1), second(list2, l2, parts2);
    Point crossing = lineCrossing(a1, a2, b1, b2);
    if (crossing.x != VLUnsetValue) {
        first.cutAt(crossing);
        second.cutAt(crossing);
        return;
    }
    // Lines on one line cut each other where one's end lies inside the other.
    if (doubledArea(a1, a2, b1) >= 5 || doubledArea(a1, a2, b2) >= 5) return;
    for (Point p : {b1, b2})
        if (liesInside(p, a1, a2)) first.cutAt(p);
    for (Point p : {a1, a2})
        if (liesInside(p, b1, b2)) second.cutAt(p);
}

void intersectLineAndCurve(VLSegments& lines, size_t line, std::vector<size_t>& lineParts, VLSegments& curves,
                           size_t curve, std::vector<size_t>& curveParts)
{
    Point a = lines[line].pointAtIndex(0), b = lines[line].lastPoint();
    VLCubic c = cubicOf(curves[curve]);
    // Signed distances of the control points from the line, as a cubic in power form.
    double length = std::hypot(b.x - a.x, b.y - a.y);
    if (!(length > 0)) return;
    // In units of the outline, whatever the line's length: the root solver's thresholds are.
    double dx = (b.x - a.x) / length, dy = (b.y - a.y) / length;
    double d[4];
    for (int i = 0; i < 4; ++i) d[i] = dx * (c[i].y - a.y) - dy * (c[i].x - a.x);
    double roots[3];
    int count = VLRootsOfCubic(-d[0] + 3 * d[1] - 3 * d[2] + d[3], 3 * d[0] - 6 * d[1] + 3 * d[2],
                               -3 * d[0] + 3 * d[1], d[0], roots);
    Pieces linePieces(lines, line, lineParts), curvePieces(curves, curve, curveParts);
    for (int i = 0; i < count; ++i) {
        Point p = VLCubicPoint(c[0], c[1], c[2], c[3], std::clamp(roots[i], 0.0, 1.0));
        double t = 0;
        VLNearestPointUnlimited(p, a, b, &t);
        if (t < -0.0001 || t > 1.0001) continue;
        linePieces.cutAt(p);
        curvePieces.cutAt(p);
    }
}

Point roundedToThousandths(Point p)
{
    return {std::round((p.x + 1e-07) / 0.001) * 0.001, std::round((p.y + 1e-07) / 0.001) * 0.001};
}

void intersectCurves(VLSegments& list1, size_t c1, std::vector<size_t>& parts1, VLSegments& list2, size_t c2,
                     std::vector<size_t>& parts2)
{
    VLCubic a = cubicOf(list1[c1]), b = cubicOf(list2[c2]);
    const Rect& box = list1[c1].bounds();
    double tolerance = box.size.width + box.size.height < 3 ? 0.5 : 1.0;
    std::vector<Point> hits;
    for (Point hit : VLCubicIntersections(a, b)) {
        // Two curves that only meet where they join are not cut.
        if (isNearAnEnd(list1[c1], hit, tolerance) && isNearAnEnd(list2[c2], hit, tolerance)) continue;
        hit = roundedToThousandths(hit);
        if (std::none_of(hits.begin(), hits.end(), [&](Point h) { return within(h, hit, endTolerance); }))
            hits.push_back(hit);
    }
    Pieces first(list1, c1, parts1), second(list2, c2, parts2);
    for (Point hit : hits) {
        first.cutAt(hit);
        second.cutAt(hit);
    }
}

void intersectPair(VLSegments& list1, size_t s, std::vector<size_t>& parts1, VLSegments& list2, size_t t,
                   std::vector<size_t>& parts2)
{
    const VLPathSegment &a = list1[s], &b = list2[t];
    if (isPoint(a) || isPoint(b) || !isCuttable(a) || !isCuttable(b) || !boxesMeet(a.bounds(), b.bounds())) return;
    bool aLine = a.type() == VLPathSegment::Line, bLine = b.type() == VLPathSegment::Line;
    if (aLine && bLine) return intersectLines(list1, s, parts1, list2, t, parts2);
    if (aLine) return intersectLineAndCurve(list1, s, parts1, list2, t, parts2);
    if (bLine) return intersectLineAndCurve(list2, t, parts2, list1, s, parts1);
    intersectCurves(list1, s, parts1, list2, t, parts2);
}

// A segment of the list as it was before cutting, and the indexes of the parts it is cut into.
// Parts stay inside their segment's box, so two segments whose boxes are apart need no look.
struct Family {
    Rect box;
    std::vector<size_t> parts;
    VLSegments* list;
};

void addFamilies(VLSegments& segments, std::vector<Family>& families)
{
    for (size_t i = 0; i < segments.size(); ++i) families.push_back({segments[i].bounds(), {i}, &segments});
}

// Every part of one against every part of the other, parts made on the way included: a part cut
// off one segment may cross another part of the other that was tested before it was made.
void cutFamilies(Family& f, Family& g)
{
    for (size_t i = 0; i < f.parts.size(); ++i)
        for (size_t j = 0; j < g.parts.size(); ++j) intersectPair(*f.list, f.parts[i], f.parts, *g.list, g.parts[j], g.parts);
}

// Families by the left edge of their boxes; a pair is cut only while the boxes can still meet.
void sweep(std::vector<Family>& families, bool acrossListsOnly)
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
            if (boxesMeet(f.box, g.box)) cutFamilies(f, g);
        }
    }
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
    sweep(all, false);
}

void VLPathOperator::addIntersections_otherSegments(VLSegments& a, VLSegments& b)
{
    if (&a == &b) return addIntersections(a);
    std::vector<Family> all;
    all.reserve(a.size() + b.size());
    addFamilies(a, all);
    addFamilies(b, all);
    sweep(all, true);
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
        if (within(end, point, 0.001)) found.push_back(i);
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
