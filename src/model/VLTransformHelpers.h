#pragma once

#include "platform/AffineTransform.h"
#include "platform/Geometry.h"

// Shears that act after what the transform already does. A shear by sx moves a point along x by
// sx times its height above the centre, a shear by sy along y by sy times its distance right of it.
void shearXBy_yBy_atCenter(AffineTransform& transform, double sx, double sy, Point center);
void shearXBy(AffineTransform& transform, double sx);
void shearYBy(AffineTransform& transform, double sy);
void shearXBy_atCenter(AffineTransform& transform, double sx, Point center);
void shearYBy_atCenter(AffineTransform& transform, double sy, Point center);
void resetToIdentityMatrix(AffineTransform& transform);
