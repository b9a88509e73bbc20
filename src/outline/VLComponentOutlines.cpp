#include "outline/VLComponent.h"

#include "geometry/VLBezierPathPen.h"
#include "model/VLLayer.h"
#include "outline/VLAnchor.h"
#include "platform/BezierPath.h"

#include <cmath>

namespace {

std::shared_ptr<BezierPath> placed(std::shared_ptr<BezierPath> path, const AffineTransform& transform)
{
    path->transformUsingAffineTransform(transform);
    return path;
}

} // namespace

bool VLComponent::isBeyondReach(const std::set<std::string>& seen) const
{
    return seen.count(_componentName) > 0 || seen.size() >= VLComponentMaximumDepth;
}

std::optional<AffineTransform> VLComponent::layerTransform(const VLLayer& base) const
{
    std::optional<AffineTransform> result;
    // A scaler that keeps the stems has sized the layer already.
    Point s = scale();
    bool scaled = _keepWeight > 0.001 && (std::abs(s.x - 1) > 0.01 || std::abs(s.y - 1) > 0.01);
    if (!scaled) result = transform();
    if (auto origin = base.anchors().objectForKey("*origin")) {
        if (!result) result = AffineTransform();
        result->translateXBy_yBy(-origin->position().x, -origin->position().y);
    }
    return result;
}

// A mirrored component would turn its outline's contours the other way, and the fill's winding
// with them.
void VLComponent::placeLayerOutline(BezierPath& path, const VLLayer& base) const
{
    if (auto transform = layerTransform(base)) path.transformUsingAffineTransform(*transform);
    Point s = scale();
    if (s.x * s.y < 0 || attributeForKey("reversePaths").boolValue()) path = path.bezierPathByReversingPath();
}

std::shared_ptr<BezierPath> VLComponent::bezierPath() const
{
    return bezierPathIgnorePlaceholder(false);
}

std::shared_ptr<BezierPath> VLComponent::bezierPathIgnorePlaceholder(bool ignore) const
{
    std::set<std::string> seen;
    bool hasPaths = false;
    return bezierPathIgnorePlaceholder_seen_hasPaths(ignore, seen, hasPaths);
}

std::shared_ptr<BezierPath> VLComponent::bezierPathIgnorePlaceholder_seen_hasPaths(bool ignore,
                                                                                   std::set<std::string>& seen,
                                                                                   bool& hasPaths) const
{
    if (_componentName.empty()) return nullptr;
    auto placeholder = [&](std::shared_ptr<BezierPath> figure) { return ignore ? nullptr : placed(figure, transform()); };
    if (isBeyondReach(seen)) return placeholder(newBadReferencePath());
    seen.insert(_componentName);
    auto base = componentLayer();
    if (!base) {
        seen.erase(_componentName);
        return placeholder(newMissingBaseGlyphPath());
    }
    // The name stays in seen: whatever asks on has reached the same circle.
    if (base == layer()) return placeholder(newBadReferencePath());
    auto path = base->drawBezierPath_hasPaths(seen, hasPaths);
    placeLayerOutline(*path, *base);
    seen.erase(_componentName);
    if (!ignore && path->isEmpty() && !hasPaths) return placed(newEmptyBaseGlyphPath(), transform());
    return path;
}

std::shared_ptr<BezierPath> VLComponent::openBezierPath() const
{
    std::set<std::string> seen;
    return openBezierPath_seen(seen);
}

std::shared_ptr<BezierPath> VLComponent::openBezierPath_seen(std::set<std::string>& seen) const
{
    if (_componentName.empty() || isBeyondReach(seen)) return nullptr;
    auto base = componentLayer();
    if (!base || base == layer()) return nullptr;
    seen.insert(_componentName);
    auto path = base->drawOpenBezierPath_seen(seen);
    seen.erase(_componentName);
    if (path) placeLayerOutline(*path, *base);
    return path;
}

bool VLComponent::hasAnyPaths() const
{
    std::set<std::string> seen;
    return hasAnyPaths_seen(seen);
}

// A glyph once asked stays in seen, so that a glyph placed many times over is asked once.
bool VLComponent::hasAnyPaths_seen(std::set<std::string>& seen, size_t depth) const
{
    if (_componentName.empty() || seen.count(_componentName) || depth >= VLComponentMaximumDepth) return false;
    auto base = componentLayer();
    if (!base) return false;
    if (base->countOfPaths() > 0) return true;
    seen.insert(_componentName);
    for (const auto& shape : base->shapes())
        if (shape->shapeType() == VLShapeType::Component &&
            static_cast<const VLComponent&>(*shape).hasAnyPaths_seen(seen, depth + 1))
            return true;
    return false;
}

std::shared_ptr<BezierPath> VLComponent::closedAndOpenOutline() const
{
    auto outline = bezierPath();
    if (auto open = openBezierPath()) outline->appendBezierPath(*open);
    return outline;
}

Rect VLComponent::bounds() const
{
    auto outline = closedAndOpenOutline();
    return outline->elementCount() > 0 ? outline->bounds() : Rect();
}

Rect VLComponent::_bounds() const
{
    Point s = scale();
    if (s.x == 0 || s.y == 0) return Rect();
    AffineTransform undo;
    undo.scaleXBy_yBy(1 / s.x, 1 / s.y);
    undo.rotateByDegrees(-angle());
    undo.translateXBy_yBy(-position().x, -position().y);
    auto outline = closedAndOpenOutline();
    if (outline->elementCount() == 0) return Rect();
    outline->transformUsingAffineTransform(undo);
    return outline->bounds();
}

Rect VLComponent::fastBoundsTransform(const AffineTransform* transform) const
{
    auto outline = bezierPath();
    if (transform) outline->transformUsingAffineTransform(*transform);
    return outline->bounds();
}

void VLComponent::drawInPen_openPen_secondaryPen_extraHandles(VLPenProtocol& pen, VLPenProtocol& openPen,
                                                              VLPenProtocol*, std::vector<Point>*)
{
    auto* fillable = dynamic_cast<VLBezierPathPen*>(&pen);
    if (!fillable) {
        drawSimpleInPen(pen);
        return;
    }
    fillable->append(*bezierPath());
    auto* fillableOpen = dynamic_cast<VLBezierPathPen*>(&openPen);
    auto open = fillableOpen ? openBezierPath() : nullptr;
    if (open) fillableOpen->append(*open);
}

void VLComponent::drawSimpleInPen(VLPenProtocol& pen)
{
    AffineTransform placement = transform();
    pen.addComponent_transformation(shared_from_this(), &placement);
}
