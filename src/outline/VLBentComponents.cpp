#include "geometry/VLGeometry.h"
#include "geometry/VLPathSegment.h"
#include "geometry/VLPenProtocol.h"
#include "model/VLLayer.h"
#include "outline/VLAnchor.h"
#include "outline/VLCornerOutline.h"
#include "outline/VLHint.h"
#include "outline/VLPath.h"

#include <cmath>

namespace {

Point rotated(Point v, Point from, Point to)
{
    // The turn that takes the unit vector from onto the unit vector to.
    double cs = from.x * to.x + from.y * to.y, sn = from.x * to.y - from.y * to.x;
    return {v.x * cs - v.y * sn, v.x * sn + v.y * cs};
}

// A brush or segment glyph's shape laid along one segment of an outline: each point keeps its
// distance from the glyph's base line, measured from the point of the segment at the same fraction,
// across the segment's direction there. Points beyond the base's ends keep their offset from the
// segment's end, turned with it.
class SegmentBending {
public:
    SegmentBending(const VLPath::NormalizedCornerLayer& normalized, const VLNodeSegment& in)
        : _segment(segmentOf(in)), _start(baseEnd(normalized, "start", false)), _end(baseEnd(normalized, "end", true))
    {
        _baseDirection = VLUnitVector({_end.x - _start.x, _end.y - _start.y});
        if (std::isnan(_baseDirection.x)) _baseDirection = {1, 0};
    }

    bool isUsable() const
    {
        return std::isfinite(_segment.normalAtTime(0).x) && _segment.normalAtTime(0).x != VLUnsetValue &&
               std::isfinite(_segment.normalAtTime(1).x) && _segment.normalAtTime(1).x != VLUnsetValue;
    }

    Point bend(Point p) const
    {
        double t = 0;
        Point foot = VLNearestPointUnlimited(p, _start, _end, &t);
        if (t < 0.0001) return beyond(p, _start, 0);
        if (t > 0.999) return beyond(p, _end, 1);
        Point direction = _segment.normalAtTime(t);
        Point on = _segment.pointAtTime(t);
        double side = (_end.x - _start.x) * (p.y - _start.y) - (_end.y - _start.y) * (p.x - _start.x);
        double distance = VLDistanceF(p, foot) * (side < 0 ? -1 : 1);
        return {on.x - direction.y * distance, on.y + direction.x * distance};
    }

    void bendPath(VLPath& path) const
    {
        for (const auto& node : path.nodes()) node->setPositionFast(bend(node->position()));
    }

private:
    static VLPathSegment segmentOf(const VLNodeSegment& in)
    {
        const auto& p = in.points;
        if (in.count == 4) return VLPathSegment::initWithCurvePoint1_point2_point3_point4_options(p[3], p[2], p[1], p[0], 0);
        return VLPathSegment::initWithLinePoint1_point2_options(p[1], p[0], 0);
    }

    // The base runs from the zero point to the advance width, or the other way for a mirrored
    // glyph, unless anchors say otherwise.
    static Point baseEnd(const VLPath::NormalizedCornerLayer& normalized, const char* name, bool isEnd)
    {
        if (auto anchor = normalized.layer->anchorForName(name)) return anchor->position();
        bool atWidth = isEnd != normalized.reversed;
        return normalized.transform.transformPoint({atWidth ? normalized.layer->width() : 0.0, 0.0});
    }

    Point beyond(Point p, Point baseEnd, double t) const
    {
        Point offset = rotated({p.x - baseEnd.x, p.y - baseEnd.y}, _baseDirection, _segment.normalAtTime(t));
        Point on = _segment.pointAtTime(t);
        return {on.x + offset.x, on.y + offset.y};
    }

    VLPathSegment _segment;
    Point _start;
    Point _end;
    Point _baseDirection;
};

std::shared_ptr<VLPath> bentPath(const VLLayer& cornerLayer, const VLHint& hint, const VLNodeSegment& in, bool closed)
{
    if (in.count != 2 && in.count != 4) return nullptr;
    auto normalized = VLPath::normalizedCornerLayer_scale(cornerLayer, hint.scale());
    if (!normalized) return nullptr;
    auto path = VLPath::firstPathOfLayer_closed(*normalized->layer, closed);
    SegmentBending bending(*normalized, in);
    if (!path || !bending.isUsable()) return nullptr;
    bending.bendPath(*path);
    return path;
}

} // namespace

// A brush is a contour of its own over the segment, which it takes out of the contour it sits on:
// that contour carries on from the segment's end.
bool VLPath::drawBrushWithPen_cornerLayer_cornerHint(CornerDrawing& drawing, const VLLayer& cornerLayer,
                                                     const VLHint& hint) const
{
    auto brush = bentPath(cornerLayer, hint, drawing.in, true);
    if (!brush) return false;
    double grid = gridLength();
    // The segment into the first node closes the contour: the brush comes then, and once.
    if (!drawing.isFirst) {
        brush->transformFast_round(AffineTransform(), grid);
        brush->drawInPen(drawing.pen);
    }
    Point end = VLRoundToGrid(drawing.in.points[0], grid);
    if (drawing.isFirst && drawing.pen.respondsToBeginPath()) {
        drawing.pen.beginPath();
        drawing.pen.setLastPoint(end);
    } else {
        drawing.pen.moveTo(end);
    }
    return true;
}

bool VLPath::drawSegmentComponentWithPen_cornerLayer_cornerHint(CornerDrawing& drawing, const VLLayer& cornerLayer,
                                                                const VLHint& hint) const
{
    auto bent = bentPath(cornerLayer, hint, drawing.in, false);
    if (!bent) return false;
    // The bent path stands in for the segment: nothing of the segment itself is drawn.
    VLNodeSegment replaced{{bent->positionAtIndex(0)}, 2};
    CornerDrawing emission{drawing.pen, replaced, drawing.out, drawing.isFirst, drawing.extraPaths};
    drawCornerOutline(emission, *bent, VLCornerPlacement{}, gridLength());
    return true;
}
