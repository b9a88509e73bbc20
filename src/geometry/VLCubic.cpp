#include "geometry/VLCubic.h"

#include "geometry/VLGeometry.h"
#include "platform/QuadraticRoots.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace {

constexpr int LengthSteps = 10;
using BernsteinTable = std::array<std::array<double, 4>, LengthSteps + 1>;

BernsteinTable makeBernsteinTable()
{
    BernsteinTable table{};
    for (int k = 0; k <= LengthSteps; ++k) {
        double t = static_cast<double>(k) / LengthSteps;
        double mt = 1.0 - t;
        table[k] = {mt * mt * mt, 3 * mt * mt * t, 3 * mt * t * t, t * t * t};
    }
    return table;
}

Point blossom(const VLCubic& c, double t1, double t2, double t3)
{
    Point a = VLLerp(c[0], c[1], t1), b = VLLerp(c[1], c[2], t1), d = VLLerp(c[2], c[3], t1);
    Point e = VLLerp(a, b, t2), f = VLLerp(b, d, t2);
    return VLLerp(e, f, t3);
}

void foldExtrema(const VLCubic& c, double (*coordinate)(Point), double& lo, double& hi)
{
    double times[2];
    int count = VLCubicExtremaTimes(coordinate(c[0]), coordinate(c[1]), coordinate(c[2]), coordinate(c[3]), 0.0, 1.0,
                                    times);
    for (int i = 0; i < count; ++i) {
        double value = coordinate(VLCubicPoint(c[0], c[1], c[2], c[3], times[i]));
        lo = std::min(lo, value);
        hi = std::max(hi, value);
    }
}

double xOf(Point p)
{
    return p.x;
}

double yOf(Point p)
{
    return p.y;
}

bool inRootRange(long double t)
{
    return t >= -0.0001L && t <= 1.0001L;
}

int keepRoots(const long double* candidates, int n, double roots[3])
{
    int kept = 0;
    for (int i = 0; i < n; ++i)
        if (inRootRange(candidates[i])) roots[kept++] = static_cast<double>(candidates[i]);
    return kept;
}

} // namespace

VLCubic VLCubicSubcurve(const VLCubic& cubic, double t0, double t1)
{
    return {blossom(cubic, t0, t0, t0), blossom(cubic, t0, t0, t1), blossom(cubic, t0, t1, t1),
            blossom(cubic, t1, t1, t1)};
}

void VLCubicBounds(const VLCubic& c, double& minX, double& minY, double& maxX, double& maxY)
{
    minX = std::min(c[0].x, c[3].x);
    maxX = std::max(c[0].x, c[3].x);
    minY = std::min(c[0].y, c[3].y);
    maxY = std::max(c[0].y, c[3].y);
    auto inside = [&](Point p) { return p.x >= minX && p.x <= maxX && p.y >= minY && p.y <= maxY; };
    if (inside(c[1]) && inside(c[2])) return;
    foldExtrema(c, xOf, minX, maxX);
    foldExtrema(c, yOf, minY, maxY);
}

double VLCubicLength(const VLCubic& c)
{
    // Built once, so that a length costs no more than eleven weighted sums.
    static const BernsteinTable table = makeBernsteinTable();
    double length = 0.0;
    Point previous = c[0];
    for (int k = 1; k <= LengthSteps; ++k) {
        const auto& w = table[k];
        Point p = {w[0] * c[0].x + w[1] * c[1].x + w[2] * c[2].x + w[3] * c[3].x,
                   w[0] * c[0].y + w[1] * c[1].y + w[2] * c[2].y + w[3] * c[3].y};
        length += VLDistanceF(previous, p);
        previous = p;
    }
    return length;
}

double VLCubicTimeAtLength(double length, const VLCubic& cubic)
{
    double total = VLCubicLength(cubic);
    double target = std::min(length, total);
    if (!(target > 0.0)) return 0.0;
    double t = target / total;
    for (int step = 0; step < 4; ++step) t = (t + target * t / VLCubicLength(VLCubicSubcurve(cubic, 0.0, t))) * 0.5;
    return t;
}

std::vector<double> VLCubicInflections(const VLCubic& c)
{
    Point d1 = {c[1].x - c[0].x, c[1].y - c[0].y};
    Point d2 = {(c[2].x - c[1].x) - d1.x, (c[2].y - c[1].y) - d1.y};
    Point d3 = {((c[3].x - c[2].x) - d1.x) - 2 * d2.x, ((c[3].y - c[2].y) - d1.y) - 2 * d2.y};
    double A = d3.y * d1.x - d3.x * d1.y;
    double B = d2.y * d1.x - d2.x * d1.y;
    double C = d3.y * d2.x - d3.x * d2.y;
    std::vector<double> candidates;
    if (std::fabs(C) <= 1e-05) {
        if (A != 0.0) candidates.push_back(-B / A);
    } else {
        double D = A * A - 4 * B * C;
        if (std::fabs(D) < 1e-06) {
            candidates.push_back(-A / (2 * C));
        } else if (D > 0) {
            double root = std::sqrt(D);
            candidates.push_back((-A - root) / (2 * C));
            candidates.push_back((root - A) / (2 * C));
        }
    }
    std::erase_if(candidates, [](double t) { return !(t > 0.001 && t < 0.99); });
    std::sort(candidates.begin(), candidates.end());
    return candidates;
}

double VLCubicCurvature(const VLCubic& c, double t)
{
    double mt = 1.0 - t;
    Point d1 = {3 * (mt * mt * (c[1].x - c[0].x) + 2 * mt * t * (c[2].x - c[1].x) + t * t * (c[3].x - c[2].x)),
                3 * (mt * mt * (c[1].y - c[0].y) + 2 * mt * t * (c[2].y - c[1].y) + t * t * (c[3].y - c[2].y))};
    Point d2 = {6 * (mt * (c[2].x - 2 * c[1].x + c[0].x) + t * (c[3].x - 2 * c[2].x + c[1].x)),
                6 * (mt * (c[2].y - 2 * c[1].y + c[0].y) + t * (c[3].y - 2 * c[2].y + c[1].y))};
    double speed = d1.x * d1.x + d1.y * d1.y;
    double denominator = speed * speed * speed;
    if (denominator == 0.0) return std::numeric_limits<double>::max();
    double cross = d1.x * d2.y - d1.y * d2.x;
    return cross * cross / denominator;
}

bool VLHandlesNearChord(const VLCubic& c)
{
    return VLGeometry::distanceOfPoint_fromLine(c[1], c[0], c[3]) < 0.6 &&
           VLGeometry::distanceOfPoint_fromLine(c[2], c[0], c[3]) < 0.6;
}

int VLRootsOfCubic(double a, double b, double c, double d, double roots[3])
{
    long double A = a, B = b, C = c, D = d;
    // A leading factor that is noise beside the others (a curve that is nearly a parabola)
    // would throw the closed form off by far more than it adds: the quadratic is the answer.
    long double others = std::max({std::fabs(B), std::fabs(C), std::fabs(D)});
    if (std::fabs(A) < 1e-12L || std::fabs(A) < 1e-9L * others) {
        long double candidates[2];
        VLSolveQuadratic(B, C, D, candidates[0], candidates[1]);
        return keepRoots(candidates, 2, roots);
    }
    // Depressed cubic x^3 + p x + q with t = x - B / 3A.
    long double b3 = B / (3 * A);
    long double p = C / A - B * b3 / A;
    long double q = 2 * b3 * b3 * b3 - b3 * C / A + D / A;
    long double discriminant = q * q / 4 + p * p * p / 27;
    long double candidates[3];
    int n;
    if (discriminant > 0) {
        long double root = std::sqrt(discriminant);
        candidates[0] = std::cbrt(-q / 2 + root) + std::cbrt(-q / 2 - root) - b3;
        n = 1;
    } else if (p == 0) {
        candidates[0] = -b3;
        n = 1;
    } else {
        long double m = 2 * std::sqrt(-p / 3);
        long double cosine = std::clamp(3 * q / (p * m), -1.0L, 1.0L);
        long double theta = std::acos(cosine) / 3;
        for (int k = 0; k < 3; ++k) candidates[k] = m * std::cos(theta - 2 * std::numbers::pi_v<long double> * k / 3) - b3;
        n = 3;
    }
    // The closed form loses digits when the roots lie far apart; two Newton steps on the
    // original polynomial bring them back.
    for (int i = 0; i < n; ++i)
        for (int step = 0; step < 2; ++step) {
            long double t = candidates[i];
            long double value = ((A * t + B) * t + C) * t + D, slope = (3 * A * t + 2 * B) * t + C;
            if (slope != 0) candidates[i] = t - value / slope;
        }
    return keepRoots(candidates, n, roots);
}

void VLQuadraticRunSplit(const Point* points, int count, double pathTime, Point& before, Point& onCurve, Point& after)
{
    double whole = std::floor(pathTime);
    if (!(whole >= 1.0 && whole < count - 1)) {
        onCurve = {VLUnsetValue, 0.0};
        return;
    }
    int index = static_cast<int>(whole);
    double t = pathTime - whole;
    Point off = points[index];
    Point start = index == 1 ? points[0] : VLLerp(points[index - 1], off, 0.5);
    Point end = index == count - 2 ? points[count - 1] : VLLerp(off, points[index + 1], 0.5);
    before = VLLerp(start, off, t);
    after = VLLerp(off, end, t);
    onCurve = VLLerp(before, after, t);
}
