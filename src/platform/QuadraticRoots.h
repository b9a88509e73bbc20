#pragma once

#include "platform/VLUnsetValue.h"

#include <cmath>
#include <concepts>
#include <type_traits>

// The one solver of the Bézier code, down here so that the path's own bounds use it too.

// The roots of a t^2 + b t + c, in the precision of the roots asked for: two for a discriminant of
// zero or more (the same one twice for zero); one where a is below 1e-12 in size and the equation
// a line; none where b is that small too, or the discriminant is negative. A missing root is
// VLUnsetValue, which lies outside every range of times.
template <std::floating_point Real>
void VLSolveQuadratic(std::type_identity_t<Real> a, std::type_identity_t<Real> b, std::type_identity_t<Real> c,
                      Real& root1, Real& root2)
{
    const Real zero = 1e-12L;
    root1 = root2 = VLUnsetValue;
    if (std::fabs(a) < zero) {
        if (std::fabs(b) >= zero) root1 = -c / b;
        return;
    }
    Real discriminant = b * b - 4 * a * c;
    if (discriminant < 0) return;
    Real root = std::sqrt(discriminant);
    root1 = (-b + root) / (2 * a);
    root2 = (-b - root) / (2 * a);
}

// The times strictly between low and high at which one coordinate of a cubic, with the values p0
// to p3 at its four points, has a zero derivative: its extrema there. Returns their count.
inline int VLCubicExtremaTimes(double p0, double p1, double p2, double p3, double low, double high, double times[2])
{
    // The derivative is 3 (a t^2 + b t + c).
    double roots[2];
    VLSolveQuadratic(-p0 + 3 * p1 - 3 * p2 + p3, 2 * (p0 - 2 * p1 + p2), p1 - p0, roots[0], roots[1]);
    int count = 0;
    for (double t : roots)
        if (t > low && t < high) times[count++] = t;
    return count;
}
