#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "platform/StringFormat.h"
#include "platform/VLError.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>

namespace {

using Group = std::vector<std::string>;
using LayerList = std::vector<std::shared_ptr<VLLayer>>;

// A group that takes ids in order, each once.
struct GroupBuilder {
    Group ids;
    std::unordered_set<std::string> members;

    void add(const std::string& layerId)
    {
        if (members.insert(layerId).second) ids.push_back(layerId);
    }
};

// Into the first group that shares a layer, or as a group of its own.
void mergeIntoGroups(VLGlyph::LayerGroups& groups, const Group& group)
{
    const std::unordered_set<std::string> members(group.begin(), group.end());
    auto sharing = std::find_if(groups.begin(), groups.end(), [&](const Group& g) {
        return std::any_of(g.begin(), g.end(), [&](const auto& layerId) { return members.contains(layerId); });
    });
    if (sharing == groups.end()) {
        groups.push_back(group);
        return;
    }
    GroupBuilder merged{*sharing, {sharing->begin(), sharing->end()}};
    for (const auto& layerId : group) merged.add(layerId);
    *sharing = std::move(merged.ids);
}

// Each group in turn takes in the later groups that share a layer with it, also through the layers
// it has taken in. An index of the groups of each layer keeps this linear in the members.
void mergeSharingGroups(VLGlyph::LayerGroups& groups)
{
    std::unordered_map<std::string, std::vector<size_t>> groupsOfLayer;
    for (size_t i = 0; i < groups.size(); ++i)
        for (const auto& layerId : groups[i]) groupsOfLayer[layerId].push_back(i);
    std::vector<bool> absorbed(groups.size(), false);
    for (size_t i = 0; i < groups.size(); ++i) {
        if (absorbed[i]) continue;
        GroupBuilder grown{groups[i], {groups[i].begin(), groups[i].end()}};
        for (size_t k = 0; k < grown.ids.size(); ++k) {
            for (size_t j : groupsOfLayer[grown.ids[k]]) {
                if (j <= i || absorbed[j]) continue;
                absorbed[j] = true;
                for (const auto& layerId : groups[j]) grown.add(layerId);
            }
        }
        groups[i] = std::move(grown.ids);
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

VLGlyph::LayerGroups VLGlyph::layerGroups(VLError* error)
{
    auto font = parent();
    return font ? layerGroups_masters_error(font->allMasters(), error) : LayerGroups();
}

VLGlyph::LayerGroups VLGlyph::layerGroups_masters_error(const std::vector<std::shared_ptr<VLFontMaster>>& masters,
                                                        VLError* error)
{
    readLayersIfEmpty();
    std::set<std::string> seen;
    VLError tooMany;
    LayerGroups groups = forcedLayerGroupIdsSeenLayers_error(seen, masters, &tooMany);
    if (!tooMany.domain.empty()) {
        handOut(error, tooMany);
        return {};
    }
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

VLGlyph::LayerGroups VLGlyph::forcedLayerGroupIdsSeenLayers_error(std::set<std::string>& seenLayers,
                                                                 const std::vector<std::shared_ptr<VLFontMaster>>& masters,
                                                                 VLError* error)
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

    // Palette groups pair palette layers alone; the others are completed by every master.
    size_t completed = std::count_if(keys.begin(), keys.end(), [](const auto& key) { return !key.starts_with("Color"); });
    if (completed * masters.size() + _layers.count() > VLLayerGroupsMaximumMembers) {
        handOut(error, VLError::errorWithDomain_code_userInfo(
                           "VelmorErrorDomain", 125, {{VLError::localizedDescriptionKey, "Too many entries: layer groups"}}));
        return {};
    }
    LayerGroups groups;
    for (const std::string& key : keys) {
        GroupBuilder group;
        std::unordered_set<std::string> mastersWithMembers;
        for (const auto& [layerId, masterId] : filed[key]) {
            group.add(layerId);
            mastersWithMembers.insert(masterId);
        }
        if (!key.starts_with("Color"))
            for (const auto& master : masters)
                if (!mastersWithMembers.contains(master->id())) group.add(master->id());
        seenLayers.insert(group.ids.begin(), group.ids.end());
        groups.push_back(std::move(group.ids));
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
