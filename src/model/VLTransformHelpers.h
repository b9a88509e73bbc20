#pragma once

#include "platform/AffineTransform.h"

#include <cstddef>
#include <vector>

// A shear around a centre, appended to the transform: x' = x + sx (y - cy), y' = y + sy (x - cx).
void shearXBy_yBy_atCenter(AffineTransform& transform, double shearX, double shearY, Point center);
inline void shearXBy(AffineTransform& t, double shearX) { shearXBy_yBy_atCenter(t, shearX, 0, {0, 0}); }
inline void shearYBy(AffineTransform& t, double shearY) { shearXBy_yBy_atCenter(t, 0, shearY, {0, 0}); }
inline void shearXBy_atCenter(AffineTransform& t, double shearX, Point c) { shearXBy_yBy_atCenter(t, shearX, 0, c); }
inline void shearYBy_atCenter(AffineTransform& t, double shearY, Point c) { shearXBy_yBy_atCenter(t, 0, shearY, c); }
inline void resetToIdentityMatrix(AffineTransform& t) { t.setTransformStruct(AffineTransformStruct()); }

// Index paths: the position of a node as path index, node index.
inline size_t lastIndex(const std::vector<size_t>& path) { return path.empty() ? 0 : path.back(); }
inline std::vector<size_t> indexPathByAddingOneToLastIndex(std::vector<size_t> path)
{
    if (!path.empty()) ++path.back();
    return path;
}
inline std::vector<size_t> indexPathBySubtractingOneToLastIndex(std::vector<size_t> path)
{
    if (!path.empty()) --path.back();
    return path;
}
