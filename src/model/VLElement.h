#pragma once

#include "model/VLShape.h"
#include "platform/AffineTransform.h"

// A shape that stands for a point of the layer, placed relative to the layer: left, right or
// centre of the advance width. It has no type of a layer's list, and its bounds, moves and
// places are those of its point.
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

    VLShapeType shapeType() const override { return VLShapeType::None; }
    Rect fastBoundsTransform(const AffineTransform* transform) const override;
    void transformFast_round(const AffineTransform& transform, double grid) override;
    // Both stored positions as they stand, without orientation or guard, from another element.
    void getPositionsFromShape(const VLShape& other) override;

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
    // Translation to the position, then the slants as a shear around it, rotation and scale.
    AffineTransform transform() const { return transformAt(position()); }
    // Scale, angle and slants from the matrix, the position from its translation, rounded to the
    // grid as setPositionFast_round does.
    void setTransformStructFast_round(const AffineTransformStruct& matrix, double grid);
    // The element's transform, from its precise position, followed by the given one.
    void transformFast_round(const AffineTransform& transform, double grid) override;
    // Positions, scale, angle and slants of another transformable element.
    void getPositionsFromShape(const VLShape& other) override;

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
    AffineTransform transformAt(Point origin) const;

    ValueDictionary _userData;
    double _angle = 0.0;
    Point _scale{1.0, 1.0};
    double _slantHorizontal = 0.0;
    double _slantVertical = 0.0;
};
