#include "outline/VLPathOperator.h"

#include "outline/VLPath.h"

std::vector<Point> VLPathOperator::startingPointsFromPaths(const std::vector<std::shared_ptr<VLPath>>& paths)
{
    // A closed path's contour starts, and ends, at its last node.
    std::vector<Point> points;
    for (const auto& path : paths)
        if (path && path->count() > 0) points.push_back(path->positionAtIndex(path->closed() ? path->count() - 1 : 0));
    return points;
}

bool VLPathOperator::removeOverlapPaths_intoPen_italicAngle(const std::vector<std::shared_ptr<VLPath>>& paths,
                                                           VLPenProtocol& pen, double italicAngle)
{
    auto remaining = removeOverlapSegments(segmentsFromPaths(paths));
    if (!remaining) return false;
    auto result = pathsFromSegments_startingPoints_italicAngle(std::move(*remaining), startingPointsFromPaths(paths),
                                                              italicAngle);
    for (const auto& path : result) path->drawSimpleInPen(pen);
    return !result.empty();
}

bool VLPathOperator::removeOverlapPaths_italicAngle(std::vector<std::shared_ptr<VLShape>>& shapes, double italicAngle)
{
    std::vector<std::shared_ptr<VLPath>> work;
    std::vector<std::shared_ptr<VLShape>> kept;
    for (const auto& shape : shapes) {
        auto path = std::dynamic_pointer_cast<VLPath>(shape);
        bool closed = path && path->closed();
        if (closed && path->hasTrueTypeCurve()) return false;
        if (closed)
            work.push_back(path);
        else
            kept.push_back(shape);
    }
    VLSegments segments = segmentsFromPaths(work);
    if (segments.size() < 2) return true;
    auto remaining = removeOverlapSegments(segments);
    if (!remaining) return false;
    auto paths = pathsFromSegments_startingPoints_italicAngle(std::move(*remaining), startingPointsFromPaths(work),
                                                              italicAngle);
    if (paths.empty()) return false;
    shapes.assign(paths.begin(), paths.end());
    shapes.insert(shapes.end(), kept.begin(), kept.end());
    return true;
}
