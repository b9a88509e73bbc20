#include "interpolation/VLMasterFactors.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLComponent.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

std::shared_ptr<VLGlyph> VLComponent::component() const
{
    auto owner = font();
    auto known = _component.lock();
    if (known && known->parent() == owner) return known;
    auto found = owner && !_componentName.empty() ? owner->glyphForName(_componentName) : nullptr;
    _component = found;
    return found;
}

std::shared_ptr<VLLayer> VLComponent::baseComponentLayerForGlyph(const std::shared_ptr<VLGlyph>& glyph) const
{
    auto owner = layer();
    if (!glyph || !owner) return nullptr;
    const std::string& masterId = _componentMasterId ? *_componentMasterId : owner->associatedMasterId();
    if (auto base = specialOrMasterLayer(*glyph, owner->layerKey(), masterId)) return base;
    return glyph->layerForId(owner->associatedMasterId());
}

// A component in a special layer shows the glyph's layer of the same kind and place.
std::shared_ptr<VLLayer> VLComponent::specialOrMasterLayer(VLGlyph& glyph, const std::optional<std::string>& key,
                                                           const std::string& masterId) const
{
    if (!key) return glyph.layerForId(masterId);
    if (auto base = glyph.layerForKey_masterId(*key, masterId)) return base;
    if (key->starts_with("Color ") && key->find('_') != std::string::npos)
        if (auto base = fallbackColorLayerKey_layerKey_masterID(glyph, *key, masterId)) return base;
    return _interpolatedLayer_masterID(glyph, masterId);
}

std::shared_ptr<VLLayer> VLComponent::fallbackColorLayerKey_layerKey_masterID(VLGlyph& glyph, const std::string& key,
                                                                              const std::string& masterId)
{
    size_t underscore = key.rfind('_');
    std::string stem = key.substr(0, underscore);
    long number = std::strtol(key.c_str() + underscore + 1, nullptr, 10);
    // The colour layers of a palette index go down from the one asked for to the first.
    for (long lower = std::min(number, 10000L) - 1; lower >= 1; --lower)
        if (auto layer = glyph.layerForKey_masterId(stem + "_" + std::to_string(lower), masterId)) return layer;
    return glyph.layerForKey_masterId(stem, masterId);
}

std::shared_ptr<VLLayer> VLComponent::_interpolatedLayer_masterID(VLGlyph& glyph, const std::string& masterId) const
{
    auto owner = layer();
    auto font = glyph.parent();
    auto master = font ? font->fontMasterForId(masterId) : nullptr;
    if (!owner || !master) return nullptr;
    if (_cachedLayer && _cachedLayer->glyph().get() == &glyph && _lastChange >= glyph.lastOperationInterval())
        return _cachedLayer;
    std::vector<double> location = master->axesValuesList();
    if (!owner->axesValuesList_fontAxes(location, font->axes())) return nullptr;
    auto factors = VLMasterFactorsAtLocation(*font, location);
    auto interpolated = factors ? glyph.interpolate_error(*factors, nullptr) : nullptr;
    if (!interpolated) return nullptr;
    // The glyph's name and master let the layer's own components find their layers.
    interpolated->setParent(glyph.shared_from_this());
    interpolated->setAssociatedMasterId(masterId);
    _cachedLayer = interpolated;
    _lastChange = glyph.lastOperationInterval();
    return interpolated;
}
