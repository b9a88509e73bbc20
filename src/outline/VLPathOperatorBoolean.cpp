#include "outline/VLPathOperator.h"

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

void VLPathOperator::subtractPaths_from_keepOverlaps(const std::vector<std::shared_ptr<VLPath>>& paths,
                                                     std::vector<std::shared_ptr<VLPath>>& target, bool keepOverlaps)
{
    if (paths.empty()) return;
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
