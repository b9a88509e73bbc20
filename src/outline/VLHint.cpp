#include "outline/VLHint.h"

#include "model/VLFullSort.h"
#include "model/VLUserData.h"

#include <algorithm>
#include <cctype>
#include <unordered_map>

namespace {

struct TypeName {
    VLHintType type;
    const char* name;
};

constexpr TypeName typeNames[] = {
    {VLHintType::Tag, "Tag"},
    {VLHintType::TopGhost, "TopGhost"},
    {VLHintType::Stem, "Stem"},
    {VLHintType::BottomGhost, "BottomGhost"},
    {VLHintType::Flex, "Flex"},
    {VLHintType::TTSnap, "TTSnap"},
    {VLHintType::TTStem, "TTStem"},
    {VLHintType::TTShift, "TTShift"},
    {VLHintType::TTInterpolate, "TTInterpolate"},
    {VLHintType::TTDiagonal, "TTDiagonal"},
    {VLHintType::TTDelta, "TTDelta"},
    {VLHintType::Corner, "Corner"},
    {VLHintType::Cap, "Cap"},
    {VLHintType::Brush, "Brush"},
    {VLHintType::Segment, "Segment"},
    {VLHintType::Auto, "Auto"},
};

int compareValues(double a, double b)
{
    return a < b ? -1 : (a > b ? 1 : 0);
}

int compareIndexPaths(const VLIndexPath& a, const VLIndexPath& b)
{
    auto order = a <=> b;
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

bool contains(const std::vector<VLIndexPath>& places, const VLIndexPath& place)
{
    return std::find(places.begin(), places.end(), place) != places.end();
}

} // namespace

VLHint::VLHint()
{
    // Only three knobs start empty; the fourth starts at the origin.
    _refs[Other2].knob = {0.0, 0.0};
}

VLHintType VLHint::typeForName(const std::string& name)
{
    static const std::unordered_map<std::string, VLHintType> types = [] {
        std::unordered_map<std::string, VLHintType> table;
        for (const auto& entry : typeNames) table[entry.name] = entry.type;
        table["Anchor"] = VLHintType::TTSnap;
        table["Align"] = VLHintType::TTShift;
        table["Interpolate"] = VLHintType::TTInterpolate;
        table["Delta"] = VLHintType::TTDelta;
        table["Diagonal"] = VLHintType::TTDiagonal;
        return table;
    }();
    auto it = types.find(name);
    return it == types.end() ? VLHintType::Stem : it->second;
}

const char* VLHint::typeNameC(VLHintType type)
{
    for (const auto& entry : typeNames)
        if (entry.type == type) return entry.name;
    return "Unknown";
}

Value VLHint::objectInSettingsForKey(const std::string& key) const
{
    auto it = _settings.find(key);
    return it == _settings.end() ? Value() : it->second;
}

void VLHint::setObjectInSettings_forKey(const Value& value, const std::string& key)
{
    VLSetUserData(_settings, value, key);
}

int VLHint::compare(const VLHint& other) const
{
    if (_horizontal != other._horizontal) return _horizontal ? -1 : 1;
    if (_type != other._type) return _type < other._type ? -1 : 1;
    const auto& origin = originIndex();
    const auto& otherOrigin = other.originIndex();
    switch (_type) {
    case VLHintType::TopGhost:
    case VLHintType::BottomGhost:
    case VLHintType::Flex:
        if (!origin.empty() && !otherOrigin.empty()) return compareIndexPaths(origin, otherOrigin);
        return _origin > other._origin ? -1 : 1;
    case VLHintType::Tag:
    case VLHintType::TTDiagonal:
    case VLHintType::Corner:
    case VLHintType::Cap:
    case VLHintType::Brush:
    case VLHintType::Segment:
        return 0;
    default:
        if (!origin.empty() && !targetIndex().empty() && !otherOrigin.empty() && !other.targetIndex().empty()) {
            int byOrigin = compareIndexPaths(origin, otherOrigin);
            return byOrigin != 0 ? byOrigin : compareIndexPaths(targetIndex(), other.targetIndex());
        }
        int byOrigin = compareValues(_origin, other._origin);
        return byOrigin != 0 ? byOrigin : compareValues(_width, other._width);
    }
}

bool VLHint::isEqualToHint(const VLHint& other) const
{
    bool placed = !originIndex().empty();
    return _type == other._type && _horizontal == other._horizontal && _name == other._name &&
           _options == other._options && _stem == other._stem &&
           std::equal(_refs.begin(), _refs.end(), other._refs.begin(),
                      [](const Ref& a, const Ref& b) { return a.index == b.index; }) &&
           (placed || (_origin == other._origin && _width == other._width));
}

VLIndexPath VLHint::indexPathFromPlist(const Value& value)
{
    VLIndexPath path;
    if (value.isArray()) {
        for (const auto& item : value.array()) {
            int64_t number = item.integerValue();
            if (number < 0) return {};
            path.push_back(static_cast<size_t>(number));
        }
        return path;
    }
    // The older text form lists the numbers with any separators, such as "{0, 5}".
    const std::string& text = value.string();
    for (size_t i = 0; i < text.size();) {
        if (!std::isdigit(static_cast<unsigned char>(text[i]))) {
            if (text[i] == '-') return {};
            ++i;
            continue;
        }
        size_t number = 0;
        for (; i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])); ++i)
            number = number * 10 + static_cast<size_t>(text[i] - '0');
        path.push_back(number);
    }
    return path;
}

void VLHint::reverse()
{
    if (_type != VLHintType::Stem && _type != VLHintType::TTStem && _type != VLHintType::TTShift) return;
    std::swap(_refs[Origin].index, _refs[Target].index);
    std::swap(_refs[Origin].node, _refs[Target].node);
}

std::vector<VLIndexPath> VLHint::touchingIndexes() const
{
    std::vector<Reference> moved;
    switch (_type) {
    case VLHintType::TTSnap:
    case VLHintType::TTDelta: moved = {Origin}; break;
    case VLHintType::TTStem:
    case VLHintType::TTShift: moved = {Target}; break;
    case VLHintType::TTInterpolate: moved = {Other1}; break;
    case VLHintType::TTDiagonal: moved = {Origin, Target, Other1, Other2}; break;
    default: break;
    }
    std::vector<VLIndexPath> places;
    for (Reference r : moved)
        if (!indexPath(r).empty()) places.push_back(indexPath(r));
    return places;
}

std::vector<VLIndexPath> VLHint::dependenIndexes() const
{
    std::vector<Reference> references;
    if (_type == VLHintType::TTStem || _type == VLHintType::TTShift) references = {Origin};
    if (_type == VLHintType::TTInterpolate) references = {Origin, Target};
    std::vector<VLIndexPath> places;
    for (Reference r : references)
        if (!indexPath(r).empty()) places.push_back(indexPath(r));
    return places;
}

void VLHint::sortHints(std::vector<std::shared_ptr<VLHint>>& hints)
{
    for (const auto& hint : hints) {
        if (!hint->isTrueType()) continue;
        hint->updateIndexes();
        if (hint->touchingIndexes().empty()) return;
    }
    // An instruction goes after every instruction that moves a point it depends on.
    fullSort(hints, [](const std::shared_ptr<VLHint>& a, const std::shared_ptr<VLHint>& b) {
        if (!a->isTrueType() || !b->isTrueType()) return 0;
        auto moved = b->touchingIndexes();
        for (const auto& place : a->dependenIndexes())
            if (contains(moved, place)) return 1;
        return 0;
    });
}
