#include "geometry/VLGeometry.h"
#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLInstance.h"
#include "model/VLLayer.h"
#include "outline/VLAnchor.h"
#include "outline/VLHint.h"
#include "outline/VLPath.h"

#include <cmath>

namespace {

// Corner glyphs may carry corners of their own; a glyph that names itself, directly or through
// others, stops here rather than drawing without end.
constexpr int maximumCornerNesting = 4;
thread_local int cornerNesting = 0;

struct Nesting {
    Nesting() { ++cornerNesting; }
    ~Nesting() { --cornerNesting; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
};

bool isUnit(double factor)
{
    return std::fabs(std::fabs(factor) - 1) <= 0.01;
}

double coordinate(const VLLayer& layer, const char* axis)
{
    Value value = layer.attributeForKey("coordinates")[axis];
    return value.isNumber() ? value.doubleValue() : 100.0;
}

std::shared_ptr<VLFontMaster> cornerMaster(const std::string& id, double width, double height)
{
    auto master = VLFontMaster::initFast();
    master->setId(id);
    master->setAxisValueValue_forId(width, "wdth");
    master->setAxisValueValue_forId(height, "hght");
    return master;
}

// The corner drawn at another size in the corner space that its glyph's layers of the same
// master span; null where the layer alone stands for its master.
std::shared_ptr<VLLayer> interpolatedCornerLayer(const VLLayer& layer, Point scale)
{
    auto glyph = layer.glyph();
    if (!glyph) return nullptr;
    std::vector<std::shared_ptr<VLFontMaster>> masters{cornerMaster(layer.layerId(), 100, 100)};
    for (const auto& other : glyph->layers().allValues()) {
        if (other.get() == &layer || other->associatedMasterId() != layer.associatedMasterId()) continue;
        double width = coordinate(*other, "wdth"), height = coordinate(*other, "hght");
        if (std::fabs(width - 100) > 0.001 || std::fabs(height - 100) > 0.001)
            masters.push_back(cornerMaster(other->layerId(), width, height));
    }
    if (masters.size() < 2) return nullptr;
    auto instance = VLInstance::init();
    instance->setAxisValueValue_forId(std::fabs(scale.x) * 100, "wdth");
    instance->setAxisValueValue_forId(std::fabs(scale.y) * 100, "hght");
    auto factors = instance->instanceInterpolations_axes(masters, VLAxis::cornerAxes());
    if (!factors || factors->empty()) return nullptr;
    return glyph->_interpolate_masters_layerName_additionalLayers_error(*factors, masters, std::nullopt, nullptr,
                                                                        nullptr);
}

Point anchorPosition(const VLLayer& layer, const char* name, bool& found)
{
    auto anchor = layer.anchorForName(name);
    found = anchor != nullptr;
    return found ? anchor->position() : Point{};
}

// Origin on the zero point and the base line from node1 to node2 along x.
void addNormalisation(const VLLayer& layer, bool mirrored, AffineTransform& m)
{
    bool hasOrigin, hasNode1, hasNode2;
    Point origin = anchorPosition(layer, "origin", hasOrigin);
    Point node1 = anchorPosition(layer, "node1", hasNode1);
    Point node2 = anchorPosition(layer, "node2", hasNode2);
    if (!hasOrigin && hasNode1) origin = node1;
    if (mirrored && hasNode2) std::swap(origin, node2);
    // The anchors are where the glyph has them, before the scale.
    origin = m.transformPoint(origin);
    node2 = m.transformPoint(node2);
    AffineTransform normal;
    if (hasNode2 && VLDistanceF(origin, node2) > 1) {
        double angle = VLVectorAngle(node2.x - origin.x, node2.y - origin.y);
        if (std::fabs(angle) > 0.0001) normal.rotateByDegrees(-angle);
    }
    normal.translateXBy_yBy(-origin.x, -origin.y);
    m.appendTransform(normal);
}

bool moveEverything(VLLayer& layer, const AffineTransform& m)
{
    for (const auto& shape : layer.shapes()) {
        auto path = std::dynamic_pointer_cast<VLPath>(shape);
        if (!path) continue;
        for (const auto& node : path->nodes()) {
            Point p = m.transformPoint(node->position());
            if (!std::isfinite(p.x) || !std::isfinite(p.y)) return false;
            node->setPositionFast(p);
        }
    }
    for (const auto& anchor : layer.anchors().allValues()) anchor->setPositionFast(m.transformPoint(anchor->position()));
    return true;
}

} // namespace

std::unique_lock<std::recursive_mutex> VLLayer::lockMonitor() const
{
    return std::unique_lock(_monitor);
}

std::shared_ptr<VLLayer> VLPath::getCornerLayer_font(VLGlyph& cornerGlyph, VLFont& font) const
{
    auto own = layer();
    if (!own) return nullptr;
    if (own->isBraceLayer()) {
        std::vector<double> location(font.axes().size(), 0.0);
        auto master = own->associatedFontMaster();
        if (master) location = master->axesValuesList();
        location.resize(font.axes().size(), 0.0);
        if (own->axesValuesList_fontAxes(location, font.axes()))
            if (auto instance = VLInstance::initWithFont_axesValuesList(font, location))
                if (auto layer = cornerGlyph.layerForInstance_error(*instance, nullptr)) return layer;
    }
    return cornerGlyph.layerForId(own->associatedMasterId());
}

std::optional<VLPath::NormalizedCornerLayer> VLPath::normalizedCornerLayer_scale(const VLLayer& layer, Point scale)
{
    if (cornerNesting >= maximumCornerNesting || !std::isfinite(scale.x) || !std::isfinite(scale.y)) return std::nullopt;
    Nesting nesting;
    NormalizedCornerLayer result;
    std::shared_ptr<VLLayer> sized;
    if (!isUnit(scale.x) || !isUnit(scale.y)) sized = interpolatedCornerLayer(layer, scale);
    if (sized)
        result.transform.scaleXBy_yBy(scale.x < 0 ? -1 : 1, scale.y < 0 ? -1 : 1);
    else
        result.transform.scaleXBy_yBy(scale.x, scale.y);
    result.layer = sized ? sized : layer.copyThin(true);
    bool mirrored = scale.x * scale.y < 0;
    addNormalisation(*result.layer, mirrored, result.transform);
    if (!moveEverything(*result.layer, result.transform)) return std::nullopt;
    auto glyph = layer.glyph();
    result.layer->setParent(glyph);
    result.layer->decomposeCorners();
    result.layer->setParent(nullptr);
    if (mirrored) {
        result.layer->switchAnchorFastName_withName("left", "right__");
        result.layer->switchAnchorFastName_withName("right", "left");
        result.layer->switchAnchorFastName_withName("right__", "right");
        result.layer->switchAnchorFastName_withName("start", "end__");
        result.layer->switchAnchorFastName_withName("end", "start");
        result.layer->switchAnchorFastName_withName("end__", "end");
        if (auto first = std::dynamic_pointer_cast<VLPath>(result.layer->objectInShapesAtIndex(0))) first->reverseFast();
        result.layer->updateHints();
        result.reversed = true;
    }
    return result;
}
