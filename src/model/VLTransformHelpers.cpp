#include "model/VLTransformHelpers.h"

namespace {

// `first`, then `second`.
AffineTransformStruct product(const AffineTransformStruct& first, const AffineTransformStruct& second)
{
    return {second.m11 * first.m11 + second.m21 * first.m12,
            second.m12 * first.m11 + second.m22 * first.m12,
            second.m11 * first.m21 + second.m21 * first.m22,
            second.m12 * first.m21 + second.m22 * first.m22,
            second.m11 * first.tX + second.m21 * first.tY + second.tX,
            second.m12 * first.tX + second.m22 * first.tY + second.tY};
}

} // namespace

void shearXBy_yBy_atCenter(AffineTransform& transform, double sx, double sy, Point center)
{
    AffineTransformStruct shear;
    shear.m12 = sy;
    shear.m21 = sx;
    shear.tX = -center.y * sx;
    shear.tY = -center.x * sy;
    transform.setTransformStruct(product(transform.transformStruct(), shear));
}

void shearXBy(AffineTransform& transform, double sx) { shearXBy_yBy_atCenter(transform, sx, 0.0, Point{}); }

void shearYBy(AffineTransform& transform, double sy) { shearXBy_yBy_atCenter(transform, 0.0, sy, Point{}); }

void shearXBy_atCenter(AffineTransform& transform, double sx, Point center)
{
    shearXBy_yBy_atCenter(transform, sx, 0.0, center);
}

void shearYBy_atCenter(AffineTransform& transform, double sy, Point center)
{
    shearXBy_yBy_atCenter(transform, 0.0, sy, center);
}

void resetToIdentityMatrix(AffineTransform& transform) { transform.setTransformStruct(AffineTransformStruct{}); }
