#pragma once

#include "platform/Value.h"

#include <optional>
#include <string>

// Raw values that a record keeps from reading until its post-read pass turns them into the
// model; absent until the first value arrives.
class VLReadBuffer {
public:
    const std::optional<ValueDictionary>& values() const { return _values; }
    // An absent value is not kept.
    void setValue_forKey(const Value& value, const std::string& key)
    {
        if (value.isNull()) return;
        if (!_values) _values.emplace();
        (*_values)[key] = value;
    }
    void clear() { _values.reset(); }

private:
    std::optional<ValueDictionary> _values;
};
