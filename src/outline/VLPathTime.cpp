#include "geometry/VLCubic.h"
#include "geometry/VLGeometry.h"
#include "outline/VLPath.h"
#include "outline/VLSegmentCrossing.h"
#include "platform/NumberConversion.h"
#include "platform/VLUnsetValue.h"

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
    case VLNodeType::OFFCURVE: {
        // Between two control points lies the implied on-curve point at their middle.
        auto neighbour = [&](long at) {
            auto other = nodeAtIndex(at);
            Point p = other ? other->position() : Point();
            return other && other->isOffcurve() ? VLLerp(here, p, 0.5) : p;
        };
        return VLQuadraticPoint(neighbour(index - 1), here, neighbour(index + 1), t);
    }
    case VLNodeType::CURVE:
        return VLCubicPoint(positionAtIndex(index - 3), positionAtIndex(index - 2), positionAtIndex(index - 1), here, t);
    case VLNodeType::LINE: {
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
    if (node->type() == VLNodeType::CURVE) return nodeAtIndex(index - 3);
    if (node->type() == VLNodeType::LINE) return nodeAtIndex(index - 1);
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
    VLNodeType type = node->type();
    if (std::fabs(t) < 0.00001) {
        if (type == VLNodeType::CURVE) return nodeAtIndex(index - 3);
        return type == VLNodeType::LINE ? nodeAtIndex(index - 1) : nullptr;
    }
    if (std::fabs(t - 1.0) < 0.0001) {
        Point here = node->position();
        auto near = std::find_if(_nodes.begin(), _nodes.end(),
                                 [&](const auto& other) { return VLDistanceF(other->position(), here) < 0.01f; });
        return near == _nodes.end() ? nullptr : *near;
    }
    if (type == VLNodeType::LINE) {
        auto previous = nodeAtIndex(index - 1);
        if (!previous) return nullptr;
        auto inserted = VLNode::initWithPosition_type_connection(VLLerp(previous->position(), node->position(), t),
                                                                 VLNodeType::LINE, VLNode::SHARP);
        insertObject_inNodesAtIndex(inserted, index);
        return inserted;
    }
    if (type == VLNodeType::OFFCURVE) return insertNodeInQuadraticRun(index, t);
    if (type != VLNodeType::CURVE && type != VLNodeType::HOBBY) return nullptr;

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
    if (type == VLNodeType::HOBBY) {
        auto inserted = VLNode::initWithPosition_type_connection(split, VLNodeType::HOBBY, VLNode::SMOOTH);
        insertObject_inNodesAtIndex(inserted, index);
        return inserted;
    }
    off1->setPositionFast(a);
    off2->setPositionFast(d);
    auto inserted = VLNode::initWithPosition_type_connection(split, VLNodeType::CURVE, VLNode::SMOOTH);
    auto handle = [](Point p) {
        return VLNode::initWithPosition_type_connection(p, VLNodeType::OFFCURVE, VLNode::SHARP);
    };
    insertObject_inNodesAtIndex(handle(c), index);
    insertObject_inNodesAtIndex(handle(e), index);
    insertObject_inNodesAtIndex(inserted, index);
    return inserted;
}

// The quadratic that the off-curve node controls is split exactly: the node becomes the first
// half's control, and the new on-curve node and the second half's control follow it. The points
// that the run implied on both sides of that quadratic become on-curve nodes of their own, so
// that no other part of the run changes its shape.
std::shared_ptr<VLNode> VLPath::insertNodeInQuadraticRun(long index, double t)
{
    auto isCurve = [&](long at) {
        auto node = nodeAtIndex(at);
        return node && node->type() == VLNodeType::CURVE;
    };
    if (isCurve(index + 1) || isCurve(index + 2)) return nullptr;
    if (index < 0) index += count();
    std::vector<Point> run = qcurvePointListAtNodeIndex_qCurveSegment_count(index);
    long end = index;
    while (end - index < count() && nodeAtIndex(end) && nodeAtIndex(end)->isOffcurve()) ++end;
    // In a contour of control points alone the run starts at the implied point before node 0.
    long last = static_cast<long>(run.size()) - 1;
    long m = isOffcurveOnly() ? index + 1 : last - (end - index);
    Point before, onCurve, after;
    VLQuadraticRunSplit(run.data(), static_cast<int>(run.size()), static_cast<double>(m) + t, before, onCurve, after);
    if (onCurve.x == VLUnsetValue) return nullptr;

    auto node = [](Point p, VLNodeType type) {
        uint8_t connection = type == VLNodeType::OFFCURVE ? VLNode::SHARP : VLNode::SMOOTH;
        return VLNode::initWithPosition_type_connection(p, type, connection);
    };
    size_t at = static_cast<size_t>(m);
    nodeAtIndex(index)->setPositionFast(before);
    auto inserted = node(onCurve, VLNodeType::QCURVE);
    long next = index + 1;
    insertObject_inNodesAtIndex(inserted, next++);
    insertObject_inNodesAtIndex(node(after, VLNodeType::OFFCURVE), next++);
    if (m + 1 < last) insertObject_inNodesAtIndex(node(VLLerp(run[at], run[at + 1], 0.5), VLNodeType::QCURVE), next);
    if (m > 1) insertObject_inNodesAtIndex(node(VLLerp(run[at - 1], run[at], 0.5), VLNodeType::QCURVE), index);
    return inserted;
}

namespace {

// The nearest point found so far and its path time.
struct NearestPoint {
    Point query;
    Point point{};
    double distance = VLUnsetValue;
    double time = 0;

    void consider(Point candidate, double index, double t)
    {
        if (t < 0 || candidate.x == VLUnsetValue) return;
        double d = std::sqrt(VLSquareDistance(candidate, query));
        if (d >= distance) return;
        distance = d;
        point = candidate;
        time = index + t;
    }
    void considerCubic(const VLCubic& cubic, double index)
    {
        double t = VLNearestTimeOnCubic(cubic, query);
        consider(VLCubicPoint(cubic[0], cubic[1], cubic[2], cubic[3], t), index, t);
    }
    bool exact() const { return distance < 0.00001; }
};

} // namespace

Point VLPath::nearestPointOnPath_pathTime(Point point, double* pathTime)
{
    auto path = convertSpecialToBezier();
    if (path->_nodes.empty()) return {};
    if (path->isOffcurveOnly()) {
        // A run of control points alone gets an on-curve point where it implies one.
        auto withStart = std::static_pointer_cast<VLPath>(path->copy());
        Point start = VLLerp(path->_nodes.back()->position(), path->_nodes.front()->position(), 0.5);
        auto startNode = VLNode::initWithPosition_type_connection(start, VLNodeType::QCURVE, VLNode::SHARP);
        withStart->insertObject_inNodesAtIndex(startNode, 0);
        return withStart->nearestPointOnPath_pathTime(point, pathTime);
    }
    NearestPoint nearest{point};
    for (long i = 0; i < path->count() && !nearest.exact(); ++i) {
        const VLNode& node = *path->_nodes[static_cast<size_t>(i)];
        double index = static_cast<double>(i);
        bool atNode = VLSquareDistance(node.position(), point) < 0.001 * 0.001;
        switch (node.type()) {
        case VLNodeType::QCURVE: {
            std::vector<Point> run = path->qcurvePointListAtNodeIndex_qCurveSegment_count(i);
            // The run's k control points stand at the indexes before the node.
            long offcurves = static_cast<long>(run.size()) - 2;
            if (offcurves < 1) {
                if (run.size() == 2) nearest.considerCubic(lineAsCubic(run[0], run[1]), index);
                break;
            }
            for (long m = 1; m <= offcurves; ++m) {
                size_t at = static_cast<size_t>(m);
                Point start = m == 1 ? run[0] : VLLerp(run[at - 1], run[at], 0.5);
                Point end = m == offcurves ? run.back() : VLLerp(run[at], run[at + 1], 0.5);
                nearest.considerCubic(VLCubicFromQuadratic(start, run[at], end), index - static_cast<double>(offcurves + 1 - m));
            }
            break;
        }
        case VLNodeType::CURVE:
        case VLNodeType::HOBBY:
            if (atNode) {
                nearest.consider(point, index, 0);
            } else if (path->nodeAtIndex(i - 3)) {
                VLCubic cubic{path->positionAtIndex(i - 3), path->positionAtIndex(i - 2), path->positionAtIndex(i - 1), node.position()};
                double t = VLNearestTimeOnCubic(cubic, point);
                // The end of a curve that has no start before it is no answer.
                if (t > 0.999999 && i <= 2) break;
                nearest.consider(VLCubicPoint(cubic[0], cubic[1], cubic[2], cubic[3], t), index, t);
            }
            break;
        case VLNodeType::LINE:
            if (atNode) {
                nearest.consider(point, index, 0);
            } else if (i == 0 && !path->_closed) {
                nearest.consider(node.position(), 0, 0);
            } else if (auto previous = path->nodeAtIndex(i - 1)) {
                double t = 0;
                Point foot = VLNearestPoint(point, previous->position(), node.position(), &t);
                nearest.consider(foot, index, t);
            }
            break;
        default: break;
        }
    }
    if (pathTime && nearest.distance < VLUnsetValue) *pathTime = nearest.time;
    return nearest.point;
}
