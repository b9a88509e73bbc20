#include "outline/VLNode.h"

#include "geometry/VLGeometry.h"
#include "model/VLUserData.h"
#include "outline/VLPath.h"

#include <cmath>
#include <map>
#include <tuple>
#include <utility>

namespace {

double guardNodeCoordinate(double v)
{
    if (std::isnan(v)) return 21.0;
    return std::fabs(v) > 32000.0 ? 22.0 : v;
}

Point guardNodePoint(Point p)
{
    return {guardNodeCoordinate(p.x), guardNodeCoordinate(p.y)};
}

Point unitVector(Point from, Point to)
{
    double length = std::sqrt(VLSquareDistance(from, to));
    if (length == 0.0) return {0, 0};
    return {(to.x - from.x) / length, (to.y - from.y) / length};
}

// A handle on a 45-degree direction is taken as intended and the other one follows it.
bool onDiagonalGrid(double angle)
{
    return std::fabs(std::fmod(angle, 45.0)) < 0.05;
}

bool crossedNode(double oldValue, double newValue, double center)
{
    return (oldValue - center) * (newValue - center) < 0;
}

} // namespace

std::shared_ptr<VLNode> VLNode::initWithPosition_type_connection(Point position, VLNodeType type, uint8_t connection)
{
    auto node = init();
    Point guarded = guardNodePoint(position);
    node->_position = guarded;
    node->_positionPrecise = guarded;
    node->_type = type;
    node->_connection = connection;
    return node;
}

std::shared_ptr<VLNode> VLNode::copyNode() const
{
    auto node = init();
    node->_type = _type;
    node->_connection = _connection;
    node->_position = _position;
    node->_positionPrecise = _positionPrecise;
    node->setOrientation(orientation());
    return node;
}

std::shared_ptr<VLPath> VLNode::parentPath() const
{
    return std::dynamic_pointer_cast<VLPath>(parent());
}

void VLNode::setType(VLNodeType type)
{
    if (type == _type) return;
    _type = type;
    tellParent();
}

void VLNode::setConnection(uint8_t connection)
{
    if (connection == _connection) return;
    _connection = connection;
    tellParent();
}

const char* VLNode::typeStringForType(VLNodeType type)
{
    switch (type) {
    case VLNodeType::LINE: return "LINE";
    case VLNodeType::MOVE: return "MOVE";
    case VLNodeType::CURVE: return "CURVE";
    case VLNodeType::QCURVE: return "QCURVE";
    case VLNodeType::HOBBY: return "HOBBY";
    case VLNodeType::OFFCURVE: return "OFFCURVE";
    case VLNodeType::SPECIAL: return "SPECIAL";
    default: return "n/a";
    }
}

char VLNode::typeTagForType(VLNodeType type)
{
    switch (type) {
    case VLNodeType::LINE: return 'l';
    case VLNodeType::CURVE: return 'c';
    case VLNodeType::QCURVE: return 'q';
    case VLNodeType::HOBBY: return 'h';
    case VLNodeType::OFFCURVE: return 'o';
    default: return 'x';
    }
}

void VLNode::setTypeString(const std::string& word)
{
    static const std::map<std::string, VLNodeType, std::less<>> types = [] {
        std::map<std::string, VLNodeType, std::less<>> table;
        for (VLNodeType type : {VLNodeType::LINE, VLNodeType::MOVE, VLNodeType::CURVE, VLNodeType::QCURVE,
                                VLNodeType::HOBBY, VLNodeType::OFFCURVE, VLNodeType::SPECIAL})
            table[typeStringForType(type)] = type;
        return table;
    }();
    auto it = types.find(word);
    _type = it == types.end() ? VLNodeType::None : it->second;
}

void VLNode::setPosition_forLayerWidth(Point position, double width)
{
    if (orientation() == OrientationCenter) position.x -= width * 0.5;
    if (orientation() == OrientationRight) position.x -= width;
    Point guarded = guardNodePoint(position);
    if (std::fabs(guarded.x - _positionPrecise.x) <= 0.000499 && std::fabs(guarded.y - _positionPrecise.y) <= 0.000499)
        return;
    setPosition(guarded);
    tellParent();
}

long VLNode::nodeIndex() const
{
    auto path = parentPath();
    return path ? path->indexOfNode(this) : VLPath::NotFound;
}

void VLNode::makeNodeFirst()
{
    if (auto path = parentPath()) path->makeNodeFirst(this);
}

std::shared_ptr<VLNode> VLNode::nextOncurveNode() const
{
    auto path = parentPath();
    return path ? path->nextOncurveNodeFromIndex(nodeIndex()) : nullptr;
}

std::shared_ptr<VLNode> VLNode::previousOncurveNode() const
{
    auto path = parentPath();
    return path ? path->previousOncurveNodeFromIndex(nodeIndex()) : nullptr;
}

void VLNode::checkConnection()
{
    if (auto path = parentPath()) path->checkConnectionForNode(*this);
}

void VLNode::toggleConnection(bool smoothHandles)
{
    uint8_t connection = _connection == SHARP ? SMOOTH : SHARP;
    if (auto path = parentPath(); path && _type == VLNodeType::LINE) {
        long index = nodeIndex();
        auto next = path->nodeAtIndex(index + 1);
        if (!next || next->type() == VLNodeType::LINE || (index == 0 && !path->closed())) connection = SHARP;
    }
    if (!isOffcurve() && connection == SMOOTH && smoothHandles) makeSmooth();
    setConnection(connection);
}

void VLNode::makeSmooth()
{
    auto path = parentPath();
    if (!path) return;
    long index = nodeIndex();
    auto previous = path->nodeAtIndex(index - 1);
    auto next = path->nodeAtIndex(index + 1);
    bool previousOff = previous && previous->isOffcurve();
    bool nextOff = next && next->isOffcurve();
    if (!previousOff && !nextOff) return;
    if (!previousOff || !nextOff) {
        auto& moving = previousOff ? previous : next;
        auto& opposite = previousOff ? next : previous;
        if (opposite) VLPath::setSmooth_withCenterNode_oppositeNode(*moving, *this, *opposite);
        return;
    }
    Point center = position();
    Point p = previous->position();
    Point n = next->position();
    double lp = std::sqrt(VLSquareDistance(center, p));
    double ln = std::sqrt(VLSquareDistance(center, n));
    if (onDiagonalGrid(VLVectorAngle(p.x - center.x, p.y - center.y)))
        return VLPath::setSmooth_withCenterNode_oppositeNode(*next, *this, *previous);
    if (onDiagonalGrid(VLVectorAngle(n.x - center.x, n.y - center.y)))
        return VLPath::setSmooth_withCenterNode_oppositeNode(*previous, *this, *next);
    if (lp / ln < 0.2) return VLPath::setSmooth_withCenterNode_oppositeNode(*previous, *this, *next);
    if (ln / lp < 0.2) return VLPath::setSmooth_withCenterNode_oppositeNode(*next, *this, *previous);

    Point direction = unitVector(p, n);
    auto place = [&](Point d) {
        return std::pair{Point{center.x - d.x * lp, center.y - d.y * lp}, Point{center.x + d.x * ln, center.y + d.y * ln}};
    };
    auto [newPrevious, newNext] = place(direction);
    if (crossedNode(p.x, newPrevious.x, center.x) || crossedNode(n.x, newNext.x, center.x))
        direction = {direction.x >= 0 ? 1.0 : -1.0, 0.0};
    else if (crossedNode(p.y, newPrevious.y, center.y) || crossedNode(n.y, newNext.y, center.y))
        direction = {0.0, direction.y >= 0 ? 1.0 : -1.0};
    std::tie(newPrevious, newNext) = place(direction);
    previous->setPositionFast(newPrevious);
    next->setPositionFast(newNext);
}

Value VLNode::userDataForKey(const std::string& key) const
{
    auto it = _userData.find(key);
    return it == _userData.end() ? Value() : it->second;
}

void VLNode::setUserData_forKey(const Value& value, const std::string& key)
{
    VLSetUserData(_userData, value, key);
}

bool VLNode::isEqualToNode(const VLNode& other) const
{
    Point a = position();
    Point b = other.position();
    return std::fabs(a.x - b.x) < 0.001 && std::fabs(a.y - b.y) < 0.001 && _connection == other._connection &&
           _type == other._type && orientation() == other.orientation() && _userData == other._userData;
}
