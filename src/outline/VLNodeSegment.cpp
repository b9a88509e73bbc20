#include "outline/VLNodeSegment.h"

#include "geometry/VLCubic.h"
#include "geometry/VLGeometry.h"

#include <cmath>
#include <limits>

namespace {

VLCubic cubicOf(const VLNodeSegment& segment)
{
    return {segment.points[0], segment.points[1], segment.points[2], segment.points[3]};
}

} // namespace

Point VLNodeSegment::directionAtReach(double reach) const
{
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    Point node = points[0], q;
    if (count == 4)
        q = VLCubicPoint(points[0], points[1], points[2], points[3],
                         VLCubicTimeAtLength(std::max(reach, 0.001), cubicOf(*this)));
    else if (count == 2)
        q = points[1];
    else
        return {none, none};
    double length = VLDistanceF(node, q);
    if (!(length > 1e-9)) return {none, none};
    return {(q.x - node.x) / length, (q.y - node.y) / length};
}

Point VLNodeSegment::adjustedDirectionAtReach(double reach, Point direction)
{
    if (count != 4) return direction;
    double t = VLCubicTimeAtLength(std::max(reach, 0.001), cubicOf(*this));
    if (std::isnan(t)) {
        becomeLine();
        return direction;
    }
    Point q = VLCubicPoint(points[0], points[1], points[2], points[3], t);
    if (VLCubicLength(VLCubicSubcurve(cubicOf(*this), t, 1)) < 0.1) becomeLine();
    double length = VLDistanceF(points[0], q);
    if (!(length > 1e-9)) return direction;
    return {(q.x - points[0].x) / length, (q.y - points[0].y) / length};
}

void VLNodeSegment::becomeLine()
{
    points = {points[0], points[3], points[3], points[3]};
    count = 2;
}

void VLNodeSegment::shortenTo(Point end)
{
    if (count == 2) points[0] = end;
    if (count != 4) return;
    double reach = VLDistanceF(points[0], end);
    if (reach < 0.001) return;
    double t = VLCubicTimeAtLength(reach, cubicOf(*this));
    VLCubic rest = std::isnan(t) ? cubicOf(*this) : VLCubicSubcurve(cubicOf(*this), t, 1);
    rest[0] = end;
    points = rest;
    if (std::isnan(t) || VLDistanceF(rest[0], rest[1]) < 0.1) becomeLine();
}
