#pragma once

#include "geometry/VLPathSegment.h"

#include <memory>
#include <vector>

class VLPath;

using VLSegments = std::vector<VLPathSegment>;

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
};
