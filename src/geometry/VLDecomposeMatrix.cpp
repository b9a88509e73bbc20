#include "geometry/VLDecomposeMatrix.h"

#include <cmath>
#include <numbers>

namespace {

constexpr double tolerance = 0.0001;
constexpr double pi = std::numbers::pi;

struct Candidate {
    double sx = 1, sy = 1, rotation = 0, slantX = 0, slantY = 0;
};

Candidate shearModel(double a, double b, double c, double d, double det)
{
    Candidate k;
    if (std::fabs(a) > tolerance || std::fabs(b) > tolerance) {
        double r = std::sqrt(a * a + b * b);
        k.rotation = b > 0 ? std::acos(a / r) : -std::acos(a / r);
        k.sx = r;
        k.sy = det / r;
        k.slantX = std::atan((a * c + b * d) / (r * r));
    } else if (std::fabs(c) > tolerance || std::fabs(d) > tolerance) {
        double r = std::sqrt(c * c + d * d);
        k.rotation = pi / 2 - (d > 0 ? std::acos(-c / r) : -std::acos(c / r));
        k.sy = r;
        k.sx = det / r;
        k.slantY = std::atan((a * c + b * d) / (r * r));
    } else {
        return k;
    }
    if (k.rotation <= -pi) {
        if (k.sx > 0 && k.sy < 0) {
            k.sx = -k.sx;
            k.sy = -k.sy;
            k.rotation += pi;
        } else {
            k.rotation += 2 * pi;
        }
    }
    return k;
}

Candidate slantModel(double a, double b, double c, double d, double det)
{
    Candidate k;
    if (std::fabs(a) > tolerance) {
        k.slantY = std::atan(b / a);
        k.sy = det / a;
        k.slantX = std::atan(c / a);
        k.sx = a;
    } else if (std::fabs(b) > tolerance) {
        k.rotation = pi / 2;
        k.sx = b;
        k.slantX = std::atan(d / b);
        k.sy = det / b;
    } else {
        k.slantX = pi / 4;
        k.sx = c;
        k.sy = d;
    }
    if (k.sx < 0 && k.sy < 0) {
        k.sx = -k.sx;
        k.sy = -k.sy;
        k.rotation += pi;
    }
    if (k.sx * k.sy < 0) k.slantX = -k.slantX;
    return k;
}

double degrees(double radians)
{
    double d = radians * 180.0 / pi;
    return d > 180.0 ? d - 360.0 : d;
}

} // namespace

VLDecomposedMatrix VLDecomposeMatrix(const AffineTransformStruct& m)
{
    double det = m.m11 * m.m22 - m.m12 * m.m21;
    Candidate a = shearModel(m.m11, m.m12, m.m21, m.m22, det);
    Candidate b = slantModel(m.m11, m.m12, m.m21, m.m22, det);
    double u = std::fabs(a.slantX) + std::fabs(a.slantY);
    double v = std::fabs(b.slantX) + std::fabs(b.slantY);
    if (u < tolerance && v > tolerance) {
        v = 10000;
    } else if (u > tolerance && v < tolerance) {
        u = 10000;
    } else {
        u = u + std::fabs(a.rotation) + (std::fabs(a.sx) - std::fabs(a.sy));
        v = std::fabs(b.sx) - std::fabs(b.sy) + std::fabs(b.rotation) + v;
    }
    const Candidate& k = u < v ? a : b;
    return {k.sx, k.sy, degrees(k.rotation), degrees(k.slantX), degrees(k.slantY)};
}
