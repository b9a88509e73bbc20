#include "geometry/VLCubicIntersections.h"

#include "geometry/VLGeometry.h"

#include <cmath>

namespace {

Rect curveBox(const VLCubic& c)
{
    Rect box;
    double maxX, maxY;
    VLCubicBounds(c, box.origin.x, box.origin.y, maxX, maxY);
    box.size = {maxX - box.origin.x, maxY - box.origin.y};
    // A straight horizontal or vertical curve still needs an area to be met by another box.
    auto thicken = [](double& origin, double& extent) {
        if (extent >= 1e-05) return;
        origin -= 1e-05;
        extent = 2e-05;
    };
    thicken(box.origin.x, box.size.width);
    thicken(box.origin.y, box.size.height);
    return box;
}

bool isSmall(const Rect& box)
{
    return (box.size.width < 0.01 && box.size.height < 1.0) || (box.size.height < 0.01 && box.size.width < 1.0);
}

bool touchAtCommonEnd(const VLCubic& a, const VLCubic& b)
{
    if (VLSquareDistance(a[3], b[3]) >= 1e-05) return false;
    Point u = {a[2].x - a[3].x, a[2].y - a[3].y};
    Point v = {b[2].x - a[3].x, b[2].y - a[3].y};
    return std::fabs(u.x * v.y - u.y * v.x) >= 0.001;
}

void intersect(const VLCubic& a, const VLCubic& b, int depth, std::vector<Point>& results)
{
    Rect boxA = curveBox(a), boxB = curveBox(b);
    if (!intersectsRect(boxA, boxB)) {
        if (touchAtCommonEnd(a, b)) results.push_back(a[3]);
        return;
    }
    if (!isSmall(boxA) && !isSmall(boxB) && depth < 23) {
        VLCubic halvesA[2] = {VLCubicSubcurve(a, 0.0, 0.5), VLCubicSubcurve(a, 0.5, 1.0)};
        VLCubic halvesB[2] = {VLCubicSubcurve(b, 0.0, 0.5), VLCubicSubcurve(b, 0.5, 1.0)};
        for (const VLCubic& halfA : halvesA)
            for (const VLCubic& halfB : halvesB) intersect(halfA, halfB, depth + 1, results);
        return;
    }
    Point crossing = VLLineIntersection(a[0], a[3], b[0], b[3]);
    if (crossing.x != VLUnsetValue) results.push_back(crossing);
}

} // namespace

std::vector<Point> VLCubicIntersections(const VLCubic& a, const VLCubic& b, int depth)
{
    std::vector<Point> results;
    intersect(a, b, depth, results);
    return results;
}

std::vector<Point> VLExtendedCubicIntersections(const VLCubic& a, const VLCubic& b)
{
    return VLCubicIntersections(a, VLCubicSubcurve(b, -0.3, 1.3));
}
