#pragma once

#include "platform/Geometry.h"

#include <array>
#include <vector>

// P0, control 1, control 2, P3.
using VLCubic = std::array<Point, 4>;

inline Point VLLerp(Point a, Point b, double t)
{
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
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

// The factor is written out rather than computed: quadratics become the same cubics on every
// platform.
constexpr double VLQuadraticToCubicFactor = 0.6666666666666666;

inline VLCubic VLCubicFromQuadratic(Point start, Point off, Point end)
{
    return {start, VLLerp(start, off, VLQuadraticToCubicFactor), VLLerp(end, off, VLQuadraticToCubicFactor), end};
}

// The part of the curve from t0 to t1; times outside 0 to 1 extend it.
VLCubic VLCubicSubcurve(const VLCubic& cubic, double t0, double t1);

// The tight box: the end points, and the extrema inside the curve when a control point lies
// outside the end points' box.
void VLCubicBounds(const VLCubic& cubic, double& minX, double& minY, double& maxX, double& maxY);
// Eleven-point polygon length with single-precision steps.
double VLCubicLength(const VLCubic& cubic);
// The time at which the arc from the start reaches the length, capped at the curve's length.
double VLCubicTimeAtLength(double length, const VLCubic& cubic);
// Sorted inflection times strictly between 0.001 and 0.99.
std::vector<double> VLCubicInflections(const VLCubic& cubic);
// The squared curvature at t; the largest double where the derivative vanishes.
double VLCubicCurvature(const VLCubic& cubic, double t);
// Both handles within 0.6 of the chord: the curve is drawn as a line.
bool VLHandlesNearChord(const VLCubic& cubic);
// Real roots of a t^3 + b t^2 + c t + d within -0.0001 to 1.0001, written to roots; the count.
int VLRootsOfCubic(double a, double b, double c, double d, double roots[3]);

// Splits the quadratic of a TrueType run (start, off-curve points, end) whose off-curve point is
// the integer part of pathTime, at the fraction. before and after are the new off-curve points
// around the new on-curve point; an index that names no off-curve point gives x = VLUnsetValue.
void VLQuadraticRunSplit(const Point* points, int count, double pathTime, Point& before, Point& onCurve,
                         Point& after);
