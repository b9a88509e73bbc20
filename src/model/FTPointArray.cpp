#include "model/FTPointArray.h"
#include "platform/NumberConversion.h"

#include "platform/VLUnsetValue.h"

#include <algorithm>
#include <cmath>

namespace {

double singlePrecision(const Value& number) { return VLSinglePrecision(number.doubleValue()); }

Point pointFromValue(const Value& value)
{
    if (value.isNull()) return {VLUnsetValue, 0.0};
    if (value.isArray()) return {singlePrecision(value[0]), singlePrecision(value[1])};
    return {singlePrecision(value), VLUnsetValue};
}

} // namespace

FTPointArray FTPointArray::initWithCapacity(size_t capacity)
{
    FTPointArray array;
    array._vector.reserve(capacity);
    return array;
}

FTPointArray FTPointArray::initWithPoints_count(const Point* points, size_t count)
{
    FTPointArray array;
    array._vector.assign(points, points + count);
    return array;
}

FTPointArray FTPointArray::pointArrayWithArray(const ValueArray& values)
{
    FTPointArray array = initWithCapacity(values.size());
    for (const Value& value : values) array.addPoint(pointFromValue(value));
    return array;
}

Point FTPointArray::pointAtIndex(size_t index) const
{
    return index < _vector.size() ? _vector[index] : Point{VLUnsetValue, VLUnsetValue};
}

void FTPointArray::addPointsFromPointArray(const FTPointArray& other)
{
    _vector.insert(_vector.end(), other._vector.begin(), other._vector.end());
}

void FTPointArray::insertPoint_atIndex(Point point, size_t index)
{
    _vector.insert(_vector.begin() + static_cast<long>(std::min(index, _vector.size())), point);
}

void FTPointArray::setPoint_atIndex(Point point, size_t index)
{
    if (index < _vector.size()) _vector[index] = point;
}

void FTPointArray::removePointAtIndex(size_t index)
{
    if (index < _vector.size()) _vector.erase(_vector.begin() + static_cast<long>(index));
}

FTPointArray FTPointArray::copySubarrayWithRange(VLRange range) const
{
    range = range.clippedTo(_vector.size());
    return initWithPoints_count(_vector.data() + range.location, range.length);
}

bool FTPointArray::containsPoint_threshold(Point point, double threshold) const
{
    return std::any_of(_vector.begin(), _vector.end(), [&](Point p) {
        return std::fabs(p.x - point.x) < threshold && std::fabs(p.y - point.y) < threshold;
    });
}
