#include "outline/VLPath.h"

#include "geometry/VLGeometry.h"
#include "model/VLChildren.h"
#include "model/VLFont.h"
#include "platform/VLUnsetValue.h"

#include <algorithm>
#include <cmath>

std::shared_ptr<VLPath> VLPath::copyPath() const
{
    std::shared_ptr<VLPath> path(new VLPath(*this));
    path->_nodes.clear();
    for (const auto& node : _nodes) path->addNodeFast(node->copyNode());
    return path;
}

std::shared_ptr<VLContainer> VLPath::asContainer()
{
    return std::static_pointer_cast<VLPath>(shared_from_this());
}

double VLPath::gridLength() const
{
    auto owner = font();
    return owner ? owner->gridLength() : 0.0;
}

long VLPath::wrappedIndex(long index) const
{
    return _closed ? (index + count()) % count() : index;
}

std::shared_ptr<VLNode> VLPath::nodeAtIndex(long index) const
{
    if (_nodes.empty()) return nullptr;
    index = wrappedIndex(index);
    return index >= 0 && index < count() ? _nodes[static_cast<size_t>(index)] : nullptr;
}

Point VLPath::positionAtIndex(long index) const
{
    auto node = nodeAtIndex(index);
    return node ? node->position() : Point();
}

long VLPath::indexOfNode(const VLNode* node) const
{
    for (size_t i = 0; i < _nodes.size(); ++i)
        if (_nodes[i].get() == node) return static_cast<long>(i);
    return NotFound;
}

void VLPath::setNodesFast(Nodes nodes)
{
    VLSetChildren(_nodes, std::move(nodes), asContainer());
}

void VLPath::addNode(const std::shared_ptr<VLNode>& node)
{
    if (node->isOffcurve()) node->setConnectionFast(VLNode::SHARP);
    addNodeFast(node);
}

void VLPath::addNodeFast(const std::shared_ptr<VLNode>& node)
{
    VLAddChild(_nodes, node, asContainer());
}

std::shared_ptr<VLNode> VLPath::addNodeWithPosition_type_connection(Point position, VLNodeType type,
                                                                    uint8_t connection)
{
    auto node = VLNode::initWithPosition_type_connection(position, type, connection);
    addNode(node);
    return node;
}

std::shared_ptr<VLNode> VLPath::addNodeFastWithPosition_type_connection(Point position, VLNodeType type,
                                                                        uint8_t connection)
{
    auto node = VLNode::initWithPosition_type_connection(position, type, connection);
    addNodeFast(node);
    return node;
}

void VLPath::addCurveWithOff1_off2_end_connection(Point off1, Point off2, Point end, uint8_t connection)
{
    addNodeWithPosition_type_connection(off1, VLNodeType::OFFCURVE, VLNode::SHARP);
    addNodeWithPosition_type_connection(off2, VLNodeType::OFFCURVE, VLNode::SHARP);
    addNodeWithPosition_type_connection(end, VLNodeType::CURVE, connection);
}

void VLPath::addCurveFastWithOff1_off2_end_connection(Point off1, Point off2, Point end, uint8_t connection)
{
    addNodeFastWithPosition_type_connection(off1, VLNodeType::OFFCURVE, VLNode::SHARP);
    addNodeFastWithPosition_type_connection(off2, VLNodeType::OFFCURVE, VLNode::SHARP);
    addNodeFastWithPosition_type_connection(end, VLNodeType::CURVE, connection);
}

void VLPath::addNodes(const Nodes& nodes)
{
    for (const auto& node : nodes) addNodeFast(node);
    tellParent();
}

void VLPath::removeNodes(const Nodes& nodes)
{
    for (const auto& node : nodes) VLRemoveChild(_nodes, node, asContainer());
    tellParent();
}

void VLPath::insertObject_inNodesAtIndex(std::shared_ptr<VLNode> node, long index)
{
    if (!node) return;
    double grid = gridLength();
    if (grid > 0.001) node->roundToGrid(grid);
    if (_nodes.empty()) index = 0;
    if (_closed && index != 0 && index > count()) index = (index + count()) % count();
    if (index >= 0 && index <= count())
        VLInsertChild(_nodes, std::move(node), static_cast<size_t>(index), asContainer());
    tellParent();
}

void VLPath::replaceObjectInNodesAtIndex_withObject(long index, const std::shared_ptr<VLNode>& node)
{
    if (!node || _nodes.empty()) return;
    index = wrappedIndex(index);
    if (index >= 0 && index < count()) VLReplaceChild(_nodes, static_cast<size_t>(index), node, asContainer());
    tellParent();
}

void VLPath::removeObjectFromNodesAtIndex(long index)
{
    if (_closed) index += index < 0 ? count() : (index >= count() ? -count() : 0);
    if (index < 0 || index >= count()) return;
    VLReleaseChild(*_nodes[static_cast<size_t>(index)], asContainer());
    _nodes.erase(_nodes.begin() + index);
    tellParent();
}

void VLPath::removeNodeFast(VLNode& node)
{
    auto keepAlive = node.weak_from_this().lock();
    node.setParent(nullptr);
    std::erase_if(_nodes, [&](const auto& candidate) { return candidate->isEqualToNode(node); });
}

std::shared_ptr<VLNode> VLPath::startNode() const
{
    return _closed || _nodes.empty() ? nullptr : _nodes.front();
}

std::shared_ptr<VLNode> VLPath::endNode() const
{
    return _closed || _nodes.empty() ? nullptr : _nodes.back();
}

long VLPath::firstOncurveNodeIndex() const
{
    if (!_closed) return 0;
    for (long index = 0; index > -count(); --index)
        if (!nodeAtIndex(index)->isOffcurve()) return index;
    return 0;
}

std::shared_ptr<VLNode> VLPath::nextOncurveNodeFromIndex(long index) const
{
    // Bounded, so that a closed run of off-curve nodes ends instead of circling.
    for (long step = 1; step <= count(); ++step) {
        auto node = nodeAtIndex(index + step);
        if (!node || !node->isOffcurve()) return node;
    }
    return nullptr;
}

std::shared_ptr<VLNode> VLPath::previousOncurveNodeFromIndex(long index) const
{
    for (long step = 1; step <= count(); ++step) {
        auto node = nodeAtIndex(index - step);
        if (!node || !node->isOffcurve()) return node;
    }
    return nullptr;
}

std::shared_ptr<VLNode> VLPath::findStartNode() const
{
    auto node = nodeAtIndex(-1);
    for (long index = -2; node && node->isOffcurve() && index >= -count(); --index) node = nodeAtIndex(index);
    return node;
}

long VLPath::indexOfTTStartNode() const
{
    if (_nodes.empty() || !_nodes.back()->isOffcurve()) return count() - 1;
    auto firstOncurve = std::find_if(_nodes.begin(), _nodes.end(), [](const auto& node) { return !node->isOffcurve(); });
    return firstOncurve == _nodes.end() ? count() - 1 : (firstOncurve - _nodes.begin()) - 1;
}

bool VLPath::hasTrueTypeCurve() const
{
    bool hasOffcurve = false;
    bool hasCurve = false;
    for (const auto& node : _nodes) {
        if (node->type() == VLNodeType::QCURVE) return true;
        hasOffcurve |= node->isOffcurve();
        hasCurve |= node->type() == VLNodeType::CURVE;
    }
    return hasOffcurve && !hasCurve;
}

bool VLPath::hasTrueTypeOutline() const
{
    for (const auto& node : _nodes) {
        if (node->type() == VLNodeType::CURVE) return false;
        if (node->type() == VLNodeType::QCURVE) return true;
    }
    return true;
}

bool VLPath::hasHobbyCurve() const
{
    for (const auto& node : _nodes) {
        if (node->type() == VLNodeType::CURVE) return false;
        if (node->type() == VLNodeType::HOBBY) return true;
    }
    return false;
}

std::string VLPath::compareString() const
{
    std::string result;
    result.reserve(_nodes.size() + 2);
    for (const auto& node : _nodes) result += node->typeTag();
    if (!_closed) result += '|';
    return result + '_';
}

bool VLPath::isEqualToPath(const VLPath& other) const
{
    return _closed == other._closed &&
           std::equal(_nodes.begin(), _nodes.end(), other._nodes.begin(), other._nodes.end(),
                      [](const auto& a, const auto& b) { return a->isEqualToNode(*b); });
}

std::shared_ptr<VLNode> VLPath::tangentNeighbour(long index, int direction, double minimumSquareDistance) const
{
    auto node = nodeAtIndex(index);
    if (!node) return nullptr;
    std::shared_ptr<VLNode> other;
    for (long step = 1; step <= 3; ++step) {
        other = nodeAtIndex(direction < 0 ? index - step : index + step);
        if (!other) return nullptr;
        if (VLSquareDistance(node->position(), other->position()) >= minimumSquareDistance) break;
    }
    return other;
}

double VLPath::tangentAngleAtNodeAtIndex_direction(long index, int direction) const
{
    if (index == NotFound) return VLUnsetValue;
    auto other = tangentNeighbour(index, direction, 1.0);
    if (!other) return VLUnsetValue;
    Point from = nodeAtIndex(index)->position();
    Point to = other->position();
    if (direction < 0) std::swap(from, to);
    return VLVectorAngle(to.x - from.x, to.y - from.y);
}

double VLPath::tangentAngleAtNode_direction(const VLNode& node, int direction) const
{
    return tangentAngleAtNodeAtIndex_direction(indexOfNode(&node), direction);
}

Point VLPath::unitVectorAtNodeAtIndex(long index) const
{
    bool lastOfOpenPath = !_closed && index == count() - 1;
    return unitVectorAtNodeAtIndex_direction(index, lastOfOpenPath ? -1 : 1);
}

Point VLPath::unitVectorAtNodeAtIndex_direction(long index, int direction) const
{
    auto other = index == NotFound ? nullptr : tangentNeighbour(index, direction, 0.1);
    if (!other) return {VLUnsetValue, 0.0};
    Point from = nodeAtIndex(index)->position();
    Point to = other->position();
    if (direction < 0) std::swap(from, to);
    double length = std::sqrt(VLSquareDistance(from, to));
    if (length == 0.0) return {0.0, 0.0};
    return {(to.x - from.x) / length, (to.y - from.y) / length};
}
