#include "model/VLElement.h"
#include "platform/NumberConversion.h"

#include "model/VLLayer.h"
#include "model/VLUserData.h"

#include <cmath>

void VLElement::setOrientation(int value)
{
    _orientation = static_cast<int8_t>(value >= 3 || value < 0 ? OrientationLeft : value);
    tellParent();
}

Point VLElement::positionForLayerWidth(double width) const
{
    Point p = _position;
    if (_orientation == OrientationRight) p.x += width;
    if (_orientation == OrientationCenter) p.x += width * 0.5;
    return p;
}

Point VLElement::position() const
{
    if (_orientation == OrientationLeft) return _position;
    auto owner = layer();
    return owner ? positionForLayerWidth(owner->width()) : _position;
}

Point VLElement::repairedPrecise() const
{
    float dx = VLSinglePrecision(_position.x - _positionPrecise.x);
    float dy = VLSinglePrecision(_position.y - _positionPrecise.y);
    return std::sqrt(dx * dx + dy * dy) > 1.2f ? _position : _positionPrecise;
}

Point VLElement::positionPreciseForLayerWidth(double width) const
{
    Point p = repairedPrecise();
    if (_orientation == OrientationRight) p.x += width;
    if (_orientation == OrientationCenter) p.x += width * 0.5;
    return p;
}

Point VLElement::positionPrecise() const
{
    if (_orientation != OrientationRight) return repairedPrecise();
    auto owner = layer();
    return positionPreciseForLayerWidth(owner ? owner->width() : 0.0);
}

void VLTransformableElement::setUserData_forKey(const Value& value, const std::string& key)
{
    VLSetUserData(_userData, value, key);
}
