#pragma once

#include "geometry/VLGeometry.h"
#include "model/VLShape.h"
#include "outline/VLPath.h"
#include "platform/Value.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

// Everything a shape record may say, kept until its keys tell whether it is a path or a
// component. Both the streaming reader and the dictionary route fill it, so that a record builds
// the same shape whichever way it was read.
struct VLShapeKeys {
    bool closed = true;
    std::optional<VLPath::Nodes> nodes;
    std::optional<ValueDictionary> attributes;
    int8_t alignment = 0;
    std::optional<std::string> reference, masterId, anchor;
    Point scale{1, 1};
    double angle = 0, keepWeight = 0, slantHorizontal = 0, slantVertical = 0;
    Point position{0, 0};
    bool locked = false;
    std::optional<ValueDictionary> piece, userData;

    // Scale, angle and slants from a transform's linear part.
    void placeByMatrix(const double m[6]);
};

std::shared_ptr<VLShape> makeComponentFromShapeKeys(const VLShapeKeys& k);
std::shared_ptr<VLShape> makePathFromShapeKeys(VLShapeKeys& k, uint8_t format);
