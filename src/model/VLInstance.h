#pragma once

#include "model/VLCustomParameterOwner.h"
#include "model/VLFactors.h"
#include "model/VLOrderedDictionary.h"
#include "model/VLReadBuffer.h"
#include "platform/Value.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class VLAxis;
class VLFont;
class VLFontMaster;
class VLMetricValue;
struct VLError;

// A named location in the font's design space.
class VLInstance : public VLCustomParameterOwner {
public:
    VLInstance() : VLCustomParameterOwner(true) {}
    enum Type : int64_t { TypeSingle = 0, TypeVariable = 1, TypeIcon = 2 };
    using AxesValues = std::map<std::string, std::shared_ptr<VLMetricValue>, std::less<>>;

    static std::shared_ptr<VLInstance> init() { return std::make_shared<VLInstance>(); }
    static std::shared_ptr<VLInstance> initWithType(int64_t type);
    static std::shared_ptr<VLInstance> initWithTypeName(const std::string& name);
    // The document's instance dictionary; the font gives the axes that "axesValues" refers to.
    static std::shared_ptr<VLInstance> initWithDict_container_format(const Value& dict, VLFont* font, uint8_t format);
    static constexpr const char* className = "VLInstance";
    // A deep copy for the same font.
    std::shared_ptr<VLInstance> copy() const;
    // Places an instance of an older document on the font's axes from its "interpolations".
    bool postRead_format(VLError* error, uint8_t format);

    int64_t type() const { return _type; }
    // "single", "variable" or "icon"; nothing for other types.
    std::optional<std::string> typeName() const;
    static int64_t typeForTypeName(const std::string& name);

    const std::string& name() const { return _name; }
    void setName(const std::string& name) { _name = name; }
    VLFont* font() const { return _font; }
    void setFont(VLFont* font) { _font = font; }
    bool exports() const { return _exports; }
    void setExports(bool v) { _exports = v; }
    bool visible() const { return _visible; }
    void setVisible(bool v) { _visible = v; }
    bool isBold() const { return _isBold; }
    void setIsBold(bool v) { _isBold = v; }
    bool isItalic() const { return _isItalic; }
    void setIsItalic(bool v) { _isItalic = v; }
    bool manualInterpolation() const { return _manualInterpolation; }
    void setManualInterpolation(bool v) { _manualInterpolation = v; }
    uint16_t weightClassValue() const { return _weightClassValue; }
    uint16_t widthClassValue() const { return _widthClassValue; }
    const std::string& linkStyle() const { return _linkStyle; }
    void setLinkStyle(const std::string& style) { _linkStyle = style; }
    // The masters' shares; they are the user's own where manualInterpolation is set.
    const VLFactors& instanceInterpolations() const { return _instanceInterpolations; }
    void setInstanceInterpolations(VLFactors factors) { _instanceInterpolations = std::move(factors); }
    // Same place within 0.01 on each axis of this instance (an axis the other lacks stands at
    // 0), and the same settings. Axes of the other alone are not looked at, so the relation need
    // not be symmetric.
    bool isEqualToInstance(const VLInstance& other) const;

    // Location.
    const AxesValues& axesValues() const { return _axesValues; }
    double axisValueValueForId(const std::string& axisId) const;
    void setAxisValueValue_forId(double value, const std::string& axisId);
    // A null value removes the axis.
    void setAxisValue_forId(std::shared_ptr<VLMetricValue> value, const std::string& axisId);
    void setAxisValueValueFast_forId(double value, const std::string& axisId);

    // ---- interpolation/VLInstanceCoefficients.cpp: the masters' shares at the location, for
    // the masters given, placed by the axes given.

    // Nothing without masters, or where a share would pass 100 in magnitude; the first master
    // alone for one master or an instance without a location. Masters named in "Disable Masters"
    // of the font or the instance take no part, nor does a master at the place of an earlier
    // one. With "InterpolationWeightY" the shares for y come from that value in place of the
    // first coordinate, and each share is a pair.
    std::optional<VLFactors> instanceInterpolations_axes(const std::vector<std::shared_ptr<VLFontMaster>>& masters,
                                                         const std::vector<std::shared_ptr<VLAxis>>& axes);
    std::optional<VLFactors>
    instanceInterpolationsCoeffs_axes(const std::vector<std::shared_ptr<VLFontMaster>>& masters,
                                      const std::vector<std::shared_ptr<VLAxis>>& axes);

    // ---- interpolation/VLInstanceLayers.cpp: instances made to draw between the masters.

    // An instance of the font at a location in the order of its axes, with the shares of the
    // font's masters there as its own; null where the masters can't be blended there.
    static std::shared_ptr<VLInstance> initWithFont_axesValuesList(VLFont& font, const std::vector<double>& location);
    // The shares of the font's masters in this instance: its own where they are manual, else
    // those of its location; nothing where no master takes part.
    std::optional<VLFactors> instanceInterpolationsInFont(VLFont& font);

    // Raw values between reading and the post-read pass.
    const std::optional<ValueDictionary>& readBuffer() const { return _readBuffer.values(); }
    void setReadBuffer_forKey(const Value& value, const std::string& key) { _readBuffer.setValue_forKey(value, key); }

private:
    VLFont* _font = nullptr;
    bool _isItalic = false;
    bool _isBold = false;
    bool _manualInterpolation = false;
    bool _exports = true;
    std::string _name = "Regular";
    bool _visible = true;
    std::string _linkStyle;
    VLFactors _instanceInterpolations;
    VLReadBuffer _readBuffer;
    uint16_t _weightClassValue = 400;
    uint16_t _widthClassValue = 5;
    int64_t _type = TypeSingle;
    AxesValues _axesValues;
};
