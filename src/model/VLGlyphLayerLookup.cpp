#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"

#include <algorithm>
#include <cmath>

namespace {

using LayerList = std::vector<std::shared_ptr<VLLayer>>;

template <typename Test> std::shared_ptr<VLLayer> firstLayer(const LayerList& layers, Test test)
{
    auto found = std::find_if(layers.begin(), layers.end(), [&](const auto& layer) { return test(*layer); });
    return found == layers.end() ? nullptr : *found;
}

} // namespace

std::shared_ptr<VLLayer> VLGlyph::layerForName(const std::string& name)
{
    readLayersIfEmpty();
    return firstLayer(_layers.allValues(), [&](const VLLayer& layer) { return layer.name() == name; });
}

std::shared_ptr<VLLayer> VLGlyph::layerForName_masterId(const std::string& name, const std::string& masterId)
{
    readLayersIfEmpty();
    return firstLayer(_layers.allValues(), [&](const VLLayer& layer) {
        return layer.name() == name && layer.associatedMasterId() == masterId;
    });
}

std::shared_ptr<VLLayer> VLGlyph::layerForKey_masterId(const std::string& key, const std::string& masterId)
{
    readLayersIfEmpty();
    return firstLayer(_layers.allValues(), [&](const VLLayer& layer) {
        return layer.layerKey() == key && layer.associatedMasterId() == masterId;
    });
}

std::vector<std::shared_ptr<VLLayer>> VLGlyph::layersForName_masterIDs(const std::string& name,
                                                                       const std::vector<std::string>& masterIds)
{
    LayerList found;
    for (const std::string& masterId : masterIds)
        if (auto layer = layerForName_masterId(name, masterId)) found.push_back(layer);
    return found;
}

std::vector<std::shared_ptr<VLLayer>> VLGlyph::sortedLayers()
{
    readLayersIfEmpty();
    std::vector<std::string> masterIds;
    if (auto font = parent())
        for (const auto& master : font->fontMasters()) masterIds.push_back(master->id());
    auto place = [&](const VLLayer& layer) {
        auto found = std::find(masterIds.begin(), masterIds.end(), layer.associatedMasterId());
        return std::make_pair(found - masterIds.begin(), !layer.isMasterLayer());
    };
    LayerList layers = _layers.allValues();
    std::stable_sort(layers.begin(), layers.end(), [&](const auto& a, const auto& b) { return place(*a) < place(*b); });
    return layers;
}

std::shared_ptr<VLLayer> VLGlyph::layerNearestToPosition_associatedMasterId_onlyBraceLayer_tolerance(
    const std::vector<double>& position, const std::string& masterId, bool onlyBraceLayer, double tolerance)
{
    readLayersIfEmpty();
    auto font = parent();
    auto master = font ? font->fontMasterForId(masterId) : nullptr;
    if (!master) return nullptr;
    std::shared_ptr<VLLayer> nearest;
    double nearestDistance = tolerance;
    for (const auto& layer : _layers.allValues()) {
        bool brace = layer->isBraceLayer();
        if (layer->associatedMasterId() != masterId || !(brace || (!onlyBraceLayer && layer->isMasterLayer()))) continue;
        std::vector<double> location = master->axesValuesList();
        if (brace && !layer->axesValuesList_fontAxes(location, font->axes())) continue;
        if (location.size() != position.size()) continue;
        double squares = 0;
        for (size_t i = 0; i < location.size(); ++i) squares += (location[i] - position[i]) * (location[i] - position[i]);
        if (std::sqrt(squares) <= nearestDistance) {
            nearestDistance = std::sqrt(squares);
            nearest = layer;
        }
    }
    return nearest;
}

bool VLGlyph::anyLayerIs(bool (VLLayer::*kind)() const)
{
    readLayersIfEmpty();
    const LayerList layers = _layers.allValues();
    return std::any_of(layers.begin(), layers.end(), [&](const auto& layer) { return ((*layer).*kind)(); });
}

bool VLGlyph::hasSpecialLayers()
{
    return anyLayerIs(&VLLayer::isSpecialLayer);
}

bool VLGlyph::hasBracketLayer()
{
    return anyLayerIs(&VLLayer::isBracketLayer);
}

bool VLGlyph::hasBraceLayer()
{
    return anyLayerIs(&VLLayer::isBraceLayer);
}

bool VLGlyph::isAnyColorGlyph()
{
    return anyLayerIs(&VLLayer::isAnyColorLayer);
}

bool VLGlyph::isFullColorGlyph()
{
    return anyLayerIs(&VLLayer::isFullColorLayer);
}

bool VLGlyph::isColorPaletteGlyph()
{
    return anyLayerIs(&VLLayer::isColorPaletteLayer);
}

bool VLGlyph::isSVGColorGlyph()
{
    return anyLayerIs(&VLLayer::isSVGColorLayer);
}

bool VLGlyph::isAppleColorGlyph()
{
    return anyLayerIs(&VLLayer::isAppleColorLayer);
}
