#pragma once

#include "platform/Geometry.h"

#include <array>
#include <cstdint>

// The segment that ends at a node, from the node backward (in), or starts there, forward (out):
// count 4 a cubic, 2 a line or the step to a quadratic run, 1 a quadratic node, 0 nothing. The
// walk keeps two of them on its stack, so that no node costs an allocation.
struct VLNodeSegment {
    std::array<Point, 4> points{};
    int16_t count = 0;

    // The unit vector from the node to where the segment is reach along its arc: the direction of
    // a curve as far as a corner reaches. x is NaN where there is none.
    Point directionAtReach(double reach) const;
    // directionAtReach for a curve that a corner may swallow: where the reach cannot be found on
    // it, or leaves less than 0.1 of it, the curve becomes the straight step to its far end. The
    // direction is kept where there is no point to measure it by.
    Point adjustedDirectionAtReach(double reach, Point direction);
    // Cuts the segment where it is as far from the node as end is, and ends it exactly at end; a
    // curve with too little left turns into a line.
    void shortenTo(Point end);

private:
    void becomeLine();
};
