#pragma once

#include "platform/Value.h"

#include <plist/plist.h>

#include <cstdlib>
#include <string>

// A value as a libplist node, for writing test documents in the XML and binary forms.
inline plist_t plistNodeOfValue(const Value& value)
{
    switch (value.type()) {
    case Value::Type::Bool: return plist_new_bool(value.boolValue());
    case Value::Type::Integer: return plist_new_uint(static_cast<uint64_t>(value.integerValue()));
    case Value::Type::Real: return plist_new_real(value.doubleValue());
    case Value::Type::String: return plist_new_string(value.string().c_str());
    case Value::Type::Array: {
        plist_t array = plist_new_array();
        for (const Value& item : value.array()) plist_array_append_item(array, plistNodeOfValue(item));
        return array;
    }
    case Value::Type::Dictionary: {
        plist_t dict = plist_new_dict();
        for (const auto& [key, item] : value.dictionary()) plist_dict_set_item(dict, key.c_str(), plistNodeOfValue(item));
        return dict;
    }
    default: return plist_new_string("");
    }
}

inline std::string propertyListOfValue(const Value& value, bool binary)
{
    plist_t node = plistNodeOfValue(value);
    char* bytes = nullptr;
    uint32_t length = 0;
    if (binary)
        plist_to_bin(node, &bytes, &length);
    else
        plist_to_xml(node, &bytes, &length);
    std::string text(bytes, length);
    std::free(bytes);
    plist_free(node);
    return text;
}
