#pragma once

#include "platform/AffineTransform.h"
#include "platform/Geometry.h"

#include <memory>
#include <vector>

enum class BezierPathElement : int { MoveTo = 0, LineTo = 1, CurveTo = 2, ClosePath = 3 };

// An ordered list of elements, as the platform's path: move, line, curve (control 1, control 2,
// end) and close. closePath appends the close and a move back to the subpath's start, so that
// a closed subpath is always followed by a move (closing twice closes once); a move directly after
// a move replaces it. A
// line or curve without a current point starts its subpath at the origin. Fill rule: non-zero.
class BezierPath {
public:
    BezierPath() = default;

    static std::shared_ptr<BezierPath> bezierPath() { return std::make_shared<BezierPath>(); }
    std::shared_ptr<BezierPath> copy() const { return std::make_shared<BezierPath>(*this); }

    long elementCount() const { return static_cast<long>(_elements.size()); }
    bool isEmpty() const { return _elements.empty(); }
    // The kind of element index, which must be below elementCount.
    BezierPathElement elementAtIndex(long index) const;
    // As elementAtIndex, and fills points (room for three) with the element's points: one for
    // move and line, control 1, control 2 and end for a curve, none for close.
    BezierPathElement elementAtIndex_associatedPoints(long index, Point* points) const;
    // The end of the last element; the origin for an empty path.
    Point currentPoint() const;

    void moveToPoint(Point p);
    void lineToPoint(Point p);
    void curveToPoint_controlPoint1_controlPoint2(Point end, Point control1, Point control2);
    void closePath();
    void removeAllPoints();
    void appendBezierPath(const BezierPath& other);
    // A circular arc of the given radius tangent to the lines from the current point to point1
    // and from point1 to point2, preceded by a line to the arc's start.
    void appendBezierPathWithArcFromPoint_toPoint_radius(Point point1, Point point2, double radius);

    // The smallest rectangle that holds the drawn outline (curve extrema, not control points).
    Rect bounds() const;
    void transformUsingAffineTransform(const AffineTransform& transform);
    // Every subpath drawn the other way round; closed subpaths stay closed.
    BezierPath bezierPathByReversingPath() const;

    // Fills with the current colour of the current graphics context.
    void fill() const;

private:
    struct Element {
        BezierPathElement kind;
        Point points[3];
    };

    void startSubpathIfNeeded();
    Point subpathStart() const;

    std::vector<Element> _elements;
};
