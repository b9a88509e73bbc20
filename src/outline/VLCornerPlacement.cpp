#include "outline/VLCornerPlacement.h"

#include "geometry/VLGeometry.h"

#include <cmath>
#include <initializer_list>
#include <limits>

namespace {

// The map x' = a x + b y, y' = c x + d y around from, with from going to to.
AffineTransform linearAround(double a, double b, double c, double d, Point from, Point to)
{
    return AffineTransform({a, c, b, d, to.x - (a * from.x + b * from.y), to.y - (c * from.x + d * from.y)});
}

bool finite(const AffineTransform& t)
{
    const auto& m = t.transformStruct();
    for (double v : {m.m11, m.m12, m.m21, m.m22, m.tX, m.tY})
        if (!std::isfinite(v)) return false;
    return true;
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

AffineTransform VLCornerTurn(Point from, Point c, Point to, Point n, bool mirror)
{
    // The mirror across c keeps c and turns the sense of every angle to it.
    double ma = 1, mb = 0, mc = 0, md = 1;
    if (mirror) {
        ma = 2 * c.x * c.x - 1;
        mb = mc = 2 * c.x * c.y;
        md = 2 * c.y * c.y - 1;
    }
    double angle = std::atan2(c.x * n.y - c.y * n.x, c.x * n.x + c.y * n.y);
    double cs = std::cos(angle), sn = std::sin(angle);
    return linearAround(cs * ma - sn * mc, cs * mb - sn * md, sn * ma + cs * mc, sn * mb + cs * md, from, to);
}

AffineTransform VLCornerLegFit(Point from, Point c1, Point c2, Point to, Point n1, Point n2)
{
    double det = c1.x * c2.y - c1.y * c2.x;
    if (std::fabs(det) < 1e-6) return VLCornerTurn(from, c1, to, n1, false);
    // N C^-1, with C and N holding the vectors as columns.
    double i11 = c2.y / det, i12 = -c2.x / det, i21 = -c1.y / det, i22 = c1.x / det;
    return linearAround(n1.x * i11 + n2.x * i21, n1.x * i12 + n2.x * i22, n1.y * i11 + n2.y * i21,
                        n1.y * i12 + n2.y * i22, from, to);
}
