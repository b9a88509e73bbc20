#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLComponent.h"

#include <cmath>

std::shared_ptr<VLGlyph> VLComponent::component() const
{
    auto owner = font();
    auto known = _component.lock();
    if (known && known->parent() == owner) return known;
    auto found = owner && !_componentName.empty() ? owner->glyphForName(_componentName) : nullptr;
    _component = found;
    return found;
}

void VLComponent::updateComponentGlyph(bool notify)
{
    auto found = component();
    // The look-up also knows glyphs by other names; the reference then takes the glyph's own.
    if (found && notify && found->name() != _componentName) _componentName = found->name();
}

std::shared_ptr<VLLayer> VLComponent::baseComponentLayerForGlyph(const std::shared_ptr<VLGlyph>& glyph) const
{
    auto owner = layer();
    if (!glyph || !owner) return nullptr;
    const std::string& masterId = _componentMasterId ? *_componentMasterId : owner->associatedMasterId();
    if (auto base = glyph->layerForId(masterId)) return base;
    return glyph->layerForId(owner->associatedMasterId());
}

std::shared_ptr<VLLayer> VLComponent::componentLayer() const
{
    auto base = baseComponentLayer();
    if (!base) return nullptr;
    if (std::abs(_keepWeight) > 0.001) return pluginTransformLayer(base);
    return base;
}
