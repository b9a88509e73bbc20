#pragma once

#include "geometry/VLPenProtocol.h"
#include "platform/Geometry.h"

#include <cstdint>
#include <span>
#include <vector>

// One line, cubic or run of TrueType quadratics of an outline, with where it came from.
class VLPathSegment {
public:
    // The node type numbers of the segment's end node.
    enum Type : uint8_t { Line = 1, Curve = 35, QCurve = 36 };
    // With y up, a clockwise contour is a counter (white).
    static constexpr uint8_t OptionClockwise = 2;
    static constexpr uint8_t OptionOpenPath = 4;

    static VLPathSegment initWithLinePoint1_point2_options(Point p1, Point p2, uint8_t options)
    {
        return VLPathSegment(Line, {p1, p2}, options);
    }
    static VLPathSegment initWithCurvePoint1_point2_point3_point4_options(Point p1, Point p2, Point p3, Point p4,
                                                                        uint8_t options)
    {
        return VLPathSegment(Curve, {p1, p2, p3, p4}, options);
    }
    // The start point, the off-curve points and the end point.
    static VLPathSegment initWithQCurve(std::span<const Point> points)
    {
        return VLPathSegment(QCurve, std::vector<Point>(points.begin(), points.end()), 0);
    }

    Type type() const { return _type; }
    const std::vector<Point>& elements() const { return _elements; }
    size_t countOfPoints() const { return _elements.size(); }
    uint8_t options() const { return _options; }
    void setOptions(uint8_t options) { _options = options; }
    const VLPenObjects& objects() const { return _objects; }
    void setObjects(VLPenObjects objects) { _objects = std::move(objects); }

private:
    VLPathSegment(Type type, std::vector<Point> elements, uint8_t options)
        : _type(type), _options(options), _elements(std::move(elements))
    {
    }

    Type _type;
    uint8_t _options;
    std::vector<Point> _elements;
    VLPenObjects _objects;
};
