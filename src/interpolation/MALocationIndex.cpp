#include "interpolation/MALocationIndex.h"

#include "platform/StringFormat.h"
#include "platform/VLException.h"

#include <cmath>

namespace {

constexpr double nonZero = 1e-15;

} // namespace

std::shared_ptr<MALocationIndex> MALocationIndex::initWithLocations_count_mathObject(const double* locations,
                                                                                    size_t count,
                                                                                    std::shared_ptr<MAMathObject> mathObject)
{
    if (count >= maximumCount)
        throw VLException("Count is to big", stringWithFormat("Count (%ld) is above the max count of %d",
                                                              static_cast<long>(count), static_cast<int>(maximumCount)));
    auto location = std::make_shared<MALocationIndex>();
    for (size_t i = 0; i < count; ++i) location->_list[i] = locations[i];
    location->_count = count;
    location->_mathObject = std::move(mathObject);
    return location;
}

std::shared_ptr<MALocationIndex> MALocationIndex::initWithMathObject(std::shared_ptr<MAMathObject> mathObject)
{
    auto location = std::make_shared<MALocationIndex>();
    location->_mathObject = std::move(mathObject);
    return location;
}

void MALocationIndex::setPos_atIndex(double value, size_t index)
{
    if (index >= maximumCount)
        throw VLException("Index to big", stringWithFormat("Indes (%ld) is above the max count of %d",
                                                           static_cast<long>(index), static_cast<int>(maximumCount)));
    _list[index] = value;
    if (index >= _count) _count = index + 1;
}

bool MALocationIndex::isOrigin() const
{
    for (size_t i = 0; i < _count; ++i)
        if (std::fabs(_list[i]) > nonZero) return false;
    return true;
}

int64_t MALocationIndex::isOnAxis() const
{
    int64_t axis = originAxis;
    for (size_t i = 0; i < _count; ++i) {
        if (std::fabs(_list[i]) <= nonZero) continue;
        if (axis != originAxis) return -1;
        axis = static_cast<int64_t>(i);
    }
    return axis;
}

std::shared_ptr<MALocationIndex> MALocationIndex::sub(const MALocationIndex& other) const
{
    auto difference = std::make_shared<MALocationIndex>();
    if (_mathObject) difference->_mathObject = _mathObject->copy();
    for (size_t i = 0; i < _count; ++i) difference->_list[i] = _list[i] - other._list[i];
    difference->_count = _count;
    return difference;
}

bool MALocationIndex::isEqualToLocation(const MALocationIndex& other) const
{
    if (_count != other._count) return false;
    for (size_t i = 0; i < _count; ++i)
        if (_list[i] != other._list[i]) return false;
    return true;
}
