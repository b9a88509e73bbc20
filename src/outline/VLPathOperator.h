#pragma once

#include "geometry/VLPathSegment.h"

#include <memory>
#include <optional>
#include <vector>

class VLPath;
class VLPenProtocol;
class VLShape;

using VLSegments = std::vector<VLPathSegment>;

// The segments of a list by horizontal bands, so that the winding test of one segment looks only
// at those that reach its level: the test runs for every segment of the list.
class VLWindingIndex {
public:
    explicit VLWindingIndex(const VLSegments& segments);
    // VLPathOperator::segmentIsOutside against the indexed list.
    bool segmentIsOutside(const VLPathSegment& segment) const;

private:
    size_t bandOf(double y) const;

    const VLSegments& _segments;
    double _low = 0;
    double _bandHeight = 0;
    std::vector<std::vector<size_t>> _bands;
};

// Outlines taken apart into segments and cut against each other, so that overlapping contours
// can be merged, subtracted and intersected segment by segment.
class VLPathOperator {
public:
    // The segments of the paths as their plain walks give them, clockwise contours marked.
    static VLSegments segmentsFromPaths(const std::vector<std::shared_ptr<VLPath>>& paths);
    // Cuts the segments at their crossings, so that afterwards they touch only at their ends. A
    // cut segment keeps its first part in place and adds the rest to the end of the list.
    static void addIntersections(VLSegments& segments);
    // The same between two lists: every segment of a against every segment of b.
    static void addIntersections_otherSegments(VLSegments& a, VLSegments& b);
    // The segment takes q2, q3 and q4 as its controls and end; a copy of it from q4 over r2 and r3
    // to the segment's old end joins the list.
    static void divideAndAddTo_segment_Q2_Q3_Q4_R2_R3(VLSegments& list, size_t segment, Point q2, Point q3, Point q4,
                                                      Point r2, Point r3);
    // The indexes of the segments whose first (or last) point lies within 0.001 of the point.
    static std::vector<size_t> segments_thatStartAtPoint(const VLSegments& segments, Point point);
    static std::vector<size_t> segments_thatEndAtPoint(const VLSegments& segments, Point point);

    // The outline of the union of closed paths: contours running counterclockwise (y up) are ink,
    // clockwise ones inside them are counters. Components, open paths and paths with TrueType
    // curves are kept as they are, after the new paths; a closed path with TrueType curves
    // refuses the whole operation. False, with the shapes as they were, when nothing comes out.
    // The italic angle slants the order in which new contours start.
    static bool removeOverlapPaths(std::vector<std::shared_ptr<VLShape>>& shapes)
    {
        return removeOverlapPaths_italicAngle(shapes, 0);
    }
    static bool removeOverlapPaths_italicAngle(std::vector<std::shared_ptr<VLShape>>& shapes, double italicAngle);
    // The union of the closed paths drawn into the pen; false when nothing comes out.
    static bool removeOverlapPaths_intoPen_italicAngle(const std::vector<std::shared_ptr<VLPath>>& paths,
                                                        VLPenProtocol& pen, double italicAngle);
    // Where the paths' contours start, so that the results can start there too.
    static std::vector<Point> startingPointsFromPaths(const std::vector<std::shared_ptr<VLPath>>& paths);
    // Cut, then without loose ends of open paths, pairs that cancel, segments with ink on both
    // sides and doubled segments. Nothing when cutting multiplied the segments past twenty times:
    // so many crossings mean a broken outline, not a design.
    static std::optional<VLSegments> removeOverlapSegments(const VLSegments& segments);
    static void removeOpenEnds(VLSegments& segments);
    static void removeCancelingSegments(VLSegments& segments);
    static void removeOverlappingSegments(VLSegments& segments);
    static void removeInnerSegments(VLSegments& segments);
    // Whether no ink lies just right of the segment, by the windings of the list there.
    static bool segmentIsOutside(const VLPathSegment& segment, const VLSegments& list);
    static void removeInnerSegments_originalSegments(VLSegments& segments, const VLSegments& other);
    static void removeOuterSegments_originalSegments(VLSegments& segments, const VLSegments& other);
    static void removeOverlappingSegments_otherSegments(VLSegments& segments, const VLSegments& other);
    // Takes the corner, cap, brush and segment components off the paths' nodes, in the paths'
    // layers: those nodes are about to be replaced by the new outline's.
    static void removeCornersFromPaths(const std::vector<std::shared_ptr<VLPath>>& paths);
    // The paths of the shapes, each component replaced by the paths it shows in its layer.
    static std::vector<std::shared_ptr<VLPath>> decomposeShapes(const std::vector<std::shared_ptr<VLShape>>& shapes);
    // The target's outline without what the shapes cover; with keepOverlaps the target's own
    // overlaps, and its corners, stay as they are. The target's paths are replaced.
    static void subtractPaths_from_keepOverlaps(const std::vector<std::shared_ptr<VLShape>>& shapes,
                                                std::vector<std::shared_ptr<VLPath>>& target, bool keepOverlaps);
    // What both sets of paths cover, in place of the second set; false when either has nothing
    // to cut, or nothing is common to both. The first set's paths lose their corners.
    static bool intersectPaths_with(const std::vector<std::shared_ptr<VLPath>>& paths,
                                    std::vector<std::shared_ptr<VLPath>>& target);
    // Chains the segments into paths, closed where a chain comes back to its start; a chain
    // starts at one of the starting points where it can.
    static std::vector<std::shared_ptr<VLPath>> pathsFromSegments(VLSegments segments)
    {
        return pathsFromSegments_startingPoints_italicAngle(std::move(segments), {}, 0);
    }
    static std::vector<std::shared_ptr<VLPath>> pathsFromSegments_startingPoints_italicAngle(
        VLSegments segments, const std::vector<Point>& startingPoints, double italicAngle);
};
