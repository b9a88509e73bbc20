#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "model/VLPartProperty.h"
#include "outline/VLComponent.h"
#include "platform/NumberConversion.h"
#include "platform/VLUnsetValue.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

// A component that keeps its stems' weight by more than this has its layer scaled for it.
constexpr double smallestKeepWeight = 0.001;

// Settings that ask for no part values: none, or only the mark of a group member, which stands
// for an arrangement that its glyph already holds.
bool asksForNoPartValues(const ValueDictionary& settings)
{
    return settings.empty() || (settings.size() == 1 && settings.contains("Group"));
}

// The latest change of the glyph and of the glyphs that its layer for the component places: a
// layer made before it is out of date.
double newestChange(const VLComponent& component, const std::shared_ptr<VLGlyph>& glyph)
{
    double newest = glyph->lastOperationInterval();
    auto base = component.associatedBaseComponentLayerForGlyph(glyph);
    if (!base) return newest;
    for (const auto& shape : base->shapes()) {
        if (shape->shapeType() != VLShapeType::Component) continue;
        if (auto placed = static_cast<const VLComponent&>(*shape).component())
            newest = std::max(newest, placed->lastOperationInterval());
    }
    return newest;
}

} // namespace

void VLComponent::setPieceSettings(ValueDictionary settings)
{
    _pieceSettings = std::move(settings);
    _cachedLayer.reset();
    _lastChange = 0.0;
}

double VLComponent::pieceValueForKey(const std::string& key) const
{
    auto found = _pieceSettings.find(key);
    if (found == _pieceSettings.end() || found->second.isNull()) return VLUnsetValue;
    return static_cast<double>(VLSinglePrecision(found->second.doubleValue()));
}

void VLComponent::setPieceValue_forKey(double value, const std::string& key)
{
    ValueDictionary settings = _pieceSettings;
    if (value >= VLUnsetValue)
        settings.erase(key);
    else
        settings[key] = Value(value);
    setPieceSettings(std::move(settings));
}

double VLComponent::valueForAxis(const VLPartProperty& axis) const
{
    double own = pieceValueForKey(axis.axisId());
    if (own != VLUnsetValue) return own;
    auto base = associatedBaseComponentLayerForGlyph(component());
    if (!base) return VLUnsetValue;
    auto setting = base->partSelection().find(axis.axisId());
    return setting == base->partSelection().end() ? VLUnsetValue : axis.valueForPartSetting(setting->second);
}

std::shared_ptr<VLLayer> VLComponent::associatedBaseComponentLayerForGlyph(const std::shared_ptr<VLGlyph>& glyph) const
{
    auto owner = layer();
    if (!glyph || !owner) return nullptr;
    return glyph->layerForId(_componentMasterId ? *_componentMasterId : owner->associatedMasterId());
}

std::shared_ptr<VLLayer> VLComponent::componentLayer() const
{
    auto glyph = component();
    if (!glyph) return nullptr;
    // Plain components keep no layer and need not look for changes.
    std::optional<double> known;
    auto newest = [&] { return known ? *known : *(known = newestChange(*this, glyph)); };
    if (_cachedLayer && _cachedLayer->parent() == glyph && _lastChange >= newest()) return _cachedLayer;
    auto base = baseComponentLayerForGlyph(glyph);
    if (!base) return nullptr;
    if (std::fabs(keepWeight()) > smallestKeepWeight) {
        _lastChange = newest();
        _cachedLayer = pluginTransformLayer(base);
        if (_cachedLayer) _cachedLayer->setParent(base->parent());
        return _cachedLayer;
    }
    if (asksForNoPartValues(_pieceSettings)) return base;
    // A group member's settings end here: the components of the layer made keep the settings the
    // sum gives them.
    _lastChange = newest();
    _cachedLayer = base->pieceInterpolate(_pieceSettings);
    if (_cachedLayer) _cachedLayer->setParent(base->parent());
    return _cachedLayer;
}
