#include "geometry/VLBasePen.h"

#include "geometry/VLCubic.h"
#include "model/VLLayer.h"
#include "outline/VLComponent.h"
#include "platform/VLException.h"

#include <cmath>

bool VLBasePen::hasContent() const
{
    VLException::raiseNotImplemented(__LINE__, "-[VLBasePen hasContent]");
}

void VLBasePen::drawComponent(VLPenProtocol& pen, std::optional<AffineTransform>& transform,
                              const std::shared_ptr<VLShape>& shape, const AffineTransform* transformation)
{
    auto component = std::dynamic_pointer_cast<VLComponent>(shape);
    // A pen follows components into their glyphs with no memory of the way down, so a glyph that
    // contains itself would never end: the depth that bounds outlines bounds the pens too.
    thread_local size_t depth = 0;
    if (!component || depth >= VLComponentMaximumDepth) return;
    struct Descent {
        Descent() { ++depth; }
        ~Descent() { --depth; }
    } descent;
    auto layer = component->componentLayer();
    std::optional<AffineTransform> kept = transform;
    if (transformation) {
        if (transform)
            transform->prependTransform(*transformation);
        else
            transform = *transformation;
    }
    if (layer)
        for (const auto& child : layer->shapes()) child->drawInPen(pen);
    transform = std::move(kept);
}

void VLBasePen::_qCurveTo_off(Point end, Point off)
{
    const VLCubic cubic = VLCubicFromQuadratic(lastPoint(), off, end);
    curveTo_off1_off2(end, cubic[1], cubic[2]);
}

void VLBasePen::startAtImpliedPoint(Point& marker, Point lastOff, Point firstOff)
{
    Point middle = VLLerp(lastOff, firstOff, 0.5);
    moveTo(middle);
    marker = middle;
    _lastPoint = middle;
}

// Between two successive off-curve points lies an implied on-curve point at their middle.
template <typename At>
void VLBasePen::emitRun(At at, size_t count, bool updateLastPoint)
{
    if (count == 1) {
        lineTo(at(0));
        return;
    }
    for (size_t i = 0; i + 2 < count; ++i) {
        Point middle = VLLerp(at(i), at(i + 1), 0.5);
        _qCurveTo_off(middle, at(i));
        if (updateLastPoint) _lastPoint = middle;
    }
    _qCurveTo_off(at(count - 1), at(count - 2));
    if (updateLastPoint) _lastPoint = at(count - 1);
}

void VLBasePen::convertQuadraticToCubic(std::span<const Point> points)
{
    if (points.empty()) return;
    emitRun([&](size_t i) { return points[i]; }, points.size(), true);
}

void VLBasePen::qCurveTo(VLQuadraticPoints& points)
{
    if (points.empty()) return;
    if (points.back().x == VLUnsetValue) {
        if (_convertQuadratic2Cubic && points.size() > 1) {
            startAtImpliedPoint(points.back(), points[points.size() - 2], points.front());
        } else {
            beginPath();
            points.pop_back();
            _lastPoint.x = VLUnsetValue;
        }
    }
    if (_convertQuadratic2Cubic)
        convertQuadraticToCubic(points);
    else
        _qCurveTo(points);
}

void VLBasePen::qCurveTo(VLBoxedQuadraticPoints& points)
{
    if (points.empty()) return;
    if (!points.back()) {
        if (_convertQuadratic2Cubic && points.size() > 1) {
            Point start;
            startAtImpliedPoint(start, points[points.size() - 2].value_or(Point{}), points.front().value_or(Point{}));
            points.back() = start;
        } else {
            beginPath();
            points.pop_back();
            if (points.empty()) return;
        }
    }
    emitRun([&](size_t i) { return points[i].value_or(Point{VLUnsetValue, 0.0}); }, points.size(), true);
}

void VLBasePen::qCurveWithPoints_count(Point* points, size_t count)
{
    if (count == 0) return;
    if (points[count - 1].x == VLUnsetValue) {
        if (_convertQuadratic2Cubic && count > 1)
            startAtImpliedPoint(points[count - 1], points[count - 2], points[0]);
        else
            beginPath();
    }
    emitRun([&](size_t i) { return points[i]; }, count, false);
}

int32_t VLBasePen::findFirstExtremePoint(std::span<const Point> points)
{
    if (points.empty()) return -1;
    Point previous = points.back();
    for (size_t i = 0; i < points.size(); ++i) {
        if (std::fabs(points[i].x - previous.x) < 0.001 || std::fabs(points[i].y - previous.y) < 0.001)
            return static_cast<int32_t>(i);
        previous = points[i];
    }
    return -1;
}
