#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "model/VLMetric.h"
#include "model/VLMetricValue.h"
#include "platform/NumberConversion.h"
#include "platform/Predicate.h"

namespace {

// Cache values above this have not been computed.
constexpr double notComputed = 100000.0;

std::shared_ptr<VLMetric> firstPlainMetricOfType(const VLFont* font, uint8_t type)
{
    if (font)
        for (const auto& metric : font->metrics())
            if (metric->type() == type && !metric->filter()) return metric;
    return nullptr;
}

// A body height is the ascender unless the font defines one of its own.
std::shared_ptr<VLMetric> defaultMetricOfType(const VLFont* font, uint8_t type)
{
    auto metric = firstPlainMetricOfType(font, type);
    if (!metric && type == VLMetric::TypeBodyHeight) return firstPlainMetricOfType(font, VLMetric::TypeAscender);
    return metric;
}

// The first metric of the type whose filter takes the layer's glyph.
std::shared_ptr<VLMetric> filteredMetricOfType(const VLFont* font, uint8_t type, const VLLayer* layer)
{
    auto glyph = layer ? layer->glyph() : nullptr;
    if (font && glyph)
        for (const auto& metric : font->metrics())
            if (metric->type() == type && metric->filter() && metric->filter()->evaluateWithObject(*glyph))
                return metric;
    return nullptr;
}

} // namespace

std::shared_ptr<VLMetricValue> VLFontMaster::metricValueForId(const std::string& metricId) const
{
    auto it = _metricValues.find(metricId);
    return it == _metricValues.end() ? nullptr : it->second;
}

double VLFontMaster::metricPositionForId(const std::string& metricId) const
{
    auto value = metricValueForId(metricId);
    return value ? value->position() : 0.0;
}

void VLFontMaster::setMetricValues(Values values)
{
    _metricValues = std::move(values);
    for (const auto& entry : _metricValues) entry.second->setParent(this);
}

void VLFontMaster::setMetricValue_forId(std::shared_ptr<VLMetricValue> value, const std::string& metricId)
{
    setMetricValue_forId_notify(std::move(value), metricId, true);
}

// Nothing listens to the change here, so notify only documents the caller's intent.
void VLFontMaster::setMetricValue_forId_notify(std::shared_ptr<VLMetricValue> value, const std::string& metricId, bool)
{
    if (!value) {
        _metricValues.erase(metricId);
        return;
    }
    value->setParent(this);
    _metricValues[metricId] = std::move(value);
}

std::shared_ptr<VLMetricValue> VLFontMaster::valueForMetric(const std::shared_ptr<VLMetric>& metric)
{
    auto value = metricValueForId(metric->id());
    if (!value) {
        value = VLMetricValue::initWithPosition(0);
        setMetricValue_forId_notify(value, metric->id(), false);
    }
    value->setMetric(metric);
    return value;
}

VLFontMaster::ValueList VLFontMaster::metrics()
{
    ValueList values;
    if (_font)
        for (const auto& metric : _font->metrics()) values.push_back(valueForMetric(metric));
    return values;
}

std::shared_ptr<VLMetricValue> VLFontMaster::defaultMetricValueForType(uint8_t type) const
{
    auto metric = defaultMetricOfType(_font, type);
    return metric ? metricValueForId(metric->id()) : nullptr;
}

double VLFontMaster::defaultMetricForType(uint8_t type) const
{
    auto metric = defaultMetricOfType(_font, type);
    return metric ? metricPositionForId(metric->id()) : VLUnsetValue;
}

std::shared_ptr<VLMetricValue> VLFontMaster::metricValueForType_layer(uint8_t type, const VLLayer* layer) const
{
    auto metric = filteredMetricOfType(_font, type, layer);
    return metric ? metricValueForId(metric->id()) : defaultMetricValueForType(type);
}

// Corner glyphs slant around their origin, the node they sit on.
double VLFontMaster::metricForType_layer(uint8_t type, const VLLayer* layer) const
{
    auto glyph = layer ? layer->glyph() : nullptr;
    if (type == VLMetric::TypeSlantHeight && glyph && glyph->category() == "Corner") return 0.0;
    auto metric = filteredMetricOfType(_font, type, layer);
    return metric ? metricPositionForId(metric->id()) : defaultMetricForType(type);
}

// The first plain ascender and descender win; for the other types, the last.
void VLFontMaster::_updateCachedVerticalMetrics()
{
    _ascender = 1000000;
    _descender = -1000000;
    _xHeight = VLUnsetValue;
    _italicAngle = 0;
    if (!_font) return;
    auto pass = [this](bool plainOnly) {
        for (const auto& metric : _font->metrics()) {
            if (metric->filter()) continue;
            if (plainOnly && metric->name() && !metric->name()->empty()) continue;
            double position = metricPositionForId(metric->id());
            switch (metric->type()) {
            case VLMetric::TypeAscender:
                if (_ascender > 999999) _ascender = position;
                break;
            case VLMetric::TypeDescender:
                if (_descender < -999999) _descender = position;
                break;
            case VLMetric::TypeXHeight:
                if (plainOnly) _xHeight = position;
                break;
            case VLMetric::TypeCapHeight:
                if (plainOnly) _capHeight = position;
                break;
            case VLMetric::TypeItalicAngle:
                if (plainOnly) _italicAngle = position;
                break;
            }
        }
    };
    pass(true);
    if (_ascender > 999999 || _descender < -999999) pass(false);
    if (_ascender > 999999) _ascender = 800;
    if (_descender < -999999) _descender = 0;
}

double VLFontMaster::cachedMetric(double& field)
{
    if (field > notComputed) _updateCachedVerticalMetrics();
    return field;
}

double VLFontMaster::defaultAscender()
{
    return cachedMetric(_ascender);
}

double VLFontMaster::defaultDescender()
{
    double descender = cachedMetric(_descender);
    return descender < notComputed ? descender : 0.0;
}

double VLFontMaster::defaultCapHeight()
{
    return cachedMetric(_capHeight);
}

double VLFontMaster::defaultXHeight()
{
    return cachedMetric(_xHeight);
}

double VLFontMaster::defaultItalicAngle()
{
    return cachedMetric(_italicAngle);
}

void VLFontMaster::setNeedsUpdateCachedVerticalMetrics()
{
    _ascender = _descender = _capHeight = _xHeight = _italicAngle = VLUnsetValue;
}

void VLFontMaster::setDefaultMetric_overshoot_forType(double position, double overshoot, uint8_t type)
{
    if (!_font) return;
    auto metric = firstPlainMetricOfType(_font, type);
    if (!metric) {
        metric = VLMetric::init();
        metric->setType(type);
        _font->addMetric(metric);
    }
    auto value = valueForMetric(metric);
    value->setPosition(position);
    if (overshoot < 100000) value->setOvershoot(overshoot);
}

void VLFontMaster::addDefaultMetrics()
{
    if (!_font) return;
    double scale = _font->unitsPerEm() / 1000.0;
    setDefaultMetric_overshoot_forType(800 * scale, 16 * scale, VLMetric::TypeAscender);
    setDefaultMetric_overshoot_forType(700 * scale, 16 * scale, VLMetric::TypeCapHeight);
    setDefaultMetric_overshoot_forType(500 * scale, 16 * scale, VLMetric::TypeXHeight);
    setDefaultMetric_overshoot_forType(0, -16 * scale, VLMetric::TypeBaseline);
    setDefaultMetric_overshoot_forType(-200 * scale, -16 * scale, VLMetric::TypeDescender);
    setDefaultMetric_forType(0, VLMetric::TypeItalicAngle);
}

std::shared_ptr<VLMetricValue> VLFontMaster::setMetricPosition_overshoot_type_name_filter(
    double position, double overshoot, uint8_t type, const std::optional<std::string>& name,
    const std::optional<std::string>& filter)
{
    if (!_font) return nullptr;
    auto metric = _font->objectInMetricsWithType_withName_filter(type, name, filter);
    if (!metric) {
        metric = VLMetric::init();
        metric->setType(type);
        metric->setName(name);
        if (filter) metric->setFilterString(*filter);
        _font->addMetric(metric);
    }
    auto value = VLMetricValue::initWithPosition_overshoot(position, overshoot);
    setMetricValue_forId(value, metric->id());
    return value;
}

void VLFontMaster::setDefaultMetric_forType(double position, uint8_t type)
{
    setDefaultMetric_overshoot_forType(position, VLUnsetValue, type);
}

void VLFontMaster::setDefaultAscender(double v)
{
    setDefaultMetric_forType(v, VLMetric::TypeAscender);
    _ascender = v;
}

void VLFontMaster::setDefaultDescender(double v)
{
    setDefaultMetric_forType(v, VLMetric::TypeDescender);
    _descender = v;
}

void VLFontMaster::setDefaultCapHeight(double v)
{
    setDefaultMetric_forType(v, VLMetric::TypeCapHeight);
    _capHeight = v;
}

void VLFontMaster::setDefaultXHeight(double v)
{
    setDefaultMetric_forType(v, VLMetric::TypeXHeight);
    _xHeight = v;
}

void VLFontMaster::setDefaultItalicAngle(double v)
{
    setDefaultMetric_forType(v, VLMetric::TypeItalicAngle);
    _italicAngle = v;
}

double VLFontMaster::ascenderForLayer(const VLLayer* layer)
{
    double ascender = metricForType_layer(VLMetric::TypeAscender, layer);
    return ascender < VLUnsetValue ? ascender : defaultAscender();
}

double VLFontMaster::descenderForLayer(const VLLayer* layer)
{
    double descender = metricForType_layer(VLMetric::TypeDescender, layer);
    return descender < VLUnsetValue ? descender : defaultDescender();
}

double VLFontMaster::italicAngleForLayer(const VLLayer* layer)
{
    double angle = metricForType_layer(VLMetric::TypeItalicAngle, layer);
    return angle < VLUnsetValue ? angle : defaultItalicAngle();
}

double VLFontMaster::xHeightForLayer(const VLLayer* layer)
{
    double xHeight = metricForType_layer(VLMetric::TypeXHeight, layer);
    return xHeight < VLUnsetValue ? xHeight : _xHeight;
}

double VLFontMaster::slantHeightForLayer(const VLLayer* layer) const
{
    double slant = metricForType_layer(VLMetric::TypeSlantHeight, layer);
    if (slant <= 10000) return slant;
    double half = defaultMetricForType(VLMetric::TypeXHeight) / 2;
    return half > 10000 ? 0.0 : half;
}

double VLFontMaster::topHeightForLayer(const VLLayer* layer) const
{
    auto glyph = layer ? layer->glyph() : nullptr;
    uint8_t glyphCase = glyph ? glyph->glyphCase() : 0;
    double height;
    if (glyphCase == 1 || glyphCase == 2 || glyphCase == 3) {
        height = metricForType_layer(glyphCase == 1 ? VLMetric::TypeCapHeight : VLMetric::TypeXHeight, layer);
        if (height <= 10 || height >= 100000) height = metricForType_layer(VLMetric::TypeAscender, layer);
    } else {
        height = metricForType_layer(VLMetric::TypeBodyHeight, layer);
    }
    return height > 100000 ? metricForType_layer(VLMetric::TypeAscender, layer) : height;
}

double VLFontMaster::axisValueValueForId(const std::string& axisId) const
{
    auto it = _axesValues.find(axisId);
    return it == _axesValues.end() ? 0.0 : it->second->position();
}

void VLFontMaster::setAxisValueValue_forId(double value, const std::string& axisId)
{
    setAxisValue_forId(VLMetricValue::initWithPosition(value), axisId);
}

void VLFontMaster::setAxisValue_forId(std::shared_ptr<VLMetricValue> value, const std::string& axisId)
{
    if (!value) {
        _axesValues.erase(axisId);
        return;
    }
    value->setParent(this);
    _axesValues[axisId] = std::move(value);
}

void VLFontMaster::loadReadBuffer()
{
    if (!readBuffer() || !_font) {
        _readBuffer.clear();
        return;
    }
    const Value buffer(*readBuffer());
    const auto& metrics = _font->metrics();
    const ValueArray& values = buffer["metricValues"].array();
    for (size_t i = 0; i < metrics.size() && i < values.size(); ++i) {
        auto value = VLMetricValue::initWithDict_format(values[i], 3);
        if (metrics[i]->type() == VLMetric::TypeItalicAngle) value->setOvershoot(0.0);
        setMetricValue_forId(value, metrics[i]->id());
    }
    const auto& axes = _font->axes();
    if (buffer["axesValues"].isArray()) {
        _axesValues.clear();
        for (size_t i = 0; i < axes.size(); ++i)
            setAxisValue_forId(VLMetricValue::initWithPosition(VLSinglePrecision(buffer["axesValues"][i].doubleValue())),
                               axes[i]->axisId());
    }
    const Value& interpolations = buffer["interpolations"];
    for (size_t i = 0; i < axes.size() && i < interpolations.count(); ++i)
        setAxisValue_forId(VLMetricValue::initWithPosition(VLSinglePrecision(interpolations[i].doubleValue())),
                           axes[i]->axisId());
    _readBuffer.clear();
}

void VLFontMaster::_readMetric_withFilter_fromBuffer(uint8_t type, const std::optional<std::string>& filter,
                                                     const std::string& key)
{
    const auto& buffer = readBuffer();
    if (!buffer || !_font) return;
    auto it = buffer->find(key);
    if (it == buffer->end() && key != "italic angle") return;
    double position = it == buffer->end() ? 0.0 : it->second.doubleValue();

    std::shared_ptr<VLMetric> metric;
    for (const auto& candidate : _font->metrics())
        if (candidate->type() == type && candidate->filterString() == filter) metric = candidate;
    if (!metric) {
        metric = VLMetric::init();
        metric->setType(type);
        if (filter) metric->setFilterString(*filter);
        _font->addMetric(metric);
    }
    setMetricValue_forId(VLMetricValue::initWithPosition_overshoot(VLSinglePrecision(position), 0.0), metric->id());
}
