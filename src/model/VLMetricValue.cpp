#include "model/VLMetricValue.h"
#include "platform/NumberConversion.h"

#include <cmath>

double VLMetricValue::sanitized(double value)
{
    return value < -100000000.0 || value > 100000000.0 ? 0.0 : value;
}

std::shared_ptr<VLMetricValue> VLMetricValue::initWithPosition(double position)
{
    return initWithPosition_overshoot(position, 0.0);
}

std::shared_ptr<VLMetricValue> VLMetricValue::initWithPosition_overshoot(double position, double overshoot)
{
    auto value = std::make_shared<VLMetricValue>();
    value->_position = sanitized(position);
    value->_overshoot = sanitized(overshoot);
    return value;
}

std::shared_ptr<VLMetricValue> VLMetricValue::initWithDict_format(const Value& dict, uint8_t)
{
    return initWithPosition_overshoot(VLSinglePrecision(dict["pos"].doubleValue()),
                                      VLSinglePrecision(dict["over"].doubleValue()));
}

void VLMetricValue::setPosition(double position)
{
    position = sanitized(position);
    if (std::fabs(position - _position) > 0.001) _position = position;
}

void VLMetricValue::setOvershoot(double overshoot)
{
    overshoot = sanitized(overshoot);
    if (std::fabs(overshoot - _overshoot) > 0.001) _overshoot = overshoot;
}
