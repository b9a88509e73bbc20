#include "platform/BezierPath.h"

#include "platform/GraphicsContext.h"
#include "platform/QuadraticRoots.h"
#include "platform/VLException.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

int pointCount(BezierPathElement kind)
{
    switch (kind) {
    case BezierPathElement::MoveTo:
    case BezierPathElement::LineTo: return 1;
    case BezierPathElement::CurveTo: return 3;
    case BezierPathElement::ClosePath: return 0;
    }
    return 0;
}

struct Extent {
    double minX = INFINITY, minY = INFINITY, maxX = -INFINITY, maxY = -INFINITY;

    void add(Point p)
    {
        minX = std::min(minX, p.x);
        minY = std::min(minY, p.y);
        maxX = std::max(maxX, p.x);
        maxY = std::max(maxY, p.y);
    }
};

double cubicAt(double a, double b, double c, double d, double t)
{
    double u = 1.0 - t;
    return u * u * u * a + 3 * u * u * t * b + 3 * u * t * t * c + t * t * t * d;
}

void addCurve(Extent& extent, Point p0, Point c1, Point c2, Point p3)
{
    extent.add(p3);
    double ts[2];
    for (int i = 0, n = VLCubicExtremaTimes(p0.x, c1.x, c2.x, p3.x, 0.0, 1.0, ts); i < n; ++i)
        extent.add({cubicAt(p0.x, c1.x, c2.x, p3.x, ts[i]), cubicAt(p0.y, c1.y, c2.y, p3.y, ts[i])});
    for (int i = 0, n = VLCubicExtremaTimes(p0.y, c1.y, c2.y, p3.y, 0.0, 1.0, ts); i < n; ++i)
        extent.add({cubicAt(p0.x, c1.x, c2.x, p3.x, ts[i]), cubicAt(p0.y, c1.y, c2.y, p3.y, ts[i])});
}

Point minus(Point a, Point b)
{
    return {a.x - b.x, a.y - b.y};
}

double length(Point v)
{
    return std::hypot(v.x, v.y);
}

Point scaled(Point v, double s)
{
    return {v.x * s, v.y * s};
}

Point plus(Point a, Point b)
{
    return {a.x + b.x, a.y + b.y};
}

} // namespace

BezierPathElement BezierPath::elementAtIndex(long index) const
{
    if (index < 0 || index >= elementCount()) throw VLException("VLRangeException", "element index out of range");
    return _elements[static_cast<size_t>(index)].kind;
}

BezierPathElement BezierPath::elementAtIndex_associatedPoints(long index, Point* points) const
{
    BezierPathElement kind = elementAtIndex(index);
    const Element& element = _elements[static_cast<size_t>(index)];
    std::copy_n(element.points, pointCount(kind), points);
    return kind;
}

Point BezierPath::currentPoint() const
{
    if (_elements.empty()) return {};
    const Element& last = _elements.back();
    int n = pointCount(last.kind);
    return n > 0 ? last.points[n - 1] : subpathStart();
}

Point BezierPath::subpathStart() const
{
    for (auto it = _elements.rbegin(); it != _elements.rend(); ++it)
        if (it->kind == BezierPathElement::MoveTo) return it->points[0];
    return {};
}

void BezierPath::moveToPoint(Point p)
{
    if (!_elements.empty() && _elements.back().kind == BezierPathElement::MoveTo) {
        _elements.back().points[0] = p;
        return;
    }
    _elements.push_back({BezierPathElement::MoveTo, {p}});
}

void BezierPath::startSubpathIfNeeded()
{
    if (_elements.empty()) _elements.push_back({BezierPathElement::MoveTo, {Point{}}});
}

void BezierPath::lineToPoint(Point p)
{
    startSubpathIfNeeded();
    _elements.push_back({BezierPathElement::LineTo, {p}});
}

void BezierPath::curveToPoint_controlPoint1_controlPoint2(Point end, Point control1, Point control2)
{
    startSubpathIfNeeded();
    _elements.push_back({BezierPathElement::CurveTo, {control1, control2, end}});
}

void BezierPath::closePath()
{
    // A subpath of a single point may be closed too; a subpath that was just closed may not.
    size_t n = _elements.size();
    if (n == 0 || (n >= 2 && _elements[n - 1].kind == BezierPathElement::MoveTo &&
                   _elements[n - 2].kind == BezierPathElement::ClosePath))
        return;
    Point start = subpathStart();
    _elements.push_back({BezierPathElement::ClosePath, {}});
    _elements.push_back({BezierPathElement::MoveTo, {start}});
}

void BezierPath::removeAllPoints()
{
    _elements.clear();
}

void BezierPath::appendBezierPath(const BezierPath& other)
{
    for (const Element& element : other._elements) {
        if (element.kind == BezierPathElement::MoveTo)
            moveToPoint(element.points[0]);
        else
            _elements.push_back(element);
    }
}

void BezierPath::appendBezierPathWithArcFromPoint_toPoint_radius(Point point1, Point point2, double radius)
{
    if (_elements.empty()) moveToPoint(point1);
    Point p0 = currentPoint();
    Point u = minus(p0, point1);
    Point v = minus(point2, point1);
    double lu = length(u);
    double lv = length(v);
    if (radius <= 0 || lu == 0 || lv == 0) return lineToPoint(point1);
    u = scaled(u, 1 / lu);
    v = scaled(v, 1 / lv);
    double cosine = std::clamp(u.x * v.x + u.y * v.y, -1.0, 1.0);
    double theta = std::acos(cosine);
    if (theta < 1e-9 || std::numbers::pi - theta < 1e-9) return lineToPoint(point1);

    double tangent = radius / std::tan(theta / 2);
    Point t1 = plus(point1, scaled(u, tangent));
    Point bisector = plus(u, v);
    Point center = plus(point1, scaled(bisector, (radius / std::sin(theta / 2)) / length(bisector)));
    lineToPoint(t1);

    double start = std::atan2(t1.y - center.y, t1.x - center.x);
    double sweep = std::numbers::pi - theta;
    double turn = u.x * v.y - u.y * v.x; // which way the corner bends decides the arc's direction
    if (turn > 0) sweep = -sweep;
    int pieces = static_cast<int>(std::ceil(std::fabs(sweep) / (std::numbers::pi / 2)));
    double step = sweep / pieces;
    double k = 4.0 / 3.0 * std::tan(step / 4) * radius;
    for (int i = 0; i < pieces; ++i) {
        double a0 = start + step * i;
        double a1 = a0 + step;
        Point e0{center.x + radius * std::cos(a0), center.y + radius * std::sin(a0)};
        Point e1{center.x + radius * std::cos(a1), center.y + radius * std::sin(a1)};
        Point c1{e0.x - k * std::sin(a0), e0.y + k * std::cos(a0)};
        Point c2{e1.x + k * std::sin(a1), e1.y - k * std::cos(a1)};
        curveToPoint_controlPoint1_controlPoint2(e1, c1, c2);
    }
}

Rect BezierPath::bounds() const
{
    Extent extent;
    Point current{};
    for (const Element& element : _elements) {
        switch (element.kind) {
        case BezierPathElement::MoveTo:
        case BezierPathElement::LineTo:
            extent.add(element.points[0]);
            current = element.points[0];
            break;
        case BezierPathElement::CurveTo:
            addCurve(extent, current, element.points[0], element.points[1], element.points[2]);
            current = element.points[2];
            break;
        case BezierPathElement::ClosePath: break;
        }
    }
    if (extent.minX > extent.maxX) return Rect();
    return {{extent.minX, extent.minY}, {extent.maxX - extent.minX, extent.maxY - extent.minY}};
}

void BezierPath::transformUsingAffineTransform(const AffineTransform& transform)
{
    for (Element& element : _elements)
        for (int i = 0; i < pointCount(element.kind); ++i) element.points[i] = transform.transformPoint(element.points[i]);
}

// Each subpath is walked backwards from its last point; the closing segment stays implicit.
BezierPath BezierPath::bezierPathByReversingPath() const
{
    BezierPath reversed;
    size_t begin = 0;
    while (begin < _elements.size()) {
        size_t end = begin + 1;
        while (end < _elements.size() && _elements[end].kind != BezierPathElement::MoveTo) ++end;
        bool closed = _elements[end - 1].kind == BezierPathElement::ClosePath;
        size_t last = closed ? end - 1 : end; // one past the last drawing element
        if (last > begin + 1) {
            auto endOf = [&](size_t i) { return _elements[i].points[pointCount(_elements[i].kind) - 1]; };
            reversed.moveToPoint(endOf(last - 1));
            for (size_t i = last - 1; i > begin; --i) {
                const Element& e = _elements[i];
                Point target = endOf(i - 1);
                if (e.kind == BezierPathElement::CurveTo)
                    reversed.curveToPoint_controlPoint1_controlPoint2(target, e.points[1], e.points[0]);
                else
                    reversed.lineToPoint(target);
            }
            if (closed) reversed.closePath();
        }
        begin = end;
    }
    return reversed;
}

void BezierPath::fill() const
{
    if (GraphicsContext* context = GraphicsContext::current()) context->fillPath(*this);
}
