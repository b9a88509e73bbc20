#include "interpolation/MAMathObject.h"

#include <algorithm>

void MAMathObject::setActiveMaster_count(size_t index, size_t count)
{
    _factors.assign(count, 0.0);
    if (index < count) _factors[index] = 1.0;
}

std::shared_ptr<MAMathObject> MAMathObject::add(const MAMathObject* other) const
{
    auto result = copy();
    if (other) result->addItem_withFactor(*other, 1.0);
    return result;
}

std::shared_ptr<MAMathObject> MAMathObject::sub(const MAMathObject* other) const
{
    auto result = copy();
    if (other) result->addItem_withFactor(*other, -1.0);
    return result;
}

std::shared_ptr<MAMathObject> MAMathObject::scale(double factor) const
{
    auto result = copy();
    for (double& value : result->_factors) value *= factor;
    return result;
}

void MAMathObject::addItem_withFactor(const MAMathObject& item, double factor)
{
    if (item._factors.size() > _factors.size()) _factors.resize(item._factors.size(), 0.0);
    for (size_t i = 0; i < item._factors.size(); ++i) _factors[i] += item._factors[i] * factor;
}
