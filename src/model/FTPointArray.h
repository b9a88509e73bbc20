#pragma once

#include "model/VLUnsetValue.h"
#include "platform/Geometry.h"
#include "platform/Value.h"

#include <cmath>
#include <vector>

// A growable array of points, the carrier of quadratic runs.
class FTPointArray {
public:
    FTPointArray() = default;
    explicit FTPointArray(std::vector<Point> points) : _vector(std::move(points)) {}

    // Null entries give (VLUnsetValue, 0); arrays their first two numbers; numbers an x with y
    // VLUnsetValue. Coordinates pass through single precision.
    static FTPointArray pointArrayWithArray(const ValueArray& values)
    {
        FTPointArray array;
        for (const Value& value : values) {
            auto single = [](const Value& v) { return static_cast<double>(static_cast<float>(v.doubleValue())); };
            if (value.isNull())
                array.addPoint({VLUnsetValue, 0});
            else if (value.isArray())
                array.addPoint({single(value[0]), single(value[1])});
            else
                array.addPoint({single(value), VLUnsetValue});
        }
        return array;
    }

    size_t count() const { return _vector.size(); }
    const std::vector<Point>& points() const { return _vector; }
    std::vector<Point>& points() { return _vector; }
    Point firstPoint() const { return _vector.empty() ? Point{} : _vector.front(); }
    Point lastPoint() const { return _vector.empty() ? Point{} : _vector.back(); }
    Point pointAtIndex(size_t index) const { return index < _vector.size() ? _vector[index] : Point{}; }

    void addPoint(Point p) { _vector.push_back(p); }
    void addPointsFromPointArray(const FTPointArray& other) { _vector.insert(_vector.end(), other._vector.begin(), other._vector.end()); }
    void insertPoint_atIndex(Point p, size_t index) { _vector.insert(_vector.begin() + static_cast<std::ptrdiff_t>(std::min(index, _vector.size())), p); }
    void setPoint_atIndex(Point p, size_t index)
    {
        if (index < _vector.size()) _vector[index] = p;
    }
    void removePointAtIndex(size_t index)
    {
        if (index < _vector.size()) _vector.erase(_vector.begin() + static_cast<std::ptrdiff_t>(index));
    }
    void removeAllPoints() { _vector.clear(); }
    FTPointArray copySubarrayWithRange(size_t location, size_t length) const
    {
        location = std::min(location, _vector.size());
        length = std::min(length, _vector.size() - location);
        return FTPointArray(std::vector<Point>(_vector.begin() + static_cast<std::ptrdiff_t>(location),
                                               _vector.begin() + static_cast<std::ptrdiff_t>(location + length)));
    }
    // Some point differs by less than the threshold in x and in y.
    bool containsPoint_threshold(Point p, double threshold) const
    {
        for (Point q : _vector)
            if (std::fabs(q.x - p.x) < threshold && std::fabs(q.y - p.y) < threshold) return true;
        return false;
    }

private:
    std::vector<Point> _vector;
};
