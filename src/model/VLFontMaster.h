#pragma once

#include "model/VLCustomParameterOwner.h"
#include "model/VLReadBuffer.h"
#include "platform/Geometry.h"
#include "platform/VLUnsetValue.h"
#include "platform/Value.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class VLFont;
class VLGlyph;
class VLLayer;
struct VLPlistParseInfo;
class VLMetric;
class VLMetricValue;
struct VLError;

// Far more masters than any design space needs. Drawing looks up every master's layer of each
// sample, which grows with the square of the masters, so a longer list fails the document.
inline constexpr size_t VLFontMaximumMasters = 1024;

// One master of a font: a location in the design space with its own metrics.
class VLFontMaster : public VLCustomParameterOwner {
public:
    VLFontMaster() : VLCustomParameterOwner(true) {}
    // A master for editing: a new UUID as id, named "Regular", with the usual vertical metrics.
    static std::shared_ptr<VLFontMaster> init();
    // A master for the readers: every field empty, metrics not yet computed.
    static std::shared_ptr<VLFontMaster> initFast();
    // Reads a master record; the parse info stands behind its opening brace.
    static std::shared_ptr<VLFontMaster> initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format);
    static constexpr const char* className = "VLFontMaster";
    static constexpr size_t maximumInList = VLFontMaximumMasters;

    // ---- reader/VLFontMasterDictReader.cpp: the dictionary route. Metrics and the location wait
    // in the read buffer for the post-read pass, as in the streaming route.
    static std::shared_ptr<VLFontMaster> initWithDict_format(const Value& dict, uint8_t format);
    // A deep copy without font.
    std::shared_ptr<VLFontMaster> copy() const;
    // Runs when the font's axes and metrics are known: turns the read buffer and, for format 1,
    // the legacy values into metrics, stems and the location.
    bool postRead_format(VLError* error, uint8_t format);

    const std::string& id() const { return _id; }
    void setId(const std::string& id) { _id = id; }
    // Values that are not strings are stored in their text form.
    void setId(const Value& id) { _id = id.isString() ? id.string() : id.description(); }
    const std::string& name() const { return _name; }
    void setName(const std::string& name) { _name = name; }

    // The owner; unretained, so a master must not outlive its font.
    VLFont* font() const { return _font; }
    void setFont(VLFont* font) { _font = font; }

    const ValueDictionary& userData() const { return _userData; }
    void setUserData_forKey(const Value& value, const std::string& key);

    // The grid of the master: its "gridMain" and "gridSubDivision" parameters where they are set
    // below 100000, otherwise the font's.
    uint32_t gridMain();
    uint32_t gridSubDivision();
    double gridLength();
    void setGridMain(uint32_t value);
    void setSubDivision(uint32_t value);
    void setGridSubDivision(uint32_t value) { _gridSubDivision = value; }
    void _updateGridCache();

    const std::string& iconName() const { return _iconName; }
    void setIconName(const std::string& name) { _iconName = name; }

    // Metric values under the ids of the font's metrics.
    using Values = std::map<std::string, std::shared_ptr<VLMetricValue>, std::less<>>;
    using ValueList = std::vector<std::shared_ptr<VLMetricValue>>;
    const Values& metricValues() const { return _metricValues; }
    void setMetricValues(Values values);
    std::shared_ptr<VLMetricValue> metricValueForId(const std::string& metricId) const;
    // A metric without a value stands at 0.
    double metricPositionForId(const std::string& metricId) const;
    void setMetricValue_forId(std::shared_ptr<VLMetricValue> value, const std::string& metricId);
    void setMetricValue_forId_notify(std::shared_ptr<VLMetricValue> value, const std::string& metricId, bool notify);
    // The value of the metric, made empty when missing, linked to the metric.
    std::shared_ptr<VLMetricValue> valueForMetric(const std::shared_ptr<VLMetric>& metric);
    // valueForMetric of each of the font's metrics, in their order.
    ValueList metrics();
    // The position for the layer's glyph: a matching filtered metric first, else the plain one.
    double metricForType_layer(uint8_t type, const VLLayer* layer) const;
    std::shared_ptr<VLMetricValue> metricValueForType_layer(uint8_t type, const VLLayer* layer) const;
    // The first filterless metric of the type; a body height falls back to the ascender.
    double defaultMetricForType(uint8_t type) const;
    std::shared_ptr<VLMetricValue> defaultMetricValueForType(uint8_t type) const;

    // Cached vertical metrics, computed from the metrics on first use.
    double defaultAscender();
    double defaultDescender();
    double defaultCapHeight();
    double defaultXHeight();
    double defaultItalicAngle();
    void setDefaultAscender(double v);
    void setDefaultDescender(double v);
    void setDefaultCapHeight(double v);
    void setDefaultXHeight(double v);
    void setDefaultItalicAngle(double v);
    void setDefaultMetric_forType(double position, uint8_t type);
    // Stores a new value for the metric of that type, name and filter, which is added if missing.
    std::shared_ptr<VLMetricValue> setMetricPosition_overshoot_type_name_filter(double position, double overshoot,
                                                                                uint8_t type,
                                                                                const std::optional<std::string>& name,
                                                                                const std::optional<std::string>& filter);
    // An overshoot of 100000 or more leaves the stored one alone.
    void setDefaultMetric_overshoot_forType(double position, double overshoot, uint8_t type);
    // Ascender, cap height, x-height, baseline, descender and italic angle of a new font, in
    // proportion to its units per em. The caches stay as they are.
    void addDefaultMetrics();
    void setNeedsUpdateCachedVerticalMetrics();
    double ascenderForLayer(const VLLayer* layer);
    double descenderForLayer(const VLLayer* layer);
    double italicAngleForLayer(const VLLayer* layer);
    double xHeightForLayer(const VLLayer* layer);
    // Half the x-height where no slant height is defined.
    double slantHeightForLayer(const VLLayer* layer) const;
    // The height that the glyph's case reaches: cap height, x-height or body height.
    double topHeightForLayer(const VLLayer* layer) const;
    // Whether a point of the layer lies on the baseline, on a metric of the layer's glyph, or,
    // in a mark, on the origin's vertical; half a unit either way counts.
    bool isOnMetricsLine_layer(Point point, const VLLayer* layer);
    // 1 on the baseline or a metric line, 2 within the overshoot of a metric, -1 elsewhere.
    // The layer's secondary metrics are passed over.
    static int8_t isOnMetrics_metrics_inLayer(double y, const ValueList& metrics, const VLLayer* layer);

    // ---- model/VLFontMasterLocation.cpp: the location, by axis id; a missing axis stands at 0.

    const Values& axesValues() const { return _axesValues; }
    double axisValueValueForId(const std::string& axisId) const;
    void setAxisValueValue_forId(double value, const std::string& axisId);
    // A null value removes the axis.
    void setAxisValue_forId(std::shared_ptr<VLMetricValue> value, const std::string& axisId);
    // The value of each of the font's axes, in their order, made at 0 where missing.
    ValueList axes();
    // The location as a list in the order of the font's axes.
    std::vector<double> axesValuesList() const;
    // The user-facing value: the "Location" that the "Axis Location" parameter gives the axis's
    // name, else the internal one. The setter keeps the parameter's other entries.
    double externAxisValueValueForId(const std::string& axisId);
    void setExternAxisValueValue_forId(double value, const std::string& axisId);

    // Raw values kept between reading and the post-read pass, when the font's axes and metrics are known.
    const std::optional<ValueDictionary>& readBuffer() const { return _readBuffer.values(); }
    void setReadBuffer_forKey(const Value& value, const std::string& key) { _readBuffer.setValue_forKey(value, key); }
    void loadReadBuffer();
    void _readMetric_withFilter_fromBuffer(uint8_t type, const std::optional<std::string>& filter, const std::string& key);

    // A null value removes the first parameter of the name; otherwise that one takes the value,
    // or a new parameter is added.
    void setCustomValue_forKey(const Value& value, const std::string& key);
    // Values of the form "script:number", or a plain number for the script "default".
    double localizedCustomValueForKey_script(const std::string& key, const std::string& script) const;
    // By the script of the layer's glyph; only values with a script prefix count.
    double localizedCustomValueForKey_layer(const std::string& key, const VLLayer* layer) const;
    // The text after the ":" of a value whose script fits the glyph, or null; a value without
    // ":", or one that is not text, comes back as it is.
    static Value localizedParameter_glyph(const Value& value, const VLGlyph* glyph);
    static double localizedParameterValue_glyph(const Value& value, const VLGlyph* glyph);

    bool visible() const { return _visible; }
    void setVisible(bool visible) { _visible = visible; }

private:
    void _updateCachedVerticalMetrics();
    double cachedMetric(double& field);

    std::string _id;
    std::string _iconName;
    uint32_t _gridMain = 0xFFFFFFFF;
    uint32_t _gridSubDivision = 1;
    Values _metricValues;
    Values _axesValues;
    VLReadBuffer _readBuffer;
    std::string _name;
    VLFont* _font = nullptr;
    ValueDictionary _userData;
    bool _visible = false;
    double _ascender = VLUnsetValue;
    double _descender = VLUnsetValue;
    double _capHeight = VLUnsetValue;
    double _xHeight = VLUnsetValue;
    double _italicAngle = VLUnsetValue;
};
