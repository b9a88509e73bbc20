#pragma once

#include "geometry/VLBasePen.h"
#include "geometry/VLPathSegment.h"
#include "geometry/VLPenProtocol.h"
#include "platform/VLUnsetValue.h"

#include <span>

// Collects the segments of outlines for the overlap code, and marks each clockwise contour.
class VLSegmentPen : public VLPenProtocol {
public:
    const std::vector<VLPathSegment>& segments() const { return _segments; }
    const std::optional<AffineTransform>& transform() const { return _transform; }
    void setTransform(std::optional<AffineTransform> transform) { _transform = std::move(transform); }

    void moveTo(Point point) override;
    // The source nodes tell open paths apart and carry their paths' attributes to the results.
    bool respondsToObjects() const override { return true; }
    // The point is taken as it stands; the objects wait for the next segment.
    void moveTo_objects(Point point, const VLPenObjects& objects) override;
    void lineTo(Point point) override;
    void lineTo_objects(Point point, const VLPenObjects& objects) override;
    void curveTo_off1_off2(Point end, Point off1, Point off2) override;
    void curveTo_off1_off2_objects(Point end, Point off1, Point off2, const VLPenObjects& objects) override;
    void qCurveTo(VLQuadraticPoints& points) override;
    void qCurveTo(VLBoxedQuadraticPoints& points) override;
    void closePath() override;
    void endPath() override {}
    // As a base pen does: the shapes of the component's layer, through the transformation.
    void addComponent_transformation(const std::shared_ptr<VLShape>& component,
                                     const AffineTransform* transformation) override
    {
        VLBasePen::drawComponent(*this, _transform, component, transformation);
    }
    Point lastPoint() const override { return _lastPoint; }
    bool hasContent() const override { return !_segments.empty(); }
    void append(const VLSegmentPen& other);

    // Marks the segments of the contour that has just ended when it runs clockwise.
    void checkContourDirection();
    // 1 for a clockwise polygon of all points of the segments (y up), -1 otherwise; 0 for fewer
    // than two segments.
    static int direction(std::span<const VLPathSegment> segments);

private:
    void pushQuadraticRun(std::span<const Point> run);
    Point transformed(Point p) const { return _transform ? _transform->transformPoint(p) : p; }
    void startContour(Point point);
    // The objects of a segment, with the waiting ones of the move behind them.
    VLPenObjects takeObjects(const VLPenObjects& objects);
    static uint8_t optionsForObjects(const VLPenObjects& objects);

    std::vector<VLPathSegment> _segments;
    // Whether a contour has begun: a quadratic run without one brings its own start point.
    bool _started = false;
    Point _lastPoint{VLUnsetValue, 0.0};
    Point _firstPoint{VLUnsetValue, 0.0};
    size_t _firstCountourIndex = 0;
    VLPenObjects _lastObjects;
    std::optional<AffineTransform> _transform;
};
