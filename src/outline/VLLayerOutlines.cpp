#include "model/VLLayer.h"
#include "platform/BezierPath.h"

void VLLayer::_updateDrawBezierPaths()
{
    _hasPaths = _bezierPath != nullptr;
    _drawBezierPath = _hasPaths ? _bezierPath->copy() : BezierPath::bezierPath();
}

std::shared_ptr<BezierPath> VLLayer::drawBezierPath()
{
    std::lock_guard lock(_monitor);
    if (!_drawBezierPath) _updateDrawBezierPaths();
    return _drawBezierPath->copy();
}
