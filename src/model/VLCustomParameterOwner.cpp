#include "model/VLCustomParameterOwner.h"

#include "model/VLCustomParameter.h"
#include "model/VLValueHelpers.h"

#include <algorithm>

VLCustomParameterOwner::~VLCustomParameterOwner()
{
    for (const auto& parameter : _customParameters) parameter->setParent(nullptr);
}

std::shared_ptr<VLCustomParameter> VLCustomParameterOwner::objectInCustomParametersAtIndex(size_t index) const
{
    return index < _customParameters.size() ? _customParameters[index] : nullptr;
}

std::shared_ptr<VLCustomParameter> VLCustomParameterOwner::firstForKey(const std::string& key, bool activeOnly) const
{
    if (key.empty()) return nullptr;
    for (const auto& parameter : _customParameters) {
        if (parameter->name() != key || (activeOnly && !parameter->active())) continue;
        parameter->validateValue();
        return parameter;
    }
    return nullptr;
}

std::shared_ptr<VLCustomParameter> VLCustomParameterOwner::customParameterForKey(const std::string& key) const
{
    return firstForKey(key, false);
}

std::shared_ptr<VLCustomParameter> VLCustomParameterOwner::customParameterActiveForKey(const std::string& key) const
{
    return firstForKey(key, true);
}

Value VLCustomParameterOwner::customValueForKey(const std::string& key)
{
    if (key.empty()) return Value();
    std::lock_guard lock(_customParameterMonitor);
    if (!_customParameterCache) setupCustomParametersCache();
    if (!_customParameterCache) return Value();
    auto it = _customParameterCache->find(key);
    return it == _customParameterCache->end() ? Value() : it->second;
}

void VLCustomParameterOwner::setupCustomParametersCache()
{
    if (_customParameters.empty() && !_cachesEmptyList) return;
    _customParameterCache.emplace();
    // Backward, so that the first active parameter of a name is the one that stays.
    for (auto it = _customParameters.rbegin(); it != _customParameters.rend(); ++it) {
        const auto& parameter = *it;
        if (!parameter->active()) continue;
        parameter->validateValue();
        (*_customParameterCache)[parameter->name()] = parameter->value();
    }
}

void VLCustomParameterOwner::addCustomParameter(const std::shared_ptr<VLCustomParameter>& parameter)
{
    if (!parameter) return;
    parameter->setParent(this);
    _customParameters.push_back(parameter);
    invalidateCustomParameterCache();
}

void VLCustomParameterOwner::removeObjectFromCustomParametersForKey(const std::string& key)
{
    std::erase_if(_customParameters, [&](const auto& parameter) { return parameter->name() == key; });
    invalidateCustomParameterCache();
}

void VLCustomParameterOwner::removeObjectFromCustomParametersAtIndex(size_t index)
{
    if (index >= _customParameters.size()) return;
    _customParameters.erase(_customParameters.begin() + static_cast<std::ptrdiff_t>(index));
    invalidateCustomParameterCache();
}

void VLCustomParameterOwner::copyCustomParametersFrom(const VLCustomParameterOwner& other)
{
    for (const auto& parameter : other.customParameters()) {
        auto copy = VLCustomParameter::initWithName_value(parameter->name(), deepMutableCopy(parameter->value()));
        if (!copy) continue;
        copy->setActive(parameter->active());
        addCustomParameter(copy);
    }
}
