#include "reader/VLShapeKeys.h"

#include "geometry/VLDecomposeMatrix.h"
#include "outline/VLComponent.h"
#include "outline/VLNode.h"

// Only the linear part: the translation of a shape's transform is not the component's position.
void VLShapeKeys::placeByMatrix(const double m[6])
{
    VLDecomposedMatrix parts = VLDecomposeMatrix({m[0], m[1], m[2], m[3], m[4], m[5]});
    scale = {parts.scaleX, parts.scaleY};
    angle = parts.angle;
    slantHorizontal = parts.slantHorizontal;
    slantVertical = parts.slantVertical;
}

std::shared_ptr<VLShape> makeComponentFromShapeKeys(const VLShapeKeys& k)
{
    auto component = VLComponent::init();
    component->setComponentName(*k.reference);
    if (k.masterId) component->setComponentMasterId(*k.masterId);
    component->setLocked(k.locked);
    component->setPositionFast(k.position);
    component->setScale(k.scale);
    component->setAngle(k.angle);
    component->setAlignment(k.alignment);
    component->setSlantHorizontal(k.slantHorizontal);
    component->setSlantVertical(k.slantVertical);
    if (k.anchor) component->setAnchor(*k.anchor);
    if (k.piece) component->setPieceSettings(*k.piece);
    if (k.userData)
        for (const auto& [key, value] : *k.userData) component->setUserData_forKey(value, key);
    if (k.attributes) component->setAttributes_format(*k.attributes, 3);
    component->setKeepWeight(k.keepWeight);
    return component;
}

std::shared_ptr<VLShape> makePathFromShapeKeys(VLShapeKeys& k, uint8_t format)
{
    auto path = VLPath::init();
    path->setNodesFast(std::move(*k.nodes));
    path->setClosed(k.closed);
    path->setLocked(k.locked);
    if (k.attributes) path->setAttributes_format(*k.attributes, format);
    return path;
}
