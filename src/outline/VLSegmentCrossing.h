#pragma once

#include "geometry/VLCubic.h"
#include "platform/Geometry.h"

#include <optional>

// A line as a cubic whose parameter runs evenly along it.
inline VLCubic lineAsCubic(Point a, Point b)
{
    return {a, VLLerp(a, b, 1.0 / 3.0), VLLerp(a, b, 2.0 / 3.0), b};
}

struct VLCrossing {
    Point point;
    double inTime;
    double outTime;
};

// Where the segment into a corner step and the one out of it cross near the step, if they do
// near enough for the step to be an overlap worth cutting: two lines by the ratios of their
// lengths, curves by the times from the step's ends.
std::optional<VLCrossing> VLCrossingNearCorner(const VLCubic& in, const VLCubic& out, bool bothLines);

// The time on the cubic nearest to the point.
double VLNearestTimeOnCubic(const VLCubic& cubic, Point p);
