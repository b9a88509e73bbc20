#pragma once

#include "platform/Value.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// Key-path access, copies and reverse look-ups over property-list values.

// Walks down the dictionaries key by key; null at the first missing value.
Value objectForKeysInArray(const Value& root, const std::vector<std::string>& keys);
Value objectForKeys(const Value& root, std::initializer_list<std::string_view> keys);
// The keys joined by ".".
Value objectForKeyPath(const Value& root, std::string_view keyPath);

// Stores object at the end of the keys, putting new dictionaries where a value is missing on the
// way. A root that is no dictionary can't take it: nothing is stored. A value on the way that is
// no dictionary raises a VLException.
void setObject_forKeysInArray(Value& root, Value object, const std::vector<std::string>& keys);

// The value for key; a missing one is made by `make` and stored first. Null for a root that is
// no dictionary.
template <typename Factory> Value objectForKey_defaultClass(Value& root, const std::string& key, Factory make)
{
    ValueDictionary* dictionary = root.mutableDictionary();
    if (!dictionary) return Value();
    Value& slot = (*dictionary)[key];
    if (slot.isNull()) slot = make();
    return slot;
}

// A copy that shares no dictionary or array with the original, at any depth.
Value deepMutableCopy(const Value& value);

// From value to key; a value that is not a string is keyed by its description.
ValueDictionary reverseMapping(const ValueDictionary& dictionary);

// The first key, in the map's order, whose value equals object; null if there is none.
template <typename Map, typename T> const std::string* firstKeyForObject(const Map& map, const T& object)
{
    for (const auto& [key, value] : map)
        if (value == object) return &key;
    return nullptr;
}
