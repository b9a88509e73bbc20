#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "model/VLValueHelpers.h"

#include <map>

namespace {

using LayerList = std::vector<std::shared_ptr<VLLayer>>;

std::shared_ptr<VLLayer> detachedCopy(const VLLayer& layer)
{
    auto copy = layer.copyThin(true);
    for (const auto& [key, value] : layer.userData()) copy->setUserData_forKey(deepMutableCopy(value), key);
    return copy;
}

// A corner glyph's brace layers give the corner its shape between masters; each layer key is one
// such shape across the masters.
std::vector<LayerList> braceLayersByKey(const VLGlyph& glyph)
{
    std::vector<std::optional<std::string>> keys;
    std::map<std::optional<std::string>, LayerList> byKey;
    for (const auto& layer : glyph.layers().allValues()) {
        if (!layer->isBraceLayer()) continue;
        if (!byKey.contains(layer->layerKey())) keys.push_back(layer->layerKey());
        byKey[layer->layerKey()].push_back(layer);
    }
    std::vector<LayerList> groups;
    for (const auto& key : keys) groups.push_back(byKey[key]);
    return groups;
}

// One factor takes the layers of its master as they are.
void copySpecialLayers(VLGlyph& glyph, const std::string& masterId, LayerList& into)
{
    if (glyph.isAnyColorGlyph())
        for (const auto& group : VLGlyph::_colorLayerGroups(glyph.layers().allValues()))
            into.push_back(detachedCopy(*group.front()));
    if (glyph.isCornerGlyph())
        for (const auto& layer : glyph.layers().allValues())
            if (layer->isBraceLayer() && layer->associatedMasterId() == masterId) into.push_back(detachedCopy(*layer));
}

void interpolateSpecialLayers(VLGlyph& glyph, const VLFactors& factors, LayerList& into, VLError* error)
{
    if (glyph.isAnyColorGlyph())
        for (const auto& group : VLGlyph::_colorLayerGroups(glyph.layers().allValues()))
            if (auto layer = glyph._interpolateLayers_interpolation_error(group, factors, error)) into.push_back(layer);
    if (!glyph.isCornerGlyph()) return;
    for (const auto& group : braceLayersByKey(glyph)) {
        auto layer = glyph._interpolateLayers_interpolation_error(group, factors, error);
        if (!layer) continue;
        layer->setAttributes(group.front()->attributes());
        into.push_back(layer);
    }
}

} // namespace

std::shared_ptr<VLLayer> VLGlyph::interpolate_error(const VLFactors& factors, VLError* error)
{
    auto font = parent();
    if (!font) return nullptr;
    return _interpolate_masters_layerName_additionalLayers_error(factors, font->allMasters(), std::nullopt, nullptr,
                                                                error);
}

std::shared_ptr<VLLayer> VLGlyph::_interpolate_masters_layerName_additionalLayers_error(
    const VLFactors& factors, const std::vector<std::shared_ptr<VLFontMaster>>& masters,
    const std::optional<std::string>& layerName, LayerList* additionalLayers,
    VLError* error)
{
    readLayersIfEmpty();
    if (factors.empty()) {
        auto first = masters.empty() ? nullptr : layerForId(masters.front()->id());
        return first ? detachedCopy(*first) : nullptr;
    }
    auto layerOf = [&](const std::string& key) { return layerName ? layerForName_masterId(*layerName, key) : layerForId(key); };
    if (factors.count() == 1) {
        auto layer = layerOf(*factors.keyAtIndex(0));
        if (!layer) return nullptr;
        if (additionalLayers) copySpecialLayers(*this, *factors.keyAtIndex(0), *additionalLayers);
        return detachedCopy(*layer);
    }
    std::shared_ptr<VLLayer> result;
    LayerList layers;
    for (const std::string& key : factors.allKeys())
        if (auto layer = layerOf(key)) layers.push_back(layer);
    if (!layers.empty()) {
        result = _interpolateLayers_interpolation_error(layers, factors, error);
        if (!result) return nullptr;
    }
    if (additionalLayers) interpolateSpecialLayers(*this, factors, *additionalLayers, error);
    return result;
}
