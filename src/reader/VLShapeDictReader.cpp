#include "outline/VLComponent.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"
#include "reader/VLDictRecords.h"
#include "reader/VLShapeKeys.h"

namespace {

// Nothing for a list longer than a path may hold.
std::optional<VLPath::Nodes> nodesFromValue(const Value& list, uint8_t format)
{
    return readDictRecords<VLNode>(list, false, [&](const Value& element) {
        return VLNode::initWithArray_format(element, format);
    });
}

void readPlacement(VLShapeKeys& k, const Value& dict, uint8_t format)
{
    if (!dict["transform"].isNull()) {
        double m[6] = {1, 0, 0, 1, 0, 0};
        transformFromValue(dict["transform"], m);
        k.placeByMatrix(m);
        // The older format places a component by its whole matrix, without slants.
        if (format < 2) k.position = {m[4], m[5]}, k.slantHorizontal = k.slantVertical = 0;
    }
    if (!dict["angle"].isNull()) k.angle = dict["angle"].doubleValue();
    if (auto scale = pointFromValue(dict["scale"])) k.scale = *scale;
    if (auto slant = pointFromValue(dict["slant"])) k.slantHorizontal = slant->x, k.slantVertical = slant->y;
    if (auto position = pointFromValue(dict["pos"])) k.position = *position;
}

void readComponentKeys(VLShapeKeys& k, const Value& dict, uint8_t format)
{
    if (dict["disableAlignment"].integerValue() == 1) k.alignment = VLComponent::AlignmentDisabled;
    if (!dict["alignment"].isNull()) k.alignment = static_cast<int8_t>(dict["alignment"].integerValue());
    for (const char* key : {"name", "ref"})
        if (dict[key].isString()) k.reference = dict[key].string();
    if (dict["masterId"].isString()) k.masterId = dict["masterId"].string();
    if (dict["anchor"].isString()) k.anchor = dict["anchor"].string();
    k.keepWeight = dict["keepWeight"].doubleValue();
    if (dict["piece"].isDictionary()) k.piece = dict["piece"].dictionary();
    if (dict["userData"].isDictionary()) k.userData = dict["userData"].dictionary();
    readPlacement(k, dict, format);
}

VLShapeKeys shapeKeysFromDict(const Value& dict, uint8_t format)
{
    VLShapeKeys k;
    if (!dict["closed"].isNull()) k.closed = dict["closed"].boolValue();
    if (dict["nodes"].isArray()) k.nodes = nodesFromValue(dict["nodes"], format);
    for (const char* key : {"attributes", "attr"})
        if (dict[key].isDictionary()) k.attributes = dict[key].dictionary();
    k.locked = dict["locked"].boolValue();
    readComponentKeys(k, dict, format);
    return k;
}

} // namespace

std::shared_ptr<VLPath> VLPath::initWithDict_format(const Value& dict, uint8_t format)
{
    if (dict.isString()) {
        auto path = init();
        bool ok = readLineOfString(dict.string(), [&](VLPlistParseInfo* info) {
            return path->parseVelmorLine_format(info, format);
        });
        return ok ? path : nullptr;
    }
    if (!dict.isDictionary()) return nullptr;
    VLShapeKeys keys = shapeKeysFromDict(dict, format);
    if (!keys.nodes && !dict["nodes"].isNull()) return nullptr;
    if (!keys.nodes) keys.nodes.emplace();
    return std::static_pointer_cast<VLPath>(makePathFromShapeKeys(keys, format));
}

std::shared_ptr<VLComponent> VLComponent::initWithDict_format(const Value& dict, uint8_t format)
{
    if (dict.isString()) {
        auto component = init();
        bool ok = readLineOfString(dict.string(), [&](VLPlistParseInfo* info) {
            return component->parseVelmorLine_format(info, format);
        });
        return ok ? component : nullptr;
    }
    if (!dict.isDictionary()) return nullptr;
    VLShapeKeys keys = shapeKeysFromDict(dict, format);
    if (!keys.reference) keys.reference.emplace();
    return std::static_pointer_cast<VLComponent>(makeComponentFromShapeKeys(keys));
}
