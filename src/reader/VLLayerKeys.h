#pragma once

#include "model/VLLayer.h"
#include "outline/VLAnchor.h"
#include "platform/Value.h"

#include <memory>
#include <vector>

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

// Anchors by name; of two of one name the later stays.
inline void setLayerAnchors(VLLayer& layer, const std::vector<std::shared_ptr<VLAnchor>>& anchors)
{
    VLLayer::Anchors byName;
    for (const auto& anchor : anchors) {
        anchor->setParent(layer.shared_from_this());
        byName.setObject_forKey(anchor, anchor->name());
    }
    layer.setAnchorsFast(std::move(byName));
}
