#pragma once

#include "platform/Value.h"

#include <string>

// The user-data and scratch rule shared by every record: a null value removes the key, and an
// equal value is not stored again.
void VLSetUserData(ValueDictionary& dictionary, const Value& value, const std::string& key);
