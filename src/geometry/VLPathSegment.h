#pragma once

#include "geometry/VLCubic.h"
#include "geometry/VLPenProtocol.h"
#include "platform/Geometry.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

// One line, cubic or run of TrueType quadratics of an outline, with where it came from. The
// points live in the object: the overlap and corner code make many of them, and a copy must not
// allocate.
class VLPathSegment {
public:
    // The node type numbers of the segment's end node.
    enum Type : uint8_t { Line = 1, Curve = 35, QCurve = 36 };
    // With y up, a clockwise contour is a counter (white).
    static constexpr uint8_t OptionClockwise = 2;
    static constexpr uint8_t OptionOpenPath = 4;
    static constexpr size_t MaximumPoints = 40;
    // The longest run that the counted form keeps.
    static constexpr size_t MaximumCountedRun = 39;

    // The plain record of a line or cubic, for fast copies.
    struct SegmentStruct {
        std::array<Point, 4> points{};
        uint8_t type = Line;
        uint8_t count = 0;
        uint8_t options = 0;
        Rect bounds;
    };

    static VLPathSegment initWithLinePoint1_point2_options(Point p1, Point p2, uint8_t options);
    static VLPathSegment initWithCurvePoint1_point2_point3_point4_options(Point p1, Point p2, Point p3, Point p4,
                                                                        uint8_t options);
    // The start point, the off-curve points and the end point; points past the room of a segment
    // are left out.
    static VLPathSegment initWithQCurve(std::span<const Point> points);
    static VLPathSegment initWithQCurve_count(const Point* points, size_t count);
    static VLPathSegment initWithSegmentStruct(const SegmentStruct& record);
    SegmentStruct segmentStruct() const;

    Type type() const { return _type; }
    std::span<const Point> elements() const { return {_elements.data(), _count}; }
    size_t countOfPoints() const { return _count; }
    uint8_t options() const { return _options; }
    void setOptions(uint8_t options) { _options = options; }
    const VLPenObjects& objects() const { return _objects; }
    void setObjects(VLPenObjects objects) { _objects = std::move(objects); }
    int32_t flag() const { return _flag; }
    void setFlag(int32_t flag) { _flag = flag; }

    // Out of range gives the zero point; setPoint leaves the bounds as they were.
    Point pointAtIndex(size_t index) const { return index < _count ? _elements[index] : Point{}; }
    void setPoint_atIndex(Point point, size_t index);
    Point lastPoint() const { return _count ? _elements[_count - 1] : Point{}; }

    const Rect& bounds() const { return _bounds; }
    void updateBounds();
    // The points in the opposite order; the box stays what it was.
    void reverse();
    // The order in which segments start new contours, along the slant of the italic angle.
    int compare(const VLPathSegment& other) const { return compare_italicAngle(other, 0); }
    int compare_italicAngle(const VLPathSegment& other, double degrees) const;
    bool isEqualToSegment(const VLPathSegment& other) const { return isEqualToSegment_tolerance(other, 0.001); }
    // The type is not compared: a line and a flat cubic over the same points are the same.
    bool isEqualToSegment_tolerance(const VLPathSegment& other, double tolerance) const;

    Point middlePoint() const;
    // The middle moved a hair to the right of the direction of travel, to test which side is ink.
    Point middlePointRight() const;
    // Both halves keep this segment's options; other types leave them alone and answer false.
    bool splitAtTime_firstHalf_secondHalf(double t, VLPathSegment& first, VLPathSegment& second) const;
    // Lines and cubics; other types give x = VLUnsetValue.
    Point pointAtTime(double t) const;
    // The unit derivative; x = VLUnsetValue where there is none.
    Point normalAtTime(double t) const;
    // Degrees of the direction of travel; VLUnsetValue for a run.
    double tangentAtTime(double t) const;
    // Times strictly inside the cubic where x or y turns: both roots of x, then of y, unsorted.
    // Empty for other types.
    std::vector<double> extremeTimes() const;
    std::vector<Point> extremePoints() const;
    std::vector<double> inflectionPoints() const;
    double curvatureAtTime(double t) const;
    // VLUnsetValue for a run.
    double length() const;
    double lengthFast() const;
    // A cubic with one retracted handle gets two of a fixed shape; true if it changed.
    bool normalizeHandles();
    void drawInPen(VLPenProtocol& pen) const;

private:
    VLPathSegment() = default;
    VLCubic cubic() const { return {_elements[0], _elements[1], _elements[2], _elements[3]}; }
    bool isCubic() const { return _type == Curve && _count == 4; }

    int32_t _flag = 0;
    Type _type = Line;
    uint8_t _count = 0;
    uint8_t _options = 0;
    std::array<Point, MaximumPoints> _elements{};
    Rect _bounds;
    VLPenObjects _objects;
};
