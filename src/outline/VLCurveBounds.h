#pragma once

#include "platform/Geometry.h"

// The tight box of points and Bézier segments: a curve adds its end points and the points where
// its derivative is zero, never its control points.
class VLCurveBounds {
public:
    void addPoint(Point p);
    void addCubic(Point p0, Point p1, Point p2, Point p3);
    void addQuadratic(Point p0, Point p1, Point p2);
    bool isEmpty() const { return _empty; }
    Rect rect() const;

private:
    Point _min{};
    Point _max{};
    bool _empty = true;
};
