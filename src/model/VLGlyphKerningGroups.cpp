#include "model/VLGlyph.h"

namespace {

constexpr const char* firstGroupPrefix = "@MMK_L_";
constexpr const char* secondGroupPrefix = "@MMK_R_";

std::string keyOfGroup(const char* prefix, const std::string& group)
{
    return group.empty() ? std::string() : prefix + group;
}

} // namespace

std::string VLGlyph::nextKerningGroupforDirection(int direction) const
{
    switch (direction) {
    case 0:
    case 1: return _rightKerningGroup;
    case 2: return _leftKerningGroup;
    case 4:
    case 12: return _bottomKerningGroup;
    default: return std::string();
    }
}

std::string VLGlyph::previousKerningGroupforDirection(int direction) const
{
    switch (direction) {
    case 0:
    case 1: return _leftKerningGroup;
    case 2: return _rightKerningGroup;
    case 4:
    case 12: return _topKerningGroup;
    default: return std::string();
    }
}

std::string VLGlyph::nextKerningGroupIDforDirection(int direction) const
{
    return keyOfGroup(firstGroupPrefix, nextKerningGroupforDirection(direction));
}

std::string VLGlyph::previousKerningGroupIDforDirection(int direction) const
{
    return keyOfGroup(secondGroupPrefix, previousKerningGroupforDirection(direction));
}
