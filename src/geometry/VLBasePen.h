#pragma once

#include "geometry/VLPenProtocol.h"
#include "platform/VLUnsetValue.h"

#include <span>

class VLFont;

// The common ground of the pens: the current point, an optional transform, and the turning of
// quadratic runs into cubics.
class VLBasePen : public VLPenProtocol {
public:
    VLBasePen() = default;
    explicit VLBasePen(std::shared_ptr<VLFont> glyphSet) : _glyphSet(std::move(glyphSet)) {}

    const std::shared_ptr<VLFont>& glyphSet() const { return _glyphSet; }
    const std::optional<AffineTransform>& transform() const { return _transform; }
    void setTransform(std::optional<AffineTransform> transform) { _transform = std::move(transform); }
    bool convertQuadratic2Cubic() const { return _convertQuadratic2Cubic; }
    void setConvertQuadratic2Cubic(bool convert) { _convertQuadratic2Cubic = convert; }

    void moveTo(Point point) override { _lastPoint = point; }
    void lineTo(Point point) override { _lastPoint = point; }
    void curveTo_off1_off2(Point end, Point, Point) override { _lastPoint = end; }
    void closePath() override {}
    void endPath() override {}
    // Draws the shapes of the component's layer into this pen, with the transformation put in
    // front of the pen's own for that time. Anything but a component is ignored.
    void addComponent_transformation(const std::shared_ptr<VLShape>& component,
                                     const AffineTransform* transformation) override
    {
        drawComponent(*this, _transform, component, transformation);
    }
    // The same for any pen that keeps its transform in the given slot.
    static void drawComponent(VLPenProtocol& pen, std::optional<AffineTransform>& transform,
                              const std::shared_ptr<VLShape>& component, const AffineTransform* transformation);
    Point lastPoint() const override { return _lastPoint; }
    void setLastPoint(Point point) override { _lastPoint = point; }
    // Pens that collect something answer this themselves.
    bool hasContent() const override;

    void qCurveTo(VLQuadraticPoints& points) override;
    void qCurveTo(VLBoxedQuadraticPoints& points) override;
    void qCurveWithPoints_count(Point* points, size_t count) override;
    // One quadratic from lastPoint as a cubic; curveTo_off1_off2 moves the current point.
    void _qCurveTo_off(Point end, Point off);
    // The hook of a pen that keeps quadratics as they are.
    virtual void _qCurveTo(std::span<const Point> points) { convertQuadraticToCubic(points); }
    void convertQuadraticToCubic(std::span<const Point> points);

    // The index of the first point that lies on a horizontal or vertical with the point before
    // it (the last point before the first); -1 for none.
    static int32_t findFirstExtremePoint(std::span<const Point> points);

protected:
    Point _lastPoint{VLUnsetValue, 0.0};
    std::optional<AffineTransform> _transform;

private:
    // Starts a closed run without on-curve points at the middle of its last and first
    // off-curve points, which is written into the marker.
    void startAtImpliedPoint(Point& marker, Point lastOff, Point firstOff);
    template <typename At>
    void emitRun(At at, size_t count, bool updateLastPoint);

    std::shared_ptr<VLFont> _glyphSet;
    bool _convertQuadratic2Cubic = false;
};
