#pragma once

#include "platform/AffineTransform.h"
#include "platform/Geometry.h"

// Where the path of a corner or cap glyph goes on an outline: its inside keeps its shape, and each
// end is fitted so that the corner's leg lies along the outline's segment there.
struct VLCornerPlacement {
    AffineTransform inside;
    AffineTransform start;
    AffineTransform end;
    bool isFinite() const;
};

// The rotation around from that turns the unit vector c onto n and puts from on to; mirrored
// across c first where asked.
AffineTransform VLCornerTurn(Point from, Point c, Point to, Point n, bool mirror);
// The linear map around from that takes the unit vectors c1 and c2 onto n1 and n2 and puts from
// on to: a turn, a scale and a shear in one. Parallel c1 and c2 give the turn of c1 onto n1.
AffineTransform VLCornerLegFit(Point from, Point c1, Point c2, Point to, Point n1, Point n2);
// Sign of the cross product, a zero counting as positive: which way a corner turns.
inline bool VLTurnsLeft(Point a, Point b)
{
    return a.x * b.y - a.y * b.x >= 0;
}
// A unit vector in single precision, as the thresholds of the outline code expect; NaN for none.
Point VLUnitVector(Point v);
