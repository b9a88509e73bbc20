#pragma once

#include "model/VLRange.h"
#include "platform/Geometry.h"
#include "platform/Value.h"

#include <vector>

// A growable list of points, the form in which quadratic runs travel. Where a point is asked
// for that isn't there, the answer has x = VLUnsetValue: no point. Changes at an index past the
// end do nothing.
class FTPointArray {
public:
    FTPointArray() = default;
    static FTPointArray initWithCapacity(size_t capacity);
    static FTPointArray initWithPoints_count(const Point* points, size_t count);
    // From property-list values: null gives (VLUnsetValue, 0), an array its first two numbers,
    // anything else x from its number and y = VLUnsetValue. Numbers pass through single precision.
    static FTPointArray pointArrayWithArray(const ValueArray& array);

    size_t count() const { return _vector.size(); }
    const Point* points() const { return _vector.data(); }
    Point pointAtIndex(size_t index) const;
    Point firstPoint() const { return pointAtIndex(0); }
    Point lastPoint() const { return _vector.empty() ? pointAtIndex(0) : _vector.back(); }

    void addPoint(Point point) { _vector.push_back(point); }
    void addPointsFromPointArray(const FTPointArray& other);
    // An index past the end appends.
    void insertPoint_atIndex(Point point, size_t index);
    void setPoint_atIndex(Point point, size_t index);
    void removePointAtIndex(size_t index);
    void removeAllPoints() { _vector.clear(); }
    // Clipped to the points there are.
    FTPointArray copySubarrayWithRange(VLRange range) const;

    // True when some point lies less than threshold away in x and in y.
    bool containsPoint_threshold(Point point, double threshold) const;

    friend bool operator==(const FTPointArray&, const FTPointArray&) = default;

private:
    std::vector<Point> _vector;
};
