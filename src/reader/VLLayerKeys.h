#pragma once

#include "model/VLLayer.h"
#include "platform/Value.h"


// A layer's "userData". Older documents kept the part selection of smart layers in it.
inline void setLayerUserData(VLLayer& layer, ValueDictionary entries)
{
    auto selection = entries.find("PartSelection");
    if (layer.partSelection().empty() && selection != entries.end()) {
        layer.setPartSelection(selection->second.dictionary());
        entries.erase(selection);
    }
    for (const auto& [key, value] : entries) layer.setUserData_forKey(value, key);
}
