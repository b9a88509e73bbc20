#include "model/VLGlyph.h"

#include <functional>
#include <map>

namespace {

ValueArray stringArray(const std::vector<std::string>& strings)
{
    return ValueArray(strings.begin(), strings.end());
}

using Getter = std::function<Value(const VLGlyph&)>;

const std::map<std::string, Getter, std::less<>>& getters()
{
    static const std::map<std::string, Getter, std::less<>> table = {
        {"name", [](const VLGlyph& g) { return Value(g.name()); }},
        {"category", [](const VLGlyph& g) { return Value(g.category()); }},
        {"subCategory", [](const VLGlyph& g) { return Value(g.subCategory()); }},
        {"script", [](const VLGlyph& g) { return Value(g.script()); }},
        {"production", [](const VLGlyph& g) { return Value(g.production()); }},
        {"case", [](const VLGlyph& g) { return Value(static_cast<int>(g.glyphCase())); }},
        {"direction", [](const VLGlyph& g) { return Value(static_cast<int>(g.direction())); }},
        {"unicode", [](const VLGlyph& g) { return g.unicodes().empty() ? Value() : Value(g.unicodes().front()); }},
        {"unicodes", [](const VLGlyph& g) { return Value(stringArray(g.unicodes())); }},
        {"export", [](const VLGlyph& g) { return Value(g.exportGlyph()); }},
        {"colorIndex", [](const VLGlyph& g) { return Value(static_cast<int>(g.colorIndex())); }},
        {"glyphId", [](const VLGlyph& g) { return Value(static_cast<int64_t>(g.glyphId())); }},
        {"id", [](const VLGlyph& g) { return Value(g.id()); }},
        {"userData", [](const VLGlyph& g) { return Value(g.userData()); }},
    };
    return table;
}

} // namespace

Value VLGlyph::valueForKeyPath(const std::string& keyPath) const
{
    size_t dot = keyPath.find('.');
    std::string_view first = std::string_view(keyPath).substr(0, dot);
    auto it = getters().find(first);
    if (it == getters().end()) return Value();
    Value value = it->second(*this);
    // Deeper parts walk into dictionaries, such as "userData.key".
    while (dot != std::string::npos) {
        size_t next = keyPath.find('.', dot + 1);
        value = value[std::string_view(keyPath).substr(dot + 1, next - dot - 1)];
        dot = next;
    }
    return value;
}
