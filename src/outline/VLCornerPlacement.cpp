#include "outline/VLCornerPlacement.h"

#include "geometry/VLGeometry.h"
#include "outline/VLHint.h"

#include <cmath>
#include <initializer_list>
#include <limits>

namespace {

bool finite(const AffineTransform& t)
{
    const auto& m = t.transformStruct();
    for (double v : {m.m11, m.m12, m.m21, m.m22, m.tX, m.tY})
        if (!std::isfinite(v)) return false;
    return true;
}

double angleOf(Point v)
{
    return VLVectorAngle(v.x, v.y);
}

AffineTransform turnAround(Point centre, double degrees)
{
    AffineTransform turn;
    turn.translateXBy_yBy(centre.x, centre.y);
    turn.rotateByDegrees(degrees);
    turn.translateXBy_yBy(-centre.x, -centre.y);
    return turn;
}

// x' = x + kx (y - centre.y), y' = y + ky (x - centre.x)
AffineTransform shearAround(double kx, double ky, Point centre)
{
    return AffineTransform({1, ky, kx, 1, -kx * centre.y, -ky * centre.x});
}

} // namespace

bool VLCornerPlacement::isFinite() const
{
    return finite(inside) && finite(start) && finite(end);
}

Point VLUnitVector(Point v)
{
    double length = VLDistanceF({0, 0}, v);
    if (!(length > 1e-9)) return {std::numeric_limits<double>::quiet_NaN(), 0.0};
    return {v.x / length, v.y / length};
}

Point VLTransformDirection(const AffineTransform& transform, Point direction)
{
    Point zero = transform.transformPoint({0, 0}), moved = transform.transformPoint(direction);
    return {moved.x - zero.x, moved.y - zero.y};
}

AffineTransform VLOrientationTransform(uint8_t alignment, VLHintType type, const VLCornerFrame& frame)
{
    if (alignment == 4) return {};
    bool mirror = type == VLHintType::Corner &&
                  VLTurnsLeft(frame.nOut, frame.nIn) != VLTurnsLeft(frame.cOut, frame.cIn);
    double from = 90, to = 0;
    Point centre{0, 0};
    if (alignment == 0) {
        from = angleOf(frame.cIn), to = angleOf(frame.nIn), centre = frame.cOriginIn;
    } else if (alignment == 1) {
        from = angleOf(frame.cOut), to = angleOf(frame.nOut), centre = frame.cOriginOut;
    } else if (alignment == 2) {
        from = angleOf(frame.cChord), to = angleOf(frame.nChord);
    }
    // A mirror across the x axis negates every angle before the turn.
    if (mirror) from = -from;
    AffineTransform orientation = turnAround(centre, to - from);
    if (mirror) orientation.scaleXBy_yBy(1, -1);
    auto m = orientation.transformStruct();
    if (m.m12 != 0 && std::fabs(m.m12) < 1e-05) {
        m.m12 = 0;
        orientation.setTransformStruct(m);
    }
    return orientation;
}

AffineTransform VLSmoothingTransform(Point origin, Point n, Point c, Point p)
{
    double degrees = angleOf(n) - angleOf(c);
    if (std::fabs(c.x * p.y - c.y * p.x) <= 0.5) return turnAround(origin, degrees);
    // The corner's path leaves across its leg: leaning that end by the difference keeps the end
    // point on the leg while the path near it turns as the leg does.
    double slope = std::tan(degrees * VLRadiansPerDegree);
    if (!(std::fabs(slope) < 1000)) return {};
    if (std::fabs(p.x) < std::fabs(p.y)) return shearAround(-slope, 0, origin);
    return shearAround(0, slope, origin);
}
