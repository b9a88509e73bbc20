#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "platform/StringFormat.h"

#include <algorithm>
#include <map>

namespace {

using Group = std::vector<std::string>;
using LayerList = std::vector<std::shared_ptr<VLLayer>>;

bool contains(const Group& group, const std::string& layerId)
{
    return std::find(group.begin(), group.end(), layerId) != group.end();
}

bool sharesMember(const Group& a, const Group& b)
{
    return std::any_of(b.begin(), b.end(), [&](const auto& layerId) { return contains(a, layerId); });
}

void absorb(Group& into, const Group& other)
{
    for (const auto& layerId : other)
        if (!contains(into, layerId)) into.push_back(layerId);
}

// Into the first group that shares a layer, or as a group of its own.
void mergeIntoGroups(VLGlyph::LayerGroups& groups, const Group& group)
{
    auto sharing = std::find_if(groups.begin(), groups.end(), [&](const auto& g) { return sharesMember(g, group); });
    if (sharing != groups.end())
        absorb(*sharing, group);
    else
        groups.push_back(group);
}

// One pass: each group takes in the later ones that share a layer with it as it has grown so far.
void mergeSharingGroups(VLGlyph::LayerGroups& groups)
{
    std::vector<bool> absorbed(groups.size(), false);
    for (size_t i = 0; i < groups.size(); ++i) {
        if (absorbed[i]) continue;
        for (size_t j = i + 1; j < groups.size(); ++j) {
            if (absorbed[j] || !sharesMember(groups[i], groups[j])) continue;
            absorb(groups[i], groups[j]);
            absorbed[j] = true;
        }
    }
    size_t index = 0;
    std::erase_if(groups, [&](const auto&) { return absorbed[index++]; });
}

bool takesPartInForcedGroups(const VLLayer& layer)
{
    return layer.isMasterLayer() || layer.isBraceLayer() || layer.isBracketLayer() || layer.isColorPaletteLayer();
}

// The layers filed under one key, with the master each belongs to.
using FiledLayers = std::vector<std::pair<std::string, std::string>>;

// "[]", where the masters and the brace layers stand, ahead of the rest.
bool forcedKeyOrder(const std::string& a, const std::string& b)
{
    if ((a.size() == 2) != (b.size() == 2)) return a.size() == 2;
    return a < b;
}

} // namespace

VLGlyph::LayerGroups VLGlyph::layerGroups()
{
    auto font = parent();
    return font ? layerGroups_masters(font->allMasters()) : LayerGroups();
}

VLGlyph::LayerGroups VLGlyph::layerGroups_masters(const std::vector<std::shared_ptr<VLFontMaster>>& masters)
{
    readLayersIfEmpty();
    std::set<std::string> seen;
    LayerGroups groups = forcedLayerGroupIdsSeenLayers(seen, masters);
    const LayerList layers = _layers.allValues();
    if (isSmartGlyph()) {
        Group smart;
        for (const auto& layer : layers)
            if (layer->isSmartComponentLayer()) smart.push_back(layer->layerId());
        if (!smart.empty()) mergeIntoGroups(groups, smart);
        seen.insert(smart.begin(), smart.end());
    }
    for (const auto& colorGroup : _colorLayerGroups(layers)) {
        Group group;
        for (const auto& layer : colorGroup) group.push_back(layer->layerId());
        groups.push_back(group);
    }
    mergeSharingGroups(groups);
    for (const auto& master : masters)
        if (!seen.contains(master->id())) groups.push_back({master->id()});
    return groups;
}

VLGlyph::LayerGroups VLGlyph::forcedLayerGroupIdsSeenLayers(std::set<std::string>& seenLayers,
                                                           const std::vector<std::shared_ptr<VLFontMaster>>& masters)
{
    readLayersIfEmpty();
    std::map<std::string, FiledLayers> filed;
    std::map<std::string, long> repeats;
    for (const auto& layer : _layers.allValues()) {
        if (!takesPartInForcedGroups(*layer)) continue;
        std::string key = layer->layerGroupKey();
        if (key.empty()) key = "[]";
        if (layer->isColorPaletteLayer() && !layer->isMasterLayer()) {
            std::string place = layer->isBraceLayer() ? layer->attributeForKey("coordinates").description()
                                                      : layer->associatedMasterId();
            key += stringWithFormat("_%02ld", repeats["__" + place + "_" + key + "__"]++);
        }
        filed[key].emplace_back(layer->layerId(), layer->associatedMasterId());
    }
    std::vector<std::string> keys;
    for (const auto& [key, members] : filed)
        if (key.starts_with("[") || key.starts_with("Color")) keys.push_back(key);
    std::sort(keys.begin(), keys.end(), forcedKeyOrder);

    LayerGroups groups;
    for (const std::string& key : keys) {
        const FiledLayers& members = filed[key];
        Group group;
        for (const auto& [layerId, masterId] : members) group.push_back(layerId);
        // Palette groups pair palette layers alone; the others must match every master.
        auto hasMember = [&](const std::string& masterId) {
            return std::any_of(members.begin(), members.end(), [&](const auto& m) { return m.second == masterId; });
        };
        if (!key.starts_with("Color"))
            for (const auto& master : masters)
                if (!hasMember(master->id())) absorb(group, {master->id()});
        seenLayers.insert(group.begin(), group.end());
        groups.push_back(group);
    }
    return groups;
}

std::vector<std::vector<std::shared_ptr<VLLayer>>> VLGlyph::_colorLayerGroups(const LayerList& layers)
{
    std::vector<std::string> masterOrder;
    std::map<std::string, LayerList> byMaster;
    for (const auto& layer : layers) {
        if (!layer->isAnyColorLayer()) continue;
        const std::string& masterId = layer->associatedMasterId();
        if (!byMaster.contains(masterId)) masterOrder.push_back(masterId);
        byMaster[masterId].push_back(layer);
    }
    auto keysOf = [&](const std::string& masterId) {
        std::set<std::optional<std::string>> keys;
        for (const auto& layer : byMaster[masterId]) keys.insert(layer->layerKey());
        return keys;
    };
    std::vector<LayerList> groups;
    if (masterOrder.empty()) return groups;
    auto firstKeys = keysOf(masterOrder.front());
    if (!std::all_of(masterOrder.begin(), masterOrder.end(), [&](const auto& m) { return keysOf(m) == firstKeys; }))
        return groups;
    size_t count = byMaster[masterOrder.front()].size();
    for (const auto& masterId : masterOrder) count = std::min(count, byMaster[masterId].size());
    for (size_t k = 0; k < count; ++k) {
        LayerList group;
        for (const auto& masterId : masterOrder) group.push_back(byMaster[masterId][k]);
        groups.push_back(group);
    }
    return groups;
}
