#pragma once

#include "platform/Geometry.h"

// The six numbers of a transform: x' = m11 x + m21 y + tX, y' = m12 x + m22 y + tY.
struct AffineTransformStruct {
    double m11 = 1.0, m12 = 0.0, m21 = 0.0, m22 = 1.0, tX = 0.0, tY = 0.0;
    friend bool operator==(const AffineTransformStruct&, const AffineTransformStruct&) = default;
};

// A transform in the manner of the platform: translate, rotate and scale act before what the
// transform already does (they are prepended), appendTransform acts after it.
class AffineTransform {
public:
    AffineTransform() = default;
    explicit AffineTransform(const AffineTransformStruct& m) : _m(m) {}

    // The identity.
    static AffineTransform transform() { return AffineTransform(); }

    void translateXBy_yBy(double deltaX, double deltaY);
    void rotateByDegrees(double angle);
    void rotateByRadians(double angle);
    void scaleBy(double scale);
    void scaleXBy_yBy(double scaleX, double scaleY);
    // This transform, then other.
    void appendTransform(const AffineTransform& other);
    // Other, then this transform.
    void prependTransform(const AffineTransform& other);
    // Leaves a transform that cannot be inverted unchanged.
    void invert();

    Point transformPoint(Point p) const;
    Size transformSize(Size s) const;

    const AffineTransformStruct& transformStruct() const { return _m; }
    void setTransformStruct(const AffineTransformStruct& m) { _m = m; }

    // Appends this transform to the current graphics context's.
    void concat() const;

    friend bool operator==(const AffineTransform&, const AffineTransform&) = default;

private:
    AffineTransformStruct _m;
};
