#include "model/VLValueHelpers.h"

#include "platform/VLException.h"

#include <sstream>

namespace {

std::string joined(const std::vector<std::string>& keys)
{
    std::string path;
    for (const std::string& key : keys) path += (path.empty() ? "" : ".") + key;
    return path;
}

} // namespace

Value objectForKeysInArray(const Value& root, const std::vector<std::string>& keys)
{
    Value current = root;
    for (const std::string& key : keys) {
        current = current[key];
        if (current.isNull()) return current;
    }
    return current;
}

Value objectForKeyPath(const Value& root, const std::string& keyPath)
{
    std::vector<std::string> keys;
    std::stringstream path(keyPath);
    for (std::string key; std::getline(path, key, '.');) keys.push_back(key);
    return objectForKeysInArray(root, keys);
}

void setObject_forKeysInArray(Value& root, const Value& value, const std::vector<std::string>& keys)
{
    if (keys.empty() || !root.isDictionary()) return;
    ValueDictionary* current = root.mutableDictionary();
    for (size_t i = 0; i + 1 < keys.size(); ++i) {
        Value& next = (*current)[keys[i]];
        if (next.isNull()) next = Value(ValueDictionary());
        if (!next.isDictionary()) {
            bool beforeLast = i + 2 == keys.size();
            throw VLException("VLInvalidArgumentException",
                              std::string(beforeLast ? "Before-last path item is not a dictionary" : "Path item not a dictionary") +
                                  " (keyPath " + joined(keys) + " - offending " + keys[i] + ")");
        }
        current = next.mutableDictionary();
    }
    (*current)[keys.back()] = value;
}

Value deepMutableCopy(const Value& value)
{
    if (value.isArray()) {
        ValueArray items;
        for (const Value& item : value.array()) items.push_back(deepMutableCopy(item));
        return Value(std::move(items));
    }
    if (value.isDictionary()) {
        ValueDictionary entries;
        for (const auto& [key, item] : value.dictionary()) entries[key] = deepMutableCopy(item);
        return Value(std::move(entries));
    }
    return value;
}

ValueDictionary reverseMapping(const ValueDictionary& dictionary)
{
    ValueDictionary reversed;
    for (const auto& [key, value] : dictionary) reversed[value.isString() ? value.string() : value.description()] = Value(key);
    return reversed;
}

std::optional<std::string> firstKeyForObject(const ValueDictionary& dictionary, const Value& object)
{
    for (const auto& [key, value] : dictionary)
        if (value == object) return key;
    return std::nullopt;
}
