#include "outline/VLPathOperator.h"

#include "geometry/VLGeometry.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

void removeMarked(VLSegments& segments, const std::vector<bool>& marked)
{
    size_t kept = 0;
    for (size_t i = 0; i < segments.size(); ++i)
        if (!marked[i]) {
            if (kept != i) segments[kept] = std::move(segments[i]);
            ++kept;
        }
    segments.erase(segments.begin() + static_cast<long>(kept), segments.end());
}

// Indexes of the segments by the x of their first point, so that pairs that start (or end) at
// one place are found among near neighbours instead of among all.
std::vector<size_t> byFirstX(const VLSegments& segments)
{
    std::vector<size_t> order(segments.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::sort(order.begin(), order.end(), [&](size_t a, size_t b) {
        return segments[a].pointAtIndex(0).x < segments[b].pointAtIndex(0).x;
    });
    return order;
}

// Calls pair(i, j) for the segments whose first points lie within the tolerance in x.
template <typename Pair>
void forNeighbours(const VLSegments& segments, double tolerance, Pair pair)
{
    std::vector<size_t> order = byFirstX(segments);
    for (size_t a = 0; a < order.size(); ++a)
        for (size_t b = a + 1; b < order.size(); ++b) {
            if (segments[order[b]].pointAtIndex(0).x - segments[order[a]].pointAtIndex(0).x > tolerance) break;
            pair(order[a], order[b]);
        }
}

bool cancels(const VLPathSegment& a, const VLPathSegment& b)
{
    if (a.type() != b.type() || a.countOfPoints() != b.countOfPoints()) return false;
    size_t n = a.countOfPoints();
    if (!VLPointsWithin(a.lastPoint(), b.pointAtIndex(0), 0.001) || !VLPointsWithin(a.pointAtIndex(0), b.lastPoint(), 0.0001)) return false;
    for (size_t i = 1; i + 1 < n; ++i)
        if (!VLPointsWithin(a.pointAtIndex(i), b.pointAtIndex(n - 1 - i), 0.0001)) return false;
    return true;
}

} // namespace

std::optional<VLSegments> VLPathOperator::removeOverlapSegments(const VLSegments& segments)
{
    VLSegments work = segments;
    addIntersections(work);
    if (work.size() > 20 * segments.size()) return std::nullopt;
    removeOpenEnds(work);
    removeCancelingSegments(work);
    removeInnerSegments(work);
    removeOverlappingSegments(work);
    return work;
}

// A piece of an open path cut loose at a crossing leads nowhere: it goes.
void VLPathOperator::removeOpenEnds(VLSegments& segments)
{
    for (size_t i = segments.size(); i-- > 1;) {
        const VLPathSegment& piece = segments[i];
        if (!(piece.options() & VLPathSegment::OptionOpenPath) || piece.type() == VLPathSegment::QCurve) continue;
        if (segments_thatEndAtPoint(segments, piece.pointAtIndex(0)).empty() ||
            segments_thatStartAtPoint(segments, piece.lastPoint()).empty())
            segments.erase(segments.begin() + static_cast<long>(i));
    }
}

void VLPathOperator::removeCancelingSegments(VLSegments& segments)
{
    std::vector<bool> marked(segments.size(), false);
    // A cancelling partner starts where the segment ends.
    std::vector<size_t> order = byFirstX(segments);
    for (size_t i = 0; i < segments.size(); ++i) {
        double x = segments[i].lastPoint().x;
        auto first = std::lower_bound(order.begin(), order.end(), x - 0.001,
                                      [&](size_t k, double value) { return segments[k].pointAtIndex(0).x < value; });
        for (auto it = first; it != order.end() && segments[*it].pointAtIndex(0).x <= x + 0.001; ++it)
            if (*it != i && cancels(segments[i], segments[*it])) marked[i] = marked[*it] = true;
    }
    removeMarked(segments, marked);
}

void VLPathOperator::removeOverlappingSegments(VLSegments& segments)
{
    std::vector<bool> marked(segments.size(), false);
    forNeighbours(segments, 0.001, [&](size_t a, size_t b) {
        if (!marked[a] && !marked[b] && segments[a].isEqualToSegment_tolerance(segments[b], 0.001))
            marked[std::min(a, b)] = true;
    });
    removeMarked(segments, marked);
}

void VLPathOperator::removeInnerSegments(VLSegments& segments)
{
    removeInnerSegments_originalSegments(segments, segments);
}

void VLPathOperator::removeInnerSegments_originalSegments(VLSegments& segments, const VLSegments& other)
{
    VLWindingIndex index(other);
    std::vector<bool> inner(segments.size());
    for (size_t i = 0; i < segments.size(); ++i) inner[i] = !index.segmentIsOutside(segments[i]);
    removeMarked(segments, inner);
}

void VLPathOperator::removeOuterSegments_originalSegments(VLSegments& segments, const VLSegments& other)
{
    VLWindingIndex index(other);
    std::vector<bool> outer(segments.size());
    for (size_t i = 0; i < segments.size(); ++i) outer[i] = index.segmentIsOutside(segments[i]);
    removeMarked(segments, outer);
}

void VLPathOperator::removeOverlappingSegments_otherSegments(VLSegments& segments, const VLSegments& other)
{
    std::vector<bool> doubled(segments.size(), false);
    std::vector<size_t> order = byFirstX(other);
    for (size_t i = 0; i < segments.size(); ++i) {
        double x = segments[i].pointAtIndex(0).x;
        auto first = std::lower_bound(order.begin(), order.end(), x - 0.001,
                                      [&](size_t k, double value) { return other[k].pointAtIndex(0).x < value; });
        for (auto it = first; it != order.end() && other[*it].pointAtIndex(0).x <= x + 0.001 && !doubled[i]; ++it)
            doubled[i] = segments[i].isEqualToSegment_tolerance(other[*it], 0.001);
    }
    removeMarked(segments, doubled);
}
