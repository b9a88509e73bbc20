#pragma once

#include "platform/AffineTransform.h"
#include "platform/Geometry.h"

#include <cstdint>

enum class VLHintType : int8_t;

// Where the path of a corner or cap glyph goes on an outline: its inside keeps its shape, and each
// end is corrected so that the corner leaves it along the outline's segment there.
struct VLCornerPlacement {
    AffineTransform inside;
    AffineTransform start;
    AffineTransform end;
    bool isFinite() const;
};

// The legs of a corner glyph and of the node it is placed on, as unit vectors pointing away from
// the corner point; the corner's legs start at their origins (its side anchors, or the zero point).
// The chords are what a middle alignment turns onto each other.
struct VLCornerFrame {
    Point cIn, cOut;
    Point cOriginIn, cOriginOut;
    Point nIn, nOut;
    Point cChord, nChord;
};

// The turn that lays the corner on the node: along the incoming leg (alignment 0), the outgoing
// one (1), the chord (2), not at all (4), or a quarter turn (any other). A corner drawn for a
// left turn placed on a right turn is mirrored first, so that it cuts into the same side.
AffineTransform VLOrientationTransform(uint8_t alignment, VLHintType type, const VLCornerFrame& frame);
// The correction of one end of the placed corner, around its end point origin, that brings the
// corner's leg c onto the node's leg n: a turn, or a shear where the corner's path leaves that
// end (direction p) across the leg, which keeps the end on the leg.
AffineTransform VLSmoothingTransform(Point origin, Point n, Point c, Point p);
// Sign of the cross product, a zero counting as positive: which way a corner turns.
inline bool VLTurnsLeft(Point a, Point b)
{
    return a.x * b.y - a.y * b.x >= 0;
}
// A unit vector in single precision, as the thresholds of the outline code expect; NaN for none.
Point VLUnitVector(Point v);
// The direction through the transform, without its translation.
Point VLTransformDirection(const AffineTransform& transform, Point direction);
