#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLComponent.h"
#include "outline/VLHint.h"
#include "outline/VLPath.h"

#include <algorithm>

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

// The masters' own layers form the group that must match; brace, bracket and colour layers
// join their groups once the layer kinds are told apart.
bool VLGlyph::mastersCompatible()
{
    if (_masterCompatibilityCheckStatus >= 0) return _masterCompatibilityCheckStatus == 1;
    auto font = parent();
    if (!font || font->axes().empty()) return true;
    std::vector<std::string> masterIds;
    for (const auto& master : font->fontMasters()) masterIds.push_back(master->id());
    _masterCompatibilityCheckStatus = mastersCompatibleForLayerIds(masterIds) ? 1 : 0;
    return _masterCompatibilityCheckStatus == 1;
}
