#include "thumbnail/VLFontLoader.h"

#include "platform/AffineTransform.h"
#include "platform/BezierPath.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// cairo's default tolerance: a flattened curve keeps within a tenth of a pixel of the curve.
constexpr double tolerance = 0.1;

double rowsCrossed(Point from, Point to)
{
    return std::fabs(to.y - from.y) + 1.0;
}

// Lines that a cubic flattens into, by the bound on its second differences (Wang's formula).
double flattenedLines(Point p0, Point p1, Point p2, Point p3)
{
    double first = std::hypot(p0.x - 2 * p1.x + p2.x, p0.y - 2 * p1.y + p2.y);
    double second = std::hypot(p1.x - 2 * p2.x + p3.x, p1.y - 2 * p2.y + p3.y);
    return std::max(1.0, std::ceil(std::sqrt(0.75 * std::max(first, second) / tolerance)));
}

// A curve's lines cross no more rows than its control polygon does, plus one row each.
double curveCost(Point p0, Point p1, Point p2, Point p3)
{
    double rows = std::fabs(p1.y - p0.y) + std::fabs(p2.y - p1.y) + std::fabs(p3.y - p2.y);
    return rows + flattenedLines(p0, p1, p2, p3);
}

} // namespace

double VLFontLoader::fillCost(const BezierPath& path, const AffineTransform& toDevice)
{
    double cost = 0.0;
    Point start{}, current{};
    std::array<Point, 3> points{};
    for (long i = 0; i < path.elementCount(); ++i) {
        BezierPathElement kind = path.elementAtIndex_associatedPoints(i, points.data());
        for (Point& p : points) p = toDevice.transformPoint(p);
        switch (kind) {
        case BezierPathElement::MoveTo:
            // The fill closes the subpath before.
            cost += rowsCrossed(current, start);
            start = current = points[0];
            break;
        case BezierPathElement::LineTo:
            cost += rowsCrossed(current, points[0]);
            current = points[0];
            break;
        case BezierPathElement::CurveTo:
            cost += curveCost(current, points[0], points[1], points[2]);
            current = points[2];
            break;
        case BezierPathElement::ClosePath:
            cost += rowsCrossed(current, start);
            current = start;
            break;
        }
    }
    return cost + rowsCrossed(current, start);
}
