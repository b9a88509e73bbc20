#include "outline/VLAnchor.h"
#include "reader/VLAnchorKeys.h"
#include "reader/VLDictRecords.h"

std::shared_ptr<VLAnchor> VLAnchor::initWithDict_format(const Value& dict, uint8_t format)
{
    auto anchor = init();
    if (dict.isString()) {
        bool ok = readLineOfString(dict.string(), [&](VLPlistParseInfo* info) {
            return anchor->parseVelmorLine_format(info, format);
        });
        return ok ? anchor : nullptr;
    }
    if (!dict.isDictionary()) return nullptr;
    anchor->setName(dict["name"].isString() ? dict["name"].string() : "(empty)");
    for (const char* key : {"pos", "position"})
        if (auto position = pointFromValue(dict[key])) anchor->setPositionFast(*position);
    setAnchorOrientationName(*anchor, dict["orientation"].string());
    if (dict["userData"].isDictionary()) anchor->setUserData(dict["userData"].dictionary());
    anchor->setLocked(dict["locked"].boolValue());
    return anchor;
}
