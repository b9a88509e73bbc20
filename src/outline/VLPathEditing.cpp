#include "geometry/VLCubic.h"
#include "geometry/VLGeometry.h"
#include "outline/VLPath.h"
#include "platform/AffineTransform.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

bool isOncurve(const std::shared_ptr<VLNode>& node)
{
    return node && !node->isOffcurve();
}

bool isOffcurve(const std::shared_ptr<VLNode>& node)
{
    return node && node->isOffcurve();
}

// Distance from p to the chord a-b at the foot of the perpendicular; from a for a chord too
// short to have a direction.
double distanceToChord(Point p, Point a, Point b)
{
    double chordSquare = VLSquareDistance(a, b);
    if (std::sqrt(chordSquare) < 0.0001) return std::sqrt(VLSquareDistance(p, a));
    double t = ((p.x - a.x) * (b.x - a.x) + (p.y - a.y) * (b.y - a.y)) / chordSquare;
    return std::sqrt(VLSquareDistance(p, VLLerp(a, b, t)));
}

} // namespace

void VLPath::transformFast_round(const AffineTransform& transform, double grid)
{
    for (const auto& node : _nodes) node->transformFast_round(transform, grid);
}

void VLPath::getPositionsFromShape(const VLShape& other)
{
    auto* path = dynamic_cast<const VLPath*>(&other);
    if (!path) return;
    size_t shared = std::min(_nodes.size(), path->_nodes.size());
    for (size_t i = 0; i < shared; ++i) _nodes[i]->getPositionsFromShape(*path->_nodes[i]);
}

void VLPath::setClosePath_fixStartNode(bool closed, bool fixStartNode)
{
    if (closed == _closed || _nodes.empty()) return;
    if (!closed) {
        // The start point of a closed path becomes an explicit first node.
        auto last = _nodes.back();
        auto start = VLNode::initWithPosition_type_connection(last->position(), VLNodeType::LINE, VLNode::SHARP);
        last->setConnection(VLNode::SHARP);
        insertObject_inNodesAtIndex(start, 0);
    } else {
        auto start = startNode();
        auto end = endNode();
        if (!start->isOffcurve() && VLDistanceF(start->position(), end->position()) < 0.01) {
            removeObjectFromNodesAtIndex(0);
        } else if (fixStartNode) {
            removeObjectFromNodesAtIndex(0);
            addNode(start);
        }
    }
    _closed = closed;
    tellParent();
}

void VLPath::makeNodeFirst(const VLNode* node)
{
    long index = indexOfNode(node);
    if (index == NotFound) return;
    if (_closed) {
        // The last node of a closed path is its start point.
        if (index != count() - 1) std::rotate(_nodes.begin(), _nodes.begin() + index + 1, _nodes.end());
    } else if (node == endNode().get()) {
        reverse();
    }
}

std::shared_ptr<VLNode> VLPath::findMinNode() const
{
    auto best = nodeAtIndex(0);
    for (long index = 1; isOffcurve(best) && index <= 2 * count(); ++index) best = nodeAtIndex(index);
    if (!best) return nullptr;
    for (const auto& node : _nodes) {
        if (node->isOffcurve()) continue;
        Point b = best->position();
        Point p = node->position();
        if (b.y > p.y || (std::fabs(b.y - p.y) < 0.001 && b.x > p.x)) best = node;
    }
    return best;
}

void VLPath::reverse()
{
    if (_nodes.size() < 2) return;
    reverseFast();
    tellParent();
}

void VLPath::reverseFast()
{
    if (_nodes.size() < 2) return;
    std::reverse(_nodes.begin(), _nodes.end());
    if (_closed) std::rotate(_nodes.begin(), _nodes.begin() + 1, _nodes.end());

    // A type belongs to the segment that arrives at its node, so each on-curve type moves on to
    // the next on-curve node of the new direction.
    std::optional<VLNodeType> carried;
    if (_nodes.front()->isOffcurve() || _nodes.back()->isOffcurve()) {
        auto lastOncurve = std::find_if(_nodes.rbegin(), _nodes.rend(), [](const auto& n) { return !n->isOffcurve(); });
        if (lastOncurve != _nodes.rend()) carried = (*lastOncurve)->type();
    }
    bool onRecord = carried.has_value();
    VLNodeType carriedType = carried.value_or(_nodes.back()->type());
    auto previous = _nodes.back();
    for (const auto& node : _nodes) {
        if (!node->isOffcurve()) {
            VLNodeType oldType = node->type();
            if (!previous->isOffcurve()) {
                node->setTypeFast(VLNodeType::LINE);
                carriedType = oldType;
            } else if (onRecord) {
                node->setTypeFast(carriedType);
                carriedType = oldType;
            }
            onRecord = true;
        }
        previous = node;
    }
}

void VLPath::checkConnectionForNode(VLNode& node)
{
    long index = indexOfNode(&node);
    if (index == NotFound) return;
    auto previous = nodeAtIndex(index - 1);
    if (node.isOffcurve() || !previous) {
        node.setConnectionFast(VLNode::SHARP);
        return;
    }
    auto next = nodeAtIndex(index + 1);
    if (!isOffcurve(previous) && !isOffcurve(next)) {
        node.setConnection(VLNode::SHARP);
        return;
    }
    Point p = previous->position();
    Point c = node.position();
    Point n = next->position();
    double d = std::fabs(VLVectorAngle(p.x - c.x, p.y - c.y) - VLVectorAngle(c.x - n.x, c.y - n.y));
    // Within two degrees the neighbours are taken as lined up, however long the chord.
    node.setConnection(d < 2.0 ? VLNode::SMOOTH : VLNode::SHARP);
}

void VLPath::checkConnections()
{
    if (_nodes.size() < 2) return;
    std::shared_ptr<VLNode> previous = _closed ? _nodes.back() : nullptr;
    for (long index = 0; index < count(); ++index) {
        auto node = _nodes[static_cast<size_t>(index)];
        auto next = nodeAtIndex(index + 1);
        if (node->isOffcurve()) {
            node->setConnection(VLNode::SHARP);
        } else if (previous) {
            VLNodeType type = node->type();
            if ((type == VLNodeType::CURVE || type == VLNodeType::QCURVE) && isOncurve(previous))
                node->setType(VLNodeType::LINE);
            if (!isOffcurve(previous) && !isOffcurve(next)) {
                node->setConnection(VLNode::SHARP);
            } else if (next) {
                Point c = node->position();
                Point p = previous->position();
                Point n = next->position();
                float a = VLDistanceF(c, p);
                float b = VLDistanceF(c, n);
                // The tolerance grows with the root of the shorter handle.
                bool lined = std::sqrt(std::min(a, b)) * 0.25 > distanceToChord(c, p, n) && VLDistanceF(p, n) > a;
                node->setConnection(lined ? VLNode::SMOOTH : VLNode::SHARP);
            }
        }
        previous = node;
    }
}

void VLPath::setSmooth_withCenterNode_oppositeNode(VLNode& node, const VLNode& center, const VLNode& opposite)
{
    setSmooth_withCenterPoint_oppositePoint(node, center.position(), opposite.position());
}

void VLPath::setSmooth_withCenterPoint_oppositePoint(VLNode& node, Point center, Point opposite)
{
    double span = std::sqrt(VLSquareDistance(center, opposite));
    if (span < 1.0) return;
    double length = std::sqrt(VLSquareDistance(center, node.position()));
    double scale = length / span;
    node.setPositionFast({center.x + (center.x - opposite.x) * scale, center.y + (center.y - opposite.y) * scale});
}

void VLPath::setMirrored_withCenterPoint_oppositePoint(VLNode& node, Point center, Point opposite)
{
    if (std::sqrt(VLSquareDistance(center, opposite)) < 1.0) return;
    node.setPositionFast({2 * center.x - opposite.x, 2 * center.y - opposite.y});
}
