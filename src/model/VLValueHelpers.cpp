#include "model/VLValueHelpers.h"

#include "platform/StringFormat.h"
#include "platform/VLException.h"

namespace {

template <typename Keys> Value walk(const Value& root, const Keys& keys)
{
    const Value* value = &root;
    for (const auto& key : keys) {
        value = &(*value)[std::string_view(key)];
        if (value->isNull()) return Value();
    }
    return *value;
}

std::string joined(const std::vector<std::string>& keys)
{
    std::string path;
    for (const std::string& key : keys) path += (path.empty() ? "" : ".") + key;
    return path;
}

[[noreturn]] void raiseNotADictionary(const std::vector<std::string>& keys, size_t offending)
{
    std::string path = joined(keys);
    std::string reason =
        offending + 2 == keys.size()
            ? stringWithFormat("Before-last path item is not a dictionary (keyPath %s)", path.c_str())
            : stringWithFormat("Path item not a dictionary (keyPath %s - offending %s)", path.c_str(),
                               keys[offending].c_str());
    throw VLException("NSInternalInconsistencyException", reason);
}

} // namespace

Value objectForKeysInArray(const Value& root, const std::vector<std::string>& keys) { return walk(root, keys); }

Value objectForKeys(const Value& root, std::initializer_list<std::string_view> keys) { return walk(root, keys); }

Value objectForKeyPath(const Value& root, std::string_view keyPath)
{
    std::vector<std::string> keys;
    for (size_t start = 0; !keyPath.empty();) {
        size_t dot = keyPath.find('.', start);
        keys.emplace_back(keyPath.substr(start, dot - start));
        if (dot == std::string_view::npos) break;
        start = dot + 1;
    }
    return walk(root, keys);
}

void setObject_forKeysInArray(Value& root, Value object, const std::vector<std::string>& keys)
{
    ValueDictionary* dictionary = root.mutableDictionary();
    if (!dictionary || keys.empty()) return;
    for (size_t i = 0; i + 1 < keys.size(); ++i) {
        Value& next = (*dictionary)[keys[i]];
        if (next.isNull()) next = ValueDictionary();
        dictionary = next.mutableDictionary();
        if (!dictionary) raiseNotADictionary(keys, i);
    }
    (*dictionary)[keys.back()] = std::move(object);
}

Value deepMutableCopy(const Value& value)
{
    if (value.isDictionary()) {
        ValueDictionary copy;
        for (const auto& [key, item] : value.dictionary()) copy.emplace(key, deepMutableCopy(item));
        return copy;
    }
    if (value.isArray()) {
        ValueArray copy;
        copy.reserve(value.count());
        for (const Value& item : value.array()) copy.push_back(deepMutableCopy(item));
        return copy;
    }
    return value;
}

ValueDictionary reverseMapping(const ValueDictionary& dictionary)
{
    ValueDictionary reversed;
    for (const auto& [key, value] : dictionary)
        reversed[value.isString() ? value.string() : value.description()] = Value(key);
    return reversed;
}
