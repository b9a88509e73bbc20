#include "geometry/VLCubic.h"
#include "outline/VLCurveBounds.h"
#include "outline/VLPath.h"
#include "platform/AffineTransform.h"
#include "platform/VLUnsetValue.h"

#include <algorithm>
#include <vector>

namespace {

const Rect emptyPathBounds{{VLUnsetValue, 0.0}, {0.0, 0.0}};

Point midpoint(Point a, Point b)
{
    return VLLerp(a, b, 0.5);
}

// A run of quadratic control points between two on-curve points; between two control points
// lies an implied on-curve point at their middle.
void addQuadraticRun(VLCurveBounds& bounds, Point start, const std::vector<Point>& offcurves, Point end)
{
    for (size_t i = 0; i < offcurves.size(); ++i) {
        Point segmentEnd = i + 1 < offcurves.size() ? midpoint(offcurves[i], offcurves[i + 1]) : end;
        bounds.addQuadratic(start, offcurves[i], segmentEnd);
        start = segmentEnd;
    }
}

void addSegment(VLCurveBounds& bounds, Point start, const std::vector<Point>& offcurves, const VLNode& end)
{
    Point endPoint = end.position();
    bool cubic = end.type() == VLNodeType::CURVE || end.type() == VLNodeType::HOBBY;
    if (offcurves.empty())
        bounds.addPoint(endPoint);
    else if (cubic && offcurves.size() == 2)
        bounds.addCubic(start, offcurves[0], offcurves[1], endPoint);
    else
        addQuadraticRun(bounds, start, offcurves, endPoint);
}

} // namespace

Rect VLPath::bounds() const
{
    if (_nodes.empty()) return emptyPathBounds;
    if (_nodes.size() == 1) return {_nodes.front()->position(), {0.0, 0.0}};

    // The walk starts at the start point: the first node of an open path, the last on-curve
    // node of a closed one. A closed run of control points alone starts between two of them.
    long first = 0;
    if (_closed) {
        first = count() - 1;
        while (first >= 0 && nodeAtIndex(first)->isOffcurve()) --first;
    }
    VLCurveBounds bounds;
    std::vector<Point> offcurves;
    if (first < 0) {
        Point start = midpoint(_nodes.back()->position(), _nodes.front()->position());
        for (const auto& node : _nodes) offcurves.push_back(node->position());
        addQuadraticRun(bounds, start, offcurves, start);
        return bounds.rect();
    }
    Point current = nodeAtIndex(first)->position();
    bounds.addPoint(current);
    long end = _closed ? first + count() : count() - 1;
    for (long index = first + 1; index <= end; ++index) {
        auto node = nodeAtIndex(index);
        if (node->isOffcurve()) {
            offcurves.push_back(node->position());
            continue;
        }
        addSegment(bounds, current, offcurves, *node);
        current = node->position();
        offcurves.clear();
    }
    return bounds.rect();
}

Rect VLPath::fastBoundsTransform(const AffineTransform* transform) const
{
    if (_nodes.empty()) return emptyPathBounds;
    Point min{30000.0, 30000.0};
    Point max{-30000.0, -30000.0};
    for (const auto& node : _nodes) {
        Point p = transform ? transform->transformPoint(node->position()) : node->position();
        min = {std::min(min.x, p.x), std::min(min.y, p.y)};
        max = {std::max(max.x, p.x), std::max(max.y, p.y)};
    }
    return {min, {max.x - min.x, max.y - min.y}};
}
