#include "model/VLCustomParameter.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLMetric.h"
#include "model/VLMetricValue.h"
#include "platform/StringFormat.h"

#include <array>
#include <utility>

namespace {

// The master keys of older documents, kept in the read buffer under the names of their metric types.
constexpr std::array<std::pair<uint8_t, const char*>, 5> legacyMetrics = {{
    {VLMetric::TypeAscender, "ascender"},
    {VLMetric::TypeCapHeight, "cap height"},
    {VLMetric::TypeXHeight, "x-height"},
    {VLMetric::TypeBaseline, "baseline"},
    {VLMetric::TypeDescender, "descender"},
}};

// Stems named "hStem0" and on, as many as the buffer holds values for.
void ensureStems(VLFont& font, const Value& values, bool horizontal)
{
    for (size_t i = 0; i < values.count(); ++i) {
        std::string name = stringWithFormat(horizontal ? "hStem%d" : "vStem%d", static_cast<int>(i));
        if (font.stemForName(name)) continue;
        auto stem = VLMetric::init();
        stem->setName(name);
        stem->setHorizontal(horizontal);
        font.addStem(stem);
    }
}

} // namespace

bool VLFontMaster::postRead_format(VLError*, uint8_t format)
{
    customValueForKey("update Cache");
    if (format == 1) {
        for (const auto& [type, key] : legacyMetrics) _readMetric_withFilter_fromBuffer(type, std::nullopt, key);
        if (auto shoulder = customParameterForKey("shoulderHeight")) {
            auto xHeight = defaultMetricValueForType(VLMetric::TypeXHeight);
            setMetricPosition_overshoot_type_name_filter(shoulder->value().doubleValue(),
                                                         xHeight ? xHeight->overshoot() : 0.0, VLMetric::TypeXHeight,
                                                         "Shoulder Height", std::nullopt);
            removeObjectFromCustomParametersForKey("shoulderHeight");
        }
    }
    for (const auto& parameter : customParameters()) parameter->postRead(format);
    if (format == 1) _readMetric_withFilter_fromBuffer(VLMetric::TypeItalicAngle, std::nullopt, "italic angle");
    if (readBuffer() && _font) {
        const Value buffer(*readBuffer());
        ensureStems(*_font, buffer["HStemValues"], true);
        ensureStems(*_font, buffer["VStemValues"], false);
    }
    loadReadBuffer();
    return true;
}
