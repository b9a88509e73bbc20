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

// The turn that keeps the corner's shape. Alignment 0 lays the corner along the incoming
// segment, 1 along the outgoing one, 2 splits the difference between them, 4 keeps the corner
// upright.
AffineTransform insideTurn(uint8_t alignment, Point cIn, Point cOut, Point node, Point nIn, Point nOut, bool mirror)
{
    Point origin{0, 0};
    if (alignment == 4) return VLCornerTurn(origin, {1, 0}, node, {1, 0}, false);
    if (alignment == 1) return VLCornerTurn(origin, cOut, node, nOut, mirror);
    if (alignment == 2) {
        Point c = VLUnitVector({cIn.x + cOut.x, cIn.y + cOut.y});
        Point n = VLUnitVector({nIn.x + nOut.x, nIn.y + nOut.y});
        if (!isNaN(c) && !isNaN(n)) return VLCornerTurn(origin, c, node, n, mirror);
    }
    return VLCornerTurn(origin, cIn, node, nIn, mirror);
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
    Point a = corner->positionAtIndex(0), b = corner->positionAtIndex(corner->count() - 1);
    Point left = anchorOr(layer, "left", a), right = anchorOr(layer, "right", b);
    Point cIn = VLUnitVector(left), cOut = VLUnitVector(right);
    Point nIn = drawing.in.directionAtReach(VLDistanceF({0, 0}, left));
    Point nOut = drawing.out.directionAtReach(VLDistanceF({0, 0}, right));
    if (isNaN(cIn) || isNaN(cOut) || isNaN(nIn) || isNaN(nOut)) return false;

    Point node = drawing.out.points[0];
    // A corner drawn for a left turn placed on a right turn is mirrored, so that it still cuts
    // into the same side.
    bool mirror = VLTurnsLeft(cOut, cIn) != VLTurnsLeft(nOut, nIn);
    AffineTransform fit = VLCornerLegFit({0, 0}, cIn, cOut, node, nIn, nOut);
    VLCornerPlacement placement{insideTurn(hint.alignment(), cIn, cOut, node, nIn, nOut, mirror), fit, fit};
    if (hint.alignment() == 0) placement.start = placement.inside;
    if (hint.alignment() == 1) placement.end = placement.inside;
    if (!placement.isFinite()) return false;

    drawing.in.shortenTo(placement.start.transformPoint(a));
    drawing.out.shortenTo(placement.end.transformPoint(b));
    double grid = gridLength();
    drawCornerOutline(drawing, *corner, placement, grid);
    // The first node draws again as the contour closes; its shapes come then.
    if (!drawing.isFirst) collectExtraShapes(layer, placement.inside, grid, drawing.extraPaths);
    return true;
}
