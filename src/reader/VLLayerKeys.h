#pragma once

#include "model/VLLayer.h"
#include "outline/VLAnchor.h"
#include "outline/VLBackgroundImage.h"
#include "outline/VLHint.h"
#include "platform/Value.h"
#include "reader/VLColorKey.h"

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

// The keys of a layer that both routes read alike; Source is VLPlistKeySource or VLDictKeySource.
// Corner and cap components live in the hints, so a layer without them draws another outline.
template <typename Source> bool readCommonLayerKey(VLLayer& layer, Source& s, uint8_t format)
{
    if (s.is("name")) return layer.setName(s.string().string()), true;
    if (s.is("layerId")) {
        Value layerId = s.string();
        return layer.setLayerId(layerId.string()), !layerId.isNull();
    }
    if (s.is("associatedMasterId")) return layer.setAssociatedMasterId(s.string().string()), true;
    if (s.is("attr")) return layer.setAttributes(s.dict().dictionary()), true;
    if (s.is("partSelection")) {
        Value selection = s.dict();
        return layer.setPartSelection(selection.dictionary()), !selection.isNull();
    }
    if (s.is("anchors")) {
        auto anchors = s.template objects<VLAnchor>(format);
        return anchors && (layer.setAnchorArrayFast(*anchors), true);
    }
    if (s.is("hints")) {
        auto hints = s.template objects<VLHint>(format);
        return hints && (layer.setHintsFast(std::move(*hints)), true);
    }
    if (s.is("backgroundImage")) {
        auto image = s.template object<VLBackgroundImage>(format);
        if (image) layer.setBackgroundImage(image);
        return image != nullptr;
    }
    if (s.is("visible")) return layer.setVisible(static_cast<uint8_t>(s.integer()) != 0), true;
    if (s.is("userData")) return setLayerUserData(layer, s.mergedDict().dictionary()), true;
    if (s.is("color")) return readColorKey(layer, s);
    if (s.is(".lastUpdate")) return layer.setLastUpdate(s.number()), true;
    return false;
}
