#pragma once

#include "geometry/VLCubic.h"

#include <vector>

// Crossings of two cubics, unsorted and possibly repeated.
std::vector<Point> VLCubicIntersections(const VLCubic& a, const VLCubic& b, int depth = 0);
// As VLCubicIntersections with b extended from t = -0.3 to 1.3, to find where it would meet a.
std::vector<Point> VLExtendedCubicIntersections(const VLCubic& a, const VLCubic& b);
