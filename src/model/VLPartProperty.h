#pragma once

#include "platform/Value.h"

#include <cstdint>
#include <memory>
#include <string>

// One part axis of a smart glyph: its layers sit at the bottom or top end of each axis.
class VLPartProperty {
public:
    static std::shared_ptr<VLPartProperty> initWithName_bottom_top(const std::string& name, int64_t bottom, int64_t top);
    // Keys "name", "bottomName", "bottomValue", "topName", "topValue"; without a name the axis id
    // is a new UUID, otherwise the name.
    static std::shared_ptr<VLPartProperty> initWithDict_format(const Value& dict, uint8_t format);
    static constexpr const char* className = "VLPartProperty";

    const std::string& name() const { return _name; }
    const std::string& axisId() const { return _axisId; }
    const std::string& bottomName() const { return _bottomName; }
    int64_t bottomValue() const { return _bottomValue; }
    const std::string& topName() const { return _topName; }
    int64_t topValue() const { return _topValue; }
    // The bottom value for a setting of 1, the top value for anything else, absence included.
    double valueForPartSetting(const Value& setting) const;

    // ---- interpolation/VLLayerMasterSelection.cpp: a glyph without part axes is measured along
    // the corner or font axes, which stand in as part axes under their own ids.
    void setAxisId(const std::string& axisId) { _axisId = axisId; }

private:
    std::string _name;
    std::string _axisId;
    std::string _bottomName;
    int64_t _bottomValue = 0;
    std::string _topName;
    int64_t _topValue = 0;
};
