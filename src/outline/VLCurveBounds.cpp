#include "outline/VLCurveBounds.h"

#include "outline/VLOutlineMath.h"

#include <algorithm>
#include <cmath>

namespace {

// Roots in (0, 1) of the derivative of one coordinate of a cubic, a t^2 + b t + c.
template <typename Visit>
void derivativeRoots(double p0, double p1, double p2, double p3, Visit visit)
{
    double a = -p0 + 3 * p1 - 3 * p2 + p3;
    double b = 2 * (p0 - 2 * p1 + p2);
    double c = p1 - p0;
    auto inside = [&](double t) {
        if (t > 0.0 && t < 1.0) visit(t);
    };
    if (std::fabs(a) < 1e-12) {
        if (std::fabs(b) > 1e-12) inside(-c / b);
        return;
    }
    double discriminant = b * b - 4 * a * c;
    if (discriminant < 0) return;
    double root = std::sqrt(discriminant);
    inside((-b + root) / (2 * a));
    inside((-b - root) / (2 * a));
}

} // namespace

void VLCurveBounds::addPoint(Point p)
{
    if (_empty) {
        _min = _max = p;
        _empty = false;
        return;
    }
    _min = {std::min(_min.x, p.x), std::min(_min.y, p.y)};
    _max = {std::max(_max.x, p.x), std::max(_max.y, p.y)};
}

void VLCurveBounds::addCubic(Point p0, Point p1, Point p2, Point p3)
{
    addPoint(p0);
    addPoint(p3);
    auto extremum = [&](double t) { addPoint(VLCubicPoint(p0, p1, p2, p3, t)); };
    derivativeRoots(p0.x, p1.x, p2.x, p3.x, extremum);
    derivativeRoots(p0.y, p1.y, p2.y, p3.y, extremum);
}

void VLCurveBounds::addQuadratic(Point p0, Point p1, Point p2)
{
    // The same curve as a cubic: the control points two thirds of the way to the quadratic one.
    addCubic(p0, VLLerp(p0, p1, 2.0 / 3.0), VLLerp(p2, p1, 2.0 / 3.0), p2);
}

Rect VLCurveBounds::rect() const
{
    return {_min, {_max.x - _min.x, _max.y - _min.y}};
}
