#include "outline/VLComponent.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"
#include "reader/VLPlistLexical.h"
#include "reader/VLPlistRecordReading.h"
#include "reader/VLPlistRecords.h"
#include "reader/VLShapeKeys.h"

namespace {

bool readShapeKey(VLShapeKeys& k, VLPlistParseInfo* info, uint8_t format)
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
        k.placeByMatrix(m);
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

} // namespace

std::shared_ptr<VLShape> VLShape::initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format)
{
    if (*info->curr == '"') {
        ++info->curr;
        auto path = VLPath::init();
        return path->parseVelmorLine_format(info, format) ? path : nullptr;
    }
    VLShapeKeys keys;
    if (!readPlistRecord(info, [&] { return readShapeKey(keys, info, format); })) return nullptr;
    if (keys.reference) return makeComponentFromShapeKeys(keys);
    if (keys.nodes) return makePathFromShapeKeys(keys, format);
    return nullptr;
}
