#pragma once

#include "platform/Geometry.h"
#include "platform/NumberConversion.h"
#include "platform/VLUnsetValue.h"

#include <cmath>

inline constexpr double VLDegreesPerRadian = 57.29577951308232;
inline constexpr double VLRadiansPerDegree = 0.017453292519943295;

inline double VLSquareDistance(Point a, Point b)
{
    double dx = b.x - a.x;
    double dy = b.y - a.y;
    return dx * dx + dy * dy;
}

// A distance whose root is taken in single precision: the thresholds of the outline code were
// tuned with it, so it must not be replaced by a double-precision distance.
// Within the tolerance on each axis, not by distance: how the overlap code tells one place.
inline bool VLPointsWithin(Point a, Point b, double tolerance)
{
    return std::fabs(a.x - b.x) < tolerance && std::fabs(a.y - b.y) < tolerance;
}

inline float VLDistanceF(Point a, Point b)
{
    return std::sqrt(VLSinglePrecision(VLSquareDistance(a, b)));
}

// Degrees in -90 to 270; 0 for a vector shorter than 0.01 on both axes.
double VLVectorAngle(double dx, double dy);

// The foot of p on the segment a-b, clamped to the box of a and b. t, if given, is the unsigned
// fraction of the way from a to b.
Point VLNearestPoint(Point p, Point a, Point b, double* t);
// The foot of p on the infinite line through a and b; a line shorter than 0.0001 gives a and
// leaves t alone. t is negative for a foot before a.
Point VLNearestPointUnlimited(Point p, Point a, Point b, double* t);

// The crossing of the lines through a1-a2 and b1-b2, x = VLUnsetValue for none. Lines whose x
// ranges lie strictly apart are not intersected.
Point VLLineIntersection(Point a1, Point a2, Point b1, Point b2);
// As VLLineIntersection without the x-range test; a line shorter than 0.0001 gives none.
Point VLLineIntersectionUnlimited(Point a1, Point a2, Point b1, Point b2);

class VLGeometry {
public:
    static double angleOfVector(Point v) { return VLVectorAngle(v.x, v.y); }
    // 0 for parallel and 180 for opposite vectors, otherwise negative for a left turn from a to b.
    static double angleBetweenVector_andVector(Point a, Point b);
    static Point subtractPoint_andPoint(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
    static double distance_toPoint(Point a, Point b) { return std::hypot(a.x - b.x, a.y - b.y); }
    // Distance of p from the infinite line a-b, in single precision.
    static double distanceOfPoint_fromLine(Point p, Point a, Point b);
    static Point nearestPointUnlimited_onLineP1_p2_t(Point p, Point a, Point b, double* t)
    {
        return VLNearestPointUnlimited(p, a, b, t);
    }
    static Point nearestPoint_onLineP1_p2_t(Point p, Point a, Point b, double* t) { return VLNearestPoint(p, a, b, t); }
    // An angle in degrees as a small integer slope run/rise; false when no ratio with a rise
    // below 1000 comes within 0.0001.
    static bool angle_toRun_rise(double degrees, int& run, int& rise);
};
