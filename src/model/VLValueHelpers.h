#pragma once

#include "platform/Value.h"

#include <optional>
#include <string>
#include <vector>

// Walks down nested dictionaries key by key; null at the first absent value.
Value objectForKeysInArray(const Value& root, const std::vector<std::string>& keys);
// The same with the keys of a path separated by ".".
Value objectForKeyPath(const Value& root, const std::string& keyPath);
// Stores the value at the end of the keys, making the missing dictionaries on the way. A value on
// the way that is not a dictionary raises VLException; a root that isn't one stores nothing.
void setObject_forKeysInArray(Value& root, const Value& value, const std::vector<std::string>& keys);
// A copy whose nested dictionaries and arrays are copies too, not shared.
Value deepMutableCopy(const Value& value);
// From value text to key; later keys win.
ValueDictionary reverseMapping(const ValueDictionary& dictionary);
std::optional<std::string> firstKeyForObject(const ValueDictionary& dictionary, const Value& object);
