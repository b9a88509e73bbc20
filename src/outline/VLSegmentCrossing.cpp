#include "outline/VLSegmentCrossing.h"

#include "geometry/VLCubicIntersections.h"
#include "geometry/VLGeometry.h"
#include "platform/VLUnsetValue.h"

#include <algorithm>
#include <cmath>

double VLNearestTimeOnCubic(const VLCubic& cubic, Point p)
{
    constexpr int samples = 64;
    auto distance = [&](double t) { return VLSquareDistance(VLCubicPoint(cubic[0], cubic[1], cubic[2], cubic[3], t), p); };
    int best = 0;
    for (int k = 1; k <= samples; ++k)
        if (distance(k / double(samples)) < distance(best / double(samples))) best = k;
    double lo = std::max(0, best - 1) / double(samples);
    double hi = std::min(samples, best + 1) / double(samples);
    for (int step = 0; step < 40; ++step) {
        double a = lo + (hi - lo) / 3;
        double b = hi - (hi - lo) / 3;
        if (distance(a) < distance(b))
            hi = b;
        else
            lo = a;
    }
    return (lo + hi) / 2;
}

namespace {

bool lineCutIsNear(double r1, double r2)
{
    return r1 > 0.0001 && r2 > 0.0001 && (r1 < 0.3 || r2 < 0.3 || (r1 < 0.5 && r2 < 0.5));
}

bool curveCutIsNear(double f1, double f2)
{
    double low = std::min(f1, f2), high = std::max(f1, f2);
    return low > 0.0001 && ((high < 0.5) || (low < 0.3 && high < 0.99));
}

} // namespace

std::optional<VLCrossing> VLCrossingNearCorner(const VLCubic& in, const VLCubic& out, bool bothLines)
{
    if (bothLines) {
        Point x = VLLineIntersection(in[0], in[3], out[0], out[3]);
        if (x.x == VLUnsetValue) return std::nullopt;
        double inLength = std::sqrt(VLSquareDistance(in[0], in[3]));
        double outLength = std::sqrt(VLSquareDistance(out[0], out[3]));
        if (inLength == 0 || outLength == 0) return std::nullopt;
        double r1 = std::sqrt(VLSquareDistance(in[3], x)) / inLength;
        double r2 = std::sqrt(VLSquareDistance(out[0], x)) / outLength;
        if (!lineCutIsNear(r1, r2)) return std::nullopt;
        return VLCrossing{x, 1 - r1, r2};
    }
    std::optional<VLCrossing> nearest;
    for (Point x : VLCubicIntersections(in, out)) {
        double inTime = VLNearestTimeOnCubic(in, x);
        double outTime = VLNearestTimeOnCubic(out, x);
        if (!curveCutIsNear(1 - inTime, outTime)) continue;
        // The crossing closest to the step is the one that closes the overlap.
        if (!nearest || (1 - inTime) + outTime < (1 - nearest->inTime) + nearest->outTime)
            nearest = VLCrossing{x, inTime, outTime};
    }
    return nearest;
}
