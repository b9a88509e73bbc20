#include "geometry/VLDecomposeMatrix.h"
#include "outline/VLComponent.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"
#include "reader/VLPlistLexical.h"
#include "reader/VLPlistRecordReading.h"
#include "reader/VLPlistRecords.h"

#include <optional>

namespace {

// Everything a shape record may say, kept until its keys tell whether it is a path or a component.
struct ShapeKeys {
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
};

bool readShapeKey(ShapeKeys& k, VLPlistParseInfo* info, uint8_t format)
{
    if (matchKey(info, "closed")) return k.closed = readPlistInteger(info) != 0, true;
    if (matchKey(info, "nodes")) return (k.nodes = readPlistObjects<VLNode>(info, format)).has_value();
    if (matchKey(info, "attributes") || matchKey(info, "attr"))
        return k.attributes = parsePlistMutableDict(info).dictionary(), true;
    if (matchKey(info, "disableAlignment")) {
        if (readPlistInteger(info) == 1) k.alignment = VLComponent::AlignmentDisabled;
        return true;
    }
    if (matchKey(info, "alignment")) return k.alignment = static_cast<int8_t>(readPlistInteger(info)), true;
    if (matchKey(info, "ref") || matchKey(info, "name")) return k.reference = readPlistString(info), true;
    if (matchKey(info, "masterId")) return k.masterId = readPlistString(info), true;
    if (matchKey(info, "transform")) {
        double m[6] = {1, 0, 0, 1, 0, 0};
        parsePlistTransform(info, m);
        // Only the linear part: the translation of this form is not the component's position.
        VLDecomposedMatrix parts = VLDecomposeMatrix({m[0], m[1], m[2], m[3], m[4], m[5]});
        k.scale = {parts.scaleX, parts.scaleY};
        k.angle = parts.angle;
        k.slantHorizontal = parts.slantHorizontal;
        k.slantVertical = parts.slantVertical;
        return true;
    }
    if (matchKey(info, "angle")) return k.angle = parsePlistDoubleValue(info), true;
    if (matchKey(info, "scale")) return k.scale = parsePlistPoint(info), true;
    if (matchKey(info, "slant")) {
        Point slant = parsePlistPoint(info);
        return k.slantHorizontal = slant.x, k.slantVertical = slant.y, true;
    }
    if (matchKey(info, "pos")) return k.position = parsePlistPoint(info), true;
    if (matchKey(info, "anchor")) return k.anchor = readPlistString(info), true;
    if (matchKey(info, "locked")) return k.locked = readPlistInteger(info) != 0, true;
    if (matchKey(info, "keepWeight")) return k.keepWeight = parsePlistDoubleValue(info), true;
    if (matchKey(info, "piece")) return k.piece = parsePlistDict(info).dictionary(), true;
    if (matchKey(info, "userData")) return k.userData = readPlistMergedDict(info).dictionary(), true;
    if (matchKey(info, "shapes")) return readPlistObjects<VLShape>(info, format).has_value();
    // An unknown key is left unread: the record ends on it and the list reader fails there.
    return true;
}

std::shared_ptr<VLShape> makeComponent(const ShapeKeys& k)
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

std::shared_ptr<VLShape> makePath(ShapeKeys& k, uint8_t format)
{
    auto path = VLPath::init();
    path->setNodesFast(std::move(*k.nodes));
    path->setClosed(k.closed);
    path->setLocked(k.locked);
    if (k.attributes) path->setAttributes_format(*k.attributes, format);
    return path;
}

} // namespace

std::shared_ptr<VLShape> VLShape::initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format)
{
    if (*info->curr == '"') {
        ++info->curr;
        auto path = VLPath::init();
        return path->parseVelmorLine_format(info, format) ? path : nullptr;
    }
    ShapeKeys keys;
    if (!readPlistRecord(info, [&] { return readShapeKey(keys, info, format); })) return nullptr;
    if (keys.reference) return makeComponent(keys);
    if (keys.nodes) return makePath(keys, format);
    return nullptr;
}
