#include "model/VLLayer.h"
#include "outline/VLAnchor.h"
#include "platform/StringFormat.h"

void VLLayer::setAnchorsFast(Anchors anchors)
{
    _anchors = std::move(anchors);
    for (const auto& anchor : _anchors.allValues())
        if (anchor) anchor->setParent(shared_from_this());
}

void VLLayer::setAnchorArrayFast(const std::vector<std::shared_ptr<VLAnchor>>& anchors)
{
    Anchors byName;
    for (const auto& anchor : anchors)
        if (anchor) byName.setObject_forKey(anchor, anchor->name());
    setAnchorsFast(std::move(byName));
}

std::shared_ptr<VLAnchor> VLLayer::anchorForName(const std::string& name) const
{
    return _anchors.objectForKey(name);
}

std::shared_ptr<VLAnchor> VLLayer::anchorForName_traverseComponents(const std::string& name, bool traverse) const
{
    return traverse ? anchorDictTraversingComponents().objectForKey(name) : anchorForName(name);
}

std::shared_ptr<VLAnchor> VLLayer::objectInAnchorsAtIndex(size_t index) const
{
    return _anchors.objectAtIndex(index);
}

void VLLayer::addAnchor(const std::shared_ptr<VLAnchor>& anchor)
{
    if (!anchor) return;
    for (int number = 1; anchor->name().empty(); ++number) {
        std::string name = stringWithFormat("anchor%.2d", number);
        if (!_anchors.objectForKey(name)) anchor->setNameFast(std::move(name));
    }
    anchor->setParent(shared_from_this());
    _anchors.setObject_forKey(anchor, anchor->name());
}

void VLLayer::switchAnchorFastName_withName(const std::string& oldName, const std::string& newName)
{
    auto anchor = _anchors.objectForKey(oldName);
    if (!anchor) return;
    _anchors.removeObjectForKey(oldName);
    anchor->setNameFast(newName);
    _anchors.setObject_forKey(anchor, newName);
}
