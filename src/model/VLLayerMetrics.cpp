#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "model/VLMetric.h"
#include "model/VLMetricValue.h"
#include "platform/Predicate.h"

namespace {

// A layer that belongs to no master has no metrics; the heights read 0.
template <typename Ask> double askMaster(const VLLayer& layer, Ask ask)
{
    auto master = layer.associatedFontMaster();
    return master ? ask(*master) : 0.0;
}

} // namespace

double VLLayer::ascender() const
{
    return askMaster(*this, [this](VLFontMaster& master) { return master.ascenderForLayer(this); });
}

double VLLayer::descender() const
{
    return askMaster(*this, [this](VLFontMaster& master) { return master.descenderForLayer(this); });
}

double VLLayer::italicAngle() const
{
    return askMaster(*this, [this](VLFontMaster& master) { return master.italicAngleForLayer(this); });
}

double VLLayer::slantHeight() const
{
    return askMaster(*this, [this](VLFontMaster& master) { return master.slantHeightForLayer(this); });
}

double VLLayer::topHeight() const
{
    return askMaster(*this, [this](VLFontMaster& master) { return master.topHeightForLayer(this); });
}

double VLLayer::metricForType(uint8_t type) const
{
    auto master = associatedFontMaster();
    return master ? master->metricForType_layer(type, this) : VLUnsetValue;
}

double VLLayer::metricForName(const std::string& name) const
{
    if (uint8_t type = VLMetric::typeForTypeName(name)) return metricForType(type);
    auto owner = font();
    auto metric = owner ? owner->objectInMetricsWithName(name) : nullptr;
    auto master = associatedFontMaster();
    return metric && master ? master->metricPositionForId(metric->id()) : VLUnsetValue;
}

VLFontMaster::ValueList VLLayer::metricsForMaster(VLFontMaster& master) const
{
    auto owner = glyph();
    VLFontMaster::ValueList matching, plain;
    for (const auto& value : master.metrics()) {
        if (!value->metric()->isVerticalMetric()) continue;
        auto filter = value->filter();
        if (!filter)
            plain.push_back(value);
        else if (owner && filter->evaluateWithObject(*owner))
            matching.push_back(value);
    }
    matching.insert(matching.end(), plain.begin(), plain.end());
    return matching;
}

// Of the values of one type, the glyph sees the one that its master picks for it; named metrics
// without a type stand each for themselves.
bool VLLayer::isSecondaryMetric(const VLMetricValue& value) const
{
    auto metric = value.metric();
    if (!metric || metric->type() == VLMetric::TypeNone || !value.parent()) return false;
    return value.parent()->metricValueForType_layer(metric->type(), this).get() != &value;
}

VLGlyphMetrics VLLayer::glyphMetricsForDirection(uint8_t direction) const
{
    VLGlyphMetrics metrics;
    metrics.width = _width;
    if (!associatedFontMaster()) return metrics;
    metrics.ascender = ascender();
    metrics.descender = descender();
    auto font = this->font();
    bool icon = font && font->fontType() == VLFont::FontTypeIconSet;
    if (icon) {
        if (_vertWidth > 1 && _vertWidth < 100000) metrics.topHeight = metrics.ascender = _vertWidth;
        metrics.descender = 0;
    } else if (direction & 4) {
        if (_vertOrigin < 100000 && _vertOrigin > -100000) {
            metrics.ascender -= _vertOrigin;
            metrics.descender -= _vertOrigin;
        }
        if (_vertWidth >= 0 && _vertWidth < 100000) metrics.descender = metrics.ascender - _vertWidth;
        metrics.vertWidth = _vertWidth;
    } else {
        metrics.topHeight = topHeight();
    }
    metrics.slantHeight = slantHeight();
    metrics.italicAngle = italicAngle();
    return metrics;
}
