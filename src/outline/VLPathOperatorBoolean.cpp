#include "outline/VLPathOperator.h"

#include "model/VLLayer.h"
#include "outline/VLHint.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"

namespace {

// Cut by themselves, without doubled segments and what lies inside their own ink.
void clean(VLSegments& segments)
{
    VLPathOperator::addIntersections(segments);
    VLPathOperator::removeOverlappingSegments(segments);
    VLPathOperator::removeInnerSegments(segments);
}

} // namespace

void VLPathOperator::removeCornersFromPaths(const std::vector<std::shared_ptr<VLPath>>& paths)
{
    for (const auto& path : paths) {
        auto owner = path ? path->layer() : nullptr;
        if (!owner) continue;
        VLLayer::Hints hints = owner->hints();
        for (const auto& hint : hints) {
            if (!hint->isCorner() || !hint->updateIndexes()) continue;
            auto node = std::dynamic_pointer_cast<VLNode>(hint->originNode());
            if (node && node->parentPath() == path) owner->removeHint(hint);
        }
    }
}

std::vector<std::shared_ptr<VLPath>> VLPathOperator::decomposeShapes(const std::vector<std::shared_ptr<VLShape>>& shapes)
{
    std::vector<std::shared_ptr<VLPath>> paths;
    for (const auto& shape : shapes) {
        if (auto path = std::dynamic_pointer_cast<VLPath>(shape)) paths.push_back(path);
        if (!shape || shape->shapeType() != VLShapeType::Component) continue;
        // A component finds the layer it shows by its own layer's master, in its own glyph's font.
        auto temporary = VLLayer::init();
        if (auto owner = shape->layer()) {
            temporary->setLayerId(owner->layerId());
            temporary->setAssociatedMasterId(owner->associatedMasterId());
            temporary->setParent(owner->glyph());
        }
        temporary->addShapeFast(shape->copy());
        temporary->decomposeComponents();
        for (const auto& drawn : temporary->shapes())
            if (auto path = std::dynamic_pointer_cast<VLPath>(drawn)) paths.push_back(path);
    }
    return paths;
}

void VLPathOperator::subtractPaths_from_keepOverlaps(const std::vector<std::shared_ptr<VLShape>>& shapes,
                                                     std::vector<std::shared_ptr<VLPath>>& target, bool keepOverlaps)
{
    if (shapes.empty()) return;
    auto paths = decomposeShapes(shapes);
    if (!keepOverlaps) removeCornersFromPaths(target);
    VLSegments removed = segmentsFromPaths(paths), kept = segmentsFromPaths(target);
    if (removed.size() + kept.size() < 2) return;
    clean(removed);
    if (!keepOverlaps) {
        addIntersections(kept);
        removeInnerSegments(kept);
        removeOverlappingSegments(kept);
    }
    addIntersections_otherSegments(kept, removed);
    VLSegments removedWhole = removed;
    // The cut's edges inside the target become the target's new edges, the other way round.
    removeOuterSegments_originalSegments(removed, kept);
    removeInnerSegments_originalSegments(kept, removedWhole);
    removeOverlappingSegments_otherSegments(kept, removedWhole);
    for (auto& segment : removed) segment.reverse();
    kept.insert(kept.end(), removed.begin(), removed.end());
    std::vector<Point> startingPoints = startingPointsFromPaths(target);
    std::vector<Point> cutStarts = startingPointsFromPaths(paths);
    startingPoints.insert(startingPoints.end(), cutStarts.begin(), cutStarts.end());
    target = pathsFromSegments_startingPoints_italicAngle(std::move(kept), startingPoints, 0);
}

bool VLPathOperator::intersectPaths_with(const std::vector<std::shared_ptr<VLPath>>& paths,
                                         std::vector<std::shared_ptr<VLPath>>& target)
{
    removeCornersFromPaths(paths);
    VLSegments first = segmentsFromPaths(paths), second = segmentsFromPaths(target);
    if (first.size() < 2 || second.size() < 2) return false;
    clean(first);
    clean(second);
    addIntersections_otherSegments(first, second);
    VLSegments firstWhole = first;
    removeOuterSegments_originalSegments(first, second);
    removeOuterSegments_originalSegments(second, firstWhole);
    // Edges both outlines share would be there twice.
    removeOverlappingSegments_otherSegments(second, first);
    first.insert(first.end(), second.begin(), second.end());
    if (first.empty()) return false;
    target = pathsFromSegments(std::move(first));
    return true;
}
