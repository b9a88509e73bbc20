#include "geometry/VLGeometry.h"
#include "model/VLLayer.h"
#include "outline/VLAnchor.h"
#include "outline/VLCornerOutline.h"
#include "outline/VLHint.h"
#include "outline/VLPath.h"

#include <cmath>

namespace {

constexpr uint32_t capFitsStrokeOption = 8;

bool isNaN(Point p)
{
    return std::isnan(p.x) || std::isnan(p.y);
}

Point minus(Point a, Point b)
{
    return {a.x - b.x, a.y - b.y};
}

Point middle(Point a, Point b)
{
    return {(a.x + b.x) / 2, (a.y + b.y) / 2};
}

// The points of a cap that sit on the stroke's two nodes: its anchors, or for a cap drawn before
// there were anchors, the ends of its path.
bool capNodes(const VLLayer& layer, const VLPath& path, Point& node1, Point& node2)
{
    auto first = layer.anchorForName("node1"), second = layer.anchorForName("node2");
    if (!first) {
        node1 = path.positionAtIndex(path.count() - 1);
        node2 = path.positionAtIndex(0);
        return true;
    }
    if (!second) return false;
    node1 = first->position();
    node2 = second->position();
    return true;
}

// A cap whose width must fit the stroke is widened once, in its hint.
void fitCapWidth(VLHint& hint, const VLLayer& layer, const VLPath::CornerDrawing& drawing)
{
    auto path = VLPath::firstPathOfLayer_closed(layer, false);
    Point node1, node2;
    if (!(hint.options() & capFitsStrokeOption) || !path || !capNodes(layer, *path, node1, node2)) return;
    double stroke = VLDistanceF(drawing.in.points[0], drawing.out.points[0]);
    double cap = VLDistanceF(node1, node2);
    if (cap > 0.1 && std::fabs(hint.scale().x - stroke / cap) > 0.001) hint.setScale({stroke / cap, hint.scale().y});
}

Point anchorDirection(const VLLayer& layer, const char* name, Point from, Point fallback)
{
    auto anchor = layer.anchorForName(name);
    return VLUnitVector(minus(anchor ? anchor->position() : fallback, from));
}

// The cap's point that goes on the stroke, and the stroke's point it goes on: a side's node for
// the alignments along a side, the middles for the others.
void referencePoints(uint8_t alignment, Point nodeIn, Point nodeOut, Point j, Point k, Point& cap, Point& stroke)
{
    if (alignment == 0) {
        cap = nodeIn, stroke = j;
    } else if (alignment == 1) {
        cap = nodeOut, stroke = k;
    } else {
        cap = middle(nodeIn, nodeOut), stroke = middle(j, k);
    }
}

AffineTransform placedThrough(Point shift, const AffineTransform& smoothing, const AffineTransform& orientation)
{
    AffineTransform placed;
    placed.translateXBy_yBy(shift.x, shift.y);
    placed.prependTransform(smoothing);
    placed.prependTransform(orientation);
    return placed;
}

} // namespace

// A cap glyph stands upright with node1 left of node2, and its path runs over the end of the
// stroke as the outline does round a stem: the stroke arrives at node2 and leaves from node1.
bool VLPath::drawCapWithPen_cornerLayer_cornerHint(CornerDrawing& drawing, const VLLayer& cornerLayer,
                                                   VLHint& hint) const
{
    if (drawing.isFirst || drawing.in.count < 2 || drawing.out.count < 2) return false;
    fitCapWidth(hint, cornerLayer, drawing);
    auto normalized = normalizedCornerLayer_scale(cornerLayer, hint.scale());
    if (!normalized) return false;
    const VLLayer& layer = *normalized->layer;
    auto cap = firstPathOfLayer_closed(layer, false);
    Point nodeOut, nodeIn;
    if (!cap || !capNodes(layer, *cap, nodeOut, nodeIn)) return false;
    if (normalized->reversed) std::swap(nodeOut, nodeIn);
    long last = cap->count() - 1;
    Point a = cap->positionAtIndex(0), b = cap->positionAtIndex(last);

    // Without a side anchor away from the node, the cap's own end says where the stroke's side runs.
    Point cIn = anchorDirection(layer, "left", nodeIn, a);
    if (isNaN(cIn)) {
        Point along = cap->unitVectorAtNodeAtIndex_direction(0, 1);
        cIn = {-along.x, -along.y};
    }
    Point cOut = anchorDirection(layer, "right", nodeOut, b);
    if (isNaN(cOut)) cOut = cap->unitVectorAtNodeAtIndex_direction(last, -1);
    Point j = drawing.in.points[0], k = drawing.out.points[0];
    VLCornerFrame frame{cIn,
                        cOut,
                        nodeIn,
                        nodeOut,
                        drawing.in.directionAtReach(VLDistanceF(a, nodeIn)),
                        drawing.out.directionAtReach(VLDistanceF(b, nodeOut)),
                        minus(nodeOut, nodeIn),
                        minus(k, j)};
    for (Point v : {cIn, cOut, frame.nIn, frame.nOut})
        if (isNaN(v) || v.x == VLUnsetValue) return false;
    Point pIn = cap->unitVectorAtNodeAtIndex_direction(0, 1), pOut = cap->unitVectorAtNodeAtIndex_direction(last, -1);
    if (pIn.x == VLUnsetValue || pOut.x == VLUnsetValue) return false;

    frame.nIn = drawing.in.adjustedDirectionAtReach(VLDistanceF(nodeIn, a), frame.nIn);
    frame.nOut = drawing.out.adjustedDirectionAtReach(VLDistanceF(nodeOut, b), frame.nOut);
    AffineTransform orientation = VLOrientationTransform(hint.alignment(), hint.type(), frame);
    Point inEnd = orientation.transformPoint(a), outEnd = orientation.transformPoint(b);
    AffineTransform smoothIn = VLSmoothingTransform(inEnd, frame.nIn, VLTransformDirection(orientation, cIn),
                                                    VLTransformDirection(orientation, pIn));
    AffineTransform smoothOut = VLSmoothingTransform(outEnd, frame.nOut, VLTransformDirection(orientation, cOut),
                                                     VLTransformDirection(orientation, pOut));
    Point capPoint, strokePoint;
    referencePoints(hint.alignment(), nodeIn, nodeOut, j, k, capPoint, strokePoint);
    Point placedCapPoint = orientation.transformPoint(capPoint);
    Point shift = minus(strokePoint, placedCapPoint);
    VLCornerPlacement placement{placedThrough(shift, {}, orientation), placedThrough(shift, smoothIn, orientation),
                                placedThrough(shift, smoothOut, orientation)};
    if (!placement.isFinite()) return false;

    drawing.in.shortenTo(placement.start.transformPoint(a));
    drawing.out.shortenTo(placement.end.transformPoint(b));
    double grid = gridLength();
    drawCornerOutline(drawing, *cap, placement, grid);
    collectExtraShapes(layer, placement.inside, grid, drawing.extraPaths);
    return true;
}
