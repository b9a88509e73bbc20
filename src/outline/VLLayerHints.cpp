#include "model/VLChildren.h"
#include "model/VLLayer.h"
#include "outline/VLHint.h"
#include "outline/VLPath.h"

#include <algorithm>
#include <limits>

void VLLayer::setHintsFast(Hints hints)
{
    VLSetChildren(_hints, std::move(hints), shared_from_this());
}

void VLLayer::addHint(const std::shared_ptr<VLHint>& hint)
{
    if (!hint) return;
    VLAddChild(_hints, hint, shared_from_this());
    setNeedUpdateShapes();
}

void VLLayer::addHintCheck(const std::shared_ptr<VLHint>& hint)
{
    if (!hint) return;
    bool present = std::any_of(_hints.begin(), _hints.end(), [&](const auto& other) { return other->isEqualToHint(*hint); });
    if (!present) addHint(hint);
}

void VLLayer::removeHint(const std::shared_ptr<VLHint>& hint)
{
    if (VLRemoveChild(_hints, hint, shared_from_this())) setNeedUpdateShapes();
}

void VLLayer::insertObject_inHintsAtIndex(const std::shared_ptr<VLHint>& hint, size_t index)
{
    if (!hint || index > _hints.size()) return;
    VLInsertChild(_hints, hint, index, shared_from_this());
    setNeedUpdateShapes();
}

void VLLayer::replaceObjectInHintsAtIndex_withObject(size_t index, const std::shared_ptr<VLHint>& hint)
{
    if (!hint || index >= _hints.size()) return;
    VLReplaceChild(_hints, index, hint, shared_from_this());
    setNeedUpdateShapes();
}

void VLLayer::saveHints()
{
    for (const auto& hint : _hints) hint->save();
}

void VLLayer::updateHints()
{
    for (const auto& hint : _hints) hint->updateIndexes();
}

void VLLayer::restoreHints()
{
    for (const auto& hint : _hints) hint->restore();
}

std::shared_ptr<VLNode> VLLayer::nodeAtIndexPath(const std::vector<size_t>& indexPath) const
{
    if (indexPath.size() < 2 || indexPath[1] > static_cast<size_t>(std::numeric_limits<long>::max())) return nullptr;
    auto path = std::dynamic_pointer_cast<VLPath>(objectInShapesAtIndex(indexPath[0]));
    return path ? path->nodeAtIndex(static_cast<long>(indexPath[1])) : nullptr;
}
