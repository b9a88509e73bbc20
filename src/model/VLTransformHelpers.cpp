#include "model/VLTransformHelpers.h"

void shearXBy_yBy_atCenter(AffineTransform& transform, double shearX, double shearY, Point center)
{
    AffineTransformStruct shear;
    shear.m12 = shearY;
    shear.m21 = shearX;
    shear.tX = -center.y * shearX;
    shear.tY = -center.x * shearY;
    transform.appendTransform(AffineTransform(shear));
}
