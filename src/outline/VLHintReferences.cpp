#include "geometry/VLGeometry.h"
#include "model/VLLayer.h"
#include "outline/VLHandle.h"
#include "outline/VLHint.h"
#include "outline/VLPath.h"


namespace {

// The knob search looks first on the old path within this distance, then over the whole layer
// within the wider one.
constexpr double knobTolerance = 0.1;
constexpr double widerKnobTolerance = 1.0;
// A copied reference whose node moved further than this since its knob was saved is searched
// for by position.
constexpr double movedSquareDistance = 16.0;

bool isEmptyKnob(Point knob)
{
    return knob.x == VLUnsetValue;
}

// The nearest node within the tolerance among the paths that the filter admits.
template <typename PathFilter>
VLIndexPath nearestNode(Point position, const VLLayer& layer, double tolerance, PathFilter admits, Point* actual)
{
    VLIndexPath best;
    double bestSquare = tolerance * tolerance;
    const auto& shapes = layer.shapes();
    for (size_t p = 0; p < shapes.size(); ++p) {
        auto* path = dynamic_cast<const VLPath*>(shapes[p].get());
        if (!path || !admits(p)) continue;
        for (size_t n = 0; n < path->nodes().size(); ++n) {
            Point candidate = path->nodes()[n]->position();
            double square = VLSquareDistance(position, candidate);
            if (square > bestSquare) continue;
            bestSquare = square;
            best = {p, n};
            if (actual) *actual = candidate;
        }
    }
    return best;
}

} // namespace

std::shared_ptr<VLElement> VLHint::nodeForIndexPath(const VLIndexPath& path) const
{
    return nodeForIndexPath_unlimited(path, false);
}

std::shared_ptr<VLElement> VLHint::nodeForIndexPath_unlimited(const VLIndexPath& path, bool unlimited) const
{
    return nodeForIndexPath_unlimited_layer(path, unlimited, layer());
}

std::shared_ptr<VLElement> VLHint::nodeForIndexPath_unlimited_layer(const VLIndexPath& path, bool unlimited,
                                                                    const std::shared_ptr<VLLayer>& layer)
{
    if (!layer) return nullptr;
    if (path.size() == 1 && (path[0] == RightSideBearingIndex || path[0] == LeftSideBearingIndex)) {
        bool right = path[0] == RightSideBearingIndex;
        auto handle = std::make_shared<VLHandle>(Point{right ? layer->width() : 0.0, -20.0},
                                                 right ? VLHandle::RightSideBearing : VLHandle::LeftSideBearing);
        handle->setParent(layer);
        return handle;
    }
    if (path.size() != 2) return nullptr;
    if (!unlimited) {
        auto owner = std::dynamic_pointer_cast<VLPath>(layer->objectInShapesAtIndex(path[0]));
        if (!owner || path[1] >= owner->nodes().size()) return nullptr;
    }
    return layer->nodeAtIndexPath(path);
}

VLIndexPath VLHint::indexPathForNode_inLayer(const VLElement& node, const VLLayer& layer)
{
    if (auto* handle = dynamic_cast<const VLHandle*>(&node)) {
        if (handle->flag() == VLHandle::RightSideBearing) return {RightSideBearingIndex};
        if (handle->flag() == VLHandle::LeftSideBearing) return {LeftSideBearingIndex};
        return {};
    }
    auto* pathNode = dynamic_cast<const VLNode*>(&node);
    auto path = pathNode ? pathNode->parentPath() : nullptr;
    if (!path) return {};
    long pathIndex = layer.indexOfObjectInShapes(path.get());
    long nodeIndex = path->indexOfNode(pathNode);
    if (pathIndex < 0 || nodeIndex == VLPath::NotFound) return {};
    return {static_cast<size_t>(pathIndex), static_cast<size_t>(nodeIndex)};
}

VLIndexPath VLHint::indexPathForPosition_inLayer_tolerance_actualPosition(Point position, const VLLayer& layer,
                                                                         double tolerance, Point* actualPosition)
{
    return nearestNode(position, layer, tolerance, [](size_t) { return true; }, actualPosition);
}

std::shared_ptr<VLNode> VLHint::_findNewIndexNodeWithTolerance_knob_indexPath(double tolerance, Point knob,
                                                                              const VLIndexPath& path,
                                                                              const std::shared_ptr<VLLayer>& layer) const
{
    auto admits = [&](size_t p) { return path.empty() || p == path[0]; };
    VLIndexPath found = nearestNode(knob, *layer, tolerance, admits, nullptr);
    return found.empty() ? nullptr : std::dynamic_pointer_cast<VLNode>(nodeForIndexPath_unlimited_layer(found, false, layer));
}

bool VLHint::usesReference(Reference r) const
{
    const Ref& ref = _refs[r];
    return ref.node || !ref.index.empty();
}

void VLHint::save()
{
    for (Ref& ref : _refs) {
        if (ref.index.empty()) continue;
        if (auto node = nodeForIndexPath_unlimited(ref.index, true)) ref.knob = node->position();
    }
    auto origin = nodeForIndexPath_unlimited(originIndex(), true);
    auto target = nodeForIndexPath_unlimited(targetIndex(), true);
    if (origin && target) {
        Point a = origin->position();
        Point b = target->position();
        _width = _horizontal ? b.y - a.y : b.x - a.x;
    }
}

void VLHint::restore()
{
    auto owner = layer();
    if (!owner) return;
    for (Reference r : {Origin, Target, Other1, Other2}) restoreReference(r, owner);
}

void VLHint::restoreReference(Reference r, const std::shared_ptr<VLLayer>& layer)
{
    Ref& ref = _refs[r];
    const Point emptyKnob{VLUnsetValue, 0.0};
    if (ref.node && ref.node->layer() == layer) {
        VLIndexPath path = indexPathForNode_inLayer(*ref.node, *layer);
        if (!path.empty()) {
            ref.index = std::move(path);
            ref.knob = emptyKnob;
            return;
        }
    }
    if (ref.node && ref.node->layer() != layer &&
        (isEmptyKnob(ref.knob) || VLSquareDistance(ref.knob, ref.node->position()) > movedSquareDistance)) {
        VLIndexPath path = indexPathForPosition_inLayer_tolerance_actualPosition(ref.node->position(), *layer,
                                                                                 knobTolerance, nullptr);
        if (!path.empty()) {
            ref.index = std::move(path);
            _stem = StemFoundByPosition;
            ref.knob = emptyKnob;
            return;
        }
    }
    if (isEmptyKnob(ref.knob) || ref.index.size() < 2) return;
    auto found = _findNewIndexNodeWithTolerance_knob_indexPath(knobTolerance, ref.knob, ref.index, layer);
    if (!found) found = _findNewIndexNodeWithTolerance_knob_indexPath(widerKnobTolerance, ref.knob, {}, layer);
    if (!found) return;
    ref.node = found;
    ref.index = indexPathForNode_inLayer(*found, *layer);
    ref.knob = emptyKnob;
}

bool VLHint::updateIndexes()
{
    if (!isCorner()) return true;
    auto owner = layer();
    if (!updateReference(Origin, owner)) return false;
    if (_type == VLHintType::Corner) return true;
    for (Reference r : {Target, Other1, Other2})
        if (usesReference(r) && !updateReference(r, owner)) return false;
    return true;
}

bool VLHint::updateReference(Reference r, const std::shared_ptr<VLLayer>& layer)
{
    Ref& ref = _refs[r];
    // A node of a path elsewhere is stale; a handle belongs to no path and stays.
    if (dynamic_cast<VLNode*>(ref.node.get()) && ref.node->layer() != layer) ref.node.reset();
    if (!ref.index.empty() && !ref.node) ref.node = nodeForIndexPath(ref.index);
    if (!ref.node && isEmptyKnob(ref.knob)) return false;
    if (!ref.node || !layer) {
        ref.index.clear();
        return true;
    }
    ref.index = indexPathForNode_inLayer(*ref.node, *layer);
    if (r == Origin) _origin = _horizontal ? ref.node->position().y : ref.node->position().x;
    return true;
}
