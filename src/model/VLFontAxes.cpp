#include "model/VLAxis.h"
#include "model/VLChildren.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLMetricValue.h"

#include <algorithm>

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

void VLFont::insertObject_inAxesAtIndex(const std::shared_ptr<VLAxis>& axis, size_t index)
{
    VLInsertChild(_axes, axis, std::min(index, _axes.size()), shared_from_this());
}

void VLFont::replaceObjectInAxesAtIndex_withObject(size_t index, const std::shared_ptr<VLAxis>& axis)
{
    if (index < _axes.size() && axis) VLReplaceChild(_axes, index, axis, shared_from_this());
}

void VLFont::removeObjectFromAxes(const std::shared_ptr<VLAxis>& axis)
{
    if (axis) VLRemoveChild(_axes, axis, shared_from_this());
}

void VLFont::removeObjectFromAxesAtIndex(size_t index)
{
    if (index < _axes.size()) VLRemoveChild(_axes, _axes[index], shared_from_this());
}

long VLFont::indexOfObjectInAxes(const std::shared_ptr<VLAxis>& axis) const
{
    auto found = std::find(_axes.begin(), _axes.end(), axis);
    return found == _axes.end() ? -1 : found - _axes.begin();
}

std::vector<std::shared_ptr<VLMetricValue>> VLFont::axesPositionsFromAxes_master(const Axes& axes, VLFontMaster& master)
{
    std::vector<std::shared_ptr<VLMetricValue>> positions;
    for (const auto& axis : axes) {
        auto found = master.axesValues().find(axis->axisId());
        auto value = found == master.axesValues().end() ? nullptr : found->second;
        if (!value) {
            value = VLMetricValue::initWithPosition(0);
            master.setAxisValue_forId(value, axis->axisId());
        }
        positions.push_back(value);
    }
    return positions;
}

std::vector<double> VLFont::axesValueListFromAxes_axesValues(const Axes& axes, const AxesValues& values)
{
    std::vector<double> list(axes.size());
    axesValueListFromAxes_axesValues_intoList(axes, values, list);
    return list;
}

void VLFont::axesValueListFromAxes_axesValues_intoList(const Axes& axes, const AxesValues& values,
                                                       std::vector<double>& list)
{
    for (size_t i = 0; i < axes.size() && i < list.size(); ++i) {
        auto found = values.find(axes[i]->axisId());
        list[i] = found == values.end() || !found->second ? 0.0 : found->second->position();
    }
}

VLFont::AxesValues VLFont::axesValuesFromAxes_axesValuesList(const Axes& axes, const std::vector<double>& list)
{
    AxesValues values;
    for (size_t i = 0; i < axes.size() && i < list.size(); ++i)
        values[axes[i]->axisId()] = VLMetricValue::initWithPosition(list[i]);
    return values;
}
