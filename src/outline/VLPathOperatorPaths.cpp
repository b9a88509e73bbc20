#include "outline/VLPathOperator.h"

#include "outline/VLPath.h"

bool VLPathOperator::removeOverlapPaths(std::vector<std::shared_ptr<VLShape>>& shapes)
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
    auto paths = pathsFromSegments(std::move(*remaining));
    if (paths.empty()) return false;
    shapes.assign(paths.begin(), paths.end());
    shapes.insert(shapes.end(), kept.begin(), kept.end());
    return true;
}
