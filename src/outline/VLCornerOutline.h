#pragma once

#include "outline/VLCornerPlacement.h"
#include "outline/VLPath.h"

#include <memory>
#include <vector>

class VLLayer;

// Grid rounding of the walk: each coordinate to the nearest multiple of a grid of at least 0.1,
// halves away from zero, then to whole units for a grid above 1; a finer grid leaves the point.
Point VLRoundToGrid(Point p, double grid);

// The placed corner path into the pen: the incoming curve up to where the corner starts, then the
// corner's nodes, its ends through their fits. On the first node of a contour only the corner's
// end is given, as the contour's start; the corner itself closes the contour.
void drawCornerOutline(VLPath::CornerDrawing& drawing, const VLPath& cornerPath, const VLCornerPlacement& placement,
                       double grid);
// Copies of the corner layer's shapes after its first, placed with the transform, for the walk
// to draw after the contour.
void collectExtraShapes(const VLLayer& cornerLayer, const AffineTransform& transform, double grid,
                        std::vector<std::shared_ptr<VLPath>>& extraPaths);
