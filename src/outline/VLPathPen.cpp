#include "outline/VLPathPen.h"

#include "model/VLLayer.h"
#include "outline/VLHint.h"
#include "outline/VLPath.h"

#include <algorithm>

VLPathPen::VLPathPen() : _layer(VLLayer::init()) {}

bool VLPathPen::hasNodes() const
{
    return _currPath && _currPath->count() > 0;
}

void VLPathPen::finishPath()
{
    if (hasNodes()) _layer->addShapeFast(_currPath);
    _currPath = nullptr;
    _lastPoint.x = VLUnsetValue;
}

void VLPathPen::beginPath()
{
    if (hasNodes()) {
        _layer->addShapeFast(_currPath);
        _currPath = nullptr;
    }
    if (!_currPath) _currPath = VLPath::init();
    _lastPoint.x = VLUnsetValue;
}

void VLPathPen::moveTo_connection_selected(Point point, uint8_t connection, bool selected)
{
    beginPath();
    lineTo_connection_selected(point, connection, selected);
}

void VLPathPen::lineTo_connection_selected(Point point, uint8_t connection, bool)
{
    if (!_currPath) [[unlikely]]
        beginPath();
    Point p = transformed(point);
    _currPath->addNodeFastWithPosition_type_connection(p, VLNodeType::LINE, connection);
    _currPath->setClosed(false);
    _lastPoint = p;
}

void VLPathPen::curveTo_off1_off2_connection_selected(Point end, Point off1, Point off2, uint8_t connection, bool)
{
    if (!_currPath) [[unlikely]]
        beginPath();
    Point e = transformed(end);
    _currPath->addCurveFastWithOff1_off2_end_connection(transformed(off1), transformed(off2), e, connection);
    _lastPoint = e;
}

void VLPathPen::curveTo_off1_off2_objects(Point end, Point off1, Point off2, const VLPenObjects& objects)
{
    curveTo_off1_off2(end, off1, off2);
    for (const auto& object : objects) {
        auto hint = std::dynamic_pointer_cast<VLHint>(object);
        if (!hint) continue;
        _layer->addHint(hint);
        hint->setOriginNode(_currPath->nodes().back());
    }
}

// A run that began without an on-curve point stays all off-curve: a TrueType contour made of
// control points alone.
void VLPathPen::_qCurveTo(std::span<const Point> points)
{
    if (!_currPath) [[unlikely]]
        beginPath();
    for (Point point : points)
        _currPath->addNodeFastWithPosition_type_connection(transformed(point), VLNodeType::OFFCURVE, VLNode::SHARP);
    if (_lastPoint.x < VLUnsetValue && !points.empty()) {
        const auto& last = _currPath->nodes().back();
        last->setTypeFast(VLNodeType::QCURVE);
        _lastPoint = last->position();
    }
}

// The closing line ends on the first node, so a first line node moves to the end; after a curve
// the first node stays first, even where the curve ended on it.
void VLPathPen::closePath()
{
    if (hasNodes()) {
        _currPath->setClosed(true);
        auto nodes = _currPath->nodes();
        if (nodes.front()->type() == VLNodeType::LINE && nodes.back()->type() != VLNodeType::CURVE) {
            std::rotate(nodes.begin(), nodes.begin() + 1, nodes.end());
            _currPath->setNodesFast(std::move(nodes));
        }
    }
    finishPath();
}

void VLPathPen::endPath()
{
    finishPath();
}

void VLPathPen::addComponent_transformation(const std::shared_ptr<VLShape>& component, const AffineTransform*)
{
    if (!component || component->shapeType() != VLShapeType::Component) return;
    _layer->addShapeFast(component->copy());
}

bool VLPathPen::hasContent() const
{
    return _layer->countOfShapes() > 0;
}

void VLPathPen::setLastPoint(Point point)
{
    if (hasNodes()) _currPath->nodes().back()->setPositionFast(point);
    _lastPoint = point;
}

void VLPathPen::setHints(const std::vector<std::shared_ptr<VLHint>>& hints)
{
    for (const auto& hint : hints) _layer->addHint(hint);
}
