#include "model/VLMetricValue.h"

#include "model/VLMetric.h"
#include "platform/NumberConversion.h"

#include <cmath>

// Not-a-number fails the test too, so that it never reaches the sorting of metrics.
double VLMetricValue::sanitized(double value)
{
    return value >= -100000000.0 && value <= 100000000.0 ? value : 0.0;
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

std::optional<std::string> VLMetricValue::name() const
{
    auto definition = metric();
    return definition ? definition->name() : std::nullopt;
}

std::string VLMetricValue::title() const
{
    auto definition = metric();
    return definition ? definition->title() : std::string();
}

std::shared_ptr<Predicate> VLMetricValue::filter() const
{
    auto definition = metric();
    return definition ? definition->filter() : nullptr;
}
