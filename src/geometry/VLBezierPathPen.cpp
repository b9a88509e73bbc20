#include "geometry/VLBezierPathPen.h"

#include "geometry/VLSegmentPen.h"
#include "platform/BezierPath.h"

#include <cmath>

namespace {

// The replacements differ per place, so that the odd shape tells where the NaN came from.
Point replaceNaN(Point p, Point replacement)
{
    return std::isnan(p.x) || std::isnan(p.y) ? replacement : p;
}

} // namespace

void VLBezierPathPen::moveTo(Point point)
{
    _path.moveToPoint(replaceNaN(point, {1, 2}));
}

void VLBezierPathPen::lineTo(Point point)
{
    _path.lineToPoint(replaceNaN(point, {4, 5}));
}

void VLBezierPathPen::curveTo_off1_off2(Point end, Point off1, Point off2)
{
    _path.curveToPoint_controlPoint1_controlPoint2(replaceNaN(end, {21, 22}), replaceNaN(off1, {23, 34}),
                                                   replaceNaN(off2, {45, 56}));
}

void VLBezierPathPen::closePath()
{
    _path.closePath();
}

Point VLBezierPathPen::lastPoint() const
{
    if (_path.elementCount() < 1) return {VLUnsetValue, 0.0};
    return _path.currentPoint();
}

bool VLBezierPathPen::hasContent() const
{
    return _path.elementCount() > 0;
}

void VLBezierPathPen::clear()
{
    _path.removeAllPoints();
}

void VLBezierPathPen::append(const BezierPath& other)
{
    _path.appendBezierPath(other);
}

void VLBezierPathPen::drawInPen(const BezierPath& path, VLPenProtocol& pen)
{
    Point points[3];
    for (long i = 0, n = path.elementCount(); i < n; ++i) {
        switch (path.elementAtIndex_associatedPoints(i, points)) {
        case BezierPathElement::MoveTo: pen.moveTo(points[0]); break;
        case BezierPathElement::LineTo: pen.lineTo(points[0]); break;
        case BezierPathElement::CurveTo: pen.curveTo_off1_off2(points[2], points[0], points[1]); break;
        case BezierPathElement::ClosePath: pen.closePath(); break;
        }
    }
}

bool VLBezierPathPen::closed(const BezierPath& path)
{
    long count = path.elementCount();
    return count >= 3 && path.elementAtIndex(count - 2) == BezierPathElement::ClosePath;
}

std::vector<VLPathSegment> VLBezierPathPen::segments(const BezierPath& path)
{
    VLSegmentPen pen;
    drawInPen(path, pen);
    return pen.segments();
}
