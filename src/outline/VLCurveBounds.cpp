#include "outline/VLCurveBounds.h"

#include "geometry/VLCubic.h"

#include <algorithm>

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
    Point min, max;
    VLCubicBounds({p0, p1, p2, p3}, min.x, min.y, max.x, max.y);
    addPoint(min);
    addPoint(max);
}

void VLCurveBounds::addQuadratic(Point p0, Point p1, Point p2)
{
    const VLCubic cubic = VLCubicFromQuadratic(p0, p1, p2);
    addCubic(cubic[0], cubic[1], cubic[2], cubic[3]);
}

Rect VLCurveBounds::rect() const
{
    return {_min, {_max.x - _min.x, _max.y - _min.y}};
}
