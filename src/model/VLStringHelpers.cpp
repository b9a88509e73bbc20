#include "model/VLStringHelpers.h"

#include <cstdio>

std::string hexStringFromInt(int64_t value)
{
    uint64_t magnitude = value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
    char text[16];
    std::snprintf(text, sizeof text, "%s%X", value < 0 ? "-" : "", static_cast<uint32_t>(magnitude));
    std::string s = text;
    return s;
}
