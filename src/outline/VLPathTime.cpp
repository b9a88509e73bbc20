#include "geometry/VLCubic.h"
#include "platform/NumberConversion.h"
#include "geometry/VLGeometry.h"
#include "model/VLUnsetValue.h"
#include "outline/VLPath.h"

#include <algorithm>
#include <cmath>

namespace {

struct PathTime {
    long index;
    double fraction;
};

PathTime splitPathTime(double pathTime)
{
    double whole = 0.0;
    double fraction = std::modf(pathTime, &whole);
    return {static_cast<long>(whole), fraction};
}

} // namespace

Point VLPath::pointAtPathTime(double pathTime) const
{
    auto [index, t] = splitPathTime(pathTime);
    if (t < 0) t += 1.0;
    auto node = nodeAtIndex(index);
    if (!node || t <= 0.0 || t >= 1.0) return positionAtIndex(index);
    Point here = node->position();
    switch (node->type()) {
    case VLNode::OFFCURVE: {
        // Between two control points lies the implied on-curve point at their middle.
        auto neighbour = [&](long at) {
            auto other = nodeAtIndex(at);
            Point p = other ? other->position() : Point();
            return other && other->isOffcurve() ? VLLerp(here, p, 0.5) : p;
        };
        return VLQuadraticPoint(neighbour(index - 1), here, neighbour(index + 1), t);
    }
    case VLNode::CURVE:
        return VLCubicPoint(positionAtIndex(index - 3), positionAtIndex(index - 2), positionAtIndex(index - 1), here, t);
    case VLNode::LINE: {
        auto previous = nodeAtIndex(index - 1);
        return previous ? VLLerp(previous->position(), here, t) : Point{VLUnsetValue, 0.0};
    }
    default:
        return here;
    }
}

std::shared_ptr<VLNode> VLPath::nearestNodeWithPathTime(double pathTime) const
{
    auto [index, t] = splitPathTime(pathTime);
    auto node = nodeAtIndex(index);
    if (!node || std::fabs(t) >= 0.5) return node;
    if (node->type() == VLNode::CURVE) return nodeAtIndex(index - 3);
    if (node->type() == VLNode::LINE) return nodeAtIndex(index - 1);
    return node;
}

std::vector<Point> VLPath::qcurvePointListAtNodeIndex_qCurveSegment_count(long index) const
{
    std::vector<Point> points;
    if (_nodes.empty()) return points;
    long end = index;
    auto node = nodeAtIndex(end);
    for (long step = 0; node && node->isOffcurve() && step < 2 * count(); ++step) node = nodeAtIndex(++end);
    if (isOffcurveOnly()) {
        // A closed quadratic without on-curve points starts and ends between its last and first node.
        Point middle = VLLerp(_nodes.back()->position(), _nodes.front()->position(), 0.5);
        points.push_back(middle);
        for (const auto& offcurve : _nodes) points.push_back(offcurve->position());
        points.push_back(middle);
        return points;
    }
    if (node) points.push_back(node->position());
    for (long at = end - 1, step = 0; step < count(); --at, ++step) {
        auto previous = nodeAtIndex(at);
        if (!previous) break;
        points.push_back(previous->position());
        if (!previous->isOffcurve()) break;
    }
    std::reverse(points.begin(), points.end());
    return points;
}

bool VLPath::isOffcurveOnly() const
{
    return std::all_of(_nodes.begin(), _nodes.end(), [](const auto& node) { return node->isOffcurve(); });
}

std::shared_ptr<VLNode> VLPath::insertNodeWithPathTime(double pathTime)
{
    auto [index, t] = splitPathTime(pathTime);
    auto node = nodeAtIndex(index);
    if (!node) return nullptr;
    uint8_t type = node->type();
    if (std::fabs(t) < 0.00001) {
        if (type == VLNode::CURVE) return nodeAtIndex(index - 3);
        return type == VLNode::LINE ? nodeAtIndex(index - 1) : nullptr;
    }
    if (std::fabs(t - 1.0) < 0.0001) {
        Point here = node->position();
        auto near = std::find_if(_nodes.begin(), _nodes.end(),
                                 [&](const auto& other) { return VLDistanceF(other->position(), here) < 0.01f; });
        return near == _nodes.end() ? nullptr : *near;
    }
    if (type == VLNode::LINE) {
        auto previous = nodeAtIndex(index - 1);
        if (!previous) return nullptr;
        auto inserted = VLNode::initWithPosition_type_connection(VLLerp(previous->position(), node->position(), t),
                                                                 VLNode::LINE, VLNode::SHARP);
        insertObject_inNodesAtIndex(inserted, index);
        return inserted;
    }
    if (type != VLNode::CURVE && type != VLNode::HOBBY) return nullptr;

    // De Casteljau's split, at the parameter as single precision gives it.
    t = VLSinglePrecision(t);
    auto off1 = nodeAtIndex(index - 2);
    auto off2 = nodeAtIndex(index - 1);
    if (!off1 || !off2) return nullptr;
    Point p0 = positionAtIndex(index - 3);
    Point a = VLLerp(p0, off1->position(), t);
    Point b = VLLerp(off1->position(), off2->position(), t);
    Point c = VLLerp(off2->position(), node->position(), t);
    Point d = VLLerp(a, b, t);
    Point e = VLLerp(b, c, t);
    Point split = VLLerp(d, e, t);
    if (type == VLNode::HOBBY) {
        auto inserted = VLNode::initWithPosition_type_connection(split, VLNode::HOBBY, VLNode::SMOOTH);
        insertObject_inNodesAtIndex(inserted, index);
        return inserted;
    }
    off1->setPositionFast(a);
    off2->setPositionFast(d);
    auto inserted = VLNode::initWithPosition_type_connection(split, VLNode::CURVE, VLNode::SMOOTH);
    insertObject_inNodesAtIndex(VLNode::initWithPosition_type_connection(c, VLNode::OFFCURVE, VLNode::SHARP), index);
    insertObject_inNodesAtIndex(VLNode::initWithPosition_type_connection(e, VLNode::OFFCURVE, VLNode::SHARP), index);
    insertObject_inNodesAtIndex(inserted, index);
    return inserted;
}
