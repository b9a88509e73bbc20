#include "model/VLAxis.h"
#include "platform/NumberConversion.h"
#include "model/VLCustomParameter.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLInstance.h"
#include "model/VLLayer.h"
#include "platform/ParallelFor.h"
#include "platform/VLError.h"

#include <algorithm>
#include <cctype>
#include <mutex>
#include <optional>

namespace {

std::string text(const Value& value)
{
    return value.isString() ? value.string() : value.description();
}

const Value& firstPresent(const Value& dict, const char* key, const char* otherKey)
{
    return dict[key].isNull() ? dict[otherKey] : dict[key];
}

// An entry of the "Axes" parameter of older documents; a tag is made from the name when missing.
std::shared_ptr<VLAxis> axisFromParameter(const Value& dict, size_t number)
{
    std::string name = text(firstPresent(dict, "Name", "name"));
    const Value& tagValue = firstPresent(dict, "Tag", "tag");
    std::string tag = tagValue.isNull() ? name.substr(0, 4) : text(tagValue);
    if (tagValue.isNull())
        std::transform(tag.begin(), tag.end(), tag.begin(), [](unsigned char c) { return std::toupper(c); });
    auto axis = VLAxis::initWithName_tag(name, tag);
    axis->setDefaultValue(VLSinglePrecision(dict["Default"].doubleValue()));
    // The key alone hides the axis, whatever it says.
    axis->setHidden(dict.dictionary().count("Hidden") > 0);
    axis->setAxisId(VLAxis::axisIdForNumber(number));
    return axis;
}

} // namespace

bool VLFont::postRead(VLError* error)
{
    if (_name2Glyph.size() != _glyphs.size()) prepareName2Glyph();
    for (const auto& parameter : customParameters()) parameter->postRead(_formatVersion);
    if (_formatVersion == 1) {
        postReadAxesFromParameters();
        Value note = customValueForKey("note");
        if (!note.isNull()) {
            setNote(text(note));
            removeObjectFromCustomParametersForKey("note");
        }
    }
    for (const auto& master : _fontMasters)
        if (!master->postRead_format(error, _formatVersion)) return false;
    for (const auto& instance : _instances)
        if (!instance->postRead_format(error, _formatVersion)) return false;
    return postReadGlyphs(error);
}

// Older documents keep their axes in a parameter, or imply them by the masters' values.
void VLFont::postReadAxesFromParameters()
{
    Value list = customValueForKey("Axes");
    if (!list.isArray() || list.count() == 0) {
        setAxes(legacyAxes());
        return;
    }
    removeObjectFromCustomParametersForKey("Axes");
    std::vector<std::shared_ptr<VLAxis>> axes;
    for (const Value& entry : list.array())
        if (entry.isDictionary()) axes.push_back(axisFromParameter(entry, axes.size() + 1));
    setAxes(std::move(axes));
}

// From here on a glyph's id is its place in the array; the document's "index" served for
// sorting only. A glyph whose layers are not read yet has nothing else to do here.
bool VLFont::postReadGlyphs(VLError* error)
{
    std::optional<VLError> stored;
    std::mutex storedLock;
    const uint8_t format = _formatVersion;
    ParallelFor(_glyphs.size(), [&](size_t index, bool& stop) {
        const auto& glyph = _glyphs[index];
        if (glyph->glyphId() != index) glyph->setGlyphId(index);
        VLError local;
        for (const auto& layer : glyph->layers().allValues())
            if (!layer->postRead_format(&local, format)) break;
        if (local.domain.empty()) return;
        std::lock_guard lock(storedLock);
        if (!stored) stored = local;
        stop = true;
    });
    if (!stored || !error) return true;
    *error = *stored;
    return false;
}
