#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLAnchor.h"
#include "outline/VLComponent.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <set>
#include <string>
#include <string_view>

namespace {

using Anchors = VLLayer::Anchors;

// Glyphs that place several copies of glyphs that place several copies would be walked an
// exponential number of times; the walk takes in no more components than this.
constexpr size_t maximumComponentsWalked = 20000;
// Heavily composed layers inherit nothing, which bounds the walk on them.
constexpr size_t maximumShapesInheriting = 9;

struct AnchorWalk {
    // The glyphs on the way down: one of them placed again would close a cycle.
    std::set<std::string> glyphNames;
    // Glyphs may be found under names that are not their own, so cycles can pass the names.
    size_t depth = 0;
    size_t componentsLeft = maximumComponentsWalked;

    bool reaches(const std::string& glyphName) const
    {
        return componentsLeft > 0 && depth < VLComponentMaximumDepth && !glyphNames.contains(glyphName);
    }
};

bool propagatesAnchors(const VLLayer& layer)
{
    auto font = layer.font();
    Value propagate = font ? font->customValueForKey("Propagate Anchors") : Value();
    return propagate.isNull() || propagate.boolValue();
}

// "*origin" marks where the glyph's origin should be: the copies are moved by it, and it is no
// anchor of the result.
void addCopiesFromOrigin(const Anchors& own, Anchors& into)
{
    auto origin = own.objectForKey("*origin");
    for (const auto& anchor : own.allValues()) {
        if (anchor == origin) continue;
        auto copy = std::static_pointer_cast<VLAnchor>(anchor->copy());
        if (origin) {
            Point p = copy->positionPrecise();
            copy->setPositionFast({p.x - origin->position().x, p.y - origin->position().y});
        }
        into.setObject_forKey(copy, copy->name());
    }
}

// The number behind the last "_" of "top_2"; 0 where there is none. Numbers beyond the range of
// int read as none, and the walk's budget of components keeps sums of them within a long.
long ligatureNumber(const std::string& name)
{
    size_t underscore = name.rfind('_');
    if (underscore == std::string::npos) return 0;
    int number = 0;
    std::from_chars(name.data() + underscore + 1, name.data() + name.size(), number);
    return std::max(number, 0);
}

// How many glyphs the names of the anchors speak of: "top_2" or "caret_1" two. A glyph of plain
// anchors, none of them attaching, is one glyph; a mark is none.
long baseGlyphsNamed(const Anchors& anchors)
{
    long most = 0;
    bool attaches = false;
    bool plain = false;
    for (const std::string& name : anchors.allKeys()) {
        attaches |= name.starts_with('_');
        plain |= std::isalpha(static_cast<unsigned char>(name[0])) != 0;
        if (name.starts_with('_') || name.find('_') == std::string::npos) continue;
        most = std::max(most, ligatureNumber(name) + (name.starts_with("caret_") ? 1 : 0));
    }
    return most == 0 && !attaches && plain ? 1 : most;
}

// The anchor of a glyph that sits after baseGlyphs others in a ligature: "top" of the second is
// "top_2", and "top_2" of a ligature that follows one glyph is "top_3".
std::string ligatureAnchorName(std::string name, long baseGlyphs)
{
    long number = ligatureNumber(name);
    if (number > 0) {
        name.resize(name.rfind('_'));
        --number;
    }
    return name + "_" + std::to_string(number + baseGlyphs + 1);
}

bool isCursive(const std::string& name)
{
    return name == "exit" || name == "entry";
}

Anchors _anchorsTraversingComponents_numOfBaseGlyphs(const VLLayer& layer, AnchorWalk& walk, long& numOfBaseGlyphs);

// A component that asks for "top_1" attaches there: its glyph's "top" becomes that anchor, for a
// mark that can attach by "_top".
void chooseAnchorOfSetting(Anchors& anchors, const std::string& setting)
{
    std::string base = setting.substr(0, setting.find('_'));
    auto chosen = anchors.objectForKey(base);
    if (!chosen || !anchors.objectForKey("_" + base)) return;
    anchors.removeObjectForKey(base);
    chosen->setNameFast(setting);
    anchors.setObject_forKey(chosen, setting);
}

// The anchors of one component's glyph, placed by the component, into the result. Every anchor
// of a walk's result is a copy made by the walk, so they are moved and renamed in place.
void _getAnchorsFromComponent_component_componentIdx_hasUnderscore_isLigature_numberOfBaseGlyphs_seenComponents(
    Anchors& result, const VLComponent& component, long& componentIdx, bool& hasUnderscore, bool isLigature,
    long& numberOfBaseGlyphs, AnchorWalk& walk)
{
    ++componentIdx;
    if (!walk.reaches(component.componentName())) return;
    --walk.componentsLeft;
    long localCount = 0;
    Anchors local;
    if (auto base = component.componentLayer()) {
        ++walk.depth;
        local = _anchorsTraversingComponents_numOfBaseGlyphs(*base, walk, localCount);
        --walk.depth;
    }
    if (componentIdx > 0 && component.anchor()) chooseAnchorOfSetting(local, *component.anchor());

    AffineTransform transform = component.transform();
    Point scale = component.scale();
    // Turned by half a circle, the component reads as mirrored for the names.
    if (std::fabs(component.angle() - 180) <= 0.000499) scale.x = -scale.x;

    const auto& names = local.allKeys();
    bool attaches = std::any_of(names.begin(), names.end(), [](const std::string& n) { return n.starts_with('_'); });
    bool exits = std::find(names.begin(), names.end(), "exit") != names.end();
    // A base glyph after a cursive one ends its run.
    if (!attaches && !exits) result.removeObjectForKey("exit");

    for (const auto& anchor : local.allValues()) {
        const std::string original = anchor->name();
        bool attaching = original.starts_with('_');
        if (numberOfBaseGlyphs < 1 ? attaching && hasUnderscore : attaching || original == "entry") continue;
        std::string name = VLAnchor::anchorName_forScale(original, scale);
        if (isLigature && localCount > 0 && !name.starts_with('_') && !isCursive(name))
            name = ligatureAnchorName(std::move(name), numberOfBaseGlyphs);
        Point old = anchor->positionPrecise();
        Point moved = transform.transformPoint(old);
        if (std::fabs(moved.x - old.x) > 0.01 || std::fabs(moved.y - old.y) > 0.01) anchor->setPositionFast(moved);
        if (name != original) anchor->setNameFast(name);
        result.setObject_forKey(anchor, name);
        if (attaching) hasUnderscore = true;
    }
    numberOfBaseGlyphs += localCount;
}

bool hasComponents(const VLLayer& layer)
{
    const auto& shapes = layer.shapes();
    return std::any_of(shapes.begin(), shapes.end(),
                       [](const auto& shape) { return shape->shapeType() == VLShapeType::Component; });
}

// A mark that attaches below has no place above itself any more, and the other way round.
void removeCoveredAnchors(const Anchors& own, Anchors& result)
{
    if (own.objectForKey("_bottom")) result.removeObjectsForKeys({"top", "_top"});
    if (own.objectForKey("_top")) result.removeObjectsForKeys({"bottom", "_bottom"});
}

Anchors _anchorsTraversingComponents_numOfBaseGlyphs(const VLLayer& layer, AnchorWalk& walk, long& numOfBaseGlyphs)
{
    auto glyph = layer.glyph();
    if (!glyph || glyph->name().empty()) return {};
    const Anchors& own = layer.anchors();
    bool componentsPlaced = hasComponents(layer);
    if (!componentsPlaced && own.empty()) return {};
    const std::string& glyphName = glyph->name();
    bool propagates = propagatesAnchors(layer);
    Anchors result;
    if (!own.empty() && (!propagates || walk.glyphNames.contains(glyphName))) {
        addCopiesFromOrigin(own, result);
        return result;
    }

    bool entered = walk.glyphNames.insert(glyphName).second;
    numOfBaseGlyphs = 0;
    bool isLigature = glyph->subCategory() == "Ligature";
    const auto& ownNames = own.allKeys();
    bool hasUnderscore =
        std::any_of(ownNames.begin(), ownNames.end(), [](const std::string& n) { return n.starts_with('_'); });
    if (propagates && componentsPlaced && layer.countOfShapes() <= maximumShapesInheriting) {
        long componentIdx = -1;
        for (const auto& shape : layer.shapes())
            if (auto* component = dynamic_cast<const VLComponent*>(shape.get()))
                _getAnchorsFromComponent_component_componentIdx_hasUnderscore_isLigature_numberOfBaseGlyphs_seenComponents(
                    result, *component, componentIdx, hasUnderscore, isLigature, numOfBaseGlyphs, walk);
    }
    if (entered) walk.glyphNames.erase(glyphName);

    addCopiesFromOrigin(own, result);
    if (!isLigature && numOfBaseGlyphs == 0) numOfBaseGlyphs = baseGlyphsNamed(result);
    removeCoveredAnchors(own, result);
    return result;
}

} // namespace

VLLayer::Anchors VLLayer::anchorDictTraversingComponents() const
{
    AnchorWalk walk;
    long baseGlyphs = 0;
    return _anchorsTraversingComponents_numOfBaseGlyphs(*this, walk, baseGlyphs);
}

std::vector<std::shared_ptr<VLAnchor>> VLLayer::anchorsTraversingComponents() const
{
    return anchorDictTraversingComponents().allValues();
}
