#pragma once

#include "platform/AffineTransform.h"
#include "platform/Geometry.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

class VLElement;
class VLHint;
class VLShape;

// A quadratic run of off-curve points ending on its on-curve point. A closed contour without
// on-curve points has x = VLUnsetValue in its last point.
using VLQuadraticPoints = std::vector<Point>;
// The same run as a list of boxed points; a closed contour without on-curve points ends in an
// empty entry.
using VLBoxedQuadraticPoints = std::vector<std::optional<Point>>;
// The source nodes and hints of a segment, so that later stages can find where it came from.
using VLPenObjects = std::vector<std::shared_ptr<VLElement>>;

// The sink of every outline walk. The operations after the required ones are optional: their
// defaults are what a caller does with a pen that lacks them.
class VLPenProtocol {
public:
    virtual ~VLPenProtocol() = default;

    virtual void moveTo(Point point) = 0;
    virtual void lineTo(Point point) = 0;
    // The end point comes first.
    virtual void curveTo_off1_off2(Point end, Point off1, Point off2) = 0;
    // The list may be rewritten: a closed all-off-curve run gets its start point or loses its
    // marker.
    virtual void qCurveTo(VLQuadraticPoints& points) = 0;
    virtual void qCurveTo(VLBoxedQuadraticPoints& points) = 0;
    virtual void closePath() = 0;
    virtual void endPath() = 0;
    // transformation may be null.
    virtual void addComponent_transformation(const std::shared_ptr<VLShape>& component,
                                             const AffineTransform* transformation) = 0;
    // x = VLUnsetValue when no contour is open.
    virtual Point lastPoint() const = 0;

    virtual void beginPath() {}
    // Whether beginPath means something to this pen: a contour may then start on a curve whose
    // start point is only known at its end.
    virtual bool respondsToBeginPath() const { return false; }
    // Pens that collect outlines skip paths of a single node.
    virtual bool ignoreSingleNodes() const { return false; }
    virtual void moveTo_connection_selected(Point point, uint8_t /*connection*/, bool /*selected*/) { moveTo(point); }
    virtual void lineTo_connection_selected(Point point, uint8_t /*connection*/, bool /*selected*/) { lineTo(point); }
    virtual void curveTo_off1_off2_connection_selected(Point end, Point off1, Point off2, uint8_t /*connection*/,
                                                       bool /*selected*/)
    {
        curveTo_off1_off2(end, off1, off2);
    }
    // Whether the pen wants each segment's source objects: walks then build a list per node.
    virtual bool respondsToObjects() const { return false; }
    virtual void moveTo_objects(Point point, const VLPenObjects& /*objects*/) { moveTo(point); }
    virtual void lineTo_objects(Point point, const VLPenObjects& /*objects*/) { lineTo(point); }
    virtual void curveTo_off1_off2_objects(Point end, Point off1, Point off2, const VLPenObjects& /*objects*/)
    {
        curveTo_off1_off2(end, off1, off2);
    }
    virtual void setHints(const std::vector<std::shared_ptr<VLHint>>& /*hints*/) {}
    // A C array of count points; the last one may be written to, as by qCurveTo.
    virtual void qCurveWithPoints_count(Point* points, size_t count)
    {
        VLQuadraticPoints list(points, points + count);
        qCurveTo(list);
    }
    virtual void setLastPoint(Point /*point*/) {}
    virtual bool hasContent() const = 0;
};
