#include "model/VLPartProperty.h"

#include "platform/UUID.h"

std::shared_ptr<VLPartProperty> VLPartProperty::initWithName_bottom_top(const std::string& name, int64_t bottom,
                                                                        int64_t top)
{
    auto property = std::make_shared<VLPartProperty>();
    property->_name = name;
    property->_axisId = name.empty() ? newUUIDString() : name;
    property->_bottomName = "Low";
    property->_topName = "High";
    property->_bottomValue = bottom;
    property->_topValue = top;
    return property;
}

std::shared_ptr<VLPartProperty> VLPartProperty::initWithDict_format(const Value& dict, uint8_t)
{
    auto property = std::make_shared<VLPartProperty>();
    property->_name = dict["name"].string();
    property->_axisId = property->_name.empty() ? newUUIDString() : property->_name;
    property->_bottomName = dict["bottomName"].string();
    property->_bottomValue = dict["bottomValue"].integerValue();
    property->_topName = dict["topName"].string();
    property->_topValue = dict["topValue"].integerValue();
    return property;
}

double VLPartProperty::valueForPartSetting(const Value& setting) const
{
    return static_cast<double>(!setting.isNull() && setting.integerValue() == 1 ? _bottomValue : _topValue);
}
