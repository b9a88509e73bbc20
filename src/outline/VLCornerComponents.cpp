#include "geometry/VLGeometry.h"
#include "model/VLLayer.h"
#include "outline/VLAnchor.h"
#include "outline/VLCornerOutline.h"
#include "outline/VLHint.h"
#include "outline/VLPath.h"

#include <cmath>

namespace {

bool isNaN(Point p)
{
    return std::isnan(p.x) || std::isnan(p.y);
}

Point anchorOr(const VLLayer& layer, const char* name, Point fallback)
{
    auto anchor = layer.anchorForName(name);
    return anchor ? anchor->position() : fallback;
}

Point minus(Point a, Point b)
{
    return {a.x - b.x, a.y - b.y};
}

// The direction of a curve at the node, measured where the corner, turned onto the node, will
// meet it; a curve the corner swallows becomes a line.
Point adjustCorner(Point cornerPoint, const VLCornerFrame& frame, const VLHint& hint, VLNodeSegment& segment,
                   bool incoming, Point pDirection)
{
    AffineTransform orientation = VLOrientationTransform(hint.alignment(), hint.type(), frame);
    Point end = orientation.transformPoint(cornerPoint);
    Point n = incoming ? frame.nIn : frame.nOut;
    Point c = VLTransformDirection(orientation, incoming ? frame.cIn : frame.cOut);
    AffineTransform smoothing = VLSmoothingTransform(end, n, c, VLTransformDirection(orientation, pDirection));
    return segment.adjustedDirectionAtReach(VLDistanceF({0, 0}, smoothing.transformPoint(end)), n);
}

// The shift that puts the meeting point of the placed corner's two legs, drawn through its ends,
// on the node, so that both ends lie on the node's legs.
Point legShift(Point inEnd, Point nIn, Point outEnd, Point nOut)
{
    Point crossing = VLLineIntersectionUnlimited(inEnd, {inEnd.x + nIn.x, inEnd.y + nIn.y}, outEnd,
                                                 {outEnd.x + nOut.x, outEnd.y + nOut.y});
    if (crossing.x == VLUnsetValue || isNaN(crossing)) return {0, 0};
    return {-crossing.x, -crossing.y};
}

AffineTransform placedThrough(const AffineTransform& move, const AffineTransform& smoothing,
                              const AffineTransform& orientation)
{
    AffineTransform placed = move;
    placed.prependTransform(smoothing);
    placed.prependTransform(orientation);
    return placed;
}

} // namespace

std::shared_ptr<VLPath> VLPath::firstPathOfLayer_closed(const VLLayer& layer, bool closed)
{
    auto path = std::dynamic_pointer_cast<VLPath>(layer.objectInShapesAtIndex(0));
    if (!path || path->closed() != closed || path->count() < 2) return nullptr;
    return path;
}

bool VLPath::drawCornerWithPen_cornerLayer_cornerHint(CornerDrawing& drawing, const VLLayer& cornerLayer,
                                                      const VLHint& hint) const
{
    if (drawing.in.count < 2 || drawing.out.count < 2) return false;
    auto normalized = normalizedCornerLayer_scale(cornerLayer, hint.scale());
    if (!normalized) return false;
    const VLLayer& layer = *normalized->layer;
    auto corner = firstPathOfLayer_closed(layer, false);
    if (!corner) return false;
    long last = corner->count() - 1;
    Point a = corner->positionAtIndex(0), b = corner->positionAtIndex(last);
    VLCornerFrame frame;
    frame.cOriginIn = anchorOr(layer, "left", {0, 0});
    frame.cOriginOut = anchorOr(layer, "right", {0, 0});
    frame.cIn = VLUnitVector(anchorOr(layer, "left", a));
    frame.cOut = VLUnitVector(anchorOr(layer, "right", b));
    frame.nIn = drawing.in.directionAtReach(VLDistanceF({0, 0}, a));
    frame.nOut = drawing.out.directionAtReach(VLDistanceF({0, 0}, b));
    Point pIn = corner->unitVectorAtNodeAtIndex_direction(0, 1);
    Point pOut = corner->unitVectorAtNodeAtIndex_direction(last, -1);
    if (isNaN(frame.cIn) || isNaN(frame.cOut) || isNaN(frame.nIn) || isNaN(frame.nOut) || pIn.x == VLUnsetValue ||
        pOut.x == VLUnsetValue)
        return false;
    frame.cChord = minus(frame.cOut, frame.cIn);
    frame.nChord = minus(frame.nOut, frame.nIn);
    if (drawing.in.count == 4) frame.nIn = adjustCorner(a, frame, hint, drawing.in, true, pIn);
    if (drawing.out.count == 4) frame.nOut = adjustCorner(b, frame, hint, drawing.out, false, pOut);
    frame.nChord = minus(frame.nOut, frame.nIn);

    AffineTransform orientation = VLOrientationTransform(hint.alignment(), hint.type(), frame);
    Point inEnd = orientation.transformPoint(a), outEnd = orientation.transformPoint(b);
    AffineTransform smoothIn = VLSmoothingTransform(inEnd, frame.nIn, VLTransformDirection(orientation, frame.cIn),
                                                    VLTransformDirection(orientation, pIn));
    AffineTransform smoothOut = VLSmoothingTransform(
        outEnd, frame.nOut, VLTransformDirection(orientation, frame.cOut), VLTransformDirection(orientation, pOut));
    Point shift{0, 0};
    if (hint.alignment() == 0 || hint.alignment() == 1) shift = legShift(inEnd, frame.nIn, outEnd, frame.nOut);
    Point node = drawing.out.points[0];
    AffineTransform move;
    move.translateXBy_yBy(node.x + shift.x, node.y + shift.y);
    VLCornerPlacement placement{placedThrough(move, {}, orientation), placedThrough(move, smoothIn, orientation),
                                placedThrough(move, smoothOut, orientation)};
    if (!placement.isFinite()) return false;

    drawing.in.shortenTo(placement.start.transformPoint(a));
    drawing.out.shortenTo(placement.end.transformPoint(b));
    double grid = gridLength();
    drawCornerOutline(drawing, *corner, placement, grid);
    // The first node draws again as the contour closes; its shapes come then.
    if (!drawing.isFirst) collectExtraShapes(layer, placement.inside, grid, drawing.extraPaths);
    return true;
}
