#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLComponent.h"

std::shared_ptr<VLGlyph> VLComponent::component() const
{
    auto owner = font();
    return owner && !_componentName.empty() ? owner->glyphForName(_componentName) : nullptr;
}

std::shared_ptr<VLLayer> VLComponent::baseComponentLayerForGlyph(const std::shared_ptr<VLGlyph>& glyph) const
{
    auto owner = layer();
    if (!glyph || !owner) return nullptr;
    const std::string& masterId = _componentMasterId ? *_componentMasterId : owner->associatedMasterId();
    if (auto base = glyph->layerForId(masterId)) return base;
    return glyph->layerForId(owner->associatedMasterId());
}
