#pragma once

#include "platform/Geometry.h"

#include <cmath>
#include <numbers>

// Small vector arithmetic shared by the outline records.

inline Point VLLerp(Point a, Point b, double t)
{
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

inline double VLSquareDistance(Point a, Point b)
{
    double dx = b.x - a.x;
    double dy = b.y - a.y;
    return dx * dx + dy * dy;
}

// Thresholds of the outline code were tuned with a single-precision root.
inline float VLDistanceF(Point a, Point b)
{
    return std::sqrt(static_cast<float>(VLSquareDistance(a, b)));
}

inline Point VLCubicPoint(Point p0, Point p1, Point p2, Point p3, double t)
{
    double mt = 1.0 - t;
    double a = mt * mt * mt, b = 3 * mt * mt * t, c = 3 * mt * t * t, d = t * t * t;
    return {a * p0.x + b * p1.x + c * p2.x + d * p3.x, a * p0.y + b * p1.y + c * p2.y + d * p3.y};
}

inline Point VLQuadraticPoint(Point p0, Point p1, Point p2, double t)
{
    return VLLerp(VLLerp(p0, p1, t), VLLerp(p1, p2, t), t);
}

// Degrees of a vector: 0 for a vector shorter than 0.01 on both axes, 90 or 270 straight up or
// down, and otherwise a single-precision arctangent turned to the vector's half plane.
inline double VLAngleOfVector(double x, double y)
{
    if (std::fabs(x) < 0.01 && std::fabs(y) < 0.01) return 0.0;
    if (x == 0.0) return y >= 0.0 ? 90.0 : 270.0;
    double angle = std::atan(static_cast<float>(y / x)) * 180.0 / std::numbers::pi;
    return x > 0.0 ? angle : angle + 180.0;
}
