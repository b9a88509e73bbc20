#include "model/VLElement.h"

#include "geometry/VLDecomposeMatrix.h"
#include "geometry/VLGeometry.h"
#include "model/VLLayer.h"
#include "model/VLTransformHelpers.h"
#include "model/VLUserData.h"
#include "platform/NumberConversion.h"

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

Rect VLElement::fastBoundsTransform(const AffineTransform* transform) const
{
    Point p = position();
    return {transform ? transform->transformPoint(p) : p, {0, 0}};
}

void VLElement::transformFast_round(const AffineTransform& transform, double grid)
{
    // From the precise value, so that repeated transforms don't accumulate rounding.
    setPositionFast_round(transform.transformPoint(positionPrecise()), grid);
}

void VLElement::getPositionsFromShape(const VLShape& other)
{
    auto* element = dynamic_cast<const VLElement*>(&other);
    if (!element) return;
    _position = element->_position;
    _positionPrecise = element->_positionPrecise;
}

void VLTransformableElement::setUserData_forKey(const Value& value, const std::string& key)
{
    VLSetUserData(_userData, value, key);
}

AffineTransform VLTransformableElement::transformAt(Point origin) const
{
    AffineTransform transform;
    transform.translateXBy_yBy(origin.x, origin.y);
    if (std::fabs(_slantHorizontal) > 0.001 || std::fabs(_slantVertical) > 0.001)
        shearXBy_yBy_atCenter(transform, std::tan(_slantHorizontal * VLRadiansPerDegree),
                              std::tan(_slantVertical * VLRadiansPerDegree), origin);
    transform.rotateByDegrees(_angle);
    transform.scaleXBy_yBy(_scale.x, _scale.y);
    return transform;
}

void VLTransformableElement::setTransformStructFast_round(const AffineTransformStruct& matrix, double grid)
{
    VLDecomposedMatrix parts = VLDecomposeMatrix(matrix);
    _scale = {parts.scaleX, parts.scaleY};
    _angle = parts.angle;
    _slantHorizontal = parts.slantHorizontal;
    _slantVertical = parts.slantVertical;
    setPositionFast_round({matrix.tX, matrix.tY}, grid);
}

void VLTransformableElement::transformFast_round(const AffineTransform& transform, double grid)
{
    AffineTransform moved = transformAt(positionPrecise());
    moved.appendTransform(transform);
    setTransformStructFast_round(moved.transformStruct(), grid);
}

void VLTransformableElement::getPositionsFromShape(const VLShape& other)
{
    auto* element = dynamic_cast<const VLTransformableElement*>(&other);
    if (!element) return;
    VLElement::getPositionsFromShape(other);
    _angle = element->_angle;
    _scale = element->_scale;
    _slantHorizontal = element->_slantHorizontal;
    _slantVertical = element->_slantVertical;
}
