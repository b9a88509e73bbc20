#include "model/VLAxis.h"
#include "model/VLChildren.h"
#include "model/VLFont.h"

void VLFont::setAxes(std::vector<std::shared_ptr<VLAxis>> axes)
{
    VLSetChildren(_axes, std::move(axes), shared_from_this());
}

void VLFont::addAxis(const std::shared_ptr<VLAxis>& axis)
{
    VLAddChild(_axes, axis, shared_from_this());
}

std::shared_ptr<VLAxis> VLFont::objectInAxesAtIndex(size_t index) const
{
    return index < _axes.size() ? _axes[index] : nullptr;
}

std::shared_ptr<VLAxis> VLFont::axisForId(const std::string& axisId) const
{
    for (const auto& axis : _axes)
        if (axis->axisId() == axisId) return axis;
    return nullptr;
}

std::shared_ptr<VLAxis> VLFont::axisForName(const std::string& name) const
{
    for (const auto& axis : _axes)
        if (axis->name() == name) return axis;
    return nullptr;
}

std::shared_ptr<VLAxis> VLFont::axisForTag(const std::string& tag) const
{
    for (const auto& axis : _axes)
        if (axis->axisTag() == tag) return axis;
    return nullptr;
}
