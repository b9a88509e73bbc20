#include "model/VLLayer.h"
#include "outline/VLHint.h"
#include "outline/VLPath.h"

#include <algorithm>
#include <limits>

void VLLayer::setHintsFast(Hints hints)
{
    _hints = std::move(hints);
    for (const auto& hint : _hints) hint->setParent(shared_from_this());
}

void VLLayer::addHint(const std::shared_ptr<VLHint>& hint)
{
    if (!hint) return;
    hint->setParent(shared_from_this());
    _hints.push_back(hint);
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
    if (std::erase(_hints, hint) == 0) return;
    hint->setParent(nullptr);
    setNeedUpdateShapes();
}

void VLLayer::insertObject_inHintsAtIndex(const std::shared_ptr<VLHint>& hint, size_t index)
{
    if (!hint || index > _hints.size()) return;
    hint->setParent(shared_from_this());
    _hints.insert(_hints.begin() + static_cast<long>(index), hint);
    setNeedUpdateShapes();
}

void VLLayer::replaceObjectInHintsAtIndex_withObject(size_t index, const std::shared_ptr<VLHint>& hint)
{
    if (!hint || index >= _hints.size()) return;
    _hints[index]->setParent(nullptr);
    hint->setParent(shared_from_this());
    _hints[index] = hint;
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
