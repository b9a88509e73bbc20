#include "outline/VLPathOperator.h"

#include "geometry/VLCubic.h"
#include "platform/VLUnsetValue.h"

#include <algorithm>
#include <cmath>

namespace {

// Half-open in y, so that a ray through the joint of two segments counts it once.
void countMonotonePiece(const VLCubic& c, double t0, double t1, Point p, int& winding)
{
    auto at = [&](double t) { return VLCubicPoint(c[0], c[1], c[2], c[3], t); };
    Point a = at(t0), b = at(t1);
    if (a.y == b.y) return;
    bool up = b.y > a.y;
    double low = up ? a.y : b.y, high = up ? b.y : a.y;
    if (p.y < low || p.y >= high) return;
    for (int i = 0; i < 60; ++i) {
        double middle = (t0 + t1) / 2;
        if ((at(middle).y < p.y) == up)
            t0 = middle;
        else
            t1 = middle;
    }
    if (at((t0 + t1) / 2).x < p.x) winding += up ? 1 : -1;
}

void countCubic(const VLCubic& c, Point p, int& winding)
{
    // Split where y turns, so that each piece crosses a level once at most.
    double a = 3 * (-c[0].y + 3 * c[1].y - 3 * c[2].y + c[3].y), b = 6 * (c[0].y - 2 * c[1].y + c[2].y),
           d = 3 * (c[1].y - c[0].y);
    double cuts[4] = {0, 0, 0, 1};
    int count = 1;
    if (std::fabs(a) < 1e-12) {
        if (std::fabs(b) > 1e-12) cuts[count++] = -d / b;
    } else if (double disc = b * b - 4 * a * d; disc >= 0) {
        double root = std::sqrt(disc);
        double r1 = (-b - root) / (2 * a), r2 = (-b + root) / (2 * a);
        cuts[count++] = std::min(r1, r2);
        cuts[count++] = std::max(r1, r2);
    }
    double last = 0;
    for (int i = 1; i < count; ++i) {
        if (cuts[i] <= last || cuts[i] >= 1) continue;
        countMonotonePiece(c, last, cuts[i], p, winding);
        last = cuts[i];
    }
    countMonotonePiece(c, last, 1, p, winding);
}

void countLine(Point a, Point b, Point p, int& winding)
{
    if (a.y == b.y) return;
    bool up = b.y > a.y;
    if (p.y < std::min(a.y, b.y) || p.y >= std::max(a.y, b.y)) return;
    double x = a.x + (p.y - a.y) / (b.y - a.y) * (b.x - a.x);
    if (x < p.x) winding += up ? 1 : -1;
}

// A run of quadratics is the cubics of its pieces, the on-curve points between two off-curve
// points implied halfway.
void countQuadratics(std::span<const Point> run, Point p, int& winding)
{
    if (run.size() < 3) return countLine(run.front(), run.back(), p, winding);
    Point start = run.front();
    for (size_t i = 1; i + 1 < run.size(); ++i) {
        Point off = run[i];
        Point end = i + 2 == run.size() ? run.back() : VLLerp(run[i], run[i + 1], 0.5);
        countCubic(VLCubicFromQuadratic(start, off, end), p, winding);
        start = end;
    }
}

void countSegment(const VLPathSegment& segment, Point p, int& winding)
{
    if (segment.type() == VLPathSegment::QCurve) return countQuadratics(segment.elements(), p, winding);
    if (segment.type() == VLPathSegment::Curve && segment.countOfPoints() == 4)
        return countCubic({segment.pointAtIndex(0), segment.pointAtIndex(1), segment.pointAtIndex(2),
                           segment.pointAtIndex(3)},
                          p, winding);
    countLine(segment.pointAtIndex(0), segment.lastPoint(), p, winding);
}

// A hair right of the segment's middle, in its direction of travel: on a curve, at its one
// inflection if it has one, where the middle could lie on the wrong side of a handle.
Point testPoint(const VLPathSegment& segment)
{
    if (segment.type() != VLPathSegment::Curve) return segment.middlePointRight();
    auto inflections = segment.inflectionPoints();
    double t = inflections.size() == 1 ? inflections.front() : 0.5;
    Point on = segment.pointAtTime(t), direction = segment.normalAtTime(t);
    if (!std::isfinite(direction.x) || direction.x == VLUnsetValue) return segment.middlePointRight();
    return {on.x + 1e-05 * direction.y, on.y - 1e-05 * direction.x};
}

bool countsFor(const VLPathSegment& other, Point p)
{
    const Rect& box = other.bounds();
    return box.origin.x <= p.x + 0.0001 && box.size.height >= 2.1e-05 && p.y >= box.origin.y &&
           p.y <= box.origin.y + box.size.height;
}

// Counterclockwise ink counts -1 to the left; clockwise contours alone are counters.
bool isOutside(int winding)
{
    return winding >= 0;
}

} // namespace

bool VLPathOperator::segmentIsOutside(const VLPathSegment& segment, const VLSegments& list)
{
    Point p = testPoint(segment);
    if (!std::isfinite(p.x) || !std::isfinite(p.y)) return true;
    int winding = 0;
    for (const auto& other : list)
        if (countsFor(other, p)) countSegment(other, p, winding);
    return isOutside(winding);
}

VLWindingIndex::VLWindingIndex(const VLSegments& segments) : _segments(segments)
{
    double low = INFINITY, high = -INFINITY;
    for (const auto& segment : segments) {
        low = std::min(low, segment.bounds().origin.y);
        high = std::max(high, segment.bounds().origin.y + segment.bounds().size.height);
    }
    if (!(high > low) || !std::isfinite(high - low)) return;
    // About as many bands as segments per band, so that a test sees the few that cross its level.
    size_t count = std::clamp<size_t>(static_cast<size_t>(std::sqrt(double(segments.size()))) * 4, 1, 4096);
    _low = low;
    _bandHeight = (high - low) / double(count);
    _bands.resize(count);
    for (size_t i = 0; i < segments.size(); ++i) {
        const Rect& box = segments[i].bounds();
        // A box that isn't finite counts for no level.
        if (!std::isfinite(box.origin.y) || !std::isfinite(box.size.height)) continue;
        for (size_t band = bandOf(box.origin.y); band <= bandOf(box.origin.y + box.size.height); ++band)
            _bands[band].push_back(i);
    }
}

size_t VLWindingIndex::bandOf(double y) const
{
    double band = std::floor((y - _low) / _bandHeight);
    if (!(band >= 0)) return 0;
    return static_cast<size_t>(std::min(band, double(_bands.size() - 1)));
}

bool VLWindingIndex::segmentIsOutside(const VLPathSegment& segment) const
{
    if (_bands.empty()) return VLPathOperator::segmentIsOutside(segment, _segments);
    Point p = testPoint(segment);
    if (!std::isfinite(p.x) || !std::isfinite(p.y)) return true;
    int winding = 0;
    for (size_t index : _bands[bandOf(p.y)])
        if (countsFor(_segments[index], p)) countSegment(_segments[index], p, winding);
    return isOutside(winding);
}
