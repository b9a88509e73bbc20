#pragma once

#include "geometry/VLBasePen.h"
#include "geometry/VLPathSegment.h"

class BezierPath;

// Pen calls as the elements of a fillable path. Quadratics always arrive as cubics, and points
// with a NaN in them are replaced by fixed points, so that a broken outline draws an odd shape
// instead of poisoning the whole path.
class VLBezierPathPen : public VLBasePen {
public:
    explicit VLBezierPathPen(BezierPath& path) : _path(path) { setConvertQuadratic2Cubic(true); }

    BezierPath& path() const { return _path; }

    void moveTo(Point point) override;
    void lineTo(Point point) override;
    void curveTo_off1_off2(Point end, Point off1, Point off2) override;
    void closePath() override;
    // The path's current point; x = VLUnsetValue for an empty path.
    Point lastPoint() const override;
    // The path keeps its own current point.
    void setLastPoint(Point) override {}
    bool hasContent() const override;
    // Components reach a fillable path as outlines of their own, never through the pen.
    void addComponent_transformation(const std::shared_ptr<VLShape>&, const AffineTransform*) override {}
    void clear();
    void append(const BezierPath& other);
    bool closed() const { return closed(_path); }

    // The path's elements as pen calls; no endPath is sent.
    static void drawInPen(const BezierPath& path, VLPenProtocol& pen);
    // Whether the last subpath is closed: the path puts a move behind each close.
    static bool closed(const BezierPath& path);
    static std::vector<VLPathSegment> segments(const BezierPath& path);

private:
    BezierPath& _path;
};
