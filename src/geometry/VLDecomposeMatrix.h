#pragma once

#include "platform/AffineTransform.h"

// The parts of a matrix as a component keeps them: scale, rotation and slants, angles in degrees.
struct VLDecomposedMatrix {
    double scaleX = 1.0;
    double scaleY = 1.0;
    double angle = 0.0;
    double slantHorizontal = 0.0;
    double slantVertical = 0.0;
};

// Chooses between a shear model and a slant-and-scale model, whichever explains the matrix with
// less rotation and slant.
VLDecomposedMatrix VLDecomposeMatrix(const AffineTransformStruct& m);
