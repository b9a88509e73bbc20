#include "model/VLUserData.h"

void VLSetUserData(ValueDictionary& dictionary, const Value& value, const std::string& key)
{
    if (value.isNull()) {
        dictionary.erase(key);
        return;
    }
    auto it = dictionary.find(key);
    if (it != dictionary.end() && it->second == value) return;
    dictionary[key] = value;
}
