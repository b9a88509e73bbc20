#pragma once

#include "platform/Value.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

class VLCustomParameter;

// The list of custom parameters that fonts, masters and instances carry, with a cache of the
// values of the active ones by name. The cache is built on the first value look-up and dropped
// only when parameters are added or removed: a value or active flag changed later is not seen
// until then.
class VLCustomParameterOwner {
public:
    using Parameters = std::vector<std::shared_ptr<VLCustomParameter>>;

    const Parameters& customParameters() const { return _customParameters; }
    size_t countOfCustomParameters() const { return _customParameters.size(); }
    std::shared_ptr<VLCustomParameter> objectInCustomParametersAtIndex(size_t index) const;
    // The first parameter of the name, active or not, validated; null for an empty key.
    std::shared_ptr<VLCustomParameter> customParameterForKey(const std::string& key) const;
    std::shared_ptr<VLCustomParameter> customParameterActiveForKey(const std::string& key) const;

    // By the cache: the first active parameter of the name wins.
    Value customValueForKey(const std::string& key);
    bool customBoolValueForKey(const std::string& key) { return customValueForKey(key).boolValue(); }
    // The cached value as it stands, colour or text: callers convert it.
    Value customColorValueForKey(const std::string& key) { return customValueForKey(key); }

    void addCustomParameter(const std::shared_ptr<VLCustomParameter>& parameter);
    // Copies of the other owner's parameters, appended in their order.
    void copyCustomParametersFrom(const VLCustomParameterOwner& other);
    // Removes every parameter of the name.
    void removeObjectFromCustomParametersForKey(const std::string& key);
    void removeObjectFromCustomParametersAtIndex(size_t index);

    void setupCustomParametersCache();
    void invalidateCustomParameterCache() { _customParameterCache.reset(); }

protected:
    // A font keeps no cache for an empty list and so looks again on every call; masters and
    // instances keep an empty one.
    explicit VLCustomParameterOwner(bool cachesEmptyList) : _cachesEmptyList(cachesEmptyList) {}
    ~VLCustomParameterOwner();
    VLCustomParameterOwner(const VLCustomParameterOwner&) = delete;
    VLCustomParameterOwner& operator=(const VLCustomParameterOwner&) = delete;

private:
    std::shared_ptr<VLCustomParameter> firstForKey(const std::string& key, bool activeOnly) const;

    Parameters _customParameters;
    std::optional<ValueDictionary> _customParameterCache;
    bool _cachesEmptyList;
    std::recursive_mutex _customParameterMonitor;
};
