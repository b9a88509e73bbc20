#pragma once

#include "model/VLShape.h"

// A shape placed relative to the layer: left, right or centre of the advance width.
class VLElement : public VLShape {
public:
    enum Orientation : int8_t { OrientationLeft = 0, OrientationRight = 1, OrientationCenter = 2 };

    int8_t orientation() const { return _orientation; }
    // Values of 3 or more mean left.
    void setOrientation(int value);
    void setOrientationFast(int8_t value) { _orientation = value; }

    Point position() const override;
    Point positionPrecise() const override;
    Point positionForLayerWidth(double width) const;
    Point positionPreciseForLayerWidth(double width) const;
    Rect bounds() const override { return {position(), {0, 0}}; }

protected:
    VLElement() = default;
    VLElement(const VLElement&) = default;

private:
    // A precise position that has drifted from the rounded one is stale and is dropped.
    Point repairedPrecise() const;

    int8_t _orientation = OrientationLeft;
};

// An element with a transform of its own: angle, scale and slant.
class VLTransformableElement : public VLElement {
public:
    const ValueDictionary& userData() const { return _userData; }
    void setUserData_forKey(const Value& value, const std::string& key);
    double angle() const { return _angle; }
    void setAngle(double degrees) { _angle = degrees; }
    Point scale() const { return _scale; }
    void setScale(Point scale) { _scale = scale; }
    double slantHorizontal() const { return _slantHorizontal; }
    void setSlantHorizontal(double degrees) { _slantHorizontal = degrees; }
    double slantVertical() const { return _slantVertical; }
    void setSlantVertical(double degrees) { _slantVertical = degrees; }

protected:
    VLTransformableElement() = default;
    VLTransformableElement(const VLTransformableElement&) = default;

private:
    ValueDictionary _userData;
    double _angle = 0.0;
    Point _scale{1.0, 1.0};
    double _slantHorizontal = 0.0;
    double _slantVertical = 0.0;
};
