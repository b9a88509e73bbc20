#include "geometry/VLGeometry.h"
#include "platform/NumberConversion.h"

#include <algorithm>

namespace {

Point lineFoot(Point p, Point a, Point b)
{
    double dx = b.x - a.x;
    double dy = b.y - a.y;
    if (dx == 0.0 && dy == 0.0) return a;
    double u = ((p.x - a.x) * dx + (p.y - a.y) * dy) / (dx * dx + dy * dy);
    return {a.x + u * dx, a.y + u * dy};
}

bool rangesApart(double a1, double a2, double b1, double b2)
{
    return std::min(a1, a2) > std::max(b1, b2) || std::min(b1, b2) > std::max(a1, a2);
}

Point crossing(Point a1, Point a2, Point b1, Point b2)
{
    double dax = a2.x - a1.x, day = a2.y - a1.y;
    double dbx = b2.x - b1.x, dby = b2.y - b1.y;
    double determinant = dax * dby - day * dbx;
    if (std::fabs(determinant) < 1e-06) return {VLUnsetValue, 0.0};
    double u = ((b1.x - a1.x) * dby - (b1.y - a1.y) * dbx) / determinant;
    return {a1.x + u * dax, a1.y + u * day};
}

} // namespace

double VLVectorAngle(double dx, double dy)
{
    if (std::fabs(dx) < 0.01 && std::fabs(dy) < 0.01) return 0.0;
    if (dx == 0.0) return dy >= 0.0 ? 90.0 : 270.0;
    double angle = std::atan(VLSinglePrecision(dy / dx)) * VLDegreesPerRadian;
    return dx > 0.0 ? angle : angle + 180.0;
}

Point VLNearestPoint(Point p, Point a, Point b, double* t)
{
    Point foot = lineFoot(p, a, b);
    foot.x = std::clamp(foot.x, std::min(a.x, b.x), std::max(a.x, b.x));
    foot.y = std::clamp(foot.y, std::min(a.y, b.y), std::max(a.y, b.y));
    if (t) *t = VLDistanceF(a, foot) / VLDistanceF(a, b);
    return foot;
}

Point VLNearestPointUnlimited(Point p, Point a, Point b, double* t)
{
    if (std::hypot(a.x - b.x, a.y - b.y) < 0.0001) return a;
    Point foot = lineFoot(p, a, b);
    if (t) {
        float fromA = VLDistanceF(a, foot);
        float fromB = VLDistanceF(b, foot);
        *t = fromA / VLDistanceF(a, b);
        if (fromB > VLDistanceF(a, b) && fromB > fromA) *t = -*t;
    }
    return foot;
}

Point VLLineIntersection(Point a1, Point a2, Point b1, Point b2)
{
    if (rangesApart(a1.x, a2.x, b1.x, b2.x)) return {VLUnsetValue, 0.0};
    return crossing(a1, a2, b1, b2);
}

Point VLLineIntersectionUnlimited(Point a1, Point a2, Point b1, Point b2)
{
    if (std::hypot(a2.x - a1.x, a2.y - a1.y) < 0.0001 || std::hypot(b2.x - b1.x, b2.y - b1.y) < 0.0001)
        return {VLUnsetValue, 0.0};
    return crossing(a1, a2, b1, b2);
}

double VLGeometry::angleBetweenVector_andVector(Point a, Point b)
{
    float lengths = std::sqrt(VLSinglePrecision((b.x * b.x + b.y * b.y) * (a.x * a.x + a.y * a.y)));
    double d = (a.x * b.x + a.y * b.y) / lengths;
    if (d < -0.999999) return 180.0;
    if (d > 0.999999) return 0.0;
    double angle = std::acos(VLSinglePrecision(d)) * VLDegreesPerRadian;
    return a.x * b.y - a.y * b.x > 0 ? -angle : angle;
}

double VLGeometry::distanceOfPoint_fromLine(Point p, Point a, Point b)
{
    Point foot = std::hypot(b.x - a.x, b.y - a.y) < 0.0001 ? a : lineFoot(p, a, b);
    return std::hypot(VLSinglePrecision(p.x - foot.x), VLSinglePrecision(p.y - foot.y));
}

bool VLGeometry::angle_toRun_rise(double degrees, int& run, int& rise)
{
    if (std::fabs(degrees) < 0.01) {
        run = 0;
        rise = 1;
        return true;
    }
    double slope = std::tan(degrees * VLRadiansPerDegree);
    double target = std::fabs(slope);
    bool found = false;
    run = 1;
    rise = 1;
    // Near vertical, the search would only count run up for as long as the slope is large;
    // no ratio of a rise below 1000 can be found there anyway.
    if (!(target < 1000.0)) rise = 1000;
    while (rise < 1000) {
        double ratio = static_cast<double>(run) / rise;
        double error = std::fabs(target - ratio);
        if (error < 0.0001) {
            found = true;
            break;
        }
        if (ratio > target)
            rise += error > 0.6 / (rise + 1) ? 2 : 1;
        else
            ++run;
    }
    if (slope < 0) run = -run;
    return found;
}
