#include "geometry/VLPathSegment.h"

#include "geometry/VLGeometry.h"
#include "platform/QuadraticRoots.h"
#include "platform/VLUnsetValue.h"

#include <algorithm>
#include <cmath>

namespace {

Rect boxOf(std::span<const Point> points)
{
    if (points.empty()) return {};
    double minX = points[0].x, minY = points[0].y, maxX = minX, maxY = minY;
    for (Point p : points) {
        minX = std::min(minX, p.x);
        maxX = std::max(maxX, p.x);
        minY = std::min(minY, p.y);
        maxY = std::max(maxY, p.y);
    }
    return {{minX, minY}, {maxX - minX, maxY - minY}};
}

Point unit(Point v)
{
    double length = std::hypot(v.x, v.y);
    if (!(length > 0.0)) return {VLUnsetValue, 0.0};
    return {v.x / length, v.y / length};
}

Point cubicDerivative(const VLCubic& c, double t)
{
    double mt = 1.0 - t;
    double a = 3 * mt * mt, b = 6 * mt * t, d = 3 * t * t;
    return {a * (c[1].x - c[0].x) + b * (c[2].x - c[1].x) + d * (c[3].x - c[2].x),
            a * (c[1].y - c[0].y) + b * (c[2].y - c[1].y) + d * (c[3].y - c[2].y)};
}

Point slanted(Point p, double slope)
{
    return {p.x - p.y * slope, p.y};
}

} // namespace

VLPathSegment VLPathSegment::initWithLinePoint1_point2_options(Point p1, Point p2, uint8_t options)
{
    VLPathSegment segment;
    segment._count = 2;
    segment._options = options;
    segment._elements[0] = p1;
    segment._elements[1] = p2;
    segment.updateBounds();
    return segment;
}

VLPathSegment VLPathSegment::initWithCurvePoint1_point2_point3_point4_options(Point p1, Point p2, Point p3, Point p4,
                                                                            uint8_t options)
{
    VLPathSegment segment;
    segment._type = Curve;
    segment._count = 4;
    segment._options = options;
    segment._elements = {p1, p2, p3, p4};
    segment.updateBounds();
    return segment;
}

VLPathSegment VLPathSegment::initWithQCurve(std::span<const Point> points)
{
    VLPathSegment segment;
    segment._type = QCurve;
    segment._count = static_cast<uint8_t>(std::min(points.size(), MaximumPoints));
    std::copy_n(points.begin(), segment._count, segment._elements.begin());
    segment.updateBounds();
    return segment;
}

VLPathSegment VLPathSegment::initWithQCurve_count(const Point* points, size_t count)
{
    return initWithQCurve({points, std::min(count, MaximumCountedRun)});
}

VLPathSegment VLPathSegment::initWithSegmentStruct(const SegmentStruct& record)
{
    VLPathSegment segment;
    segment._type = record.type == Curve || record.type == QCurve ? static_cast<Type>(record.type) : Line;
    segment._count = std::min<uint8_t>(record.count, 4);
    segment._options = record.options;
    std::copy(record.points.begin(), record.points.end(), segment._elements.begin());
    segment._bounds = record.bounds;
    return segment;
}

VLPathSegment::SegmentStruct VLPathSegment::segmentStruct() const
{
    SegmentStruct record;
    std::copy_n(_elements.begin(), 4, record.points.begin());
    record.type = _type;
    record.count = _count;
    record.options = _options;
    record.bounds = _bounds;
    return record;
}

void VLPathSegment::setPoint_atIndex(Point point, size_t index)
{
    if (index < _count) _elements[index] = point;
}

void VLPathSegment::updateBounds()
{
    if (!isCubic()) {
        _bounds = boxOf(elements());
        return;
    }
    double minX, minY, maxX, maxY;
    VLCubicBounds(cubic(), minX, minY, maxX, maxY);
    _bounds = {{minX, minY}, {maxX - minX, maxY - minY}};
}

void VLPathSegment::reverse()
{
    std::reverse(_elements.begin(), _elements.begin() + _count);
}

int VLPathSegment::compare_italicAngle(const VLPathSegment& other, double degrees) const
{
    double slope = std::fabs(degrees) > 0.0001 ? std::tan(degrees * VLRadiansPerDegree) : 0.0;
    Point a = slanted(pointAtIndex(0), slope), b = slanted(lastPoint(), slope);
    Point c = slanted(other.pointAtIndex(0), slope), d = slanted(other.lastPoint(), slope);
    // A segment of no length goes first, so that it is used up before it could start a contour.
    bool shortThis = VLDistanceF(a, b) < 0.1, shortOther = VLDistanceF(c, d) < 0.1;
    if (shortThis && !shortOther) return -1;
    if (!shortThis && shortOther) return 1;
    for (auto [mine, theirs] : {std::pair{a.x, c.x}, {a.y, c.y}, {b.x, d.x}, {b.y, d.y}})
        if (std::fabs(mine - theirs) > 0.1) return mine < theirs ? -1 : 1;
    return 0;
}

bool VLPathSegment::isEqualToSegment_tolerance(const VLPathSegment& other, double tolerance) const
{
    if (this == &other) return true;
    if (_count != other._count || _options != other._options) return false;
    for (size_t i = 0; i < _count; ++i)
        if (!(std::fabs(_elements[i].x - other._elements[i].x) < tolerance) ||
            !(std::fabs(_elements[i].y - other._elements[i].y) < tolerance))
            return false;
    return true;
}

Point VLPathSegment::middlePoint() const
{
    if (_count == 4) return VLCubicPoint(_elements[0], _elements[1], _elements[2], _elements[3], 0.5);
    return VLLerp(_elements[0], _elements[1], 0.5);
}

Point VLPathSegment::middlePointRight() const
{
    Point middle, direction;
    if (_type == Line && _count >= 2) {
        middle = VLLerp(_elements[0], _elements[1], 0.5);
        direction = {_elements[1].x - _elements[0].x, _elements[1].y - _elements[0].y};
    } else if (isCubic()) {
        middle = VLCubicPoint(_elements[0], _elements[1], _elements[2], _elements[3], 0.5);
        direction = cubicDerivative(cubic(), 0.5);
    } else if (_type == QCurve && _count > 3) {
        // The pair of off-curve points around the middle; their midpoint lies on the curve.
        size_t i = std::min<size_t>((_count - 1) / 2, _count - 3u);
        middle = VLLerp(_elements[i], _elements[i + 1], 0.5);
        direction = {_elements[i + 1].x - _elements[i].x, _elements[i + 1].y - _elements[i].y};
    } else if (_type == QCurve && _count == 3) {
        middle = VLQuadraticPoint(_elements[0], _elements[1], _elements[2], 0.5);
        direction = {_elements[2].x - _elements[0].x, _elements[2].y - _elements[0].y};
    } else {
        return {};
    }
    Point u = unit(direction);
    if (u.x == VLUnsetValue) return middle;
    return {middle.x + u.y * 0.0001, middle.y - u.x * 0.0001};
}

bool VLPathSegment::splitAtTime_firstHalf_secondHalf(double t, VLPathSegment& first, VLPathSegment& second) const
{
    if (_type == Line && _count == 2) {
        Point middle = VLLerp(_elements[0], _elements[1], t);
        first = initWithLinePoint1_point2_options(_elements[0], middle, _options);
        second = initWithLinePoint1_point2_options(middle, _elements[1], _options);
        return true;
    }
    if (!isCubic()) return false;
    VLCubic a = VLCubicSubcurve(cubic(), 0, t), b = VLCubicSubcurve(cubic(), t, 1);
    // Both halves meet exactly, whatever the rounding of the two subcurves.
    b[0] = a[3];
    first = initWithCurvePoint1_point2_point3_point4_options(a[0], a[1], a[2], a[3], _options);
    second = initWithCurvePoint1_point2_point3_point4_options(b[0], b[1], b[2], _elements[3], _options);
    return true;
}

Point VLPathSegment::pointAtTime(double t) const
{
    if (_type == Line && _count == 2) return VLLerp(_elements[0], _elements[1], t);
    if (isCubic()) return VLCubicPoint(_elements[0], _elements[1], _elements[2], _elements[3], t);
    return {VLUnsetValue, 0.0};
}

Point VLPathSegment::normalAtTime(double t) const
{
    if (_type == Line && _count == 2)
        return unit({_elements[1].x - _elements[0].x, _elements[1].y - _elements[0].y});
    if (isCubic()) return unit(cubicDerivative(cubic(), t));
    return {VLUnsetValue, 0.0};
}

double VLPathSegment::tangentAtTime(double t) const
{
    if (_type == Line && _count == 2)
        return VLVectorAngle(_elements[1].x - _elements[0].x, _elements[1].y - _elements[0].y);
    if (!isCubic()) return VLUnsetValue;
    Point d = cubicDerivative(cubic(), t);
    return std::atan2(d.y, d.x) * VLDegreesPerRadian;
}

std::vector<double> VLPathSegment::extremeTimes() const
{
    std::vector<double> times;
    if (!isCubic()) return times;
    double found[2];
    const auto& e = _elements;
    int n = VLCubicExtremaTimes(e[0].x, e[1].x, e[2].x, e[3].x, 0.0, 1.0, found);
    times.insert(times.end(), found, found + n);
    n = VLCubicExtremaTimes(e[0].y, e[1].y, e[2].y, e[3].y, 0.0, 1.0, found);
    times.insert(times.end(), found, found + n);
    return times;
}

std::vector<Point> VLPathSegment::extremePoints() const
{
    std::vector<Point> points;
    for (double t : extremeTimes()) points.push_back(pointAtTime(t));
    return points;
}

std::vector<double> VLPathSegment::inflectionPoints() const
{
    return isCubic() ? VLCubicInflections(cubic()) : std::vector<double>{};
}

double VLPathSegment::curvatureAtTime(double t) const
{
    return isCubic() ? VLCubicCurvature(cubic(), t) : VLUnsetValue;
}

double VLPathSegment::length() const
{
    if (_type == Line && _count == 2) return VLDistanceF(_elements[0], _elements[1]);
    if (isCubic()) return VLCubicLength(cubic());
    return VLUnsetValue;
}

double VLPathSegment::lengthFast() const
{
    return _count ? VLDistanceF(_elements[0], lastPoint()) : 0.0;
}

bool VLPathSegment::normalizeHandles()
{
    if (!isCubic()) return false;
    bool firstRetracted = VLDistanceF(_elements[0], _elements[1]) < 0.1;
    bool secondRetracted = VLDistanceF(_elements[3], _elements[2]) < 0.1;
    if (firstRetracted == secondRetracted) return false;
    // Seen from the end with the retracted handle: A its on-curve point, B the other handle, C
    // the far end; the handles are written in that order too.
    size_t a = firstRetracted ? 0 : 3, b = firstRetracted ? 2 : 1, c = firstRetracted ? 3 : 0;
    Point A = _elements[a], B = _elements[b], C = _elements[c];
    Point first = {(0.05 * A.x + 0.95 * B.x) * 0.49 + C.x * 0.51, (0.05 * A.y + 0.95 * B.y) * 0.49 + C.y * 0.51};
    Point second = {0.292053 * A.x + 0.707947 * B.x, 0.292053 * A.y + 0.707947 * B.y};
    _elements[firstRetracted ? 1 : 2] = first;
    _elements[b] = second;
    return true;
}

void VLPathSegment::drawInPen(VLPenProtocol& pen) const
{
    if (_count < 2) return;
    if (isCubic()) return pen.curveTo_off1_off2(_elements[3], _elements[1], _elements[2]);
    if (_type == Line || _count == 2) return pen.lineTo(_elements[1]);
    Point run[MaximumPoints];
    std::copy_n(_elements.begin() + 1, _count - 1, run);
    pen.qCurveWithPoints_count(run, _count - 1);
}
