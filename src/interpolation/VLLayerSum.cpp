#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "model/VLPartProperty.h"
#include "outline/VLAnchor.h"
#include "outline/VLComponent.h"
#include "outline/VLHint.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"
#include "platform/NumberConversion.h"
#include "platform/UUID.h"
#include "platform/VLError.h"

#include <algorithm>
#include <cmath>

// Positions are summed as stored, before any orientation places them against the width: the
// template keeps the orientation of the first layer.

namespace {

using HintGroups = std::map<VLHintType, std::vector<std::shared_ptr<VLHint>>>;

// Factors beyond this come from broken coefficients and take no part in the width.
constexpr double largestWidthFactor = 99999.0;

VLFactor factorForLayer(const VLFactors& factors, const VLLayer& layer)
{
    if (factors.indexOfKey(layer.layerId())) return factors.objectForKey(layer.layerId());
    return factors.objectForKey(layer.associatedMasterId());
}

Point scaled(Point p, VLFactor f)
{
    return {f.x * p.x, f.y * p.y};
}

Point plus(Point a, Point b)
{
    return {a.x + b.x, a.y + b.y};
}

void zeroComponent(VLComponent& component)
{
    component.setPosition({0, 0});
    component.setPositionPrecise({0, 0});
    component.setScale({0, 0});
    component.setAngle(0);
    component.setSlantHorizontal(0);
    component.setSlantVertical(0);
    component.setKeepWeight(0);
    ValueDictionary settings = component.pieceSettings();
    for (auto& [axisId, value] : settings) value = Value(0.0);
    component.setPieceSettings(std::move(settings));
}

void zeroHint(VLHint& hint)
{
    if (hint.originIndex().empty() || hint.targetIndex().empty()) {
        hint.setOrigin(0);
        hint.setWidth(0);
    }
    if (hint.isCorner()) hint.setScale({0, 0});
    // A reference into a component or deeper can't follow the sum: it is found again by position.
    for (auto reference : {VLHint::Origin, VLHint::Target, VLHint::Other1}) {
        if (hint.indexPath(reference).size() <= 2) continue;
        hint.setNode(reference, nullptr);
        hint.setKnob(reference, {VLUnsetValue, 0.0});
    }
}

void zeroLayer(VLLayer& layer)
{
    for (const auto& shape : layer.shapes()) {
        if (auto path = std::dynamic_pointer_cast<VLPath>(shape))
            for (const auto& node : path->nodes()) node->setPositionFast({0, 0});
        else if (auto component = std::dynamic_pointer_cast<VLComponent>(shape))
            zeroComponent(*component);
    }
    for (const auto& anchor : layer.anchors().allValues()) anchor->setPositionFast({0, 0});
    for (const auto& hint : layer.hints()) zeroHint(*hint);
}

void addPath(VLPath& sum, const VLPath& path, VLFactor f)
{
    size_t count = std::min(sum.nodes().size(), path.nodes().size());
    for (size_t i = 0; i < count; ++i) {
        VLNode& node = *sum.nodes()[i];
        node.setPositionFast(plus(node.VLShape::positionPrecise(), scaled(path.nodes()[i]->VLShape::position(), f)));
    }
}

void addPieceSettings(VLComponent& sum, const VLComponent& component, double fx)
{
    auto glyph = component.component();
    if (!glyph) return;
    ValueDictionary settings = sum.pieceSettings();
    for (const auto& axis : glyph->partsSettings()) {
        Value& entry = settings[axis->axisId()];
        entry = Value(entry.doubleValue() + fx * component.valueForAxis(*axis));
    }
    sum.setPieceSettings(std::move(settings));
}

// With linear component interpolation the transforms stay zeroed: only the weight and the part
// settings are summed.
void addComponent(VLComponent& sum, const VLComponent& component, VLFactor f, bool linear)
{
    if (!linear) {
        Point position = plus(sum.VLShape::position(), scaled(component.VLShape::position(), f));
        sum.setPosition(position);
        sum.setPositionPrecise(position);
        if (component.alignment() == VLComponent::AlignmentDisabled) sum.setAlignment(VLComponent::AlignmentDisabled);
        sum.setAngle(sum.angle() + f.x * component.angle());
        sum.setSlantHorizontal(sum.slantHorizontal() + f.x * component.slantHorizontal());
        sum.setSlantVertical(sum.slantVertical() + f.y * component.slantVertical());
        sum.setScale(plus(sum.scale(), scaled(component.scale(), f)));
    }
    sum.setKeepWeight(sum.keepWeight() + f.x * component.keepWeight());
    addPieceSettings(sum, component, f.x);
}

// False when a shape of another kind stands at one place.
bool addShapes(VLLayer& sum, const VLLayer& layer, VLFactor f, bool linear)
{
    for (size_t i = 0; i < layer.shapes().size(); ++i) {
        auto target = sum.objectInShapesAtIndex(i);
        if (!target) continue;
        const auto& source = layer.shapes()[i];
        if (target->shapeType() != source->shapeType()) return false;
        if (auto path = std::dynamic_pointer_cast<VLPath>(target))
            addPath(*path, static_cast<const VLPath&>(*source), f);
        else if (auto component = std::dynamic_pointer_cast<VLComponent>(target))
            addComponent(*component, static_cast<const VLComponent&>(*source), f, linear);
    }
    return true;
}

void addAnchors(VLLayer& sum, const VLLayer& layer, VLFactor f)
{
    for (const auto& anchor : sum.anchors().allValues())
        if (auto source = layer.anchors().objectForKey(anchor->name()))
            anchor->setPositionFast(plus(anchor->VLShape::positionPrecise(), scaled(source->VLShape::position(), f)));
}

void addHint(VLHint& sum, const VLHint& hint, VLFactor f)
{
    if (sum.isCorner()) {
        sum.setScale(plus(sum.scale(), scaled(hint.scale(), f)));
    } else if (sum.originIndex().empty() || sum.targetIndex().empty()) {
        double factor = hint.horizontal() ? f.y : f.x;
        sum.setOrigin(sum.origin() + factor * hint.origin());
        sum.setWidth(sum.width() + factor * hint.width());
    }
}

void addHints(const HintGroups& sum, const VLLayer& layer, VLFactor f)
{
    HintGroups sources = VLHint::_sortedHints(layer.hints());
    for (const auto& [type, hints] : sum) {
        auto found = sources.find(type);
        if (found == sources.end()) continue;
        for (size_t i = 0; i < hints.size() && i < found->second.size(); ++i) addHint(*hints[i], *found->second[i], f);
    }
}

// Layers that don't match leave nothing to sum but their widths.
std::shared_ptr<VLLayer> shapelessLayer(VLGlyph& glyph, const VLFactors& factors)
{
    auto layer = VLLayer::init();
    layer->setLayerId(newUUIDString());
    double width = 0;
    factors.enumerateKeysAndObjectsUsingBlock([&](const std::string& key, const VLFactor& f, bool&) {
        if (std::fabs(f.x) < 0.0001 || std::fabs(f.x) >= largestWidthFactor) return;
        if (auto source = glyph.layerForId(key)) width += f.x * source->width();
    });
    layer->setWidthFast(width);
    return layer;
}

} // namespace

std::shared_ptr<VLLayer> VLGlyph::_interpolateLayers_interpolation_error(const std::vector<std::shared_ptr<VLLayer>>& layers,
                                                                         const VLFactors& factors, VLError* error)
{
    if (layers.empty()) return nullptr;
    if (!mastersCompatibleForLayers(layers)) return shapelessLayer(*this, factors);
    auto sum = layers.front()->copyThin(true);
    bool linear = _userData.contains("useLinearComponentInterpolation") &&
                  _userData.at("useLinearComponentInterpolation").boolValue();
    zeroLayer(*sum);
    HintGroups sumHints = VLHint::_sortedHints(sum->hints());
    for (const auto& layer : layers) {
        VLFactor f = factorForLayer(factors, *layer);
        if (f.isNegligible()) continue;
        if (!addShapes(*sum, *layer, f, linear)) {
            handOut(error, VLError::errorWithDomain_code_userInfo(
                               "VelmorErrorDomain", 125, {{VLError::localizedDescriptionKey, "The glyph is not compatible."}}));
            return nullptr;
        }
        addAnchors(*sum, *layer, f);
        addHints(sumHints, *layer, f);
    }
    sum->removeAttributeForKey("coordinates");
    return sum;
}
