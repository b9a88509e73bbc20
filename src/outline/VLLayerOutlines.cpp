#include "geometry/VLBezierPathPen.h"
#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLComponent.h"
#include "outline/VLHint.h"
#include "outline/VLPath.h"
#include "outline/VLPathPen.h"
#include "platform/BezierPath.h"
#include "platform/Log.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace {

constexpr long outlineMinimumElements = 2;

// Components are asked once per name.
template <typename Visit> void forEachComponentName(const VLLayer::Shapes& shapes, Visit&& visit)
{
    std::set<std::string> seen;
    for (const auto& shape : shapes) {
        if (shape->shapeType() != VLShapeType::Component) continue;
        const std::string& name = static_cast<const VLComponent&>(*shape).componentName();
        if (seen.insert(name).second) visit(name);
    }
}

} // namespace

std::shared_ptr<BezierPath> VLLayer::_bezierPathFast(bool fast)
{
    std::lock_guard lock(_monitor);
    if (_shapes.empty()) {
        _outlines.extraHandles.clear();
        _outlines.openBezierPath.reset();
        return nullptr;
    }
    updateCorners();
    if (_outlines.bezierPath) return _outlines.bezierPath;
    if (fast && _outlines.bezierPathFast) return _outlines.bezierPathFast;

    auto closed = BezierPath::bezierPath();
    auto open = BezierPath::bezierPath();
    std::shared_ptr<VLLayer> working = shared_from_this();
    if (!fast) {
        _outlines.secondaryPath = BezierPath::bezierPath();
        _outlines.extraHandles.clear();
        working = copyThin(true);
        working->setParent(glyph());
        working->flattenOutlines();
    }
    auto secondaryPath = _outlines.secondaryPath ? _outlines.secondaryPath : BezierPath::bezierPath();
    VLBezierPathPen secondary(*secondaryPath);
    for (const auto& shape : working->shapes()) {
        if (shape->shapeType() != VLShapeType::Path) continue;
        BezierPath contour;
        VLBezierPathPen pen(contour);
        shape->drawInPen_openPen_secondaryPen_extraHandles(pen, pen, fast ? nullptr : &secondary,
                                                           &_outlines.extraHandles);
        long count = contour.elementCount();
        if (count < outlineMinimumElements) continue;
        // A path that corners or caps closed counts as closed.
        bool isOpen = !static_cast<const VLPath&>(*shape).closed() &&
                      contour.elementAtIndex(count - 2) != BezierPathElement::ClosePath;
        (isOpen ? open : closed)->appendBezierPath(contour);
    }
    if (!fast) _outlines.bezierPath = closed;
    _outlines.bezierPathFast = closed;
    if (open->elementCount() >= outlineMinimumElements) _outlines.openBezierPath = open;
    return fast || !_outlines.bezierPath ? _outlines.bezierPathFast : _outlines.bezierPath;
}

bool VLLayer::flattenOutlines()
{
    if (_shapes.empty()) return true;
    Hints hints = _hints;
    VLPathPen pen;
    std::unique_ptr<VLBezierPathPen> secondary;
    if (_outlines.secondaryPath) {
        secondary = std::make_unique<VLBezierPathPen>(*_outlines.secondaryPath);
        for (const auto& shape : _shapes)
            if (shape->shapeType() == VLShapeType::Path) shape->drawSimpleInPen(*secondary);
    }
    for (const auto& shape : _shapes) shape->drawInPen_openPen_secondaryPen_extraHandles(pen, pen, secondary.get(), nullptr);
    // Corners that were drawn are part of the outline now.
    Hints kept;
    std::copy_if(hints.begin(), hints.end(), std::back_inserter(kept), [](const auto& h) { return !h->isDrawnCorner(); });
    setHintsFast(std::move(kept));
    setShapesFast(pen.layer()->shapes());
    return true;
}

namespace {

// Masked components shape the fill of an editor's stacked drawing, not the outline.
bool isMasked(const VLShape& shape)
{
    return shape.attributeForKey("mask").boolValue() || !shape.tempDataForKey("mask").isNull();
}

// Appends what each component gives until the outline holds as many elements as a layer may.
template <typename Outline>
void appendComponents(const VLLayer::Shapes& shapes, BezierPath& into, const VLGlyph& glyph, Outline&& outline)
{
    for (const auto& shape : shapes) {
        if (shape->shapeType() != VLShapeType::Component) continue;
        if (into.elementCount() >= VLLayerMaximumComposedElements) {
            VLLog("Left out components of the glyph " + glyph.name() + " beyond " +
                  std::to_string(VLLayerMaximumComposedElements) + " elements");
            return;
        }
        if (auto path = outline(static_cast<const VLComponent&>(*shape))) into.appendBezierPath(*path);
    }
}

} // namespace

void VLLayer::_updateDrawBezierPaths(std::set<std::string>& seen)
{
    updateCorners();
    auto glyphOfLayer = glyph();
    if (!_outlines.drawBezierPath || !isUpToDate()) {
        auto own = bezierPath();
        _outlines.hasPaths = own != nullptr;
        if (!glyphOfLayer || glyphOfLayer->name().empty()) {
            _outlines.drawBezierPath.reset();
            _outlines.drawOpenBezierPath.reset();
            return;
        }
        // A component of the layer's own glyph is a circle from the start.
        seen.insert(glyphOfLayer->name());
        auto closed = own ? own->copy() : BezierPath::bezierPath();
        appendComponents(_shapes, *closed, *glyphOfLayer, [&](const VLComponent& component) {
            return isMasked(component) ? nullptr
                                       : component.bezierPathIgnorePlaceholder_seen_hasPaths(false, seen, _outlines.hasPaths);
        });
        _outlines.drawBezierPath = closed;
    }
    if (_outlines.drawOpenBezierPath || !glyphOfLayer) return;
    const auto& ownOpen = _outlines.openBezierPath;
    auto open = ownOpen ? ownOpen->copy() : BezierPath::bezierPath();
    appendComponents(_shapes, *open, *glyphOfLayer,
                     [&](const VLComponent& component) { return component.openBezierPath_seen(seen); });
    _outlines.drawOpenBezierPath = open;
}

std::shared_ptr<BezierPath> VLLayer::drawBezierPath()
{
    std::set<std::string> seen;
    bool hasPaths = false;
    return drawBezierPath_hasPaths(seen, hasPaths);
}

std::shared_ptr<BezierPath> VLLayer::drawBezierPath_hasPaths(std::set<std::string>& seen, bool& hasPaths)
{
    std::lock_guard lock(_monitor);
    _updateDrawBezierPaths(seen);
    hasPaths = _outlines.hasPaths;
    return _outlines.drawBezierPath ? _outlines.drawBezierPath->copy() : BezierPath::bezierPath();
}

std::shared_ptr<BezierPath> VLLayer::drawOpenBezierPath()
{
    std::set<std::string> seen;
    return drawOpenBezierPath_seen(seen);
}

std::shared_ptr<BezierPath> VLLayer::drawOpenBezierPath_seen(std::set<std::string>& seen)
{
    std::lock_guard lock(_monitor);
    _updateDrawBezierPaths(seen);
    return _outlines.drawOpenBezierPath ? _outlines.drawOpenBezierPath->copy() : nullptr;
}

void VLLayer::drawInPen_openPen(VLPenProtocol& pen, VLPenProtocol& openPen)
{
    for (const auto& shape : _shapes) shape->drawInPen_openPen_secondaryPen_extraHandles(pen, openPen, nullptr, nullptr);
}

Rect VLLayer::bounds()
{
    if (!_outlines.drawBezierPath) {
        std::set<std::string> seen;
        _updateDrawBezierPaths(seen);
    }
    std::optional<Rect> result;
    for (const auto* path : {&_outlines.drawBezierPath, &_outlines.drawOpenBezierPath}) {
        if (!*path || (*path)->elementCount() < outlineMinimumElements) continue;
        Rect box = (*path)->bounds();
        result = result ? unionRect(*result, box) : box;
    }
    return result.value_or(Rect());
}

Rect VLLayer::fastBounds() const
{
    double minX = 30000, minY = 30000, maxX = -30000, maxY = -30000;
    for (const auto& shape : _shapes) {
        Rect r = shape->fastBounds();
        minX = std::min(minX, r.minX());
        minY = std::min(minY, r.minY());
        maxX = std::max(maxX, r.maxX());
        maxY = std::max(maxY, r.maxY());
    }
    if (maxX == -30000) return {{VLUnsetValue, 0}, {0, 0}};
    return {{minX, minY}, {maxX - minX, maxY - minY}};
}

double VLLayer::_lastComponentOperation() const
{
    auto glyphOfLayer = glyph();
    auto font = glyphOfLayer ? glyphOfLayer->font() : nullptr;
    if (!font || glyphOfLayer->name().empty()) return 0;
    double latest = 0;
    forEachComponentName(_shapes, [&](const std::string& name) {
        if (auto base = font->glyphForName(name)) latest = std::max(latest, base->lastOperationInterval());
    });
    for (const auto& hint : _hints)
        if (hint->isCorner())
            if (auto corner = font->localGlyphForName(hint->name())) latest = std::max(latest, corner->lastOperationInterval());
    return latest;
}

double VLLayer::lastOperation() const
{
    return std::max(_lastUpdate, _lastComponentOperation());
}

bool VLLayer::isUpToDate() const
{
    auto glyphOfLayer = glyph();
    double own = std::max(glyphOfLayer ? glyphOfLayer->lastOperationInterval() : 0.0, _lastUpdate);
    return own >= _lastComponentOperation();
}

void VLLayer::updateCorners()
{
    auto glyphOfLayer = glyph();
    auto font = glyphOfLayer ? glyphOfLayer->font() : nullptr;
    if (!font) return;
    bool stale = false;
    for (const auto& hint : _hints) {
        if (!hint->isCorner()) continue;
        auto corner = font->glyphForName(hint->name());
        if (!corner) continue;
        if (corner->lastOperationInterval() > _lastUpdate) stale = true;
        if (hint->tempDataForKey("CornerVelmorID").isNull()) hint->setTempData_forKey(Value(corner->id()), "CornerVelmorID");
    }
    forEachComponentName(_shapes, [&](const std::string& name) {
        auto base = font->glyphForName(name);
        if (base && base->lastOperationInterval() > _lastUpdate) stale = true;
    });
    if (stale) setNeedUpdateShapes();
}

void VLLayer::decomposeCorners()
{
    if (std::none_of(_hints.begin(), _hints.end(), [](const auto& h) { return h->isCorner(); })) return;
    Hints hints = _hints;
    VLPathPen pen;
    drawInPen_openPen(pen, pen);
    pen.endPath();
    if (pen.layer()->countOfPaths() == 0) return;
    // Corners marked to survive flattening stay; the others are part of the outline now.
    for (const auto& hint : hints)
        if (hint->isCorner() && hint->stem() != VLHint::StemFoundByPosition) removeHint(hint);
    saveHints();
    setShapes(pen.layer()->shapes());
    for (const auto& hint : pen.layer()->hints()) addHint(hint);
    restoreHints();
}

namespace {

// The contours of an outline as paths of the pen; a move that starts no contour, such as the one
// an outline keeps behind each close, makes no path.
void drawContours(const BezierPath& outline, VLPenProtocol& pen)
{
    std::optional<Point> start;
    Point points[3];
    for (long i = 0, n = outline.elementCount(); i < n; ++i) {
        auto kind = outline.elementAtIndex_associatedPoints(i, points);
        if (kind == BezierPathElement::MoveTo) {
            start = points[0];
            continue;
        }
        if (start) pen.moveTo(*std::exchange(start, std::nullopt));
        switch (kind) {
        case BezierPathElement::LineTo: pen.lineTo(points[0]); break;
        case BezierPathElement::CurveTo: pen.curveTo_off1_off2(points[2], points[0], points[1]); break;
        default: pen.closePath(); break;
        }
    }
    pen.endPath();
}

} // namespace

void VLLayer::decomposeComponents()
{
    VLPathPen pen;
    Shapes kept;
    for (const auto& shape : _shapes) {
        if (shape->shapeType() != VLShapeType::Component) {
            kept.push_back(shape);
            continue;
        }
        // The paths that the component shows, where it shows them; placeholders are no paths.
        const auto& component = static_cast<const VLComponent&>(*shape);
        if (auto closed = component.bezierPathIgnorePlaceholder(true)) drawContours(*closed, pen);
        if (auto open = component.openBezierPath()) drawContours(*open, pen);
    }
    const Shapes& drawn = pen.layer()->shapes();
    kept.insert(kept.end(), drawn.begin(), drawn.end());
    setShapesFast(std::move(kept));
    setNeedUpdateShapes();
}

std::shared_ptr<VLLayer> VLLayer::copyDecomposedLayer()
{
    auto owner = glyph();
    auto font = owner ? owner->font() : nullptr;
    if (font) {
        double since = owner->lastOperationInterval();
        forEachComponentName(_shapes, [&](const std::string& name) {
            auto base = font->glyphForName(name);
            if (!_outlines.cachedDecomposedCopy || !base || base->lastOperationInterval() <= since) return;
            _outlines.cachedDecomposedCopy.reset();
            owner->setLastOperationInterval(VLAbsoluteTimeGetCurrent());
        });
    }
    if (!_outlines.cachedDecomposedCopy) {
        auto twin = copyThin(true);
        twin->setParent(owner);
        twin->stopUpdates();
        twin->saveHints();
        twin->decomposeComponents();
        twin->restoreHints();
        twin->decomposeCorners();
        twin->setParent(nullptr);
        _outlines.cachedDecomposedCopy = twin;
    }
    return _outlines.cachedDecomposedCopy->copyThin(true);
}
