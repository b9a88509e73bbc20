#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLComponent.h"
#include "outline/VLHint.h"
#include "outline/VLPath.h"
#include "platform/VLError.h"

#include <algorithm>
#include <unordered_map>

std::string VLLayer::compareString() const
{
    std::lock_guard lock(_monitor);
    std::string text;
    for (const auto& shape : _shapes) {
        if (shape->shapeType() == VLShapeType::Path) {
            const auto& path = static_cast<const VLPath&>(*shape);
            if (path.count() > 0) text += path.compareString();
        } else if (shape->shapeType() == VLShapeType::Component) {
            const std::string& name = static_cast<const VLComponent&>(*shape).componentName();
            text += name.empty() ? "empty name" : name;
            text += ' ';
        }
    }
    std::vector<std::string> anchorNames = _anchors.allKeys();
    std::sort(anchorNames.begin(), anchorNames.end());
    for (size_t i = 0; i < anchorNames.size(); ++i) {
        if (i) text += "**";
        text += anchorNames[i];
    }

    std::vector<std::shared_ptr<VLHint>> corners;
    std::copy_if(_hints.begin(), _hints.end(), std::back_inserter(corners), [](const auto& h) { return h->isCorner(); });
    std::sort(corners.begin(), corners.end(), [](const auto& a, const auto& b) { return a->originIndex() < b->originIndex(); });
    for (const auto& hint : corners) {
        std::string index;
        for (size_t position : hint->originIndex()) {
            if (!index.empty()) index += ',';
            index += std::to_string(position);
        }
        text += "&&" + hint->name() + "@@" + index;
    }
    return text;
}

bool VLGlyph::mastersCompatibleForLayerIds(const std::vector<std::string>& layerIds)
{
    if (layerIds.size() < 2) return true;
    auto fingerprint = [this](const std::string& layerId) {
        auto layer = layerForIdFast(layerId);
        return layer ? layer->compareString() : std::string();
    };
    std::string first = fingerprint(layerIds.front());
    return std::all_of(layerIds.begin() + 1, layerIds.end(), [&](const auto& id) { return fingerprint(id) == first; });
}

bool VLGlyph::mastersCompatibleForLayers(const std::vector<std::shared_ptr<VLLayer>>& layers)
{
    if (layers.size() < 2) return true;
    std::string first = layers.front()->compareString();
    return std::all_of(layers.begin() + 1, layers.end(), [&](const auto& layer) { return layer->compareString() == first; });
}

// Groups that could not be formed within their bound count as not compatible, so the masters
// are drawn apart. A layer's fingerprint is taken once, whatever the number of its groups.
bool VLGlyph::mastersCompatible()
{
    if (_masterCompatibilityCheckStatus >= 0) return _masterCompatibilityCheckStatus == 1;
    auto font = parent();
    if (!font || font->axes().empty()) return true;
    VLError error;
    LayerGroups groups = layerGroups(&error);
    std::unordered_map<std::string, std::string> fingerprints;
    auto fingerprint = [&](const std::string& layerId) -> const std::string& {
        auto [entry, fresh] = fingerprints.try_emplace(layerId);
        if (auto layer = fresh ? layerForIdFast(layerId) : nullptr) entry->second = layer->compareString();
        return entry->second;
    };
    bool compatible = error.domain.empty() && std::all_of(groups.begin(), groups.end(), [&](const auto& group) {
        return group.empty() || std::all_of(group.begin(), group.end(), [&](const auto& layerId) {
                   return fingerprint(layerId) == fingerprint(group.front());
               });
    });
    _masterCompatibilityCheckStatus = compatible ? 1 : 0;
    return compatible;
}
