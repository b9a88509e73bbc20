#include "geometry/VLSegmentPen.h"
#include "platform/NumberConversion.h"

#include "geometry/VLGeometry.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"

#include <algorithm>

void VLSegmentPen::startContour(Point point)
{
    _started = true;
    checkContourDirection();
    _firstCountourIndex = _segments.size();
    _lastPoint = _firstPoint = point;
}

void VLSegmentPen::moveTo(Point point)
{
    startContour(transformed(point));
}

void VLSegmentPen::moveTo_objects(Point point, const VLPenObjects& objects)
{
    startContour(point);
    _lastObjects = objects;
}

void VLSegmentPen::lineTo(Point point)
{
    Point p = transformed(point);
    _segments.push_back(VLPathSegment::initWithLinePoint1_point2_options(_lastPoint, p, 0));
    _lastPoint = p;
}

void VLSegmentPen::curveTo_off1_off2(Point end, Point off1, Point off2)
{
    Point e = transformed(end);
    _segments.push_back(VLPathSegment::initWithCurvePoint1_point2_point3_point4_options(
        _lastPoint, transformed(off1), transformed(off2), e, 0));
    _lastPoint = e;
}

uint8_t VLSegmentPen::optionsForObjects(const VLPenObjects& objects)
{
    if (objects.empty()) return 0;
    auto node = std::dynamic_pointer_cast<VLNode>(objects.front());
    if (!node) return 0;
    auto path = node->parentPath();
    return path && path->closed() ? 0 : VLPathSegment::OptionOpenPath;
}

VLPenObjects VLSegmentPen::takeObjects(const VLPenObjects& objects)
{
    VLPenObjects result = objects;
    result.insert(result.end(), _lastObjects.begin(), _lastObjects.end());
    _lastObjects.clear();
    return result;
}

void VLSegmentPen::lineTo_objects(Point point, const VLPenObjects& objects)
{
    lineTo(point);
    _segments.back().setOptions(optionsForObjects(objects));
    _segments.back().setObjects(takeObjects(objects));
}

void VLSegmentPen::curveTo_off1_off2_objects(Point end, Point off1, Point off2, const VLPenObjects& objects)
{
    curveTo_off1_off2(end, off1, off2);
    _segments.back().setOptions(optionsForObjects(objects));
    _segments.back().setObjects(takeObjects(objects));
}

// Quadratic points are taken untransformed.
void VLSegmentPen::qCurveTo(VLQuadraticPoints& points)
{
    if (points.empty()) return;
    if (_started) {
        VLQuadraticPoints run;
        run.reserve(points.size() + 1);
        run.push_back(_lastPoint);
        run.insert(run.end(), points.begin(), points.end());
        pushQuadraticRun(run);
    } else {
        _started = true;
        pushQuadraticRun(points);
    }
    _lastPoint = points.back();
}

void VLSegmentPen::qCurveTo(VLBoxedQuadraticPoints& points)
{
    if (points.empty()) return;
    VLQuadraticPoints run;
    run.reserve(points.size() + 1);
    for (const auto& point : points) run.push_back(point.value_or(Point{VLUnsetValue, 0.0}));
    // A run that already starts at the current point keeps its own start.
    if (VLDistanceF(run.front(), _lastPoint) > 0.001) run.insert(run.begin(), _lastPoint);
    pushQuadraticRun(run);
    _lastPoint = points.back().value_or(Point{VLUnsetValue, 0.0});
}

// A gap of 0.1 or less counts as closed: a closing segment that short would only upset the
// overlap code.
void VLSegmentPen::closePath()
{
    float gap = VLDistanceF(_lastPoint, _firstPoint);
    if (gap < 1e9 && gap > 0.1) {
        _segments.push_back(VLPathSegment::initWithLinePoint1_point2_options(_lastPoint, _firstPoint, 0));
        _lastPoint = _firstPoint;
    }
    checkContourDirection();
}

void VLSegmentPen::append(const VLSegmentPen& other)
{
    _segments.insert(_segments.end(), other._segments.begin(), other._segments.end());
}

void VLSegmentPen::checkContourDirection()
{
    if (_firstCountourIndex < _segments.size()) {
        std::span<VLPathSegment> contour(_segments.begin() + static_cast<long>(_firstCountourIndex), _segments.end());
        if (direction(contour) == 1)
            for (auto& segment : contour) segment.setOptions(segment.options() | VLPathSegment::OptionClockwise);
    }
    _firstCountourIndex = _segments.size();
}

// A segment holds a run of at most 40 points: a longer run is cut at the on-curve points that lie
// between its off-curve points, which leaves the outline as it was.
void VLSegmentPen::pushQuadraticRun(std::span<const Point> run)
{
    constexpr size_t room = VLPathSegment::MaximumPoints;
    if (run.empty()) return;
    Point piece[room];
    piece[0] = run[0];
    size_t from = 1;
    while (run.size() - from + 1 > room) {
        std::copy_n(run.begin() + static_cast<long>(from), room - 2, piece + 1);
        Point onCurve = VLLerp(run[from + room - 3], run[from + room - 2], 0.5);
        piece[room - 1] = onCurve;
        _segments.push_back(VLPathSegment::initWithQCurve(piece));
        piece[0] = onCurve;
        from += room - 2;
    }
    std::copy(run.begin() + static_cast<long>(from), run.end(), piece + 1);
    _segments.push_back(VLPathSegment::initWithQCurve({piece, run.size() - from + 1}));
}

int VLSegmentPen::direction(std::span<const VLPathSegment> segments)
{
    if (segments.size() < 2) return 0;
    Point p = segments.back().elements().back();
    float sum = 0.0f;
    for (const auto& segment : segments) {
        const auto& points = segment.elements();
        for (size_t i = 1; i < points.size(); ++i) {
            Point q = points[i];
            sum = VLSinglePrecision(sum + (p.x + q.x) * (p.y - q.y));
            p = q;
        }
    }
    return sum < 0 ? -1 : 1;
}
