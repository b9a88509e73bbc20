#include "model/VLTransformHelpers.h"

void shearXBy_yBy_atCenter(AffineTransform& transform, double sx, double sy, Point center)
{
    AffineTransformStruct shear;
    shear.m12 = sy;
    shear.m21 = sx;
    shear.tX = -center.y * sx;
    shear.tY = -center.x * sy;
    transform.appendTransform(AffineTransform(shear));
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
