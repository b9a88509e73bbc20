#include "platform/AffineTransform.h"

#include "platform/GraphicsContext.h"

#include <cmath>
#include <numbers>

namespace {

// The product "first, then second" in the row-vector convention of the struct.
AffineTransformStruct then(const AffineTransformStruct& a, const AffineTransformStruct& b)
{
    return {a.m11 * b.m11 + a.m12 * b.m21,
            a.m11 * b.m12 + a.m12 * b.m22,
            a.m21 * b.m11 + a.m22 * b.m21,
            a.m21 * b.m12 + a.m22 * b.m22,
            a.tX * b.m11 + a.tY * b.m21 + b.tX,
            a.tX * b.m12 + a.tY * b.m22 + b.tY};
}

} // namespace

void AffineTransform::translateXBy_yBy(double deltaX, double deltaY)
{
    _m = then({1, 0, 0, 1, deltaX, deltaY}, _m);
}

void AffineTransform::rotateByRadians(double angle)
{
    double c = std::cos(angle);
    double s = std::sin(angle);
    _m = then({c, s, -s, c, 0, 0}, _m);
}

void AffineTransform::rotateByDegrees(double angle)
{
    rotateByRadians(angle * std::numbers::pi / 180.0);
}

void AffineTransform::scaleBy(double scale)
{
    scaleXBy_yBy(scale, scale);
}

void AffineTransform::scaleXBy_yBy(double scaleX, double scaleY)
{
    _m = then({scaleX, 0, 0, scaleY, 0, 0}, _m);
}

void AffineTransform::appendTransform(const AffineTransform& other)
{
    _m = then(_m, other._m);
}

void AffineTransform::prependTransform(const AffineTransform& other)
{
    _m = then(other._m, _m);
}

void AffineTransform::invert()
{
    double det = _m.m11 * _m.m22 - _m.m12 * _m.m21;
    if (det == 0.0 || !std::isfinite(det)) return;
    AffineTransformStruct inverse{_m.m22 / det, -_m.m12 / det, -_m.m21 / det, _m.m11 / det, 0, 0};
    inverse.tX = -(_m.tX * inverse.m11 + _m.tY * inverse.m21);
    inverse.tY = -(_m.tX * inverse.m12 + _m.tY * inverse.m22);
    _m = inverse;
}

Point AffineTransform::transformPoint(Point p) const
{
    return {_m.m11 * p.x + _m.m21 * p.y + _m.tX, _m.m12 * p.x + _m.m22 * p.y + _m.tY};
}

Size AffineTransform::transformSize(Size s) const
{
    return {_m.m11 * s.width + _m.m21 * s.height, _m.m12 * s.width + _m.m22 * s.height};
}

void AffineTransform::concat() const
{
    if (GraphicsContext* context = GraphicsContext::current()) context->concatTransform(*this);
}
